#include "tests/support/Bindings.h"

using namespace QvTest;
using namespace quiver_gen::binding;

namespace
{

TEST(BindingRules, RenameTypesAndWhatIsInside)
{
    struct SRule
    {
        const char* lpctRule;
        bool bValid;
        SRename rename;
    };
    const SRule rules[] = {
        {"{urn:a}Type = Name", true, {{"urn:a", "Type"}, "", "Name"}},
        {" Type=Name ", true, {{"", "Type"}, "", "Name"}},
        {"{urn:a/b}Type/member = Name", true, {{"urn:a/b", "Type"}, "member", "Name"}},
        {"{u}Type/@member = Name", true, {{"u", "Type"}, "@member", "Name"}},
        {"Type/a text = x = Name_1", true, {{"", "Type"}, "a text = x", "Name_1"}},
        {"Type", false, {}},
        {"Type = ", false, {}},
        {"= Name", false, {}},
        {"Type/ = Name", false, {}},
        {"{urn:a Type = Name", false, {}},
        {"Type = two words", false, {}},
        {"Type = 1st", false, {}},
        {"", false, {}},
    };
    for (const SRule& rule : rules)
    {
        SRename rename;
        ASSERT_EQ(ParseRename(rule.lpctRule, rename), rule.bValid) << rule.lpctRule;
        if (!rule.bValid)
            continue;
        EXPECT_EQ(rename.type, rule.rename.type) << rule.lpctRule;
        EXPECT_EQ(rename.strInner, rule.rename.strInner) << rule.lpctRule;
        EXPECT_EQ(rename.strName, rule.rename.strName) << rule.lpctRule;
    }
}

TEST(BindingRules, SayHowTypesAreHeld)
{
    struct SRule
    {
        const char* lpctRule;
        bool bValid;
        EValue eValue = EValue::String;
    };
    const SRule rules[] = {{"{u}T = decimal", true, EValue::Decimal},
                           {"{u}T=string", true, EValue::String},
                           {"{u}T = i8 ", true, EValue::I8},
                           {"{u}T = r8", true, EValue::R8},
                           {"{u}T = i4", false},
                           {"{u}T", false},
                           {"= i8", false},
                           {"", false}};
    for (const SRule& rule : rules)
    {
        SHeldAs heldAs;
        ASSERT_EQ(ParseHeldAs(rule.lpctRule, heldAs), rule.bValid) << rule.lpctRule;
        if (!rule.bValid)
            continue;
        EXPECT_EQ(heldAs.type.ToString(), "{u}T") << rule.lpctRule;
        EXPECT_EQ(heldAs.eValue, rule.eValue) << rule.lpctRule;
    }
}

TEST(BindingOptions, RenameWhatRulesName)
{
    SBindingOptions options;
    for (const char* lpctRule : {"t = Order", "t/a = First", "t/@b = Second", "colour/dark red = Crimson", "e = Root",
                                 "nothing = X", "t/none = Y"})
        ASSERT_TRUE(ParseRename(lpctRule, options.renames.emplace_back())) << lpctRule;
    EXPECT_EQ(BindToText(R"(
<xs:complexType name='t'><xs:choice><xs:sequence><xs:element name='a' type='xs:int'/><xs:element name='c' type='xs:int'/>
</xs:sequence><xs:element name='d' type='xs:int'/></xs:choice><xs:attribute name='b'/></xs:complexType>
<xs:complexType name='order'/>
<xs:simpleType name='colour'><xs:restriction base='xs:token'><xs:enumeration value='dark red'/></xs:restriction></xs:simpleType>
<xs:element name='e'><xs:complexType/></xs:element>)",
                         {}, options),
              R"(namespace s "" in S
  simple SColour = colour: Enumeration xs::Token EColour
    "dark red" = Crimson
  class COrderSequence: sequence pseudo unknown-attributes <a>
    First: required value xs::Int <a>
    C: required value xs::Int <c>
  class COrder = t: choice <t>
    Sequence: optional group COrderSequence <a>
    D: optional value xs::Int <d>
    @Second: optional xs::AnySimpleType <b>
  class COrderType = order: sequence <order>
  class CRoot: sequence <e>
root E <e>: s::CRoot
warning: nothing is called nothing to be renamed X
warning: nothing is called t/none to be renamed Y
)");
}

TEST(BindingOptions, HoldTypesAsRulesSay)
{
    SBindingOptions options;
    for (const char* lpctRule : {"money = i8", "ratio = r8", "text = string", "count = decimal"})
        ASSERT_TRUE(ParseHeldAs(lpctRule, options.maps.emplace_back())) << lpctRule;
    EXPECT_EQ(BindToText(R"(
<xs:simpleType name='money'><xs:restriction base='xs:decimal'><xs:minInclusive value='0'/></xs:restriction></xs:simpleType>
<xs:simpleType name='price'><xs:restriction base='money'><xs:maxInclusive value='9'/></xs:restriction></xs:simpleType>
<xs:simpleType name='ratio'><xs:restriction base='xs:decimal'/></xs:simpleType>
<xs:simpleType name='text'><xs:restriction base='xs:decimal'><xs:pattern value='[0-9]*'/></xs:restriction></xs:simpleType>
<xs:simpleType name='count'><xs:restriction base='xs:int'/></xs:simpleType>
<xs:complexType name='t'><xs:attribute name='p' type='price'/><xs:attribute name='r' type='ratio'/></xs:complexType>)",
                         {}, options),
              R"(namespace s "" in S
  simple SMoney = money: I8 xs::Long minInclusive "0"
  simple SPrice = price: I8 xs::Long minInclusive "0" maxInclusive "9"
  simple SRatio = ratio: R8 xs::Double
  simple SText = text: String xs::String pattern "(?:[0-9]*)\\z" collapse
  simple SCount = count: Decimal xs::Decimal
  class CT = t: sequence <t>
    @P: optional SPrice <p>
    @R: optional SRatio <r>
)");
}

TEST(BindingOptions, HoldIntegersIn64Bits)
{
    SBindingOptions options;
    options.bInteger64 = true;
    EXPECT_EQ(BindToText(R"(
<xs:complexType name='t'><xs:attribute name='a' type='xs:integer'/><xs:attribute name='b' type='xs:positiveInteger'/>
<xs:attribute name='c' type='xs:unsignedLong'/><xs:attribute name='d' type='xs:int'/><xs:attribute name='e' type='u'/>
</xs:complexType><xs:simpleType name='u'><xs:restriction base='xs:nonNegativeInteger'><xs:maxInclusive value='5'/>
</xs:restriction></xs:simpleType>)",
                         {}, options),
              R"(namespace s "" in S
  simple SU = u: I8 xs::NonNegativeInteger64 maxInclusive "5"
  class CT = t: sequence <t>
    @A: optional xs::Integer64 <a>
    @B: optional xs::PositiveInteger64 <b>
    @C: optional xs::UnsignedLong <c>
    @D: optional xs::Int <d>
    @E: optional SU <e>
)");
}

TEST(BindingOptions, RefuseMixedContent)
{
    SBindingOptions options;
    options.eMixed = SBindingOptions::EMixed::Refuse;
    const std::string strMixed =
        "<xs:complexType name='t' mixed='true'><xs:sequence><xs:element name='a' type='xs:int'/>"
        "</xs:sequence></xs:complexType>";
    EXPECT_EQ(BindToText(strMixed, {}, options), "s.xsd:2:1: error: mixed content is refused\n");
    EXPECT_EQ(BindToText("<xs:complexType name='t' mixed='true'/>", {}, options),
              "namespace s \"\" in S\n  class CT = t: sequence mixed <t>\n")
        << "text alone has a place";
}

const char* const s_lpctRoots = R"(
<xs:element name='a' type='t'/><xs:element name='b' type='xs:int'/><xs:complexType name='t'><xs:sequence>
<xs:element name='u' type='u'/><xs:element ref='h'/></xs:sequence></xs:complexType><xs:complexType name='u'/>
<xs:complexType name='d'><xs:complexContent><xs:extension base='u'/></xs:complexContent></xs:complexType>
<xs:element name='h' type='u'/><xs:element name='m' type='d' substitutionGroup='h'/><xs:complexType name='alone'/>
<xs:simpleType name='unused'><xs:restriction base='xs:string'><xs:length value='1'/></xs:restriction></xs:simpleType>)";

TEST(BindingOptions, KeepWhatTheRootsReach)
{
    SBindingOptions options;
    options.roots = {"a"};
    EXPECT_EQ(BindToText(s_lpctRoots, {}, options), R"(namespace s "" in S
  class CHChoice: choice pseudo unknown-attributes <h or m>
    H: optional object CU <h> polymorphic
    M: optional object CD <m>
  class CT = t: sequence <a>
    U: required object CU <u> polymorphic
    H: required group CHChoice <h or m>
  class CU = u: sequence <h>
    type u -> CU
    type d -> CD
  class CD = d: sequence extends CU <m>
root A <a>: s::CT
)");
    options.roots = {"b"};
    EXPECT_EQ(BindToText(s_lpctRoots, {}, options), "namespace s \"\" in S\nroot B <b>: value xs::Int\n");
}

TEST(BindingOptions, NameRootsThatAreThere)
{
    SBindingOptions options;
    options.roots = {"a", "nobody", "{urn:x}a"};
    EXPECT_EQ(BindToText(s_lpctRoots, {}, options), "error: there is no global element nobody to be a root\n"
                                                    "error: there is no global element {urn:x}a to be a root\n");
}

TEST(BindingOptions, ChooseDocumentation)
{
    const std::string strSchema = R"(<xs:complexType name='t'><xs:annotation><xs:documentation xml:lang='en'> One
 line.

 Second paragraph.</xs:documentation><xs:documentation xml:lang='de'>Deutsch.</xs:documentation><xs:documentation>
 Nobody's. </xs:documentation></xs:annotation><xs:sequence><xs:element name='a' type='xs:int'><xs:annotation>
<xs:documentation>Of a.</xs:documentation></xs:annotation></xs:element><xs:element ref='g'><xs:annotation>
<xs:documentation>Of the reference.</xs:documentation></xs:annotation></xs:element><xs:element ref='g'/></xs:sequence>
<xs:attribute name='b' type='s'><xs:annotation><xs:documentation>Of b.</xs:documentation></xs:annotation></xs:attribute>
</xs:complexType><xs:element name='g'><xs:annotation><xs:documentation>Of g.</xs:documentation></xs:annotation>
<xs:complexType/></xs:element><xs:simpleType name='s'><xs:annotation><xs:documentation>Of s.</xs:documentation>
</xs:annotation><xs:restriction base='xs:token'><xs:enumeration value='v'><xs:annotation><xs:documentation>Of v.
</xs:documentation></xs:annotation></xs:enumeration></xs:restriction></xs:simpleType>)";
    const auto bind = [&](const SBindingOptions& options)
    {
        return CBoundSchemas({{"s.xsd", WrapSchema(strSchema)}}, options);
    };
    SBindingOptions options;
    const CBoundSchemas all = bind(options);
    const SNamespace& item = all.Get().namespaces.front();
    const SClass& type = *item.classes.front();
    EXPECT_EQ(type.documentation, (SDocumentation{"One line.", "Second paragraph.", "Deutsch.", "Nobody's."}));
    ASSERT_EQ(type.members.size(), 3u);
    EXPECT_EQ(type.members[0].documentation, SDocumentation{"Of a."});
    EXPECT_EQ(type.members[1].documentation, SDocumentation{"Of the reference."});
    EXPECT_EQ(type.members[2].documentation, SDocumentation{"Of g."});
    EXPECT_EQ(type.attributes.front().documentation, SDocumentation{"Of b."});
    EXPECT_EQ(type.members[2].pClass->documentation, SDocumentation{"Of g."}) << "an anonymous type";
    EXPECT_EQ(all.Get().roots.front().documentation, SDocumentation{"Of g."});
    EXPECT_EQ(item.simpleTypes.front()->documentation, SDocumentation{"Of s."});
    EXPECT_EQ(item.simpleTypes.front()->enumerators.front().documentation, SDocumentation{"Of v."});
    EXPECT_NE(type.source.find("s.xsd:2:1"), std::string::npos) << type.source;

    options.strLang = "en";
    EXPECT_EQ(bind(options).Get().classes.front().documentation,
              (SDocumentation{"One line.", "Second paragraph.", "Nobody's."}));
    options.eComments = SBindingOptions::EComments::First;
    EXPECT_EQ(bind(options).Get().classes.front().documentation, SDocumentation{"One line."});
    options.eComments = SBindingOptions::EComments::None;
    EXPECT_EQ(bind(options).Get().classes.front().documentation, SDocumentation{});
}

TEST(BindingOptions, NameNamespaces)
{
    const CLoadedSchemas::CFiles files = {
        {"a.xsd",
         WrapSchema("<xs:import namespace='urn:x:common' schemaLocation='b.xsd'/><xs:import namespace='urn:y:common'"
                    " schemaLocation='c.xsd'/><xs:import schemaLocation='plain-types.xsd'/>"
                    "<xs:complexType name='t'><xs:attribute name='a' type='x:s' xmlns:x='urn:x:common'/>"
                    "<xs:attribute name='b' type='y:s' xmlns:y='urn:y:common'/><xs:attribute name='c' type='s'/>"
                    "</xs:complexType>",
                    "targetNamespace='http://www.example.com/Order/2.1'")},
        {"b.xsd",
         WrapSchema("<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:length value='1'/></xs:restriction>"
                    "</xs:simpleType>",
                    "targetNamespace='urn:x:common'")},
        {"c.xsd",
         WrapSchema("<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:length value='2'/></xs:restriction>"
                    "</xs:simpleType>",
                    "targetNamespace='urn:y:common'")},
        {"plain-types.xsd", WrapSchema("<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:length value='3'/>"
                                       "</xs:restriction></xs:simpleType>")},
    };
    EXPECT_EQ(CBoundSchemas(files).GetDump(), R"(namespace order_2_1 "http://www.example.com/Order/2.1" in Order2_1
  class CT = {http://www.example.com/Order/2.1}t: sequence <t>
    @A: optional common::SS <a>
    @B: optional y_common::SS <b>
    @C: optional schema::SS <c>
namespace common "urn:x:common" in Common
  simple SS = {urn:x:common}s: String xs::String length 1
namespace y_common "urn:y:common" in YCommon
  simple SS = {urn:y:common}s: String xs::String length 2
namespace schema "" in Schema
  simple SS = s: String xs::String length 3
)");
    SBindingOptions options;
    options.namespaces = {{"http://www.example.com/Order/2.1", "acme::order"},
                          {"urn:x:common", "base"},
                          {"urn:y:common", "base"},
                          {"", "plain"}};
    EXPECT_EQ(CBoundSchemas(files, options).GetDump(),
              R"(namespace acme::order "http://www.example.com/Order/2.1" in AcmeOrder
  class CT = {http://www.example.com/Order/2.1}t: sequence <t>
    @A: optional base::SS <a>
    @B: optional base::SSType <b>
    @C: optional plain::SS <c>
namespace base "urn:x:common" in Base
  simple SS = {urn:x:common}s: String xs::String length 1
namespace base "urn:y:common" in Base2
  simple SSType = {urn:y:common}s: String xs::String length 2
namespace plain "" in Plain
  simple SS = s: String xs::String length 3
)") << "one C++ namespace for two of the schemas";
}

TEST(BindingOptions, JoinRedefinedTypes)
{
    const CLoadedSchemas::CFiles files = {
        {"a.xsd",
         WrapSchema("<xs:redefine schemaLocation='b.xsd'>\n<xs:complexType name='t'><xs:complexContent>"
                    "<xs:extension base='t'><xs:sequence><xs:element name='b' type='s'/></xs:sequence>"
                    "<xs:attribute name='y'/></xs:extension></xs:complexContent></xs:complexType>\n"
                    "<xs:complexType name='r'><xs:complexContent><xs:restriction base='r'><xs:sequence>"
                    "<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent>"
                    "</xs:complexType>\n<xs:simpleType name='s'><xs:restriction base='s'/></xs:simpleType>\n"
                    "<xs:group name='g'><xs:choice><xs:group ref='g'/><xs:element name='z' type='xs:int'/>"
                    "</xs:choice></xs:group></xs:redefine>\n<xs:complexType name='d'><xs:complexContent>"
                    "<xs:extension base='t'><xs:group ref='g'/></xs:extension></xs:complexContent></xs:complexType>")},
        {"b.xsd",
         WrapSchema("<xs:complexType name='t'><xs:choice><xs:element name='a' type='s'/><xs:element name='c' "
                    "type='s'/></xs:choice><xs:attribute name='x'/></xs:complexType><xs:complexType name='r'>"
                    "<xs:sequence><xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>"
                    "<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:maxLength value='3'/>"
                    "</xs:restriction></xs:simpleType><xs:group name='g'><xs:choice><xs:element name='p' "
                    "type='xs:int'/><xs:element name='q' type='xs:int'/></xs:choice></xs:group>")},
    };
    const CBoundSchemas bound(files);
    EXPECT_EQ(bound.GetMessages(), "");
    EXPECT_EQ(bound.GetDump(), R"(namespace a "" in A
  simple SS = s: String xs::String maxLength 3
  class CTChoice: choice pseudo unknown-attributes <a or c>
    A: optional value SS <a>
    C: optional value SS <c>
  class CT = t: sequence <t>
    Choice: required group CTChoice <a or c>
    B: required value SS <b>
    @X: optional xs::AnySimpleType <x>
    @Y: optional xs::AnySimpleType <y>
  class CR = r: sequence <r>
    A: required value xs::Int <a>
  class CG: choice pseudo unknown-attributes <p or q or z>
    P: optional value xs::Int <p>
    Q: optional value xs::Int <q>
    Z: optional value xs::Int <z>
  class CD = d: sequence extends CT <d>
    G: required group CG <p or q or z>
)");
}

} // namespace
