// Writers keep what they have made of a name. Whatever names follow each other, the document must be that of a writer
// which keeps nothing.

#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

/// A tree of elements at random, told to a writer and written down plainly.
class CRandomTree
{
public:
    explicit CRandomTree(std::uint32_t nSeed, std::size_t nNames)
        : m_random(nSeed)
    {
        for (std::size_t n = 0; n < nNames; ++n)
        {
            std::wstring strName(1 + m_random() % 20, L'a');
            for (wchar_t& c : strName)
                c = static_cast<wchar_t>(L'a' + m_random() % 3);
            m_names.push_back(strName);
        }
    }

    void Write(CXmlWriter& writer, int nDepth = 0)
    {
        // Always from the same memory, so that an address says nothing about the name.
        m_strBuffer = m_names[m_random() % m_names.size()];
        const std::wstring strName = m_strBuffer;
        const bool bForeign = m_random() % 4 == 0;
        const std::wstring strQName = bForeign ? L"f:" + strName : strName;
        writer.StartElement(m_strBuffer, bForeign ? L"urn:foreign" : L"urn:own");
        ++m_nElements;
        m_strPlain += L'<' + strQName;
        if (nDepth == 0)
            m_strPlain += L" xmlns=\"urn:own\" xmlns:f=\"urn:foreign\"";
        m_strPlain += L'>';
        writer.WriteText(L"t", ItemType_string);
        m_strPlain += L't';
        const std::size_t nChildren = nDepth < 3 ? 6 : nDepth < 60 ? m_random() % 3 : 0;
        for (std::size_t n = 0; n < nChildren && m_nElements < 3000; ++n)
            Write(writer, nDepth + 1);
        writer.EndElement();
        m_strPlain += L"</" + strQName + L'>';
    }

    const std::wstring& GetPlain() const { return m_strPlain; }
    std::size_t GetCount() const { return m_nElements; }

private:
    std::mt19937 m_random;
    std::vector<std::wstring> m_names;
    std::wstring m_strBuffer;
    std::wstring m_strPlain;
    std::size_t m_nElements = 0;
};

void BeginDocument(CXmlWriter& writer)
{
    writer.Open();
    writer.SetDefaultNamespace(L"urn:own");
    writer.AddNamespaceMapping(L"f", L"urn:foreign");
}

void AppendTree(std::wstring& strOut, CXmlElement& element)
{
    strOut += L'(' + element.GetNamespaceURI() + L' ' + element.GetLocalName();
    for (CXmlElement* pChild = element.GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        AppendTree(strOut, *pChild);
    strOut += L')';
}

std::wstring TreeOf(const CBinaryData& data)
{
    CXmlDocument document;
    document.LoadXmlStream(data.GetData(), data.GetLength());
    std::wstring strTree;
    AppendTree(strTree, *document.GetDocumentElement());
    return strTree;
}

} // namespace

TEST(XmlWriterNames, TextIsThatOfAWriterThatKeepsNothing)
{
    for (const std::size_t nNames : {1U, 2U, 7U, 50U, 400U})
    {
        CRandomTree tree(static_cast<std::uint32_t>(nNames), nNames);
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(&stream);
        writer.SetFormatted(false);
        BeginDocument(writer);
        tree.Write(writer);
        writer.Close();
        EXPECT_TEXT(tree.GetPlain(), stream.GetString());
    }
}

TEST(XmlWriterNames, FastInfosetHasTheTreeOfTheText)
{
    for (const std::size_t nNames : {1U, 2U, 7U, 50U, 400U})
    {
        CTextStream text(Encoding_UTF8);
        CXmlTextWriter textWriter(&text);
        textWriter.SetFormatted(false);
        BeginDocument(textWriter);
        CRandomTree(static_cast<std::uint32_t>(nNames), nNames).Write(textWriter);
        textWriter.Close();

        const CFastInfosetContext context;
        CBinaryStream stream;
        CFastInfosetWriter writer(&context, &stream);
        BeginDocument(writer);
        writer.WriteHeader(FInfoDecl_None);
        CRandomTree(static_cast<std::uint32_t>(nNames), nNames).Write(writer);
        writer.WriteTerminator();
        writer.Close();
        EXPECT_TEXT(TreeOf(text.GetBinaryData()), TreeOf(stream.GetData()));
    }
}

TEST(XmlWriterNames, AnElementCountsAsAnInstanceWhileItIsOpen)
{
    const auto before = QvTest::CountInstances(L"CXmlWriterContext");
    {
        CTextStream stream(Encoding_UTF8);
        CXmlTextWriter writer(&stream);
        writer.Open();
        for (int n = 0; n < 100; ++n)
            writer.StartElement(L"nested", L"");
        EXPECT_EQ(QvTest::CountInstances(L"CXmlWriterContext").nLiving, before.nLiving + 100);
        for (int n = 0; n < 40; ++n)
            writer.EndElement();
        EXPECT_EQ(QvTest::CountInstances(L"CXmlWriterContext").nLiving, before.nLiving + 60);
        writer.StartElement(L"other", L"");
    }
    const auto after = QvTest::CountInstances(L"CXmlWriterContext");
    EXPECT_EQ(after.nLiving, before.nLiving);
    EXPECT_EQ(after.nTotal, before.nTotal + 101);
}

TEST(XmlWriterNames, ALineEndingThatIsChosenLateHolds)
{
    CTextStream stream(Encoding_UTF8);
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.StartElement(L"a", L"");
    for (const EOLType eEOLType : {EOLType_LF, EOLType_CRLF, EOLType_LF})
    {
        writer.SetEOLType(eEOLType);
        writer.StartElement(L"b", L"");
        writer.WriteText(L"1", ItemType_string);
        writer.EndElement();
    }
    writer.EndElement();
    writer.Close();
    EXPECT_TEXT(L"<a>\n\t<b>1</b>\n\t<b>1</b>\r\n\t<b>1</b>\n</a>\n", stream.GetString());
}
