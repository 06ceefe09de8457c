// Sixteen threads at once compile the same patterns, and from the second use on turn them into machine code. By both
// libraries that match patterns, where both are installed.

#include "tests/support/Threads.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Pattern.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

using namespace QvTest;
using namespace QvXmlLib9;

namespace
{

TEST(PatternFirstUse, OfPatternsThatTheOthersCompileToo)
{
    std::atomic<int> nRight{0};
    AtOnce(
        [&](std::size_t)
        {
            for (int n = 0; n < 200; ++n)
            {
                const std::string strPattern = "[a-z]{2}" + std::to_string(n) + "(x|y)*";
                const std::wstring strValue = L"ab" + std::to_wstring(n) + L"xyx";
                // From the second use on by machine code.
                for (int nUse = 0; nUse < 3; ++nUse)
                    nRight += PatternMatch(strPattern, strValue) && !PatternMatch(strPattern, strValue + L"z") ? 1 : 0;
            }
        });
    EXPECT_EQ(static_cast<int>(s_nThreads) * 200 * 3, nRight);
}

TEST(PatternFirstUse, OfPatternsThatAreNoneFailsEverywhere)
{
    std::atomic<int> nRefused{0};
    AtOnce(
        [&](std::size_t nThread)
        {
            for (int n = 0; n < 50; ++n)
            {
                try
                {
                    PatternMatch("(" + std::to_string(n), L"a");
                }
                catch (const CQvException& exception)
                {
                    nRefused += exception.GetFullMessage().find(L"Invalid Regular Expression: a Error:") == 0 ? 1 : 0;
                }
                EXPECT_TRUE(PatternMatch("a" + std::to_string(nThread), L"a" + std::to_wstring(nThread)));
            }
        });
    EXPECT_EQ(static_cast<int>(s_nThreads) * 50, nRefused);
}

} // namespace
