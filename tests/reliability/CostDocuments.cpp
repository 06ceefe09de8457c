#include "tests/reliability/Cost.h"

namespace cost
{

namespace
{

using QvXmlLib9::CXmlSerializationContext;

std::string In(const std::string& strContent)
{
    return "<r>" + strContent + "</r>";
}

std::string No(std::size_t n)
{
    return std::to_string(n);
}

/// Names of one length that are made of the same letters.
std::string Permuted(std::size_t n)
{
    std::string strName = "aaaaaaaaaaaaaaaa";
    for (std::size_t nBit = 0; nBit < strName.size(); ++nBit)
        if ((n >> nBit & 1) != 0)
            strName[nBit] = 'b';
    return strName;
}

std::string Nested(std::size_t nCount, const std::string& strOpen, const std::string& strInner,
                   const std::string& strClose)
{
    std::string strAll;
    for (std::size_t n = 0; n < nCount; ++n)
        strAll += strOpen;
    strAll += strInner;
    for (std::size_t n = 0; n < nCount; ++n)
        strAll += strClose;
    return strAll;
}

std::string Utf16(const std::string& strAscii)
{
    std::string strWide("\xFF\xFE", 2);
    for (const char c : strAscii)
    {
        strWide += c;
        strWide += '\0';
    }
    return strWide;
}

std::wstring Wide(const std::string& strAscii)
{
    return {strAscii.begin(), strAscii.end()};
}

} // namespace

const std::vector<SDocumentShape>& GetDocumentShapes()
{
    static const std::vector<SDocumentShape> s_shapes = {
        // Elements
        {"siblings", 500,
         [](std::size_t n)
         {
             return In(Times(n, "<a/>"));
         }},
        {"siblings with text", 200,
         [](std::size_t n)
         {
             return In(Times(n, "<a>text</a>"));
         }},
        {"siblings of two names", 250,
         [](std::size_t n)
         {
             return In(Times(n, "<a/><b/>"));
         }},
        {"distinct names", 250,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<n" + No(i) + "/>"; }));
         }},
        {"distinct names of the same letters", 100,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<" + Permuted(i) + "/>"; }));
         }},
        {"depth", 300,
         [](std::size_t n)
         {
             return Nested(n, "<a>", "x", "</a>");
         }},
        {"depth with attributes", 100,
         [](std::size_t n)
         {
             return Nested(n, "<a b='c'>", "x", "</a>");
         }},
        {"a comb", 150,
         [](std::size_t n)
         {
             return Nested(n, "<a><b/>", "", "</a>");
         }},
        {"a comb behind", 150,
         [](std::size_t n)
         {
             return Nested(n, "<a>", "", "<b/></a>");
         }},
        {"a tree of two", 9,
         [](std::size_t n)
         {
             std::string strTree = "<l/>";
             for (std::size_t nLeaves = 1; nLeaves < n * 8; nLeaves *= 2)
                 strTree = "<n>" + strTree + strTree + "</n>";
             return strTree;
         }},
        {"one long name", 1000,
         [](std::size_t n)
         {
             return "<" + Times(n, "n") + "/>";
         }},
        {"long names", 10,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<" + Times(200, "n") + No(i) + "/>"; }));
         }},
        {"white space in tags", 100,
         [](std::size_t n)
         {
             return In(Times(n, "<a         ></a      >"));
         }},
        {"one tag of white space", 2000,
         [](std::size_t n)
         {
             return "<r" + Times(n, " ") + "/>";
         }},

        // Attributes
        {"attributes of one element", 200,
         [](std::size_t n)
         {
             return "<r" + Repeat(n, [](std::size_t i) { return " a" + No(i) + "='v'"; }) + "/>";
         }},
        {"attributes of the same letters", 80,
         [](std::size_t n)
         {
             return "<r" + Repeat(n, [](std::size_t i) { return " " + Permuted(i) + "='v'"; }) + "/>";
         }},
        {"prefixed attributes of one element", 150,
         [](std::size_t n)
         {
             return "<r xmlns:p='urn:p'" + Repeat(n, [](std::size_t i) { return " p:a" + No(i) + "='v'"; }) + "/>";
         }},
        {"prefixed attributes of many elements", 80,
         [](std::size_t n)
         {
             return "<r xmlns:p='urn:p'>" + Times(n, "<a p:b='1' p:c='2'/>") + "</r>";
         }},
        {"attributes of many elements", 100,
         [](std::size_t n)
         {
             return In(Times(n, "<a b='1' c='2' d=''/>"));
         }},
        {"attributes of distinct values", 100,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<a b='" + No(i) + "'/>"; }));
         }},
        {"twenty attributes of many elements", 15,
         [](std::size_t n)
         {
             const std::string strOne = "<a" + Repeat(20, [](std::size_t i) { return " a" + No(i) + "='v'"; }) + "/>";
             return In(Times(n, strOne.c_str()));
         }},
        {"one long value", 2000,
         [](std::size_t n)
         {
             return "<r a='" + Times(n, "v") + "'/>";
         }},
        {"long values", 10,
         [](std::size_t n)
         {
             return In(Times(n, ("<a b='" + Times(200, "v") + "'/>").c_str()));
         }},
        {"one long name of an attribute", 2000,
         [](std::size_t n)
         {
             return "<r " + Times(n, "a") + "=''/>";
         }},
        {"white space in a value", 1000,
         [](std::size_t n)
         {
             return "<r a='" + Times(n, "\t\n") + "'/>";
         }},
        {"references in a value", 300,
         [](std::size_t n)
         {
             return "<r a='" + Times(n, "&#10;&lt;") + "'/>";
         }},
        {"quotes in a value", 2000,
         [](std::size_t n)
         {
             return "<r a='" + Times(n, "\"") + "'/>";
         }},

        // Namespaces
        {"namespaces of the root", 80,
         [](std::size_t n)
         {
             return "<r" + Repeat(n, [](std::size_t i) { return " xmlns:p" + No(i) + "='urn:" + No(i) + "'"; }) + "/>";
         }},
        {"namespaces of the root, each used", 50,
         [](std::size_t n)
         {
             return "<r" + Repeat(n, [](std::size_t i) { return " xmlns:p" + No(i) + "='urn:" + No(i) + "'"; }) + ">" +
                    Repeat(n, [](std::size_t i) { return "<p" + No(i) + ":a/>"; }) + "</r>";
         }},
        {"many prefixes of one namespace", 80,
         [](std::size_t n)
         {
             return "<r" + Repeat(n, [](std::size_t i) { return " xmlns:p" + No(i) + "='urn:p'"; }) + ">" +
                    Repeat(n, [](std::size_t i) { return "<p" + No(i) + ":a/>"; }) + "</r>";
         }},
        {"a namespace for each sibling", 60,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<p:a xmlns:p='urn:" + No(i) + "'/>"; }));
         }},
        {"the same namespace for each sibling", 80,
         [](std::size_t n)
         {
             return In(Times(n, "<a xmlns='urn:some'/>"));
         }},
        {"a namespace for each level", 60,
         [](std::size_t n)
         {
             return Repeat(n, [](std::size_t i)
                           { return "<p" + No(i) + ":a xmlns:p" + No(i) + "='urn:" + No(i) + "'>"; }) +
                    Repeat(n, [n](std::size_t i) { return "</p" + No(n - 1 - i) + ":a>"; });
         }},
        {"a default namespace for each level", 60,
         [](std::size_t n)
         {
             return Repeat(n, [](std::size_t i) { return "<a xmlns='urn:" + No(i) + "'>"; }) + Times(n, "</a>");
         }},
        {"one prefix bound anew at each level", 60,
         [](std::size_t n)
         {
             return Repeat(n, [](std::size_t i) { return "<p:a xmlns:p='urn:" + No(i) + "'>"; }) + Times(n, "</p:a>");
         }},
        {"two namespaces by turns, in depth", 50,
         [](std::size_t n)
         {
             return "<r xmlns:p='urn:p' xmlns:q='urn:q'>" + Nested(n, "<p:a><q:a>", "", "</q:a></p:a>") + "</r>";
         }},
        {"the outermost namespace, used deep inside", 60,
         [](std::size_t n)
         {
             return "<o:r xmlns:o='urn:o'>" +
                    Repeat(n, [](std::size_t i) { return "<a xmlns:p" + No(i) + "='urn:" + No(i) + "'>"; }) +
                    Times(n, "<o:b/>") + Times(n, "</a>") + "</o:r>";
         }},
        {"one long namespace", 1000,
         [](std::size_t n)
         {
             return "<r xmlns='urn:" + Times(n, "u") + "'/>";
         }},
        {"namespaces of 250 units", 8,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<a xmlns='urn:" + Times(240, "u") + No(i) + "'/>"; }));
         }},
        {"one long prefix", 700,
         [](std::size_t n)
         {
             return "<" + Times(n, "p") + ":r xmlns:" + Times(n, "p") + "='urn:p'/>";
         }},
        {"names in many namespaces, crosswise", 12,
         [](std::size_t n)
         {
             return "<r" + Repeat(10, [](std::size_t i) { return " xmlns:p" + No(i) + "='urn:" + No(i) + "'"; }) + ">" +
                    Repeat(n, [](std::size_t i)
                           { return Repeat(10, [i](std::size_t j) { return "<p" + No(j) + ":n" + No(i) + "/>"; }); }) +
                    "</r>";
         }},

        // Text
        {"one long text", 2000,
         [](std::size_t n)
         {
             return In(Times(n, "t"));
         }},
        {"lines of text", 300,
         [](std::size_t n)
         {
             return In(Times(n, "line\r\n"));
         }},
        {"carriage returns", 2000,
         [](std::size_t n)
         {
             return In(Times(n, "\r"));
         }},
        {"white space", 2000,
         [](std::size_t n)
         {
             return In(Times(n, " "));
         }},
        {"references to characters", 350,
         [](std::size_t n)
         {
             return In(Times(n, "&#65;"));
         }},
        {"references to signs", 400,
         [](std::size_t n)
         {
             return In(Times(n, "&amp;"));
         }},
        {"greater-than signs", 2000,
         [](std::size_t n)
         {
             return In(Times(n, ">"));
         }},
        {"brackets", 700,
         [](std::size_t n)
         {
             return In(Times(n, "]]]"));
         }},
        {"letters of two octets", 1000,
         [](std::size_t n)
         {
             return In(Times(n, "\xC3\xA9"));
         }},
        {"pairs of surrogates", 500,
         [](std::size_t n)
         {
             return In(Times(n, "\xF0\x9F\x98\x80"));
         }},
        {"text between elements", 250,
         [](std::size_t n)
         {
             return In(Times(n, "text<a/>"));
         }},
        {"text between comments", 250,
         [](std::size_t n)
         {
             return In(Times(n, "text<!---->"));
         }},
        {"text around elements, in depth", 150,
         [](std::size_t n)
         {
             return Nested(n, "<a>t", "", "u</a>");
         }},
        {"repeated texts", 60,
         [](std::size_t n)
         {
             return In(Times(n, "<a>a text of some length</a>"));
         }},
        {"distinct texts", 120,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i) { return "<a>" + No(i) + "</a>"; }));
         }},
        {"repeated short texts between comments", 250,
         [](std::size_t n)
         {
             return In(Times(n, "ab<!--c-->"));
         }},

        // Other markup
        {"comments", 250,
         [](std::size_t n)
         {
             return In(Times(n, "<!--c-->"));
         }},
        {"one long comment", 2000,
         [](std::size_t n)
         {
             return In("<!--" + Times(n, "c") + "-->");
         }},
        {"dashes in a comment", 700,
         [](std::size_t n)
         {
             return In("<!--" + Times(n, "- ") + "-->");
         }},
        {"comments ahead of the root", 250,
         [](std::size_t n)
         {
             return Times(n, "<!--c-->") + "<r/>";
         }},
        {"comments behind the root", 250,
         [](std::size_t n)
         {
             return "<r/>" + Times(n, "<!--c-->");
         }},
        {"white space behind the root", 2000,
         [](std::size_t n)
         {
             return "<r/>" + Times(n, "\n");
         }},
        {"processing instructions", 250,
         [](std::size_t n)
         {
             return In(Times(n, "<?pi d?>"));
         }},
        {"one long processing instruction", 2000,
         [](std::size_t n)
         {
             return In("<?pi " + Times(n, "?") + "?>");
         }},
        {"CDATA sections", 150,
         [](std::size_t n)
         {
             return In(Times(n, "<![CDATA[x]]>"));
         }},
        {"one long CDATA section", 2000,
         [](std::size_t n)
         {
             return In("<![CDATA[" + Times(n, "]") + "]]>");
         }},
        {"CDATA sections, kept", 150, [](std::size_t n) { return In(Times(n, "<a><![CDATA[x<]]></a>")); },
         [](CXmlSerializationContext& context, std::size_t)
         {
             context.SetStripCDATA(false);
         }},

        // The document type
        {"declared entities", 80,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [" + Repeat(n, [](std::size_t i) { return "<!ENTITY e" + No(i) + " 'v'>"; }) +
                    "]><r/>";
         }},
        {"declared entities, each used", 60,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [" + Repeat(n, [](std::size_t i) { return "<!ENTITY e" + No(i) + " 'v'>"; }) +
                    "]><r>" + Repeat(n, [](std::size_t i) { return "&e" + No(i) + ";"; }) + "</r>";
         }},
        {"one entity, often used", 600,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ENTITY e 'v'>]><r>" + Times(n, "&e;") + "</r>";
         }},
        {"an entity of elements", 500,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ENTITY e '<a>t</a>'>]><r>" + Times(n, "&e;") + "</r>";
         }},
        {"one long entity", 2000,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ENTITY e '" + Times(n, "v") + "'>]><r>&e;</r>";
         }},
        {"an entity in values", 100,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ENTITY e 'v'>]><r>" + Times(n, "<a b='&e;&e;'/>") + "</r>";
         }},
        {"entities in entities", 40,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ENTITY e0 'v'>" +
                    Repeat(n, [](std::size_t i) { return "<!ENTITY e" + No(i + 1) + " '&e" + No(i) + ";'>"; }) +
                    "]><r>&e" + No(n / 100) + ";</r>";
         }},
        {"default attributes", 300,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ATTLIST a b CDATA 'value' c CDATA 'other'>]><r>" + Times(n, "<a/>") + "</r>";
         }},
        {"attributes declared for each element", 60,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [" + Repeat(n, [](std::size_t i) { return "<!ATTLIST a" + No(i) + " b CDATA 'v'>"; }) +
                    "]><r>" + Repeat(n, [](std::size_t i) { return "<a" + No(i) + "/>"; }) + "</r>";
         }},
        {"declared elements", 80,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [" + Repeat(n, [](std::size_t i) { return "<!ELEMENT a" + No(i) + " (b|c)*>"; }) +
                    "]><r/>";
         }},
        {"one declared element of many", 400,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ELEMENT a (b" + Repeat(n, [](std::size_t i) { return "|c" + No(i); }) + ")*>]><r/>";
         }},
        {"declared notations", 80,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [" + Repeat(n, [](std::size_t i) { return "<!NOTATION a" + No(i) + " SYSTEM 'b'>"; }) +
                    "]><r/>";
         }},
        {"an attribute of tokens", 800,
         [](std::size_t n)
         {
             return "<!DOCTYPE r [<!ATTLIST r a NMTOKENS #IMPLIED>]><r a='" + Times(n, "b  ") + "'/>";
         }},

        // Encodings
        {"UTF-16, elements", 120,
         [](std::size_t n)
         {
             return Utf16(In(Times(n, "<a b='c'/>")));
         }},
        {"UTF-16, text", 1000,
         [](std::size_t n)
         {
             return Utf16(In(Times(n, "t")));
         }},
        {"Latin 1, text", 2000,
         [](std::size_t n)
         {
             return "<?xml version='1.0' encoding='ISO-8859-1'?>" + In(Times(n, "\xE9"));
         }},
        {"Latin 1, names", 300,
         [](std::size_t n)
         {
             return "<?xml version='1.0' encoding='ISO-8859-1'?>" + In(Times(n, "<\xE9/>"));
         }},

        // Open content and the context
        {"xsi:type", 60,
         [](std::size_t n)
         {
             return "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:x='urn:x'>" +
                    Times(n, "<a xsi:type='x:T' b='c'>v</a>") + "</r>";
         }},
        {"xml:lang and xml:space", 60,
         [](std::size_t n)
         {
             return In(Times(n, "<a xml:lang='en' xml:space='preserve'/>"));
         }},
        {"aliases in the context", 60,
         [](std::size_t n) { return In(Repeat(n, [](std::size_t i) { return "<a xmlns='urn:" + No(i) + "'/>"; })); },
         [](CXmlSerializationContext& context, std::size_t n)
         {
             for (std::size_t i = 0; i < n; ++i)
                 context.GetNamespaceAliases().Add(Wide("p" + No(i)).c_str(), Wide("urn:" + No(i)).c_str());
         }},
        {"aliases for attributes", 40,
         [](std::size_t n)
         { return In(Repeat(n, [](std::size_t i) { return "<a p:b='' xmlns:p='urn:" + No(i) + "'/>"; })); },
         [](CXmlSerializationContext& context, std::size_t n)
         {
             for (std::size_t i = 0; i < n; ++i)
                 context.GetNamespaceAliases().Add(Wide("p" + No(i)).c_str(), Wide("urn:" + No(i)).c_str());
         }},
        {"processing instructions of the context", 250, [](std::size_t n) { return In(Times(n, "<a>b</a>")); },
         [](CXmlSerializationContext& context, std::size_t n)
         {
             context.GetProcessingInstructions().assign(n, L"pi data");
         }},
        {"without namespaces", 120,
         [](std::size_t n) { return In(Repeat(n, [](std::size_t i) { return "<p:a" + No(i) + " q:b='c'/>"; })); },
         [](CXmlSerializationContext& context, std::size_t)
         {
             context.SetSchemaType(QvXmlLib9::SchemaType_NoNamespaces);
         }},
        {"long values in Fast Infoset tables", 20,
         [](std::size_t n)
         {
             return In(Repeat(n, [](std::size_t i)
                              { return "<a b='" + Times(80, "v") + No(i) + "'>" + Times(80, "t") + No(i) + "</a>"; }));
         },
         [](CXmlSerializationContext& context, std::size_t)
         {
             context.GetFIContext().SetAttributeMaxAddLength(1000);
             context.GetFIContext().SetElementMaxAddLength(1000);
         }},
        {"the same long values in Fast Infoset tables", 10,
         [](std::size_t n)
         { return In(Times(n, ("<a b='" + Times(80, "v") + "'>" + Times(80, "t") + "</a>").c_str())); },
         [](CXmlSerializationContext& context, std::size_t)
         {
             context.GetFIContext().SetAttributeMaxAddLength(1000);
             context.GetFIContext().SetElementMaxAddLength(1000);
         }},
    };
    return s_shapes;
}

} // namespace cost
