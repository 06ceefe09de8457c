#include "quiver/fastinfoset/FastInfosetBinaryData.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/Conversions.h"

#include <cstdint>
#include <cstring>

namespace QvXmlLib9
{

namespace
{

enum EAlgorithm : unsigned long
{
    Algorithm_Hexadecimal = 1,
    Algorithm_Base64 = 2,
    Algorithm_Short = 3,
    Algorithm_Int = 4,
    Algorithm_Long = 5,
    Algorithm_Boolean = 6,
    Algorithm_Float = 7,
    Algorithm_Double = 8,
    Algorithm_Uuid = 9,
    Algorithm_Cdata = 10
};

// A single value is text of its whole length: there is no white space to deal with.
constexpr CWhitespaceUtils::WhitespaceRule s_eRule = CWhitespaceUtils::WhitespaceRule_None;

/// One bit in an octet: the high nibble counts the bits that are not used, bit 3 is the value.
constexpr unsigned char s_byTrue = 56;
constexpr unsigned char s_byFalse = 48;

[[noreturn]] void ThrowUnknown()
{
    throw CQvException(L"Unknown byte encoding.");
}

template <class TValue, class TBits>
TBits BitsOf(TValue value)
{
    static_assert(sizeof(TValue) == sizeof(TBits));
    TBits nBits = 0;
    std::memcpy(&nBits, &value, sizeof(nBits));
    return nBits;
}

template <class TBits>
void AppendBigEndian(std::string& strOctets, TBits nBits)
{
    for (int nShift = static_cast<int>(sizeof(TBits)) * 8 - 8; nShift >= 0; nShift -= 8)
        strOctets += static_cast<char>(nBits >> nShift & 0xFF);
}

void AppendText(std::string& strOctets, std::wstring_view svText)
{
    const bool bWellFormed = AppendUtf8(strOctets, svText);
    QV_ASSERT_MSG(bWellFormed, "dwActualLen == dwUtf8Len");
}

/// Reads an integer as it is printed, in up to 18 digits; false for any other text.
bool ReadPlainInteger(std::wstring_view svText, std::int64_t& nValue)
{
    const bool bNegative = !svText.empty() && svText.front() == L'-';
    if (bNegative)
        svText.remove_prefix(1);
    if (svText.empty() || svText.size() > 18)
        return false;
    nValue = 0;
    for (const wchar_t c : svText)
    {
        if (c < L'0' || c > L'9')
            return false;
        nValue = nValue * 10 + (c - L'0');
    }
    if (bNegative)
        nValue = -nValue;
    return true;
}

/// Appends an integer in the way that needs no string; false if that does not do.
bool TryAppendInteger(std::string& strOctets, unsigned long ulIndex, std::wstring_view svText)
{
    std::int64_t nValue = 0;
    if (ulIndex < Algorithm_Short || ulIndex > Algorithm_Long || !ReadPlainInteger(svText, nValue))
        return false;
    if (ulIndex == Algorithm_Long)
        AppendBigEndian(strOctets, static_cast<std::uint64_t>(nValue));
    else if (ulIndex == Algorithm_Int && nValue == static_cast<std::int32_t>(nValue))
        AppendBigEndian(strOctets, static_cast<std::uint32_t>(nValue));
    else if (ulIndex == Algorithm_Short && nValue == static_cast<std::int16_t>(nValue))
        AppendBigEndian(strOctets, static_cast<std::uint16_t>(nValue));
    else
        return false;
    return true;
}

void AppendValue(std::string& strOctets, unsigned long ulIndex, const std::wstring& strText)
{
    CBinaryData data;
    switch (ulIndex)
    {
    case Algorithm_Hexadecimal:
    case Algorithm_Uuid:
        data.SetAsHexString(strText.c_str());
        strOctets += data.GetView();
        break;
    case Algorithm_Base64:
        data.SetAsBase64(strText.c_str());
        strOctets += data.GetView();
        break;
    case Algorithm_Short:
        AppendBigEndian(strOctets, static_cast<std::uint16_t>(CConversions::i2FromString(strText, s_eRule)));
        break;
    case Algorithm_Int:
        AppendBigEndian(strOctets, static_cast<std::uint32_t>(CConversions::i4FromString(strText, s_eRule)));
        break;
    case Algorithm_Long:
        AppendBigEndian(strOctets, static_cast<std::uint64_t>(CConversions::i8FromString(strText, s_eRule)));
        break;
    case Algorithm_Boolean:
        strOctets += static_cast<char>(CConversions::booleanFromString(strText, s_eRule) ? s_byTrue : s_byFalse);
        break;
    case Algorithm_Float:
        AppendBigEndian(strOctets, BitsOf<float, std::uint32_t>(CConversions::r4FromString(strText, s_eRule)));
        break;
    case Algorithm_Double:
        AppendBigEndian(strOctets, BitsOf<double, std::uint64_t>(CConversions::r8FromString(strText, s_eRule)));
        break;
    default:
        ThrowUnknown();
    }
}

/// Reads one value of `TValue`, whose bits are those of the big-endian number at `p`.
template <class TValue, class TBits>
TValue ReadBigEndian(const unsigned char* p)
{
    static_assert(sizeof(TValue) == sizeof(TBits));
    std::uint64_t nBits = 0;
    for (std::size_t n = 0; n < sizeof(TBits); ++n)
        nBits = nBits << 8 | p[n];
    const auto nValueBits = static_cast<TBits>(nBits);
    TValue value{};
    std::memcpy(&value, &nValueBits, sizeof(value));
    return value;
}

/// The texts of values of `nWidth` octets each, divided by blanks.
template <class FnToString>
std::wstring DecodeFixedWidth(std::string_view svOctets, std::size_t nWidth, const wchar_t* lpctFailure,
                              FnToString fnToString)
{
    if (svOctets.size() % nWidth != 0)
        throw CQvException(lpctFailure);
    std::wstring strText;
    const auto* p = reinterpret_cast<const unsigned char*>(svOctets.data());
    for (const unsigned char* const pEnd = p + svOctets.size(); p != pEnd; p += nWidth)
    {
        if (!strText.empty())
            strText += L' ';
        strText += fnToString(p);
    }
    return strText;
}

std::wstring DecodeBooleans(std::string_view svOctets)
{
    std::wstring strText;
    int nBit = 3;
    const int nUnused = static_cast<unsigned char>(svOctets.front()) >> 4;
    for (std::size_t n = 0; n < svOctets.size(); ++n)
    {
        // No blank between the words of one octet (docs/compatibility.md: Words of booleans).
        if (n != 0)
            strText += L' ';
        const int nLast = n + 1 == svOctets.size() ? nUnused : 0;
        for (; nBit >= nLast; --nBit)
            strText += CConversions::booleanToString((svOctets[n] >> nBit & 1) != 0);
        nBit = 7;
    }
    return strText;
}

} // namespace

CFastInfosetBinaryData::CFastInfosetBinaryData() = default;

CFastInfosetBinaryData::CFastInfosetBinaryData(const CBinaryData& source)
    : CBinaryData(source)
{
}

CFastInfosetBinaryData::CFastInfosetBinaryData(const CFastInfosetBinaryData& source) = default;

CFastInfosetBinaryData::CFastInfosetBinaryData(unsigned char* const pData, unsigned long ulLength, bool bTakeOwnership)
    : CBinaryData(pData, ulLength, bTakeOwnership)
{
}

CFastInfosetBinaryData::CFastInfosetBinaryData(const wchar_t* lpctText)
    : CBinaryData(lpctText)
{
}

CFastInfosetBinaryData::~CFastInfosetBinaryData() = default;

CFastInfosetBinaryData& CFastInfosetBinaryData::operator=(const CFastInfosetBinaryData& source) = default;

void CFastInfosetBinaryData::SetAsEncodedString(unsigned long ulIndex, const wchar_t* lpctText)
{
    Clear();
    std::string strOctets;
    AppendEncoded(strOctets, ulIndex, lpctText);
    SetBuffer(reinterpret_cast<const unsigned char*>(strOctets.data()), static_cast<unsigned long>(strOctets.size()));
}

void CFastInfosetBinaryData::AppendEncoded(std::string& strOctets, unsigned long ulIndex, std::wstring_view svText)
{
    if (ulIndex == Algorithm_Cdata)
        AppendText(strOctets, svText);
    else if (!TryAppendInteger(strOctets, ulIndex, svText))
        AppendValue(strOctets, ulIndex, std::wstring(svText));
}

std::wstring CFastInfosetBinaryData::GetAsString(unsigned long ulIndex) const
{
    return Decode(GetView(), ulIndex);
}

std::wstring CFastInfosetBinaryData::Decode(std::string_view svOctets, unsigned long ulIndex)
{
    if (svOctets.empty())
        return std::wstring();
    const auto* const pOctets = reinterpret_cast<const unsigned char*>(svOctets.data());
    const auto ulLength = static_cast<unsigned long>(svOctets.size());
    switch (ulIndex)
    {
    case Algorithm_Hexadecimal:
        return CBinaryData::GetAsHexString(pOctets, ulLength);
    case Algorithm_Base64:
        return CBase64().Encode(pOctets, ulLength);
    case Algorithm_Short:
        return DecodeFixedWidth(svOctets, 2, L"Invalid value for SHORT byte encoding.",
                                [](const unsigned char* p)
                                { return CConversions::i2ToString(ReadBigEndian<std::int16_t, std::uint16_t>(p)); });
    case Algorithm_Int:
        return DecodeFixedWidth(svOctets, 4, L"Invalid value for INT byte encoding.",
                                [](const unsigned char* p)
                                { return CConversions::i4ToString(ReadBigEndian<std::int32_t, std::uint32_t>(p)); });
    case Algorithm_Long:
        return DecodeFixedWidth(svOctets, 8, L"Invalid value for LONG byte encoding.",
                                [](const unsigned char* p)
                                { return CConversions::i8ToString(ReadBigEndian<std::int64_t, std::uint64_t>(p)); });
    case Algorithm_Boolean:
        return DecodeBooleans(svOctets);
    case Algorithm_Float:
        return DecodeFixedWidth(svOctets, 4, L"Invalid value for FLOAT byte encoding.",
                                [](const unsigned char* p)
                                { return CConversions::r4ToString(ReadBigEndian<float, std::uint32_t>(p), nullptr); });
    case Algorithm_Double:
        return DecodeFixedWidth(svOctets, 8, L"Invalid value for DOUBLE byte encoding.",
                                [](const unsigned char* p)
                                { return CConversions::r8ToString(ReadBigEndian<double, std::uint64_t>(p), nullptr); });
    case Algorithm_Uuid:
        return DecodeFixedWidth(svOctets, 16, L"Invalid value for UUID byte encoding.",
                                [](const unsigned char* p) { return CBinaryData::GetAsHexString(p, 16); });
    default:
        ThrowUnknown();
    }
}

} // namespace QvXmlLib9
