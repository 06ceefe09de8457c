#include "quiver/fastinfoset/FastInfosetWriter.h"

#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

using namespace QvXmlLib9;
using QvTest::CountInstances;
using QvTest::ExpectThrows;
using QvTest::Joined;
using QvTest::Octets;
using QvTest::OctetsOf;

namespace
{

constexpr wchar_t s_szXsi[] = L"http://www.w3.org/2001/XMLSchema-instance";
constexpr wchar_t s_szTooLate[] = L"Attributes must be added before elements";

using FnCalls = std::function<void(CFastInfosetWriter&)>;

/// What a writer makes of some calls, without header and terminator.
Octets Write(const FnCalls& calls, const CFastInfosetContext& context = CFastInfosetContext())
{
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    calls(writer);
    writer.Close();
    return OctetsOf(stream.GetData());
}

/// The octets of the text in UTF-8.
Octets Utf8(std::wstring_view svText)
{
    return OctetsOf(EncodeUtf8(std::wstring(svText).c_str()));
}

/// A name of up to 64 octets, written literally.
Octets Literal(std::wstring_view svText)
{
    const Octets octets = Utf8(svText);
    return Joined({{static_cast<int>(octets.size()) - 1}, octets});
}

void Attribute(CFastInfosetWriter& writer, std::wstring_view svName, std::wstring_view svNamespace,
               std::wstring_view svValue, ItemType eType = ItemType_string)
{
    writer.WriteAttribute(svName, svNamespace, svValue, eType);
}

void Text(CFastInfosetWriter& writer, std::wstring_view svText, ItemType eType = ItemType_string)
{
    writer.WriteText(svText, eType);
}

/// The root `r` with some content; the octets ahead of it are s_root.
FnCalls InRoot(const FnCalls& calls)
{
    return [calls](CFastInfosetWriter& writer)
    {
        writer.StartElement(L"r", L"");
        calls(writer);
        writer.EndElement();
    };
}

const Octets s_root = {56, 240, 60, 0, 'r'};
const Octets s_rootWithAttributes = {120, 240, 60, 0, 'r'};

/// The octets of one attribute value: behind the name "x" of the only attribute.
Octets AttributeValue(std::wstring_view svValue, ItemType eType, const CFastInfosetContext& context)
{
    Octets octets =
        Write(InRoot([&](CFastInfosetWriter& writer) { Attribute(writer, L"x", L"", svValue, eType); }), context);
    const Octets head = Joined({s_rootWithAttributes, {120, 0, 'x'}});
    EXPECT_EQ(head, Octets(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(head.size())));
    EXPECT_EQ(240, octets.back());
    return Octets(octets.begin() + static_cast<std::ptrdiff_t>(head.size()), octets.end() - 1);
}

/// The octets of the text of the root.
Octets Chunk(std::wstring_view svValue, ItemType eType, const CFastInfosetContext& context)
{
    const Octets octets = Write(InRoot([&](CFastInfosetWriter& writer) { Text(writer, svValue, eType); }), context);
    EXPECT_EQ(s_root, Octets(octets.begin(), octets.begin() + 5));
    return Octets(octets.begin() + 5, octets.end());
}

CFastInfosetContext ContextWith(ItemType eType, std::uint32_t dwType, std::uint32_t dwIndex)
{
    CFastInfosetContext context;
    context.SetEncoding(eType, {dwType, dwIndex});
    context.SetAttributeMaxAddLength(0);
    context.SetElementMaxAddLength(0);
    return context;
}

CFastInfosetContext SuggestedContext()
{
    CFastInfosetContext context;
    context.SetSuggestedValues();
    return context;
}

} // namespace

// --- The whole document ---------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, ASmallDocumentToTheOctet)
{
    EXPECT_EQ((Octets{224, 0,   0,   1,   0,  // identification, version, no components
                      120, 240, 60,  0,   97, // attributes follow, no namespaces, the name "a"
                      120, 0,   120, 64,  49, // "x", entered "1"
                      240, 145, 104, 105,     // end of the attributes, entered text "hi"
                      255}),                  // end of element and document
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.WriteHeader(FInfoDecl_None);
                      writer.StartElement(L"a", L"");
                      Attribute(writer, L"x", L"", L"1");
                      Text(writer, L"hi");
                      writer.EndElement();
                      writer.WriteTerminator();
                  }));
}

// --- Header and terminator ------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, TheHeaderBeginsWithTheDeclarationAskedFor)
{
    const struct
    {
        FInfoDecl eDecl;
        const wchar_t* lpctDeclaration;
    } rows[] = {
        {FInfoDecl_None, L""},
        {FInfoDecl_Plain, L"<?xml encoding='finf'?>"},
        {FInfoDecl_StandaloneYes, L"<?xml encoding='finf' standalone='yes'?>"},
        {FInfoDecl_StandaloneNo, L"<?xml encoding='finf' standalone='no'?>"},
        {FInfoDecl_V10, L"<?xml version='1.0' encoding='finf'?>"},
        {FInfoDecl_V10_StandaloneYes, L"<?xml version='1.0' encoding='finf' standalone='yes'?>"},
        {FInfoDecl_V10_StandaloneNo, L"<?xml version='1.0' encoding='finf' standalone='no'?>"},
        {FInfoDecl_V11, L"<?xml version='1.1' encoding='finf'?>"},
        {FInfoDecl_V11_StandaloneYes, L"<?xml version='1.1' encoding='finf' standalone='yes'?>"},
        {FInfoDecl_V11_StandaloneNo, L"<?xml version='1.1' encoding='finf' standalone='no'?>"},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(Joined({Utf8(row.lpctDeclaration), {224, 0, 0, 1, 0}}),
                  Write([&](CFastInfosetWriter& writer) { writer.WriteHeader(row.eDecl); }));
    }
}

TEST(FastInfosetWriter, ANumberThatIsNoDeclarationIsRefused)
{
    for (const int nDecl : {10, -1})
    {
        const std::wstring strMessage =
            L"Failed to write FastInfoset. Invalid XML declaration value [" + std::to_wstring(nDecl) + L"]";
        ExpectThrows<CQvException>(
            strMessage,
            [&] { Write([&](CFastInfosetWriter& writer) { writer.WriteHeader(static_cast<FInfoDecl>(nDecl)); }); });
    }
}

TEST(FastInfosetWriter, AnAgreedVocabularyIsNamedInTheHeader)
{
    const auto fnHeader = [](CFastInfosetWriter& writer)
    {
        writer.WriteHeader(FInfoDecl_None);
    };
    CFastInfosetContext context;
    context.SetUseGeneratedVocabulary(true);
    EXPECT_EQ(Joined({{224, 0, 0, 1, 32, 16, 0}, Literal(L"urn:quiver:fastinfoset:default-vocabulary")}),
              Write(fnHeader, context));
    context.SetExternalVocabularyURI(L"urn:v");
    EXPECT_EQ((Octets{224, 0, 0, 1, 32, 16, 0, 4, 'u', 'r', 'n', ':', 'v'}), Write(fnHeader, context));
}

TEST(FastInfosetWriter, TheUriOfTheVocabularyIsNotEntered)
{
    CFastInfosetContext context;
    context.SetUseGeneratedVocabulary(true);
    context.SetExternalVocabularyURI(L"urn:v");
    const Octets octets = Write(
        [](CFastInfosetWriter& writer)
        {
            writer.WriteHeader(FInfoDecl_None);
            writer.SetDefaultNamespace(L"urn:v");
            writer.StartElement(L"r", L"urn:v");
            Text(writer, L"t");
            writer.EndElement();
        },
        context);
    EXPECT_EQ((Octets{224, 0, 0,   1,   32,  16,  0,   4,   'u', 'r', 'n', ':', 'v', 56,
                      205, 4, 'u', 'r', 'n', ':', 'v', 240, 61,  129, 0,   'r', 144, 't'}),
              octets);
}

TEST(FastInfosetWriter, TheTerminatorSharesAnOctetWithTheLastEnd)
{
    EXPECT_EQ(Octets{240}, Write([](CFastInfosetWriter& writer) { writer.WriteTerminator(); }));
    EXPECT_EQ(Joined({s_root, {144, 't', 255}}), Write(
                                                     [](CFastInfosetWriter& writer)
                                                     {
                                                         writer.StartElement(L"r", L"");
                                                         Text(writer, L"t");
                                                         writer.EndElement();
                                                         writer.WriteTerminator();
                                                     }));
    EXPECT_EQ(Joined({s_root, {60, 0, 'a', 255, 240}}), Write(
                                                            [](CFastInfosetWriter& writer)
                                                            {
                                                                writer.StartElement(L"r", L"");
                                                                writer.StartElement(L"a", L"");
                                                                writer.EndElement();
                                                                writer.EndElement();
                                                                writer.WriteTerminator();
                                                            }));
}

// --- Elements -------------------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, ARepeatedNameIsItsIndex)
{
    EXPECT_EQ(Joined({s_root, {60, 0, 'a', 240, 1, 240, 64 | 1, 120, 0, 'x', 255, 240, 255}}),
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.StartElement(L"a", L"");
                      writer.EndElement();
                      writer.StartElement(L"a", L"");
                      writer.EndElement();
                      writer.StartElement(L"a", L"");
                      Attribute(writer, L"x", L"", L"");
                      writer.EndElement();
                  })));
}

TEST(FastInfosetWriter, EndsComeInPairsAndAnOddOneIsWrittenAheadOfTheNextElement)
{
    EXPECT_EQ(Joined({s_root,
                      {60, 0, 'a', 60, 0, 'b', 60, 0, 'c', 255, 240}, // three ends and a start
                      {1, 2, 255},                                    // two ends and a start
                      {1, 240},                                       // one end and a start
                      {1, 255}}),                                     // and the root's end
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.StartElement(L"a", L"");
                      writer.StartElement(L"b", L"");
                      writer.StartElement(L"c", L"");
                      for (int n = 0; n < 3; ++n)
                          writer.EndElement();
                      writer.StartElement(L"a", L"");
                      writer.StartElement(L"b", L"");
                      writer.EndElement();
                      writer.EndElement();
                      for (int n = 0; n < 2; ++n)
                      {
                          writer.StartElement(L"a", L"");
                          writer.EndElement();
                      }
                  })));
}

TEST(FastInfosetWriter, TheListOfAttributesEndsAheadOfTextChildAndEnd)
{
    const struct
    {
        FnCalls calls;
        Octets octets;
    } rows[] = {
        {[](CFastInfosetWriter& writer) { Text(writer, L"t"); }, {240, 144, 't'}},
        {[](CFastInfosetWriter& writer) { Text(writer, L""); }, {240}},
        {[](CFastInfosetWriter& writer)
         {
             writer.StartElement(L"a", L"");
             writer.EndElement();
         },
         {240, 60, 0, 'a', 255}},
        {[](CFastInfosetWriter&) {}, {240}},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(Joined({s_rootWithAttributes, {120, 0, 'x', 255}, row.octets}), Write(InRoot(
                                                                                      [&](CFastInfosetWriter& writer)
                                                                                      {
                                                                                          Attribute(writer, L"x", L"",
                                                                                                    L"");
                                                                                          row.calls(writer);
                                                                                      })));
    }
}

TEST(FastInfosetWriter, TextBehindAChildStandsAheadOfTheChildsEnd)
{
    EXPECT_EQ(Joined({s_root, {60, 0, 'a', 144, 't', 240, 60, 0, 'b', 255}}), Write(InRoot(
                                                                                  [](CFastInfosetWriter& writer)
                                                                                  {
                                                                                      writer.StartElement(L"a", L"");
                                                                                      writer.EndElement();
                                                                                      Text(writer, L"t");
                                                                                      writer.StartElement(L"b", L"");
                                                                                      writer.EndElement();
                                                                                  })));
}

TEST(FastInfosetWriter, TextBehindAChildKeepsItsPlaceIfTheChildIsEnded)
{
    const FnCalls calls = [](CFastInfosetWriter& writer)
    {
        // Nothing is owed yet.
        writer.EndChild();
        writer.StartElement(L"a", L"");
        writer.EndChild();
        writer.EndElement();
        writer.EndChild();
        writer.EndChild();
        Text(writer, L"t");
    };
    EXPECT_EQ(Joined({s_root, {60, 0, 'a', 240, 144, 't'}}), Write(InRoot(calls)));
    // The ends that follow pair up anew.
    const FnCalls further = [&calls](CFastInfosetWriter& writer)
    {
        calls(writer);
        writer.StartElement(L"a", L"");
        writer.EndElement();
    };
    EXPECT_EQ(Joined({s_root, {60, 0, 'a', 240, 144, 't', 1, 255}}), Write(InRoot(further)));
}

TEST(FastInfosetWriter, CommentsInstructionsAndSchemasLeaveNoTrace)
{
    EXPECT_EQ(Joined({s_rootWithAttributes, {120, 0, 'x', 255, 240}}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.WriteComment(L"c");
                      writer.WriteProcessingInstruction(L"<?p?>");
                      writer.StartElement(L"r", L"");
                      writer.WriteComment(L"c");
                      writer.WriteInlineSchema(L"<s/>");
                      Attribute(writer, L"x", L"", L"");
                      writer.EndElement();
                  }));
}

// --- Namespaces -----------------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, TheRootCarriesTheNamespacesOfTheDocument)
{
    EXPECT_EQ(Joined({{56, 205},
                      Literal(L"urn:d"), // default namespace
                      {207},
                      Literal(L"y"),
                      Literal(L"urn:a"), // in the order of the URIs
                      {207},
                      Literal(L"x"),
                      Literal(L"urn:b"),
                      {240},
                      {61, 129},
                      Literal(L"r"), // in the default namespace: no prefix
                      {63, 129, 130},
                      Literal(L"a"), // both parts are known by now
                      {255}}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.SetDefaultNamespace(L"urn:d");
                      writer.AddNamespaceMapping(L"x", L"urn:b");
                      writer.AddNamespaceMapping(L"y", L"urn:a");
                      writer.AddNamespaceMapping(L"xml", L"http://www.w3.org/XML/1998/namespace");
                      writer.AddNamespaceMapping(L"z", L"http://www.w3.org/XML/1998/namespace/more");
                      writer.StartElement(L"r", L"urn:d");
                      writer.StartElement(L"a", L"urn:a");
                      writer.EndElement();
                      writer.EndElement();
                  }));
}

TEST(FastInfosetWriter, PrefixesOfValuesAreDeclaredOnce)
{
    EXPECT_EQ(Joined({{56, 207}, Literal(L"p"), Literal(L"urn:p"), {240, 60}, Literal(L"r"), {144, 'p'}}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.StartElement(L"r", L"");
                      EXPECT_TEXT(L"p", writer.DeclareForValue(L"p", L"urn:p"));
                      EXPECT_TEXT(L"p", writer.DeclareForValue(L"q", L"urn:p"));
                      EXPECT_TEXT(L"", writer.DeclareForValue(L"q", L""));
                      Text(writer, L"p");
                      writer.EndElement();
                  }));
}

TEST(FastInfosetWriter, AGeneratedPrefixIsNotDeclared)
{
    EXPECT_EQ(Joined({s_root,
                      {127},
                      Literal(L"AA"),
                      Literal(L"urn:a"),
                      Literal(L"a"), // 64 for its attributes
                      {123, 129, 129},
                      Literal(L"x"),
                      {255},
                      {123},
                      Literal(L"AB"),
                      Literal(L"urn:b"),
                      {130, 255},
                      {240, 240},
                      {63, 129, 130, 130}, // another scope begins with AA again
                      {255}}),
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.StartElement(L"a", L"urn:a");
                      Attribute(writer, L"x", L"urn:a", L"");
                      Attribute(writer, L"x", L"urn:b", L"");
                      writer.EndElement();
                      writer.StartElement(L"x", L"urn:b");
                      writer.EndElement();
                  })));
}

TEST(FastInfosetWriter, ANewNameBehindOneOfANewNamespaceHasAPrefixOfItsOwn)
{
    const FnCalls calls = [](CFastInfosetWriter& writer)
    {
        writer.AddNamespaceMapping(L"a", L"urn:a");
        writer.AddNamespaceMapping(L"b", L"urn:b");
        writer.StartElement(L"r", L"urn:a");
        for (const wchar_t* const lpctName : {L"x", L"y", L"x"})
        {
            for (const wchar_t* const lpctNamespace : {L"urn:b", L"urn:a"})
            {
                writer.StartElement(lpctName, lpctNamespace);
                writer.EndElement();
            }
        }
        writer.EndElement();
    };
    EXPECT_EQ(Joined({{56, 207},
                      Literal(L"a"),
                      Literal(L"urn:a"),
                      {207},
                      Literal(L"b"),
                      Literal(L"urn:b"),
                      {240},
                      {63, 129, 129},
                      Literal(L"r"),
                      {63, 130, 130},
                      Literal(L"x"),
                      {240, 63, 129, 129, 129}, // a:x
                      {240, 63, 130, 130},
                      Literal(L"y"),
                      {240, 63, 129, 129, 130}, // a:y
                      {240, 1, 240, 2, 255}}),
              Write(calls));
}

TEST(FastInfosetWriter, LiteralNamesTellTheirParts)
{
    const FnCalls calls = InRoot(
        [](CFastInfosetWriter& writer)
        {
            writer.SetDefaultNamespace(L"urn:d");
            Attribute(writer, L"x", L"", L"");
            Attribute(writer, L"x", L"urn:d", L"");
            writer.StartElement(L"a", L"");
            writer.EndElement();
            writer.StartElement(L"a", L"urn:d");
            writer.EndElement();
            writer.StartElement(L"a", L"urn:p");
            writer.EndElement();
        });
    // A default namespace set ahead of the first attribute is the document's: the root has not been written yet.
    EXPECT_EQ(Joined({{120, 205},
                      Literal(L"urn:d"),
                      {240, 60},
                      Literal(L"r"),
                      {120},
                      Literal(L"x"),
                      {255},
                      {123},
                      Literal(L"AA"),
                      {129, 129, 255},
                      {240, 60},
                      Literal(L"a"),
                      {240},
                      {63, 129, 129, 130, 240},
                      {63},
                      Literal(L"AB"),
                      Literal(L"urn:p"),
                      {130, 255}}),
              Write(calls));
}

// --- Attributes and values ------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, RepeatedAttributeNamesAndValuesAreTheirIndexes)
{
    EXPECT_EQ(Joined({s_rootWithAttributes,
                      {120, 0, 'x', 64, 'v'},
                      {120, 0, 'y', 128},
                      {0, 64, 'w'},
                      {1, 129},
                      {0, 255},
                      {240}}),
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      Attribute(writer, L"x", L"", L"v");
                      Attribute(writer, L"y", L"", L"v");
                      Attribute(writer, L"x", L"", L"w");
                      Attribute(writer, L"y", L"", L"w");
                      Attribute(writer, L"x", L"", L"");
                  })));
}

TEST(FastInfosetWriter, ValuesOfTheGreatestLengthAndMoreAreNotEntered)
{
    CFastInfosetContext context;
    context.SetAttributeMaxAddLength(3);
    context.SetElementMaxAddLength(4);
    EXPECT_EQ((Octets{65, 'a', 'b'}), AttributeValue(L"ab", ItemType_string, context));
    EXPECT_EQ((Octets{2, 'a', 'b', 'c'}), AttributeValue(L"abc", ItemType_string, context));
    EXPECT_EQ((Octets{146, 0, 'a', 'b', 'c'}), Chunk(L"abc", ItemType_string, context));
    EXPECT_EQ((Octets{130, 1, 'a', 'b', 'c', 'd'}), Chunk(L"abcd", ItemType_string, context));
    // A pair counts as two units.
    EXPECT_EQ((Octets{67, 0xF0, 0x9F, 0x98, 0x80}), AttributeValue(L"\U0001F600", ItemType_string, context));
    EXPECT_EQ((Octets{4, 'a', 0xF0, 0x9F, 0x98, 0x80}), AttributeValue(L"a\U0001F600", ItemType_string, context));
}

TEST(FastInfosetWriter, FiveUnitsAreEnteredAndSixAreNotUnlessTheContextSaysOtherwise)
{
    EXPECT_EQ(68, AttributeValue(L"12345", ItemType_string, CFastInfosetContext())[0]);
    EXPECT_EQ(5, AttributeValue(L"123456", ItemType_string, CFastInfosetContext())[0]);
    EXPECT_EQ(146, Chunk(L"12345", ItemType_string, CFastInfosetContext())[0]);
    EXPECT_EQ(130, Chunk(L"123456", ItemType_string, CFastInfosetContext())[0]);
}

TEST(FastInfosetWriter, WithAGreatestLengthOfZeroNothingIsEntered)
{
    CFastInfosetContext context;
    context.SetAttributeMaxAddLength(0);
    context.SetElementMaxAddLength(0);
    EXPECT_EQ(Octets{255}, AttributeValue(L"", ItemType_string, context));
    EXPECT_EQ((Octets{0, 'a'}), AttributeValue(L"a", ItemType_string, context));
    EXPECT_EQ((Octets{128, 'a'}), Chunk(L"a", ItemType_string, context));
}

TEST(FastInfosetWriter, RepeatedTextIsItsIndex)
{
    Octets expected = s_root;
    const FnCalls calls = InRoot(
        [](CFastInfosetWriter& writer)
        {
            for (int n = 0; n < 2; ++n)
            {
                for (int nText = 0; nText < 18; ++nText)
                    Text(writer, std::wstring(1, static_cast<wchar_t>(L'a' + nText)));
            }
        });
    for (int nText = 0; nText < 18; ++nText)
        expected.insert(expected.end(), {144, 'a' + nText});
    for (int nText = 0; nText < 16; ++nText)
        expected.push_back(160 + nText);
    expected.insert(expected.end(), {176, 0, 176, 1});
    EXPECT_EQ(expected, Write(calls));
}

TEST(FastInfosetWriter, TextAndAttributeValuesHaveTablesOfTheirOwn)
{
    EXPECT_EQ(Joined({s_rootWithAttributes, {120, 0, 'x', 64, 'v', 240, 144, 'v', 160}}),
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      Attribute(writer, L"x", L"", L"v");
                      Text(writer, L"v");
                      Text(writer, L"v");
                  })));
}

TEST(FastInfosetWriter, AnEqualValueOfAnotherTypeIsWrittenByItsIndex)
{
    EXPECT_EQ(Joined({s_rootWithAttributes, {120, 0, 'x', 0x70, 0x21, 0, 7}, {0, 128}, {240, 0x9C, 0x09, 0, 7}, {160}}),
              Write(InRoot(
                        [](CFastInfosetWriter& writer)
                        {
                            Attribute(writer, L"x", L"", L"7", ItemType_i2);
                            Attribute(writer, L"x", L"", L"7", ItemType_string);
                            Text(writer, L"7", ItemType_i2);
                            Text(writer, L"7", ItemType_i4);
                        }),
                    SuggestedContext()));
}

TEST(FastInfosetWriter, ArgumentsEndAtAZeroUnitAndCodePointsAreEncodedWhole)
{
    const auto fnCut = [](const wchar_t* lpctText)
    {
        return std::wstring(lpctText) + std::wstring(L"\0no", 3);
    };
    EXPECT_EQ(Joined({{120, 207},
                      Literal(L"p"),
                      Literal(L"urn:p"),
                      {240},
                      {63, 129, 129},
                      Literal(L"r\U0001F600"),
                      {123, 129, 129},
                      Literal(L"x\U0001F600"),
                      {64, 'v'},
                      {240, 144, 't'}}),
              Write(
                  [&](CFastInfosetWriter& writer)
                  {
                      writer.AddNamespaceMapping(fnCut(L"p"), fnCut(L"urn:p"));
                      writer.StartElement(fnCut(L"r\U0001F600"), fnCut(L"urn:p"));
                      Attribute(writer, fnCut(L"x\U0001F600"), fnCut(L"urn:p"), fnCut(L"v"));
                      Text(writer, fnCut(L"t"));
                      writer.EndElement();
                  }));
}

// --- Encodings of values --------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, EveryEncodingInAnAttributeAndInText)
{
    const struct
    {
        std::uint32_t dwType;
        std::uint32_t dwIndex;
        std::wstring strValue;
        Octets attribute; // discriminator and index on the third bit, length on the fifth
        Octets chunk;     // discriminator and index on the fifth bit, length on the seventh
        Octets octets;
    } rows[] = {
        {0, 0, L"ab", {0x01}, {0x81}, {'a', 'b'}},
        {0, 99, L"\u00E9", {0x01}, {0x81}, {0xC3, 0xA9}},
        {1, 1, L"1.5", {0x20, 0x01}, {0x88, 0x01}, {0x1C, 0x5F}},
        {1, 2, L"2024-05", {0x20, 0x13}, {0x88, 0x06, 1}, {0x20, 0x24, 0xA0, 0x5F}},
        {2, 1, L"0aFF", {0x30, 0x01}, {0x8C, 0x01}, {10, 255}},
        {2, 2, L"QUI=", {0x30, 0x11}, {0x8C, 0x05}, {65, 66}},
        {2, 3, L"-1", {0x30, 0x21}, {0x8C, 0x09}, {255, 255}},
        {2, 4, L"1", {0x30, 0x33}, {0x8C, 0x0E, 1}, {0, 0, 0, 1}},
        {2, 5, L"1", {0x30, 0x47}, {0x8C, 0x12, 5}, {0, 0, 0, 0, 0, 0, 0, 1}},
        {2, 6, L"true", {0x30, 0x50}, {0x8C, 0x14}, {56}},
        {2, 7, L"1.5", {0x30, 0x63}, {0x8C, 0x1A, 1}, {0x3F, 0xC0, 0, 0}},
        {2, 8, L"1.5", {0x30, 0x77}, {0x8C, 0x1E, 5}, {0x3F, 0xF8, 0, 0, 0, 0, 0, 0}},
        {2, 9, L"00112233", {0x30, 0x83}, {0x8C, 0x22, 1}, {0, 0x11, 0x22, 0x33}},
        {2, 10, L"ab", {0x30, 0x91}, {0x8C, 0x25}, {'a', 'b'}},
    };
    for (const auto& row : rows)
    {
        const CFastInfosetContext context = ContextWith(ItemType_string, row.dwType, row.dwIndex);
        EXPECT_EQ(Joined({row.attribute, row.octets}), AttributeValue(row.strValue, ItemType_string, context))
            << row.dwType << ' ' << row.dwIndex;
        EXPECT_EQ(Joined({row.chunk, row.octets}), Chunk(row.strValue, ItemType_string, context))
            << row.dwType << ' ' << row.dwIndex;
    }
}

TEST(FastInfosetWriter, ADecimalPacksIntoHalfOctetsWithTheSuggestedValues)
{
    EXPECT_EQ((Octets{0x60, 0x01, 0x1C, 0x5F}), AttributeValue(L"1.5", ItemType_decimal, SuggestedContext()));
    EXPECT_EQ((Octets{0x98, 0x01, 0x1C, 0x5F}), Chunk(L"1.5", ItemType_decimal, SuggestedContext()));
}

TEST(FastInfosetWriter, ADurationFailsWithTheSuggestedValues)
{
    const wchar_t szNotFound[] = L"Failed to write FastInfoset. Invalid character not found for Restricted Alphabet.";
    ExpectThrows<CQvException>(szNotFound, [] { AttributeValue(L"P1Y", ItemType_duration, SuggestedContext()); });
    ExpectThrows<CQvException>(szNotFound, [] { Chunk(L"P1Y", ItemType_duration, SuggestedContext()); });
}

TEST(FastInfosetWriter, AnUnsignedValueAboveTheSignedRangeFailsWithTheSuggestedValues)
{
    ExpectThrows<CQvInvalidValueException>(L"The value [9223372036854775808] is to large to fit in a i8",
                                           [] { Chunk(L"9223372036854775808", ItemType_ui8, SuggestedContext()); });
}

TEST(FastInfosetWriter, EncodingsThatAreNoneAreRefused)
{
    const struct
    {
        std::uint32_t dwType;
        std::uint32_t dwIndex;
        std::wstring strAttribute;
        std::wstring strChunk;
    } rows[] = {
        {1, 0, L"Invalid Restricted Alphabet value [0]", L"Invalid Restricted Alphabet value [0]"},
        {1, 3, L"Invalid Restricted Alphabet value [3]", L"Invalid Restricted Alphabet value [3]"},
        {2, 0, L"Invalid Encoding Algorithm value [0]", L"Invalid Encoding Algorithm value [0]"},
        {2, 11, L"Invalid Encoding Algorithm value [11]", L"Invalid Encoding Algorithm value [11]"},
        {3, 1, L"Unknown encoding in EncodedCharacterStringBit5.", L"Unknown encoding in EncodedCharacterStringBit7."},
    };
    for (const auto& row : rows)
    {
        const CFastInfosetContext context = ContextWith(ItemType_i4, row.dwType, row.dwIndex);
        ExpectThrows<CQvException>(L"Failed to write FastInfoset. " + row.strAttribute,
                                   [&] { AttributeValue(L"1", ItemType_i4, context); });
        ExpectThrows<CQvException>(L"Failed to write FastInfoset. " + row.strChunk,
                                   [&] { Chunk(L"1", ItemType_i4, context); });
    }
}

TEST(FastInfosetWriter, AValueThatEncodesToNothingIsRefused)
{
    const CFastInfosetContext context = ContextWith(ItemType_base64Binary, 2, 2);
    ExpectThrows<CQvException>(L"Failed to write FastInfoset. A string of octets must not be empty.",
                               [&] { Chunk(L"*", ItemType_base64Binary, context); });
}

// --- xsi:type and xsi:nil -------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, ATypeWithoutNamespaceIsNamedByTheSchemaInstanceAttribute)
{
    EXPECT_EQ(Joined({s_rootWithAttributes, {123}, Literal(L"AA"), Literal(s_szXsi), Literal(L"type"), {64, 't', 240}}),
              Write(InRoot([](CFastInfosetWriter& writer) { writer.WriteXsiType(L"", L"t", ItemType_string); })));
}

TEST(FastInfosetWriter, ATypeInTheDefaultNamespaceIsNamedByTheSchemaInstanceAttribute)
{
    EXPECT_EQ(Joined({{120, 205},
                      Literal(L"urn:d"),
                      {240, 61, 129},
                      Literal(L"r"),
                      {123},
                      Literal(L"AA"),
                      Literal(s_szXsi),
                      Literal(L"type"),
                      {64, 't', 240}}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.SetDefaultNamespace(L"urn:d");
                      writer.StartElement(L"r", L"urn:d");
                      writer.WriteXsiType(L"urn:d", L"t", ItemType_string);
                      writer.EndElement();
                  }));
}

TEST(FastInfosetWriter, ATypeInANewNamespaceIsNamedByItself)
{
    EXPECT_EQ(Joined({s_rootWithAttributes,
                      {123},
                      Literal(L"AA"),
                      Literal(L"urn:t"),
                      Literal(L"t"),
                      {67, 'A', 'A', ':', 't', 240}}),
              Write(InRoot([](CFastInfosetWriter& writer) { writer.WriteXsiType(L"urn:t", L"t", ItemType_string); })));
}

TEST(FastInfosetWriter, ATypeInAKnownNamespaceIsNamedByTheSchemaInstanceWithThePrefixOfTheType)
{
    EXPECT_EQ(Joined({{120, 207},
                      Literal(L"p"),
                      Literal(L"urn:t"),
                      {240, 60},
                      Literal(L"r"),
                      {123, 129},
                      Literal(s_szXsi),
                      Literal(L"type"),
                      {66, 'p', ':', 't', 240}}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.AddNamespaceMapping(L"p", L"urn:t");
                      writer.StartElement(L"r", L"");
                      writer.WriteXsiType(L"urn:t", L"t", ItemType_string);
                      writer.EndElement();
                  }));
}

TEST(FastInfosetWriter, NilIsABooleanAttribute)
{
    EXPECT_EQ(Joined({s_rootWithAttributes,
                      {123},
                      Literal(L"AA"),
                      Literal(s_szXsi),
                      Literal(L"nil"),
                      {67, 't', 'r', 'u', 'e', 240}}),
              Write(InRoot([](CFastInfosetWriter& writer) { writer.WriteXsiNil(); })));
    EXPECT_EQ(
        Joined({s_rootWithAttributes, {123}, Literal(L"AA"), Literal(s_szXsi), Literal(L"nil"), {0x70, 0x50, 56, 240}}),
        Write(InRoot([](CFastInfosetWriter& writer) { writer.WriteXsiNil(); }), SuggestedContext()));
}

// --- The agreed vocabulary ------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, AnAgreedVocabularyIsUsedByIndexAndLeftAsItIs)
{
    CFastInfosetContext context;
    context.GetVocabulary()->AddElement(L"", L"", L"r");
    context.GetVocabulary()->AddAttribute(L"", L"", L"x");
    context.GetVocabulary()->AddAttributeValue(L"v");
    context.GetVocabulary()->AddElementValue(L"t");
    const FnCalls calls = InRoot(
        [](CFastInfosetWriter& writer)
        {
            Attribute(writer, L"x", L"", L"v");
            Attribute(writer, L"y", L"", L"w");
            Text(writer, L"t");
        });
    EXPECT_EQ(Joined({s_rootWithAttributes, {120, 0, 'x', 64, 'v', 120, 0, 'y', 64, 'w', 240, 144, 't'}}),
              Write(calls, context));
    context.SetUseGeneratedVocabulary(true);
    const Octets expected = {120, 240, 0, 0, 128, 120, 0, 'y', 64, 'w', 240, 160};
    EXPECT_EQ(expected, Write(calls, context));
    EXPECT_EQ(expected, Write(calls, context));
}

TEST(FastInfosetWriter, ElementNamesFromIndex526369OnAreWrittenOneTooHigh)
{
    CFastInfosetContext context;
    for (int n = 1; n <= 526370; ++n)
        context.GetVocabulary()->AddElement(L"", L"", std::to_wstring(n));
    context.SetUseGeneratedVocabulary(true);
    EXPECT_EQ((Octets{56, 240, 0, 47, 255, 255, 240, 48, 0, 0, 1, 240, 48, 0, 0, 2, 255}),
              Write(
                  [](CFastInfosetWriter& writer)
                  {
                      writer.StartElement(L"1", L"");
                      for (const wchar_t* lpctName : {L"526368", L"526369", L"526370"})
                      {
                          writer.StartElement(lpctName, L"");
                          writer.EndElement();
                      }
                      writer.EndElement();
                  },
                  context));
}

TEST(FastInfosetWriter, AFullTableTakesNothingMoreAndTheTextIsWrittenAgain)
{
    CFastInfosetContext context;
    for (int n = 1; n <= 1048576; ++n)
        context.GetVocabulary()->AddElementValue(std::to_wstring(n));
    context.SetUseGeneratedVocabulary(true);
    context.SetElementMaxAddLength(7);
    EXPECT_EQ(Joined({s_root, {184, 0, 0, 0, 144, 'a', 144, 'a'}}), Write(InRoot(
                                                                              [](CFastInfosetWriter& writer)
                                                                              {
                                                                                  Text(writer, L"263185");
                                                                                  Text(writer, L"a");
                                                                                  Text(writer, L"a");
                                                                              }),
                                                                          context));
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST(FastInfosetWriter, AttributesBehindTextOrAChildAreRefused)
{
    const FnCalls contents[] = {
        [](CFastInfosetWriter& writer) { Text(writer, L"t"); },
        [](CFastInfosetWriter& writer) { Text(writer, L""); }, // unlike in XML text
        [](CFastInfosetWriter& writer)
        {
            writer.StartElement(L"a", L"");
            writer.EndElement();
        },
    };
    for (const FnCalls& fnContent : contents)
    {
        CFastInfosetContext context;
        CBinaryStream stream;
        CFastInfosetWriter writer(&context, &stream);
        writer.Open();
        writer.StartElement(L"r", L"");
        fnContent(writer);
        const Octets before = OctetsOf(stream.GetData());
        ExpectThrows<CQvException>(s_szTooLate, [&] { Attribute(writer, L"x", L"", L""); });
        ExpectThrows<CQvException>(s_szTooLate, [&] { writer.WriteXsiType(L"urn:t", L"t", ItemType_string); });
        ExpectThrows<CQvException>(s_szTooLate, [&] { writer.WriteXsiNil(); });
        EXPECT_EQ(before, OctetsOf(stream.GetData()));
    }
}

TEST(FastInfosetWriter, ClosingWithAnElementOpenIsRefused)
{
    ExpectThrows<CQvException>(L"An Element has not been closed.",
                               []
                               {
                                   Write(
                                       [](CFastInfosetWriter& writer)
                                       {
                                           writer.StartElement(L"r", L"");
                                           Text(writer, L"t");
                                       });
                               });
}

TEST(FastInfosetWriter, AnEmptyPrefixOrUriHasNoFormOnTheRoot)
{
    for (const auto& [lpctPrefix, lpctNamespace] : {std::pair(L"", L"urn:a"), std::pair(L"p", L"")})
    {
        ExpectThrows<CQvException>(L"Failed to write FastInfoset. A string of octets must not be empty.",
                                   [&, pPrefix = lpctPrefix, pNamespace = lpctNamespace]
                                   {
                                       Write(
                                           [&](CFastInfosetWriter& writer)
                                           {
                                               writer.AddNamespaceMapping(pPrefix, pNamespace);
                                               writer.StartElement(L"r", L"");
                                               Text(writer, L"t");
                                           });
                                   });
    }
}

#if defined(QUIVER_DIAGNOSTICS)
TEST(FastInfosetWriterDeathTest, ARootWithNeitherAttributesNorContentStopsAtAnAssertion)
{
    EXPECT_DEATH(Write(InRoot([](CFastInfosetWriter&) {})), "m_pContext != NULL");
}

TEST(FastInfosetWriterDeathTest, ProgrammingErrorsStopAtTheirAssertions)
{
    EXPECT_DEATH(Write([](CFastInfosetWriter& writer) { writer.EndElement(); }), "m_pContext != NULL");
    EXPECT_DEATH(Write([](CFastInfosetWriter& writer) { Attribute(writer, L"x", L"", L""); }), "m_pContext != NULL");
    EXPECT_DEATH(Write([](CFastInfosetWriter& writer) { writer.WriteXsiType(L"", L"t", ItemType_string); }),
                 "m_pContext != NULL");
    EXPECT_DEATH(Write([](CFastInfosetWriter& writer) { writer.WriteXsiNil(); }), "m_pContext != NULL");
    EXPECT_DEATH(Write([](CFastInfosetWriter& writer) { Text(writer, L"t"); }), "m_pContext != NULL");
    EXPECT_DEATH(Write(InRoot(
                     [](CFastInfosetWriter& writer)
                     {
                         Text(writer, L"t");
                         writer.AddNamespaceMapping(L"", L"urn:e");
                         writer.StartElement(L"a", L"");
                         writer.WriteXsiType(L"urn:e", L"t", ItemType_string);
                     })),
                 "!m_pContext->GetNamespaceMapValue\\(strElementNamespace\\).empty\\(\\)");
    EXPECT_DEATH(Write(InRoot([](CFastInfosetWriter& writer) { Text(writer, std::wstring(1, 0xD800)); })),
                 "dwActualLen == dwUtf8Len");
}
#else
TEST(FastInfosetWriter, ARootWithNeitherAttributesNorContentIsWritten)
{
    EXPECT_EQ(Joined({s_root, {255}}), Write(
                                           [](CFastInfosetWriter& writer)
                                           {
                                               writer.StartElement(L"r", L"");
                                               writer.EndElement();
                                               writer.WriteTerminator();
                                           }));
}

TEST(FastInfosetWriter, CallsForAnOpenElementWhileThereIsNoneAreRefused)
{
    const FnCalls calls[] = {
        [](CFastInfosetWriter& writer) { Text(writer, L"t"); },
        [](CFastInfosetWriter& writer) { writer.EndElement(); },
        [](CFastInfosetWriter& writer) { Attribute(writer, L"x", L"", L""); },
        [](CFastInfosetWriter& writer) { writer.WriteXsiType(L"", L"t", ItemType_string); },
        [](CFastInfosetWriter& writer) { writer.WriteXsiNil(); },
    };
    for (const FnCalls& fnCall : calls)
        ExpectThrows<CQvException>(L"No Element has been started.", [&] { Write(fnCall); });
}

TEST(FastInfosetWriter, TextEndsAheadOfAnUnpairedSurrogate)
{
    EXPECT_EQ((Octets{144, 'a'}), Chunk(std::wstring{L'a', 0xD800, L'b'}, ItemType_string, CFastInfosetContext()));
}
#endif

// --- Records of open elements ---------------------------------------------------------------------------------------

TEST(FastInfosetWriter, RecordsOfElementsDieWithTheWriter)
{
    const long nContexts = CountInstances(L"CXmlWriterContext").nLiving;
    const long nWriters = CountInstances(L"CFastInfosetWriter").nLiving;
    {
        CFastInfosetContext context;
        CBinaryStream stream;
        CFastInfosetWriter writer(&context, &stream);
        EXPECT_EQ(nWriters + 1, CountInstances(L"CFastInfosetWriter").nLiving);
        writer.Open();
        for (int n = 0; n < 100000; ++n)
            writer.StartElement(L"a", L"urn:a");
        // One of them is still pending.
        EXPECT_EQ(nContexts + 100000, CountInstances(L"CXmlWriterContext").nLiving);
    }
    EXPECT_EQ(nContexts, CountInstances(L"CXmlWriterContext").nLiving);
    EXPECT_EQ(nWriters, CountInstances(L"CFastInfosetWriter").nLiving);
}

TEST(FastInfosetWriter, NamespacesSetWhileAnElementIsPendingBelongToTheEnclosingScope)
{
    // Set between the start of `a` and its first attribute, the binding is the root's: it outlives `a`.
    EXPECT_EQ(Joined({s_root,
                      {144, 't'},
                      {127},
                      Literal(L"p"),
                      Literal(L"urn:p"),
                      Literal(L"a"),
                      {120, 0, 'x', 255},
                      {240, 240},
                      {1, 255}}),
              Write(InRoot(
                  [](CFastInfosetWriter& writer)
                  {
                      Text(writer, L"t");
                      writer.StartElement(L"a", L"urn:p");
                      writer.AddNamespaceMapping(L"p", L"urn:p");
                      Attribute(writer, L"x", L"", L"");
                      writer.EndElement();
                      writer.StartElement(L"a", L"urn:p");
                      writer.EndElement();
                  })));
}
