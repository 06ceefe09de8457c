#include "tools/quiver-gen/cpp/Roots.h"

#include "tools/quiver-gen/cpp/Fields.h"
#include "tools/quiver-gen/cpp/Text.h"
#include "tools/quiver-gen/cpp/Uris.h"

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

/// Name of the constant that holds the default or fixed value of a root.
std::string GetRuleName(const SRoot& root)
{
    return (root.value.eKind == SValueRule::EKind::Default ? "s_lpctDefault" : "s_lpctFixed") + root.strName;
}

/// Type of the object of a root.
std::string GetRootType(const SRoot& root, const SFactory& factory, const CScope& scope)
{
    if (root.pClass != nullptr)
        return scope.Name(*root.pClass);
    std::string strRule;
    if (root.value.eKind != SValueRule::EKind::None)
    {
        const bool bDefault = root.value.eKind == SValueRule::EKind::Default;
        strRule = ", " + scope.Library(bDefault ? "SDefault" : "SFixed") + '<' + factory.strName +
                  "::" + GetRuleName(root) + '>';
    }
    return GetValueClass(*root.pType, true, strRule, scope);
}

/// Whether the element is in another namespace than its type says for itself.
bool IsForeign(const SRoot& root)
{
    return root.pClass == nullptr || root.pClass->strUri != root.strUri;
}

/// Whether the element has a simple value in any case.
bool IsNeverNil(const SRoot& root)
{
    return root.pClass == nullptr && !root.bNillable;
}

bool IsAbstract(const SRoot& root)
{
    return root.pClass != nullptr && root.pClass->bAbstract;
}

std::vector<std::string> FindHeaders(const SProject& project)
{
    std::vector<std::string> headers;
    for (const SRoot& root : project.binding.roots)
    {
        if (root.pClass == nullptr && root.pType->bBuiltin)
            continue;
        const std::size_t nHeader =
            root.pClass == nullptr ? project.layout.GetHeader(*root.pType) : project.layout.GetHeader(*root.pClass);
        headers.push_back(project.layout.GetHeaders()[nHeader].strStem);
    }
    for (const SKnownAttribute& attribute : project.binding.knownAttributes)
        if (!attribute.pType->bBuiltin)
            headers.push_back(project.layout.GetHeaders()[project.layout.GetHeader(*attribute.pType)].strStem);
    for (const SNamedType& type : project.binding.namedTypes)
        if (!type.pType->bBuiltin)
            headers.push_back(project.layout.GetHeaders()[project.layout.GetHeader(*type.pType)].strStem);
    return headers;
}

/// The default and fixed values of roots, in front of the functions whose types name them.
std::string DeclareRules(const SProject& project)
{
    std::string strText;
    for (const SRoot& root : project.binding.roots)
    {
        if (root.value.eKind != SValueRule::EKind::None)
            strText +=
                Arrange(4, "static constexpr wchar_t " + GetRuleName(root) + "[] = ", {WideLiteral(root.value.strText)},
                        ";") +
                '\n';
    }
    return strText.empty() ? strText : strText + '\n';
}

std::string PrintHeaderText(const SProject& project, const SFactory& factory)
{
    const CScope scope(project.names, factory.strNamespace, false);
    const std::string strBase = scope.Pointer(scope.Library("CXmlObjectBase"));
    std::string strText = "/// Makes the objects of root elements.\nclass " + factory.strName + " : public " +
                          scope.Library("CClassfactoryBase") + "\n{\n" + "public:\n" + DeclareRules(project) +
                          "    /// The object for the root element of a document, by its name and its `xsi:type`; "
                          "nothing is read into it.\n"
                          "    /// @throws CQvValidationException if the schema has no such element, or its type may "
                          "not stand there.\n"
                          "    static " +
                          strBase + " CreateRoot(" + scope.Library("CXmlElement") + "* pElement);\n\n" +
                          "    /// Whether the schema has a root element of this name.\n" +
                          "    static bool IsRoot(const " + scope.Library("CXmlElement") + "& element);\n";
    for (const SRoot& root : project.binding.roots)
    {
        if (IsAbstract(root))
            continue;
        std::vector<std::string> paragraphs = {"An empty `" + root.strElement + "`."};
        paragraphs.insert(paragraphs.end(), root.documentation.begin(), root.documentation.end());
        strText += '\n' + CommentLines(paragraphs, 4, "///") + "    static " +
                   scope.Pointer(GetRootType(root, factory, scope)) + ' ' + root.strName + "();\n";
    }
    return strText + "};\n";
}

/// The rows of the table of roots.
std::string PrintRows(const SProject& project, const SFactory& factory, const CScope& scope, CUris& uris)
{
    std::string strText;
    for (const SRoot& root : project.binding.roots)
    {
        const std::string strType = GetRootType(root, factory, scope);
        std::vector<std::string> parts = {"true", uris.Use(root.strUri), WideLiteral(root.strElement)};
        if (IsAbstract(root))
            parts.push_back("nullptr");
        else if (IsForeign(root))
            parts.push_back('&' + scope.Library(IsNeverNil(root) ? "CreateValueRoot" : "CreateForeignRoot") + '<' +
                            strType + ", " + uris.UseConstant(root.strUri) + '>');
        else
            parts.push_back('&' + scope.Library("CreateObject") + '<' + strType + '>');
        if (root.pClass != nullptr && !root.pClass->alternatives.empty())
            parts.push_back('&' + strType + "::Alternatives");
        strText += Arrange(4, "{", parts, "},") + '\n';
    }
    return strText;
}

std::string PrintKnownRow(const SKnownAttribute& attribute, const CScope& scope, CUris& uris)
{
    std::vector<std::string> parts = {uris.Use(attribute.strUri), WideLiteral(attribute.strAttribute),
                                      '&' + scope.Name(*attribute.pType) + "::Type"};
    if (attribute.value.eKind == SValueRule::EKind::Fixed)
        parts.push_back(WideLiteral(attribute.value.strText));
    return Arrange(4, "{", parts, "},") + '\n';
}

/// A constant array, and what a table made of it is initialised with.
std::string PrintTable(const std::string& strType, const std::string& strName, const std::string& strRows)
{
    return strRows.empty() ? std::string() : "constexpr " + strType + ' ' + strName + "[] = {\n" + strRows + "};\n";
}

std::string PrintExtent(const std::string& strName, bool bAny)
{
    return bAny ? strName + ", sizeof " + strName + " / sizeof *" + strName : "nullptr, 0";
}

/// The tables of roots and of global attributes.
std::string PrintTables(const SProject& project, const CScope& scope, CUris& uris)
{
    const std::string strRoots = PrintRows(project, project.factory, scope, uris);
    std::string strAttributes;
    for (const SKnownAttribute& attribute : project.binding.knownAttributes)
        strAttributes += PrintKnownRow(attribute, scope, uris);
    if (strRoots.empty() && strAttributes.empty())
        return {};
    return "namespace\n{\n" + PrintTable(scope.Library("SAlternative"), "s_rowsOfRoots", strRoots) +
           PrintTable(scope.Library("SKnownAttribute"), "s_rowsOfAttributes", strAttributes) +
           (strRoots.empty() ? ""
                             : "constexpr " + scope.Library("SAlternatives") + " s_roots{" +
                                   PrintExtent("s_rowsOfRoots", true) + "};\n") +
           "} // namespace\n\n";
}

/// What is known of elements and attributes to all classes with wildcards.
std::string PrintKnown(const SProject& project, const CScope& scope)
{
    if (!binding::HasCheckedWildcards(project.binding))
        return {};
    const std::string strConstant = "const " + scope.Library("SKnownDeclarations") + ' ' + project.factory.GetKnown();
    return "extern " + strConstant + ";\n" + strConstant + '{' +
           (project.binding.roots.empty() ? "{nullptr, 0}" : "s_roots") + ", " +
           PrintExtent("s_rowsOfAttributes", !project.binding.knownAttributes.empty()) + "};\n\n";
}

/// The simple types that a value may say it has.
std::string PrintNamedTypes(const SProject& project, const CScope& scope, CUris& uris)
{
    if (project.binding.namedTypes.empty())
        return {};
    std::string strRows;
    for (const SNamedType& type : project.binding.namedTypes)
        strRows += Arrange(4, "{",
                           {uris.Use(type.strUri), WideLiteral(type.strName), '&' + scope.Name(*type.pType) + "::Type"},
                           "},") +
                   '\n';
    const std::string strTypes = scope.Library("SNamedTypes");
    return "namespace\n{\n" + PrintTable(scope.Library("SNamedType"), "s_rowsOfTypes", strRows) +
           "} // namespace\n\nconst " + strTypes + "& " + project.factory.GetNamedTypes() + "()\n{\n" +
           "    static constexpr " + strTypes + " s_types{" + PrintExtent("s_rowsOfTypes", true) +
           "};\n    return s_types;\n}\n\n";
}

std::string PrintCreateRoot(const SProject& project, const SFactory& factory, const CScope& scope)
{
    const std::string strRoots = project.binding.roots.empty() ? "{nullptr, 0}" : "s_roots";
    const std::string strElement = scope.Library("CXmlElement");
    return scope.Pointer(scope.Library("CXmlObjectBase")) + ' ' + factory.strName + "::CreateRoot(" + strElement +
           "* pElement)\n{\n    return " + scope.Library("CreateKnownRoot") + "(pElement, " + strRoots +
           ");\n}\n\nbool " + factory.strName + "::IsRoot(const " + strElement +
           "& element)\n{\n    return QvXmlLib9::IsRoot(element, " + strRoots + ");\n}\n";
}

std::string PrintMaker(const SRoot& root, const SFactory& factory, const CScope& scope, CUris& uris)
{
    const std::string strType = GetRootType(root, factory, scope);
    const std::string strMade = IsForeign(root) ? scope.Library(IsNeverNil(root) ? "CValueRootIn" : "CRootIn") + '<' +
                                                      strType + ", " + uris.UseConstant(root.strUri) + '>'
                                                : strType;
    return '\n' + scope.Pointer(strType) + ' ' + factory.strName + "::" + root.strName + "()\n{\n" +
           Arrange(4, "return new " + strMade + '(', {WideLiteral(root.strElement)}, ");") + "\n}\n";
}

} // namespace

SFactory FindFactory(const SBinding& binding, const SWriteOptions& options, const CNameTable& names, CStems& stems)
{
    SFactory factory{options.strFactoryNamespace, options.strFactory, {}};
    if (factory.strName.empty())
    {
        if (!binding.namespaces.empty())
            factory.strNamespace = binding.namespaces.front().strCpp;
        factory.strName = "CFactory";
        for (int n = 2; names.Declares(factory.strNamespace, factory.strName); ++n)
            factory.strName = "CFactory" + std::to_string(n);
        // A build knows this name whatever the schema declares.
        factory.strStem = stems.Claim("Factory");
        return factory;
    }
    if (names.Declares(factory.strNamespace, factory.strName))
        throw CNameTaken{factory.strName};
    const bool bPrefix = factory.strName.size() > 1 && factory.strName[0] == 'C' && factory.strName[1] >= 'A' &&
                         factory.strName[1] <= 'Z';
    factory.strStem = stems.Claim(bPrefix ? factory.strName.substr(1) : factory.strName);
    return factory;
}

std::vector<SFile> PrintFactory(const SProject& project)
{
    const SFactory& factory = project.factory;
    std::vector<std::string> includes = FindHeaders(project);
    includes.push_back("quiver/generated/Generated");
    const std::string strTitle = PrintTitle(project.options);
    const std::string strText = PrintHeaderText(project, factory);
    SFile header{factory.strStem + ".h", strTitle + "\n#pragma once\n\n" + PrintIncludes(includes) +
                                             factory.DeclareNamedTypes(strText) +
                                             PrintNamespace(factory.strNamespace, strText)};

    const CScope scope(project.names, factory.strNamespace, true);
    const bool bRoots = !project.binding.roots.empty();
    CUris uris(project.binding, bRoots ? project.binding.roots.front().strUri : std::string());
    std::string strBody = PrintTables(project, scope, uris) + PrintKnown(project, scope) +
                          PrintNamedTypes(project, scope, uris) + PrintCreateRoot(project, factory, scope);
    for (const SRoot& root : project.binding.roots)
    {
        if (!IsAbstract(root))
            strBody += PrintMaker(root, factory, scope, uris);
    }
    const std::string strUris = uris.Define();
    SFile source{factory.strStem + ".cpp",
                 strTitle + '\n' + PrintIncludes({factory.strStem}) + "\nusing namespace QvXmlLib9;\n" +
                     PrintNamespace(factory.strNamespace, strUris + (strUris.empty() ? "" : "\n") + strBody)};
    return {header, source};
}

} // namespace quiver_gen::cpp
