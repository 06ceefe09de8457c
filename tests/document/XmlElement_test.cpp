#include "quiver/document/XmlElement.h"

#include "quiver/document/XmlDocument.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <new>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace
{

using QvTest::CountInstances;
using QvTest::Outline;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;

/// An element on its own, with the building operations in reach.
class CFreeElement : public CXmlElement
{
public:
    explicit CFreeElement(const CXmlDocument* pDocument = nullptr)
        : CXmlElement(pDocument)
    {
    }
    CFreeElement(const CFreeElement& source) = default;
    CFreeElement& operator=(const CFreeElement& source) = default;
    ~CFreeElement() override = default;

    using CXmlElement::AddAttribute;
    using CXmlElement::AppendText;
    using CXmlElement::CreateNewChildElement;
    using CXmlElement::RemoveLastChildElement;
    using CXmlElement::SetElementName;
    using CXmlElement::SetNamespace;
};

CXmlElement* NewChild(CXmlElement* pElement)
{
    CXmlElement* (CXmlElement::*pfnCreate)() = &CFreeElement::CreateNewChildElement;
    return (pElement->*pfnCreate)();
}

CXmlElement* NewChild(CXmlElement* pElement, const wchar_t* lpctName)
{
    void (CXmlElement::*pfnSetName)(const std::wstring&) = &CFreeElement::SetElementName;
    CXmlElement* const pChild = NewChild(pElement);
    (pChild->*pfnSetName)(lpctName);
    return pChild;
}

/// Names of the children, each behind a blank.
std::wstring ListChildren(CXmlElement& element)
{
    std::wstring strNames;
    for (CXmlElement* pChild = element.GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        strNames += L" " + pChild->GetLocalName();
    return strNames;
}

// --- Parsed trees ---------------------------------------------------------------------------------------------------

struct STreeRow
{
    const char* lpcXml;
    const wchar_t* lpctOutline;
};

const STreeRow s_treeRows[] = {
    {"<a/>", L"a"},
    {"<a></a>", L"a"},
    {"<a>x<b/>y</a>", L"a \"xy\" (b)"},
    {"<a>1<b>2<c>3</c>4</b>5<d/>6</a>", L"a \"156\" (b \"24\" (c \"3\"), d)"},
    {"<a><b/><c/><b/></a>", L"a (b, c, b)"},
    {"<a z='1' y='2' x=''/>", L"a @z='1' @y='2' @x=''"},
    {"<a>x<!-- c -->y<?p q?>z</a>", L"a \"xyz\""},
    {"<!-- c --><?p q?><a/><!-- c -->", L"a"},
    {"<p:a xmlns:p='urn:p' p:b='1' c='2'><d xmlns='urn:d'/></p:a>", L"{urn:p}a @{urn:p}b='1' @c='2' ({urn:d}d)"},
};

TEST(XmlElement, ATreeShowsNamesAttributesTextAndChildren)
{
    for (const STreeRow& row : s_treeRows)
    {
        SCOPED_TRACE(row.lpcXml);
        CXmlDocument document;
        document.LoadXml(row.lpcXml);
        EXPECT_TEXT(row.lpctOutline, Outline(document.GetDocumentElement()));
    }
}

TEST(XmlElement, AnEmptyElementHasNoAttributesTextOrChildren)
{
    CXmlDocument document;
    document.LoadXml("<a/>");
    CXmlElement* const pElement = document.GetDocumentElement();
    EXPECT_TRUE(pElement->GetAttributes().empty());
    EXPECT_TEXT(L"", pElement->GetText());
    EXPECT_EQ(nullptr, pElement->GetFirstElement());
    EXPECT_EQ(nullptr, pElement->GetNextSiblingElement());
}

TEST(XmlElement, EveryElementNamesItsDocument)
{
    CXmlDocument document;
    document.LoadXml("<a><b/></a>");
    EXPECT_EQ(&document, document.GetDocumentElement()->GetDocument());
    EXPECT_EQ(&document, document.GetDocumentElement()->GetFirstElement()->GetDocument());
}

struct SAttributeRow
{
    const wchar_t* lpctLocalName;
    const wchar_t* lpctNamespaceURI;
    const wchar_t* lpctValue;
};

const SAttributeRow s_attributeRows[] = {
    {L"b", L"", L"1"}, {L"b", L"urn:p", L"2"}, {L"e", L"", L""},       {L"b", L"urn:q", L""},     {L"c", L"", L""},
    {L"B", L"", L""},  {L"", L"", L""},        {L"c", L"urn:p", L"3"}, {L"\U0001F600", L"", L""},
};

TEST(XmlElement, AnAttributeIsFoundByLocalNameAndNamespaceAndAMissGivesTheEmptyString)
{
    CXmlDocument document;
    document.LoadXml("<a b='1' xmlns:p='urn:p' p:b='2' p:c='3' e=''/>");
    for (const SAttributeRow& row : s_attributeRows)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctLocalName) + " " + QvTest::Show(row.lpctNamespaceURI));
        EXPECT_TEXT(row.lpctValue,
                    document.GetDocumentElement()->GetAttribute(row.lpctLocalName, row.lpctNamespaceURI));
    }
}

TEST(XmlElement, TheEmptyStringOfAMissOutlivesTheDocument)
{
    const std::wstring* pstrMiss = nullptr;
    {
        CXmlDocument document;
        document.LoadXml("<a/>");
        pstrMiss = &document.GetDocumentElement()->GetAttribute(L"b", L"");
    }
    CXmlDocument document;
    document.LoadXml("<a/>");
    EXPECT_EQ(pstrMiss, &document.GetDocumentElement()->GetAttribute(L"c", L"urn:x"));
    EXPECT_TEXT(L"", *pstrMiss);
}

TEST(XmlElement, AnAttributeNameGivenAsWholeCodePointsIsFound)
{
    CXmlDocument document;
    document.LoadXml("<a xmlns:p='urn:\xF0\x9F\x98\x80' p:b='1'/>");
    EXPECT_TEXT(L"1", document.GetDocumentElement()->GetAttribute(L"b", L"urn:\U0001F600"));
    EXPECT_TEXT(L"1", document.GetDocumentElement()->GetAttribute(L"b", L"urn:\xD83D\xDE00"));
}

TEST(XmlElement, AFinishedTreeMayBeReadByManyThreads)
{
    CXmlDocument document;
    document.LoadXml("<a b='1'><c>text</c></a>");
    std::vector<std::thread> threads;
    std::vector<std::wstring> results(4);
    for (std::wstring& strResult : results)
        threads.emplace_back(
            [&document, &strResult]
            {
                for (int i = 0; i < 1000; ++i)
                    strResult =
                        document.GetDocumentElement()->GetAttribute(L"z", L"") + Outline(document.GetDocumentElement());
            });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::wstring& strResult : results)
        EXPECT_TEXT(L"a @b='1' (c \"text\")", strResult);
}

TEST(XmlElement, NamesThatOccurAgainAreShared)
{
    CXmlDocument document;
    document.LoadXml("<a xmlns='urn:x'><b/><b/></a>");
    CXmlElement* const pFirst = document.GetDocumentElement()->GetFirstElement();
    CXmlElement* const pSecond = pFirst->GetNextSiblingElement();
    EXPECT_EQ(&pFirst->GetLocalName(), &pSecond->GetLocalName());
    EXPECT_EQ(&pFirst->GetNamespaceURI(), &pSecond->GetNamespaceURI());
    EXPECT_EQ(&pFirst->GetNamespaceURI(), &document.GetDocumentElement()->GetNamespaceURI());
}

TEST(XmlElement, CallersCannotDestroyAnElement)
{
    EXPECT_FALSE(std::is_destructible_v<CXmlElement>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CFreeElement>);
}

TEST(XmlElement, TextReadThroughABufferIsTheSame)
{
    CXmlDocument document;
    document.LoadXml("<a b='value'>text<c/></a>");
    CXmlElement* const pElement = document.GetDocumentElement();
    std::wstring strBuffer;
    EXPECT_TEXT(L"text", pElement->GetText(strBuffer));
    EXPECT_TEXT(L"", pElement->GetFirstElement()->GetText(strBuffer));
    EXPECT_TEXT(L"value", pElement->GetAttributes()[0]->GetValue(strBuffer));
    EXPECT_TEXT(L"text", pElement->GetText());
    EXPECT_EQ(&pElement->GetText(), &pElement->GetText(strBuffer));
}

// --- Trees built by hand --------------------------------------------------------------------------------------------

TEST(XmlElement, AnElementOnItsOwnStartsEmptyAndNamesTheDocumentGiven)
{
    const CXmlDocument document;
    CFreeElement element(&document);
    EXPECT_TEXT(L"", Outline(&element));
    EXPECT_EQ(&document, element.GetDocument());
    EXPECT_EQ(&document, NewChild(&element)->GetDocument());
    EXPECT_EQ(nullptr, CFreeElement().GetDocument());
}

TEST(XmlElement, ATreeCanBeBuiltByHand)
{
    CFreeElement element;
    element.SetElementName(L"a");
    element.SetNamespace(L"urn:x");
    element.AddAttribute(L"b", L"1", L"urn:y");
    element.AddAttribute(L"b", L"2", L"urn:y");
    element.AppendText(L"text");
    NewChild(NewChild(&element, L"c"), L"d");
    NewChild(&element, L"e");
    EXPECT_TEXT(L"{urn:x}a @{urn:y}b='1' @{urn:y}b='2' \"text\" (c (d), e)", Outline(&element));
    EXPECT_TEXT(L"1", element.GetAttribute(L"b", L"urn:y"));
    element.SetElementName(L"z");
    EXPECT_TEXT(L"urn:x", element.GetNamespaceURI());
    EXPECT_TEXT(L"z", element.GetLocalName());
    element.SetNamespace(L"");
    EXPECT_TEXT(L"z", element.GetLocalName());
}

TEST(XmlElement, AttributesMayBeAddedOnceTheListHasBeenAskedFor)
{
    CFreeElement element;
    element.AddAttribute(L"a", L"1", L"");
    EXPECT_EQ(1u, element.GetAttributes().size());
    element.AddAttribute(L"b", L"2", L"");
    element.AddAttribute(L"c", L"3", L"");
    std::wstring strValues;
    for (const auto* const pAttribute : element.GetAttributes())
        strValues += pAttribute->GetValue();
    EXPECT_TEXT(L"123", strValues);
}

TEST(XmlElement, TextIsAppendedByLengthOrUpToItsZero)
{
    CFreeElement element;
    element.AppendText(L"abc", 2);
    element.AppendText(L"cd");
    element.AppendText(L"", 0);
    element.AppendText(L"");
    element.AppendText(L"xyz", -1);
    element.AppendText(L"\U0001F600"
                       L"ef",
                       static_cast<int>(std::wcslen(L"\U0001F600")) + 1);
    EXPECT_TEXT(L"abcd\xD83D\xDE00"
                L"e",
                element.GetText());
}

TEST(XmlElement, TextInManyPiecesIsJoined)
{
    CFreeElement element;
    std::wstring strExpected;
    for (int i = 0; i < 100000; ++i)
    {
        const wchar_t szPiece[] = {static_cast<wchar_t>(L'a' + i % 26), L'-', 0};
        element.AppendText(szPiece);
        strExpected += szPiece;
    }
    EXPECT_EQ(strExpected, element.GetText());
}

TEST(XmlElement, RemovingTheLastChildTakesItOutOfTheList)
{
    // Only a document can destroy what is removed; here it stays in reach.
    static auto& s_removed = *new std::vector<CXmlElement*>;
    CFreeElement element;
    const auto Remove = [&element]
    {
        s_removed.push_back(element.RemoveLastChildElement());
        return s_removed.back();
    };
    EXPECT_EQ(nullptr, element.RemoveLastChildElement());
    CXmlElement* const pOnly = NewChild(&element, L"1");
    EXPECT_EQ(pOnly, Remove());
    EXPECT_EQ(nullptr, element.GetFirstElement());
    EXPECT_EQ(nullptr, element.RemoveLastChildElement());

    CXmlElement* children[3];
    for (int i = 0; i < 3; ++i)
        children[i] = NewChild(&element, i == 0 ? L"1" : i == 1 ? L"2" : L"3");
    EXPECT_EQ(children[2], Remove());
    EXPECT_TEXT(L" 1 2", ListChildren(element));
    EXPECT_EQ(children[1], Remove());
    EXPECT_TEXT(L" 1", ListChildren(element));
    NewChild(&element, L"4");
    NewChild(&element, L"5");
    EXPECT_TEXT(L" 1 4 5", ListChildren(element));
    Remove();
    NewChild(&element, L"6");
    EXPECT_TEXT(L" 1 4 6", ListChildren(element));
}

TEST(XmlElement, ACopyClaimsTheSameChildrenAndAttributes)
{
    CFreeElement source;
    source.SetElementName(L"a");
    source.AddAttribute(L"b", L"1", L"");
    source.AppendText(L"txt");
    NewChild(&source, L"c");

    // Neither copy may be destroyed, so they live where nothing is.
    alignas(CFreeElement) static unsigned char s_copy[sizeof(CFreeElement)];
    alignas(CFreeElement) static unsigned char s_assigned[sizeof(CFreeElement)];
    auto* const pCopy = new (s_copy) CFreeElement(source);
    auto* const pAssigned = new (s_assigned) CFreeElement(source);
    *pAssigned = source;
    for (CFreeElement* pElement : {pCopy, pAssigned})
    {
        EXPECT_TEXT(L"a @b='1' \"txt\" (c)", Outline(pElement));
        EXPECT_EQ(source.GetFirstElement(), pElement->GetFirstElement());
        EXPECT_EQ(source.GetAttributes(), pElement->GetAttributes());
    }
}

// --- Destruction and counting ---------------------------------------------------------------------------------------

TEST(XmlElement, EachElementAndAttributeIsCountedOnceAsLongAsItLives)
{
    const auto elements = CountInstances(L"CXmlElement");
    const auto attributes = CountInstances(L"CXmlAttribute");
    {
        CXmlDocument document;
        document.LoadXml("<a b='1' c='2'><d e='3'/><f/><g><h/></g></a>");
        EXPECT_EQ(elements.nLiving + 5, CountInstances(L"CXmlElement").nLiving);
        EXPECT_EQ(attributes.nLiving + 3, CountInstances(L"CXmlAttribute").nLiving);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
    EXPECT_EQ(attributes.nLiving, CountInstances(L"CXmlAttribute").nLiving);
    EXPECT_EQ(elements.nTotal + 5, CountInstances(L"CXmlElement").nTotal);
    EXPECT_EQ(attributes.nTotal + 3, CountInstances(L"CXmlAttribute").nTotal);
}

TEST(XmlElement, AnElementOnItsOwnTakesAllBelowItAlong)
{
    const auto elements = CountInstances(L"CXmlElement");
    const auto attributes = CountInstances(L"CXmlAttribute");
    {
        CFreeElement element;
        element.AddAttribute(L"a", L"1", L"");
        NewChild(NewChild(&element));
        NewChild(&element);
        EXPECT_EQ(elements.nLiving + 4, CountInstances(L"CXmlElement").nLiving);
        EXPECT_EQ(attributes.nLiving + 1, CountInstances(L"CXmlAttribute").nLiving);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
    EXPECT_EQ(attributes.nLiving, CountInstances(L"CXmlAttribute").nLiving);
}

#if defined(QUIVER_DIAGNOSTICS)
// Each destruction is checked against the counts there.
constexpr int s_nMany = 100000;
#else
constexpr int s_nMany = 1000000;
#endif

TEST(XmlElement, AVeryLongListOfSiblingsIsDestroyed)
{
    const auto elements = CountInstances(L"CXmlElement");
    {
        CFreeElement element;
        for (int i = 0; i < s_nMany; ++i)
            NewChild(&element);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(XmlElement, AVeryDeepTreeIsDestroyed)
{
    const auto elements = CountInstances(L"CXmlElement");
    {
        CFreeElement element;
        CXmlElement* pInnermost = &element;
        for (int i = 0; i < s_nMany; ++i)
        {
            NewChild(pInnermost);
            pInnermost = NewChild(pInnermost);
        }
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

} // namespace
