#pragma once

#include "quiver/foundation/Export.h"

#include <atomic>
#include <memory>
#include <string>

namespace QvXmlLib9
{

class CParsedBounds;

/// The facets of a simple type (XML Schema Part 2, 4.3), as generated code spells them out:
///
///     // 1 <= quantity < 100
///     static const CPrimitiveRestrictions restrictions(L"", -1, -1, L"1", L"", L"", L"100", -1);
///
/// The bounds are lexical forms; what they mean is settled by the kind of the value that meets them. Nothing is checked
/// here: a bad pattern or bound fails when a value is checked. An object may be used by several threads as long as none
/// of them assigns to it.
class QVXMLLIB_API CPrimitiveRestrictions
{
public:
    /// No facet at all.
    CPrimitiveRestrictions();

    /// @param pattern regular expression in the dialect of XML Schema; empty for none.
    /// @param minLength, maxLength, length in bytes for binary kinds, in UTF-16 code units for strings; -1 for none.
    /// @param minInclusive, maxInclusive, minExclusive, maxExclusive lexical form of the bound; empty for none.
    ///
    /// All texts are copied, as UTF-16 units; null means empty.
    CPrimitiveRestrictions(const wchar_t* pattern, int minLength, int maxLength, const wchar_t* minInclusive,
                           const wchar_t* maxInclusive, const wchar_t* minExclusive, const wchar_t* maxExclusive,
                           int length);

    CPrimitiveRestrictions(const CPrimitiveRestrictions& source);
    CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions& source);
    virtual ~CPrimitiveRestrictions();

    const std::wstring& GetPattern() const { return m_strPattern; }
    int GetMinLength() const { return m_nMinLength; }
    int GetMaxLength() const { return m_nMaxLength; }
    const std::wstring& GetMinInclusive() const { return m_strMinInclusive; }
    const std::wstring& GetMaxInclusive() const { return m_strMaxInclusive; }
    const std::wstring& GetMinExclusive() const { return m_strMinExclusive; }
    const std::wstring& GetMaxExclusive() const { return m_strMaxExclusive; }
    int GetLength() const { return m_nLength; }

    /// @name For the checks of the library
    /// @{

    /// The pattern in UTF-8.
    const std::string& GetPatternUtf8() const { return m_strPatternUtf8; }

    /// Whether any of the four bounds is set.
    bool HasBounds() const { return m_bHasBounds; }

    /// The bounds in the form of some kind of value, if they have been remembered.
    const CParsedBounds* GetParsedBounds() const { return m_pParsedBounds.load(std::memory_order_acquire); }

    /// Keeps `pBounds`, unless bounds are remembered already. May be called by several threads at once.
    void RememberParsedBounds(std::unique_ptr<const CParsedBounds> pBounds) const;
    /// @}

private:
    std::wstring m_strPattern;
    int m_nMinLength = -1;
    int m_nMaxLength = -1;
    std::wstring m_strMinInclusive;
    std::wstring m_strMaxInclusive;
    std::wstring m_strMinExclusive;
    std::wstring m_strMaxExclusive;
    int m_nLength = -1;
    bool m_bHasBounds = false;
    std::string m_strPatternUtf8;
    /// Set at most once while the facets stay as they are, so that checks need no lock.
    mutable std::atomic<const CParsedBounds*> m_pParsedBounds{nullptr};
};

} // namespace QvXmlLib9
