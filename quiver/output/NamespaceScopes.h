#pragma once

#include "quiver/foundation/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// The namespaces in scope at a point of a document: for each namespace the prefix last bound to it.
///
/// Behaves as a map from namespace to prefix that every declaring element copies and that dies with the element, but
/// nothing is copied: bindings lie on a stack, an element that ends takes its own off again, and a binding hides an
/// earlier one of its namespace. All searches take constant time, however many namespaces a document declares.
///
/// Text must be UTF-16 units without a unit of value 0.
class QVXMLLIB_API CNamespaceScopes
{
public:
    static constexpr std::size_t s_nNotFound = static_cast<std::size_t>(-1);

    /// The binding that holds for a namespace, or `s_nNotFound`.
    std::size_t Find(std::wstring_view svNamespace) const;

    /// The prefix of a binding that `Find` returned; valid until the next `Bind`.
    const std::wstring& GetPrefix(std::size_t nBinding) const { return m_bindings[nBinding].strPrefix; }

    /// Binds a prefix to a namespace from now on. Returns the binding.
    std::size_t Bind(std::wstring_view svNamespace, std::wstring_view svPrefix);

    /// Makes a namespace unknown from now on, until the binding that says so is dropped.
    void Unbind(std::wstring_view svNamespace);

    /// What a binding says: whether it makes its namespace unknown, and which namespace it is.
    bool IsUnbinding(std::size_t nBinding) const { return m_bindings[nBinding].bUnbinds; }
    const std::wstring& GetNamespace(std::size_t nBinding) const { return m_bindings[nBinding].strNamespace; }

    /// Whether a binding in force has the prefix.
    bool IsPrefixBound(std::wstring_view svPrefix) const;

    /// The first of the prefixes AA, AB, ..., AZ, BA, ... that no binding in force has.
    std::wstring GeneratePrefix();

    /// The prefix of a number: two units, 65 + n / 26 and 65 + n % 26. There is no bound: from 676 on the first unit
    /// lies behind "Z".
    static std::wstring FormatPrefix(unsigned int n);

    /// Bindings made and not dropped.
    std::size_t GetCount() const { return m_nCount; }

    /// Drops the newest bindings, down to `nCount` of them.
    void DropTo(std::size_t nCount);

private:
    static constexpr std::uint32_t s_nNone = 0xFFFFFFFF;

    struct SBinding
    {
        std::wstring strNamespace;
        std::wstring strPrefix;
        std::size_t nNamespaceHash = 0;
        std::size_t nPrefixHash = 0;
        bool bUnbinds = false;
        /// Next older binding in the same bucket.
        std::uint32_t nNextByNamespace = s_nNone;
        std::uint32_t nNextByPrefix = s_nNone;
        /// What `m_nFirstFreePrefix` was before this binding.
        unsigned int nFirstFreePrefix = 0;
    };

    std::size_t FindHashed(std::wstring_view svNamespace, std::size_t nHash) const;
    void Link(std::uint32_t nBinding);
    void Unlink(std::uint32_t nBinding);
    void GrowBuckets();

    /// The first `m_nCount` are in force; those behind them keep their memory for the next.
    std::vector<SBinding> m_bindings;
    std::size_t m_nCount = 0;
    /// Newest binding of each bucket. Bindings come and go at the newest end, so every chain is a stack.
    std::vector<std::uint32_t> m_byNamespace;
    std::vector<std::uint32_t> m_byPrefix;
    /// All generated prefixes below this number are bound.
    unsigned int m_nFirstFreePrefix = 0;
    /// The binding last found or made; most names of a document share one namespace.
    mutable std::size_t m_nLastFound = s_nNotFound;
};

} // namespace QvXmlLib9
