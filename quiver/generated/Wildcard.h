#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/SimpleType.h"

#include <cstddef>
#include <string>

namespace QvXmlLib9
{

class CElement;
class CXmlAttribute;
class CXmlElement;
class CXmlSerializationContext;

/// A global attribute. A constant; the texts are literals.
struct SKnownAttribute
{
    const wchar_t* lpctUri;
    const wchar_t* lpctName;
    PfnSimpleType pfnType;
    const wchar_t* lpctFixed = nullptr; ///< the only value, null for any
    const CSimpleType* pType = nullptr; ///< instead of pfnType, for a type that is no constant

    const CSimpleType& GetType() const { return pType != nullptr ? *pType : pfnType(); }
};

/// The global declarations of schemas, by which what stands under wildcards is checked.
struct SKnownDeclarations
{
    SAlternatives elements;
    const SKnownAttribute* pAttributes;
    std::size_t nAttributes;
};

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
    /// By what that which is let through is checked while it is read; null where nothing is.
    const SKnownDeclarations* pKnown = nullptr;
    bool bStrict = false; ///< what is not known is refused

    /// Whether a namespace is let through.
    bool Allows(const std::wstring& strNamespace) const;
    /// Whether an element is let through.
    bool Allows(const std::wstring& strNamespace, const std::wstring& strLocalName) const;

    /// @throws CQvValidationException "The element [%s] of the namespace [%s] may not stand here", before it is
    ///         written.
    void Throw_IfForbidden(const CElement& element) const;

    /// Checks an element that is let through, with all that is in it: of known elements and attributes the content,
    /// and under a strict wildcard that it is known. An element with one name is known by its place and may hold
    /// anything.
    /// @throws CQvException what reading it into the class of its declaration throws, and CQvValidationException "The
    ///         element [%s] of the namespace [%s] is not declared".
    void Throw_IfContentIsWrong(CXmlElement& element, const CXmlSerializationContext& context) const;

    /// The same for an attribute.
    /// @return false for one that has to be known and is not.
    bool Accepts(const CXmlAttribute& attribute, const CXmlSerializationContext& context) const;
};

/// Whether what is being read is only looked at, so that open elements need not keep what is in them.
bool IsCheckingOnly();

/// Takes the white space away that stands between the children of open elements: it is layout, and would come out
/// behind the last child.
void DropLayout(CElement& element);

} // namespace QvXmlLib9
