#include "quiver/foundation/Exceptions.h"

#include "tests/support/Expect.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <typeinfo>
#include <vector>

using namespace QvXmlLib9;

// --- The family -----------------------------------------------------------------------------------------------------

namespace
{

/// Tells how many of it are alive.
class CCountedException : public CQvException
{
public:
    CCountedException() { ++s_nAlive; }
    CCountedException(const CCountedException& source)
        : CQvException(source)
    {
        ++s_nAlive;
    }
    ~CCountedException() override { --s_nAlive; }

    static int s_nAlive;

protected:
    CQvException* Clone() const override { return new CCountedException(*this); }
};

int CCountedException::s_nAlive = 0;

const std::type_info& TypeOf(const CQvException& ex)
{
    return typeid(ex);
}

} // namespace

template <class TException>
class ExceptionFamilyTest : public ::testing::Test
{
};

using Family =
    ::testing::Types<CQvException, CQvValidationException, CQvInvalidValueException, CQvInvalidNamespaceException,
                     CQvInvalidStateException, CQvInvalidParamException, CQvOverFlowException>;
TYPED_TEST_SUITE(ExceptionFamilyTest, Family, );

TYPED_TEST(ExceptionFamilyTest, DefaultIsEmptyWithoutInner)
{
    const TypeParam ex;
    EXPECT_TEXT(L"", ex.GetMessageW());
    EXPECT_TEXT(L"", ex.GetFullMessage());
    EXPECT_EQ(nullptr, ex.GetInnerException());
}

TYPED_TEST(ExceptionFamilyTest, HoldsItsMessage)
{
    const TypeParam ex(L"message");
    EXPECT_TEXT(L"message", ex.GetMessageW());
    EXPECT_TEXT(L"message", ex.GetFullMessage());
    EXPECT_EQ(nullptr, ex.GetInnerException());
}

TYPED_TEST(ExceptionFamilyTest, InnerIsACloneOfItsDynamicType)
{
    const CQvOverFlowException inner(L"inner");
    const TypeParam ex(L"outer", inner);
    ASSERT_NE(nullptr, ex.GetInnerException());
    EXPECT_NE(&inner, ex.GetInnerException());
    EXPECT_STREQ(typeid(CQvOverFlowException).name(), TypeOf(*ex.GetInnerException()).name());
    EXPECT_TEXT(L"outer", ex.GetMessageW());
    EXPECT_TEXT(L"inner", ex.GetInnerException()->GetMessageW());
    EXPECT_TEXT(L"outer\ninner", ex.GetFullMessage());
}

TYPED_TEST(ExceptionFamilyTest, CloneKeepsTheDynamicType)
{
    // Taken as an inner exception through the root of the family.
    const TypeParam original(L"text", CQvException(L"root"));
    const CQvException& root = original;
    const CQvException outer(L"outer", root);
    EXPECT_STREQ(typeid(TypeParam).name(), TypeOf(*outer.GetInnerException()).name());
    EXPECT_TEXT(L"outer\ntext\nroot", outer.GetFullMessage());
}

TYPED_TEST(ExceptionFamilyTest, ConvertsFromAnyExceptionOfTheFamily)
{
    const CQvInvalidStateException source(L"state", CQvException(L"root"));
    const TypeParam ex(static_cast<const CQvException&>(source));
    EXPECT_STREQ(typeid(TypeParam).name(), typeid(ex).name());
    EXPECT_TEXT(L"state\nroot", ex.GetFullMessage());
    EXPECT_NE(source.GetInnerException(), ex.GetInnerException());
}

TYPED_TEST(ExceptionFamilyTest, CopyHasAnInnerOfItsOwn)
{
    auto pSource = std::make_unique<TypeParam>(L"outer", CQvInvalidValueException(L"inner", CQvException(L"root")));
    const TypeParam copy(*pSource);
    EXPECT_NE(pSource->GetInnerException(), copy.GetInnerException());
    pSource.reset();
    EXPECT_TEXT(L"outer\ninner\nroot", copy.GetFullMessage());
    EXPECT_STREQ(typeid(CQvInvalidValueException).name(), TypeOf(*copy.GetInnerException()).name());
}

TYPED_TEST(ExceptionFamilyTest, AssignmentTakesMessageAndACloneOfTheInner)
{
    TypeParam target(L"old", CQvException(L"old inner"));
    {
        const TypeParam source(L"new", CQvException(L"new inner"));
        target = source;
        EXPECT_NE(source.GetInnerException(), target.GetInnerException());
    }
    EXPECT_TEXT(L"new\nnew inner", target.GetFullMessage());
    target = TypeParam(L"alone");
    EXPECT_TEXT(L"alone", target.GetFullMessage());
    EXPECT_EQ(nullptr, target.GetInnerException());
}

TYPED_TEST(ExceptionFamilyTest, InnerObtainedBeforeAnAssignmentStaysGood)
{
    TypeParam target(L"old", CQvOverFlowException(L"first", CQvException(L"root")));
    const CQvException* const pFirst = target.GetInnerException();
    target = TypeParam(L"new", CQvException(L"second"));
    const CQvException* const pSecond = target.GetInnerException();
    target = TypeParam(L"alone");
    EXPECT_EQ(nullptr, target.GetInnerException());
    EXPECT_TEXT(L"first\nroot", pFirst->GetFullMessage());
    EXPECT_STREQ(typeid(CQvOverFlowException).name(), typeid(*pFirst).name());
    EXPECT_TEXT(L"second", pSecond->GetFullMessage());
}

TYPED_TEST(ExceptionFamilyTest, CopyDoesNotKeepWhatItsSourceShowsNoLonger)
{
    TypeParam source(L"old", CCountedException());
    source = TypeParam(L"new", CCountedException());
    EXPECT_EQ(2, CCountedException::s_nAlive) << "the replaced one and the one shown";
    {
        const TypeParam copy(source);
        EXPECT_EQ(3, CCountedException::s_nAlive);
    }
    source = TypeParam();
    EXPECT_EQ(2, CCountedException::s_nAlive) << "kept until the exception dies";
}

TYPED_TEST(ExceptionFamilyTest, WhatAssignmentsReplacedDiesWithTheException)
{
    {
        TypeParam target(L"old", CCountedException());
        for (int i = 0; i < 10; ++i)
            target = TypeParam(L"new", CCountedException());
        EXPECT_EQ(11, CCountedException::s_nAlive);
    }
    EXPECT_EQ(0, CCountedException::s_nAlive);
}

TYPED_TEST(ExceptionFamilyTest, AssignmentToItselfChangesNothing)
{
    TypeParam ex(L"outer", CQvException(L"inner"));
    const TypeParam& same = ex;
    ex = same;
    EXPECT_TEXT(L"outer\ninner", ex.GetFullMessage());
}

TYPED_TEST(ExceptionFamilyTest, IsThrownByValueAndCaughtAsTheRoot)
{
    try
    {
        throw TypeParam(L"thrown", CQvException(L"inner"));
    }
    catch (const CQvException& ex)
    {
        EXPECT_STREQ(typeid(TypeParam).name(), typeid(ex).name());
        EXPECT_TEXT(L"thrown\ninner", ex.GetFullMessage());
    }
}

TEST(ExceptionsTest, FamilyIsATree)
{
    EXPECT_TRUE((std::is_base_of<CQvException, CQvValidationException>::value));
    EXPECT_TRUE((std::is_base_of<CQvValidationException, CQvInvalidValueException>::value));
    EXPECT_TRUE((std::is_base_of<CQvValidationException, CQvInvalidNamespaceException>::value));
    EXPECT_TRUE((std::is_base_of<CQvException, CQvInvalidStateException>::value));
    EXPECT_FALSE((std::is_base_of<CQvValidationException, CQvInvalidStateException>::value));
    EXPECT_TRUE((std::is_base_of<CQvException, CQvInvalidParamException>::value));
    EXPECT_FALSE((std::is_base_of<CQvValidationException, CQvInvalidParamException>::value));
    EXPECT_TRUE((std::is_base_of<CQvException, CQvOverFlowException>::value));
    EXPECT_FALSE((std::is_base_of<CQvValidationException, CQvOverFlowException>::value));
}

TEST(ExceptionsTest, RootStandsOutsideTheStandardExceptions)
{
    EXPECT_FALSE((std::is_base_of<std::exception, CQvException>::value));
    EXPECT_TRUE(std::has_virtual_destructor<CQvException>::value);
}

// --- Chains ---------------------------------------------------------------------------------------------------------

TEST(ExceptionsTest, ChainPrintsOutermostFirstOneALine)
{
    const CQvException root(L"root");
    const CQvValidationException middle(L"middle", root);
    const CQvException outer(L"outer", middle);
    EXPECT_TEXT(L"outer\nmiddle\nroot", outer.GetFullMessage());
    EXPECT_TEXT(L"middle\nroot", outer.GetInnerException()->GetFullMessage());
    EXPECT_EQ(nullptr, outer.GetInnerException()->GetInnerException()->GetInnerException());
}

TEST(ExceptionsTest, EmptyMessagesKeepTheirLines)
{
    EXPECT_TEXT(L"\n\nroot", CQvException(L"", CQvException(L"", CQvException(L"root"))).GetFullMessage());
}

TEST(ExceptionsTest, LinksKeepTheirTypesThroughCopies)
{
    const CQvException outer(L"a",
                             CQvValidationException(L"b", CQvInvalidParamException(L"c", CQvOverFlowException(L"d"))));
    const CQvException copy = outer;
    CQvException assigned;
    assigned = copy;
    for (const CQvException* pOuter : {&outer, &copy, static_cast<const CQvException*>(&assigned)})
    {
        const CQvException* const pB = pOuter->GetInnerException();
        EXPECT_STREQ(typeid(CQvValidationException).name(), typeid(*pB).name());
        const CQvException* const pC = pB->GetInnerException();
        EXPECT_STREQ(typeid(CQvInvalidParamException).name(), typeid(*pC).name());
        EXPECT_STREQ(typeid(CQvOverFlowException).name(), TypeOf(*pC->GetInnerException()).name());
    }
}

namespace
{

/// A chain as a deep document leaves it: wrapped and thrown once for each level.
CQvException MakeChain(int nLinks)
{
    CQvException chain(L"0");
    for (int i = 1; i < nLinks; ++i)
    {
        try
        {
            throw CQvValidationException(std::to_wstring(i), chain);
        }
        catch (const CQvException& ex)
        {
            chain = ex;
        }
    }
    return chain;
}

} // namespace

TEST(ExceptionsTest, VeryLongChainIsBuiltPrintedCopiedAndDestroyedOnASmallStack)
{
    constexpr int nLinks = 100000;
    QvTest::RunOnStack(64 * 1024,
                       []
                       {
                           auto pChain = std::make_unique<CQvException>(MakeChain(nLinks));
                           auto pCopy = std::make_unique<CQvException>(*pChain);
                           CQvException assigned(L"old", *pCopy);
                           const std::wstring strFull = pChain->GetFullMessage();
                           EXPECT_EQ(static_cast<std::ptrdiff_t>(nLinks - 1),
                                     std::count(strFull.begin(), strFull.end(), L'\n'));
                           EXPECT_TEXT(L"99999\n99998\n", strFull.substr(0, 12));
                           EXPECT_TEXT(L"\n1\n0", strFull.substr(strFull.size() - 4));
                           pChain.reset();
                           EXPECT_TEXT(strFull, pCopy->GetFullMessage());
                           assigned = *pCopy;
                           pCopy.reset();
                           EXPECT_TEXT(strFull, assigned.GetFullMessage());
                           assigned = CQvException();
                       });
}

TEST(ExceptionsTest, CopiesOnManyThreadsAreReadAndDestroyedAtOnce)
{
    for (int nRound = 0; nRound < 50; ++nRound)
    {
        auto pChain = std::make_unique<CQvException>(MakeChain(20));
        const std::wstring strFull = pChain->GetFullMessage();
        std::vector<std::thread> threads;
        for (int nThread = 0; nThread < 4; ++nThread)
        {
            threads.emplace_back(
                [copy = std::make_unique<CQvException>(*pChain), &strFull]() mutable
                {
                    const CQvException wrapped(L"wrapped", *copy);
                    EXPECT_TEXT(strFull, copy->GetFullMessage());
                    copy.reset();
                    EXPECT_TEXT(L"wrapped\n" + strFull, wrapped.GetFullMessage());
                });
        }
        pChain.reset();
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(ExceptionsTest, TravelsToAnotherThread)
{
    std::exception_ptr pFailure;
    std::thread(
        [&]
        {
            try
            {
                throw CQvInvalidParamException(L"outer", CQvException(L"inner"));
            }
            catch (...)
            {
                pFailure = std::current_exception();
            }
        })
        .join();
    try
    {
        std::rethrow_exception(pFailure);
    }
    catch (const CQvInvalidParamException& ex)
    {
        EXPECT_TEXT(L"outer\ninner", ex.GetFullMessage());
    }
}

namespace
{

/// A class of an application's own, which holds more than one exception.
class CTwofoldException : public CQvException
{
public:
    explicit CTwofoldException(const CQvException& inner)
        : CQvException(L"twofold", inner)
        , m_second(L"second", inner)
    {
    }
    CTwofoldException(const CTwofoldException&) = default;
    ~CTwofoldException() override = default;

    CQvException m_second;

protected:
    CQvException* Clone() const override { return new CTwofoldException(*this); }
};

/// A class of an application's own, which takes over the constructors of the family and nothing else.
class CDerivedException : public CQvInvalidValueException
{
public:
    using CQvInvalidValueException::CQvInvalidValueException;
};

} // namespace

TEST(ExceptionsTest, DerivedClassMayTakeOverTheConstructors)
{
    const CDerivedException derived(L"outer", CQvInvalidStateException(L"inner"));
    EXPECT_TEXT(L"outer\ninner", derived.GetFullMessage());
    EXPECT_TEXT(L"outer\ninner", CDerivedException(static_cast<const CQvException&>(derived)).GetFullMessage());
    EXPECT_TEXT(L"", CDerivedException().GetFullMessage());

    // Without a clone of its own it travels as the class of the family that it derives from.
    const CQvException wrapped(L"wrapped", derived);
    EXPECT_EQ(typeid(CQvInvalidValueException), TypeOf(*wrapped.GetInnerException()));
}

TEST(ExceptionsTest, DerivedClassMayHoldFurtherExceptions)
{
    auto pOuter =
        std::make_unique<CQvException>(L"outer", CTwofoldException(CQvException(L"inner", CQvException(L"root"))));
    const CQvException copy = *pOuter;
    pOuter.reset();
    EXPECT_TEXT(L"outer\ntwofold\ninner\nroot", copy.GetFullMessage());
    const auto* const pTwofold = dynamic_cast<const CTwofoldException*>(copy.GetInnerException());
    ASSERT_NE(nullptr, pTwofold);
    EXPECT_TEXT(L"second\ninner\nroot", pTwofold->m_second.GetFullMessage());
}
