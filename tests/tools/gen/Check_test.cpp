#include "tests/support/ClassesInMemory.h"
#include "tests/support/Files.h"
#include "tools/quiver-gen/Generator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <vector>

using namespace QvTest;
using namespace QvXmlLib9;
using testing::HasSubstr;
using testing::StartsWith;

/// @file
/// `quiver-gen --check`, and the classes in memory that it reads documents with. That they read as compiled ones do is
/// for Constructs_test to say.

namespace
{

std::string Schema(const std::string& strComponents)
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns='urn:t' targetNamespace='urn:t'>" +
           strComponents + "</xs:schema>";
}

const std::string s_strOrder = Schema("<xs:element name='order'><xs:complexType><xs:sequence>"
                                      "<xs:element name='count' type='xs:integer'/>"
                                      "<xs:element name='note' type='xs:string' minOccurs='0'/>"
                                      "</xs:sequence></xs:complexType></xs:element>"
                                      "<xs:element name='other' type='xs:date'/>");

std::string Order(const std::string& strCount)
{
    return "<t:order xmlns:t='urn:t'><count>" + strCount + "</count></t:order>";
}

const std::string s_strRight = Order("7");
const std::string s_strWrong = Order("seven");
constexpr const char* s_lpcChain = ": error: Failed to process the element [order]\n"
                                   "    Invalid Value for count [seven]\n"
                                   "    The value is no xs:integer\n";

/// Runs of the program in a folder, whose name is left out of all texts.
class Check : public testing::Test
{
protected:
    Check() { Write("s.xsd", s_strOrder); }

    void Write(const std::string& strName, const std::string& strBytes) const
    {
        WriteFileBytes(m_dir.PathOf(strName), strBytes);
    }

    /// @param arguments behind --check; those that begin with a point are names in the folder without it.
    int Run(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> all = {"--check"};
        for (const std::string& strArgument : arguments)
            all.push_back(strArgument[0] == '.' ? m_dir.PathOf(strArgument.substr(1)).string() : strArgument);
        std::ostringstream out;
        std::ostringstream err;
        const auto start = std::chrono::steady_clock::now();
        const int nStatus = quiver_gen::RunGenerator(all, out, err);
        m_fSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        EXPECT_EQ(out.str(), "");
        m_strErr = err.str();
        const std::string strFolder = m_dir.PathOf("").u8string();
        for (std::size_t n = m_strErr.find(strFolder); n != std::string::npos; n = m_strErr.find(strFolder, n))
            m_strErr.erase(n, strFolder.size());
        return nStatus;
    }

    /// What is said of a document, empty if it is right.
    std::string CheckDocument(const std::string& strDocument)
    {
        Write("d.xml", strDocument);
        const int nStatus = Run({".s.xsd", ".d.xml"});
        EXPECT_EQ(nStatus, m_strErr.empty() ? 0 : 1) << m_strErr;
        return m_strErr;
    }

    CTempDir m_dir;
    std::string m_strErr;
    double m_fSeconds = 0;
};

// --- Documents ------------------------------------------------------------------------------------------------------

TEST_F(Check, SaysNothingOfARightDocument)
{
    EXPECT_EQ(CheckDocument(s_strRight), "");
}

TEST_F(Check, TellsWhyADocumentIsRefused)
{
    EXPECT_EQ(CheckDocument(s_strWrong), std::string("d.xml") + s_lpcChain);
    EXPECT_EQ(CheckDocument("<order><count>7</count></order>"),
              "d.xml: error: There is no class for the element [order] of the namespace []\n");
    EXPECT_THAT(CheckDocument("<t:order xmlns:t='urn:t'>"), StartsWith("d.xml: error: "));
    EXPECT_THAT(CheckDocument(""), StartsWith("d.xml: error: "));
}

TEST_F(Check, TakesTheTypeOfASubstituteWhoseClassIsThatOfItsBase)
{
    Write("s.xsd",
          Schema("<xs:complexType name='Sum'><xs:simpleContent><xs:extension base='xs:int'/></xs:simpleContent>"
                 "</xs:complexType><xs:complexType name='Price'><xs:simpleContent><xs:extension base='Sum'>"
                 "<xs:attribute name='unit'/></xs:extension></xs:simpleContent></xs:complexType>"
                 "<xs:complexType name='Fee'><xs:simpleContent><xs:extension base='Price'/></xs:simpleContent>"
                 "</xs:complexType><xs:element name='sum' type='Sum'/>"
                 "<xs:element name='fee' type='Fee' substitutionGroup='sum'/>"
                 "<xs:element name='market'><xs:complexType><xs:sequence><xs:element ref='sum'/></xs:sequence>"
                 "</xs:complexType></xs:element>"));
    const auto Market = [](const std::string& strType)
    {
        return "<t:market xmlns:t='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><t:fee xsi:type='t:" +
               strType + "' unit='x'>1</t:fee></t:market>";
    };
    EXPECT_EQ(CheckDocument(Market("Fee")), "");
    EXPECT_THAT(CheckDocument(Market("market")), HasSubstr("error"));
}

TEST_F(Check, ReadsEachOfManyDocuments)
{
    Write("a.xml", s_strRight);
    Write("b.xml", s_strWrong);
    EXPECT_EQ(Run({".s.xsd", ".b.xml", ".a.xml", ".b.xml"}), 1);
    EXPECT_EQ(m_strErr, std::string("b.xml") + s_lpcChain + "b.xml" + s_lpcChain);
    EXPECT_EQ(Run({".s.xsd", ".a.xml", ".a.xml"}), 0);
    EXPECT_EQ(m_strErr, "");
}

TEST_F(Check, TakesFastInfoset)
{
    CXmlSerializationContext context;
    CElement element(L"order", L"urn:t", L"##any", L"");
    const CSmartPtr<CElement> spCount = new CElement(L"count", L"", L"##any", L"");
    element.GetChildElements()->Add(spCount);
    for (const wchar_t* const lpctCount : {L"7", L"seven"})
    {
        spCount->SetText(lpctCount);
        const CBinaryData data = element.ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
        EXPECT_EQ(CheckDocument(Bytes(data)), *lpctCount == L'7' ? "" : std::string("d.xml") + s_lpcChain);
    }
}

TEST_F(Check, GoesOnBehindAFileThatCannotBeRead)
{
    Write("a.xml", s_strWrong);
    EXPECT_EQ(Run({".s.xsd", ".none.xml", ".a.xml"}), 2);
    EXPECT_THAT(m_strErr, StartsWith("quiver-gen: "));
    EXPECT_THAT(m_strErr, HasSubstr("none.xml"));
    EXPECT_THAT(m_strErr, HasSubstr(std::string("\na.xml") + s_lpcChain));
    EXPECT_EQ(Run({".s.xsd", "."}), 2) << "a folder";
}

// --- Schemas --------------------------------------------------------------------------------------------------------

TEST_F(Check, LooksAtTheSchemaAlone)
{
    EXPECT_EQ(Run({".s.xsd"}), 0);
    EXPECT_EQ(m_strErr, "");
    Write("wrong.xsd", Schema("<xs:element name='e' type='Missing'/>"));
    Write("a.xml", s_strRight);
    EXPECT_EQ(Run({".wrong.xsd"}), 1);
    EXPECT_THAT(m_strErr, StartsWith("wrong.xsd:1:"));
    const std::string strMessage = m_strErr;
    EXPECT_EQ(Run({".wrong.xsd", ".a.xml"}), 1);
    EXPECT_EQ(m_strErr, strMessage);
    EXPECT_EQ(Run({}), 2);
}

TEST_F(Check, TellsSchemasFromDocuments)
{
    Write("more.xsd", Schema("<xs:element name='more' type='xs:boolean'/>"));
    Write("schema.xml", s_strOrder);
    Write("a.xml", s_strRight);
    Write("b.xml", "<t:more xmlns:t='urn:t'>1</t:more>");
    Write("document.xsd", s_strRight);
    EXPECT_EQ(Run({".s.xsd", ".more.xsd", ".a.xml", ".b.xml"}), 0) << m_strErr;
    EXPECT_EQ(Run({".s.xsd", ".a.xml", ".more.xsd", ".b.xml"}), 0) << m_strErr;
    EXPECT_EQ(Run({".schema.xml", ".a.xml"}), 0) << "the first is a schema: " << m_strErr;
    EXPECT_EQ(Run({".s.xsd", "--", ".document.xsd"}), 0) << m_strErr;
    EXPECT_EQ(Run({".s.xsd", ".document.xsd"}), 1) << "a document is no schema";
    EXPECT_THAT(m_strErr, HasSubstr("document.xsd:1:1: error: "));
}

TEST_F(Check, FollowsTheOptionsOfTheClasses)
{
    Write("a.xml", Order("12345678901234567890"));
    EXPECT_EQ(Run({".s.xsd", ".a.xml"}), 0) << m_strErr;
    EXPECT_EQ(Run({"--integer", "i8", ".s.xsd", ".a.xml"}), 1);
    EXPECT_THAT(m_strErr, HasSubstr("\n    The value is no xs:integer of 64 bits\n"));
    Write("b.xml", s_strRight);
    EXPECT_EQ(Run({".s.xsd", ".b.xml", "--root", "other"}), 1);
    EXPECT_THAT(m_strErr, HasSubstr("There is no class for the element [order]"));
    Write("mixed.xsd", Schema("<xs:element name='e'><xs:complexType mixed='true'><xs:sequence>"
                              "<xs:element name='b'/></xs:sequence></xs:complexType></xs:element>"));
    EXPECT_EQ(Run({".mixed.xsd", "--werror"}), 3);
    EXPECT_EQ(Run({".mixed.xsd"}), 0);
    EXPECT_THAT(m_strErr, HasSubstr("mixed.xsd:1:")) << "warnings are said as ever";
}

// --- Classes --------------------------------------------------------------------------------------------------------

struct SBuiltinValue
{
    const char* lpcType;
    const char* lpcRight;
    const char* lpcWrong; ///< null where any text is right
};

constexpr SBuiltinValue s_builtins[] = {
    {"anySimpleType", " a  b ", nullptr},
    {"anyURI", "http://x/ y", nullptr},
    {"base64Binary", "AAAA", "A"},
    {"boolean", "true", "yes"},
    {"byte", "-128", "128"},
    {"date", "2020-02-29", "2021-02-29"},
    {"dateTime", "2020-02-29T12:00:00Z", "2020-02-29"},
    {"decimal", "1.50", "1e1"},
    {"double", "INF", "+INF"},
    {"duration", "P1Y", "1Y"},
    {"ENTITIES", "a b", "1"},
    {"ENTITY", "a", "a b"},
    {"float", "1e1", "x"},
    {"gDay", "---31", "31"},
    {"gMonth", "--12", "--13"},
    {"gMonthDay", "--02-29", "--02-30"},
    {"gYear", "2020Z", "20"},
    {"gYearMonth", "2020-12", "2020-13"},
    {"hexBinary", "0aFF", "0"},
    {"ID", "a", "1"},
    {"IDREF", "a", "1"},
    {"IDREFS", "a b", ""},
    {"int", "2147483647", "2147483648"},
    {"integer", "99999999999999999999", "1.0"},
    {"language", "en-US", "en_US"},
    {"long", "-9223372036854775808", "9223372036854775808"},
    {"NCName", "a.b", "a:b"},
    {"NMTOKEN", "1:a", "a b"},
    {"NMTOKENS", "1 a", ""},
    {"Name", "a:b", "1"},
    {"negativeInteger", "-1", "0"},
    {"nonNegativeInteger", "0", "-1"},
    {"nonPositiveInteger", "0", "1"},
    {"normalizedString", " a ", nullptr},
    {"positiveInteger", "1", "0"},
    {"QName", "xs", "a b"},
    {"short", "-32768", "32768"},
    {"string", "\t", nullptr},
    {"time", "12:00:00", "25:00:00"},
    {"token", " a ", nullptr},
    {"unsignedByte", "255", "-1"},
    {"unsignedInt", "4294967295", "4294967296"},
    {"unsignedLong", "18446744073709551615", "18446744073709551616"},
    {"unsignedShort", "65535", "65536"},
};

TEST_F(Check, KnowsEveryBuiltInType)
{
    std::string strComponents;
    for (const SBuiltinValue& value : s_builtins)
        strComponents += std::string("<xs:element name='") + value.lpcType + "' type='xs:" + value.lpcType + "'/>";
    Write("s.xsd", Schema(strComponents));
    std::vector<std::string> right = {".s.xsd"};
    for (const SBuiltinValue& value : s_builtins)
    {
        const std::string strType = value.lpcType;
        const auto Document = [&](const char* lpcValue)
        {
            return "<t:" + strType + " xmlns:t='urn:t'>" + lpcValue + "</t:" + strType + ">";
        };
        Write(strType + ".xml", Document(value.lpcRight));
        right.push_back("." + strType + ".xml");
        if (value.lpcWrong != nullptr)
        {
            EXPECT_THAT(CheckDocument(Document(value.lpcWrong)), HasSubstr("Invalid Value for " + strType));
        }
    }
    EXPECT_EQ(Run(right), 0) << m_strErr;
    right.insert(right.begin(), {"--integer", "i8"});
    EXPECT_EQ(Run(right), 1);
    EXPECT_THAT(m_strErr, StartsWith("integer.xml: error: ")) << "the only one that is too large for 64 bits";
}

/// Classes of a schema.
CClassesInMemory Load(const std::string& strSchema)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("s.xsd"), strSchema);
    return CClassesInMemory({dir.PathOf("s.xsd").u8string()});
}

std::string Rewrite(const CClassesInMemory& classes, const std::string& strDocument)
{
    return Outcome([&] { return classes.Read(strDocument); });
}

TEST(CheckModel, IsOneOfMany)
{
    const auto LoadRoot = [](const std::string& strName)
    {
        return Load(Schema("<xs:element name='" + strName + "' type='xs:decimal'/>"));
    };
    const auto Document = [](const std::string& strName)
    {
        return "<t:" + strName + " xmlns:t='urn:t'>1.0</t:" + strName + ">";
    };
    const CClassesInMemory first = LoadRoot("a");
    for (int n = 0; n < 3; ++n)
    {
        const CClassesInMemory second = LoadRoot("b");
        EXPECT_THAT(Rewrite(second, Document("b")), HasSubstr(":b "));
        EXPECT_THAT(Rewrite(second, Document("a")), StartsWith("refused: There is no class"));
        EXPECT_THAT(Rewrite(first, Document("a")), HasSubstr(">1<"));
    }
}

TEST(CheckModel, ReadsAnObjectAgain)
{
    const CClassesInMemory classes =
        Load(Schema("<xs:element name='e'><xs:complexType><xs:choice><xs:element name='a' type='xs:int'/>"
                    "<xs:element name='b' type='xs:int' maxOccurs='2'/></xs:choice>"
                    "<xs:attribute name='x'/></xs:complexType></xs:element>"));
    const CXmlSerializationContext context;
    const CSmartPtr<CXmlObjectBase> spObject = classes.Read("<t:e xmlns:t='urn:t' x='1'><b>1</b><b>2</b></t:e>");
    spObject->FromXml(L"<t:e xmlns:t='urn:t'><a>3</a></t:e>", context);
    const std::string strWritten = WriteText(*spObject);
    EXPECT_THAT(strWritten, HasSubstr("<a>3</a>"));
    EXPECT_THAT(strWritten, testing::Not(HasSubstr("<b>")));
    EXPECT_THAT(strWritten, testing::Not(HasSubstr("x=")));
    EXPECT_THROW(spObject->FromXml(L"<t:e xmlns:t='urn:t'><a>3</a><b>1</b></t:e>", context), CQvException);
}

// --- Hostile documents ----------------------------------------------------------------------------------------------

std::string Times(int nCount, const std::string& strText)
{
    std::string strAll;
    for (int n = 0; n < nCount; ++n)
        strAll += strText;
    return strAll;
}

const std::string s_strTree = Schema(
    "<xs:complexType name='Node'><xs:choice minOccurs='0' maxOccurs='unbounded'>"
    "<xs:element name='n' type='Node'/><xs:sequence><xs:element name='a' type='xs:string'/><xs:element name='b' "
    "type='xs:string'/></xs:sequence>"
    "<xs:sequence><xs:element name='a' type='xs:string'/><xs:element name='c' type='xs:int'/></xs:sequence></xs:choice>"
    "<xs:attribute name='x' type='xs:int'/></xs:complexType><xs:element name='n' type='Node'/>"
    "<xs:complexType name='More'><xs:complexContent><xs:extension base='Node'><xs:attribute name='y'/>"
    "</xs:extension></xs:complexContent></xs:complexType>"
    "<xs:element name='open'><xs:complexType><xs:sequence><xs:any processContents='skip' maxOccurs='unbounded'/>"
    "</xs:sequence><xs:anyAttribute processContents='skip'/></xs:complexType></xs:element>");

std::string Node(const std::string& strContent)
{
    return "<t:n xmlns:t='urn:t' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>" + strContent + "</t:n>";
}

struct SHostile
{
    const char* lpcName;
    std::string strDocument;
    bool bRight;
};

void PrintTo(const SHostile& hostile, std::ostream* pOut)
{
    *pOut << hostile.lpcName;
}

std::vector<SHostile> GetHostile()
{
    const std::string strBomb = "<!DOCTYPE n [<!ENTITY a '" + std::string(1000, 'x') + "'><!ENTITY b '" +
                                Times(1000, "&a;") + "'><!ENTITY c '" + Times(1000, "&b;") + "'>]>";
    return {
        {"Nothing", "", false},
        {"Octets", std::string("\x00\xFF\xFE\x01\xE0\x00\x00\x01", 8), false},
        {"NoInfoset", std::string("\xE0\x00\x00\x01\x00\x78", 6), false},
        {"Gzip", std::string("\x1F\x8B\x08\x00\x00\x00\x00\x00\x00\x03\xFF\xFF", 12), false},
        {"EntityBomb", strBomb + Node("&c;"), false},
        {"Deep", Node(Times(100000, "<n>") + Times(100000, "</n>")), false},
        {"DeepAndOpen", "<t:open xmlns:t='urn:t'>" + Times(100000, "<z>") + Times(100000, "</z>") + "</t:open>", true},
        {"Many", Node(Times(20000, "<n/><a/><b/>")), true},
        {"ManyAndWrongAtTheEnd", Node(Times(20000, "<n/><a/><c>1</c>") + "<a/>"), false},
        {"TypeOfAll", Node(Times(1000, "<n xsi:type='t:More' y=''/>")), true},
        {"TypeOfNobody", Node("<n xsi:type='t:Nobody'/>"), false},
        {"LongType", Node("<n xsi:type='" + std::string(100000, 'x') + "'/>"), false},
        {"LongValue", Node("<n x='" + std::string(1000000, '9') + "'/>"), false},
        {"LongName", Node("<" + std::string(100000, 'n') + "/>"), false},
        {"Nil", Node("<n xsi:nil='true'/>"), false},
    };
}

class HostileDocuments : public Check, public testing::WithParamInterface<SHostile>
{
};

TEST_P(HostileDocuments, AreRefusedOrReadAndSoon)
{
    Write("s.xsd", s_strTree);
    const std::string strMessage = CheckDocument(GetParam().strDocument);
    EXPECT_EQ(strMessage.empty(), GetParam().bRight) << strMessage.substr(0, 500);
    EXPECT_LT(m_fSeconds, 20) << "with a sanitizer; otherwise far below";
}

INSTANTIATE_TEST_SUITE_P(Documents, HostileDocuments, testing::ValuesIn(GetHostile()),
                         [](const auto& hostile) { return hostile.param.lpcName; });

} // namespace
