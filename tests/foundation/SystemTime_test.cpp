#include "quiver/foundation/platform/Platform.h"

#include <gtest/gtest.h>

#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#endif

TEST(SystemTime, TakesAFileTimeApart)
{
    const struct
    {
        std::uint64_t nTicks;
        _SYSTEMTIME expected; ///< year, month, day of the week, day, hour, minute, second, millisecond
    } rows[] = {
        {0, {1601, 1, 1, 1, 0, 0, 0, 0}},
        {116444736000000000, {1970, 1, 4, 1, 0, 0, 0, 0}},
        // 2001-02-03T04:05:06.789, and all but a millisecond more.
        {126256467067890000, {2001, 2, 6, 3, 4, 5, 6, 789}},
        {126256467067899999, {2001, 2, 6, 3, 4, 5, 6, 789}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.nTicks);
        _FILETIME fileTime = {};
        fileTime.dwLowDateTime = static_cast<decltype(fileTime.dwLowDateTime)>(row.nTicks & 0xFFFFFFFF);
        fileTime.dwHighDateTime = static_cast<decltype(fileTime.dwHighDateTime)>(row.nTicks >> 32);
        _SYSTEMTIME time = {};
        ASSERT_TRUE(QvXmlLib9::Platform::FileTimeToSystemTime(fileTime, time));
        EXPECT_EQ(row.expected.wYear, time.wYear);
        EXPECT_EQ(row.expected.wMonth, time.wMonth);
        EXPECT_EQ(row.expected.wDayOfWeek, time.wDayOfWeek);
        EXPECT_EQ(row.expected.wDay, time.wDay);
        EXPECT_EQ(row.expected.wHour, time.wHour);
        EXPECT_EQ(row.expected.wMinute, time.wMinute);
        EXPECT_EQ(row.expected.wSecond, time.wSecond);
        EXPECT_EQ(row.expected.wMilliseconds, time.wMilliseconds);
    }
}
