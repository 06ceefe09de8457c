#include "quiver/fastinfoset/FIOctetReader.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

namespace QvXmlLib9
{

/// One of the forms that an integer or a length takes.
struct CFIOctetReader::SForm
{
    /// The bits of the first octet that tell the form, and what they are then.
    unsigned char byFormMask;
    unsigned char byForm;
    /// The bits of the first octet that belong to the value.
    unsigned char byValueMask;
    /// Octets that follow.
    int nMore;
    /// Least value of the form.
    std::uint32_t dwOffset;
};

namespace
{

constexpr wchar_t s_szIntegerFrom1[] = L"Encoding of integers 1 To 2^20";
constexpr wchar_t s_szIntegerFrom0[] = L"Encoding of integers 0 To 2^20";
constexpr wchar_t s_szLength[] = L"NonEmptyOctetString";

/// The seven bits that stand for the integer 0 where it is admitted.
constexpr unsigned char s_byZero = 0x7F;

} // namespace

void CFIOctetReader::ThrowEndOfFile()
{
    throw CQvException(L"Failed to parse FastInfoset. Unexpected End of File.");
}

void CFIOctetReader::ThrowInvalid(const wchar_t* lpctType, const wchar_t* lpctBit)
{
    throw CQvException(
        FormatString(L"Failed to parse FastInfoset. Invalid %s type  on the %s bit of an octet.", lpctType, lpctBit));
}

template <std::size_t nForms>
std::uint64_t CFIOctetReader::Read(const SForm (&forms)[nForms], unsigned char by, const wchar_t* lpctType,
                                   const wchar_t* lpctBit)
{
    for (const SForm& form : forms)
    {
        if ((by & form.byFormMask) != form.byForm)
            continue;
        std::uint64_t nValue = by & form.byValueMask;
        for (int n = 0; n < form.nMore; ++n)
            nValue = nValue << 8 | ReadOctet();
        return nValue + form.dwOffset;
    }
    ThrowInvalid(lpctType, lpctBit);
}

std::uint32_t CFIOctetReader::ReadIntegerBit2(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x40, 0x00, 0x3F, 0, 1},
        {0x60, 0x40, 0x1F, 1, 65},
        {0x70, 0x60, 0x0F, 2, 8257},
    };
    return static_cast<std::uint32_t>(Read(s_forms, by, s_szIntegerFrom1, L"second"));
}

std::uint32_t CFIOctetReader::ReadIntegerOrZeroBit2(unsigned char by)
{
    if ((by & s_byZero) == s_byZero)
        return 0;
    try
    {
        return ReadIntegerBit2(by);
    }
    catch (const CQvException&)
    {
        ThrowInvalid(s_szIntegerFrom0, L"second");
    }
}

std::uint32_t CFIOctetReader::ReadIntegerBit3(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x20, 0x00, 0x1F, 0, 1},
        {0x38, 0x20, 0x07, 1, 33},
        {0x38, 0x28, 0x07, 2, 2081},
        {0x38, 0x30, 0x00, 3, 526369},
    };
    return static_cast<std::uint32_t>(Read(s_forms, by, s_szIntegerFrom1, L"third"));
}

std::uint32_t CFIOctetReader::ReadIntegerBit4(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x10, 0x00, 0x0F, 0, 1},
        {0x1C, 0x10, 0x03, 1, 17},
        {0x1C, 0x14, 0x03, 2, 1041},
        {0x1C, 0x18, 0x00, 3, 263185},
    };
    return static_cast<std::uint32_t>(Read(s_forms, by, s_szIntegerFrom1, L"fourth"));
}

std::uint64_t CFIOctetReader::ReadLengthBit2(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x40, 0x00, 0x3F, 0, 1},
        {0x7F, 0x40, 0x00, 1, 65},
        {0x7F, 0x60, 0x00, 4, 321},
    };
    return Read(s_forms, by, s_szLength, L"second");
}

std::uint64_t CFIOctetReader::ReadLengthBit5(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x08, 0x00, 0x07, 0, 1},
        {0x0F, 0x08, 0x00, 1, 9},
        {0x0F, 0x0C, 0x00, 4, 265},
    };
    return Read(s_forms, by, s_szLength, L"fifth");
}

std::uint64_t CFIOctetReader::ReadLengthBit7(unsigned char by)
{
    static constexpr SForm s_forms[] = {
        {0x02, 0x00, 0x01, 0, 1},
        {0x03, 0x02, 0x00, 1, 3},
        {0x03, 0x03, 0x00, 4, 259},
    };
    return Read(s_forms, by, s_szLength, L"seventh");
}

std::uint32_t CFIOctetReader::ReadSequenceLength()
{
    const unsigned char by = ReadOctet();
    if (by < 0x80)
        return by + std::uint32_t{1};
    std::uint32_t dwCount = by & 0x0F;
    dwCount = dwCount << 8 | ReadOctet();
    dwCount = dwCount << 8 | ReadOctet();
    return dwCount + 129;
}

} // namespace QvXmlLib9
