#include "tools/quiver-gen/cpp/Classes.h"

#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

/// Prints the definitions of one class.
class CDefinition
{
public:
    CDefinition(const SClass& type, const SPlace& source, const SPlace& header, const std::string& strKnown,
                CUris& uris)
        : m_type(type)
        , m_source(source)
        , m_header(header)
        , m_scope(source.scope)
        , m_strKnown(strKnown)
        , m_uris(uris)
        , m_fields(GetFields(type))
    {
    }

    std::string Print()
    {
        // In the order of the declaration.
        PrintConstants();
        PrintConstruction();
        PrintAlternatives();
        PrintAccessors();
        PrintDescribe();
        const bool bRestricted = std::any_of(m_fields.begin(), m_fields.end(), &IsRestricted);
        if (bRestricted ||
            std::any_of(m_fields.begin(), m_fields.end(), [](const SField& field) { return !field.bInherited; }))
            PrintAccessProperty(bRestricted);
        PrintInit();
        return std::move(m_strText);
    }

private:
    void Begin(const std::string& strSignature)
    {
        if (!m_strText.empty())
            m_strText += '\n';
        m_strText += strSignature + "\n{\n";
    }

    void End() { m_strText += "}\n"; }

    void Line(const std::string& strLine) { m_strText += "    " + strLine + '\n'; }

    void Call(const std::string& strFunction, const std::vector<std::string>& arguments)
    {
        m_strText += Arrange(4, strFunction + '(', arguments, ");") + '\n';
    }

    /// The name of a member of the class, as its definition says it.
    std::string Own(const std::string& strName) const { return m_type.strName + "::" + strName; }

    void PrintConstants();
    void PrintWildcard(const SField& field);
    void PrintConstruction();
    void PrintAlternatives();
    void PrintAccessors();
    void PrintDescribe();
    void DescribeClass();
    void DescribeMember(const SField& field);
    void DescribeAttribute(const SField& field);
    void DescribeText(const SField& field);
    void PrintRestriction(const SField& field);
    void PrintAccessProperty(bool bRestricted);
    void PrintInit();

    const SClass& m_type;
    const SPlace& m_source;
    const SPlace& m_header;
    const CScope& m_scope;
    const std::string& m_strKnown;
    CUris& m_uris;
    const std::vector<SField> m_fields;
    std::string m_strText;
};

std::string Number(std::int64_t n)
{
    return std::to_string(std::min<std::int64_t>(n, std::numeric_limits<int>::max()));
}

/// Whether values are names whose prefixes have to be declared.
bool HasPrefixes(const SSimpleType& type)
{
    if (type.pItem != nullptr)
        return HasPrefixes(*type.pItem);
    return type.strBuiltin == "xs::QName" || type.strBuiltin == "xs::NOTATION" ||
           std::any_of(type.memberTypes.begin(), type.memberTypes.end(),
                       [](const SSimpleType* pMember) { return HasPrefixes(*pMember); });
}

std::string GetGroupName(SClass::EGroup eGroup)
{
    switch (eGroup)
    {
    case SClass::EGroup::Sequence:
        return "GroupType_Sequence";
    case SClass::EGroup::Choice:
        return "GroupType_Choice";
    case SClass::EGroup::All:
        return "GroupType_All";
    }
    return {};
}

std::string GetWildcardKind(SMember::ENamespaces eNamespaces)
{
    switch (eNamespaces)
    {
    case SMember::ENamespaces::Any:
        return "Any";
    case SMember::ENamespaces::Not:
        return "Not";
    case SMember::ENamespaces::List:
        return "List";
    }
    return {};
}

// --- Constants ------------------------------------------------------------------------------------------------------

void CDefinition::PrintWildcard(const SField& field)
{
    const bool bAttributes = field.eStorage == EStorage::AnyAttributes;
    const SMember::ENamespaces eKind = bAttributes ? m_type.eAnyAttribute : field.pMember->eNamespaces;
    const std::vector<std::string>& listed = bAttributes ? m_type.anyAttributeUris : field.pMember->uris;
    std::vector<std::string> parts = {m_scope.Library("SWildcard") + "::" + GetWildcardKind(eKind)};
    if (eKind == SMember::ENamespaces::Any || listed.empty())
        parts.insert(parts.end(), {"nullptr", "0"});
    else
    {
        std::vector<std::string> uris;
        for (const std::string& strUri : listed)
            uris.push_back(m_uris.Use(strUri));
        const std::string strList = "s_uris" + m_type.strName + field.strName;
        m_strText += Arrange(0, "static constexpr const wchar_t* " + strList + "[] = {", uris, "};") + '\n';
        parts.insert(parts.end(), {strList, std::to_string(uris.size())});
    }
    const SMember::EProcess eProcess = bAttributes ? m_type.eAnyAttributeProcess : field.pMember->eProcess;
    if (bAttributes)
        parts.insert(parts.end(), {"0", "-1", "nullptr"});
    else
    {
        const bool bRepeated = field.pMember->eCardinality == ECardinality::Repeated;
        const bool bRequired = field.pMember->eCardinality == ECardinality::Required;
        parts.push_back(bRepeated ? Number(field.pMember->nMin) : bRequired ? "1" : "0");
        parts.push_back(bRepeated ? Number(field.pMember->nMax) : "1");
        parts.push_back(field.pMember->strElement.empty() ? "nullptr" : WideLiteral(field.pMember->strElement));
    }
    if (eProcess != SMember::EProcess::Skip)
        parts.insert(parts.end(), {'&' + m_strKnown, eProcess == SMember::EProcess::Strict ? "true" : "false"});
    else if (parts.back() == "nullptr")
        parts.pop_back();
    m_strText +=
        Arrange(0, "const " + m_scope.Library("SWildcard") + ' ' + Own(GetConstantName(field)) + '{', parts, "};") +
        '\n';
}

void CDefinition::PrintConstants()
{
    for (const SField& field : m_fields)
    {
        if (field.IsWildcard() || field.eStorage == EStorage::AnyAttributes)
            PrintWildcard(field);
        else if (field.eStorage == EStorage::Repeated && !field.bInherited)
        {
            const SMember& member = *field.pMember;
            m_strText +=
                Arrange(0, "const " + m_scope.Library("SRepeatedElement") + ' ' + Own(GetConstantName(field)) + '{',
                        {WideLiteral(field.strLabel),
                         member.eMember == EMember::Group ? "L\"\"" : m_uris.Use(member.strUri), Number(member.nMin),
                         Number(member.nMax)},
                        "};") +
                '\n';
        }
    }
}

// --- Construction ---------------------------------------------------------------------------------------------------

void CDefinition::PrintConstruction()
{
    if (!m_strText.empty())
        m_strText += '\n';
    m_strText += Arrange(0, Own(m_type.strName) + '(', {"const wchar_t* lpctElementName"}, ")") + '\n';
    Line(": CInstanceMonitor(" + WideLiteral(m_type.strName) + ')');
    Line(std::string(BeginsChoice(m_type) ? ", CGeneratedChoice" : ", CGenerated") + "(lpctElementName)");
    m_strText += "{\n}\n";
    if (NeedsDestructor(m_fields, m_header))
        m_strText += '\n' + Own('~' + m_type.strName) + "() = default;\n";
}

void CDefinition::PrintAlternatives()
{
    if (m_type.alternatives.empty())
        return;
    Begin("const " + m_scope.Library("SAlternatives") + "& " + Own("Alternatives()"));
    Line("static constexpr " + m_scope.Library("SAlternative") + " s_alternatives[] = {");
    for (const SClass::SAlternative& alternative : m_type.alternatives)
    {
        const std::string strClass = m_scope.Name(*alternative.pClass);
        std::vector<std::string> parts = {alternative.bElement ? "true" : "false", m_uris.Use(alternative.strUri),
                                          WideLiteral(alternative.strName)};
        parts.push_back(alternative.pClass->bAbstract ? "nullptr"
                                                      : '&' + m_scope.Library("CreateObject") + '<' + strClass + '>');
        if (alternative.bElement && !alternative.pClass->alternatives.empty())
            parts.push_back('&' + strClass + "::Alternatives");
        else if (alternative.bElement && alternative.bSharesClass)
            parts.push_back('&' + m_type.strName + "::Alternatives");
        m_strText += Arrange(8, "{", parts, "},") + '\n';
    }
    Line("};");
    Line("static constexpr " + m_scope.Library("SAlternatives") +
         " s_all{s_alternatives, sizeof s_alternatives / sizeof *s_alternatives};");
    Line("return s_all;");
    End();
}

void CDefinition::PrintAccessors()
{
    for (const SField& field : m_fields)
    {
        if (field.bInherited)
            continue;
        const std::vector<SAccessor> declared = GetAccessors(field, m_header);
        const std::vector<SAccessor> accessors = GetAccessors(field, m_source);
        for (std::size_t n = 0; n < accessors.size(); ++n)
        {
            if (declared[n].bInline)
                continue;
            Begin(accessors[n].strReturn + ' ' + Own(accessors[n].strName) + accessors[n].strParameters);
            Line(accessors[n].strBody);
            End();
        }
    }
}

// --- Description ----------------------------------------------------------------------------------------------------

void CDefinition::DescribeClass()
{
    Call("description.Class",
         {GetGroupName(m_type.eGroup), m_type.bPseudo ? "ElementType_Pseudo" : "ElementType_Element",
          WideLiteral(m_type.strElement), m_uris.Use(m_type.strUri)});
    if (!m_type.strSchemaName.empty() && (m_type.pBase != nullptr || !m_type.alternatives.empty()))
        Call("description.TypeName", {WideLiteral(m_type.strSchemaName), m_uris.Use(m_type.strUri)});
    if (!m_type.bUnknownAttributesFail && !m_type.bPseudo)
        Line("description.IgnoreUnknownAttributes();");
    if (m_type.eGroup == SClass::EGroup::Choice && !m_type.bEmptiable)
        Line("description.RequireChoice();");
}

void CDefinition::DescribeMember(const SField& field)
{
    const SMember& member = *field.pMember;
    const std::string strNumber = "Member_" + field.strName;
    const std::string strCardinality = member.eCardinality == ECardinality::Repeated   ? "Repeated"
                                       : member.eCardinality == ECardinality::Optional ? "Optional"
                                                                                       : "";
    const bool bRepeated = member.eCardinality == ECardinality::Repeated;
    const std::string strFunction = "description." + strCardinality;
    std::vector<std::string> element = {WideLiteral(member.strElement), m_uris.Use(member.strUri), strNumber};
    switch (member.eMember)
    {
    case EMember::Value:
        if (!bRepeated)
            element.push_back(m_scope.Name(*field.pType) + "::Type()");
        return Call(strFunction + "Element", element);
    case EMember::NillableValue:
        if (bRepeated)
            return Call("description.RepeatedObject", element);
        return Call(strFunction + "NillableElement<" + m_scope.Name(*field.pType) + GetRuleArgument(field, m_scope) +
                        '>',
                    element);
    case EMember::Object:
        if (bRepeated)
            return Call("description.RepeatedObject", element);
        return Call(strFunction + (member.bPolymorphic ? "PolymorphicObject<" : "Object<") +
                        m_scope.Name(*field.pClass) + '>',
                    element);
    case EMember::Group:
        if (bRepeated)
            return Call("description.RepeatedGroup", {WideLiteral(field.strLabel), strNumber});
        element = {WideLiteral(field.strLabel), strNumber};
        if (member.eCardinality == ECardinality::Required)
            element.push_back(member.bContentRequired ? "true" : "false");
        return Call(strFunction + "Group<" + m_scope.Name(*field.pClass) + '>', element);
    case EMember::Wildcard:
        return Call(strFunction + "Wildcard", {strNumber, GetConstantName(field)});
    }
}

void CDefinition::DescribeAttribute(const SField& field)
{
    const SAttribute& attribute = *field.pAttribute;
    std::vector<std::string> arguments = {WideLiteral(attribute.strAttribute), m_uris.Use(attribute.strUri),
                                          "Member_" + field.strName, m_scope.Name(*field.pType) + "::Type()"};
    if (field.eStorage == EStorage::Defaulted && !field.bInherited)
        arguments.push_back(GetRuleName(field));
    Call(attribute.bRequired ? "description.Attribute" : "description.OptionalAttribute", arguments);
}

void CDefinition::DescribeText(const SField& field)
{
    std::vector<std::string> arguments = {"Member_" + field.strName};
    if (m_type.pText != nullptr && HasPrefixes(*m_type.pText))
        arguments.push_back(m_scope.Name(*m_type.pText) + "::Type()");
    Call(m_type.pText != nullptr ? "description.Text" : "description.MixedText", arguments);
}

void CDefinition::PrintDescribe()
{
    Begin("void " + Own("Describe(") + m_scope.Library("CClassDescription") + "& description)");
    if (m_type.pBase != nullptr && !m_type.bRestriction)
        Line(m_scope.Name(*m_type.pBase) + "::Describe(description);");
    DescribeClass();
    for (const SField& field : m_fields)
    {
        if (field.pMember != nullptr)
            DescribeMember(field);
        else if (field.pAttribute != nullptr)
            DescribeAttribute(field);
        else if (field.IsText())
            DescribeText(field);
        else
            Call("description.AnyAttribute", {"Member_" + field.strName, GetConstantName(field)});
    }
    End();
}

// --- Members --------------------------------------------------------------------------------------------------------

/// A value is checked before the base takes it, and after the base gave it.
void CDefinition::PrintRestriction(const SField& field)
{
    Line("case Member_" + field.strName + ':');
    if (field.eStorage == EStorage::Repeated)
        m_strText +=
            Arrange(8, "RestrictCounts(", {"value", Number(field.pMember->nMin), Number(field.pMember->nMax)}, ");") +
            '\n';
    else
        m_strText += Arrange(8,
                             "CheckRestricted<" + m_scope.Name(*field.pType) +
                                 (field.pRule == nullptr ? std::string() : GetRuleArgument(field, m_scope)) + ">(",
                             {"value", GetLabel(field)}, ");") +
                     '\n';
    Line("    break;");
}

void CDefinition::PrintAccessProperty(bool bRestricted)
{
    const std::string strToBase =
        m_type.pBase == nullptr ? "" : m_scope.Name(*m_type.pBase) + "::AccessProperty(nPropertyIndex, bRead, value);";
    const std::string strVariant = m_scope.Library("QvVariant") + "& value)";
    Begin("void " + Own("AccessProperty(int nPropertyIndex, bool bRead, ") + strVariant);
    if (bRestricted)
    {
        Line("if (bRead)");
        Line("    " + strToBase);
    }
    Line("switch (nPropertyIndex)");
    Line("{");
    for (const SField& field : m_fields)
    {
        if (IsRestricted(field))
            PrintRestriction(field);
        if (field.bInherited)
            continue;
        const std::string strConstant = GetConstantName(field);
        const bool bByConstant = field.eStorage == EStorage::Repeated || field.eStorage == EStorage::AnyAttributes;
        const std::string strMember = "m_" + field.strName;
        const std::string strLast = bByConstant ? strConstant : GetLabel(field);
        Line("case Member_" + field.strName + ':');
        if (field.bChoice)
            m_strText += Arrange(8, "return m_choice.Access(", {strMember, "bRead", "value", strLast}, ");") + '\n';
        else
            m_strText +=
                Arrange(8, "return " + strMember + (m_type.pText && field.IsText() ? ".AccessText(" : ".Access("),
                        {"bRead", "value", strLast}, ");") +
                '\n';
    }
    if (bRestricted)
    {
        Line("default:");
        Line("    break;");
    }
    else if (m_type.pBase != nullptr)
    {
        Line("default:");
        Line("    return " + strToBase);
    }
    Line("}");
    if (bRestricted)
    {
        Line("if (!bRead)");
        Line("    " + strToBase);
    }
    End();
}

void CDefinition::PrintInit()
{
    std::vector<std::string> lines;
    for (const SField& field : m_fields)
    {
        if (!field.bInherited)
            lines.push_back("m_" + field.strName + ".Reset();");
    }
    const bool bOwn = !lines.empty();
    if (!bOwn && !m_type.bNillable)
        return;
    if (bOwn && m_type.eGroup == SClass::EGroup::Choice)
        lines.push_back("m_choice.Reset();");
    if (m_type.bNillable)
        lines.push_back("ResetNil();");
    Begin("void " + Own("Init()"));
    if (m_type.pBase != nullptr)
        Line(m_scope.Name(*m_type.pBase) + "::Init();");
    for (const std::string& strLine : lines)
        Line(strLine);
    End();
}

} // namespace

std::string DefineClass(const SClass& type, const SPlace& source, const SPlace& header, const std::string& strKnown,
                        CUris& uris)
{
    return CDefinition(type, source, header, strKnown, uris).Print();
}

} // namespace quiver_gen::cpp
