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
    void DescribeInherited(const SField& field);
    void DescribeInheritedMember(const SField& field);
    void Restrict(const SField& field);
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
    const std::string strConstant = GetConstantName(field);
    const bool bGroup = member.eMember == EMember::Group;
    // These members do not tell whether they may be empty.
    const bool bTells = !field.IsWildcard() && field.eStorage != EStorage::Polymorphic;
    const bool bOptional = !bTells && member.eCardinality == ECardinality::Optional;
    const std::string strFunction = "description." + std::string(bOptional ? "Optional" : "") +
                                    (field.IsWildcard() ? "Wildcard"
                                     : bGroup           ? "Group"
                                                        : "Element");
    std::vector<std::string> arguments = {"m_" + field.strName};
    if (field.eStorage != EStorage::Repeated)
        arguments.push_back(WideLiteral(field.strLabel));
    if (!strConstant.empty())
        arguments.push_back(strConstant);
    else if (!bGroup)
        arguments.push_back(m_uris.Use(member.strUri));
    else if (field.eStorage == EStorage::RequiredObject)
        arguments.push_back(member.bContentRequired ? "true" : "false");
    Call(strFunction, arguments);
}

void CDefinition::DescribeInheritedMember(const SField& field)
{
    const SMember& member = *field.pMember;
    const bool bRepeated = member.eCardinality == ECardinality::Repeated;
    const std::string strNumber = "description.Inherited(&m_" + field.strName + ')';
    const std::string strFunction =
        std::string("description.") + (bRepeated                                       ? "Repeated"
                                       : member.eCardinality == ECardinality::Optional ? "Optional"
                                                                                       : "");
    std::vector<std::string> element = {WideLiteral(member.strElement), m_uris.Use(member.strUri), strNumber};
    switch (member.eMember)
    {
    case EMember::Value:
        if (!bRepeated)
            element.push_back(m_scope.Name(*field.pType) + "::Type()");
        return Call(strFunction + "Element", element);
    case EMember::NillableValue:
    case EMember::TypedValue:
        if (bRepeated)
            return Call("description.RepeatedObject", element);
        return Call(strFunction + "Object<" + GetObjectType(field, m_scope) + '>', element);
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
    Call("description.Attribute",
         {"m_" + field.strName, WideLiteral(field.pAttribute->strAttribute), m_uris.Use(field.pAttribute->strUri)});
}

/// What a restriction leaves of the members of its base.
void CDefinition::DescribeInherited(const SField& field)
{
    const std::string strNumber = "description.Inherited(&m_" + field.strName + ')';
    if (field.pMember != nullptr)
        DescribeInheritedMember(field);
    else if (field.pAttribute != nullptr)
        Call(field.pAttribute->bRequired ? "description.Attribute" : "description.OptionalAttribute",
             {WideLiteral(field.pAttribute->strAttribute), m_uris.Use(field.pAttribute->strUri), strNumber,
              m_scope.Name(*field.pType) + "::Type()"});
    else if (field.IsText() && m_type.pText != nullptr)
        Call("description.Text", {strNumber, m_scope.Name(*field.pType) + "::Type()"});
    else if (field.IsText())
        Call("description.MixedText", {strNumber});
    else
        Call("description.AnyAttribute", {strNumber, GetConstantName(field)});
    if (IsRestricted(field))
        Restrict(field);
}

void CDefinition::Restrict(const SField& field)
{
    const std::string strMember = "&m_" + field.strName;
    if (field.eStorage == EStorage::Repeated)
        return Call("description.RestrictCounts",
                    {strMember, Number(field.pMember->nMin), Number(field.pMember->nMax)});
    const std::string strRule = field.pRule == nullptr ? std::string() : GetRuleArgument(field, m_scope);
    Call("description.RestrictValues<" + m_scope.Name(*field.pType) + strRule + '>', {strMember});
}

void CDefinition::PrintDescribe()
{
    Begin("void " + Own("Describe(") + m_scope.Library("CClassDescription") + "& description) const");
    if (m_type.pBase != nullptr)
        Line(m_scope.Name(*m_type.pBase) + "::Describe(description);");
    if (m_type.bRestriction)
        Line("description.Restrict();");
    DescribeClass();
    for (const SField& field : m_fields)
    {
        if (field.bInherited)
            DescribeInherited(field);
        else if (field.pMember != nullptr)
            DescribeMember(field);
        else if (field.pAttribute != nullptr)
            DescribeAttribute(field);
        else if (field.IsText())
            Call(m_type.pText != nullptr ? "description.Text" : "description.MixedText", {"m_" + field.strName});
        else
            Call("description.AnyAttribute", {"m_" + field.strName, GetConstantName(field)});
    }
    End();
}

void CDefinition::PrintInit()
{
    if (!m_type.bNillable)
        return;
    Begin("void " + Own("Init()"));
    Line("CGenerated::Init();");
    Line("ResetNil();");
    End();
}

} // namespace

std::string DefineClass(const SClass& type, const SPlace& source, const SPlace& header, const std::string& strKnown,
                        CUris& uris)
{
    return CDefinition(type, source, header, strKnown, uris).Print();
}

} // namespace quiver_gen::cpp
