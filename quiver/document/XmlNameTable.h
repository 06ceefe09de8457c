#pragma once

#include "quiver/document/XmlName.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

/// Names by the form in which they arrive. A name that occurs over and over costs neither a conversion nor an
/// allocation after its first time, and normally one comparison.
///
/// The names stand in an ordered map, so that no choice of names in a document can make finding them slow. In front of
/// it is a cache of the names last found.
template <class Char>
class CXmlNameIndex
{
public:
    using CView = std::basic_string_view<Char>;

    CXmlNameIndex() = default;
    CXmlNameIndex(const CXmlNameIndex&) = delete;
    CXmlNameIndex& operator=(const CXmlNameIndex&) = delete;

    const SXmlName& Find(CView strNamespace, CView strLocalName);

private:
    using CString = std::basic_string<Char>;
    /// Namespace as it arrives, and as text of the library.
    using CNamespaces = std::map<CString, std::wstring, std::less<>>;
    using CNamespace = typename CNamespaces::value_type;
    using CKeyView = std::pair<const CNamespace*, CView>;
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
    using CNames = std::map<std::pair<const CNamespace*, CString>, SXmlName, SLess>;
    using CName = typename CNames::value_type;
    /// Names that share a place, the one last found in front.
    using CPlace = std::array<const CName*, 2>;

    static std::size_t GetPlace(const CKeyView& key);
    const CNamespace* FindNamespace(CView strNamespace);
    const CName& FindInMap(const CKeyView& key);

    CNamespaces m_namespaces;
    CNames m_names;
    const CNamespace* m_pLastNamespace = nullptr;
    std::array<CPlace, 256> m_cache{};
};

/// The distinct names of one document. The records live as long as the table.
class CXmlNameTable
{
public:
    /// The record of a name in the form of the XML parser: UTF-8, with a `|` between namespace and local name if there
    /// is a namespace. The first `|` counts.
    const SXmlName& Find(const char* lpcName);

    /// The record of a name given as text.
    const SXmlName& Find(std::wstring_view strNamespaceURI, std::wstring_view strLocalName);

    /// The name without namespace and without characters. It is in no table and lives as long as the process.
    static const SXmlName& GetEmptyName();

private:
    /// Most documents bring their names in one form only.
    std::unique_ptr<CXmlNameIndex<char>> m_pUtf8Names;
    std::unique_ptr<CXmlNameIndex<wchar_t>> m_pTextNames;
};

} // namespace QvXmlLib9
