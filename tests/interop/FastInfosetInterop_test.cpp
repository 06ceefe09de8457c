// Documents go to another implementation of Fast Infoset and come from it; both sides list what they read, and the
// listings are compared. The other implementation runs in one Java process for all tests.

#include "tests/support/Files.h"
#include "tests/support/Process.h"
#include "tests/support/ToolRun.h"

#include "Gpx.h"
#include "Invoice.h"
#include "Order.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Exceptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <vector>

using namespace QvTest;
using namespace QvXmlLib9;

namespace
{

constexpr std::string_view s_svJava = QUIVER_JAVA;
constexpr std::string_view s_svClassPath = QUIVER_INTEROP_CLASSPATH;

// --- Listings -------------------------------------------------------------------------------------------------------

std::string Escape(const std::wstring& strUnits)
{
    std::string strOut;
    for (const wchar_t c : strUnits)
    {
        if (c >= 0x20 && c < 0x7F && c != L'\\')
        {
            strOut += static_cast<char>(c);
            continue;
        }
        char szHex[8];
        std::snprintf(szHex, sizeof(szHex), "\\%04X", static_cast<unsigned>(c) & 0xFFFF);
        strOut += szHex;
    }
    return strOut;
}

std::string Name(const std::wstring& strNamespace, const std::wstring& strLocalName)
{
    return (strNamespace.empty() ? "" : "{" + Escape(strNamespace) + "}") + Escape(strLocalName);
}

void ListStart(std::string& strOut, CXmlElement& element)
{
    strOut += '<' + Name(element.GetNamespaceURI(), element.GetLocalName()) + '\n';
    std::map<std::string, std::string> sorted;
    for (const CXmlAttribute* const pAttribute : element.GetAttributes())
        sorted[Name(pAttribute->GetNamespaceURI(), pAttribute->GetLocalName())] = Escape(pAttribute->GetValue());
    for (const auto& [strName, strValue] : sorted)
        strOut += " @" + strName + '=' + strValue + '\n';
    const std::wstring& strText = element.GetText();
    const bool bBlank = strText.find_first_not_of(L" \t\n") == std::wstring::npos;
    if (!strText.empty() && !(bBlank && element.GetFirstElement() != nullptr))
        strOut += " =" + Escape(strText) + '\n';
}

/// One line for each start, attribute, text and end; attributes in the order of their names.
std::string List(CXmlElement* pElement)
{
    std::string strOut;
    std::vector<CXmlElement*> open;
    while (pElement != nullptr)
    {
        ListStart(strOut, *pElement);
        open.push_back(pElement);
        pElement = pElement->GetFirstElement();
        while (pElement == nullptr && !open.empty())
        {
            strOut += ">\n";
            pElement = open.back()->GetNextSiblingElement();
            open.pop_back();
        }
    }
    return strOut;
}

std::string List(std::string strDocument)
{
    try
    {
        CXmlDocument document;
        document.LoadXmlStream(reinterpret_cast<unsigned char*>(strDocument.data()),
                               static_cast<unsigned long>(strDocument.size()));
        return List(document.GetDocumentElement());
    }
    catch (const CQvException& ex)
    {
        // If the other side has failed, the document is its message.
        return Escape(ex.GetFullMessage()) + ": " + strDocument;
    }
}

std::string ToString(const CBinaryData& data)
{
    return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

// --- Documents ------------------------------------------------------------------------------------------------------

/// A short text of its own for every number.
std::string Code(std::size_t n)
{
    std::string strCode;
    for (int nDigit = 0; nDigit < 4; ++nDigit, n /= 36)
        strCode += "abcdefghijklmnopqrstuvwxyz0123456789"[n % 36];
    return strCode;
}

/// `nCount` items, and then those once more that stand where the form of an index changes.
template <class FnItem>
std::string Repeat(std::size_t nCount, const std::vector<std::size_t>& indexes, FnItem&& fnItem)
{
    std::string strXml = "<root>";
    for (std::size_t n = 1; n <= nCount; ++n)
        strXml += fnItem(n);
    for (const std::size_t n : indexes)
        strXml += fnItem(n);
    return strXml + "</root>";
}

std::string ManyNames()
{
    return Repeat(8400, {1, 30, 31, 32, 33, 62, 63, 64, 65, 66, 2079, 2080, 2081, 2082, 8255, 8256, 8257, 8400},
                  [](std::size_t n) { return "<e" + Code(n) + " a" + Code(n) + "=''/>"; });
}

std::string ManyTexts()
{
    return Repeat(263300, {1, 15, 16, 17, 18, 1039, 1040, 1041, 1042, 263183, 263184, 263185, 263186, 263300},
                  [](std::size_t n) { return "<t>" + Code(n) + "</t>"; });
}

std::string ManyValues()
{
    return Repeat(8400, {1, 63, 64, 65, 66, 8255, 8256, 8257, 8258, 8400},
                  [](std::size_t n) { return "<t v='" + Code(n) + "'/>"; });
}

std::string ManyNamespaces()
{
    return Repeat(8400, {1, 62, 63, 64, 65, 8255, 8256, 8257, 8400},
                  [](std::size_t n) { return "<p:t xmlns:p='urn:" + Code(n) + "' p:a='1'/>"; });
}

/// Names and values of every length at which the form of a length changes.
std::string Lengths()
{
    std::string strXml = "<root>";
    for (const std::size_t nLength : {1u,   2u,   3u,   4u,   8u,   9u,   10u,  63u,  64u,  65u,   66u,
                                      258u, 259u, 260u, 264u, 265u, 266u, 320u, 321u, 322u, 1000u, 70000u})
    {
        const std::string strText(nLength, 'x');
        const std::string strName = "n" + std::string(nLength < 1000 ? nLength - 1 : 999, 'y');
        strXml += "<" + strName + " " + strName + "='" + strText + "'>" + strText + "</" + strName + ">";
    }
    return strXml + "</root>";
}

std::string Deep()
{
    std::string strXml;
    constexpr int nDepth = 2000;
    for (int n = 0; n < nDepth; ++n)
        strXml += n % 2 == 0 ? "<a>" : "<b c='1'>";
    for (int n = nDepth; n-- > 0;)
        strXml += n % 2 == 0 ? "</a>" : "</b>";
    return strXml;
}

const std::map<std::string, std::string>& Documents()
{
    static const std::map<std::string, std::string> s_documents = {
        {"smallest", "<a/>"},
        {"attributes", "<a x='1' y='' z='a longer value'><b x='1'/><b x='a longer value'/></a>"},
        {"ends", "<a><b><c/></b><b><c x='1'/></b><b><c x='1'>t</c></b><b><c><d><e/></d></c></b></a>"},
        {"namespaces", "<p:a xmlns:p='urn:1' xmlns='urn:2' p:x='1' x='2'><b p:x='1'><p:b xmlns:p='urn:3' p:x='1'/>"
                       "<c xmlns=''><q:d xmlns:q='urn:1' q:x='3'/></c></b><p:b/></p:a>"},
        {"default_namespace", "<a xmlns='urn:1'><b x='1'><c/></b><b/></a>"},
        {"xml_namespace", "<a xml:lang='en'><b xml:lang='de' xml:space='preserve'> t </b></a>"},
        {"types", "<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:q='urn:q'><b xsi:type='q:T'/>"
                  "<b xsi:nil='true'/></a>"},
        {"non_ascii", "<\xC3\xA9t\xC3\xA9 \xC3\xBC='\xE2\x82\xAC'>\xE4\xB8\xAD\xE6\x96\x87<\xCE\xB1/>"
                      "</\xC3\xA9t\xC3\xA9>"},
        {"astral", "<a x='\xF0\x9F\x98\x80'><b>\xF0\x9F\x98\x80</b><b>\xF0\x9F\x98\x80</b><c>"
                   "\xF4\x8F\xBF\xBD long enough \xF0\x9F\x98\x80</c></a>"},
        {"white_space", "<a b='1&#10;2&#9;3'><c> </c><c>\n</c><d>1\n\t2</d></a>"},
        {"repeated", "<a><b>hi</b><b>hi</b><c d='hi'>hi</c><c d='hi'>a longer text</c><b>a longer text</b></a>"},
        {"items_that_are_not_kept", "<?xml version='1.0'?><!--c--><?p q?><a><!--c--><?p q?><b>1<!--c-->2<?p q?>3</b>"
                                    "<![CDATA[t]]></a><!--c-->"},
        {"values", "<a b='true' c='2024-05-06T07:08:09Z' d='-1234.5678'><e>1234567</e><e>00FFEE11</e><e>-32768</e>"
                   "<e>12345678901234567</e><e>123456789</e><e>12:13:14</e><e>1.5</e><e>1.50</e></a>"},
        {"lengths", Lengths()},
        {"deep", Deep()},
        {"many_names", ManyNames()},
        {"many_texts", ManyTexts()},
        {"many_values", ManyValues()},
        {"many_namespaces", ManyNamespaces()},
    };
    return s_documents;
}

// --- The other side -------------------------------------------------------------------------------------------------

/// Documents written here that the other side shall list, by name.
std::map<std::string, std::string> WrittenHere();

/// What one Java process made of all documents.
struct SOtherSide
{
    CTempDir directory;
    int nStatus = 0;

    std::string Read(const std::string& strFile) const { return ReadFileBytes(directory.PathOf(strFile)); }

    SOtherSide()
    {
        std::string strArguments = "-cp \"" + std::string(s_svClassPath) + "\" Interop\n";
        const auto fnAdd = [&](const std::string& strCommand, const std::string& strIn, const std::string& strOut)
        {
            strArguments += strCommand + ' ' + QuoteForShell(directory.PathOf(strIn)) + ' ' +
                            QuoteForShell(directory.PathOf(strOut)) + '\n';
        };
        for (const auto& [strName, strXml] : Documents())
        {
            WriteFileBytes(directory.PathOf(strName + ".xml"), strXml);
            fnAdd("encode", strName + ".xml", strName + ".other.fi");
        }
        for (const auto& [strName, strDocument] : WrittenHere())
        {
            WriteFileBytes(directory.PathOf(strName + ".fi"), strDocument);
            fnAdd("list", strName + ".fi", strName + ".txt");
        }
        fnAdd("values", "none", "all_algorithms.other.fi");
        WriteFileBytes(directory.PathOf("arguments"), strArguments);
        nStatus = RunByShell("'" + std::string(s_svJava) + "' @" + QuoteForShell(directory.PathOf("arguments")));
    }
};

class FastInfosetInterop : public testing::Test
{
protected:
    void SetUp() override
    {
        if (s_svJava.empty())
        {
            if (std::getenv("QUIVER_REQUIRE_JAVA") != nullptr)
                FAIL() << "Java or libfastinfoset-java was not found when this was built";
            // A user may test without Java; continuous integration sets the variable, and never comes here.
            GTEST_SKIP() << "needs Java and libfastinfoset-java";
        }
        if (s_pOther == nullptr)
            s_pOther = std::make_unique<SOtherSide>();
        ASSERT_EQ(s_pOther->nStatus, 0);
    }

    static void TearDownTestSuite() { s_pOther.reset(); }

    static const SOtherSide& Other() { return *s_pOther; }

private:
    static std::unique_ptr<SOtherSide> s_pOther;
};

std::unique_ptr<SOtherSide> FastInfosetInterop::s_pOther;

// --- Documents of objects and of single values ----------------------------------------------------------------------

template <class TObject>
void WriteObject(std::map<std::string, std::string>& written, const std::string& strName, const char* lpcFile,
                 const wchar_t* lpctNamespace)
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(lpctNamespace);
    // The other side refuses names whose namespaces have not been declared ahead of them.
    context.GetNamespaceAliases().Add(L"xsi", L"http://www.w3.org/2001/XMLSchema-instance");
    context.GetNamespaceAliases().Add(L"sensor", L"urn:example:sensor");
    TObject object;
    const std::string strXml = ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/") + lpcFile);
    object.FromXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(strXml.data())),
                         static_cast<unsigned long>(strXml.size()), context);
    written[strName + "_plain"] = ToString(object.ToFastInfosetStream(FInfoDecl_None, context, Compression_None));
    CFastInfosetContext& fiContext = context.GetFIContext();
    fiContext.SetSuggestedValues();
    // The suggested alphabet has neither the letters of a duration nor the point of a fraction of a second.
    fiContext.SetEncoding(ItemType_duration, {0, 0});
    fiContext.SetEncoding(ItemType_datetime, {0, 0});
    written[strName + "_suggested"] = ToString(object.ToFastInfosetStream(FInfoDecl_V10, context, Compression_None));
}

/// Stands for text only (X.891, 10.11).
constexpr std::uint32_t s_dwCdata = 10;

struct SValue
{
    const wchar_t* lpctText;
    std::uint32_t dwType;
    std::uint32_t dwIndex;
    /// What the other side makes of it, if that is another text.
    const char* lpcOther;
};

constexpr SValue s_values[] = {
    {L"00FF1A", 2, 1, nullptr},
    {L"AAEC/w==", 2, 2, nullptr},
    {L"-32768", 2, 3, nullptr},
    {L"2147483647", 2, 4, nullptr},
    {L"-9223372036854775808", 2, 5, nullptr},
    {L"true", 2, 6, nullptr},
    {L"false", 2, 6, nullptr},
    {L"1.5", 2, 7, nullptr},
    {L"-0.25", 2, 8, nullptr},
    {L"0123456789ABCDEF0000000000000001", 2, 9, "01234567-89ab-cdef-0000-000000000001"},
    {L"any <text>", 2, s_dwCdata, nullptr},
    // Whether the letter of the numeric alphabet is small or capital the two sides see differently.
    {L"-1.5+3 7", 1, 1, nullptr},
    {L"2024-05-06T07:08:09Z", 1, 2, nullptr},
    {L"12:30", 1, 2, nullptr},
};

/// Each value under its encoding, as an attribute and as text.
std::string WriteValues()
{
    CFastInfosetContext context;
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    writer.StartElement(L"values", L"");
    for (const SValue& value : s_values)
    {
        context.SetEncoding(ItemType_string, {value.dwType, value.dwIndex});
        writer.StartElement(L"v", L"");
        if (value.dwIndex != s_dwCdata)
            writer.WriteAttribute(L"a", L"", value.lpctText, ItemType_string);
        writer.WriteText(value.lpctText, ItemType_string);
        writer.EndElement();
    }
    writer.EndElement();
    writer.WriteTerminator();
    writer.Close();
    return ToString(stream.GetData());
}

std::map<std::string, std::string> WrittenHere()
{
    std::map<std::string, std::string> written;
    for (const auto& [strName, strXml] : Documents())
    {
        written[strName + "_plain"] = PipeThrough("encode", strXml).strOut;
        written[strName + "_suggested"] =
            PipeThrough("encode", strXml, {"--suggested-values", "--declaration=1.0-yes"}).strOut;
        written[strName + "_long"] =
            PipeThrough("encode", strXml, {"--attribute-max-length=99999", "--element-max-length=99999"}).strOut;
        written[strName + "_none"] =
            PipeThrough("encode", strXml, {"--attribute-max-length=0", "--element-max-length=0"}).strOut;
    }
    WriteObject<order::CPurchaseOrder>(written, "order", "purchase_order/order.xml", L"urn:example:order");
    WriteObject<invoice::CInvoice>(written, "invoice", "invoice/invoice.xml", L"urn:example:invoice");
    WriteObject<gpx::CGpx>(written, "gpx", "gpx_track/track.gpx", L"http://www.topografix.com/GPX/1/1");
    written["all_algorithms"] = WriteValues();
    return written;
}

} // namespace

TEST_F(FastInfosetInterop, ReadsWhatTheOtherSideWrites)
{
    for (const auto& [strName, strXml] : Documents())
        EXPECT_TRUE(List(Other().Read(strName + ".other.fi")) == List(strXml)) << strName;
}

TEST_F(FastInfosetInterop, WritesWhatTheOtherSideReads)
{
    for (const auto& [strName, strXml] : Documents())
    {
        const std::string strExpected = List(strXml);
        for (const char* const lpcForm : {"_plain", "_suggested", "_long", "_none"})
            EXPECT_TRUE(Other().Read(strName + lpcForm + ".txt") == strExpected) << strName << lpcForm;
    }
}

TEST_F(FastInfosetInterop, WritesObjectsThatTheOtherSideReads)
{
    for (const char* const lpcName : {"order", "invoice", "gpx"})
    {
        for (const char* const lpcForm : {"_plain", "_suggested"})
        {
            const std::string strStem = std::string(lpcName) + lpcForm;
            EXPECT_EQ(Other().Read(strStem + ".txt"), List(Other().Read(strStem + ".fi")));
        }
    }
}

TEST_F(FastInfosetInterop, ReadsEveryBuiltInAlgorithm)
{
    EXPECT_EQ(List(Other().Read("all_algorithms.other.fi")),
              "<values\n @base64=AAEC/w==\n @boolean=true\n @double=-0.25\n @float=1.5\n @int=-100000\n"
              " @long=-9223372036854775808\n @short=-1 2\n @uuid=0123456789ABCDEF0000000000000001\n"
              "<bytes\n =AQID\n>\n<shorts\n =1 -32768 32767\n>\n<ints\n =1 -2147483648 2147483647\n>\n"
              "<longs\n =1 -9223372036854775808 9223372036854775807\n>\n<floats\n =1.5 -2.25\n>\n"
              "<doubles\n =1.5 -2.25\n>\n<booleans\n =false\n>\n<numeric\n =-1.5+3 7\n>\n"
              "<date\n =2024-05-06T07:08:09Z\n>\n>\n");
}

TEST_F(FastInfosetInterop, WritesEveryBuiltInAlgorithm)
{
    std::string strExpected = "<values\n";
    for (const SValue& value : s_values)
    {
        const std::string strText = value.lpcOther != nullptr ? value.lpcOther : Escape(value.lpctText);
        strExpected += "<v\n" + (value.dwIndex != s_dwCdata ? " @a=" + strText + "\n" : "") + " =" + strText + "\n>\n";
    }
    EXPECT_EQ(Other().Read("all_algorithms.txt"), strExpected + ">\n");
}
