#include "quiver/values/DateTime.h"

#include "tests/support/Dates.h"
#include "tests/support/Expect.h"
#include "tests/support/TimeZone.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>

// What depends on the machine's time zone, or must not. The zones go by their names in the POSIX systems' database.

using namespace QvXmlLib9;
using QvTest::Date;
using QvTest::DateTime;

TEST(DateTimePosixTest, TimeInSecondsDependsOnNoZone)
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
    for (const char* lpcZone : {"UTC", "Pacific/Auckland", "America/New_York", "Asia/Kolkata", "Europe/Berlin"})
    {
        SCOPED_TRACE(lpcZone);
        const QvTest::CTimeZone zone(lpcZone);
        for (const auto& c : cases)
            EXPECT_EQ(c.nTime, DateTime(c.lpctText).GetTime()) << QvTest::Show(c.lpctText);
        EXPECT_EQ(983750400, Date(L"2001-03-05").GetTime());
    }
}

TEST(DateTimePosixTest, SystemTimeHoldsTheFields)
{
    const QvTest::CTimeZone zone("UTC");
    const _SYSTEMTIME time = DateTime(L"2001-03-05T12:30:15.678999").GetAsSystemTime();
    EXPECT_EQ(2001, time.wYear);
    EXPECT_EQ(3, time.wMonth);
    EXPECT_EQ(1, time.wDayOfWeek);
    EXPECT_EQ(5, time.wDay);
    EXPECT_EQ(12, time.wHour);
    EXPECT_EQ(30, time.wMinute);
    EXPECT_EQ(15, time.wSecond);
    EXPECT_EQ(678, time.wMilliseconds);
    EXPECT_TEXT(L"-0044-03-15T01:02:03", CDateTime(DateTime(L"-0044-03-15T01:02:03").GetAsSystemTime()).ToString());
}

TEST(DateTimePosixTest, DayOfTheWeekIsThatOfTheMachinesZone)
{
    const struct
    {
        const char* lpcZone;
        const wchar_t* lpctText;
        int nDay;
    } cases[] = {
        {"UTC", L"2001-03-04T12:00:00", 1},
        {"UTC", L"2001-03-05T00:00:00", 2},
        {"UTC", L"2001-03-10T23:59:59", 7},
        {"America/New_York", L"2001-03-05T00:00:00", 1},
        {"Pacific/Auckland", L"2001-03-05T00:00:00", 2},
        {"Pacific/Auckland", L"2001-03-05T23:30:00", 3},
    };
    for (const auto& c : cases)
    {
        const QvTest::CTimeZone zone(c.lpcZone);
        EXPECT_EQ(c.nDay, DateTime(c.lpctText).GetDayOfWeek()) << c.lpcZone;
    }
}

TEST(DateTimePosixTest, TickCountIsTheLocalTime)
{
    for (const char* lpcZone : {"UTC", "Pacific/Auckland"})
    {
        const QvTest::CTimeZone zone(lpcZone);
        const std::time_t before = std::time(nullptr);
        const CDateTime dt = CDateTime::GetTickCount();
        // Not by time(), which may be a tick behind the clock that is read to the microsecond.
        const std::time_t after = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
        EXPECT_EQ(CDateTime::dt_dateTime, dt.GetType());
        EXPECT_FALSE(dt.IsUTC());
        std::tm fields = {};
        localtime_r(&before, &fields);
        const auto nOffset = static_cast<__int64>(fields.tm_gmtoff);
        EXPECT_GE(dt.GetTime() - nOffset, before);
        EXPECT_LE(dt.GetTime() - nOffset, after);
        EXPECT_EQ(0, dt.GetMicroSecond());
    }
}

TEST(DateTimePosixTest, EnvironmentsLocaleAndTimeZoneAreInForce)
{
    const char* const lpcLocale = std::getenv("LC_ALL");
    if (lpcLocale != nullptr && std::strcmp(lpcLocale, "de_DE.UTF-8") == 0)
        EXPECT_STREQ(",", std::localeconv()->decimal_point);
    else
        EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), std::setlocale(LC_ALL, ""));

    const char* const lpcZone = std::getenv("TZ");
    const std::time_t summer = 978307200;
    std::tm fields = {};
    localtime_r(&summer, &fields);
    if (lpcZone != nullptr && std::strcmp(lpcZone, "Pacific/Auckland") == 0)
        EXPECT_EQ(13 * 3600, fields.tm_gmtoff);
    else
        EXPECT_LE(std::abs(fields.tm_gmtoff), 14 * 3600);
}
