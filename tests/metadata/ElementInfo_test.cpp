#include "quiver/metadata/ElementInfo.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

#include <iterator>

namespace QvTest
{
namespace
{

/// Reaches the protected operations that all records share.
class CProbe : public CElementInfoSeqNonCol
{
public:
    CProbe()
        : CElementInfoSeqNonCol(L"own", Namespace, Index)
    {
    }
    bool ElementToXml(const CXmlSerializationContext&, const CXmlGeneratedClass*, CXmlWriter*) const override
    {
        return false;
    }
    bool ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass*, CXmlElement*, CXmlElement**,
                        const wchar_t*, XmlElementType) override
    {
        return false;
    }

    using CElementInfo::AccessProperty;
    using CElementInfo::ElementToXmlCol;
    using CElementInfo::FromXml_Int;
    using CElementInfo::GetAnyDefaultNamespace;
    using CElementInfo::GetElementName;
    using CElementInfo::GetElementNamespace;
    using CElementInfo::GetPropertyIndex;
    using CElementInfo::IsThisElement;
    using CElementInfo::ReadProperty;
};

CElementInfoSeqPrimMnd PrimRecord(ItemType eItemType, const wchar_t* lpctFormat = nullptr,
                                  const CPrimitiveRestrictions& restrictions = CPrimitiveRestrictions())
{
    return CElementInfoSeqPrimMnd(L"own", Namespace, Index, eItemType, lpctFormat,
                                  CWhitespaceUtils::WhitespaceRule_Collapse, restrictions);
}

/// What a record writes for a value.
template <class TRecord>
std::wstring Written(const TRecord& record, const CRecordingObject& object)
{
    CRecordingWriter writer;
    record.ElementToXml(CXmlSerializationContext(), &object, &writer);
    return writer.m_strCalls;
}

TEST(ParentElementInfo, GivesBackWhatItWasMadeWith)
{
    const CParentElementInfo info(GroupType_All, ElementType_Pseudo, L"name", L"urn:n", 3, true, false);
    EXPECT_EQ(info.GetElementGroupType(), GroupType_All);
    EXPECT_EQ(info.GetElementType(), ElementType_Pseudo);
    EXPECT_TEXT(L"name", info.GetElementName());
    EXPECT_TEXT(L"urn:n", info.GetElementNamespace());
    EXPECT_EQ(info.GetElementTextPropertyIndex(), 3);
    EXPECT_TRUE(info.GetFromXmlFailIfAttributeUnknown());
    EXPECT_FALSE(info.GetHasBaseClasses());
}

TEST(ParentElementInfo, TellsItsTwoFlagsApart)
{
    const CParentElementInfo info(GroupType_Sequence, ElementType_Element, L"name", L"", -1, false, true);
    EXPECT_EQ(info.GetElementTextPropertyIndex(), -1);
    EXPECT_FALSE(info.GetFromXmlFailIfAttributeUnknown());
    EXPECT_TRUE(info.GetHasBaseClasses());
}

TEST(ParentElementInfo, CopiesItsTexts)
{
    std::wstring strName = L"name";
    CParentElementInfo info(GroupType_Sequence, ElementType_Element, strName.c_str(), L"urn:n", -1, false, false);
    strName[0] = L'g';
    const CParentElementInfo copy(info);
    info = CParentElementInfo(GroupType_Choice, ElementType_Pseudo, L"other", L"", 0, true, true);
    EXPECT_TEXT(L"name", copy.GetElementName());
    EXPECT_TEXT(L"other", info.GetElementName());
    EXPECT_EQ(info.GetElementGroupType(), GroupType_Choice);
}

TEST(ElementInfo, MatchesLocalNameAndNamespace)
{
    const CXmlSerializationContext context;
    const CProbe record;
    CChildren children(L"<own/><own xmlns='urn:other'/><Own/><own xmlns=''/>");
    CXmlElement* pChild = *children.Cursor();
    std::string strMatches;
    for (; pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        strMatches += record.IsThisElement(context, pChild) ? 'y' : 'n';
    EXPECT_EQ(strMatches, "ynnn");
}

TEST(ElementInfo, MatchesAnyNamespaceWhenNamespacesAreIgnored)
{
    CXmlSerializationContext context;
    context.SetIgnoreNamespaces(true);
    const CProbe record;
    CChildren children(L"<own xmlns='urn:other'/><next/>");
    EXPECT_TRUE(record.IsThisElement(context, *children.Cursor()));
    EXPECT_FALSE(record.IsThisElement(context, (*children.Cursor())->GetNextSiblingElement()));
}

TEST(ElementInfo, MatchesAnyNamespaceForSchemasWithoutNamespaces)
{
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    const CProbe record;
    CChildren children(L"<own xmlns='urn:other'/>");
    EXPECT_TRUE(record.IsThisElement(context, *children.Cursor()));
}

TEST(ElementInfo, NeverMatchesNull)
{
    CXmlSerializationContext context;
    EXPECT_FALSE(CProbe().IsThisElement(context, nullptr));
    context.SetIgnoreNamespaces(true);
    EXPECT_FALSE(CProbe().IsThisElement(context, nullptr));
}

TEST(ElementInfo, GivesNameNamespaceAndIndex)
{
    const CProbe record;
    EXPECT_TEXT(L"own", record.GetElementName());
    EXPECT_TEXT(L"urn:t", record.GetElementNamespace());
    EXPECT_EQ(record.GetPropertyIndex(), 7);
}

TEST(ElementInfo, ReachesThePropertyOfItsIndex)
{
    CProbe record;
    CRecordingObject object;
    QvVariant value;
    value.SetI4(5);
    record.AccessProperty(&object, false, value);
    EXPECT_EQ(object.m_nLastIndex, 7);

    object.m_nLastIndex = -1;
    QvVariant read;
    record.ReadProperty(&object, read);
    EXPECT_EQ(object.m_nLastIndex, 7);
    EXPECT_EQ(read.GetI4(), 5);
}

TEST(ElementInfo, HandsTheChoiceOptionToTheChild)
{
    CChildren children(L"<own/>");
    CRecordingChild child;
    EXPECT_EQ(CProbe::FromXml_Int(&child, children.Parent(), *children.Cursor(), CXmlSerializationContext(), true),
              nullptr);
    EXPECT_TRUE(child.m_bOptionalChoice);
    EXPECT_TEXT(L"root", child.m_strParent);
    EXPECT_TEXT(L"own", child.m_strFirst);
}

TEST(ElementInfo, IsCopiedMemberByMember)
{
    const CElementInfoSeqPrimMnd record = PrimRecord(ItemType_r8, L"%.2f");
    CElementInfoSeqPrimMnd copy(L"other", L"", 0, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_None,
                                CPrimitiveRestrictions());
    copy = record;
    CRecordingObject object;
    object.m_value.SetR8(1.5);
    EXPECT_TEXT(L"<{urn:t}own\n1.50:12\n>\n", Written(copy, object));
    EXPECT_TEXT(L"<{urn:t}own\n1.50:12\n>\n", Written(CElementInfoSeqPrimMnd(record), object));
}

TEST(ElementInfo, WritesNothingForAnUnsetMandatoryValue)
{
    CRecordingObject object;
    CRecordingWriter writer;
    EXPECT_FALSE(PrimRecord(ItemType_i4).ElementToXml(CXmlSerializationContext(), &object, &writer));
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST(ElementInfo, WritesStringsAndNumbersWithTheirKind)
{
    CRecordingObject object;
    object.m_value.SetString(L"a<b");
    EXPECT_TEXT(L"<{urn:t}own\na<b:23\n>\n", Written(PrimRecord(ItemType_string), object));
    object.m_value.SetBoolean(true);
    EXPECT_TEXT(L"<{urn:t}own\ntrue:24\n>\n", Written(PrimRecord(ItemType_boolean), object));
    object.m_value.SetYear(2024);
    EXPECT_TEXT(L"<{urn:t}own\n2024:16\n>\n", Written(PrimRecord(ItemType_year), object));
    object.m_value.SetString(L"");
    EXPECT_TEXT(L"<{urn:t}own\n:23\n>\n", Written(PrimRecord(ItemType_string), object));
}

TEST(ElementInfo, WritesNumbersInTheFormatOfTheRecord)
{
    CRecordingObject object;
    object.m_value.SetR8(0.125);
    EXPECT_TEXT(L"<{urn:t}own\n0.125:12\n>\n", Written(PrimRecord(ItemType_r8), object));
    EXPECT_TEXT(L"<{urn:t}own\n0.1250:12\n>\n", Written(PrimRecord(ItemType_r8, L"%.4f"), object));
}

TEST(ElementInfo, WritesTheKindOfTheValueAndNotItsOwn)
{
    CRecordingObject object;
    object.m_value.SetI4(5);
#if defined(QUIVER_DIAGNOSTICS)
    EXPECT_DEATH(Written(PrimRecord(ItemType_string), object), "m_type == ItemType_string");
#else
    EXPECT_TEXT(L"<{urn:t}own\n5:5\n>\n", Written(PrimRecord(ItemType_string), object));
#endif
}

TEST(ElementInfo, WritesNothingWhenAFacetFails)
{
    const CPrimitiveRestrictions restrictions(L"", -1, -1, L"10", L"", L"", L"", -1);
    CRecordingObject object;
    object.m_value.SetI4(5);
    CRecordingWriter writer;
    ExpectThrows<CQvException>(
        L"Invalid Value for own [5]", [&]
        { PrimRecord(ItemType_i4, nullptr, restrictions).ElementToXml(CXmlSerializationContext(), &object, &writer); });
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST(ElementInfo, WritesNothingForAKindWithoutFacets)
{
    CRecordingObject object;
    object.m_value.SetChar(L'x');
    CRecordingWriter writer;
    ExpectThrows<CQvInvalidValueException>(
        L"unknown type [char]",
        [&] { PrimRecord(ItemType_char).ElementToXml(CXmlSerializationContext(), &object, &writer); });
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST(ElementInfo, KeepsANewNameOfAChildOnOutput)
{
    CRecordingObject object;
    object.m_value.SetXmlObject(new CRecordingChild(L"substitute"));
    const CElementInfoSeqClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId);
    EXPECT_TEXT(L"<{urn:t}substitute\nchild:23\n>\n", Written(record, object));
}

TEST(ElementInfo, RefusesACollectionThatIsNotThere)
{
    CRecordingObject object;
    object.m_value.SetXmlCollection(nullptr);
    CRecordingWriter writer;
    const auto Write = [&]
    {
        CProbe().ElementToXmlCol(CXmlSerializationContext(), &object, &writer);
    };
#if defined(QUIVER_DIAGNOSTICS)
    EXPECT_DEATH(Write(), "!= NULL");
#else
    ExpectThrows<CQvException>(L"The property of the element [own] holds no collection", Write);
#endif
}

TEST(ElementInfo, WritesNothingForACollectionWithoutItems)
{
    CRecordingObject object;
    object.m_value.SetXmlCollection(new CRecordingCol(L"own", 0, -1));
    CRecordingWriter writer;
    EXPECT_FALSE(CProbe().ElementToXmlCol(CXmlSerializationContext(), &object, &writer));
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST(ElementInfo, ChecksValuesAgainstItsFacets)
{
    const CElementInfoSeqPrimMnd record =
        PrimRecord(ItemType_string, nullptr, CPrimitiveRestrictions(L"", -1, 3, L"", L"", L"", L"", -1));
    QvVariant value;
    value.SetString(L"abc");
    EXPECT_NO_THROW(record.CheckRestriction(value));
    value.SetString(L"abcd");
    ExpectThrows<CQvException>(L"Invalid Value for own [abcd]", [&] { record.CheckRestriction(value); });
}

TEST(ElementInfo, ChecksNoValueOfAMemberThatIsNotPrimitive)
{
    const CElementInfoSeqClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId);
    QvVariant value;
    value.SetI4(5);
    ExpectThrows<CQvException>(L"Cannot CheckRestriction for type: i4", [&] { record.CheckRestriction(value); });
    value.SetString(L"");
    ExpectThrows<CQvException>(L"Cannot CheckRestriction for type: string", [&] { record.CheckRestriction(value); });
}

TEST(ElementInfo, ChecksNoObjectEither)
{
    const CElementInfoSeqClsOpt record(L"own", Namespace, Index, ElementType_Element, &CreateChild, ClassId);
    QvVariant value;
    value.SetXmlObject(nullptr);
    ExpectThrows<CQvException>(L"Invalid Type 27", [&] { record.CheckRestriction(value); });
    value.SetInvalid();
    ExpectThrows<CQvException>(L"Invalid Type 0", [&] { record.CheckRestriction(value); });
}

TEST(ElementInfo, PicksTheNamespaceOfANewOpenElement)
{
    const struct
    {
        const wchar_t* lpctRestriction;
        const wchar_t* lpctParent;
        const wchar_t* lpctTarget;
        const wchar_t* lpctExpected;
    } rows[] = {
        {L"##any", L"urn:p", L"urn:t", L"urn:p"},
        {L"##any", L"", L"urn:t", L""},
        {L"##other", L"urn:p", L"urn:t", L""},
        {L"##other", L"", L"urn:t", L"DefaultNamespace"},
        {L"##local", L"urn:p", L"urn:t", L""},
        {L"##targetNamespace", L"urn:p", L"urn:t", L"urn:t"},
        {L"##other ##local", L"", L"urn:t", L"DefaultNamespace"},
        {L"##other ##local", L"urn:p", L"urn:t", L""},
        {L"##targetNamespace ##local", L"urn:p", L"urn:t", L"urn:t"},
        {L"##local ##targetNamespace", L"urn:p", L"urn:t", L""},
        {L"##any urn:a", L"urn:p", L"urn:t", L"urn:p"},
        {L"urn:a", L"urn:p", L"urn:t", L""},
        {L"urn:a urn:b", L"urn:p", L"urn:t", L""},
        {L"urn:a ##any", L"urn:p", L"urn:t", L""},
        {L"##", L"urn:p", L"urn:t", L""},
        {L"## ", L"urn:p", L"urn:t", L""},
        {L"##ANY", L"urn:p", L"urn:t", L""},
        {L" ##any", L"urn:p", L"urn:t", L""},
        {L"", L"urn:p", L"urn:t", L""},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(Show(row.lpctRestriction));
        EXPECT_TEXT(row.lpctExpected,
                    CProbe::GetAnyDefaultNamespace(row.lpctRestriction, row.lpctParent, row.lpctTarget));
    }
}

} // namespace
} // namespace QvTest
