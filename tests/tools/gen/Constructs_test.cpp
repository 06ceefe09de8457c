#include "constructs/Roots.h"
#include "tests/support/ClassesInMemory.h"
#include "tests/support/Files.h"
#include "tests/support/Variants.h"

#include "quiver/QvXmlLib.h"

#include <expat.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace QvTest;
using namespace QvXmlLib9;

/// @file
/// The whole chain: schemas of tests/tools/gen/constructs became classes, which read and write the documents of the
/// tables there. The same classes, made in memory, say the same of each.

namespace
{

/// What a document says, whatever its prefixes, the order of its attributes and its layout: read by another parser
/// than the library's.
class CFacts
{
public:
    /// @param bNames values with prefixes are names.
    explicit CFacts(const std::string& strDocument, bool bNames = false)
        : m_bNames(bNames)
        , m_parser(XML_ParserCreateNS(nullptr, ' '), &XML_ParserFree)
    {
        XML_SetUserData(m_parser.get(), this);
        XML_SetNamespaceDeclHandler(m_parser.get(), &CFacts::OnPrefix, &CFacts::OnPrefixEnd);
        XML_SetElementHandler(m_parser.get(), &CFacts::OnStart, &CFacts::OnEnd);
        XML_SetCharacterDataHandler(m_parser.get(), &CFacts::OnText);
        if (XML_Parse(m_parser.get(), strDocument.data(), static_cast<int>(strDocument.size()), 1) != XML_STATUS_OK)
            throw std::runtime_error("not well-formed: " + strDocument);
    }

    std::string Get() const { return m_strFacts; }

private:
    struct SElement
    {
        std::string strStart;
        std::string strText;
        std::string strChildren;
    };

    static CFacts& Self(void* pFacts) { return *static_cast<CFacts*>(pFacts); }
    static void OnPrefix(void* p, const XML_Char* lpcPrefix, const XML_Char* lpcUri)
    {
        Self(p).m_prefixes[lpcPrefix != nullptr ? lpcPrefix : ""].push_back(lpcUri != nullptr ? lpcUri : "");
    }
    static void OnPrefixEnd(void* p, const XML_Char* lpcPrefix)
    {
        Self(p).m_prefixes[lpcPrefix != nullptr ? lpcPrefix : ""].pop_back();
    }
    static void OnStart(void* p, const XML_Char* lpcName, const XML_Char** ppAttributes)
    {
        std::vector<std::string> attributes;
        for (; *ppAttributes != nullptr; ppAttributes += 2)
        {
            const bool bType = *ppAttributes == std::string("http://www.w3.org/2001/XMLSchema-instance type");
            const bool bNil = *ppAttributes == std::string("http://www.w3.org/2001/XMLSchema-instance nil");
            attributes.push_back(
                std::string(" [") + ppAttributes[0] + "=" +
                (bType || (Self(p).m_bNames && !bNil) ? Self(p).ExpandAll(ppAttributes[1]) : ppAttributes[1]) + "]");
        }
        std::sort(attributes.begin(), attributes.end());
        SElement element;
        element.strStart = std::string("<") + lpcName;
        for (const std::string& strAttribute : attributes)
            element.strStart += strAttribute;
        Self(p).m_open.push_back(element);
    }
    static void OnEnd(void* p, const XML_Char*)
    {
        if (Self(p).m_bNames)
            Self(p).m_open.back().strText = Self(p).ExpandAll(Self(p).m_open.back().strText);
        SElement element = std::move(Self(p).m_open.back());
        Self(p).m_open.pop_back();
        const bool bLayout = element.strText.find_first_not_of(" \t\r\n") == std::string::npos;
        if (bLayout && !element.strChildren.empty())
            element.strText.clear();
        std::string& strInto = Self(p).m_open.empty() ? Self(p).m_strFacts : Self(p).m_open.back().strChildren;
        strInto += element.strStart + " \"" + element.strText + "\"" + element.strChildren + ">";
    }
    static void OnText(void* p, const XML_Char* lpcText, int nLength)
    {
        Self(p).m_open.back().strText.append(lpcText, static_cast<std::size_t>(nLength));
    }

    std::string ExpandAll(const std::string& strNames)
    {
        std::istringstream names(strNames);
        std::string strExpanded;
        for (std::string strName; names >> strName;)
            strExpanded += (strExpanded.empty() ? "" : ", ") + (std::isdigit(strName[0]) ? strName : Expand(strName));
        return strExpanded;
    }

    std::string Expand(const std::string& strName)
    {
        const std::size_t nColon = strName.find(':');
        const std::vector<std::string>& uris = m_prefixes[nColon == std::string::npos ? "" : strName.substr(0, nColon)];
        return (uris.empty() ? "" : uris.back()) + " " + strName.substr(nColon == std::string::npos ? 0 : nColon + 1);
    }

    bool m_bNames;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    std::map<std::string, std::vector<std::string>> m_prefixes;
    std::vector<SElement> m_open;
    std::string m_strFacts;
};

using CObject = CSmartPtr<CXmlObjectBase>;

/// The object of the classes that a document is for. @throws CQvException if they refuse it.
/// @param strBytes text or Fast Infoset.
CObject Read(std::string strBytes)
{
    CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
    CObject spObject = constructs::CRoots::CreateRoot(document.GetDocumentElement());
    spObject->FromXmlElement(document.GetDocumentElement(), context);
    return spObject;
}

/// Whether a document can go through Fast Infoset: a root with neither attributes nor content stops at an assertion of
/// its writer, where there are assertions.
bool CanBeInfoset([[maybe_unused]] const std::string& strText)
{
#if defined(QUIVER_DIAGNOSTICS)
    static const std::regex s_bareRoot("(<\\?[^>]*>)?\\s*<[^ />]+( xmlns(:\\w+)?=\"[^\"]*\")*\\s*(/>|></[^>]*>)\\s*");
    return !std::regex_match(strText, s_bareRoot);
#else
    return true;
#endif
}

/// One line of a table.
struct SDocument
{
    std::string strVerdict;
    std::string strDocument;
    std::string strWritten;
};

std::string Replace(std::string strText, const std::string& strWhat, const std::string& strWith)
{
    if (const std::size_t n = strText.find(strWhat); n != std::string::npos)
        strText.replace(n, strWhat.size(), strWith);
    return strText;
}

SDocument Parse(const std::string& strLine, const std::string& strSchema)
{
    const std::string strUri = "\"urn:test:" + strSchema + "\"";
    const std::string strScope =
        "xmlns=" + strUri + " xmlns:t=" + strUri + " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
    SDocument result;
    const std::size_t nBlank = strLine.find(' ');
    result.strVerdict = Replace(strLine.substr(0, nBlank), "!", "");
    const std::string strDocuments = strLine.substr(nBlank + 1);
    const std::size_t nArrow = strDocuments.find(" ==> ");
    result.strDocument = Replace(strDocuments.substr(0, nArrow), "$ns", strScope);
    result.strWritten =
        nArrow == std::string::npos ? result.strDocument : Replace(strDocuments.substr(nArrow + 5), "$ns", strScope);
    return result;
}

void CheckValid(const SDocument& document, bool bNames)
{
    const std::string strExpected = CFacts(document.strWritten, bNames).Get();
    const CObject spObject = Read(document.strDocument);
    const std::string strText = WriteText(*spObject);
    EXPECT_EQ(CFacts(strText, bNames).Get(), strExpected) << "written as text: " << strText;
    EXPECT_EQ(WriteText(*Read(strText)), strText) << "what was written says the same when it is read";
    if (CanBeInfoset(strText))
    {
        const std::string strAgain = WriteText(*Read(WriteInfoset(*spObject)));
        // Where a prefix is declared makes a difference to the text.
        if (bNames)
            EXPECT_EQ(CFacts(strAgain, true).Get(), strExpected) << "by way of Fast Infoset: " << strAgain;
        else
            EXPECT_EQ(strAgain, strText) << "by way of Fast Infoset";
    }
    std::string strAgain = strText;
    spObject->FromXmlStream(reinterpret_cast<unsigned char*>(strAgain.data()),
                            static_cast<unsigned long>(strAgain.size()), CXmlSerializationContext());
    EXPECT_EQ(WriteText(*spObject), strText) << "read again into the same object";
}

void Check(const SDocument& document, bool bNames)
{
    if (document.strVerdict == "no")
    {
        EXPECT_THROW(ADD_FAILURE() << "read, and written as " << WriteText(*Read(document.strDocument)), CQvException);
        return;
    }
    try
    {
        if (document.strVerdict == "ok")
            CheckValid(document, bNames);
        else if (document.strVerdict == "loose")
            Read(document.strDocument);
        else
            ADD_FAILURE() << "the table has no such word: " << document.strVerdict;
    }
    catch (const CQvException& exception)
    {
        ADD_FAILURE() << "refused: " << Chain(exception);
    }
}

std::vector<std::string> FindFiles(const std::string& strExtension)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(QUIVER_CONSTRUCTS))
        if (entry.path().extension() == strExtension)
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string CheckInMemory(const SDocument& document)
{
    static const CClassesInMemory s_classes(
        []
        {
            std::vector<std::string> schemas;
            for (const std::string& strName : FindFiles(".xsd"))
                schemas.push_back((std::filesystem::path(QUIVER_CONSTRUCTS) / (strName + ".xsd")).string());
            return schemas;
        }());
    const std::string strCompiled = Outcome([&] { return Read(document.strDocument); });
    EXPECT_EQ(Outcome([&] { return s_classes.Read(document.strDocument); }), strCompiled);
    if (document.strVerdict != "ok" || !CanBeInfoset(strCompiled))
        return strCompiled;
    const std::string strInfoset = WriteInfoset(*s_classes.Read(document.strDocument));
    EXPECT_EQ(Outcome([&] { return s_classes.Read(strInfoset); }), Outcome([&] { return Read(strInfoset); }))
        << "by Fast Infoset";
    return strCompiled;
}

class Constructs : public testing::TestWithParam<std::string>
{
};

TEST_P(Constructs, AreReadAndWrittenAndRefusedAsTheSchemaSays)
{
    std::istringstream lines(ReadFileBytes(std::filesystem::path(QUIVER_CONSTRUCTS) / (GetParam() + ".docs")));
    int nLine = 0;
    int nDocuments = 0;
    for (std::string strLine; std::getline(lines, strLine);)
    {
        ++nLine;
        if (strLine.empty() || strLine.front() == '#')
            continue;
        ++nDocuments;
        SCOPED_TRACE(GetParam() + ".docs:" + std::to_string(nLine) + ": " + strLine);
        Check(Parse(strLine, GetParam()), GetParam() == "qnames");
    }
    EXPECT_GT(nDocuments, 0);
}

TEST_P(Constructs, AreReadAlikeByClassesInMemory)
{
    std::istringstream lines(ReadFileBytes(std::filesystem::path(QUIVER_CONSTRUCTS) / (GetParam() + ".docs")));
    std::map<std::string, int> outcomes;
    for (std::string strLine; std::getline(lines, strLine);)
    {
        if (strLine.empty() || strLine.front() == '#')
            continue;
        const SDocument document = Parse(strLine, GetParam());
        CheckInMemory(document);
        for (const std::string& strVariant : VaryDocument(document.strDocument))
        {
            SCOPED_TRACE(strVariant);
            ++outcomes[CheckInMemory({"any", strVariant, ""}).substr(0, 8)];
        }
    }
    EXPECT_GT(outcomes["refused:"], 0);
    EXPECT_GT(outcomes.size(), 1U) << "some of them are read";
}

INSTANTIATE_TEST_SUITE_P(Tables, Constructs, testing::ValuesIn(FindFiles(".docs")),
                         [](const auto& table) { return table.param; });

} // namespace
