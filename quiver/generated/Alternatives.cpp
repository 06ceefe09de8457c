#include "quiver/generated/Alternatives.h"

#include "quiver/core/ClassfactoryBase.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/DeclaredType.h"
#include "quiver/generated/GeneratedClass.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

namespace
{

/// Where the declarations in force say nothing about a type's prefix, the document's other ones may.
class CTypeReader : public CClassfactoryBase
{
public:
    static std::wstring Uri(CXmlElement* pElement) { return GetElementTypeNamespaceUri(pElement); }
};

/// The first alternative that a test takes, null if there is none.
template <class TTakes>
const SAlternative* FindAlternative(const SAlternatives& alternatives, TTakes Takes)
{
    const auto it = std::find_if(alternatives.begin(), alternatives.end(), Takes);
    return it == alternatives.end() ? nullptr : it;
}

const SAlternative* FindType(const SAlternatives& types, std::wstring_view name, std::wstring_view uri)
{
    return FindAlternative(types, [name, uri](const SAlternative& type)
                           { return !type.bElement && name == type.lpctName && uri == type.lpctUri; });
}

/// Where no declaration tells the namespace of a type, in an element on its own or a Fast Infoset document, it is looked
/// for in the namespace of the element and then in all others.
const SAlternative* FindTypeAnywhere(const SAlternatives& types, std::wstring_view name)
{
    return FindAlternative(types, [name](const SAlternative& type) { return !type.bElement && name == type.lpctName; });
}

constexpr SAlternatives s_noOtherTypes{nullptr, 0};

/// An object of the class that is declared, for an element that says what type that is.
CSmartPtr<CXmlObjectBase> CreateOfOwnType(const CXmlElement& element, SCreator declared, const std::wstring& strType,
                                          const std::wstring& strUri)
{
    if (!declared)
        return nullptr;
    CSmartPtr<CXmlObjectBase> spObject = declared(element.GetLocalName().c_str());
    CXmlObjectBase* const pObject = spObject;
    const auto* const pGenerated = dynamic_cast<const CGeneratedObject*>(pObject);
    return pGenerated != nullptr && pGenerated->IsOfType(strType, strUri) ? spObject : nullptr;
}

[[noreturn]] void ThrowWrongType(const CXmlElement& element)
{
    throw CQvValidationException(
        FormatString(L"Failed to find a suitable substitution element for [%s]", element.GetLocalName().c_str()));
}

void TellType(const CXmlObjectBase& object)
{
    if (const auto* const pGenerated = dynamic_cast<const CGeneratedObject*>(&object))
        pGenerated->TellType(true);
}

/// The element of that name in any namespace.
const SAlternative* FindElementName(const SAlternatives& alternatives, std::wstring_view name)
{
    return FindAlternative(alternatives, [name](const SAlternative& element)
                           { return element.bElement && name == element.lpctName; });
}

/// The element of an object's name. Where two namespaces have one, the object's class decides.
const SAlternative* FindElementOf(const SAlternatives& alternatives, const std::wstring& strName, SCreator creator)
{
    const SAlternative* const pFound =
        FindAlternative(alternatives, [&strName, creator](const SAlternative& element)
                        { return element.bElement && element.creator == creator && strName == element.lpctName; });
    return pFound != nullptr ? pFound : FindElementName(alternatives, strName);
}

} // namespace

SPlace::SPlace(const wchar_t* lpctPlaceName, const wchar_t* lpctPlaceUri, const SAlternatives& alternatives,
               SCreator declaredClass)
    : lpctName(lpctPlaceName)
    , lpctUri(lpctPlaceUri)
    , pAlternatives(&alternatives)
    , declared(std::any_of(alternatives.begin(), alternatives.end(),
                           [declaredClass](const SAlternative& alternative)
                           { return alternative.creator == declaredClass; })
                   ? declaredClass
                   : SCreator())
    , bSubstitution(std::any_of(alternatives.begin(), alternatives.end(),
                                [](const SAlternative& alternative) { return alternative.bElement; }))
{
}

bool SPlace::Takes(const CXmlSerializationContext& context, const CXmlElement& element) const
{
    if (bSubstitution)
        return context.GetIgnoreNamespaces()
                   ? FindElementName(*pAlternatives, element.GetLocalName()) != nullptr
                   : FindElement(*pAlternatives, element.GetLocalName(), element.GetNamespaceURI()) != nullptr;
    return element.GetLocalName() == lpctName &&
           (context.GetIgnoreNamespaces() || element.GetNamespaceURI() == lpctUri);
}

CSmartPtr<CXmlObjectBase> SPlace::Create(CXmlElement* pElement) const
{
    CSmartPtr<CXmlObjectBase> spObject;
    if (!bSubstitution)
        spObject = CreateByType(pElement, *pAlternatives, declared);
    else
    {
        const SAlternative* pFound = FindElement(*pAlternatives, pElement->GetLocalName(), pElement->GetNamespaceURI());
        if (pFound == nullptr) // the context ignores namespaces
            pFound = FindElementName(*pAlternatives, pElement->GetLocalName());
        const SAlternatives* const pTypes = pFound->GetTypes();
        spObject = CreateByType(pElement, pTypes != nullptr ? *pTypes : s_noOtherTypes, pFound->creator);
    }
    if (spObject == nullptr)
        ThrowWrongType(*pElement);
    return spObject;
}

const wchar_t* SPlace::Prepare(const CXmlObjectBase& object) const
{
    // What stands at such a place is of a generated class, so there is no need to ask.
    const auto& generated = static_cast<const CGeneratedObject&>(object);
    const SAlternative* const pFound =
        bSubstitution ? FindElementOf(*pAlternatives, object.GetElementName(), generated.GetCreator()) : nullptr;
    generated.TellType(generated.GetCreator() != (pFound != nullptr ? pFound->creator : declared));
    return pFound != nullptr ? pFound->lpctUri : lpctUri;
}

const SAlternative* FindElement(const SAlternatives& alternatives, const std::wstring& strName,
                                const std::wstring& strUri)
{
    return FindAlternative(alternatives, [&strName, &strUri](const SAlternative& element)
                           { return element.bElement && strName == element.lpctName && strUri == element.lpctUri; });
}

CSmartPtr<CXmlObjectBase> CreateByType(CXmlElement* pElement, const SAlternatives& types, SCreator declared)
{
    const SDeclaredType said(*pElement);
    SCreator creator = declared;
    if (said.bSaid)
    {
        const std::wstring strUri = said.pUri != nullptr ? *said.pUri : CTypeReader::Uri(pElement);
        const SAlternative* pType = FindType(types, said.strName, strUri);
        if (pType == nullptr && said.pUri == nullptr)
            pType = FindTypeAnywhere(types, said.strName);
        if (pType == nullptr)
            return CreateOfOwnType(*pElement, declared, said.strName, strUri);
        creator = pType->creator;
    }
    if (!creator)
        return nullptr;
    CSmartPtr<CXmlObjectBase> spObject = creator(pElement->GetLocalName().c_str());
    if (creator != declared)
        TellType(*spObject);
    return spObject;
}

CSmartPtr<CXmlObjectBase> CreateRoot(CXmlElement* pElement, const SAlternatives& roots)
{
    const SAlternative* const pRoot = FindElement(roots, pElement->GetLocalName(), pElement->GetNamespaceURI());
    if (pRoot == nullptr)
        return nullptr;
    if (const SAlternatives* const pTypes = pRoot->GetTypes())
    {
        const CSmartPtr<CXmlObjectBase> spObject = CreateByType(pElement, *pTypes, pRoot->creator);
        if (spObject == nullptr)
            ThrowWrongType(*pElement);
        return spObject;
    }
    if (!pRoot->creator)
        ThrowWrongType(*pElement);
    return pRoot->creator(pElement->GetLocalName().c_str());
}

CSmartPtr<CXmlObjectBase> CreateKnownRoot(CXmlElement* pElement, const SAlternatives& roots)
{
    if (!IsRoot(*pElement, roots))
        throw CQvValidationException(FormatString(L"There is no class for the element [%s] of the namespace [%s]",
                                                  pElement->GetLocalName().c_str(),
                                                  pElement->GetNamespaceURI().c_str()));
    return CreateRoot(pElement, roots);
}

bool IsRoot(const CXmlElement& element, const SAlternatives& roots)
{
    return FindElement(roots, element.GetLocalName(), element.GetNamespaceURI()) != nullptr;
}

} // namespace QvXmlLib9
