#include "quiver/generated/LexicalForm.h"

#include "quiver/foundation/Digits.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>

namespace QvXmlLib9
{

namespace
{

bool IsLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

/// Reads a text from its start. Each Take... moves on and tells whether there was what it is named for.
class CFormReader
{
public:
    explicit CFormReader(std::wstring_view text)
        : m_rest(text)
    {
    }

    bool AtEnd() const { return m_rest.empty(); }

    bool Take(wchar_t c)
    {
        if (m_rest.empty() || m_rest.front() != c)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    bool TakeSign() { return Take(L'+') || Take(L'-'); }

    /// As many digits as there are.
    std::size_t TakeDigits()
    {
        const std::size_t nCount = static_cast<std::size_t>(
            std::find_if_not(m_rest.begin(), m_rest.end(), [](wchar_t c) { return IsDigit(c); }) - m_rest.begin());
        m_rest.remove_prefix(nCount);
        return nCount;
    }

    bool TakeTwoDigits() { return TakeDigit() && TakeDigit(); }

    /// Digits with at most one point among, before or behind them.
    bool TakeDecimal()
    {
        const std::size_t nWhole = TakeDigits();
        const std::size_t nFraction = Take(L'.') ? TakeDigits() : 0;
        return nWhole + nFraction > 0;
    }

    /// Four digits or more, of which the first is no zero where there are more.
    bool TakeYear()
    {
        Take(L'-');
        const bool bZero = !m_rest.empty() && m_rest.front() == L'0';
        const std::size_t nDigits = TakeDigits();
        return nDigits == 4 || (nDigits > 4 && !bZero);
    }

    bool TakeSeconds() { return TakeTwoDigits() && (!Take(L'.') || TakeDigits() > 0); }

    /// A time zone, or none.
    bool TakeZone()
    {
        if (Take(L'Z') || !TakeSign())
            return true;
        return TakeTwoDigits() && Take(L':') && TakeTwoDigits();
    }

private:
    bool TakeDigit()
    {
        if (m_rest.empty() || !IsDigit(m_rest.front()))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    std::wstring_view m_rest;
};

/// @param form Y a year, 2 two digits, s seconds with a fraction, z an optional zone; anything else stands for itself.
bool HasDateForm(const wchar_t* form, std::wstring_view text)
{
    CFormReader reader(text);
    for (; *form != L'\0'; ++form)
    {
        const bool bTaken = *form == L'Y'   ? reader.TakeYear()
                            : *form == L'2' ? reader.TakeTwoDigits()
                            : *form == L's' ? reader.TakeSeconds()
                            : *form == L'z' ? reader.TakeZone()
                                            : reader.Take(*form);
        if (!bTaken)
            return false;
    }
    return reader.AtEnd();
}

bool IsInteger(std::wstring_view text)
{
    CFormReader reader(text);
    reader.TakeSign();
    return reader.TakeDigits() > 0 && reader.AtEnd();
}

bool IsDecimal(std::wstring_view text)
{
    CFormReader reader(text);
    reader.TakeSign();
    return reader.TakeDecimal() && reader.AtEnd();
}

bool IsFloat(std::wstring_view text)
{
    if (text == L"NaN" || text == L"INF" || text == L"-INF")
        return true;
    CFormReader reader(text);
    reader.TakeSign();
    if (!reader.TakeDecimal())
        return false;
    if (reader.Take(L'e') || reader.Take(L'E'))
    {
        reader.TakeSign();
        if (reader.TakeDigits() == 0)
            return false;
    }
    return reader.AtEnd();
}

/// Reads the fields of one half of a duration: numbers, each with a letter of `letters`, in their order. A point is
/// allowed in front of an S.
bool TakeFields(std::wstring_view& rest, std::wstring_view letters)
{
    bool bAny = false;
    while (!rest.empty() && rest.front() != L'T')
    {
        const std::size_t nEnd = static_cast<std::size_t>(
            std::find_if(rest.begin(), rest.end(), [](wchar_t c) { return IsLetter(c); }) - rest.begin());
        if (nEnd == rest.size())
            return false;
        const std::wstring_view number = rest.substr(0, nEnd);
        const std::size_t nLetter = letters.find(rest[nEnd]);
        if (nLetter == std::wstring_view::npos)
            return false;
        CFormReader reader(number);
        const bool bNumber = reader.TakeDigits() > 0 &&
                             (rest[nEnd] != L'S' || !reader.Take(L'.') || reader.TakeDigits() > 0) && reader.AtEnd();
        if (!bNumber)
            return false;
        letters.remove_prefix(nLetter + 1);
        rest.remove_prefix(nEnd + 1);
        bAny = true;
    }
    return bAny;
}

bool IsDuration(std::wstring_view text)
{
    if (!text.empty() && text.front() == L'-')
        text.remove_prefix(1);
    if (text.empty() || text.front() != L'P')
        return false;
    text.remove_prefix(1);
    if (!text.empty() && text.front() != L'T' && !TakeFields(text, L"YMD"))
        return false;
    if (text.empty())
        return true;
    text.remove_prefix(1);
    return TakeFields(text, L"HMS") && text.empty();
}

/// "P" alone has no field.
bool IsFullDuration(std::wstring_view text)
{
    return !text.empty() && text.back() != L'P' && IsDuration(text);
}

bool IsHexBinary(std::wstring_view text)
{
    return text.size() % 2 == 0 &&
           std::all_of(text.begin(), text.end(),
                       [](wchar_t c) { return IsDigit(c) || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F'); });
}

bool IsBase64Digit(wchar_t c)
{
    return IsDigit(c) || IsLetter(c) || c == L'+' || c == L'/';
}

/// Groups of four digits, the last of which may end in padding; blanks anywhere between. Bits that the padding leaves
/// over are zero.
bool IsBase64Binary(std::wstring_view text)
{
    std::size_t nDigits = 0;
    std::size_t nPadding = 0;
    wchar_t cLast = L'A';
    for (const wchar_t c : text)
    {
        if (c == L' ')
            continue;
        if (c == L'=')
        {
            ++nPadding;
            continue;
        }
        if (nPadding > 0 || !IsBase64Digit(c))
            return false;
        ++nDigits;
        cLast = c;
    }
    if (nPadding > 2 || (nDigits + nPadding) % 4 != 0)
        return false;
    const std::wstring_view allowed = nPadding == 1   ? L"AEIMQUYcgkosw048"
                                      : nPadding == 2 ? L"AQgw"
                                                      : std::wstring_view();
    return allowed.empty() || allowed.find(cLast) != std::wstring_view::npos;
}

struct SRange
{
    unsigned int nFirst;
    unsigned int nLast;
};

template <std::size_t nCount>
bool IsIn(const SRange (&ranges)[nCount], unsigned int c)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const SRange& range) { return c >= range.nFirst && c <= range.nLast; });
}

/// Extensible Markup Language, production 4, without the colon.
bool IsNameStart(unsigned int c)
{
    static constexpr SRange s_ranges[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                                          {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                                          {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                                          {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
    return IsIn(s_ranges, c);
}

/// Production 4a, without the colon.
bool IsNameCharacter(unsigned int c)
{
    static constexpr SRange s_ranges[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};
    return IsNameStart(c) || IsIn(s_ranges, c);
}

/// Takes the first character off a text; a surrogate pair is one.
unsigned int TakeCharacter(std::wstring_view& rest)
{
    const unsigned int c = static_cast<unsigned int>(rest.front());
    rest.remove_prefix(1);
    if (c < 0xD800 || c > 0xDBFF || rest.empty())
        return c;
    const unsigned int cLow = static_cast<unsigned int>(rest.front());
    if (cLow < 0xDC00 || cLow > 0xDFFF)
        return c;
    rest.remove_prefix(1);
    return 0x10000 + ((c - 0xD800) << 10) + (cLow - 0xDC00);
}

bool IsName(std::wstring_view text, bool bColon, bool bAnyStart)
{
    if (text.empty())
        return false;
    bool bStart = !bAnyStart;
    while (!text.empty())
    {
        const unsigned int c = TakeCharacter(text);
        if (!(bColon && c == ':') && !(bStart ? IsNameStart(c) : IsNameCharacter(c)))
            return false;
        bStart = false;
    }
    return true;
}

bool IsQName(std::wstring_view text)
{
    const std::size_t nColon = text.find(L':');
    if (nColon == std::wstring_view::npos)
        return IsName(text, false, false);
    return IsName(text.substr(0, nColon), false, false) && IsName(text.substr(nColon + 1), false, false);
}

/// Parts of one to eight letters, behind the first one also digits, with hyphens between them.
bool IsLanguage(std::wstring_view text)
{
    bool bFirst = true;
    for (;;)
    {
        const std::size_t nEnd = std::min(text.find(L'-'), text.size());
        const std::wstring_view part = text.substr(0, nEnd);
        if (part.empty() || part.size() > 8 ||
            !std::all_of(part.begin(), part.end(),
                         [bFirst](wchar_t c) { return IsLetter(c) || (!bFirst && IsDigit(c)); }))
            return false;
        if (nEnd == text.size())
            return true;
        text.remove_prefix(nEnd + 1);
        bFirst = false;
    }
}

/// A decimal number in parts.
struct SDecimalParts
{
    bool bNegative = false;
    std::wstring_view whole;    ///< without zeros in front
    std::wstring_view fraction; ///< without zeros behind

    bool IsZero() const { return whole.empty() && fraction.empty(); }
};

SDecimalParts TakeApart(std::wstring_view text)
{
    SDecimalParts parts;
    if (!text.empty() && (text.front() == L'-' || text.front() == L'+'))
    {
        parts.bNegative = text.front() == L'-';
        text.remove_prefix(1);
    }
    const std::size_t nPoint = std::min(text.find(L'.'), text.size());
    parts.whole = text.substr(0, nPoint);
    parts.whole.remove_prefix(std::min(parts.whole.find_first_not_of(L'0'), parts.whole.size()));
    if (nPoint < text.size())
    {
        parts.fraction = text.substr(nPoint + 1);
        const std::size_t nLast = parts.fraction.find_last_not_of(L'0');
        parts.fraction = parts.fraction.substr(0, nLast == std::wstring_view::npos ? 0 : nLast + 1);
    }
    parts.bNegative = parts.bNegative && !parts.IsZero();
    return parts;
}

/// Takes a number off a text, up to the first character that is no digit.
unsigned long long TakeNumber(std::wstring_view& rest)
{
    unsigned long long n = 0;
    for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1))
        n = n * 10 + static_cast<unsigned long long>(rest.front() - L'0');
    return n;
}

int TakeSmallNumber(std::wstring_view& rest)
{
    return static_cast<int>(TakeNumber(rest));
}

/// Numbers of dates and durations beyond this many digits are refused: no library holds them, and what is calculated
/// with smaller ones stays within 64 bits.
constexpr std::size_t s_nMostDigits = 10;

/// TakeNumber for a number that may be too large.
/// @return false if it is.
bool TakeSafeNumber(std::wstring_view& rest, unsigned long long& nNumber)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(L'0'), rest.size()));
    const std::size_t nSize = rest.size();
    nNumber = TakeNumber(rest);
    return nSize - rest.size() <= s_nMostDigits;
}

/// Takes a fraction off a text that begins with its point, if it does.
unsigned int TakeNanoseconds(std::wstring_view& rest)
{
    if (rest.empty() || rest.front() != L'.')
        return 0;
    rest.remove_prefix(1);
    unsigned int n = 0;
    unsigned int nUnit = 100000000;
    for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1), nUnit /= 10)
        n += static_cast<unsigned int>(rest.front() - L'0') * nUnit;
    return n;
}

/// The rule is applied to the number as it is written, also before the year 1 (XML Schema Part 2, appendix E).
bool IsLeapYear(long long nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

int DaysOfMonth(long long nYear, int nMonth)
{
    static constexpr int s_days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return nMonth == 2 && IsLeapYear(nYear) ? 29 : s_days[nMonth - 1];
}

/// Days from the first of March of a year 0, which nobody writes: it only has to keep the order.
long long DayNumber(long long nYear, int nMonth, int nDay)
{
    if (nMonth <= 2)
    {
        --nYear;
        nMonth += 12;
    }
    const long long nCycle = nYear >= 0 ? nYear / 400 : (nYear - 399) / 400;
    const long long nYearOfCycle = nYear - nCycle * 400;
    return nCycle * 146097 + nYearOfCycle * 365 + nYearOfCycle / 4 - nYearOfCycle / 100 + (153 * (nMonth - 3) + 2) / 5 +
           nDay - 1;
}

/// In minutes.
constexpr int s_nFurthestZone = 14 * 60;

struct SInstant
{
    long long nSeconds = 0;
    long long nNanoseconds = 0;
};

ValueOrder Compare(const SInstant& a, const SInstant& b)
{
    if (a.nSeconds != b.nSeconds)
        return a.nSeconds < b.nSeconds ? ValueOrder::Below : ValueOrder::Above;
    if (a.nNanoseconds != b.nNanoseconds)
        return a.nNanoseconds < b.nNanoseconds ? ValueOrder::Below : ValueOrder::Above;
    return ValueOrder::Equal;
}

SInstant InstantOf(const SDateFields& fields, int nZoneMinutes)
{
    const long long nMinutes =
        DayNumber(fields.nYear, fields.nMonth, fields.nDay) * 1440 + fields.nHour * 60 + fields.nMinute - nZoneMinutes;
    return {nMinutes * 60 + fields.nSecond, fields.nNanosecond};
}

/// The instant that a duration leads to from the first day of a month.
SInstant InstantAfter(const SDurationFields& duration, int nYear, int nMonth)
{
    const long long nSign = duration.bNegative ? -1 : 1;
    const long long nMonths =
        nYear * 12LL + nMonth - 1 + nSign * static_cast<long long>(duration.nYears * 12 + duration.nMonths);
    const long long nNewYear = nMonths >= 0 ? nMonths / 12 : (nMonths - 11) / 12;
    const long long nDays = DayNumber(nNewYear, static_cast<int>(nMonths - nNewYear * 12) + 1, 1);
    const long long nSeconds = static_cast<long long>(
        ((duration.nDays * 24 + duration.nHours) * 60 + duration.nMinutes) * 60 + duration.nSeconds);
    return {nDays * 86400 + nSign * nSeconds, nSign * static_cast<long long>(duration.nNanosecond)};
}

/// The digits and marks of one date, taken off its text one after the other.
class CDateReader
{
public:
    CDateReader(std::wstring_view text, SDateFields& fields)
        : m_rest(text)
        , m_fields(fields)
    {
    }

    bool ReadYear()
    {
        const bool bNegative = Skip(L'-');
        unsigned long long nYear = 0;
        if (!TakeSafeNumber(m_rest, nYear))
            return false;
        m_fields.nYear = static_cast<long long>(nYear) * (bNegative ? -1 : 1);
        return nYear != 0;
    }

    bool ReadMonth()
    {
        Skip(L'-');
        m_fields.nMonth = TakeSmallNumber(m_rest);
        return m_fields.nMonth >= 1 && m_fields.nMonth <= 12;
    }

    bool ReadDay()
    {
        Skip(L'-');
        m_fields.nDay = TakeSmallNumber(m_rest);
        return m_fields.nDay >= 1 && m_fields.nDay <= DaysOfMonth(m_fields.nYear, m_fields.nMonth);
    }

    bool ReadTime()
    {
        Skip(L'T');
        m_fields.nHour = TakeSmallNumber(m_rest);
        Skip(L':');
        m_fields.nMinute = TakeSmallNumber(m_rest);
        Skip(L':');
        m_fields.nSecond = TakeSmallNumber(m_rest);
        m_fields.nNanosecond = TakeNanoseconds(m_rest);
        const bool bMidnight =
            m_fields.nHour == 24 && m_fields.nMinute == 0 && m_fields.nSecond == 0 && m_fields.nNanosecond == 0;
        return bMidnight || (m_fields.nHour <= 23 && m_fields.nMinute <= 59 && m_fields.nSecond <= 59);
    }

    bool ReadZone()
    {
        m_fields.bZone = !m_rest.empty();
        if (m_rest.empty() || Skip(L'Z'))
            return true;
        const int nSign = Skip(L'-') ? -1 : 1;
        Skip(L'+');
        const int nHours = TakeSmallNumber(m_rest);
        Skip(L':');
        const int nMinutes = TakeSmallNumber(m_rest);
        m_fields.nZoneMinutes = nSign * (nHours * 60 + nMinutes);
        return nMinutes <= 59 && nHours * 60 + nMinutes <= s_nFurthestZone;
    }

private:
    bool Skip(wchar_t c)
    {
        const std::size_t nCount = std::min(m_rest.find_first_not_of(c), m_rest.size());
        m_rest.remove_prefix(nCount);
        return nCount > 0;
    }

    std::wstring_view m_rest;
    SDateFields& m_fields;
};

/// The end of a day is the beginning of the next.
void CarryMidnight(SDateFields& fields, bool bHasDay)
{
    if (fields.nHour != 24)
        return;
    fields.nHour = 0;
    if (!bHasDay || ++fields.nDay <= DaysOfMonth(fields.nYear, fields.nMonth))
        return;
    fields.nDay = 1;
    if (++fields.nMonth <= 12)
        return;
    fields.nMonth = 1;
    fields.nYear = fields.nYear == -1 ? 1 : fields.nYear + 1;
}

} // namespace

bool ReadDateFields(CSimpleType::EForm eForm, std::wstring_view text, SDateFields& fields)
{
    const bool bHasYear = eForm == CSimpleType::Form_DateTime || eForm == CSimpleType::Form_Date ||
                          eForm == CSimpleType::Form_YearMonth || eForm == CSimpleType::Form_Year;
    const bool bHasMonth =
        eForm != CSimpleType::Form_Time && eForm != CSimpleType::Form_Year && eForm != CSimpleType::Form_Day;
    const bool bHasDay = eForm == CSimpleType::Form_DateTime || eForm == CSimpleType::Form_Date ||
                         eForm == CSimpleType::Form_MonthDay || eForm == CSimpleType::Form_Day;
    const bool bHasTime = eForm == CSimpleType::Form_DateTime || eForm == CSimpleType::Form_Time;
    CDateReader reader(text, fields);
    if ((bHasYear && !reader.ReadYear()) || (bHasMonth && !reader.ReadMonth()) || (bHasDay && !reader.ReadDay()) ||
        (bHasTime && !reader.ReadTime()) || !reader.ReadZone())
        return false;
    CarryMidnight(fields, bHasDay);
    return true;
}

ValueOrder CompareDates(const SDateFields& a, const SDateFields& b)
{
    if (a.bZone == b.bZone)
        return Compare(InstantOf(a, a.nZoneMinutes), InstantOf(b, b.nZoneMinutes));
    if (!a.bZone)
    {
        const ValueOrder eReverse = CompareDates(b, a);
        return eReverse == ValueOrder::Below   ? ValueOrder::Above
               : eReverse == ValueOrder::Above ? ValueOrder::Below
                                               : ValueOrder::None;
    }
    const SInstant instant = InstantOf(a, a.nZoneMinutes);
    if (Compare(instant, InstantOf(b, s_nFurthestZone)) == ValueOrder::Below)
        return ValueOrder::Below;
    return Compare(instant, InstantOf(b, -s_nFurthestZone)) == ValueOrder::Above ? ValueOrder::Above : ValueOrder::None;
}

bool ReadDurationFields(std::wstring_view text, SDurationFields& fields)
{
    fields.bNegative = text.front() == L'-';
    text.remove_prefix(fields.bNegative ? 2 : 1);
    bool bTime = false;
    while (!text.empty())
    {
        if (text.front() == L'T')
        {
            bTime = true;
            text.remove_prefix(1);
            continue;
        }
        unsigned long long nNumber = 0;
        if (!TakeSafeNumber(text, nNumber))
            return false;
        const unsigned int nNanoseconds = TakeNanoseconds(text);
        switch (text.front())
        {
        case L'Y':
            fields.nYears = nNumber;
            break;
        case L'M':
            (bTime ? fields.nMinutes : fields.nMonths) = nNumber;
            break;
        case L'D':
            fields.nDays = nNumber;
            break;
        case L'H':
            fields.nHours = nNumber;
            break;
        default:
            fields.nSeconds = nNumber;
            fields.nNanosecond = nNanoseconds;
            break;
        }
        text.remove_prefix(1);
    }
    return true;
}

ValueOrder CompareDurations(const SDurationFields& a, const SDurationFields& b)
{
    static constexpr struct
    {
        int nYear;
        int nMonth;
    } s_starts[] = {{1696, 9}, {1697, 2}, {1903, 3}, {1903, 7}};
    ValueOrder eOrder = ValueOrder::None;
    for (const auto& start : s_starts)
    {
        const ValueOrder eHere =
            Compare(InstantAfter(a, start.nYear, start.nMonth), InstantAfter(b, start.nYear, start.nMonth));
        if (eOrder != ValueOrder::None && eHere != eOrder)
            return ValueOrder::None;
        eOrder = eHere;
    }
    return eOrder;
}

bool HasForm(CSimpleType::EForm eForm, std::wstring_view text)
{
    switch (eForm)
    {
    case CSimpleType::Form_Text:
    case CSimpleType::Form_List:
    case CSimpleType::Form_Union:
        return true;
    case CSimpleType::Form_Boolean:
        return text == L"true" || text == L"false" || text == L"1" || text == L"0";
    case CSimpleType::Form_Integer:
        return IsInteger(text);
    case CSimpleType::Form_Decimal:
        return IsDecimal(text);
    case CSimpleType::Form_Float:
        return IsFloat(text);
    case CSimpleType::Form_DateTime:
        return HasDateForm(L"Y-2-2T2:2:sz", text);
    case CSimpleType::Form_Date:
        return HasDateForm(L"Y-2-2z", text);
    case CSimpleType::Form_Time:
        return HasDateForm(L"2:2:sz", text);
    case CSimpleType::Form_YearMonth:
        return HasDateForm(L"Y-2z", text);
    case CSimpleType::Form_Year:
        return HasDateForm(L"Yz", text);
    case CSimpleType::Form_MonthDay:
        return HasDateForm(L"--2-2z", text);
    case CSimpleType::Form_Day:
        return HasDateForm(L"---2z", text);
    case CSimpleType::Form_Month:
        return HasDateForm(L"--2z", text);
    case CSimpleType::Form_Duration:
        return IsFullDuration(text);
    case CSimpleType::Form_HexBinary:
        return IsHexBinary(text);
    case CSimpleType::Form_Base64Binary:
        return IsBase64Binary(text);
    case CSimpleType::Form_Name:
        return IsName(text, true, false);
    case CSimpleType::Form_NCName:
        return IsName(text, false, false);
    case CSimpleType::Form_NmToken:
        return IsName(text, true, true);
    case CSimpleType::Form_Language:
        return IsLanguage(text);
    case CSimpleType::Form_QName:
        return IsQName(text);
    }
    return false;
}

int CompareDecimals(std::wstring_view a, std::wstring_view b)
{
    const SDecimalParts left = TakeApart(a);
    const SDecimalParts right = TakeApart(b);
    if (left.bNegative != right.bNegative)
        return left.bNegative ? -1 : 1;
    int nOrder = left.whole.size() < right.whole.size()   ? -1
                 : left.whole.size() > right.whole.size() ? 1
                                                          : left.whole.compare(right.whole);
    if (nOrder == 0)
        nOrder = left.fraction.compare(right.fraction);
    return left.bNegative ? -nOrder : nOrder;
}

SDigits CountDigits(std::wstring_view text)
{
    const SDecimalParts parts = TakeApart(text);
    SDigits digits;
    digits.nFraction = parts.fraction.size();
    // Zeros between the point and the first digit do not count unless there is a whole part.
    std::wstring_view fraction = parts.fraction;
    if (parts.whole.empty())
        fraction.remove_prefix(std::min(fraction.find_first_not_of(L'0'), fraction.size()));
    digits.nTotal = parts.whole.size() + fraction.size();
    return digits;
}

std::size_t CountCharacters(std::wstring_view text)
{
    std::size_t nCount = 0;
    for (; !text.empty(); ++nCount)
        TakeCharacter(text);
    return nCount;
}

bool AreEqualBase64(std::wstring_view a, std::wstring_view b)
{
    const auto Skip = [](std::wstring_view& text)
    {
        text.remove_prefix(std::min(text.find_first_not_of(L' '), text.size()));
    };
    for (;;)
    {
        Skip(a);
        Skip(b);
        if (a.empty() || b.empty())
            return a.empty() && b.empty();
        if (a.front() != b.front())
            return false;
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
}

std::size_t CountBase64Octets(std::wstring_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsBase64Digit)) * 3 / 4;
}

std::vector<std::wstring_view> SplitList(std::wstring_view text)
{
    std::vector<std::wstring_view> items;
    while (!text.empty())
    {
        const std::size_t nEnd = static_cast<std::size_t>(
            std::find_if(text.begin(), text.end(), CWhitespaceUtils::IsWhiteSpace) - text.begin());
        if (nEnd > 0)
            items.push_back(text.substr(0, nEnd));
        text.remove_prefix(std::min(nEnd + 1, text.size()));
    }
    return items;
}

} // namespace QvXmlLib9
