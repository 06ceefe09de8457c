#include "quiver/generated/Wildcard.h"

#include "quiver/collections/Element.h"
#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/generated/Member.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>
#include <vector>

namespace QvXmlLib9
{

namespace
{

thread_local bool s_bCheckingOnly = false;

/// Reads an object that nobody keeps.
class CCheckingReader : public CXmlObjectBase
{
public:
    static void Read(CXmlObjectBase& object, CXmlElement& element, const CXmlSerializationContext& context)
    {
        struct SScope
        {
            SScope() { s_bCheckingOnly = true; }
            ~SScope() { s_bCheckingOnly = bBefore; }
            SScope(const SScope&) = delete;
            SScope& operator=(const SScope&) = delete;
            const bool bBefore = s_bCheckingOnly;
        };
        const SScope scope;
        CXmlObjectBase::FromXml_Int(&object, &element, element.GetFirstElement(), context);
    }
};

[[noreturn]] void Throw_Undeclared(const CXmlElement& element)
{
    throw CQvValidationException(FormatString(L"The element [%s] of the namespace [%s] is not declared",
                                              element.GetLocalName().c_str(), element.GetNamespaceURI().c_str()));
}

const SKnownAttribute* FindAttribute(const SKnownDeclarations& known, const CXmlAttribute& attribute)
{
    const SKnownAttribute* const pEnd = known.pAttributes + known.nAttributes;
    const SKnownAttribute* const pFound = std::find_if(known.pAttributes, pEnd,
                                                       [&attribute](const SKnownAttribute& candidate) {
                                                           return attribute.GetLocalName() == candidate.lpctName &&
                                                                  attribute.GetNamespaceURI() == candidate.lpctUri;
                                                       });
    return pFound == pEnd ? nullptr : pFound;
}

void CheckKnown(const SKnownAttribute& known, const CXmlAttribute& attribute)
{
    const CSimpleType& type = known.GetType();
    const std::wstring strText = type.Normalize(attribute.GetValue());
    type.Check(strText, known.lpctName);
    if (known.lpctFixed != nullptr && !type.IsSame(strText, known.lpctFixed))
        ThrowNotFixed(strText, known.lpctName, known.lpctFixed);
}

/// Reads an element into the class of its declaration.
/// @return false if it has none.
bool CheckKnown(const SKnownDeclarations& known, CXmlElement& element, const CXmlSerializationContext& context)
{
    if (FindElement(known.elements, element.GetLocalName(), element.GetNamespaceURI()) == nullptr)
        return false;
    const CSmartPtr<CXmlObjectBase> spObject = CreateRoot(&element, known.elements);
    if (spObject == nullptr)
        Throw_Undeclared(element);
    CCheckingReader::Read(*spObject, element, context);
    return true;
}

void CheckAttributes(const SKnownDeclarations& known, const CXmlElement& element)
{
    const CNameScope scope(element);
    for (const CXmlAttribute* const pAttribute : element.GetAttributes())
    {
        if (const SKnownAttribute* const pKnown = FindAttribute(known, *pAttribute))
            CheckKnown(*pKnown, *pAttribute);
    }
}

/// Whether an element says a type, which tells more than its name.
bool SaysType(const CXmlElement& element)
{
    return !element.GetAttribute(L"type", g_lpctXsiNamespace).empty();
}

} // namespace

bool IsCheckingOnly()
{
    return s_bCheckingOnly;
}

void SWildcard::Throw_IfContentIsWrong(CXmlElement& element, const CXmlSerializationContext& context) const
{
    if (pKnown == nullptr)
        return;
    std::vector<CXmlElement*> waiting{&element};
    while (!waiting.empty())
    {
        CXmlElement& next = *waiting.back();
        waiting.pop_back();
        const bool bOwn = &next == &element;
        if ((!bOwn || lpctElementName == nullptr) && CheckKnown(*pKnown, next, context))
            continue;
        if (SaysType(next))
            continue;
        if (bOwn && bStrict && !context.GetIgnoreUnknownElements() && !context.GetIgnoreNamespaces())
            Throw_Undeclared(next);
        CheckAttributes(*pKnown, next);
        for (CXmlElement* pChild = next.GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
            waiting.push_back(pChild);
    }
}

bool SWildcard::Accepts(const CXmlAttribute& attribute, const CXmlSerializationContext& context) const
{
    if (pKnown == nullptr)
        return true;
    const SKnownAttribute* const pFound = FindAttribute(*pKnown, attribute);
    if (pFound != nullptr)
        CheckKnown(*pFound, attribute);
    return pFound != nullptr || !bStrict || context.GetIgnoreNamespaces();
}

bool SWildcard::Allows(const std::wstring& strNamespace) const
{
    const bool bListed = std::any_of(ppUris, ppUris + nUris,
                                     [&strNamespace](const wchar_t* lpctUri) { return strNamespace == lpctUri; });
    return eKind == Any || bListed == (eKind == List);
}

void DropLayout(CElement& element)
{
    std::vector<CElement*> waiting{&element};
    while (!waiting.empty())
    {
        CElement& next = *waiting.back();
        waiting.pop_back();
        const CSmartPtr<CElementCol> spChildren = next.GetChildElements();
        if (spChildren->GetCount() == 0)
            continue;
        const std::wstring strText = next.GetText();
        if (!strText.empty() && std::all_of(strText.begin(), strText.end(), CWhitespaceUtils::IsWhiteSpace))
            next.SetText(L"");
        for (CElement& child : *spChildren)
            waiting.push_back(&child);
    }
}

bool SWildcard::Allows(const std::wstring& strNamespace, const std::wstring& strLocalName) const
{
    return Allows(strNamespace) && (lpctElementName == nullptr || strLocalName == lpctElementName);
}

void SWildcard::Throw_IfForbidden(const CElement& element) const
{
    const std::wstring strNamespace = element.GetNamespace();
    const std::wstring strName = element.GetName();
    if (!Allows(strNamespace, strName))
        throw CQvValidationException(FormatString(L"The element [%s] of the namespace [%s] may not stand here",
                                                  strName.c_str(), strNamespace.c_str()));
}

} // namespace QvXmlLib9
