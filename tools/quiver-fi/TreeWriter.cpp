#include "tools/quiver-fi/TreeWriter.h"

#include "tools/common/Progress.h"
#include "tools/quiver-fi/Text.h"

#include <vector>

namespace quiver_fi
{

namespace
{

using EKind = CDocument::EKind;

/// What the content of an element is like.
struct SContent
{
    bool bPreserve = false;
    bool bText = false;
    bool bChildren = false;
};

/// One record for each element, in document order.
std::vector<SContent> SurveyContent(const CDocument& document)
{
    std::vector<SContent> contents;
    std::vector<std::size_t> open;
    for (const CDocument::SEvent& event : document.GetEvents())
    {
        switch (event.eKind)
        {
        case EKind::Start:
        {
            SContent content;
            if (!open.empty())
            {
                contents[open.back()].bChildren = true;
                content.bPreserve = contents[open.back()].bPreserve;
            }
            open.push_back(contents.size());
            contents.push_back(content);
            break;
        }
        case EKind::Attribute:
        {
            const CDocument::SName& name = document.GetName(event.dwName);
            const std::string_view svValue = document.GetValue(event.range);
            if (name.dwNamespace == CDocument::s_dwXmlNamespace && name.strLocalName == "space")
                contents[open.back()].bPreserve =
                    svValue == "preserve" || (contents[open.back()].bPreserve && svValue != "default");
            break;
        }
        case EKind::Text:
            contents[open.back()].bText = contents[open.back()].bText || !IsBlank(document.GetValue(event.range));
            break;
        case EKind::End:
            open.pop_back();
            break;
        case EKind::Declaration:
            break;
        }
    }
    return contents;
}

} // namespace

void WriteTree(const CDocument& document, const CNamespacePlan& plan, ITreeSink& sink, const SStreams& streams)
{
    const std::vector<SContent> contents = SurveyContent(document);
    const std::vector<CDocument::SEvent>& events = document.GetEvents();
    quiver_tools::CProgress progress(streams.err, streams.bErrIsTerminal, "quiver-fi: writing", events.size());
    std::size_t nElement = 0;
    std::vector<std::size_t> open;
    for (std::size_t nEvent = 0; nEvent < events.size(); ++nEvent)
    {
        progress.Reach(nEvent);
        const CDocument::SEvent& event = events[nEvent];
        switch (event.eKind)
        {
        case EKind::Start:
            open.push_back(nElement);
            sink.StartElement(event.dwName, contents[nElement].bText || contents[nElement].bPreserve);
            ++nElement;
            break;
        case EKind::Attribute:
            sink.WriteAttribute(event.dwName, plan.GetValue(nEvent));
            break;
        case EKind::Text:
        {
            const SContent& content = contents[open.back()];
            if (content.bText || content.bPreserve || !content.bChildren)
                sink.WriteText(document.GetValue(event.range));
            break;
        }
        case EKind::End:
            sink.EndElement();
            open.pop_back();
            break;
        case EKind::Declaration:
            break;
        }
    }
}

} // namespace quiver_fi
