#pragma once

#include "quiver/fastinfoset/FIOctetReader.h"
#include "quiver/fastinfoset/FIRepetition.h"
#include "quiver/fastinfoset/FITable.h"
#include "quiver/fastinfoset/FIVocabulary.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

class CFastInfosetContext;
class CFITreeBuilder;
class CXmlElement;
class CXmlText;
struct SXmlName;

/// Reads a Fast Infoset document (ITU-T X.891) from a buffer into a tree, and tells on the way whether the buffer holds
/// one at all:
///
///     CFastInfosetReader reader(&context.GetFIContext(), &builder);
///     if (!reader.Parse(svOctets))
///         ParseText();
///
/// What the tree cannot hold (comments, processing instructions, declarations) is read and passed over. Nothing is
/// entered into the tables from a document's initial vocabulary; a document that relies on one is readable if the same
/// entries stand in the context's vocabulary and the context uses it.
///
/// No document, however damaged, makes the reader leave the buffer, recurse with the depth of the elements, or need
/// memory out of proportion to the buffer. One reader reads one document.
class CFastInfosetReader : public CInstanceMonitor
{
public:
    /// @param pContext the options, only read.
    /// @param pDocument builds the tree. Neither is owned; both must live as long as the reader.
    CFastInfosetReader(const CFastInfosetContext* pContext, CFITreeBuilder* pDocument);
    CFastInfosetReader(const CFastInfosetReader&) = delete;
    CFastInfosetReader& operator=(const CFastInfosetReader&) = delete;
    ~CFastInfosetReader() override;

    /// Reads the document.
    /// @param svOctets must stay as long as the reader.
    /// @return false if the buffer does not begin like a Fast Infoset document, with or without one of the nine XML
    ///         declarations in front.
    /// @throws CQvException "Failed to parse FastInfoset. ..." with what is wrong; the tree then holds what came ahead
    ///         of it.
    bool Parse(std::string_view svOctets);

    /// Gives up tables and buffers. Parse cannot be called again.
    void Reset();

private:
    /// The tree's record of a name, and the length of namespace and local name together.
    struct SNameRecord
    {
        const SXmlName* pName = nullptr;
        std::size_t nUnits = 0;
    };

    /// A table of qualified names, with the record of each name that has occurred.
    struct SNames
    {
        CFITable<CFIVocabulary::CQNameParts> table;
        std::vector<SNameRecord> records;
        const char* lpcIndexCheck;
    };

    /// A string as it stands in the document.
    struct SEncodedString
    {
        unsigned nForm;
        /// Of the alphabet or the algorithm, from 1.
        std::uint32_t dwIndex;
        std::string_view svOctets;
    };

    /// The text of a string: UTF-8 if it stands so in the buffer or is ASCII, since the tree takes that as it is;
    /// otherwise UTF-16 units.
    struct SValue
    {
        SValue() = default;
        explicit SValue(std::string_view svUtf8_)
            : svUtf8(svUtf8_)
        {
        }
        explicit SValue(std::wstring_view svUnits_)
            : svUnits(svUnits_)
        {
        }

        std::string_view svUtf8 = "";
        std::wstring_view svUnits;
    };

    /// A value of a table. What the document refers to is made once, and shared by all nodes that have it.
    struct STableValue
    {
        SValue value;
        CXmlText* pShared = nullptr;
        std::uint32_t dwUnits = 0;
        bool bShared = false;
    };

    /// A table of values, and what keeps those alive that do not stand in the buffer.
    struct SValues
    {
        std::vector<STableValue> values;
        std::forward_list<std::string> asciiTexts;
        std::forward_list<std::wstring> texts;
    };

    void BeginDocument();
    bool SkipIdentification();
    void SkipHead();
    void SkipAdditionalData();
    void SkipInitialVocabulary();
    void SkipNotations();
    void SkipUnparsedEntities();
    void SkipOctetStrings();
    void SkipEncodedStrings();
    void SkipNameSurrogates();
    void SkipIdentifyingStrings(unsigned nCount);
    void SkipNonIdentifyingString();
    void SkipProcessingInstruction();

    void ReadBody();
    void ReadElements(unsigned char by);
    bool BeginElement(unsigned char by);
    void EndElement();
    unsigned char ReadNamespaceAttributes();
    bool ReadAttributes(CXmlElement* pElement);
    void ReadContent(unsigned char by);
    void ReadChunk(unsigned char by);
    void TraceElement(const wchar_t* lpctFormat, const SXmlName& name) const;

    const SXmlName& ReadLiteralName(unsigned char by, SNames& names);
    std::uint32_t ReadNamePart(CFITable<std::wstring>& table);
    const SXmlName& GetName(std::uint32_t dwIndex, SNames& names);
    void AddRecord(std::uint32_t dwIndex, SNames& names);
    SNameRecord MakeRecord(const CFIVocabulary::CQNameParts& parts);
    const std::wstring& ReadIdentifyingString(CFITable<std::wstring>& table);

    void ReadAttributeValue(CXmlElement* pElement, const SXmlName& name);
    void AddRepeatedAttribute(CXmlElement* pElement, const SXmlName& name, std::uint32_t dwIndex);
    void AppendRepeatedChunk(CXmlElement* pElement, std::uint32_t dwIndex);
    template <class Make>
    static CXmlText* GetShared(STableValue& entry, Make make);
    void AppendText(CXmlElement* pElement, const SValue& value);
    SEncodedString ReadEncodedStringBit3(unsigned char by);
    SEncodedString ReadEncodedStringBit5(unsigned char by);
    SValue Decode(const SEncodedString& encoded);
    SValue DecodeUtf8(std::string_view svOctets);
    void DecodeUtf16Octets(std::string_view svOctets);
    void DecodeAlphabet(std::uint32_t dwIndex, std::string_view svOctets);
    SValue FromUnits();
    void AddValue(const SValue& value, SValues& table) const;
    static STableValue& GetRepeated(std::uint32_t dwIndex, SValues& table);
    void CountRepeated(std::uint64_t nUnits);
    void CountRepeatedName(std::uint64_t nUnits);

    const CFastInfosetContext* m_pFIContext;
    CFITreeBuilder* m_pDocument;
    std::size_t m_nDataLen = 0;
    CFIOctetReader m_in;
    /// What the document begins with, and the document's own tables.
    const CFIVocabulary* m_pAgreed = nullptr;
    CFITable<std::wstring> m_prefixNames;
    CFITable<std::wstring> m_namespaceNames;
    CFITable<std::wstring> m_localNames;
    SNames m_elements;
    SNames m_attributes;
    SValues m_attributeValues;
    SValues m_characterChunks;
    /// The value just decoded, unless it stands in the buffer; in the first string if it is ASCII.
    std::string m_strAscii;
    std::wstring m_strUnits;
    CFIRepetition m_repetition;
    bool m_bTrace = false;
};

} // namespace QvXmlLib9
