#include "tests/support/Bindings.h"

using namespace QvTest;

namespace
{

class BindingDerivation : public testing::TestWithParam<SBindingCase>
{
};

const SBindingCase s_cases[] = {
    {"ExtensionOfSequence", R"(
<xs:complexType name='b'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence>
<xs:attribute name='x' type='xs:int'/></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:sequence>
<xs:element name='c' type='xs:int'/><xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence>
<xs:attribute name='y' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    A: required value xs::Int <a>
    @X: optional xs::Int <x>
  class CD = d: sequence extends CB <d>
    C: required value xs::Int <c>
    AElement: optional value xs::Int <a>
    @Y: optional xs::Int <y>
)"},
    {"ExtensionByChoice", R"(
<xs:complexType name='b'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:choice>
<xs:element name='c' type='xs:int'/>
<xs:element name='d' type='xs:int'/></xs:choice></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    A: required value xs::Int <a>
  class CDChoice: choice pseudo unknown-attributes <c or d>
    C: optional value xs::Int <c>
    D: optional value xs::Int <d>
  class CD = d: sequence extends CB <d>
    Choice: required group CDChoice <c or d>
)"},
    {"ExtensionOfChoice", R"(
<xs:complexType name='b'><xs:choice><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:sequence>
<xs:element name='c' type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CBChoice: choice pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CB = b: sequence <b>
    Choice: required group CBChoice <a or b>
  class CD = d: sequence extends CB <d>
    C: required value xs::Int <c>
)"},
    {"ExtensionOfChoiceByAttributes", R"(
<xs:complexType name='b'><xs:choice minOccurs='0'><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'>
<xs:attribute name='x' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: choice emptiable <b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CD = d: choice emptiable extends CB <d>
    @X: optional xs::Int <x>
)"},
    {"ExtensionOfAllByAttributes", R"(
<xs:complexType name='b'><xs:all><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int' minOccurs='0'/></xs:all></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'>
<xs:attribute name='x' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: all <b>
    A: required value xs::Int <a>
    B: optional value xs::Int <b>
  class CD = d: all extends CB <d>
    @X: optional xs::Int <x>
)"},
    {"ExtensionOfEmptyByChoice", R"(
<xs:complexType name='b'><xs:attribute name='x' type='xs:int'/></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:choice>
<xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    @X: optional xs::Int <x>
  class CD = d: choice extends CB <d>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
)"},
    {"ExtensionOfExtensionOfChoice", R"(
<xs:complexType name='b'><xs:choice><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>
<xs:complexType name='m'><xs:complexContent>
<xs:extension base='b'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='m'><xs:sequence>
<xs:element name='c' type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CBChoice: choice pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
  class CB = b: sequence <b>
    Choice: required group CBChoice <a or b>
  class CM = m: sequence extends CB <m>
  class CD = d: sequence extends CM <d>
    C: required value xs::Int <c>
)"},
    {"MembersOfBaseAndDerived", R"(
<xs:complexType name='b'><xs:sequence><xs:element name='value' type='xs:int'/>
<xs:element name='id' type='xs:int'/></xs:sequence><xs:attribute name='id' type='xs:int'/></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:sequence>
<xs:element name='value' type='xs:int'/><xs:element name='name' type='xs:int'/>
<xs:any namespace='##other' processContents='skip'/></xs:sequence><xs:attribute name='id2' type='xs:int'/>
<xs:attribute name='value2' type='xs:int'/>
<xs:attribute name='name' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    Value: required value xs::Int <value>
    Id: required value xs::Int <id>
    @IdAttribute: optional xs::Int <id>
  class CD = d: sequence extends CB <d>
    ValueElement: required value xs::Int <value>
    Name: required value xs::Int <name>
    Any: required wildcard not ""
    @Id2: optional xs::Int <id2>
    @Value2: optional xs::Int <value2>
    @NameAttribute: optional xs::Int <name>
)"},
    {"SimpleContentThatAddsNothing", R"(
<xs:complexType name='code'><xs:simpleContent><xs:extension base='xs:token'>
<xs:attribute name='list' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='country'><xs:simpleContent>
<xs:extension base='code'></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='region'><xs:simpleContent>
<xs:extension base='country'></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='t'><xs:sequence><xs:element name='c' type='country'/><xs:element name='r' type='region'/>
<xs:element name='b' type='code'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CCode = code: sequence <b>
    @List: optional xs::Int <list>
    text xs::Token
    type code -> CCode
    type country -> CCode
    type region -> CCode
  class CT = t: sequence <t>
    C: required object CCode <c> polymorphic
    R: required object CCode <r>
    B: required object CCode <b> polymorphic
)"},
    {"SimpleContentThatAddsAttributes", R"(
<xs:complexType name='code'><xs:simpleContent><xs:extension base='xs:token'>
<xs:attribute name='list' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='country'><xs:simpleContent><xs:extension base='code'>
<xs:attribute name='version' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CCode = code: sequence <code>
    @List: optional xs::Int <list>
    text xs::Token
  class CCountry = country: sequence extends CCode <country>
    @Version: optional xs::Int <version>
)"},
    {"SimpleContentThatRestricts", R"(
<xs:complexType name='code'><xs:simpleContent><xs:extension base='xs:token'>
<xs:attribute name='list' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='country'><xs:simpleContent><xs:restriction base='code'><xs:length value='2'/>
<xs:attribute name='list' type='xs:int' use='required'/></xs:restriction></xs:simpleContent></xs:complexType>)",
     R"(
namespace s "" in S
  simple SCountryValue: String xs::Token length 2
  class CCode = code: sequence <code>
    @List: optional xs::Int <list>
    text xs::Token
  class CCountry = country: sequence restricts CCode <country>
    @List: required xs::Int <list> inherited
    text SCountryValue
)"},
    {"SimpleContentOfEnumeration", R"(
<xs:complexType name='code'><xs:simpleContent><xs:extension base='xs:token'>
<xs:attribute name='list' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='colour'><xs:simpleContent><xs:restriction base='code'><xs:enumeration value='red'/>
<xs:enumeration value='blue'/></xs:restriction></xs:simpleContent></xs:complexType>)",
     R"(
namespace s "" in S
  simple SColourValue: String xs::Token
    "red"
    "blue"
  class CCode = code: sequence <code>
    @List: optional xs::Int <list>
    text xs::Token
  class CColour = colour: sequence restricts CCode <colour>
    @List: optional xs::Int <list> inherited
    text SColourValue
)"},
    {"AnyAttributeOfBase", R"(
<xs:complexType name='b'><xs:anyAttribute namespace='##other' processContents='skip'/></xs:complexType>
<xs:complexType name='same'><xs:complexContent><xs:extension base='b'>
<xs:attribute name='x' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='wider'><xs:complexContent><xs:extension base='b'>
<xs:anyAttribute namespace='##any' processContents='skip'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    @*: not ""
  class CSame = same: sequence extends CB <same>
    @X: optional xs::Int <x>
  class CWider = wider: sequence extends CB <wider>
    @*: any
)"},
    {"RestrictedOccurrence", R"(
<xs:complexType name='b'><xs:sequence><xs:element name='a' type='xs:int' minOccurs='0'/>
<xs:element name='b' type='xs:int' minOccurs='0' maxOccurs='unbounded'/>
<xs:element name='c' type='xs:int' minOccurs='0' maxOccurs='unbounded'/>
<xs:element name='d' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int' minOccurs='1' maxOccurs='3'/>
<xs:element name='c' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    A: optional value xs::Int <a>
    B: 0..* value xs::Int <b>
    C: 0..* value xs::Int <c>
    D: optional value xs::Int <d>
  class CR = r: sequence restricts CB <r>
    A: required value xs::Int <a> inherited
    B: 1..3 value xs::Int <b> inherited
    C: 1..1 value xs::Int <c> inherited
)"},
    {"RestrictedValues", R"(
<xs:simpleType name='small'><xs:restriction base='xs:int'>
<xs:maxInclusive value='9'/></xs:restriction></xs:simpleType>
<xs:simpleType name='colour'><xs:restriction base='xs:token'>
<xs:enumeration value='red'/></xs:restriction></xs:simpleType>
<xs:complexType name='b'><xs:sequence><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:integer'/><xs:element name='c' type='xs:string'/>
<xs:element name='d' type='xs:string'/></xs:sequence></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='small'/><xs:element name='b' type='xs:short'/><xs:element name='c' type='colour'/>
<xs:element name='d' type='colour' fixed='red'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  simple SSmall = small: I4 xs::Int maxInclusive "9"
  simple SColour = colour: Enumeration xs::Token EColour
    "red" = Red
  simple SShortValue: Integer xs::Integer fractionDigits 0 minInclusive "-32768" maxInclusive "32767"
  simple SColourValue: String xs::Token
    "red"
  class CB = b: sequence <b>
    A: required value xs::Int <a>
    B: required value xs::Integer <b>
    C: required value xs::String <c>
    D: required value xs::String <d>
  class CR = r: sequence restricts CB <r>
    A: required value SSmall <a> inherited
    B: required value SShortValue <b> inherited
    C: required value SColourValue <c> inherited
    D: required value SColourValue <d> inherited fixed "red"
)"},
    {"RestrictedAttributes", R"(
<xs:complexType name='b'><xs:attribute name='a' type='xs:int'/><xs:attribute name='b' type='xs:int'/>
<xs:attribute name='c' type='xs:int'/><xs:attribute name='d' type='xs:string'/>
<xs:anyAttribute processContents='skip'/></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'>
<xs:attribute name='a' type='xs:int' use='required'/><xs:attribute name='b' type='xs:int' use='prohibited'/>
<xs:attribute name='d' type='xs:token' fixed='x'/>
<xs:attribute name='new' type='xs:int'/></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    @A: optional xs::Int <a>
    @B: optional xs::Int <b>
    @C: optional xs::Int <c>
    @D: optional xs::String <d>
    @*: any
  class CR = r: sequence restricts CB <r>
    @A: required xs::Int <a> inherited
    @C: optional xs::Int <c> inherited
    @D: optional xs::Token <d> inherited fixed "x"
    @New: optional xs::Int <new>
)"},
    {"RestrictedGroup", R"(
<xs:complexType name='b'><xs:sequence><xs:element name='x' type='xs:int'/><xs:choice>
<xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:sequence></xs:complexType>
<xs:complexType name='same'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='x' type='xs:int'/><xs:choice><xs:element name='a' type='xs:int'/>
<xs:element name='b' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='less'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='x' type='xs:int'/><xs:choice><xs:element name='a' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CBChoice: choice pseudo unknown-attributes <a or b or c>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
  class CB = b: sequence <b>
    X: required value xs::Int <x>
    Choice: required group CBChoice <a or b or c>
  class CSame = same: sequence restricts CB <same>
    X: required value xs::Int <x> inherited
    Choice: required group CBChoice <a or b or c> inherited
  class CLessChoice: choice pseudo unknown-attributes restricts CBChoice <a or c>
    A: optional value xs::Int <a> inherited
    C: optional value xs::Int <c> inherited
  class CLess = less: sequence restricts CB <less>
    X: required value xs::Int <x> inherited
    Choice: required group CLessChoice <a or c> inherited
)"},
    {"RestrictedChoice", R"(
<xs:complexType name='b'><xs:choice><xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:complexType>
<xs:complexType name='two'><xs:complexContent><xs:restriction base='b'><xs:choice>
<xs:element name='a' type='xs:int'/>
<xs:element name='c' type='xs:int'/></xs:choice></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='one'><xs:complexContent><xs:restriction base='b'><xs:choice>
<xs:element name='b' type='xs:int'/></xs:choice></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: choice <b>
    A: optional value xs::Int <a>
    B: optional value xs::Int <b>
    C: optional value xs::Int <c>
  class CTwo = two: choice restricts CB <two>
    A: optional value xs::Int <a> inherited
    C: optional value xs::Int <c> inherited
  class COne = one: choice restricts CB <one>
    B: optional value xs::Int <b> inherited
)"},
    {"RestrictedWildcard", R"(
<xs:complexType name='b'><xs:sequence>
<xs:any processContents='skip' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='xs:int'/>
<xs:any namespace='##other' processContents='skip' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <b>
    Any: 0..* wildcard any
  class CR = r: sequence restricts CB <r>
    A: required value xs::Int <a>
    Any: 0..* wildcard not "" inherited
s.xsd:5:1: warning: a has no counterpart in the base class, which cannot show it
)"},
    {"RestrictedObjects", R"(
<xs:complexType name='p'><xs:sequence>
<xs:element name='x' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='q'><xs:complexContent><xs:restriction base='p'><xs:sequence>
<xs:element name='x' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='b'><xs:sequence><xs:element name='a' type='p'/>
<xs:element name='b' type='p' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='q'/>
<xs:element name='b' type='p'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence <a>
    X: optional value xs::Int <x>
    type p -> CP
    type q -> CQ
  class CQ = q: sequence restricts CP <a>
    X: required value xs::Int <x> inherited
  class CB = b: sequence <b>
    A: required object CP <a> polymorphic
    B: optional object CP <b> polymorphic
  class CR = r: sequence restricts CB <r>
    A: required object CQ <a> inherited
    B: required object CP <b> polymorphic inherited
)"},
    {"RestrictionOfExtension", R"(
<xs:complexType name='a'><xs:sequence>
<xs:element name='x' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='b'><xs:complexContent><xs:extension base='a'><xs:sequence>
<xs:element name='y' type='xs:int' minOccurs='0'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='x' type='xs:int'/>
<xs:element name='y' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='r'><xs:sequence>
<xs:element name='z' type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CA = a: sequence <a>
    X: optional value xs::Int <x>
  class CB = b: sequence extends CA <b>
    Y: optional value xs::Int <y>
  class CR = r: sequence restricts CB <r>
    X: required value xs::Int <x> inherited
    Y: required value xs::Int <y> inherited
  class CD = d: sequence extends CR <d>
    Z: required value xs::Int <z>
)"},
    {"RestrictionWithoutText", R"(
<xs:complexType name='b' mixed='true'><xs:sequence>
<xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence mixed <b>
    A: optional value xs::Int <a>
  class CR = r: sequence restricts CB <r>
    A: required value xs::Int <a> inherited
s.xsd:2:1: warning: text between the elements is joined, and its place among them is not kept
)"},
    {"RestrictionOfAnyType", R"(
<xs:complexType name='r'><xs:complexContent><xs:restriction base='xs:anyType'><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CR = r: sequence <r>
    A: required value xs::Int <a>
)"},
    {"ExtensionOfAnyType", R"(
<xs:complexType name='r' mixed='true'><xs:complexContent><xs:extension base='xs:anyType'>
<xs:attribute name='x' type='xs:int'/></xs:extension></xs:complexContent></xs:complexType>)",
     R"(
namespace s "" in S
  class CR = r: sequence mixed <r>
    Any: 0..* wildcard any lax
    @X: optional xs::Int <x>
    @*: any lax
s.xsd:2:1: warning: text between the elements is joined, and its place among them is not kept
)"},
    {"TypesThatMayBeNamed", R"(
<xs:complexType name='b' abstract='true'><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='d'><xs:complexContent><xs:extension base='b'><xs:sequence>
<xs:element name='c' type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='f'><xs:complexContent>
<xs:extension base='d'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='hidden' abstract='true'><xs:complexContent>
<xs:extension base='b'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='leaf'><xs:sequence><xs:element name='z' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='t'><xs:sequence><xs:element name='p' type='b'/>
<xs:element name='q' type='d' minOccurs='0' maxOccurs='unbounded'/><xs:element name='s' type='leaf'/>
<xs:element name='n' type='f'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence abstract <p>
    A: required value xs::Int <a>
    type d -> CD
    type f -> CF
  class CD = d: sequence extends CB <q>
    C: required value xs::Int <c>
    type d -> CD
    type f -> CF
  class CF = f: sequence extends CD <n>
  class CHidden = hidden: sequence abstract extends CB <hidden>
  class CLeaf = leaf: sequence <s>
    Z: required value xs::Int <z>
  class CT = t: sequence <t>
    P: required object CB <p> polymorphic
    Q: 0..* object CD <q> polymorphic
    S: required object CLeaf <s>
    N: required object CF <n>
)"},
    {"BlockedTypes", R"(
<xs:complexType name='b' block='extension'><xs:sequence>
<xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='d'><xs:complexContent>
<xs:extension base='b'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='r'><xs:complexContent><xs:restriction base='b'><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='c'><xs:sequence>
<xs:element name='a' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>
<xs:complexType name='cd'><xs:complexContent>
<xs:extension base='c'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='cr'><xs:complexContent><xs:restriction base='c'><xs:sequence>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>
<xs:complexType name='t'><xs:sequence><xs:element name='p' type='b'/>
<xs:element name='q' type='c' block='#all'/>
<xs:element name='s' type='c' block='restriction'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CB = b: sequence <p>
    A: optional value xs::Int <a>
    type b -> CB
    type r -> CR
  class CD = d: sequence extends CB <d>
  class CR = r: sequence restricts CB <r>
    A: required value xs::Int <a> inherited
  class CC = c: sequence <q>
    A: optional value xs::Int <a>
    type c -> CC
    type cd -> CCd
    type cr -> CCr
  class CCd = cd: sequence extends CC <cd>
  class CCr = cr: sequence restricts CC <cr>
    A: required value xs::Int <a> inherited
  class CT = t: sequence <t>
    P: required object CB <p> polymorphic
    Q: required object CC <q>
    S: required object CC <s> polymorphic
s.xsd:16:1: warning: xsi:type may name any derived type at s, although some are blocked
)"},
    {"SubstitutionGroup", R"(
<xs:complexType name='shape'><xs:sequence><xs:element name='name' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='circle'><xs:complexContent><xs:extension base='shape'><xs:sequence>
<xs:element name='r' type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>
<xs:element name='shape' type='shape'/>
<xs:element name='circle' type='circle' substitutionGroup='shape'/>
<xs:element name='round' type='circle' substitutionGroup='circle'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='shape' minOccurs='0' maxOccurs='unbounded'/>
<xs:element ref='round'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CShape = shape: sequence <shape>
    Name: required value xs::Int <name>
    type shape -> CShape
    type circle -> CCircle
    element shape -> CShape
    element circle -> CCircle
    element round -> CCircle
  class CCircle = circle: sequence extends CShape <circle>
    R: required value xs::Int <r>
  class CT = t: sequence <t>
    Shape: 0..* object CShape <shape> polymorphic substitution
    Round: required object CCircle <round>
root Shape <shape>: s::CShape
root Circle <circle>: s::CCircle
root Round <round>: s::CCircle
)"},
    {"AbstractHead", R"(
<xs:complexType name='shape'><xs:sequence><xs:element name='name' type='xs:int'/></xs:sequence></xs:complexType>
<xs:element name='shape' type='shape' abstract='true'/>
<xs:element name='dot' type='shape' substitutionGroup='shape'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='shape'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CShape = shape: sequence <dot>
    Name: required value xs::Int <name>
    element dot -> CShape
  class CT = t: sequence <t>
    Shape: required object CShape <shape> polymorphic substitution
root Dot <dot>: s::CShape
)"},
    {"SubstitutesOfSimpleType", R"(
<xs:element name='code' type='xs:string'/>
<xs:element name='short' type='xs:token' substitutionGroup='code'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='code' minOccurs='0'/>
<xs:element name='a' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='u'><xs:choice><xs:element ref='code'/>
<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType>
<xs:complexType name='v'><xs:sequence><xs:element ref='code' minOccurs='0' maxOccurs='unbounded'/>
<xs:element ref='code'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CCodeChoice: choice pseudo unknown-attributes <code or short>
    Code: optional value xs::String <code>
    Short: optional value xs::Token <short>
  class CT = t: sequence <t>
    Code: optional group CCodeChoice <code or short>
    A: required value xs::Int <a>
  class CU = u: choice <u>
    Code: optional value xs::String <code>
    Short: optional value xs::Token <short>
    B: optional value xs::Int <b>
  class CV = v: sequence <v>
    Code: 0..* group CCodeChoice <code or short>
    Code2: required group CCodeChoice <code or short>
root Code <code>: value xs::String
root Short <short>: value xs::Token
)"},
    {"SubstitutesOfAnyType", R"(
<xs:element name='any' abstract='true'/>
<xs:element name='a' type='xs:int' substitutionGroup='any'/>
<xs:element name='b' type='p' substitutionGroup='any'/>
<xs:complexType name='p'><xs:sequence><xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='t'><xs:sequence>
<xs:element ref='any' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence <b>
    X: required value xs::Int <x>
  class CAnyChoice: choice pseudo unknown-attributes <a or b>
    A: optional value xs::Int <a>
    B: optional object CP <b>
  class CT = t: sequence <t>
    Any: 0..* group CAnyChoice <a or b>
root A <a>: value xs::Int
root B <b>: s::CP
)"},
    {"TwoHeadsOfOneType", R"(
<xs:complexType name='p'><xs:sequence><xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>
<xs:element name='h1' type='p' abstract='true'/>
<xs:element name='h2' type='p' abstract='true'/>
<xs:element name='a' type='p' substitutionGroup='h1'/>
<xs:element name='b' type='p' substitutionGroup='h2'/>
<xs:element name='c' type='p' substitutionGroup='h2'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='h1' minOccurs='0'/>
<xs:element ref='h2' minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence <a>
    X: required value xs::Int <x>
    element a -> CP
  class CH2Choice: choice pseudo unknown-attributes <b or c>
    B: optional object CP <b>
    C: optional object CP <c>
  class CT = t: sequence <t>
    H1: optional object CP <h1> polymorphic substitution
    H2: optional group CH2Choice <b or c>
root A <a>: s::CP
root B <b>: s::CP
root C <c>: s::CP
)"},
    {"HeadAndElementOfOneType", R"(
<xs:complexType name='p'><xs:sequence><xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='q'><xs:complexContent>
<xs:extension base='p'></xs:extension></xs:complexContent></xs:complexType>
<xs:element name='h' type='p'/>
<xs:element name='a' type='p' substitutionGroup='h'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='h' minOccurs='0' maxOccurs='unbounded'/>
<xs:element name='other' type='p' minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence <h>
    X: required value xs::Int <x>
    type p -> CP
    type q -> CQ
  class CQ = q: sequence extends CP <q>
  class CHChoice: choice pseudo unknown-attributes <h or a>
    H: optional object CP <h> polymorphic
    A: optional object CP <a> polymorphic
  class CT = t: sequence <t>
    H: 0..* group CHChoice <h or a>
    Other: optional object CP <other> polymorphic
root H <h>: s::CP
root A <a>: s::CP
)"},
    {"BlockedSubstitution", R"(
<xs:element name='h' type='xs:int' block='substitution'/>
<xs:element name='a' type='xs:int' substitutionGroup='h'/>
<xs:complexType name='t'><xs:sequence><xs:element ref='h'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    H: required value xs::Int <h>
root H <h>: value xs::Int
root A <a>: value xs::Int
)"},
    {"Nillable", R"(
<xs:complexType name='p'><xs:sequence><xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>
<xs:complexType name='q'><xs:complexContent>
<xs:extension base='p'></xs:extension></xs:complexContent></xs:complexType>
<xs:complexType name='s'><xs:simpleContent><xs:extension base='xs:int'>
<xs:attribute name='u' type='xs:int'/></xs:extension></xs:simpleContent></xs:complexType>
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='p' nillable='true'/>
<xs:element name='b' type='p'/><xs:element name='c' type='q' nillable='true'/>
<xs:element name='d' type='s' nillable='true'/>
<xs:element name='e' type='t' minOccurs='0'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence nillable <a>
    X: required value xs::Int <x>
    type p -> CP
    type q -> CQ
  class CQ = q: sequence extends CP <c>
  class CS = s: sequence nillable <d>
    @U: optional xs::Int <u>
    text xs::Int
  class CT = t: sequence <e>
    A: required object CP <a> polymorphic
    B: required object CP <b> polymorphic
    C: required object CQ <c>
    D: required object CS <d>
    E: optional object CT <e>
s.xsd:8:1: warning: xsi:nil is read at b too, since it may be used at another element of this type
)"},
    {"NillableRoots", R"(
<xs:element name='a' type='xs:int' nillable='true'/>
<xs:element name='b' type='p' nillable='true'/>
<xs:complexType name='p'><xs:sequence><xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence nillable <b>
    X: required value xs::Int <x>
root A <a>: value xs::Int nillable
root B <b>: s::CP nillable
)"},
    {"AbstractRoots", R"(
<xs:element name='a' type='xs:int' abstract='true'/>
<xs:element name='b' type='p'/>
<xs:complexType name='p' abstract='true'><xs:sequence>
<xs:element name='x' type='xs:int'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CP = p: sequence abstract <b>
    X: required value xs::Int <x>
root B <b>: s::CP
)"},
    {"Identity", R"(
<xs:element name='r'><xs:complexType><xs:sequence>
<xs:element name='a' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:complexType>
<xs:key name='k'><xs:selector xpath='a'/><xs:field xpath='.'/></xs:key><xs:unique name='u'>
<xs:selector xpath='a'/><xs:field xpath='.'/></xs:unique><xs:keyref name='f' refer='k'><xs:selector xpath='a'/>
<xs:field xpath='.'/></xs:keyref></xs:element>)",
     R"(
namespace s "" in S
  class CR: sequence <r>
    A: 0..* value xs::Int <a>
root R <r>: s::CR
s.xsd:4:1: warning: the identity constraint key k is not checked
s.xsd:4:72: warning: the identity constraint unique u is not checked
s.xsd:5:58: warning: the identity constraint keyref f is not checked
)"},
    {"Ids", R"(
<xs:complexType name='t'><xs:sequence><xs:element name='i' type='xs:ID'/>
<xs:element name='r' type='xs:IDREF'/></xs:sequence><xs:attribute name='rs' type='xs:IDREFS'/>
<xs:attribute name='n' type='xs:NCName'/></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    I: required value xs::ID <i>
    R: required value xs::IDREF <r>
    @Rs: optional xs::IDREFS <rs>
    @N: optional xs::NCName <n>
s.xsd:2:39: warning: that each ID occurs once and each IDREF names one is not checked
s.xsd:3:1: warning: that each ID occurs once and each IDREF names one is not checked
s.xsd:3:53: warning: that each ID occurs once and each IDREF names one is not checked
)"},
};

TEST_P(BindingDerivation, BecomesBasesAndAlternatives)
{
    ExpectBinding(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, BindingDerivation, testing::ValuesIn(s_cases), GetBindingCaseName);

} // namespace
