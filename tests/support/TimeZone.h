#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

/// @file
/// The time zones that a test can have, and what the system says of them.

namespace QvTest
{

#if defined(_WIN32)

// Windows has one zone for all processes; scripts/windows.sh runs the tests in several.

inline std::vector<const char*> GetTimeZones()
{
    return {"that of the machine"};
}

class CTimeZone
{
public:
    explicit CTimeZone(const char*) {}
    CTimeZone(const CTimeZone&) = delete;
    CTimeZone& operator=(const CTimeZone&) = delete;
};

/// Seconds by which the local time is ahead of UTC at a time in seconds since 1970.
inline std::int64_t GetZoneOffset(std::int64_t nTime)
{
    constexpr std::int64_t nTicksPerSecond = 10000000;
    constexpr std::int64_t nFrom1601To1970 = 11644473600;
    const auto nTicks = static_cast<std::uint64_t>((nTime + nFrom1601To1970) * nTicksPerSecond);
    const FILETIME time = {static_cast<DWORD>(nTicks), static_cast<DWORD>(nTicks >> 32)};
    SYSTEMTIME utc = {};
    SYSTEMTIME local = {};
    FILETIME localTime = {};
    EXPECT_TRUE(::FileTimeToSystemTime(&time, &utc));
    EXPECT_TRUE(::SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local));
    EXPECT_TRUE(::SystemTimeToFileTime(&local, &localTime));
    const std::uint64_t nLocal = std::uint64_t{localTime.dwHighDateTime} << 32 | localTime.dwLowDateTime;
    return static_cast<std::int64_t>(nLocal) / nTicksPerSecond - nFrom1601To1970 - nTime;
}

#else

/// Names in the database of the POSIX systems.
inline std::vector<const char*> GetTimeZones()
{
    return {"UTC", "Pacific/Auckland", "America/New_York", "Asia/Kolkata", "Europe/Berlin"};
}

/// Puts the process into a time zone for as long as it lives.
class CTimeZone
{
public:
    explicit CTimeZone(const char* lpcName)
    {
        const char* const lpcOld = std::getenv("TZ");
        m_bHadOne = lpcOld != nullptr;
        m_strOld = m_bHadOne ? lpcOld : "";
        setenv("TZ", lpcName, 1);
        tzset();
    }
    ~CTimeZone()
    {
        if (m_bHadOne)
            setenv("TZ", m_strOld.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    CTimeZone(const CTimeZone&) = delete;
    CTimeZone& operator=(const CTimeZone&) = delete;

private:
    bool m_bHadOne = false;
    std::string m_strOld;
};

/// Seconds by which the local time is ahead of UTC at a time in seconds since 1970.
inline std::int64_t GetZoneOffset(std::int64_t nTime)
{
    const auto time = static_cast<std::time_t>(nTime);
    std::tm fields = {};
    EXPECT_NE(nullptr, localtime_r(&time, &fields));
    return fields.tm_gmtoff;
}

#endif

} // namespace QvTest
