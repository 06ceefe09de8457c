#include "quiver/values/Conversions.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/IntegerText.h"
#include "quiver/values/ItemText.h"
#include "quiver/values/RealReader.h"
#include "quiver/values/RealWriter.h"

#include <cstdint>
#include <limits>

namespace QvXmlLib9
{

namespace
{

/// Whether collapsing surely gives the text back as it is. The loop is one that compilers turn into vector
/// instructions; it takes vertical tab and form feed for white space, which only costs time.
bool IsCollapsed(const std::wstring& strText)
{
    if (strText.empty())
        return true;
    const wchar_t* const p = strText.c_str();
    const std::size_t nLength = strText.size();
    int nFaults = (p[0] == L' ') | (p[nLength - 1] == L' ');
    for (std::size_t n = 0; n < nLength; ++n)
    {
        // The text is followed by a zero.
        nFaults |= (p[n] == L' ') & (p[n + 1] == L' ');
        nFaults |= (p[n] >= L'\t') & (p[n] <= L'\r');
    }
    return nFaults == 0;
}

/// Whether the rule surely gives the text back as it is.
bool IsUnchanged(CWhitespaceUtils::WhitespaceRule eRule, const std::wstring& strText)
{
    return eRule == CWhitespaceUtils::WhitespaceRule_None ||
           (eRule == CWhitespaceUtils::WhitespaceRule_Collapse && IsCollapsed(strText));
}

/// A text after its white space rule. Most texts of documents stay as they are, and are not copied then.
class CRuledText
{
public:
    CRuledText(const std::wstring& strText, CWhitespaceUtils::WhitespaceRule eRule)
        : m_pText(&strText)
    {
        if (IsUnchanged(eRule, strText))
            return;
        m_strRuled = CWhitespaceUtils::ApplyRule(eRule, strText);
        m_pText = &m_strRuled;
    }
    CRuledText(const CRuledText&) = delete;
    CRuledText& operator=(const CRuledText&) = delete;

    const std::wstring& Get() const { return *m_pText; }
    const wchar_t* c_str() const { return m_pText->c_str(); }

private:
    std::wstring m_strRuled;
    const std::wstring* m_pText;
};

[[noreturn]] void ThrowTooLarge(const wchar_t* lpctText, const wchar_t* lpctItem)
{
    throw CQvInvalidValueException(FormatString(L"The value [%s] is to large to fit in a %s", lpctText, lpctItem));
}

[[noreturn]] void ThrowNoNumber(const wchar_t* lpctText, const wchar_t* lpctItem)
{
    throw CQvInvalidValueException(FormatString(L"The value [%s] can not be converted to a %s", lpctText, lpctItem));
}

/// Whether the text as given is a number as a whole, or up to a zero element, which ends text as well. Rules change
/// white space only, so it is the same number after each of them.
template <class TNumber>
bool IsNumberUnderAnyRule(const SNumberText<TNumber>& number, CWhitespaceUtils::WhitespaceRule eRule)
{
    return *number.pStop == 0 && !number.bOutOfRange && eRule >= CWhitespaceUtils::WhitespaceRule_None &&
           eRule <= CWhitespaceUtils::WhitespaceRule_Collapse;
}

template <class TInteger>
TInteger IntegerFromString(const std::wstring& strValue, CWhitespaceUtils::WhitespaceRule eRule,
                           const wchar_t* lpctItem)
{
    SNumberText<TInteger> number = ReadInteger<TInteger>(strValue.c_str());
    if (IsNumberUnderAnyRule(number, eRule))
        return number.value;

    const CRuledText text(strValue, eRule);
    number = ReadInteger<TInteger>(text.c_str());
    if (number.bOutOfRange)
        ThrowTooLarge(text.c_str(), lpctItem);
    if (*number.pStop != 0)
        ThrowNoNumber(text.c_str(), lpctItem);
    return number.value;
}

/// @param wide the value read from `strValue` as the 32-bit kind.
template <class TNarrow, class TWide>
TNarrow Narrow(TWide wide, const std::wstring& strValue, const wchar_t* lpctItem)
{
    using Limits = std::numeric_limits<TNarrow>;
    if (wide < Limits::min() || wide > Limits::max())
        ThrowTooLarge(strValue.c_str(), lpctItem);
    return static_cast<TNarrow>(wide);
}

double RealFromString(const std::wstring& strValue, CWhitespaceUtils::WhitespaceRule eRule, const wchar_t* lpctItem)
{
    using Limits = std::numeric_limits<double>;
    SNumberText<double> number = ReadReal(strValue.c_str());
    if (IsNumberUnderAnyRule(number, eRule) && !strValue.empty())
        return number.value;

    const CRuledText text(strValue, eRule);
    const std::wstring& strText = text.Get();
    if (strText.empty() || strText == L"NaN" || strText == L"1.#QNAN" || strText == L"-NAN")
        return Limits::quiet_NaN();
    if (strText == L"-INF")
        return -Limits::infinity();
    if (strText == L"INF")
        return Limits::infinity();
    number = ReadReal(text.c_str());
    if (*number.pStop != 0)
        ThrowNoNumber(text.c_str(), lpctItem);
    return number.value;
}

/// The text that an appending function makes of a value.
template <class TAppend, class... TArguments>
std::wstring TextBy(TAppend pfnAppend, TArguments... arguments)
{
    std::wstring strText;
    pfnAppend(strText, arguments...);
    return strText;
}

std::wstring TwoDigitsToString(const wchar_t* lpctPrefix, unsigned char byValue)
{
    std::wstring strText = lpctPrefix;
    if (byValue < 10)
        strText += L'0';
    AppendUnsigned(strText, byValue);
    return strText;
}

using PFNParseDate = void (CDateTime::*)(const wchar_t*);

/// The parser takes the kind of date from the text, so the same one serves every kind without a time.
CDateTime DateFromString(const std::wstring& strValue, CWhitespaceUtils::WhitespaceRule eRule, PFNParseDate pfnParse)
{
    const CRuledText text(strValue, eRule);
    CDateTime date;
    (date.*pfnParse)(text.c_str());
    return date;
}

/// Compares with a lower-case word in ASCII, up to a zero element of the text.
bool IsWord(const wchar_t* p, const wchar_t* lpctWord)
{
    for (; *lpctWord != 0; ++p, ++lpctWord)
    {
        const wchar_t c = *p >= L'A' && *p <= L'Z' ? static_cast<wchar_t>(*p - L'A' + L'a') : *p;
        if (c != *lpctWord)
            return false;
    }
    return *p == 0;
}

} // namespace

std::wstring CConversions::hexBinaryToString(const CBinaryData& value)
{
    return value.GetAsHexString();
}

CBinaryData CConversions::hexBinaryFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    CBinaryData data;
    data.SetAsHexString(text.c_str());
    return data;
}

std::wstring CConversions::base64BinaryToString(const CBinaryData& value)
{
    return value.GetAsBase64();
}

CBinaryData CConversions::base64BinaryFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    CBinaryData data;
    data.SetAsBase64(text.c_str());
    return data;
}

std::wstring CConversions::i1ToString(char value)
{
    return TextBy(&AppendI1, value);
}

char CConversions::i1FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return static_cast<char>(Narrow<signed char>(i4FromString(value, rule), value, L"i1"));
}

std::wstring CConversions::i2ToString(short value)
{
    return TextBy(&AppendInteger, value);
}

short CConversions::i2FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return Narrow<short>(i4FromString(value, rule), value, L"i2");
}

std::wstring CConversions::i4ToString(long value)
{
    return TextBy(&AppendI4, value);
}

long CConversions::i4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return IntegerFromString<std::int32_t>(value, rule, L"i4");
}

std::wstring CConversions::i8ToString(__int64 value)
{
    return TextBy(&AppendInteger, value);
}

__int64 CConversions::i8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return IntegerFromString<std::int64_t>(value, rule, L"i8");
}

std::wstring CConversions::ui1ToString(unsigned char value)
{
    return TextBy(&AppendUnsigned, value);
}

unsigned char CConversions::ui1FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return Narrow<unsigned char>(ui4FromString(value, rule), value, L"ui1");
}

std::wstring CConversions::ui2ToString(unsigned short value)
{
    return TextBy(&AppendUnsigned, value);
}

unsigned short CConversions::ui2FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return Narrow<unsigned short>(ui4FromString(value, rule), value, L"ui2");
}

std::wstring CConversions::ui4ToString(unsigned long value)
{
    return TextBy(&AppendUI4, value);
}

unsigned long CConversions::ui4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return IntegerFromString<std::uint32_t>(value, rule, L"ui4");
}

std::wstring CConversions::ui8ToString(unsigned __int64 value)
{
    return TextBy(&AppendUnsigned, value);
}

unsigned __int64 CConversions::ui8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return IntegerFromString<std::uint64_t>(value, rule, L"ui8");
}

std::wstring CConversions::r4ToString(float value, const wchar_t* format)
{
    return TextBy(&AppendR4, value, format);
}

float CConversions::r4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    // Where the double is too large for a float, the cast gives an infinity only under IEC 60559.
    static_assert(std::numeric_limits<float>::is_iec559);
    return static_cast<float>(RealFromString(value, rule, L"r4"));
}

std::wstring CConversions::r8ToString(double value, const wchar_t* format)
{
    return TextBy(&AppendR8, value, format);
}

double CConversions::r8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return RealFromString(value, rule, L"r8");
}

std::wstring CConversions::durationToString(const CDateTimeSpan& value)
{
    return value.ToString();
}

CDateTimeSpan CConversions::durationFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    CDateTimeSpan span;
    span.ParseXSDDuration(text.c_str());
    return span;
}

std::wstring CConversions::yearMonthToString(const CDateTime& value)
{
    return value.ToString(L"s");
}

CDateTime CConversions::yearMonthFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDate);
}

std::wstring CConversions::monthDayToString(const CDateTime& value)
{
    return value.ToString(L"s");
}

CDateTime CConversions::monthDayFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDate);
}

std::wstring CConversions::dateToString(const CDateTime& value)
{
    return value.ToString(L"s");
}

CDateTime CConversions::dateFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDate);
}

std::wstring CConversions::datetimeToString(const CDateTime& value)
{
    return value.ToString(L"s");
}

CDateTime CConversions::datetimeFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDateTime);
}

std::wstring CConversions::timeToString(const CDateTime& value)
{
    return value.ToString(L"s");
}

CDateTime CConversions::timeFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDTime);
}

std::wstring CConversions::yearToString(unsigned short value)
{
    return TextBy(&AppendUnsigned, value);
}

unsigned short CConversions::yearFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return static_cast<unsigned short>(DateFromString(value, rule, &CDateTime::ParseXSDDate).GetYear());
}

std::wstring CConversions::monthToString(unsigned char value)
{
    return TwoDigitsToString(L"--", value);
}

unsigned char CConversions::monthFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDate).GetMonth();
}

std::wstring CConversions::dayToString(unsigned char value)
{
    return TwoDigitsToString(L"---", value);
}

unsigned char CConversions::dayFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    return DateFromString(value, rule, &CDateTime::ParseXSDDate).GetDay();
}

std::wstring CConversions::charToString(wchar_t value)
{
    return ToUtf16Units(std::wstring_view(&value, 1));
}

wchar_t CConversions::charFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    if (GetUtf16Length(text.Get()) != 1)
        throw CQvInvalidValueException(FormatString(
            L"The value [%s] can not be a char as it is either empty of greater than 1 char long", text.c_str()));
    return text.Get().front();
}

std::wstring CConversions::stringToString(const std::wstring& value)
{
    return ToUtf16Units(value);
}

std::wstring CConversions::stringFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    if (IsUnchanged(rule, value))
        return ToUtf16Units(value);
    return ToUtf16Units(CWhitespaceUtils::ApplyRule(rule, value));
}

std::wstring CConversions::booleanToString(bool value)
{
    return std::wstring(WordOf(value));
}

bool CConversions::booleanFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    if (IsWord(text.c_str(), L"true") || IsWord(text.c_str(), L"1"))
        return true;
    if (IsWord(text.c_str(), L"false") || IsWord(text.c_str(), L"0"))
        return false;
    throw CQvInvalidValueException(FormatString(L"A Boolean Value read from an XML document was invalid [%s]. "
                                                L"Valid values are 'true', 'false', '1', or '0'",
                                                value.c_str()));
}

std::wstring CConversions::decimalToString(const CDecimal& value, const wchar_t* format)
{
    return format != nullptr ? value.ToString(ReadInteger<std::int32_t>(format).value) : value.ToString();
}

CDecimal CConversions::decimalFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    return CDecimal(text.c_str());
}

std::wstring CConversions::integerToString(const CBigInteger& value)
{
    return value.ToString();
}

CBigInteger CConversions::integerFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
{
    const CRuledText text(value, rule);
    return CBigInteger(text.c_str());
}

} // namespace QvXmlLib9
