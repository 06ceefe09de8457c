#include "quiver/foundation/SmartPtr.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace
{

/// Counts as the objects of the library do, and logs what is done to it.
class CCounted
{
public:
    explicit CCounted(std::vector<int>* pLog = nullptr, int nName = 0)
        : m_pLog(pLog)
        , m_nName(nName)
    {
        ++s_nAlive;
    }
    virtual ~CCounted() { --s_nAlive; }
    CCounted(const CCounted&) = delete;
    CCounted& operator=(const CCounted&) = delete;

    long AddRef()
    {
        if (m_pLog != nullptr)
            m_pLog->push_back(m_nName);
        return ++m_lRefCount;
    }
    long Release()
    {
        if (m_pLog != nullptr)
            m_pLog->push_back(-m_nName);
        const long lCount = --m_lRefCount;
        if (lCount == 0)
            delete this;
        return lCount;
    }

    static int s_nAlive;
    long m_lRefCount = 0;

private:
    std::vector<int>* m_pLog;
    int m_nName;
};

int CCounted::s_nAlive = 0;

class CDerived : public CCounted
{
};

class SmartPtrTest : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(0, CCounted::s_nAlive); }
};

} // namespace

TEST_F(SmartPtrTest, NullIsFreeOfReferences)
{
    const CSmartPtr<CCounted> sp;
    const CSmartPtr<CCounted> spNull(nullptr);
    const CSmartPtr<CCounted> spCopy(sp);
    EXPECT_EQ(nullptr, static_cast<CCounted*>(sp));
    EXPECT_EQ(nullptr, static_cast<CCounted*>(spNull));
    EXPECT_EQ(nullptr, static_cast<CCounted*>(spCopy));
}

TEST_F(SmartPtrTest, NewObjectIsDestroyedWithItsOnlyPointer)
{
    {
        const CSmartPtr<CCounted> sp = new CCounted;
        EXPECT_EQ(1, sp->m_lRefCount);
        EXPECT_EQ(1, CCounted::s_nAlive);
    }
    EXPECT_EQ(0, CCounted::s_nAlive);
}

TEST_F(SmartPtrTest, CopiesShareTheObject)
{
    CSmartPtr<CCounted> sp = new CCounted;
    {
        const CSmartPtr<CCounted> spCopy(sp);
        EXPECT_EQ(2, sp->m_lRefCount);
        EXPECT_EQ(static_cast<CCounted*>(sp), static_cast<CCounted*>(spCopy));
        CSmartPtr<CCounted> spAssigned;
        spAssigned = sp;
        EXPECT_EQ(3, sp->m_lRefCount);
    }
    EXPECT_EQ(1, sp->m_lRefCount);
}

TEST_F(SmartPtrTest, AssignedObjectIsReferencedBeforeTheOldOneIsReleased)
{
    std::vector<int> log;
    CSmartPtr<CCounted> sp = new CCounted(&log, 1);
    auto* const pSecond = new CCounted(&log, 2);
    EXPECT_EQ(pSecond, sp = pSecond);
    EXPECT_EQ((std::vector<int>{1, 2, -1}), log);
    EXPECT_EQ(1, CCounted::s_nAlive);
    EXPECT_EQ(nullptr, sp = static_cast<CCounted*>(nullptr));
    EXPECT_EQ(0, CCounted::s_nAlive);
}

TEST_F(SmartPtrTest, AssigningTheObjectThatIsHeldDoesNotDestroyIt)
{
    CSmartPtr<CCounted> sp = new CCounted;
    sp = static_cast<CCounted*>(sp);
    EXPECT_EQ(1, sp->m_lRefCount);
    const CSmartPtr<CCounted>& spSame = sp;
    sp = spSame;
    EXPECT_EQ(1, sp->m_lRefCount);
    CSmartPtr<CCounted>& spMoved = sp;
    sp = std::move(spMoved);
    EXPECT_EQ(1, sp->m_lRefCount);
}

namespace
{

/// Looks at a pointer when it is destroyed.
class CLooker : public CCounted
{
public:
    CLooker(CSmartPtr<CCounted>& spSeen, CCounted*& pSaw)
        : m_spSeen(spSeen)
        , m_pSaw(pSaw)
    {
    }
    ~CLooker() override { m_pSaw = m_spSeen; }

private:
    CSmartPtr<CCounted>& m_spSeen;
    CCounted*& m_pSaw;
};

} // namespace

TEST_F(SmartPtrTest, DestructorOfTheOldObjectStillSeesIt)
{
    const CSmartPtr<CCounted> spNew = new CCounted;
    CSmartPtr<CCounted> spMoved = spNew;
    CSmartPtr<CCounted> sp;
    CCounted* pSaw = nullptr;
    CCounted* pOld = nullptr;
    const auto setOld = [&]
    {
        sp = pOld = new CLooker(sp, pSaw);
    };

    setOld();
    sp = static_cast<CCounted*>(spNew);
    EXPECT_EQ(pOld, pSaw) << "assigned a raw pointer";
    setOld();
    sp = spNew;
    EXPECT_EQ(pOld, pSaw) << "assigned a pointer";
    setOld();
    sp = std::move(spMoved);
    EXPECT_EQ(pOld, pSaw) << "moved to";
    EXPECT_EQ(static_cast<CCounted*>(spNew), static_cast<CCounted*>(sp));
}

TEST_F(SmartPtrTest, MovingHandsTheReferenceOver)
{
    std::vector<int> log;
    CSmartPtr<CCounted> sp = new CCounted(&log, 1);
    CSmartPtr<CCounted> spMoved(std::move(sp));
    EXPECT_EQ(nullptr, static_cast<CCounted*>(sp));
    CSmartPtr<CCounted> spTarget = new CCounted(&log, 2);
    spTarget = std::move(spMoved);
    EXPECT_EQ((std::vector<int>{1, 2, -2}), log);
    EXPECT_EQ(1, spTarget->m_lRefCount);
}

TEST_F(SmartPtrTest, ConvertsToTheRawPointerWhereverOneIsExpected)
{
    const CSmartPtr<CDerived> sp = new CDerived;
    CCounted* const pBase = sp;
    EXPECT_EQ(pBase, &*sp);
    EXPECT_EQ(pBase, sp.operator->());
    const bool bHasObject = sp != nullptr;
    EXPECT_TRUE(bHasObject);
    const CSmartPtr<CCounted> spBase = static_cast<CDerived*>(sp);
    EXPECT_EQ(2, spBase->m_lRefCount);
}

#if defined(QUIVER_DIAGNOSTICS)

TEST(SmartPtrDeathTest, DereferencingNullStopsAtAnAssertion)
{
    const CSmartPtr<CCounted> sp;
    EXPECT_DEATH(static_cast<void>(sp->m_lRefCount), "Assertion failed: p!=NULL, .*SmartPtr.h, line");
    EXPECT_DEATH(static_cast<void>(*sp), "Assertion failed: p!=NULL, .*SmartPtr.h, line");
}

#else

TEST_F(SmartPtrTest, AccessToNullIsNotCheckedWithoutAssertions)
{
    const CSmartPtr<CCounted> sp;
    EXPECT_EQ(nullptr, sp.operator->());
}

#endif
