#include "quiver/fastinfoset/FastInfosetWriter.h"

#include "quiver/fastinfoset/FIAlphabet.h"
#include "quiver/fastinfoset/FIDeclarations.h"
#include "quiver/fastinfoset/FastInfosetBinaryData.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/foundation/UnitRuns.h"
#include "quiver/output/UnitText.h"

#include <utility>

namespace QvXmlLib9
{

namespace
{

constexpr std::wstring_view s_svXmlNamespace = L"http://www.w3.org/XML/1998/namespace";

/// Names the agreed vocabulary where the context has no name for it.
constexpr std::wstring_view s_svDefaultVocabularyURI = L"urn:quiver:fastinfoset:default-vocabulary";

/// One end, or with the next one two, in half octets of ones.
constexpr unsigned char s_byEnd = 240;
constexpr unsigned char s_byTwoEnds = 255;

constexpr unsigned char s_byIndex = 128;
constexpr unsigned char s_byAttributes = 64;
constexpr unsigned char s_byNamespaceAttributes = 56;
constexpr unsigned char s_byLiteralElementName = 60;
constexpr unsigned char s_byLiteralAttributeName = 120;
constexpr unsigned char s_byHasPrefix = 2;
constexpr unsigned char s_byHasNamespace = 1;
constexpr unsigned char s_byDefaultNamespaceItem = 205;
constexpr unsigned char s_byPrefixedNamespaceItem = 207;
constexpr unsigned char s_byChunk = 128;
constexpr unsigned char s_byChunkIndex = 32;
constexpr unsigned char s_byAddValue = 64;
constexpr unsigned char s_byAddChunk = 16;

constexpr unsigned long s_ulCdata = 10;

/// Numbers and truth values are read back in a form of their own, which may be longer: "1e15" comes back as 16 digits.
constexpr std::uint32_t s_dwDecodedSurplus = 16;

std::uint32_t GetDecodedSurplus(const CFastInfosetContext& context)
{
    for (int n = ItemType_Invalid; n <= ItemType_XmlCollection; ++n)
    {
        if (context.GetEncoding(static_cast<ItemType>(n)).m_dwType != 0)
            return s_dwDecodedSurplus;
    }
    return 0;
}

unsigned char PartsOf(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    QV_ASSERT_MSG(svPrefix.empty() || !svNamespace.empty(), "!strNamespace.empty()");
    return static_cast<unsigned char>((svPrefix.empty() ? 0 : s_byHasPrefix) |
                                      (svNamespace.empty() ? 0 : s_byHasNamespace));
}

} // namespace

/// How an encoded string is written at the place where it stands: at the third bit of an octet with its length at the
/// fifth, or at the fifth with its length at the seventh.
struct CFastInfosetWriter::SStringEncoding
{
    unsigned char byAlphabet;
    unsigned char byAlgorithm;
    /// An index of 8 bits begins in the low bits of one octet and ends this far up in the next one.
    int nIndexShift;
    bool bAttribute;
    const wchar_t* lpctUnknown;

    void WriteLength(CFIOctetWriter& out, unsigned char byCurrent, std::size_t nLength) const
    {
        if (bAttribute)
            out.WriteLengthBit5(byCurrent, nLength);
        else
            out.WriteLengthBit7(byCurrent, nLength);
    }
};

CFastInfosetWriter::CFastInfosetWriter(const CFastInfosetContext* pContext, CBinaryStream* pStream)
    : CXmlWriter(L"CFastInfosetWriter",
                 [](CXmlWriter& writer, std::wstring_view svPrefix, std::wstring_view svNamespace)
                 { return static_cast<CFastInfosetWriter&>(writer).DeclareOnElement(svPrefix, svNamespace); })
    , m_pFIContext(pContext)
    , m_agreed(pContext->GetUseGeneratedVocabulary() ? *pContext->GetVocabulary() : CFIVocabulary::GetBuiltin())
    , m_maps(m_agreed.m_maps)
    , m_out(pStream)
    , m_dwDecodedSurplus(GetDecodedSurplus(*pContext))
{
}

CFastInfosetWriter::~CFastInfosetWriter() = default;

void CFastInfosetWriter::WriteComment(std::wstring_view /*strText*/)
{
}

void CFastInfosetWriter::WriteProcessingInstruction(std::wstring_view /*strText*/)
{
}

void CFastInfosetWriter::WriteInlineSchema(std::wstring_view /*strText*/)
{
}

void CFastInfosetWriter::WriteHeader(FInfoDecl eDecl)
{
    if (eDecl != FInfoDecl_None)
    {
        const auto nDecl = static_cast<std::size_t>(eDecl) - 1;
        if (nDecl >= g_fiDeclarations.size())
        {
            throw CQvException(FormatString(L"Failed to write FastInfoset. Invalid XML declaration value [%d]",
                                            static_cast<int>(eDecl)));
        }
        m_out.WriteOctets(g_fiDeclarations[nDecl]);
    }
    m_out.WriteOctets(g_svFIIdentification);
    if (!m_pFIContext->GetUseGeneratedVocabulary())
    {
        m_out.WriteOctet(0);
        return;
    }
    // An initial vocabulary, of which there is only the URI of the external one.
    m_out.WriteOctets(std::string_view("\x20\x10\x00", 3));
    std::wstring strBuffer;
    const std::wstring strURI = m_pFIContext->GetExternalVocabularyURI();
    const std::wstring_view svUnits = ToUnitText(strURI, strBuffer);
    WriteLiteral(svUnits.empty() ? s_svDefaultVocabularyURI : svUnits);
}

void CFastInfosetWriter::WriteTerminator()
{
    m_out.WriteOctet(m_bTerminatorPending ? s_byTwoEnds : s_byEnd);
}

void CFastInfosetWriter::Close()
{
    m_out.Flush();
    CXmlWriter::Close();
}

// --- Elements -------------------------------------------------------------------------------------------------------

void CFastInfosetWriter::StartElement(std::wstring_view svName, std::wstring_view svNamespace)
{
    FlushPendingElement(false);
    EndChild();
    if (m_pContext != nullptr)
    {
        ++m_pContext->m_dwChildCount;
        EndStartTag(*m_pContext);
    }
    m_pPendingContext = CreateContext(svName, svNamespace);
}

void CFastInfosetWriter::EndChild()
{
    if (!m_bTerminatorPending)
        return;
    m_out.WriteOctet(s_byEnd);
    m_bTerminatorPending = false;
}

void CFastInfosetWriter::FlushPendingElement(bool bAttributes)
{
    if (m_pPendingContext == nullptr)
        return;
    CXmlWriterContext& context = *m_pPendingContext;
    unsigned char byCurrent = 0;
    if (bAttributes)
    {
        context.m_bAttributesOpen = true;
        byCurrent = s_byAttributes;
    }
    if (m_pContext == nullptr)
    {
        WriteRootNamespaces(byCurrent);
        byCurrent = 0;
    }
    else if (HasOwnScope(context) && WriteOwnNamespaces(context, byCurrent))
    {
        byCurrent = 0;
    }
    WriteElementName(context, byCurrent);
    m_bFirstText = true;
    m_pContext = &context;
    m_pPendingContext = nullptr;
}

void CFastInfosetWriter::WriteRootNamespaces(unsigned char byCurrent)
{
    // Written even if there is nothing to declare: the map always holds the prefix "xml".
    m_out.WriteOctet(static_cast<unsigned char>(byCurrent | s_byNamespaceAttributes));
    if (!m_strDefaultNamespace.empty())
    {
        m_out.WriteOctet(s_byDefaultNamespaceItem);
        WriteIdentifyingString(m_strDefaultNamespace, m_maps.m_namespaceNameMap);
    }
    for (const auto& [strNamespace, strPrefix] : m_mapNamespaces)
    {
        // So is a longer URI (docs/compatibility.md: Namespaces that begin like another).
        if (strNamespace.compare(0, s_svXmlNamespace.size(), s_svXmlNamespace) == 0)
            continue;
        WriteNamespaceItem(strPrefix, strNamespace);
    }
    m_out.WriteOctet(s_byEnd);
}

void CFastInfosetWriter::WriteNamespaceItem(const std::wstring& strPrefix, const std::wstring& strNamespace)
{
    m_out.WriteOctet(s_byPrefixedNamespaceItem);
    WriteIdentifyingString(strPrefix, m_maps.m_prefixNameMap);
    WriteIdentifyingString(strNamespace, m_maps.m_namespaceNameMap);
}

/// What was declared for values. The prefixes of names need no declaration.
bool CFastInfosetWriter::WriteOwnNamespaces(const CXmlWriterContext& context, unsigned char byCurrent)
{
    const auto bindings = GetOwnBindings(context);
    if (bindings.empty())
        return false;
    m_out.WriteOctet(static_cast<unsigned char>(byCurrent | s_byNamespaceAttributes));
    for (const auto& [strPrefix, strNamespace] : bindings)
        WriteNamespaceItem(strPrefix, strNamespace);
    m_out.WriteOctet(s_byEnd);
    return true;
}

std::wstring CFastInfosetWriter::DeclareOnElement(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    std::wstring strBuffer;
    std::wstring strPrefixBuffer;
    const std::wstring strNamespace(ToUnitText(svNamespace, strBuffer));
    if (strNamespace.empty() || strNamespace == GetDefaultNamespace())
        return {};
    const auto itDocument = m_mapNamespaces.find(strNamespace);
    const std::wstring* const pstrKnown = FindPrefix(strNamespace);
    if (m_pPendingContext == nullptr ||
        (itDocument != m_mapNamespaces.end() && pstrKnown != nullptr && *pstrKnown == itDocument->second))
        return pstrKnown != nullptr ? *pstrKnown : std::wstring(svPrefix);
    // A prefix that names brought along is not declared yet.
    if (pstrKnown != nullptr && !pstrKnown->empty())
    {
        const std::wstring strKnown = *pstrKnown;
        SetNamespaceMapValue(*m_pPendingContext, strNamespace, strKnown);
        return DeclareAtRoot(strNamespace, strKnown);
    }
    return DeclareAtRoot(strNamespace,
                         BindPrefix(*m_pPendingContext, strNamespace, ToUnitText(svPrefix, strPrefixBuffer)));
}

/// The root declares what the document does.
std::wstring CFastInfosetWriter::DeclareAtRoot(const std::wstring& strNamespace, const std::wstring& strPrefix)
{
    if (m_pContext == nullptr)
        m_mapNamespaces[strNamespace] = strPrefix;
    return strPrefix;
}

void CFastInfosetWriter::WriteElementName(CXmlWriterContext& context, unsigned char byCurrent)
{
    if (IsTagCurrent(context))
    {
        m_out.WriteIntegerBit3(byCurrent, context.m_dwNameIndex);
        return;
    }
    CFINameMap& map = m_maps.m_elementNameMap;
    if (m_nQualifierNamespaceId != context.m_nNamespaceId || m_nQualifierVersion != GetScopeVersion())
    {
        // A generated prefix needs no declaration: the name carries its URI.
        const SElementPrefix& prefix = GetElementPrefix(context);
        m_strElementPrefix.clear();
        if (!prefix.bBare)
            m_strElementPrefix =
                prefix.pstrPrefix != nullptr ? *prefix.pstrPrefix : BindGeneratedPrefix(context, context.m_svNamespace);
        m_elementQualifier = map.FindQualifier(m_strElementPrefix, context.m_svNamespace);
        // A qualifier that is unknown will be known by the next element.
        m_nQualifierNamespaceId = m_elementQualifier == CFINameMap::s_nUnknownQualifier ? 0 : context.m_nNamespaceId;
        m_nQualifierVersion = GetScopeVersion();
    }
    const CFINameMap::SName name{m_strElementPrefix, context.m_svNamespace, context.m_strElementName};
    const std::uint32_t dwIndex = map.Find(context.m_strElementName, m_elementQualifier);
    const std::size_t nUnits = name.svNamespace.size() + name.svLocalName.size();
    if (dwIndex == 0 || !MayRepeatName(nUnits))
    {
        WriteLiteralElementName(byCurrent, name);
        return;
    }
    m_out.WriteIntegerBit3(byCurrent, dwIndex);
    // References to long names are counted, each of them.
    if (nUnits <= CFIRepetition::s_nShortName)
    {
        context.m_dwNameIndex = dwIndex;
        SetTagCurrent(context);
    }
}

void CFastInfosetWriter::EndStartTag(CXmlWriterContext& context)
{
    if (!context.m_bStartTagOpen)
        return;
    context.m_bStartTagOpen = false;
    if (context.m_bAttributesOpen)
        m_out.WriteOctet(s_byEnd);
}

void CFastInfosetWriter::EndElement()
{
    QV_ASSERT_MSG(m_pContext != nullptr, "m_pContext != NULL");
    FlushPendingElement(false);
    EndStartTag(GetOpenElement());
    m_bFirstText = false;
    if (m_bTerminatorPending)
        m_out.WriteOctet(s_byTwoEnds);
    m_bTerminatorPending = !m_bTerminatorPending;
    PopContext();
}

// --- Attributes and text --------------------------------------------------------------------------------------------

CFastInfosetWriter::CXmlWriterContext& CFastInfosetWriter::BeginAttribute()
{
    FlushPendingElement(true);
    return GetOpenStartTag();
}

void CFastInfosetWriter::WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace,
                                        std::wstring_view svValue, ItemType eType)
{
    CXmlWriterContext& context = BeginAttribute();
    std::wstring strNameBuffer;
    std::wstring strNamespaceBuffer;
    const std::wstring_view svNameUnits = ToUnitText(svName, strNameBuffer);
    const std::wstring_view svNamespaceUnits = ToUnitText(svNamespace, strNamespaceBuffer);
    if (svNamespaceUnits.empty())
        WriteAttributeName({{}, {}, svNameUnits});
    else
        WriteAttributeName({GetPrefix(context, svNamespaceUnits), svNamespaceUnits, svNameUnits});
    WriteAttributeValue(svValue, eType);
}

void CFastInfosetWriter::WriteXsiType(std::wstring_view svTypeNamespace, std::wstring_view svTypeName, ItemType eType)
{
    CXmlWriterContext& context = BeginAttribute();
    std::wstring strNamespaceBuffer;
    const std::wstring_view svNamespace = ToUnitText(svTypeNamespace, strNamespaceBuffer);
    if (svNamespace.empty() || svNamespace == GetDefaultNamespace())
    {
        WriteAttribute(L"type", g_lpctXsiNamespace, svTypeName, eType);
        return;
    }
    std::wstring strNameBuffer;
    const std::wstring_view svName = ToUnitText(svTypeName, strNameBuffer);
    std::wstring strValue;
    if (const std::wstring* const pstrPrefix = FindPrefix(svNamespace); pstrPrefix == nullptr)
    {
        // docs/compatibility.md: Type attributes without a prefix
        strValue = BindGeneratedPrefix(context, svNamespace);
        WriteAttributeName({strValue, svNamespace, svName});
    }
    else
    {
        QV_ASSERT_MSG(!pstrPrefix->empty(), "!m_pContext->GetNamespaceMapValue(strElementNamespace).empty()");
        strValue = *pstrPrefix;
        WriteAttributeName({strValue, g_lpctXsiNamespace, L"type"});
    }
    strValue += L':';
    strValue += svName;
    WriteAttributeValue(strValue, eType);
}

void CFastInfosetWriter::WriteXsiNil()
{
    BeginAttribute();
    WriteAttribute(L"nil", g_lpctXsiNamespace, L"true", ItemType_boolean);
}

void CFastInfosetWriter::WriteText(std::wstring_view svValue, ItemType eType)
{
    // What is owed for a child that has ended stays owed: the text comes ahead of the child's end.
    FlushPendingElement(false);
    EndStartTag(GetOpenElement());
    WriteCharacterChunk(svValue, eType);
}

// --- Names ----------------------------------------------------------------------------------------------------------

std::wstring_view CFastInfosetWriter::GetPrefix(CXmlWriterContext& context, std::wstring_view svNamespace)
{
    const std::wstring* const pstrPrefix = FindPrefix(svNamespace);
    return pstrPrefix != nullptr ? *pstrPrefix : BindGeneratedPrefix(context, svNamespace);
}

void CFastInfosetWriter::WriteAttributeName(const CFINameMap::SName& name)
{
    CFINameMap& map = m_maps.m_attributeNameMap;
    const std::uint32_t dwIndex = map.Find(name);
    if (dwIndex != 0 && MayRepeatName(name.svNamespace.size() + name.svLocalName.size()))
    {
        m_out.WriteIntegerBit2(0, dwIndex);
        return;
    }
    m_out.WriteOctet(static_cast<unsigned char>(s_byLiteralAttributeName | PartsOf(name.svPrefix, name.svNamespace)));
    WriteNameParts(name);
    EnterName(name, map);
}

void CFastInfosetWriter::WriteLiteralElementName(unsigned char byCurrent, const CFINameMap::SName& name)
{
    QV_ASSERT((byCurrent & 0x3F) == 0);
    m_out.WriteOctet(
        static_cast<unsigned char>(byCurrent | s_byLiteralElementName | PartsOf(name.svPrefix, name.svNamespace)));
    WriteNameParts(name);
    EnterName(name, m_maps.m_elementNameMap);
}

/// A reader enters every name that is written out, also one that it has.
void CFastInfosetWriter::EnterName(const CFINameMap::SName& name, CFINameMap& map)
{
    const std::size_t nCount = map.GetCount();
    map.Add(name);
    if (map.GetCount() == nCount)
        map.AddAgain(name);
}

void CFastInfosetWriter::WriteNameParts(const CFINameMap::SName& name)
{
    if (!name.svPrefix.empty())
        WriteIdentifyingString(name.svPrefix, m_maps.m_prefixNameMap);
    if (!name.svNamespace.empty())
        WriteIdentifyingString(name.svNamespace, m_maps.m_namespaceNameMap);
    WriteIdentifyingString(name.svLocalName, m_maps.m_localNameMap);
}

void CFastInfosetWriter::WriteIdentifyingString(std::wstring_view svText, CFIIndexMap& map)
{
    const std::uint32_t dwIndex = map.Find(svText);
    if (dwIndex != 0 && MayRepeatName(svText.size()))
    {
        m_out.WriteIntegerBit2(s_byIndex, dwIndex);
        return;
    }
    WriteLiteral(svText);
    map.Add(svText);
    if (dwIndex != 0)
        map.AddAgain(svText);
}

void CFastInfosetWriter::WriteLiteral(std::wstring_view svText)
{
    const std::string_view svOctets = ToUtf8(svText);
    m_out.WriteLengthBit2(0, svOctets.size());
    m_out.WriteOctets(svOctets);
}

std::string_view CFastInfosetWriter::ToUtf8(std::wstring_view svText)
{
    m_strOctets.clear();
    CFastInfosetBinaryData::AppendEncoded(m_strOctets, s_ulCdata, svText);
    return m_strOctets;
}

/// Counts a reference to a text that is in a table; false if it has to be written anew.
bool CFastInfosetWriter::MayRepeat(std::uint64_t nUnits)
{
    return m_repetition.Add(nUnits, [this] { return m_out.GetCount(); });
}

bool CFastInfosetWriter::MayRepeatName(std::uint64_t nUnits)
{
    return m_repetition.AddName(nUnits, [this] { return m_out.GetCount(); });
}

// --- Values ---------------------------------------------------------------------------------------------------------

void CFastInfosetWriter::WriteAttributeValue(std::wstring_view svValue, ItemType eType)
{
    static constexpr SStringEncoding s_place{
        32, 48, 4, true, L"Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit5."};
    std::wstring strBuffer;
    const std::wstring_view svUnits = ToUnitText(svValue, strBuffer);
    if (svUnits.empty())
    {
        m_out.WriteZeroBit2(s_byIndex);
    }
    else if (svUnits.size() >= m_pFIContext->GetAttributeMaxAddLength())
    {
        WriteEncodedString(s_place, 0, svUnits, eType);
    }
    else if (const CFIIndexMap::SPlace place = m_maps.m_attributeValueMap.Locate(svUnits); place.dwIndex != 0)
    {
        if (MayRepeat(svUnits.size() + m_dwDecodedSurplus))
            m_out.WriteIntegerBit2(s_byIndex, place.dwIndex);
        else
            WriteEncodedString(s_place, 0, svUnits, eType);
    }
    else
    {
        WriteEncodedString(s_place, s_byAddValue, svUnits, eType);
        m_maps.m_attributeValueMap.AddLocated(svUnits, place);
    }
}

void CFastInfosetWriter::WriteCharacterChunk(std::wstring_view svValue, ItemType eType)
{
    static constexpr SStringEncoding s_place{
        8, 12, 2, false, L"Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit7."};
    // Nearly every text that does not go into the table is ASCII, which needs no other look.
    if (!svValue.empty() && svValue.size() >= m_pFIContext->GetElementMaxAddLength() &&
        TryWriteAscii(s_place, s_byChunk, svValue, eType))
    {
        m_bFirstText = false;
        return;
    }
    std::wstring strBuffer;
    const std::wstring_view svUnits = ToUnitText(svValue, strBuffer);
    if (svUnits.empty())
        return;
    const std::uint64_t nWeight = std::exchange(m_bFirstText, false) ? 1 : CFIRepetition::s_nAddedWeight;
    if (svUnits.size() >= m_pFIContext->GetElementMaxAddLength())
    {
        WriteOtherString(s_place, s_byChunk, svUnits, eType);
    }
    else if (const CFIIndexMap::SPlace place = m_maps.m_characterChunkMap.Locate(svUnits); place.dwIndex != 0)
    {
        if (MayRepeat(nWeight * (svUnits.size() + m_dwDecodedSurplus)))
            m_out.WriteIntegerBit4(s_byChunk | s_byChunkIndex, place.dwIndex);
        else
            WriteEncodedString(s_place, s_byChunk, svUnits, eType);
    }
    else
    {
        WriteEncodedString(s_place, s_byChunk | s_byAddChunk, svUnits, eType);
        m_maps.m_characterChunkMap.AddLocated(svUnits, place);
    }
}

void CFastInfosetWriter::WriteEncodedString(const SStringEncoding& place, unsigned char byCurrent,
                                            std::wstring_view svValue, ItemType eType)
{
    if (!TryWriteAscii(place, byCurrent, svValue, eType))
        WriteOtherString(place, byCurrent, svValue, eType);
}

/// The same for a value that TryWriteAscii does not take.
void CFastInfosetWriter::WriteOtherString(const SStringEncoding& place, unsigned char byCurrent,
                                          std::wstring_view svValue, ItemType eType)
{
    const CFastInfosetContext::EncodedCharacterString encoding = m_pFIContext->GetEncoding(eType);
    std::string_view svOctets;
    m_strOctets.clear();
    switch (encoding.m_dwType)
    {
    case 0:
        if (m_pFIContext->GetDefaultStringEncoding() == 1)
        {
            throw CQvException(
                L"Failed to write FastInfoset. Unsupported Feature UTF16BE in EncodedCharacterStringBit5.");
        }
        svOctets = ToUtf8(svValue);
        break;
    case 1:
        byCurrent = BeginRestrictedAlphabet(place, byCurrent, encoding.m_dwIndex);
        AppendRestrictedAlphabetString(m_strOctets, m_agreed.m_restrictedAlphabets[encoding.m_dwIndex - 1], svValue);
        svOctets = m_strOctets;
        break;
    case 2:
        byCurrent = BeginEncodingAlgorithm(place, byCurrent, encoding.m_dwIndex);
        CFastInfosetBinaryData::AppendEncoded(m_strOctets, encoding.m_dwIndex, svValue);
        svOctets = m_strOctets;
        break;
    default:
        throw CQvException(place.lpctUnknown);
    }
    place.WriteLength(m_out, byCurrent, svOctets.size());
    m_out.WriteOctets(svOctets);
}

/// Writes a value that is ASCII without a zero unit, as nearly all are, straight to its place.
/// @return false, with nothing written, for any other, and for kinds of values with an encoding of their own.
bool CFastInfosetWriter::TryWriteAscii(const SStringEncoding& place, unsigned char byCurrent, std::wstring_view svValue,
                                       ItemType eType)
{
    if (m_pFIContext->GetEncoding(eType).m_dwType != 0 || m_pFIContext->GetDefaultStringEncoding() == 1)
        return false;
    constexpr std::size_t nMostOctetsOfALength = 5;
    const std::size_t nUnits = svValue.size();
    const unsigned char* const pStart = m_out.Reserve(nMostOctetsOfALength + nUnits);
    if (pStart == nullptr)
        return false;
    place.WriteLength(m_out, byCurrent, nUnits);
    if (NarrowAscii(svValue.data(), nUnits, m_out.Reserve(nUnits)))
    {
        m_out.Advance(nUnits);
        return true;
    }
    m_out.GoBackTo(pStart);
    return false;
}

unsigned char CFastInfosetWriter::BeginRestrictedAlphabet(const SStringEncoding& place, unsigned char byCurrent,
                                                          std::uint32_t dwIndex)
{
    if (dwIndex < 1 || dwIndex > 2)
    {
        throw CQvException(FormatString(L"Failed to write FastInfoset. Invalid Restricted Alphabet value [%d]",
                                        static_cast<int>(dwIndex)));
    }
    return WriteIndex(place, static_cast<unsigned char>(byCurrent | place.byAlphabet), dwIndex - 1);
}

unsigned char CFastInfosetWriter::BeginEncodingAlgorithm(const SStringEncoding& place, unsigned char byCurrent,
                                                         std::uint32_t dwIndex)
{
    if (dwIndex < 1 || dwIndex > s_ulCdata)
    {
        throw CQvException(FormatString(L"Failed to write FastInfoset. Invalid Encoding Algorithm value [%d]",
                                        static_cast<int>(dwIndex)));
    }
    return WriteIndex(place, static_cast<unsigned char>(byCurrent | place.byAlgorithm), dwIndex - 1);
}

unsigned char CFastInfosetWriter::WriteIndex(const SStringEncoding& place, unsigned char byCurrent,
                                             std::uint32_t dwIndex)
{
    m_out.WriteOctet(static_cast<unsigned char>(byCurrent | dwIndex >> (8 - place.nIndexShift)));
    return static_cast<unsigned char>(dwIndex << place.nIndexShift);
}

} // namespace QvXmlLib9
