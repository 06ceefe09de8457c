#pragma once

#include "quiver/foundation/Export.h"

#include <cstddef>
#include <string>

namespace QvXmlLib9
{

class CElement;

/// What a wildcard of a schema lets through (XML Schema Part 1, 3.10): xs:any and xs:anyAttribute. A constant; the
/// texts it is given are literals.
struct QVXMLLIB_API SWildcard
{
    enum EKind
    {
        Any,
        Not, ///< every namespace but those listed
        List ///< those listed
    };

    EKind eKind = Any;
    const wchar_t* const* ppUris = nullptr; ///< of Not and List; the empty text stands for no namespace
    std::size_t nUris = 0;
    int nMin = 0;
    int nMax = -1;                            ///< -1 for unbounded
    const wchar_t* lpctElementName = nullptr; ///< the one local name that is let through, null for any

    /// Whether a namespace is let through.
    bool Allows(const std::wstring& strNamespace) const;
    /// Whether an element is let through.
    bool Allows(const std::wstring& strNamespace, const std::wstring& strLocalName) const;

    /// @throws CQvValidationException "The element [%s] of the namespace [%s] may not stand here", before it is
    ///         written.
    void Throw_IfForbidden(const CElement& element) const;
};

class CElement;

/// Takes the white space away that stands between the children of open elements: it is layout, and would come out
/// behind the last child.
void DropLayout(CElement& element);

} // namespace QvXmlLib9
