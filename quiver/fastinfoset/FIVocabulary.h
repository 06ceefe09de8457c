#pragma once

#include "quiver/fastinfoset/FIIndexMap.h"
#include "quiver/foundation/Export.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// The tables of a Fast Infoset document (ITU-T X.891, clause 8): names and short values that the document mentions by
/// index once they have occurred. Writer and reader build equal tables in step.
///
/// A vocabulary that both sides agreed on in advance is put into the context of a conversion by the `Add...`
/// operations, on both sides with the same entries in the same order:
///
///     CFIVocabulary* pVocabulary = context.GetFIContext().GetVocabulary();
///     pVocabulary->AddElement(L"", L"urn:a", L"order");
///     pVocabulary->AddAttribute(L"", L"", L"id");
///     context.GetFIContext().SetUseGeneratedVocabulary(true);
///
/// Every document then starts from these tables. Indexes begin at 1. A new vocabulary holds the prefix "xml",
/// its namespace, and the two built-in restricted alphabets.
///
/// A table takes no more than 1048576 entries; what is added to a full one is ignored. Nothing here throws apart from
/// lack of memory. A vocabulary may be read by several threads while nobody changes it.
class QVXMLLIB_API CFIVocabulary
{
public:
    /// A qualified name, as indexes into the tables of its parts; 0 stands for a part that is absent.
    struct CQNameParts
    {
        std::uint32_t m_dwPrefixIndex = 0;
        std::uint32_t m_dwNamespaceIndex = 0;
        std::uint32_t m_dwLocalNameIndex = 0;
    };

    /// A table of texts in the order of their indexes.
    class QVXMLLIB_API CFIStringTable
    {
    public:
        using const_iterator = std::vector<std::wstring>::const_iterator;

        CFIStringTable();
        CFIStringTable(const CFIStringTable& source);
        CFIStringTable& operator=(const CFIStringTable& source);
        virtual ~CFIStringTable();

        const_iterator begin() const { return m_table.begin(); }
        const_iterator end() const { return m_table.end(); }

    private:
        friend class CFIVocabulary;
        friend class CFastInfosetReader;

        std::vector<std::wstring> m_table;
    };

    /// A table of qualified names in the order of their indexes.
    class QVXMLLIB_API CFIQNameTable
    {
    public:
        using const_iterator = std::vector<CQNameParts>::const_iterator;

        CFIQNameTable();
        CFIQNameTable(const CFIQNameTable& source);
        CFIQNameTable& operator=(const CFIQNameTable& source);
        virtual ~CFIQNameTable();

        const_iterator begin() const { return m_table.begin(); }
        const_iterator end() const { return m_table.end(); }

    private:
        friend class CFIVocabulary;
        friend class CFastInfosetReader;

        std::vector<CQNameParts> m_table;
    };

    /// The built-in entries alone.
    CFIVocabulary();
    virtual ~CFIVocabulary();

    const CFIQNameTable& GetAttributeNamesTable() const { return m_attributeNames; }
    const CFIStringTable& GetAttributeValuesTable() const { return m_attributeValues; }
    const CFIQNameTable& GetElementNamesTable() const { return m_elementNames; }
    const CFIStringTable& GetCharacterChunksTable() const { return m_characterChunks; }
    const CFIStringTable& GetLocalNamesTable() const { return m_localNames; }
    const CFIStringTable& GetNamespaceNamesTable() const { return m_namespaceNames; }
    const CFIStringTable& GetPrefixNamesTable() const { return m_prefixNames; }

    /// Adds the name of an attribute and the parts of it that are new. A name that is there already is left alone.
    /// @param svPrefix empty for none.
    /// @param svNamespace empty for none.
    void AddAttribute(std::wstring_view svPrefix, std::wstring_view svNamespace, std::wstring_view svLocalName);

    /// Adds the name of an element, as AddAttribute does.
    void AddElement(std::wstring_view svPrefix, std::wstring_view svNamespace, std::wstring_view svLocalName);

    // None of these looks for the text first: adding one twice makes two entries, of which writing uses the first.

    void AddAttributeValue(std::wstring_view svValue);
    /// Adds a text of elements.
    void AddElementValue(std::wstring_view svValue);
    void AddPrefixName(std::wstring_view svValue);
    void AddNamespaceName(std::wstring_view svValue);
    void AddLocalName(std::wstring_view svValue);

    /// Prints the entries by which texts and names are found to the standard output, for debugging.
    void Dump() const;

private:
    friend class CFastInfosetContext;
    friend class CFastInfosetWriter;
    friend class CFastInfosetReader;

    /// What a document that uses no agreed vocabulary begins with.
    static const CFIVocabulary& GetBuiltin();

    // A context that is copied copies its vocabulary; callers have no use for one.
    CFIVocabulary(const CFIVocabulary& source);
    CFIVocabulary& operator=(const CFIVocabulary& source);

    void AddQName(std::wstring_view svPrefix, std::wstring_view svNamespace, std::wstring_view svLocalName,
                  CFINameMap& map, CFIQNameTable& table);
    std::uint32_t FindOrAddPart(std::wstring_view svPart, CFIIndexMap& map, CFIStringTable& table);
    static void AddQNameToVector(std::uint32_t dwPrefixIndex, std::uint32_t dwNamespaceIndex,
                                 std::uint32_t dwLocalNameIndex, CFIQNameTable& table);
    static void AddValue(std::wstring_view svValue, CFIIndexMap& map, CFIStringTable& table);
    static void AddValueToVector(std::wstring_view svValue, CFIStringTable& table);

    std::vector<std::wstring> m_restrictedAlphabets;

    /// What writing needs: from text to index.
    struct SMaps
    {
        CFINameMap m_attributeNameMap;
        CFIIndexMap m_attributeValueMap;
        CFINameMap m_elementNameMap;
        CFIIndexMap m_characterChunkMap;
        CFIIndexMap m_localNameMap;
        CFIIndexMap m_namespaceNameMap;
        CFIIndexMap m_prefixNameMap;
    };
    SMaps m_maps;

    // What reading needs: from index to text.
    CFIQNameTable m_attributeNames;
    CFIStringTable m_attributeValues;
    CFIQNameTable m_elementNames;
    CFIStringTable m_characterChunks;
    CFIStringTable m_localNames;
    CFIStringTable m_namespaceNames;
    CFIStringTable m_prefixNames;
};

} // namespace QvXmlLib9
