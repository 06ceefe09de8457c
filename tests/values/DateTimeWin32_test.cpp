#include "quiver/values/DateTime.h"

#include "quiver/foundation/platform/SystemTimeFields.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <ctime>

// What depends on the machine's time zone, or must not. Windows has one zone for all processes, so the expected values are
// asked of the system; scripts/windows.sh runs these tests in several zones.

using namespace QvXmlLib9;
using QvTest::Date;
using QvTest::DateTime;

namespace
{

/// The machine's date and time at a time in UTC.
SYSTEMTIME ToLocal(const SYSTEMTIME& utc)
{
    SYSTEMTIME local = {};
    EXPECT_TRUE(::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local));
    return local;
}

/// Seconds since 1970 that the fields make in UTC.
__int64 ToSeconds(const SYSTEMTIME& fields)
{
    FILETIME ticks = {};
    EXPECT_TRUE(::SystemTimeToFileTime(&fields, &ticks));
    const auto nTicks = static_cast<__int64>(std::uint64_t{ticks.dwHighDateTime} << 32 | ticks.dwLowDateTime);
    return nTicks / 10000000 - 11644473600;
}

} // namespace

TEST(DateTimeWin32Test, TimeInSecondsDependsOnNoZone)
{
    const struct
    {
        const wchar_t* lpctText;
        __int64 nTime;
    } cases[] = {
        {L"1970-01-02T00:00:00", 86400},           {L"2001-03-05T12:30:15", 983795415},
        {L"2001-03-05T12:30:15.999", 983795415},   {L"2001-03-05T12:30:15Z", 983795415},
        {L"2001-03-05T13:30:15+01:00", 983795415}, {L"2001-07-05T12:30:15", 994336215},
        {L"2001-12-31T23:59:59", 1009843199},      {L"2001-06-30T23:59:59-11:00", 993985199},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.nTime, DateTime(c.lpctText).GetTime()) << QvTest::Show(c.lpctText);
    EXPECT_EQ(983750400, Date(L"2001-03-05").GetTime());
}

TEST(DateTimeWin32Test, SystemTimeHoldsTheFields)
{
    const SYSTEMTIME time = DateTime(L"2001-03-05T12:30:15.678999").GetAsSystemTime();
    EXPECT_EQ(2001, time.wYear);
    EXPECT_EQ(3, time.wMonth);
    EXPECT_EQ(5, time.wDay);
    EXPECT_EQ(12, time.wHour);
    EXPECT_EQ(30, time.wMinute);
    EXPECT_EQ(15, time.wSecond);
    EXPECT_EQ(678, time.wMilliseconds);
    EXPECT_TEXT(L"-0044-03-15T01:02:03", CDateTime(DateTime(L"-0044-03-15T01:02:03").GetAsSystemTime()).ToString());
}

TEST(DateTimeWin32Test, DayOfTheWeekIsThatOfTheMachinesZone)
{
    const struct
    {
        const wchar_t* lpctText;
        SYSTEMTIME utc;
    } cases[] = {
        {L"2001-03-04T12:00:00", {2001, 3, 0, 4, 12, 0, 0, 0}},
        {L"2001-03-05T00:00:00", {2001, 3, 0, 5, 0, 0, 0, 0}},
        {L"2001-03-05T23:30:00", {2001, 3, 0, 5, 23, 30, 0, 0}},
        {L"2001-07-10T23:59:59", {2001, 7, 0, 10, 23, 59, 59, 0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToLocal(c.utc).wDayOfWeek + 1, DateTime(c.lpctText).GetDayOfWeek()) << QvTest::Show(c.lpctText);
}

TEST(DateTimeWin32Test, TickCountIsTheLocalTime)
{
    SYSTEMTIME utc = {};
    ::GetSystemTime(&utc);
    const __int64 nOffset = ToSeconds(ToLocal(utc)) - ToSeconds(utc);
    const std::time_t before = std::time(nullptr);
    const CDateTime dt = CDateTime::GetTickCount();
    const std::time_t after = std::time(nullptr);
    EXPECT_EQ(CDateTime::dt_dateTime, dt.GetType());
    EXPECT_FALSE(dt.IsUTC());
    EXPECT_GE(dt.GetTime() - nOffset, before);
    EXPECT_LE(dt.GetTime() - nOffset, after);
    EXPECT_EQ(0, dt.GetMicroSecond());
}

TEST(DateTimeWin32Test, EnvironmentsLocaleAndTimeZoneAreInForce)
{
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), std::setlocale(LC_ALL, ""));
    // scripts/windows.sh says how far the zone that it asks for is ahead at the beginning of 2001.
    const SYSTEMTIME utc = {2001, 1, 0, 1, 0, 0, 0, 0};
    const __int64 nOffset = ToSeconds(ToLocal(utc)) - ToSeconds(utc);
    const char* const lpcExpected = std::getenv("QUIVER_ZONE_OFFSET");
    if (lpcExpected != nullptr)
        EXPECT_EQ(std::atoi(lpcExpected), nOffset);
    else
        EXPECT_LE(std::abs(nOffset), 14 * 3600);
}
