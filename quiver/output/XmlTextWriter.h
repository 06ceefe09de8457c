#pragma once

#include "quiver/foundation/XmlSerializationTypes.h"
#include "quiver/output/XmlWriter.h"

#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CTextStream;

/// Writes XML text into a `CTextStream`.
///
///     CTextStream stream(Encoding_UTF8);
///     CXmlTextWriter writer(&stream);
///     writer.Open();
///     writer.SetFormatted(false);
///     writer.WriteXmlDeclaration();
///     writer.StartElement(L"a", L"");
///     writer.WriteText(L"1 < 2", ItemType_string);
///     writer.EndElement();
///     writer.Close();
///     stream.GetText(); // <?xml version="1.0" encoding="UTF-8"?> LF <a>1 &lt; 2</a>
///
/// Formatted output has one element to a line, indented by one tab a level; an element's text stands directly behind
/// its start tag. Line feeds in text become the chosen line ending, in attributes "&#xA;". Text must not hold carriage
/// returns: they stop a diagnostic build at an assertion and are dropped in others. Text that begins with "<![CDATA["
/// is written as it is.
///
/// A namespace that has no prefix gets a generated one (AA, AB, ...), declared on the element that needs it first. A
/// default namespace or a prefix set while an element is open changes how names are written but is not declared.
class CXmlTextWriter : public CXmlWriter
{
public:
    /// @param pStream where to; must live as long as the writer. Not owned.
    explicit CXmlTextWriter(CTextStream* pStream);
    ~CXmlTextWriter() override;

    /// Opens the stream, which forgets what it held.
    void Open() override;

    /// Closes the stream, so that a file is complete, and then checks that no element is open.
    /// @throws CQvException "An Element has not been closed."
    void Close() override;

    /// Writes the comment on a line of its own. It is escaped like text; "--" is not looked for.
    void WriteComment(std::wstring_view svText) override;

    /// Writes the instruction as it is, and a blank line behind it.
    void WriteProcessingInstruction(std::wstring_view svText) override;

    /// Writes the text as it is, with line endings around it, where the output stands: inside the start tag if that is
    /// still open.
    void WriteInlineSchema(std::wstring_view svText) override;

    void StartElement(std::wstring_view svName, std::wstring_view svNamespace) override;
    void WriteText(std::wstring_view svValue, ItemType eType) override;
    void EndElement() override;
    void WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace, std::wstring_view svValue,
                        ItemType eType) override;
    void WriteXsiType(std::wstring_view svTypeNamespace, std::wstring_view svTypeName, ItemType eType) override;
    void WriteXsiNil() override;

    /// Whether output is indented, one element to a line; initially it is. To be set while no element is open.
    void SetFormatted(bool bFormatted);
    bool GetFormatted() const { return m_bFormatted; }

    /// The line ending; initially a line feed.
    /// @throws CQvException "Invalid EOL type." for anything but the two enumerators; nothing is changed then.
    void SetEOLType(EOLType eEOLType);
    EOLType GetEOLType() const { return m_eEOLType; }

    /// Writes the XML declaration, which names the stream's encoding, on a line of its own. To be called ahead of the
    /// root.
    void WriteXmlDeclaration();

    /// Writes a line that must precede the root, such as a document type declaration, as it is.
    /// @throws CQvException "Headed directives must appear before an Element has been added."
    void WriteHeadedDirective(std::wstring_view svText);

    /// Writes text as it is, and a line ending behind it if output is formatted. To put the output of another writer
    /// into the open element, call CloseStartTag first.
    void WriteRaw(std::wstring_view svText);

    /// Counts a child of the open element, if there is one, and ends its start tag if that has not been done.
    void CloseStartTag();

private:
    std::wstring DeclareOnElement(std::wstring_view svPrefix, std::wstring_view svNamespace);

    void AppendIndent(const CXmlWriterContext& context);
    void AppendLine(std::wstring_view svText);
    void AppendStart(CXmlWriterContext& context);
    void AppendEnd(const CXmlWriterContext& context);
    void SetTags(CXmlWriterContext& context, const SElementPrefix& prefix);
    void AppendDeclaration(std::wstring_view svPrefix, std::wstring_view svNamespace);
    void AppendRootDeclarations();
    void AppendXsiAttribute(std::wstring_view svName, std::wstring_view svValue);
    template <bool bAttribute>
    void WriteEscaped(std::wstring_view svText);
    template <bool bAttribute>
    void AppendEscape(wchar_t c);
    void FlushIfLong();

    std::wstring m_strEOL = L"\n";
    EOLType m_eEOLType = EOLType_LF;
    bool m_bFormatted = true;
    /// The stream carries its text on.
    bool m_bFlushes = true;
    CTextStream* m_pStream;
};

} // namespace QvXmlLib9
