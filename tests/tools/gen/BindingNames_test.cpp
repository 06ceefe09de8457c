#include "tests/support/Bindings.h"
#include "tools/quiver-gen/binding/Names.h"
#include "tools/quiver-gen/binding/Namespaces.h"

using namespace QvTest;
using namespace quiver_gen::binding;

namespace
{

class BindingNames : public testing::TestWithParam<SBindingCase>
{
};

const SBindingCase s_cases[] = {
    {"TypesThatDifferInCase", R"(
<xs:complexType name='item'></xs:complexType>
<xs:complexType name='Item'></xs:complexType>
<xs:complexType name='ITEM'></xs:complexType>
<xs:simpleType name='iTEM'><xs:restriction base='xs:string'>
<xs:length value='1'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SITEMType3 = iTEM: String xs::String length 1
  class CItem = item: sequence <item>
  class CItemType = Item: sequence <Item>
  class CITEMType2 = ITEM: sequence <ITEM>
)"},
    {"CollectionsOfTypes", R"(
<xs:complexType name='a'></xs:complexType>
<xs:complexType name='aCol'></xs:complexType>
<xs:complexType name='bCol'></xs:complexType>
<xs:complexType name='b'></xs:complexType>)",
     R"(
namespace s "" in S
  class CA = a: sequence <a>
  class CAColType = aCol: sequence <aCol>
  class CBCol = bCol: sequence <bCol>
  class CBType = b: sequence <b>
)"},
    {"ClassesOfTheRuntime", R"(
<xs:complexType name='element'></xs:complexType>
<xs:complexType name='attribute'></xs:complexType>
<xs:simpleType name='fixed'><xs:restriction base='xs:string'>
<xs:length value='1'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SFixedType = fixed: String xs::String length 1
  class CElementType = element: sequence <element>
  class CAttributeType = attribute: sequence <attribute>
)"},
    {"AnonymousTypes", R"(
<xs:element name='a'><xs:complexType><xs:sequence><xs:element name='x'><xs:complexType><xs:sequence>
<xs:element name='y'><xs:complexType><xs:sequence>
<xs:element name='p' type='xs:int'/></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>
<xs:element name='b'><xs:complexType><xs:sequence><xs:element name='x'><xs:complexType><xs:sequence>
<xs:element name='y'><xs:complexType><xs:sequence>
<xs:element name='q' type='xs:int'/></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>
<xs:complexType name='y'></xs:complexType>)",
     R"(
namespace s "" in S
  class CA: sequence <a>
    X: required object CX <x>
  class CX: sequence <x>
    Y: required object CXY <y>
  class CXY: sequence <y>
    P: required value xs::Int <p>
  class CB: sequence <b>
    X: required object CBX <x>
  class CBX: sequence <x>
    Y: required object CBXY <y>
  class CBXY: sequence <y>
    Q: required value xs::Int <q>
  class CY = y: sequence <y>
root A <a>: s::CA
root B <b>: s::CB
)"},
    {"AnonymousTypesOfOneOwner", R"(
<xs:complexType name='t'><xs:choice><xs:sequence><xs:element name='x'><xs:complexType><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:complexType></xs:element></xs:sequence><xs:sequence>
<xs:element name='k'><xs:complexType>
<xs:attribute name='m' type='xs:int'/></xs:complexType></xs:element></xs:sequence></xs:choice>
<xs:attribute name='x'><xs:simpleType><xs:restriction base='xs:int'>
<xs:maxInclusive value='1'/></xs:restriction></xs:simpleType></xs:attribute></xs:complexType>)",
     R"(
namespace s "" in S
  simple STX: I4 xs::Int maxInclusive "1"
  class CT = t: choice <t>
    X: optional object CX <x>
    K: optional object CK <k>
    @XAttribute: optional STX <x>
  class CX: sequence <x>
    A: required value xs::Int <a>
  class CK: sequence <k>
    @M: optional xs::Int <m>
)"},
    {"AnonymousTypesOfGroups", R"(
<xs:group name='g'><xs:sequence><xs:element name='x'><xs:complexType>
<xs:attribute name='a' type='xs:int'/></xs:complexType></xs:element></xs:sequence></xs:group>
<xs:attributeGroup name='h'><xs:attribute name='x'><xs:simpleType><xs:restriction base='xs:int'>
<xs:maxInclusive value='1'/></xs:restriction></xs:simpleType></xs:attribute></xs:attributeGroup>
<xs:complexType name='x'></xs:complexType>
<xs:complexType name='t'><xs:group ref='g'/><xs:attributeGroup ref='h'/></xs:complexType>)",
     R"(
namespace s "" in S
  simple SHX: I4 xs::Int maxInclusive "1"
  class CGX: sequence <x>
    @A: optional xs::Int <a>
  class CX = x: sequence <x>
  class CT = t: sequence <t>
    X: required object CGX <x>
    @XAttribute: optional SHX <x>
)"},
    {"OwnOperations", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='count' type='xs:int'/>
<xs:element name='element-name' type='xs:int'/><xs:element name='base' type='xs:int'/>
<xs:element name='selected' type='xs:int'/><xs:element name='value' type='xs:int'/>
<xs:element name='text' type='xs:int'/></xs:sequence><xs:attribute name='namespace' type='xs:int'/>
<xs:attribute name='nil' type='xs:int'/><xs:attribute name='object' type='xs:int'/>
<xs:attribute name='type' type='xs:int'/></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    CountElement: required value xs::Int <count>
    ElementNameElement: required value xs::Int <element-name>
    BaseElement: required value xs::Int <base>
    SelectedElement: required value xs::Int <selected>
    Value: required value xs::Int <value>
    Text: required value xs::Int <text>
    @NamespaceAttribute: optional xs::Int <namespace>
    @NilAttribute: optional xs::Int <nil>
    @ObjectAttribute: optional xs::Int <object>
    @Type: optional xs::Int <type>
)"},
    {"AttributesAndElements", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='id' type='xs:int'/>
<xs:element name='id-attribute' type='xs:int'/></xs:sequence><xs:attribute name='id' type='xs:int'/>
<xs:attribute name='ID' type='xs:int'/></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    Id: required value xs::Int <id>
    IdAttribute: required value xs::Int <id-attribute>
    @IdAttribute2: optional xs::Int <id>
    @ID: optional xs::Int <ID>
)"},
    {"Groups", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='choice' type='xs:int'/><xs:choice>
<xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/></xs:choice>
<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='c' type='xs:int'/>
<xs:element name='d' type='xs:int'/></xs:sequence><xs:element name='sequence' type='xs:int'/>
<xs:any processContents='skip'/><xs:element name='any' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice2: choice pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CTSequence2: sequence pseudo unknown-attributes <c>
    C: required value xs::Int <c>
    D: required value xs::Int <d>
  class CT = t: sequence <t>
    Choice: required value xs::Int <choice>
    Choice2: required group CTChoice2 <a or b>
    Sequence2: 0..* group CTSequence2 <c>
    Sequence: required value xs::Int <sequence>
    Any2: required wildcard any
    Any: required value xs::Int <any>
)"},
    {"Enumerators", R"(
<xs:simpleType name='t'><xs:restriction base='xs:string'><xs:enumeration value='a'/><xs:enumeration value='A'/>
<xs:enumeration value='first-class'/><xs:enumeration value='First class'/><xs:enumeration value='1.0'/>
<xs:enumeration value='10'/><xs:enumeration value='-1'/><xs:enumeration value=''/><xs:enumeration value='&lt;'/>
<xs:enumeration value='&lt;='/><xs:enumeration value='TRUE'/><xs:enumeration value='NULL'/>
<xs:enumeration value='ERROR'/><xs:enumeration value='+'/><xs:enumeration value='C++'/>
<xs:enumeration value='C'/><xs:enumeration value='a+b'/><xs:enumeration value='äöü'/>
<xs:enumeration value='日本'/><xs:enumeration value='*'/><xs:enumeration value='default'/>
<xs:enumeration value='EAGAIN'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple ST = t: Enumeration xs::String ET
    "a" = A
    "A" = A2
    "first-class" = FirstClass
    "First class" = FirstClass2
    "1.0" = _1_0
    "10" = _10
    "-1" = Minus1
    "" = Empty
    "<" = Less
    "<=" = LessEqual
    "TRUE" = TRUE_
    "NULL" = NULL_
    "ERROR" = ERROR_
    "+" = Plus
    "C++" = CPlusPlus
    "C" = C
    "a+b" = APlusB
    "äöü" = Aeoeue
    "日本" = U65E5U672C
    "*" = Star
    "default" = Default
    "EAGAIN" = EAGAIN_
)"},
    {"Accents", R"(
<xs:complexType name='Größe'><xs:sequence><xs:element name='Länge' type='xs:int'/>
<xs:element name='été' type='xs:int'/><xs:element name='日本' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CGroesse = Größe: sequence <Größe>
    Laenge: required value xs::Int <Länge>
    Ete: required value xs::Int <été>
    U65E5U672C: required value xs::Int <日本>
)"},
    {"Roots", R"(
<xs:element name='a-b' type='xs:int'/>
<xs:element name='aB' type='xs:int'/>
<xs:element name='createRoot' type='xs:int'/>)",
     R"(
namespace s "" in S
root AB <a-b>: value xs::Int
root SAB <aB>: value xs::Int
root SCreateRoot <createRoot>: value xs::Int
)"},
};

TEST_P(BindingNames, AreApart)
{
    ExpectBinding(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, BindingNames, testing::ValuesIn(s_cases), GetBindingCaseName);

// EXTRA
struct SName
{
    std::string strFrom;
    std::string strTo;
};

TEST(Names, ArePascalCase)
{
    const SName names[] = {{"ship-to", "ShipTo"},
                           {"shipTo", "ShipTo"},
                           {"ship_to.now", "ShipToNow"},
                           {"USPrice", "USPrice"},
                           {"a", "A"},
                           {"_", "X"},
                           {"_1", "1"},
                           {"v1.0", "V1_0"},
                           {"v10", "V10"},
                           {"2-a-3", "2A3"},
                           {"camt.053.001", "Camt053_001"},
                           {"\xC3\xA9t\xC3\xA9", "Ete"},
                           {"Stra\xC3\x9F"
                            "e",
                            "Strasse"},
                           {"\xC5\x81\xC3\xB3"
                            "d\xC5\xBA",
                            "Lodz"},
                           {"\xE6\x97\xA5", "U65E5"},
                           {"\xF0\x9F\x98\x80", "U1F600"},
                           {std::string(200, 'a'), "A" + std::string(79, 'a')}};
    for (const SName& name : names)
        EXPECT_EQ(ToPascal(name.strFrom), name.strTo) << name.strFrom;
}

TEST(Names, OfEnumeratorsSpellSymbols)
{
    const SName names[] = {{"", "Empty"},
                           {"-", "Minus"},
                           {"--", "MinusMinus"},
                           {"-1", "Minus1"},
                           {"a-1", "A1"},
                           {"-a", "A"},
                           {".", "Dot"},
                           {" ", "Space"},
                           {"3", "_3"},
                           {"3.5", "_3_5"},
                           {">=", "GreaterEqual"},
                           {"a & b", "AAndB"},
                           {"50%", "_50Percent"},
                           {"text/xml", "TextXml"},
                           {"#1", "Hash1"},
                           {"null", "Null"},
                           {"NULL", "NULL_"},
                           {"EOF", "EOF_"},
                           {"SIGINT", "SIGINT_"},
                           {"IN", "IN_"},
                           {"in", "In"},
                           {"I", "I_"},
                           {"i", "I_"},
                           {"class", "Class"}};
    for (const SName& name : names)
        EXPECT_EQ(ToEnumerator(name.strFrom), name.strTo) << name.strFrom;
}

TEST(Names, OfNamespacesAvoidKeywordsAndMacros)
{
    const SName names[] = {
        {"Order", "order"}, {"a.b-c", "a_b_c"}, {"-a-", "a"},        {"", "schema"},      {"1.0", "ns_1_0"},
        {"int", "int_"},    {"std", "std_"},    {"linux", "linux_"}, {"errno", "errno_"}, {"QvXmlLib9", "qvxmllib9_"},
        {"\xC3\xA4", "ae"}};
    for (const SName& name : names)
        EXPECT_EQ(ToNamespacePart(name.strFrom), name.strTo) << name.strFrom;
}

TEST(Names, OfUrisAreTheirLastSpeakingParts)
{
    const SName names[] = {{"http://www.example.com/IPO", "ipo"},
                           {"http://www.example.com/IPO/", "ipo"},
                           {"http://www.example.com/ipo#", "ipo"},
                           {"urn:iso:std:iso:20022:tech:xsd:camt.053.001.02", "camt_053_001_02"},
                           {"http://www.example.com/GPX/1/1", "gpx_1_1"},
                           {"http://example.org/schema/bom/1.4", "bom_1_4"},
                           {"http://example.org/bom/v2", "bom_v2"},
                           {"http://graph.example.org/xmlns", "graph"},
                           {"http://www.example.com/2001/schema", "example_2001"},
                           {"http://www.example.com", "example"},
                           {"http://example.com:8080/", "example"},
                           {"urn:example:names:parts:document:1.2", "parts_1_2"},
                           {"urn:x", "x"},
                           {"1.0", "ns_1_0"},
                           {"schema", "schema"},
                           {"http://www.w3.org/XML/1998/namespace", "xml"},
                           {"http://www.w3.org/1999/xlink", "xlink"},
                           {"C:\\files\\order.xsd", "files_order_xsd"},
                           {"::/#", "schema"}};
    for (const SName& name : names)
        EXPECT_EQ(NameOfUri(name.strFrom), name.strTo) << name.strFrom;
    EXPECT_EQ(NameOfUri("urn:acme:order:1.2", 2), "acme_order_1_2");
}

TEST(NameScope, NumbersWhatIsTaken)
{
    CNameScope names;
    EXPECT_EQ(names.AddUnique("A"), "A");
    EXPECT_EQ(names.AddUnique("a"), "a");
    EXPECT_EQ(names.AddUnique("A"), "A2");
    EXPECT_EQ(names.AddUnique("A2"), "A2_2");
    EXPECT_EQ(names.AddUnique("A"), "A3");
    CNameScope files(CNameScope::ECase::Blind);
    EXPECT_EQ(files.AddUnique("A"), "A");
    EXPECT_EQ(files.AddUnique("a"), "a2");
    EXPECT_TRUE(files.Contains("A2"));
}

} // namespace
