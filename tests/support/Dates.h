#pragma once

#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"

#include <vector>

/// @file
/// Dates and durations from their text, in one word.

namespace QvTest
{

inline QvXmlLib9::CDateTime Date(const wchar_t* lpctText)
{
    QvXmlLib9::CDateTime dt;
    dt.ParseXSDDate(lpctText);
    return dt;
}

inline QvXmlLib9::CDateTime Time(const wchar_t* lpctText)
{
    QvXmlLib9::CDateTime dt;
    dt.ParseXSDTime(lpctText);
    return dt;
}

inline QvXmlLib9::CDateTime DateTime(const wchar_t* lpctText)
{
    return QvXmlLib9::CDateTime(lpctText);
}

inline QvXmlLib9::CDateTimeSpan Span(const wchar_t* lpctText)
{
    QvXmlLib9::CDateTimeSpan span;
    span.ParseXSDDuration(lpctText);
    return span;
}

/// An object of each kind, in the order of their numbers.
inline std::vector<QvXmlLib9::CDateTime> OneOfEachKind()
{
    return {QvXmlLib9::CDateTime(), DateTime(L"2001-03-05T12:30:15.123456789"),
            Date(L"2001-03-05"),    Date(L"2001-03"),
            Date(L"2001"),          Time(L"12:30:15.123456789"),
            Date(L"---05"),         Date(L"--03"),
            Date(L"--03-05")};
}

} // namespace QvTest
