#pragma once

#include "tools/quiver-fi/NamespacePlan.h"
#include "tools/quiver-fi/TreeWriter.h"

#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <string>
#include <vector>

namespace quiver_fi
{

/// Writes a document onto a Fast Infoset writer.
class CFastInfosetSink : public ITreeSink
{
public:
    /// @param writer opened, its header written. Like the others it must live as long as the sink.
    /// @param bSuggestedValues choose an item type for each value by what it looks like; the writer's context has the
    ///        suggested encodings then.
    CFastInfosetSink(const CDocument& document, const CNamespacePlan& plan, QvXmlLib9::CFastInfosetWriter& writer,
                     bool bSuggestedValues);

    /// @throws std::runtime_error if there are more names of elements than the writer has numbers for.
    void StartElement(CDocument::NameId dwName, bool bInline) override;
    void WriteAttribute(CDocument::NameId dwName, std::string_view svValue) override;
    void WriteText(std::string_view svText) override;
    void EndElement() override;

private:
    /// Names as the writer takes them.
    struct SWideName
    {
        std::wstring strLocalName;
        std::wstring strNamespace;
        bool bKnown = false;
        bool bElement = false;
    };

    SWideName& FindName(CDocument::NameId dwName);
    QvXmlLib9::ItemType GetType(const std::wstring& strValue) const;

    const CDocument& m_document;
    QvXmlLib9::CFastInfosetWriter& m_writer;
    bool m_bSuggestedValues;
    bool m_bEmpty = false;
    std::size_t m_nElementNames = 0;
    std::vector<SWideName> m_names;
    std::wstring m_strUnits;
};

/// How XML text is laid out.
struct STextForm
{
    /// Line breaks and indentation between elements, except where there is text among them.
    bool bFormat = true;
    std::string_view svEOL = "\n";
};

/// Writes a document as XML text in UTF-8. Characters that a reader would change are written as references.
class CXmlTextSink : public ITreeSink
{
public:
    /// @param strOut takes the text. Like the others it must live as long as the sink.
    CXmlTextSink(const CDocument& document, const CNamespacePlan& plan, const STextForm& form, std::string& strOut);

    /// All four:
    /// @throws std::runtime_error if the text becomes longer than text that can be read.
    void StartElement(CDocument::NameId dwName, bool bInline) override;
    void WriteAttribute(CDocument::NameId dwName, std::string_view svValue) override;
    void WriteText(std::string_view svText) override;
    void EndElement() override;

private:
    struct SOpen
    {
        CDocument::NameId dwName;
        bool bInline;
        bool bChildren;
    };

    void AppendName(CDocument::NameId dwName, bool bElement);
    void AppendAttribute(std::string_view svName, std::string_view svValue);
    void AppendDeclarations();
    void BreakLine(std::size_t nDepth);
    void CloseStartTag();
    void CheckLength() const;

    const CDocument& m_document;
    const CNamespacePlan& m_plan;
    STextForm m_form;
    std::string& m_strOut;
    std::vector<SOpen> m_open;
    bool m_bStartTagOpen = false;
};

} // namespace quiver_fi
