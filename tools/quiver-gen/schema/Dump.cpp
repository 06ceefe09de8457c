#include "tools/quiver-gen/schema/Dump.h"

#include "tools/quiver-gen/schema/Text.h"

#include <ostream>
#include <string>

namespace quiver_gen::schema
{

namespace
{

/// Text in quotes, on one line.
std::string Quote(std::string_view svText)
{
    std::string strQuoted = "\"";
    for (const char ch : svText)
    {
        switch (ch)
        {
        case '"':
        case '\\':
            strQuoted += '\\';
            strQuoted += ch;
            break;
        case '\n':
            strQuoted += "\\n";
            break;
        case '\r':
            strQuoted += "\\r";
            break;
        case '\t':
            strQuoted += "\\t";
            break;
        default:
            strQuoted += ch;
        }
    }
    return strQuoted + '"';
}

/// A built-in type by its usual prefix, another one as `{namespace}local`.
std::string NameOf(const SType& type)
{
    if (type.eBuiltin != EBuiltin::None)
        return "xs:" + type.name.strLocal;
    return type.IsAnonymous() ? "anonymous" : type.name.ToString();
}

std::string DescribeBits(unsigned nBits)
{
    constexpr std::pair<unsigned, std::string_view> names[] = {{Derivation_Extension, "extension"},
                                                               {Derivation_Restriction, "restriction"},
                                                               {Derivation_Substitution, "substitution"},
                                                               {Derivation_List, "list"},
                                                               {Derivation_Union, "union"}};
    std::string strText;
    for (const auto& [nBit, strName] : names)
        if (nBits & nBit)
            strText += (strText.empty() ? "" : ",") + std::string(strName);
    return strText;
}

std::string_view NameOf(ECompositor eCompositor)
{
    switch (eCompositor)
    {
    case ECompositor::Sequence:
        return "sequence";
    case ECompositor::Choice:
        return "choice";
    case ECompositor::All:
        break;
    }
    return "all";
}

std::string_view NameOf(EContent eContent)
{
    switch (eContent)
    {
    case EContent::Empty:
        return "empty";
    case EContent::Simple:
        return "simple";
    case EContent::ElementOnly:
        return "elements";
    case EContent::Mixed:
        break;
    }
    return "mixed";
}

std::string_view NameOf(SIdentityConstraint::EKind eKind)
{
    switch (eKind)
    {
    case SIdentityConstraint::EKind::Unique:
        return "unique";
    case SIdentityConstraint::EKind::Key:
        return "key";
    case SIdentityConstraint::EKind::KeyRef:
        break;
    }
    return "keyref";
}

std::string DescribeWildcard(const SWildcard& wildcard)
{
    std::string strText = wildcard.eNamespaces == SWildcard::ENamespaces::Any   ? "any"
                          : wildcard.eNamespaces == SWildcard::ENamespaces::Not ? "not"
                                                                                : "of";
    for (const std::string& strNamespace : wildcard.namespaces)
        strText += " " + Quote(strNamespace);
    if (wildcard.eProcess != SWildcard::EProcess::Strict)
        strText += wildcard.eProcess == SWildcard::EProcess::Lax ? " lax" : " skip";
    return strText;
}

std::string DescribeOccurrence(const SParticle& particle)
{
    return std::to_string(particle.nMin) + ".." + (particle.IsUnbounded() ? "*" : std::to_string(particle.nMax));
}

std::string DescribeValue(const SValueConstraint* pValue)
{
    return pValue ? (pValue->bFixed ? " fixed=" : " default=") + Quote(pValue->strValue) : std::string();
}

class CDumper
{
public:
    CDumper(const SSchemaSet& set, std::ostream& out)
        : m_set(set)
        , m_out(out)
    {
    }

    void Dump()
    {
        for (std::size_t n = 0; n < m_set.files.size(); ++n)
            DumpFile(n, m_set.files[n]);
        for (const SNamespace& space : m_set.namespaces)
        {
            m_out << "namespace " << Quote(space.strUri) << '\n';
            m_nIndent = 1;
            for (const SElement* pElement : space.elements.list)
                DumpElement(*pElement);
            for (const SType* pType : space.types.list)
                DumpWithFormer(*pType);
            for (const SAttribute* pAttribute : space.attributes.list)
                DumpAttribute(*pAttribute);
            for (const SGroupDefinition* pGroup : space.groups.list)
                DumpGroupDefinition(*pGroup);
            for (const SAttributeGroup* pGroup : space.attributeGroups.list)
                DumpAttributeGroup(*pGroup);
            for (const SNotation* pNotation : space.notations.list)
                Line(*pNotation, "notation " + pNotation->name.strLocal + " public=" + Quote(pNotation->strPublic) +
                                     " system=" + Quote(pNotation->strSystem));
            m_nIndent = 0;
        }
    }

private:
    /// Indents what is printed while it lives.
    class CIndent
    {
    public:
        explicit CIndent(CDumper& dumper)
            : m_dumper(dumper)
        {
            ++m_dumper.m_nIndent;
        }
        ~CIndent() { --m_dumper.m_nIndent; }
        CIndent(const CIndent&) = delete;
        CIndent& operator=(const CIndent&) = delete;

    private:
        CDumper& m_dumper;
    };

    void Indent()
    {
        for (int n = 0; n < m_nIndent; ++n)
            m_out << "  ";
    }

    void Line(const SComponent& component, const std::string& strText)
    {
        Indent();
        m_out << strText;
        const SPosition& position = component.position;
        if (position.nFile >= 0)
            m_out << " @" << position.nFile << ':' << position.nLine << ':' << position.nColumn;
        m_out << '\n';
        const CIndent indent(*this);
        DumpDocumentation(component.documentation);
    }

    void DumpDocumentation(const std::vector<SDocumentation>& documentation)
    {
        for (const SDocumentation& piece : documentation)
        {
            Indent();
            m_out << "documentation " << (piece.strLang.empty() ? "" : piece.strLang + " ")
                  << Quote(Collapse(piece.strText)) << '\n';
        }
    }

    void DumpFile(std::size_t nFile, const SFile& file)
    {
        m_out << "file " << nFile << ' ' << Quote(file.strPath) << " namespace=" << Quote(file.strTargetNamespace)
              << (file.bCatalog ? " catalog" : "") << (file.bChameleon ? " chameleon" : "")
              << (file.bBuiltIn ? " built-in" : "") << (file.bGiven ? " given" : "") << '\n';
        m_nIndent = 1;
        DumpDocumentation(file.documentation);
        m_nIndent = 0;
    }

    // --- Types

    void DumpWithFormer(const SType& type)
    {
        DumpType(type, "");
        if (!type.pRedefines)
            return;
        const CIndent indent(*this);
        Indent();
        m_out << "redefines\n";
        const CIndent former(*this);
        DumpWithFormer(*type.pRedefines);
    }

    void DumpType(const SType& type, const std::string& strRole)
    {
        if (const SSimpleType* pSimple = type.AsSimple())
            DumpSimpleType(*pSimple, strRole);
        else
            DumpComplexType(*type.AsComplex(), strRole);
    }

    /// A type that is written in place; of others the name is told where they are used.
    void DumpIfAnonymous(const SType& type, const std::string& strRole)
    {
        if (!type.IsAnonymous())
            return;
        const CIndent indent(*this);
        DumpType(type, strRole);
    }

    std::string Mention(const SType& type) { return type.IsAnonymous() ? std::string() : " " + NameOf(type); }

    void DumpSimpleType(const SSimpleType& type, const std::string& strRole)
    {
        std::string strText = strRole + "simpleType" + Mention(type);
        strText += type.eVariety == EVariety::Atomic ? " atomic" : type.eVariety == EVariety::List ? " list" : " union";
        strText += " base=" + NameOf(*type.pBase);
        if (type.eVariety == EVariety::Atomic)
            strText += " builtin=" + std::string(GetBuiltinName(type.eNearestBuiltin)) +
                       " primitive=" + std::string(GetBuiltinName(type.ePrimitive));
        if (type.eVariety == EVariety::List)
            strText += " item=" + NameOf(*type.pItem);
        if (type.eVariety == EVariety::Union)
            for (const SSimpleType* pMember : type.members)
                strText += " member=" + NameOf(*pMember);
        if (type.nFinal)
            strText += " final=" + DescribeBits(type.nFinal);
        Line(type, strText);
        DumpFacets(type);
        DumpIfAnonymous(*type.pBase, "base ");
        // What is handed down belongs to the type that wrote it.
        if (type.pItem && type.pItem->pOwnerType == &type)
            DumpIfAnonymous(*type.pItem, "item ");
        for (const SSimpleType* pMember : type.members)
            if (pMember->pOwnerType == &type)
                DumpIfAnonymous(*pMember, "member ");
    }

    void DumpFacets(const SSimpleType& type)
    {
        const CIndent indent(*this);
        for (const SFacet& facet : type.facets)
            Line(facet, std::string(GetFacetName(facet.eFacet)) + " " + Quote(facet.strValue) +
                            (facet.bFixed ? " fixed" : ""));
        for (const SPattern& pattern : type.patterns)
            Line(pattern, "pattern " + Quote(pattern.strValue));
        for (const SEnumeration& enumeration : type.enumerations)
            Line(enumeration, "enumeration " + Quote(enumeration.strValue));
    }

    void DumpComplexType(const SComplexType& type, const std::string& strRole)
    {
        std::string strText = strRole + "complexType" + Mention(type) + " " + std::string(NameOf(type.eContent));
        if (!type.bImplicit)
            strText += (type.bExtension ? " extends " : " restricts ") + NameOf(*type.pBase);
        if (type.bAbstract)
            strText += " abstract";
        if (type.pSimpleContent)
            strText += " text=" + NameOf(*type.pSimpleContent);
        if (type.nBlock)
            strText += " block=" + DescribeBits(type.nBlock);
        if (type.nFinal)
            strText += " final=" + DescribeBits(type.nFinal);
        Line(type, strText);
        const CIndent indent(*this);
        if (type.pSimpleContent && type.pSimpleContent->pOwnerType == &type)
            DumpSimpleType(*type.pSimpleContent, "text ");
        if (type.pOwnParticle)
            DumpParticle(*type.pOwnParticle);
        for (const SAttributeUse* pUse : type.ownAttributes)
            DumpUse(*pUse);
        if (type.pOwnWildcard)
            Line(*type.pOwnWildcard, "anyAttribute " + DescribeWildcard(*type.pOwnWildcard));
        DumpInherited(type);
    }

    /// What is in force, where it differs from what is written.
    void DumpInherited(const SComplexType& type)
    {
        if (type.attributes != type.ownAttributes)
        {
            Indent();
            m_out << "in force:";
            for (const SAttributeUse* pUse : type.attributes)
                m_out << ' ' << pUse->GetName().ToString();
            m_out << '\n';
        }
        if (type.pWildcard && type.pWildcard != type.pOwnWildcard)
        {
            Indent();
            m_out << "in force: anyAttribute " << DescribeWildcard(*type.pWildcard) << '\n';
        }
    }

    // --- Particles

    void DumpParticle(const SParticle& particle)
    {
        const std::string strOccurrence = " " + DescribeOccurrence(particle);
        switch (particle.eTerm)
        {
        case ETerm::Element:
            if (particle.bReference)
                Line(particle, "ref " + particle.pElement->name.ToString() + strOccurrence);
            else
                DumpElement(*particle.pElement, strOccurrence);
            break;
        case ETerm::Group:
            Line(particle, std::string(NameOf(particle.pGroup->eCompositor)) + strOccurrence);
            DumpParticles(*particle.pGroup);
            break;
        case ETerm::GroupReference:
            Line(particle, "group " + particle.pDefinition->name.ToString() + strOccurrence);
            break;
        case ETerm::Wildcard:
            Line(particle, "any " + DescribeWildcard(*particle.pWildcard) + strOccurrence);
            break;
        }
    }

    void DumpParticles(const SModelGroup& group)
    {
        const CIndent indent(*this);
        DumpDocumentation(group.documentation);
        for (const SParticle* pParticle : group.particles)
            DumpParticle(*pParticle);
    }

    void DumpElement(const SElement& element, const std::string& strOccurrence = {})
    {
        std::string strText = "element " + element.name.ToString() + strOccurrence + " type=" + NameOf(*element.pType);
        if (element.bAbstract)
            strText += " abstract";
        if (element.bNillable)
            strText += " nillable";
        strText += DescribeValue(element.value ? &*element.value : nullptr);
        if (element.pHead)
            strText += " head=" + element.pHead->name.ToString();
        if (element.nBlock)
            strText += " block=" + DescribeBits(element.nBlock);
        if (element.nFinal)
            strText += " final=" + DescribeBits(element.nFinal);
        Line(element, strText);
        // A member of a substitution group may have the type of its head.
        if (element.pType->pOwnerElement == &element)
            DumpIfAnonymous(*element.pType, "");
        const CIndent indent(*this);
        for (const SIdentityConstraint* pConstraint : element.constraints)
            DumpConstraint(*pConstraint);
    }

    void DumpConstraint(const SIdentityConstraint& constraint)
    {
        std::string strText = std::string(NameOf(constraint.eKind)) + " " + constraint.name.strLocal +
                              " selector=" + Quote(constraint.selector.strText);
        for (const SXPath& field : constraint.fields)
            strText += " field=" + Quote(field.strText);
        if (constraint.pRefer)
            strText += " refer=" + constraint.pRefer->name.ToString();
        Line(constraint, strText);
    }

    void DumpGroupDefinition(const SGroupDefinition& group)
    {
        Line(group, "group " + group.name.ToString() + " " + std::string(NameOf(group.pGroup->eCompositor)));
        DumpParticles(*group.pGroup);
        if (!group.pRedefines)
            return;
        const CIndent indent(*this);
        Indent();
        m_out << "redefines\n";
        const CIndent former(*this);
        DumpGroupDefinition(*group.pRedefines);
    }

    // --- Attributes

    void DumpAttribute(const SAttribute& attribute)
    {
        Line(attribute, "attribute " + attribute.name.ToString() + " type=" + NameOf(*attribute.pType) +
                            DescribeValue(attribute.value ? &*attribute.value : nullptr));
        DumpIfAnonymous(*attribute.pType, "");
    }

    void DumpUse(const SAttributeUse& use)
    {
        std::string strText = (use.bReference ? "attribute ref " : "attribute ") + use.GetName().ToString();
        if (!use.bReference)
            strText += " type=" + NameOf(*use.pAttribute->pType);
        if (use.eUse != SAttributeUse::EUse::Optional)
            strText += use.eUse == SAttributeUse::EUse::Required ? " required" : " prohibited";
        strText += DescribeValue(use.value ? &*use.value : nullptr);
        if (use.pGroup)
            strText += " of=" + use.pGroup->name.ToString();
        Line(use, strText);
        if (!use.bReference)
            DumpIfAnonymous(*use.pAttribute->pType, "");
    }

    void DumpAttributeGroup(const SAttributeGroup& group)
    {
        Line(group, "attributeGroup " + group.name.ToString());
        const CIndent indent(*this);
        for (const SAttributeUse* pUse : group.attributes)
            DumpUse(*pUse);
        if (group.pWildcard)
            Line(*group.pWildcard, "anyAttribute " + DescribeWildcard(*group.pWildcard));
        if (!group.pRedefines)
            return;
        Indent();
        m_out << "redefines\n";
        const CIndent former(*this);
        DumpAttributeGroup(*group.pRedefines);
    }

    const SSchemaSet& m_set;
    std::ostream& m_out;
    int m_nIndent = 0;
};

} // namespace

void DumpComponents(const SSchemaSet& set, std::ostream& out)
{
    CDumper(set, out).Dump();
}

} // namespace quiver_gen::schema
