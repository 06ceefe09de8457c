#include "quiver/metadata/ElementInfoAll.h"

#include "quiver/collections/Element.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/FlexClass.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

namespace QvTest
{
namespace
{

template <class TRecord>
TRecord* Text(const wchar_t* lpctName, int nPropertyIndex)
{
    return new TRecord(lpctName, Namespace, nPropertyIndex, ItemType_string, nullptr,
                       CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions());
}

/// A class of three texts in any order, of which `a` and `b` are mandatory.
struct SThreeTexts : CShape
{
    explicit SThreeTexts(XmlElementType eElementType = ElementType_Element)
        : CShape(GroupType_All, eElementType, L"flex", Namespace)
    {
        Add(Text<CElementInfoAllPrimMnd>(L"a", 1));
        Add(Text<CElementInfoAllPrimMnd>(L"b", 2));
        Add(Text<CElementInfoAllPrimOpt>(L"c", 3));
    }
};

std::wstring Document(const wchar_t* lpctChildren)
{
    return std::wstring(L"<flex xmlns='urn:t'>") + lpctChildren + L"</flex>";
}

class ElementInfoAll : public testing::Test
{
protected:
    void SetUp() override { g_creations = SCreations(); }

    CRecordingObject m_object;
};

TEST_F(ElementInfoAll, ChildrenMayComeInAnyOrderAndAreWrittenInTableOrder)
{
    const SThreeTexts shape;
    const CXmlSerializationContext context;
    for (const wchar_t* lpctChildren : {L"<a>1</a><b>2</b><c>3</c>", L"<c>3</c><b>2</b><a>1</a>",
                                        L"<b>2</b><c>3</c><a>1</a>", L"<c>3</c><a>1</a><b>2</b>"})
    {
        SCOPED_TRACE(Show(lpctChildren));
        CFlexClass object(shape);
        object.FromXml(Document(lpctChildren).c_str(), context);
        CRecordingWriter writer;
        for (const CElementInfo* pRecord : shape.m_elements)
            if (pRecord != nullptr)
                pRecord->ElementToXml(context, &object, &writer);
        EXPECT_TEXT(L"<{urn:t}a\n1:23\n>\n<{urn:t}b\n2:23\n>\n<{urn:t}c\n3:23\n>\n", writer.m_strCalls);
    }
}

TEST_F(ElementInfoAll, SecondOccurrenceOfAChildIsLeftOver)
{
    const SThreeTexts shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\n"
        L"Failed read all the elements held within the element [flex]. The unexpected element [a] remains un processed",
        [&] { object.FromXml(Document(L"<a>1</a><b>2</b><a>3</a>").c_str(), CXmlSerializationContext()); });
    EXPECT_TEXT(L"1", object.Text(1));
}

TEST_F(ElementInfoAll, MissingMandatoryMemberIsReportedWhateverTheContextSays)
{
    const SThreeTexts shape;
    for (const CXmlSerializationContext& context :
         {CXmlSerializationContext(), IgnoringMissingMandatoryElements(), IgnoringUnknownElements()})
    {
        CFlexClass object(shape);
        ExpectThrows<CQvValidationException>(
            L"Failed to process the element [flex]\nFailed to find the mandatory element [b]",
            [&] { object.FromXml(Document(L"<a>1</a>").c_str(), context); });
    }
}

TEST_F(ElementInfoAll, MissingMandatoryMemberOfAPseudoClassPutsTheCursorBack)
{
    static const SThreeTexts s_group(ElementType_Pseudo);
    CShape outer(GroupType_Sequence, ElementType_Element, L"flex", Namespace);
    outer.Add(new CElementInfoSeqClsOpt(
        L"group", Namespace, 1, ElementType_Pseudo,
        [](int, const wchar_t* lpctName) -> CSmartPtr<CXmlObjectBase> { return new CFlexClass(s_group, lpctName); },
        0));
    outer.Add(Text<CElementInfoSeqPrimOpt>(L"a", 2));
    CFlexClass object(outer);
    object.FromXml(Document(L"<a>1</a>").c_str(), CXmlSerializationContext());
    EXPECT_EQ(object.Child(1), nullptr);
    EXPECT_TEXT(L"1", object.Text(2));

    object.FromXml(Document(L"<b>2</b><a>1</a>").c_str(), CXmlSerializationContext());
    ASSERT_NE(object.Child(1), nullptr);
    EXPECT_TEXT(L"2", object.Child(1)->Text(2));
    EXPECT_TEXT(L"(unset)", object.Text(2));
}

TEST_F(ElementInfoAll, ClassMemberMayBeAbsentOnlyWithAnElementOfItsOwnAndNoRequiredContent)
{
    const struct
    {
        XmlElementType eElementType;
        bool bContentRequired;
        const wchar_t* lpctFailure;
    } rows[] = {
        {ElementType_Element, false, L""},
        {ElementType_Element, true, L"Validation: Failed to find the mandatory element [own]"},
        {ElementType_Pseudo, false, L"Validation: Failed to find the mandatory element [own]"},
        {ElementType_Pseudo, true, L"Validation: Failed to find the mandatory element [own]"},
    };
    for (const auto& row : rows)
    {
        const CElementInfoAllClsMnd record(L"own", Namespace, Index, row.eElementType, &CreateChild, ClassId,
                                           row.bContentRequired);
        EXPECT_TEXT(row.lpctFailure,
                    FailureOf([&] { record.Validate(CXmlSerializationContext(), &m_object, false, true); }));
        EXPECT_FALSE(record.Validate(CXmlSerializationContext(), &m_object, false, false));
    }
}

TEST_F(ElementInfoAll, MandatoryChildIsFilledInPlace)
{
    CSmartPtr<CRecordingChild> spChild = new CRecordingChild;
    m_object.m_value.SetXmlObject(spChild);
    CElementInfoAllClsMnd own(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId, true);
    CChildren children(L"<own><first/></own>");
    EXPECT_TRUE(Read(own, m_object, children, ElementType_Element));
    EXPECT_TEXT(L"own", spChild->m_strParent);
    EXPECT_TEXT(L"first", spChild->m_strFirst);
    EXPECT_FALSE(spChild->m_bOptionalChoice);

    CElementInfoAllClsMnd pseudo(L"own", Namespace, Index, ElementType_Pseudo, &CreateChild, ClassId, true);
    CChildren again(L"<own/>");
    EXPECT_TRUE(Read(pseudo, m_object, again, ElementType_Element));
    EXPECT_TEXT(L"root", spChild->m_strParent);
    EXPECT_EQ(m_object.m_nStores, 0);
    EXPECT_EQ(g_creations.nCount, 0);
}

TEST_F(ElementInfoAll, MandatoryChildThatIsNotThereIsReported)
{
    m_object.m_value.SetXmlObject(nullptr);
    for (const XmlElementType eElementType : {ElementType_Element, ElementType_Pseudo})
    {
        CElementInfoAllClsMnd record(L"own", Namespace, Index, eElementType, &CreateChild, ClassId, true);
        CChildren children(L"<own/>");
        ExpectThrows<CQvException>(L"The property of the element [own] holds no object",
                                   [&] { Read(record, m_object, children, ElementType_Element); });
    }
}

TEST_F(ElementInfoAll, OptionalChildIsStoredAfterItHasBeenRead)
{
    CElementInfoAllClsOpt own(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId);
    CElementInfoAllClsOpt pseudo(L"own", Namespace, Index, ElementType_Pseudo, &CreateChild, ClassId);
    CChildren children(L"<own/><own/><foreign/>");
    EXPECT_TRUE(Read(own, m_object, children, ElementType_Element));
    EXPECT_TRUE(Read(pseudo, m_object, children, ElementType_Element));
    EXPECT_FALSE(Read(pseudo, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " read child read child");
    EXPECT_EQ(g_creations.nCount, 3);
    EXPECT_EQ(g_creations.nClassId, ClassId);
}

TEST_F(ElementInfoAll, CreatorThatMakesNothingIsReported)
{
    g_creations.eCreator = Creator::GivesNull;
    CElementInfoAllClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId);
    CChildren children(L"<own/>");
    ExpectThrows<CQvException>(L"No object was created for the element [own]",
                               [&] { Read(record, m_object, children, ElementType_Element); });
}

TEST_F(ElementInfoAll, AbstractMemberCannotBeReadEvenWhereItsElementIsAbsent)
{
    CShape shape(GroupType_All, ElementType_Element, L"flex", Namespace);
    shape.Add(new CElementInfoAllAbsClsOpt(L"own", Namespace, 1, ElementType_Element, &CreateChildFromElement));
    shape.Add(Text<CElementInfoAllPrimOpt>(L"a", 2));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nCElementInfoAllAbsClsOpt::ElementFromXml, has not been implemented "
        L"fully, contact support@quiver-xml.example",
        [&] { object.FromXml(Document(L"<a>1</a>").c_str(), CXmlSerializationContext()); });
    EXPECT_EQ(g_creations.nCount, 0);
}

TEST_F(ElementInfoAll, AbstractMemberThatTheWalkNeverReachesDoesNoHarm)
{
    CShape shape(GroupType_All, ElementType_Element, L"flex", Namespace);
    shape.Add(new CElementInfoAllAbsClsOpt(L"own", Namespace, 1, ElementType_Element, &CreateChildFromElement));
    CFlexClass object(shape);
    object.FromXml(Document(L"").c_str(), CXmlSerializationContext());
    EXPECT_EQ(g_creations.nCount, 0);
    EXPECT_TEXT(L"(unset)", object.Text(1));
}

TEST_F(ElementInfoAll, AbstractMandatoryMemberCannotBeReadButWritten)
{
    CElementInfoAllAbsClsMnd record(L"own", Namespace, Index, ElementType_Element, &CreateChildFromElement, 3);
    CChildren children(L"<own/>");
    ExpectThrows<CQvException>(L"CElementInfoAllAbsClsMnd::ElementFromXml, has not been implemented fully, contact "
                               L"support@quiver-xml.example",
                               [&] { Read(record, m_object, children, ElementType_Pseudo); });
    m_object.m_value.SetXmlObject(new CRecordingChild);
    CRecordingWriter writer;
    EXPECT_TRUE(record.ElementToXml(CXmlSerializationContext(), &m_object, &writer));
    EXPECT_TEXT(L"<{urn:t}own\nchild:23\n>\n", writer.m_strCalls);
}

TEST_F(ElementInfoAll, WildcardThatFindsNothingKeepsTheProperty)
{
    CSmartPtr<CElement> spFormer = new CElement(L"former");
    m_object.m_value.SetXmlObject(spFormer);
    CElementInfoAllUntpdOpt record(L"own", L"", Index, L"##any", L"");
    CChildren children(L"<foreign/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_value.GetXmlObject(), static_cast<CXmlObjectBase*>(spFormer));
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoAll, CollectionNeverCountsAsFoundAndReadingItsClassFails)
{
    CShape shape(GroupType_All, ElementType_Element, L"flex", Namespace);
    shape.Add(new CElementInfoAllClsCol(L"own", Namespace, 1, ElementType_Element));
    CFlexClass object(shape, L"flex",
                      [](CFlexClass& made) { made[1].SetXmlCollection(new CRecordingCol(L"own", 0, -1)); });
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nNot implemented, should never be called",
        [&] { object.FromXml(Document(L"<own/><own/>").c_str(), CXmlSerializationContext()); });
    EXPECT_EQ(object[1].GetXmlCollection()->GetCount(), 2);
}

} // namespace
} // namespace QvTest
