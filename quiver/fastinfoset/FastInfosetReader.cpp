#include "quiver/fastinfoset/FastInfosetReader.h"

#include "quiver/fastinfoset/FIAlphabet.h"
#include "quiver/fastinfoset/FIDeclarations.h"
#include "quiver/fastinfoset/FITreeBuilder.h"
#include "quiver/fastinfoset/FastInfosetBinaryData.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/UnitRuns.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>

namespace QvXmlLib9
{

namespace
{

/// The trace takes no longer texts.
constexpr std::size_t s_nTracedNameLength = 16384;

constexpr unsigned char s_byEnd = 240;
constexpr unsigned char s_byTwoEnds = 255;
constexpr unsigned char s_byProcessingInstruction = 225;
constexpr unsigned char s_byComment = 226;

/// Octets from here on are no element in content, and no attribute in a list of attributes.
constexpr unsigned char s_byNotElement = 128;
constexpr unsigned char s_byNotChunk = 192;
constexpr unsigned char s_byIndex = 128;

constexpr unsigned char s_byAttributes = 64;
constexpr unsigned char s_byAddValue = 64;
constexpr unsigned char s_byChunkIndex = 32;
constexpr unsigned char s_byAddChunk = 16;
constexpr unsigned char s_byHasFirst = 2;
constexpr unsigned char s_byHasSecond = 1;

// Items that are told by the top bits of an octet.
constexpr unsigned s_nNamespaceAttributes = 14; // the upper 4 of the low 6 bits
constexpr unsigned s_nNotation = 48;            // the upper 6 bits
constexpr unsigned s_nDocumentTypeDeclaration = 49;
constexpr unsigned s_nEntityReference = 50;
constexpr unsigned s_nNamespaceAttribute = 51;
constexpr unsigned s_nUnparsedEntity = 104; // the upper 7 bits

constexpr unsigned s_nFormUtf8 = 0;
constexpr unsigned s_nFormUtf16 = 1;
constexpr unsigned s_nFormAlphabet = 2;
constexpr std::uint32_t s_dwCdata = 10;

/// How many of an item's two optional strings are there.
unsigned CountOptional(unsigned char by)
{
    return ((by & s_byHasFirst) != 0 ? 1u : 0u) + ((by & s_byHasSecond) != 0 ? 1u : 0u);
}

/// Length of UTF-8 in units.
std::uint32_t CountUnits(std::string_view svUtf8)
{
    std::size_t nUnits = 0;
    for (const char c : svUtf8)
    {
        const auto by = static_cast<unsigned char>(c);
        nUnits += (by < 0x80 || by >= 0xC0 ? 1u : 0u) + (by >= 0xF0 ? 1u : 0u);
    }
    return static_cast<std::uint32_t>(nUnits);
}

[[noreturn]] void ThrowOutOfProportion()
{
    throw CQvException(L"Failed to parse FastInfoset. The repeated strings are out of proportion to the document.");
}

[[noreturn]] void ThrowInvalidIndex(std::uint32_t dwIndex)
{
    throw CQvException(
        FormatString(L"Failed to parse FastInfoset. Invalid table index [%d].", static_cast<int>(dwIndex)));
}

} // namespace

CFastInfosetReader::CFastInfosetReader(const CFastInfosetContext* pContext, CFITreeBuilder* pDocument)
    : CInstanceMonitor(L"CFastInfosetReader")
    , m_pFIContext(pContext)
    , m_pDocument(pDocument)
    , m_in(std::string_view())
{
    m_elements.lpcIndexCheck = "m_pVocabulary->m_elementNames.m_table.size() > m_dwLastValue - 1";
    m_attributes.lpcIndexCheck = "m_pVocabulary->m_attributeNames.m_table.size() > m_dwLastValue - 1";
}

CFastInfosetReader::~CFastInfosetReader()
{
    Reset();
}

void CFastInfosetReader::Reset()
{
    m_in = CFIOctetReader(std::string_view());
    m_pAgreed = nullptr;
    for (CFITable<std::wstring>* const pTable : {&m_prefixNames, &m_namespaceNames, &m_localNames})
        pTable->Clear();
    for (SNames* const pNames : {&m_elements, &m_attributes})
    {
        pNames->table.Clear();
        pNames->records.clear();
    }
    for (SValues* const pValues : {&m_attributeValues, &m_characterChunks})
    {
        pValues->values.clear();
        pValues->asciiTexts.clear();
        pValues->texts.clear();
    }
    m_strUnits.clear();
}

bool CFastInfosetReader::Parse(std::string_view svOctets)
{
    m_in = CFIOctetReader(svOctets);
    m_nDataLen = svOctets.size();
    if (!SkipIdentification())
        return false;
    try
    {
        BeginDocument();
        SkipHead();
        ReadBody();
    }
    catch (...)
    {
        Reset();
        throw;
    }
    return true;
}

void CFastInfosetReader::BeginDocument()
{
    m_pAgreed =
        m_pFIContext->GetUseGeneratedVocabulary() ? m_pFIContext->GetVocabulary() : &CFIVocabulary::GetBuiltin();
    m_prefixNames.Begin(m_pAgreed->m_prefixNames.m_table);
    m_namespaceNames.Begin(m_pAgreed->m_namespaceNames.m_table);
    m_localNames.Begin(m_pAgreed->m_localNames.m_table);
    m_elements.table.Begin(m_pAgreed->m_elementNames.m_table);
    m_attributes.table.Begin(m_pAgreed->m_attributeNames.m_table);
    for (const std::wstring& strValue : m_pAgreed->m_attributeValues)
        m_attributeValues.values.push_back({SValue(std::wstring_view(strValue))});
    for (const std::wstring& strValue : m_pAgreed->m_characterChunks)
        m_characterChunks.values.push_back({SValue(std::wstring_view(strValue))});
    m_repetition = CFIRepetition();
    m_bTrace = Platform::IsDebugOutputOn();
}

// --- Head -----------------------------------------------------------------------------------------------------------

bool CFastInfosetReader::SkipIdentification()
{
    const std::size_t nLength = g_svFIIdentification.size();
    if (m_in.GetOctetsLeft() <= nLength || m_in.PeekOctets(nLength) != g_svFIIdentification)
    {
        const auto fnMatches = [this](std::string_view svDeclaration)
        {
            return svDeclaration.size() < m_in.GetOctetsLeft() &&
                   m_in.PeekOctets(svDeclaration.size()) == svDeclaration;
        };
        const auto it = std::find_if(g_fiDeclarations.begin(), g_fiDeclarations.end(), fnMatches);
        if (it == g_fiDeclarations.end())
            return false;
        m_in.ReadOctets(it->size());
        if (m_in.PeekOctets(nLength) != g_svFIIdentification)
            return false;
    }
    m_in.ReadOctets(nLength);
    return true;
}

void CFastInfosetReader::SkipHead()
{
    const unsigned char byComponents = m_in.ReadOctet();
    if ((byComponents & 64) != 0)
        SkipAdditionalData();
    if ((byComponents & 32) != 0)
        SkipInitialVocabulary();
    if ((byComponents & 16) != 0)
        SkipNotations();
    if ((byComponents & 8) != 0)
        SkipUnparsedEntities();
    if ((byComponents & 4) != 0)
        m_in.ReadOctetString(); // character encoding scheme
    if ((byComponents & 2) != 0)
        m_in.ReadOctet(); // standalone
    if ((byComponents & 1) != 0)
        SkipNonIdentifyingString(); // version
}

void CFastInfosetReader::SkipAdditionalData()
{
    for (std::uint32_t nLeft = m_in.ReadSequenceLength(); nLeft > 0; --nLeft)
    {
        m_in.ReadOctetString(); // identifier
        m_in.ReadOctetString(); // data
    }
}

void CFastInfosetReader::SkipInitialVocabulary()
{
    const unsigned char byFirst = m_in.ReadOctet();
    const unsigned char bySecond = m_in.ReadOctet();
    if ((byFirst & 16) != 0)
        m_in.ReadOctetString(); // external vocabulary
    // Restricted alphabets, encoding algorithms, prefixes, namespace names, local names, other names, other URIs.
    for (const bool bHas : {(byFirst & 8) != 0, (byFirst & 4) != 0, (byFirst & 2) != 0, (byFirst & 1) != 0,
                            (bySecond & 128) != 0, (bySecond & 64) != 0, (bySecond & 32) != 0})
    {
        if (bHas)
            SkipOctetStrings();
    }
    // Attribute values, content character chunks, other strings.
    for (const bool bHas : {(bySecond & 16) != 0, (bySecond & 8) != 0, (bySecond & 4) != 0})
    {
        if (bHas)
            SkipEncodedStrings();
    }
    // Names of elements, names of attributes.
    for (const bool bHas : {(bySecond & 2) != 0, (bySecond & 1) != 0})
    {
        if (bHas)
            SkipNameSurrogates();
    }
}

void CFastInfosetReader::SkipOctetStrings()
{
    for (std::uint32_t nLeft = m_in.ReadSequenceLength(); nLeft > 0; --nLeft)
        m_in.ReadOctetString();
}

void CFastInfosetReader::SkipEncodedStrings()
{
    for (std::uint32_t nLeft = m_in.ReadSequenceLength(); nLeft > 0; --nLeft)
        ReadEncodedStringBit3(m_in.ReadOctet());
}

void CFastInfosetReader::SkipNameSurrogates()
{
    for (std::uint32_t nLeft = m_in.ReadSequenceLength(); nLeft > 0; --nLeft)
    {
        // Prefix and namespace if they are there, and the local name.
        for (unsigned nParts = CountOptional(m_in.ReadOctet()) + 1; nParts > 0; --nParts)
            m_in.ReadIntegerBit2(m_in.ReadOctet());
    }
}

void CFastInfosetReader::SkipNotations()
{
    for (unsigned char by = m_in.ReadOctet(); by >> 2 == s_nNotation; by = m_in.ReadOctet())
        SkipIdentifyingStrings(1 + CountOptional(by));
}

void CFastInfosetReader::SkipUnparsedEntities()
{
    for (unsigned char by = m_in.ReadOctet(); by >> 1 == s_nUnparsedEntity; by = m_in.ReadOctet())
        SkipIdentifyingStrings(3 + (by & 1u));
}

void CFastInfosetReader::SkipIdentifyingStrings(unsigned nCount)
{
    for (; nCount > 0; --nCount)
    {
        const unsigned char by = m_in.ReadOctet();
        if (by >= s_byIndex)
            m_in.ReadIntegerBit2(by);
        else
            m_in.ReadOctets(m_in.ReadLengthBit2(by));
    }
}

void CFastInfosetReader::SkipNonIdentifyingString()
{
    // Neither comments nor instructions share a table with attribute values (X.891, 8.2), so nothing is entered.
    const unsigned char by = m_in.ReadOctet();
    if (by >= s_byIndex)
        m_in.ReadIntegerOrZeroBit2(by);
    else
        ReadEncodedStringBit3(by);
}

void CFastInfosetReader::SkipProcessingInstruction()
{
    SkipIdentifyingStrings(1);
    SkipNonIdentifyingString();
}

// --- Elements -------------------------------------------------------------------------------------------------------

void CFastInfosetReader::ReadBody()
{
    // The end of a document type declaration looks like the end of the document.
    bool bMayEndItem = false;
    bool bEnded = false;
    while (!bEnded || m_in.GetOctetsLeft() != 0)
    {
        const unsigned char by = m_in.ReadOctet();
        if (by < s_byNotElement)
        {
            ReadElements(by);
            return;
        }
        if (by == s_byEnd || by == s_byTwoEnds)
        {
            if (!bMayEndItem)
                break;
            bMayEndItem = false;
            bEnded = true;
            continue;
        }
        if (by == s_byProcessingInstruction)
            SkipProcessingInstruction();
        else if (by == s_byComment)
            SkipNonIdentifyingString();
        else if (by >> 2 == s_nDocumentTypeDeclaration)
            SkipIdentifyingStrings(CountOptional(by));
        else
            continue;
        bMayEndItem = true;
    }
    throw CQvException(L"Invalid or empty XML document");
}

void CFastInfosetReader::ReadElements(unsigned char by)
{
    // No recursion: the builder keeps the path of open elements.
    const CFITreeBuilder& path = *m_pDocument;
    for (;; by = m_in.ReadOctet())
    {
        if (by < s_byNotElement)
        {
            if (!BeginElement(by))
                EndElement();
        }
        else if (by == s_byEnd)
        {
            EndElement();
        }
        else if (by == s_byTwoEnds)
        {
            EndElement();
            // The second end is the enclosing element's, or the document's.
            if (path.HasOpenElement())
                EndElement();
        }
        else
        {
            ReadContent(by);
        }
        if (!path.HasOpenElement())
            return;
    }
}

/// False if the element has already ended.
bool CFastInfosetReader::BeginElement(unsigned char by)
{
    const bool bAttributes = (by & s_byAttributes) != 0;
    if ((by & 0x3Fu) >> 2 == s_nNamespaceAttributes)
        by = ReadNamespaceAttributes();
    const SXmlName& name =
        (by & 60) < 60 ? GetName(m_in.ReadIntegerBit3(by), m_elements) : ReadLiteralName(by, m_elements);
    const bool bRoot = !m_pDocument->HasOpenElement();
    CXmlElement* const pElement = bRoot ? m_pDocument->AddDocElement(name) : m_pDocument->AddChildElement(name);
    if (m_bTrace)
        TraceElement(bRoot ? L"New Root Elm: %s::%s\n" : L"New Elm: %s::%s\n", name);
    return !bAttributes || !ReadAttributes(pElement);
}

void CFastInfosetReader::EndElement()
{
    if (m_bTrace)
        TraceElement(L"End Elm: %s::%s\n", m_pDocument->GetName(m_pDocument->GetOpenElement()));
    m_pDocument->CloseElement();
}

void CFastInfosetReader::TraceElement(const wchar_t* lpctFormat, const SXmlName& name) const
{
    const CFITreeBuilder::SNameParts parts = m_pDocument->GetParts(name);
    if (parts.strNamespaceURI.size() + parts.strLocalName.size() < s_nTracedNameLength)
        OutputTrace(lpctFormat, parts.strNamespaceURI.c_str(), parts.strLocalName.c_str());
}

/// Returns the octet that the element's name begins with.
unsigned char CFastInfosetReader::ReadNamespaceAttributes()
{
    const std::wstring strNone;
    for (unsigned char by = m_in.ReadOctet(); by >> 2 == s_nNamespaceAttribute; by = m_in.ReadOctet())
    {
        // References into two tables, so that reading the second leaves the first as it is.
        const std::wstring& strPrefix = (by & s_byHasFirst) != 0 ? ReadIdentifyingString(m_prefixNames) : strNone;
        const std::wstring& strURI = (by & s_byHasSecond) != 0 ? ReadIdentifyingString(m_namespaceNames) : strNone;
        m_pDocument->SetNamespace(strPrefix, strURI);
    }
    return m_in.ReadOctet();
}

/// True if the end of the list is the end of the element too.
bool CFastInfosetReader::ReadAttributes(CXmlElement* pElement)
{
    unsigned char by = m_in.ReadOctet();
    for (; by < s_byNotElement; by = m_in.ReadOctet())
    {
        const SXmlName& name =
            (by & 120) < 120 ? GetName(m_in.ReadIntegerBit2(by), m_attributes) : ReadLiteralName(by, m_attributes);
        ReadAttributeValue(pElement, name);
    }
    return by == s_byTwoEnds;
}

void CFastInfosetReader::ReadContent(unsigned char by)
{
    if (by < s_byNotChunk)
        ReadChunk(by);
    else if (by == s_byProcessingInstruction)
        SkipProcessingInstruction();
    else if (by == s_byComment)
        SkipNonIdentifyingString();
    else if (by >> 2 == s_nEntityReference)
        SkipIdentifyingStrings(1 + CountOptional(by));
    else
        throw CQvException(L"Failed to parse FastInfoset. Invalid Encoding of Element type.");
}

void CFastInfosetReader::ReadChunk(unsigned char by)
{
    CXmlElement* const pElement = m_pDocument->GetOpenElement();
    if ((by & s_byChunkIndex) != 0)
    {
        AppendRepeatedChunk(pElement, m_in.ReadIntegerBit4(by));
        return;
    }
    const SValue value = Decode(ReadEncodedStringBit5(by));
    if ((by & s_byAddChunk) != 0)
        AddValue(value, m_characterChunks);
    AppendText(pElement, value);
}

inline void CFastInfosetReader::AppendText(CXmlElement* pElement, const SValue& value)
{
    if (value.svUnits.empty())
        m_pDocument->AppendTextExcludingCR(pElement, value.svUtf8.substr(0, value.svUtf8.find('\0')));
    else
        m_pDocument->AppendTextExcludingCR(pElement, value.svUnits);
}

/// The text that nodes share, made by `make` when the first of them comes.
template <class Make>
CXmlText* CFastInfosetReader::GetShared(STableValue& entry, Make make)
{
    if (!entry.bShared)
        entry.pShared = entry.value.svUnits.empty() ? make(entry.value.svUtf8) : make(entry.value.svUnits);
    entry.bShared = true;
    return entry.pShared;
}

void CFastInfosetReader::AppendRepeatedChunk(CXmlElement* pElement, std::uint32_t dwIndex)
{
    STableValue& entry = GetRepeated(dwIndex, m_characterChunks);
    if (m_pDocument->HasText(pElement))
    {
        CountRepeated(CFIRepetition::s_nAddedWeight * entry.dwUnits);
        AppendText(pElement, entry.value);
        return;
    }
    CountRepeated(entry.dwUnits);
    CXmlText* const pText = GetShared(entry, [this](auto strText) { return m_pDocument->MakeSharedText(strText); });
    m_pDocument->SetSharedText(pElement, pText);
}

// --- Names ----------------------------------------------------------------------------------------------------------

const SXmlName& CFastInfosetReader::ReadLiteralName(unsigned char by, SNames& names)
{
    const bool bPrefix = (by & s_byHasFirst) != 0;
    const bool bNamespace = (by & s_byHasSecond) != 0;
    if (bPrefix && !bNamespace)
        throw CQvException(L"Failed to parse FastInfoset. Invalid QName type Prefix without Namespace.");
    CFIVocabulary::CQNameParts parts;
    if (bPrefix)
        parts.m_dwPrefixIndex = ReadNamePart(m_prefixNames);
    if (bNamespace)
        parts.m_dwNamespaceIndex = ReadNamePart(m_namespaceNames);
    parts.m_dwLocalNameIndex = ReadNamePart(m_localNames);

    const SNameRecord record = MakeRecord(parts);
    const std::size_t nIndex = names.table.GetCount();
    if (nIndex < CFIIndexMap::s_nMaxEntries)
    {
        names.table.Add(parts);
        names.records.resize(nIndex + 1);
        names.records[nIndex] = record;
    }
    return *record.pName;
}

std::uint32_t CFastInfosetReader::ReadNamePart(CFITable<std::wstring>& table)
{
    const unsigned char by = m_in.ReadOctet();
    if (by >= s_byIndex)
    {
        const std::uint32_t dwIndex = m_in.ReadIntegerBit2(by);
        if (dwIndex > table.GetCount())
            ThrowInvalidIndex(dwIndex);
        CountRepeatedName(table[dwIndex - 1].size());
        return dwIndex;
    }
    std::wstring strText;
    AppendUtf8AsUtf16(strText, m_in.ReadOctets(m_in.ReadLengthBit2(by)));
    table.Add(std::move(strText));
    return static_cast<std::uint32_t>(table.GetCount());
}

const std::wstring& CFastInfosetReader::ReadIdentifyingString(CFITable<std::wstring>& table)
{
    return table[ReadNamePart(table) - 1];
}

const SXmlName& CFastInfosetReader::GetName(std::uint32_t dwIndex, SNames& names)
{
    if (names.records.size() <= dwIndex - 1 || names.records[dwIndex - 1].pName == nullptr)
        AddRecord(dwIndex, names);
    const SNameRecord& record = names.records[dwIndex - 1];
    CountRepeatedName(record.nUnits);
    return *record.pName;
}

void CFastInfosetReader::AddRecord(std::uint32_t dwIndex, SNames& names)
{
    const CFITable<CFIVocabulary::CQNameParts>& table = names.table;
    QV_ASSERT_MSG(table.GetCount() > dwIndex - 1, names.lpcIndexCheck);
    if (table.GetCount() <= dwIndex - 1)
        ThrowInvalidIndex(dwIndex);
    if (names.records.size() < table.GetCount())
        names.records.resize(table.GetCount());
    names.records[dwIndex - 1] = MakeRecord(table[dwIndex - 1]);
}

CFastInfosetReader::SNameRecord CFastInfosetReader::MakeRecord(const CFIVocabulary::CQNameParts& parts)
{
    const std::uint32_t dwNamespace = parts.m_dwNamespaceIndex;
    QV_ASSERT_MSG(dwNamespace == 0 || m_namespaceNames.GetCount() > dwNamespace - 1,
                  "m_pVocabulary->m_namespaceNames.m_table.size() > q.m_dwNamespaceIndex - 1");
    QV_ASSERT_MSG(m_localNames.GetCount() > parts.m_dwLocalNameIndex - 1,
                  "m_pVocabulary->m_localNames.m_table.size() > q.m_dwLocalNameIndex - 1");
    const SXmlName& name =
        m_pDocument->InternName(dwNamespace == 0 ? std::wstring() : m_namespaceNames[dwNamespace - 1],
                                m_localNames[parts.m_dwLocalNameIndex - 1]);
    const CFITreeBuilder::SNameParts texts = m_pDocument->GetParts(name);
    return {&name, texts.strNamespaceURI.size() + texts.strLocalName.size()};
}

// --- Values ---------------------------------------------------------------------------------------------------------

void CFastInfosetReader::ReadAttributeValue(CXmlElement* pElement, const SXmlName& name)
{
    const unsigned char by = m_in.ReadOctet();
    if (by >= s_byIndex)
    {
        AddRepeatedAttribute(pElement, name, m_in.ReadIntegerOrZeroBit2(by));
        return;
    }
    const SValue value = Decode(ReadEncodedStringBit3(by));
    if ((by & s_byAddValue) != 0)
        AddValue(value, m_attributeValues);
    if (value.svUnits.empty())
        m_pDocument->AddElementAttribute(pElement, name, value.svUtf8);
    else
        m_pDocument->AddElementAttribute(pElement, name, value.svUnits);
}

/// @param dwIndex 0 for an empty value.
void CFastInfosetReader::AddRepeatedAttribute(CXmlElement* pElement, const SXmlName& name, std::uint32_t dwIndex)
{
    if (dwIndex == 0)
    {
        m_pDocument->AddElementAttribute(pElement, name, static_cast<CXmlText*>(nullptr));
        return;
    }
    QV_ASSERT_MSG(m_attributeValues.values.size() > dwIndex - 1,
                  "m_pVocabulary->m_attributeValues.m_table.size() > m_dwLastValue - 1");
    STableValue& entry = GetRepeated(dwIndex, m_attributeValues);
    CountRepeated(entry.dwUnits);
    CXmlText* const pValue = GetShared(entry, [this](auto strValue) { return m_pDocument->MakeSharedValue(strValue); });
    m_pDocument->AddElementAttribute(pElement, name, pValue);
}

void CFastInfosetReader::AddValue(const SValue& value, SValues& table) const
{
    if (!value.svUtf8.empty() && value.svUtf8.data() == m_strAscii.data())
        table.values.push_back({SValue(std::string_view(table.asciiTexts.emplace_front(value.svUtf8)))});
    else if (value.svUnits.empty())
        table.values.push_back({value});
    else
        table.values.push_back({SValue(std::wstring_view(table.texts.emplace_front(value.svUnits)))});
}

CFastInfosetReader::STableValue& CFastInfosetReader::GetRepeated(std::uint32_t dwIndex, SValues& table)
{
    if (table.values.size() <= dwIndex - 1)
        ThrowInvalidIndex(dwIndex);
    STableValue& entry = table.values[dwIndex - 1];
    if (!entry.bShared)
        entry.dwUnits = CountUnits(entry.value.svUtf8) + static_cast<std::uint32_t>(entry.value.svUnits.size());
    return entry;
}

void CFastInfosetReader::CountRepeated(std::uint64_t nUnits)
{
    if (!m_repetition.Add(nUnits, [this] { return m_nDataLen; }))
        ThrowOutOfProportion();
}

void CFastInfosetReader::CountRepeatedName(std::uint64_t nUnits)
{
    if (!m_repetition.AddName(nUnits, [this] { return m_nDataLen; }))
        ThrowOutOfProportion();
}

CFastInfosetReader::SEncodedString CFastInfosetReader::ReadEncodedStringBit3(unsigned char by)
{
    const unsigned nForm = by >> 4 & 3u;
    std::uint32_t dwIndex = 0;
    if (nForm >= s_nFormAlphabet)
    {
        dwIndex = (by & 0x0Fu) << 4;
        by = m_in.ReadOctet();
        dwIndex = (dwIndex | by >> 4) + 1;
    }
    return {nForm, dwIndex, m_in.ReadOctets(m_in.ReadLengthBit5(by))};
}

CFastInfosetReader::SEncodedString CFastInfosetReader::ReadEncodedStringBit5(unsigned char by)
{
    const unsigned nForm = by >> 2 & 3u;
    std::uint32_t dwIndex = 0;
    if (nForm >= s_nFormAlphabet)
    {
        dwIndex = (by & 3u) << 6;
        by = m_in.ReadOctet();
        dwIndex = (dwIndex | by >> 2) + 1;
    }
    return {nForm, dwIndex, m_in.ReadOctets(m_in.ReadLengthBit7(by))};
}

CFastInfosetReader::SValue CFastInfosetReader::Decode(const SEncodedString& encoded)
{
    switch (encoded.nForm)
    {
    case s_nFormUtf8:
        return DecodeUtf8(encoded.svOctets);
    case s_nFormUtf16:
        DecodeUtf16Octets(encoded.svOctets);
        break;
    case s_nFormAlphabet:
        DecodeAlphabet(encoded.dwIndex, encoded.svOctets);
        break;
    default:
        if (encoded.dwIndex == s_dwCdata)
            return DecodeUtf8(encoded.svOctets);
        m_strUnits = CFastInfosetBinaryData::Decode(encoded.svOctets, encoded.dwIndex);
        break;
    }
    return FromUnits();
}

CFastInfosetReader::SValue CFastInfosetReader::FromUnits()
{
    std::uint32_t nAll = 0;
    m_strAscii.resize(m_strUnits.size());
    for (std::size_t n = 0; n < m_strUnits.size(); ++n)
    {
        nAll |= static_cast<std::uint32_t>(m_strUnits[n]);
        m_strAscii[n] = static_cast<char>(m_strUnits[n]);
    }
    return nAll < 0x80 ? SValue(std::string_view(m_strAscii)) : SValue(std::wstring_view(m_strUnits));
}

CFastInfosetReader::SValue CFastInfosetReader::DecodeUtf8(std::string_view svOctets)
{
    if (IsAscii(svOctets))
        return SValue(svOctets);
    m_strUnits.clear();
    // What is not well-formed ends ahead of the fault.
    if (AppendUtf8AsUtf16(m_strUnits, svOctets))
        return SValue(svOctets);
    return SValue(std::wstring_view(m_strUnits));
}

void CFastInfosetReader::DecodeUtf16Octets(std::string_view svOctets)
{
    // The count of octets counts as a count of units, of which half lie behind the item
    // (docs/compatibility.md: Lengths of UTF-16). Where they would lie behind the buffer, the document ends too early.
    if (svOctets.size() > m_in.GetOctetsLeft())
        CFIOctetReader::ThrowEndOfFile();
    m_strUnits = DecodeUtf16(reinterpret_cast<const unsigned char*>(svOctets.data()),
                             static_cast<unsigned long>(svOctets.size()));
}

void CFastInfosetReader::DecodeAlphabet(std::uint32_t dwIndex, std::string_view svOctets)
{
    if (dwIndex > m_pAgreed->m_restrictedAlphabets.size())
        ThrowInvalidIndex(dwIndex);
    m_strUnits.clear();
    DecodeRestrictedAlphabetString(m_strUnits, m_pAgreed->m_restrictedAlphabets[dwIndex - 1], svOctets);
}

} // namespace QvXmlLib9
