#include "quiver/generated/DocumentValue.h"

#include "quiver/foundation/Digits.h"
#include "quiver/generated/LexicalForm.h"
#include "quiver/values/RealReader.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <limits>

namespace QvXmlLib9
{

namespace
{

/// A number with a sign; false for all else, and for what does not fit.
template <class TChar>
bool ReadWhole(std::basic_string_view<TChar> text, long long& nValue)
{
    // So many digits always fit.
    constexpr std::size_t nMostDigits = std::numeric_limits<long long>::digits10;
    const bool bNegative = !text.empty() && text.front() == '-';
    if (bNegative || (!text.empty() && text.front() == '+'))
        text.remove_prefix(1);
    if (text.empty() || text.size() > nMostDigits)
        return false;
    nValue = 0;
    for (const TChar c : text)
    {
        if (!IsDigit(static_cast<wchar_t>(c)))
            return false;
        nValue = nValue * 10 + DigitValue(static_cast<wchar_t>(c));
    }
    nValue = bNegative ? -nValue : nValue;
    return true;
}

bool ReadBound(const wchar_t* lpctBound, long long& nBound)
{
    return ReadWhole(std::wstring_view(lpctBound), nBound);
}

/// A number of so few digits that it is their whole number divided by a power of ten, both of which are exact: the double
/// nearest to it. False for all else, also for what can be written otherwise, as with an exponent.
template <class TChar>
bool ReadShortDecimal(const TChar* p, const TChar* pEnd, double& dValue)
{
    constexpr std::ptrdiff_t nMostDigits = std::numeric_limits<double>::digits10;
    static constexpr double s_powers[nMostDigits + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const bool bNegative = p != pEnd && *p == '-';
    p += bNegative ? 1 : 0;
    if (pEnd - p > nMostDigits || p == pEnd)
        return false;
    long long nDigits = 0;
    const TChar* pFraction = pEnd;
    for (const TChar* const pStart = p; p != pEnd; ++p)
    {
        if (IsDigit(static_cast<wchar_t>(*p)))
            nDigits = nDigits * 10 + DigitValue(static_cast<wchar_t>(*p));
        else if (*p == '.' && pFraction == pEnd && p != pStart && p + 1 != pEnd)
            pFraction = p + 1;
        else
            return false;
    }
    const double dMagnitude = static_cast<double>(nDigits) / s_powers[pEnd - pFraction];
    dValue = bNegative ? -dMagnitude : dMagnitude;
    return true;
}

bool ReadBound(const wchar_t* lpctBound, double& dBound)
{
    if (ReadShortDecimal(lpctBound, lpctBound + std::wcslen(lpctBound), dBound))
        return true;
    const SNumberText<double> number = ReadReal(lpctBound);
    dBound = number.value;
    return number.pStop != lpctBound && *number.pStop == L'\0' && !number.bOutOfRange;
}

/// @param fnIsInside gets the value and a bound.
template <class TNumber, class TIsInside>
bool IsInside(const wchar_t* lpctBound, TNumber value, TIsInside fnIsInside)
{
    TNumber bound{};
    return lpctBound == nullptr || (ReadBound(lpctBound, bound) && fnIsInside(value, bound));
}

template <class TNumber>
bool IsWithinBounds(const CSimpleType& type, TNumber value)
{
    return IsInside(type.GetMinInclusive(), value, [](TNumber a, TNumber b) { return a >= b; }) &&
           IsInside(type.GetMaxInclusive(), value, [](TNumber a, TNumber b) { return a <= b; }) &&
           IsInside(type.GetMinExclusive(), value, [](TNumber a, TNumber b) { return a > b; }) &&
           IsInside(type.GetMaxExclusive(), value, [](TNumber a, TNumber b) { return a < b; });
}

template <class TInteger>
bool ReadInteger(const CSimpleType& type, std::string_view svUtf8, TInteger& value)
{
    long long nValue = 0;
    if (type.GetForm() != CSimpleType::Form_Integer || !type.HasBoundsAtMost() || !ReadWhole(svUtf8, nValue))
        return false;
    value = static_cast<TInteger>(nValue);
    const bool bFits = std::is_unsigned_v<TInteger> && sizeof(TInteger) == sizeof(nValue)
                           ? nValue >= 0
                           : static_cast<long long>(value) == nValue;
    return bFits && IsWithinBounds(type, nValue);
}

/// The characters of a short text in ASCII, as the readers of numbers and dates want them.
class CAsciiText
{
public:
    explicit CAsciiText(std::string_view svUtf8)
    {
        if (svUtf8.size() >= std::size(m_szText))
            return;
        unsigned char nAll = 0;
        std::transform(svUtf8.begin(), svUtf8.end(), m_szText,
                       [&nAll](char c)
                       {
                           nAll |= static_cast<unsigned char>(c);
                           return static_cast<wchar_t>(static_cast<unsigned char>(c));
                       });
        m_nLength = nAll < 0x80 ? svUtf8.size() : 0;
        m_szText[m_nLength] = L'\0';
    }

    /// Empty if the text is too long, or beyond ASCII. Ends in a zero.
    std::wstring_view Get() const { return {m_szText, m_nLength}; }

private:
    std::size_t m_nLength = 0;
    wchar_t m_szText[64];
};

template <class TReal>
bool ReadFloat(const CSimpleType& type, std::string_view svUtf8, TReal& value)
{
    if (type.GetForm() != CSimpleType::Form_Float || !type.HasBoundsAtMost())
        return false;
    double dShort = 0;
    if (ReadShortDecimal(svUtf8.data(), svUtf8.data() + svUtf8.size(), dShort))
    {
        value = static_cast<TReal>(dShort);
        return IsWithinBounds(type, dShort);
    }
    const CAsciiText text(svUtf8);
    if (!HasForm(CSimpleType::Form_Float, text.Get()))
        return false;
    const SNumberText<double> number = ReadReal(text.Get().data());
    // Words are no numbers to the reader.
    if (*number.pStop != L'\0' || number.bOutOfRange)
        return false;
    value = static_cast<TReal>(number.value);
    return IsWithinBounds(type, number.value);
}

} // namespace

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, bool& value)
{
    value = svUtf8 == "true" || svUtf8 == "1";
    return type.GetForm() == CSimpleType::Form_Boolean && type.HasBoundsAtMost() &&
           (value || svUtf8 == "false" || svUtf8 == "0");
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, signed char& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, short& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, int& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, long long& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned char& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned short& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned int& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned long long& value)
{
    return ReadInteger(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, float& value)
{
    return ReadFloat(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, double& value)
{
    return ReadFloat(type, svUtf8, value);
}

bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, CDateTime& value)
{
    const CAsciiText text(svUtf8);
    return type.HasBoundsAtMost() && !type.HasBounds() && ReadDate(type, text.Get(), value);
}

} // namespace QvXmlLib9
