// Any bytes as a document: text in any encoding, gzip, zlib, Fast Infoset. Every node of what was read is looked at.

#include "fuzz/FuzzInput.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"

#include <vector>

using namespace QvXmlLib9;

namespace
{

void Load(const CXmlSerializationContext& context, std::vector<std::uint8_t> bytes)
{
    CXmlDocument document(context);
    document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
    std::vector<CXmlElement*> open{document.GetDocumentElement()};
    while (!open.empty())
    {
        CXmlElement* const pElement = open.back();
        open.pop_back();
        fuzz::Require(pElement->GetDocument() == &document, "every element knows its document");
        for (const CXmlAttribute* pAttribute : pElement->GetAttributes())
            pElement->GetAttribute(pAttribute->GetLocalName(), pAttribute->GetNamespaceURI());
        for (const wchar_t c : pElement->GetText())
            fuzz::Require(c != 0 && fuzz::IsUtf16(static_cast<char32_t>(c)) && c != L'\r',
                          "text is UTF-16 without carriage returns");
        for (CXmlElement* pChild = pElement->GetFirstElement(); pChild; pChild = pChild->GetNextSiblingElement())
            open.push_back(pChild);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    CXmlSerializationContext plain;
    plain.SetSchemaType(SchemaType_NoNamespaces);
    plain.SetStripCDATA(false);
    for (const CXmlSerializationContext* pContext : {&CXmlSerializationContext::GetDefaultContext(), &plain})
        fuzz::Succeeds([&] { Load(*pContext, std::vector<std::uint8_t>(pData, pData + nSize)); });
    return 0;
}
