#include "quiver/generated/ClassDescription.h"

#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfo.h"
#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using namespace sample;

namespace
{

constexpr SWildcard s_any{};

/// The number of a record's member, which only its family may ask for.
struct SIndex : CElementInfo
{
    using CElementInfo::GetPropertyIndex;
};

/// Frees tables as generated classes do.
struct STables : CGeneratedObject
{
    STables()
        : CInstanceMonitor(L"STables")
        , CGeneratedObject(L"x")
    {
    }
    ~STables() override { FreeTables(m_tables); }
    const SClassTables& Tables() const override { return m_tables; }
    void Describe(CClassDescription& description) const override { m_pfnDescribe(description); }

    /// Builds by a function, at most once.
    void Build(void (*pfnDescribe)(CClassDescription&))
    {
        m_pfnDescribe = pfnDescribe;
        BuildTables(m_tables, nullptr);
    }

    SClassTables m_tables;
    void (*m_pfnDescribe)(CClassDescription&) = nullptr;
};

/// Restricts CDrawing: a title of another form, one shape, no frame.
class CSketch : public CGenerated<CSketch, CDrawing>
{
public:
    explicit CSketch(const wchar_t* lpctElementName = L"drawing")
        : CInstanceMonitor(L"CSketch")
        , CGenerated(lpctElementName)
    {
    }

protected:
    void Describe(CClassDescription& description) const override
    {
        CDrawing::Describe(description);
        description.Restrict();
        description.Class(GroupType_Sequence, ElementType_Element, L"drawing", s_lpctNamespace);
        description.Element(L"title", s_lpctNamespace, description.Inherited(&m_Title), SSku::Type());
        description.RestrictValues<SSku>(&m_Title);
        description.RepeatedObject(L"shape", s_lpctNamespace, description.Inherited(&m_Shapes));
        description.RestrictCounts(&m_Shapes, 1, 1);
    }
};

} // namespace

TEST(ClassDescription, KeepsTheOrderOfTheMembers)
{
    STables tables;
    tables.Build(
        [](CClassDescription& description)
        {
            description.Class(GroupType_Sequence, ElementType_Element, L"x", L"urn:x");
            description.AnyAttribute(9, s_any);
            description.Element(L"a", L"urn:x", 4, xs::Int::Type());
            description.Attribute(L"p", L"", 3, xs::Int::Type());
            description.OptionalObject<CPrice>(L"b", L"urn:x", 2);
            description.RepeatedWildcard(1, s_any);
            description.OptionalAttribute(L"q", L"", 0, xs::Int::Type());
        });
    const SClassTables& built = tables.Tables();
    std::vector<int> elements;
    for (CElementInfo** pp = built.ppElements; *pp != nullptr; ++pp)
        elements.push_back(((*pp)->*&SIndex::GetPropertyIndex)());
    EXPECT_EQ(elements, (std::vector<int>{4, 2, 1}));
    int nAttributes = 0;
    while (built.ppAttributes[nAttributes] != nullptr)
        ++nAttributes;
    EXPECT_EQ(nAttributes, 3);
    EXPECT_NE(dynamic_cast<CAttributeInfoAny*>(built.ppAttributes[2]), nullptr) << "it takes what the others leave";
    EXPECT_STREQ(built.lpctNamespace, L"urn:x");
    EXPECT_EQ(built.lpctTypeName, nullptr);
    EXPECT_FALSE(built.bRequiresChoice);
    EXPECT_TRUE(built.pInfo->GetFromXmlFailIfAttributeUnknown());
    EXPECT_EQ(built.pInfo->GetElementTextPropertyIndex(), -1);
}

TEST(ClassDescription, HasARecordForEachNestedGroup)
{
    STables tables;
    tables.Build(
        [](CClassDescription& description)
        {
            description.Class(GroupType_Sequence, ElementType_Element, L"x", L"urn:x");
            description.Group<CEnvelopeChoice>(L"a", 3, true);
            description.OptionalGroup<CEnvelopeChoice>(L"b", 2);
            description.RepeatedGroup(L"c", 1);
        });
    std::vector<int> elements;
    for (CElementInfo** pp = tables.Tables().ppElements; *pp != nullptr; ++pp)
        elements.push_back(((*pp)->*&SIndex::GetPropertyIndex)());
    EXPECT_EQ(elements, (std::vector<int>{3, 2, 1}));
}

TEST(ClassDescription, LetsAnExtensionReplaceWhatTheBaseSaid)
{
    STables tables;
    tables.Build(
        [](CClassDescription& description)
        {
            description.Class(GroupType_Choice, ElementType_Element, L"base", L"urn:base");
            description.TypeName(L"Base", L"urn:base");
            description.RequireChoice();
            description.IgnoreUnknownAttributes();
            description.Text(7);
            description.AnyAttribute(8, s_any);
            description.Class(GroupType_Sequence, ElementType_Element, L"x", L"urn:x");
            description.TypeName(L"X", L"urn:x");
            description.AnyAttribute(9, s_any);
        });
    const SClassTables& built = tables.Tables();
    EXPECT_EQ(built.pInfo->GetElementGroupType(), GroupType_Sequence);
    EXPECT_EQ(built.pInfo->GetElementName(), L"x");
    EXPECT_STREQ(built.lpctTypeName, L"X");
    EXPECT_STREQ(built.lpctTypeNamespace, L"urn:x");
    EXPECT_FALSE(built.bRequiresChoice);
    EXPECT_FALSE(built.pInfo->GetFromXmlFailIfAttributeUnknown());
    EXPECT_EQ(built.pInfo->GetElementTextPropertyIndex(), 7);
    ASSERT_NE(built.ppAttributes[0], nullptr);
    EXPECT_EQ(built.ppAttributes[1], nullptr);
}

TEST(ClassDescription, LeavesTheAttributesOfANestedGroupAlone)
{
    STables tables;
    tables.Build([](CClassDescription& description)
                 { description.Class(GroupType_Sequence, ElementType_Pseudo, L"x", L""); });
    EXPECT_FALSE(tables.Tables().pInfo->GetFromXmlFailIfAttributeUnknown());
    EXPECT_EQ(tables.Tables().ppElements[0], nullptr);
}

TEST(ClassDescription, LeavesNothingBehindWhenItFails)
{
    STables tables;
    const auto Fail = [](CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"x", L"");
        description.Element(L"a", L"", 0, xs::Int::Type());
        throw 1;
    };
    EXPECT_THROW(tables.Build(Fail), int);
    EXPECT_FALSE(tables.m_tables.bBuilt);
    EXPECT_EQ(tables.m_tables.ppElements, nullptr);
    tables.Build([](CClassDescription& description)
                 { description.Class(GroupType_Sequence, ElementType_Element, L"x", L""); });
    EXPECT_TRUE(tables.m_tables.bBuilt);
}

TEST(ClassDescription, NarrowsTheMembersOfABase)
{
    const std::wstring strTitle = L"<title>ABC-1</title>";
    const std::wstring strShape = L"<s:circle/>";
    EXPECT_EQ(Refusal<CSketch>(Document(L"drawing", L"", strTitle + strShape)), L"done");
    EXPECT_TRUE(EndsWith(Refusal<CSketch>(Document(L"drawing", L"", strTitle + strShape + strShape)),
                         L"The Maximum number of [shape] elements allowed in this collection is 1"));
    EXPECT_NE(Refusal<CSketch>(Document(L"drawing", L"", L"<title>free</title>" + strShape)), L"done");
    EXPECT_NE(Refusal<CSketch>(Document(L"drawing", L"", strTitle + L"x" + strShape)), L"done");
    EXPECT_NE(Refusal<CSketch>(Document(L"drawing", L"", strTitle + strShape + L"<middle>x</middle>")), L"done");
}

TEST(ClassDescription, ChecksInheritedMembersWhenTheyAreWritten)
{
    CSketch sketch;
    sketch.m_Title.Set(L"free", L"title");
    sketch.m_Shapes.Get(CDrawing::s_Shape)->Add(new CCircle);
    EXPECT_NE(MessagesOf([&] { Write(sketch); }), L"done");
    sketch.m_Title.Set(L"ABC-1", L"title");
    EXPECT_EQ(MessagesOf([&] { Write(sketch); }), L"done");
}

TEST(ClassDescription, ResetsMembersThatARestrictionLeavesOut)
{
    CSketch sketch;
    sketch.m_Frame.Set(new CCircle, L"shape");
    sketch.FromXml(Document(L"drawing", L"", L"<title>ABC-1</title><s:circle/>").c_str(),
                   CXmlSerializationContext::GetDefaultContext());
    EXPECT_FALSE(sketch.m_Frame.IsSet());
    EXPECT_EQ(sketch.m_Shapes.Get(CDrawing::s_Shape)->GetCount(), 1);
}
