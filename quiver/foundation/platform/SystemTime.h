#pragma once

/// @file
/// The two time structures of the Windows interface that `QvXmlLib9::CDateTime` converts to and from. On Windows they
/// are the system's own; elsewhere they are declared here, with the same fields.

#if defined(_WIN32)

struct _SYSTEMTIME;
struct _FILETIME;

#else

/// A date and time taken apart, without a zone.
struct _SYSTEMTIME
{
    unsigned short wYear;
    /// 1 to 12.
    unsigned short wMonth;
    /// 0 is Sunday, 6 Saturday.
    unsigned short wDayOfWeek;
    /// 1 to 31.
    unsigned short wDay;
    unsigned short wHour;
    unsigned short wMinute;
    unsigned short wSecond;
    unsigned short wMilliseconds;
};

/// A count of 100-nanosecond ticks since 1601-01-01T00:00:00Z, in two halves.
struct _FILETIME
{
    unsigned int dwLowDateTime;
    unsigned int dwHighDateTime;
};

#endif
