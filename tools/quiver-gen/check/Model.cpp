#include "tools/quiver-gen/check/Model.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"

#include <limits>

using namespace QvXmlLib9;
using namespace quiver_gen::binding;

namespace quiver_gen::check
{

CModel::CModel(const SBinding& binding)
    : m_types(binding, m_texts)
{
    AddClasses(binding);
    for (const SClass& type : binding.classes)
    {
        std::vector<SAlternative> alternatives;
        for (const SClass::SAlternative& alternative : type.alternatives)
            alternatives.push_back(MakeAlternative(Get(type), alternative));
        Get(type).SetAlternatives(std::move(alternatives));
    }
    for (const SRoot& root : binding.roots)
        m_roots.push_back(MakeRoot(root));
    for (const binding::SKnownAttribute& attribute : binding.knownAttributes)
    {
        const bool bFixed = attribute.value.eKind == SValueRule::EKind::Fixed;
        m_attributes.push_back({m_texts.Keep(attribute.strUri), m_texts.Keep(attribute.strAttribute), nullptr,
                                bFixed ? m_texts.Keep(attribute.value.strText) : nullptr,
                                &m_types.Get(*attribute.pType).Get()});
    }
    for (const binding::SNamedType& type : binding.namedTypes)
        m_typeRows.push_back(
            {m_texts.Keep(type.strUri), m_texts.Keep(type.strName), nullptr, &m_types.Get(*type.pType).Get()});
    m_namedTypes = {m_typeRows.data(), m_typeRows.size()};
    m_known = {{m_roots.data(), m_roots.size()}, m_attributes.data(), m_attributes.size()};
}

/// Bases first, which a binding lists wherever the schema has them.
void CModel::AddClasses(const SBinding& binding)
{
    for (const SClass& type : binding.classes)
    {
        std::vector<const SClass*> line;
        for (const SClass* pType = &type; pType != nullptr && m_byType.count(pType) == 0; pType = pType->pBase)
            line.push_back(pType);
        for (auto it = line.rbegin(); it != line.rend(); ++it)
        {
            CDynamicClass* const pBase = (*it)->pBase != nullptr ? m_byType.at((*it)->pBase) : nullptr;
            m_byType.emplace(*it, &m_classes.emplace_back(*this, **it, pBase));
        }
    }
}

CDynamicClass& CModel::MakeValueClass(const SSimpleType& type, const SValueRule& rule, bool bNillable)
{
    static SSimpleType s_name = []
    {
        SSimpleType name;
        name.strName = "xs::QName";
        name.bBuiltin = true;
        return name;
    }();
    SClass& element = m_valueTypes.emplace_back();
    element.pText = const_cast<SSimpleType*>(&type);
    element.bNillable = bNillable;
    if (IsAnySimpleType(type))
    {
        SAttribute& says = element.attributes.emplace_back();
        says.strName = "Type";
        says.strAttribute = "type";
        says.pType = &s_name;
    }
    CDynamicClass& made = m_classes.emplace_back(*this, element, nullptr);
    made.SetTextRule(rule);
    return made;
}

SAlternative CModel::MakeAlternative(const CDynamicClass& listing, const SClass::SAlternative& alternative)
{
    const CDynamicClass& made = Get(*alternative.pClass);
    SAlternative result{alternative.bElement, m_texts.Keep(alternative.strUri), m_texts.Keep(alternative.strName), {}};
    if (!alternative.pClass->bAbstract)
        result.creator = made.GetCreator();
    if (alternative.bElement && !alternative.pClass->alternatives.empty())
        result.pTypes = &made.GetAlternatives();
    else if (alternative.bElement && alternative.bSharesClass)
        result.pTypes = &listing.GetAlternatives();
    return result;
}

SAlternative CModel::MakeRoot(const SRoot& root)
{
    SAlternative result{true, m_texts.Keep(root.strUri), m_texts.Keep(root.strElement), {}};
    CDynamicClass& made = root.pClass != nullptr ? Get(*root.pClass) : MakeValueClass(*root.pType, root.value, true);
    if (root.pClass != nullptr && !root.pClass->alternatives.empty())
        result.pTypes = &made.GetAlternatives();
    if (root.pClass == nullptr || root.pClass->strUri != root.strUri)
        result.creator =
            m_rootMakers.emplace_back(made, result.lpctUri, root.pClass == nullptr && !root.bNillable).GetCreator();
    else
        result.creator = made.GetCreator();
    if (root.pClass != nullptr && root.pClass->bAbstract)
        result.creator = {};
    return result;
}

CSmartPtr<CXmlObjectBase> CModel::Read(std::string strBytes) const
{
    if (strBytes.size() > std::numeric_limits<std::uint32_t>::max())
        throw CQvException(L"The document is longer than 4294967295 bytes");
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
    CXmlElement* const pRoot = document.GetDocumentElement();
    CSmartPtr<CXmlObjectBase> spObject = CreateKnownRoot(pRoot, m_known.elements);
    spObject->FromXmlElement(pRoot, context);
    return spObject;
}

} // namespace quiver_gen::check
