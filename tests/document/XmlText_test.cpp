#include "quiver/document/XmlText.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{

using QvXmlLib9::CTreeMemory;
using QvXmlLib9::CXmlText;
using QvXmlLib9::CXmlTextArena;

/// A text in an arena, destroyed as a node would.
class CTextOwner
{
public:
    explicit CTextOwner(CXmlTextArena& arena)
        : m_arena(arena)
    {
    }
    ~CTextOwner()
    {
        if (m_pText != nullptr)
            m_pText->~CXmlText();
    }
    CTextOwner(const CTextOwner&) = delete;
    CTextOwner& operator=(const CTextOwner&) = delete;

    template <class View>
    CTextOwner& Append(View text)
    {
        m_arena.Append(m_pText, text);
        return *this;
    }
    const std::wstring& Get() const { return m_pText->Get(); }

    CXmlText* m_pText = nullptr;

private:
    CXmlTextArena& m_arena;
};

using U8 = std::string_view;
using Wide = std::wstring_view;

TEST(XmlText, Utf8BecomesTextWhenItIsAskedFor)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner owner(arena);
    owner.Append(U8("\xC3\xA4 \xE2\x82\xAC")).Append(U8(" \xF0\x9F\x98\x80"));
    EXPECT_TEXT(L"\xE4 \x20AC \xD83D\xDE00", owner.Get());
    EXPECT_EQ(&owner.Get(), &owner.Get());
}

TEST(XmlText, TellsWhiteSpaceInBothForms)
{
    const struct
    {
        std::string strText;
        bool bEmpty;
        bool bWhiteSpace;
    } cases[] = {{"", true, true},
                 {" ", false, true},
                 {"\n\t \r", false, true},
                 {"\n  x  \n", false, false},
                 {"!", false, false},
                 {"\xC2\xA0", false, false},
                 {std::string(20000, ' '), false, true},
                 {std::string(20000, ' ') + "x", false, false}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.strText.substr(0, 20));
        CTreeMemory memory(false);
        CXmlTextArena arena(memory);
        CTextOwner owner(arena);
        owner.Append(U8(c.strText));
        for (int nTurn = 0; nTurn < 2; ++nTurn)
        {
            EXPECT_EQ(owner.m_pText->IsEmpty(), c.bEmpty) << "turn " << nTurn;
            EXPECT_EQ(owner.m_pText->IsWhiteSpace(), c.bWhiteSpace) << "turn " << nTurn;
            owner.Get(); // converts
        }
    }
}

TEST(XmlText, TheReferenceHoldsWhileTheTextGrows)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner owner(arena);
    owner.Append(U8("a"));
    const std::wstring& strText = owner.Get();
    owner.Append(U8("\xC3\xA4")).Append(Wide(L"b\U0001F600")).Append(U8("c"));
    EXPECT_TEXT(L"a\xE4"
                L"b\xD83D\xDE00"
                L"c",
                strText);
    EXPECT_EQ(&strText, &owner.Get());
}

TEST(XmlText, TextAndUtf8CanBeMixedInAnyOrder)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner textFirst(arena);
    textFirst.Append(Wide(L"a")).Append(U8("b"));
    EXPECT_TEXT(L"ab", textFirst.Get());
    CTextOwner utf8First(arena);
    utf8First.Append(U8("a")).Append(Wide(L"b"));
    EXPECT_TEXT(L"ab", utf8First.Get());
    CTextOwner empty(arena);
    empty.Append(U8("")).Append(Wide(L""));
    EXPECT_TEXT(L"", empty.Get());
}

TEST(XmlText, ABufferSparesTheTextFromBeingKept)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner owner(arena);
    owner.Append(U8("text"));
    std::wstring strBuffer = L"former";
    EXPECT_EQ(&strBuffer, &owner.m_pText->Get(strBuffer));
    EXPECT_TEXT(L"text", strBuffer);
    const std::wstring& strKept = owner.Get();
    strBuffer = L"other";
    EXPECT_EQ(&strKept, &owner.m_pText->Get(strBuffer));
    EXPECT_TEXT(L"other", strBuffer);
}

TEST(XmlText, ATextGrowsInPlaceAsLongAsNothingFollowsIt)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner owner(arena);
    owner.Append(U8("a"));
    const CXmlText* const pFirst = owner.m_pText;
    for (int i = 0; i < 100; ++i)
        owner.Append(U8("0123456789"));
    EXPECT_EQ(pFirst, owner.m_pText);
    CTextOwner next(arena);
    next.Append(U8("next"));
    owner.Append(U8("0123456789012345"));
    EXPECT_NE(pFirst, owner.m_pText);
    EXPECT_EQ(1017u, owner.Get().size());
    EXPECT_TEXT(L"next", next.Get());
}

TEST(XmlText, TwoTextsThatGrowByTurnsStayApart)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner first(arena);
    CTextOwner second(arena);
    std::wstring strFirst;
    std::wstring strSecond;
    // Past the length up to which texts stay as they arrive, and over many blocks.
    for (int i = 0; i < 20000; ++i)
    {
        first.Append(U8("\xC3\xA4"));
        second.Append(U8("xyz"));
        strFirst += L"\xE4";
        strSecond += L"xyz";
    }
    EXPECT_TRUE(strFirst == first.Get());
    EXPECT_TRUE(strSecond == second.Get());
}

TEST(XmlText, TextsOfAnyLengthArriveWhole)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    std::vector<std::unique_ptr<CTextOwner>> owners;
    const std::size_t lengths[] = {0,     1,     7,     8,     9,     2031,  2032,  2033,  4096,
                                   16383, 16384, 16385, 32768, 65535, 65536, 65537, 100000};
    for (const std::size_t nLength : lengths)
    {
        owners.push_back(std::make_unique<CTextOwner>(arena));
        owners.back()->Append(U8(std::string(nLength, 'x')));
    }
    for (std::size_t i = 0; i < owners.size(); ++i)
        EXPECT_EQ(std::wstring(lengths[i], L'x'), owners[i]->Get());
}

TEST(XmlText, RewindingGivesTheSamePlaceAgain)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner kept(arena);
    kept.Append(U8("kept"));
    const CXmlTextArena::SMark mark = arena.GetMark();
    const CXmlText* pFirst = nullptr;
    for (int nRound = 0; nRound < 1000; ++nRound)
    {
        {
            CTextOwner first(arena);
            first.Append(U8("0123456789"));
            if (pFirst == nullptr)
                pFirst = first.m_pText;
            EXPECT_EQ(pFirst, first.m_pText);
            std::vector<std::unique_ptr<CTextOwner>> more;
            for (int i = 0; i < 100; ++i)
            {
                more.push_back(std::make_unique<CTextOwner>(arena));
                more.back()->Append(U8(std::string(200, 'x')));
            }
            EXPECT_EQ(200u, more.back()->Get().size());
        }
        arena.Rewind(mark);
    }
    EXPECT_TEXT(L"kept", kept.Get());
    kept.Append(U8(" and grown"));
    EXPECT_TEXT(L"kept and grown", kept.Get());
}

TEST(XmlText, AnArenaCanBeRewoundToItsStart)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    const CXmlTextArena::SMark mark = arena.GetMark();
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        {
            CTextOwner owner(arena);
            owner.Append(U8("text"));
            EXPECT_TEXT(L"text", owner.Get());
        }
        arena.Rewind(mark);
    }
}

TEST(XmlText, ASharedTextIsCopiedBeforeAnythingIsAddedToIt)
{
    const auto appendWide = [](CTextOwner& owner)
    {
        owner.Append(Wide(L" and more"));
    };
    const auto appendUtf8 = [](CTextOwner& owner)
    {
        owner.Append(U8(" and more"));
    };
    for (const auto& append :
         {std::function<void(CTextOwner&)>(appendWide), std::function<void(CTextOwner&)>(appendUtf8)})
    {
        for (const std::wstring& strText : {std::wstring(L"short"), std::wstring(40000, L'l')})
        {
            for (const bool bAsked : {false, true})
            {
                CTreeMemory memory(false);
                CXmlTextArena arena(memory);
                CTextOwner owner(arena);
                owner.Append(U8(std::string(strText.begin(), strText.end())));
                CXmlTextArena::Share(*owner.m_pText);
                if (bAsked)
                    owner.Get();
                CTextOwner other(arena);
                other.m_pText = owner.m_pText;
                append(other);
                EXPECT_TEXT(strText + L" and more", other.Get());
                append(other);
                EXPECT_TEXT(strText + L" and more and more", other.Get());
                EXPECT_TEXT(strText, owner.Get());
            }
        }
    }
}

TEST(XmlText, ASharedTextIsNotReleasedByItsNodes)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    CTextOwner owner(arena);
    owner.Append(U8("text"));
    const std::wstring& strText = owner.Get();
    CXmlTextArena::Share(*owner.m_pText);
    owner.m_pText->Release();
    EXPECT_EQ(&strText, &owner.Get());
    EXPECT_TEXT(L"text", strText);
}

TEST(XmlText, ManyThreadsGetTheSameText)
{
    CTreeMemory memory(false);
    CXmlTextArena arena(memory);
    std::vector<std::unique_ptr<CTextOwner>> owners;
    for (int i = 0; i < 1000; ++i)
    {
        owners.push_back(std::make_unique<CTextOwner>(arena));
        owners.back()->Append(U8(std::to_string(i)));
    }
    std::vector<std::vector<const std::wstring*>> results(4);
    std::vector<std::thread> threads;
    for (auto& result : results)
        threads.emplace_back(
            [&result, &owners]
            {
                for (const auto& pOwner : owners)
                    result.push_back(&pOwner->Get());
            });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(results[0], result);
    EXPECT_TEXT(L"999", *results[0][999]);
}

} // namespace
