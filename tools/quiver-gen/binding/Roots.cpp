#include "tools/quiver-gen/binding/Roots.h"

#include "tools/quiver-gen/binding/Documentation.h"

#include <algorithm>
#include <utility>

namespace quiver_gen::binding
{

namespace
{

void SetContent(SRoot& root, const schema::SElement& element, SBuild& build, CClasses& classes)
{
    if (const schema::SSimpleType* pSimple = std::as_const(*element.pType).AsSimple())
    {
        root.pType = &build.simpleTypes.Get(*pSimple);
        root.value = build.simpleTypes.MakeRule(element.value ? &*element.value : nullptr, *pSimple);
        return;
    }
    const schema::SComplexType& type = *std::as_const(*element.pType).AsComplex();
    const bool bAnything = type.eBuiltin == schema::EBuiltin::AnyType;
    if (element.value && classes.IsFirstWarning(element))
        build.warnings.Add(EWarning::SharedValue, element.position, element.name.strLocal);
    root.pClass = bAnything ? &classes.GetAnyType(*root.pNamespace) : &classes.Get(type);
    if (bAnything)
        build.warnings.Add(EWarning::AnyType, element.position, element.name.strLocal);
}

bool HasCheckedWildcard(const SClass& item)
{
    return (item.bAnyAttribute && item.eAnyAttributeProcess != SMember::EProcess::Skip) ||
           std::any_of(item.members.begin(), item.members.end(),
                       [](const SMember& member)
                       { return member.eMember == EMember::Wildcard && member.eProcess != SMember::EProcess::Skip; });
}

} // namespace

bool HasCheckedWildcards(const SBinding& binding)
{
    return std::any_of(binding.classes.begin(), binding.classes.end(), HasCheckedWildcard);
}

void AddKnownAttributes(SBuild& build)
{
    if (!HasCheckedWildcards(build.binding))
        return;
    for (const schema::SNamespace& item : build.set.namespaces)
        for (const schema::SAttribute* pAttribute : item.attributes.list)
        {
            SKnownAttribute& known = build.binding.knownAttributes.emplace_back();
            known.strAttribute = pAttribute->name.strLocal;
            known.strUri = pAttribute->name.strNamespace;
            known.pType = &build.simpleTypes.Get(*pAttribute->pType);
            known.value =
                build.simpleTypes.MakeRule(pAttribute->value ? &*pAttribute->value : nullptr, *pAttribute->pType);
        }
}

bool IsAnySimpleType(const SSimpleType& type)
{
    return type.bBuiltin && type.strName == "xs::AnySimpleType";
}

void AddNamedTypes(SBuild& build)
{
    if (!build.reach.HasElementsOfAnySimpleType())
        return;
    for (const schema::SNamespace& item : build.set.namespaces)
        for (const schema::SType* pType : item.types.list)
            if (const schema::SSimpleType* pSimple = pType->AsSimple())
                build.binding.namedTypes.push_back(
                    {pType->name.strLocal, pType->name.strNamespace, &build.simpleTypes.Get(*pSimple)});
}

void AddRoots(SBuild& build, CClasses& classes)
{
    CNameScope names;
    // What the class with these functions has besides.
    names.Add("CreateRoot");
    names.Add("IsRoot");
    names.Add("Roots");
    for (const schema::SElement* pElement : build.reach.GetRoots())
    {
        if (pElement->bAbstract)
            continue;
        SRoot root;
        root.strElement = pElement->name.strLocal;
        root.strUri = pElement->name.strNamespace;
        root.pNamespace = &build.namespaces.Get(root.strUri);
        std::string strName = ToPascal(root.strElement);
        if (names.Contains(strName))
            strName = ToPascal(root.pNamespace->strCpp) + strName;
        root.strName = names.AddUnique(strName);
        root.bNillable = pElement->bNillable;
        root.documentation = MakeDocumentation(pElement->documentation, build.options);
        root.source = build.set.Describe(pElement->position);
        SetContent(root, *pElement, build, classes);
        build.binding.roots.push_back(std::move(root));
    }
}

} // namespace quiver_gen::binding
