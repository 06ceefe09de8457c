#include "quiver/metadata/ElementInfoChoice.h"

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

namespace QvTest
{
namespace
{

CElementInfoChoiceClsOpt ClsOptRecord(XmlElementType eElementType)
{
    return CElementInfoChoiceClsOpt(L"own", Namespace, Index, eElementType, &CreateChild, ClassId);
}

class ElementInfoChoice : public testing::Test
{
protected:
    void SetUp() override { g_creations = SCreations(); }

    CRecordingObject m_object;
};

TEST_F(ElementInfoChoice, AlternativeNeverSkipsUnknownElements)
{
    CElementInfoChoicePrimOpt record(L"own", Namespace, Index, ItemType_i4, nullptr,
                                     CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions());
    CChildren children(L"<foreign/><own>5</own>");
    for (const XmlElementType eParentType : {ElementType_Element, ElementType_Pseudo})
        EXPECT_FALSE(Read(record, m_object, children, eParentType, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoChoice, ChildIsStoredBeforeItIsRead)
{
    auto record = ClsOptRecord(ElementType_Element);
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " unread child");
    EXPECT_EQ(dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject()).m_nReads, 1);
    EXPECT_EQ(g_creations.nClassId, ClassId);
    EXPECT_TEXT(L"own", g_creations.strName);
}

TEST_F(ElementInfoChoice, ChildWithAnElementOfItsOwnMayBeAnEmptyChoiceInBothDirections)
{
    auto record = ClsOptRecord(ElementType_Element);
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_TRUE(dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject()).m_bOptionalChoice);

    CRecordingWriter writer;
    EXPECT_TRUE(record.ElementToXml(CXmlSerializationContext(), &m_object, &writer));
    EXPECT_TEXT(L"<{urn:t}own\noptional choice:23\n>\n", writer.m_strCalls);
}

TEST_F(ElementInfoChoice, PseudoChildMayBeAnEmptyChoiceOnWritingOnly)
{
    auto record = ClsOptRecord(ElementType_Pseudo);
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_FALSE(dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject()).m_bOptionalChoice);

    CRecordingWriter writer;
    EXPECT_TRUE(record.ElementToXml(CXmlSerializationContext(), &m_object, &writer));
    EXPECT_TEXT(L"<{urn:t}own\noptional choice:23\n>\n", writer.m_strCalls);
}

TEST_F(ElementInfoChoice, PseudoChildThatConsumesNothingIsStoredAndThenWithdrawn)
{
    auto record = ClsOptRecord(ElementType_Pseudo);
    CChildren children(L"<foreign/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " unread child null");
    EXPECT_EQ(m_object.m_value.GetXmlObject(), nullptr);
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoChoice, CreatorThatMakesNothingIsReportedAndNothingStored)
{
    g_creations.eCreator = Creator::GivesNull;
    for (const XmlElementType eElementType : {ElementType_Element, ElementType_Pseudo})
    {
        auto record = ClsOptRecord(eElementType);
        CChildren children(L"<own/>");
        ExpectThrows<CQvException>(L"No object was created for the element [own]",
                                   [&] { Read(record, m_object, children, ElementType_Element); });
    }
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoChoice, AbstractAlternativeWithoutAFittingClassStoresNullAndLeavesTheElement)
{
    g_creations.eCreator = Creator::GivesNull;
    m_object.m_value.SetXmlObject(new CRecordingChild);
    CElementInfoChoiceAbsClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChildFromElement);
    CChildren children(L"<own/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " null");
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoChoice, AbstractAlternativeIsStoredBeforeItIsRead)
{
    CElementInfoChoiceAbsClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChildFromElement);
    CChildren children(L"<own><first/></own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " unread child");
    const auto& child = dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject());
    EXPECT_TEXT(L"first", child.m_strFirst);
    EXPECT_FALSE(child.m_bOptionalChoice);
}

TEST_F(ElementInfoChoice, WildcardThatConsumesNothingClearsWhatThePropertyHeld)
{
    m_object.m_value.SetXmlObject(new CElement(L"former"));
    CElementInfoChoiceUntpdOpt record(L"own", L"", Index, L"##any", L"");
    CChildren children(L"<foreign/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_value.GetXmlObject(), nullptr);
}

TEST_F(ElementInfoChoice, WildcardLeavesThePropertyAloneAtTheEnd)
{
    m_object.m_value.SetXmlObject(new CElement(L"former"));
    CElementInfoChoiceUntpdOpt record(L"AnyElement", L"", Index, L"##any", L"");
    CChildren children(L"");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoChoice, WildcardFailsOnARestrictionThatItsDefaultNamespaceBreaks)
{
    CElementInfoChoiceUntpdOpt record(L"own", L"", Index, L"##other", L"");
    CChildren children(L"<foreign/>");
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace []. The namespace must be one of [##other] where the target namespace is []",
        [&] { Read(record, m_object, children, ElementType_Element, CXmlSerializationContext(), L"urn:p"); });
}

TEST_F(ElementInfoChoice, CollectionInAPseudoClassKeepsItsItemsWhenItsCountIsInvalid)
{
    CElementInfoChoiceClsCol record(L"own", Namespace, Index, ElementType_Element);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 2, -1));
    CChildren children(L"<own/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Pseudo));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_value.GetXmlCollection()->GetCount(), 1);
}

TEST_F(ElementInfoChoice, CollectionInARealClassHasMovedTheCursorWhenItsCountFails)
{
    CElementInfoChoiceClsCol record(L"own", Namespace, Index, ElementType_Element);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 0, 1));
    CChildren children(L"<own/><own/>");
    ExpectThrows<CQvValidationException>(L"The Maximum number of [own] elements allowed in this collection is 1",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(children.Position(), '-');
}

TEST_F(ElementInfoChoice, CountOnWritingIsTheCollectionsOwnAffair)
{
    CElementInfoChoicePrimCol record(L"own", Namespace, Index);
    CRecordingWriter writer;
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 1, -1));
    EXPECT_FALSE(record.ElementToXml(CXmlSerializationContext(), &m_object, &writer));
    EXPECT_TEXT(L"", writer.m_strCalls);

    CSmartPtr<Ci4Col> spNumbers = new Ci4Col(L"own", Namespace, 2, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                             CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
    spNumbers->Add(5);
    m_object.m_value.SetXmlCollection(spNumbers);
    ExpectThrows<CQvValidationException>(L"The Minimum number of [own] elements allowed in this collection is 2",
                                         [&] { record.ElementToXml(CXmlSerializationContext(), &m_object, &writer); });
}

TEST_F(ElementInfoChoice, NamedWildcardCollectionConsumesNothingAtTheEnd)
{
    CElementInfoChoiceUntpdCol record(L"own", L"", Index);
    m_object.m_value.SetXmlCollection(new CElementCol(L"", L"##any", L"", 0, -1));
    CChildren children(L"");
    for (const XmlElementType eParentType : {ElementType_Element, ElementType_Pseudo})
        EXPECT_FALSE(Read(record, m_object, children, eParentType));
}

TEST_F(ElementInfoChoice, NamedWildcardCollectionNeedsACollectionOfOpenElements)
{
    CElementInfoChoiceUntpdCol record(L"own", L"", Index);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 0, -1));
    CChildren children(L"<own/>");
    ExpectThrows<CQvException>(L"Serialization Data Error : The collection should be a CElementCol, it was not!",
                               [&] { Read(record, m_object, children, ElementType_Element); });
}

} // namespace
} // namespace QvTest
