#include "tests/support/Bindings.h"

using namespace QvTest;

namespace
{

class BindingContent : public testing::TestWithParam<SBindingCase>
{
};

const SBindingCase s_cases[] = {
    {"Members", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='required' type='xs:int'/>
<xs:element name='optional' type='xs:int' minOccurs='0'/>
<xs:element name='repeated' type='xs:int' minOccurs='2' maxOccurs='5'/>
<xs:element name='any' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:sequence>
<xs:attribute name='id' type='xs:token' use='required'/>
<xs:attribute name='lang' type='xs:language'/></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    Required: required value xs::Int <required>
    Optional: optional value xs::Int <optional>
    Repeated: 2..5 value xs::Int <repeated>
    Any: 0..* value xs::Int <any>
    @Id: required xs::Token <id>
    @Lang: optional xs::Language <lang>
)"},
    {"Rules", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int' default=' 5 '/>
<xs:element name='b' type='xs:string' fixed='x'/>
<xs:element name='c' type='xs:int' minOccurs='0' default='7'/></xs:sequence>
<xs:attribute name='d' type='xs:int' default='1'/>
<xs:attribute name='f' type='xs:string' fixed=' f '/></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required value xs::Int <a> default "5"
    B: required value xs::String <b> fixed "x"
    C: optional value xs::Int <c> default "7"
    @D: optional xs::Int <d> default "1"
    @F: optional xs::String <f> fixed " f "
)"},
    {"EmptyContent", R"(
<xs:complexType name='t'></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
)"},
    {"Anonymous", R"(
<xs:element name='order'><xs:complexType><xs:sequence><xs:element name='item' maxOccurs='unbounded'>
<xs:complexType><xs:sequence><xs:element name='part'><xs:simpleType><xs:restriction base='xs:string'>
<xs:maxLength value='3'/></xs:restriction></xs:simpleType></xs:element></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>)",
     R"(
namespace s "" in S
  simple SPart: String xs::String maxLength 3
  class COrder: sequence <order>
    Item: 1..* object CItem <item>
  class CItem: sequence <item>
    Part: required value SPart <part>
root Order <order>: s::COrder
)"},
    {"Recursion", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='t' type='t' minOccurs='0'/>
<xs:element name='u' type='u'/></xs:sequence></xs:complexType>
<xs:complexType name='u'><xs:sequence>
<xs:element name='t' type='t' maxOccurs='unbounded'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    T: optional object CT <t>
    U: required object CU <u>
  class CU = u: sequence <u>
    T: 1..* object CT <t>
)"},
    {"NestedSequencesAreOne", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int'/><xs:sequence>
<xs:element name='b' type='xs:int'/><xs:sequence>
<xs:element name='c' type='xs:int'/></xs:sequence></xs:sequence>
<xs:element name='d' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required value xs::Int <a>
    B: required value xs::Int <b>
    C: required value xs::Int <c>
    D: required value xs::Int <d>
)"},
    {"SameElementTwice", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/>
<xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='A' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required value xs::Int <a>
    B: required value xs::Int <b>
    A2: optional value xs::Int <a>
    A3: required value xs::Int <A>
)"},
    {"ChoiceIsTheContent", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='1' maxOccurs='3'/><xs:sequence>
<xs:element name='c' type='xs:int'/>
<xs:element name='d' type='xs:int'/></xs:sequence></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <c>
    C: required value xs::Int <c>
    D: required value xs::Int <d>
  class CT = t: choice <t>
    A: optional value xs::Int <a>
    B: 1..3 value xs::Int <b>
    Sequence: optional group CTSequence <c>
)"},
    {"ChoiceThatMayBeAbsent", R"(
<xs:complexType name='t'><xs:choice minOccurs='0'><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: choice emptiable <t>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
)"},
    {"ChoiceOfOptionals", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: choice emptiable <t>
    A: optional value xs::Int <a>
    B: 1..* value xs::Int <b>
)"},
    {"ChoiceWithEmptiableSequence", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int'/><xs:sequence>
<xs:element name='b' type='xs:int' minOccurs='0'/>
<xs:element name='c' type='xs:int' minOccurs='0'/></xs:sequence></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <b or c>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
  class CT = t: choice emptiable <t>
    A: optional value xs::Int <a>
    Sequence: optional group CTSequence <b or c> content-optional
)"},
    {"ChoiceWithEmptyAlternative", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/>
<xs:sequence></xs:sequence></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: choice emptiable <t>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
)"},
    {"ChoicesInSequence", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int'/><xs:choice>
<xs:element name='b' type='xs:int'/><xs:element name='c' type='xs:int'/></xs:choice><xs:choice minOccurs='0'>
<xs:element name='d' type='xs:int'/><xs:element name='e' type='xs:int'/></xs:choice>
<xs:choice minOccurs='2' maxOccurs='5'><xs:element name='f' type='xs:int'/>
<xs:element name='g' type='xs:int'/></xs:choice><xs:choice><xs:element name='h' type='xs:int' minOccurs='0'/>
<xs:element name='i' type='xs:int'/></xs:choice></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice: choice pseudo unknown-attributes <b or c>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
  class CTChoice2: choice pseudo unknown-attributes <d or e>
    D: optional value xs::Int <d>
    E: optional value xs::Int <e>
  class CTChoice3: choice pseudo unknown-attributes <f or g>
    F: optional value xs::Int <f>
    G: optional value xs::Int <g>
  class CTChoice4: choice pseudo unknown-attributes <h or i>
    H: optional value xs::Int <h>
    I: optional value xs::Int <i>
  class CT = t: sequence <t>
    A: required value xs::Int <a>
    Choice: required group CTChoice <b or c>
    Choice2: optional group CTChoice2 <d or e>
    Choice3: 2..5 group CTChoice3 <f or g>
    Choice4: optional group CTChoice4 <h or i>
)"},
    {"RepeatedChoice", R"(
<xs:complexType name='t'><xs:choice minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice: choice pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    Choice: 0..* group CTChoice <a or b>
)"},
    {"RepeatedSequence", R"(
<xs:complexType name='t'><xs:sequence minOccurs='1' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <a>
    A: required value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    Sequence: 1..* group CTSequence <a>
)"},
    {"RepeatedSequenceThatMayBeEmpty", R"(
<xs:complexType name='t'><xs:sequence minOccurs='2' maxOccurs='3'>
<xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    Sequence: 0..3 group CTSequence <a or b> content-optional
)"},
    {"OptionalSequence", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='x' type='xs:int'/><xs:sequence minOccurs='0'>
<xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:sequence></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <a>
    A: required value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    X: required value xs::Int <x>
    Sequence: optional group CTSequence <a>
)"},
    {"OptionalSequenceOfOptionals", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='x' type='xs:int'/><xs:sequence minOccurs='0'>
<xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    X: required value xs::Int <x>
    A: optional value xs::Int <a>
    B: 0..* value xs::Int <b>
)"},
    {"ChoiceInChoice", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int'/><xs:choice>
<xs:element name='b' type='xs:int'/><xs:choice minOccurs='0'><xs:element name='c' type='xs:int'/>
<xs:element name='d' type='xs:int'/></xs:choice></xs:choice></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: choice emptiable <t>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
    D: optional value xs::Int <d>
)"},
    {"GroupOfOne", R"(
<xs:complexType name='t'><xs:sequence><xs:sequence minOccurs='0' maxOccurs='unbounded'>
<xs:element name='a' type='xs:int'/></xs:sequence><xs:sequence>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:sequence><xs:choice>
<xs:element name='c' type='xs:int'/></xs:choice><xs:choice minOccurs='0'>
<xs:element name='d' type='xs:int' minOccurs='1' maxOccurs='3'/></xs:choice>
<xs:sequence minOccurs='2' maxOccurs='2'>
<xs:element name='f' type='xs:int' minOccurs='2' maxOccurs='3'/></xs:sequence>
<xs:sequence minOccurs='3' maxOccurs='4'>
<xs:element name='g' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: 0..* value xs::Int <a>
    B: optional value xs::Int <b>
    C: required value xs::Int <c>
    D: 0..3 value xs::Int <d>
    F: 4..6 value xs::Int <f>
    G: 0..* value xs::Int <g>
)"},
    {"GroupOfOneWithGaps", R"(
<xs:complexType name='t'><xs:sequence><xs:sequence minOccurs='0' maxOccurs='3'>
<xs:element name='a' type='xs:int' minOccurs='2' maxOccurs='2'/></xs:sequence>
<xs:sequence minOccurs='1' maxOccurs='2'>
<xs:element name='b' type='xs:int' minOccurs='3' maxOccurs='4'/></xs:sequence></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CTSequence: sequence pseudo unknown-attributes <a>
    A: 2..2 value xs::Int <a>
  class CTSequence2: sequence pseudo unknown-attributes <b>
    B: 3..4 value xs::Int <b>
  class CT = t: sequence <t>
    Sequence: 0..3 group CTSequence <a>
    Sequence2: 1..2 group CTSequence2 <b>
)"},
    {"RepetitionInRepeatedChoice", R"(
<xs:complexType name='t'><xs:choice minOccurs='0' maxOccurs='unbounded'>
<xs:element name='a' type='xs:int' minOccurs='0' maxOccurs='unbounded'/>
<xs:element name='b' type='xs:int' minOccurs='1' maxOccurs='3'/><xs:choice minOccurs='1' maxOccurs='2'>
<xs:element name='c' type='xs:int'/>
<xs:element name='d' type='xs:int' minOccurs='0'/></xs:choice></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice: choice pseudo unknown-attributes <a or b or c or d>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
    D: optional value xs::Int <d>
  class CT = t: sequence <t>
    Choice: 0..* group CTChoice <a or b or c or d>
)"},
    {"RepetitionThatCountsInRepeatedChoice", R"(
<xs:complexType name='t'><xs:choice minOccurs='0' maxOccurs='unbounded'>
<xs:element name='a' type='xs:int' minOccurs='2' maxOccurs='unbounded'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice: choice pseudo unknown-attributes <a or b>
    A: 2..* value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    Choice: 0..* group CTChoice <a or b>
)"},
    {"RepetitionInLimitedChoice", R"(
<xs:complexType name='t'><xs:choice minOccurs='1' maxOccurs='4'>
<xs:element name='a' type='xs:int' minOccurs='1' maxOccurs='unbounded'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CTChoice: choice pseudo unknown-attributes <a or b>
    A: 1..* value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    Choice: 1..4 group CTChoice <a or b>
)"},
    {"All", R"(
<xs:complexType name='t'><xs:all><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:all></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: all <t>
    A: required value xs::Int <a>
    B: optional value xs::Int <b>
)"},
    {"OptionalAllOfOptionals", R"(
<xs:complexType name='t'><xs:all minOccurs='0'><xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:all></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: all <t>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
)"},
    {"OptionalAll", R"(
<xs:complexType name='t'><xs:all minOccurs='0'><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:all></xs:complexType>)",
     R"(
namespace s "" in S
  class CTAll: all pseudo unknown-attributes <a or b>
    A: required value xs::Int <a>
    B: optional value xs::Int <b>
  class CT = t: sequence <t>
    All: optional group CTAll <a or b>
)"},
    {"AllOfOne", R"(
<xs:complexType name='t'><xs:all minOccurs='0'><xs:element name='a' type='xs:int'/></xs:all></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: optional value xs::Int <a>
)"},
    {"GroupReferences", R"(
<xs:group name='g'><xs:sequence><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:sequence></xs:group>
<xs:group name='c'><xs:choice><xs:element name='x' type='xs:int'/>
<xs:element name='y' type='xs:int'/></xs:choice></xs:group>
<xs:group name='pair'><xs:sequence><xs:element name='p' type='xs:int'/>
<xs:element name='q' type='xs:int'/></xs:sequence></xs:group>
<xs:complexType name='t'><xs:sequence><xs:group ref='g'/><xs:group ref='c'/>
<xs:group ref='pair' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='u'><xs:sequence><xs:group ref='c' maxOccurs='4'/>
<xs:group ref='pair' maxOccurs='unbounded'/></xs:sequence></xs:complexType>
<xs:complexType name='v'><xs:group ref='c'/></xs:complexType>)",
     R"(
namespace s "" in S
  class CC: choice pseudo unknown-attributes <x or y>
    X: optional value xs::Int <x>
    Y: optional value xs::Int <y>
  class CPair: sequence pseudo unknown-attributes <p>
    P: required value xs::Int <p>
    Q: required value xs::Int <q>
  class CT = t: sequence <t>
    A: required value xs::Int <a>
    B: required value xs::Int <b>
    C: required group CC <x or y>
    Pair: optional group CPair <p>
  class CU = u: sequence <u>
    C: 1..4 group CC <x or y>
    Pair: 1..* group CPair <p>
  class CV = v: choice <v>
    X: optional value xs::Int <x>
    Y: optional value xs::Int <y>
)"},
    {"GroupInTwoForms", R"(
<xs:group name='c'><xs:choice><xs:element name='x' type='xs:int' minOccurs='1' maxOccurs='2'/>
<xs:element name='y' type='xs:int'/></xs:choice></xs:group>
<xs:complexType name='t'><xs:sequence><xs:group ref='c'/><xs:element name='m' type='xs:int'/>
<xs:group ref='c' maxOccurs='unbounded'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CC: choice pseudo unknown-attributes <x or y>
    X: 1..2 value xs::Int <x>
    Y: optional value xs::Int <y>
  class CC2: choice pseudo unknown-attributes <x or y>
    X: optional value xs::Int <x>
    Y: optional value xs::Int <y>
  class CT = t: sequence <t>
    C: required group CC <x or y>
    M: required value xs::Int <m>
    C2: 1..* group CC2 <x or y>
)"},
    {"Wildcards", R"(
<xs:complexType name='t'><xs:sequence><xs:any processContents='skip'/><xs:element name='a' type='xs:int'/>
<xs:any namespace='##other' minOccurs='0' processContents='skip'/><xs:element name='b' type='xs:int'/>
<xs:any namespace='##local urn:u ##targetNamespace' minOccurs='0' maxOccurs='unbounded' processContents='skip'/></xs:sequence>
<xs:anyAttribute namespace='##other' processContents='skip'/></xs:complexType>)",
     R"(
namespace t "urn:t" in T
  class CT = {urn:t}t: sequence <t>
    Any: required wildcard any
    A: required value xs::Int <a>
    Any2: optional wildcard not "urn:t" ""
    B: required value xs::Int <b>
    Any3: 0..* wildcard of "" "urn:u" "urn:t"
    @*: not "urn:t" ""
)",
     "targetNamespace='urn:t'"},
    {"WildcardInChoice", R"(
<xs:complexType name='t'><xs:choice><xs:element name='a' type='xs:int'/>
<xs:any namespace='##other' processContents='skip'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: choice <t>
    A: optional value xs::Int <a>
    Any: optional wildcard not ""
)"},
    {"Forms", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' form='unqualified'/></xs:sequence><xs:attribute name='c'/>
<xs:attribute name='d' form='qualified'/></xs:complexType>)",
     R"(
namespace t "urn:t" in T
  class CT = {urn:t}t: sequence <t>
    A: required value xs::Int <{urn:t}a>
    B: required value xs::Int <b>
    @C: optional xs::AnySimpleType <c>
    @D: optional xs::AnySimpleType <{urn:t}d>
)",
     "targetNamespace='urn:t' elementFormDefault='qualified'"},
    {"References", R"(
<xs:element name='e' type='xs:int'/>
<xs:attribute name='g' type='xs:int' default='1'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='n:e' minOccurs='0'/></xs:sequence>
<xs:attribute ref='n:g'/><xs:attribute ref='n:g2' use='required'/></xs:complexType>
<xs:attribute name='g2'/>)",
     R"(
namespace t "urn:t" in T
  class CT = {urn:t}t: sequence <t>
    E: optional value xs::Int <{urn:t}e>
    @G: optional xs::Int <{urn:t}g> default "1"
    @G2: required xs::AnySimpleType <{urn:t}g2>
root E <{urn:t}e>: value xs::Int
)",
     "targetNamespace='urn:t' xmlns:n='urn:t'"},
    {"AttributeGroups", R"(
<xs:attributeGroup name='g'><xs:attribute name='b' type='xs:int'/><xs:attribute name='c'><xs:simpleType>
<xs:restriction base='xs:token'>
<xs:enumeration value='x'/></xs:restriction></xs:simpleType></xs:attribute></xs:attributeGroup>
<xs:complexType name='t'><xs:attribute name='a'/><xs:attributeGroup ref='g'/></xs:complexType>)",
     R"(
namespace s "" in S
  simple SC: Enumeration xs::Token EC
    "x" = X
  class CT = t: sequence <t>
    @A: optional xs::AnySimpleType <a>
    @B: optional xs::Int <b>
    @C: optional SC <c>
)"},
    {"NeverAndVeryOften", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int' minOccurs='0' maxOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='1' maxOccurs='3000000000'/>
<xs:element name='c' type='xs:int' minOccurs='3000000000' maxOccurs='unbounded'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    B: 1..* value xs::Int <b>
    C: 2147483647..* value xs::Int <c>
s.xsd:3:1: warning: a number above 2147483647 is read as that, or as no limit
s.xsd:4:1: warning: a number above 2147483647 is read as that, or as no limit
)"},
    {"AnyType", R"(
<xs:element name='root'/>
<xs:complexType name='t'><xs:sequence><xs:element name='a'/>
<xs:element name='b' type='xs:anyType' maxOccurs='3'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required wildcard of "" lax <a>
    B: 1..3 wildcard of "" lax <b>
  class CAnyType: sequence mixed <root>
    Any: 0..* wildcard any lax
    @*: any lax
root Root <root>: s::CAnyType
s.xsd:2:1: warning: the element root may hold anything, which is kept as open elements
s.xsd:3:39: warning: the element a may hold anything, which is kept as open elements
s.xsd:4:1: warning: the element b may hold anything, which is kept as open elements
)"},
    {"Mixed", R"(
<xs:complexType name='t' mixed='true'><xs:sequence><xs:element name='text' type='xs:int' minOccurs='0'/>
<xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='onlyText' mixed='true'/>)",
     R"(
namespace s "" in S
  class CT = t: sequence mixed <t>
    TextElement: optional value xs::Int <text>
    A: optional value xs::Int <a>
  class COnlyText = onlyText: sequence mixed <onlyText>
s.xsd:2:1: warning: text between the elements is joined, and its place among them is not kept
)"},
    {"EmptyChoice", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int'/>
<xs:choice/></xs:sequence></xs:complexType>
<xs:complexType name='u'><xs:sequence><xs:element name='a' type='xs:int'/>
<xs:choice minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required value xs::Int <a>
  class CU = u: sequence <u>
    A: required value xs::Int <a>
s.xsd:3:1: warning: a choice without alternatives is read as empty
)"},
    {"AbstractElementWithoutSubstitutes", R"(
<xs:element name='h' abstract='true' type='xs:int'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='h'/>
<xs:element ref='h' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='u'><xs:choice><xs:element ref='h'/><xs:element name='b' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    H: required value xs::Int <h>
  class CU = u: choice <u>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
s.xsd:3:39: warning: the abstract element h has no substitutes, and is read itself
)"},
    {"SimpleContent", R"(
<xs:complexType name='t'><xs:simpleContent><xs:extension base='xs:decimal'><xs:attribute name='value'/>
<xs:attribute name='currency' type='xs:token'/></xs:extension></xs:simpleContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    @ValueAttribute: optional xs::AnySimpleType <value>
    @Currency: optional xs::Token <currency>
    text xs::Decimal
)"},
    {"NillableValues", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='xs:int' nillable='true'/>
<xs:element name='b' type='xs:int' nillable='true' minOccurs='0'/>
<xs:element name='c' type='xs:int' nillable='true' maxOccurs='unbounded' default='1'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required nillable xs::Int <a>
    B: optional nillable xs::Int <b>
    C: 1..* nillable xs::Int <c> default "1"
)"},
};

TEST_P(BindingContent, BecomesMembersAndGroups)
{
    ExpectBinding(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, BindingContent, testing::ValuesIn(s_cases), GetBindingCaseName);

} // namespace
