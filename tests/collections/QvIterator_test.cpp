#include "quiver/collections/QvIterator.h"

#include "quiver/collections/Element.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

constexpr const wchar_t* s_lpctNoMore = L"No More Elements in the Collection";

CSmartPtr<CElementCol> MakeElements(const std::wstring& strNames)
{
    CSmartPtr<CElementCol> spElements = new CElementCol(L"", L"##any", L"", 0, -1);
    for (const wchar_t c : strNames)
        spElements->Add(std::wstring(1, c).c_str(), L"");
    return spElements;
}

TEST(QvIterator, WalksTheItemsInOrder)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"abc");
    std::wstring strNames;
    for (CQvIterator<CElement> it = spElements->begin(); it != spElements->end(); ++it)
        strNames += it->GetName() + (*it).GetName();
    EXPECT_TEXT(L"aabbcc", strNames);
}

TEST(QvIterator, ServesRangeForAndTheStandardAlgorithms)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"abc");
    for (CElement& element : *spElements)
        element.SetText(L"x");
    EXPECT_TEXT(L"x", spElements->Item(2)->GetText());
    EXPECT_EQ(3, std::distance(spElements->begin(), spElements->end()));
    const auto itFound = std::find_if(spElements->begin(), spElements->end(),
                                      [](const CElement& element) { return element.GetName() == L"b"; });
    EXPECT_EQ(spElements->Item(1), &*itFound);
}

TEST(QvIterator, OfAnEmptyCollectionBeginsAtTheEnd)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"");
    EXPECT_TRUE(spElements->begin() == spElements->end());
    EXPECT_TRUE(spElements->begin() == CQvIterator<CElement>());
}

TEST(QvIterator, SteppingPastTheEndThrows)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"a");
    CQvIterator<CElement> it = spElements->begin();
    ++it;
    EXPECT_TRUE(it == spElements->end());
    ExpectThrows<CQvException>(s_lpctNoMore, [&] { ++it; });
    ExpectThrows<CQvException>(s_lpctNoMore, [&] { it++; });
    EXPECT_TRUE(it == spElements->end());
}

TEST(QvIterator, TheEndHasNoItem)
{
    const CQvIterator<CElement> itEnd;
    ExpectThrows<CQvException>(s_lpctNoMore, [&] { static_cast<void>(*itEnd); });
    ExpectThrows<CQvException>(s_lpctNoMore, [&] { static_cast<void>(itEnd->GetName()); });
}

TEST(QvIterator, PostIncrementGivesTheFormerPlace)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"ab");
    CQvIterator<CElement> it = spElements->begin();
    EXPECT_TEXT(L"a", (it++)->GetName());
    EXPECT_TEXT(L"b", it->GetName());
}

TEST(QvIterator, IteratorsAreEqualOnOneNodeAndOnNodesOfOneObject)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"ab");
    spElements->Add(spElements->Item(0));
    const CQvIterator<CElement> itFirst = spElements->begin();
    const CQvIterator<CElement> itSecond = std::next(itFirst);
    const CQvIterator<CElement> itFirstAgain = std::next(itSecond);
    EXPECT_TRUE(itFirst == spElements->begin());
    EXPECT_TRUE(itFirst == itFirstAgain);
    EXPECT_FALSE(itFirst != itFirstAgain);
    EXPECT_TRUE(itFirst != itSecond);
    EXPECT_TRUE(itFirst != spElements->end());
    EXPECT_TRUE(spElements->end() != itFirst);
    EXPECT_TRUE(spElements->end() == CQvIterator<CElement>());
}

TEST(QvIterator, StaysValidWhileOtherItemsComeAndGo)
{
    const CSmartPtr<CElementCol> spElements = MakeElements(L"abc");
    CQvIterator<CElement> it = std::next(spElements->begin());
    spElements->Remove(0);
    spElements->AddBefore(spElements->Item(0), new CElement(L"n"));
    EXPECT_TEXT(L"b", it->GetName());
    EXPECT_TEXT(L"c", (++it)->GetName());
}

} // namespace
