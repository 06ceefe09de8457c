// The components of our schemas as another reader of schemas understands them.
#include "tools/quiver-gen/schema/Loader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/framework/psvi/XSAttributeDeclaration.hpp>
#include <xercesc/framework/psvi/XSAttributeUse.hpp>
#include <xercesc/framework/psvi/XSComplexTypeDefinition.hpp>
#include <xercesc/framework/psvi/XSElementDeclaration.hpp>
#include <xercesc/framework/psvi/XSModel.hpp>
#include <xercesc/framework/psvi/XSModelGroup.hpp>
#include <xercesc/framework/psvi/XSNamedMap.hpp>
#include <xercesc/framework/psvi/XSParticle.hpp>
#include <xercesc/framework/psvi/XSSimpleTypeDefinition.hpp>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>

namespace
{

namespace xsd = quiver_gen::schema;

/// What is said about the global components, a line each.
using CFacts = std::set<std::string>;

const CFacts s_notRead{"not read"};

// --- As the other reader says it ------------------------------------------------------------------------------------

std::string Utf8(const XMLCh* lpText)
{
    return lpText == nullptr
               ? std::string()
               : std::string(reinterpret_cast<const char*>(xercesc::TranscodeToStr(lpText, "UTF-8").str()));
}

std::string Name(const XMLCh* lpUri, const XMLCh* lpLocal)
{
    const std::string strUri = Utf8(lpUri);
    return strUri.empty() ? Utf8(lpLocal) : '{' + strUri + '}' + Utf8(lpLocal);
}

std::string TypeName(xercesc::XSTypeDefinition& type)
{
    return type.getAnonymous() ? "anonymous" : Name(type.getNamespace(), type.getName());
}

std::string Range(std::uint64_t nMin, bool bUnbounded, std::uint64_t nMax)
{
    return '{' + std::to_string(nMin) + ',' + (bUnbounded ? "*" : std::to_string(nMax)) + '}';
}

std::string Content(xercesc::XSParticle* pParticle)
{
    using namespace xercesc;
    if (pParticle == nullptr)
        return "empty";
    const std::string strRange =
        Range(pParticle->getMinOccurs(), pParticle->getMaxOccursUnbounded(), pParticle->getMaxOccurs());
    switch (pParticle->getTermType())
    {
    case XSParticle::TERM_ELEMENT:
    {
        XSElementDeclaration& element = *pParticle->getElementTerm();
        return Name(element.getNamespace(), element.getName()) + ':' + TypeName(*element.getTypeDefinition()) +
               strRange;
    }
    case XSParticle::TERM_WILDCARD:
        return "any" + strRange;
    case XSParticle::TERM_MODELGROUP:
    {
        XSModelGroup& group = *pParticle->getModelGroupTerm();
        const char* const lpcKind = group.getCompositor() == XSModelGroup::COMPOSITOR_CHOICE ? "choice"
                                    : group.getCompositor() == XSModelGroup::COMPOSITOR_ALL  ? "all"
                                                                                             : "sequence";
        std::string strText = std::string(lpcKind) + '(';
        for (XMLSize_t n = 0; n < group.getParticles()->size(); ++n)
            strText += (n == 0 ? "" : " ") + Content(group.getParticles()->elementAt(n));
        return strText + ')' + strRange;
    }
    default:
        return "empty";
    }
}

std::string Attributes(xercesc::XSComplexTypeDefinition& type)
{
    std::set<std::string> uses;
    xercesc::XSAttributeUseList* const pUses = type.getAttributeUses();
    for (XMLSize_t n = 0; pUses != nullptr && n < pUses->size(); ++n)
    {
        xercesc::XSAttributeUse& use = *pUses->elementAt(n);
        xercesc::XSAttributeDeclaration& attribute = *use.getAttrDeclaration();
        uses.insert(Name(attribute.getNamespace(), attribute.getName()) + (use.getRequired() ? "!" : ""));
    }
    std::string strText = type.getAttributeWildcard() != nullptr ? "any" : "";
    for (const std::string& strUse : uses)
        strText += ' ' + strUse;
    return strText;
}

std::string Describe(xercesc::XSElementDeclaration& element)
{
    xercesc::XSElementDeclaration* const pHead = element.getSubstitutionGroupAffiliation();
    return "element " + Name(element.getNamespace(), element.getName()) + " : " +
           TypeName(*element.getTypeDefinition()) + (element.getNillable() ? " nillable" : "") +
           (element.getAbstract() ? " abstract" : "") +
           (pHead != nullptr ? " for " + Name(pHead->getNamespace(), pHead->getName()) : "");
}

std::string Describe(xercesc::XSComplexTypeDefinition& type)
{
    using xercesc::XSComplexTypeDefinition;
    std::string strText = "complex " + TypeName(type) + " : " + TypeName(*type.getBaseType()) +
                          (type.getAbstract() ? " abstract" : "") + " attributes" + Attributes(type);
    switch (type.getContentType())
    {
    case XSComplexTypeDefinition::CONTENTTYPE_SIMPLE:
        return strText + " simple";
    case XSComplexTypeDefinition::CONTENTTYPE_EMPTY:
        return strText + " empty";
    default:
        return strText + (type.getContentType() == XSComplexTypeDefinition::CONTENTTYPE_MIXED ? " mixed " : " ") +
               Content(type.getParticle());
    }
}

std::string Describe(xercesc::XSSimpleTypeDefinition& type)
{
    using xercesc::XSSimpleTypeDefinition;
    const char* const lpcVariety = type.getVariety() == XSSimpleTypeDefinition::VARIETY_LIST    ? "list"
                                   : type.getVariety() == XSSimpleTypeDefinition::VARIETY_UNION ? "union"
                                                                                                : "atomic";
    return "simple " + TypeName(type) + " : " + lpcVariety;
}

/// The other reader lists the definitions that xs:redefine replaced, under names that it makes up for them.
void AddWithoutRedefined(CFacts& facts, std::string strFact)
{
    const std::string strMark = "_rdfn";
    const std::size_t nMark = strFact.find(strMark);
    if (nMark != std::string::npos && nMark < strFact.find(" : "))
        return;
    if (nMark != std::string::npos)
        strFact.erase(nMark, strMark.size());
    facts.insert(std::move(strFact));
}

/// The global components that a schema has, without those of the schema language itself.
CFacts FactsOfTheOther(const std::string& strPath)
{
    using namespace xercesc;
    XMLGrammarPoolImpl pool;
    SAX2XMLReaderImpl reader(XMLPlatformUtils::fgMemoryManager, &pool);
    reader.setFeature(XMLUni::fgXercesSchema, true);
    reader.setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    // It takes no name that begins at the root of a drive of Windows without naming the drive.
    const std::string strWhole = std::filesystem::absolute(strPath).string();
    if (reader.loadGrammar(strWhole.c_str(), Grammar::SchemaGrammarType, true) == nullptr)
        return s_notRead;
    bool bChanged = false;
    XSModel& model = *pool.getXSModel(bChanged);
    const std::string strOwn(xsd::s_svXsdNamespace);
    CFacts facts;
    const auto Add = [&facts, &strOwn](XSNamedMap<XSObject>* pMap, auto DescribeItem)
    {
        for (XMLSize_t n = 0; pMap != nullptr && n < pMap->getLength(); ++n)
        {
            XSObject& object = *pMap->item(n);
            if (Utf8(object.getNamespace()) != strOwn)
                AddWithoutRedefined(facts, DescribeItem(object));
        }
    };
    Add(model.getComponents(XSConstants::ELEMENT_DECLARATION),
        [](XSObject& object) { return Describe(static_cast<XSElementDeclaration&>(object)); });
    Add(model.getComponents(XSConstants::TYPE_DEFINITION),
        [](XSObject& object)
        {
            auto& type = static_cast<XSTypeDefinition&>(object);
            return type.getTypeCategory() == XSTypeDefinition::COMPLEX_TYPE
                       ? Describe(static_cast<XSComplexTypeDefinition&>(type))
                       : Describe(static_cast<XSSimpleTypeDefinition&>(type));
        });
    return facts;
}

// --- As we say it ---------------------------------------------------------------------------------------------------

std::string TypeName(const xsd::SType& type)
{
    return type.IsAnonymous() ? "anonymous" : type.name.ToString();
}

std::string Content(const xsd::SParticle* pParticle)
{
    if (pParticle == nullptr)
        return "empty";
    const std::string strRange = Range(static_cast<std::uint64_t>(pParticle->nMin), pParticle->IsUnbounded(),
                                       static_cast<std::uint64_t>(pParticle->IsUnbounded() ? 0 : pParticle->nMax));
    if (pParticle->eTerm == xsd::ETerm::Element)
        return pParticle->pElement->name.ToString() + ':' + TypeName(*pParticle->pElement->pType) + strRange;
    if (pParticle->eTerm == xsd::ETerm::Wildcard)
        return "any" + strRange;
    const xsd::SModelGroup& group = *pParticle->pGroup;
    const char* const lpcKind = group.eCompositor == xsd::ECompositor::Choice ? "choice"
                                : group.eCompositor == xsd::ECompositor::All  ? "all"
                                                                              : "sequence";
    std::string strText = std::string(lpcKind) + '(';
    for (const xsd::SParticle* const pInner : group.particles)
        strText += (pInner == group.particles.front() ? "" : " ") + Content(pInner);
    return strText + ')' + strRange;
}

std::string Describe(const xsd::SElement& element)
{
    return "element " + element.name.ToString() + " : " + TypeName(*element.pType) +
           (element.bNillable ? " nillable" : "") + (element.bAbstract ? " abstract" : "") +
           (element.pHead != nullptr ? " for " + element.pHead->name.ToString() : "");
}

std::string Describe(const xsd::SComplexType& type)
{
    std::set<std::string> uses;
    for (const xsd::SAttributeUse* const pUse : type.attributes)
        uses.insert(pUse->GetName().ToString() + (pUse->eUse == xsd::SAttributeUse::EUse::Required ? "!" : ""));
    std::string strText = "complex " + TypeName(type) + " : " + TypeName(*type.pBase) +
                          (type.bAbstract ? " abstract" : "") + " attributes" +
                          (type.pWildcard != nullptr ? "any" : "");
    for (const std::string& strUse : uses)
        strText += ' ' + strUse;
    if (type.eContent == xsd::EContent::Simple)
        return strText + " simple";
    if (type.eContent == xsd::EContent::Empty)
        return strText + " empty";
    return strText + (type.IsMixed() ? " mixed " : " ") + Content(type.pContent);
}

std::string Describe(const xsd::SSimpleType& type)
{
    const char* const lpcVariety = type.eVariety == xsd::EVariety::List    ? "list"
                                   : type.eVariety == xsd::EVariety::Union ? "union"
                                                                           : "atomic";
    return "simple " + TypeName(type) + " : " + lpcVariety;
}

CFacts FactsOfOurs(const std::string& strPath)
{
    xsd::SLoadOptions options;
    options.schemas.push_back(strPath);
    xsd::SSchemaSet set;
    xsd::CDiagnostics diagnostics;
    if (!xsd::LoadSchemas(options, set, diagnostics))
        return s_notRead;
    CFacts facts;
    for (const xsd::SNamespace& ns : set.namespaces)
    {
        if (ns.strUri == xsd::s_svXmlNamespace || ns.strUri == xsd::s_svXsiNamespace)
            continue;
        for (const xsd::SElement* const pElement : ns.elements.list)
            facts.insert(Describe(*pElement));
        for (const xsd::SType* const pType : ns.types.list)
            facts.insert(pType->bSimple ? Describe(*pType->AsSimple()) : Describe(*pType->AsComplex()));
    }
    return facts;
}

// --- Side by side ---------------------------------------------------------------------------------------------------

std::vector<std::string> GetSchemas()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(QUIVER_CONSTRUCTS))
    {
        if (entry.path().extension() == ".xsd")
            names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Lines(const CFacts& facts, const CFacts& without)
{
    std::string strText;
    for (const std::string& strFact : facts)
    {
        if (without.count(strFact) == 0)
            strText += "  " + strFact + '\n';
    }
    return strText;
}

class SchemaOracle : public ::testing::TestWithParam<std::string>
{
protected:
    static void SetUpTestSuite() { xercesc::XMLPlatformUtils::Initialize(); }
    static void TearDownTestSuite() { xercesc::XMLPlatformUtils::Terminate(); }
};

} // namespace

TEST_P(SchemaOracle, UnderstandsTheSameComponents)
{
    const std::string strPath = std::string(QUIVER_CONSTRUCTS "/") + GetParam() + ".xsd";
    const CFacts ours = FactsOfOurs(strPath);
    const CFacts theirs = FactsOfTheOther(strPath);
    ASSERT_NE(ours, s_notRead) << "we cannot read it";
    ASSERT_NE(theirs, s_notRead) << "the other reader cannot read it";
    EXPECT_EQ(Lines(ours, theirs), "") << "only we say so; of the same components the other reader says:\n"
                                       << Lines(theirs, ours);
    EXPECT_EQ(Lines(theirs, ours), "") << "only the other reader says so";
}

INSTANTIATE_TEST_SUITE_P(Constructs, SchemaOracle, ::testing::ValuesIn(GetSchemas()),
                         [](const auto& schema) { return schema.param; });
