#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/values/DateTime.h"

#include <cstdint>
#include <string>

namespace QvXmlLib9
{

/// A duration: the value of the XML Schema type `duration` (XML Schema Datatypes, 3.2.6).
///
/// The fields are kept as they were written and never carried into each other: "P1Y" and "P12M" are different objects
/// that compare as equal. There is one sign for the whole span.
///
///     QvXmlLib9::CDateTimeSpan span;
///     span.ParseXSDDuration(L"P1Y2M3DT4H5M6.7S");
///     const QvXmlLib9::CDateTime later = start + span;
///
/// A span is a plain value, copied freely; one object is used by one thread at a time.
class QVXMLLIB_API CDateTimeSpan
{
public:
    /// The zero span. It prints as "P", which the parser refuses.
    CDateTimeSpan();

    CDateTimeSpan(const CDateTimeSpan&) = default;
    CDateTimeSpan& operator=(const CDateTimeSpan&) = default;

    /// A span that is not negative; the fields that are not given are 0. `hours`, `months` and `days` are kept to 32
    /// bits.
    CDateTimeSpan(unsigned long hours, unsigned __int64 minutes, unsigned __int64 seconds);
    CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                  unsigned __int64 minutes, unsigned __int64 seconds);
    CDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                  unsigned __int64 minutes, unsigned __int64 seconds, unsigned short milli, unsigned short micro,
                  unsigned short nano);

    virtual ~CDateTimeSpan();

    /// Clears everything, the sign too, and stores the arguments, as the constructors do.
    void SetDateTimeSpan(unsigned long hours, unsigned __int64 minutes, unsigned __int64 seconds);
    void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                         unsigned __int64 minutes, unsigned __int64 seconds);
    void SetDateTimeSpan(unsigned short years, unsigned long months, unsigned long days, unsigned long hours,
                         unsigned __int64 minutes, unsigned __int64 seconds, unsigned short milli, unsigned short micro,
                         unsigned short nano);

    /// @name Fields
    /// Plain access without checks: no field is bounded by the unit above it.
    /// @{
    unsigned short GetYears() const { return m_years; }
    void SetYears(unsigned short years) { m_years = years; }
    unsigned long GetMonths() const { return m_months; }
    void SetMonths(unsigned long months) { m_months = static_cast<std::uint32_t>(months); }
    unsigned long GetDays() const { return m_days; }
    void SetDays(unsigned long days) { m_days = static_cast<std::uint32_t>(days); }
    unsigned long GetHours() const { return m_hours; }
    void SetHours(unsigned long hours) { m_hours = static_cast<std::uint32_t>(hours); }
    unsigned __int64 GetMinutes() const { return m_minutes; }
    void SetMinutes(unsigned __int64 minutes) { m_minutes = minutes; }
    unsigned __int64 GetSeconds() const { return m_seconds; }
    void SetSeconds(unsigned __int64 seconds) { m_seconds = seconds; }
    unsigned short GetMilliSeconds() const { return m_milliSeconds; }
    void SetMilliSeconds(unsigned short milli) { m_milliSeconds = milli; }
    unsigned short GetMicroSeconds() const { return m_microSeconds; }
    void SetMicroSeconds(unsigned short micro) { m_microSeconds = micro; }
    unsigned short GetNanoSeconds() const { return m_nanoSeconds; }
    void SetNanoSeconds(unsigned short nano) { m_nanoSeconds = nano; }
    /// @}

    /// Whether the span goes back in time.
    bool IsNegative() const { return m_bNegative; }

    /// Turns the sign round.
    void Negate() { m_bNegative = !m_bNegative; }

    /// A copy that is negative, whatever the sign was: a negative span stays negative.
    CDateTimeSpan GetAsNegative() const;

    /// Reads `[-]P[nY][nM][nD][T[nH][nM][nS.ff]]` with up to nine fraction digits. Beyond that form, years may be
    /// given more than once and anywhere, the last one winning; a number wraps at 32 bits, years at 16; and the seventh
    /// to ninth fraction digit each replace the nanoseconds by the bare digit
    /// (docs/compatibility.md: Durations as they are read).
    ///
    /// @throws CQvInvalidValueException for a null or an empty text, any other form, or a tenth fraction digit. The
    ///         object then holds what was read up to the failure.
    void ParseXSDDuration(const wchar_t* lpctText);

    /// The lexical form, fields that are 0 left out. A zero span gives "P".
    std::wstring ToString() const;

    /// Compares by adding both spans to four fixed dates (XML Schema Datatypes, 3.2.6.2) and comparing what comes out
    /// as `CDateTime::CompareTo` compares dates: neither the time of day nor the month counts, so "PT1H" equals "PT2H"
    /// and "P1M" equals "P2M".
    /// @return `DTCompareResult_Indeterminate` where the four dates do not agree.
    CDateTime::DTCompareResult CompareTo(const CDateTimeSpan& other) const;

    /// @name Comparison
    /// `!=` also holds for an indeterminate result. There is no `<=` or `>=`.
    /// @{
    bool operator==(const CDateTimeSpan& other) const;
    bool operator!=(const CDateTimeSpan& other) const;
    bool operator<(const CDateTimeSpan& other) const;
    bool operator>(const CDateTimeSpan& other) const;
    /// @}

private:
    void Clear();
    int ReadField(const wchar_t* lpctText, const wchar_t*& p, int nState);
    int ReadFraction(const wchar_t* lpctText, const wchar_t*& p);

    std::uint16_t m_years = 0;
    std::uint32_t m_months = 0;
    std::uint32_t m_days = 0;
    std::uint32_t m_hours = 0;
    std::uint64_t m_minutes = 0;
    std::uint64_t m_seconds = 0;
    std::uint16_t m_milliSeconds = 0;
    std::uint16_t m_microSeconds = 0;
    std::uint16_t m_nanoSeconds = 0;
    bool m_bNegative = false;
};

} // namespace QvXmlLib9
