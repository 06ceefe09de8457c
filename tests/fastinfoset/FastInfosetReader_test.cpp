#include "quiver/fastinfoset/FastInfosetReader.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlTreeBuilder.h"
#include "quiver/fastinfoset/FIDeclarations.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/platform/Platform.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using QvTest::BytesOf;
using QvTest::CountInstances;
using QvTest::ExpectThrows;
using QvTest::Joined;
using QvTest::Octets;
using QvTest::OctetsOf;

namespace
{

constexpr wchar_t s_szEndOfFile[] = L"Failed to parse FastInfoset. Unexpected End of File.";
constexpr wchar_t s_szNoRoot[] = L"Invalid or empty XML document";

/// Identification, version, no optional components.
const Octets s_head = {224, 0, 0, 1, 0};

/// An element as `name x="v" y="w" 'text' (child child)`, with `{namespace}` in front of names that have one.
std::wstring Show(CXmlElement* pElement)
{
    const auto fnName = [](const auto& node)
    {
        return (node.GetNamespaceURI().empty() ? L"" : L"{" + node.GetNamespaceURI() + L"}") + node.GetLocalName();
    };
    std::wstring strShown = fnName(*pElement);
    for (const CXmlAttribute* pAttribute : pElement->GetAttributes())
        strShown += L" " + fnName(*pAttribute) + L"=\"" + pAttribute->GetValue() + L"\"";
    if (!pElement->GetText().empty())
        strShown += L" '" + pElement->GetText() + L"'";
    std::wstring strChildren;
    for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        strChildren += (strChildren.empty() ? L"" : L" ") + Show(pChild);
    return strChildren.empty() ? strShown : strShown + L" (" + strChildren + L")";
}

void Load(CXmlDocument& document, const Octets& octets)
{
    std::string strBytes = BytesOf(octets);
    // A block of its own size, so that a read behind it is noticed.
    const std::unique_ptr<unsigned char[]> pBytes(new unsigned char[strBytes.size()]);
    std::copy(strBytes.begin(), strBytes.end(), pBytes.get());
    document.LoadXmlStream(pBytes.get(), static_cast<unsigned long>(strBytes.size()));
}

std::wstring Read(const Octets& octets, const CXmlSerializationContext& context = CXmlSerializationContext())
{
    CXmlDocument document(context);
    Load(document, octets);
    return Show(document.GetDocumentElement());
}

/// A document without optional components.
std::wstring ReadBody(const Octets& body, const CXmlSerializationContext& context = CXmlSerializationContext())
{
    return Read(Joined({s_head, body}), context);
}

/// The root `r` with some content, and the ends of root and document behind it.
std::wstring ReadContent(const Octets& content)
{
    return ReadBody(Joined({{60, 0, 'r'}, content, {255}}));
}

/// The value of the attribute `x` of the root.
std::wstring ReadAttributeValue(const Octets& value)
{
    CXmlDocument document;
    Load(document, Joined({s_head, {124, 0, 'r', 120, 0, 'x'}, value, {255, 240}}));
    return document.GetDocumentElement()->GetAttributes().at(0)->GetValue();
}

/// The text of the root.
std::wstring ReadText(const Octets& chunks)
{
    CXmlDocument document;
    Load(document, Joined({s_head, {60, 0, 'r'}, chunks, {255}}));
    return document.GetDocumentElement()->GetText();
}

void ExpectFails(const std::wstring& strMessage, const Octets& body)
{
    ExpectThrows<CQvException>(strMessage, [&] { ReadBody(body); });
}

Octets Ascii(std::string_view svText)
{
    return OctetsOf(svText);
}

/// An octet string or literal name of up to 64 octets.
Octets Literal(std::string_view svText)
{
    return Joined({{static_cast<int>(svText.size()) - 1}, Ascii(svText)});
}

/// What expat says of octets that are no Fast Infoset document.
void ExpectIsText(const Octets& octets)
{
    try
    {
        Read(octets);
        ADD_FAILURE() << "read as a document";
    }
    catch (const CQvException& ex)
    {
        EXPECT_NE(std::wstring::npos, ex.GetMessageW().find(L" at line ")) << QvTest::Show(ex.GetMessageW());
    }
}

/// Documents that between them use every form that the reader takes.
std::vector<Octets> SampleDocuments()
{
    CFastInfosetContext context;
    context.SetSuggestedValues();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_V10);
    writer.SetDefaultNamespace(L"urn:d");
    writer.AddNamespaceMapping(L"p", L"urn:p");
    writer.StartElement(L"order", L"urn:d");
    writer.WriteXsiType(L"urn:p", L"t", ItemType_string);
    writer.WriteAttribute(L"id", L"", L"4711", ItemType_i4);
    writer.WriteAttribute(L"on", L"", L"2024-05-06", ItemType_date);
    for (const wchar_t* lpctNamespace : {L"urn:d", L"urn:p", L"urn:q", L"urn:p"})
    {
        writer.StartElement(L"item", lpctNamespace);
        writer.WriteAttribute(L"id", L"", L"4711", ItemType_i4);
        writer.WriteText(L"12.50", ItemType_decimal);
        writer.EndElement();
        writer.StartElement(L"flag", L"");
        writer.WriteXsiNil();
        writer.EndElement();
        writer.WriteText(L"some \u00E9 text", ItemType_string);
    }
    writer.EndElement();
    writer.WriteTerminator();
    writer.Close();
    Octets written = OctetsOf(stream.GetData());
    written.pop_back(); // the end of the document, which is not looked at
    return {
        written,
        Joined({{224, 0, 0, 1, 127, 0},
                Literal("u"),
                Literal("d"),
                {31, 255},
                Literal("u"),
                {0},
                Literal("AB"),
                {0},
                Literal("u"),
                {0},
                Literal("p"),
                {0},
                Literal("n"),
                {0},
                Literal("l"),
                {0},
                Literal("o"),
                {0},
                Literal("o"),
                {0, 0, 'v'},
                {0, 0x30, 0x50, 56},
                {0, 0, 's'},
                {0, 0, 0},
                {0, 3, 0, 0, 0},
                {192},
                Literal("n"),
                {240, 209},
                Literal("e"),
                Literal("s"),
                {128},
                Literal("n"),
                {240},
                Literal("utf-8"),
                {0, 0x42, '1', '.', '1'},
                {226, 0, 'c', 199, 0, 's', 0, 'p', 225, 0, 't', 0, 'x', 240},
                {120, 205, 0, 'u', 240, 61, 130, 0, 'r', 120, 0, 'x', 0x11, 'a', 0, 0, 0x40, 'v', 0, 128, 0, 255, 240},
                {60, 0, 'a', 200, 0, 'e', 0x9C, 0x09, 0, 1, 160, 225, 0, 't', 0, 'x', 226, 128, 255}}),
    };
}

} // namespace

// --- Detection ------------------------------------------------------------------------------------------------------

TEST(FastInfosetReader, ASmallDocument)
{
    EXPECT_TEXT(L"a x=\"1\" 'hi'",
                Read({224, 0, 0, 1, 0, 120, 240, 60, 0, 97, 120, 0, 120, 64, 49, 240, 145, 104, 105, 255}));
}

TEST(FastInfosetReader, EachDeclarationMayComeFirst)
{
    for (const std::string_view svDeclaration : g_fiDeclarations)
        EXPECT_TEXT(L"r", Read(Joined({Ascii(svDeclaration), s_head, {60, 0, 'r', 255}})));
}

TEST(FastInfosetReader, ADeclarationWithoutTheIdentificationIsText)
{
    for (const std::string_view svDeclaration : g_fiDeclarations)
    {
        // "finf" is no encoding that the text parser knows.
        ExpectIsText(Joined({Ascii(svDeclaration), Ascii("<a/>")}));
        ExpectIsText(Ascii(svDeclaration));
        ExpectIsText(Joined({Ascii(svDeclaration), {224, 0, 0}}));
    }
}

TEST(FastInfosetReader, WhatDoesNotBeginWithTheIdentificationIsText)
{
    EXPECT_TEXT(L"a", Read(Ascii("<a/>")));
    ExpectIsText({224});
    ExpectIsText({224, 0, 0, 1}); // one octet short
    ExpectIsText({224, 0, 0, 2, 0, 60, 0, 'r', 255});
    ExpectIsText(Joined({{' '}, s_head, {60, 0, 'r', 255}}));
    ExpectIsText(Joined({{0xEF, 0xBB, 0xBF}, s_head, {60, 0, 'r', 255}}));
    ExpectIsText(Joined({{' '}, Ascii(g_fiDeclarations[0]), s_head, {60, 0, 'r', 255}}));
}

TEST(FastInfosetReader, ANotDetectedBufferIsNoFailureOfTheReader)
{
    CXmlNodeStore store(nullptr);
    CXmlElement* pRoot = nullptr;
    CXmlTreeBuilder::CNamespaces namespaces;
    CXmlTreeBuilder builder(store, pRoot, namespaces, nullptr);
    const CFastInfosetContext context;
    CFastInfosetReader reader(&context, &builder);
    EXPECT_FALSE(reader.Parse(std::string_view()));
    EXPECT_EQ(nullptr, pRoot);
}

// --- Head -----------------------------------------------------------------------------------------------------------

TEST(FastInfosetReader, OptionalComponentsArePassedOver)
{
    const struct
    {
        const char* lpcName;
        Octets head; // behind the version
    } rows[] = {
        {"additional data", Joined({{64, 1}, Literal("urn:x"), Literal("abc"), Literal("urn:y"), Literal("d")})},
        {"external vocabulary", Joined({{32, 16, 0}, Literal("urn:vocabulary")})},
        {"alphabets", Joined({{32, 8, 0, 0}, Literal("ABC")})},
        {"algorithms", Joined({{32, 4, 0, 0}, Literal("urn:x")})},
        {"prefixes", Joined({{32, 2, 0, 1}, Literal("p"), Literal("q")})},
        {"namespaces", Joined({{32, 1, 0, 0}, Literal("urn:x")})},
        {"local names", Joined({{32, 0, 128, 0}, Literal("abc")})},
        {"other names", Joined({{32, 0, 64, 0}, Literal("abc")})},
        {"other URIs", Joined({{32, 0, 32, 0}, Literal("urn:x")})},
        {"attribute values", {32, 0, 16, 3, 1, 'a', 'b', 0x10, 'a', 0x20, 0x00, 0x12, 0x30, 0x20, 1}},
        {"chunks", {32, 0, 8, 0, 0, 'a'}},
        {"other strings", {32, 0, 4, 0, 0, 'a'}},
        {"element names", {32, 0, 2, 3, 0, 0, 1, 1, 0, 2, 1, 0, 3, 1, 1, 64, 0}},
        {"attribute names", {32, 0, 1, 0, 0, 0}},
        {"all of the vocabulary",
         Joined({{32, 31, 255}, Literal("u"), {0},          Literal("AB"), {0},          Literal("u"), {0},
                 Literal("p"),  {0},          Literal("n"), {0},           Literal("l"), {0},          Literal("o"),
                 {0},           Literal("o"), {0, 0, 'v'},  {0, 0, 'c'},   {0, 0, 's'},  {0, 0, 0},    {0, 0, 0}})},
        {"notations", Joined({{16, 192},
                              Literal("n"),
                              {193},
                              Literal("n"),
                              Literal("p"),
                              {194, 128},
                              Literal("s"),
                              {195},
                              Literal("n"),
                              Literal("s"),
                              {130, 240}})},
        {"no notations", {16, 240}},
        {"unparsed entities", Joined({{8, 208},
                                      Literal("e"),
                                      Literal("s"),
                                      Literal("n"),
                                      {209},
                                      Literal("e"),
                                      Literal("s"),
                                      {128},
                                      Literal("n"),
                                      {240}})},
        {"encoding scheme", Joined({{4}, Literal("utf-8")})},
        {"standalone", {2, 1}},
        {"version", {1, 2, '1', '.', '0'}},
        {"version by index", {1, 130}},
        {"all components", Joined({{127, 0},
                                   Literal("u"),
                                   Literal("d"),
                                   {16, 0},
                                   Literal("v"),
                                   {240},
                                   {240},
                                   Literal("utf-8"),
                                   {0},
                                   {0x42, '1', '.', '1'}})},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.lpcName);
        EXPECT_TEXT(L"r", Read(Joined({{224, 0, 0, 1}, row.head, {60, 0, 'r', 255}})));
    }
}

TEST(FastInfosetReader, LongListsOfTheHeadArePassedOver)
{
    Octets head = {224, 0, 0, 1, 32, 2, 0, 128, 0, 1}; // 130 prefixes
    for (int n = 0; n < 130; ++n)
        head.insert(head.end(), {0, 'p'});
    EXPECT_TEXT(L"r", Read(Joined({head, {60, 0, 'r', 255}})));
}

TEST(FastInfosetReader, NothingOfAnInitialVocabularyIsEntered)
{
    // The local name of index 1 stands in the document's vocabulary, and is not there.
    const Octets head = Joined({{224, 0, 0, 1, 32, 0, 128, 0}, Literal("r")});
    ExpectThrows<CQvException>(L"Failed to parse FastInfoset. Invalid table index [1].",
                               [&] {
                                   Read(Joined({head, {60, 128, 255}}));
                               });
    CXmlSerializationContext context;
    context.GetFIContext().GetVocabulary()->AddLocalName(L"r");
    context.GetFIContext().SetUseGeneratedVocabulary(true);
    EXPECT_TEXT(L"r", Read(Joined({head, {60, 128, 255}}), context));
}

// --- Ahead of the root ----------------------------------------------------------------------------------------------

TEST(FastInfosetReader, CommentsAndInstructionsAheadOfTheRootArePassedOver)
{
    const Octets items[] = {
        {226, 2, 'a', 'b', 'c'},       // comment
        {226, 128},                    // comment by index
        {226, 255},                    // empty comment
        {226, 0x42, 0xF0, 0x9F, 0x98}, // comment whose octets look like an end
        Joined({{225}, Literal("go"), {1, 'x', 'y'}}),
        {225, 128, 128},
        Joined({{225}, Literal("\xFF"), {0, 0xFF}}),
    };
    for (const Octets& item : items)
    {
        EXPECT_TEXT(L"r", ReadBody(Joined({item, {60, 0, 'r', 255}})));
        EXPECT_TEXT(L"r", ReadBody(Joined({item, item, {60, 0, 'r', 255}})));
        // Behind the root nothing is looked at.
        EXPECT_TEXT(L"r", ReadBody(Joined({item, {60, 0, 'r', 240}, item})));
    }
}

TEST(FastInfosetReader, ADocumentTypeDeclarationIsPassedOverWithWhatIsInIt)
{
    const Octets instruction = Joined({{225}, Literal("go"), {0, 'x'}});
    const Octets declarations[] = {
        {196, 240},
        Joined({{197}, Literal("public"), {240}}),
        Joined({{198}, Literal("system"), {240}}),
        Joined({{199}, Literal("system"), Literal("public"), {240}}),
        {199, 128, 129, 240},
        Joined({{196}, instruction, {240}}),
        Joined({{198}, Literal("system"), instruction, instruction, {240}}),
        {196, 255},
        {196}, // without an end
    };
    for (const Octets& declaration : declarations)
    {
        EXPECT_TEXT(L"r", ReadBody(Joined({declaration, {60, 0, 'r', 255}})));
        EXPECT_TEXT(L"r", ReadBody(Joined({{226, 0, 'c'}, declaration, {226, 0, 'c'}, {60, 0, 'r', 255}})));
    }
}

TEST(FastInfosetReader, ADocumentThatEndsWithoutARootIsRefused)
{
    const Octets bodies[] = {
        {240},
        {255},
        {226, 0, 'c', 240},
        {226, 0, 'c', 255},
        Joined({{225}, Literal("go"), {0, 'x', 240}}),
        {196, 240, 240},
        {196, 255},
        {196, 240, 226, 0, 'c', 240, 240},
    };
    for (const Octets& body : bodies)
        ExpectFails(s_szNoRoot, body);
}

TEST(FastInfosetReader, OctetsOfNoMeaningAheadOfTheRootArePassedOver)
{
    EXPECT_TEXT(L"r", ReadBody({144, 192, 208, 230, 60, 0, 'r', 255}));
}

// --- Elements -------------------------------------------------------------------------------------------------------

TEST(FastInfosetReader, ARootEndsByOneEndOrTwoAndNothingBehindItIsRead)
{
    EXPECT_TEXT(L"r", ReadBody({60, 0, 'r', 255}));
    EXPECT_TEXT(L"r", ReadBody({60, 0, 'r', 240}));
    EXPECT_TEXT(L"r", ReadBody({60, 0, 'r', 240, 240}));
    EXPECT_TEXT(L"r", ReadBody({60, 0, 'r', 255, 1, 2, 3}));
    EXPECT_TEXT(L"r", ReadBody({60, 0, 'r', 240, 60, 0, 's', 255}));
}

TEST(FastInfosetReader, TwoEndsInOneOctetEndChildAndParent)
{
    EXPECT_TEXT(L"r (a (b) c)", ReadContent({60, 0, 'a', 60, 0, 'b', 255, 60, 0, 'c', 240}));
    EXPECT_TEXT(L"r (a (b (c) d) e)",
                ReadBody({60, 0, 'r', 60, 0, 'a', 60, 0, 'b', 60, 0, 'c', 255, 60, 0, 'd', 255, 60, 0, 'e', 255, 240}));
}

TEST(FastInfosetReader, TwoEndsBehindTheAttributesEndTheElementItself)
{
    EXPECT_TEXT(L"r (a x=\"1\" b)", ReadContent({124, 0, 'a', 120, 0, 'x', 0, '1', 255, 60, 0, 'b', 240}));
    EXPECT_TEXT(L"r x=\"1\"", ReadBody({124, 0, 'r', 120, 0, 'x', 0, '1', 255, 240}));
}

TEST(FastInfosetReader, OneEndBehindTheAttributesLeavesRoomForContent)
{
    EXPECT_TEXT(L"r (a x=\"1\" 't' (b))",
                ReadContent({124, 0, 'a', 120, 0, 'x', 0, '1', 240, 128, 't', 60, 0, 'b', 255}));
    // Any octet above 127 ends the list.
    EXPECT_TEXT(L"r (a)", ReadContent({124, 0, 'a', 130, 240}));
}

TEST(FastInfosetReader, NamesByIndex)
{
    EXPECT_TEXT(L"r (a a a x=\"\" x=\"\")", ReadContent({60, 0, 'a', 240, 1, 240, 65, 120, 0, 'x', 255, 0, 255, 255}));
    EXPECT_TEXT(L"{urn:p}r ({urn:p}a {urn:p}a b)", ReadBody({63, 0,   'p', 4,   'u', 'r', 'n', ':', 'p', 0, 'r', //
                                                             63, 129, 129, 0,   'a', 240, // parts by index
                                                             61, 129, 129, 240,           // no prefix, known local name
                                                             60, 0,   'b', 255}));
}

TEST(FastInfosetReader, ThePrefixXmlAndItsNamespaceAreKnown)
{
    EXPECT_TEXT(L"r {http://www.w3.org/XML/1998/namespace}lang=\"en\"",
                ReadBody(Joined({{124, 0, 'r', 123, 128, 128}, Literal("lang"), {1, 'e', 'n', 255, 240}})));
}

TEST(FastInfosetReader, LocalNamesAreSharedByElementsAndAttributes)
{
    EXPECT_TEXT(L"r (a x=\"\" (x a=\"\"))", ReadContent({124, 0, 'a', 120, 0, 'x', 255, 240, //
                                                         124, 130, 120, 129, 255, 255, 240}));
}

TEST(FastInfosetReader, APrefixWithoutANamespaceIsRefused)
{
    const wchar_t szInvalid[] = L"Failed to parse FastInfoset. Invalid QName type Prefix without Namespace.";
    ExpectFails(szInvalid, {62, 0, 'p', 0, 'r', 255});
    ExpectFails(szInvalid, {124, 0, 'r', 122, 0, 'p', 0, 'x', 255, 255});
}

TEST(FastInfosetReader, NamespaceAttributesFillTheMapOfTheDocument)
{
    CXmlDocument document;
    Load(document, Joined({s_head,
                           {56, 205},
                           Literal("urn:d"),
                           {207},
                           Literal("p"),
                           Literal("urn:p"),
                           {206},
                           Literal("q"),
                           {204, 240, 61, 129, 0, 'r'},
                           {120, 207, 129},
                           Literal("urn:other"),
                           {205, 130, 240, 60, 0, 'a', 120, 0, 'x', 255, 255},
                           {240}}));
    EXPECT_TEXT(L"{urn:d}r (a x=\"\")", Show(document.GetDocumentElement()));
    // The last declaration counts, whatever its scope.
    EXPECT_TEXT(L"urn:other", document.LookupNamespaceFromAlias(L"p"));
    EXPECT_TEXT(L"urn:p", document.LookupNamespaceFromAlias(L""));
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L"q"));
}

TEST(FastInfosetReader, CommentsInstructionsAndEntitiesInContentArePassedOver)
{
    EXPECT_TEXT(L"r 'xy'", ReadContent(Joined({{226, 0, 'c', 128, 'x', 225},
                                               Literal("go"),
                                               {0, 'd'},
                                               {200},
                                               Literal("e"),
                                               {202},
                                               Literal("e"),
                                               Literal("s"),
                                               {201, 128, 129, 203},
                                               Literal("e"),
                                               Literal("s"),
                                               Literal("p"),
                                               {226, 255, 128, 'y'}})));
}

TEST(FastInfosetReader, CommentsDoNotDisturbTheTables)
{
    // Comments and instructions have tables of their own, which are not kept.
    EXPECT_TEXT(L"r x=\"v\" x=\"v\"",
                ReadBody({226, 0x40, 'c', 124, 0, 'r', 120, 0, 'x', 0x40, 'v', 0, 128, 255, 240}));
}

TEST(FastInfosetReader, OctetsThatBeginNoContentAreRefused)
{
    for (int nOctet = 192; nOctet < 256; ++nOctet)
    {
        const bool bKnown = nOctet == 225 || nOctet == 226 || nOctet >> 2 == 50 || nOctet == 240 || nOctet == 255;
        if (!bKnown)
            ExpectFails(L"Failed to parse FastInfoset. Invalid Encoding of Element type.", {60, 0, 'r', nOctet, 255});
    }
}

TEST(FastInfosetReader, InvalidIntegersAndLengthsAreRefused)
{
    const struct
    {
        Octets body;
        const wchar_t* lpctMessage;
    } rows[] = {
        {{56, 240, 56}, L"Encoding of integers 1 To 2^20 type  on the third bit"},
        {{124, 0, 'r', 112}, L"Encoding of integers 1 To 2^20 type  on the second bit"},
        {{60, 240}, L"Encoding of integers 1 To 2^20 type  on the second bit"},
        {{124, 0, 'r', 120, 0, 'x', 240}, L"Encoding of integers 0 To 2^20 type  on the second bit"},
        {{60, 0, 'r', 188}, L"Encoding of integers 1 To 2^20 type  on the fourth bit"},
        {{60, 65}, L"NonEmptyOctetString type  on the second bit"},
        {{124, 0, 'r', 120, 0, 'x', 9}, L"NonEmptyOctetString type  on the fifth bit"},
    };
    for (const auto& row : rows)
        ExpectFails(std::wstring(L"Failed to parse FastInfoset. Invalid ") + row.lpctMessage + L" of an octet.",
                    row.body);
}

// --- Values ---------------------------------------------------------------------------------------------------------

TEST(FastInfosetReader, AttributeValuesOfEveryForm)
{
    const struct
    {
        Octets value;
        std::wstring strValue;
    } rows[] = {
        {{0, 'a'}, L"a"},
        {{64, 'a'}, L"a"},
        {Joined({{7}, Ascii("12345678")}), L"12345678"},
        {Joined({{8, 0}, Ascii("123456789")}), L"123456789"},
        {Joined({{12, 0, 0, 0, 0}, Octets(265, 'x')}), std::wstring(265, L'x')},
        {{5, 0xC3, 0xA9, 0xF0, 0x9F, 0x98, 0x80}, {0xE9, 0xD83D, 0xDE00}},
        {{255}, L""},
        {{0x20, 0x01, 0x1C, 0x5F}, L"1.5"},
        {{0x60, 0x10, 0x2A}, L"2-"},
        {{0x30, 0x01, 10, 255}, L"0AFF"},
        {{0x30, 0x10, 65}, L"QQ=="},
        {{0x30, 0x23, 0, 1, 255, 255}, L"1 -1"},
        {{0x30, 0x33, 0, 0, 1, 0}, L"256"},
        {{0x30, 0x47, 255, 255, 255, 255, 255, 255, 255, 255}, L"-1"},
        {{0x30, 0x50, 56}, L"true"},
        {{0x30, 0x50, 0x28}, L"truefalse"}, // two bits of one octet run together
        {{0x30, 0x63, 0x3F, 0xC0, 0, 0}, L"1.5"},
        {{0x30, 0x77, 0x3F, 0xF8, 0, 0, 0, 0, 0, 0}, L"1.5"},
        {Joined({{0x30, 0x88, 7}, Octets(16, 0xAB)}), L"ABABABABABABABABABABABABABABABAB"},
        {{0x30, 0x91, 0xC3, 0xA9}, L"\u00E9"},
    };
    for (const auto& row : rows)
        EXPECT_TEXT(row.strValue, ReadAttributeValue(row.value));
}

TEST(FastInfosetReader, TextsOfEveryForm)
{
    const struct
    {
        Octets chunk;
        std::wstring strText;
    } rows[] = {
        {{128, 'a'}, L"a"},
        {{144, 'a'}, L"a"},
        {{129, 'a', 'b'}, L"ab"},
        {{130, 0, 'a', 'b', 'c'}, L"abc"},
        {Joined({{131, 0, 0, 0, 1}, Octets(260, 'x')}), std::wstring(260, L'x')},
        {{0x88, 0x01, 0x1C, 0x5F}, L"1.5"},
        {{0x98, 0x04, 0x2A}, L"2-"},
        {{0x8C, 0x01, 10, 255}, L"0AFF"},
        {{0x8C, 0x09, 255, 255}, L"-1"},
        {{0x8C, 0x14, 56}, L"true"},
        {{0x8C, 0x25, 'a', 'b'}, L"ab"},
        {{128, 'a', 129, 'b', 'c'}, L"abc"},
    };
    for (const auto& row : rows)
        EXPECT_TEXT(row.strText, ReadText(row.chunk));
}

TEST(FastInfosetReader, CarriageReturnsInTextAreDroppedAndAZeroUnitEndsAPiece)
{
    EXPECT_TEXT(L"a\nbc", ReadText({130, 4, 'a', 13, 10, 'b', 0, 'x', 'x', 128, 'c'}));
}

TEST(FastInfosetReader, EnteredValuesComeBackByTheirIndex)
{
    EXPECT_TEXT(L"ab1.5\u00E9", ReadText({144, 'a', 128, 'b', 0x98, 0x01, 0x1C, 0x5F, 145, 0xC3, 0xA9}));
    EXPECT_TEXT(L"ab1.5\u00E91.5a\u00E9",
                ReadText({144, 'a', 128, 'b', 0x98, 0x01, 0x1C, 0x5F, 145, 0xC3, 0xA9, 161, 160, 162}));
    CXmlDocument document;
    Load(document, Joined({s_head,
                           {124, 0, 'r', 120, 0, 'x', 0x40, 'a', 0, 0x60, 0x01, 0x1C, 0x5F, 0, 0, 'b'},
                           {0, 128, 0, 129, 255, 240}}));
    EXPECT_TEXT(L"r x=\"a\" x=\"1.5\" x=\"b\" x=\"a\" x=\"1.5\"", Show(document.GetDocumentElement()));
}

TEST(FastInfosetReader, ValuesOfTheAgreedVocabularyComeFirst)
{
    CXmlSerializationContext context;
    CFIVocabulary* const pVocabulary = context.GetFIContext().GetVocabulary();
    pVocabulary->AddElement(L"p", L"urn:p", L"r");
    pVocabulary->AddAttribute(L"", L"", L"x");
    pVocabulary->AddAttributeValue(L"v\u00E9");
    pVocabulary->AddElementValue(L"t\u00E9");
    context.GetFIContext().SetUseGeneratedVocabulary(true);
    EXPECT_TEXT(L"{urn:p}r x=\"v\u00E9\" x=\"w\" x=\"w\" 't\u00E9uu'",
                ReadBody({64, 0, 128, 0, 0x40, 'w', 0, 129, 240, 160, 144, 'u', 161, 255}, context));
    // The context's own tables stay as they are.
    EXPECT_TEXT(L"{urn:p}r x=\"v\u00E9\"", ReadBody({64, 0, 128, 255, 240}, context));
}

TEST(FastInfosetReader, AUtf16StringTakesAsManyUnitsAsItHasOctetsAndSoReadsBehindItself)
{
    // Of the two units the second is made of the octets behind the string, which are then read once more.
    EXPECT_TEXT((std::wstring{L'a', 0xF0FF}), ReadAttributeValue({0x11, 'a', 0}));
    EXPECT_TEXT((std::wstring{L'r', L'a', 0x61FF}).substr(1), ReadText({0x85, 'a', 0, 255, 'a'}));
    ExpectFails(s_szEndOfFile, {124, 0, 'r', 120, 0, 'x', 0x11, 'a', 0, 255});
    // An entered one comes back by its index.
    CXmlDocument document;
    Load(document, Joined({s_head, {124, 0, 'r', 120, 0, 'x', 0x51, 'a', 0, 0, 128, 255}}));
    EXPECT_TEXT((std::wstring{L'a', 0x8000}), document.GetDocumentElement()->GetAttributes().at(1)->GetValue());
}

TEST(FastInfosetReader, UnknownAlphabetsAndAlgorithmsAreRefused)
{
    ExpectThrows<CQvException>(L"Failed to parse FastInfoset. Invalid table index [3].",
                               [] {
                                   ReadAttributeValue({0x20, 0x20, 0});
                               });
    ExpectThrows<CQvException>(L"Failed to parse FastInfoset. Invalid table index [256].",
                               [] {
                                   ReadText({0x8B, 0xFC, 0});
                               });
    ExpectThrows<CQvException>(L"Unknown byte encoding.", [] { ReadAttributeValue({0x30, 0xA0, 0}); });
    ExpectThrows<CQvException>(L"Unknown byte encoding.", [] { ReadText({0x8F, 0xFC, 0}); });
    ExpectThrows<CQvException>(L"Invalid value for INT byte encoding.", [] { ReadText({0x8C, 0x0C, 0}); });
}

TEST(FastInfosetReader, TextThatIsNoUtf8EndsAheadOfTheFault)
{
    EXPECT_TEXT(L"a", ReadAttributeValue({2, 'a', 0xFF, 'b'}));
    EXPECT_TEXT(L"a", ReadText({130, 0, 'a', 0xC3, 'b'}));
    EXPECT_TEXT(L"", ReadAttributeValue({0, 0x80}));
    EXPECT_TEXT(L"aa", ReadText({146, 0, 'a', 0xC3, 'b', 160}));
}

// --- Damaged and hostile documents ----------------------------------------------------------------------------------

namespace
{

/// Swallows the trace, which would name every element.
class CQuietTrace
{
public:
    CQuietTrace()
        : m_pfnOld(Platform::SetDebugOutputSink([](const wchar_t*) {}))
    {
    }
    ~CQuietTrace() { Platform::SetDebugOutputSink(m_pfnOld); }
    CQuietTrace(const CQuietTrace&) = delete;
    CQuietTrace& operator=(const CQuietTrace&) = delete;

private:
    Platform::PfnDebugOutput m_pfnOld;
};

} // namespace

TEST(FastInfosetReader, EveryBeginningOfADocumentIsRefused)
{
    const CQuietTrace quiet;
    for (const Octets& document : SampleDocuments())
    {
        for (std::size_t nLength = 5; nLength < document.size(); ++nLength)
        {
            const Octets beginning(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(nLength));
            EXPECT_THROW(Read(beginning), CQvException) << nLength;
        }
    }
}

TEST(FastInfosetReader, LengthsBeyondTheBufferAreRefused)
{
    const Octets bodies[] = {
        {60, 1, 'r'},
        {60, 96, 255, 255, 255, 255, 'r'},
        {60, 96, 255, 255, 254, 190, 'r'},
        {60, 0, 'r', 131, 255, 255, 255, 255, 'a'},
        {60, 0, 'r', 131, 255, 255, 254, 252, 'a'},
        {124, 0, 'r', 120, 0, 'x', 12, 255, 255, 255, 255, 'a'},
        {226, 12, 255, 255, 255, 255, 'a'},
        {225, 96, 255, 255, 255, 255, 'a'},
    };
    for (const Octets& body : bodies)
        ExpectFails(s_szEndOfFile, body);
    ExpectThrows<CQvException>(s_szEndOfFile, [] { Read({224, 0, 0, 1, 64, 143, 255, 255, 0, 'a'}); });
    ExpectThrows<CQvException>(s_szEndOfFile, [] { Read({224, 0, 0, 1, 32, 2, 0, 143, 255, 255, 0, 'a'}); });
}

#if defined(QUIVER_DIAGNOSTICS)
TEST(FastInfosetReaderDeathTest, IndexesBeyondTheirTablesStopAtAnAssertion)
{
    EXPECT_DEATH(ReadBody({0, 255}), "m_pVocabulary->m_elementNames.m_table.size\\(\\) > m_dwLastValue - 1");
    EXPECT_DEATH(ReadBody({124, 0, 'r', 0, 255, 255}),
                 "m_pVocabulary->m_attributeNames.m_table.size\\(\\) > m_dwLastValue - 1");
    EXPECT_DEATH(ReadAttributeValue({128}), "m_pVocabulary->m_attributeValues.m_table.size\\(\\) > m_dwLastValue - 1");
}
#else
TEST(FastInfosetReader, IndexesBeyondTheirTablesAreRefused)
{
    const struct
    {
        Octets body;
        const wchar_t* lpctIndex;
    } rows[] = {
        {{0, 255}, L"1"},
        {{60, 0, 'r', 1, 255}, L"2"},
        {{60, 0, 'r', 48, 255, 255, 255, 255}, L"17303584"},
        {{124, 0, 'r', 0, 255, 255}, L"1"},
        {{124, 0, 'r', 96, 0, 0, 255, 255}, L"8257"},
        {{124, 0, 'r', 120, 0, 'x', 128, 255}, L"1"},
        {{124, 0, 'r', 120, 0, 'x', 0x40, 'a', 0, 129, 255}, L"2"},
    };
    for (const auto& row : rows)
    {
        ExpectFails(std::wstring(L"Failed to parse FastInfoset. Invalid table index [") + row.lpctIndex + L"].",
                    row.body);
    }
}

TEST(FastInfosetReader, EverySingleChangedOctetEndsInADocumentOrAnException)
{
    const CQuietTrace quiet;
    int nRead = 0;
    int nRefused = 0;
    for (const Octets& document : SampleDocuments())
    {
        for (std::size_t nAt = 0; nAt < document.size(); ++nAt)
        {
            Octets changed = document;
            for (int nOctet = 0; nOctet < 256; ++nOctet)
            {
                changed[nAt] = nOctet;
                try
                {
                    Read(changed);
                    ++nRead;
                }
                catch (const CQvException&)
                {
                    ++nRefused;
                }
            }
        }
    }
    EXPECT_GT(nRead, 1000);
    EXPECT_GT(nRefused, 1000);
}

TEST(FastInfosetReader, RandomOctetsEndInADocumentOrAnException)
{
    const CQuietTrace quiet;
    std::mt19937 random(20240506);
    int nRefused = 0;
    for (int nRound = 0; nRound < 20000; ++nRound)
    {
        Octets document = nRound % 2 == 0 ? s_head : Octets{224, 0, 0, 1};
        for (unsigned nLeft = random() % 64; nLeft > 0; --nLeft)
            document.push_back(static_cast<int>(random() % 256));
        try
        {
            Read(document);
        }
        catch (const CQvException&)
        {
            ++nRefused;
        }
    }
    EXPECT_GT(nRefused, 10000);
}
#endif

TEST(FastInfosetReader, IndexesBeyondTheOtherTablesAreRefusedInEveryBuild)
{
    const struct
    {
        Octets body;
        const wchar_t* lpctIndex;
    } rows[] = {
        {{60, 0, 'r', 160, 255}, L"1"}, // text
        {{60, 0, 'r', 184, 255, 255, 255, 255}, L"17040400"},
        {{60, 128, 255}, L"1"},                            // local name
        {{61, 129, 0, 'r', 255}, L"2"},                    // namespace
        {{63, 129, 128, 0, 'r', 255}, L"2"},               // prefix
        {{56, 207, 129, 128, 240, 60, 0, 'r', 255}, L"2"}, // namespace attribute
        {{60, 239, 255, 255, 255}, L"1056832"},
    };
    for (const auto& row : rows)
    {
        ExpectFails(std::wstring(L"Failed to parse FastInfoset. Invalid table index [") + row.lpctIndex + L"].",
                    row.body);
    }
}

TEST(FastInfosetReader, AMillionElementsInsideEachOtherAreReadWithoutRecursion)
{
    const CQuietTrace quiet;
    constexpr std::size_t nDepth = 1000000;
    Octets octets = Joined({s_head, {60, 0, 'a'}, Octets(nDepth - 1, 0), {144, 't'}, Octets(nDepth / 2, 255)});
    const long nBefore = CountInstances(L"CXmlElement").nLiving;
    {
        CXmlDocument document;
        Load(document, octets);
        EXPECT_EQ(nBefore + static_cast<long>(nDepth), CountInstances(L"CXmlElement").nLiving);
        std::size_t nFound = 0;
        for (CXmlElement* p = document.GetDocumentElement(); p != nullptr; p = p->GetFirstElement())
            ++nFound;
        EXPECT_EQ(nDepth, nFound);
        octets.resize(octets.size() - 100);
        ExpectThrows<CQvException>(s_szEndOfFile, [&] { Load(document, octets); });
    }
    EXPECT_EQ(nBefore, CountInstances(L"CXmlElement").nLiving);
}

TEST(FastInfosetReader, ASmallDocumentCannotAskForTextWithoutEnd)
{
    const CQuietTrace quiet;
    constexpr int nText = 300000;
    const wchar_t szRefused[] =
        L"Failed to parse FastInfoset. The repeated strings are out of proportion to the document.";
    for (const int nOctet : {int{'x'}, 0x20, 0x7F})
    {
        SCOPED_TRACE(nOctet);
        // A text of 300,000 units, entered, and then again and again by its index.
        const int nLength = nText - 259;
        const Octets text = Joined({{147, 0, nLength >> 16, nLength >> 8 & 255, nLength & 255}, Octets(nText, nOctet)});
        // What is added to a text counts four times: 27 references are less than is admitted, 28 are more.
        CXmlDocument document;
        Load(document, Joined({s_head, {60, 0, 'r'}, text, Octets(27, 160), {255}}));
        EXPECT_EQ(std::size_t{nText} * 28, document.GetDocumentElement()->GetText().size());
        ExpectFails(szRefused, Joined({{60, 0, 'r'}, text, Octets(28, 160), {255}}));
        ExpectFails(szRefused, Joined({{60, 0, 'r'}, text, Octets(200, 160), {255}}));
    }

    // U+FFFD is three octets and one unit.
    constexpr int nLength = nText - 259;
    Octets text = {147, 0, nLength >> 16, nLength >> 8 & 255, nLength & 255};
    for (int n = 0; n < nText / 3; ++n)
        text.insert(text.end(), {0xEF, 0xBF, 0xBD});
    CXmlDocument document;
    Load(document, Joined({s_head, {60, 0, 'r'}, text, Octets(83, 160), {255}}));
    EXPECT_EQ(std::size_t{nText / 3} * 84, document.GetDocumentElement()->GetText().size());
    ExpectFails(szRefused, Joined({{60, 0, 'r'}, text, Octets(84, 160), {255}}));

    Octets attributes = Joined(
        {{124, 0, 'r', 120, 0, 'x', 0x40 | 12, 0, (nText - 265) >> 16, (nText - 265) >> 8 & 255, (nText - 265) & 255},
         Octets(nText, 'x')});
    for (int n = 0; n < 200; ++n)
        attributes.insert(attributes.end(), {0, 128});
    ExpectFails(szRefused, Joined({attributes, {255, 240}}));
}

TEST(FastInfosetReader, ASmallDocumentCannotAskForNamesWithoutEnd)
{
    const CQuietTrace quiet;
    constexpr int nName = 300000;
    const wchar_t szRefused[] =
        L"Failed to parse FastInfoset. The repeated strings are out of proportion to the document.";
    // A root with a name of 300,000 units, and empty children that have it by its index.
    constexpr int nLength = nName - 321;
    const Octets name = Joined({{96, 0, nLength >> 16, nLength >> 8 & 255, nLength & 255}, Octets(nName, 'n')});
    Octets children;
    for (int n = 0; n < 200; ++n)
        children.insert(children.end(), {0, 240});
    ExpectFails(szRefused, Joined({{60}, name, children, {255}}));

    // The same as an attribute, of children of another name.
    Octets attributes = Joined({{124, 0, 'r', 120}, name, {0, 'v', 240}});
    for (int n = 0; n < 200; ++n)
        attributes.insert(attributes.end(), {64, 0, 0, 'v', 255});
    ExpectFails(szRefused, Joined({attributes, {255}}));

    // New names of old parts: one local name in many namespaces.
    Octets names = Joined({{60}, name});
    for (int n = 0; n < 200; ++n)
        names.insert(names.end(), {61, 1, static_cast<unsigned char>('a' + n / 20),
                                   static_cast<unsigned char>('a' + n % 20), 128, 240});
    ExpectFails(szRefused, Joined({names, {255}}));
}

TEST(FastInfosetReader, ShortTextsMayRepeatAsOftenAsTheyLike)
{
    const CQuietTrace quiet;
    // 1,000,000 times 5 units out of 1,000,010 octets.
    CXmlDocument document;
    Load(document, Joined({s_head, {60, 0, 'r', 146, 2, '1', '2', '3', '4', '5'}, Octets(1000000, 160), {255}}));
    EXPECT_EQ(5000005u, document.GetDocumentElement()->GetText().size());
}

TEST(FastInfosetReader, ADocumentCanLoadAgainAfterAFailure)
{
    CXmlDocument document;
    ExpectThrows<CQvException>(s_szEndOfFile, [&] { Load(document, Joined({s_head, {60, 0, 'r', 60, 0, 'a'}})); });
    Load(document, Joined({s_head, {60, 0, 's', 255}}));
    EXPECT_TEXT(L"s", Show(document.GetDocumentElement()));
    Load(document, Ascii("<t/>"));
    EXPECT_TEXT(L"t", Show(document.GetDocumentElement()));
}

TEST(FastInfosetReader, IsCountedUnderItsName)
{
    const auto before = CountInstances(L"CFastInfosetReader");
    ReadBody({60, 0, 'r', 255});
    ExpectFails(s_szEndOfFile, {60});
    const auto after = CountInstances(L"CFastInfosetReader");
    EXPECT_EQ(before.nLiving, after.nLiving);
    EXPECT_EQ(before.nTotal + 2, after.nTotal);
}

namespace
{

std::wstring g_strTrace;

} // namespace

TEST(FastInfosetReader, TheTraceTellsWhereElementsBeginAndEnd)
{
    const auto pfnOld = Platform::SetDebugOutputSink([](const wchar_t* lpctText) { g_strTrace += lpctText; });
    ReadBody(Joined({{61}, Literal("urn:r"), {0, 'r', 60, 0, 'a', 255}}));
    // A name that is too long for the trace does not stop the document.
    ReadBody(Joined({{60, 96, 0, 0, 0x7E, 0xBF}, Octets(32768, 'x'), {255}}));
    Platform::SetDebugOutputSink(pfnOld);
    EXPECT_TEXT(L"New Root Elm: urn:r::r\nNew Elm: ::a\nEnd Elm: ::a\nEnd Elm: urn:r::r\n", g_strTrace);
}
