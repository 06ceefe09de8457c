#include "quiver/metadata/ElementInfoSeq.h"

#include "quiver/collections/Element.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

namespace QvTest
{
namespace
{

/// A record of numbers from 10 on.
template <class TRecord>
TRecord NumberRecord()
{
    return TRecord(L"own", Namespace, Index, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                   CPrimitiveRestrictions(L"", -1, -1, L"10", L"", L"", L"", -1));
}

template <class TRecord>
TRecord EnumRecord()
{
    return TRecord(L"own", Namespace, Index, &FiveToString, &FiveFromString);
}

CElementInfoSeqClsMnd ClsMndRecord(XmlElementType eElementType, bool bContentRequired)
{
    return CElementInfoSeqClsMnd(L"own", Namespace, Index, eElementType, &CreateChild, ClassId, bContentRequired);
}

CElementInfoSeqClsOpt ClsOptRecord(XmlElementType eElementType)
{
    return CElementInfoSeqClsOpt(L"own", Namespace, Index, eElementType, &CreateChild, ClassId);
}

template <class TRecord>
TRecord AbsClsRecord()
{
    return TRecord(L"own", Namespace, Index, ElementType_Element, &CreateChildFromElement);
}

class ElementInfoSeq : public testing::Test
{
protected:
    void SetUp() override { g_creations = SCreations(); }

    CRecordingObject m_object;
};

// --- Simple values -------------------------------------------------------------------------------

TEST_F(ElementInfoSeq, MandatoryValueThatMayBeMissingLeavesTheCursorOnTheElementItCannotUse)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<next/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element, IgnoringMissingMandatoryElements()));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoSeq, MandatoryValueSkipsForeignElementsUntilItFindsItsOwn)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<a/><b/><own>12</own><c/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '3');
    EXPECT_EQ(m_object.m_value.GetI4(), 12);
}

TEST_F(ElementInfoSeq, MandatoryValueThatSkipsFailsOnlyAtTheEndOfTheChildren)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<a/><b/>");
    ExpectThrows<CQvValidationException>(
        L"Failed to find a required element [own]",
        [&] { Read(record, m_object, children, ElementType_Element, IgnoringUnknownElements()); });
    EXPECT_EQ(children.Position(), '-');
}

TEST_F(ElementInfoSeq, MissingMandatoryValueNamesTheMemberAndNotTheForeignElement)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<foreign/>");
    ExpectThrows<CQvValidationException>(L"Failed to find a required element [own]",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoSeq, MandatoryValueUnderAPseudoParentSkipsForeignElements)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<a/><own>12</own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Pseudo, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '-');
}

TEST_F(ElementInfoSeq, MandatoryEnumerationUnderAPseudoParentSkipsNone)
{
    auto record = EnumRecord<CElementInfoSeqEnumMnd>();
    CChildren children(L"<a/><own>5</own>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Pseudo, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoSeq, OptionalValueInFrontOfAForeignElementIsSatisfied)
{
    auto record = NumberRecord<CElementInfoSeqPrimOpt>();
    CChildren children(L"<foreign/><own>12</own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoSeq, FacetsAreLeftToTheSetterOnReading)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<own>5</own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_value.GetI4(), 5);
    EXPECT_EQ(m_object.m_nLastIndex, Index);
}

TEST_F(ElementInfoSeq, TextIsConvertedByTheRuleOfTheRecord)
{
    CChildren children(L"<own> a  b </own><own> a  b </own>");
    CElementInfoSeqPrimMnd collapsing(L"own", Namespace, Index, ItemType_string, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions());
    EXPECT_TRUE(Read(collapsing, m_object, children, ElementType_Element));
    EXPECT_TEXT(L"a b", m_object.m_value.GetString());

    CElementInfoSeqPrimOpt preserving(L"own", Namespace, Index, ItemType_string, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions());
    EXPECT_TRUE(Read(preserving, m_object, children, ElementType_Element));
    EXPECT_TEXT(L" a  b ", m_object.m_value.GetString());
}

TEST_F(ElementInfoSeq, TextThatIsNoValueFailsAsTheConversionSaysAndStaysUnread)
{
    auto record = NumberRecord<CElementInfoSeqPrimMnd>();
    CChildren children(L"<own>x</own>");
    ExpectThrows<CQvInvalidValueException>(L"The value [x] can not be converted to a i4",
                                           [&] { Read(record, m_object, children, ElementType_Pseudo); });
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(ElementInfoSeq, TextThatIsNoEnumerationValueFailsAsTheEnumerationSays)
{
    auto record = EnumRecord<CElementInfoSeqEnumOpt>();
    CChildren children(L"<own>6</own>");
    ExpectThrows<CQvInvalidValueException>(L"no such value: 6",
                                           [&] { Read(record, m_object, children, ElementType_Element); });
}

TEST_F(ElementInfoSeq, EnumerationArrivesAsItsNumber)
{
    auto record = EnumRecord<CElementInfoSeqEnumMnd>();
    CChildren children(L"<own>5</own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_value.GetTypeAsEnum(), ItemType_i4);
    EXPECT_EQ(m_object.m_value.GetI4(), 5);
}

TEST_F(ElementInfoSeq, ValueThatTheSetterRefusesIsNotConsumed)
{
    m_object.m_bRefuse = true;
    auto record = NumberRecord<CElementInfoSeqPrimOpt>();
    CChildren children(L"<own>12</own>");
    ExpectThrows<CQvInvalidParamException>(L"refused", [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(children.Position(), '0');
}

// --- Children of a known class -------------------------------------------------------------------

TEST_F(ElementInfoSeq, MandatoryChildIsFilledInPlace)
{
    CSmartPtr<CRecordingChild> spChild = new CRecordingChild;
    m_object.m_value.SetXmlObject(spChild);
    auto record = ClsMndRecord(ElementType_Element, true);
    CChildren children(L"<own><first/><second/></own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(spChild->m_nReads, 1);
    EXPECT_TEXT(L"own", spChild->m_strParent);
    EXPECT_TEXT(L"first", spChild->m_strFirst);
    EXPECT_FALSE(spChild->m_bOptionalChoice);
    EXPECT_EQ(m_object.m_nStores, 0);
    EXPECT_EQ(g_creations.nCount, 0);
}

TEST_F(ElementInfoSeq, MandatoryPseudoChildReadsFromTheSameParent)
{
    CSmartPtr<CRecordingChild> spChild = new CRecordingChild;
    m_object.m_value.SetXmlObject(spChild);
    auto record = ClsMndRecord(ElementType_Pseudo, true);
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_TEXT(L"root", spChild->m_strParent);
    EXPECT_TEXT(L"own", spChild->m_strFirst);
    EXPECT_FALSE(spChild->m_bOptionalChoice);
}

TEST_F(ElementInfoSeq, MandatoryPseudoChildWithoutRequiredContentMayStayEmpty)
{
    CSmartPtr<CRecordingChild> spChild = new CRecordingChild;
    m_object.m_value.SetXmlObject(spChild);
    auto record = ClsMndRecord(ElementType_Pseudo, false);
    CChildren children(L"<foreign/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(spChild->m_nReads, 1);
    EXPECT_EQ(spChild->m_nTaken, 0);
}

TEST_F(ElementInfoSeq, MandatoryPseudoChildLeavesAnUnknownElementToTheWalk)
{
    m_object.m_value.SetXmlObject(new CRecordingChild);
    auto record = ClsMndRecord(ElementType_Pseudo, false);
    CChildren children(L"<foreign/><own/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Element, IgnoringUnknownElements()));
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Pseudo, IgnoringUnknownElements()));
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoSeq, MandatoryPseudoChildWithRequiredContentIsNotAskedAtTheEnd)
{
    CSmartPtr<CRecordingChild> spChild = new CRecordingChild;
    m_object.m_value.SetXmlObject(spChild);
    auto record = ClsMndRecord(ElementType_Pseudo, true);
    CChildren children(L"");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Pseudo));
    ExpectThrows<CQvValidationException>(L"Failed to find a required element [own]",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(spChild->m_nReads, 0);
}

TEST_F(ElementInfoSeq, MandatoryChildThatIsNotThereIsReported)
{
    m_object.m_value.SetXmlObject(nullptr);
    for (const XmlElementType eElementType : {ElementType_Element, ElementType_Pseudo})
    {
        auto record = ClsMndRecord(eElementType, false);
        CChildren children(L"<own/>");
        ExpectThrows<CQvException>(L"The property of the element [own] holds no object",
                                   [&] { Read(record, m_object, children, ElementType_Element); });
    }
}

TEST_F(ElementInfoSeq, OptionalChildIsMadeForTheClassAndTheNameOfTheRecord)
{
    auto record = ClsOptRecord(ElementType_Element);
    CChildren children(L"<own><first/></own>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(g_creations.nCount, 1);
    EXPECT_EQ(g_creations.nClassId, ClassId);
    EXPECT_TEXT(L"own", g_creations.strName);
    const auto& child = dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject());
    EXPECT_TEXT(L"own", child.m_strParent);
    EXPECT_TEXT(L"first", child.m_strFirst);
    EXPECT_FALSE(child.m_bOptionalChoice);
}

TEST_F(ElementInfoSeq, OptionalChildIsStoredAfterItHasBeenRead)
{
    auto own = ClsOptRecord(ElementType_Element);
    CChildren children(L"<own/><own/>");
    EXPECT_TRUE(Read(own, m_object, children, ElementType_Element));
    auto pseudo = ClsOptRecord(ElementType_Pseudo);
    EXPECT_TRUE(Read(pseudo, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " read child read child");
}

TEST_F(ElementInfoSeq, OptionalChildIsNotMadeWithoutItsElement)
{
    auto own = ClsOptRecord(ElementType_Element);
    CChildren foreign(L"<foreign/>");
    EXPECT_TRUE(Read(own, m_object, foreign, ElementType_Element));
    auto pseudo = ClsOptRecord(ElementType_Pseudo);
    CChildren none(L"");
    EXPECT_TRUE(Read(pseudo, m_object, none, ElementType_Element));
    EXPECT_EQ(g_creations.nCount, 0);
}

TEST_F(ElementInfoSeq, OptionalPseudoChildThatConsumesNothingIsNotStored)
{
    auto record = ClsOptRecord(ElementType_Pseudo);
    CChildren children(L"<foreign/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(g_creations.nCount, 1);
    EXPECT_EQ(m_object.m_nStores, 0);
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoSeq, CreatorThatMakesNothingIsReported)
{
    g_creations.eCreator = Creator::GivesNull;
    for (const XmlElementType eElementType : {ElementType_Element, ElementType_Pseudo})
    {
        auto record = ClsOptRecord(eElementType);
        CChildren children(L"<own/>");
        ExpectThrows<CQvException>(L"No object was created for the element [own]",
                                   [&] { Read(record, m_object, children, ElementType_Element); });
    }
}

// --- Children of abstract classes ----------------------------------------------------------------

TEST_F(ElementInfoSeq, AbstractMandatoryChildWithoutAFittingClassFailsThoughItsNameMatches)
{
    g_creations.eCreator = Creator::GivesNull;
    auto record = AbsClsRecord<CElementInfoSeqAbsClsMnd>();
    CChildren children(L"<own/>");
    ExpectThrows<CQvValidationException>(L"Failed to find a suitable substitution element for [own]",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(g_creations.nCount, 1);
}

TEST_F(ElementInfoSeq, AbstractMandatoryChildSkipsNothingAndIsNeverExcused)
{
    auto record = AbsClsRecord<CElementInfoSeqAbsClsMnd>();
    CChildren children(L"<foreign/><own/>");
    for (const CXmlSerializationContext& context : {IgnoringUnknownElements(), IgnoringMissingMandatoryElements()})
        ExpectThrows<CQvValidationException>(L"Failed to find a suitable substitution element for [own]",
                                             [&] { Read(record, m_object, children, ElementType_Element, context); });
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(g_creations.nCount, 0);
}

TEST_F(ElementInfoSeq, AbstractChildrenAreStoredAfterTheyHaveBeenRead)
{
    auto mandatory = AbsClsRecord<CElementInfoSeqAbsClsMnd>();
    auto optional = AbsClsRecord<CElementInfoSeqAbsClsOpt>();
    CChildren children(L"<own><first/></own><own/>");
    EXPECT_TRUE(Read(mandatory, m_object, children, ElementType_Element));
    EXPECT_TEXT(L"first", dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject()).m_strFirst);
    EXPECT_TRUE(Read(optional, m_object, children, ElementType_Element));
    EXPECT_EQ(m_object.m_strStores, " read child read child");
}

TEST_F(ElementInfoSeq, AbstractChildThatIsPseudoIsReadFromItsOwnElementAllTheSame)
{
    CElementInfoSeqAbsClsMnd record(L"own", Namespace, Index, ElementType_Pseudo, &CreateChildFromElement);
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_TEXT(L"own", dynamic_cast<CRecordingChild&>(*m_object.m_value.GetXmlObject()).m_strParent);
}

TEST_F(ElementInfoSeq, AbstractOptionalChildWithoutAFittingClassStaysUnread)
{
    g_creations.eCreator = Creator::GivesNull;
    auto record = AbsClsRecord<CElementInfoSeqAbsClsOpt>();
    CChildren children(L"<own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(children.Position(), '0');
    EXPECT_EQ(m_object.m_nStores, 0);
}

// --- Wildcards -----------------------------------------------------------------------------------

TEST_F(ElementInfoSeq, MandatoryWildcardFailsAtTheEndUnderAPseudoParentToo)
{
    CElementInfoSeqUntpdMnd record(L"AnyElement", Namespace, Index, L"##any", Namespace);
    m_object.m_value.SetXmlObject(new CElement(L"any"));
    CChildren children(L"");
    ExpectThrows<CQvValidationException>(L"Failed to find a required element [AnyElement]",
                                         [&] { Read(record, m_object, children, ElementType_Pseudo); });
}

TEST_F(ElementInfoSeq, MandatoryWildcardThatFindsNothingNamesItsNamespace)
{
    CElementInfoSeqUntpdMnd record(L"AnyElement", L"urn:record", Index, L"urn:w", L"urn:t");
    m_object.m_value.SetXmlObject(new CElement(L"any", L"", L"urn:w", L"urn:t"));
    CChildren children(L"<foreign/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Pseudo));
    ExpectThrows<CQvValidationException>(L"Failed to find the required element from namespace [urn:record]",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    EXPECT_EQ(children.Position(), '0');
}

TEST_F(ElementInfoSeq, MandatoryWildcardWithoutItsElementIsReported)
{
    CElementInfoSeqUntpdMnd record(L"AnyElement", Namespace, Index, L"##any", Namespace);
    m_object.m_value.SetXmlObject(nullptr);
    CChildren children(L"<any/>");
    ExpectThrows<CQvException>(L"The property of the element [AnyElement] holds no object",
                               [&] { Read(record, m_object, children, ElementType_Element); });
}

TEST_F(ElementInfoSeq, OptionalWildcardStoresTheElementItRead)
{
    CElementInfoSeqUntpdOpt record(L"AnyElement", L"", Index, L"##other", L"urn:t");
    CChildren children(L"<x xmlns='urn:x' a='1'>text<y/></x>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element, CXmlSerializationContext(), L"urn:t"));
    EXPECT_EQ(children.Position(), '-');
    const auto& element = dynamic_cast<CElement&>(*m_object.m_value.GetXmlObject());
    EXPECT_TEXT(L"x", element.GetName());
    EXPECT_TEXT(L"urn:x", element.GetNamespace());
    EXPECT_TEXT(L"text", element.GetText());
    EXPECT_EQ(element.GetAttributes()->GetCount(), 1);
    EXPECT_EQ(element.GetChildElements()->GetCount(), 1);
}

TEST_F(ElementInfoSeq, OptionalWildcardFailsOnARestrictionThatItsDefaultNamespaceBreaksWhateverIsFound)
{
    // Under "##other" a new element has no namespace unless its parent has none; here that is the target namespace.
    CElementInfoSeqUntpdOpt record(L"named", L"", Index, L"##other", L"");
    CChildren children(L"<foreign/>");
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace []. The namespace must be one of [##other] where the target namespace is []",
        [&] { Read(record, m_object, children, ElementType_Element, CXmlSerializationContext(), L"urn:p"); });

    CChildren none(L"");
    EXPECT_TRUE(Read(record, m_object, none, ElementType_Element, CXmlSerializationContext(), L"urn:p"));
}

// --- Collections ---------------------------------------------------------------------------------

TEST_F(ElementInfoSeq, CollectionWithTooFewItemsFailsOrGivesUp)
{
    CElementInfoSeqClsCol record(L"own", Namespace, Index, ElementType_Element);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 2, -1));
    CChildren children(L"<own/>");
    EXPECT_FALSE(Read(record, m_object, children, ElementType_Pseudo));

    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 2, -1));
    CChildren again(L"<own/>");
    ExpectThrows<CQvValidationException>(L"The Minimum number of [own] elements allowed in this collection is 2",
                                         [&] { Read(record, m_object, again, ElementType_Element); });
}

TEST_F(ElementInfoSeq, CollectionWithTooManyItemsFailsInBothDirections)
{
    CElementInfoSeqClsCol record(L"own", Namespace, Index, ElementType_Element);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 0, 1));
    CChildren children(L"<own/><own/>");
    ExpectThrows<CQvValidationException>(L"The Maximum number of [own] elements allowed in this collection is 1",
                                         [&] { Read(record, m_object, children, ElementType_Element); });
    CRecordingWriter writer;
    ExpectThrows<CQvValidationException>(L"The Maximum number of [own] elements allowed in this collection is 1",
                                         [&] { record.ElementToXml(CXmlSerializationContext(), &m_object, &writer); });
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST_F(ElementInfoSeq, NamedWildcardCollectionTakesTheRunOfTheFirstElementsNamespace)
{
    CElementInfoSeqUntpdCol record(L"own", L"", Index);
    CSmartPtr<CElementCol> spElements = new CElementCol(L"", L"##any", L"", 0, -1);
    m_object.m_value.SetXmlCollection(spElements);
    CChildren children(L"<own xmlns='urn:x'/><own xmlns='urn:x'/><own/>");
    EXPECT_TRUE(Read(record, m_object, children, ElementType_Element));
    EXPECT_EQ(children.Position(), '2');
    ASSERT_EQ(spElements->GetCount(), 2);
    EXPECT_TEXT(L"urn:x", spElements->Item(1)->GetNamespace());
}

TEST_F(ElementInfoSeq, NamedWildcardCollectionNeedsACollectionOfOpenElements)
{
    CElementInfoSeqUntpdCol record(L"own", L"", Index);
    m_object.m_value.SetXmlCollection(new CRecordingCol(L"own", 0, -1));
    CChildren children(L"<own/>");
    ExpectThrows<CQvException>(L"Serialization Data Error : The collection should be a CElementCol, it was not!",
                               [&] { Read(record, m_object, children, ElementType_Element); });
}

} // namespace
} // namespace QvTest
