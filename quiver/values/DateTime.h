#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/foundation/platform/SystemTime.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CDateTimeSpan;

/// The value of the XML Schema types `dateTime`, `date`, `time`, `gYearMonth`, `gYear`, `gMonthDay`, `gDay` and
/// `gMonth` (XML Schema Datatypes, 3.2.7 to 3.2.14).
///
/// An object knows its kind, and only the fields of that kind have meaning. It parses and prints the lexical form,
/// compares by the rules for values with and without a zone, and adds durations:
///
///     QvXmlLib9::CDateTime dt(L"2001-03-05T12:30:00.5+01:00");
///     dt += QvXmlLib9::CDateTimeSpan(36, 0, 0);
///     std::wcout << dt.ToString();               // 2001-03-07T00:30:00.5+01:00
///
/// Several behaviours differ from the calendar or from XML Schema. Each is said where it belongs, with its entry in
/// docs/compatibility.md, which tells why it stands.
///
/// A value is copied freely; one object is used by one thread at a time. Fraction digits are held in groups: `milli`,
/// `micro` and `nano`, each 0 to 999, together give up to nine digits.
class QVXMLLIB_API CDateTime
{
public:
    /// The kind of value.
    enum DTType : int
    {
        /// The empty object; it has no text.
        dt_yearZero = 0,
        /// `[-]CCYY-MM-DDThh:mm:ss[.fffffffff][zone]`
        dt_dateTime = 1,
        /// `[-]CCYY-MM-DD[zone]`
        dt_date = 2,
        /// `[-]CCYY-MM[zone]`
        dt_gYearMonth = 3,
        /// `[-]CCYY[zone]`
        dt_gYear = 4,
        /// `hh:mm:ss[.fffffffff][zone]`
        dt_time = 5,
        /// `---DD[zone]`
        dt_gDay = 6,
        /// `--MM[zone]`
        dt_gMonth = 7,
        /// `--MM-DD[zone]`
        dt_gMonthDay = 8
    };

    /// The outcome of a comparison. Values with and without a zone need not have an order.
    enum DTCompareResult : int
    {
        DTCompareResult_Equal = 0,
        DTCompareResult_LessThan = 1,
        DTCompareResult_GreaterThan = 2,
        DTCompareResult_Indeterminate = 3
    };

    /// @name Construction
    /// @{

    /// The empty object.
    CDateTime();

    /// An object of the given kind whose fields are all clear.
    CDateTime(DTType type);

    /// ParseXSDDateTime() of the text.
    /// @throws CQvInvalidValueException as ParseXSDDateTime() does.
    CDateTime(const wchar_t* lpctText);

    /// A `dateTime` or a `date`. The constructors from here on never fail: values out of range give the empty object.
    /// @param time seconds since 1970-01-01T00:00:00Z.
    CDateTime(const __int64& time);
    CDateTime(const _SYSTEMTIME& time);
    CDateTime(const _FILETIME& time);
    CDateTime(short year, unsigned char month, unsigned char day);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
              unsigned char second);
    CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
              unsigned char second, unsigned short milli, unsigned short micro, unsigned short nano);

    CDateTime(const CDateTime&) = default;
    virtual ~CDateTime();
    /// @}

    /// @name Parsing
    /// What the object held before is forgotten, and the text alone decides the kind: ParseXSDDate() of "2001" gives a
    /// `gYear`. A failure leaves the object partly filled.
    /// @{

    /// Reads a `dateTime`: the part before the first "T" as a date, the rest as a time.
    /// @throws CQvInvalidValueException for a null text, another form, or a field out of range.
    void ParseXSDDateTime(const wchar_t* lpctText);

    /// Reads any kind without a time. A year has exactly four digits and is not 0. `---DD` has no upper bound for its
    /// day, and `--MM` may be followed by any two characters, as in the old form `--MM--`.
    /// @throws CQvInvalidValueException for a null or an empty text, another form, or a field out of range.
    void ParseXSDDate(const wchar_t* lpctText);

    /// Reads a `time`. Neither 24:00:00 nor a leap second is accepted. A text that goes on after the time with
    /// something that is no zone is accepted, and has no zone.
    /// @throws CQvInvalidValueException for a null or an empty text, another form, or a tenth fraction digit.
    void ParseXSDTime(const wchar_t* lpctText);
    /// @}

    /// @name Setting a whole value
    /// The zone is lost. The object must be empty or of the kind that is set.
    /// @throws CQvInvalidStateException when the object is of another kind.
    /// @throws CQvInvalidValueException when a field is out of range; the fields stay as given.
    /// @{
    void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second);
    void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour, unsigned char minute,
                     unsigned char second, unsigned short milli, unsigned short micro, unsigned short nano);
    void SetDate(short year, unsigned char month, unsigned char day);
    void SetTime(unsigned char hour, unsigned char minute, unsigned char second);
    void SetTime(unsigned char hour, unsigned char minute, unsigned char second, unsigned short milli,
                 unsigned short micro, unsigned short nano);
    /// A `time` of midnight and a fraction of a second.
    void SetFracTime(unsigned short milli, unsigned short micro, unsigned short nano);
    void SetGYear(short year);
    void SetGYearMonth(short year, unsigned char month);
    void SetGMonth(unsigned char month);
    void SetGMonthDay(unsigned char month, unsigned char day);
    void SetGDay(unsigned char day);

    CDateTime& operator=(const CDateTime&) = default;
    /// A `dateTime` in UTC, without a zone mark. @param time seconds since 1970-01-01T00:00:00Z.
    CDateTime& operator=(const __int64& time);
    /// A `dateTime` to the millisecond.
    CDateTime& operator=(const _SYSTEMTIME& time);
    /// A `dateTime` to the millisecond, in UTC, without a zone mark.
    CDateTime& operator=(const _FILETIME& time);
    /// @}

    /// Takes over another value as the kind `target`, with every field and flag, also those that `target` does not use.
    /// A `dateTime` can become any kind, the others what their own fields suffice for, and every kind `dt_yearZero`.
    /// The kind that this object had does not matter.
    /// @throws CQvInvalidValueException when the source lacks a field of `target`.
    void SetDateTime(const CDateTime& source, DTType target);

    /// @name Fields
    /// Each pair exists for the kinds that have the field. The setters store the number without any check.
    /// @throws CQvInvalidStateException for the other kinds, "Failed to GetYear. Invalid Date Type: %s." and so on.
    /// @{
    short GetYear() const;
    void SetYear(short year);
    unsigned char GetMonth() const;
    void SetMonth(unsigned char month);
    unsigned char GetDay() const;
    void SetDay(unsigned char day);
    unsigned char GetHour() const;
    void SetHour(unsigned char hour);
    unsigned char GetMinute() const;
    void SetMinute(unsigned char minute);
    unsigned char GetSecond() const;
    void SetSecond(unsigned char second);
    unsigned short GetMilliSecond() const;
    void SetMilliSecond(unsigned short milli);
    unsigned short GetMicroSecond() const;
    void SetMicroSecond(unsigned short micro);
    unsigned short GetNanoSecond() const;
    void SetNanoSecond(unsigned short nano);
    /// The seconds together with their fraction.
    double GetRealSecond() const;
    /// @}

    DTType GetType() const { return m_type; }

    /// The name of the kind: "dateTime", "gMonthDay", and "yearZero" for the empty object.
    std::wstring GetTypeAsString() const;

    /// @name Zone
    /// @{

    /// Whether the zone was given as an offset.
    bool HasTimeZone() const { return m_bHasTimeZone; }

    /// Whether there is a zone at all, as "Z" or as an offset.
    bool IsUTC() const { return m_bUTC; }

    /// Gives the value the zone "Z". The fields stay.
    void SetUTC();

    /// Gives the value an offset. The fields stay. Only the hour carries a sign, so there is no offset of "-00:30".
    /// @param hour -23 to 23.
    /// @param minute 0 to 59, going the way of the hour.
    /// @throws CQvInvalidValueException "Invalid TimeZone [%d:%d]".
    void SetTimeZone(short hour, unsigned char minute);

    /// @throws CQvInvalidStateException "TimeZone is not been used" when the zone was not given as an offset.
    short GetZoneHour() const;
    /// @throws CQvInvalidStateException "TimeZone is not been used" when the zone was not given as an offset.
    unsigned char GetZoneMinute() const;

    /// The same moment with the offset "+00:00". A value without an offset is returned as it is.
    CDateTime GetNormalized() const;
    /// @}

    /// @name Comparison
    /// Values compare field by field, from the year to the fraction of the second, after offsets are taken out; where
    /// only one side has a zone, the other is tried at both ends of the range of zones. The month counts only in so far
    /// as both sides must have one: values that differ in nothing else are equal. Years of different sign, and kinds
    /// with different fields, have no order.
    /// @{

    /// @throws CQvInvalidStateException when `other` has a month and this object has none, and the years do not decide.
    DTCompareResult CompareTo(const CDateTime& other) const;

    /// CompareTo() gives "equal"; an indeterminate result is not equal.
    bool operator==(const CDateTime& other) const;
    bool operator!=(const CDateTime& other) const;
    bool operator<(const CDateTime& other) const;
    bool operator>(const CDateTime& other) const;
    bool operator<=(const CDateTime& other) const;
    bool operator>=(const CDateTime& other) const;
    /// @}

    /// @name Arithmetic
    /// Adding a duration carries from the fraction of the second to the year and takes all fields along, whatever the
    /// kind. The day is not cut to the length of its month unless days are added too: 2001-01-31 and a month give
    /// 2001-02-31. The year wraps at 16 bits. The carries are computed in single precision, so a field of the duration
    /// beyond 16777216 gives the results of that precision; minutes and seconds beyond 2^62 count as 2^62.
    /// @{
    CDateTime operator+(const CDateTimeSpan& span) const;
    CDateTime& operator+=(const CDateTimeSpan& span);
    /// Subtracts the size of the span, whatever its sign.
    CDateTime operator-(const CDateTimeSpan& span) const;
    CDateTime& operator-=(const CDateTimeSpan& span);
    /// Always the zero span: the operator is there for the interface, and takes no difference.
    CDateTimeSpan operator-(const CDateTime& other) const;
    /// @}

    /// @name Conversion
    /// @{

    /// Seconds since 1970-01-01T00:00:00Z of a `dateTime` or a `date`; a value without a zone counts as UTC.
    /// @throws CQvInvalidValueException for the other kinds.
    __int64 GetTime() const;

    /// The fields of a `dateTime` to the millisecond, with the day of the week of GetDayOfWeek(). The zone is ignored.
    /// @throws CQvInvalidValueException for the other kinds.
    _SYSTEMTIME GetAsSystemTime() const;

    /// The day of the week of a `dateTime` or a `date` in the machine's zone: 1 is Sunday, 7 Saturday.
    /// @throws CQvInvalidStateException for the other kinds.
    int GetDayOfWeek() const;

    /// The day of the year of a `dateTime` or a `date`, with the leap day counted in January and February and not after
    /// them, the reverse of the calendar: 2 for 2000-01-01, 60 for 2000-03-01.
    /// @throws CQvInvalidStateException for the other kinds.
    int GetDayOfYear() const;

    /// The lexical form, with as many fraction digits as are needed.
    /// @throws CQvInvalidValueException "Date Not Set" when the object is empty, or is no `time` and all its fields are
    ///         0.
    std::wstring ToString() const;

    /// @param lpctFormat "s" gives the lexical form; null and "G" the empty string; any other format the text "Unknown
    ///        Format: " and the format.
    /// @throws CQvInvalidValueException as ToString().
    std::wstring ToString(const wchar_t* lpctFormat) const;

    /// The local time of the machine as a `dateTime`, to the millisecond.
    static CDateTime GetTickCount();
    /// @}

private:
    void Clear();
    void SetDateTime(DTType type, short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milli, unsigned short micro,
                     unsigned short nano);
    void SetXSDDate(std::wstring_view text);
    DTType ReadDateFields(std::wstring_view text);
    DTType ReadDateFieldsWithoutYear(std::wstring_view text);
    void SetXSDTime(std::wstring_view text);
    void SetZone(std::wstring_view text);
    void Validate() const;
    void CheckYearAndMonth() const;
    void CheckDay() const;
    void CheckTime() const;
    void AddDateTimeSpan(const CDateTimeSpan& span);
    void AddDays(std::int64_t nDays);
    static DTCompareResult CompareFields(const CDateTime& a, const CDateTime& b);
    static bool CheckConversion(DTType source, DTType target);
    wchar_t* WriteFields(wchar_t* p) const;
    wchar_t* WriteYear(wchar_t* p) const;
    wchar_t* WriteMonth(wchar_t* p) const;
    wchar_t* WriteDay(wchar_t* p) const;
    wchar_t* WriteTime(wchar_t* p) const;
    wchar_t* WriteZone(wchar_t* p) const;

    DTType m_type = dt_yearZero;
    std::int16_t m_year = 0;
    std::uint8_t m_month = 0;
    std::uint8_t m_day = 0;
    std::uint8_t m_hour = 0;
    std::uint8_t m_minute = 0;
    std::uint8_t m_second = 0;
    std::uint16_t m_milli = 0;
    std::uint16_t m_micro = 0;
    std::uint16_t m_nano = 0;
    bool m_bUTC = false;
    bool m_bHasTimeZone = false;
    std::int16_t m_zoneHour = 0;
    std::uint8_t m_zoneMinute = 0;
};

} // namespace QvXmlLib9
