#include "quiver/generated/Wildcard.h"

#include "quiver/collections/Element.h"
#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/Nillable.h"

#include <gtest/gtest.h>

#include <vector>

using namespace QvXmlLib9;

namespace
{

constexpr const wchar_t* s_uris[] = {L"urn:a", L""};

constexpr SAlternative s_elements[] = {{true, L"urn:a", L"count", &CreateObject<CNillable<xs::Int>>}};
constexpr SKnownAttribute s_attributes[] = {{L"urn:a", L"size", &xs::Int::Type},
                                            {L"urn:a", L"one", &xs::Int::Type, L"1"}};
constexpr SKnownDeclarations s_known{{s_elements, 1}, s_attributes, 2};

SWildcard MakeWildcard(const SKnownDeclarations* pKnown, bool bStrict)
{
    return {SWildcard::Any, nullptr, 0, 0, -1, nullptr, pKnown, bStrict};
}

bool IsTaken(const SWildcard& wildcard, const wchar_t* lpctDocument, const CXmlSerializationContext& context = {})
{
    CXmlDocument document;
    document.LoadXml(lpctDocument);
    try
    {
        wildcard.Throw_IfContentIsWrong(*document.GetDocumentElement(), context);
        return true;
    }
    catch (const CQvException&)
    {
        return false;
    }
}

} // namespace

TEST(Wildcard, LetsNamespacesThrough)
{
    const struct
    {
        SWildcard wildcard;
        bool bListed;
        bool bNone;
        bool bOther;
    } cases[] = {{{}, true, true, true},
                 {{SWildcard::Not, s_uris, 2}, false, false, true},
                 {{SWildcard::Not, s_uris, 1}, false, true, true},
                 {{SWildcard::List, s_uris, 2}, true, true, false},
                 {{SWildcard::List, s_uris, 1}, true, false, false},
                 {{SWildcard::List, nullptr, 0}, false, false, false}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(::testing::Message() << "kind " << c.wildcard.eKind << ", " << c.wildcard.nUris << " namespaces");
        EXPECT_EQ(c.wildcard.Allows(L"urn:a"), c.bListed);
        EXPECT_EQ(c.wildcard.Allows(L""), c.bNone);
        EXPECT_EQ(c.wildcard.Allows(L"urn:b"), c.bOther);
    }
}

TEST(Wildcard, LetsOneNameThrough)
{
    const SWildcard wildcard{SWildcard::List, s_uris, 1, 0, 1, L"x"};
    EXPECT_TRUE(wildcard.Allows(L"urn:a", L"x"));
    EXPECT_FALSE(wildcard.Allows(L"urn:a", L"y"));
    EXPECT_FALSE(wildcard.Allows(L"urn:b", L"x"));
}

TEST(Wildcard, RefusesToWriteWhatItWouldNotRead)
{
    const SWildcard wildcard{SWildcard::Not, s_uris, 1};
    const CSmartPtr<CElement> spRight = new CElement(L"x", L"urn:b");
    EXPECT_NO_THROW(wildcard.Throw_IfForbidden(*spRight));
    const CSmartPtr<CElement> spWrong = new CElement(L"x", L"urn:a");
    try
    {
        wildcard.Throw_IfForbidden(*spWrong);
        FAIL() << "an element of a forbidden namespace passed";
    }
    catch (const CQvValidationException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"The element [x] of the namespace [urn:a] may not stand here");
    }
}

TEST(Wildcard, ChecksContentByWhatIsKnown)
{
    const struct
    {
        const wchar_t* lpctDocument;
        bool bLax;
        bool bStrict;
    } cases[] = {{L"<count xmlns='urn:a'>1</count>", true, true},
                 {L"<count xmlns='urn:a'>x</count>", false, false},
                 {L"<other xmlns='urn:a'>x</other>", true, false},
                 {L"<count>x</count>", true, false},
                 {L"<other><count xmlns='urn:a'>x</count></other>", false, false},
                 {L"<other xmlns:a='urn:a' a:size='1' a:one='01'/>", true, false},
                 {L"<other xmlns:a='urn:a' a:size='x'/>", false, false},
                 {L"<other xmlns:a='urn:a' a:one='2'/>", false, false}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.lpctDocument);
        EXPECT_TRUE(IsTaken(MakeWildcard(nullptr, false), c.lpctDocument));
        EXPECT_EQ(IsTaken(MakeWildcard(&s_known, false), c.lpctDocument), c.bLax);
        EXPECT_EQ(IsTaken(MakeWildcard(&s_known, true), c.lpctDocument), c.bStrict);
    }
    EXPECT_FALSE(IsCheckingOnly());
}

namespace
{

/// Remembers how it was read.
class CWitness : public CXmlObjectBase
{
public:
    explicit CWitness(const wchar_t*)
        : CInstanceMonitor(L"CWitness")
    {
    }
    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return {}; }

    static std::vector<bool> s_checkingOnly;

protected:
    std::wstring GetTargetNamespace() const override { return {}; }
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        s_checkingOnly.push_back(IsCheckingOnly());
        return nullptr;
    }
};

std::vector<bool> CWitness::s_checkingOnly;

} // namespace

TEST(Wildcard, MakesNoObjectsOfWhatIsOnlyChecked)
{
    static constexpr SAlternative s_witness[] = {{true, L"", L"witness", &CreateObject<CWitness>}};
    static constexpr SKnownDeclarations s_declarations{{s_witness, 1}, nullptr, 0};
    EXPECT_TRUE(IsTaken(MakeWildcard(&s_declarations, false), L"<other><witness/><witness/></other>"));
    EXPECT_EQ(CWitness::s_checkingOnly, (std::vector<bool>{true, true}));
    EXPECT_FALSE(IsCheckingOnly());
}

TEST(Wildcard, LetsUnknownElementsThroughWhereTheContextDoes)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    EXPECT_TRUE(IsTaken(MakeWildcard(&s_known, true), L"<other/>", context));
    EXPECT_FALSE(IsTaken(MakeWildcard(&s_known, true), L"<count xmlns='urn:a'>x</count>", context));
}
