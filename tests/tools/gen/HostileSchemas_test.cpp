#include "tests/support/Files.h"
#include "tools/quiver-gen/Generator.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace QvTest;

/// @file
/// Schemas that are huge, deep, broken or malicious end in a message or in code, and soon.

namespace
{

struct SRun
{
    int nStatus = 0;
    std::string strMessages;
    std::uintmax_t nBytes = 0; ///< of the code
    int nCheckStatus = 0;      ///< of reading a document by it
    double fSeconds = 0;
};

SRun Generate(const std::string& strSchema)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("s.xsd"), strSchema);
    std::ostringstream out;
    std::ostringstream err;
    SRun run;
    const auto start = std::chrono::steady_clock::now();
    run.nStatus =
        quiver_gen::RunGenerator({dir.PathOf("s.xsd").u8string(), "-o", dir.PathOf("out").u8string()}, out, err);
    run.fSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.strMessages = err.str();
    WriteFileBytes(dir.PathOf("d.xml"), "<t:r xmlns:t='urn:t'/>");
    run.nCheckStatus =
        quiver_gen::RunGenerator({"--check", dir.PathOf("s.xsd").u8string(), dir.PathOf("d.xml").u8string()}, out, err);
    if (std::filesystem::exists(dir.PathOf("out")))
        for (const auto& entry : std::filesystem::directory_iterator(dir.PathOf("out")))
            run.nBytes += entry.file_size();
    return run;
}

std::string Wrap(const std::string& strComponents)
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:t='urn:t' targetNamespace='urn:t'>\n" +
           strComponents + "</xs:schema>\n";
}

std::string Repeat(int nCount, const std::function<std::string(const std::string&)>& fnItem)
{
    std::string strText;
    for (int n = 0; n < nCount; ++n)
        strText += fnItem(std::to_string(n)) + '\n';
    return strText;
}

std::string Times(int nCount, const std::string& strText)
{
    std::string strAll;
    for (int n = 0; n < nCount; ++n)
        strAll += strText;
    return strAll;
}

std::string Type(const std::string& strContent)
{
    return Wrap("<xs:element name='r'><xs:complexType>" + strContent + "</xs:complexType></xs:element>");
}

std::string Enumeration(int nCount)
{
    return Wrap("<xs:simpleType name='T'><xs:restriction base='xs:string'>" +
                Repeat(nCount, [](const std::string& n) { return "<xs:enumeration value='value " + n + "'/>"; }) +
                "</xs:restriction></xs:simpleType><xs:element name='r' type='t:T'/>");
}

std::string Members(const std::string& strGroup, int nCount)
{
    return Type("<xs:" + strGroup + ">" +
                Repeat(nCount, [](const std::string& n) { return "<xs:element name='e" + n + "' type='xs:int'/>"; }) +
                "</xs:" + strGroup + ">");
}

std::string Roots(int nCount)
{
    return Wrap(Repeat(nCount, [](const std::string& n) { return "<xs:element name='e" + n + "' type='xs:int'/>"; }));
}

std::string Types(int nCount)
{
    return Wrap(Repeat(nCount,
                       [](const std::string& n)
                       {
                           return "<xs:complexType name='T" + n + "'><xs:sequence><xs:element name='a' type='t:T" + n +
                                  "' minOccurs='0'/></xs:sequence></xs:complexType>";
                       }));
}

std::string Derivations(int nCount)
{
    return Wrap("<xs:complexType name='T-1'/>" +
                Repeat(nCount,
                       [](const std::string& n)
                       {
                           return "<xs:complexType name='T" + n + "'><xs:complexContent><xs:extension base='t:T" +
                                  std::to_string(std::stoi(n) - 1) + "'><xs:attribute name='a" + n +
                                  "'/></xs:extension></xs:complexContent></xs:complexType>";
                       }) +
                "<xs:element name='r' type='t:T-1'/>");
}

std::string Substitutes(int nCount)
{
    return Wrap("<xs:element name='h' type='xs:anyType' abstract='true'/>" +
                Repeat(nCount,
                       [](const std::string& n)
                       {
                           return "<xs:element name='s" + n +
                                  "' substitutionGroup='t:h'><xs:complexType><xs:attribute name='a'/></xs:complexType>"
                                  "</xs:element>";
                       }) +
                "<xs:element name='r'><xs:complexType><xs:sequence><xs:element ref='t:h' maxOccurs='9'/></xs:sequence>"
                "</xs:complexType></xs:element>");
}

/// Unions of which each is a member of the next and admits two of its values; and a value that none of them admits.
std::string EnumeratedUnions(int nDepth)
{
    return Wrap("<xs:simpleType name='U-1'><xs:union memberTypes='xs:int xs:boolean'/></xs:simpleType>" +
                Repeat(nDepth,
                       [](const std::string& n)
                       {
                           return "<xs:simpleType name='U" + n +
                                  "'><xs:restriction><xs:simpleType><xs:union memberTypes='t:U" +
                                  std::to_string(std::stoi(n) - 1) +
                                  " xs:date'/></xs:simpleType><xs:enumeration value='1'/><xs:enumeration value='2'/>"
                                  "</xs:restriction></xs:simpleType>";
                       }) +
                "<xs:element name='r' type='t:U" + std::to_string(nDepth - 1) + "' default='3'/>");
}

/// One wildcard for many namespaces.
std::string Namespaces(int nCount)
{
    return Type("<xs:sequence><xs:any namespace='" +
                Repeat(nCount, [](const std::string& n) { return "urn:n" + n + " "; }) + "'/></xs:sequence>");
}

std::string DeepElements(int nDepth)
{
    return Wrap(Times(nDepth, "<xs:element name='e'><xs:complexType><xs:sequence>") +
                Times(nDepth, "</xs:sequence></xs:complexType></xs:element>"));
}

std::string DeepGroups(int nDepth)
{
    return Type(Times(nDepth, "<xs:sequence minOccurs='0' maxOccurs='2'><xs:choice><xs:element name='a'/>") +
                Times(nDepth, "</xs:choice></xs:sequence>"));
}

std::string DeepSimpleTypes(int nDepth)
{
    return Wrap("<xs:element name='r'>" + Times(nDepth, "<xs:simpleType><xs:restriction>") +
                "<xs:simpleType><xs:restriction base='xs:string'/></xs:simpleType>" +
                Times(nDepth, "</xs:restriction></xs:simpleType>") + "</xs:element>");
}

struct SHostile
{
    std::string strName;
    std::string strSchema;
    int nStatus;
    std::string strMessage; ///< a part of what is said, empty for no matter what
};

/// For the names of failed tests.
void PrintTo(const SHostile& hostile, std::ostream* pOut)
{
    *pOut << hostile.strName;
}

std::vector<SHostile> GetHostile()
{
    const std::string strLong(10000, 'n');
    const std::string strBomb = "<!DOCTYPE s [<!ENTITY a '" + std::string(1000, 'x') + "'><!ENTITY b '" +
                                Times(1000, "&a;") + "'><!ENTITY c '" + Times(1000, "&b;") + "'>]>";
    return {
        {"Nothing", "", 1, "error: "},
        {"NoXml", "Dear reader,\nthis is no schema.\n", 1, "s.xsd:1:1: error: "},
        {"Octets", std::string("\x00\xFF\xFE\x01", 4), 1, "error: "},
        {"OtherXml", "<html/>", 1, "s.xsd:1:1: error: "},
        {"CutShort", "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element", 1, "error: "},
        {"EntityBomb",
         strBomb + Wrap("<xs:element name='r'><xs:annotation><xs:documentation>&c;</xs:documentation>"
                        "</xs:annotation></xs:element>"),
         1, "error: "},
        {"BaseOfItself",
         Wrap("<xs:complexType name='A'><xs:complexContent><xs:extension base='t:B'/></xs:complexContent>"
              "</xs:complexType><xs:complexType name='B'><xs:complexContent><xs:extension base='t:A'/>"
              "</xs:complexContent></xs:complexType>"),
         1, "s.xsd:2:"},
        {"SimpleTypeOfItself",
         Wrap("<xs:simpleType name='A'><xs:union memberTypes='t:B xs:int'/></xs:simpleType>"
              "<xs:simpleType name='B'><xs:list itemType='t:A'/></xs:simpleType>"),
         1, "s.xsd:2:"},
        {"GroupInItself",
         Wrap("<xs:group name='A'><xs:sequence><xs:group ref='t:B'/></xs:sequence></xs:group>"
              "<xs:group name='B'><xs:choice><xs:group ref='t:A'/></xs:choice></xs:group>"),
         1, "s.xsd:2:"},
        {"AttributesInThemselves",
         Wrap("<xs:attributeGroup name='A'><xs:attributeGroup ref='t:B'/></xs:attributeGroup>"
              "<xs:attributeGroup name='B'><xs:attributeGroup ref='t:A'/></xs:attributeGroup>"
              "<xs:element name='r'><xs:complexType><xs:attributeGroup ref='t:A'/></xs:complexType></xs:element>"),
         1, "s.xsd:2:"},
        {"SubstitutesInACircle",
         Wrap("<xs:element name='a' substitutionGroup='t:b'/><xs:element name='b' substitutionGroup='t:a'/>"), 1,
         "s.xsd:2:"},
        {"ObjectThatHoldsItself",
         Wrap("<xs:complexType name='A'><xs:sequence><xs:element name='a' type='t:A'/></xs:sequence></xs:complexType>"
              "<xs:element name='r' type='t:A'/>"),
         0, ""},
        {"ImportOfItself", Wrap("<xs:import namespace='urn:o' schemaLocation='s.xsd'/>"), 1, "s.xsd:2:"},
        {"IncludeOfItself", Wrap("<xs:include schemaLocation='s.xsd'/><xs:element name='r'/>"), 0, ""},
        {"RedefineOfItself",
         Wrap("<xs:redefine schemaLocation='s.xsd'><xs:simpleType name='A'><xs:restriction base='t:A'/>"
              "</xs:simpleType></xs:redefine><xs:simpleType name='A'><xs:restriction base='xs:int'/>"
              "</xs:simpleType>"),
         1, "error: "},
        {"MissingReferences",
         Wrap(Repeat(10000,
                     [](const std::string& n) { return "<xs:element name='e" + n + "' type='t:Missing" + n + "'/>"; })),
         1, "Missing9'"},
        {"ManyElements", Roots(100000), 0, ""},
        {"ManyMembers", Members("sequence", 10000), 0, ""},
        {"ManyTypes", Types(10000), 0, ""},
        {"ManyDerivations", Derivations(300), 0, ""},
        {"ManySubstitutes", Substitutes(2000), 0, ""},
        {"LargeChoice", Members("choice", 2000), 0, ""},
        {"LargeEnumeration", Enumeration(10000), 0, ""},
        {"EnumeratedUnions", EnumeratedUnions(40), 1, "'3'"},
        {"ManyNamespaces", Namespaces(12000), 0, ""},
        {"LongNames",
         Wrap("<xs:complexType name='" + strLong + "'><xs:sequence><xs:element name='" + strLong +
              "' type='xs:int'/></xs:sequence><xs:attribute name='" + strLong +
              "'/></xs:complexType><xs:element name='" + strLong + "' type='t:" + strLong + "'/>"),
         0, ""},
        {"LongPattern",
         Wrap("<xs:simpleType name='T'><xs:restriction base='xs:string'><xs:pattern value='" + Times(20000, "(a|b)*") +
              "'/></xs:restriction></xs:simpleType>"),
         0, ""},
        {"DeepPattern",
         Wrap("<xs:simpleType name='T'><xs:restriction base='xs:string'><xs:pattern value='" + Times(10000, "(") + "a" +
              Times(10000, ")") + "'/></xs:restriction></xs:simpleType>"),
         -1, ""},
        {"HugeCounts",
         Type("<xs:sequence minOccurs='99999999999999999999' maxOccurs='99999999999999999999999999'>"
              "<xs:element name='a'/></xs:sequence>"),
         -1, ""},
        {"DeepXml", Times(10000, "<a>") + Times(10000, "</a>"), 1, "error: "},
        {"DeepElements", DeepElements(10000), -1, ""},
        {"DeepGroups", DeepGroups(5000), -1, ""},
        {"DeepSimpleTypes", DeepSimpleTypes(10000), -1, ""},
    };
}

class HostileSchemas : public testing::TestWithParam<SHostile>
{
};

TEST_P(HostileSchemas, EndInAMessageOrInCode)
{
    const SHostile& hostile = GetParam();
    const SRun run = Generate(hostile.strSchema);
    const std::string strMessages = run.strMessages.substr(0, 500);
    RecordProperty("exit_status", run.nStatus);
    if (hostile.nStatus >= 0)
    {
        EXPECT_EQ(run.nStatus, hostile.nStatus) << strMessages;
    }
    if (run.nStatus == 0)
    {
        EXPECT_GT(run.nBytes, 0u);
        EXPECT_LE(run.nCheckStatus, 1);
    }
    else
    {
        EXPECT_EQ(run.nBytes, 0u);
        EXPECT_EQ(run.nCheckStatus, run.nStatus);
        EXPECT_NE(run.strMessages, "");
    }
    EXPECT_NE(run.strMessages.find(hostile.strMessage), std::string::npos) << strMessages;
    EXPECT_LT(run.fSeconds, 20) << "with a sanitizer; otherwise far below";
    RecordProperty("milliseconds", static_cast<int>(run.fSeconds * 1000));
}

/// What is written grows with the schema, and not with its square.
TEST(HostileSchemasGrowth, IsLinear)
{
    const std::vector<std::pair<std::string, std::function<std::string(int)>>> kinds = {
        {"roots", &Roots},
        {"types", &Types},
        {"enumeration", &Enumeration},
        {"substitutes", &Substitutes},
        {"choice",
         [](int nCount)
         {
             return Members("choice", nCount);
         }},
        {"sequence",
         [](int nCount)
         {
             return Members("sequence", nCount);
         }},
    };
    for (const auto& [strKind, fnSchema] : kinds)
    {
        const SRun small = Generate(fnSchema(300));
        const SRun large = Generate(fnSchema(1200));
        ASSERT_EQ(small.nStatus, 0) << strKind << ": " << small.strMessages;
        ASSERT_EQ(large.nStatus, 0) << strKind << ": " << large.strMessages;
        EXPECT_LT(large.nBytes, 5 * small.nBytes) << strKind;
    }
}

INSTANTIATE_TEST_SUITE_P(Schemas, HostileSchemas, testing::ValuesIn(GetHostile()),
                         [](const auto& hostile) { return hostile.param.strName; });

} // namespace
