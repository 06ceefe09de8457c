#include "tools/quiver-gen/schema/Values.h"

#include "quiver/values/NearestReal.h"
#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace quiver_gen::schema
{

namespace
{

constexpr bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

EComparison Compare(int nOrder)
{
    return nOrder < 0 ? EComparison::Less : nOrder > 0 ? EComparison::Greater : EComparison::Equal;
}

template <typename TValue>
EComparison CompareOrdered(const TValue& a, const TValue& b)
{
    return a < b ? EComparison::Less : b < a ? EComparison::Greater : EComparison::Equal;
}

/// Takes a text apart from left to right.
class CScanner
{
public:
    explicit CScanner(std::string_view svText)
        : m_svRest(svText)
    {
    }

    bool IsAtEnd() const { return m_svRest.empty(); }
    bool Take(char ch)
    {
        if (m_svRest.empty() || m_svRest.front() != ch)
            return false;
        m_svRest.remove_prefix(1);
        return true;
    }
    std::string_view TakeDigits()
    {
        std::size_t n = 0;
        while (n < m_svRest.size() && IsDigit(m_svRest[n]))
            ++n;
        const std::string_view svDigits = m_svRest.substr(0, n);
        m_svRest.remove_prefix(n);
        return svDigits;
    }
    /// A number of exactly two digits in a range; -1 if there is none.
    int TakeTwo(int nLeast, int nMost)
    {
        const std::string_view svDigits = m_svRest.substr(0, 2);
        if (svDigits.size() != 2 || !IsDigit(svDigits[0]) || !IsDigit(svDigits[1]))
            return -1;
        m_svRest.remove_prefix(2);
        const int nValue = (svDigits[0] - '0') * 10 + svDigits[1] - '0';
        return nValue < nLeast || nValue > nMost ? -1 : nValue;
    }

private:
    std::string_view m_svRest;
};

// --- Decimal numbers

struct SDecimal
{
    bool bNegative = false;
    std::string_view svInteger;  ///< without leading zeros
    std::string_view svFraction; ///< without trailing zeros

    bool IsZero() const { return svInteger.empty() && svFraction.empty(); }
};

std::optional<SDecimal> ParseDecimal(std::string_view svText)
{
    SDecimal decimal;
    CScanner scanner(svText);
    decimal.bNegative = scanner.Take('-');
    if (!decimal.bNegative)
        scanner.Take('+');
    decimal.svInteger = scanner.TakeDigits();
    if (scanner.Take('.'))
        decimal.svFraction = scanner.TakeDigits();
    if (!scanner.IsAtEnd() || (decimal.svInteger.empty() && decimal.svFraction.empty()))
        return std::nullopt;
    decimal.svInteger.remove_prefix(std::min(decimal.svInteger.find_first_not_of('0'), decimal.svInteger.size()));
    // No digit but zero gives npos, and npos + 1 is 0.
    decimal.svFraction = decimal.svFraction.substr(0, decimal.svFraction.find_last_not_of('0') + 1);
    return decimal;
}

int CompareDecimals(const SDecimal& a, const SDecimal& b)
{
    if (a.IsZero() && b.IsZero())
        return 0;
    const bool bNegativeA = a.bNegative && !a.IsZero();
    const bool bNegativeB = b.bNegative && !b.IsZero();
    if (bNegativeA != bNegativeB)
        return bNegativeA ? -1 : 1;
    int nOrder = 0;
    if (a.svInteger.size() != b.svInteger.size())
        nOrder = a.svInteger.size() < b.svInteger.size() ? -1 : 1;
    else if (nOrder = a.svInteger.compare(b.svInteger); nOrder == 0)
        nOrder = a.svFraction.compare(b.svFraction);
    return bNegativeA ? -nOrder : nOrder;
}

std::string GetDecimalKey(const SDecimal& decimal)
{
    return std::string(decimal.bNegative && !decimal.IsZero() ? "-" : "") + std::string(decimal.svInteger) + "." +
           std::string(decimal.svFraction);
}

bool IsInteger(std::string_view svText)
{
    return svText.find('.') == std::string_view::npos && ParseDecimal(svText);
}

// --- Floating point

bool IsFloating(std::string_view svText)
{
    if (svText == "INF" || svText == "-INF" || svText == "NaN")
        return true;
    const std::size_t nExponent = svText.find_first_of("eE");
    if (!ParseDecimal(svText.substr(0, nExponent)))
        return false;
    return nExponent == std::string_view::npos || IsInteger(svText.substr(nExponent + 1));
}

template <typename TFloat>
TFloat ParseFloating(std::string_view svText)
{
    if (svText == "NaN")
        return std::numeric_limits<TFloat>::quiet_NaN();
    const bool bNegative = svText.front() == '-';
    if (bNegative || svText.front() == '+')
        svText.remove_prefix(1);
    const TFloat value =
        svText == "INF" ? std::numeric_limits<TFloat>::infinity() : QvXmlLib9::GetNearestReal<TFloat>(svText);
    return bNegative ? -value : value;
}

template <typename TFloat>
EComparison CompareFloating(std::string_view svA, std::string_view svB)
{
    const auto a = ParseFloating<TFloat>(svA);
    const auto b = ParseFloating<TFloat>(svB);
    return std::isnan(a) || std::isnan(b) ? EComparison::Unknown : CompareOrdered(a, b);
}

template <typename TFloat>
std::string GetFloatingKey(std::string_view svText)
{
    const auto value = ParseFloating<TFloat>(svText);
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return value == 0 ? "0" : std::string(buffer.data(), result.ptr);
}

// --- Dates

/// A point in time, or a recurring one as if it fell into the year 1972.
struct SInstant
{
    std::int64_t nSeconds = 0;     ///< since the year 0, in the zone it is written in or in UTC
    std::string_view svFraction{}; ///< of the second, without trailing zeros
    bool bZone = false;

    friend bool operator<(const SInstant& a, const SInstant& b)
    {
        return a.nSeconds != b.nSeconds ? a.nSeconds < b.nSeconds : a.svFraction < b.svFraction;
    }
};

bool IsLeapYear(std::int64_t nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

int GetDaysOfMonth(std::int64_t nYear, int nMonth)
{
    constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return nMonth == 2 && IsLeapYear(nYear) ? 29 : days[static_cast<std::size_t>(nMonth - 1)];
}

/// Days since the first of March of the year 0, in the Gregorian calendar without end.
std::int64_t GetDayNumber(std::int64_t nYear, int nMonth, int nDay)
{
    nYear -= nMonth <= 2 ? 1 : 0;
    const std::int64_t nEra = (nYear >= 0 ? nYear : nYear - 399) / 400;
    const std::int64_t nYearOfEra = nYear - nEra * 400;
    const std::int64_t nDayOfYear = (153 * (nMonth + (nMonth > 2 ? -3 : 9)) + 2) / 5 + nDay - 1;
    return nEra * 146097 + nYearOfEra * 365 + nYearOfEra / 4 - nYearOfEra / 100 + nDayOfYear;
}

/// The parts that a type of the date family is written with.
struct SDateParts
{
    bool bYear;
    bool bMonth;
    bool bDay;
    bool bTime;
};

SDateParts GetDateParts(EBuiltin ePrimitive)
{
    using E = EBuiltin;
    const auto isOneOf = [ePrimitive](std::initializer_list<E> types)
    {
        return std::find(types.begin(), types.end(), ePrimitive) != types.end();
    };
    return {isOneOf({E::DateTime, E::Date, E::GYearMonth, E::GYear}),
            isOneOf({E::DateTime, E::Date, E::GYearMonth, E::GMonthDay, E::GMonth}),
            isOneOf({E::DateTime, E::Date, E::GMonthDay, E::GDay}), isOneOf({E::DateTime, E::Time})};
}

constexpr std::int64_t s_nSecondsOfDay = 86400;

/// A year of at least four digits; years that do not fit are kept to what calculation bears.
bool TakeYear(CScanner& scanner, std::int64_t& nYear)
{
    const bool bNegative = scanner.Take('-');
    const std::string_view svDigits = scanner.TakeDigits();
    if (svDigits.size() < 4 || (svDigits.size() > 4 && svDigits.front() == '0'))
        return false;
    std::uint64_t nValue = 0;
    ParseCount(svDigits, nValue);
    constexpr std::uint64_t nLargest = 100'000'000'000;
    nYear = static_cast<std::int64_t>(std::min(nValue, nLargest)) * (bNegative ? -1 : 1);
    return nValue != 0;
}

bool TakeTime(CScanner& scanner, SInstant& instant)
{
    const int nHour = scanner.TakeTwo(0, 24);
    if (nHour < 0 || !scanner.Take(':'))
        return false;
    const int nMinute = scanner.TakeTwo(0, 59);
    if (nMinute < 0 || !scanner.Take(':'))
        return false;
    const int nSecond = scanner.TakeTwo(0, 59);
    if (nSecond < 0)
        return false;
    if (scanner.Take('.'))
    {
        const std::string_view svDigits = scanner.TakeDigits();
        if (svDigits.empty())
            return false;
        instant.svFraction = svDigits.substr(0, svDigits.find_last_not_of('0') + 1);
    }
    instant.nSeconds += nHour * 3600 + nMinute * 60 + nSecond;
    return nHour < 24 || (nMinute == 0 && nSecond == 0 && instant.svFraction.empty());
}

bool TakeZone(CScanner& scanner, SInstant& instant)
{
    if (scanner.IsAtEnd())
        return true;
    instant.bZone = true;
    if (scanner.Take('Z'))
        return scanner.IsAtEnd();
    const bool bWest = scanner.Take('-');
    if (!bWest && !scanner.Take('+'))
        return false;
    const int nHours = scanner.TakeTwo(0, 14);
    if (nHours < 0 || !scanner.Take(':'))
        return false;
    const int nMinutes = scanner.TakeTwo(0, nHours == 14 ? 0 : 59);
    if (nMinutes < 0)
        return false;
    const int nOffset = (nHours * 60 + nMinutes) * 60;
    instant.nSeconds += bWest ? nOffset : -nOffset;
    return scanner.IsAtEnd();
}

std::optional<SInstant> ParseInstant(EBuiltin ePrimitive, std::string_view svText)
{
    const SDateParts parts = GetDateParts(ePrimitive);
    CScanner scanner(svText);
    SInstant instant;
    std::int64_t nYear = 1972;
    int nMonth = 1;
    int nDay = 1;
    if (parts.bYear && !TakeYear(scanner, nYear))
        return std::nullopt;
    // What lies to the left of the first part is marked by hyphens.
    if (parts.bMonth)
    {
        if (!scanner.Take('-') || (!parts.bYear && !scanner.Take('-')))
            return std::nullopt;
        nMonth = scanner.TakeTwo(1, 12);
    }
    if (parts.bDay)
    {
        const bool bFirst = !parts.bMonth;
        if (nMonth < 0 || !scanner.Take('-') || (bFirst && !(scanner.Take('-') && scanner.Take('-'))))
            return std::nullopt;
        nDay = scanner.TakeTwo(1, GetDaysOfMonth(nYear, nMonth));
    }
    if (nMonth < 0 || nDay < 0)
        return std::nullopt;
    instant.nSeconds = GetDayNumber(nYear, nMonth, nDay) * s_nSecondsOfDay;
    if (parts.bTime && ((parts.bYear && !scanner.Take('T')) || !TakeTime(scanner, instant)))
        return std::nullopt;
    if (!TakeZone(scanner, instant))
        return std::nullopt;
    return instant;
}

EComparison CompareInstants(SInstant a, SInstant b)
{
    if (a.bZone == b.bZone)
        return CompareOrdered(a, b);
    // Without a zone, a value may lie up to 14 hours to both sides.
    constexpr std::int64_t nUncertain = 14 * 3600;
    SInstant& open = a.bZone ? b : a;
    open.nSeconds -= nUncertain;
    const EComparison eEarly = CompareOrdered(a, b);
    open.nSeconds += 2 * nUncertain;
    return eEarly == CompareOrdered(a, b) ? eEarly : EComparison::Unknown;
}

// --- Durations

struct SDuration
{
    std::int64_t nMonths = 0;
    std::int64_t nSeconds = 0;
    std::string_view svFraction{};
    bool bNegative = false;
};

std::int64_t ClampCount(std::string_view svDigits)
{
    std::uint64_t nValue = 0;
    ParseCount(svDigits, nValue);
    constexpr std::uint64_t nLargest = 1'000'000'000'000;
    return static_cast<std::int64_t>(std::min(nValue, nLargest));
}

/// Numbers followed by designators in their order, each at most once.
bool TakeFields(CScanner& scanner, std::string_view svDesignators, std::string_view& svPending,
                std::array<std::int64_t, 6>& fields, std::size_t nFirst, bool& bAny)
{
    std::size_t nNext = 0;
    while (true)
    {
        if (svPending.empty())
            svPending = scanner.TakeDigits();
        if (svPending.empty())
            return true;
        while (nNext < svDesignators.size() && !scanner.Take(svDesignators[nNext]))
            ++nNext;
        if (nNext == svDesignators.size())
            return false;
        fields[nFirst + nNext++] = ClampCount(svPending);
        svPending = {};
        bAny = true;
    }
}

bool TakeTimeFields(CScanner& scanner, std::array<std::int64_t, 6>& fields, SDuration& duration)
{
    bool bAny = false;
    std::string_view svPending;
    if (TakeFields(scanner, "HMS", svPending, fields, 3, bAny))
        return bAny && scanner.IsAtEnd();
    // Only seconds have a fraction.
    if (svPending.empty() || !scanner.Take('.'))
        return false;
    const std::string_view svDigits = scanner.TakeDigits();
    if (svDigits.empty() || !scanner.Take('S'))
        return false;
    fields[5] = ClampCount(svPending);
    duration.svFraction = svDigits.substr(0, svDigits.find_last_not_of('0') + 1);
    return scanner.IsAtEnd();
}

std::optional<SDuration> ParseDuration(std::string_view svText)
{
    CScanner scanner(svText);
    SDuration duration;
    duration.bNegative = scanner.Take('-');
    std::array<std::int64_t, 6> fields{};
    std::string_view svPending;
    bool bAny = false;
    if (!scanner.Take('P') || !TakeFields(scanner, "YMD", svPending, fields, 0, bAny))
        return std::nullopt;
    if (scanner.Take('T'))
    {
        if (!TakeTimeFields(scanner, fields, duration))
            return std::nullopt;
    }
    else if (!bAny || !scanner.IsAtEnd())
        return std::nullopt;
    duration.nMonths = fields[0] * 12 + fields[1];
    duration.nSeconds = fields[2] * s_nSecondsOfDay + fields[3] * 3600 + fields[4] * 60 + fields[5];
    return duration;
}

/// Where a duration ends that starts with a month.
std::int64_t GetEnd(const SDuration& duration, std::int64_t nYear, int nMonth)
{
    const std::int64_t nSign = duration.bNegative ? -1 : 1;
    const std::int64_t nMonths = nYear * 12 + nMonth - 1 + nSign * duration.nMonths;
    const std::int64_t nEndYear = nMonths >= 0 ? nMonths / 12 : -((11 - nMonths) / 12);
    const auto nEndMonth = static_cast<int>(nMonths - nEndYear * 12) + 1;
    return GetDayNumber(nEndYear, nEndMonth, 1) * s_nSecondsOfDay + nSign * duration.nSeconds;
}

/// Months differ in length, so durations are compared from four starts; where these disagree, neither is longer.
EComparison CompareDurations(const SDuration& a, const SDuration& b)
{
    constexpr std::array<std::pair<std::int64_t, int>, 4> starts{{{1696, 9}, {1697, 2}, {1903, 3}, {1903, 7}}};
    std::optional<EComparison> result;
    for (const auto& [nYear, nMonth] : starts)
    {
        const std::int64_t nEndA = GetEnd(a, nYear, nMonth);
        const std::int64_t nEndB = GetEnd(b, nYear, nMonth);
        EComparison eOrder = CompareOrdered(nEndA, nEndB);
        if (eOrder == EComparison::Equal && a.bNegative == b.bNegative)
            eOrder = Compare(a.svFraction.compare(b.svFraction) * (a.bNegative ? -1 : 1));
        if (result && *result != eOrder)
            return EComparison::Unknown;
        result = eOrder;
    }
    return *result;
}

// --- Others

bool IsHexBinary(std::string_view svText)
{
    return svText.size() % 2 == 0 && svText.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string StripSpaces(std::string_view svText)
{
    std::string strResult;
    std::copy_if(svText.begin(), svText.end(), std::back_inserter(strResult), [](char ch) { return !IsSpace(ch); });
    return strResult;
}

bool IsBase64(std::string_view svText)
{
    const std::string strDigits = StripSpaces(svText);
    const std::size_t nEnd =
        std::min(strDigits.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"),
                 strDigits.size());
    const std::size_t nPadding = strDigits.size() - nEnd;
    return strDigits.size() % 4 == 0 && nPadding <= 2 && strDigits.find_first_not_of('=', nEnd) == std::string::npos;
}

bool IsLanguage(std::string_view svText)
{
    constexpr std::size_t nMost = 8;
    std::size_t nLength = 0;
    bool bFirst = true;
    for (const char ch : svText)
    {
        const bool bLetter = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
        if (ch == '-' && nLength > 0)
        {
            nLength = 0;
            bFirst = false;
        }
        else if ((!bLetter && (bFirst || !IsDigit(ch))) || ++nLength > nMost)
            return false;
    }
    return nLength > 0;
}

bool IsDeclaredQName(std::string_view svText, const SNamespaceScope* pScope)
{
    if (!IsQName(svText))
        return false;
    const std::size_t nColon = svText.find(':');
    return nColon == std::string_view::npos || (pScope && pScope->Find(svText.substr(0, nColon)));
}

std::string GetQNameKey(std::string_view svText, const SNamespaceScope* pScope)
{
    const std::size_t nColon = svText.find(':');
    const std::string_view svPrefix = nColon == std::string_view::npos ? std::string_view() : svText.substr(0, nColon);
    const std::string* pUri = pScope ? pScope->Find(svPrefix) : nullptr;
    return (pUri ? *pUri : std::string()) + " " +
           std::string(nColon == std::string_view::npos ? svText : svText.substr(nColon + 1));
}

} // namespace

std::string ApplyWhiteSpace(std::string_view svText, EWhiteSpace eWhiteSpace)
{
    switch (eWhiteSpace)
    {
    case EWhiteSpace::Preserve:
        return std::string(svText);
    case EWhiteSpace::Replace:
        return ReplaceSpaces(svText);
    case EWhiteSpace::Collapse:
        break;
    }
    return Collapse(svText);
}

bool IsLexical(EBuiltin eBuiltin, std::string_view svText, const SNamespaceScope* pScope)
{
    using E = EBuiltin;
    switch (eBuiltin)
    {
    case E::None:
    case E::AnyType:
    case E::AnySimpleType:
    case E::String:
    case E::AnyURI:
    case E::NormalizedString:
    case E::Token:
    case E::NMTOKENS:
    case E::IDREFS:
    case E::ENTITIES:
        return true;
    case E::Boolean:
        return svText == "true" || svText == "false" || svText == "1" || svText == "0";
    case E::Decimal:
        return ParseDecimal(svText).has_value();
    case E::Float:
    case E::Double:
        return IsFloating(svText);
    case E::Duration:
        return ParseDuration(svText).has_value();
    case E::DateTime:
    case E::Time:
    case E::Date:
    case E::GYearMonth:
    case E::GYear:
    case E::GMonthDay:
    case E::GDay:
    case E::GMonth:
        return ParseInstant(eBuiltin, svText).has_value();
    case E::HexBinary:
        return IsHexBinary(svText);
    case E::Base64Binary:
        return IsBase64(svText);
    case E::QName:
    case E::NOTATION:
        return IsDeclaredQName(svText, pScope);
    case E::Language:
        return IsLanguage(svText);
    case E::NMTOKEN:
        return IsNmtoken(svText);
    case E::Name:
        return IsName(svText);
    case E::NCName:
    case E::ID:
    case E::IDREF:
    case E::ENTITY:
        return IsNCName(svText);
    case E::Integer:
    case E::NonPositiveInteger:
    case E::NegativeInteger:
    case E::Long:
    case E::Int:
    case E::Short:
    case E::Byte:
    case E::NonNegativeInteger:
    case E::UnsignedLong:
    case E::UnsignedInt:
    case E::UnsignedShort:
    case E::UnsignedByte:
    case E::PositiveInteger:
        break;
    }
    return IsInteger(svText);
}

EComparison CompareValues(EBuiltin ePrimitive, std::string_view svA, std::string_view svB)
{
    // A value of the wrong form is reported where it stands; here it is like no other.
    if (!IsLexical(ePrimitive, svA, nullptr) || !IsLexical(ePrimitive, svB, nullptr))
        return EComparison::Unknown;
    if (ePrimitive == EBuiltin::Decimal)
        return Compare(CompareDecimals(*ParseDecimal(svA), *ParseDecimal(svB)));
    if (ePrimitive == EBuiltin::Float)
        return CompareFloating<float>(svA, svB);
    if (ePrimitive == EBuiltin::Double)
        return CompareFloating<double>(svA, svB);
    if (ePrimitive == EBuiltin::Duration)
        return CompareDurations(*ParseDuration(svA), *ParseDuration(svB));
    const SDateParts parts = GetDateParts(ePrimitive);
    if (parts.bYear || parts.bMonth || parts.bDay || parts.bTime)
        return CompareInstants(*ParseInstant(ePrimitive, svA), *ParseInstant(ePrimitive, svB));
    return svA == svB ? EComparison::Equal : EComparison::Unknown;
}

std::string GetValueKey(EBuiltin ePrimitive, std::string_view svText, const SNamespaceScope* pScope)
{
    using E = EBuiltin;
    if (!IsLexical(ePrimitive, svText, pScope))
        return std::string(svText);
    if (ePrimitive == E::Decimal)
        return GetDecimalKey(*ParseDecimal(svText));
    if (ePrimitive == E::Float)
        return GetFloatingKey<float>(svText);
    if (ePrimitive == E::Double)
        return GetFloatingKey<double>(svText);
    if (ePrimitive == E::Boolean)
        return svText == "true" || svText == "1" ? "1" : "0";
    if (ePrimitive == E::QName || ePrimitive == E::NOTATION)
        return GetQNameKey(svText, pScope);
    if (ePrimitive == E::Base64Binary)
        return StripSpaces(svText);
    if (ePrimitive == E::Duration)
    {
        const SDuration duration = *ParseDuration(svText);
        const bool bNone = duration.nMonths == 0 && duration.nSeconds == 0 && duration.svFraction.empty();
        return (duration.bNegative && !bNone ? "-" : "") + std::to_string(duration.nMonths) + " " +
               std::to_string(duration.nSeconds) + "." + std::string(duration.svFraction);
    }
    std::string strKey(svText);
    if (ePrimitive == E::HexBinary)
        std::transform(strKey.begin(), strKey.end(), strKey.begin(),
                       [](char ch) { return ch >= 'a' && ch <= 'f' ? static_cast<char>(ch - 'a' + 'A') : ch; });
    const SDateParts parts = GetDateParts(ePrimitive);
    if (parts.bYear || parts.bMonth || parts.bDay || parts.bTime)
    {
        const SInstant instant = *ParseInstant(ePrimitive, svText);
        strKey = std::to_string(instant.nSeconds) + "." + std::string(instant.svFraction) + (instant.bZone ? "Z" : "");
    }
    return strKey;
}

std::uint64_t GetValueLength(EBuiltin ePrimitive, std::string_view svText)
{
    if (ePrimitive == EBuiltin::HexBinary)
        return svText.size() / 2;
    if (ePrimitive != EBuiltin::Base64Binary)
        return CountCodePoints(svText);
    const std::string strDigits = StripSpaces(svText);
    const auto nPadding = static_cast<std::size_t>(std::count(strDigits.begin(), strDigits.end(), '='));
    return strDigits.size() / 4 * 3 - nPadding;
}

SDigits CountDigits(std::string_view svDecimal)
{
    const SDecimal decimal = *ParseDecimal(svDecimal);
    return {std::max<std::uint64_t>(decimal.svInteger.size() + decimal.svFraction.size(), 1),
            decimal.svFraction.size()};
}

} // namespace quiver_gen::schema
