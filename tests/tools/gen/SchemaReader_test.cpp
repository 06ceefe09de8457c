#include "tools/quiver-gen/schema/Reader.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace quiver_gen::schema;

namespace
{

struct SReadTree
{
    explicit SReadTree(std::string_view svBytes) { tree = ReadTree(svBytes, 0, scopes, diagnostics); }

    std::string GetMessages() const
    {
        std::ostringstream out;
        std::vector<SFile> files(1);
        files.front().strPath = "f";
        diagnostics.Print(out, files);
        return out.str();
    }

    std::deque<SNamespaceScope> scopes;
    CDiagnostics diagnostics;
    STree tree;
};

TEST(SchemaReader, KeepsNamesAttributesAndPlaces)
{
    const SReadTree read(
        "<x:schema xmlns:x='http://www.w3.org/2001/XMLSchema'>\n  <a b='1' xmlns='u' x:c='2'/></x:schema>");
    ASSERT_TRUE(read.tree.bComplete) << read.GetMessages();
    const SNode& root = *read.tree.pRoot;
    EXPECT_TRUE(root.Is("schema"));
    ASSERT_EQ(root.children.size(), 1u);
    const SNode& child = *root.children.front();
    EXPECT_FALSE(child.bXsd);
    EXPECT_EQ(child.strNamespace, "u");
    EXPECT_EQ(child.strLocal, "a");
    EXPECT_EQ(child.nLine, 2);
    EXPECT_EQ(child.nColumn, 3);
    ASSERT_EQ(child.attributes.size(), 2u);
    EXPECT_EQ(*child.Find("b"), "1");
    EXPECT_EQ(child.Find("c"), nullptr) << "an attribute in a namespace is another one";
    EXPECT_EQ(child.attributes[1].strNamespace, s_svXsdNamespace);
    EXPECT_EQ(*child.pScope->Find(""), "u");
    EXPECT_EQ(*child.pScope->Find("x"), s_svXsdNamespace);
    EXPECT_EQ(root.pScope->Find(""), nullptr);
}

TEST(SchemaReader, CountsColumnsInCharacters)
{
    const SReadTree read("<a><!-- \xC3\xA4\xE2\x82\xAC --><b/></a>");
    EXPECT_EQ(read.tree.pRoot->children.front()->nColumn, 15);
}

TEST(SchemaReader, GathersTheTextOfDocumentation)
{
    const SReadTree read(
        "<schema xmlns='http://www.w3.org/2001/XMLSchema' xml:lang='fr'><annotation><documentation>a<b>b<c/>"
        "d</b>e</documentation><appinfo>x<y/></appinfo></annotation></schema>");
    ASSERT_TRUE(read.tree.bComplete) << read.GetMessages();
    const SNode& annotation = *read.tree.pRoot->children.front();
    ASSERT_EQ(annotation.children.size(), 2u);
    EXPECT_EQ(annotation.children[0]->strText, "abde");
    EXPECT_EQ(annotation.children[0]->strLang, "fr");
    EXPECT_TRUE(annotation.children[0]->children.empty());
    EXPECT_EQ(annotation.children[1]->strText, "");
    EXPECT_FALSE(annotation.children[1]->bText);
}

TEST(SchemaReader, ReadsUtf16AndLatin1)
{
    const std::string strText = "<a b='x'/>";
    for (const bool bBigEndian : {false, true})
    {
        std::string strBytes = bBigEndian ? "\xFE\xFF" : "\xFF\xFE";
        for (const char ch : strText)
            strBytes += bBigEndian ? std::string{'\0', ch} : std::string{ch, '\0'};
        EXPECT_TRUE(SReadTree(strBytes).tree.bComplete);
    }
    const SReadTree latin("<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE4'/>");
    ASSERT_TRUE(latin.tree.bComplete);
    EXPECT_EQ(*latin.tree.pRoot->Find("b"), "\xC3\xA4");
}

TEST(SchemaReader, ExpandsEntitiesOfTheDocument)
{
    const SReadTree read("<!DOCTYPE a [<!ENTITY e 'x'>]><a b='&e;y'/>");
    ASSERT_TRUE(read.tree.bComplete) << read.GetMessages();
    EXPECT_EQ(*read.tree.pRoot->Find("b"), "xy");
}

TEST(SchemaReader, ReportsWhatIsNotXmlWithItsPlace)
{
    const std::pair<std::string, std::string> cases[] = {
        {"", "f:1:1: error: the document is not well-formed: no element found\n"},
        {"hello", "f:1:1: error: the document is not well-formed: syntax error\n"},
        {"<a>\n <b></a>", "f:2:7: error: the document is not well-formed: mismatched tag\n"},
        {"<a><p:b/></a>", "f:1:4: error: the document is not well-formed: unbound prefix\n"},
        {"<!DOCTYPE a SYSTEM 'x.dtd'><a>\n&e;</a>", "f:2:1: error: the entity 'e' is not declared in this document\n"},
        {"<?xml version='1.0' encoding='x-none'?><a/>",
         "f:1:31: error: the document is not well-formed: unknown encoding\n"},
    };
    for (const auto& [strText, strMessage] : cases)
    {
        const SReadTree read(strText);
        EXPECT_FALSE(read.tree.bComplete) << strText;
        EXPECT_EQ(read.GetMessages(), strMessage) << strText;
    }
}

TEST(SchemaReader, RefusesElementsThatNestTooDeep)
{
    const auto nest = [](std::size_t nDepth)
    {
        std::string strText;
        for (std::size_t n = 0; n < nDepth; ++n)
            strText += "<a>";
        for (std::size_t n = 0; n < nDepth; ++n)
            strText += "</a>";
        return strText;
    };
    EXPECT_TRUE(SReadTree(nest(s_nMaxDepth)).tree.bComplete);
    EXPECT_EQ(SReadTree(nest(s_nMaxDepth + 1)).GetMessages(), "f:1:1501: error: elements nest deeper than 500\n");
    EXPECT_EQ(SReadTree(nest(10000)).GetMessages(), "f:1:1501: error: elements nest deeper than 500\n");
}

TEST(SchemaReader, StopsEntitiesThatExplode)
{
    std::string strText = "<!DOCTYPE a [<!ENTITY e0 'aaaaaaaaaaaaaaaaaaaa'>";
    for (int n = 1; n < 12; ++n)
    {
        const std::string strInner = "&e" + std::to_string(n - 1) + ";";
        strText += "<!ENTITY e" + std::to_string(n) + " '";
        for (int nTimes = 0; nTimes < 10; ++nTimes)
            strText += strInner;
        strText += "'>";
    }
    strText += "]><schema xmlns='http://www.w3.org/2001/XMLSchema'><documentation>&e11;</documentation></schema>";
    const SReadTree read(strText);
    EXPECT_FALSE(read.tree.bComplete);
    EXPECT_NE(read.GetMessages().find("limit on input amplification factor"), std::string::npos) << read.GetMessages();
}

} // namespace
