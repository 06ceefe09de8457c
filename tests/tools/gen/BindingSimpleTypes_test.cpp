#include "tests/support/Bindings.h"

using namespace QvTest;

namespace
{

class BindingSimpleTypes : public testing::TestWithParam<SBindingCase>
{
};

const SBindingCase s_cases[] = {
    {"Values", R"(
<xs:simpleType name='s-boolean'><xs:restriction base='xs:boolean'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-decimal'><xs:restriction base='xs:decimal'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-float'><xs:restriction base='xs:float'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-double'><xs:restriction base='xs:double'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-duration'><xs:restriction base='xs:duration'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-dateTime'><xs:restriction base='xs:dateTime'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-time'><xs:restriction base='xs:time'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-date'><xs:restriction base='xs:date'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-gYearMonth'><xs:restriction base='xs:gYearMonth'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-gYear'><xs:restriction base='xs:gYear'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-gMonthDay'><xs:restriction base='xs:gMonthDay'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-gDay'><xs:restriction base='xs:gDay'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-gMonth'><xs:restriction base='xs:gMonth'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-hexBinary'><xs:restriction base='xs:hexBinary'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-base64Binary'><xs:restriction base='xs:base64Binary'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-anyURI'><xs:restriction base='xs:anyURI'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-QName'><xs:restriction base='xs:QName'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-normalizedString'><xs:restriction base='xs:normalizedString'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-token'><xs:restriction base='xs:token'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-language'><xs:restriction base='xs:language'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-NMTOKEN'><xs:restriction base='xs:NMTOKEN'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-NMTOKENS'><xs:restriction base='xs:NMTOKENS'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-Name'><xs:restriction base='xs:Name'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-NCName'><xs:restriction base='xs:NCName'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-ID'><xs:restriction base='xs:ID'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-IDREF'><xs:restriction base='xs:IDREF'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-IDREFS'><xs:restriction base='xs:IDREFS'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-ENTITY'><xs:restriction base='xs:ENTITY'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-ENTITIES'><xs:restriction base='xs:ENTITIES'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-integer'><xs:restriction base='xs:integer'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-nonPositiveInteger'><xs:restriction base='xs:nonPositiveInteger'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-negativeInteger'><xs:restriction base='xs:negativeInteger'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-long'><xs:restriction base='xs:long'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-int'><xs:restriction base='xs:int'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-short'><xs:restriction base='xs:short'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-byte'><xs:restriction base='xs:byte'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-nonNegativeInteger'><xs:restriction base='xs:nonNegativeInteger'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-unsignedLong'><xs:restriction base='xs:unsignedLong'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-unsignedInt'><xs:restriction base='xs:unsignedInt'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-unsignedShort'><xs:restriction base='xs:unsignedShort'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-unsignedByte'><xs:restriction base='xs:unsignedByte'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-positiveInteger'><xs:restriction base='xs:positiveInteger'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s-string'><xs:restriction base='xs:string'>
<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SSBoolean = s-boolean: Boolean xs::Boolean
  simple SSDecimal = s-decimal: Decimal xs::Decimal
  simple SSFloat = s-float: R4 xs::Float
  simple SSDouble = s-double: R8 xs::Double
  simple SSDuration = s-duration: Duration xs::Duration
  simple SSDateTime = s-dateTime: DateTime xs::DateTime
  simple SSTime = s-time: DateTime xs::Time
  simple SSDate = s-date: DateTime xs::Date
  simple SSGYearMonth = s-gYearMonth: DateTime xs::GYearMonth
  simple SSGYear = s-gYear: DateTime xs::GYear
  simple SSGMonthDay = s-gMonthDay: DateTime xs::GMonthDay
  simple SSGDay = s-gDay: DateTime xs::GDay
  simple SSGMonth = s-gMonth: DateTime xs::GMonth
  simple SSHexBinary = s-hexBinary: Binary xs::HexBinary
  simple SSBase64Binary = s-base64Binary: Binary xs::Base64Binary
  simple SSAnyURI = s-anyURI: String xs::AnyURI
  simple SSQName = s-QName: String xs::QName
  simple SSNormalizedString = s-normalizedString: String xs::NormalizedString collapse
  simple SSToken = s-token: String xs::Token
  simple SSLanguage = s-language: String xs::Language
  simple SSNMTOKEN = s-NMTOKEN: String xs::NMTOKEN
  simple SSNMTOKENS = s-NMTOKENS: List list of xs::NMTOKEN minLength 1
  simple SSName = s-Name: String xs::Name
  simple SSNCName = s-NCName: String xs::NCName
  simple SSID = s-ID: String xs::ID
  simple SSIDREF = s-IDREF: String xs::IDREF
  simple SSIDREFS = s-IDREFS: List list of xs::IDREF minLength 1
  simple SSENTITY = s-ENTITY: String xs::ENTITY
  simple SSENTITIES = s-ENTITIES: List list of xs::ENTITY minLength 1
  simple SSInteger = s-integer: Integer xs::Integer
  simple SSNonPositiveInteger = s-nonPositiveInteger: Integer xs::NonPositiveInteger
  simple SSNegativeInteger = s-negativeInteger: Integer xs::NegativeInteger
  simple SSLong = s-long: I8 xs::Long
  simple SSInt = s-int: I4 xs::Int
  simple SSShort = s-short: I2 xs::Short
  simple SSByte = s-byte: I1 xs::Byte
  simple SSNonNegativeInteger = s-nonNegativeInteger: Integer xs::NonNegativeInteger
  simple SSUnsignedLong = s-unsignedLong: UI8 xs::UnsignedLong
  simple SSUnsignedInt = s-unsignedInt: UI4 xs::UnsignedInt
  simple SSUnsignedShort = s-unsignedShort: UI2 xs::UnsignedShort
  simple SSUnsignedByte = s-unsignedByte: UI1 xs::UnsignedByte
  simple SSPositiveInteger = s-positiveInteger: Integer xs::PositiveInteger
  simple SSString = s-string: String xs::String collapse
)"},
    {"NothingAdded", R"(
<xs:simpleType name='plain'><xs:restriction base='xs:int'></xs:restriction></xs:simpleType>
<xs:simpleType name='again'><xs:restriction base='plain'></xs:restriction></xs:simpleType>
<xs:complexType name='t'><xs:sequence><xs:element name='a' type='plain'/>
<xs:element name='b' type='again'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  class CT = t: sequence <t>
    A: required value xs::Int <a>
    B: required value xs::Int <b>
)"},
    {"FacetsOfAllSteps", R"(
<xs:simpleType name='a'><xs:restriction base='xs:decimal'><xs:minInclusive value='0'/>
<xs:maxExclusive value='100'/><xs:totalDigits value='8'/>
<xs:fractionDigits value='4'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:minExclusive value='5'/>
<xs:fractionDigits value='2'/></xs:restriction></xs:simpleType>
<xs:simpleType name='c'><xs:restriction base='b'><xs:maxInclusive value='50'/>
<xs:totalDigits value='6'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: Decimal xs::Decimal totalDigits 8 fractionDigits 4 minInclusive "0" maxExclusive "100"
  simple SB = b: Decimal xs::Decimal totalDigits 8 fractionDigits 2 minExclusive "5" maxExclusive "100"
  simple SC = c: Decimal xs::Decimal totalDigits 6 fractionDigits 2 maxInclusive "50" minExclusive "5"
)"},
    {"Lengths", R"(
<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:minLength value='1'/>
<xs:maxLength value='9'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:maxLength value='5'/></xs:restriction></xs:simpleType>
<xs:simpleType name='c'><xs:restriction base='xs:hexBinary'>
<xs:length value='4'/></xs:restriction></xs:simpleType>
<xs:simpleType name='d'><xs:restriction base='xs:string'>
<xs:maxLength value='5000000000'/></xs:restriction></xs:simpleType>
<xs:simpleType name='f'><xs:restriction base='xs:string'>
<xs:minLength value='5000000000'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: String xs::String minLength 1 maxLength 9
  simple SB = b: String xs::String minLength 1 maxLength 5
  simple SC = c: Binary xs::HexBinary length 4
  simple SD = d: String xs::String
  simple SF = f: String xs::String minLength 2147483647
s.xsd:10:1: warning: a number above 2147483647 is read as that, or as no limit
)"},
    {"WhiteSpace", R"(
<xs:simpleType name='a'><xs:restriction base='xs:string'>
<xs:whiteSpace value='replace'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:whiteSpace value='collapse'/>
<xs:maxLength value='3'/></xs:restriction></xs:simpleType>
<xs:simpleType name='c'><xs:restriction base='xs:token'><xs:whiteSpace value='collapse'/>
<xs:maxLength value='3'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: String xs::String replace
  simple SB = b: String xs::String maxLength 3 collapse
  simple SC = c: String xs::Token maxLength 3
)"},
    {"Patterns", R"(
<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:pattern value='[a-z]+'/>
<xs:pattern value='x|y'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:pattern value='.{3}'/></xs:restriction></xs:simpleType>
<xs:simpleType name='c'><xs:restriction base='xs:integer'>
<xs:pattern value='[1-9]*'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: String xs::String pattern "(?:[a-z]+|x|y)\\z"
  simple SB = b: String xs::String pattern "(?=(?:[a-z]+|x|y)\\z)(?:[^\\n\\r]{3})\\z"
  simple SC = c: Integer xs::Integer pattern "(?:[1-9]*)\\z"
)"},
    {"UntranslatablePatterns", R"(
<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:pattern value='a'/>
<xs:pattern value='a{70000}'/></xs:restriction></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:pattern value='[ab]'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: String xs::String
  simple SB = b: String xs::String pattern "(?:[ab])\\z"
s.xsd:3:1: warning: the pattern a{70000} cannot be translated and is not checked
)"},
    {"Enumerations", R"(
<xs:simpleType name='colour'><xs:restriction base='xs:token'><xs:enumeration value=' dark  red '/>
<xs:enumeration value='blue'/><xs:enumeration value='blue'/>
<xs:enumeration value=''/></xs:restriction></xs:simpleType>
<xs:simpleType name='some'><xs:restriction base='colour'>
<xs:enumeration value='blue'/></xs:restriction></xs:simpleType>
<xs:simpleType name='short'><xs:restriction base='colour'>
<xs:maxLength value='5'/></xs:restriction></xs:simpleType>
<xs:simpleType name='kept'><xs:restriction base='xs:string'><xs:enumeration value=' a '/>
<xs:enumeration value='a'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SColour = colour: Enumeration xs::Token EColour
    "dark red" = DarkRed
    "blue" = Blue
    "" = Empty
  simple SSome = some: Enumeration xs::Token ESome
    "blue" = Blue
  simple SShort = short: Enumeration xs::Token EShort maxLength 5
    "dark red" = DarkRed
    "blue" = Blue
    "" = Empty
  simple SKept = kept: Enumeration xs::String EKept
    " a " = A
    "a" = A2
)"},
    {"EnumerationsOfOtherKinds", R"(
<xs:simpleType name='n'><xs:restriction base='xs:int'><xs:enumeration value='1'/>
<xs:enumeration value=' 2 '/></xs:restriction></xs:simpleType>
<xs:simpleType name='d'><xs:restriction base='xs:date'>
<xs:enumeration value='2000-01-01'/></xs:restriction></xs:simpleType>
<xs:simpleType name='u'><xs:restriction base='xs:anyURI'>
<xs:enumeration value='urn:a'/></xs:restriction></xs:simpleType>
<xs:simpleType name='l'><xs:list itemType='xs:int'/></xs:simpleType>
<xs:simpleType name='le'><xs:restriction base='l'>
<xs:enumeration value='1  2'/></xs:restriction></xs:simpleType>
<xs:simpleType name='m'><xs:union memberTypes='xs:int xs:token'/></xs:simpleType>
<xs:simpleType name='me'><xs:restriction base='m'><xs:enumeration value='1'/>
<xs:enumeration value='a'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SN = n: I4 xs::Int
    "1"
    "2"
  simple SD = d: DateTime xs::Date
    "2000-01-01"
  simple SU = u: Enumeration xs::AnyURI EU
    "urn:a" = UrnA
  simple SL = l: List list of xs::Int
  simple SLe = le: List list of xs::Int
    "1 2"
  simple SM = m: String union of xs::Int, xs::Token
  simple SMe = me: String union of xs::Int, xs::Token
    "1"
    "a"
)"},
    {"QNames", R"(
<xs:simpleType name='q' xmlns:p='urn:p'><xs:restriction base='xs:QName'>
<xs:enumeration value='p:a'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SQ = q: String xs::QName
    "{urn:p}a"
)"},
    {"Lists", R"(
<xs:simpleType name='a'><xs:list itemType='xs:int'/></xs:simpleType>
<xs:simpleType name='b'><xs:restriction base='a'><xs:maxLength value='3'/></xs:restriction></xs:simpleType>
<xs:simpleType name='c'><xs:list><xs:simpleType><xs:restriction base='xs:token'>
<xs:enumeration value='x'/></xs:restriction></xs:simpleType></xs:list></xs:simpleType>
<xs:simpleType name='d'><xs:restriction base='xs:NMTOKENS'>
<xs:maxLength value='2'/></xs:restriction></xs:simpleType>
<xs:simpleType name='f'><xs:list itemType='u'/></xs:simpleType>
<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:token'/></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: List list of xs::Int
  simple SB = b: List list of xs::Int maxLength 3
  simple SCItem: Enumeration xs::Token ECItem
    "x" = X
  simple SC = c: List list of SCItem
  simple SD = d: List list of xs::NMTOKEN minLength 1 maxLength 2
  simple SU = u: String union of xs::Int, xs::Token
  simple SF = f: List list of SU
)"},
    {"Unions", R"(
<xs:simpleType name='u'><xs:union memberTypes='xs:int v'><xs:simpleType><xs:restriction base='xs:token'>
<xs:enumeration value='x'/></xs:restriction></xs:simpleType><xs:simpleType><xs:restriction base='xs:string'>
<xs:maxLength value='2'/></xs:restriction></xs:simpleType></xs:union></xs:simpleType>
<xs:simpleType name='v'><xs:union memberTypes='xs:date a'/></xs:simpleType>
<xs:simpleType name='a'><xs:list itemType='xs:int'/></xs:simpleType>
<xs:simpleType name='w'><xs:restriction base='u'><xs:pattern value='.*'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SA = a: List list of xs::Int
  simple SV = v: String union of xs::Date, SA
  simple SUMember: Enumeration xs::Token EUMember
    "x" = X
  simple SUMember2: String xs::String maxLength 2
  simple SU = u: String union of xs::Int, SV, SUMember, SUMember2
  simple SW = w: String union of xs::Int, SV, SUMember, SUMember2 pattern "(?:[^\\n\\r]*)\\z"
)"},
    {"AnonymousBase", R"(
<xs:simpleType name='t'><xs:restriction><xs:simpleType><xs:restriction base='xs:string'>
<xs:minLength value='1'/></xs:restriction></xs:simpleType>
<xs:maxLength value='3'/></xs:restriction></xs:simpleType>
<xs:simpleType name='s'><xs:restriction><xs:simpleType><xs:restriction base='xs:string'>
<xs:minLength value='1'/></xs:restriction></xs:simpleType></xs:restriction></xs:simpleType>
<xs:complexType name='x'><xs:sequence><xs:element name='t' type='t'/>
<xs:element name='s' type='s'/></xs:sequence></xs:complexType>)",
     R"(
namespace s "" in S
  simple ST = t: String xs::String minLength 1 maxLength 3
  simple SSBase: String xs::String minLength 1
  class CX = x: sequence <x>
    T: required value ST <t>
    S: required value SSBase <s>
)"},
    {"Order", R"(
<xs:simpleType name='l'><xs:list itemType='item'/></xs:simpleType>
<xs:simpleType name='item'><xs:restriction base='base'>
<xs:maxLength value='3'/></xs:restriction></xs:simpleType>
<xs:simpleType name='base'><xs:restriction base='xs:string'>
<xs:minLength value='1'/></xs:restriction></xs:simpleType>)",
     R"(
namespace s "" in S
  simple SBase = base: String xs::String minLength 1
  simple SItem = item: String xs::String minLength 1 maxLength 3
  simple SL = l: List list of SItem
)"},
};

TEST_P(BindingSimpleTypes, HoldsValuesWithAllFacets)
{
    ExpectBinding(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, BindingSimpleTypes, testing::ValuesIn(s_cases), GetBindingCaseName);

// EXTRA
} // namespace
