#include "tools/quiver-gen/cpp/Classes.h"

#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>
#include <vector>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

std::string Line(const std::string& strText)
{
    return "    " + strText + '\n';
}

std::string DeclareHead(const SClass& type, const CScope& scope)
{
    const std::string strTemplate = BeginsChoice(type) ? "CGeneratedChoice" : "CGenerated";
    std::vector<std::string> arguments = {type.strName};
    if (type.pBase != nullptr)
        arguments.push_back(scope.Name(*type.pBase));
    std::vector<std::string> bases = {
        Arrange(4, "public " + scope.Library(strTemplate) + '<', arguments, ">").substr(4)};
    if (type.bNillable)
        bases.push_back("public " + scope.Library("CNillableState"));
    const std::string strHead = "class " + type.strName;
    const std::string strLine = Arrange(0, strHead + " : ", bases, "");
    const bool bFits = strLine.find('\n') == std::string::npos && CountColumns(strLine) <= s_nColumns;
    return (bFits ? strLine : strHead + '\n' + Arrange(4, ": ", bases, "")) + '\n';
}

/// `static constexpr wchar_t s_lpctDefaultX[] = L"...";`
std::string DeclareRuleText(const SField& field)
{
    const std::string strHead = "static constexpr wchar_t " + GetRuleName(field) + "[] =";
    const std::string strLine = "    " + strHead + ' ' + WideLiteral(field.pRule->strText) + ";\n";
    if (strLine.size() <= s_nColumns + 1)
        return strLine;
    std::string strText = Line(strHead);
    const std::vector<std::string> pieces = WideLiterals(field.pRule->strText, s_nColumns - 9);
    for (const std::string& strPiece : pieces)
        strText += "        " + strPiece + (&strPiece == &pieces.back() ? ";\n" : "\n");
    return strText;
}

/// Whether the type of the accessor names the default or fixed value.
bool NamesRule(const SField& field)
{
    return field.pMember != nullptr &&
           (field.pMember->eMember == EMember::NillableValue || field.pMember->eMember == EMember::TypedValue ||
            (field.pMember->eMember == EMember::Value && field.eStorage == EStorage::Repeated));
}

/// The texts that the types of the accessors name; those have to be declared in front of them.
std::string DeclareTextsOfAccessors(const std::vector<SField>& fields)
{
    std::string strText;
    for (const SField& field : fields)
    {
        if (field.pRule != nullptr && NamesRule(field))
            strText += DeclareRuleText(field);
    }
    return strText.empty() ? strText : strText + '\n';
}

std::string DeclareConstruction(const SClass& type, const SPlace& place)
{
    std::string strParameter = "const wchar_t* lpctElementName";
    if (!type.strElement.empty())
        strParameter += " = " + WideLiteral(type.strElement);
    std::string strText = Arrange(4, "explicit " + type.strName + '(', {strParameter}, ");") + '\n';
    if (!type.alternatives.empty())
    {
        strText += "\n    /// What may stand where this class is declared.\n" +
                   Line("static const " + place.scope.Library("SAlternatives") + "& Alternatives();");
    }
    return strText;
}

std::string DeclareAccessor(const SAccessor& accessor)
{
    const std::string strSignature = accessor.strReturn + ' ' + accessor.strName + accessor.strParameters;
    if (!accessor.bInline)
        return Line(strSignature + ';');
    const std::string strLine = Line(strSignature + " { " + accessor.strBody + " }");
    if (CountColumns(strLine) <= s_nColumns + 1)
        return strLine;
    return Line(strSignature) + Line("{") + Line("    " + accessor.strBody) + Line("}");
}

std::string DeclareAccessors(const std::vector<SField>& fields, const SPlace& place)
{
    std::string strText;
    for (const SField& field : fields)
    {
        if (field.bInherited)
            continue;
        strText += '\n' + CommentLines(field.GetDocumentation(), 4, "///");
        for (const SAccessor& accessor : GetAccessors(field, place))
            strText += DeclareAccessor(accessor);
    }
    return strText;
}

std::string DeclareOperations(const SClass& type, const CScope& scope)
{
    std::string strText =
        Line("void Describe(" + scope.Library("CClassDescription") + "& description) const override;");
    if (type.bNillable)
        strText += Line("void Init() override;");
    return strText;
}

std::string DeclareMember(const std::string& strType, const std::string& strName)
{
    const std::string strLine = Line(strType + ' ' + strName + ';');
    return strLine.size() <= s_nColumns + 1 ? strLine : Line(strType) + Line("    " + strName + ';');
}

/// Constants and members. A class that restricts this one describes its members anew.
std::string DeclareData(const SClass& type, const std::vector<SField>& fields, const SPlace& place)
{
    std::string strConstants;
    std::string strMembers;
    for (const SField& field : fields)
    {
        const bool bWildcard = field.IsWildcard() || field.eStorage == EStorage::AnyAttributes;
        const bool bDescribed = bWildcard || !field.bInherited;
        if (field.pRule != nullptr && !NamesRule(field) && (!field.bInherited || IsRestricted(field)) &&
            field.eStorage != EStorage::Repeated)
            strConstants += DeclareRuleText(field);
        if (!GetConstantName(field).empty() && bDescribed)
            strConstants += Line("static const " + place.scope.Library(bWildcard ? "SWildcard" : "SRepeatedElement") +
                                 ' ' + GetConstantName(field) + ';');
        if (!field.bInherited)
            strMembers += DeclareMember(GetStorageType(field, place), "m_" + field.strName);
    }
    if (strConstants.empty() && strMembers.empty())
        return {};
    const bool bBoth = !strConstants.empty() && !strMembers.empty();
    return (place.usage.IsBase(type) ? "\n" : "\nprivate:\n") + strConstants + (bBoth ? "\n" : "") + strMembers;
}

} // namespace

std::string DeclareClass(const SClass& type, const SPlace& place)
{
    const std::vector<SField> fields = GetFields(type);
    return CommentLines(type.documentation, 0, "///") + DeclareHead(type, place.scope) + "{\n" +
           DeclareTextsOfAccessors(fields) + "public:\n" + DeclareConstruction(type, place) +
           DeclareAccessors(fields, place) + "\nprotected:\n" + DeclareOperations(type, place.scope) +
           DeclareData(type, fields, place) + "};\n";
}

} // namespace quiver_gen::cpp
