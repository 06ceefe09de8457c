#include "tests/support/Schemas.h"

#include <gtest/gtest.h>

#include <functional>

using namespace QvTest;
using namespace quiver_gen::schema;

namespace
{

/// A wrong schema and what is said about it, without the name of the file.
struct SWrong
{
    std::string strSchema;
    std::string strMessages;
    std::string strAttributes = {};
};

void ExpectMessages(const std::vector<SWrong>& cases)
{
    for (const SWrong& wrong : cases)
    {
        std::string strExpected;
        std::istringstream lines(wrong.strMessages);
        for (std::string strLine; std::getline(lines, strLine);)
            strExpected += "s.xsd:" + strLine + "\n";
        EXPECT_EQ(GetSchemaMessages(wrong.strSchema, wrong.strAttributes), strExpected) << wrong.strSchema;
    }
}

/// A complex type around its content; the content stands on line 3.
std::string Complex(const std::string& strContent)
{
    return "<xs:complexType name='t'>\n" + strContent + "</xs:complexType>";
}

/// A restriction of a simple type; its facets stand on line 3.
std::string Simple(const std::string& strBase, const std::string& strFacets, const std::string& strName = "t")
{
    return "<xs:simpleType name='" + strName + "'><xs:restriction base='" + strBase + "'>\n" + strFacets +
           "</xs:restriction></xs:simpleType>";
}

TEST(SchemaChecks, TheLanguage)
{
    ExpectMessages({
        {"<xs:nothing/>", "2:1: error: the element 'nothing' is not known in a schema"},
        {"<other xmlns='u'/>", "2:1: error: the element 'other' is not known in a schema"},
        {"<xs:sequence/>", "2:1: error: the element 'sequence' is not allowed in 'schema'"},
        {"<xs:element name='a'/>\n<xs:import namespace='u'/>",
         "3:1: error: the element 'import' is not allowed here in 'schema'"},
        {"<xs:element name='a'>x</xs:element>", "2:22: error: text is not allowed in 'element'"},
        {"<xs:element/>", "2:1: error: 'global element' needs the attribute 'name'"},
        {"<xs:element name='a' minOccurs='0'/>",
         "2:1: error: the attribute 'minOccurs' is not allowed on 'global element'"},
        {"<xs:element name='a' xs:type='xs:int'/>",
         "2:1: error: the attribute 'type' of 'element' stands in the schema namespace, where it has no meaning"},
        {"<xs:element name='a:b'/>",
         "2:1: error: the attribute 'name' is 'a:b', where a name without a colon is needed"},
        {"<xs:element name='a' type='x:'/>",
         "2:1: error: the attribute 'type' is 'x:', where a name, with a prefix or without is needed"},
        {"<xs:element name='a' nillable='yes'/>",
         "2:1: error: the attribute 'nillable' is 'yes', where true or false is needed"},
        {"<xs:element name='a' block='all'/>",
         "2:1: error: the attribute 'block' is 'all', where '#all' or a list of ways of derivation is needed"},
        {"<xs:element name='a' block='list'/>",
         "2:1: error: the attribute 'block' is 'list', which has no meaning here"},
        {Complex("<xs:attribute name='a'/><xs:sequence/>"),
         "3:25: error: the element 'sequence' is not allowed here in 'global complexType'"},
        {Complex("<xs:sequence/><xs:choice/>"),
         "3:15: error: 'global complexType' holds more than one 'group', 'all', 'choice' or 'sequence'"},
        {Complex("<xs:simpleContent><xs:extension base='xs:int'/></xs:simpleContent><xs:attribute name='a'/>"),
         "3:67: error: the element 'attribute' is not allowed here in 'global complexType'"},
        {Complex("<xs:complexContent/>"), "3:1: error: 'complexContent' needs a child 'restriction' or 'extension'"},
        {Complex("<xs:sequence minOccurs='-1'/>"),
         "3:1: error: the attribute 'minOccurs' is '-1', where a non-negative integer is needed"},
        {Complex("<xs:sequence maxOccurs='many'/>"),
         "3:1: error: the attribute 'maxOccurs' is 'many', where a non-negative integer or 'unbounded' is needed"},
        {Complex("<xs:attribute name='a' use='always'/>"),
         "3:1: error: the attribute 'use' is 'always', where 'optional', 'required' or 'prohibited' is needed"},
        {Complex("<xs:anyAttribute processContents='no'/>"),
         "3:1: error: the attribute 'processContents' is 'no', where 'strict', 'lax' or 'skip' is needed"},
        {Complex("<xs:sequence><xs:any namespace='##any u'/></xs:sequence>"),
         "3:14: error: the namespace '##any' is not allowed in a list"},
        {"<xs:simpleType name='t'/>", "2:1: error: 'global simpleType' needs a child 'restriction', 'list' or 'union'"},
        {"<xs:simpleType name='t'><xs:union memberTypes='a 1'/></xs:simpleType>",
         "2:25: error: the attribute 'memberTypes' is 'a 1', where names, with prefixes or without is needed"},
        {Simple("xs:int", "<xs:minInclusive value='1' fixed='x'/>"),
         "3:1: error: the attribute 'fixed' is 'x', where true or false is needed"},
        {Simple("xs:int", "<xs:minInclusive/>"), "3:1: error: 'minInclusive' needs the attribute 'value'"},
        {"<xs:group name='g'><xs:sequence minOccurs='0'/></xs:group>",
         "2:20: error: the attribute 'minOccurs' is not allowed on 'group/sequence'"},
        {"<xs:include/>", "2:1: error: 'include' needs the attribute 'schemaLocation'"},
        {"", "1:1: error: the attribute 'elementFormDefault' is 'x', where 'qualified' or 'unqualified' is needed",
         "elementFormDefault='x'"},
        {"", "1:1: error: the attribute 'targetNamespace' is '', where a namespace is needed", "targetNamespace=''"},
    });
}

TEST(SchemaChecks, NamesAndReferences)
{
    const std::string strElement = "<xs:element name='a' type='%'/>";
    ExpectMessages({
        {"<xs:element name='a' type='p:x'/>", "2:1: error: the prefix of 'p:x' is not declared"},
        {"<xs:element name='a' type='x'/>", "2:1: error: the type 'x' is not defined"},
        {"<xs:element name='a' type='xs:integr'/>",
         "2:1: error: the type '{http://www.w3.org/2001/XMLSchema}integr' is not defined"},
        {"<xs:element name='a' type='p:x'/>", "2:1: error: the namespace 'u' of 'p:x' is not imported in this document",
         "xmlns:p='u'"},
        {"<xs:element name='a' type='x'/>",
         "2:1: error: 'x' is in no namespace, and this document has no import without one", "targetNamespace='n'"},
        {"<xs:import namespace='u'/>\n<xs:element name='a' type='p:x'/>", "3:1: error: the type '{u}x' is not defined",
         "xmlns:p='u'"},
        {Complex("<xs:sequence><xs:element ref='a'/><xs:group ref='b'/></xs:sequence><xs:attribute "
                 "ref='c'/><xs:attributeGroup ref='d'/>"),
         "3:14: error: the element 'a' is not defined\n3:35: error: the group 'b' is not defined\n"
         "3:68: error: the attribute 'c' is not defined\n3:91: error: the attribute group 'd' is not defined"},
        {Complex("<xs:complexContent><xs:extension base='b'/></xs:complexContent>"),
         "3:20: error: the type 'b' is not defined"},
        {"<xs:element name='a' substitutionGroup='h'/>", "2:1: error: the element 'h' is not defined"},
        {"<xs:element name='a'><xs:keyref name='k' refer='r'><xs:selector xpath='.'/><xs:field "
         "xpath='.'/></xs:keyref></xs:element>",
         "2:22: error: the identity constraint 'r' is not defined"},
        {"<xs:complexType name='c'/><xs:attribute name='a' type='c'/>",
         "2:27: error: 'c' is a complex type, where a simple one is needed"},
        {"<xs:complexType name='c'/>\n" + Simple("c", ""),
         "3:25: error: 'c' is a complex type, where a simple one is needed"},
        {"<xs:element name='a'/>\n<xs:element name='a'/>",
         "3:1: error: the element 'a' is defined twice; the first definition is at s.xsd:2:1"},
        {"<xs:complexType name='a'/>\n" + Simple("xs:int", "", "a"),
         "3:1: error: the type 'a' is defined twice; the first definition is at s.xsd:2:1"},
        {"<xs:group name='a'><xs:all/></xs:group>\n<xs:group name='a'><xs:all/></xs:group>",
         "3:1: error: the group 'a' is defined twice; the first definition is at s.xsd:2:1"},
        {"<xs:attributeGroup name='a'/>\n<xs:attributeGroup name='a'/>",
         "3:1: error: the attribute group 'a' is defined twice; the first definition is at s.xsd:2:1"},
        {"<xs:attribute name='a'/>\n<xs:attribute name='a'/>",
         "3:1: error: the attribute 'a' is defined twice; the first definition is at s.xsd:2:1"},
        {"<xs:notation name='a'/>\n<xs:notation name='a'/>",
         "3:1: error: the notation 'a' is defined twice; the first definition is at s.xsd:2:1"},
    });
}

TEST(SchemaChecks, ElementsAndAttributes)
{
    ExpectMessages({
        {"<xs:element name='a' type='xs:int'><xs:complexType/></xs:element>",
         "2:1: error: the element 'a' has both a type attribute and a type of its own"},
        {"<xs:element name='a' default='x' fixed='y'/>", "2:1: error: 'default' and 'fixed' exclude each other"},
        {"<xs:element name='r'/>" + Complex("<xs:sequence><xs:element ref='r' name='x'/><xs:element/></xs:sequence>"),
         "3:14: error: 'name' and 'ref' exclude each other\n3:44: error: 'element' needs the attribute 'name' or "
         "'ref'"},
        {"<xs:element name='r'/>" +
             Complex("<xs:sequence><xs:element ref='r' nillable='true'><xs:complexType/></xs:element></xs:sequence>"),
         "3:14: error: an element with 'ref' has no attribute 'nillable'\n3:50: error: an element with 'ref' has no "
         "child 'complexType'"},
        {"<xs:attribute name='r'/>" + Complex("<xs:attribute ref='r' type='xs:int'/>"),
         "3:1: error: an attribute with 'ref' has no attribute 'type'"},
        {Complex("<xs:attribute name='a' use='required' default='x'/>"),
         "3:1: error: an attribute with a default is optional, not required"},
        {Complex("<xs:attribute name='a' type='xs:int'><xs:simpleType><xs:restriction "
                 "base='xs:int'/></xs:simpleType></xs:attribute>"),
         "3:1: error: the attribute 'a' has both a type attribute and a type of its own"},
        {Complex("<xs:attribute name='xmlns'/>"), "3:1: error: no attribute can be named 'xmlns'"},
        {"<xs:attribute name='a'/>",
         "2:1: error: no attribute can be declared in the namespace 'http://www.w3.org/2001/XMLSchema-instance'",
         "targetNamespace='http://www.w3.org/2001/XMLSchema-instance'"},
        {Complex("<xs:attribute name='a'/><xs:attribute name='a'/>"), "3:25: error: the attribute 'a' stands twice"},
        {"<xs:attributeGroup name='g'><xs:attribute name='a'/></xs:attributeGroup>" +
             Complex("<xs:attribute name='a'/><xs:attributeGroup ref='g'/>"),
         "2:73: error: the attribute 'a' stands twice"},
        {Complex("<xs:attribute name='a' use='prohibited'/>"),
         "3:1: warning: prohibiting the attribute 'a' has no effect, as nothing else would allow it"},
        {Complex("<xs:attribute name='a' type='xs:ID'/><xs:attribute name='b' type='xs:ID'/>"),
         "2:1: error: the type 't' has two attributes of type ID, 'a' and 'b'"},
        {"<xs:attribute name='g' type='xs:int' fixed='1'/>" + Complex("<xs:attribute ref='g' fixed='01'/>"), ""},
        {"<xs:attribute name='g' type='xs:int' fixed='1'/>" + Complex("<xs:attribute ref='g' fixed='2'/>"),
         "3:1: error: the attribute 'g' is fixed to '1' where it is declared"},
    });
}

TEST(SchemaChecks, ValuesOfElementsAndAttributes)
{
    ExpectMessages({
        {"<xs:element name='a' type='xs:int' default=' 12 '/>", ""},
        {"<xs:element name='a' type='xs:int' default='x'/>",
         "2:1: error: the default value 'x' of the element 'a' is no value of its type: it is not written as 'int' is"},
        {"<xs:element name='a' type='xs:byte' fixed='128'/>", "2:1: error: the fixed value '128' of the element 'a' is "
                                                              "no value of its type: it lies outside maxInclusive 127"},
        {"<xs:attribute name='a' type='xs:date' default='2001-02-29'/>",
         "2:1: error: the default value '2001-02-29' of the attribute 'a' is no value of its type: it is not written "
         "as 'date' is"},
        {"<xs:attribute name='a' type='xs:NMTOKENS' default=''/>",
         "2:1: error: the default value '' of the attribute 'a' is no value of its type: its length is 0, below "
         "minLength 1"},
        {"<xs:attribute name='a' type='xs:NMTOKENS' default='a ?'/>",
         "2:1: error: the default value 'a ?' of the attribute 'a' is no value of its type: of its item '?', it is not "
         "written "
         "as 'NMTOKEN' is"},
        {"<xs:attribute name='a' type='xs:QName' default='p:a'/>",
         "2:1: error: the default value 'p:a' of the attribute 'a' is no value of its type: it is not written as "
         "'QName' is"},
        {"<xs:attribute name='a' type='xs:ID' default='x'/>",
         "2:1: error: the attribute 'a' is of type ID and cannot have a default or fixed value"},
        {"<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:date'/></xs:simpleType><xs:attribute name='a' "
         "type='u' default='x'/>",
         "2:81: error: the default value 'x' of the attribute 'a' is no value of its type: no member of the union "
         "takes it"},
        {Simple("xs:decimal", "<xs:enumeration value='1.50'/>") + "<xs:element name='a' type='t' default='1.5'/>", ""},
        {Simple("xs:decimal", "<xs:enumeration value='1.50'/>") + "<xs:element name='a' type='t' default='1.6'/>",
         "3:64: error: the default value '1.6' of the element 'a' is no value of its type: it is not one of the "
         "enumerated values"},
        {Simple("xs:decimal", "<xs:totalDigits value='3'/><xs:fractionDigits value='1'/>") +
             "<xs:element name='a' type='t' default='1234'/><xs:element name='b' type='t' default='1.23'/><xs:element "
             "name='c' "
             "type='t' default='0012.30'/>",
         "3:91: error: the default value '1234' of the element 'a' is no value of its type: it has more digits than "
         "totalDigits 3\n"
         "3:137: error: the default value '1.23' of the element 'b' is no value of its type: it has more digits than "
         "fractionDigits 1"},
        {Complex("<xs:sequence><xs:element name='x'/></xs:sequence>") + "<xs:element name='a' type='t' default='x'/>",
         "3:67: error: the element 'a' cannot have a default or fixed value, as its content is not text"},
        {"<xs:complexType name='t' mixed='true'/><xs:element name='a' type='t' default='x'/>", ""},
    });
}

TEST(SchemaChecks, Occurrence)
{
    ExpectMessages({
        {Complex("<xs:sequence><xs:element name='a' minOccurs='2'/></xs:sequence>"),
         "3:14: error: minOccurs 2 is above maxOccurs 1"},
        {Complex("<xs:sequence maxOccurs='0'/>"), "3:1: error: minOccurs 1 is above maxOccurs 0"},
        {Complex("<xs:sequence><xs:element name='a' maxOccurs='99999999999999999999'/></xs:sequence>"), ""},
        {Complex("<xs:all maxOccurs='2'/>"), "3:1: error: 'all' occurs once or, by minOccurs 0, not at all"},
        {Complex("<xs:all><xs:element name='a' maxOccurs='2'/></xs:all>"),
         "3:9: error: an element in 'all' occurs at most once"},
        {Complex("<xs:sequence><xs:all/></xs:sequence>"),
         "3:14: error: the element 'all' is not allowed in 'sequence'"},
        {"<xs:group name='g'><xs:all><xs:element name='a'/></xs:all></xs:group>" +
             Complex("<xs:sequence><xs:group ref='g'/></xs:sequence>"),
         "3:14: error: a group of 'all' stands alone, not within another group"},
        {"<xs:group name='g'><xs:all><xs:element name='a'/></xs:all></xs:group>" +
             Complex("<xs:group ref='g' maxOccurs='2'/>"),
         "3:1: error: a group of 'all' occurs at most once"},
        {"<xs:group name='g'><xs:all><xs:element name='a'/></xs:all></xs:group>" +
             Complex("<xs:group ref='g' minOccurs='0'/>"),
         ""},
        {Complex(
             "<xs:sequence><xs:element name='a' type='xs:int'/><xs:element name='a' type='xs:date'/></xs:sequence>"),
         "3:50: error: the element 'a' has another type than at s.xsd:3:14, in the same content"},
    });
}

TEST(SchemaChecks, Circles)
{
    ExpectMessages({
        {Complex("<xs:complexContent><xs:extension base='t'/></xs:complexContent>"),
         "2:1: error: the type 't' contains itself"},
        {Simple("b", "", "a") + "\n" + Simple("a", "", "b"), "2:1: error: the type 'a' contains itself by way of 'b'"},
        {"<xs:simpleType name='u'><xs:union memberTypes='xs:int l'/></xs:simpleType>\n<xs:simpleType name='l'><xs:list "
         "itemType='u'/></xs:simpleType>",
         "2:1: error: the type 'u' contains itself by way of 'l'"},
        {"<xs:group name='g'><xs:sequence><xs:choice><xs:group ref='h'/></xs:choice></xs:sequence></xs:group>\n"
         "<xs:group name='h'><xs:sequence><xs:group ref='g'/></xs:sequence></xs:group>",
         "2:1: error: the group 'g' contains itself by way of 'h'"},
        {"<xs:attributeGroup name='g'><xs:attributeGroup ref='g'/></xs:attributeGroup>",
         "2:1: error: the attribute group 'g' contains itself"},
        {"<xs:element name='a' substitutionGroup='b'/>\n<xs:element name='b' substitutionGroup='a'/>",
         "2:1: error: the substitution group of the element 'a' contains itself by way of 'b'"},
    });
}

TEST(SchemaChecks, ComplexDerivation)
{
    const std::string strBase =
        "<xs:complexType name='b'><xs:sequence><xs:element name='x'/></xs:sequence><xs:attribute name='r' "
        "use='required' type='xs:int'/><xs:attribute name='f' fixed='1'/></xs:complexType>";
    const auto extend =
        [](const std::string& strTo, const std::string& strContent, const std::string& strMixed = "false")
    {
        return Complex("<xs:complexContent mixed='" + strMixed + "'><xs:extension base='" + strTo + "'>" + strContent +
                       "</xs:extension></xs:complexContent>");
    };
    const auto restrict =
        [](const std::string& strTo, const std::string& strContent, const std::string& strKind = "complex")
    {
        return Complex("<xs:" + strKind + "Content><xs:restriction base='" + strTo + "'>\n" + strContent +
                       "</xs:restriction></xs:" + strKind + "Content>");
    };
    const std::string strSequence = "<xs:sequence><xs:element name='x'/></xs:sequence>";
    ExpectMessages({
        {extend("xs:int", ""),
         "2:1: error: the type 't' needs a complex type as its base, as it is written with complexContent"},
        {strBase + extend("b", strSequence, "true"),
         "2:179: error: the type 't' and its base must both be mixed, or neither"},
        {strBase + extend("b", "<xs:all><xs:element name='y'/></xs:all>"),
         "2:179: error: the type 't' cannot extend content where 'all' is on one side"},
        {strBase + extend("b", "<xs:attribute name='r'/>"),
         "3:57: error: the attribute 'r' stands in the base of the type already"},
        {"<xs:complexType name='b'><xs:simpleContent><xs:extension "
         "base='xs:int'/></xs:simpleContent></xs:complexType>" +
             extend("b", strSequence),
         "2:109: error: the type 't' cannot add elements, as the content of its base is simple"},
        {"<xs:complexType name='b' final='extension'/>" + extend("b", ""),
         "2:45: error: the type 'b' is final and admits no extension"},
        {"<xs:complexType name='b' final='restriction'/>" + restrict("b", ""),
         "2:47: error: the type 'b' is final and admits no restriction"},
        {strBase + restrict("b", strSequence + "<xs:attribute name='r'/>"),
         "4:50: error: the attribute 'r' is required in the base, so a restriction cannot leave it out\n"
         "4:50: error: the attribute 'r' has a type that is not derived from its type in the base"},
        {strBase + restrict("b", strSequence + "<xs:attribute name='f' use='optional'/>"),
         "4:50: error: the attribute 'f' is fixed to '1' in the base"},
        {strBase + restrict("b", strSequence + "<xs:attribute name='n'/>"),
         "4:50: error: the attribute 'n' is not one of the base, so a restriction cannot have it"},
        {strBase + restrict("b", strSequence + "<xs:anyAttribute/>"),
         "4:50: error: the wildcard lets attributes pass that the base does not"},
        {strBase + restrict("b", ""), "2:179: error: the type 't' has no elements, but its base requires some"},
        {restrict("xs:int", "<xs:minInclusive value='1'/>", "simple"),
         "2:1: error: the type 't' cannot restrict the content of a simple type; only an extension is possible"},
        {strBase + restrict("b", "", "simple"),
         "2:179: error: the type 't' is written with simpleContent, but the content of its base is not simple"},
    });
}

TEST(SchemaChecks, SimpleDerivation)
{
    const std::string strNarrow =
        Simple("xs:decimal", "<xs:minInclusive value='1'/><xs:maxExclusive value='9' fixed='true'/>", "n") + "\n";
    const std::string strShort = Simple("xs:string", "<xs:minLength value='2'/><xs:maxLength value='4'/>", "s") + "\n";
    const auto narrow = [&](const std::string& strFacets)
    {
        return strNarrow + Simple("n", strFacets);
    };
    const auto shorten = [&](const std::string& strFacets)
    {
        return strShort + Simple("s", strFacets);
    };
    ExpectMessages({
        {Simple("xs:anySimpleType", ""), "2:1: error: the type 't' cannot be a restriction of anySimpleType"},
        {"<xs:simpleType name='t'><xs:restriction/></xs:simpleType>",
         "2:25: error: a restriction of a simple type has either a base attribute or a simpleType"},
        {"<xs:simpleType name='t'><xs:list/></xs:simpleType>",
         "2:25: error: a list has either an itemType attribute or a simpleType"},
        {"<xs:simpleType name='t'><xs:union/></xs:simpleType>", "2:25: error: a union needs at least one member type"},
        {"<xs:simpleType name='t'><xs:list itemType='xs:IDREFS'/></xs:simpleType>",
         "2:1: error: the items of a list cannot be lists"},
        {"<xs:simpleType name='b' final='#all'><xs:restriction base='xs:int'/></xs:simpleType>" + Simple("b", ""),
         "2:85: error: 'b' is final and admits no restriction"},
        {Simple("xs:int", "<xs:length value='1'/>"), "3:1: error: the facet 'length' has no meaning for 'decimal'"},
        {Simple("xs:string", "<xs:totalDigits value='1'/>"),
         "3:1: error: the facet 'totalDigits' has no meaning for 'string'"},
        {Simple("xs:IDREFS", "<xs:minInclusive value='1'/>"),
         "3:1: error: the facet 'minInclusive' has no meaning for a list"},
        {Simple("xs:boolean", "<xs:enumeration value='true'/>"),
         "3:1: error: the facet 'enumeration' has no meaning for 'boolean'"},
        {"<xs:simpleType name='u'><xs:union memberTypes='xs:int'/></xs:simpleType>" +
             Simple("u", "<xs:maxLength value='1'/>"),
         "3:1: error: the facet 'maxLength' has no meaning for a union"},
        {Simple("xs:string", "<xs:length value='x'/>"),
         "3:1: error: the facet 'length' is 'x', where a non-negative integer is needed"},
        {Simple("xs:decimal", "<xs:totalDigits value='0'/>"),
         "3:1: error: the facet 'totalDigits' is '0', where a positive integer is needed"},
        {Simple("xs:string", "<xs:whiteSpace value='x'/>"),
         "3:1: error: the facet 'whiteSpace' is 'x', where 'preserve', 'replace' or 'collapse' is needed"},
        {Simple("xs:string", "<xs:length value='1'/><xs:length value='1'/>"),
         "3:23: error: the facet 'length' stands twice in one step"},
        {Simple("xs:int", "<xs:minInclusive value='x'/>"),
         "3:1: error: the facet 'minInclusive' is 'x', which is no value of 'int'"},
        {Simple("xs:token", "<xs:whiteSpace value='replace'/>"),
         "3:1: error: the facet 'whiteSpace' 'replace' does not narrow that of the base, 'collapse'"},
        {Simple("xs:int", "<xs:whiteSpace value='preserve'/>"),
         "3:1: error: the facet 'whiteSpace' is fixed to 'collapse' by the base"},
        {Simple("xs:int", "<xs:minInclusive value='5'/><xs:maxInclusive value='4'/>"),
         "3:29: error: the facet 'minInclusive' '5' and maxInclusive '4' leave no value"},
        {Simple("xs:int", "<xs:minInclusive value='5'/><xs:maxExclusive value='5'/>"),
         "3:29: error: the facet 'minInclusive' '5' and maxExclusive '5' leave no value"},
        {Simple("xs:int", "<xs:minInclusive value='5'/><xs:minExclusive value='5'/>"),
         "3:29: error: the facets 'minInclusive' and 'minExclusive' exclude each other"},
        {Simple("xs:date", "<xs:minInclusive value='2001-01-02'/><xs:maxInclusive value='2001-01-01'/>"),
         "3:38: error: the facet 'minInclusive' '2001-01-02' and maxInclusive '2001-01-01' leave no value"},
        {Simple("xs:string", "<xs:minLength value='5'/><xs:maxLength value='4'/>"),
         "3:26: error: the facet 'minLength' '5' and maxLength '4' leave no value"},
        {Simple("xs:decimal", "<xs:totalDigits value='2'/><xs:fractionDigits value='3'/>"),
         "3:1: error: the facet 'fractionDigits' '3' and totalDigits '2' leave no value"},
        {narrow("<xs:minInclusive value='0'/>"),
         "5:1: error: the facet 'minInclusive' '0' lies outside minInclusive '1' of the base"},
        {narrow("<xs:minInclusive value='9'/>"),
         "5:1: error: the facet 'minInclusive' '9' lies outside maxExclusive '9' of the base"},
        {narrow("<xs:maxExclusive value='8'/>"), "5:1: error: the facet 'maxExclusive' is fixed to '9' by the base"},
        {narrow("<xs:maxExclusive value='9.0'/>"), ""},
        {narrow("<xs:enumeration value='1'/><xs:enumeration value='9'/>"),
         "5:28: error: the enumeration '9' is no value of the base: it lies outside maxExclusive 9"},
        {shorten("<xs:minLength value='1'/>"),
         "5:1: error: the facet 'minLength' '1' does not narrow that of the base, '2'"},
        {shorten("<xs:maxLength value='5'/>"),
         "5:1: error: the facet 'maxLength' '5' does not narrow that of the base, '4'"},
        {shorten("<xs:length value='5'/>"), "5:1: error: the facet 'length' '5' and maxLength '4' leave no value"},
        {shorten("<xs:enumeration value='\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F'/>"), ""},
        {shorten("<xs:enumeration value='x'/>"),
         "5:1: error: the enumeration 'x' is no value of the base: its length is 1, below minLength 2"},
        {Simple("xs:NOTATION", "<xs:enumeration value='n'/>"),
         "3:1: error: the enumeration 'n' is no value of the base: there is no notation of this name"},
        {"<xs:notation name='n' public='p'/>" + Simple("xs:NOTATION", "<xs:enumeration value='n'/>"), ""},
    });
}

TEST(SchemaChecks, SubstitutionAndKeys)
{
    const std::string strKey = "<xs:key name='k'><xs:selector xpath='.'/><xs:field xpath='a'/></xs:key>";
    ExpectMessages({
        {"<xs:element name='h' type='xs:int'/>\n<xs:element name='m' type='xs:date' substitutionGroup='h'/>",
         "3:1: error: the element 'm' cannot be substituted for 'h', as its type is not derived from the head's"},
        {"<xs:element name='h' type='xs:int' final='restriction'/>\n<xs:element name='m' type='xs:byte' "
         "substitutionGroup='h'/>",
         "3:1: error: the element 'm' cannot be substituted for 'h', which is final"},
        {"<xs:element name='e'>" + strKey +
             "\n<xs:keyref name='r' refer='k'><xs:selector xpath='.'/><xs:field xpath='a'/><xs:field "
             "xpath='b'/></xs:keyref></xs:element>",
         "3:1: error: the keyref 'r' has 2 fields, what it refers to has 1"},
        {"<xs:element name='e'>" + strKey +
             "\n<xs:keyref name='r' refer='k'><xs:selector xpath='.'/><xs:field xpath='a'/></xs:keyref>"
             "\n<xs:keyref name='s' refer='r'><xs:selector xpath='.'/><xs:field xpath='a'/></xs:keyref></xs:element>",
         "4:1: error: the keyref 's' refers to another keyref"},
    });
}

// --- Schemas that are large, deep, or made to hurt

std::string Repeat(int nCount, const std::function<std::string(int)>& make)
{
    std::string strText;
    for (int n = 0; n < nCount; ++n)
        strText += make(n) + "\n";
    return strText;
}

std::string Number(int n)
{
    return std::to_string(n);
}

TEST(SchemaChecks, BearManyComponents)
{
    constexpr int nMany = 20000;
    EXPECT_EQ(
        GetSchemaMessages(Repeat(nMany, [](int n) { return "<xs:element name='e" + Number(n) + "' type='xs:int'/>"; })),
        "");
    EXPECT_EQ(GetSchemaMessages(
                  Complex("<xs:sequence>" +
                          Repeat(nMany, [](int n) { return "<xs:element name='e" + Number(n) + "' type='xs:int'/>"; }) +
                          "</xs:sequence>")),
              "");
    const auto enumerate = [](const std::string& strSuffix)
    {
        return Repeat(nMany, [&](int n) { return "<xs:enumeration value='" + Number(n) + strSuffix + "'/>"; });
    };
    EXPECT_EQ(GetSchemaMessages(Simple("xs:decimal", enumerate(".0"), "a") + Simple("a", enumerate(""))), "");
}

TEST(SchemaChecks, LimitChains)
{
    const auto group = [](int n)
    {
        const std::string strInner = n == 0 ? "" : "<xs:group ref='g" + Number(n - 1) + "'/>";
        return "<xs:group name='g" + Number(n) + "'><xs:sequence>" + strInner + "</xs:sequence></xs:group>";
    };
    EXPECT_EQ(GetSchemaMessages(Repeat(500, group)), "");
    EXPECT_EQ(GetSchemaMessages(Repeat(20000, group)),
              "s.xsd:502:1: error: the group 'g500' rests on a chain of more than 500 others\n");
    const auto type = [](int n)
    {
        return Simple(n == 0 ? "xs:int" : "t" + Number(n - 1), "", "t" + Number(n));
    };
    EXPECT_EQ(GetSchemaMessages(Repeat(20000, type)),
              "s.xsd:990:1: error: the type 't494' rests on a chain of more than 500 others\n");
    const auto element = [](int n)
    {
        return "<xs:element name='e" + Number(n) + "'" + (n == 0 ? "" : " substitutionGroup='e" + Number(n - 1) + "'") +
               "/>";
    };
    EXPECT_EQ(
        GetSchemaMessages(Repeat(20000, element)),
        "s.xsd:502:1: error: the substitution group of the element 'e500' rests on a chain of more than 500 others\n");
}

TEST(SchemaChecks, LimitParticlesThatNestByReferences)
{
    std::string strNested = "<xs:group ref='g'/>";
    for (int n = 0; n < 300; ++n)
        strNested = "<xs:sequence>" + strNested + "</xs:sequence>";
    std::string strGroup = "<xs:element name='a'/>";
    for (int n = 0; n < 300; ++n)
        strGroup = "<xs:sequence>" + strGroup + "</xs:sequence>";
    EXPECT_EQ(GetSchemaMessages("<xs:group name='g'>" + strGroup + "</xs:group>\n<xs:complexType name='t'>" +
                                strNested + "</xs:complexType>"),
              "s.xsd:3:1: error: the particles of the type 't' nest deeper than 500\n");
}

TEST(SchemaChecks, LimitWhatReferencesUnfoldTo)
{
    const auto group = [](int n)
    {
        const std::string strInner = n == 0 ? "<xs:element name='a'/>" : "<xs:group ref='g" + Number(n - 1) + "'/>";
        return "<xs:group name='g" + Number(n) + "'><xs:sequence>" + strInner + strInner + "</xs:sequence></xs:group>";
    };
    EXPECT_EQ(GetSchemaMessages(Repeat(60, group) + "<xs:complexType name='t'><xs:group ref='g59'/></xs:complexType>"),
              "s.xsd:62:1: error: the references of the schema unfold to more than 4000000 particles\n");
    const auto unite = [](int n)
    {
        const std::string strMember = n == 0 ? "xs:int" : "u" + Number(n - 1);
        return "<xs:simpleType name='u" + Number(n) + "'><xs:union memberTypes='" + strMember + " " + strMember +
               "'/></xs:simpleType>";
    };
    EXPECT_EQ(GetSchemaMessages(Repeat(60, unite)),
              "s.xsd:21:1: error: the references of the schema unfold to more than 4000000 members of unions\n");
    const std::string strAttributes = Repeat(5000, [](int n) { return "<xs:attribute name='a" + Number(n) + "'/>"; });
    EXPECT_EQ(GetSchemaMessages("<xs:attributeGroup name='g'>" + strAttributes + "</xs:attributeGroup>" +
                                Repeat(5000,
                                       [](int n) {
                                           return "<xs:complexType name='t" + Number(n) +
                                                  "'><xs:attributeGroup ref='g'/></xs:complexType>";
                                       }))
                  .substr(0, 30),
              "s.xsd:5402:1: error: the refer");
}

TEST(SchemaChecks, FindTheLongestCircle)
{
    const auto type = [](int n)
    {
        return "<xs:complexType name='t" + Number(n) + "'><xs:complexContent><xs:extension base='t" +
               Number((n + 1) % 20000) + "'/></xs:complexContent></xs:complexType>";
    };
    EXPECT_EQ(GetSchemaMessages(Repeat(20000, type)),
              "s.xsd:2:1: error: the type 't0' contains itself by way of 't1', 't2', 't3', 't4', 't5' and others\n");
}

} // namespace
