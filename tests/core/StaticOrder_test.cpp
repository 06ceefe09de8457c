// Objects in static storage may use the library ahead of its own static objects and after them, and objects of a thread
// may use it after what the thread has remembered is gone. Where the library is linked statically nothing else decides
// the order, so these objects stand at its two ends.

#include "quiver/collections/Element.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/values/RestrictionCheck.h"
#include "tests/support/Expect.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#if defined(__GNUC__)
#define QV_FIRST_OBJECT __attribute__((init_priority(101)))
#else
#define QV_FIRST_OBJECT
#endif

using namespace QvXmlLib9;

namespace
{

struct SOpenClass : CXmlGeneratedClass
{
    using CXmlGeneratedClass::m_csInit;
};

/// What a generated setter does: it takes the lock to build the tables, and checks the value against its facets.
/// @return what is wrong, or null.
const char* TrySetter()
{
    const CQVCriticalSectionLock lock(SOpenClass::m_csInit);
    const CPrimitiveRestrictions restrictions(L"\\d{3}-\\i+", -1, -1, L"", L"", L"", L"", -1);
    QvVariant value;
    value.SetString(L"926-AA");
    try
    {
        CheckRestriction(L"part", value, ItemType_string, restrictions);
    }
    catch (const CQvException&)
    {
        return "a good value was refused";
    }
    value.SetString(L"926-11");
    try
    {
        CheckRestriction(L"part", value, ItemType_string, restrictions);
        return "a bad value passed";
    }
    catch (const CQvException& ex)
    {
        if (ex.GetFullMessage() != L"Invalid Value for part [926-11]")
            return "the message of a bad value is another one";
    }
#if !defined(QUIVER_DIAGNOSTICS)
    // Reading a value of no type is an error of the program, which diagnostic builds stop at.
    const QvVariant unset;
    if (!unset.GetString().empty() || unset.GetDecimal() != CDecimal(0) || !unset.GetBase64Binary().IsEmpty())
        return "a value of no type is not empty";
#endif
    return nullptr;
}

const char* s_lpcAtStart = "was not tried";

/// Is made ahead of all others.
struct SFirst
{
    SFirst() { s_lpcAtStart = TrySetter(); }
};

/// Is made ahead of all others too, but first uses the library when all others are gone.
struct SLast
{
    ~SLast()
    {
        const char* const lpcWrong = TrySetter();
        if (lpcWrong == nullptr)
            return;
        std::fprintf(stderr, "At the end of the process %s\n", lpcWrong);
        std::_Exit(1);
    }
};

SLast s_last QV_FIRST_OBJECT;
SFirst s_first QV_FIRST_OBJECT;

/// Is made ahead of all others of its thread, and dies after them.
struct SThreadsLast
{
    const char** plpcWrong = nullptr;
    ~SThreadsLast()
    {
        if (plpcWrong != nullptr)
            *plpcWrong = TrySetter();
    }
};

} // namespace

TEST(StaticOrder, SetterRunsAheadOfAllStaticObjects)
{
    EXPECT_STREQ(nullptr, s_lpcAtStart);
}

TEST(StaticOrder, SetterRunsWhileTheThreadEnds)
{
    for (int nThread = 0; nThread < 3; ++nThread)
    {
        const char* lpcWrong = "was not tried";
        std::thread(
            [&]
            {
                thread_local SThreadsLast t_last;
                t_last.plpcWrong = &lpcWrong;
                EXPECT_STREQ(nullptr, TrySetter());
                EXPECT_STREQ(nullptr, TrySetter());
            })
            .join();
        EXPECT_STREQ(nullptr, lpcWrong);
    }
}

// The program itself fails where this is not so: by then there are no tests any more.
TEST(StaticOrder, SetterRunsAfterAllStaticObjects)
{
    EXPECT_STREQ(nullptr, TrySetter());
}
