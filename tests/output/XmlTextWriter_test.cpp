#include "quiver/output/XmlTextWriter.h"

#include "quiver/output/TextStream.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using QvTest::CountInstances;
using QvTest::ExpectThrows;

namespace
{

constexpr wchar_t s_szXsi[] = L"http://www.w3.org/2001/XMLSchema-instance";
constexpr wchar_t s_szXml[] = L"http://www.w3.org/XML/1998/namespace";
constexpr wchar_t s_szTooLate[] = L"Attributes must be added before elements";

struct SOptions
{
    bool bFormatted = false;
    EOLType eEOLType = EOLType_LF;
    XmlEncoding eEncoding = Encoding_None;
};

/// What a writer makes of some calls; the document is closed behind them.
std::wstring Write(const std::function<void(CXmlTextWriter&)>& calls, const SOptions& options = {})
{
    CTextStream stream(options.eEncoding);
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetFormatted(options.bFormatted);
    writer.SetEOLType(options.eEOLType);
    calls(writer);
    writer.Close();
    return stream.GetText();
}

std::wstring WriteFormatted(const std::function<void(CXmlTextWriter&)>& calls)
{
    SOptions options;
    options.bFormatted = true;
    return Write(calls, options);
}

void Text(CXmlTextWriter& writer, std::wstring_view svText)
{
    writer.WriteText(svText, ItemType_string);
}

void Attribute(CXmlTextWriter& writer, std::wstring_view svName, std::wstring_view svNamespace,
               std::wstring_view svValue)
{
    writer.WriteAttribute(svName, svNamespace, svValue, ItemType_string);
}

void Leaf(CXmlTextWriter& writer, std::wstring_view svName, std::wstring_view svNamespace)
{
    writer.StartElement(svName, svNamespace);
    writer.EndElement();
}

/// `strText` with a short name in place of a part that is awkward to read.
std::wstring Put(const std::wstring& strName, const std::wstring& strPart, std::wstring strText)
{
    for (std::size_t n = strText.find(strPart); n != std::wstring::npos; n = strText.find(strPart, n))
        strText.replace(n, strPart.size(), strName);
    return strText;
}

/// A stream that carries its text on at each flush, and notes what happens to it.
class CNotingStream : public CTextStream
{
public:
    CNotingStream()
        : CTextStream(L"CNotingStream", Encoding_None)
    {
    }
    void Open() override
    {
        m_events.push_back(L"open");
        CTextStream::Open();
    }
    void Close() override { m_events.push_back(L"close"); }
    void Flush() override
    {
        m_events.push_back(L"flush " + std::to_wstring(GetLength()));
        m_strCarried += GetString();
        m_buffer.Reset();
    }

    std::vector<std::wstring> m_events;
    std::wstring m_strCarried;
};

using Events = std::vector<std::wstring>;

void WriteOrder(CXmlTextWriter& writer, std::wstring_view svItemNamespace)
{
    writer.WriteXmlDeclaration();
    writer.SetDefaultNamespace(L"urn:a");
    writer.StartElement(L"order", L"urn:a");
    writer.StartElement(L"item", svItemNamespace);
    writer.WriteAttribute(L"id", L"", L"1", ItemType_i4);
    Text(writer, L"a<b");
    writer.EndElement();
    Leaf(writer, L"note", L"urn:a");
    writer.EndElement();
}

} // namespace

// --- The whole document ---------------------------------------------------------------------------------------------

TEST(XmlTextWriter, AnOrderFormatted)
{
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\n"
                L"<order xmlns=\"urn:a\">\n"
                L"\t<item id=\"1\">a&lt;b</item>\n"
                L"\t<note/>\n"
                L"</order>\n",
                WriteFormatted([](CXmlTextWriter& writer) { WriteOrder(writer, L"urn:a"); }));
}

TEST(XmlTextWriter, AnOrderInOneRun)
{
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\n"
                L"<order xmlns=\"urn:a\"><item id=\"1\">a&lt;b</item><note/></order>",
                Write([](CXmlTextWriter& writer) { WriteOrder(writer, L"urn:a"); }));
}

TEST(XmlTextWriter, AnOrderWithTheOtherLineEnding)
{
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\r\n"
                L"<order xmlns=\"urn:a\">\r\n"
                L"\t<item id=\"1\">a&lt;b</item>\r\n"
                L"\t<note/>\r\n"
                L"</order>\r\n",
                Write([](CXmlTextWriter& writer) { WriteOrder(writer, L"urn:a"); },
                      SOptions{true, EOLType_CRLF, Encoding_None}));
}

TEST(XmlTextWriter, AGeneratedPrefixDiesWithItsElement)
{
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\n"
                L"<order xmlns=\"urn:a\"><AA:item xmlns:AA=\"urn:b\" id=\"1\">a&lt;b</AA:item><note/></order>",
                Write([](CXmlTextWriter& writer) { WriteOrder(writer, L"urn:b"); }));
    EXPECT_TEXT(L"<a><AA:b xmlns:AA=\"urn:b\"/><AA:b xmlns:AA=\"urn:b\"/><AA:c xmlns:AA=\"urn:c\"/></a>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"a", L"");
                        Leaf(writer, L"b", L"urn:b");
                        Leaf(writer, L"b", L"urn:b");
                        Leaf(writer, L"c", L"urn:c");
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, MixedContentFormatted)
{
    EXPECT_TEXT(L"<r>\n"
                L"\t<a>text\t\t<b/>\n"
                L"\t</a>\n"
                L"</r>\n",
                WriteFormatted(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"r", L"");
                        writer.StartElement(L"a", L"");
                        Text(writer, L"text");
                        Leaf(writer, L"b", L"");
                        writer.EndElement();
                        writer.EndElement();
                    }));
}

// --- The declaration and what else precedes the root ----------------------------------------------------------------

TEST(XmlTextWriter, TheDeclarationNamesTheEncodingOfTheStream)
{
    const struct
    {
        XmlEncoding eEncoding;
        std::wstring strDeclaration;
    } rows[] = {
        {Encoding_None, L"<?xml version=\"1.0\"?>\n"},
        {Encoding_UTF8, L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"},
        {Encoding_UTF16, L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"},
        {Encoding_UTF16_Undeclared, L"<?xml version=\"1.0\"?>\n"},
    };
    for (const auto& row : rows)
    {
        for (const bool bFormatted : {false, true})
        {
            EXPECT_TEXT(row.strDeclaration, Write([](CXmlTextWriter& writer) { writer.WriteXmlDeclaration(); },
                                                  SOptions{bFormatted, EOLType_LF, row.eEncoding}));
        }
    }
}

TEST(XmlTextWriter, AHeadedDirectiveStandsOnALineOfItsOwnUnescaped)
{
    EXPECT_TEXT(L"<!DOCTYPE a SYSTEM \"a.dtd\">\n<a/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.WriteHeadedDirective(L"<!DOCTYPE a SYSTEM \"a.dtd\">");
                        Leaf(writer, L"a", L"");
                    }));
}

TEST(XmlTextWriter, AHeadedDirectiveInsideAnElementIsRefused)
{
    CTextStream stream;
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.StartElement(L"a", L"");
    ExpectThrows<CQvException>(L"Headed directives must appear before an Element has been added.",
                               [&] { writer.WriteHeadedDirective(L"<!DOCTYPE a>"); });
    EXPECT_TEXT(L"<a", stream.GetText());
}

TEST(XmlTextWriter, ACommentIsEscapedLikeTextAndEndsItsLine)
{
    for (const bool bFormatted : {false, true})
    {
        EXPECT_TEXT(L"<!--a&lt;b -- \n&amp;-->\n",
                    Write([](CXmlTextWriter& writer) { writer.WriteComment(L"a<b -- \n&"); },
                          SOptions{bFormatted, EOLType_LF, Encoding_None}));
    }
}

TEST(XmlTextWriter, ACommentLeavesTheOpenStartTagAlone)
{
    EXPECT_TEXT(L"<a<!--x-->\n b=\"1\"/>", Write(
                                               [](CXmlTextWriter& writer)
                                               {
                                                   writer.StartElement(L"a", L"");
                                                   writer.WriteComment(L"x");
                                                   Attribute(writer, L"b", L"", L"1");
                                                   writer.EndElement();
                                               }));
}

TEST(XmlTextWriter, AProcessingInstructionIsWrittenAsItIsWithABlankLineBehindIt)
{
    EXPECT_TEXT(L"<?go a<b?>\n\n",
                Write([](CXmlTextWriter& writer) { writer.WriteProcessingInstruction(L"<?go a<b?>"); }));
    EXPECT_TEXT(L"<?go?>\r\n\r\n", Write([](CXmlTextWriter& writer) { writer.WriteProcessingInstruction(L"<?go?>"); },
                                         SOptions{true, EOLType_CRLF, Encoding_None}));
}

TEST(XmlTextWriter, AnInlineSchemaStandsInsideTheOpenStartTag)
{
    EXPECT_TEXT(L"<a b=\"1\" \n<xs:schema/>\n>\n\t<c/>\n</a>\n", WriteFormatted(
                                                                     [](CXmlTextWriter& writer)
                                                                     {
                                                                         writer.StartElement(L"a", L"");
                                                                         Attribute(writer, L"b", L"", L"1");
                                                                         writer.WriteInlineSchema(L"<xs:schema/>");
                                                                         Leaf(writer, L"c", L"");
                                                                         writer.EndElement();
                                                                     }));
}

// --- Elements and text ----------------------------------------------------------------------------------------------

TEST(XmlTextWriter, EmptyTextKeepsTheElementEmptyAndItsStartTagOpen)
{
    EXPECT_TEXT(L"<a b=\"1\"/>", Write(
                                     [](CXmlTextWriter& writer)
                                     {
                                         writer.StartElement(L"a", L"");
                                         Text(writer, L"");
                                         Attribute(writer, L"b", L"", L"1");
                                         Text(writer, std::wstring_view(L"\0x", 2));
                                         writer.EndElement();
                                     }));
}

TEST(XmlTextWriter, SeveralTextsFollowEachOther)
{
    EXPECT_TEXT(L"<a>xyz</a>\n", WriteFormatted(
                                     [](CXmlTextWriter& writer)
                                     {
                                         writer.StartElement(L"a", L"");
                                         Text(writer, L"x");
                                         Text(writer, L"");
                                         Text(writer, L"yz");
                                         writer.EndElement();
                                     }));
}

TEST(XmlTextWriter, EscapesInText)
{
    const struct
    {
        std::wstring strText;
        std::wstring strLF;
        std::wstring strCRLF;
    } rows[] = {
        {L"\n", L"\n", L"\r\n"},
        {L"\"", L"&quot;", L"&quot;"},
        {L"&", L"&amp;", L"&amp;"},
        {L"<", L"&lt;", L"&lt;"},
        {L">", L"&gt;", L"&gt;"},
        {L"a\n\n\"&<>b", L"a\n\n&quot;&amp;&lt;&gt;b", L"a\r\n\r\n&quot;&amp;&lt;&gt;b"},
        {L"\t'\x01 \x1F\x7F;=?", L"\t'\x01 \x1F\x7F;=?", L"\t'\x01 \x1F\x7F;=?"},
        {L"\u00E9\u20AC\uFFFF", L"\u00E9\u20AC\uFFFF", L"\u00E9\u20AC\uFFFF"},
    };
    for (const auto& row : rows)
    {
        const auto fnCalls = [&](CXmlTextWriter& writer)
        {
            writer.StartElement(L"a", L"");
            Text(writer, row.strText);
            writer.EndElement();
        };
        EXPECT_TEXT(L"<a>" + row.strLF + L"</a>", Write(fnCalls));
        EXPECT_TEXT(L"<a>" + row.strCRLF + L"</a>", Write(fnCalls, SOptions{false, EOLType_CRLF, Encoding_None}));
    }
}

TEST(XmlTextWriter, EscapesInAttributes)
{
    const struct
    {
        std::wstring strValue;
        std::wstring strWritten;
    } rows[] = {
        {L"", L""},
        {L"\n", L"&#xA;"},
        {L"\"", L"&quot;"},
        {L"&", L"&amp;"},
        {L"<", L"&lt;"},
        {L">", L"&gt;"},
        {L"x\n\"&<>\n", L"x&#xA;&quot;&amp;&lt;&gt;&#xA;"},
        {L"\t'", L"\t'"},
        {L"<![CDATA[x]]>", L"&lt;![CDATA[x]]&gt;"},
    };
    for (const auto& row : rows)
    {
        for (const EOLType eEOLType : {EOLType_LF, EOLType_CRLF})
        {
            EXPECT_TEXT(L"<a b=\"" + row.strWritten + L"\"/>", Write(
                                                                   [&](CXmlTextWriter& writer)
                                                                   {
                                                                       writer.StartElement(L"a", L"");
                                                                       Attribute(writer, L"b", L"", row.strValue);
                                                                       writer.EndElement();
                                                                   },
                                                                   SOptions{false, eEOLType, Encoding_None}));
        }
    }
}

TEST(XmlTextWriter, TextThatBeginsWithACDataSectionIsWrittenAsItIs)
{
    const struct
    {
        std::wstring strText;
        std::wstring strWritten;
    } rows[] = {
        {L"<![CDATA[a<b]]>", L"<![CDATA[a<b]]>"},
        {L"<![CDATA[a]]>]]>&", L"<![CDATA[a]]>]]>&"},
        {L"<![CDATA[", L"<![CDATA["},
        {L"<![CDATA", L"&lt;![CDATA"},
        {L" <![CDATA[a]]>", L" &lt;![CDATA[a]]&gt;"},
    };
    for (const auto& row : rows)
    {
        EXPECT_TEXT(L"<a>" + row.strWritten + L"</a>", Write(
                                                           [&](CXmlTextWriter& writer)
                                                           {
                                                               writer.StartElement(L"a", L"");
                                                               Text(writer, row.strText);
                                                               writer.EndElement();
                                                           }));
    }
}

TEST(XmlTextWriter, EveryTextArgumentEndsAtItsFirstZeroUnit)
{
    const auto fnCut = [](const wchar_t* lpctText)
    {
        return std::wstring(lpctText) + std::wstring(L"\0<no", 4);
    };
    EXPECT_TEXT(L"<?pi?>\n\n<!--c-->\n<!D>\n"
                L"<p:a xmlns=\"urn:d\" xmlns:p=\"urn:p\" p:b=\"v\" AA:type=\"p:t\" \ns\n>t<![CDATA[x]]>r"
                L"<AB:e xmlns:AB=\"urn:e\"/></p:a>",
                Write(
                    [&](CXmlTextWriter& writer)
                    {
                        writer.WriteProcessingInstruction(fnCut(L"<?pi?>"));
                        writer.WriteComment(fnCut(L"c"));
                        writer.WriteHeadedDirective(fnCut(L"<!D>"));
                        writer.SetDefaultNamespace(fnCut(L"urn:d"));
                        writer.AddNamespaceMapping(fnCut(L"p"), fnCut(L"urn:p"));
                        writer.StartElement(fnCut(L"a"), fnCut(L"urn:p"));
                        writer.AddNamespaceMapping(L"AA", s_szXsi);
                        Attribute(writer, fnCut(L"b"), fnCut(L"urn:p"), fnCut(L"v"));
                        writer.WriteXsiType(fnCut(L"urn:p"), fnCut(L"t"), ItemType_string);
                        writer.WriteInlineSchema(fnCut(L"s"));
                        Text(writer, fnCut(L"t"));
                        Text(writer, fnCut(L"<![CDATA[x]]>"));
                        writer.WriteRaw(fnCut(L"r"));
                        Leaf(writer, fnCut(L"e"), fnCut(L"urn:e"));
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, CodePointsAboveFfffLeaveAsSurrogatePairs)
{
    const std::wstring strPair{0xD83D, 0xDE00};
    EXPECT_TEXT(L"<P:nP xmlns:P=\"urn:P\" bP=\"P&lt;P\">P&gt;P<![CDATA[P]]>P</P:nP>",
                Put(L"P", strPair,
                    Write(
                        [&](CXmlTextWriter& writer)
                        {
                            writer.AddNamespaceMapping(L"\U0001F600", L"urn:\U0001F600");
                            writer.StartElement(L"n\U0001F600", L"urn:\U0001F600");
                            Attribute(writer, L"b\U0001F600", L"", L"\U0001F600<\U0001F600");
                            Text(writer, L"\U0001F600>\U0001F600");
                            Text(writer, L"<![CDATA[\U0001F600]]>");
                            writer.WriteRaw(L"\U0001F600");
                            writer.EndElement();
                        })));
}

TEST(XmlTextWriter, RawTextIsNotEscapedAndEndsALineOnlyWhenFormatted)
{
    const auto fnCalls = [](CXmlTextWriter& writer)
    {
        writer.StartElement(L"a", L"");
        writer.CloseStartTag();
        writer.WriteRaw(L"<b/>");
        writer.EndElement();
    };
    EXPECT_TEXT(L"<a><b/></a>", Write(fnCalls));
    EXPECT_TEXT(L"<a>\n<b/>\n</a>\n", WriteFormatted(fnCalls));
}

TEST(XmlTextWriter, ClosingTheStartTagCountsAChildEachTime)
{
    // The child that was counted indents the end tag, although the start tag had been ended before.
    EXPECT_TEXT(L"<r>\n\t<a>x\t</a>\n</r>\n", WriteFormatted(
                                                  [](CXmlTextWriter& writer)
                                                  {
                                                      writer.StartElement(L"r", L"");
                                                      writer.StartElement(L"a", L"");
                                                      Text(writer, L"x");
                                                      writer.CloseStartTag();
                                                      writer.EndElement();
                                                      writer.EndElement();
                                                  }));
    EXPECT_TEXT(L"", Write([](CXmlTextWriter& writer) { writer.CloseStartTag(); }));
}

// --- Namespaces -----------------------------------------------------------------------------------------------------

TEST(XmlTextWriter, AnElementWithoutNamespaceIsWrittenBareInsideADefaultNamespace)
{
    EXPECT_TEXT(L"<a xmlns=\"urn:a\"><b/></a>", Write(
                                                    [](CXmlTextWriter& writer)
                                                    {
                                                        writer.SetDefaultNamespace(L"urn:a");
                                                        writer.StartElement(L"a", L"urn:a");
                                                        Leaf(writer, L"b", L"");
                                                        writer.EndElement();
                                                    }));
}

TEST(XmlTextWriter, TheRootDeclaresItsNamespacesInTheOrderOfTheUris)
{
    EXPECT_TEXT(L"<AA:r xmlns:AA=\"urn:r\" xmlns=\"urn:d\" xmlns:z=\"urn:a\" xmlns:x=\"urn:b\" xmlns:y=\"urn:c\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.AddNamespaceMapping(L"y", L"urn:c");
                        writer.AddNamespaceMapping(L"z", L"urn:a");
                        writer.SetDefaultNamespace(L"urn:d");
                        writer.AddNamespaceMapping(L"w", L"urn:b");
                        writer.AddNamespaceMapping(L"x", L"urn:b");
                        Leaf(writer, L"r", L"urn:r");
                    }));
}

TEST(XmlTextWriter, APrefixOfTheRootIsUsedAtAnyDepthWithoutADeclaration)
{
    EXPECT_TEXT(L"<a xmlns:p=\"urn:p\"><b><p:c p:d=\"1\"/></b><p:c/></a>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.AddNamespaceMapping(L"p", L"urn:p");
                        writer.StartElement(L"a", L"");
                        writer.StartElement(L"b", L"");
                        writer.StartElement(L"c", L"urn:p");
                        Attribute(writer, L"d", L"urn:p", L"1");
                        writer.EndElement();
                        writer.EndElement();
                        Leaf(writer, L"c", L"urn:p");
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, AQualifiedAttributeHasAPrefixEvenInTheDefaultNamespace)
{
    EXPECT_TEXT(L"<a xmlns=\"urn:a\" xmlns:AA=\"urn:a\" AA:b=\"1\"/>", Write(
                                                                           [](CXmlTextWriter& writer)
                                                                           {
                                                                               writer.SetDefaultNamespace(L"urn:a");
                                                                               writer.StartElement(L"a", L"urn:a");
                                                                               Attribute(writer, L"b", L"urn:a", L"1");
                                                                               writer.EndElement();
                                                                           }));
}

TEST(XmlTextWriter, TheSecondAttributeOfANewNamespaceFindsItsPrefix)
{
    EXPECT_TEXT(L"<a xmlns:AA=\"urn:b\" AA:x=\"1\" AA:y=\"2\"/>", Write(
                                                                      [](CXmlTextWriter& writer)
                                                                      {
                                                                          writer.StartElement(L"a", L"");
                                                                          Attribute(writer, L"x", L"urn:b", L"1");
                                                                          Attribute(writer, L"y", L"urn:b", L"2");
                                                                          writer.EndElement();
                                                                      }));
}

TEST(XmlTextWriter, TwoNewNamespacesOnOneElementGetTwoPrefixes)
{
    EXPECT_TEXT(L"<a xmlns:AA=\"urn:b\" AA:x=\"1\" xmlns:AB=\"urn:c\" AB:y=\"2\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"a", L"");
                        Attribute(writer, L"x", L"urn:b", L"1");
                        Attribute(writer, L"y", L"urn:c", L"2");
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, AGeneratedPrefixPassesOverOneThatIsTaken)
{
    EXPECT_TEXT(L"<AB:a xmlns:AB=\"urn:a\" xmlns:AA=\"urn:x\"/>", Write(
                                                                      [](CXmlTextWriter& writer)
                                                                      {
                                                                          writer.AddNamespaceMapping(L"AA", L"urn:x");
                                                                          Leaf(writer, L"a", L"urn:a");
                                                                      }));
}

TEST(XmlTextWriter, TheXmlNamespaceIsNeverDeclaredAndItsPrefixIsXml)
{
    EXPECT_TEXT(L"<a xml:lang=\"en\"/>", Write(
                                             [](CXmlTextWriter& writer)
                                             {
                                                 writer.AddNamespaceMapping(L"xml", s_szXml);
                                                 writer.StartElement(L"a", L"");
                                                 Attribute(writer, L"lang", s_szXml, L"en");
                                                 writer.EndElement();
                                             }));
}

TEST(XmlTextWriter, ALongerUriThatBeginsLikeTheXmlNamespaceIsNotDeclaredEither)
{
    EXPECT_TEXT(L"<p:a/>", Write(
                               [](CXmlTextWriter& writer)
                               {
                                   const std::wstring strNamespace = std::wstring(s_szXml) + L"/more";
                                   writer.AddNamespaceMapping(L"p", strNamespace);
                                   Leaf(writer, L"a", strNamespace);
                               }));
}

TEST(XmlTextWriter, ADefaultNamespaceSetOnAnOpenElementIsNotDeclaredAndHoldsInItsScope)
{
    EXPECT_TEXT(L"<a><b><c/><d/></b><AA:c xmlns:AA=\"urn:b\"/></a>", Write(
                                                                         [](CXmlTextWriter& writer)
                                                                         {
                                                                             writer.StartElement(L"a", L"");
                                                                             writer.StartElement(L"b", L"");
                                                                             writer.SetDefaultNamespace(L"urn:b");
                                                                             Leaf(writer, L"c", L"urn:b");
                                                                             Leaf(writer, L"d", L"");
                                                                             writer.EndElement();
                                                                             Leaf(writer, L"c", L"urn:b");
                                                                             writer.EndElement();
                                                                         }));
}

TEST(XmlTextWriter, APrefixSetOnAnOpenElementIsNotDeclaredAndHoldsInItsScope)
{
    EXPECT_TEXT(L"<a><b><p:c/></b><AA:c xmlns:AA=\"urn:b\"/></a>", Write(
                                                                       [](CXmlTextWriter& writer)
                                                                       {
                                                                           writer.StartElement(L"a", L"");
                                                                           writer.StartElement(L"b", L"");
                                                                           writer.AddNamespaceMapping(L"p", L"urn:b");
                                                                           Leaf(writer, L"c", L"urn:b");
                                                                           writer.EndElement();
                                                                           Leaf(writer, L"c", L"urn:b");
                                                                           writer.EndElement();
                                                                       }));
}

TEST(XmlTextWriter, AnEndTagWhoseDefaultNamespaceWasTakenAwayGetsAnEmptyPrefix)
{
    EXPECT_TEXT(L"<a xmlns=\"urn:a\"><b>x</:b></a>", Write(
                                                         [](CXmlTextWriter& writer)
                                                         {
                                                             writer.SetDefaultNamespace(L"urn:a");
                                                             writer.StartElement(L"a", L"urn:a");
                                                             writer.StartElement(L"b", L"urn:a");
                                                             writer.SetDefaultNamespace(L"urn:z");
                                                             Text(writer, L"x");
                                                             writer.EndElement();
                                                             writer.EndElement();
                                                         }));
}

TEST(XmlTextWriter, ASecondRootStartsFromTheDocumentsNamespacesAgain)
{
    EXPECT_TEXT(L"<AA:a xmlns:AA=\"urn:a\" xmlns=\"urn:d\"/><AA:b xmlns:AA=\"urn:b\" xmlns=\"urn:d\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.SetDefaultNamespace(L"urn:d");
                        writer.StartElement(L"a", L"urn:a");
                        writer.SetDefaultNamespace(L"urn:b");
                        writer.EndElement();
                        Leaf(writer, L"b", L"urn:b");
                    }));
}

TEST(XmlTextWriter, TenThousandNewNamespacesOnOneElementAreDeclaredInOrder)
{
    const std::wstring strDocument = Write(
        [](CXmlTextWriter& writer)
        {
            writer.StartElement(L"a", L"");
            for (int n = 0; n < 10000; ++n)
                Attribute(writer, L"x", L"urn:" + std::to_wstring(n), L"");
            writer.EndElement();
        });
    EXPECT_EQ(0u, strDocument.find(L"<a xmlns:AA=\"urn:0\" AA:x=\"\" xmlns:AB=\"urn:1\" AB:x=\"\""));
    const std::wstring strLast = CXmlWriter::FormatPrefix(9999);
    const std::wstring strEnd = L"xmlns:" + strLast + L"=\"urn:9999\" " + strLast + L":x=\"\"/>";
    EXPECT_TEXT(strEnd, strDocument.substr(strDocument.size() - strEnd.size()));
}

// --- xsi:type and xsi:nil -------------------------------------------------------------------------------------------

TEST(XmlTextWriter, ATypeWithoutNamespaceHasItsBareName)
{
    EXPECT_TEXT(L"<a xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"t\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"a", L"");
                        writer.WriteXsiType(L"", L"t", ItemType_string);
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, ATypeInTheDefaultNamespaceHasItsBareName)
{
    EXPECT_TEXT(L"<a xmlns=\"urn:a\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"t\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.SetDefaultNamespace(L"urn:a");
                        writer.AddNamespaceMapping(L"xsi", s_szXsi);
                        writer.StartElement(L"a", L"urn:a");
                        writer.WriteXsiType(L"urn:a", L"t", ItemType_string);
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, ATypeInAKnownNamespaceHasItsPrefix)
{
    EXPECT_TEXT(L"<a xmlns:p=\"urn:p\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"p:t\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.AddNamespaceMapping(L"p", L"urn:p");
                        writer.StartElement(L"a", L"");
                        writer.WriteXsiType(L"urn:p", L"t", ItemType_string);
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, ATypeInANewNamespaceDeclaresItWithTwoBlanksBehind)
{
    EXPECT_TEXT(L"<a xmlns:AA=\"urn:p\"  xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:t\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"a", L"");
                        writer.WriteXsiType(L"urn:p", L"t", ItemType_string);
                        writer.EndElement();
                    }));
}

TEST(XmlTextWriter, NilIsAnAttributeLikeAnyOther)
{
    EXPECT_TEXT(L"<a xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:nil=\"true\"/>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"a", L"");
                        writer.WriteXsiNil();
                        writer.EndElement();
                    }));
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST(XmlTextWriter, AttributesBehindTextOrAChildAreRefused)
{
    const std::function<void(CXmlTextWriter&)> contents[] = {
        [](CXmlTextWriter& writer) { Text(writer, L"x"); },
        [](CXmlTextWriter& writer) { Leaf(writer, L"b", L""); },
        [](CXmlTextWriter& writer) { writer.CloseStartTag(); },
    };
    for (const auto& fnContent : contents)
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.StartElement(L"a", L"");
        fnContent(writer);
        const std::wstring strBefore = stream.GetText();
        ExpectThrows<CQvException>(s_szTooLate, [&] { Attribute(writer, L"x", L"", L""); });
        ExpectThrows<CQvException>(s_szTooLate, [&] { writer.WriteXsiType(L"urn:t", L"t", ItemType_string); });
        ExpectThrows<CQvException>(s_szTooLate, [&] { writer.WriteXsiNil(); });
        EXPECT_TEXT(strBefore, stream.GetText());
    }
}

TEST(XmlTextWriter, ClosingWithAnElementOpenIsRefusedAfterTheStreamHasBeenClosed)
{
    CNotingStream stream;
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.StartElement(L"a", L"");
    ExpectThrows<CQvException>(L"An Element has not been closed.", [&] { writer.Close(); });
    EXPECT_EQ((Events{L"open", L"close"}), stream.m_events);
}

TEST(XmlTextWriter, AnUnknownLineEndingIsRefusedAndChangesNothing)
{
    CTextStream stream;
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetEOLType(EOLType_CRLF);
    for (const int nType : {-1, 2, 99})
        ExpectThrows<CQvException>(L"Invalid EOL type.", [&] { writer.SetEOLType(static_cast<EOLType>(nType)); });
    EXPECT_EQ(EOLType_CRLF, writer.GetEOLType());
    writer.WriteXmlDeclaration();
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\r\n", stream.GetText());
}

#if defined(QUIVER_DIAGNOSTICS)
TEST(XmlTextWriterDeathTest, ProgrammingErrorsStopAtTheirAssertions)
{
    CTextStream stream;
    CXmlTextWriter writer(&stream);
    writer.Open();
    EXPECT_DEATH(Text(writer, L""), "m_pContext != NULL");
    EXPECT_DEATH(writer.EndElement(), "m_pContext != NULL");
    EXPECT_DEATH(Attribute(writer, L"a", L"", L""), "m_pContext != NULL");
    EXPECT_DEATH(writer.WriteXsiType(L"", L"t", ItemType_string), "m_pContext != NULL");
    EXPECT_DEATH(writer.WriteXsiNil(), "m_pContext != NULL");
    writer.AddNamespaceMapping(L"", L"urn:e");
    writer.StartElement(L"a", L"");
    EXPECT_DEATH(writer.SetFormatted(true), "m_pContext == NULL");
    EXPECT_DEATH(writer.WriteXmlDeclaration(), "m_pContext == NULL");
    EXPECT_DEATH(Attribute(writer, L"a", L"urn:e", L""),
                 "m_pContext->GetNamespaceMapValue\\(strNamespace\\).length\\(\\) != 0");
    EXPECT_DEATH(writer.WriteXsiType(L"urn:e", L"t", ItemType_string),
                 "m_pContext->GetNamespaceMapValue\\(strElementNamespace\\).length\\(\\) != 0");
    EXPECT_DEATH(Attribute(writer, L"a", L"", L"\r"), "Assertion failed");
    EXPECT_DEATH(Text(writer, L"\r"), "Assertion failed");
}
#else
TEST(XmlTextWriter, CarriageReturnsAreDropped)
{
    EXPECT_TEXT(L"<a b=\"x&#xA;y\">x\ny</a>", Write(
                                                  [](CXmlTextWriter& writer)
                                                  {
                                                      writer.StartElement(L"a", L"");
                                                      Attribute(writer, L"b", L"", L"\rx\r\ny\r");
                                                      Text(writer, L"\rx\r\ny\r");
                                                      writer.EndElement();
                                                  }));
}

TEST(XmlTextWriter, CallsForAnOpenElementWhileThereIsNoneAreRefused)
{
    const std::function<void(CXmlTextWriter&)> calls[] = {
        [](CXmlTextWriter& writer) { Text(writer, L"x"); },
        [](CXmlTextWriter& writer) { writer.EndElement(); },
        [](CXmlTextWriter& writer) { Attribute(writer, L"a", L"", L""); },
        [](CXmlTextWriter& writer) { writer.WriteXsiType(L"", L"t", ItemType_string); },
        [](CXmlTextWriter& writer) { writer.WriteXsiNil(); },
    };
    for (const auto& fnCall : calls)
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        ExpectThrows<CQvException>(L"No Element has been started.", [&] { fnCall(writer); });
        EXPECT_TEXT(L"", stream.GetText());
    }
}
#endif

// --- The stream and the records of open elements --------------------------------------------------------------------

TEST(XmlTextWriter, OpenEmptiesTheStream)
{
    CTextStream stream;
    stream.Append(L"old");
    CXmlTextWriter writer(&stream);
    EXPECT_TRUE(writer.GetFormatted());
    EXPECT_EQ(EOLType_LF, writer.GetEOLType());
    writer.Open();
    EXPECT_TEXT(L"", stream.GetText());
}

TEST(XmlTextWriter, TheStreamIsFlushedOnceItHolds4096Units)
{
    CNotingStream stream;
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetFormatted(false);
    writer.StartElement(L"a", L"");
    Text(writer, std::wstring(4092, L'x')); // with "<a>" one unit short
    EXPECT_EQ((Events{L"open"}), stream.m_events);
    Text(writer, L"y");
    EXPECT_EQ((Events{L"open", L"flush 4096"}), stream.m_events);
    Text(writer, std::wstring(10000, L'z'));
    writer.EndElement();
    writer.Close();
    EXPECT_EQ((Events{L"open", L"flush 4096", L"flush 10000", L"close"}), stream.m_events);
    EXPECT_TEXT(L"<a>" + std::wstring(4092, L'x') + L"y" + std::wstring(10000, L'z') + L"</a>",
                stream.m_strCarried + stream.GetText());
}

TEST(XmlTextWriter, EveryOperationThatWritesChecksForAFlush)
{
    const std::wstring strLong(5000, L'x');
    const std::function<void(CXmlTextWriter&)> calls[] = {
        [](CXmlTextWriter& writer) { writer.WriteXmlDeclaration(); },
        [](CXmlTextWriter& writer) { writer.WriteHeadedDirective(L"<!D>"); },
        [](CXmlTextWriter& writer) { writer.WriteComment(L""); },
        [](CXmlTextWriter& writer) { writer.WriteProcessingInstruction(L"<?x?>"); },
        [](CXmlTextWriter& writer) { writer.WriteInlineSchema(L""); },
        [](CXmlTextWriter& writer) { writer.StartElement(L"a", L""); },
    };
    for (const auto& fnCall : calls)
    {
        CNotingStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.WriteRaw(strLong); // the one that does not check
        EXPECT_EQ(1u, stream.m_events.size());
        fnCall(writer);
        EXPECT_EQ(2u, stream.m_events.size());
    }
    const std::function<void(CXmlTextWriter&)> callsInside[] = {
        [](CXmlTextWriter& writer) { Attribute(writer, L"b", L"", L""); },
        [](CXmlTextWriter& writer) { Text(writer, L"x"); },
        [](CXmlTextWriter& writer) { writer.EndElement(); },
    };
    for (const auto& fnCall : callsInside)
    {
        CNotingStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.StartElement(L"a", L"");
        writer.WriteRaw(strLong);
        fnCall(writer);
        EXPECT_EQ(2u, stream.m_events.size());
    }
}

TEST(XmlTextWriter, OneRecordLivesForEachOpenElementAndIsCountedOnce)
{
    const auto before = CountInstances(L"CXmlWriterContext");
    const long nWriters = CountInstances(L"CXmlTextWriter").nLiving;
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        EXPECT_EQ(nWriters + 1, CountInstances(L"CXmlTextWriter").nLiving);
        writer.Open();
        writer.StartElement(L"a", L"");
        for (int n = 0; n < 5; ++n)
            Leaf(writer, L"b", L"");
        writer.StartElement(L"c", L"");
        EXPECT_EQ(before.nLiving + 2, CountInstances(L"CXmlWriterContext").nLiving);
        EXPECT_EQ(before.nTotal + 7, CountInstances(L"CXmlWriterContext").nTotal);
        writer.EndElement();
        EXPECT_EQ(before.nLiving + 1, CountInstances(L"CXmlWriterContext").nLiving);
    }
    // The writer was destroyed with an element open.
    EXPECT_EQ(before.nLiving, CountInstances(L"CXmlWriterContext").nLiving);
    EXPECT_EQ(nWriters, CountInstances(L"CXmlTextWriter").nLiving);
}

TEST(XmlTextWriter, ADocumentHasTheLayoutThatIsSetAheadOfIt)
{
    CTextStream stream;
    CXmlTextWriter writer(&stream);
    const struct
    {
        bool bFormatted;
        EOLType eEOLType;
        const wchar_t* lpctText;
    } documents[] = {{true, EOLType_CRLF, L"<a>\r\n\t<b>\r\n\t\t<c/>\r\n\t</b>\r\n</a>\r\n"},
                     {true, EOLType_LF, L"<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\n"},
                     {false, EOLType_LF, L"<a><b><c/></b></a>"},
                     {false, EOLType_CRLF, L"<a><b><c/></b></a>"},
                     {true, EOLType_CRLF, L"<a>\r\n\t<b>\r\n\t\t<c/>\r\n\t</b>\r\n</a>\r\n"}};
    for (const auto& document : documents)
    {
        writer.Open();
        writer.SetEOLType(document.eEOLType);
        writer.SetFormatted(document.bFormatted);
        writer.StartElement(L"a", L"");
        writer.StartElement(L"b", L"");
        Leaf(writer, L"c", L"");
        writer.EndElement();
        writer.EndElement();
        writer.Close();
        EXPECT_TEXT(document.lpctText, stream.GetText());
    }
}

TEST(XmlTextWriter, AMillionOpenElementsAreGivenUpWithoutRecursion)
{
    const long nBefore = CountInstances(L"CXmlWriterContext").nLiving;
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.SetFormatted(false);
        for (int n = 0; n < 1000000; ++n)
            writer.StartElement(L"a", L"urn:a");
        EXPECT_EQ(nBefore + 1000000, CountInstances(L"CXmlWriterContext").nLiving);
    }
    EXPECT_EQ(nBefore, CountInstances(L"CXmlWriterContext").nLiving);
}

TEST(XmlTextWriter, AFlushThatFailsLeavesAWriterThatCanBeAbandonedOrClosed)
{
    class CFailingStream : public CTextStream
    {
    public:
        void Flush() override { throw CQvException(L"disk full"); }
    };
    const long nBefore = CountInstances(L"CXmlWriterContext").nLiving;
    {
        CFailingStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.StartElement(L"a", L"");
        writer.WriteRaw(std::wstring(5000, L'x'));
        ExpectThrows<CQvException>(L"disk full", [&] { writer.StartElement(L"b", L"urn:b"); });
        // The element that failed has not become the open one.
        ExpectThrows<CQvException>(L"disk full", [&] { writer.StartElement(L"c", L""); });
        ExpectThrows<CQvException>(L"An Element has not been closed.", [&] { writer.Close(); });
    }
    EXPECT_EQ(nBefore, CountInstances(L"CXmlWriterContext").nLiving);
}

TEST(XmlTextWriter, PrefixesOfValuesAreDeclaredWhereTheyAreMissing)
{
    EXPECT_TEXT(L"<r xmlns:p=\"urn:p\" xmlns:q=\"urn:q\"><c xmlns:s=\"urn:s\"/></r>",
                Write(
                    [](CXmlTextWriter& writer)
                    {
                        writer.StartElement(L"r", L"");
                        EXPECT_TEXT(L"p", writer.DeclareForValue(L"p", L"urn:p"));
                        EXPECT_TEXT(L"p", writer.DeclareForValue(L"o", L"urn:p"));
                        EXPECT_TEXT(L"q", writer.DeclareForValue(L"q", L"urn:q"));
                        EXPECT_TEXT(L"", writer.DeclareForValue(L"o", L""));
                        writer.StartElement(L"c", L"");
                        EXPECT_TEXT(L"p", writer.DeclareForValue(L"o", L"urn:p"));
                        EXPECT_TEXT(L"s", writer.DeclareForValue(L"s", L"urn:s"));
                        writer.EndElement();
                        writer.EndElement();
                    }));
    EXPECT_TEXT(L"<r xmlns=\"urn:d\"/>", Write(
                                             [](CXmlTextWriter& writer)
                                             {
                                                 writer.SetDefaultNamespace(L"urn:d");
                                                 writer.StartElement(L"r", L"urn:d");
                                                 EXPECT_TEXT(L"", writer.DeclareForValue(L"p", L"urn:d"));
                                                 writer.EndElement();
                                             }));
}
