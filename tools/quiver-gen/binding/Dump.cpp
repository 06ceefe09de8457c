#include "tools/quiver-gen/binding/Dump.h"

#include <iterator>
#include <ostream>
#include <string_view>

namespace quiver_gen::binding
{

namespace
{

template <typename TEnum, std::size_t nCount>
std::string_view NameOf(TEnum eValue, const std::string_view (&names)[nCount])
{
    return names[static_cast<std::size_t>(eValue)];
}

constexpr std::string_view s_values[] = {"String",   "Boolean",  "I1",     "I2",          "I4",  "I8",      "UI1",
                                         "UI2",      "UI4",      "UI8",    "R4",          "R8",  "Decimal", "Integer",
                                         "DateTime", "Duration", "Binary", "Enumeration", "List"};
static_assert(std::size(s_values) == static_cast<std::size_t>(EValue::List) + 1);
constexpr std::string_view s_members[] = {"value", "nillable", "typed", "object", "group", "wildcard"};
static_assert(std::size(s_members) == static_cast<std::size_t>(EMember::Wildcard) + 1);
constexpr std::string_view s_groups[] = {"sequence", "choice", "all"};
static_assert(std::size(s_groups) == static_cast<std::size_t>(SClass::EGroup::All) + 1);
constexpr std::string_view s_whiteSpace[] = {"", "preserve", "replace", "collapse"};
static_assert(std::size(s_whiteSpace) == static_cast<std::size_t>(SSimpleType::EWhiteSpace::Collapse) + 1);

/// A text in quotes, on one line.
std::string Quote(std::string_view svText)
{
    std::string strQuoted = "\"";
    for (const char c : svText)
    {
        if (c == '\n')
            strQuoted += "\\n";
        else if (c == '\r')
            strQuoted += "\\r";
        else if (c == '\t')
            strQuoted += "\\t";
        else if (c == '"' || c == '\\')
            (strQuoted += '\\') += c;
        else
            strQuoted += c;
    }
    return strQuoted + '"';
}

std::string QName(const std::string& strUri, const std::string& strLocal)
{
    return strUri.empty() ? strLocal : "{" + strUri + "}" + strLocal;
}

/// Name of a type or class, with the namespace where it is another one than that of the place.
template <typename TItem>
std::string Refer(const TItem* pItem, const SNamespace* pHere)
{
    if (!pItem)
        return "(none)";
    if (!pItem->pNamespace || pItem->pNamespace == pHere)
        return pItem->strName;
    return pItem->pNamespace->strCpp + "::" + pItem->strName;
}

std::string Occurrences(std::int64_t nMin, std::int64_t nMax)
{
    return std::to_string(nMin) + ".." + (nMax < 0 ? "*" : std::to_string(nMax));
}

void PrintNamespaces(SMember::ENamespaces eNamespaces, const std::vector<std::string>& uris, std::ostream& out)
{
    if (eNamespaces == SMember::ENamespaces::Any)
    {
        out << " any";
        return;
    }
    out << (eNamespaces == SMember::ENamespaces::Not ? " not" : " of");
    for (const std::string& strUri : uris)
        out << ' ' << Quote(strUri);
}

void PrintProcess(SMember::EProcess eProcess, std::ostream& out)
{
    if (eProcess != SMember::EProcess::Skip)
        out << (eProcess == SMember::EProcess::Lax ? " lax" : " strict");
}

void PrintRule(const SValueRule& rule, std::ostream& out)
{
    if (rule.eKind != SValueRule::EKind::None)
        out << (rule.eKind == SValueRule::EKind::Default ? " default " : " fixed ") << Quote(rule.strText);
}

void PrintText(std::string_view svName, const std::string& strText, std::ostream& out)
{
    if (!strText.empty())
        out << ' ' << svName << ' ' << Quote(strText);
}

void PrintNumber(std::string_view svName, std::int64_t nNumber, std::ostream& out)
{
    if (nNumber >= 0)
        out << ' ' << svName << ' ' << nNumber;
}

void PrintFlag(std::string_view svName, bool bSet, std::ostream& out)
{
    if (bSet)
        out << ' ' << svName;
}

void PrintFacets(const SSimpleType& type, std::ostream& out)
{
    PrintText("pattern", type.strPattern, out);
    PrintNumber("length", type.nLength, out);
    PrintNumber("minLength", type.nMinLength, out);
    PrintNumber("maxLength", type.nMaxLength, out);
    PrintNumber("totalDigits", type.nTotalDigits, out);
    PrintNumber("fractionDigits", type.nFractionDigits, out);
    PrintText("minInclusive", type.strMinInclusive, out);
    PrintText("maxInclusive", type.strMaxInclusive, out);
    PrintText("minExclusive", type.strMinExclusive, out);
    PrintText("maxExclusive", type.strMaxExclusive, out);
    if (type.eWhiteSpace != SSimpleType::EWhiteSpace::Inherited)
        out << ' ' << NameOf(type.eWhiteSpace, s_whiteSpace);
}

void PrintMember(const SMember& member, const SNamespace* pHere, std::ostream& out)
{
    out << "    " << member.strName << ": ";
    if (member.eCardinality == ECardinality::Repeated)
        out << Occurrences(member.nMin, member.nMax);
    else
        out << (member.eCardinality == ECardinality::Required ? "required" : "optional");
    out << ' ' << NameOf(member.eMember, s_members);
    if (member.pType != nullptr)
        out << ' ' << Refer(member.pType, pHere);
    else if (member.eMember != EMember::Wildcard)
        out << ' ' << Refer(member.pClass, pHere);
    else
    {
        PrintNamespaces(member.eNamespaces, member.uris, out);
        PrintProcess(member.eProcess, out);
    }
    if (!member.strElement.empty())
        out << " <" << QName(member.strUri, member.strElement) << '>';
    PrintFlag("polymorphic", member.bPolymorphic, out);
    PrintFlag("substitution", member.bSubstitution, out);
    PrintFlag("content-optional", member.eMember == EMember::Group && !member.bContentRequired, out);
    PrintFlag("inherited", member.bInherited, out);
    PrintRule(member.value, out);
    out << '\n';
}

void PrintAttribute(const SAttribute& attribute, const SNamespace* pHere, std::ostream& out)
{
    out << "    @" << attribute.strName << ": " << (attribute.bRequired ? "required " : "optional ")
        << Refer(attribute.pType, pHere) << " <" << QName(attribute.strUri, attribute.strAttribute) << '>';
    PrintFlag("inherited", attribute.bInherited, out);
    PrintRule(attribute.value, out);
    out << '\n';
}

void PrintClassHead(const SClass& item, std::ostream& out)
{
    out << "  class " << item.strName;
    if (!item.strSchemaName.empty())
        out << " = " << QName(item.strUri, item.strSchemaName);
    out << ": " << NameOf(item.eGroup, s_groups);
    PrintFlag("pseudo", item.bPseudo, out);
    PrintFlag("abstract", item.bAbstract, out);
    PrintFlag("nillable", item.bNillable, out);
    PrintFlag("emptiable", item.eGroup == SClass::EGroup::Choice && item.bEmptiable, out);
    PrintFlag("mixed", item.bMixed, out);
    PrintFlag("unknown-attributes", !item.bUnknownAttributesFail, out);
    if (item.pBase)
        out << (item.bRestriction ? " restricts " : " extends ") << Refer(item.pBase, item.pNamespace);
    if (!item.strElement.empty())
        out << " <" << item.strElement << '>';
    out << '\n';
}

void PrintKnown(const SKnownAttribute& attribute, std::ostream& out)
{
    out << "known @" << QName(attribute.strUri, attribute.strAttribute) << ": " << Refer(attribute.pType, nullptr);
    PrintRule(attribute.value, out);
    out << '\n';
}

void PrintRoot(const SRoot& root, std::ostream& out)
{
    out << "root " << root.strName << " <" << QName(root.strUri, root.strElement) << ">: ";
    if (root.pClass)
        out << Refer(root.pClass, nullptr);
    else
        out << "value " << Refer(root.pType, nullptr);
    PrintFlag("nillable", root.bNillable, out);
    out << '\n';
}

} // namespace

void Dump(const SSimpleType& type, std::ostream& out)
{
    out << "  simple " << type.strName;
    if (!type.strSchemaName.empty())
        out << " = " << QName(type.strUri, type.strSchemaName);
    out << ": " << NameOf(type.eValue, s_values);
    if (!type.strBuiltin.empty())
        out << ' ' << type.strBuiltin;
    if (!type.strEnumName.empty())
        out << ' ' << type.strEnumName;
    if (type.pItem)
        out << " list of " << Refer(type.pItem, type.pNamespace);
    for (std::size_t n = 0; n < type.memberTypes.size(); ++n)
        out << (n == 0 ? " union of " : ", ") << Refer(type.memberTypes[n], type.pNamespace);
    PrintFacets(type, out);
    out << '\n';
    for (const SEnumerator& enumerator : type.enumerators)
    {
        out << "    " << Quote(enumerator.strText);
        if (!enumerator.strName.empty())
            out << " = " << enumerator.strName;
        out << '\n';
    }
}

void Dump(const SClass& item, std::ostream& out)
{
    PrintClassHead(item, out);
    for (const SMember& member : item.members)
        PrintMember(member, item.pNamespace, out);
    for (const SAttribute& attribute : item.attributes)
        PrintAttribute(attribute, item.pNamespace, out);
    if (item.bAnyAttribute)
    {
        out << "    @*:";
        PrintNamespaces(item.eAnyAttribute, item.anyAttributeUris, out);
        PrintProcess(item.eAnyAttributeProcess, out);
        out << '\n';
    }
    if (item.pText)
        out << "    text " << Refer(item.pText, item.pNamespace) << '\n';
    for (const SClass::SAlternative& alternative : item.alternatives)
        out << "    " << (alternative.bElement ? "element " : "type ") << QName(alternative.strUri, alternative.strName)
            << " -> " << Refer(alternative.pClass, item.pNamespace) << '\n';
}

void Dump(const SBinding& binding, std::ostream& out)
{
    for (const SNamespace& item : binding.namespaces)
    {
        out << "namespace " << item.strCpp << ' ' << Quote(item.strUri) << " in " << item.strFile << '\n';
        for (const SSimpleType* pType : item.simpleTypes)
            Dump(*pType, out);
        for (const SClass* pClass : item.classes)
            Dump(*pClass, out);
    }
    for (const SRoot& root : binding.roots)
        PrintRoot(root, out);
    for (const SKnownAttribute& attribute : binding.knownAttributes)
        PrintKnown(attribute, out);
    for (const SNamedType& type : binding.namedTypes)
        out << "named " << QName(type.strUri, type.strName) << ": " << Refer(type.pType, nullptr) << '\n';
}

} // namespace quiver_gen::binding
