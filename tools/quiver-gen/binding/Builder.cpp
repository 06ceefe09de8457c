#include "tools/quiver-gen/binding/Builder.h"

#include "tools/quiver-gen/binding/Classes.h"
#include "tools/quiver-gen/binding/Documentation.h"
#include "tools/quiver-gen/binding/Roots.h"

#include <string>

namespace quiver_gen::binding
{

namespace
{

/// Makes the namespaces in the order of the schemas, whichever of their types is asked for first.
void AddNamespaces(SBuild& build, const std::vector<const schema::SType*>& types)
{
    std::unordered_set<std::string> used;
    for (const schema::SType* pType : types)
        used.insert(pType->name.strNamespace);
    for (const schema::SElement* pElement : build.reach.GetRoots())
        used.insert(pElement->name.strNamespace);
    for (const schema::SNamespace& item : build.set.namespaces)
        if (used.count(item.strUri) != 0)
            build.namespaces.Get(item.strUri);
    for (const schema::SFile& file : build.set.files)
    {
        if (used.count(file.strTargetNamespace) == 0)
            continue;
        SDocumentation documentation = MakeDocumentation(file.documentation, build.options);
        SDocumentation& target = build.namespaces.Get(file.strTargetNamespace).documentation;
        target.insert(target.end(), documentation.begin(), documentation.end());
    }
}

std::string_view NameOf(schema::SIdentityConstraint::EKind eKind)
{
    switch (eKind)
    {
    case schema::SIdentityConstraint::EKind::Unique:
        return "unique ";
    case schema::SIdentityConstraint::EKind::Key:
        return "key ";
    case schema::SIdentityConstraint::EKind::KeyRef:
        break;
    }
    return "keyref ";
}

void WarnOfConstraints(SBuild& build)
{
    for (const schema::SElement* pElement : build.reach.GetElements())
        for (const schema::SIdentityConstraint* pConstraint : pElement->constraints)
            build.warnings.Add(EWarning::Identity, pConstraint->position,
                               std::string(NameOf(pConstraint->eKind)) + pConstraint->name.strLocal);
}

void Build(SBuild& build)
{
    CClasses classes(build);
    const std::vector<const schema::SComplexType*> complexTypes = classes.Select();
    const std::vector<const schema::SSimpleType*> simpleTypes = build.simpleTypes.Select(build.reach.GetSimpleTypes());
    std::vector<const schema::SType*> types(complexTypes.begin(), complexTypes.end());
    types.insert(types.end(), simpleTypes.begin(), simpleTypes.end());
    AddNamespaces(build, types);
    build.typeNames.Choose(types);
    build.simpleTypes.Build(simpleTypes);
    classes.Build(complexTypes);
    AddRoots(build, classes);
    AddKnownAttributes(build);
    AddNamedTypes(build);
    classes.AddAlternatives();
    classes.MarkNillable();
    WarnOfConstraints(build);
    build.renames.ReportUnused(build.diagnostics);
}

} // namespace

bool BuildBinding(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding,
                  schema::CDiagnostics& diagnostics)
{
    const std::size_t nErrors = diagnostics.GetErrorCount();
    SBuild build(set, options, binding, diagnostics);
    if (!build.reach.Find(options, diagnostics))
        return false;
    try
    {
        Build(build);
    }
    catch (const CContentTooLarge&)
    {
        diagnostics.AddError({}, "the content models are too large: groups within groups multiply beyond measure");
    }
    return diagnostics.GetErrorCount() == nErrors;
}

} // namespace quiver_gen::binding
