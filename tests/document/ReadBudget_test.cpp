#include "quiver/document/ReadBudget.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/Expect.h"
#include "tests/support/FlexClass.h"
#include "tests/support/MetadataFixture.h"
#include "tests/support/ProtectedAccess.h"

#include <ctime>
#include <memory>
#include <random>
#include <vector>

using namespace QvTest;

namespace
{

constexpr const wchar_t* s_lpctOver = L"The groups of the document take too many steps to be told apart";

class CTree
{
public:
    explicit CTree(const std::string& strXml) { m_document.LoadXml(strXml.c_str()); }
    CXmlElement& Root() { return *m_document.GetDocumentElement(); }

private:
    CXmlDocument m_document;
};

// --- Classes put together at random ------------------------------------------------------------------------------

std::vector<std::unique_ptr<CShape>> s_shapes;

CSmartPtr<CXmlObjectBase> Create(int nShape, const wchar_t* lpctName);

/// The records whose child the constructor of the class makes: property and shape.
std::map<const CShape*, std::map<int, int>> s_mandatoryChildren;

CSmartPtr<CFlexClass> New(int nShape, const wchar_t* lpctName = L"")
{
    const CShape& shape = *s_shapes[static_cast<std::size_t>(nShape)];
    return new CFlexClass(shape, lpctName,
                          [&shape](CFlexClass& self)
                          {
                              for (const auto& [nProperty, nChild] : s_mandatoryChildren[&shape])
                                  self[nProperty].SetXmlObject(New(nChild));
                          });
}

CSmartPtr<CXmlObjectBase> Create(int nShape, const wchar_t* lpctName)
{
    return static_cast<CXmlObjectBase*>(New(nShape, lpctName));
}

/// What an object holds, with all below it.
std::wstring Dump(CFlexClass& object)
{
    std::wstring strText = L"(";
    for (int nProperty = 0; nProperty < 6; ++nProperty)
    {
        if (CFlexClass* const pChild =
                object[nProperty].GetTypeAsEnum() == ItemType_XmlObjectBase ? object.Child(nProperty) : nullptr)
            strText += Dump(*pChild);
        else if (object[nProperty].GetTypeAsEnum() == ItemType_string)
            strText += std::to_wstring(nProperty) + object.Text(nProperty);
    }
    return strText + L")";
}

template <class TRecord>
CElementInfo* TextRecord(const wchar_t* lpctName, int nProperty)
{
    return new TRecord(lpctName, L"", nProperty, ItemType_string, nullptr, CWhitespaceUtils::WhitespaceRule_None,
                       CPrimitiveRestrictions());
}

void AddMandatory(CShape& shape, const wchar_t* lpctName, int nProperty, XmlElementType eType, int nChild,
                  bool bContentRequired)
{
    shape.AddObject(new CElementInfoSeqClsMnd(lpctName, L"", nProperty, eType, &Create, nChild, bContentRequired),
                    nProperty);
    s_mandatoryChildren[&shape][nProperty] = nChild;
}

class CRandomClasses
{
public:
    explicit CRandomClasses(unsigned int nSeed)
        : m_random(nSeed)
    {
        s_shapes.clear();
        s_mandatoryChildren.clear();
    }

    /// A shape with groups down to `nLevels` below it.
    int MakeShape(int nLevels, XmlElementType eType)
    {
        const bool bChoice = Draw(5) == 0;
        auto pShape =
            std::make_unique<CShape>(bChoice ? GroupType_Choice : GroupType_Sequence, eType, L"e", L"", -1, false);
        const int nRecords = 1 + Draw(3);
        for (int nProperty = 0; nProperty < nRecords; ++nProperty)
        {
            if (bChoice)
                AddAlternative(*pShape, nProperty, nLevels);
            else
                AddMember(*pShape, nProperty, nLevels);
        }
        s_shapes.push_back(std::move(pShape));
        return static_cast<int>(s_shapes.size()) - 1;
    }

    std::string MakeDocument()
    {
        std::string strXml = "<e>";
        for (int n = Draw(9); n > 0; --n)
        {
            const char cName = static_cast<char>('a' + Draw(5));
            strXml += std::string("<") + cName + ">" + std::to_string(n) + "</" + cName + ">";
        }
        return strXml + "</e>";
    }

    CXmlSerializationContext MakeContext()
    {
        CXmlSerializationContext context;
        context.SetIgnoreUnknownElements(Draw(4) != 0);
        context.SetIgnoreMissingChoice(Draw(2) != 0);
        return context;
    }

private:
    int Draw(int nBelow) { return static_cast<int>(m_random() % static_cast<unsigned int>(nBelow)); }
    const wchar_t* Name()
    {
        static const wchar_t* const s_names[] = {L"a", L"b", L"c", L"d"};
        return s_names[Draw(4)];
    }

    void AddAlternative(CShape& shape, int nProperty, int nLevels)
    {
        if (nLevels == 0 || Draw(2) == 0)
            shape.Add(TextRecord<CElementInfoChoicePrimOpt>(Name(), nProperty));
        else
            shape.AddObject(new CElementInfoChoiceClsOpt(L"", L"", nProperty, ElementType_Pseudo, &Create,
                                                         MakeShape(nLevels - 1, ElementType_Pseudo)),
                            nProperty);
    }

    void AddMember(CShape& shape, int nProperty, int nLevels)
    {
        switch (nLevels == 0 ? Draw(2) : Draw(8))
        {
        case 0:
        case 2:
            shape.Add(TextRecord<CElementInfoSeqPrimMnd>(Name(), nProperty));
            break;
        case 1:
            shape.Add(TextRecord<CElementInfoSeqPrimOpt>(Name(), nProperty));
            break;
        case 3:
            AddMandatory(shape, L"", nProperty, ElementType_Pseudo, MakeShape(nLevels - 1, ElementType_Pseudo), false);
            break;
        case 4:
            shape.AddObject(new CElementInfoSeqClsOpt(L"", L"", nProperty, ElementType_Pseudo, &Create,
                                                      MakeShape(nLevels - 1, ElementType_Pseudo)),
                            nProperty);
            break;
        default:
            AddMandatory(shape, L"", nProperty, ElementType_Pseudo, MakeShape(nLevels - 1, ElementType_Pseudo), true);
            break;
        }
    }

    std::mt19937 m_random;
};

/// What reading gives: the failure, then what the object holds.
template <class TRead>
std::wstring Outcome(int nShape, TRead Read)
{
    const CSmartPtr<CFlexClass> spObject = New(nShape, L"e");
    const std::wstring strFailure = FailureOf([&] { Read(*spObject); });
    return strFailure + Dump(*spObject);
}

double SecondsOf(const std::function<void()>& Run)
{
    const std::clock_t nStart = std::clock();
    Run();
    return static_cast<double>(std::clock() - nStart) / CLOCKS_PER_SEC;
}

/// A chain of groups within groups; the innermost wants an element `z`.
int MakeNestedGroups(int nLevels)
{
    s_shapes.clear();
    s_mandatoryChildren.clear();
    s_shapes.push_back(std::make_unique<CShape>(GroupType_Sequence, ElementType_Pseudo, L"", L"", -1, false));
    s_shapes.back()->Add(TextRecord<CElementInfoSeqPrimMnd>(L"z", 0));
    for (int n = 1; n <= nLevels; ++n)
    {
        s_shapes.push_back(std::make_unique<CShape>(
            GroupType_Sequence, n == nLevels ? ElementType_Element : ElementType_Pseudo, L"e", L"", -1, false));
        AddMandatory(*s_shapes.back(), L"", 0, ElementType_Pseudo, n - 1, n != nLevels);
    }
    return nLevels;
}

std::string Repeated(const std::string& strText, int nCount)
{
    std::string strAll;
    for (int n = 0; n < nCount; ++n)
        strAll += strText;
    return strAll;
}

/// A collection of groups as a generated one reads them: as long as they consume something.
class CGroupCol : public CXmlCollection
{
public:
    explicit CGroupCol(int nShape)
        : CInstanceMonitor(L"CGroupCol")
        , CXmlCollection(L"", L"", 0, -1)
        , m_nShape(nShape)
    {
    }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool) override
    {
        while (pCurrent != nullptr)
        {
            const CSmartPtr<CFlexClass> spGroup = New(m_nShape);
            CXmlElement* const pNext = CXmlObjectBase::FromXml_Int(spGroup, pElement, pCurrent, context);
            if (pNext == pCurrent)
                break;
            AppendItem(spGroup);
            pCurrent = pNext;
        }
        return pCurrent;
    }

private:
    int m_nShape;
};

/// An element with any attributes, and a group of one element `a` that repeats.
struct SRepeatedGroups
{
    explicit SRepeatedGroups(CAttributeInfo* pGroupAttribute = nullptr, bool bGroupFails = false)
    {
        s_shapes.clear();
        s_mandatoryChildren.clear();
        s_shapes.push_back(std::make_unique<CShape>(GroupType_Sequence, ElementType_Pseudo, L"", L"", -1, bGroupFails));
        s_shapes.back()->Add(TextRecord<CElementInfoSeqPrimMnd>(L"a", 0));
        if (pGroupAttribute != nullptr)
            s_shapes.back()->Add(pGroupAttribute);
        m_shape.Add(new CElementInfoSeqClsCol(L"", L"", 0, ElementType_Pseudo));
    }

    std::wstring Read(const std::string& strXml, int& nGroups)
    {
        CSmartPtr<CGroupCol> spGroups;
        const CSmartPtr<CFlexClass> spReader = new CFlexClass(m_shape, L"e",
                                                              [&](CFlexClass& self)
                                                              {
                                                                  spGroups = new CGroupCol(0);
                                                                  self[0].SetXmlCollection(spGroups);
                                                              });
        const std::wstring strFailure =
            FailureOf([&] { spReader->FromXml(strXml.c_str(), CXmlSerializationContext()); });
        nGroups = spGroups->GetCount();
        return strFailure;
    }

    CShape m_shape{GroupType_Sequence, ElementType_Element, L"e", L"", -1, false};
};

std::string WithAttributes(int nAttributes, int nGroups)
{
    std::string strXml = "<e";
    for (int n = 0; n < nAttributes; ++n)
        strXml += " a" + std::to_string(n) + "=''";
    return strXml + ">" + Repeated("<a/>", nGroups) + "</e>";
}

} // namespace

// --- The budget itself -----------------------------------------------------------------------------------------------

TEST(ReadBudget, GrowsWithTheDocument)
{
    CTree tree("<e a='1' b='2'><f/></e>");
    CReadBudget budget(tree.Root());
    EXPECT_NO_THROW(budget.Spend(CReadBudget::s_nStepsAtLeast + 4 * CReadBudget::s_nStepsPerNode));
    ExpectThrows<CQvException>(s_lpctOver, [&] { budget.Spend(1); });
    EXPECT_NO_THROW(budget.Spend(0));
}

TEST(ReadBudget, IsThatOfTheInnermostRead)
{
    CTree tree("<e/>");
    EXPECT_EQ(nullptr, CReadBudget::GetCurrent());
    EXPECT_NO_THROW(CReadBudget::SpendCurrent(~std::uint64_t{0})) << "nothing is counted outside a read";
    {
        CReadBudget outer(tree.Root());
        EXPECT_EQ(&outer, CReadBudget::GetCurrent());
        {
            CReadBudget inner(tree.Root());
            EXPECT_EQ(&inner, CReadBudget::GetCurrent());
            EXPECT_THROW(CReadBudget::SpendCurrent(~std::uint64_t{0}), CQvException);
        }
        EXPECT_EQ(&outer, CReadBudget::GetCurrent());
    }
    EXPECT_EQ(nullptr, CReadBudget::GetCurrent());
}

TEST(ReadBudget, LooksForNilOnceInEachElement)
{
    CTree tree("<e xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' nil='1'><f xsi:nil='false' b=''/></e>");
    CXmlElement& child = *tree.Root().GetFirstElement();
    CReadBudget budget(tree.Root());
    for (int n = 0; n < 3; ++n)
        EXPECT_FALSE(budget.HasNil(tree.Root()));
    for (int n = 0; n < 3; ++n)
        EXPECT_TRUE(budget.HasNil(child));
    EXPECT_FALSE(budget.HasNil(tree.Root()));
    // One attribute, two, and one again.
    EXPECT_NO_THROW(budget.Spend(CReadBudget::s_nStepsAtLeast + 5 * CReadBudget::s_nStepsPerNode - 4));
    EXPECT_THROW(budget.Spend(1), CQvException);
}

TEST(ReadBudget, KeepsOneNoteOfAGroupThatMatchesNothingAnyMore)
{
    CTree tree("<e><f/></e>");
    CXmlElement* const pChild = tree.Root().GetFirstElement();
    CReadBudget budget(tree.Root());
    EXPECT_FALSE(budget.IsExhausted(&tree.Root(), pChild));
    budget.NoteExhausted(&tree.Root(), pChild);
    EXPECT_TRUE(budget.IsExhausted(&tree.Root(), pChild));
    EXPECT_FALSE(budget.IsExhausted(&tree.Root(), nullptr));
    EXPECT_FALSE(budget.IsExhausted(pChild, pChild));
    budget.DropExhausted();
    EXPECT_FALSE(budget.IsExhausted(&tree.Root(), pChild));
}

// --- Groups of generated classes -------------------------------------------------------------------------------------

TEST(ReadBudget, GroupsThatAreNotAskedEverywhereAreReadAsIfTheyWere)
{
    int nRead = 0;
    for (unsigned int nSeed = 0; nSeed < 20000; ++nSeed)
    {
        CRandomClasses classes(nSeed);
        const int nShape = classes.MakeShape(3, ElementType_Element);
        const std::string strXml = classes.MakeDocument();
        const CXmlSerializationContext context = classes.MakeContext();
        CTree tree(strXml);
        // Without an entry to reading there is no budget, and every group is asked at every element.
        const std::wstring strPlain =
            Outcome(nShape, [&](CFlexClass& object)
                    { CProtectedAccess::Read(&object, &tree.Root(), tree.Root().GetFirstElement(), context); });
        const std::wstring strRead =
            Outcome(nShape, [&](CFlexClass& object) { object.FromXmlElement(&tree.Root(), context); });
        ASSERT_EQ(strPlain, strRead) << "seed " << nSeed << ": " << strXml;
        nRead += strRead.front() == L'(' ? 1 : 0;
    }
    EXPECT_GT(nRead, 5000) << "enough of the documents fit their classes";
}

TEST(ReadBudget, NestedGroupsThatMatchNothingTakeLinearTime)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    const int nShape = MakeNestedGroups(6);
    const std::string strXml = "<e>" + Repeated("<x/>", 20000) + "</e>";
    const CSmartPtr<CFlexClass> spObject = New(nShape, L"e");
    EXPECT_LT(SecondsOf([&] { spObject->FromXml(strXml.c_str(), context); }), 5);
    EXPECT_TEXT(L"((((((()))))))", Dump(*spObject));
}

TEST(ReadBudget, ANestedGroupIsFoundBehindUnknownElements)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    const int nShape = MakeNestedGroups(3);
    const CSmartPtr<CFlexClass> spObject = New(nShape, L"e");
    spObject->FromXml("<e><x/><x/><z>found</z><x/></e>", context);
    EXPECT_TEXT(L"((((0found))))", Dump(*spObject));
}

TEST(ReadBudget, RepeatedGroupsWithoutAttributesDoNotLookAtThoseOfTheirElement)
{
    SRepeatedGroups groups;
    const std::string strXml = WithAttributes(20000, 20000);
    int nGroups = 0;
    EXPECT_LT(SecondsOf([&] { EXPECT_TEXT(L"", groups.Read(strXml, nGroups)); }), 5);
    EXPECT_EQ(20000, nGroups);
}

TEST(ReadBudget, AGroupWithoutAttributesStillRefusesWhatItHasTo)
{
    int nGroups = 0;
    {
        SRepeatedGroups groups(nullptr, true);
        EXPECT_TEXT(L"Validation: Failed to process the element [e]\nFailed to process the element [e]\n"
                    L"Unexpected Attribute [a0] found.",
                    groups.Read(WithAttributes(1, 2), nGroups));
    }
    SRepeatedGroups groups;
    EXPECT_TEXT(
        L"Validation: Failed to process the element [e]\nUnexpected Attribute [nil] found.",
        groups.Read("<e xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='false'><a/></e>", nGroups));
}

TEST(ReadBudget, ManyGroupsWithAttributesUnderManyAttributesAreRefused)
{
    const auto Attribute = [](const wchar_t* lpctName)
    {
        return new CAttributeInfoPrimitive(lpctName, L"", 1, true, ItemType_string, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions(), L"");
    };
    int nGroups = 0;
    SRepeatedGroups few(Attribute(L"a7"));
    EXPECT_TEXT(L"", few.Read(WithAttributes(100, 10000), nGroups));
    EXPECT_EQ(10000, nGroups);

    SRepeatedGroups many(Attribute(L"a7"));
    EXPECT_TEXT(std::wstring(L"Validation: Failed to process the element [e]\nFailed to process the element [e]\n") +
                    s_lpctOver,
                many.Read(WithAttributes(20000, 20000), nGroups));
}

TEST(ReadBudget, AlternativesThatAreReadAgainAtEveryLevelAreRefused)
{
    // Two groups of a choice begin with the same element, which has such a choice in its turn; only the second group of
    // each level matches.
    s_shapes.clear();
    s_mandatoryChildren.clear();
    s_shapes.push_back(std::make_unique<CShape>(GroupType_Choice, ElementType_Element, L"e", L"", -1, false));
    for (int nAlternative = 1; nAlternative <= 2; ++nAlternative)
    {
        s_shapes.push_back(std::make_unique<CShape>(GroupType_Sequence, ElementType_Pseudo, L"", L"", -1, false));
        s_shapes.back()->AddObject(new CElementInfoSeqClsOpt(L"e", L"", 0, ElementType_Element, &Create, 0), 0);
        s_shapes.back()->Add(TextRecord<CElementInfoSeqPrimMnd>(nAlternative == 1 ? L"x" : L"y", 1));
        s_shapes.front()->AddObject(
            new CElementInfoChoiceClsOpt(L"", L"", nAlternative, ElementType_Pseudo, &Create, nAlternative),
            nAlternative);
    }
    const auto Document = [](int nLevels)
    {
        return Repeated("<e>", nLevels) + "<y/>" + Repeated("</e><y/>", nLevels - 1) + "</e>";
    };
    CXmlSerializationContext context;
    context.SetIgnoreMissingChoice(true);
    const CSmartPtr<CFlexClass> spObject = New(0, L"e");
    EXPECT_NO_THROW(spObject->FromXml(Document(8).c_str(), context));
    const std::wstring strFailure = FailureOf([&] { spObject->FromXml(Document(60).c_str(), context); });
    EXPECT_NE(std::wstring::npos, strFailure.find(s_lpctOver)) << strFailure.size();
}
