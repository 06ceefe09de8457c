#include "quiver/fastinfoset/FIVocabulary.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Functions.h"
#include "quiver/output/UnitText.h"

#include <cstdio>
#include <cwchar>

namespace QvXmlLib9
{

namespace
{

/// Stands between the parts of a qualified name in the printed tables.
constexpr wchar_t s_cPartSeparator = 1;

/// Whichever way the program uses the standard output, the text arrives there.
void Print(const std::wstring& strText)
{
    if (std::fwide(stdout, 0) > 0)
    {
        std::fputws(strText.c_str(), stdout);
        return;
    }
    std::string strBytes;
    AppendUtf8(strBytes, strText);
    std::fwrite(strBytes.data(), 1, strBytes.size(), stdout);
}

void PrintEntry(const std::wstring& strKey, std::uint32_t dwIndex)
{
    Print(FormatString(L"%s, %d\n", strKey.c_str(), static_cast<int>(dwIndex)));
}

void PrintMap(const wchar_t* lpctTitle, const CFIIndexMap& map)
{
    Print(lpctTitle);
    for (std::uint32_t n = 1; n <= map.GetCount(); ++n)
        PrintEntry(std::wstring(map.GetText(n)), n);
}

void PrintMap(const wchar_t* lpctTitle, const CFINameMap& map)
{
    Print(lpctTitle);
    for (std::uint32_t n = 1; n <= map.GetCount(); ++n)
    {
        const CFINameMap::SName name = map.GetName(n);
        std::wstring strKey(name.svLocalName);
        strKey.append(1, s_cPartSeparator).append(name.svNamespace);
        strKey.append(1, s_cPartSeparator).append(name.svPrefix);
        PrintEntry(strKey, n);
    }
}

} // namespace

CFIVocabulary::CFIStringTable::CFIStringTable() = default;
CFIVocabulary::CFIStringTable::CFIStringTable(const CFIStringTable& source) = default;
CFIVocabulary::CFIStringTable& CFIVocabulary::CFIStringTable::operator=(const CFIStringTable& source) = default;
CFIVocabulary::CFIStringTable::~CFIStringTable() = default;

CFIVocabulary::CFIQNameTable::CFIQNameTable() = default;
CFIVocabulary::CFIQNameTable::CFIQNameTable(const CFIQNameTable& source) = default;
CFIVocabulary::CFIQNameTable& CFIVocabulary::CFIQNameTable::operator=(const CFIQNameTable& source) = default;
CFIVocabulary::CFIQNameTable::~CFIQNameTable() = default;

CFIVocabulary::CFIVocabulary()
    : m_restrictedAlphabets{L"0123456789-+.e ", L"0123456789-:TZ "}
{
    AddPrefixName(L"xml");
    AddNamespaceName(L"http://www.w3.org/XML/1998/namespace");
}

const CFIVocabulary& CFIVocabulary::GetBuiltin()
{
    // Never destroyed, so that documents can be read and written while the program ends.
    static const CFIVocabulary& s_builtin = *new CFIVocabulary;
    return s_builtin;
}

CFIVocabulary::CFIVocabulary(const CFIVocabulary& source) = default;
CFIVocabulary& CFIVocabulary::operator=(const CFIVocabulary& source) = default;
CFIVocabulary::~CFIVocabulary() = default;

void CFIVocabulary::AddAttribute(std::wstring_view svPrefix, std::wstring_view svNamespace,
                                 std::wstring_view svLocalName)
{
    AddQName(svPrefix, svNamespace, svLocalName, m_maps.m_attributeNameMap, m_attributeNames);
}

void CFIVocabulary::AddElement(std::wstring_view svPrefix, std::wstring_view svNamespace, std::wstring_view svLocalName)
{
    AddQName(svPrefix, svNamespace, svLocalName, m_maps.m_elementNameMap, m_elementNames);
}

void CFIVocabulary::AddAttributeValue(std::wstring_view svValue)
{
    AddValue(svValue, m_maps.m_attributeValueMap, m_attributeValues);
}

void CFIVocabulary::AddElementValue(std::wstring_view svValue)
{
    AddValue(svValue, m_maps.m_characterChunkMap, m_characterChunks);
}

void CFIVocabulary::AddPrefixName(std::wstring_view svValue)
{
    AddValue(svValue, m_maps.m_prefixNameMap, m_prefixNames);
}

void CFIVocabulary::AddNamespaceName(std::wstring_view svValue)
{
    AddValue(svValue, m_maps.m_namespaceNameMap, m_namespaceNames);
}

void CFIVocabulary::AddLocalName(std::wstring_view svValue)
{
    AddValue(svValue, m_maps.m_localNameMap, m_localNames);
}

void CFIVocabulary::AddQName(std::wstring_view svPrefix, std::wstring_view svNamespace, std::wstring_view svLocalName,
                             CFINameMap& map, CFIQNameTable& table)
{
    std::wstring strPrefixBuffer;
    std::wstring strNamespaceBuffer;
    std::wstring strLocalNameBuffer;
    const CFINameMap::SName name{ToUnitText(svPrefix, strPrefixBuffer), ToUnitText(svNamespace, strNamespaceBuffer),
                                 ToUnitText(svLocalName, strLocalNameBuffer)};
    if (map.Find(name) != 0)
        return;
    const std::uint32_t dwPrefixIndex =
        name.svPrefix.empty() ? 0 : FindOrAddPart(name.svPrefix, m_maps.m_prefixNameMap, m_prefixNames);
    const std::uint32_t dwNamespaceIndex =
        name.svNamespace.empty() ? 0 : FindOrAddPart(name.svNamespace, m_maps.m_namespaceNameMap, m_namespaceNames);
    const std::uint32_t dwLocalNameIndex = FindOrAddPart(name.svLocalName, m_maps.m_localNameMap, m_localNames);
    map.Add(name);
    AddQNameToVector(dwPrefixIndex, dwNamespaceIndex, dwLocalNameIndex, table);
}

std::uint32_t CFIVocabulary::FindOrAddPart(std::wstring_view svPart, CFIIndexMap& map, CFIStringTable& table)
{
    const std::uint32_t dwIndex = map.Find(svPart);
    if (dwIndex != 0)
        return dwIndex;
    AddValue(svPart, map, table);
    return static_cast<std::uint32_t>(table.m_table.size());
}

void CFIVocabulary::AddQNameToVector(std::uint32_t dwPrefixIndex, std::uint32_t dwNamespaceIndex,
                                     std::uint32_t dwLocalNameIndex, CFIQNameTable& table)
{
    if (table.m_table.size() < CFIIndexMap::s_nMaxEntries)
        table.m_table.push_back({dwPrefixIndex, dwNamespaceIndex, dwLocalNameIndex});
}

void CFIVocabulary::AddValue(std::wstring_view svValue, CFIIndexMap& map, CFIStringTable& table)
{
    std::wstring strBuffer;
    const std::wstring_view svUnits = ToUnitText(svValue, strBuffer);
    map.Add(svUnits);
    AddValueToVector(svUnits, table);
}

void CFIVocabulary::AddValueToVector(std::wstring_view svValue, CFIStringTable& table)
{
    if (table.m_table.size() < CFIIndexMap::s_nMaxEntries)
        table.m_table.emplace_back(svValue);
}

void CFIVocabulary::Dump() const
{
    Print(L"\n** Dumping FI Tables **\n");
    PrintMap(L"\nAttr Names\n", m_maps.m_attributeNameMap);
    PrintMap(L"\nAttr Values\n", m_maps.m_attributeValueMap);
    PrintMap(L"\nCharacter Chunks\n", m_maps.m_characterChunkMap);
    PrintMap(L"\nElement Names\n", m_maps.m_elementNameMap);
    PrintMap(L"\nLocal Names\n", m_maps.m_localNameMap);
    PrintMap(L"\nNamespace Names\n", m_maps.m_namespaceNameMap);
    PrintMap(L"\nPrefix Names\n", m_maps.m_prefixNameMap);
}

} // namespace QvXmlLib9
