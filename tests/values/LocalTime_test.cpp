#include "quiver/values/DateTime.h"

#include "quiver/foundation/platform/SystemTimeFields.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"
#include "tests/support/TimeZone.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

// What depends on the time zone, or must not.

using namespace QvXmlLib9;
using QvTest::Date;
using QvTest::DateTime;

TEST(LocalTimeTest, TimeInSecondsDependsOnNoZone)
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
    for (const char* const lpcZone : QvTest::GetTimeZones())
    {
        SCOPED_TRACE(lpcZone);
        const QvTest::CTimeZone zone(lpcZone);
        for (const auto& c : cases)
            EXPECT_EQ(c.nTime, DateTime(c.lpctText).GetTime()) << QvTest::Show(c.lpctText);
        EXPECT_EQ(983750400, Date(L"2001-03-05").GetTime());
    }
}

/// From 1 on Sunday.
int DayOfTheWeek(std::int64_t nLocalTime)
{
    return static_cast<int>((nLocalTime / 86400 + 4) % 7) + 1;
}

TEST(LocalTimeTest, SystemTimeHoldsTheFields)
{
    for (const char* const lpcZone : QvTest::GetTimeZones())
    {
        SCOPED_TRACE(lpcZone);
        const QvTest::CTimeZone zone(lpcZone);
        const _SYSTEMTIME time = DateTime(L"2001-03-05T12:30:15.678999").GetAsSystemTime();
        EXPECT_EQ(2001, time.wYear);
        EXPECT_EQ(3, time.wMonth);
        EXPECT_EQ(DayOfTheWeek(983795415 + QvTest::GetZoneOffset(983795415)) - 1, time.wDayOfWeek);
        EXPECT_EQ(5, time.wDay);
        EXPECT_EQ(12, time.wHour);
        EXPECT_EQ(30, time.wMinute);
        EXPECT_EQ(15, time.wSecond);
        EXPECT_EQ(678, time.wMilliseconds);
        EXPECT_TEXT(L"-0044-03-15T01:02:03", CDateTime(DateTime(L"-0044-03-15T01:02:03").GetAsSystemTime()).ToString());
    }
}

TEST(LocalTimeTest, DayOfTheWeekIsThatOfTheMachinesZone)
{
    const struct
    {
        const wchar_t* lpctText;
        std::int64_t nUtc;
        int nDayInUtc;
    } cases[] = {
        {L"2001-03-04T12:00:00", 983707200, 1}, {L"2001-03-05T00:00:00", 983750400, 2},
        {L"2001-03-05T23:30:00", 983835000, 2}, {L"2001-03-10T23:59:59", 984268799, 7},
        {L"2001-07-10T23:59:59", 994809599, 3},
    };
    for (const char* const lpcZone : QvTest::GetTimeZones())
    {
        SCOPED_TRACE(lpcZone);
        const QvTest::CTimeZone zone(lpcZone);
        for (const auto& c : cases)
        {
            ASSERT_EQ(c.nDayInUtc, DayOfTheWeek(c.nUtc)) << QvTest::Show(c.lpctText);
            EXPECT_EQ(DayOfTheWeek(c.nUtc + QvTest::GetZoneOffset(c.nUtc)), DateTime(c.lpctText).GetDayOfWeek())
                << QvTest::Show(c.lpctText);
        }
    }
}

TEST(LocalTimeTest, TickCountIsTheLocalTime)
{
    for (const char* const lpcZone : QvTest::GetTimeZones())
    {
        SCOPED_TRACE(lpcZone);
        const QvTest::CTimeZone zone(lpcZone);
        const std::time_t before = std::time(nullptr);
        const CDateTime dt = CDateTime::GetTickCount();
        // Not by time(), which may be a tick behind the clock that is read to the microsecond.
        const std::time_t after = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
        EXPECT_EQ(CDateTime::dt_dateTime, dt.GetType());
        EXPECT_FALSE(dt.IsUTC());
        const std::int64_t nOffset = QvTest::GetZoneOffset(before);
        EXPECT_GE(dt.GetTime() - nOffset, before);
        EXPECT_LE(dt.GetTime() - nOffset, after);
        EXPECT_EQ(0, dt.GetMicroSecond());
    }
}

/// Who runs the test says how far the zone that he asks for is ahead at the beginning of 2001.
TEST(LocalTimeTest, EnvironmentsLocaleAndTimeZoneAreInForce)
{
    const char* const lpcLocale = std::getenv("LC_ALL");
    if (lpcLocale != nullptr && std::strcmp(lpcLocale, "de_DE.UTF-8") == 0)
        EXPECT_STREQ(",", std::localeconv()->decimal_point);
    else
    {
        // The second call may write where the first one's result lies.
        const std::string strInForce = std::setlocale(LC_ALL, nullptr);
        EXPECT_EQ(strInForce, std::setlocale(LC_ALL, ""));
    }

    const char* const lpcOffset = std::getenv("QUIVER_ZONE_OFFSET");
    const std::int64_t nOffset = QvTest::GetZoneOffset(978307200);
    if (lpcOffset != nullptr)
        EXPECT_EQ(std::atoi(lpcOffset), nOffset);
    else
        EXPECT_LE(std::abs(nOffset), 14 * 3600);
}
