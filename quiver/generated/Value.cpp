#include "quiver/generated/Value.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/LexicalForm.h"
#include "quiver/values/Conversions.h"
#include "quiver/values/RealWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace QvXmlLib9
{

namespace
{

/// The text was treated already.
constexpr CWhitespaceUtils::WhitespaceRule s_eNoRule = CWhitespaceUtils::WhitespaceRule_None;

/// A number of 64 bits at most; the text has the form of an integer.
/// @return whether it fits.
template <class TInteger>
bool ReadInteger(std::wstring_view text, TInteger& value)
{
    const bool bNegative = text.front() == L'-';
    if (bNegative || text.front() == L'+')
        text.remove_prefix(1);
    unsigned long long nMagnitude = 0;
    for (const wchar_t c : text)
    {
        const unsigned long long nDigit = static_cast<unsigned long long>(c - L'0');
        if (nMagnitude > (std::numeric_limits<unsigned long long>::max() - nDigit) / 10)
            return false;
        nMagnitude = nMagnitude * 10 + nDigit;
    }
    const unsigned long long nMost = static_cast<unsigned long long>(std::numeric_limits<TInteger>::max());
    if (bNegative)
    {
        const unsigned long long nLeast = std::is_signed_v<TInteger> ? nMost + 1 : 0;
        if (nMagnitude > nLeast)
            return false;
        value = static_cast<TInteger>(0 - nMagnitude);
        return true;
    }
    value = static_cast<TInteger>(nMagnitude);
    return nMagnitude <= nMost;
}

template <class TInteger>
bool Fits(const std::wstring& strText)
{
    TInteger value;
    return ReadInteger(strText, value);
}

/// CDateTime holds years of four digits, and the sign of a zone at its hours alone.
bool ReadFittingDate(CSimpleType::EForm eForm, std::wstring_view text, SDateFields& fields)
{
    return ReadDateFields(eForm, text, fields) && std::abs(fields.nYear) <= 9999 &&
           (fields.nZoneMinutes >= 0 || fields.nZoneMinutes <= -60);
}

CDateTime MakeDate(CSimpleType::EForm eForm, const SDateFields& fields)
{
    const auto nYear = static_cast<short>(fields.nYear);
    const auto nMonth = static_cast<unsigned char>(fields.nMonth);
    const auto nDay = static_cast<unsigned char>(fields.nDay);
    const auto nHour = static_cast<unsigned char>(fields.nHour);
    const auto nMinute = static_cast<unsigned char>(fields.nMinute);
    const auto nSecond = static_cast<unsigned char>(fields.nSecond);
    const auto nMilli = static_cast<unsigned short>(fields.nNanosecond / 1000000);
    const auto nMicro = static_cast<unsigned short>(fields.nNanosecond / 1000 % 1000);
    const auto nNano = static_cast<unsigned short>(fields.nNanosecond % 1000);
    CDateTime value;
    if (eForm == CSimpleType::Form_DateTime)
        value.SetDateTime(nYear, nMonth, nDay, nHour, nMinute, nSecond, nMilli, nMicro, nNano);
    else if (eForm == CSimpleType::Form_Time)
        value.SetTime(nHour, nMinute, nSecond, nMilli, nMicro, nNano);
    else if (eForm == CSimpleType::Form_Date)
        value.SetDate(nYear, nMonth, nDay);
    else if (eForm == CSimpleType::Form_YearMonth)
        value.SetGYearMonth(nYear, nMonth);
    else if (eForm == CSimpleType::Form_Year)
        value.SetGYear(nYear);
    else if (eForm == CSimpleType::Form_MonthDay)
        value.SetGMonthDay(nMonth, nDay);
    else if (eForm == CSimpleType::Form_Day)
        value.SetGDay(nDay);
    else
        value.SetGMonth(nMonth);
    return value;
}

void SetZone(std::wstring_view text, int nMinutes, CDateTime& value)
{
    if (text.back() == L'Z')
        value.SetUTC();
    else
        value.SetTimeZone(static_cast<short>(nMinutes / 60), static_cast<unsigned char>(std::abs(nMinutes) % 60));
}

/// @param text what the fields were read from.
CDateTime MakeZonedDate(CSimpleType::EForm eForm, std::wstring_view text, const SDateFields& fields)
{
    CDateTime value = MakeDate(eForm, fields);
    if (fields.bZone)
        SetZone(text, fields.nZoneMinutes, value);
    return value;
}

bool IsDurationThatFits(const std::wstring& strText)
{
    SDurationFields fields;
    constexpr unsigned long long nMost = std::numeric_limits<std::uint32_t>::max();
    return ReadDurationFields(strText, fields) && fields.nYears <= std::numeric_limits<std::uint16_t>::max() &&
           fields.nMonths <= nMost && fields.nDays <= nMost && fields.nHours <= nMost;
}

/// The first of the formats that gives the number back, the last one in any case.
template <class TNumber, std::size_t nFormats>
std::wstring ShortestText(TNumber value, std::wstring (*pfnToString)(TNumber, const wchar_t*),
                          const wchar_t* const (&formats)[nFormats],
                          TNumber (*pfnFromString)(const std::wstring&, CWhitespaceUtils::WhitespaceRule))
{
    std::wstring strText;
    for (const wchar_t* const lpctFormat : formats)
    {
        strText = pfnToString(value, lpctFormat);
        if (!std::isfinite(value) || pfnFromString(strText, s_eNoRule) == value)
            break;
    }
    return strText;
}

/// The variant prints a number with the digits of its kind; one that needs more goes as text.
template <class TNumber>
bool PrintsExactly(TNumber value, std::wstring (*pfnToString)(TNumber, const wchar_t*),
                   TNumber (*pfnFromString)(const std::wstring&, CWhitespaceUtils::WhitespaceRule))
{
    return !std::isfinite(value) || pfnFromString(pfnToString(value, nullptr), s_eNoRule) == value;
}

} // namespace

bool ReadDate(const CSimpleType& type, std::wstring_view text, CDateTime& value)
{
    SDateFields fields;
    if (!IsDateForm(type.GetForm()) || !HasForm(type.GetForm(), text) || !ReadFittingDate(type.GetForm(), text, fields))
        return false;
    value = MakeZonedDate(type.GetForm(), text, fields);
    return true;
}

bool IsInValueSpace(const CSimpleType& type, const std::wstring& strText)
{
    if (IsDateForm(type.GetForm()))
    {
        SDateFields fields;
        return ReadFittingDate(type.GetForm(), strText, fields);
    }
    if (type.GetForm() == CSimpleType::Form_Duration)
        return IsDurationThatFits(strText);
    switch (type.GetItemType())
    {
    case ItemType_i1:
        return Fits<signed char>(strText);
    case ItemType_i2:
        return Fits<short>(strText);
    case ItemType_i4:
        return Fits<int>(strText);
    case ItemType_i8:
        return Fits<long long>(strText);
    case ItemType_ui1:
        return Fits<unsigned char>(strText);
    case ItemType_ui2:
        return Fits<unsigned short>(strText);
    case ItemType_ui4:
        return Fits<unsigned int>(strText);
    case ItemType_ui8:
        return Fits<unsigned long long>(strText);
    default:
        return true;
    }
}

// --- From text ---------------------------------------------------------------------------------------

void ParseValue(const CSimpleType&, const std::wstring& strText, std::wstring& value)
{
    value = strText;
}

void ParseValue(const CSimpleType&, const std::wstring& strText, bool& value)
{
    value = strText == L"true" || strText == L"1";
}

void ParseValue(const CSimpleType&, const std::wstring& strText, signed char& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, short& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, int& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, long long& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, unsigned char& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, unsigned short& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, unsigned int& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, unsigned long long& value)
{
    ReadInteger(strText, value);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, float& value)
{
    value = CConversions::r4FromString(strText, s_eNoRule);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, double& value)
{
    value = CConversions::r8FromString(strText, s_eNoRule);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, CDecimal& value)
{
    value = CDecimal(strText.c_str());
}

void ParseValue(const CSimpleType&, const std::wstring& strText, CBigInteger& value)
{
    value = CBigInteger(strText.c_str());
}

void ParseValue(const CSimpleType& type, const std::wstring& strText, CDateTime& value)
{
    SDateFields fields;
    ReadDateFields(type.GetForm(), strText, fields);
    value = MakeZonedDate(type.GetForm(), strText, fields);
}

void ParseValue(const CSimpleType&, const std::wstring& strText, CDateTimeSpan& value)
{
    SDurationFields fields;
    ReadDurationFields(strText, fields);
    value.SetDateTimeSpan(static_cast<unsigned short>(fields.nYears), static_cast<unsigned long>(fields.nMonths),
                          static_cast<unsigned long>(fields.nDays), static_cast<unsigned long>(fields.nHours),
                          fields.nMinutes, fields.nSeconds, static_cast<unsigned short>(fields.nNanosecond / 1000000),
                          static_cast<unsigned short>(fields.nNanosecond / 1000 % 1000),
                          static_cast<unsigned short>(fields.nNanosecond % 1000));
    if (fields.bNegative)
        value.Negate();
}

void ParseValue(const CSimpleType& type, const std::wstring& strText, CBinaryData& value)
{
    value = type.GetForm() == CSimpleType::Form_HexBinary ? CConversions::hexBinaryFromString(strText, s_eNoRule)
                                                          : CConversions::base64BinaryFromString(strText, s_eNoRule);
}

std::vector<std::wstring> ListItems(const CSimpleType& type, const std::wstring& strText)
{
    std::vector<std::wstring> items;
    for (const std::wstring_view item : SplitList(strText))
        items.push_back(type.GetItem().Normalize(std::wstring(item)));
    return items;
}

// --- To text -----------------------------------------------------------------------------------------

std::wstring ValueText(const CSimpleType&, const std::wstring& value)
{
    return value;
}

std::wstring ValueText(const CSimpleType&, bool value)
{
    return CConversions::booleanToString(value);
}

std::wstring ValueText(const CSimpleType&, signed char value)
{
    return std::to_wstring(static_cast<int>(value));
}

std::wstring ValueText(const CSimpleType&, short value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, int value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, long long value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, unsigned char value)
{
    return std::to_wstring(static_cast<unsigned int>(value));
}

std::wstring ValueText(const CSimpleType&, unsigned short value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, unsigned int value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, unsigned long long value)
{
    return std::to_wstring(value);
}

std::wstring ValueText(const CSimpleType&, float value)
{
    static constexpr const wchar_t* s_formats[] = {nullptr, L"%.8g", L"%.9g"};
    return ShortestText(value, &CConversions::r4ToString, s_formats, &CConversions::r4FromString);
}

std::wstring ValueText(const CSimpleType&, double value)
{
    static constexpr const wchar_t* s_formats[] = {nullptr, L"%.17g"};
    return ShortestText(value, &CConversions::r8ToString, s_formats, &CConversions::r8FromString);
}

std::wstring ValueText(const CSimpleType&, const CDecimal& value)
{
    return value.ToString();
}

std::wstring ValueText(const CSimpleType&, const CBigInteger& value)
{
    return value.ToString();
}

std::wstring ValueText(const CSimpleType&, const CDateTime& value)
{
    // An object that was never given a value has no text.
    return value.GetType() == CDateTime::dt_yearZero ? std::wstring() : value.ToString();
}

std::wstring ValueText(const CSimpleType&, const CDateTimeSpan& value)
{
    std::wstring strText = value.ToString();
    if (strText.back() == L'P')
        strText += L"T0S";
    return strText;
}

std::wstring ValueText(const CSimpleType& type, const CBinaryData& value)
{
    return type.GetForm() == CSimpleType::Form_HexBinary ? CConversions::hexBinaryToString(value)
                                                         : CConversions::base64BinaryToString(value);
}

void AppendListItem(std::wstring& strText, const std::wstring& strItem)
{
    if (strItem.empty() || std::any_of(strItem.begin(), strItem.end(), CWhitespaceUtils::IsWhiteSpace))
        throw CQvInvalidValueException(
            FormatString(L"The item [%s] of a list is empty or holds white space", strItem.c_str()));
    if (!strText.empty())
        strText += L' ';
    strText += strItem;
}

// --- To a writer -------------------------------------------------------------------------------------

void StoreValue(const CSimpleType&, const std::wstring& value, QvVariant& variant)
{
    variant.SetStringRef(value);
}

void StoreValue(const CSimpleType&, bool value, QvVariant& variant)
{
    variant.SetBoolean(value);
}

void StoreValue(const CSimpleType&, signed char value, QvVariant& variant)
{
    variant.SetI1(static_cast<char>(value));
}

void StoreValue(const CSimpleType&, short value, QvVariant& variant)
{
    variant.SetI2(value);
}

void StoreValue(const CSimpleType&, int value, QvVariant& variant)
{
    variant.SetI4(value);
}

void StoreValue(const CSimpleType&, long long value, QvVariant& variant)
{
    variant.SetI8(value);
}

void StoreValue(const CSimpleType&, unsigned char value, QvVariant& variant)
{
    variant.SetUI1(value);
}

void StoreValue(const CSimpleType&, unsigned short value, QvVariant& variant)
{
    variant.SetUI2(value);
}

void StoreValue(const CSimpleType&, unsigned int value, QvVariant& variant)
{
    variant.SetUI4(value);
}

void StoreValue(const CSimpleType&, unsigned long long value, QvVariant& variant)
{
    variant.SetUI8(value);
}

void StoreValue(const CSimpleType& type, float value, QvVariant& variant)
{
    if (PrintsExactly(value, &CConversions::r4ToString, &CConversions::r4FromString))
        variant.SetR4(value);
    else
        variant.SetString(ValueText(type, value));
}

void StoreValue(const CSimpleType& type, double value, QvVariant& variant)
{
    if (IsShortR8(value) || PrintsExactly(value, &CConversions::r8ToString, &CConversions::r8FromString))
        variant.SetR8(value);
    else
        variant.SetString(ValueText(type, value));
}

void StoreValue(const CSimpleType&, const CDecimal& value, QvVariant& variant)
{
    variant.SetDecimal(value);
}

void StoreValue(const CSimpleType&, const CBigInteger& value, QvVariant& variant)
{
    variant.SetInteger(value);
}

void StoreValue(const CSimpleType& type, const CDateTime& value, QvVariant& variant)
{
    switch (type.GetItemType())
    {
    case ItemType_datetime:
        return variant.SetDateTime(value);
    case ItemType_date:
        return variant.SetDate(value);
    case ItemType_time:
        return variant.SetTime(value);
    case ItemType_yearMonth:
        return variant.SetYearMonth(value);
    case ItemType_monthDay:
        return variant.SetMonthDay(value);
    default:
        return variant.SetString(ValueText(type, value));
    }
}

void StoreValue(const CSimpleType& type, const CDateTimeSpan& value, QvVariant& variant)
{
    std::wstring strText = ValueText(type, value);
    if (strText == value.ToString())
        variant.SetDuration(value);
    else
        variant.SetString(std::move(strText));
}

void StoreValue(const CSimpleType& type, const CBinaryData& value, QvVariant& variant)
{
    if (type.GetForm() == CSimpleType::Form_HexBinary)
        variant.SetHexBinary(value);
    else
        variant.SetBase64Binary(value);
}

// --- UTF-8 -------------------------------------------------------------------------------------------

std::string ToUtf8(std::wstring_view text)
{
    std::string strOut;
    if (!AppendUtf8(strOut, text))
        throw CQvInvalidValueException(L"The text is not well-formed");
    return strOut;
}

std::wstring FromUtf8(std::string_view bytes)
{
    std::wstring strOut;
    if (!AppendUtf8AsUtf16(strOut, bytes))
        throw CQvInvalidValueException(L"The text is not well-formed UTF-8");
    return strOut;
}

std::optional<std::string> ToUtf8(const std::optional<std::wstring>& text)
{
    return text ? std::optional<std::string>(ToUtf8(*text)) : std::nullopt;
}

std::optional<std::wstring> FromUtf8(const std::optional<std::string>& bytes)
{
    return bytes ? std::optional<std::wstring>(FromUtf8(*bytes)) : std::nullopt;
}

std::vector<std::string> ToUtf8(const std::vector<std::wstring>& texts)
{
    std::vector<std::string> out;
    for (const std::wstring& strText : texts)
        out.push_back(ToUtf8(strText));
    return out;
}

std::vector<std::wstring> FromUtf8(const std::vector<std::string>& texts)
{
    std::vector<std::wstring> out;
    for (const std::string& strText : texts)
        out.push_back(FromUtf8(strText));
    return out;
}

std::optional<std::vector<std::string>> ToUtf8(const std::optional<std::vector<std::wstring>>& texts)
{
    return texts ? std::optional(ToUtf8(*texts)) : std::nullopt;
}

std::optional<std::vector<std::wstring>> FromUtf8(const std::optional<std::vector<std::string>>& texts)
{
    return texts ? std::optional(FromUtf8(*texts)) : std::nullopt;
}

} // namespace QvXmlLib9
