#pragma once

#include "quiver/document/XmlName.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

class CXmlTreeBuilder;

/// A namespace as it stands in the document, and as text of the tree. One record for each.
using SScannedNamespace = std::map<std::string, const std::wstring*, std::less<>>::value_type;

/// A prefix of names, and what it stands for at the present place of the document.
struct SScannedPrefix
{
    std::string_view svPrefix;
    /// Null while the prefix is not bound.
    const SScannedNamespace* pNamespace = nullptr;
    /// What the builder was told last.
    const SScannedNamespace* pListed = nullptr;
    /// Whether it stands for different namespaces in different elements.
    bool bChanges = false;
};

/// A name as it stands in the document, prefix and all.
struct SScannedName
{
    /// The tree's name, and the namespace for which it was found.
    struct SMeaning
    {
        const SScannedNamespace* pNamespace = nullptr;
        const SXmlName* pName = nullptr;
    };

    std::string_view svName;
    std::string_view svLocalName;
    /// The prefix that is looked up for an element, and for an attribute.
    const SScannedPrefix* pElementPrefix;
    const SScannedPrefix* pAttributePrefix;
    /// The prefix that an attribute of this name declares, or null.
    SScannedPrefix* pDeclared = nullptr;
    SMeaning element;
    SMeaning attribute;
    /// The name that came next when this one was met last.
    SScannedName* pFollower = nullptr;
    /// The last tag that had an attribute of this name.
    std::uint64_t nTag = 0;
    /// The first and the last bytes of the name, for comparing.
    std::uint64_t nHead = 0;
    std::uint64_t nTail = 0;
    std::uint64_t nHeadMask = 0;

    /// Whether the bytes at `p` begin with the name, though they may go on as a longer one.
    bool IsAt(const char* p, const char* pEnd) const
    {
        const std::size_t nLength = svName.size();
        const auto nLeft = static_cast<std::size_t>(pEnd - p);
        if (nLeft < nLength + 8)
            return nLeft >= nLength && std::memcmp(p, svName.data(), nLength) == 0;
        if (((LoadEight(p) ^ nHead) & nHeadMask) != 0)
            return false;
        if (nLength <= 8)
            return true;
        return LoadEight(p + nLength - 8) == nTail &&
               (nLength <= 16 || std::memcmp(p + 8, svName.data() + 8, nLength - 16) == 0);
    }

    static std::uint64_t LoadEight(const char* p)
    {
        std::uint64_t nBytes;
        std::memcpy(&nBytes, p, 8);
        return nBytes;
    }
};

/// The names, prefixes and namespaces of one document while it is scanned. A name that occurs over and over is
/// recognised by its bytes, without a look at its characters or its namespace.
///
/// Names stand in an ordered map, so that no choice of names in a document can make finding them slow.
class CXmlScannedNames
{
public:
    /// @param builder makes the names of the tree; it must live as long as this object.
    /// @param bNamespaces whether prefixes are told apart from names.
    CXmlScannedNames(CXmlTreeBuilder& builder, bool bNamespaces);
    CXmlScannedNames(const CXmlScannedNames&) = delete;
    CXmlScannedNames& operator=(const CXmlScannedNames&) = delete;

    /// Reads the name at `p` and moves behind it. The bytes live as long as this object, and the last one of them, ahead
    /// of `pEnd`, belongs to no name.
    /// @return null if there is no name, or none that is known to be one.
    SScannedName* Read(const char*& p, const char* pEnd)
    {
        SScannedName* const pNext = m_pLast->pFollower;
        if (pNext == nullptr || !pNext->IsAt(p, pEnd) || IsNameByte(p[pNext->svName.size()]))
            return Find(p);
        p += pNext->svName.size();
        return m_pLast = pNext;
    }

    /// The tree's name of an element; null if its prefix is not bound.
    const SXmlName* GetElementName(SScannedName& name) { return GetMeaning(name, *name.pElementPrefix, name.element); }

    /// The same for an attribute that declares no namespace.
    const SXmlName* GetAttributeName(SScannedName& name)
    {
        return GetMeaning(name, *name.pAttributePrefix, name.attribute);
    }

    /// Binds a prefix until Unbind, and tells the builder.
    /// @return false for all but plain declarations.
    bool Bind(SScannedPrefix& prefix, std::string_view svNamespace);

    /// How many bindings there are.
    std::size_t GetBindingCount() const { return m_bindings.size(); }

    /// Takes bindings back until there are so many as before.
    void Unbind(std::size_t nBindings)
    {
        while (m_bindings.size() > nBindings)
        {
            m_bindings.back().pPrefix->pNamespace = m_bindings.back().pBefore;
            m_bindings.pop_back();
        }
    }

    /// Whether a byte can be part of a name; what it is a part of may still be none.
    static bool IsNameByte(char c) { return s_nameBytes[static_cast<unsigned char>(c)]; }

private:
    struct SBinding
    {
        SScannedPrefix* pPrefix;
        const SScannedNamespace* pBefore;
    };

    using CNames = std::map<std::string_view, SScannedName>;

    static const std::array<bool, 256> s_nameBytes;

    const SXmlName* GetMeaning(SScannedName& name, const SScannedPrefix& prefix, SScannedName::SMeaning& meaning)
    {
        return meaning.pNamespace == prefix.pNamespace ? meaning.pName : FindMeaning(name, prefix, meaning);
    }

    SScannedName* Find(const char*& p);
    SScannedName* FindInMap(std::string_view name);
    bool Describe(SScannedName& name);
    SScannedPrefix& FindPrefix(std::string_view prefix);
    const SScannedNamespace& FindNamespace(std::string_view svNamespace);
    const SXmlName* FindMeaning(SScannedName& name, const SScannedPrefix& prefix, SScannedName::SMeaning& meaning);

    CXmlTreeBuilder& m_builder;
    const bool m_bNamespaces;
    CNames m_names;
    std::array<SScannedName*, 128> m_cache{};
    /// Stands ahead of the first name.
    SScannedName m_beginning{};
    SScannedName* m_pLast = &m_beginning;
    std::map<std::string, const std::wstring*, std::less<>> m_namespaces;
    std::map<std::string_view, SScannedPrefix> m_prefixes;
    /// Names without a prefix: of attributes, and of elements.
    SScannedPrefix m_none;
    SScannedPrefix m_default;
    std::vector<SBinding> m_bindings;
    /// Working space.
    std::string m_strName;
    std::wstring m_strPrefix;
};

} // namespace QvXmlLib9
