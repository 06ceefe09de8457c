#include "quiver/document/XmlAttribute.h"

#include "quiver/document/XmlDocument.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace
{

using QvXmlLib9::CXmlAttribute;
using QvXmlLib9::CXmlDocument;

/// An attribute outside any document.
class CFreeAttribute : public CXmlAttribute
{
public:
    CFreeAttribute(const std::wstring& strLocalName, const std::wstring& strValue, const std::wstring& strNamespaceURI)
        : CXmlAttribute(strLocalName, strValue, strNamespaceURI)
    {
    }
    explicit CFreeAttribute(const CXmlAttribute& source)
        : CXmlAttribute(source)
    {
    }
};

constexpr const wchar_t* s_lpctXsi = L"http://www.w3.org/2001/XMLSchema-instance";
constexpr const wchar_t* s_lpctXmlns = L"http://www.w3.org/2000/xmlns/";

struct SKindRow
{
    const wchar_t* lpctNamespaceURI;
    const wchar_t* lpctLocalName;
    bool bNamespaceAttribute;
    bool bNilAttribute;
};

const SKindRow s_kindRows[] = {
    {s_lpctXsi, L"type", true, false},
    {s_lpctXsi, L"schemaLocation", true, false},
    {s_lpctXsi, L"noNamespaceSchemaLocation", true, false},
    {s_lpctXsi, L"xmlns", true, false},
    {s_lpctXsi, L"nil", false, true},
    {s_lpctXsi, L"foo", false, false},
    {s_lpctXsi, L"Type", false, false},
    {s_lpctXsi, L"", false, false},
    {s_lpctXmlns, L"type", true, false},
    {s_lpctXmlns, L"schemaLocation", true, false},
    {s_lpctXmlns, L"noNamespaceSchemaLocation", true, false},
    {s_lpctXmlns, L"xmlns", true, false},
    {s_lpctXmlns, L"nil", false, true},
    {s_lpctXmlns, L"po", false, false},
    {L"", L"type", false, false},
    {L"", L"nil", false, false},
    {L"", L"xmlns", false, false},
    {L"urn:x", L"type", false, false},
    {L"urn:x", L"nil", false, false},
    {L"http://www.w3.org/2001/XMLSchema-instance/", L"type", false, false},
    {L"http://www.w3.org/2000/xmlns", L"type", false, false},
    {L"HTTP://www.w3.org/2001/XMLSchema-instance", L"nil", false, false},
};

TEST(XmlAttribute, NamespaceAndNilAttributesAreToldByNamespaceAndLocalName)
{
    for (const SKindRow& row : s_kindRows)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctNamespaceURI) + " " + QvTest::Show(row.lpctLocalName));
        const CFreeAttribute attribute(row.lpctLocalName, L"v", row.lpctNamespaceURI);
        EXPECT_EQ(row.bNamespaceAttribute, attribute.IsNamespaceAttribute());
        EXPECT_EQ(row.bNilAttribute, attribute.IsNilAttribute());
    }
}

TEST(XmlAttribute, XsiTypeIsANamespaceAttributeAndTypeWithoutNamespaceIsNot)
{
    CXmlDocument document;
    document.LoadXml("<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='T' type='t' xsi:foo='f' "
                     "xsi:nil='1'/>");
    const auto& attributes = document.GetDocumentElement()->GetAttributes();
    ASSERT_EQ(4u, attributes.size());
    EXPECT_TRUE(attributes[0]->IsNamespaceAttribute());
    EXPECT_FALSE(attributes[1]->IsNamespaceAttribute());
    EXPECT_FALSE(attributes[2]->IsNamespaceAttribute());
    EXPECT_FALSE(attributes[2]->IsNilAttribute());
    EXPECT_TRUE(attributes[3]->IsNilAttribute());
}

TEST(XmlAttribute, HoldsLocalNameValueAndNamespace)
{
    const CFreeAttribute attribute(L"name", L"value", L"urn:x");
    EXPECT_TEXT(L"name", attribute.GetLocalName());
    EXPECT_TEXT(L"value", attribute.GetValue());
    EXPECT_TEXT(L"urn:x", attribute.GetNamespaceURI());
}

TEST(XmlAttribute, TextGivenAsWholeCodePointsIsHeldAsCodeUnits)
{
    const CFreeAttribute attribute(L"\U0001F600", L"\U0001F601", L"\U0001F602");
    EXPECT_TEXT(L"\xD83D\xDE00", attribute.GetLocalName());
    EXPECT_TEXT(L"\xD83D\xDE01", attribute.GetValue());
    EXPECT_TEXT(L"\xD83D\xDE02", attribute.GetNamespaceURI());
}

TEST(XmlAttribute, ACopyOutlivesTheDocumentOfItsSource)
{
    auto pDocument = std::make_unique<CXmlDocument>();
    pDocument->LoadXml("<a xmlns:x='urn:a-namespace' x:attribute='a long value'/>");
    const CXmlAttribute& source = *pDocument->GetDocumentElement()->GetAttributes()[0];
    // A copy is not counted while its destruction is, so these stay.
    static const CFreeAttribute* const s_pCopy = new CFreeAttribute(source);
    CFreeAttribute assigned(L"n", L"v", L"u");
    static_cast<CXmlAttribute&>(assigned) = source;
    pDocument.reset();
    for (const CXmlAttribute* pAttribute :
         {static_cast<const CXmlAttribute*>(s_pCopy), static_cast<const CXmlAttribute*>(&assigned)})
    {
        EXPECT_TEXT(L"attribute", pAttribute->GetLocalName());
        EXPECT_TEXT(L"a long value", pAttribute->GetValue());
        EXPECT_TEXT(L"urn:a-namespace", pAttribute->GetNamespaceURI());
    }
}

TEST(XmlAttribute, AnAttributeOfADocumentCanTakeOverThatOfAnother)
{
    CXmlDocument target;
    target.LoadXml("<a b='c'/>");
    {
        CXmlDocument source;
        source.LoadXml("<a xmlns:x='urn:a-namespace' x:attribute='a long value'/>");
        *target.GetDocumentElement()->GetAttributes()[0] = *source.GetDocumentElement()->GetAttributes()[0];
    }
    EXPECT_TEXT(L"a long value", target.GetDocumentElement()->GetAttribute(L"attribute", L"urn:a-namespace"));
}

TEST(XmlAttribute, AssigningAnAttributeToItselfChangesNothing)
{
    CFreeAttribute attribute(L"name", L"value", L"urn:x");
    const CXmlAttribute& self = attribute;
    static_cast<CXmlAttribute&>(attribute) = self;
    EXPECT_TEXT(L"name", attribute.GetLocalName());
    EXPECT_TEXT(L"value", attribute.GetValue());
}

TEST(XmlAttribute, InstancesAreCounted)
{
    const QvTest::SInstanceCounts before = QvTest::CountInstances(L"CXmlAttribute");
    {
        const CFreeAttribute attribute(L"name", L"value", L"urn:x");
        EXPECT_EQ(before.nLiving + 1, QvTest::CountInstances(L"CXmlAttribute").nLiving);
        EXPECT_EQ(before.nTotal + 1, QvTest::CountInstances(L"CXmlAttribute").nTotal);
    }
    EXPECT_EQ(before.nLiving, QvTest::CountInstances(L"CXmlAttribute").nLiving);
}

TEST(XmlAttribute, CallersCannotDestroyAnAttribute)
{
    EXPECT_FALSE(std::is_destructible_v<CXmlAttribute>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CFreeAttribute>);
}

} // namespace
