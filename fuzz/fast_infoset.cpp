// Any bytes behind the identification of a Fast Infoset document, with and without a vocabulary agreed on. Every node
// of what was read is looked at.

#include "fuzz/FuzzInput.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"

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
        for (const CXmlAttribute* pAttribute : pElement->GetAttributes())
            pElement->GetAttribute(pAttribute->GetLocalName(), pAttribute->GetNamespaceURI());
        for (const wchar_t c : pElement->GetText())
            fuzz::Require(fuzz::IsUtf16(static_cast<char32_t>(c)), "text is UTF-16");
        for (CXmlElement* pChild = pElement->GetFirstElement(); pChild; pChild = pChild->GetNextSiblingElement())
            open.push_back(pChild);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const CXmlSerializationContext s_plain;
    CXmlSerializationContext agreed;
    agreed.GetFIContext().GetVocabulary()->AddElement(L"p", L"urn:p", L"a");
    agreed.GetFIContext().GetVocabulary()->AddAttribute(L"", L"", L"b");
    agreed.GetFIContext().SetUseGeneratedVocabulary(true);
    std::vector<std::uint8_t> bytes{0xE0, 0x00, 0x00, 0x01};
    bytes.insert(bytes.end(), pData, pData + nSize);
    for (const CXmlSerializationContext* pContext : {&s_plain, static_cast<const CXmlSerializationContext*>(&agreed)})
        fuzz::Succeeds([&] { Load(*pContext, bytes); });
    return 0;
}
