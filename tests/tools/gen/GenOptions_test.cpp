#include "tests/support/Files.h"

#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace quiver_gen;
using QvTest::CTempDir;
using QvTest::WriteFileBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

namespace
{

/// Options of a command line in words, behind a schema and a folder.
SOptions Parse(const std::string& strArguments)
{
    std::vector<std::string> arguments = {"order.xsd", "-o", "out"};
    std::istringstream words(strArguments);
    for (std::string strWord; words >> strWord;)
        arguments.push_back(strWord);
    return ParseOptions(arguments);
}

std::string GetMessage(const std::vector<std::string>& arguments)
{
    try
    {
        ParseOptions(arguments);
    }
    catch (const CUsageError& error)
    {
        return error.strMessage;
    }
    catch (const CFileError& error)
    {
        return error.what();
    }
    return "no error";
}

TEST(GenOptions, HasTheDefaultsOfTheHelp)
{
    const SOptions options = ParseOptions({"a/b/order.xsd", "c.xsd", "-o", "out"});
    EXPECT_EQ(options.eCommand, ECommand::Generate);
    EXPECT_THAT(options.load.schemas, ElementsAre("a/b/order.xsd", "c.xsd"));
    EXPECT_THAT(options.write.schemas, ElementsAre("order.xsd", "c.xsd"));
    EXPECT_EQ(options.strFolder, "out");
    EXPECT_THAT(options.load.catalogs, IsEmpty());
    EXPECT_THAT(options.load.locations, IsEmpty());
    EXPECT_EQ(options.write.eSplit, cpp::ESplit::Namespace);
    EXPECT_EQ(options.write.strStem, "");
    EXPECT_EQ(options.write.nParts, 1u);
    EXPECT_EQ(options.write.strFactory, "");
    EXPECT_FALSE(options.write.bProgram);
    EXPECT_EQ(options.write.strLibrary, "");
    EXPECT_FALSE(options.write.bUtf8);
    EXPECT_EQ(options.strDependencies, "");
    EXPECT_FALSE(options.bWarningsAreErrors);
    EXPECT_FALSE(options.binding.bInteger64);
    EXPECT_EQ(options.binding.eMixed, binding::SBindingOptions::EMixed::Joined);
    EXPECT_EQ(options.binding.eComments, binding::SBindingOptions::EComments::All);
    EXPECT_EQ(options.binding.strLang, "");
    EXPECT_THAT(options.binding.roots, IsEmpty());
}

TEST(GenOptions, ReadsEachOption)
{
    EXPECT_THAT(Parse("--namespace urn:a?b=c=x::y --namespace =z").binding.namespaces,
                ElementsAre(Pair("urn:a?b=c", "x::y"), Pair("", "z")));
    EXPECT_EQ(Parse("--factory accept::CRoots").write.strFactoryNamespace, "accept");
    EXPECT_EQ(Parse("--factory a::b::CRoots").write.strFactoryNamespace, "a::b");
    EXPECT_EQ(Parse("--factory accept::CRoots").write.strFactory, "CRoots");
    EXPECT_EQ(Parse("--factory CRoots").write.strFactory, "CRoots");
    EXPECT_EQ(Parse("--factory CRoots").write.strFactoryNamespace, "");
    EXPECT_EQ(Parse("--split namespace").write.eSplit, cpp::ESplit::Namespace);
    EXPECT_EQ(Parse("--split type").write.eSplit, cpp::ESplit::Type);
    EXPECT_EQ(Parse("--split none").write.eSplit, cpp::ESplit::None);
    EXPECT_EQ(Parse("--split none --stem Orders").write.strStem, "Orders");
    EXPECT_EQ(Parse("--split none --parts 12").write.nParts, 12u);
    EXPECT_EQ(Parse("--cmake orders").write.strLibrary, "orders");
    EXPECT_EQ(Parse("--depfile x.d").strDependencies, "x.d");
    EXPECT_THAT(Parse("--depfile x.d --dep-target a --dep-target b").dependencyTargets, ElementsAre("a", "b"));
    EXPECT_EQ(Parse("--list-files").eCommand, ECommand::ListFiles);
    EXPECT_THAT(Parse("--catalog a --catalog b").load.catalogs, ElementsAre("a", "b"));
    EXPECT_THAT(Parse("--location http://x/?a=b=c.xsd").load.locations, ElementsAre(Pair("http://x/?a=b", "c.xsd")));
    EXPECT_EQ(Parse("--integer big").binding.bInteger64, false);
    EXPECT_EQ(Parse("--integer i8").binding.bInteger64, true);
    EXPECT_EQ(Parse("--mixed joined").binding.eMixed, binding::SBindingOptions::EMixed::Joined);
    EXPECT_EQ(Parse("--mixed refuse").binding.eMixed, binding::SBindingOptions::EMixed::Refuse);
    EXPECT_EQ(Parse("--text wide").write.bUtf8, false);
    EXPECT_EQ(Parse("--text utf8").write.bUtf8, true);
    EXPECT_EQ(Parse("--comments all").binding.eComments, binding::SBindingOptions::EComments::All);
    EXPECT_EQ(Parse("--comments first").binding.eComments, binding::SBindingOptions::EComments::First);
    EXPECT_EQ(Parse("--comments none").binding.eComments, binding::SBindingOptions::EComments::None);
    EXPECT_EQ(Parse("--lang en").binding.strLang, "en");
    EXPECT_TRUE(Parse("--werror").bWarningsAreErrors);
    EXPECT_EQ(Parse("--dump-components").eCommand, ECommand::DumpComponents);
    EXPECT_EQ(Parse("--dump-binding").eCommand, ECommand::DumpBinding);
    EXPECT_EQ(ParseOptions({"--dump-binding", "a.xsd"}).eCommand, ECommand::DumpBinding) << "no folder is needed";
    EXPECT_EQ(ParseOptions({"a.xsd", "--check"}).eCommand, ECommand::Check);
    EXPECT_EQ(ParseOptions({"--version"}).eCommand, ECommand::Version);
    EXPECT_EQ(ParseOptions({"--help"}).eCommand, ECommand::Help);
    EXPECT_EQ(ParseOptions({"-h"}).eCommand, ECommand::Help);
    EXPECT_EQ(Parse("--nonsense --help").eCommand, ECommand::Help);
}

TEST(GenOptions, TakesValuesBehindASignToo)
{
    EXPECT_EQ(Parse("--split=type").write.eSplit, cpp::ESplit::Type);
    EXPECT_THAT(Parse("--namespace=urn:a=x").binding.namespaces, ElementsAre(Pair("urn:a", "x")));
    EXPECT_EQ(ParseOptions({"-o=x", "a.xsd"}).strFolder, "x");
}

TEST(GenOptions, TellsTheNameOfAProgramFromASchema)
{
    EXPECT_TRUE(Parse("--program").write.bProgram);
    EXPECT_EQ(Parse("--program").write.strProgram, "");
    EXPECT_EQ(Parse("--program reader").write.strProgram, "reader");
    EXPECT_EQ(Parse("--program=my-reader").write.strProgram, "my-reader");
    EXPECT_EQ(Parse("--program --werror").write.strProgram, "");
    const SOptions options = ParseOptions({"-o", "x", "--program", "order.xsd"});
    EXPECT_EQ(options.write.strProgram, "");
    EXPECT_THAT(options.load.schemas, ElementsAre("order.xsd"));
}

TEST(GenOptions, TellsDocumentsFromSchemas)
{
    const SOptions options = ParseOptions({"s", "a.xml", "b.xsd", "--check", "c", "--", "d.xsd", "-e"});
    EXPECT_THAT(options.load.schemas, ElementsAre("s", "b.xsd"));
    EXPECT_THAT(options.documents, ElementsAre("a.xml", "c", "d.xsd", "-e"));
    EXPECT_THAT(ParseOptions({"--check", "--", "-s", "t.xsd"}).load.schemas, ElementsAre("-s"));
    EXPECT_THAT(Parse("a.xml").documents, IsEmpty());
    EXPECT_THAT(Parse("a.xml").load.schemas, ElementsAre("order.xsd", "a.xml"));
    EXPECT_EQ(GetMessage({"--check"}), "a schema is needed");
    EXPECT_EQ(GetMessage({"--check=a.xsd"}), "--check takes no value");
}

TEST(GenOptions, TakesRootsUpToTheNextOptionOrSchema)
{
    EXPECT_THAT(Parse("--root order {urn:a}b --werror --root c").binding.roots, ElementsAre("order", "{urn:a}b", "c"));
    const SOptions bySchema = ParseOptions({"-o", "x", "--root", "a", "b", "order.xsd"});
    EXPECT_THAT(bySchema.binding.roots, ElementsAre("a", "b"));
    EXPECT_THAT(bySchema.load.schemas, ElementsAre("order.xsd"));
    const SOptions byDashes = ParseOptions({"-o", "x", "--root", "a", "--", "order", "-x"});
    EXPECT_THAT(byDashes.binding.roots, ElementsAre("a"));
    EXPECT_THAT(byDashes.load.schemas, ElementsAre("order", "-x"));
}

TEST(GenOptions, ReadsRulesFromFiles)
{
    const CTempDir dir;
    const std::string strNamespaces = dir.PathOf("namespaces").u8string();
    const std::string strRenames = dir.PathOf("renames").u8string();
    const std::string strMaps = dir.PathOf("maps").u8string();
    WriteFileBytes(strNamespaces, "# a comment\n\n  urn:a=x::y \t\r\nurn:b=z");
    WriteFileBytes(strRenames, "{urn:a}Item/part = Piece\nOrder = Sale\n");
    WriteFileBytes(strMaps, "{urn:a}Money = decimal\n{urn:a}Id = string\n");
    const SOptions options =
        Parse("--namespace-file " + strNamespaces + " --rename " + strRenames + " --map " + strMaps);
    EXPECT_THAT(options.binding.namespaces, ElementsAre(Pair("urn:a", "x::y"), Pair("urn:b", "z")));
    ASSERT_EQ(options.binding.renames.size(), 2u);
    EXPECT_EQ(options.binding.renames[0].strInner, "part");
    EXPECT_EQ(options.binding.renames[1].strName, "Sale");
    ASSERT_EQ(options.binding.maps.size(), 2u);
    EXPECT_EQ(options.binding.maps[1].eValue, binding::EValue::String);
    EXPECT_THAT(options.ruleFiles, ElementsAre(strNamespaces, strRenames, strMaps));
}

TEST(GenOptions, NamesTheLineOfABadRule)
{
    const CTempDir dir;
    const std::string strPath = dir.PathOf("rules").u8string();
    WriteFileBytes(strPath, "# fine\nnonsense\n");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"--namespace-file", "URI=ns::name"},
        {"--rename", "{uri}Type = Name or {uri}Type/member = Name"},
        {"--map", "{uri}Type = decimal, string, i8 or r8"},
    };
    for (const auto& [strOption, strForm] : cases)
        EXPECT_EQ(GetMessage({"a.xsd", "-o", "x", strOption, strPath}),
                  strPath + ":2:1: error: a rule has the form " + strForm);
    const std::string strNone = dir.PathOf("none").u8string();
    EXPECT_EQ(GetMessage({"a.xsd", "-o", "x", "--map", strNone}),
              "cannot read " + strNone + ": No such file or directory");
}

TEST(GenOptions, RefusesWhatMakesNoSense)
{
    struct SCase
    {
        std::vector<std::string> arguments;
        const char* lpcMessage;
    };
    const SCase s_cases[] = {
        {{}, "a schema is needed"},
        {{"-o", "x"}, "a schema is needed"},
        {{"a.xsd"}, "-o DIR is needed"},
        {{"a.xsd", "--list-files"}, "-o DIR is needed"},
        {{"a.xsd", "-o"}, "-o needs a value"},
        {{"a.xsd", "-o", ""}, "-o does not take the value \"\""},
        {{"", "-o", "x"}, "the name of a schema is empty"},
        {{"a.xsd", "-o", "x", "--nonsense"}, "there is no option --nonsense"},
        {{"a.xsd", "-o", "x", "--nonsense=1"}, "there is no option --nonsense"},
        {{"a.xsd", "-o", "x", "-x"}, "there is no option -x"},
        {{"a.xsd", "-o", "x", "--werror=1"}, "--werror takes no value"},
        {{"a.xsd", "-o", "x", "--split", "both"}, "--split does not take the value \"both\""},
        {{"a.xsd", "-o", "x", "--integer", "i4"}, "--integer does not take the value \"i4\""},
        {{"a.xsd", "-o", "x", "--mixed", ""}, "--mixed does not take the value \"\""},
        {{"a.xsd", "-o", "x", "--text", "utf16"}, "--text does not take the value \"utf16\""},
        {{"a.xsd", "-o", "x", "--comments", "some"}, "--comments does not take the value \"some\""},
        {{"a.xsd", "-o", "x", "--lang", ""}, "--lang does not take the value \"\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a"}, "--namespace does not take the value \"urn:a\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a="}, "--namespace does not take the value \"urn:a=\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a=1x"}, "--namespace does not take the value \"urn:a=1x\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a=x::"}, "--namespace does not take the value \"urn:a=x::\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a=x::int"}, "--namespace does not take the value \"urn:a=x::int\""},
        {{"a.xsd", "-o", "x", "--namespace", "urn:a=std"}, "--namespace does not take the value \"urn:a=std\""},
        {{"a.xsd", "-o", "x", "--factory", "a:CB"}, "--factory does not take the value \"a:CB\""},
        {{"a.xsd", "-o", "x", "--cmake", "a b"}, "--cmake does not take the value \"a b\""},
        {{"a.xsd", "-o", "x", "--program=a/b"}, "--program does not take the value \"a/b\""},
        {{"a.xsd", "-o", "x", "--program", "x", "--cmake", "x"}, "--program and --cmake need different names"},
        {{"a.xsd", "-o", "x", "--stem", "A"}, "--stem goes with --split none"},
        {{"a.xsd", "-o", "x", "--parts", "2"}, "--parts goes with --split none"},
        {{"a.xsd", "-o", "x", "--split", "none", "--stem", "a/b"}, "--stem does not take the value \"a/b\""},
        {{"a.xsd", "-o", "x", "--split", "none", "--parts", "0"}, "--parts does not take the value \"0\""},
        {{"a.xsd", "-o", "x", "--split", "none", "--parts", "1001"}, "--parts does not take the value \"1001\""},
        {{"a.xsd", "-o", "x", "--split", "none", "--parts", "2x"}, "--parts does not take the value \"2x\""},
        {{"a.xsd", "-o", "x", "--dep-target", "a"}, "--dep-target goes with --depfile"},
        {{"a.xsd", "-o", "x", "--location", "a"}, "--location does not take the value \"a\""},
        {{"a.xsd", "-o", "x", "--root"}, "--root needs a value"},
        {{"a.xsd", "-o", "x", "--root", ""}, "--root does not take the value \"\""},
    };
    for (const SCase& one : s_cases)
        EXPECT_EQ(GetMessage(one.arguments), one.lpcMessage) << testing::PrintToString(one.arguments);
}

TEST(GenOptions, HelpHasEachOptionAndFitsAScreen)
{
    const std::string strHelp = GetHelp();
    for (const char* const lpcOption : {"-o DIR",
                                        "--namespace URI=ns::name",
                                        "--namespace-file FILE",
                                        "--factory ns::CName",
                                        "--split HOW",
                                        "--stem NAME",
                                        "--parts N",
                                        "--program [NAME]",
                                        "--cmake NAME",
                                        "--depfile FILE",
                                        "--dep-target NAME",
                                        "--list-files",
                                        "--catalog FILE",
                                        "--location URI=FILE",
                                        "--root NAME...",
                                        "--rename FILE",
                                        "--map FILE",
                                        "--integer HOW",
                                        "--mixed HOW",
                                        "--text HOW",
                                        "--comments HOW",
                                        "--lang LANG",
                                        "--werror",
                                        "--dump-components",
                                        "--dump-binding",
                                        "--version",
                                        "--help"})
        EXPECT_THAT(strHelp, HasSubstr("\n  " + std::string(lpcOption) + ' '));
    EXPECT_THAT(strHelp, testing::StartsWith("Writes C++ classes for XML Schema (XSD 1.0) documents"));
    EXPECT_THAT(strHelp, HasSubstr("\n  quiver-gen SCHEMA... -o DIR [options]\n"));
    EXPECT_THAT(strHelp, HasSubstr("\n  quiver-gen order.xsd -o generated --program order\n"));
    std::istringstream lines(strHelp);
    for (std::string strLine; std::getline(lines, strLine);)
    {
        EXPECT_LE(strLine.size(), 110u) << strLine;
        EXPECT_FALSE(!strLine.empty() && strLine.back() == ' ') << strLine;
    }
}

} // namespace
