#include "tests/support/Bindings.h"
#include "tools/quiver-gen/binding/Warnings.h"

#include <map>
#include <set>

using namespace QvTest;
using namespace quiver_gen::binding;

namespace
{

/// For each kind of warning, components that lead to it and the message.
const std::map<std::string, std::pair<std::string, std::string>> s_places = {
    {"wildcard-content", {}}, // takes --root; see below
    {"any-type",
     {"<xs:element name='a'/>",
      "s.xsd:2:1: warning: the element a may hold anything, which is kept as open elements\n"}},
    {"mixed",
     {"<xs:complexType name='t' mixed='true'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence>"
      "</xs:complexType>",
      "s.xsd:2:1: warning: text between the elements is joined, and its place among them is not kept\n"}},
    {"identity",
     {"<xs:element name='a' type='xs:int'>\n<xs:key name='k'><xs:selector xpath='.'/><xs:field xpath='@b'/></xs:key>"
      "</xs:element>",
      "s.xsd:3:1: warning: the identity constraint key k is not checked\n"}},
    {"id",
     {"<xs:complexType name='t'><xs:attribute name='a' type='xs:ID'/></xs:complexType>",
      "s.xsd:2:26: warning: that each ID occurs once and each IDREF names one is not checked\n"}},
    {"nillable",
     {"<xs:complexType name='t'/>\n<xs:element name='a' type='t' nillable='true'/>\n<xs:element name='b' type='t'/>",
      "s.xsd:4:1: warning: xsi:nil is read at b too, since it may be used at another element of this type\n"}},
    {"block",
     {"<xs:complexType name='t'/>\n<xs:complexType name='d'><xs:complexContent><xs:extension base='t'/>"
      "</xs:complexContent></xs:complexType>\n<xs:complexType name='r'><xs:complexContent><xs:restriction base='t'/>"
      "</xs:complexContent></xs:complexType>\n<xs:complexType name='u'><xs:sequence>\n"
      "<xs:element name='a' type='t' block='extension'/></xs:sequence></xs:complexType>",
      "s.xsd:6:1: warning: xsi:type may name any derived type at a, although some are blocked\n"}},
    {"pattern",
     {"<xs:simpleType name='t'><xs:restriction base='xs:string'>\n<xs:pattern value='a{70000}'/>\n"
      "<xs:pattern value='((ab){1,1000}){1,1000}'/></xs:restriction></xs:simpleType>",
      "s.xsd:3:1: warning: the pattern a{70000} cannot be translated and is not checked\n"}},
    {"qname",
     {"<xs:simpleType name='t'><xs:restriction><xs:simpleType><xs:union memberTypes='xs:int xs:QName'/>"
      "</xs:simpleType><xs:enumeration value='xs:a'/></xs:restriction></xs:simpleType>",
      "s.xsd:2:1: warning: values are compared with the prefixes that the schema uses\n"}},
    {"empty-choice",
     {"<xs:complexType name='t'><xs:choice/></xs:complexType>",
      "s.xsd:2:26: warning: a choice without alternatives is read as empty\n"}},
    {"abstract-element",
     {"<xs:element name='a' type='xs:int' abstract='true'/>\n<xs:complexType name='t'><xs:sequence><xs:element "
      "ref='a'/>"
      "</xs:sequence></xs:complexType>",
      "s.xsd:3:39: warning: the abstract element a has no substitutes, and is read itself\n"}},
    {"restriction",
     {"<xs:complexType name='t'><xs:sequence><xs:any processContents='skip'/></xs:sequence></xs:complexType>\n"
      "<xs:complexType name='r'><xs:complexContent><xs:restriction base='t'><xs:sequence>\n"
      "<xs:element name='a' type='xs:int'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>",
      "s.xsd:4:1: warning: a has no counterpart in the base class, which cannot show it\n"}},
    {"held-as-base",
     {"<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:token'/></xs:simpleType>\n"
      "<xs:complexType name='t'><xs:attribute name='a' type='u'/></xs:complexType>\n"
      "<xs:complexType name='r'><xs:complexContent><xs:restriction base='t'>\n"
      "<xs:attribute name='a' type='xs:int'/></xs:restriction></xs:complexContent></xs:complexType>",
      "s.xsd:5:1: warning: values of a are checked as in the base class only\n"}},
    {"shared-value",
     {"<xs:complexType name='u'><xs:simpleContent><xs:extension base='xs:int'/></xs:simpleContent></xs:complexType>\n"
      "<xs:element name='r' type='u' default='1'/>\n"
      "<xs:complexType name='t'><xs:sequence><xs:element ref='r'/>\n"
      "<xs:element name='a' type='u' fixed='2'/></xs:sequence></xs:complexType>",
      "s.xsd:3:1: warning: the default or fixed value of r is not looked at, since the element may have attributes\n"
      "s.xsd:5:1: warning: the default or fixed value of a is not looked at, since the element may have attributes\n"}},
    {"occurrence",
     {"<xs:complexType name='t'><xs:sequence>\n<xs:element name='a' type='xs:int' "
      "maxOccurs='4000000000'/></xs:sequence>"
      "</xs:complexType>",
      "s.xsd:3:1: warning: a number above 2147483647 is read as that, or as no limit\n"}},
    {"mapped-to-text", {}}, // takes a rule; see below
};

TEST(BindingWarnings, NameEveryPlaceThatIsLooser)
{
    for (const SWarningKind& kind : s_warnings)
    {
        const auto it = s_places.find(std::string(kind.svId));
        ASSERT_NE(it, s_places.end()) << kind.svId << " has no example";
        if (it->second.first.empty())
            continue;
        const CBoundSchemas bound({{"s.xsd", WrapSchema(it->second.first)}});
        EXPECT_TRUE(bound.IsBound()) << kind.svId;
        EXPECT_EQ(bound.GetMessages(), it->second.second) << kind.svId;
    }
}

TEST(BindingWarnings, TellThatANumberIsHeldAsText)
{
    SBindingOptions options;
    options.maps.push_back({{"", "t"}, EValue::String});
    EXPECT_EQ(BindToText("<xs:simpleType name='t'><xs:restriction base='xs:decimal'><xs:minInclusive value='0'/>"
                         "<xs:fractionDigits value='2'/></xs:restriction></xs:simpleType>",
                         {}, options),
              "namespace s \"\" in S\n  simple ST = t: String xs::String collapse\n"
              "s.xsd:2:1: warning: the bounds of ST are not checked, since it is held as text\n");
}

TEST(BindingWarnings, TellThatElementsWithoutAClassPass)
{
    SBindingOptions options;
    options.roots = {"a"};
    EXPECT_EQ(
        BindToText("<xs:element name='a'><xs:complexType><xs:sequence><xs:any/></xs:sequence>"
                   "<xs:anyAttribute/></xs:complexType></xs:element><xs:element name='b' type='xs:int'/>",
                   {}, options),
        "namespace s \"\" in S\n  class CA: sequence <a>\n    Any: required wildcard any lax\n    @*: any strict\n"
        "root A <a>: s::CA\n"
        "s.xsd:2:51: warning: elements that were not asked for pass here unchecked\n");
}

TEST(BindingWarnings, AreDocumentedOnce)
{
    std::set<std::string_view> ids;
    for (const SWarningKind& kind : s_warnings)
    {
        EXPECT_TRUE(ids.insert(kind.svId).second) << kind.svId;
        EXPECT_FALSE(kind.svText.empty()) << kind.svId;
        EXPECT_EQ(kind.svWhy.back(), '.') << kind.svId;
    }
}

TEST(BindingWarnings, AreNotRepeatedForOnePlace)
{
    EXPECT_EQ(CBoundSchemas({{"s.xsd", WrapSchema(R"(<xs:attributeGroup name='g'><xs:attribute name='a' type='xs:ID'/>
<xs:anyAttribute/></xs:attributeGroup><xs:group name='c'><xs:sequence><xs:any/></xs:sequence></xs:group>
<xs:complexType name='t'><xs:group ref='c'/><xs:attributeGroup ref='g'/></xs:complexType>
<xs:complexType name='u'><xs:group ref='c'/><xs:attributeGroup ref='g'/></xs:complexType>)")}})
                  .GetMessages(),
              "s.xsd:2:29: warning: that each ID occurs once and each IDREF names one is not checked\n");
}

} // namespace
