#include "tools/quiver-fi/TreeWriter.h"

#include "tools/quiver-fi/NamespacePlan.h"
#include "tools/quiver-fi/Progress.h"

#include "quiver/foundation/Encoder.h"

#include <cstdint>
#include <ostream>
#include <vector>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

/// Calls `fnEnter` and `fnLeave` with every element, without recursion.
template <class FnEnter, class FnLeave>
void WalkTree(CXmlElement* pElement, FnEnter&& fnEnter, FnLeave&& fnLeave)
{
    std::vector<CXmlElement*> open;
    while (pElement != nullptr)
    {
        fnEnter(*pElement);
        if (CXmlElement* const pChild = pElement->GetFirstElement())
        {
            open.push_back(pElement);
            pElement = pChild;
            continue;
        }
        fnLeave();
        CXmlElement* pNext = pElement->GetNextSiblingElement();
        while (pNext == nullptr && !open.empty())
        {
            fnLeave();
            pNext = open.back()->GetNextSiblingElement();
            open.pop_back();
        }
        pElement = pNext;
    }
}

bool IsBlank(const std::wstring& strText)
{
    return strText.find_first_not_of(L" \t\n\r") == std::wstring::npos;
}

/// What is known before the first element is written.
struct SFacts
{
    std::uint64_t nElements = 0;
    std::uint64_t nMixed = 0;
    std::wstring strFirstMixed;
};

SFacts LookAhead(CXmlElement* pRoot, CNamespacePlan& namespaces)
{
    SFacts facts;
    std::wstring strBuffer;
    const auto fnEnter = [&](CXmlElement& element)
    {
        ++facts.nElements;
        namespaces.AddElement(element);
        if (element.GetFirstElement() != nullptr && !IsBlank(element.GetText(strBuffer)) && facts.nMixed++ == 0)
            facts.strFirstMixed = element.GetLocalName();
    };
    WalkTree(pRoot, fnEnter, [] {});
    return facts;
}

void WarnOfMixedContent(const SFacts& facts, const SStreams& streams)
{
    if (facts.nMixed == 0)
        return;
    std::string strName;
    AppendUtf8(strName, facts.strFirstMixed);
    streams.err << "quiver-fi: warning: text among child elements goes ahead of them (elements with such text: "
                << facts.nMixed << ", the first is <" << strName << ">)\n";
}

} // namespace

void WriteTree(CXmlDocument& document, ITreeSink& sink, const SStreams& streams)
{
    CXmlElement* const pRoot = document.GetDocumentElement();
    CNamespacePlan namespaces(document);
    const SFacts facts = LookAhead(pRoot, namespaces);
    WarnOfMixedContent(facts, streams);
    namespaces.Declare(sink);

    CProgress progress(streams, "writing", facts.nElements);
    std::uint64_t nElements = 0;
    std::wstring strBuffer;
    const auto fnEnter = [&](CXmlElement& element)
    {
        progress.Reach(++nElements);
        sink.StartElement(element.GetLocalName(), element.GetNamespaceURI());
        for (const CXmlAttribute* const pAttribute : element.GetAttributes())
        {
            sink.WriteAttribute(pAttribute->GetLocalName(), pAttribute->GetNamespaceURI(),
                                namespaces.GetValue(*pAttribute, strBuffer));
        }
        const std::wstring& strText = element.GetText(strBuffer);
        if (element.GetFirstElement() == nullptr || !IsBlank(strText))
            sink.WriteText(strText);
    };
    WalkTree(pRoot, fnEnter, [&sink] { sink.EndElement(); });
}

} // namespace quiver_fi
