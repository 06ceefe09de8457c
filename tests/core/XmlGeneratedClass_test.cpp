#include "quiver/core/XmlGeneratedClass.h"

#include "quiver/collections/Attribute.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/Contexts.h"
#include "tests/support/Expect.h"
#include "tests/support/FlexClass.h"
#include "tests/support/ProtectedAccess.h"

#include <ctime>
#include <memory>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using QvTest::CFlexClass;
using QvTest::CNillableFlexClass;
using QvTest::CShape;
using QvTest::ExpectThrows;

namespace
{

const CPrimitiveRestrictions s_noFacets(L"", -1, -1, L"", L"", L"", L"", -1);
const QvTest::SLastingContext s_lasting;
const CXmlSerializationContext& s_context = s_lasting.context;

template <class TInfo>
TInfo* Prim(const wchar_t* lpctName, int nProperty, ItemType eType = ItemType_string)
{
    return new TInfo(lpctName, L"", nProperty, eType, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, s_noFacets);
}

CAttributeInfo* Attribute(const wchar_t* lpctName, int nProperty, bool bOptional = true)
{
    return new CAttributeInfoPrimitive(lpctName, L"", nProperty, bOptional, ItemType_string, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Preserve, s_noFacets, L"");
}

std::wstring Write(const CXmlObjectBase& object, const CXmlSerializationContext& context = s_context)
{
    return object.ToXml(false, false, EOLType_LF, context);
}

/// A class of two mandatory and one optional text.
struct SThreeTexts : CShape
{
    explicit SThreeTexts(XmlElementType eElementType = ElementType_Element)
        : CShape(GroupType_Sequence, eElementType)
    {
        Add(Prim<CElementInfoSeqPrimMnd>(L"a", 1));
        Add(Prim<CElementInfoSeqPrimOpt>(L"b", 2));
        Add(Prim<CElementInfoSeqPrimMnd>(L"c", 3));
    }
};

template <XmlElementType eElementType = ElementType_Element>
struct SChoice : CShape
{
    SChoice()
        : CShape(GroupType_Choice, eElementType)
    {
        Add(new CElementInfoChoicePrimCol(L"a", L"", 1));
        Add(new CElementInfoChoicePrimCol(L"b", L"", 2));
    }
    static void Init(CFlexClass& object)
    {
        for (int nProperty = 1; nProperty <= 2; ++nProperty)
            object[nProperty].SetXmlCollection(new CstringCol(nProperty == 1 ? L"a" : L"b", L"", 1, 1, L"", -1, -1, L"",
                                                              L"", L"", L"", -1,
                                                              CWhitespaceUtils::WhitespaceRule_Preserve, nullptr));
    }
};

struct SOptionalChoice : CShape
{
    explicit SOptionalChoice(XmlElementType eElementType = ElementType_Element)
        : CShape(GroupType_Choice, eElementType)
    {
        Add(Prim<CElementInfoChoicePrimOpt>(L"a", 1));
        Add(Prim<CElementInfoChoicePrimOpt>(L"b", 2));
    }
};

struct SAll : CShape
{
    explicit SAll(XmlElementType eElementType = ElementType_Element)
        : CShape(GroupType_All, eElementType)
    {
        Add(Prim<CElementInfoAllPrimMnd>(L"a", 1));
        Add(Prim<CElementInfoAllPrimMnd>(L"b", 2));
        Add(Prim<CElementInfoAllPrimOpt>(L"c", 3));
    }
};

CXmlSerializationContext IgnoringUnknown()
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    return context;
}

int Count(CFlexClass& object, int nProperty)
{
    return object[nProperty].GetXmlCollection()->GetCount();
}

} // namespace

// --- Writing -------------------------------------------------------------------------------------

TEST(XmlGeneratedClass, TheRootGetsTheExtrasOfTheContextInTheirOrder)
{
    CShape shape(GroupType_Sequence, ElementType_Element, L"flex", L"urn:f");
    shape.Add(Attribute(L"own", 1)).Add(Prim<CElementInfoSeqPrimOpt>(L"child", 2));
    CFlexClass object(shape);
    object.SetText(1, L"o");
    object.SetText(2, L"c");

    CXmlSerializationContext context;
    context.GetProcessingInstructions() = {L"<?one?>", L"<?two?>"};
    context.GetNamespaceAliases().Add(L"z", L"urn:z");
    context.GetNamespaceAliases().Add(L"y", L"urn:y");
    context.SetDefaultNamespaceURI(L"urn:f");
    context.GetAdditionalRootAttributes()->Add(L"extra", L"e", L"");
    context.SetInLineSchema(L"<schema/>");
    EXPECT_TEXT(L"<?one?>\n\n<?two?>\n\n"
                L"<flex xmlns=\"urn:f\" xmlns:y=\"urn:y\" xmlns:z=\"urn:z\" extra=\"e\" own=\"o\" \n<schema/>\n>"
                L"<child>c</child></flex>",
                Write(object, context));
}

TEST(XmlGeneratedClass, ManyAliasesAreDeclaredInLinearTime)
{
    CXmlSerializationContext context;
    for (int n = 0; n < 40000; ++n)
        context.GetNamespaceAliases().Add((L"p" + std::to_wstring(n)).c_str(), (L"urn:" + std::to_wstring(n)).c_str());
    CShape shape;
    CFlexClass object(shape);
    const std::clock_t nStart = std::clock();
    const std::wstring strXml = Write(object, context);
    EXPECT_LT(std::clock() - nStart, 2 * CLOCKS_PER_SEC);
    EXPECT_NE(std::wstring::npos, strXml.find(L" xmlns:p39999=\"urn:39999\""));
}

TEST(XmlGeneratedClass, AChildGetsNoneOfTheRootsExtras)
{
    CShape childShape;
    CShape shape;
    shape.AddObject(new CElementInfoSeqClsOpt(L"child", L"", 1, ElementType_Element, nullptr, 0), 1);
    CFlexClass object(shape, L"root");
    object[1].SetXmlObject(new CFlexClass(childShape, L"child"));

    CXmlSerializationContext context;
    context.GetProcessingInstructions() = {L"<?one?>"};
    context.GetAdditionalRootAttributes()->Add(L"extra", L"e", L"");
    EXPECT_TEXT(L"<?one?>\n\n<root extra=\"e\"><child/></root>", Write(object, context));
}

TEST(XmlGeneratedClass, APseudoRootWritesNoTagsAndNoneOfTheRootsExtras)
{
    SThreeTexts shape(ElementType_Pseudo);
    shape.Add(Attribute(L"own", 4));
    CFlexClass object(shape);
    object.SetText(1, L"one");
    object.SetText(4, L"attribute");
    CXmlSerializationContext context;
    context.GetProcessingInstructions() = {L"<?one?>"};
    context.GetNamespaceAliases().Add(L"z", L"urn:z");
    context.GetAdditionalRootAttributes()->Add(L"extra", L"e", L"");
    context.SetInLineSchema(L"<schema/>");
    EXPECT_TEXT(L"<a>one</a>", Write(object, context));
}

TEST(XmlGeneratedClass, ElementTextFollowsTheChildren)
{
    CShape shape(GroupType_Sequence, ElementType_Element, L"flex", L"", 9);
    shape.Add(Prim<CElementInfoSeqPrimOpt>(L"a", 1));
    CFlexClass object(shape);
    object.SetText(1, L"one");
    object.SetText(9, L"text");
    EXPECT_TEXT(L"<flex><a>one</a>text</flex>", Write(object));
}

TEST(XmlGeneratedClass, ANilObjectWritesItsAttributesThenNilAndNothingElse)
{
    SThreeTexts shape;
    shape.Add(Attribute(L"own", 4));
    CNillableFlexClass object(shape);
    object.SetText(1, L"one");
    object.SetText(4, L"attribute");
    object.SetNil(true);
    EXPECT_TEXT(L"<flex own=\"attribute\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>",
                Write(object));
    object.SetNil(false);
    EXPECT_TEXT(L"<flex own=\"attribute\"><a>one</a></flex>", Write(object));
}

TEST(XmlGeneratedClass, ANilPseudoClassWritesNilOnTheEnclosingElement)
{
    SThreeTexts nilShape(ElementType_Pseudo);
    CShape shape;
    shape.AddObject(new CElementInfoSeqClsOpt(L"", L"", 1, ElementType_Pseudo, nullptr, 0), 1);
    CFlexClass object(shape);
    const CSmartPtr<CNillableFlexClass> spNil = new CNillableFlexClass(nilShape);
    spNil->SetText(1, L"one");
    spNil->SetNil(true);
    object[1].SetXmlObject(spNil);
    EXPECT_TEXT(L"<flex xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>", Write(object));
}

TEST(XmlGeneratedClass, TheTypeIsWrittenOnlyWhereTheElementNameDoesNotTellIt)
{
    const std::wstring strXsi = L" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\"";
    struct
    {
        const char* lpcCase;
        bool bHasBaseClasses;
        bool bWriteType;
        const wchar_t* lpctName;
        std::wstring strExpected;
    } const cases[] = {
        {"another name", true, true, L"element", L"<element" + strXsi + L" AA:type=\"Type\"/>"},
        {"the class's own name", true, true, L"Type", L"<Type/>"},
        {"switched off", true, false, L"element", L"<element/>"},
        {"no base classes", false, true, L"element", L"<element/>"},
    };
    for (const auto& row : cases)
    {
        SCOPED_TRACE(row.lpcCase);
        CShape shape(GroupType_Sequence, ElementType_Element, L"Type", L"", -1, true, row.bHasBaseClasses);
        CFlexClass object(shape, row.lpctName);
        CXmlSerializationContext context;
        context.SetWriteTypeAttribute(row.bWriteType);
        // The writer leaves a blank ahead of each of two declarations, so the attribute follows a doubled one.
        std::wstring strExpected = row.strExpected;
        EXPECT_TEXT(strExpected, Write(object, context));
    }
}

TEST(XmlGeneratedClass, AttributesOfNestedGroupsFollowTheObjectsOwn)
{
    CShape pseudoShape(GroupType_Sequence, ElementType_Pseudo);
    pseudoShape.Add(Attribute(L"inner", 1));
    CShape shape;
    shape.Add(Attribute(L"outer", 1))
        .AddObject(new CElementInfoSeqClsOpt(L"", L"", 2, ElementType_Pseudo, nullptr, 0), 2);
    CFlexClass object(shape);
    object.SetText(1, L"o");
    const CSmartPtr<CFlexClass> spPseudo = new CFlexClass(pseudoShape);
    spPseudo->SetText(1, L"i");
    object[2].SetXmlObject(spPseudo);
    EXPECT_TEXT(L"<flex outer=\"o\" inner=\"i\"/>", Write(object));
}

TEST(XmlGeneratedClass, AChoiceWritesItsFirstPopulatedMemberOnly)
{
    SOptionalChoice shape;
    CFlexClass object(shape);
    object.SetText(2, L"two");
    EXPECT_TEXT(L"<flex><b>two</b></flex>", Write(object));
    object.SetText(1, L"one");
    EXPECT_TEXT(L"<flex><a>one</a></flex>", Write(object));
}

TEST(XmlGeneratedClass, AnEmptyChoiceCannotBeWrittenUnlessAMemberOrTheContextExcusesIt)
{
    SChoice<> shape;
    CFlexClass object(shape, L"flex", &SChoice<>::Init);
    ExpectThrows<CQvValidationException>(L"Failed to convert the element [flex] to XML\nThis element is a choice, and "
                                         L"as such must have at one (and only one) "
                                         L"valid item, currently there are none set",
                                         [&] { Write(object); });

    CXmlSerializationContext context;
    context.SetIgnoreMissingChoice(true);
    EXPECT_TEXT(L"<flex/>", Write(object, context));

    SOptionalChoice optionalShape;
    EXPECT_TEXT(L"<flex/>", Write(CFlexClass(optionalShape)));
}

TEST(XmlGeneratedClass, AChoiceMayStayEmptyIfOneOfItsAlternativesMay)
{
    SChoice<> shape;
    CFlexClass object(shape, L"flex", &SChoice<>::Init);
    EXPECT_FALSE(object.DoesElementContainOptionalElements());
    object[2].SetXmlCollection(new CstringCol(L"b", L"", 0, 1, L"", -1, -1, L"", L"", L"", L"", -1,
                                              CWhitespaceUtils::WhitespaceRule_Preserve, nullptr));
    EXPECT_TRUE(object.DoesElementContainOptionalElements());

    SOptionalChoice optionalShape;
    EXPECT_TRUE(CFlexClass(optionalShape).DoesElementContainOptionalElements());
    SThreeTexts sequenceShape;
    EXPECT_FALSE(CFlexClass(sequenceShape).DoesElementContainOptionalElements());
}

TEST(XmlGeneratedClass, AnAllGroupIsWrittenInSchemaOrder)
{
    SAll shape;
    CFlexClass object(shape);
    object.FromXml("<flex><c>3</c><b>2</b><a>1</a></flex>", s_context);
    EXPECT_TEXT(L"<flex><a>1</a><b>2</b><c>3</c></flex>", Write(object));
}

TEST(XmlGeneratedClass, AnUnknownGroupTypeFailsInBothDirections)
{
    CShape shape(static_cast<XmlElementGroupType>(3));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(L"Failed to convert the element [flex] to XML\nUnknown XML Group Type",
                                         [&] { Write(object); });
    ExpectThrows<CQvValidationException>(L"Failed to process the element [flex]\nUnknow Group Type",
                                         [&] { object.FromXml("<flex/>", s_context); });
}

TEST(XmlGeneratedClass, AFailingAttributeIsWrappedTwiceOnWriting)
{
    CShape shape;
    shape.Add(Attribute(L"required", 1, false));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to convert the element [flex] to XML\nFailed to convert attributes to "
        L"XML\nInvalid Type 0 to convert to string",
        [&] { Write(object); });
}

// --- Reading: names, attributes, nil, text -------------------------------------------------------

TEST(XmlGeneratedClass, ReadingResetsTheObjectAndTakesOnTheNameFound)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    object.FromXml("<first><a>1</a><b>2</b><c>3</c></first>", s_context);
    EXPECT_TEXT(L"first", object.GetElementName());
    EXPECT_TEXT(L"2", object.Text(2));
    object.FromXml("<second><a>4</a><c>5</c></second>", s_context);
    EXPECT_EQ(object.m_nInits, 2);
    EXPECT_TEXT(L"second", object.GetElementName());
    EXPECT_TEXT(L"(unset)", object.Text(2));
}

TEST(XmlGeneratedClass, APseudoClassKeepsItsName)
{
    SThreeTexts shape(ElementType_Pseudo);
    CFlexClass object(shape, L"group");
    object.FromXml("<found><a>1</a><c>3</c></found>", s_context);
    EXPECT_TEXT(L"group", object.GetElementName());
    EXPECT_TEXT(L"1", object.Text(1));
}

TEST(XmlGeneratedClass, ElementTextIsStoredWholeAlsoWhenEmpty)
{
    CShape shape(GroupType_Sequence, ElementType_Element, L"flex", L"", 9);
    shape.Add(Prim<CElementInfoSeqPrimOpt>(L"a", 1));
    CFlexClass object(shape);
    object.FromXml("<flex>one <a>inner</a>two</flex>", s_context);
    EXPECT_TEXT(L"one two", object.Text(9));
    object.FromXml("<flex/>", s_context);
    EXPECT_TEXT(L"", object.Text(9));
}

TEST(XmlGeneratedClass, AnUnknownAttributeFailsOnlyWhereClassAndContextWantIt)
{
    for (const bool bClassFails : {true, false})
    {
        for (const bool bContextIgnores : {true, false})
        {
            SCOPED_TRACE(::testing::Message() << bClassFails << bContextIgnores);
            CShape shape(GroupType_Sequence, ElementType_Element, L"flex", L"", -1, bClassFails);
            shape.Add(Attribute(L"known", 1));
            CFlexClass object(shape);
            CXmlSerializationContext context;
            context.SetIgnoreUnknownAttributes(bContextIgnores);
            const auto read = [&]
            {
                object.FromXml("<flex unknown='1' known='2'/>", context);
            };
            if (bClassFails && !bContextIgnores)
                ExpectThrows<CQvValidationException>(
                    L"Failed to process the element [flex]\nUnexpected Attribute [unknown] found.", read);
            else
                read();
            EXPECT_TEXT(bClassFails && !bContextIgnores ? L"(unset)" : L"2", object.Text(1));
        }
    }
}

TEST(XmlGeneratedClass, SchemaInstanceAttributesNeverReachTheMetadata)
{
    CShape shape;
    // Records that would take the attributes, were they asked.
    shape.Add(Attribute(L"type", 1)).Add(Attribute(L"schemaLocation", 2)).Add(Attribute(L"other", 3));
    CFlexClass object(shape);
    object.FromXml("<flex xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='T' "
                   "xsi:schemaLocation='a b' xsi:noNamespaceSchemaLocation='c' other='o'/>",
                   s_context);
    EXPECT_TEXT(L"(unset)", object.Text(1));
    EXPECT_TEXT(L"(unset)", object.Text(2));
    EXPECT_TEXT(L"o", object.Text(3));
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nUnexpected Attribute [foo] found.", [&]
        { object.FromXml("<flex xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:foo='T'/>", s_context); });
}

TEST(XmlGeneratedClass, EveryAttributeGoesToTheFirstRecordThatTakesIt)
{
    CShape shape;
    shape.Add(Attribute(L"x", 1)).Add(Attribute(L"x", 2)).Add(Attribute(L"y", 3));
    CFlexClass object(shape);
    object.FromXml("<flex y='2' x='1'/>", s_context);
    EXPECT_TEXT(L"1", object.Text(1));
    EXPECT_TEXT(L"(unset)", object.Text(2));
    EXPECT_TEXT(L"2", object.Text(3));
}

TEST(XmlGeneratedClass, AMissingRequiredAttributeIsReportedAfterTheOthersWereStored)
{
    CShape shape;
    shape.Add(Attribute(L"required", 1, false)).Add(Attribute(L"y", 2));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nFailed to find the required Attribute [required]",
        [&] { object.FromXml("<flex y='2'/>", s_context); });
    EXPECT_TEXT(L"2", object.Text(2));
}

TEST(XmlGeneratedClass, AClassWithVeryManyAttributesKeepsAFlagForEach)
{
    CShape shape;
    std::string strXml = "<flex";
    for (int n = 0; n < 200; ++n)
    {
        const std::string strName = "a" + std::to_string(n);
        shape.Add(Attribute(std::wstring(strName.begin(), strName.end()).c_str(), n, false));
        strXml += " " + strName + "='" + std::to_string(n) + "'";
    }
    CFlexClass object(shape);
    object.FromXml((strXml + "/>").c_str(), s_context);
    EXPECT_TEXT(L"199", object.Text(199));
}

TEST(XmlGeneratedClass, NilAcceptsTrueAndFalseInAnyCaseAndNothingElse)
{
    struct
    {
        const char* lpcValue;
        int nNil; // -1: refused
    } const cases[] = {{"true", 1}, {"TRUE", 1}, {"True", 1}, {"false", 0},  {"FALSE", 0},
                       {"1", -1},   {"0", -1},   {"", -1},    {" true", -1}, {"truer", -1}};
    SThreeTexts shape;
    for (const auto& row : cases)
    {
        SCOPED_TRACE(row.lpcValue);
        CNillableFlexClass object(shape);
        const std::string strXml = std::string("<flex xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='") +
                                   row.lpcValue + "'><a>1</a><c>3</c></flex>";
        if (row.nNil == -1)
        {
            ExpectThrows<CQvValidationException>(
                L"Failed to process the element [flex]\nUnexpected Value for Attribute [nil] found.",
                [&] { object.FromXml(strXml.c_str(), s_context); });
            continue;
        }
        object.FromXml(strXml.c_str(), s_context);
        EXPECT_EQ(object.IsNil(), row.nNil == 1);
        EXPECT_TEXT(row.nNil == 1 ? L"(unset)" : L"1", object.Text(1));
    }
}

TEST(XmlGeneratedClass, ANilElementMayHoldAnything)
{
    SThreeTexts shape;
    CNillableFlexClass object(shape);
    object.FromXml("<flex xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='true'><junk/><a>1</a></flex>",
                   s_context);
    EXPECT_TRUE(object.IsNil());
    EXPECT_TEXT(L"(unset)", object.Text(1));
}

TEST(XmlGeneratedClass, NilOnAClassThatIsNotNillableIsRefused)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nUnexpected Attribute [nil] found.",
        [&] { object.FromXml("<flex xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='true'/>", s_context); });
}

// --- Reading: sequence ---------------------------------------------------------------------------

TEST(XmlGeneratedClass, ASequenceIsReadInOrder)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    object.FromXml("<flex><a>1</a><c>3</c></flex>", s_context);
    EXPECT_TEXT(L"1", object.Text(1));
    EXPECT_TEXT(L"(unset)", object.Text(2));
    EXPECT_TEXT(L"3", object.Text(3));
}

TEST(XmlGeneratedClass, AForeignElementAheadOfAMandatoryMemberIsReportedAsTheMissingMember)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(L"Failed to process the element [flex]\nFailed to find a required element [c]",
                                         [&] { object.FromXml("<flex><a>1</a><junk/><c>3</c></flex>", s_context); });
}

TEST(XmlGeneratedClass, AForeignElementBehindTheLastMandatoryMemberIsUnexpected)
{
    SThreeTexts shape;
    shape.Add(Prim<CElementInfoSeqPrimOpt>(L"d", 4));
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(L"Failed to process the element [flex]\nFailed read all the elements held "
                                         L"within the element [flex]. The unexpected "
                                         L"element [junk] remains un processed",
                                         [&] { object.FromXml("<flex><a>1</a><c>3</c><junk/></flex>", s_context); });
}

TEST(XmlGeneratedClass, UnknownElementsAreSkippedOnRequest)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    object.FromXml("<flex><j/><a>1</a><j/><c>3</c><j/></flex>", IgnoringUnknown());
    EXPECT_TEXT(L"1", object.Text(1));
    EXPECT_TEXT(L"3", object.Text(3));
}

namespace
{

/// A parent with a nested group and a trailing text, so that the cursor a group gives back can be seen.
struct SNestedGroup : CShape
{
    explicit SNestedGroup(const CShape& group, std::function<void(CFlexClass&)> pfnInit = nullptr)
    {
        s_pGroup = &group;
        s_pfnInit = std::move(pfnInit);
        AddObject(new CElementInfoSeqClsOpt(L"", L"", 1, ElementType_Pseudo, &CreateGroup, 0), 1);
        Add(Prim<CElementInfoSeqPrimOpt>(L"a", 2));
        Add(Prim<CElementInfoSeqPrimOpt>(L"z", 3));
    }
    static CSmartPtr<CXmlObjectBase> CreateGroup(int, const wchar_t*)
    {
        return CSmartPtr<CXmlObjectBase>(new CFlexClass(*s_pGroup, L"group", s_pfnInit));
    }
    static const CShape* s_pGroup;
    static std::function<void(CFlexClass&)> s_pfnInit;
};
const CShape* SNestedGroup::s_pGroup = nullptr;
std::function<void(CFlexClass&)> SNestedGroup::s_pfnInit;

} // namespace

TEST(XmlGeneratedClass, AnIncompleteNestedSequenceGivesTheCursorBack)
{
    SThreeTexts group(ElementType_Pseudo);
    SNestedGroup shape(group);
    CFlexClass object(shape);
    object.FromXml("<flex><a>1</a><z>9</z></flex>", s_context);
    EXPECT_EQ(object.Child(1), nullptr);
    EXPECT_TEXT(L"1", object.Text(2));
    EXPECT_TEXT(L"9", object.Text(3));
}

TEST(XmlGeneratedClass, ANestedSequenceLeavesWhatItDoesNotKnow)
{
    SThreeTexts group(ElementType_Pseudo);
    SNestedGroup shape(group);
    CFlexClass object(shape);
    object.FromXml("<flex><a>1</a><c>3</c><a>4</a><z>9</z></flex>", s_context);
    ASSERT_NE(object.Child(1), nullptr);
    EXPECT_TEXT(L"3", object.Child(1)->Text(3));
    EXPECT_TEXT(L"4", object.Text(2));
}

TEST(XmlGeneratedClass, AtTheEndOfTheChildrenANestedSequenceRollsBackToItsStartWhileSkipping)
{
    SThreeTexts group(ElementType_Pseudo);
    SNestedGroup shape(group);
    CFlexClass object(shape);
    object.FromXml("<flex><a>1</a><z>9</z></flex>", IgnoringUnknown());
    EXPECT_EQ(object.Child(1), nullptr);
    EXPECT_TEXT(L"1", object.Text(2));
    EXPECT_TEXT(L"9", object.Text(3));
}

// --- Reading: choice -----------------------------------------------------------------------------

TEST(XmlGeneratedClass, AChoiceTakesTheAlternativeThatIsThere)
{
    SOptionalChoice shape;
    CFlexClass object(shape);
    object.FromXml("<flex><b>2</b></flex>", s_context);
    EXPECT_TEXT(L"(unset)", object.Text(1));
    EXPECT_TEXT(L"2", object.Text(2));
}

TEST(XmlGeneratedClass, ASecondAlternativeIsUnexpected)
{
    SOptionalChoice shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(L"Failed to process the element [flex]\nFailed read all the elements held "
                                         L"within the element [flex]. The unexpected "
                                         L"element [b] remains un processed",
                                         [&] { object.FromXml("<flex><a>1</a><b>2</b></flex>", s_context); });
}

TEST(XmlGeneratedClass, AChoiceWithNothingFoundFailsUnlessExcused)
{
    SChoice<> shape;
    CFlexClass object(shape, L"flex", &SChoice<>::Init);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nNo child elements within the element [flex] were populated. The "
        L"element "
        L"represents a choice, so one and only one element should be populated. The element contained no sutable child "
        L"elements",
        [&] { object.FromXml("<flex/>", s_context); });

    CXmlSerializationContext context;
    context.SetIgnoreMissingChoice(true);
    object.FromXml("<flex/>", context);
    EXPECT_EQ(Count(object, 1) + Count(object, 2), 0);

    SOptionalChoice optionalShape;
    CFlexClass optional(optionalShape);
    optional.FromXml("<flex/>", s_context);
    EXPECT_TEXT(L"(unset)", optional.Text(1));
    EXPECT_TEXT(L"(unset)", optional.Text(2));
}

TEST(XmlGeneratedClass, WhileSkippingAChoiceScansForItsFirstAlternativeAndIgnoresTheRest)
{
    SChoice<> shape;
    CFlexClass object(shape, L"flex", &SChoice<>::Init);
    object.FromXml("<flex><j/><j/><b>2</b><a>1</a></flex>", IgnoringUnknown());
    EXPECT_EQ(Count(object, 1), 0);
    EXPECT_EQ(Count(object, 2), 1);
}

TEST(XmlGeneratedClass, NothingExcusesAnEmptyChoiceThatAnotherObjectReads)
{
    SChoice<> shape;
    CFlexClass object(shape, L"flex", &SChoice<>::Init);
    CXmlDocument document;
    for (const bool bEmpty : {false, true})
    {
        document.LoadXml(bEmpty ? "<flex/>" : "<flex><a/></flex>");
        CXmlElement* const pRoot = document.GetDocumentElement();
        const auto fnRead = [&]
        {
            QvTest::CProtectedAccess::Read(&object, pRoot, pRoot->GetFirstElement(), s_context);
        };
        if (bEmpty)
            EXPECT_THROW(fnRead(), CQvValidationException);
        else
            EXPECT_NO_THROW(fnRead());
    }
}

TEST(XmlGeneratedClass, AnOptionalAlternativeOfTheOuterChoiceExcusesAnEmptyInnerChoice)
{
    static SChoice<> innerShape;
    CShape shape(GroupType_Choice);
    shape.AddObject(new CElementInfoChoiceClsOpt(
                        L"inner", L"", 1, ElementType_Element,
                        [](int, const wchar_t* lpctName)
                        { return CSmartPtr<CXmlObjectBase>(new CFlexClass(innerShape, lpctName, &SChoice<>::Init)); },
                        0),
                    1);
    CFlexClass object(shape);
    object.FromXml("<flex><inner/></flex>", s_context);
    EXPECT_NE(object.Child(1), nullptr);
    EXPECT_TEXT(L"<flex><inner/></flex>", Write(object));

    // The scan for an alternative goes past all children, and that is no failure either.
    object.FromXml("<flex><inner><j/><j/></inner></flex>", IgnoringUnknown());
    EXPECT_TEXT(L"<flex><inner/></flex>", Write(object));
}

TEST(XmlGeneratedClass, ANestedChoiceWithoutAMatchGivesTheCursorBack)
{
    SChoice<ElementType_Pseudo> group;
    SNestedGroup shape(group, &SChoice<>::Init);
    for (const CXmlSerializationContext& context : {s_context, IgnoringUnknown()})
    {
        CFlexClass object(shape);
        object.FromXml("<flex><z>9</z></flex>", context);
        EXPECT_EQ(object.Child(1), nullptr);
        EXPECT_TEXT(L"9", object.Text(3));
    }
}

// --- Reading: all --------------------------------------------------------------------------------

TEST(XmlGeneratedClass, AnAllGroupIsReadInAnyOrder)
{
    SAll shape;
    for (const char* lpcXml :
         {"<flex><a>1</a><b>2</b></flex>", "<flex><b>2</b><a>1</a></flex>", "<flex><c>3</c><b>2</b><a>1</a></flex>"})
    {
        SCOPED_TRACE(lpcXml);
        CFlexClass object(shape);
        object.FromXml(lpcXml, s_context);
        EXPECT_TEXT(L"1", object.Text(1));
        EXPECT_TEXT(L"2", object.Text(2));
    }
}

TEST(XmlGeneratedClass, ASecondOccurrenceInAnAllGroupIsUnexpected)
{
    SAll shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(L"Failed to process the element [flex]\nFailed read all the elements held "
                                         L"within the element [flex]. The unexpected "
                                         L"element [a] remains un processed",
                                         [&] { object.FromXml("<flex><a>1</a><b>2</b><a>3</a></flex>", s_context); });
}

TEST(XmlGeneratedClass, AMissingMemberOfAnAllGroupIsReported)
{
    SAll shape;
    CFlexClass object(shape);
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [flex]\nFailed to find the mandatory element [b]",
        [&] { object.FromXml("<flex><a>1</a></flex>", s_context); });
}

TEST(XmlGeneratedClass, ANestedAllGroupThatLacksAMemberGivesTheCursorBackAndKeepsWhatItRead)
{
    SAll group(ElementType_Pseudo);
    CShape shape;
    shape.AddObject(new CElementInfoSeqClsMnd(L"", L"", 1, ElementType_Pseudo, nullptr, 0, false), 1)
        .Add(Prim<CElementInfoSeqPrimOpt>(L"a", 2));
    CFlexClass object(shape, L"flex",
                      [&group](CFlexClass& self) { self[1].SetXmlObject(new CFlexClass(group, L"group")); });
    object.FromXml("<flex><a>1</a></flex>", s_context);
    EXPECT_TEXT(L"1", object.Child(1)->Text(1));
    EXPECT_TEXT(L"1", object.Text(2));
}

// --- Chains and depth ----------------------------------------------------------------------------

TEST(XmlGeneratedClass, EveryElementLevelAddsOneLinkToAFailure)
{
    SThreeTexts leafShape;
    CShape middleShape;
    middleShape.AddObject(new CElementInfoSeqClsMnd(L"leaf", L"", 1, ElementType_Element, nullptr, 0, true), 1);
    CShape rootShape;
    rootShape.AddObject(new CElementInfoSeqClsMnd(L"middle", L"", 1, ElementType_Element, nullptr, 0, true), 1);
    const auto initMiddle = [&](CFlexClass& self)
    {
        self[1].SetXmlObject(new CFlexClass(leafShape, L"leaf"));
    };
    CFlexClass object(rootShape, L"root",
                      [&](CFlexClass& self)
                      { self[1].SetXmlObject(new CFlexClass(middleShape, L"middle", initMiddle)); });
    ExpectThrows<CQvValidationException>(
        L"Failed to process the element [root]\nFailed to process the element [middle]\nFailed to process the element "
        L"[leaf]\nFailed to find a required element [a]",
        [&] { object.FromXml("<root><middle><leaf><c/></leaf></middle></root>", s_context); });
}

namespace
{

CShape& NestingShape()
{
    static CShape s_shape;
    static const bool s_bReady = []
    {
        s_shape.AddObject(new CElementInfoSeqClsOpt(
                              L"n", L"", 1, ElementType_Element,
                              [](int, const wchar_t* lpctName)
                              { return CSmartPtr<CXmlObjectBase>(new CFlexClass(NestingShape(), lpctName)); },
                              0),
                          1);
        return true;
    }();
    static_cast<void>(s_bReady);
    return s_shape;
}

std::string NestedDocument(int nDepth)
{
    std::string strXml;
    for (int n = 0; n < nDepth; ++n)
        strXml += "<n>";
    for (int n = 0; n < nDepth; ++n)
        strXml += "</n>";
    return strXml;
}

} // namespace

TEST(XmlGeneratedClass, NestingThatTheStackHoldsIsReadAndWritten)
{
    CFlexClass object(NestingShape(), L"n");
    const std::string strXml = NestedDocument(500);
    object.FromXml(strXml.c_str(), s_context);
    EXPECT_EQ(Write(object).size(), strXml.size() - std::string("></n").size() + std::string("/").size());
}

TEST(XmlGeneratedClass, ADocumentNestedTooDeeplyForTheStackEndsInAnException)
{
    CFlexClass object(NestingShape(), L"n");
    const std::string strXml = NestedDocument(1000000);
    try
    {
        object.FromXml(strXml.c_str(), s_context);
        ADD_FAILURE() << "a million levels cannot fit the stack";
    }
    catch (const CQvException& ex)
    {
        const std::wstring strMessage = ex.GetFullMessage();
        const std::wstring strCause = L"\nThe document is nested too deeply to be processed";
        ASSERT_GT(strMessage.size(), strCause.size());
        EXPECT_TEXT(strCause, strMessage.substr(strMessage.size() - strCause.size()));
        EXPECT_TEXT(L"Failed to process the element [n]", ex.GetMessageW());
    }
}

TEST(XmlGeneratedClass, AChainTooLongForTheStackIsNotWrittenAndDiesSafely)
{
    CSmartPtr<CFlexClass> spChain = new CFlexClass(NestingShape(), L"n");
    for (int n = 0; n < 200000; ++n)
    {
        CSmartPtr<CFlexClass> spOuter = new CFlexClass(NestingShape(), L"n");
        (*spOuter)[1].SetXmlObject(spChain);
        spChain = spOuter;
    }
    try
    {
        Write(*spChain);
        ADD_FAILURE() << "so long a chain cannot fit the stack";
    }
    catch (const CQvException& ex)
    {
        const std::wstring strMessage = ex.GetFullMessage();
        EXPECT_NE(std::wstring::npos, strMessage.find(L"The document is nested too deeply to be processed"));
        EXPECT_TEXT(L"Failed to convert the element [n] to XML", ex.GetMessageW());
    }
    spChain = nullptr;
}

// --- Services for generated code -----------------------------------------------------------------

TEST(XmlGeneratedClass, IsElementInListAsksEveryRecord)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    CXmlDocument document(s_context);
    document.LoadXml("<r><c/><d/></r>");
    CXmlElement* const pFirst = document.GetDocumentElement()->GetFirstElement();
    EXPECT_TRUE(object.IsElementInList(s_context, pFirst));
    EXPECT_FALSE(object.IsElementInList(s_context, pFirst->GetNextSiblingElement()));
    EXPECT_FALSE(object.IsElementInList(s_context, nullptr));
}

TEST(XmlGeneratedClass, ReadPropertyReadsAConstObject)
{
    SThreeTexts shape;
    CFlexClass object(shape);
    object.SetText(1, L"one");
    const CFlexClass& constObject = object;
    QvVariant value;
    constObject.ReadProperty(1, value);
    EXPECT_TEXT(L"one", value.GetString());
}

namespace
{

int s_nRecordsAlive = 0;

struct SCountedRecord : CElementInfoSeqPrimCol
{
    SCountedRecord()
        : CElementInfoSeqPrimCol(L"a", L"", 1)
    {
        ++s_nRecordsAlive;
    }
    ~SCountedRecord() override { --s_nRecordsAlive; }
};

} // namespace

TEST(XmlGeneratedClass, CleanMetaDataFreesEverythingThroughVirtualDestructorsAndAcceptsNulls)
{
    CParentElementInfo* pInfo =
        new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"a", L"", -1, true, false);
    CElementInfo** ppElements = new CElementInfo* []
    {
        new SCountedRecord, new SCountedRecord, nullptr
    };
    CAttributeInfo** ppAttributes = new CAttributeInfo* []
    {
        Attribute(L"x", 1), nullptr
    };
    EXPECT_EQ(s_nRecordsAlive, 2);
    CFlexClass::CleanMetaData(pInfo, ppElements, ppAttributes);
    EXPECT_EQ(s_nRecordsAlive, 0);
    EXPECT_EQ(pInfo, nullptr);
    EXPECT_EQ(ppElements, nullptr);
    EXPECT_EQ(ppAttributes, nullptr);
    CFlexClass::CleanMetaData(pInfo, ppElements, ppAttributes);
}
