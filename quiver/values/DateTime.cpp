#include "quiver/values/DateTime.h"

#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/platform/Platform.h"
#include "quiver/foundation/platform/SystemTimeFields.h"
#include "quiver/values/DateTimeSpan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <string_view>

namespace QvXmlLib9
{

namespace
{

constexpr int s_nMinYear = -9999;
constexpr int s_nMaxYear = 9999;
constexpr std::array<int, 13> s_daysBeforeMonth = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
constexpr std::array<int, 12> s_daysInMonth = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

using DTType = CDateTime::DTType;
using DTCompareResult = CDateTime::DTCompareResult;

/// What a kind of value is called and which groups of fields it has.
struct STypeTraits
{
    const wchar_t* lpctName;
    bool bYear;
    bool bMonth;
    bool bDay;
    bool bTime;
};

constexpr std::array<STypeTraits, 9> s_types = {{
    {L"yearZero", false, false, false, false},
    {L"dateTime", true, true, true, true},
    {L"date", true, true, true, false},
    {L"gYearMonth", true, true, false, false},
    {L"gYear", true, false, false, false},
    {L"time", false, false, false, true},
    {L"gDay", false, false, true, false},
    {L"gMonth", false, true, false, false},
    {L"gMonthDay", false, true, true, false},
}};

constexpr STypeTraits s_unknownType = {L"unknown", false, false, false, false};

bool IsKnown(DTType type)
{
    return type >= 0 && static_cast<std::size_t>(type) < s_types.size();
}

const STypeTraits& TraitsOf(DTType type)
{
    return IsKnown(type) ? s_types[static_cast<std::size_t>(type)] : s_unknownType;
}

void Throw_IfFieldIsMissing(bool bHasField, const wchar_t* lpctOperation, DTType type)
{
    if (!bHasField)
        throw CQvInvalidStateException(
            FormatString(L"Failed to %s. Invalid Date Type: %s.", lpctOperation, TraitsOf(type).lpctName));
}

[[noreturn]] void ThrowInvalid(const wchar_t* lpctFormat, std::wstring_view text)
{
    throw CQvInvalidValueException(FormatString(lpctFormat, std::wstring(text).c_str()));
}

// --- Calendar -------------------------------------------------------------------------------------------------------

bool IsLeapYear(int nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

int DaysInMonth(int nYear, int nMonth)
{
    if (nMonth == 2 && !IsLeapYear(nYear))
        return 28;
    return s_daysInMonth[static_cast<std::size_t>(nMonth - 1)];
}

constexpr std::int64_t s_nDaysIn400Years = 146097;

constexpr std::int64_t FloorDivide(std::int64_t nDividend, std::int64_t nDivisor)
{
    return nDividend / nDivisor - (nDividend % nDivisor < 0 ? 1 : 0);
}

/// Count of days from the 1st of March of the year 0 to the first of a month, by years that begin in March so that the
/// leap day is their last.
constexpr std::int64_t DaysFromMonth(std::int64_t nYear, int nMonth)
{
    const std::int64_t nMarchYear = nMonth <= 2 ? nYear - 1 : nYear;
    const std::int64_t nCycle = FloorDivide(nMarchYear, 400);
    const std::int64_t nYearOfCycle = nMarchYear - nCycle * 400;
    const std::int64_t nMarchMonth = nMonth <= 2 ? nMonth + 9 : nMonth - 3;
    return nCycle * s_nDaysIn400Years + nYearOfCycle * 365 + nYearOfCycle / 4 - nYearOfCycle / 100 +
           (153 * nMarchMonth + 2) / 5;
}

struct SDate
{
    std::int64_t nYear;
    int nMonth;
    int nDay;
};

/// The reverse of DaysFromMonth, to the day.
SDate DateFromDays(std::int64_t nDays)
{
    const std::int64_t nCycle = FloorDivide(nDays, s_nDaysIn400Years);
    const std::int64_t nDayOfCycle = nDays - nCycle * s_nDaysIn400Years;
    const std::int64_t nYearOfCycle =
        (nDayOfCycle - nDayOfCycle / 1460 + nDayOfCycle / 36524 - nDayOfCycle / 146096) / 365;
    const std::int64_t nDayOfYear = nDayOfCycle - (365 * nYearOfCycle + nYearOfCycle / 4 - nYearOfCycle / 100);
    const auto nMarchMonth = static_cast<int>((5 * nDayOfYear + 2) / 153);
    const int nMonth = nMarchMonth < 10 ? nMarchMonth + 3 : nMarchMonth - 9;
    return {nCycle * 400 + nYearOfCycle + (nMonth <= 2 ? 1 : 0), nMonth,
            static_cast<int>(nDayOfYear) - (153 * nMarchMonth + 2) / 5 + 1};
}

// --- Arithmetic -----------------------------------------------------------------------------------------------------

/// Splits what a field has grown to into the carry and the field's new value. Both come from single precision:
/// beyond 2^24 they are rounded (docs/compatibility.md: Sums of dates and spans). Each step goes through double and
/// back, which rounds to the same float and keeps compilers from fusing the multiplication with the subtraction.
class CCarry
{
public:
    CCarry(std::int64_t nTotal, int nBase)
    {
        if (nTotal >= 0 && nTotal < nBase)
        {
            m_nQuotient = 0;
            m_nModulo = nTotal;
            return;
        }
        const auto fTotal = static_cast<float>(nTotal);
        const float fQuotient = std::floor(static_cast<float>(double{fTotal} / nBase));
        const auto fProduct = static_cast<float>(double{fQuotient} * nBase);
        m_nQuotient = static_cast<std::int64_t>(fQuotient);
        m_nModulo = static_cast<std::int64_t>(static_cast<float>(double{fTotal} - double{fProduct}));
    }

    std::int64_t Quotient() const { return m_nQuotient; }

    template <class T>
    T Modulo() const
    {
        return static_cast<T>(m_nModulo);
    }

private:
    std::int64_t m_nQuotient;
    std::int64_t m_nModulo;
};

/// A field of a span as a signed number that leaves room for a carry.
std::int64_t ToSigned(std::uint64_t nField)
{
    constexpr std::uint64_t nMost = std::uint64_t{1} << 62;
    return static_cast<std::int64_t>(std::min(nField, nMost));
}

/// Narrows to a field; what does not fit becomes a number that no field accepts.
template <class T>
T ToField(int nValue)
{
    return static_cast<T>(std::clamp<int>(nValue, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

// --- Text -----------------------------------------------------------------------------------------------------------

/// Reads exactly `nCount` digits.
template <class T>
bool ReadDigits(const wchar_t* p, int nCount, T& nValue)
{
    int nRead = 0;
    for (int i = 0; i < nCount; ++i)
    {
        if (!IsDigit(p[i]))
            return false;
        nRead = nRead * 10 + DigitValue(p[i]);
    }
    nValue = static_cast<T>(nRead);
    return true;
}

/// Runs a setter whose failure leaves the empty object.
template <class TSet>
void SetOrClear(CDateTime& dt, TSet set)
{
    try
    {
        set();
    }
    catch (const CQvInvalidValueException&)
    {
        dt = CDateTime();
    }
}

template <class T>
DTCompareResult CompareNumbers(T a, T b)
{
    if (a * b < 0)
        return CDateTime::DTCompareResult_Indeterminate;
    if (a < b)
        return CDateTime::DTCompareResult_LessThan;
    return a > b ? CDateTime::DTCompareResult_GreaterThan : CDateTime::DTCompareResult_Equal;
}

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

CDateTime::CDateTime() = default;

CDateTime::CDateTime(DTType type)
    : m_type(type)
{
}

CDateTime::CDateTime(const wchar_t* lpctText)
{
    ParseXSDDateTime(lpctText);
}

CDateTime::CDateTime(const __int64& time)
{
    SetOrClear(*this, [&] { *this = time; });
}

CDateTime::CDateTime(const _SYSTEMTIME& time)
{
    SetOrClear(*this, [&] { *this = time; });
}

CDateTime::CDateTime(const _FILETIME& time)
{
    SetOrClear(*this, [&] { *this = time; });
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day)
{
    SetOrClear(*this, [&] { SetDate(year, month, day); });
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second)
{
    SetOrClear(*this, [&] { SetDateTime(year, month, day, hour, minute, second); });
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second, unsigned short milli, unsigned short micro, unsigned short nano)
{
    SetOrClear(*this, [&] { SetDateTime(year, month, day, hour, minute, second, milli, micro, nano); });
}

CDateTime::~CDateTime() = default;

void CDateTime::Clear()
{
    *this = CDateTime();
}

// --- Parsing --------------------------------------------------------------------------------------------------------

void CDateTime::ParseXSDDateTime(const wchar_t* lpctText)
{
    if (lpctText == nullptr)
        throw CQvInvalidValueException(L"Invalid DateTime (Null String)");
    const std::wstring_view text(lpctText);
    const std::size_t nTime = text.find(L'T');
    if (nTime == std::wstring_view::npos)
        ThrowInvalid(L"Invalid XSD DateTime [%s]", text);
    Clear();
    SetXSDDate(text.substr(0, nTime));
    if (m_type != dt_date)
        ThrowInvalid(L"Invalid XSD DateTime [%s] expected CCYY-MM-DDThh:mm:ss[.ff]", text);
    SetXSDTime(text.substr(nTime + 1));
    m_type = dt_dateTime;
    Validate();
}

void CDateTime::ParseXSDDate(const wchar_t* lpctText)
{
    Clear();
    if (lpctText == nullptr)
        throw CQvInvalidValueException(L"Invalid Date (Null String)");
    SetXSDDate(lpctText);
    Validate();
}

void CDateTime::ParseXSDTime(const wchar_t* lpctText)
{
    Clear();
    if (lpctText == nullptr)
        throw CQvInvalidValueException(L"Invalid Time (Null String)");
    SetXSDTime(lpctText);
    Validate();
}

void CDateTime::SetXSDDate(std::wstring_view text)
{
    // The lengths below count UTF-16 units.
    if (HasWholeCodePoints(text))
    {
        SetXSDDate(ToUtf16Units(text));
        return;
    }
    if (text.empty())
        throw CQvInvalidValueException(L"Invalid Date (Empty String)");
    if (text.find(L'T') != std::wstring_view::npos)
        throw CQvInvalidValueException(L"Invalid Date ('T' not allowed)");
    const bool bUTC = text.back() == L'Z';
    const bool bOffset = text.find(L':') != std::wstring_view::npos;
    if (bUTC && bOffset)
        throw CQvInvalidValueException(L"Invalid Date (Bad Zone value)");
    const std::size_t nZoneLength = bUTC ? 1 : bOffset ? 6 : 0;
    const std::size_t nLength = text.size() - std::min(nZoneLength, text.size());

    m_type = ReadDateFields(text.substr(0, nLength));
    if (m_type == dt_yearZero)
        ThrowInvalid(L"Invalid XSD Date [%s] expected CCYY-MM-DD[Z|[+|-]hh:mm]", text);
    if (nZoneLength != 0)
        SetZone(text.substr(nLength));
}

CDateTime::DTType CDateTime::ReadDateFields(std::wstring_view text)
{
    if (text.substr(0, 2) == L"--")
        return ReadDateFieldsWithoutYear(text);
    const bool bNegative = !text.empty() && text[0] == L'-';
    const wchar_t* const p = text.data() + (bNegative ? 1 : 0);
    const std::size_t nLength = text.size() - (bNegative ? 1 : 0);
    if ((nLength != 4 && nLength != 7 && nLength != 10) || !ReadDigits(p, 4, m_year))
        return dt_yearZero;
    if (bNegative)
        m_year = static_cast<std::int16_t>(-m_year);
    if (nLength == 4)
        return dt_gYear;
    if (p[4] != L'-' || !ReadDigits(p + 5, 2, m_month))
        return dt_yearZero;
    if (nLength == 7)
        return dt_gYearMonth;
    return p[7] == L'-' && ReadDigits(p + 8, 2, m_day) ? dt_date : dt_yearZero;
}

CDateTime::DTType CDateTime::ReadDateFieldsWithoutYear(std::wstring_view text)
{
    const wchar_t* const p = text.data();
    switch (text.size())
    {
    case 4:
        return ReadDigits(p + 2, 2, m_month) ? dt_gMonth : dt_yearZero;
    case 5:
        return p[2] == L'-' && ReadDigits(p + 3, 2, m_day) ? dt_gDay : dt_yearZero;
    case 6:
        // The first edition of XML Schema wrote --MM--. Any two characters pass for the hyphens, and are to.
        return ReadDigits(p + 2, 2, m_month) ? dt_gMonth : dt_yearZero;
    case 7:
        return ReadDigits(p + 2, 2, m_month) && p[4] == L'-' && ReadDigits(p + 5, 2, m_day) ? dt_gMonthDay
                                                                                            : dt_yearZero;
    default:
        return dt_yearZero;
    }
}

void CDateTime::SetXSDTime(std::wstring_view text)
{
    if (text.empty())
        throw CQvInvalidValueException(L"Invalid XSD Time (Empty String)");
    const wchar_t* const p = text.data();
    if (text.size() < 8 || !ReadDigits(p, 2, m_hour) || p[2] != L':' || !ReadDigits(p + 3, 2, m_minute) ||
        p[5] != L':' || !ReadDigits(p + 6, 2, m_second) || m_hour > 23 || m_minute > 59 || m_second > 59)
        ThrowInvalid(L"Invalid XSD Time [%s] expected hh:mm:ss[.ff]", text);

    std::size_t nAt = 8;
    if (nAt < text.size() && text[nAt] == L'.')
    {
        constexpr std::array<int, 3> weights = {100, 10, 1};
        std::array<int, 3> groups = {};
        std::size_t nDigits = 0;
        for (++nAt; nAt < text.size() && IsDigit(text[nAt]); ++nAt, ++nDigits)
        {
            if (nDigits == 9)
                ThrowInvalid(L"Invalid XSD Time [%s] Fraction part too long", text);
            groups[nDigits / 3] += DigitValue(text[nAt]) * weights[nDigits % 3];
        }
        m_milli = static_cast<std::uint16_t>(groups[0]);
        m_micro = static_cast<std::uint16_t>(groups[1]);
        m_nano = static_cast<std::uint16_t>(groups[2]);
    }
    if (nAt < text.size())
        SetZone(text.substr(nAt));
    m_type = dt_time;
}

void CDateTime::SetZone(std::wstring_view text)
{
    if (text[0] == L'Z')
    {
        SetUTC();
        return;
    }
    // docs/compatibility.md: Text that is no zone
    if (text[0] != L'+' && text[0] != L'-')
        return;
    short nHour = 0;
    unsigned char nMinute = 0;
    if (text.size() != 6 || !ReadDigits(text.data() + 1, 2, nHour) || text[3] != L':' ||
        !ReadDigits(text.data() + 4, 2, nMinute))
        ThrowInvalid(L"Invalid XSD Time Zone [%s]", text);
    if (nHour == 24)
        nHour = 0;
    SetTimeZone(text[0] == L'-' ? static_cast<short>(-nHour) : nHour, nMinute);
}

// --- Validation -----------------------------------------------------------------------------------------------------

namespace
{

/// One rule for a field of a kind that has it (a range) or lacks it (0).
struct SFieldRule
{
    int nValue;
    int nMost;
    const wchar_t* lpctRangeText;
    const wchar_t* lpctTypeText;
};

} // namespace

void CDateTime::Validate() const
{
    if (m_type == dt_yearZero)
        throw CQvInvalidValueException(L"Invalid Year Zero");
    CheckYearAndMonth();
    CheckDay();
    CheckTime();
}

void CDateTime::CheckYearAndMonth() const
{
    const STypeTraits& traits = TraitsOf(m_type);
    if (traits.bMonth ? m_month < 1 || m_month > 12 : m_month != 0)
        throw CQvInvalidValueException(traits.bMonth
                                           ? FormatString(L"Invalid Month [%d] (1 <= month <= 12)", m_month)
                                           : FormatString(L"Invalid Month [%d] for type %s", m_month, traits.lpctName));
    if (traits.bYear ? m_year == 0 || m_year < s_nMinYear || m_year > s_nMaxYear : m_year != 0)
        throw CQvInvalidValueException(
            traits.bYear
                ? FormatString(L"Invalid Year [%d] (%d <= year <= %d && year != 0)", m_year, s_nMinYear, s_nMaxYear)
                : FormatString(L"Invalid Year [%d] for type %s", m_year, traits.lpctName));
}

void CDateTime::CheckDay() const
{
    const STypeTraits& traits = TraitsOf(m_type);
    if (!traits.bDay)
    {
        if (m_day != 0)
            throw CQvInvalidValueException(FormatString(L"Invalid Day [%d] for type %s", m_day, traits.lpctName));
    }
    else if (m_type == dt_gDay)
    {
        // docs/compatibility.md: Days without an upper bound
        if (m_day < 1)
            throw CQvInvalidValueException(FormatString(L"Invalid Day [%d] (1 <= day <= 31)", m_day));
    }
    else if (m_type == dt_gMonthDay)
    {
        if (m_day < 1 || m_day > s_daysInMonth[m_month - 1u])
            throw CQvInvalidValueException(FormatString(L"Invalid Day [%d] (1 <= day <= days in month)", m_day));
    }
    else if (m_day < 1 || m_day > DaysInMonth(m_year, m_month))
    {
        // docs/compatibility.md: Messages as they are spelt
        throw CQvInvalidValueException(FormatString(L"Invalid Day [%d] (1 <= day <= days in month", m_day));
    }
}

void CDateTime::CheckTime() const
{
    const SFieldRule rules[] = {
        {m_hour, 23, L"Invalid Hour [%d] (0 <= hour <= 23)", L"Invalid Hour [%d] for type %s"},
        {m_minute, 59, L"Invalid Minute [%d] (0 <= minute <= 59)", L"Invalid Minute [%d] for type %s"},
        {m_second, 59, L"Invalid Second [%d] (0 <= second <= 59)", L"Invalid Second [%d] for type %s"},
        {m_milli, 999, L"Invalid Milli-Second [%d] (0 <= milli <= 999)", L"Invalid Milli-Second [%d] for type %s"},
        {m_micro, 999, L"Invalid Micro-Second [%d] (0 <= micro <= 999)", L"Invalid Micro-Second [%d] for type %s"},
        {m_nano, 999, L"Invalid Nano-Second [%d] (0 <= nano <= 999)", L"Invalid Nano-Second [%d] for type %s"},
    };
    const STypeTraits& traits = TraitsOf(m_type);
    for (const SFieldRule& rule : rules)
    {
        if (rule.nValue > (traits.bTime ? rule.nMost : 0))
            throw CQvInvalidValueException(
                FormatString(traits.bTime ? rule.lpctRangeText : rule.lpctTypeText, rule.nValue, traits.lpctName));
    }
}

// --- Setting a whole value ------------------------------------------------------------------------------------------

void CDateTime::SetDateTime(DTType type, short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milli, unsigned short micro,
                            unsigned short nano)
{
    if (m_type != dt_yearZero && m_type != type)
        throw CQvInvalidStateException(FormatString(L"Failed to copy CDateTime. Invalid Date Type: %s, expected: %s.",
                                                    TraitsOf(type).lpctName, TraitsOf(m_type).lpctName));
    Clear();
    m_type = type;
    m_year = year;
    m_month = month;
    m_day = day;
    m_hour = hour;
    m_minute = minute;
    m_second = second;
    m_milli = milli;
    m_micro = micro;
    m_nano = nano;
    Validate();
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second)
{
    SetDateTime(dt_dateTime, year, month, day, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milli, unsigned short micro,
                            unsigned short nano)
{
    SetDateTime(dt_dateTime, year, month, day, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetDate(short year, unsigned char month, unsigned char day)
{
    SetDateTime(dt_date, year, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second)
{
    SetDateTime(dt_time, 0, 0, 0, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second, unsigned short milli,
                        unsigned short micro, unsigned short nano)
{
    SetDateTime(dt_time, 0, 0, 0, hour, minute, second, milli, micro, nano);
}

void CDateTime::SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano)
{
    SetDateTime(dt_time, 0, 0, 0, 0, 0, 0, milli, micro, nano);
}

void CDateTime::SetGYear(short year)
{
    SetDateTime(dt_gYear, year, 0, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGYearMonth(short year, unsigned char month)
{
    SetDateTime(dt_gYearMonth, year, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonth(unsigned char month)
{
    SetDateTime(dt_gMonth, 0, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonthDay(unsigned char month, unsigned char day)
{
    SetDateTime(dt_gMonthDay, 0, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGDay(unsigned char day)
{
    SetDateTime(dt_gDay, 0, 0, day, 0, 0, 0, 0, 0, 0);
}

CDateTime& CDateTime::operator=(const __int64& time)
{
    std::tm fields = {};
    if (!Platform::GetUtcTime(time, fields))
        throw CQvInvalidValueException(L"Failed to convert the time to a date");
    const int nYear = std::clamp(fields.tm_year, -100000, 100000) + 1900;
    SetDateTime(ToField<short>(nYear), ToField<unsigned char>(fields.tm_mon + 1),
                ToField<unsigned char>(fields.tm_mday), ToField<unsigned char>(fields.tm_hour),
                ToField<unsigned char>(fields.tm_min), ToField<unsigned char>(fields.tm_sec));
    return *this;
}

CDateTime& CDateTime::operator=(const _SYSTEMTIME& time)
{
    SetDateTime(static_cast<short>(time.wYear), ToField<unsigned char>(time.wMonth), ToField<unsigned char>(time.wDay),
                ToField<unsigned char>(time.wHour), ToField<unsigned char>(time.wMinute),
                ToField<unsigned char>(time.wSecond), time.wMilliseconds, 0, 0);
    return *this;
}

CDateTime& CDateTime::operator=(const _FILETIME& time)
{
    _SYSTEMTIME systemTime = {};
    if (!Platform::FileTimeToSystemTime(time, systemTime))
        throw CQvInvalidValueException(L"Failed to convert FILETIME to SYSTEMTIME");
    return *this = systemTime;
}

bool CDateTime::CheckConversion(DTType source, DTType target)
{
    if (source == target || target == dt_yearZero)
        return true;
    for (const DTType type : {source, target})
    {
        if (!IsKnown(type))
            throw CQvInvalidValueException(FormatString(L"Unknown date type %d.", static_cast<int>(type)));
    }
    switch (source)
    {
    case dt_dateTime:
        return true;
    case dt_date:
        return target == dt_gDay || target == dt_gMonth || target == dt_gYear || target == dt_gMonthDay ||
               target == dt_gYearMonth;
    case dt_gYearMonth:
        return target == dt_gMonth || target == dt_gYear;
    case dt_gMonthDay:
        return target == dt_gDay || target == dt_gMonth;
    case dt_yearZero:
    case dt_gYear:
    case dt_time:
    case dt_gDay:
    case dt_gMonth:
        return false;
    }
    return false;
}

void CDateTime::SetDateTime(const CDateTime& source, DTType target)
{
    if (!CheckConversion(source.m_type, target))
        throw CQvInvalidValueException(
            FormatString(L"Attempting to set a CDateTime of type %s using an XmlDateTime of type %s. The source "
                         L"CDateTime does not contian enough data to allow the conversion.",
                         TraitsOf(target).lpctName, TraitsOf(source.m_type).lpctName));
    *this = source;
    m_type = target;
}

// --- Fields ---------------------------------------------------------------------------------------------------------

short CDateTime::GetYear() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bYear, L"GetYear", m_type);
    return m_year;
}

void CDateTime::SetYear(short year)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bYear, L"GetYear", m_type);
    m_year = year;
}

unsigned char CDateTime::GetMonth() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bMonth, L"GetMonth", m_type);
    return m_month;
}

void CDateTime::SetMonth(unsigned char month)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bMonth, L"GetMonth", m_type);
    m_month = month;
}

unsigned char CDateTime::GetDay() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bDay, L"GetDay", m_type);
    return m_day;
}

void CDateTime::SetDay(unsigned char day)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bDay, L"GetDay", m_type);
    m_day = day;
}

unsigned char CDateTime::GetHour() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetHour", m_type);
    return m_hour;
}

void CDateTime::SetHour(unsigned char hour)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetHour", m_type);
    m_hour = hour;
}

unsigned char CDateTime::GetMinute() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMinute", m_type);
    return m_minute;
}

void CDateTime::SetMinute(unsigned char minute)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMinute", m_type);
    m_minute = minute;
}

unsigned char CDateTime::GetSecond() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetSecond", m_type);
    return m_second;
}

void CDateTime::SetSecond(unsigned char second)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetSecond", m_type);
    m_second = second;
}

unsigned short CDateTime::GetMilliSecond() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMilliSecond", m_type);
    return m_milli;
}

void CDateTime::SetMilliSecond(unsigned short milli)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMilliSecond", m_type);
    m_milli = milli;
}

unsigned short CDateTime::GetMicroSecond() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMicroSecond", m_type);
    return m_micro;
}

void CDateTime::SetMicroSecond(unsigned short micro)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetMicroSecond", m_type);
    m_micro = micro;
}

unsigned short CDateTime::GetNanoSecond() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetNanoSecond", m_type);
    return m_nano;
}

void CDateTime::SetNanoSecond(unsigned short nano)
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetNanoSecond", m_type);
    m_nano = nano;
}

double CDateTime::GetRealSecond() const
{
    Throw_IfFieldIsMissing(TraitsOf(m_type).bTime, L"GetRealSecond", m_type);
    return m_second + m_milli / 1000.0 + m_micro / 1000000.0 + m_nano / 1000000000.0;
}

std::wstring CDateTime::GetTypeAsString() const
{
    return TraitsOf(m_type).lpctName;
}

// --- Zone -----------------------------------------------------------------------------------------------------------

void CDateTime::SetUTC()
{
    m_bUTC = true;
    m_bHasTimeZone = false;
    m_zoneHour = 0;
    m_zoneMinute = 0;
}

void CDateTime::SetTimeZone(short hour, unsigned char minute)
{
    if (hour < -23 || hour > 23 || minute > 59)
        throw CQvInvalidValueException(FormatString(L"Invalid TimeZone [%d:%d]", hour, minute));
    m_bUTC = true;
    m_bHasTimeZone = true;
    m_zoneHour = hour;
    m_zoneMinute = minute;
}

short CDateTime::GetZoneHour() const
{
    if (!m_bHasTimeZone)
        throw CQvInvalidStateException(L"TimeZone is not been used");
    return m_zoneHour;
}

unsigned char CDateTime::GetZoneMinute() const
{
    if (!m_bHasTimeZone)
        throw CQvInvalidStateException(L"TimeZone is not been used");
    return m_zoneMinute;
}

CDateTime CDateTime::GetNormalized() const
{
    CDateTime normalized = *this;
    if (m_bHasTimeZone)
    {
        CDateTimeSpan offset(static_cast<unsigned long>(std::abs(m_zoneHour)), m_zoneMinute, 0);
        if (m_zoneHour >= 0)
            offset.Negate();
        normalized.AddDateTimeSpan(offset);
        normalized.SetTimeZone(0, 0);
    }
    return normalized;
}

// --- Comparison -----------------------------------------------------------------------------------------------------

CDateTime::DTCompareResult CDateTime::CompareFields(const CDateTime& a, const CDateTime& b)
{
    const STypeTraits& traitsA = TraitsOf(a.m_type);
    const STypeTraits& traitsB = TraitsOf(b.m_type);
    DTCompareResult eResult = DTCompareResult_Equal;
    const auto Differ = [&](bool STypeTraits::*pbPresent, auto ValueOf)
    {
        eResult = CompareNumbers(traitsA.*pbPresent ? ValueOf(a) : -1, traitsB.*pbPresent ? ValueOf(b) : -1);
        return eResult != DTCompareResult_Equal;
    };
    // Both sides have the month of the first operand (docs/compatibility.md: Differing months).
    static_cast<void>(Differ(&STypeTraits::bYear, [](const CDateTime& date) { return date.m_year; }) ||
                      Differ(&STypeTraits::bMonth, [&](const CDateTime&) { return a.GetMonth(); }) ||
                      Differ(&STypeTraits::bDay, [](const CDateTime& date) { return date.m_day; }) ||
                      Differ(&STypeTraits::bTime, [](const CDateTime& date) { return date.m_hour; }) ||
                      Differ(&STypeTraits::bTime, [](const CDateTime& date) { return date.m_minute; }) ||
                      Differ(&STypeTraits::bTime, [](const CDateTime& date) { return date.GetRealSecond(); }));
    return eResult;
}

CDateTime::DTCompareResult CDateTime::CompareTo(const CDateTime& other) const
{
    CDateTime a = GetNormalized();
    CDateTime b = other.GetNormalized();
    if (a.m_bUTC == b.m_bUTC)
        return CompareFields(a, b);

    // The side without a zone is tried at 14 hours ahead of the other one. The second step takes off what the first one
    // moved it by, so it is tried at its own fields then, and not at 14 hours behind
    // (docs/compatibility.md: Dates without a zone).
    CDateTime& zoneless = a.m_bUTC ? b : a;
    const DTCompareResult eFirst = a.m_bUTC ? DTCompareResult_LessThan : DTCompareResult_GreaterThan;
    const DTCompareResult eSecond = a.m_bUTC ? DTCompareResult_GreaterThan : DTCompareResult_LessThan;
    zoneless.SetTimeZone(14, 0);
    zoneless = zoneless.GetNormalized();
    if (CompareFields(a, b) == eFirst)
        return eFirst;
    zoneless.SetTimeZone(-14, 0);
    zoneless = zoneless.GetNormalized();
    return CompareFields(a, b) == eSecond ? eSecond : DTCompareResult_Indeterminate;
}

bool CDateTime::operator==(const CDateTime& other) const
{
    return CompareTo(other) == DTCompareResult_Equal;
}

bool CDateTime::operator!=(const CDateTime& other) const
{
    return CompareTo(other) != DTCompareResult_Equal;
}

bool CDateTime::operator<(const CDateTime& other) const
{
    return CompareTo(other) == DTCompareResult_LessThan;
}

bool CDateTime::operator>(const CDateTime& other) const
{
    return CompareTo(other) == DTCompareResult_GreaterThan;
}

bool CDateTime::operator<=(const CDateTime& other) const
{
    const DTCompareResult result = CompareTo(other);
    return result == DTCompareResult_LessThan || result == DTCompareResult_Equal;
}

bool CDateTime::operator>=(const CDateTime& other) const
{
    const DTCompareResult result = CompareTo(other);
    return result == DTCompareResult_GreaterThan || result == DTCompareResult_Equal;
}

// --- Arithmetic -----------------------------------------------------------------------------------------------------

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span)
{
    const std::int64_t nSign = span.IsNegative() ? -1 : 1;

    const CCarry months(m_month + nSign * ToSigned(span.GetMonths()) - 1, 12);
    m_month = static_cast<std::uint8_t>(months.Modulo<int>() + 1);
    m_year = static_cast<std::int16_t>(m_year + months.Quotient() + nSign * span.GetYears());

    const CCarry nanos(m_nano + nSign * span.GetNanoSeconds(), 1000);
    m_nano = nanos.Modulo<std::uint16_t>();
    const CCarry micros(m_micro + nSign * span.GetMicroSeconds() + nanos.Quotient(), 1000);
    m_micro = micros.Modulo<std::uint16_t>();
    const CCarry millis(m_milli + nSign * span.GetMilliSeconds() + micros.Quotient(), 1000);
    m_milli = millis.Modulo<std::uint16_t>();
    const CCarry seconds(m_second + nSign * ToSigned(span.GetSeconds()) + millis.Quotient(), 60);
    m_second = seconds.Modulo<std::uint8_t>();
    const CCarry minutes(m_minute + nSign * ToSigned(span.GetMinutes()) + seconds.Quotient(), 60);
    m_minute = minutes.Modulo<std::uint8_t>();
    const CCarry hours(m_hour + nSign * ToSigned(span.GetHours()) + minutes.Quotient(), 24);
    m_hour = hours.Modulo<std::uint8_t>();

    AddDays(hours.Quotient() + nSign * ToSigned(span.GetDays()));
}

void CDateTime::AddDays(std::int64_t nDays)
{
    if (nDays == 0)
        return;
    // Only rounding brings a month out of the year.
    const std::int64_t nYears = FloorDivide(m_month - 1, 12);
    m_year = static_cast<std::int16_t>(m_year + nYears);
    m_month = static_cast<std::uint8_t>(m_month - nYears * 12);

    // A day behind the end of its month, such as the 31st of February, stays in the month when it moves back within it.
    if (nDays < 0 ? -nDays < m_day : m_day + nDays <= DaysInMonth(m_year, m_month))
    {
        m_day = static_cast<std::uint8_t>(m_day + nDays);
        return;
    }
    // The year wraps at 16 bits while days are counted, so the calendar closes after 65536 years.
    constexpr std::int64_t nFirst = DaysFromMonth(std::numeric_limits<std::int16_t>::min(), 1);
    constexpr std::int64_t nPeriod = DaysFromMonth(std::numeric_limits<std::int16_t>::max() + 1, 1) - nFirst;
    const std::int64_t nTarget = DaysFromMonth(m_year, m_month) + m_day - 1 + nDays % nPeriod;
    const SDate date = DateFromDays(nTarget - FloorDivide(nTarget - nFirst, nPeriod) * nPeriod);
    m_year = static_cast<std::int16_t>(date.nYear);
    m_month = static_cast<std::uint8_t>(date.nMonth);
    m_day = static_cast<std::uint8_t>(date.nDay);
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const
{
    CDateTime sum = *this;
    sum.AddDateTimeSpan(span);
    return sum;
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span)
{
    AddDateTimeSpan(span);
    return *this;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const
{
    return *this + span.GetAsNegative();
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span)
{
    AddDateTimeSpan(span.GetAsNegative());
    return *this;
}

CDateTimeSpan CDateTime::operator-(const CDateTime&) const
{
    return CDateTimeSpan();
}

// --- Conversion -----------------------------------------------------------------------------------------------------

__int64 CDateTime::GetTime() const
{
    if (m_type != dt_dateTime && m_type != dt_date)
        throw CQvInvalidValueException(
            FormatString(L"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %s.",
                         TraitsOf(m_type).lpctName));
    const CDateTime normalized = GetNormalized();
    std::tm fields = {};
    fields.tm_year = normalized.m_year - 1900;
    fields.tm_mon = normalized.m_month - 1;
    fields.tm_mday = normalized.m_day;
    if (m_type == dt_dateTime)
    {
        fields.tm_hour = normalized.m_hour;
        fields.tm_min = normalized.m_minute;
        fields.tm_sec = normalized.m_second;
    }
    // The C library reads the fields in the machine's zone. How far that is from UTC shows when a time goes through
    // both forms, and is put back.
    const __int64 nTime = Platform::MakeTime(fields);
    std::tm utc = {};
    std::tm zoned = {};
    if (!Platform::GetUtcTime(nTime, utc) || !Platform::GetZonedTime(nTime, zoned))
        return nTime;
    return nTime + (Platform::MakeTime(zoned) - Platform::MakeTime(utc));
}

_SYSTEMTIME CDateTime::GetAsSystemTime() const
{
    if (m_type != dt_dateTime)
        throw CQvInvalidValueException(
            FormatString(L"Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: %s.",
                         TraitsOf(m_type).lpctName));
    _SYSTEMTIME systemTime = {};
    systemTime.wYear = static_cast<unsigned short>(m_year);
    systemTime.wMonth = m_month;
    systemTime.wDayOfWeek = static_cast<unsigned short>(GetDayOfWeek() - 1);
    systemTime.wDay = m_day;
    systemTime.wHour = m_hour;
    systemTime.wMinute = m_minute;
    systemTime.wSecond = m_second;
    systemTime.wMilliseconds = m_milli;
    return systemTime;
}

int CDateTime::GetDayOfWeek() const
{
    Throw_IfFieldIsMissing(m_type == dt_dateTime || m_type == dt_date, L"GetDayOfWeek", m_type);
    std::tm zoned = {};
    Platform::GetZonedTime(GetTime(), zoned);
    return zoned.tm_wday + 1;
}

int CDateTime::GetDayOfYear() const
{
    Throw_IfFieldIsMissing(m_type == dt_dateTime || m_type == dt_date, L"GetDayOfYear", m_type);
    // SetMonth takes any number, the table does not.
    const auto nMonth = static_cast<std::size_t>(std::clamp<int>(m_month, 1, s_daysBeforeMonth.size()));
    // The leap day counts ahead of itself and not after it. Stored numbers depend on it.
    return s_daysBeforeMonth[nMonth - 1] + m_day + (IsLeapYear(m_year) && m_month < 3 ? 1 : 0);
}

CDateTime CDateTime::GetTickCount()
{
    return CDateTime(Platform::GetLocalTime());
}

// --- Printing -------------------------------------------------------------------------------------------------------

std::wstring CDateTime::ToString() const
{
    return ToString(L"s");
}

std::wstring CDateTime::ToString(const wchar_t* lpctFormat) const
{
    const bool bAllZero = m_year == 0 && m_month == 0 && m_day == 0 && m_hour == 0 && m_minute == 0 && m_second == 0 &&
                          m_milli == 0 && m_micro == 0 && m_nano == 0;
    if (m_type == dt_yearZero || (m_type != dt_time && bAllZero))
        throw CQvInvalidValueException(L"Date Not Set");
    if (lpctFormat == nullptr || std::wcscmp(lpctFormat, L"G") == 0)
        return std::wstring();
    if (std::wcscmp(lpctFormat, L"s") != 0)
        return FormatString(L"Unknown Format: %s", lpctFormat);

    // The longest text, with every field at the limit of its type, has 48 characters.
    wchar_t szText[64];
    wchar_t* const pEnd = WriteZone(WriteFields(szText));
    return std::wstring(szText, pEnd);
}

wchar_t* CDateTime::WriteFields(wchar_t* p) const
{
    switch (m_type)
    {
    case dt_dateTime:
        p = WriteDay(WriteMonth(WriteYear(p)));
        *p++ = L'T';
        return WriteTime(p);
    case dt_date:
        return WriteDay(WriteMonth(WriteYear(p)));
    case dt_gYearMonth:
        return WriteMonth(WriteYear(p));
    case dt_gYear:
        return WriteYear(p);
    case dt_time:
        return WriteTime(p);
    case dt_gDay:
        *p++ = L'-';
        *p++ = L'-';
        return WriteDay(p);
    case dt_gMonth:
        *p++ = L'-';
        return WriteMonth(p);
    case dt_gMonthDay:
        *p++ = L'-';
        return WriteDay(WriteMonth(p));
    case dt_yearZero:
        break;
    }
    return p;
}

wchar_t* CDateTime::WriteYear(wchar_t* p) const
{
    if (m_year < 0)
        *p++ = L'-';
    return WritePadded(p, static_cast<unsigned>(std::abs(m_year)), 4);
}

wchar_t* CDateTime::WriteMonth(wchar_t* p) const
{
    *p++ = L'-';
    return WritePadded(p, m_month, 2);
}

wchar_t* CDateTime::WriteDay(wchar_t* p) const
{
    *p++ = L'-';
    return WritePadded(p, m_day, 2);
}

wchar_t* CDateTime::WriteTime(wchar_t* p) const
{
    p = WritePadded(p, m_hour, 2);
    *p++ = L':';
    p = WritePadded(p, m_minute, 2);
    *p++ = L':';
    p = WritePadded(p, m_second, 2);
    return WriteFraction(p, m_milli, m_micro, m_nano);
}

wchar_t* CDateTime::WriteZone(wchar_t* p) const
{
    if (!m_bUTC)
        return p;
    if (!m_bHasTimeZone)
    {
        *p++ = L'Z';
        return p;
    }
    *p++ = m_zoneHour < 0 ? L'-' : L'+';
    p = WritePadded(p, static_cast<unsigned>(std::abs(m_zoneHour)), 2);
    *p++ = L':';
    return WritePadded(p, m_zoneMinute, 2);
}

} // namespace QvXmlLib9
