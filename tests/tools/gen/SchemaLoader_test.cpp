#include "tests/support/Schemas.h"

#include <gtest/gtest.h>

using namespace QvTest;
using namespace quiver_gen::schema;

namespace
{

std::string GetFiles(const CLoadedSchemas& loaded)
{
    std::string strFiles;
    for (const SFile& file : loaded.GetSet().files)
    {
        const std::size_t nSlash = file.strPath.rfind('/');
        strFiles +=
            file.strPath.substr(nSlash == std::string::npos ? 0 : nSlash + 1) + "=" + file.strTargetNamespace + " ";
    }
    return strFiles;
}

std::string Include(const std::string& strLocation)
{
    return "<xs:include schemaLocation='" + strLocation + "'/>";
}

std::string Import(const std::string& strNamespace, const std::string& strLocation)
{
    return "<xs:import namespace='" + strNamespace + "' schemaLocation='" + strLocation + "'/>";
}

TEST(SchemaLoader, FollowsIncludesInTheirOrderAndEachOnce)
{
    const CLoadedSchemas loaded(
        {{"main.xsd", WrapSchema(Include("b.xsd") + Include("sub/c.xsd"), "targetNamespace='n'")},
         {"b.xsd", WrapSchema(Include("d.xsd") + Include("main.xsd"), "targetNamespace='n'")},
         {"sub/c.xsd", WrapSchema(Include("../d.xsd") + Include("./../sub/c.xsd"), "targetNamespace='n'")},
         {"d.xsd", WrapSchema("<xs:element name='e'/>", "targetNamespace='n'")}});
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(GetFiles(loaded), "main.xsd=n b.xsd=n d.xsd=n c.xsd=n ");
    EXPECT_TRUE(loaded.GetSet().files.front().bGiven);
    EXPECT_FALSE(loaded.GetSet().files[1].bGiven);
}

TEST(SchemaLoader, GivesADocumentWithoutNamespaceThatOfWhoIncludesIt)
{
    const CLoadedSchemas loaded(
        {{"a.xsd", WrapSchema(Include("c.xsd") + Import("b", "b.xsd"), "targetNamespace='a'")},
         {"b.xsd", WrapSchema(Include("c.xsd"), "targetNamespace='b'")},
         {"c.xsd",
          WrapSchema("<xs:element name='e' type='t'/><xs:complexType name='t'><xs:sequence><xs:element name='l'/>"
                     "</xs:sequence></xs:complexType>",
                     "elementFormDefault='qualified'")}});
    ASSERT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(GetFiles(loaded), "a.xsd=a c.xsd=a b.xsd=b c.xsd=b ");
    EXPECT_TRUE(loaded.GetSet().files[1].bChameleon);
    for (const std::string strNamespace : {"a", "b"})
    {
        const SElement* pElement = loaded.GetSet().FindElement({strNamespace, "e"});
        ASSERT_NE(pElement, nullptr);
        EXPECT_EQ(pElement->pType->name, (SQName{strNamespace, "t"}));
        EXPECT_EQ(pElement->pType->AsComplex()->pContent->pGroup->particles.front()->pElement->name,
                  (SQName{strNamespace, "l"}));
    }
}

TEST(SchemaLoader, ImportsInCircles)
{
    const CLoadedSchemas loaded(
        {{"a.xsd",
          WrapSchema(Import("b", "b.xsd") + "<xs:element name='e' type='b:t'/>", "targetNamespace='a' xmlns:b='b'")},
         {"b.xsd", WrapSchema(Import("a", "a.xsd") + "<xs:complexType name='t'><xs:sequence><xs:element ref='a:e' "
                                                     "minOccurs='0'/></xs:sequence></xs:complexType>",
                              "targetNamespace='b' xmlns:a='a'")}});
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(GetFiles(loaded), "a.xsd=a b.xsd=b ");
}

TEST(SchemaLoader, TakesACopyOfADocumentForTheDocument)
{
    const std::string strCommon = WrapSchema("<xs:element name='e'/>", "targetNamespace='c'");
    const CLoadedSchemas loaded({{"a.xsd", WrapSchema(Import("c", "c1.xsd") + Include("b.xsd"), "targetNamespace='a'")},
                                 {"b.xsd", WrapSchema(Import("c", "c2.xsd"), "targetNamespace='a'")},
                                 {"c1.xsd", strCommon},
                                 {"c2.xsd", strCommon}});
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(GetFiles(loaded), "a.xsd=a c1.xsd=c b.xsd=a ");
}

TEST(SchemaLoader, LoadsSeveralSchemasTogether)
{
    SLoadOptions options;
    options.schemas = {"a.xsd", "b.xsd", "a.xsd"};
    const CLoadedSchemas loaded({{"a.xsd", WrapSchema("<xs:import namespace='b'/><xs:element name='e' type='b:t'/>",
                                                      "targetNamespace='a' xmlns:b='b'")},
                                 {"b.xsd", WrapSchema("<xs:complexType name='t'/>", "targetNamespace='b'")}},
                                options);
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_TRUE(loaded.GetSet().files[1].bGiven);
}

TEST(SchemaLoader, FindsDocumentsByLocationsOfTheCaller)
{
    const std::string strImport = Import("urn:b", "http://example.com/b.xsd") + "<xs:element name='e' type='b:t'/>";
    for (const std::string strUri : {"http://example.com/b.xsd", "urn:b"})
    {
        SLoadOptions options;
        options.locations = {{strUri, "sub/b.xsd"}};
        const CLoadedSchemas loaded(
            {{"a.xsd", WrapSchema(strImport, "targetNamespace='a' xmlns:b='urn:b'")},
             {"sub/b.xsd", WrapSchema("<xs:complexType name='t'/>", "targetNamespace='urn:b'")}},
            options);
        EXPECT_TRUE(loaded.IsLoaded()) << strUri << ": " << loaded.GetMessages();
    }
}

TEST(SchemaLoader, FindsDocumentsByCatalogs)
{
    const std::string strCatalog = R"(<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>
<group xml:base='sub/'><uri name='urn:u' uri='u.xsd'/></group>
<system systemId='http://s/s.xsd' uri='sub/s.xsd'/>
<rewriteURI uriStartString='http://r/' rewritePrefix='nowhere/'/>
<rewriteSystem systemIdStartString='http://r/deep/' rewritePrefix='sub/'/>
<nextCatalog catalog='next.xml'/><nextCatalog catalog='cat.xml'/>
</catalog>)";
    const std::string strNext = "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>"
                                "<public publicId='urn:p' uri='sub/p.xsd'/></catalog>";
    const auto make = [](const std::string& strNamespace)
    {
        return WrapSchema("", "targetNamespace='" + strNamespace + "'");
    };
    SLoadOptions options;
    options.catalogs = {"cat.xml"};
    const CLoadedSchemas loaded(
        {{"a.xsd", WrapSchema("<xs:import namespace='urn:u'/>" + Import("s", "http://s/s.xsd") +
                              Import("r", "http://r/deep/r%20r.xsd") + Import("urn:p", "http://p/"))},
         {"cat.xml", strCatalog},
         {"next.xml", strNext},
         {"sub/u.xsd", make("urn:u")},
         {"sub/s.xsd", make("s")},
         {"sub/r r.xsd", make("r")},
         {"sub/p.xsd", make("urn:p")}},
        options);
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    EXPECT_EQ(GetFiles(loaded), "cat.xml= next.xml= a.xsd= u.xsd=urn:u s.xsd=s r r.xsd=r p.xsd=urn:p ");
    EXPECT_TRUE(loaded.GetSet().files.front().bCatalog);
}

TEST(SchemaLoader, ReportsCatalogsThatAreNone)
{
    SLoadOptions options;
    options.catalogs = {"cat.xml", "none.xml", "broken.xml"};
    const CLoadedSchemas loaded({{"a.xsd", WrapSchema("")}, {"cat.xml", "<x/>"}, {"broken.xml", "<x>"}}, options);
    EXPECT_EQ(loaded.GetMessages(), "error: the catalog 'none.xml' does not exist\n"
                                    "cat.xml:1:1: error: this is not an OASIS XML catalog\n"
                                    "broken.xml:1:4: error: the document is not well-formed: no element found\n");
}

TEST(SchemaLoader, ReadsFileUris)
{
    CTempDir dir;
    WriteFileBytes(dir.PathOf("b b.xsd"), WrapSchema("", "targetNamespace='b'"));
    // A drive stands behind a slash of its own.
    const std::string strPath = dir.PathOf("b%20b.xsd").u8string();
    const std::string strUri = (strPath.front() == '/' ? "file://" : "file:///") + strPath;
    const CLoadedSchemas loaded({{"a.xsd", WrapSchema(Import("b", strUri))}});
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
}

TEST(SchemaLoader, KnowsTheAttributesOfXmlWithoutAFile)
{
    for (const std::string strLocation : {"http://www.w3.org/2001/xml.xsd", "xml.xsd"})
    {
        const CLoadedSchemas loaded(
            {{"a.xsd",
              WrapSchema(Import(std::string(s_svXmlNamespace), strLocation) +
                         "<xs:complexType name='t'><xs:attributeGroup ref='xml:specialAttrs'/></xs:complexType>")}});
        EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
        EXPECT_EQ(loaded.GetMessages(), "");
        EXPECT_TRUE(loaded.GetSet().files.back().bBuiltIn);
    }
}

TEST(SchemaLoader, PrefersAFileForTheAttributesOfXml)
{
    const CLoadedSchemas loaded(
        {{"a.xsd", WrapSchema(Import(std::string(s_svXmlNamespace), "xml.xsd") +
                              "<xs:complexType name='t'><xs:attribute ref='xml:own'/></xs:complexType>")},
         {"xml.xsd",
          WrapSchema("<xs:attribute name='own'/>", "targetNamespace='http://www.w3.org/XML/1998/namespace'")}});
    EXPECT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
}

struct SRefusal
{
    const char* lpctName;
    CLoadedSchemas::CFiles files;
    std::string strMessages;
};

void PrintTo(const SRefusal& refusal, std::ostream* pOut)
{
    *pOut << refusal.strMessages;
}

class SchemaLoaderRefuses : public testing::TestWithParam<SRefusal>
{
};

const SRefusal s_refusals[] = {
    {"MissingImport",
     {{"a.xsd", WrapSchema("\n " + Import("b", "b.xsd"))}},
     "a.xsd:3:2: error: the import of namespace 'b': 'b.xsd' does not exist\n"},
    {"ImportFromTheNet",
     {{"a.xsd", WrapSchema(Import("b", "http://example.com/b.xsd"))}},
     "a.xsd:2:1: error: the import of namespace 'b': 'http://example.com/b.xsd' is not a file; a location or a catalog "
     "may "
     "name one for it\n"},
    {"MissingImportOfWhatIsKnown",
     {{"a.xsd", WrapSchema(Import("b", "b.xsd") + "\n" + Import("b", "c.xsd"))},
      {"b.xsd", WrapSchema("", "targetNamespace='b'")}},
     "a.xsd:3:1: warning: the import of namespace 'b': 'c.xsd' does not exist; what is known of it from elsewhere is "
     "used\n"},
    {"MissingInclude", {{"a.xsd", WrapSchema(Include("b.xsd"))}}, "a.xsd:2:1: error: 'b.xsd' does not exist\n"},
    {"IncludedFolder", {{"a.xsd", WrapSchema(Include("sub"))}, {"sub/x", ""}}, "a.xsd:2:1: error: 'sub' is a folder\n"},
    {"IncludeOfAnotherNamespace",
     {{"a.xsd", WrapSchema(Include("b.xsd"), "targetNamespace='a'")}, {"b.xsd", WrapSchema("", "targetNamespace='b'")}},
     "a.xsd:2:1: error: 'b.xsd' has the target namespace 'b', where the target namespace 'a' is needed\n"},
    {"ImportOfAnotherNamespace",
     {{"a.xsd", WrapSchema(Import("b", "b.xsd"), "targetNamespace='a'")}, {"b.xsd", WrapSchema("")}},
     "a.xsd:2:1: error: 'b.xsd' has no target namespace, where the target namespace 'b' is needed\n"},
    {"ImportOfTheOwnNamespace",
     {{"a.xsd", WrapSchema(Import("a", "b.xsd"), "targetNamespace='a'")}},
     "a.xsd:2:1: error: a schema cannot import its own target namespace 'a'\n"},
    {"NotASchema",
     {{"a.xsd", "<html/>"}},
     "a.xsd:1:1: error: the root element is 'html', not 'schema' of XML Schema\n"},
    {"NotASchemaTwice",
     {{"a.xsd", WrapSchema(Include("b.xsd") + Include("b.xsd"))}, {"b.xsd", "\n<html/>"}},
     "b.xsd:2:1: error: the root element is 'html', not 'schema' of XML Schema\n"},
    {"NotXml", {{"a.xsd", "x"}}, "a.xsd:1:1: error: the document is not well-formed: syntax error\n"},
    {"ErrorsInTheOrderOfFiles",
     {{"a.xsd", WrapSchema(Include("b.xsd") + "\n<xs:bad/>")}, {"b.xsd", WrapSchema("<xs:worse/>")}},
     "a.xsd:3:1: error: the element 'bad' is not known in a schema\n"
     "b.xsd:2:1: error: the element 'worse' is not known in a schema\n"},
};

TEST_P(SchemaLoaderRefuses, WithThePlace)
{
    const CLoadedSchemas loaded(GetParam().files);
    EXPECT_EQ(loaded.GetMessages(), GetParam().strMessages);
    EXPECT_EQ(loaded.IsLoaded(), GetParam().strMessages.find("error") == std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, SchemaLoaderRefuses, testing::ValuesIn(s_refusals),
                         [](const auto& test) { return std::string(test.param.lpctName); });

TEST(SchemaLoader, ReportsAGivenFileThatIsNotThere)
{
    SLoadOptions options;
    options.schemas = {"none.xsd"};
    EXPECT_EQ(CLoadedSchemas({{"a.xsd", ""}}, options).GetMessages(), "error: 'none.xsd' does not exist\n");
}

TEST(SchemaLoader, TellsHowManyErrorsAreNotShown)
{
    std::string strElements;
    for (int n = 0; n < 120; ++n)
        strElements += "<xs:bad/>\n";
    const std::string strMessages = GetSchemaMessages(strElements);
    EXPECT_EQ(std::count(strMessages.begin(), strMessages.end(), '\n'), 101);
    EXPECT_NE(strMessages.find("\nerror: 20 more errors are not shown\n"), std::string::npos);
}

// --- Redefinition

const std::string s_strRedefined =
    WrapSchema("<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:maxLength "
               "value='9'/></xs:restriction></xs:simpleType>\n"
               "<xs:complexType name='c'><xs:sequence><xs:element name='x' type='s'/></xs:sequence></xs:complexType>\n"
               "<xs:group name='g'><xs:sequence><xs:element name='y'/></xs:sequence></xs:group>\n"
               "<xs:attributeGroup name='a'><xs:attribute name='p'/></xs:attributeGroup>\n"
               "<xs:element name='e' type='c'/>");

std::string Redefine(const std::string& strComponents)
{
    return WrapSchema("<xs:redefine schemaLocation='b.xsd'>\n" + strComponents + "</xs:redefine>");
}

TEST(SchemaLoader, RedefinesWithTheFormerDefinitionAsBase)
{
    const CLoadedSchemas loaded(
        {{"a.xsd",
          Redefine(
              "<xs:simpleType name='s'><xs:restriction base='s'><xs:maxLength "
              "value='5'/></xs:restriction></xs:simpleType>\n"
              "<xs:complexType name='c'><xs:complexContent><xs:extension base='c'><xs:sequence><xs:element name='z' "
              "type='c'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
              "<xs:group name='g'><xs:choice><xs:group ref='g'/><xs:element name='w'/></xs:choice></xs:group>\n"
              "<xs:attributeGroup name='a'><xs:attributeGroup ref='a'/><xs:attribute name='q'/></xs:attributeGroup>")},
         {"b.xsd", s_strRedefined}});
    ASSERT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    const SSchemaSet& set = loaded.GetSet();
    const SType* pType = set.FindType({"", "c"});
    EXPECT_EQ(pType->position.nFile, 0);
    ASSERT_NE(pType->pRedefines, nullptr);
    EXPECT_EQ(pType->pBase, pType->pRedefines);
    EXPECT_TRUE(pType->pBase->bRedefined);
    EXPECT_EQ(pType->pBase->position.nFile, 1);
    EXPECT_EQ(set.FindElement({"", "e"})->pType, pType) << "others mean the new definition";
    const SModelGroup& content = *pType->AsComplex()->pContent->pGroup;
    EXPECT_EQ(content.particles[1]->pGroup->particles[0]->pElement->pType, pType);
    EXPECT_EQ(content.particles[0]->pGroup->particles[0]->pElement->pType, set.FindType({"", "s"}));
    const SNamespace& space = *set.FindNamespace("");
    EXPECT_EQ(space.types.list.size(), 2u);
    const SGroupDefinition& group = *space.groups.Find("g");
    EXPECT_EQ(group.pGroup->particles[0]->pDefinition, group.pRedefines);
    ASSERT_EQ(space.attributeGroups.Find("a")->attributes.size(), 2u);
    EXPECT_EQ(space.attributeGroups.Find("a")->attributes[0]->GetName().strLocal, "p");
}

TEST(SchemaLoader, RedefinesARedefinition)
{
    const auto narrow = [](const std::string& strFile, const std::string& strLength)
    {
        return WrapSchema("<xs:redefine schemaLocation='" + strFile +
                          "'><xs:simpleType name='s'><xs:restriction base='s'>" + "<xs:maxLength value='" + strLength +
                          "'/></xs:restriction></xs:simpleType></xs:redefine>");
    };
    const CLoadedSchemas loaded(
        {{"a.xsd", narrow("m.xsd", "3")}, {"m.xsd", narrow("b.xsd", "5")}, {"b.xsd", s_strRedefined}});
    ASSERT_TRUE(loaded.IsLoaded()) << loaded.GetMessages();
    const SType* pType = loaded.GetSet().FindType({"", "s"});
    EXPECT_EQ(pType->position.nFile, 0);
    EXPECT_EQ(pType->pBase->position.nFile, 1);
    EXPECT_EQ(pType->pBase->pBase->position.nFile, 2);
}

TEST(SchemaLoader, ReportsRedefinitionsThatAreNone)
{
    const auto getMessages = [](const std::string& strComponents)
    {
        return CLoadedSchemas({{"a.xsd", Redefine(strComponents)}, {"b.xsd", s_strRedefined}}).GetMessages();
    };
    EXPECT_EQ(getMessages("<xs:simpleType name='n'><xs:restriction base='n'/></xs:simpleType>"),
              "a.xsd:3:1: error: the type 'n' cannot be redefined: 'b.xsd' does not define it\n");
    EXPECT_EQ(getMessages("<xs:simpleType name='s'><xs:restriction base='xs:string'/></xs:simpleType>"),
              "a.xsd:3:25: error: a redefined type is derived from its former definition\n");
    EXPECT_EQ(getMessages("<xs:complexType name='c'/>"),
              "a.xsd:3:1: error: a redefined type is derived from its former definition\n");
    EXPECT_EQ(getMessages("<xs:group name='g'><xs:sequence><xs:group ref='g' minOccurs='0'/></xs:sequence></xs:group>"),
              "a.xsd:3:33: error: a redefined group that refers to its former definition does so once: minOccurs and "
              "maxOccurs "
              "are 1\n");
    EXPECT_EQ(getMessages("<xs:element name='e'/>"),
              "a.xsd:3:1: error: the element 'element' is not allowed in 'redefine'\n");
}

TEST(SchemaLoader, ReportsTwoRedefinitionsOfOneDefinition)
{
    const std::string strRedefine = "<xs:redefine schemaLocation='b.xsd'><xs:simpleType name='s'><xs:restriction "
                                    "base='s'/></xs:simpleType></xs:redefine>";
    const CLoadedSchemas loaded({{"a.xsd", WrapSchema(Include("m.xsd") + "\n" + strRedefine)},
                                 {"m.xsd", WrapSchema(strRedefine)},
                                 {"b.xsd", s_strRedefined}});
    EXPECT_EQ(loaded.GetMessages(),
              "a.xsd:3:37: error: the type 's' cannot be redefined: another definition took its place at "
              "m.xsd:2:37\n");
}

} // namespace
