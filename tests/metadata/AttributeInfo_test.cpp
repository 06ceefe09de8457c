#include "quiver/metadata/AttributeInfo.h"

#include "quiver/collections/Attribute.h"
#include "quiver/collections/Element.h"
#include "tests/support/FlexClass.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

namespace QvTest
{
namespace
{

/// What AttributeFromXml gives for the attributes of `<root xmlns="urn:t" ATTRIBUTES/>`, one letter each.
std::string Claims(CAttributeInfo& record, CRecordingObject& object, const std::wstring& strAttributes,
                   const CXmlSerializationContext& context = CXmlSerializationContext())
{
    CXmlDocument document;
    document.LoadXml((L"<root xmlns='urn:t' xmlns:o='urn:o' " + strAttributes + L"/>").c_str());
    std::string strClaims;
    for (CXmlAttribute* pAttribute : document.GetDocumentElement()->GetAttributes())
        strClaims += record.AttributeFromXml(context, &object, pAttribute) ? 'y' : 'n';
    return strClaims;
}

std::wstring Written(const CAttributeInfo& record, const CRecordingObject& object,
                     const CXmlSerializationContext& context = CXmlSerializationContext())
{
    CRecordingWriter writer;
    record.AttributeToXml(context, &object, &writer);
    return writer.m_strCalls;
}

CXmlSerializationContext WithoutDefaults()
{
    CXmlSerializationContext context;
    context.SetNoOptionalAttributeDefaultOutput(true);
    return context;
}

CXmlSerializationContext IgnoringNamespaces()
{
    CXmlSerializationContext context;
    context.SetIgnoreNamespaces(true);
    return context;
}

constexpr bool Optional = true;
constexpr bool Required = false;

CAttributeInfoPrimitive Prim(bool bOptional, ItemType eItemType = ItemType_i4, const wchar_t* lpctDefault = L"",
                             const wchar_t* lpctFormat = nullptr,
                             const CPrimitiveRestrictions& restrictions = CPrimitiveRestrictions())
{
    return CAttributeInfoPrimitive(L"at", L"", Index, bOptional, eItemType, lpctFormat,
                                   CWhitespaceUtils::WhitespaceRule_Collapse, restrictions, lpctDefault);
}

CAttributeInfoEnum Enum(bool bOptional, const wchar_t* lpctDefault = L"")
{
    return CAttributeInfoEnum(L"at", L"", Index, bOptional, &FiveToString, &FiveFromString, lpctDefault);
}

CAttributeInfoAny Any(const wchar_t* lpctRestriction, const wchar_t* lpctTargetNamespace)
{
    return CAttributeInfoAny(L"any", L"", Index, Optional, lpctRestriction, lpctTargetNamespace, L"");
}

/// From 10 on.
const CPrimitiveRestrictions FromTen(L"", -1, -1, L"10", L"", L"", L"", -1);

class AttributeInfo : public testing::Test
{
protected:
    CRecordingObject m_object;
};

/// Reaches the protected operations of the base.
class CProbe : public CAttributeInfoEnum
{
public:
    CProbe()
        : CAttributeInfoEnum(L"at", L"urn:o", Index, Optional, &FiveToString, &FiveFromString, L"")
    {
    }
    using CAttributeInfo::GetTargetNamespace;
    using CAttributeInfo::IsThisAttribute;
    using CAttributeInfo::TestNamespace;
    using CAttributeInfo::ToXml_Int;
};

// --- The base ------------------------------------------------------------------------------------

TEST_F(AttributeInfo, MatchesLocalNameAndNamespace)
{
    CXmlDocument document;
    document.LoadXml(L"<root xmlns:o='urn:o' xmlns:p='urn:p' o:at='' p:at='' at='' o:other=''/>");
    std::string strMatches;
    std::string strMatchesIgnoringNamespaces;
    for (CXmlAttribute* pAttribute : document.GetDocumentElement()->GetAttributes())
    {
        strMatches += CProbe().IsThisAttribute(CXmlSerializationContext(), pAttribute) ? 'y' : 'n';
        strMatchesIgnoringNamespaces += CProbe().IsThisAttribute(IgnoringNamespaces(), pAttribute) ? 'y' : 'n';
    }
    EXPECT_EQ(strMatches, "ynnn");
    EXPECT_EQ(strMatchesIgnoringNamespaces, "yyyn");
    EXPECT_FALSE(CProbe().IsThisAttribute(IgnoringNamespaces(), nullptr));
}

TEST_F(AttributeInfo, TestsNamespacesAsWildcardsDo)
{
    EXPECT_NO_THROW(CProbe::TestNamespace(L"urn:o", L"##other", L"urn:t"));
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [urn:t]. The namespace must be one of [##other] where the target namespace is [urn:t]",
        [] { CProbe::TestNamespace(L"urn:t", L"##other", L"urn:t"); });
}

TEST_F(AttributeInfo, ReachesTheProtectedOperationsOfObjects)
{
    CRecordingWriter writer;
    CRecordingChild child;
    CProbe::ToXml_Int(&child, &writer, true, L"urn:n", CXmlSerializationContext());
    EXPECT_TEXT(L"<{urn:n}own\nroot:23\n>\n", writer.m_strCalls);
    EXPECT_TEXT(L"urn:target", CProbe::GetTargetNamespace(&m_object));
}

TEST_F(AttributeInfo, RequiredAttributeMustBeFound)
{
    const CXmlSerializationContext context = IgnoringMissingMandatoryElements();
    EXPECT_NO_THROW(Prim(Required).Validate(context, true));
    EXPECT_NO_THROW(Enum(Required).Validate(context, true));
    ExpectThrows<CQvValidationException>(L"Failed to find the required Attribute [at]",
                                         [&] { Prim(Required).Validate(context, false); });
    ExpectThrows<CQvValidationException>(L"Failed to find the required Attribute [at]",
                                         [&] { Enum(Required).Validate(context, false); });
}

TEST_F(AttributeInfo, OptionalAttributeMayBeMissing)
{
    for (const bool bFound : {true, false})
    {
        EXPECT_NO_THROW(Prim(Optional).Validate(CXmlSerializationContext(), bFound));
        EXPECT_NO_THROW(Enum(Optional).Validate(CXmlSerializationContext(), bFound));
    }
}

TEST_F(AttributeInfo, WildcardMissesNothing)
{
    const CAttributeInfoAny record(L"any", L"", Index, Required, L"##any", L"", L"");
    EXPECT_NO_THROW(record.Validate(CXmlSerializationContext(), false));
}

TEST_F(AttributeInfo, MissingRequiredAttributeFailsAfterThePresentOnesHaveBeenStored)
{
    CShape shape;
    shape.Add(new CAttributeInfoEnum(L"at", L"", 1, Required, &FiveToString, &FiveFromString, L""));
    shape.Add(new CAttributeInfoPrimitive(L"number", L"", 2, Optional, ItemType_i4, nullptr,
                                          CWhitespaceUtils::WhitespaceRule_Collapse, CPrimitiveRestrictions(), L""));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nFailed to find the required Attribute [at]",
        [&] { object.FromXml(L"<flex number='3'/>", CXmlSerializationContext()); });
    EXPECT_TEXT(L"3", object.Text(2));
}

// --- Simple types, writing -----------------------------------------------------------------------

TEST_F(AttributeInfo, WritesAValueWithItsKind)
{
    m_object.m_value.SetI4(12);
    EXPECT_TEXT(L" {}at=12:5\n", Written(Prim(Optional), m_object));
    EXPECT_TEXT(L" {}at=12:5\n", Written(Prim(Required), m_object));
    m_object.m_value.SetString(L"a&b");
    EXPECT_TEXT(L" {}at=a&b:23\n", Written(Prim(Optional, ItemType_string), m_object));
    const CAttributeInfoPrimitive inNamespace(L"at", L"urn:o", Index, Optional, ItemType_string, nullptr,
                                              CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions(), L"");
    EXPECT_TEXT(L" {urn:o}at=a&b:23\n", Written(inNamespace, m_object));
    EXPECT_EQ(m_object.m_nLastIndex, Index);
}

TEST_F(AttributeInfo, WritesNumbersInTheFormatOfTheRecord)
{
    m_object.m_value.SetR8(0.5);
    EXPECT_TEXT(L" {}at=0.500:12\n", Written(Prim(Optional, ItemType_r8, L"", L"%.3f"), m_object));
}

TEST_F(AttributeInfo, WritesNothingForAnUnsetOptionalValue)
{
    EXPECT_TEXT(L"", Written(Prim(Optional), m_object));
    EXPECT_TEXT(L"", Written(Enum(Optional), m_object));
}

TEST_F(AttributeInfo, UnsetRequiredValueFailsInItsText)
{
    ExpectThrows<CQvException>(L"Invalid Type 0 to convert to string", [&] { Written(Prim(Required), m_object); });
}

TEST_F(AttributeInfo, OptionalValueThatIsItsDefaultIsLeftOutOnlyOnRequest)
{
    m_object.m_value.SetI4(12);
    EXPECT_TEXT(L" {}at=12:5\n", Written(Prim(Optional, ItemType_i4, L"12"), m_object));
    EXPECT_TEXT(L"", Written(Prim(Optional, ItemType_i4, L"12"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L" {}at=12:5\n", Written(Prim(Optional, ItemType_i4, L"13"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L" {}at=12:5\n", Written(Prim(Required, ItemType_i4, L"12"), m_object, WithoutDefaults()));
}

TEST_F(AttributeInfo, DefaultsAreComparedAsText)
{
    m_object.m_value.SetR8(1.0);
    EXPECT_TEXT(L" {}at=1:12\n", Written(Prim(Optional, ItemType_r8, L"1.0"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L"", Written(Prim(Optional, ItemType_r8, L"1"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L"", Written(Prim(Optional, ItemType_r8, L"1.0", L"%.1f"), m_object, WithoutDefaults()));
}

TEST_F(AttributeInfo, EmptyTextIsWrittenWhereTheDefaultIsEmpty)
{
    m_object.m_value.SetString(L"");
    EXPECT_TEXT(L" {}at=:23\n", Written(Prim(Optional, ItemType_string, L""), m_object, WithoutDefaults()));
}

TEST_F(AttributeInfo, FacetsAreTestedBeforeAnythingIsWritten)
{
    m_object.m_value.SetI4(5);
    CRecordingWriter writer;
    ExpectThrows<CQvException>(L"Invalid Value for at [5]",
                               [&] {
                                   Prim(Required, ItemType_i4, L"", nullptr, FromTen)
                                       .AttributeToXml(CXmlSerializationContext(), &m_object, &writer);
                               });
    EXPECT_TEXT(L"", writer.m_strCalls);
}

TEST_F(AttributeInfo, SuppressedDefaultIsNotTestedAgainstTheFacets)
{
    m_object.m_value.SetI4(5);
    EXPECT_TEXT(L"", Written(Prim(Optional, ItemType_i4, L"5", nullptr, FromTen), m_object, WithoutDefaults()));
}

TEST_F(AttributeInfo, ChecksValuesAgainstItsFacets)
{
    const CAttributeInfoPrimitive record = Prim(Optional, ItemType_i4, L"", nullptr, FromTen);
    QvVariant value;
    value.SetI4(10);
    EXPECT_NO_THROW(record.CheckRestriction(value));
    value.SetI4(9);
    ExpectThrows<CQvException>(L"Invalid Value for at [9]", [&] { record.CheckRestriction(value); });
}

// --- Simple types, reading -----------------------------------------------------------------------

TEST_F(AttributeInfo, StoresAValueByTheRuleOfTheRecord)
{
    CAttributeInfoPrimitive record = Prim(Required, ItemType_string);
    EXPECT_EQ(Claims(record, m_object, L"at='  a   b '"), "y");
    EXPECT_TEXT(L"a b", m_object.m_value.GetString());
    EXPECT_EQ(m_object.m_nLastIndex, Index);
}

TEST_F(AttributeInfo, ClaimsItsOwnAttributeAlone)
{
    CAttributeInfoPrimitive record = Prim(Required);
    EXPECT_EQ(Claims(record, m_object, L"other='1' at='2' o:at='3'"), "nyn");
    EXPECT_EQ(m_object.m_value.GetI4(), 2);
    EXPECT_EQ(m_object.m_nStores, 1);
}

TEST_F(AttributeInfo, PrimitiveAttributeLooksAtNamespacesThoughTheyAreIgnored)
{
    CAttributeInfoPrimitive record = Prim(Required);
    EXPECT_EQ(Claims(record, m_object, L"o:at='3'", IgnoringNamespaces()), "n");
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(AttributeInfo, EnumerationAttributeIgnoresNamespacesWhenTheyAreIgnored)
{
    CAttributeInfoEnum record = Enum(Required);
    EXPECT_EQ(Claims(record, m_object, L"o:at='5'"), "n");
    EXPECT_EQ(Claims(record, m_object, L"o:at='5'", IgnoringNamespaces()), "y");
    EXPECT_EQ(m_object.m_value.GetI4(), 5);
}

TEST_F(AttributeInfo, TextThatIsNoValueFailsAsTheConversionSays)
{
    CAttributeInfoPrimitive record = Prim(Required);
    ExpectThrows<CQvInvalidValueException>(L"The value [x] can not be converted to a i4",
                                           [&] { Claims(record, m_object, L"at='x'"); });
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(AttributeInfo, FacetsAreLeftToTheSetterOnReading)
{
    CAttributeInfoPrimitive record = Prim(Required, ItemType_i4, L"", nullptr, FromTen);
    EXPECT_EQ(Claims(record, m_object, L"at='5'"), "y");
}

// --- Enumerations --------------------------------------------------------------------------------

TEST_F(AttributeInfo, WritesTheWordOfAnEnumerationAsAString)
{
    m_object.m_value.SetI4(5);
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Required), m_object));
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Optional), m_object));
}

TEST_F(AttributeInfo, EnumerationThatIsItsDefaultIsLeftOutOnlyOnRequest)
{
    m_object.m_value.SetI4(5);
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Optional, L"5"), m_object));
    EXPECT_TEXT(L"", Written(Enum(Optional, L"5"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Optional, L"6"), m_object, WithoutDefaults()));
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Optional, L""), m_object, WithoutDefaults()));
    EXPECT_TEXT(L" {}at=5:23\n", Written(Enum(Required, L"5"), m_object, WithoutDefaults()));
}

TEST_F(AttributeInfo, StoresTheNumberOfAnEnumeration)
{
    CAttributeInfoEnum record = Enum(Required);
    EXPECT_EQ(Claims(record, m_object, L"other='5' at='5'"), "ny");
    EXPECT_EQ(m_object.m_value.GetTypeAsEnum(), ItemType_i4);
    EXPECT_EQ(m_object.m_value.GetI4(), 5);
}

TEST_F(AttributeInfo, WordThatTheEnumerationDoesNotKnowFailsAsItSays)
{
    CAttributeInfoEnum record = Enum(Required);
    ExpectThrows<CQvInvalidValueException>(L"no such value: 6", [&] { Claims(record, m_object, L"at='6'"); });
}

// --- The wildcard --------------------------------------------------------------------------------

TEST_F(AttributeInfo, WildcardCollectsEveryAttributeItIsOffered)
{
    CSmartPtr<CAttributeCol> spAttributes = new CAttributeCol(L"", L"##any", L"urn:t");
    m_object.m_value.SetXmlCollection(spAttributes);
    CAttributeInfoAny record = Any(L"##any", L"urn:t");
    EXPECT_EQ(Claims(record, m_object, L"a='1' o:b='2'"), "yy");
    ASSERT_EQ(spAttributes->GetCount(), 2);
    EXPECT_TEXT(L"a", spAttributes->Item(0)->GetName());
    EXPECT_TEXT(L"1", spAttributes->Item(0)->GetValue());
    EXPECT_TEXT(L"", spAttributes->Item(0)->GetNamespace());
    EXPECT_TEXT(L"b", spAttributes->Item(1)->GetName());
    EXPECT_TEXT(L"urn:o", spAttributes->Item(1)->GetNamespace());
    EXPECT_EQ(m_object.m_nStores, 0);
}

TEST_F(AttributeInfo, WildcardForOtherNamespacesRefusesTheTargetNamespace)
{
    CSmartPtr<CAttributeCol> spAttributes = new CAttributeCol(L"", L"##any", L"urn:o");
    m_object.m_value.SetXmlCollection(spAttributes);
    CAttributeInfoAny record = Any(L"##other", L"urn:o");
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [urn:o]. The namespace must be one of [##other] where the target namespace is [urn:o]",
        [&] { Claims(record, m_object, L"o:b='2'"); });
    EXPECT_EQ(spAttributes->GetCount(), 0);
}

TEST_F(AttributeInfo, WildcardNeedsACollectionOfAttributes)
{
    m_object.m_value.SetXmlCollection(new CElementCol(L"", L"##any", L"", 0, -1));
    CAttributeInfoAny record = Any(L"##any", L"");
    ExpectThrows<CQvException>(L"Serialization Data Error : The collection should be a CAttributeCol, it was not!",
                               [&] { Claims(record, m_object, L"a='1'"); });
}

TEST_F(AttributeInfo, WildcardWritesItsAttributesInOrder)
{
    CSmartPtr<CAttributeCol> spAttributes = new CAttributeCol(L"", L"##any", L"");
    spAttributes->Add(L"b", L"2", L"urn:o");
    spAttributes->Add(L"a", L"1", L"");
    m_object.m_value.SetXmlCollection(spAttributes);
    EXPECT_TEXT(L" {urn:o}b=2:23\n {}a=1:23\n", Written(Any(L"##any", L""), m_object));
}

TEST_F(AttributeInfo, WildcardWithoutAttributesWritesNothing)
{
    m_object.m_value.SetXmlCollection(new CAttributeCol(L"", L"##any", L""));
    EXPECT_TEXT(L"", Written(Any(L"##any", L""), m_object));
}

TEST_F(AttributeInfo, WildcardWithoutItsCollectionIsReported)
{
    m_object.m_value.SetXmlCollection(nullptr);
    CAttributeInfoAny record = Any(L"##any", L"");
#if defined(QUIVER_DIAGNOSTICS)
    EXPECT_DEATH(Written(record, m_object), "!= NULL");
    EXPECT_DEATH(Claims(record, m_object, L"a='1'"), "!= NULL");
#else
    const std::wstring strMessage = L"Serialization Data Error : The collection should be a CAttributeCol, it was not!";
    ExpectThrows<CQvException>(strMessage, [&] { Written(record, m_object); });
    ExpectThrows<CQvException>(strMessage, [&] { Claims(record, m_object, L"a='1'"); });
#endif
}

} // namespace
} // namespace QvTest
