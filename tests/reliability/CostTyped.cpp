#include "tests/reliability/Cost.h"

namespace cost
{

namespace
{

using QvXmlLib9::CXmlSerializationContext;

std::string No(std::size_t n)
{
    return std::to_string(n);
}

constexpr const char* s_lpcRoot = "<t:r xmlns:t='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>";

std::string In(const std::string& strContent)
{
    return s_lpcRoot + strContent + "</t:r>";
}

/// A root of one kind of element, any number of them.
std::string RootOf(const std::string& strElement)
{
    return "<xs:element name='r'><xs:complexType><xs:sequence>" + strElement +
           "</xs:sequence></xs:complexType></xs:element>";
}

/// A root of values of a built-in type.
std::string Values(const std::string& strType)
{
    return RootOf("<xs:element name='v' type='" + strType + "' minOccurs='0' maxOccurs='unbounded'/>");
}

/// A root of values of a type of its own, which is called V.
std::string OwnValues(const std::string& strType)
{
    return Values("t:V") + "<xs:simpleType name='V'>" + strType + "</xs:simpleType>";
}

std::string Restriction(const std::string& strBase, const std::string& strFacets)
{
    return "<xs:restriction base='" + strBase + "'>" + strFacets + "</xs:restriction>";
}

STypedShape Make(const char* lpcName, std::size_t nStart, const std::string& strComponents,
                 std::function<std::string(std::size_t)> fnContent,
                 std::function<void(CXmlSerializationContext&, std::size_t)> fnSetUp = nullptr)
{
    STypedShape shape;
    shape.lpcName = lpcName;
    shape.nStart = nStart;
    shape.fnMake = [fnContent](std::size_t n)
    {
        return In(fnContent(n));
    };
    shape.fnSetUp = std::move(fnSetUp);
    shape.strSchema = MakeSchema(strComponents);
    shape.strFirst = In(shape.fnSetUp != nullptr ? "" : fnContent(1));
    return shape;
}

/// Many values, one like the other.
STypedShape Same(const char* lpcName, const std::string& strComponents, const std::string& strValue)
{
    const std::string strOne = "<t:v>" + strValue + "</t:v>";
    return Make(lpcName, 3000 / strOne.size() + 1, strComponents,
                [strOne](std::size_t n) { return Times(n, strOne.c_str()); });
}

/// One value that grows.
STypedShape Long(const char* lpcName, const std::string& strComponents, const std::string& strUnit)
{
    return Make(lpcName, 2000 / strUnit.size() + 1, strComponents,
                [strUnit](std::size_t n) { return "<t:v>" + Times(n, strUnit.c_str()) + "</t:v>"; });
}

void Tolerate(CXmlSerializationContext& context, std::size_t)
{
    context.SetIgnoreUnknownElements(true);
    context.SetIgnoreUnknownAttributes(true);
}

void TolerateGaps(CXmlSerializationContext& context, std::size_t)
{
    context.SetIgnoreMissingMandatoryElements(true);
    context.SetIgnoreInvalidCollectionCounts(true);
    context.SetIgnoreMissingChoice(true);
}

std::string Recursive(const std::string& strInner = "<xs:element name='v' type='xs:int' minOccurs='0'/>")
{
    return RootOf("<xs:element name='n' type='t:N'/>") +
           "<xs:complexType name='N'><xs:sequence><xs:element name='n' type='t:N' minOccurs='0'/>" + strInner +
           "</xs:sequence></xs:complexType>";
}

std::string Deep(std::size_t n, const std::string& strInner)
{
    return Times(n, "<t:n>") + strInner + Times(n, "</t:n>");
}

std::vector<STypedShape> MakeShapes()
{
    std::vector<STypedShape> shapes;
    const auto Add = [&shapes](STypedShape shape)
    {
        shapes.push_back(std::move(shape));
    };

    // Values
    Add(Same("strings", Values("xs:string"), "some text"));
    Add(Same("ints", Values("xs:int"), "12345"));
    Add(Same("doubles", Values("xs:double"), "1.2345678901234E-17"));
    Add(Same("doubles of many digits", Values("xs:double"), Times(300, "1") + "." + Times(300, "2")));
    Add(Same("decimals", Values("xs:decimal"), "12345.678"));
    Add(Same("decimals of 1000 digits", Values("xs:decimal"), Times(500, "1") + "." + Times(500, "3")));
    Add(Same("decimals with long zeros", OwnValues(Restriction("xs:decimal", "<xs:totalDigits value='5'/>")),
             Times(500, "0") + "1"));
    Add(Long("one integer", Values("xs:integer"), "7"));
    Add(Same("integers", Values("xs:integer"), "123456789012345678901234567890"));
    Add(Same("dates and times", Values("xs:dateTime"), "2026-11-22T07:10:01.123Z"));
    Add(Same("durations", Values("xs:duration"), "P1Y2M3DT4H5M6.7S"));
    Add(Same("booleans", Values("xs:boolean"), "true"));
    Add(Long("one base64 value", Values("xs:base64Binary"), "QUJD"));
    Add(Long("one base64 value with white space", Values("xs:base64Binary"), "QUJD \n"));
    Add(Same("base64 values", Values("xs:base64Binary"), "QUJDRA=="));
    Add(Long("one hexBinary value", Values("xs:hexBinary"), "4a"));
    Add(Same("hexBinary values", Values("xs:hexBinary"), "0123456789abcdef"));
    Add(Same("QNames", Values("xs:QName"), "t:name"));
    Add(Make("QNames with one prefix, bound anew each time", 40, Values("xs:QName"),
             [](std::size_t n)
             { return Repeat(n, [](std::size_t i) { return "<t:v xmlns:p='urn:" + No(i) + "'>p:x</t:v>"; }); }));
    Add(Make("QNames without a prefix, in another namespace each time", 40, Values("xs:QName"),
             [](std::size_t n)
             { return Repeat(n, [](std::size_t i) { return "<t:v xmlns='urn:" + No(i) + "'>x</t:v>"; }); }));
    Add(Make("QNames with a prefix each", 40, Values("xs:QName"),
             [](std::size_t n)
             {
                 return Repeat(n, [](std::size_t i)
                               { return "<t:v xmlns:p" + No(i) + "='urn:" + No(i) + "'>p" + No(i) + ":x</t:v>"; });
             }));
    Add(Make("a list of QNames with a prefix each", 60, OwnValues("<xs:list itemType='xs:QName'/>"),
             [](std::size_t n)
             {
                 return "<t:v" + Repeat(n, [](std::size_t i) { return " xmlns:p" + No(i) + "='urn:" + No(i) + "'"; }) +
                        ">" + Repeat(n, [](std::size_t i) { return "p" + No(i) + ":x "; }) + "</t:v>";
             }));
    Add(Long("one string", Values("xs:string"), "text "));
    Add(Long("one string that is replaced", Values("xs:normalizedString"), "a\tb\n"));
    Add(Long("one string that collapses", Values("xs:token"), "a  "));
    Add(Long("a string with a length", OwnValues(Restriction("xs:string", "<xs:maxLength value='100000000'/>")),
             "text"));

    // Facets
    Add(Long("a pattern of one class", OwnValues(Restriction("xs:string", "<xs:pattern value='[a-z]*'/>")), "abc"));
    Add(Long("a pattern of two ways", OwnValues(Restriction("xs:string", "<xs:pattern value='(a|b)*'/>")), "ab"));
    Add(Long("a pattern of Unicode classes", OwnValues(Restriction("xs:string", "<xs:pattern value='(\\p{L}|\\d)*'/>")),
             "a1"));
    Add(Same("patterns", OwnValues(Restriction("xs:string", "<xs:pattern value='[A-Z]{2}-\\d{4}'/>")), "AB-1234"));
    const auto Enumerations = [](std::size_t n)
    {
        return Repeat(n, [](std::size_t i) { return "<xs:enumeration value='value" + No(i) + "'/>"; });
    };
    Add(Same("enumerations", OwnValues(Restriction("xs:string", Enumerations(500))), "value499"));
    Add(Same("lists", OwnValues("<xs:list itemType='xs:int'/>"), "1 2 3"));
    Add(Long("one list", OwnValues("<xs:list itemType='xs:int'/>"), "123 "));
    Add(Long("one list of strings", OwnValues("<xs:list itemType='xs:NMTOKEN'/>"), "ab "));
    Add(Long("one list of NMTOKENS", Values("xs:NMTOKENS"), "ab "));
    Add(Same("unions", OwnValues("<xs:union memberTypes='xs:int xs:date xs:boolean'/>"), "2026-11-22"));
    Add(Long("one list of a union",
             OwnValues("<xs:list><xs:simpleType><xs:union memberTypes='xs:int xs:date'/></xs:simpleType></xs:list>"),
             "2026-11-22 "));
    Add(Same("bounds",
             OwnValues(Restriction("xs:decimal", "<xs:minInclusive value='-90.5'/><xs:maxInclusive value='90'/>")),
             "12.5"));

    // Content
    Add(Make("a sequence, repeated", 60,
             RootOf("<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/><xs:element "
                    "name='b' type='xs:int' minOccurs='0'/></xs:sequence>"),
             [](std::size_t n) { return Times(n, "<t:a>1</t:a><t:b>2</t:b>"); }));
    Add(Make(
        "a sequence of one element, repeated", 120,
        RootOf("<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/></xs:sequence>"),
        [](std::size_t n) { return Times(n, "<t:a>1</t:a>"); }));
    Add(Make("a choice, repeated", 60,
             RootOf("<xs:choice minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/><xs:element "
                    "name='b' type='xs:int'/></xs:choice>"),
             [](std::size_t n) { return Times(n, "<t:b>1</t:b><t:a>2</t:a>"); }));
    Add(Make("groups in groups, repeated", 60,
             RootOf("<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:choice maxOccurs='unbounded'><xs:element "
                    "name='a' type='xs:int'/>"
                    "<xs:sequence><xs:element name='b' type='xs:int'/><xs:element name='c' "
                    "type='xs:int'/></xs:sequence></xs:choice></xs:sequence>"),
             [](std::size_t n) { return Times(n, "<t:b>1</t:b><t:c>1</t:c><t:a>2</t:a>"); }));
    Add(Make("a group that begins like another, repeated", 60,
             RootOf("<xs:choice minOccurs='0' maxOccurs='unbounded'><xs:sequence><xs:element name='a' type='xs:int' "
                    "maxOccurs='unbounded'/></xs:sequence>"
                    "<xs:element name='b' type='xs:int'/></xs:choice>"),
             [](std::size_t n) { return Times(n, "<t:a>1</t:a>") + "<t:b>1</t:b>"; }));
    Add(Make("a collection behind optional ones", 120,
             RootOf("<xs:element name='x' type='xs:int' minOccurs='0' maxOccurs='unbounded'/><xs:element name='y' "
                    "type='xs:int' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n) { return Times(n, "<t:x>1</t:x>") + Times(n, "<t:y>1</t:y>"); }));
    Add(Make("objects", 60,
             RootOf("<xs:element name='o' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:all><xs:element "
                    "name='a' type='xs:int'/><xs:element name='b' type='xs:int' minOccurs='0'/></xs:all><xs:attribute "
                    "name='c' default='d'/></xs:complexType></xs:element>"),
             [](std::size_t n) { return Times(n, "<t:o><t:b>1</t:b><t:a>1</t:a></t:o>"); }));
    const auto Members = [](std::size_t n)
    {
        return Repeat(n,
                      [](std::size_t i) { return "<xs:element name='m" + No(i) + "' type='xs:int' minOccurs='0'/>"; });
    };
    Add(Make("objects of a hundred members", 20,
             RootOf("<xs:element name='o' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:sequence>" +
                    Members(100) + "</xs:sequence></xs:complexType></xs:element>"),
             [](std::size_t n) { return Times(n, "<t:o><t:m0>1</t:m0><t:m50>2</t:m50><t:m99>1</t:m99></t:o>"); }));
    Add(Make("substitution groups", 80,
             RootOf("<xs:element ref='t:h' minOccurs='0' maxOccurs='unbounded'/>") +
                 "<xs:complexType name='H'><xs:attribute name='x'/></xs:complexType><xs:element name='h' type='t:H' "
                 "abstract='true'/>" +
                 Repeat(20, [](std::size_t i)
                        { return "<xs:element name='s" + No(i) + "' type='t:H' substitutionGroup='t:h'/>"; }),
             [](std::size_t n) { return Repeat(n, [](std::size_t i) { return "<t:s" + No(i % 20) + " x='y'/>"; }); }));
    Add(Make("xsi:type of classes", 60,
             RootOf("<xs:element name='h' type='t:H' minOccurs='0' maxOccurs='unbounded'/>") +
                 "<xs:complexType name='H' abstract='true'><xs:attribute name='x'/></xs:complexType>" +
                 Repeat(20,
                        [](std::size_t i)
                        {
                            return "<xs:complexType name='D" + No(i) +
                                   "'><xs:complexContent><xs:extension base='t:H'><xs:sequence><xs:element name='a' "
                                   "type='xs:int'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>";
                        }),
             [](std::size_t n) {
                 return Repeat(n, [](std::size_t i)
                               { return "<t:h xsi:type='t:D" + No(i % 20) + "'><t:a>1</t:a></t:h>"; });
             }));
    Add(Make(
        "xsi:type of classes with one prefix, bound anew each time", 40,
        RootOf("<xs:element name='h' type='t:H' minOccurs='0' maxOccurs='unbounded'/>") +
            "<xs:complexType name='H'><xs:attribute name='x'/></xs:complexType><xs:complexType "
            "name='D'><xs:complexContent><xs:extension "
            "base='t:H'/></xs:complexContent></xs:complexType>",
        [](std::size_t n)
        {
            return Repeat(n,
                          [](std::size_t i)
                          {
                              return "<o xmlns='urn:t' xmlns:p='urn:" + No(i) + "' xmlns:q='urn:t'/>" + "<t:h xmlns:p" +
                                     No(i) + "='urn:t' xsi:type='p" + No(i) + ":D'/>";
                          });
        },
        Tolerate));
    Add(Make("values of any type, with one prefix bound anew each time", 40,
             RootOf("<xs:element name='v' type='xs:anySimpleType' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n)
             {
                 return Repeat(n,
                               [](std::size_t i)
                               {
                                   return "<t:v xmlns:p='urn:" + No(i) + "' xmlns:x" + No(i) +
                                          "='http://www.w3.org/2001/XMLSchema' xsi:type='x" + No(i) +
                                          ":QName'>p:x</t:v>";
                               });
             }));
    Add(Make("listed QNames with a prefix each", 40,
             OwnValues(Restriction("xs:QName", "<xs:enumeration value='t:a'/><xs:enumeration value='t:b'/>")),
             [](std::size_t n) {
                 return Repeat(n, [](std::size_t i)
                               { return "<t:v xmlns:p" + No(i) + "='urn:t'>p" + No(i) + ":b</t:v>"; });
             }));
    Add(Make("wildcards, in another namespace each time", 40,
             RootOf("<xs:any namespace='##other' processContents='lax' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n) {
                 return Repeat(n,
                               [](std::size_t i) { return "<o:a xmlns:o='urn:" + No(i) + "' o:b='c'><o:d/></o:a>"; });
             }));
    Add(Make("attributes under a wildcard, in another namespace each", 40,
             RootOf("<xs:element name='o' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:anyAttribute "
                    "namespace='##any' processContents='lax'/></xs:complexType></xs:element>"),
             [](std::size_t n)
             { return Repeat(n, [](std::size_t i) { return "<t:o xmlns:o='urn:" + No(i) + "' o:b='c'/>"; }); }));
    Add(Make("nil", 80,
             RootOf("<xs:element name='v' type='xs:int' nillable='true' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n) { return Times(n, "<t:v xsi:nil='true'/>"); }));
    Add(Make("wildcards", 80,
             RootOf("<xs:any namespace='##other' processContents='skip' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n) { return Times(n, "<o:a xmlns:o='urn:o'><b/></o:a>"); }));
    Add(Make("wildcards between elements", 60,
             RootOf("<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/><xs:any "
                    "namespace='##other' processContents='skip' minOccurs='0' maxOccurs='unbounded'/></xs:sequence>"),
             [](std::size_t n) { return Times(n, "<t:a>1</t:a><o:a xmlns:o='urn:o'/>"); }));
    Add(Make("lax wildcards of known elements", 80,
             RootOf("<xs:any namespace='##any' processContents='lax' minOccurs='0' maxOccurs='unbounded'/>") +
                 "<xs:element name='known' type='xs:int'/>",
             [](std::size_t n) { return Times(n, "<t:known>1</t:known><o:a xmlns:o='urn:o'/>"); }));
    Add(Make("attributes that a wildcard takes", 100,
             RootOf("<xs:element name='o' minOccurs='0'><xs:complexType><xs:anyAttribute namespace='##any' "
                    "processContents='skip'/></xs:complexType></xs:element>"),
             [](std::size_t n)
             { return "<t:o" + Repeat(n, [](std::size_t i) { return " a" + No(i) + "='v'"; }) + "/>"; }));
    Add(Make("mixed content", 100,
             "<xs:element name='r'><xs:complexType mixed='true'><xs:sequence><xs:element name='b' type='xs:string' "
             "minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:complexType></xs:element>",
             [](std::size_t n) { return Times(n, "text<t:b>c</t:b>"); }));
    Add(Make("objects in depth", 150, Recursive(), [](std::size_t n) { return Deep(n, "<t:v>1</t:v>"); }));
    Add(Make("a tree of objects", 150,
             Recursive("<xs:element name='s' type='t:N' minOccurs='0' maxOccurs='unbounded'/>"),
             [](std::size_t n) { return "<t:n>" + Times(n, "<t:s><t:n/></t:s>") + "</t:n>"; }));
    Add(Make("groups without an element, in depth", 100,
             RootOf("<xs:element name='n' type='t:N' minOccurs='0'/>") +
                 "<xs:complexType name='N'><xs:choice><xs:sequence><xs:element name='n' "
                 "type='t:N'/></xs:sequence><xs:element name='v' type='xs:int'/></xs:choice></xs:complexType>",
             [](std::size_t n) { return Deep(n, "<t:v>1</t:v>"); }));

    // Tolerant reading
    Add(Make(
        "unknown elements", 100, Values("xs:int"),
        [](std::size_t n) { return Times(n, "<t:u>1</t:u>") + "<t:v>1</t:v>"; }, Tolerate));
    Add(Make(
        "unknown elements between known ones", 80, Values("xs:int"),
        [](std::size_t n) { return Times(n, "<t:u/><t:v>1</t:v>"); }, Tolerate));
    Add(Make(
        "unknown elements in a class of many members", 80, RootOf(Members(50)),
        [](std::size_t n) { return Times(n, "<t:u/>") + "<t:m49>1</t:m49>"; }, Tolerate));
    Add(Make(
        "unknown elements in a choice", 80,
        RootOf("<xs:choice minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/><xs:element "
               "name='b' type='xs:int'/></xs:choice>"),
        [](std::size_t n) { return Times(n, "<t:u/><t:a>1</t:a>"); }, Tolerate));
    Add(Make(
        "unknown elements in a repeated sequence", 80,
        RootOf("<xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='a' type='xs:int'/><xs:element "
               "name='b' type='xs:int' minOccurs='0'/></xs:sequence>"),
        [](std::size_t n) { return Times(n, "<t:u/><t:a>1</t:a>"); }, Tolerate));
    Add(Make(
        "unknown elements in groups of attributes", 80,
        "<xs:element name='r'><xs:complexType><xs:sequence minOccurs='0' maxOccurs='unbounded'><xs:element name='a' "
        "type='xs:int'/></xs:sequence><xs:attribute name='x'/></xs:complexType></xs:element>",
        [](std::size_t n) { return Times(n, "<t:u/>") + "<t:a>1</t:a>"; }, Tolerate));
    Add(Make(
        "unknown elements in all", 80,
        "<xs:element name='r'><xs:complexType><xs:all><xs:element name='a' type='xs:int' minOccurs='0'/><xs:element "
        "name='b' type='xs:int' minOccurs='0'/></xs:all></xs:complexType></xs:element>",
        [](std::size_t n) { return Times(n, "<t:u/>") + "<t:a>1</t:a>"; }, Tolerate));
    Add(Make(
        "unknown attributes", 200,
        RootOf("<xs:element name='o' minOccurs='0'><xs:complexType><xs:attribute "
               "name='known'/></xs:complexType></xs:element>"),
        [](std::size_t n)
        { return "<t:o" + Repeat(n, [](std::size_t i) { return " a" + No(i) + "='v'"; }) + " known='v'/>"; },
        Tolerate));
    Add(Make(
        "missing elements", 100,
        RootOf(
            "<xs:element name='o' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:sequence><xs:element "
            "name='a' type='xs:int'/><xs:element name='b' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"),
        [](std::size_t n) { return Times(n, "<t:o><t:b>1</t:b></t:o>"); }, TolerateGaps));
    STypedShape more = Make(
        "more elements than allowed", 150, RootOf("<xs:element name='v' type='xs:int' maxOccurs='2'/>"),
        [](std::size_t n) { return Times(n, "<t:v>1</t:v>"); }, TolerateGaps);
    more.strFirst = In("<t:v>1</t:v>");
    Add(std::move(more));

    // Refusals
    STypedShape chain =
        Make("a chain of exceptions", 100, Recursive(), [](std::size_t n) { return Deep(n, "<t:v>no number</t:v>"); });
    chain.strFirst = In(Deep(1, ""));
    chain.bRefused = true;
    Add(std::move(chain));
    STypedShape count = Make("too many elements", 150, RootOf("<xs:element name='v' type='xs:int' maxOccurs='2'/>"),
                             [](std::size_t n) { return Times(n, "<t:v>1</t:v>"); });
    count.bRefused = true;
    Add(std::move(count));
    STypedShape unknown =
        Make("a long unknown name", 2000, Values("xs:int"), [](std::size_t n) { return "<t:" + Times(n, "u") + "/>"; });
    unknown.strFirst = In("");
    unknown.bRefused = true;
    Add(std::move(unknown));
    STypedShape value = Make("a long wrong value", 2000, Values("xs:int"),
                             [](std::size_t n) { return "<t:v>" + Times(n, "u") + "</t:v>"; });
    value.strFirst = In("");
    value.bRefused = true;
    Add(std::move(value));
    return shapes;
}

} // namespace

std::string MakeSchema(const std::string& strComponents)
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:t='urn:t' targetNamespace='urn:t' "
           "elementFormDefault='qualified'>\n" +
           strComponents + "</xs:schema>\n";
}

const std::vector<STypedShape>& GetTypedShapes()
{
    static const std::vector<STypedShape> s_shapes = MakeShapes();
    return s_shapes;
}

} // namespace cost
