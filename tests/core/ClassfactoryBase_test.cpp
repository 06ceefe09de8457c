#include "quiver/core/ClassfactoryBase.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "tests/support/Expect.h"

using namespace QvXmlLib9;

namespace
{

struct CFactory : CClassfactoryBase
{
    using CClassfactoryBase::GetElementType;
    using CClassfactoryBase::GetElementTypeNamespaceUri;
};

/// An element that belongs to no document.
struct CFreeElement : CXmlElement
{
    CFreeElement()
        : CXmlElement(nullptr)
    {
    }
    ~CFreeElement() override = default;
    using CXmlElement::AddAttribute;
    using CXmlElement::SetNamespace;
};

const char s_xsi[] = "http://www.w3.org/2001/XMLSchema-instance";

} // namespace

TEST(ClassfactoryBase, DecodesTheTypeOfTheFirstChild)
{
    const std::string strXsi = std::string(" xmlns:xsi='") + s_xsi + "' ";
    const struct
    {
        const char* lpcCase;
        std::string strXml;
        const wchar_t* lpctType;
        const wchar_t* lpctNamespace;
    } cases[] = {
        {"a declared prefix", "<r xmlns:a='urn:x'" + strXsi + "><e xsi:type='a:T'/></r>", L"T", L"urn:x"},
        {"no prefix: the element's own namespace", "<r" + strXsi + "><e xmlns='urn:y' xsi:type='T'/></r>", L"T",
         L"urn:y"},
        {"no prefix inside a default namespace of the document",
         "<r xmlns='urn:d' xmlns:p='urn:p'" + strXsi + "><p:e xsi:type='T'/></r>", L"T", L"urn:p"},
        {"an undeclared prefix", "<r" + strXsi + "><e xmlns='urn:y' xsi:type='u:T'/></r>", L"T", L"urn:y"},
        {"two colons: the prefix ends at the first", "<r xmlns:a='urn:x'" + strXsi + "><e xsi:type='a:b:T'/></r>",
         L"b:T", L"urn:x"},
        {"no type", "<r><e xmlns='urn:y'/></r>", L"", L"urn:y"},
        {"an empty type", "<r" + strXsi + "><e xmlns='urn:y' xsi:type=''/></r>", L"", L"urn:y"},
        {"the last declaration of a prefix counts, not the one in scope",
         "<r xmlns:a='urn:x'" + strXsi + "><e xsi:type='a:T'/><f xmlns:a='urn:later'/></r>", L"T", L"urn:later"},
        {"an attribute type of no namespace is not looked at", "<r><e xmlns='urn:y' type='T'/></r>", L"", L"urn:y"},
    };
    for (const auto& row : cases)
    {
        SCOPED_TRACE(row.lpcCase);
        CXmlDocument document;
        document.LoadXml(row.strXml.c_str());
        CXmlElement* const pElement = document.GetDocumentElement()->GetFirstElement();
        EXPECT_TEXT(row.lpctType, CFactory::GetElementType(pElement));
        EXPECT_TEXT(row.lpctNamespace, CFactory::GetElementTypeNamespaceUri(pElement));
    }
}

TEST(ClassfactoryBase, AnElementWithoutADocumentHasNoDeclarations)
{
    CFreeElement element;
    element.SetNamespace(L"urn:own");
    element.AddAttribute(L"type", L"a:T", L"http://www.w3.org/2001/XMLSchema-instance");
    EXPECT_TEXT(L"T", CFactory::GetElementType(&element));
    EXPECT_TEXT(L"urn:own", CFactory::GetElementTypeNamespaceUri(&element));
}

TEST(ClassfactoryBase, WithoutNamespaceProcessingThereIsNoTypeToDecode)
{
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    CXmlDocument document(context);
    document.LoadXml("<r><e xsi:type='u:T'/></r>");
    CXmlElement* const pElement = document.GetDocumentElement()->GetFirstElement();
    // The attribute keeps its prefix in its local name there, so it is not xsi:type.
    EXPECT_TEXT(L"", CFactory::GetElementType(pElement));
    EXPECT_TEXT(L"", CFactory::GetElementTypeNamespaceUri(pElement));
}
