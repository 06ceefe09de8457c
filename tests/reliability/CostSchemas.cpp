#include "tests/reliability/Cost.h"

namespace cost
{

namespace
{

using SFiles = SSchemaShape::SFiles;

std::string No(std::size_t n)
{
    return std::to_string(n);
}

SFiles One(const std::string& strComponents)
{
    return {{"main.xsd", MakeSchema(strComponents)}};
}

template <class TPart>
SFiles OneOf(std::size_t nCount, TPart part, const std::string& strMore = {})
{
    return One(Repeat(nCount, part) + strMore);
}

std::string Type(const std::string& strName, const std::string& strContent)
{
    return "<xs:complexType name='" + strName + "'>" + strContent + "</xs:complexType>\n";
}

std::string Sequence(const std::string& strContent)
{
    return "<xs:sequence>" + strContent + "</xs:sequence>";
}

std::string Simple(const std::string& strName, const std::string& strContent)
{
    return "<xs:simpleType name='" + strName + "'>" + strContent + "</xs:simpleType>\n";
}

std::string Extension(const std::string& strBase, const std::string& strContent)
{
    return "<xs:complexContent><xs:extension base='" + strBase + "'>" + strContent +
           "</xs:extension></xs:complexContent>";
}

std::string Int(const std::string& strName, const char* lpcMore = "")
{
    return "<xs:element name='" + strName + "' type='xs:int' " + lpcMore + "/>";
}

const std::string s_strRoot = "<xs:element name='r' type='xs:int'/>\n";

/// A chain of documents, each of which refers to the next.
SFiles Chain(std::size_t nCount, bool bImport)
{
    SFiles files;
    for (std::size_t n = 0; n < nCount; ++n)
    {
        const std::string strNext = "part" + No(n + 1) + ".xsd";
        const std::string strSpace = bImport ? "urn:t" + No(n) : "urn:t";
        std::string strText = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:t='" + strSpace +
                              "' targetNamespace='" + strSpace + "' elementFormDefault='qualified'>\n";
        if (n + 1 < nCount)
            strText += bImport ? "<xs:import namespace='urn:t" + No(n + 1) + "' schemaLocation='" + strNext + "'/>\n"
                               : "<xs:include schemaLocation='" + strNext + "'/>\n";
        strText += Type("T" + No(n), Sequence(Int("a")));
        strText += n == 0 ? s_strRoot : std::string();
        files.emplace_back(n == 0 ? "main.xsd" : "part" + No(n) + ".xsd", strText + "</xs:schema>\n");
    }
    return files;
}

/// One document that refers to all of the others.
SFiles Star(std::size_t nCount, bool bImport)
{
    SFiles files;
    std::string strMain = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:t'>\n";
    for (std::size_t n = 0; n < nCount; ++n)
    {
        const std::string strSpace = bImport ? "urn:t" + No(n) : "urn:t";
        const std::string strFile = "part" + No(n) + ".xsd";
        strMain += bImport ? "<xs:import namespace='" + strSpace + "' schemaLocation='" + strFile + "'/>\n"
                           : "<xs:include schemaLocation='" + strFile + "'/>\n";
        files.emplace_back(strFile, "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='" +
                                        strSpace + "'>\n" + Type("T" + No(n), Sequence(Int("a"))) + "</xs:schema>\n");
    }
    files.insert(files.begin(), {"main.xsd", strMain + s_strRoot + "</xs:schema>\n"});
    return files;
}

/// Documents that redefine a type, one the work of the other.
SFiles Redefinitions(std::size_t nCount)
{
    SFiles files;
    for (std::size_t n = 0; n < nCount; ++n)
        files.emplace_back(n == 0 ? "main.xsd" : "part" + No(n) + ".xsd",
                           MakeSchema("<xs:redefine schemaLocation='part" + No(n + 1) + ".xsd'>" +
                                      Type("T", Extension("t:T", Sequence(Int("a" + No(n))))) + "</xs:redefine>\n"));
    files.emplace_back("part" + No(nCount) + ".xsd", MakeSchema(Type("T", Sequence(Int("a"))) + s_strRoot));
    return files;
}

} // namespace

const std::vector<SSchemaShape>& GetSchemaShapes()
{
    static const std::string s_strDocument = "<t:r xmlns:t='urn:t'>1</t:r>";
    static const std::vector<SSchemaShape> s_shapes = {
        {"types", 30,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Type("T" + No(i), Sequence(Int("a"))); }, s_strRoot);
         },
         s_strDocument},
        {"elements", 40,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Int("e" + No(i)) + "\n"; }, s_strRoot);
         },
         s_strDocument},
        {"elements of types of their own", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return "<xs:element name='e" + No(i) + "'><xs:complexType>" + Sequence(Int("a")) +
                            "</xs:complexType></xs:element>\n";
                 },
                 s_strRoot);
         },
         s_strDocument},
        {"members of one type", 40,
         [](std::size_t n)
         {
             return One(s_strRoot + Type("T", Sequence(Repeat(n, [](std::size_t i)
                                                              { return Int("m" + No(i), "minOccurs='0'"); }))));
         },
         s_strDocument},
        {"members of one choice", 40,
         [](std::size_t n)
         {
             return One(
                 s_strRoot +
                 Type("T", "<xs:choice>" + Repeat(n, [](std::size_t i) { return Int("m" + No(i)); }) + "</xs:choice>"));
         },
         s_strDocument},
        {"members of one all", 40,
         [](std::size_t n)
         {
             return One(s_strRoot + Type("T", "<xs:all>" + Repeat(n, [](std::size_t i) { return Int("m" + No(i)); }) +
                                                  "</xs:all>"));
         },
         s_strDocument},
        {"members of the same name", 40,
         [](std::size_t n)
         { return One(s_strRoot + Type("T", Sequence(Repeat(n, [](std::size_t) { return Int("m"); })))); },
         s_strDocument},
        {"attributes of one type", 40,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Type("T", Repeat(n, [](std::size_t i)
                                         { return "<xs:attribute name='a" + No(i) + "' type='xs:int'/>"; })));
         },
         s_strDocument},
        {"global attributes", 40,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return "<xs:attribute name='a" + No(i) + "' type='xs:int'/>\n"; }, s_strRoot);
         },
         s_strDocument},
        {"attribute groups in attribute groups", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return "<xs:attributeGroup name='G" + No(i + 1) + "'><xs:attributeGroup ref='t:G" + No(i) +
                            "'/></xs:attributeGroup>\n";
                 },
                 s_strRoot + "<xs:attributeGroup name='G0'><xs:attribute name='a'/></xs:attributeGroup>" +
                     Type("T", "<xs:attributeGroup ref='t:G" + No(n) + "'/>"));
         },
         s_strDocument},
        {"derivation in depth, empty", 20,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Type("T" + No(i + 1), Extension("t:T" + No(i), "")); },
                 s_strRoot + Type("T0", Sequence(Int("a"))));
         },
         s_strDocument},
        {"derivation in depth, with a member each", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return Type("T" + No(i + 1), Extension("t:T" + No(i), Sequence(Int("m" + No(i))))); },
                 s_strRoot + Type("T0", Sequence(Int("a"))));
         },
         s_strDocument},
        {"derivation in depth, used at the top", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Type("T" + No(i + 1), Extension("t:T" + No(i), "")); },
                 s_strRoot + "<xs:element name='e' type='t:T0'/>" + Type("T0", Sequence(Int("a"))));
         },
         s_strDocument},
        {"derivation in breadth, used at the top", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Type("T" + No(i + 1), Extension("t:T0", "")); },
                 s_strRoot + "<xs:element name='e' type='t:T0'/>" + Type("T0", Sequence(Int("a"))));
         },
         s_strDocument},
        {"restrictions of restrictions", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return Type("T" + No(i + 1), "<xs:complexContent><xs:restriction base='t:T" + No(i) + "'>" +
                                                      Sequence(Int("a")) + "</xs:restriction></xs:complexContent>");
                 },
                 s_strRoot + Type("T0", Sequence(Int("a"))));
         },
         s_strDocument},
        {"one restriction of many members", 20,
         [](std::size_t n)
         {
             const std::string strMembers =
                 Sequence(Repeat(n, [](std::size_t i) { return Int("m" + No(i), "minOccurs='0'"); }));
             return One(s_strRoot + Type("T0", strMembers) +
                        Type("T1", "<xs:complexContent><xs:restriction base='t:T0'>" + strMembers +
                                       "</xs:restriction></xs:complexContent>"));
         },
         s_strDocument},
        {"simple types in depth", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Simple("S" + No(i + 1), "<xs:restriction base='t:S" + No(i) + "'/>"); },
                 s_strRoot + Simple("S0", "<xs:restriction base='xs:string'/>"));
         },
         s_strDocument},
        {"patterns in depth", 20,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return Simple("S" + No(i + 1), "<xs:restriction base='t:S" + No(i) +
                                                        "'><xs:pattern value='[a-z]*'/></xs:restriction>");
                 },
                 s_strRoot + Simple("S0", "<xs:restriction base='xs:string'/>"));
         },
         s_strDocument},
        {"one long pattern", 60,
         [](std::size_t n)
         {
             return One(s_strRoot + Simple("S", "<xs:restriction base='xs:string'><xs:pattern value='" +
                                                    Times(n, "([a-z]|\\d)*") + "'/></xs:restriction>"));
         },
         s_strDocument},
        {"groups in a pattern", 150,
         [](std::size_t n)
         {
             return One(s_strRoot + Simple("S", "<xs:restriction base='xs:string'><xs:pattern value='" +
                                                    Times(n, "(a") + Times(n, ")*") + "'/></xs:restriction>"));
         },
         s_strDocument},
        {"classes subtracted in a pattern", 100,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Simple("S", "<xs:restriction base='xs:string'><xs:pattern value='" + Times(n, "[a-z-") + "[b]" +
                                        Times(n, "]") + "'/></xs:restriction>"));
         },
         s_strDocument},
        {"one class of many ranges", 150,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Simple("S", "<xs:restriction base='xs:string'><xs:pattern value='[" +
                                        Repeat(n, [](std::size_t i) { return "&#" + No(1000 + i * 3) + ";"; }) +
                                        "]'/></xs:restriction>"));
         },
         s_strDocument},
        {"many patterns", 40,
         [](std::size_t n)
         {
             return One(s_strRoot + Simple("S", "<xs:restriction base='xs:string'>" +
                                                    Times(n, "<xs:pattern value='\\p{L}*'/>") + "</xs:restriction>"));
         },
         s_strDocument},
        {"enumerations", 60,
         [](std::size_t n)
         {
             return One(s_strRoot + Simple("S", "<xs:restriction base='xs:string'>" +
                                                    Repeat(n, [](std::size_t i)
                                                           { return "<xs:enumeration value='v" + No(i) + "'/>"; }) +
                                                    "</xs:restriction>"));
         },
         s_strDocument},
        {"enumerations of numbers", 60,
         [](std::size_t n)
         {
             return One(s_strRoot + Simple("S", "<xs:restriction base='xs:decimal'>" +
                                                    Repeat(n, [](std::size_t i)
                                                           { return "<xs:enumeration value='" + No(i) + ".0'/>"; }) +
                                                    "</xs:restriction>"));
         },
         s_strDocument},
        {"enumerations whose names collide", 60,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Simple("S", "<xs:restriction base='xs:string'>" +
                                        Repeat(n, [](std::size_t i)
                                               { return "<xs:enumeration value='" + Times(i, "-") + "'/>"; }) +
                                        "</xs:restriction>"));
         },
         s_strDocument},
        {"enumerations in depth", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return Simple("S" + No(i + 1),
                                   "<xs:restriction base='t:S" + No(i) +
                                       "'><xs:enumeration value='a'/><xs:enumeration value='b'/></xs:restriction>");
                 },
                 s_strRoot + Simple("S0", "<xs:restriction base='xs:string'/>"));
         },
         s_strDocument},
        {"members of a union", 40,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Simple("S" + No(i), "<xs:restriction base='xs:int'/>"); },
                 s_strRoot + Simple("U", "<xs:union memberTypes='" +
                                             Repeat(n, [](std::size_t i) { return "t:S" + No(i) + " "; }) + "'/>"));
         },
         s_strDocument},
        {"unions of unions", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return Simple("U" + No(i + 1), "<xs:union memberTypes='t:U" + No(i) + " xs:int'/>"); },
                 s_strRoot + Simple("U0", "<xs:union memberTypes='xs:date xs:boolean'/>"));
         },
         s_strDocument},
        {"enumerated unions in unions", 3,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return Simple("U" + No(i + 1), "<xs:restriction><xs:simpleType><xs:union memberTypes='t:U" +
                                                        No(i) +
                                                        " xs:date'/></xs:simpleType><xs:enumeration "
                                                        "value='1'/><xs:enumeration value='2'/></xs:restriction>");
                 },
                 s_strRoot + Simple("U0", "<xs:union memberTypes='xs:int xs:boolean'/>"));
         },
         s_strDocument},
        {"an enumerated union of nested unions", 3,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return Simple("U" + No(i + 1), "<xs:union memberTypes='t:U" + No(i) + " xs:date'/>"); },
                 s_strRoot + Simple("U0", "<xs:union memberTypes='xs:int xs:boolean'/>") +
                     Simple("E", "<xs:restriction base='t:U" + No(n) +
                                     "'><xs:enumeration value='1'/><xs:enumeration value='2'/></xs:restriction>"));
         },
         s_strDocument},
        {"lists of unions", 20,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return Simple("U" + No(i), "<xs:union memberTypes='xs:int xs:date'/>") +
                            Simple("L" + No(i), "<xs:list itemType='t:U" + No(i) + "'/>");
                 },
                 s_strRoot);
         },
         s_strDocument},
        {"groups in groups", 20,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i) {
                     return "<xs:group name='G" + No(i + 1) + "'>" + Sequence("<xs:group ref='t:G" + No(i) + "'/>") +
                            "</xs:group>\n";
                 },
                 s_strRoot + "<xs:group name='G0'>" + Sequence(Int("a")) + "</xs:group>" +
                     Type("T", "<xs:group ref='t:G" + No(n) + "'/>"));
         },
         s_strDocument},
        {"groups in groups, with a member each", 15,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return "<xs:group name='G" + No(i + 1) + "'>" +
                            Sequence("<xs:group ref='t:G" + No(i) + "'/>" + Int("m" + No(i))) + "</xs:group>\n";
                 },
                 s_strRoot + "<xs:group name='G0'>" + Sequence(Int("a")) + "</xs:group>" +
                     Type("T", "<xs:group ref='t:G" + No(n) + "'/>"));
         },
         s_strDocument},
        {"groups in groups, repeated", 10,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 {
                     return "<xs:group name='G" + No(i + 1) + "'><xs:choice><xs:group ref='t:G" + No(i) +
                            "' maxOccurs='unbounded'/>" + Int("m" + No(i)) + "</xs:choice></xs:group>\n";
                 },
                 s_strRoot + "<xs:group name='G0'>" + Sequence(Int("a")) + "</xs:group>" +
                     Type("T", "<xs:group ref='t:G" + No(n) + "'/>"));
         },
         s_strDocument},
        {"sequences in sequences", 10,
         [](std::size_t n)
         { return One(s_strRoot + Type("T", Times(n, "<xs:sequence>") + Int("a") + Times(n, "</xs:sequence>"))); },
         s_strDocument},
        {"choices and sequences by turns", 5,
         [](std::size_t n)
         {
             return One(
                 s_strRoot +
                 Type("T", Repeat(n, [](std::size_t i)
                                  { return "<xs:sequence>" + Int("a" + No(i)) + "<xs:choice>" + Int("b" + No(i)); }) +
                               Times(n, "</xs:choice></xs:sequence>")));
         },
         s_strDocument},
        {"elements in elements", 4,
         [](std::size_t n)
         {
             return One(
                 s_strRoot +
                 Type("T", Repeat(n, [](std::size_t i)
                                  { return "<xs:sequence><xs:element name='e" + No(i) + "'><xs:complexType>"; }) +
                               Times(n, "</xs:complexType></xs:element></xs:sequence>")));
         },
         s_strDocument},
        {"one substitution group", 30,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return "<xs:element name='s" + No(i) + "' type='t:H' substitutionGroup='t:h'/>\n"; },
                 s_strRoot + "<xs:complexType name='H'/><xs:element name='h' type='t:H'/>" +
                     Type("T", Sequence("<xs:element ref='t:h'/>")));
         },
         s_strDocument},
        {"substitution groups in depth", 30,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i) {
                     return "<xs:element name='s" + No(i + 1) + "' type='t:H' substitutionGroup='t:s" + No(i) + "'/>\n";
                 },
                 s_strRoot + "<xs:complexType name='H'/><xs:element name='s0' type='t:H'/>" +
                     Type("T", Sequence("<xs:element ref='t:s0'/>")));
         },
         s_strDocument},
        {"one substitution group of values", 30,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return "<xs:element name='s" + No(i) + "' type='xs:int' substitutionGroup='t:h'/>\n"; },
                 s_strRoot + "<xs:element name='h' type='xs:int'/>" + Type("T", Sequence("<xs:element ref='t:h'/>")));
         },
         s_strDocument},
        {"types that refer to the next", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i)
                 { return Type("T" + No(i), Sequence("<xs:element name='a' type='t:T" + No(i + 1) + "'/>")); },
                 s_strRoot + Type("T" + No(n), ""));
         },
         s_strDocument},
        {"types that refer to one before", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t i) {
                     return Type("T" + No(i + 1),
                                 Sequence("<xs:element name='a' type='t:T" + No(i) + "' minOccurs='0'/>"));
                 },
                 s_strRoot + Type("T0", ""));
         },
         s_strDocument},
        {"names that differ by case", 30,
         [](std::size_t n)
         {
             return One(s_strRoot + Type("T", Sequence(Repeat(n,
                                                              [](std::size_t i) {
                                                                  return Int((i % 2 == 0 ? "m-" : "M_") +
                                                                                 Times(i / 2, "-"),
                                                                             "minOccurs='0'");
                                                              }))));
         },
         s_strDocument},
        {"types whose names collide", 25,
         [](std::size_t n)
         {
             return OneOf(
                 n, [](std::size_t i) { return Type("T" + Times(i, "-"), Sequence(Int("a"))); }, s_strRoot);
         },
         s_strDocument},
        {"documentation", 60,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Type("T", "<xs:annotation><xs:documentation>" + Times(n, "A sentence with some words. ") +
                                      "</xs:documentation></xs:annotation>" + Sequence(Int("a"))));
         },
         s_strDocument},
        {"annotations", 40,
         [](std::size_t n)
         {
             return OneOf(
                 n,
                 [](std::size_t)
                 { return "<xs:annotation><xs:documentation>words</xs:documentation></xs:annotation>\n"; },
                 s_strRoot);
         },
         s_strDocument},
        {"keys", 30,
         [](std::size_t n)
         {
             return One(s_strRoot + "<xs:element name='k' type='xs:int'>" +
                        Repeat(n,
                               [](std::size_t i) {
                                   return "<xs:key name='k" + No(i) +
                                          "'><xs:selector xpath='a/b'/><xs:field xpath='@c'/></xs:key>";
                               }) +
                        "</xs:element>");
         },
         s_strDocument},
        {"wildcards", 30,
         [](std::size_t n)
         {
             return One(s_strRoot + Type("T", Sequence(Repeat(n,
                                                              [](std::size_t i) {
                                                                  return Int("a" + No(i)) + "<xs:any namespace='urn:o" +
                                                                         No(i) + "' processContents='lax'/>";
                                                              }))));
         },
         s_strDocument},
        {"namespaces of a wildcard", 100,
         [](std::size_t n)
         {
             return One(s_strRoot +
                        Type("T", Sequence("<xs:any namespace='" +
                                           Repeat(n, [](std::size_t i) { return "urn:o" + No(i) + " "; }) + "'/>")));
         },
         s_strDocument},
        {"a chain of includes", 8, [](std::size_t n) { return Chain(n, false); }, s_strDocument},
        {"a chain of imports", 8, [](std::size_t n) { return Chain(n, true); }, "<t:r xmlns:t='urn:t0'>1</t:r>"},
        {"a star of includes", 8, [](std::size_t n) { return Star(n, false); }, s_strDocument},
        {"a star of imports", 8, [](std::size_t n) { return Star(n, true); }, s_strDocument},
        {"redefinitions of redefinitions", 6, Redefinitions, s_strDocument},
    };
    return s_shapes;
}

} // namespace cost
