#include "tests/support/Schemas.h"

using namespace QvTest;
using namespace quiver_gen::schema;

namespace
{

struct SConstruct
{
    const char* lpctName;
    std::string strSchema;
    std::string strDump;
    std::string strAttributes = {};
};

void PrintTo(const SConstruct& construct, std::ostream* pOut)
{
    *pOut << construct.strSchema;
}

class SchemaConstructs : public testing::TestWithParam<SConstruct>
{
};

const SConstruct s_constructs[] = {
    {"ElementOfBuiltInType", "<xs:element name='a' type='xs:int'/>", "element a type=xs:int @0:2:1\n"},
    {"ElementWithoutType", "<xs:element name='a'/>", "element a type=xs:anyType @0:2:1\n"},
    {"ElementWithEverything",
     "<xs:element name='a' type='xs:string' nillable='true' abstract='1' default='x' block='extension' final='#all'/>",
     "element a type=xs:string abstract nillable default=\"x\" block=extension final=extension,restriction @0:2:1\n"},
    {"DefaultsOfTheSchema", "<xs:element name='a' type='xs:string' fixed='x'/>\n<xs:complexType name='t'/>",
     "element a type=xs:string fixed=\"x\" block=extension,substitution final=restriction @0:2:1\n"
     "complexType t empty block=extension final=restriction @0:3:1\n",
     "blockDefault='extension substitution' finalDefault='restriction'"},
    {"Documentation",
     "<xs:element name='a' type='xs:int'>\n<xs:annotation><xs:documentation xml:lang='de'>ein <b>fettes</b>\n Wort"
     "</xs:documentation><xs:appinfo>x</xs:appinfo><xs:documentation>two</xs:documentation></xs:annotation></"
     "xs:element>",
     "element a type=xs:int @0:2:1\n  documentation de \"ein fettes Wort\"\n  documentation en \"two\"\n",
     "xml:lang='en'"},
    {"Atomic",
     "<xs:simpleType name='t' final='list'><xs:restriction base='xs:int'>\n<xs:minInclusive value=' 1 ' fixed='true'/>"
     "<xs:maxExclusive value='9'/><xs:totalDigits value='3'/><xs:pattern value='\\d '/><xs:pattern value='x'/>"
     "<xs:enumeration value='5'/></xs:restriction></xs:simpleType>",
     "simpleType t atomic base=xs:int builtin=int primitive=decimal final=list @0:2:1\n"
     "  minInclusive \"1\" fixed @0:3:1\n  maxExclusive \"9\" @0:3:44\n  totalDigits \"3\" @0:3:72\n"
     "  pattern \"\\\\d \" @0:3:99\n  pattern \"x\" @0:3:124\n  enumeration \"5\" @0:3:147\n"},
    {"RestrictionOfAnonymousType",
     "<xs:simpleType name='t'><xs:restriction><xs:simpleType>\n<xs:restriction base='xs:token'><xs:length value='2'/>"
     "</xs:restriction></xs:simpleType><xs:pattern value='a'/></xs:restriction></xs:simpleType>",
     "simpleType t atomic base=anonymous builtin=token primitive=string @0:2:1\n  pattern \"a\" @0:3:88\n"
     "  base simpleType atomic base=xs:token builtin=token primitive=string @0:2:41\n    length \"2\" @0:3:33\n"},
    {"List",
     "<xs:simpleType name='l'><xs:list itemType='xs:date'/></xs:simpleType>\n<xs:simpleType name='m'>"
     "<xs:restriction base='l'><xs:maxLength value='3'/></xs:restriction></xs:simpleType>",
     "simpleType l list base=xs:anySimpleType item=xs:date @0:2:1\nsimpleType m list base=l item=xs:date @0:3:1\n"
     "  maxLength \"3\" @0:3:50\n"},
    {"Union",
     "<xs:simpleType name='u'><xs:union memberTypes='xs:int l'><xs:simpleType>\n<xs:restriction base='xs:string'/>"
     "</xs:simpleType></xs:union></xs:simpleType>\n<xs:simpleType name='l'><xs:list "
     "itemType='xs:int'/></xs:simpleType>",
     "simpleType u union base=xs:anySimpleType member=xs:int member=l member=anonymous @0:2:1\n"
     "  member simpleType atomic base=xs:string builtin=string primitive=string @0:2:58\n"
     "simpleType l list base=xs:anySimpleType item=xs:int @0:4:1\n"},
    {"SequenceChoiceAny",
     "<xs:complexType name='t'>\n<xs:sequence maxOccurs='unbounded'>\n<xs:choice minOccurs='0'><xs:element name='a' "
     "type='xs:int'/>\n<xs:element ref='g' minOccurs='2' maxOccurs='3'/></xs:choice>\n<xs:element name='never' "
     "maxOccurs='0' minOccurs='0'/>\n<xs:any namespace='##other' processContents='lax'/>\n<xs:any namespace='u ##local "
     "##targetNamespace u'/>\n</xs:sequence><xs:anyAttribute processContents='skip'/></xs:complexType><xs:element "
     "name='g'/>",
     "element {n}g type=xs:anyType @0:9:73\n"
     "complexType {n}t elements @0:2:1\n  sequence 1..* @0:3:1\n    choice 0..1 @0:4:1\n"
     "      element a 1..1 type=xs:int @0:4:26\n      ref {n}g 2..3 @0:5:1\n"
     "    any not \"n\" \"\" lax 1..1 @0:7:1\n    any of \"u\" \"\" \"n\" 1..1 @0:8:1\n  anyAttribute any skip "
     "@0:9:15\n",
     "targetNamespace='n' xmlns='n'"},
    {"All",
     "<xs:complexType name='t'><xs:all minOccurs='0'>\n<xs:element name='a' type='xs:int' "
     "minOccurs='0'/></xs:all></xs:complexType>",
     "complexType t elements @0:2:1\n  all 0..1 @0:2:26\n    element a 0..1 type=xs:int @0:3:1\n"},
    {"EmptyContent",
     "<xs:complexType name='t'><xs:sequence/></xs:complexType>\n<xs:complexType name='m' mixed='true'/>",
     "complexType t empty @0:2:1\ncomplexType m mixed @0:3:1\n"},
    {"Forms",
     "<xs:complexType name='t'><xs:sequence><xs:element name='a'/><xs:element name='b' "
     "form='unqualified'/></xs:sequence>\n"
     "<xs:attribute name='c'/><xs:attribute name='d' form='qualified'/></xs:complexType>",
     "complexType {n}t elements @0:2:1\n  sequence 1..1 @0:2:26\n    element {n}a 1..1 type=xs:anyType @0:2:39\n"
     "    element b 1..1 type=xs:anyType @0:2:61\n  attribute c type=xs:anySimpleType @0:3:1\n"
     "  attribute {n}d type=xs:anySimpleType @0:3:25\n",
     "targetNamespace='n' elementFormDefault='qualified'"},
    {"Attributes",
     "<xs:attribute name='g' type='xs:int' fixed='1'/>\n<xs:complexType name='t'>\n<xs:attribute ref='g' "
     "use='required'/>"
     "<xs:attributeGroup ref='ag'/><xs:attribute name='b' default='x'><xs:simpleType><xs:restriction base='xs:string'/>"
     "</xs:simpleType></xs:attribute></xs:complexType>\n<xs:attributeGroup name='ag'><xs:attribute name='c' "
     "type='xs:ID'/>"
     "<xs:anyAttribute namespace='##local'/></xs:attributeGroup>",
     "complexType t empty @0:3:1\n  attribute ref g required @0:4:1\n  attribute c type=xs:ID of=ag @0:5:30\n"
     "  attribute b type=anonymous default=\"x\" @0:4:68\n"
     "    simpleType atomic base=xs:string builtin=string primitive=string @0:4:103\n  anyAttribute of \"\" @0:5:67\n"
     "attribute g type=xs:int fixed=\"1\" @0:2:1\nattributeGroup ag @0:5:1\n  attribute c type=xs:ID of=ag @0:5:30\n"
     "  anyAttribute of \"\" @0:5:67\n"},
    {"ComplexExtension",
     "<xs:complexType name='b' abstract='true'><xs:sequence><xs:element name='x'/></xs:sequence><xs:attribute "
     "name='a'/>"
     "</xs:complexType>\n<xs:complexType name='d'><xs:complexContent><xs:extension base='b'>\n<xs:choice><xs:element "
     "name='y'/>"
     "</xs:choice><xs:attribute name='c'/></xs:extension></xs:complexContent></xs:complexType>",
     "complexType b elements abstract @0:2:1\n  sequence 1..1 @0:2:42\n    element x 1..1 type=xs:anyType @0:2:55\n"
     "  attribute a type=xs:anySimpleType @0:2:91\n"
     "complexType d elements extends b @0:3:1\n  choice 1..1 @0:4:1\n    element y 1..1 type=xs:anyType @0:4:12\n"
     "  attribute c type=xs:anySimpleType @0:4:46\n  in force: a c\n"},
    {"ComplexRestriction",
     "<xs:complexType name='b'><xs:attribute name='a'/><xs:attribute name='c'/><xs:anyAttribute/></xs:complexType>\n"
     "<xs:complexType name='d'><xs:complexContent><xs:restriction base='b'>\n<xs:attribute name='c' use='required'/>"
     "<xs:attribute name='a' use='prohibited'/></xs:restriction></xs:complexContent></xs:complexType>",
     "complexType b empty @0:2:1\n  attribute a type=xs:anySimpleType @0:2:26\n  attribute c type=xs:anySimpleType "
     "@0:2:50\n"
     "  anyAttribute any @0:2:74\ncomplexType d empty restricts b @0:3:1\n"
     "  attribute c type=xs:anySimpleType required @0:4:1\n  attribute a type=xs:anySimpleType prohibited @0:4:40\n"
     "  in force: c\n"},
    {"SimpleContent",
     "<xs:complexType name='e'><xs:simpleContent><xs:extension base='xs:decimal'><xs:attribute "
     "name='a'/></xs:extension>"
     "</xs:simpleContent></xs:complexType>\n<xs:complexType name='r'><xs:simpleContent><xs:restriction base='e'>\n"
     "<xs:minInclusive value='0'/></xs:restriction></xs:simpleContent></xs:complexType>",
     "complexType e simple extends xs:decimal text=xs:decimal @0:2:1\n  attribute a type=xs:anySimpleType @0:2:76\n"
     "complexType r simple restricts e text=anonymous @0:3:1\n"
     "  text simpleType atomic base=xs:decimal builtin=decimal primitive=decimal @0:3:44\n    minInclusive \"0\" "
     "@0:4:1\n"
     "  in force: a\n"},
    {"SimpleContentOfMixed",
     "<xs:complexType name='m' mixed='true'><xs:sequence minOccurs='0'><xs:element "
     "name='x'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='r'><xs:simpleContent><xs:restriction base='m'><xs:simpleType><xs:restriction "
     "base='xs:int'/>"
     "</xs:simpleType></xs:restriction></xs:simpleContent></xs:complexType>",
     "complexType m mixed @0:2:1\n  sequence 0..1 @0:2:39\n    element x 1..1 type=xs:anyType @0:2:66\n"
     "complexType r simple restricts m text=anonymous @0:3:1\n"
     "  text simpleType atomic base=xs:int builtin=int primitive=decimal @0:3:69\n"},
    {"GroupReference",
     "<xs:group name='g'><xs:choice><xs:element name='a'/></xs:choice></xs:group>\n<xs:complexType "
     "name='t'><xs:sequence>\n"
     "<xs:group ref='g' maxOccurs='2'/></xs:sequence></xs:complexType>",
     "complexType t elements @0:3:1\n  sequence 1..1 @0:3:26\n    group g 1..2 @0:4:1\n"
     "group g choice @0:2:1\n  element a 1..1 type=xs:anyType @0:2:31\n"},
    {"SubstitutionGroup", "<xs:element name='m' substitutionGroup='h'/>\n<xs:element name='h' type='xs:int'/>",
     "element m type=xs:int head=h @0:2:1\nelement h type=xs:int @0:3:1\n"},
    {"IdentityConstraints",
     "<xs:element name='e'>\n<xs:key name='k'><xs:selector xpath=' a/b '/><xs:field xpath='@x'/><xs:field "
     "xpath='.'/></xs:key>\n"
     "<xs:keyref name='r' refer='k'><xs:selector xpath='c'/><xs:field xpath='y'/><xs:field xpath='z'/></xs:keyref>\n"
     "<xs:unique name='u'><xs:selector xpath='c'/><xs:field xpath='y'/></xs:unique></xs:element>",
     "element e type=xs:anyType @0:2:1\n  key k selector=\"a/b\" field=\"@x\" field=\".\" @0:3:1\n"
     "  keyref r selector=\"c\" field=\"y\" field=\"z\" refer=k @0:4:1\n  unique u selector=\"c\" field=\"y\" "
     "@0:5:1\n"},
    {"Notation", "<xs:notation name='n' public='p' system='s'/>", "notation n public=\"p\" system=\"s\" @0:2:1\n"},
    {"RecursiveElement",
     "<xs:element name='a'><xs:complexType><xs:sequence><xs:element ref='a' "
     "minOccurs='0'/></xs:sequence></xs:complexType>"
     "</xs:element>",
     "element a type=anonymous @0:2:1\n  complexType elements @0:2:22\n    sequence 1..1 @0:2:38\n      ref a 0..1 "
     "@0:2:51\n"},
    {"WildcardsUnited",
     "<xs:complexType name='b'><xs:anyAttribute namespace='u'/></xs:complexType>\n<xs:complexType "
     "name='d'><xs:complexContent>"
     "<xs:extension base='b'>\n<xs:anyAttribute namespace='v' "
     "processContents='lax'/></xs:extension></xs:complexContent>"
     "</xs:complexType>",
     "complexType b empty @0:2:1\n  anyAttribute of \"u\" @0:2:26\ncomplexType d empty extends b @0:3:1\n"
     "  anyAttribute of \"v\" lax @0:4:1\n  in force: anyAttribute of \"v\" \"u\" lax\n"},
    {"AttributesOfXml", "<xs:complexType name='t'><xs:attribute ref='xml:lang'/></xs:complexType>",
     "complexType t empty @0:2:1\n  attribute ref {http://www.w3.org/XML/1998/namespace}lang @0:2:26\n"
     "attribute {http://www.w3.org/XML/1998/namespace}lang type=anonymous @1:2:1\n"
     "  simpleType union base=xs:anySimpleType member=xs:language member=anonymous @1:2:27\n"
     "    member simpleType atomic base=xs:string builtin=string primitive=string @1:2:78\n      enumeration \"\" "
     "@1:3:34\n"
     "attribute {http://www.w3.org/XML/1998/namespace}space type=anonymous @1:5:1\n"
     "  simpleType atomic base=xs:NCName builtin=NCName primitive=string @1:5:28\n"
     "    enumeration \"default\" @1:6:1\n    enumeration \"preserve\" @1:6:34\n"
     "attribute {http://www.w3.org/XML/1998/namespace}base type=xs:anyURI @1:8:1\n"
     "attribute {http://www.w3.org/XML/1998/namespace}id type=xs:ID @1:9:1\n"
     "attributeGroup {http://www.w3.org/XML/1998/namespace}specialAttrs @1:10:1\n"
     "  attribute ref {http://www.w3.org/XML/1998/namespace}base of={http://www.w3.org/XML/1998/namespace}specialAttrs "
     "@1:11:1\n"
     "  attribute ref {http://www.w3.org/XML/1998/namespace}lang of={http://www.w3.org/XML/1998/namespace}specialAttrs "
     "@1:11:31\n"
     "  attribute ref {http://www.w3.org/XML/1998/namespace}space "
     "of={http://www.w3.org/XML/1998/namespace}specialAttrs @1:11:61\n"
     "  attribute ref {http://www.w3.org/XML/1998/namespace}id of={http://www.w3.org/XML/1998/namespace}specialAttrs "
     "@1:11:92\n"},
};

TEST_P(SchemaConstructs, AreComponentsInTheOrderOfTheSchema)
{
    EXPECT_EQ(GetSchemaDump(GetParam().strSchema, GetParam().strAttributes), GetParam().strDump);
}

INSTANTIATE_TEST_SUITE_P(All, SchemaConstructs, testing::ValuesIn(s_constructs),
                         [](const auto& test) { return std::string(test.param.lpctName); });

const SType& FindType(const CLoadedSchemas& loaded, const std::string& strLocal)
{
    const SType* pType = loaded.GetSet().FindType({"", strLocal});
    EXPECT_NE(pType, nullptr) << strLocal << ": " << loaded.GetMessages();
    return pType ? *pType : loaded.GetSet().GetBuiltin(EBuiltin::AnyType);
}

TEST(SchemaComponents, GatherFacetsOverAllSteps)
{
    const CLoadedSchemas loaded({{"s.xsd", WrapSchema(R"(
<xs:simpleType name='a'><xs:restriction base='xs:int'><xs:minInclusive value='1'/><xs:maxInclusive value='9'/>
<xs:pattern value='p'/><xs:enumeration value='2'/><xs:enumeration value='3'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:minExclusive value='1'/><xs:pattern value='q'/></xs:restriction>
</xs:simpleType>)")}});
    const SEffectiveFacets facets = GetEffectiveFacets(*FindType(loaded, "b").AsSimple());
    EXPECT_EQ(facets.Find(EFacet::MinInclusive), nullptr) << "the exclusive bound takes the place of the inclusive one";
    ASSERT_NE(facets.Find(EFacet::MinExclusive), nullptr);
    EXPECT_EQ(facets.Find(EFacet::MinExclusive)->strValue, "1");
    ASSERT_NE(facets.Find(EFacet::MaxInclusive), nullptr);
    EXPECT_EQ(facets.Find(EFacet::MaxInclusive)->strValue, "9");
    ASSERT_NE(facets.Find(EFacet::FractionDigits), nullptr);
    EXPECT_EQ(facets.Find(EFacet::FractionDigits)->nValue, 0u);
    ASSERT_EQ(facets.patterns.size(), 2u);
    EXPECT_EQ(facets.patterns[0]->front().strValue, "p");
    EXPECT_EQ(facets.patterns[1]->front().strValue, "q");
    ASSERT_NE(facets.pEnumerations, nullptr);
    EXPECT_EQ(facets.pEnumerations->size(), 2u);
    EXPECT_EQ(facets.eWhiteSpace, EWhiteSpace::Collapse);
}

TEST(SchemaComponents, KnowWhiteSpaceOfBuiltInTypes)
{
    const SSchemaSet set;
    const auto getWhiteSpace = [&](EBuiltin eBuiltin)
    {
        return GetEffectiveFacets(*set.GetBuiltin(eBuiltin).AsSimple()).eWhiteSpace;
    };
    EXPECT_EQ(getWhiteSpace(EBuiltin::AnySimpleType), EWhiteSpace::Preserve);
    EXPECT_EQ(getWhiteSpace(EBuiltin::String), EWhiteSpace::Preserve);
    EXPECT_EQ(getWhiteSpace(EBuiltin::NormalizedString), EWhiteSpace::Replace);
    EXPECT_EQ(getWhiteSpace(EBuiltin::Token), EWhiteSpace::Collapse);
    EXPECT_EQ(getWhiteSpace(EBuiltin::ID), EWhiteSpace::Collapse);
    EXPECT_EQ(getWhiteSpace(EBuiltin::UnsignedByte), EWhiteSpace::Collapse);
    EXPECT_EQ(getWhiteSpace(EBuiltin::NMTOKENS), EWhiteSpace::Collapse);
}

TEST(SchemaComponents, FindEveryBuiltInTypeByItsName)
{
    const SSchemaSet set;
    for (std::size_t n = 1; n < s_nBuiltins; ++n)
    {
        const auto eBuiltin = static_cast<EBuiltin>(n);
        const SType* pType = set.FindType({std::string(s_svXsdNamespace), std::string(GetBuiltinName(eBuiltin))});
        ASSERT_NE(pType, nullptr) << GetBuiltinName(eBuiltin);
        EXPECT_EQ(pType->eBuiltin, eBuiltin);
        EXPECT_TRUE(IsDerivedFrom(*pType, set.GetBuiltin(EBuiltin::AnyType))) << GetBuiltinName(eBuiltin);
    }
    EXPECT_EQ(set.FindType({"", "int"}), nullptr);
}

TEST(SchemaComponents, PutTheContentOfTheBaseBeforeThatOfTheExtension)
{
    const CLoadedSchemas loaded({{"s.xsd", WrapSchema(R"(
<xs:complexType name='a'><xs:sequence><xs:element name='x'/></xs:sequence></xs:complexType>
<xs:complexType name='b'><xs:complexContent><xs:extension base='a'/></xs:complexContent></xs:complexType>
<xs:complexType name='c'><xs:complexContent><xs:extension base='b'><xs:choice><xs:element name='y'/></xs:choice>
</xs:extension></xs:complexContent></xs:complexType>)")}});
    const SComplexType& a = *FindType(loaded, "a").AsComplex();
    const SComplexType& b = *FindType(loaded, "b").AsComplex();
    const SComplexType& c = *FindType(loaded, "c").AsComplex();
    EXPECT_EQ(a.pContent, a.pOwnParticle);
    EXPECT_EQ(b.pContent, a.pContent);
    EXPECT_EQ(b.pOwnParticle, nullptr);
    ASSERT_EQ(c.pContent->eTerm, ETerm::Group);
    EXPECT_EQ(c.pContent->pGroup->eCompositor, ECompositor::Sequence);
    EXPECT_EQ(c.pContent->pGroup->particles, (std::vector<SParticle*>{a.pContent, c.pOwnParticle}));
    EXPECT_FALSE(IsEmptiable(*c.pContent));
}

TEST(SchemaComponents, FindWhatMaySubstituteForAnElement)
{
    const CLoadedSchemas loaded({{"s.xsd", WrapSchema(R"(
<xs:element name='leaf' type='ext' substitutionGroup='middle'/>
<xs:element name='middle' type='base' substitutionGroup='head' abstract='true'/>
<xs:element name='head' type='base'/>
<xs:element name='blocked' type='base' block='extension'/>
<xs:element name='ofBlocked' type='ext' substitutionGroup='blocked'/>
<xs:element name='same' type='base' substitutionGroup='blocked'/>
<xs:element name='closed' type='base' block='substitution'/>
<xs:element name='ofClosed' type='base' substitutionGroup='closed'/>
<xs:complexType name='base'/>
<xs:complexType name='ext'><xs:complexContent><xs:extension base='base'/></xs:complexContent></xs:complexType>)")}});
    const auto getNames = [](const std::vector<SElement*>& elements)
    {
        std::string strNames;
        for (const SElement* pElement : elements)
            strNames += pElement->name.strLocal + " ";
        return strNames;
    };
    const auto find = [&](const char* lpctName) -> const SElement&
    {
        return *loaded.GetSet().FindElement({"", lpctName});
    };
    ASSERT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(getNames(GetSubstitutionMembers(find("head"))), "leaf middle ");
    EXPECT_EQ(getNames(GetSubstitutes(find("head"))), "head leaf ");
    EXPECT_EQ(getNames(GetSubstitutes(find("middle"))), "leaf ");
    EXPECT_EQ(getNames(GetSubstitutes(find("blocked"))), "blocked same ");
    EXPECT_EQ(getNames(GetSubstitutes(find("closed"))), "closed ");
}

TEST(SchemaComponents, KnowTheirOwnersAndPrefixes)
{
    const CLoadedSchemas loaded({{"s.xsd", WrapSchema(R"(
<xs:element name='e'><xs:complexType><xs:sequence><xs:element name='l'><xs:simpleType>
<xs:restriction base='xs:QName' xmlns:p='urn:p'><xs:enumeration value='p:a'/></xs:restriction>
</xs:simpleType></xs:element></xs:sequence></xs:complexType></xs:element>)")}});
    ASSERT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    const SElement& element = *loaded.GetSet().FindElement({"", "e"});
    EXPECT_EQ(element.pType->pOwnerElement, &element);
    const SComplexType& type = *element.pType->AsComplex();
    const SElement& local = *type.pContent->pGroup->particles.front()->pElement;
    EXPECT_EQ(local.pOwnerType, &type);
    EXPECT_FALSE(local.bGlobal);
    const SEnumeration& enumeration = local.pType->AsSimple()->enumerations.front();
    ASSERT_NE(enumeration.pScope->Find("p"), nullptr);
    EXPECT_EQ(*enumeration.pScope->Find("p"), "urn:p");
    EXPECT_EQ(enumeration.pScope->Find("q"), nullptr);
    EXPECT_EQ(*enumeration.pScope->Find("xml"), s_svXmlNamespace);
}

} // namespace
