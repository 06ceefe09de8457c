// Two dates and a duration, one in each line: parsing, printing, comparing, adding.

#include "fuzz/FuzzInput.h"

#include "quiver/foundation/platform/SystemTimeFields.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"

using namespace QvXmlLib9;

namespace
{

template <class TParse>
bool ParseDate(CDateTime& date, const std::wstring& strText, TParse pfnParse)
{
    return fuzz::Succeeds([&] { (date.*pfnParse)(strText.c_str()); });
}

/// A value of any kind, which the first form that fits decides.
CDateTime Date(const std::wstring& strText)
{
    CDateTime date;
    if (!ParseDate(date, strText, &CDateTime::ParseXSDDateTime) && !ParseDate(date, strText, &CDateTime::ParseXSDTime))
        date.ParseXSDDate(strText.c_str());
    return date;
}

void Check(const CDateTime& a, const CDateTime& b, const CDateTimeSpan& span)
{
    const std::wstring strA = a.ToString();
    fuzz::Require(Date(strA).ToString() == strA, "a date reads as it was printed");
    fuzz::Require(a.CompareTo(a) == CDateTime::DTCompareResult_Equal, "a date equals itself");
    fuzz::Require(!(a < b && a > b) && (a != b) == !(a == b), "a comparison has one outcome");
    fuzz::Require(span.CompareTo(span) == CDateTime::DTCompareResult_Equal, "a duration equals itself");
    fuzz::Succeeds([&] { (a + span).ToString(); });
    fuzz::Succeeds([&] { (b - span).GetTime(); });
    fuzz::Succeeds([&] { a.GetAsSystemTime(); });
    a.GetNormalized();
    span.ToString();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::vector<std::wstring> lines = fuzz::Lines(fuzz::Text(pData, nSize), 3);
    const auto Work = [&]
    {
        CDateTimeSpan span;
        if (!lines[2].empty())
            span.ParseXSDDuration(lines[2].c_str());
        Check(Date(lines[0]), Date(lines[1].empty() ? lines[0] : lines[1]), span);
    };
    fuzz::Succeeds(Work);
    return 0;
}
