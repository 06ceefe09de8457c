#include "quiver/values/DateTimeSpan.h"

#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <cstddef>

namespace QvXmlLib9
{

namespace
{

/// Reads digits, possibly none, into a number that wraps.
std::uint32_t ReadNumber(const wchar_t*& p)
{
    std::uint32_t nNumber = 0;
    for (; IsDigit(*p); ++p)
        nNumber = nNumber * 10 + static_cast<std::uint32_t>(DigitValue(*p));
    return nNumber;
}

/// How far a duration has been read. The order is that of the form, so that "not yet" is a comparison.
enum EState : int
{
    State_Nothing = 0,
    State_Years = 1,
    State_Months = 2,
    State_Days = 3,
    State_Time = 4,
    State_Hours = 5,
    State_Minutes = 6,
    State_Seconds = 7,
    State_Fraction = 8,
    State_Invalid = 9
};

} // namespace

CDateTimeSpan::CDateTimeSpan() = default;

CDateTimeSpan::CDateTimeSpan(unsigned long hours, unsigned __int64 minutes, unsigned __int64 seconds)
{
    SetDateTimeSpan(hours, minutes, seconds);
}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                             unsigned __int64 minutes, unsigned __int64 seconds)
{
    SetDateTimeSpan(years, months, days, hours, minutes, seconds);
}

CDateTimeSpan::CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                             unsigned __int64 minutes, unsigned __int64 seconds, unsigned short milli,
                             unsigned short micro, unsigned short nano)
{
    SetDateTimeSpan(years, months, days, hours, minutes, seconds, milli, micro, nano);
}

CDateTimeSpan::~CDateTimeSpan() = default;

void CDateTimeSpan::Clear()
{
    *this = CDateTimeSpan();
}

void CDateTimeSpan::SetDateTimeSpan(unsigned long hours, unsigned __int64 minutes, unsigned __int64 seconds)
{
    SetDateTimeSpan(0, 0, 0, hours, minutes, seconds, 0, 0, 0);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                                    unsigned __int64 minutes, unsigned __int64 seconds)
{
    SetDateTimeSpan(years, months, days, hours, minutes, seconds, 0, 0, 0);
}

void CDateTimeSpan::SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                                    unsigned __int64 minutes, unsigned __int64 seconds, unsigned short milli,
                                    unsigned short micro, unsigned short nano)
{
    Clear();
    SetYears(years);
    SetMonths(months);
    SetDays(days);
    SetHours(hours);
    SetMinutes(minutes);
    SetSeconds(seconds);
    SetMilliSeconds(milli);
    SetMicroSeconds(micro);
    SetNanoSeconds(nano);
}

CDateTimeSpan CDateTimeSpan::GetAsNegative() const
{
    CDateTimeSpan negative = *this;
    negative.m_bNegative = true;
    return negative;
}

void CDateTimeSpan::ParseXSDDuration(const wchar_t* lpctText)
{
    Clear();
    if (lpctText == nullptr)
        throw CQvInvalidValueException(L"Invalid XSD Duration (Null String)");
    if (*lpctText == 0)
        throw CQvInvalidValueException(L"Invalid XSD Duration (Empty String)");
    const wchar_t* p = lpctText;
    if (*p == L'-')
    {
        m_bNegative = true;
        ++p;
    }
    int nState = *p == L'P' ? State_Nothing : State_Invalid;
    for (++p; nState != State_Invalid && *p != 0;)
        nState = ReadField(lpctText, p, nState);
    if (nState == State_Nothing || nState == State_Time || nState == State_Invalid)
        throw CQvInvalidValueException(
            FormatString(L"Invalid XSD Duration [%s] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]", lpctText));
}

int CDateTimeSpan::ReadField(const wchar_t* lpctText, const wchar_t*& p, int nState)
{
    const std::uint32_t nNumber = ReadNumber(p);
    // The end of the text stays unread, so that nothing looks behind it.
    const wchar_t cField = *p;
    if (cField != 0)
        ++p;
    const bool bInSeconds = nState >= State_Time && nState <= State_Minutes;
    switch (cField)
    {
    case L'Y':
        // Years are taken wherever they stand, also behind the time.
        m_years = static_cast<std::uint16_t>(nNumber);
        return State_Years;
    case L'M':
        if (nState < State_Months)
        {
            m_months = nNumber;
            return State_Months;
        }
        if (nState != State_Time && nState != State_Hours)
            return State_Invalid;
        m_minutes = nNumber;
        return State_Minutes;
    case L'D':
        if (nState >= State_Days)
            return State_Invalid;
        m_days = nNumber;
        return State_Days;
    case L'T':
        return nState < State_Time ? State_Time : State_Invalid;
    case L'H':
        if (nState != State_Time)
            return State_Invalid;
        m_hours = nNumber;
        return State_Hours;
    case L'S':
        if (!bInSeconds)
            return State_Invalid;
        m_seconds = nNumber;
        return State_Seconds;
    case L'.':
        if (!bInSeconds)
            return State_Invalid;
        m_seconds = nNumber;
        return ReadFraction(lpctText, p);
    default:
        return State_Invalid;
    }
}

int CDateTimeSpan::ReadFraction(const wchar_t* lpctText, const wchar_t*& p)
{
    if (*p == 0)
        return State_Seconds;
    constexpr unsigned weights[] = {100, 10, 1};
    for (std::size_t nDigits = 0; IsDigit(*p); ++p, ++nDigits)
    {
        const auto nDigit = static_cast<unsigned>(DigitValue(*p));
        if (nDigits < 3)
            m_milliSeconds = static_cast<std::uint16_t>(m_milliSeconds + nDigit * weights[nDigits]);
        else if (nDigits < 6)
            m_microSeconds = static_cast<std::uint16_t>(m_microSeconds + nDigit * weights[nDigits - 3]);
        else if (nDigits < 9)
            // docs/compatibility.md: Durations as they are read
            m_nanoSeconds = static_cast<std::uint16_t>(nDigit);
        else
            throw CQvInvalidValueException(FormatString(L"Invalid XSD Duration [%s] Fraction part too long", lpctText));
    }
    if (*p != L'S')
        return State_Invalid;
    ++p;
    return State_Fraction;
}

std::wstring CDateTimeSpan::ToString() const
{
    // The longest text, with every field at its limit, has 100 characters.
    wchar_t szText[128];
    wchar_t* p = szText;
    const auto write = [&p](unsigned __int64 nValue, wchar_t cField)
    {
        if (nValue == 0)
            return;
        p = WritePadded(p, nValue, 1);
        *p++ = cField;
    };
    if (m_bNegative)
        *p++ = L'-';
    *p++ = L'P';
    write(m_years, L'Y');
    write(m_months, L'M');
    write(m_days, L'D');
    const bool bSeconds = m_seconds != 0 || m_milliSeconds != 0 || m_microSeconds != 0 || m_nanoSeconds != 0;
    if (bSeconds || m_hours != 0 || m_minutes != 0)
        *p++ = L'T';
    write(m_hours, L'H');
    write(m_minutes, L'M');
    if (bSeconds)
    {
        p = WriteFraction(WritePadded(p, m_seconds, 1), m_milliSeconds, m_microSeconds, m_nanoSeconds);
        *p++ = L'S';
    }
    return std::wstring(szText, p);
}

CDateTime::DTCompareResult CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const
{
    CDateTime starts[] = {CDateTime(1696, 9, 1), CDateTime(1697, 2, 1), CDateTime(1903, 3, 1), CDateTime(1903, 7, 1)};
    CDateTime::DTCompareResult eCommon = CDateTime::DTCompareResult_Indeterminate;
    for (CDateTime& start : starts)
    {
        start.SetUTC();
        const CDateTime::DTCompareResult eResult = (start + *this).CompareTo(start + other);
        if (&start == starts)
            eCommon = eResult;
        if (eResult == CDateTime::DTCompareResult_Indeterminate || eResult != eCommon)
            return CDateTime::DTCompareResult_Indeterminate;
    }
    return eCommon;
}

bool CDateTimeSpan::operator==(const CDateTimeSpan& other) const
{
    return CompareTo(other) == CDateTime::DTCompareResult_Equal;
}

bool CDateTimeSpan::operator!=(const CDateTimeSpan& other) const
{
    return CompareTo(other) != CDateTime::DTCompareResult_Equal;
}

bool CDateTimeSpan::operator<(const CDateTimeSpan& other) const
{
    return CompareTo(other) == CDateTime::DTCompareResult_LessThan;
}

bool CDateTimeSpan::operator>(const CDateTimeSpan& other) const
{
    return CompareTo(other) == CDateTime::DTCompareResult_GreaterThan;
}

} // namespace QvXmlLib9
