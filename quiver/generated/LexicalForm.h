#pragma once

#include "quiver/generated/SimpleType.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// @file
/// The lexical forms of XML Schema (Part 2, section 3), exactly, and what can be told from the text of a value without
/// converting it. Internal to the library. All functions may be called by any thread and depend on no locale.

namespace QvXmlLib9
{

/// Whether a text, white space removed, has an atomic type's form. Only form is looked at: that a month has no 31st is
/// told by whoever converts it.
bool HasForm(CSimpleType::EForm eForm, std::wstring_view text);

inline bool IsDateForm(CSimpleType::EForm eForm)
{
    return eForm >= CSimpleType::Form_DateTime && eForm <= CSimpleType::Form_Month;
}

/// Order of two decimal numbers of any length, which have that form.
/// @return below, equal to or above 0.
int CompareDecimals(std::wstring_view a, std::wstring_view b);

/// Digits of a decimal number that count: no zeros in front, none behind the last fraction digit.
struct SDigits
{
    std::size_t nTotal = 0;
    std::size_t nFraction = 0;
};
SDigits CountDigits(std::wstring_view text);

/// What orders the values of a type need not have an order in: two dates of which one has a zone, two durations of
/// which one counts months.
enum class ValueOrder
{
    Below,
    Equal,
    Above,
    None
};

/// A date, a time, or a part of one. Fields that the form lacks are those of the first of January 1972, a leap year.
struct SDateFields
{
    long long nYear = 1972;
    int nMonth = 1;
    int nDay = 1;
    int nHour = 0;
    int nMinute = 0;
    int nSecond = 0;
    unsigned int nNanosecond = 0; ///< digits behind the ninth are cut off
    bool bZone = false;
    int nZoneMinutes = 0;
};

/// Reads a text that has the form. 24:00:00 is the beginning of the next day.
/// @return false if a field is out of its range: there is no 30th of February. So are years of more than ten digits.
bool ReadDateFields(CSimpleType::EForm eForm, std::wstring_view text, SDateFields& fields);

/// XML Schema Part 2, 3.2.7.4: values with and without a zone have an order only where 14 hours do not matter.
ValueOrder CompareDates(const SDateFields& a, const SDateFields& b);

/// A duration in the fields that it is written in.
struct SDurationFields
{
    bool bNegative = false;
    unsigned long long nYears = 0;
    unsigned long long nMonths = 0;
    unsigned long long nDays = 0;
    unsigned long long nHours = 0;
    unsigned long long nMinutes = 0;
    unsigned long long nSeconds = 0;
    unsigned int nNanosecond = 0; ///< digits behind the ninth are cut off
};

/// Reads a text that has the form.
/// @return false if a field has more than ten digits.
bool ReadDurationFields(std::wstring_view text, SDurationFields& fields);

/// XML Schema Part 2, 3.2.6.2: what adding them to four dates says, if the four agree.
ValueOrder CompareDurations(const SDurationFields& a, const SDurationFields& b);

/// Characters of a text; a surrogate pair is one.
std::size_t CountCharacters(std::wstring_view text);

/// Whether two base64 texts stand for the same octets.
bool AreEqualBase64(std::wstring_view a, std::wstring_view b);

/// Octets that a base64 text stands for.
std::size_t CountBase64Octets(std::wstring_view text);

/// The items of a list, which its white space separates.
std::vector<std::wstring_view> SplitList(std::wstring_view text);

} // namespace QvXmlLib9
