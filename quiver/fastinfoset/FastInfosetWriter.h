#pragma once

#include "quiver/fastinfoset/FIOctetWriter.h"
#include "quiver/fastinfoset/FIRepetition.h"
#include "quiver/fastinfoset/FIVocabulary.h"
#include "quiver/foundation/XmlSerializationTypes.h"
#include "quiver/output/XmlWriter.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CBinaryStream;
class CFastInfosetContext;

/// Writes a Fast Infoset document (ITU-T X.891) into a `CBinaryStream`.
///
///     CBinaryStream stream;
///     CFastInfosetWriter writer(&context.GetFIContext(), &stream);
///     writer.Open();
///     writer.WriteHeader(FInfoDecl_None);
///     ...write the root element...
///     writer.WriteTerminator();
///     writer.Close();
///     CBinaryData document = stream.GetData();
///
/// Names are written once and by index afterwards, and so are short values; values are encoded by their item type as
/// the context says. Comments, processing instructions and in-line schemas are not written.
///
/// Text that follows a child element comes ahead of the child's end in the document, so that a reader takes it for the
/// child's: mixed content behind a child keeps its place only behind a call of EndChild. Unlike in XML text, empty text
/// ends the start tag, after which attributes are refused.
class CFastInfosetWriter : public CXmlWriter
{
public:
    /// @param pContext the options, only read.
    /// @param pStream where to. Neither is owned; both must live as long as the writer.
    CFastInfosetWriter(const CFastInfosetContext* pContext, CBinaryStream* pStream);
    ~CFastInfosetWriter() override;

    /// Does nothing, like the two below: Fast Infoset documents are written without them.
    void WriteComment(std::wstring_view svText) override;
    void WriteProcessingInstruction(std::wstring_view svText) override;
    void WriteInlineSchema(std::wstring_view svText) override;

    void StartElement(std::wstring_view svName, std::wstring_view svNamespace) override;
    void WriteText(std::wstring_view svValue, ItemType eType) override;

    /// Ends the open element. A root with neither attributes nor content stops a diagnostic build here.
    void EndElement() override;

    void WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace, std::wstring_view svValue,
                        ItemType eType) override;

    /// Writes the type of the open element. If the namespace of the type is not known yet, the attribute bears the name
    /// of the type itself in place of `xsi:type` (docs/compatibility.md: Type attributes without a prefix).
    void WriteXsiType(std::wstring_view svTypeNamespace, std::wstring_view svTypeName, ItemType eType) override;

    void WriteXsiNil() override;

    /// Writes what precedes the root: the XML declaration if one is asked for, the identification, and the URI of the
    /// agreed vocabulary if the context uses one. To be called once, behind Open.
    /// @throws CQvException "Failed to write FastInfoset. Invalid XML declaration value [%d]"
    void WriteHeader(FInfoDecl eDecl);

    /// Writes the end of the child that ended last, if it is still owed, so that text may follow it.
    void EndChild();

    /// Ends the document. To be called once, after the root has been ended.
    void WriteTerminator();

    /// Gives the stream what is left, and then checks that no element is open.
    /// @throws CQvException "An Element has not been closed."
    void Close() override;

private:
    std::wstring DeclareOnElement(std::wstring_view svPrefix, std::wstring_view svNamespace);

    struct SStringEncoding;

    void FlushPendingElement(bool bAttributes);
    void WriteRootNamespaces(unsigned char byCurrent);
    bool WriteOwnNamespaces(const CXmlWriterContext& context, unsigned char byCurrent);
    std::wstring DeclareAtRoot(const std::wstring& strNamespace, const std::wstring& strPrefix);
    void WriteNamespaceItem(const std::wstring& strPrefix, const std::wstring& strNamespace);
    void WriteElementName(CXmlWriterContext& context, unsigned char byCurrent);
    void EndStartTag(CXmlWriterContext& context);
    CXmlWriterContext& BeginAttribute();

    std::wstring_view GetPrefix(CXmlWriterContext& context, std::wstring_view svNamespace);
    void WriteAttributeName(const CFINameMap::SName& name);
    void WriteLiteralElementName(unsigned char byCurrent, const CFINameMap::SName& name);
    void EnterName(const CFINameMap::SName& name, CFINameMap& map);
    void WriteNameParts(const CFINameMap::SName& name);
    void WriteIdentifyingString(std::wstring_view svText, CFIIndexMap& map);
    void WriteLiteral(std::wstring_view svText);
    std::string_view ToUtf8(std::wstring_view svText);

    bool MayRepeat(std::uint64_t nUnits);
    bool MayRepeatName(std::uint64_t nUnits);

    void WriteAttributeValue(std::wstring_view svValue, ItemType eType);
    void WriteCharacterChunk(std::wstring_view svValue, ItemType eType);
    void WriteEncodedString(const SStringEncoding& place, unsigned char byCurrent, std::wstring_view svValue,
                            ItemType eType);
    void WriteOtherString(const SStringEncoding& place, unsigned char byCurrent, std::wstring_view svValue,
                          ItemType eType);
    bool TryWriteAscii(const SStringEncoding& place, unsigned char byCurrent, std::wstring_view svValue,
                       ItemType eType);
    unsigned char BeginRestrictedAlphabet(const SStringEncoding& place, unsigned char byCurrent, std::uint32_t dwIndex);
    unsigned char BeginEncodingAlgorithm(const SStringEncoding& place, unsigned char byCurrent, std::uint32_t dwIndex);
    unsigned char WriteIndex(const SStringEncoding& place, unsigned char byCurrent, std::uint32_t dwIndex);

    const CFastInfosetContext* m_pFIContext;
    /// The element whose start has been asked for but not written: whether it has attributes decides its first octet.
    CXmlWriterContext* m_pPendingContext = nullptr;
    /// The end of an element is owed. It takes half an octet, which the next end may share.
    bool m_bTerminatorPending = false;
    /// An element has just begun, and what is written next will be the first text that a reader finds in it.
    bool m_bFirstText = false;
    /// What the document begins with, and the document's own maps, which grow.
    const CFIVocabulary& m_agreed;
    CFIVocabulary::SMaps m_maps;
    CFIOctetWriter m_out;
    CFIRepetition m_repetition;
    /// How many units a reader may make of a short value beyond those that were written.
    const std::uint32_t m_dwDecodedSurplus;
    /// Prefix and qualifier of the last element's name, and for which namespace and scope they were found.
    std::wstring m_strElementPrefix;
    CFINameMap::Qualifier m_elementQualifier = CFINameMap::s_nNoQualifier;
    std::uint64_t m_nQualifierNamespaceId = 0;
    std::uint64_t m_nQualifierVersion = 0;
    /// Octets of the value in progress, unless it is ASCII, which goes straight to its place.
    std::string m_strOctets;
};

} // namespace QvXmlLib9
