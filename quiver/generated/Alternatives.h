#pragma once

#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"

#include <cstddef>
#include <string>

/// @file
/// How the class of an object is found where the schema leaves it open: by the name of an element, which may be one of
/// a substitution group or the root of a document, and by `xsi:type`.

namespace QvXmlLib9
{

/// Makes an object for an element of a name. The records hand the number on, see SCreator.
using PfnCreateObject = CSmartPtr<CXmlObjectBase> (*)(int nClassId, const wchar_t* lpctElementName);

/// A class, as what makes its objects. By it classes are told apart.
///
/// The creator of a class that is compiled is `&CreateObject<CItem>`. Classes that are made while a program runs may have
/// one function in common, and a number each.
struct SCreator
{
    constexpr SCreator(PfnCreateObject pfnClassCreate = nullptr, int nClass = 0)
        : pfnCreate(pfnClassCreate)
        , nClassId(nClass)
    {
    }

    PfnCreateObject pfnCreate; ///< null for an abstract class, of which no object can be made
    int nClassId;              ///< what the function gets

    /// An object for an element of a name.
    CSmartPtr<CXmlObjectBase> operator()(const wchar_t* lpctElementName) const
    {
        return pfnCreate(nClassId, lpctElementName);
    }

    explicit operator bool() const { return pfnCreate != nullptr; }
    friend bool operator==(const SCreator& a, const SCreator& b)
    {
        return a.pfnCreate == b.pfnCreate && a.nClassId == b.nClassId;
    }
    friend bool operator!=(const SCreator& a, const SCreator& b) { return !(a == b); }
};

struct SAlternatives;

/// One class that may stand at a place.
struct SAlternative
{
    bool bElement; ///< lpctUri and lpctName name an element; otherwise a type
    const wchar_t* lpctUri;
    const wchar_t* lpctName;
    SCreator creator; ///< null for an element of an abstract type, which says its type
    /// Of an element, the types that it may have: what gives them, or where they are; null if only its
    /// own.
    const SAlternatives& (*pfnTypes)() = nullptr;
    const SAlternatives* pTypes = nullptr;

    /// The types that an element may have, null if that is only the one.
    const SAlternatives* GetTypes() const { return pfnTypes != nullptr ? &pfnTypes() : pTypes; }
};

/// All of them. A constant, as its parts.
struct SAlternatives
{
    const SAlternative* pFirst;
    std::size_t nCount;

    const SAlternative* begin() const { return pFirst; }
    const SAlternative* end() const { return pFirst + nCount; }
};

/// Makes an object of a generated class.
template <class TClass>
CSmartPtr<CXmlObjectBase> CreateObject(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new TClass(lpctElementName));
}

/// What a place with alternatives takes: what is declared there, what its name may be, what its type may be.
struct SPlace
{
    const wchar_t* lpctName;
    const wchar_t* lpctUri;
    const SAlternatives* pAlternatives;
    SCreator declared;  ///< makes one of the class that is declared; null if that is abstract
    bool bSubstitution; ///< the alternatives list elements: nothing else may stand there

    /// @param declared the creator of the declared class, taken only if the alternatives have it.
    SPlace(const wchar_t* lpctName, const wchar_t* lpctUri, const SAlternatives& alternatives, SCreator declared);

    /// Whether an element may stand there.
    bool Takes(const CXmlSerializationContext& context, const CXmlElement& element) const;

    /// The object for an element that may stand there.
    /// @throws CQvValidationException "Failed to find a suitable substitution element for [%s]" if its type may not.
    CSmartPtr<CXmlObjectBase> Create(CXmlElement* pElement) const;

    /// Makes an object of a generated class say its type if it has to there.
    /// @return the namespace that its element is in.
    const wchar_t* Prepare(const CXmlObjectBase& object) const;
};

/// The element of a substitution group, null if the group has none of that name.
const SAlternative* FindElement(const SAlternatives& alternatives, const std::wstring& strName,
                                const std::wstring& strUri);

/// Makes the object for an element that may say its type.
/// @param declared makes one of the class that is declared, null if that is abstract.
/// @return null if the element says a type that may not stand there, or none where it has to.
CSmartPtr<CXmlObjectBase> CreateByType(CXmlElement* pElement, const SAlternatives& types, SCreator declared);

/// Makes the object for the root element of a document, by its name and its `xsi:type`.
/// @param roots elements.
/// @return null if there is no such element.
/// @throws CQvValidationException "Failed to find a suitable substitution element for [%s]" if its type may not stand
///         there.
QVXMLLIB_API CSmartPtr<CXmlObjectBase> CreateRoot(CXmlElement* pElement, const SAlternatives& roots);

/// The same where there has to be one.
/// @throws CQvValidationException "There is no class for the element [%s] of the namespace [%s]" too.
QVXMLLIB_API CSmartPtr<CXmlObjectBase> CreateKnownRoot(CXmlElement* pElement, const SAlternatives& roots);

/// Whether an element is one of the roots, by its name.
QVXMLLIB_API bool IsRoot(const CXmlElement& element, const SAlternatives& roots);

} // namespace QvXmlLib9
