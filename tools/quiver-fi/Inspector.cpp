#include "tools/quiver-fi/Inspector.h"

#include "tools/common/Progress.h"
#include "tools/quiver-fi/Listing.h"
#include "tools/quiver-fi/Text.h"

#include "quiver/fastinfoset/FIDeclarations.h"
#include "quiver/fastinfoset/FIOctetReader.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <algorithm>
#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr unsigned char s_byEnd = 0xF0;
constexpr unsigned char s_byTwoEnds = 0xFF;
constexpr unsigned char s_byProcessingInstruction = 0xE1;
constexpr unsigned char s_byComment = 0xE2;

/// Length of the XML declaration in front of the identification, or npos if the octets are no Fast Infoset document.
std::size_t FindIdentification(std::string_view octets)
{
    // The octet of optional components belongs to every document.
    const auto fnFollows = [octets](std::size_t nOffset)
    {
        const std::size_t nLength = g_svFIIdentification.size();
        return octets.size() > nOffset + nLength && octets.substr(nOffset, nLength) == g_svFIIdentification;
    };
    if (fnFollows(0))
        return 0;
    for (const std::string_view svDeclaration : g_fiDeclarations)
    {
        if (octets.substr(0, svDeclaration.size()) == svDeclaration && fnFollows(svDeclaration.size()))
            return svDeclaration.size();
    }
    return std::string_view::npos;
}

bool Has(unsigned char by, unsigned nBit)
{
    return (by & nBit) != 0;
}

/// Leaves the tree to nobody.
class CNoHandler : public IInfosetHandler
{
public:
    void Begin(const CTables&) override {}
    void OnExternalVocabulary(const SEncodedText&) override {}
    void OnDeclaration(std::uint32_t, std::uint32_t) override {}
    void OnElement(const SName&) override {}
    void OnAttribute(const SName&, const SValue&) override {}
    void OnText(const SValue&) override {}
    void OnEntityReference() override {}
    void OnEndOfElement() override {}
    void OnEndOfDocument(std::size_t) override {}
};

class CInspector
{
public:
    /// @param pListing may be null.
    CInspector(std::string_view octets, bool bWholeValues, CListing* pListing, IInfosetHandler& handler,
               const SStreams& streams)
        : m_octets(octets)
        , m_in(octets)
        , m_pListing(pListing)
        , m_handler(handler)
        , m_progress(streams.err, streams.bErrIsTerminal,
                     pListing != nullptr ? "quiver-fi: listing" : "quiver-fi: reading", octets.size())
        , m_tables(bWholeValues)
    {
    }

    void Run();

private:
    using SValue = IInfosetHandler::SValue;

    std::size_t GetOffset() const { return m_octets.size() - m_in.GetOctetsLeft(); }
    void AddLine(std::string_view svText);

    // What only the listing wants is not made without one.
    std::string Show(const SEncodedText& text) const { return m_pListing ? m_tables.Show(text) : std::string(); }
    std::string Show(const SName& name) const { return m_pListing ? m_tables.Show(name) : std::string(); }
    std::string ShowRepeated(std::uint32_t dwIndex, const CTable& table) const;

    void ReadHead(std::size_t nDeclaration);
    void ReadAdditionalData();
    void ReadInitialVocabulary();
    void ReadOctetStrings(CTable& table, const char* lpcItem);
    void ReadEncodedStrings(CTable& table, const char* lpcItem);
    void ReadNameSurrogates(CNameTable& table, const char* lpcItem);
    void ReadNotations();
    void ReadUnparsedEntities();

    void ReadBody();
    void ReadDocumentItem(unsigned char by);
    void ReadDocumentTypeDeclaration(unsigned char by);
    void ReadProcessingInstruction();
    void ReadComment();
    void ReadElement(unsigned char by);
    unsigned char ReadNamespaceAttributes();
    void ReadAttributes();
    void ReadContent(unsigned char by);
    void ReadText(unsigned char by);
    void ReadEntityReference(unsigned char by);
    void ReadEnds(int nEnds);
    std::string EndElement();

    SName ReadName(bool bLiteral, unsigned char by, std::uint32_t dwIndex, CNameTable& table, std::string& strText);
    std::uint32_t ReadNamePart(CTable& table, std::string& strNew);
    std::string ReadIdentifyingString(CTable& table, std::uint32_t* pnPlace = nullptr);
    std::string ReadNonIdentifyingString(CTable& table, SValue* pValue = nullptr);
    static std::string AddIdentifying(const SEncodedText& text, CTable& table);
    static std::string Enter(SValue& value, CTable& table);
    std::string ReadSystemAndPublic(unsigned char by);
    SEncodedText ReadEncodedStringBit3(unsigned char by);
    SEncodedText ReadEncodedStringBit5(unsigned char by);

    std::string_view m_octets;
    CFIOctetReader m_in;
    CListing* m_pListing;
    IInfosetHandler& m_handler;
    quiver_tools::CProgress m_progress;
    CTables m_tables;
    std::vector<SName> m_open;
    /// Where the item begins that is being read.
    std::size_t m_nItem = 0;
    bool m_bRootSeen = false;
    bool m_bEnded = false;
};

void CInspector::AddLine(std::string_view svText)
{
    m_nItem = GetOffset();
    m_progress.Reach(m_nItem);
    if (m_pListing != nullptr)
        m_pListing->AddLine(m_nItem, m_open.size(), svText);
}

std::string CInspector::ShowRepeated(std::uint32_t dwIndex, const CTable& table) const
{
    return m_pListing != nullptr ? m_tables.ShowRepeated(dwIndex, table) : std::string();
}

void CInspector::Run()
{
    const std::size_t nDeclaration = FindIdentification(m_octets);
    if (nDeclaration == std::string_view::npos)
        throw std::runtime_error("this is no Fast Infoset document");
    m_handler.Begin(m_tables);
    try
    {
        ReadHead(nDeclaration);
        ReadBody();
    }
    catch (const CQvException& ex)
    {
        m_progress.Clear();
        std::string strReason;
        AppendUtf8(strReason, ex.GetMessageW());
        constexpr std::string_view svFamily = "Failed to parse FastInfoset. ";
        if (strReason.compare(0, svFamily.size(), svFamily) == 0)
            strReason.erase(0, svFamily.size());
        const std::string strStart = FormatOffset(m_nItem);
        if (m_pListing != nullptr)
            m_pListing->AddNote(strStart + "  the listing stops in this item");
        throw std::runtime_error("in the item at offset " + strStart + ": " + strReason);
    }
}

// --- Head -----------------------------------------------------------------------------------------------------------

void CInspector::ReadHead(std::size_t nDeclaration)
{
    if (nDeclaration != 0)
    {
        const std::string strDeclaration(m_in.ReadOctets(nDeclaration));
        AddLine("XML declaration " + strDeclaration);
    }
    m_in.ReadOctets(g_svFIIdentification.size());
    AddLine("identification, version 1");

    const unsigned char by = m_in.ReadOctet();
    AddLine((by & 0x7F) == 0 ? "no optional components" : "optional components follow");
    if (Has(by, 64))
        ReadAdditionalData();
    if (Has(by, 32))
        ReadInitialVocabulary();
    if (Has(by, 16))
        ReadNotations();
    if (Has(by, 8))
        ReadUnparsedEntities();
    if (Has(by, 4))
        AddLine("character encoding scheme " + Show(SEncodedText{m_in.ReadOctetString()}));
    if (Has(by, 2))
        AddLine(m_in.ReadOctet() != 0 ? "standalone: yes" : "standalone: no");
    if (Has(by, 1))
        AddLine("version" + ReadNonIdentifyingString(m_tables.otherStrings));
}

void CInspector::ReadAdditionalData()
{
    std::uint32_t nLeft = m_in.ReadSequenceLength();
    AddLine("additional data, items: " + std::to_string(nLeft));
    for (; nLeft > 0; --nLeft)
    {
        const std::string strIdentifier = Show(SEncodedText{m_in.ReadOctetString()});
        const std::size_t nLength = m_in.ReadOctetString().size();
        AddLine("  " + strIdentifier + ", octets: " + std::to_string(nLength));
    }
}

void CInspector::ReadInitialVocabulary()
{
    const unsigned char byFirst = m_in.ReadOctet();
    const unsigned char bySecond = m_in.ReadOctet();
    AddLine("initial vocabulary");
    if (Has(byFirst, 16))
    {
        const SEncodedText uri{m_in.ReadOctetString()};
        AddLine("  external vocabulary " + Show(uri));
        m_tables.SetExternal();
        m_handler.OnExternalVocabulary(uri);
    }
    struct SList
    {
        bool bPresent;
        CTable* pTable;
        const char* lpcItem;
    };
    for (const SList& list : {SList{Has(byFirst, 8), &m_tables.alphabets, "restricted alphabet"},
                              SList{Has(byFirst, 4), &m_tables.algorithms, "encoding algorithm"},
                              SList{Has(byFirst, 2), &m_tables.prefixes, "prefix"},
                              SList{Has(byFirst, 1), &m_tables.namespaces, "namespace"},
                              SList{Has(bySecond, 128), &m_tables.localNames, "local name"},
                              SList{Has(bySecond, 64), &m_tables.otherNames, "other name"},
                              SList{Has(bySecond, 32), &m_tables.otherURIs, "other URI"}})
    {
        if (list.bPresent)
            ReadOctetStrings(*list.pTable, list.lpcItem);
    }
    for (const SList& list : {SList{Has(bySecond, 16), &m_tables.attributeValues, "attribute value"},
                              SList{Has(bySecond, 8), &m_tables.chunks, "text"},
                              SList{Has(bySecond, 4), &m_tables.otherStrings, "other string"}})
    {
        if (list.bPresent)
            ReadEncodedStrings(*list.pTable, list.lpcItem);
    }
    if (Has(bySecond, 2))
        ReadNameSurrogates(m_tables.elements, "element");
    if (Has(bySecond, 1))
        ReadNameSurrogates(m_tables.attributes, "attribute");
}

void CInspector::ReadOctetStrings(CTable& table, const char* lpcItem)
{
    std::uint32_t nLeft = m_in.ReadSequenceLength();
    AddLine("  " + std::string(lpcItem) + ", entries: " + std::to_string(nLeft));
    for (; nLeft > 0; --nLeft)
    {
        const SEncodedText text{m_in.ReadOctetString()};
        const std::string strIndex = table.Add(text);
        AddLine("    " + std::string(lpcItem) + strIndex + ' ' + Show(text));
    }
}

void CInspector::ReadEncodedStrings(CTable& table, const char* lpcItem)
{
    std::uint32_t nLeft = m_in.ReadSequenceLength();
    AddLine("  " + std::string(lpcItem) + ", entries: " + std::to_string(nLeft));
    for (; nLeft > 0; --nLeft)
    {
        const SEncodedText text = ReadEncodedStringBit3(m_in.ReadOctet());
        const std::string strIndex = table.Add(text);
        AddLine("    " + std::string(lpcItem) + strIndex + ' ' + Show(text));
    }
}

void CInspector::ReadNameSurrogates(CNameTable& table, const char* lpcItem)
{
    std::uint32_t nLeft = m_in.ReadSequenceLength();
    AddLine("  " + std::string(lpcItem) + " name, entries: " + std::to_string(nLeft));
    for (; nLeft > 0; --nLeft)
    {
        const unsigned char by = m_in.ReadOctet();
        SName name;
        if (Has(by, 2))
            name.dwPrefix = m_tables.prefixes.Check(m_in.ReadIntegerBit2(m_in.ReadOctet()));
        if (Has(by, 1))
            name.dwNamespace = m_tables.namespaces.Check(m_in.ReadIntegerBit2(m_in.ReadOctet()));
        name.dwLocalName = m_tables.localNames.Check(m_in.ReadIntegerBit2(m_in.ReadOctet()));
        const std::string strIndex = table.Add(name);
        AddLine("    " + std::string(lpcItem) + " name" + strIndex + ' ' + Show(name));
    }
}

void CInspector::ReadNotations()
{
    unsigned char by = m_in.ReadOctet();
    for (; by >> 2 == 0xC0 >> 2; by = m_in.ReadOctet())
    {
        const std::string strName = ReadIdentifyingString(m_tables.otherNames);
        AddLine("notation" + strName + ReadSystemAndPublic(by));
    }
    AddLine("end of notations");
}

void CInspector::ReadUnparsedEntities()
{
    unsigned char by = m_in.ReadOctet();
    for (; by >> 1 == 0xD0 >> 1; by = m_in.ReadOctet())
    {
        std::string strText = "unparsed entity" + ReadIdentifyingString(m_tables.otherNames);
        strText += ", system" + ReadIdentifyingString(m_tables.otherURIs);
        if (Has(by, 1))
            strText += ", public" + ReadIdentifyingString(m_tables.otherURIs);
        AddLine(strText + ", notation" + ReadIdentifyingString(m_tables.otherNames));
    }
    AddLine("end of unparsed entities");
}

// --- Body -----------------------------------------------------------------------------------------------------------

void CInspector::ReadBody()
{
    while (!m_bEnded)
    {
        const unsigned char by = m_in.ReadOctet();
        if (m_open.empty())
            ReadDocumentItem(by);
        else
            ReadContent(by);
    }
    const std::size_t nBehind = m_in.GetOctetsLeft();
    m_in.ReadOctets(nBehind);
    if (nBehind != 0)
        AddLine("behind the document, octets: " + std::to_string(nBehind));
    if (m_pListing != nullptr)
        m_pListing->AddNote("\nTables at the end:" + m_tables.GetSizes());
    m_handler.OnEndOfDocument(nBehind);
}

void CInspector::ReadDocumentItem(unsigned char by)
{
    if (by < 0x80)
    {
        if (m_bRootSeen)
            throw CQvException(L"A second root element.");
        m_bRootSeen = true;
        ReadElement(by);
    }
    else if (by == s_byProcessingInstruction)
    {
        ReadProcessingInstruction();
    }
    else if (by == s_byComment)
    {
        ReadComment();
    }
    else if (by >> 2 == 0xC4 >> 2)
    {
        ReadDocumentTypeDeclaration(by);
    }
    else if (by == s_byEnd && m_bRootSeen)
    {
        m_bEnded = true;
        AddLine("end of the document");
    }
    else
    {
        throw CQvException(m_bRootSeen ? L"Neither an item nor the end of the document."
                                       : L"Nothing that may precede the root element.");
    }
}

void CInspector::ReadDocumentTypeDeclaration(unsigned char by)
{
    AddLine("document type declaration" + ReadSystemAndPublic(by));
    unsigned char byChild = m_in.ReadOctet();
    for (; byChild == s_byProcessingInstruction; byChild = m_in.ReadOctet())
        ReadProcessingInstruction();
    if (byChild != s_byEnd)
        throw CQvException(L"The document type declaration has no end.");
    AddLine("end of the document type declaration");
}

void CInspector::ReadProcessingInstruction()
{
    const std::string strTarget = ReadIdentifyingString(m_tables.otherNames);
    AddLine("processing instruction" + strTarget + ", content" + ReadNonIdentifyingString(m_tables.otherStrings));
}

void CInspector::ReadComment()
{
    AddLine("comment" + ReadNonIdentifyingString(m_tables.otherStrings));
}

void CInspector::ReadElement(unsigned char by)
{
    const bool bAttributes = Has(by, 64);
    std::string strText = "element";
    if ((by & 0x3C) == 0x38)
    {
        AddLine("element with namespaces");
        by = ReadNamespaceAttributes();
        strText = "  its name";
    }
    const bool bLiteral = (by & 0x3C) == 0x3C;
    const SName name = ReadName(bLiteral, by, bLiteral ? 0 : m_in.ReadIntegerBit3(by), m_tables.elements, strText);
    AddLine(strText);
    m_open.push_back(name);
    m_handler.OnElement(name);
    if (bAttributes)
        ReadAttributes();
}

/// Returns the octet with which the element's name begins.
unsigned char CInspector::ReadNamespaceAttributes()
{
    unsigned char by = m_in.ReadOctet();
    for (; by >> 2 == 0xCC >> 2; by = m_in.ReadOctet())
    {
        std::string strText = "  declaration";
        std::uint32_t nPrefix = 0;
        std::uint32_t nNamespace = 0;
        if (Has(by, 2))
            strText += ", prefix" + ReadIdentifyingString(m_tables.prefixes, &nPrefix);
        strText +=
            Has(by, 1) ? ", namespace" + ReadIdentifyingString(m_tables.namespaces, &nNamespace) : ", no namespace";
        AddLine(strText);
        m_handler.OnDeclaration(nPrefix, nNamespace);
    }
    if (by != s_byEnd)
        throw CQvException(L"Neither a namespace declaration nor their end.");
    AddLine("  end of declarations");
    return m_in.ReadOctet();
}

void CInspector::ReadAttributes()
{
    unsigned char by = m_in.ReadOctet();
    for (; by < 0x80; by = m_in.ReadOctet())
    {
        const bool bLiteral = (by & 0x78) == 0x78;
        std::string strText = "attribute";
        const SName name =
            ReadName(bLiteral, by, bLiteral ? 0 : m_in.ReadIntegerBit2(by), m_tables.attributes, strText);
        SValue value;
        AddLine(strText + " =" + ReadNonIdentifyingString(m_tables.attributeValues, &value));
        m_handler.OnAttribute(name, value);
    }
    if (by == s_byEnd)
    {
        AddLine("end of attributes");
        return;
    }
    if (by != s_byTwoEnds)
        throw CQvException(L"Neither an attribute nor the end of attributes.");
    const std::string strEnd = EndElement();
    AddLine("end of attributes, " + strEnd);
}

void CInspector::ReadContent(unsigned char by)
{
    if (by < 0x80)
        ReadElement(by);
    else if (by < 0xC0)
        ReadText(by);
    else if (by >> 2 == 0xC8 >> 2)
        ReadEntityReference(by);
    else if (by == s_byProcessingInstruction)
        ReadProcessingInstruction();
    else if (by == s_byComment)
        ReadComment();
    else if (by == s_byEnd || by == s_byTwoEnds)
        ReadEnds(by == s_byEnd ? 1 : 2);
    else
        throw CQvException(L"Nothing that may stand in an element.");
}

void CInspector::ReadText(unsigned char by)
{
    SValue value;
    if (Has(by, 32))
    {
        const std::uint32_t dwIndex = m_in.ReadIntegerBit4(by);
        value.nPlace = m_tables.chunks.Check(dwIndex);
        value.text = m_tables.chunks.GetAt(value.nPlace);
        AddLine("text" + ShowRepeated(dwIndex, m_tables.chunks));
    }
    else
    {
        value.text = ReadEncodedStringBit5(by);
        const std::string strShown = Show(value.text);
        AddLine("text" + (Has(by, 16) ? Enter(value, m_tables.chunks) : std::string()) + ' ' + strShown);
    }
    m_handler.OnText(value);
}

void CInspector::ReadEntityReference(unsigned char by)
{
    const std::string strName = ReadIdentifyingString(m_tables.otherNames);
    AddLine("entity reference" + strName + ReadSystemAndPublic(by));
    m_handler.OnEntityReference();
}

void CInspector::ReadEnds(int nEnds)
{
    std::string strText = EndElement();
    if (nEnds == 2)
    {
        m_bEnded = m_open.empty();
        strText += ", " + (m_bEnded ? std::string("end of the document") : EndElement());
    }
    AddLine(strText);
}

std::string CInspector::EndElement()
{
    const SName name = m_open.back();
    m_open.pop_back();
    m_handler.OnEndOfElement();
    return m_pListing != nullptr ? "end of " + m_tables.ShowShort(name) : std::string();
}

// --- Names and values -----------------------------------------------------------------------------------------------

/// Appends what there is to say of the name.
SName CInspector::ReadName(bool bLiteral, unsigned char by, std::uint32_t dwIndex, CNameTable& table,
                           std::string& strText)
{
    if (!bLiteral)
    {
        const SName name = table.Get(dwIndex);
        strText += " [" + std::to_string(dwIndex) + "] " + Show(name);
        return name;
    }
    if ((by & 3) == 2)
        throw CQvException(L"Invalid QName type Prefix without Namespace.");
    SName name;
    std::string strNew;
    if (Has(by, 2))
        name.dwPrefix = ReadNamePart(m_tables.prefixes, strNew);
    if (Has(by, 1))
        name.dwNamespace = ReadNamePart(m_tables.namespaces, strNew);
    name.dwLocalName = ReadNamePart(m_tables.localNames, strNew);
    strText += table.Add(name) + ' ' + Show(name);
    if (!strNew.empty())
        strText += " (" + strNew + ')';
    return name;
}

std::uint32_t CInspector::ReadNamePart(CTable& table, std::string& strNew)
{
    const unsigned char by = m_in.ReadOctet();
    if (Has(by, 0x80))
        return table.Check(m_in.ReadIntegerBit2(by));
    const std::string strIndex = AddIdentifying({m_in.ReadOctets(m_in.ReadLengthBit2(by))}, table);
    if (!strNew.empty())
        strNew += ", ";
    strNew += table.GetName() + strIndex;
    return table.GetLast();
}

/// Enters part of a name, which names refer to by its place.
std::string CInspector::AddIdentifying(const SEncodedText& text, CTable& table)
{
    if (table.IsFull())
        throw CQvException(L"The document holds more names than there are numbers for.");
    return table.Add(text);
}

/// Enters a literal string, and returns how the listing tells it. A full table leaves the string without a place.
std::string CInspector::Enter(SValue& value, CTable& table)
{
    const std::uint32_t nLast = table.GetLast();
    std::string strIndex = table.Add(value.text);
    value.nPlace = table.GetLast() != nLast ? table.GetLast() : 0;
    return strIndex;
}

/// " [1] "text"" or " +[1] "text"".
std::string CInspector::ReadIdentifyingString(CTable& table, std::uint32_t* pnPlace)
{
    const unsigned char by = m_in.ReadOctet();
    if (Has(by, 0x80))
    {
        const std::uint32_t dwIndex = m_in.ReadIntegerBit2(by);
        const std::uint32_t nPlace = table.Check(dwIndex);
        if (pnPlace != nullptr)
            *pnPlace = nPlace;
        return ShowRepeated(dwIndex, table);
    }
    const SEncodedText text{m_in.ReadOctets(m_in.ReadLengthBit2(by))};
    const std::string strIndex = AddIdentifying(text, table);
    if (pnPlace != nullptr)
        *pnPlace = table.GetLast();
    return strIndex + ' ' + Show(text);
}

std::string CInspector::ReadNonIdentifyingString(CTable& table, SValue* pValue)
{
    const unsigned char by = m_in.ReadOctet();
    SValue value;
    std::string strText;
    if (!Has(by, 0x80))
    {
        value.text = ReadEncodedStringBit3(by);
        const std::string strShown = Show(value.text);
        strText = (Has(by, 64) ? Enter(value, table) : std::string()) + ' ' + strShown;
    }
    else if (const std::uint32_t dwIndex = m_in.ReadIntegerOrZeroBit2(by); dwIndex != 0)
    {
        value.nPlace = table.Check(dwIndex);
        value.text = table.GetAt(value.nPlace);
        strText = ShowRepeated(dwIndex, table);
    }
    else
    {
        strText = " \"\"";
    }
    if (pValue != nullptr)
        *pValue = value;
    return strText;
}

std::string CInspector::ReadSystemAndPublic(unsigned char by)
{
    std::string strText;
    if (Has(by, 2))
        strText += ", system" + ReadIdentifyingString(m_tables.otherURIs);
    if (Has(by, 1))
        strText += ", public" + ReadIdentifyingString(m_tables.otherURIs);
    return strText;
}

SEncodedText CInspector::ReadEncodedStringBit3(unsigned char by)
{
    SEncodedText text;
    text.eForm = static_cast<EForm>(by >> 4 & 3);
    if (text.eForm >= EForm::Alphabet)
    {
        const unsigned nHigh = (by & 0x0Fu) << 4;
        by = m_in.ReadOctet();
        text.dwIndex = (nHigh | by >> 4) + 1;
    }
    text.octets = m_in.ReadOctets(m_in.ReadLengthBit5(by));
    return text;
}

SEncodedText CInspector::ReadEncodedStringBit5(unsigned char by)
{
    SEncodedText text;
    text.eForm = static_cast<EForm>(by >> 2 & 3);
    if (text.eForm >= EForm::Alphabet)
    {
        const unsigned nHigh = (by & 3u) << 6;
        by = m_in.ReadOctet();
        text.dwIndex = (nHigh | by >> 2) + 1;
    }
    text.octets = m_in.ReadOctets(m_in.ReadLengthBit7(by));
    return text;
}

} // namespace

bool IsFastInfoset(std::string_view octets)
{
    return FindIdentification(octets) != std::string_view::npos;
}

void Inspect(std::string_view octets, bool bWholeValues, const SStreams& streams)
{
    CListing listing(octets, streams.out, streams.bOutIsColoured);
    CNoHandler handler;
    CInspector(octets, bWholeValues, &listing, handler, streams).Run();
}

void WalkInfoset(std::string_view octets, IInfosetHandler& handler, const SStreams& streams)
{
    CInspector(octets, true, nullptr, handler, streams).Run();
}

} // namespace quiver_fi
