// Any bytes as a Fast Infoset document for quiver-fi: listed, and if it can be read, encoded again and read as it was.

#include "fuzz/FuzzInput.h"

#include "tools/quiver-fi/Inspector.h"
#include "tools/quiver-fi/TreeSinks.h"
#include "tools/quiver-fi/TreeWriter.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/BinaryStream.h"

#include <sstream>
#include <stdexcept>

using namespace QvXmlLib9;

namespace
{

/// Streams of a program that nobody listens to.
struct SNoStreams
{
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    quiver_fi::SStreams streams{in, out, err};
};

/// Stands for a name without characters. Texts with a zero unit of their own are passed over with it.
constexpr wchar_t s_cNoName = 0;

void ShowName(std::wstring& strShown, const std::wstring& strNamespace, const std::wstring& strLocalName)
{
    strShown += strNamespace + L'\x1' + strLocalName + L'\x1';
    if (strLocalName.empty())
        strShown += s_cNoName;
}

/// Everything that the tree has, one line for each node.
std::wstring Show(CXmlElement* pRoot)
{
    std::wstring strShown;
    std::vector<CXmlElement*> open{pRoot};
    while (!open.empty())
    {
        CXmlElement* const pElement = open.back();
        open.pop_back();
        ShowName(strShown, pElement->GetNamespaceURI(), pElement->GetLocalName());
        for (const CXmlAttribute* const pAttribute : pElement->GetAttributes())
        {
            ShowName(strShown, pAttribute->GetNamespaceURI(), pAttribute->GetLocalName());
            // The prefix of a type may become another one.
            if (!pAttribute->IsNamespaceAttribute())
                strShown += pAttribute->GetValue();
            strShown += L'\x1';
        }
        const bool bLeaf = pElement->GetFirstElement() == nullptr;
        const std::wstring& strText = pElement->GetText();
        if (bLeaf || strText.find_first_not_of(L" \t\n\r") != std::wstring::npos)
            strShown += strText;
        strShown += L'\n';
        for (CXmlElement* pChild = pElement->GetFirstElement(); pChild; pChild = pChild->GetNextSiblingElement())
            open.push_back(pChild);
    }
    return strShown;
}

CBinaryData Write(CXmlDocument& document, bool bSuggestedValues)
{
    CFastInfosetContext context;
    if (bSuggestedValues)
        context.SetSuggestedValues();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    quiver_fi::CFastInfosetSink sink(writer, bSuggestedValues);
    SNoStreams none;
    quiver_fi::WriteTree(document, sink, none.streams);
    writer.WriteTerminator();
    writer.Close();
    return stream.GetData();
}

void Load(CXmlDocument& document, const CBinaryData& data)
{
    document.LoadXmlStream(const_cast<unsigned char*>(data.GetData()), data.GetLength());
}

/// Whether the writer can take the tree: no empty names, which damaged UTF-8 makes, and no text that UTF-8 has no form
/// for.
bool CanBeWritten(const std::wstring& strShown)
{
    std::string strUtf8;
    return AppendUtf8(strUtf8, strShown) && strShown.find(s_cNoName) == std::wstring::npos;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view octets(reinterpret_cast<const char*>(pData), nSize);
    try
    {
        SNoStreams none;
        quiver_fi::Inspect(octets, false, none.streams);
    }
    catch (const std::runtime_error&)
    {
        // What is wrong with the document has been said.
    }
    if (!quiver_fi::IsFastInfoset(octets))
        return 0;

    const CXmlSerializationContext context;
    CXmlDocument document(context);
    std::vector<std::uint8_t> bytes(pData, pData + nSize);
    if (!fuzz::Succeeds([&] { document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(nSize)); }))
        return 0;
    const std::wstring strShown = Show(document.GetDocumentElement());
    if (!CanBeWritten(strShown))
        return 0;
    for (const bool bSuggestedValues : {false, true})
    {
        CXmlDocument again(context);
        Load(again, Write(document, bSuggestedValues));
        fuzz::Require(Show(again.GetDocumentElement()) == strShown, "what is written is read as it was");
    }
    return 0;
}
