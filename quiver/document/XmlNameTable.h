#pragma once

#include "quiver/document/XmlName.h"

#include <array>
#include <cstddef>
#include <forward_list>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

/// Names by the form in which they arrive. A name that occurs over and over costs neither a conversion nor an
/// allocation after its first time.
///
/// The names stand in an ordered map, so that no choice of names in a document can make finding them slow. In front of
/// it is a cache of the names last found.
template <class Char>
class CXmlNameIndex
{
public:
    using CView = std::basic_string_view<Char>;
    using CString = std::basic_string<Char>;

    /// Namespace as it arrives, and as text of the library.
    using CNamespaces = std::map<CString, std::wstring, std::less<>>;
    using CNamespace = typename CNamespaces::value_type;

    struct SEntry;
    struct SLess
    {
        using is_transparent = void;
        template <class Left, class Right>
        bool operator()(const Left& left, const Right& right) const
        {
            return left.first != right.first ? std::less<>()(left.first, right.first)
                                             : CView(left.second) < CView(right.second);
        }
    };
    /// Namespace and local name as they arrive, and what they stand for.
    using CNames = std::map<std::pair<const CNamespace*, CString>, SEntry, SLess>;
    using CName = typename CNames::value_type;

    struct SEntry
    {
        SXmlName name;
        /// The name that was looked for next when this one was found last, for whoever keeps note of that.
        CName* pFollower;
    };

    /// @param pStore where the nodes live that the names are for.
    explicit CXmlNameIndex(CXmlNodeStore* pStore)
        : m_pStore(pStore)
    {
    }
    CXmlNameIndex(const CXmlNameIndex&) = delete;
    CXmlNameIndex& operator=(const CXmlNameIndex&) = delete;

    CName& Find(CView svNamespace, CView svLocalName);

private:
    using CKeyView = std::pair<const CNamespace*, CView>;
    /// Names that share a place, the one last found in front.
    using CPlace = std::array<CName*, 2>;

    static std::size_t GetPlace(const CKeyView& key);
    const CNamespace* FindNamespace(CView svNamespace);
    CName& FindInMap(const CKeyView& key);

    CXmlNodeStore* m_pStore;
    CNamespaces m_namespaces;
    CNames m_names;
    const CNamespace* m_pLastNamespace = nullptr;
    std::array<CPlace, 256> m_cache{};
};

/// The distinct names of one document. The records live as long as the table.
class CXmlNameTable
{
public:
    /// @param pStore where the nodes live that the names are for.
    explicit CXmlNameTable(CXmlNodeStore* pStore)
        : m_pStore(pStore)
    {
    }

    /// The record of a name in the form of the XML parser: UTF-8, with a `|` between namespace and local name if there
    /// is a namespace. The first `|` counts.
    ///
    /// Names follow upon each other in much the same way all through a document, so the one that followed last time is
    /// compared first, and mostly that is all.
    const SXmlName& Find(const char* lpcName);

    /// A new record of a name, for somebody who knows which names there have been and asks once for each.
    /// @param strNamespaceURI what MakeNamespace has made.
    const SXmlName& Make(const std::wstring& strNamespaceURI, std::string_view utf8LocalName);
    const std::wstring& MakeNamespace(std::string_view utf8NamespaceURI);

    /// The record of a name given as text.
    const SXmlName& Find(std::wstring_view svNamespaceURI, std::wstring_view svLocalName);

private:
    using CUtf8Index = CXmlNameIndex<char>;
    using CTextIndex = CXmlNameIndex<wchar_t>;

    static bool IsName(const CUtf8Index::CName& name, const char* lpcName);
    CUtf8Index::CName& FindInIndex(const char* lpcName);

    CXmlNodeStore* m_pStore;
    /// Most documents bring their names in one form only.
    std::unique_ptr<CUtf8Index> m_pUtf8Names;
    std::unique_ptr<CTextIndex> m_pTextNames;
    CUtf8Index::CName* m_pLast = nullptr;
    std::forward_list<SXmlName> m_made;
    std::forward_list<std::wstring> m_madeNamespaces;
};

} // namespace QvXmlLib9
