#pragma once

#include "quiver/foundation/Exceptions.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

/// @file
/// Checks that show wide text readably, and the three-line form of a failure test.

namespace QvTest
{

/// Wide text with everything beyond printable ASCII as escapes, for the messages of failing tests.
inline std::string Show(const std::wstring& strText)
{
    std::string strShown = "\"";
    for (const wchar_t c : strText)
    {
        if (c >= 0x20 && c < 0x7F)
        {
            strShown += static_cast<char>(c);
        }
        else
        {
            char szEscape[16];
            std::snprintf(szEscape, sizeof(szEscape), "\\x{%lX}", static_cast<unsigned long>(c));
            strShown += szEscape;
        }
    }
    return strShown + "\"";
}

inline ::testing::AssertionResult TextEquals(const char*, const char* lpcActual, const std::wstring& strExpected,
                                             const std::wstring& strActual)
{
    if (strExpected == strActual)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << lpcActual << "\n  is       " << Show(strActual) << "\n  expected "
                                         << Show(strExpected);
}

/// Runs `action` and expects exactly `TException` (no class derived from it) with exactly this full message.
template <class TException, class TAction>
void ExpectThrows(const std::wstring& strFullMessage, TAction&& action)
{
    try
    {
        action();
    }
    catch (const QvXmlLib9::CQvException& ex)
    {
        EXPECT_STREQ(typeid(TException).name(), typeid(ex).name());
        EXPECT_PRED_FORMAT2(TextEquals, strFullMessage, ex.GetFullMessage());
        return;
    }
    ADD_FAILURE() << "expected an exception with the message " << Show(strFullMessage);
}

} // namespace QvTest

/// Expects two wide texts to be equal, expected text first.
#define EXPECT_TEXT(expected, actual) EXPECT_PRED_FORMAT2(QvTest::TextEquals, expected, actual)
