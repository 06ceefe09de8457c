#include "quiver/fastinfoset/FIRepetition.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/QvZip.h"
#include "tests/support/Expect.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace QvXmlLib9;
using QvTest::BytesOf;
using QvTest::ExpectThrows;
using QvTest::Joined;
using QvTest::Octets;

namespace
{

using FnCalls = std::function<void(CFastInfosetWriter&)>;

CFastInfosetContext ContextWithAddLength(unsigned long ulLength)
{
    CFastInfosetContext context;
    context.SetAttributeMaxAddLength(ulLength);
    context.SetElementMaxAddLength(ulLength);
    return context;
}

/// Writes a root with what `calls` write into it.
CBinaryData Write(const FnCalls& calls, const CFastInfosetContext& context = CFastInfosetContext())
{
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    writer.StartElement(L"r", L"");
    calls(writer);
    writer.EndElement();
    writer.WriteTerminator();
    writer.Close();
    return stream.GetData();
}

void Load(CXmlDocument& document, const CBinaryData& data)
{
    document.LoadXmlStream(data.GetData(), data.GetLength());
}

CBinaryData DataOf(const Octets& octets)
{
    std::string strBytes = BytesOf(octets);
    return CBinaryData(reinterpret_cast<unsigned char*>(strBytes.data()), static_cast<unsigned long>(strBytes.size()),
                       false);
}

/// Writes a document, reads it, and lets `check` look at each child of the root. Returns the length of the document.
std::size_t WriteAndRead(int nChildren, const FnCalls& calls, const std::function<bool(CXmlElement&, int)>& check,
                         const CFastInfosetContext& context = CFastInfosetContext())
{
    const CBinaryData data = Write(calls, context);
    CXmlDocument document;
    Load(document, data);
    int nCount = 0;
    for (CXmlElement* pChild = document.GetDocumentElement()->GetFirstElement(); pChild != nullptr;
         pChild = pChild->GetNextSiblingElement(), ++nCount)
    {
        if (!check(*pChild, nCount))
        {
            ADD_FAILURE() << "child " << nCount << " is not as it was written";
            break;
        }
    }
    EXPECT_EQ(nChildren, nCount);
    return data.GetLength();
}

const wchar_t s_szRefused[] =
    L"Failed to parse FastInfoset. The repeated strings are out of proportion to the document.";

} // namespace

// --- The count ------------------------------------------------------------------------------------------------------

TEST(FIRepetition, AdmitsAFreeAmountAndThenSoMuchForEachOctet)
{
    CFIRepetition repetition;
    std::uint64_t nOctets = 0;
    const auto getOctets = [&nOctets]
    {
        return nOctets;
    };
    EXPECT_TRUE(repetition.Add(CFIRepetition::s_nFreeUnits, getOctets));
    nOctets = CFIRepetition::s_nFreeUnits / 32;
    EXPECT_FALSE(repetition.Add(32, getOctets));
    ++nOctets;
    EXPECT_TRUE(repetition.Add(32, getOctets));
    EXPECT_FALSE(repetition.Add(32, getOctets));
}

TEST(FIRepetition, ShortNamesDoNotCount)
{
    CFIRepetition repetition;
    const auto getOctets = []
    {
        return 0u;
    };
    EXPECT_TRUE(repetition.Add(CFIRepetition::s_nFreeUnits, getOctets));
    EXPECT_TRUE(repetition.AddName(256, getOctets));
    EXPECT_FALSE(repetition.AddName(257, getOctets));
}

// --- What is written can be read ------------------------------------------------------------------------------------

TEST(FIRepetition, ChildrenUnderALongNamespaceAreReadBack)
{
    for (const auto& [nLength, nChildren] : {std::pair(259, 100000), std::pair(259, 300000), std::pair(3000, 20000)})
    {
        SCOPED_TRACE(nLength);
        const std::wstring strNamespace(static_cast<std::size_t>(nLength), L'n');
        const auto calls = [&, nChildren = nChildren](CFastInfosetWriter& writer)
        {
            for (int n = 0; n < nChildren; ++n)
            {
                writer.StartElement(n % 2 == 0 ? L"even" : L"odd", strNamespace);
                writer.EndElement();
            }
        };
        const auto check = [&](CXmlElement& child, int n)
        {
            return child.GetNamespaceURI() == strNamespace && child.GetLocalName() == (n % 2 == 0 ? L"even" : L"odd");
        };
        const std::size_t nOctets = WriteAndRead(nChildren, calls, check);
        // Names are written out again where the proportion asks for it, and that is seldom.
        EXPECT_LT(nOctets, static_cast<std::size_t>(nChildren * 4 + nChildren * nLength / 16));
    }
}

TEST(FIRepetition, NewNamesUnderALongNamespaceAreReadBack)
{
    const std::wstring strNamespace(3000, L'n');
    const auto calls = [&](CFastInfosetWriter& writer)
    {
        for (int n = 0; n < 20000; ++n)
        {
            writer.StartElement(L"e" + std::to_wstring(n), strNamespace);
            writer.WriteAttribute(L"a" + std::to_wstring(n), strNamespace, L"", ItemType_string);
            writer.EndElement();
        }
    };
    const auto check = [&](CXmlElement& child, int n)
    {
        return child.GetNamespaceURI() == strNamespace && child.GetLocalName() == L"e" + std::to_wstring(n) &&
               child.GetAttributes()[0]->GetNamespaceURI() == strNamespace &&
               child.GetAttributes()[0]->GetLocalName() == L"a" + std::to_wstring(n);
    };
    WriteAndRead(20000, calls, check);
}

TEST(FIRepetition, LongNamesOfAttributesAreReadBack)
{
    const std::wstring strName(3000, L'a');
    const auto calls = [&](CFastInfosetWriter& writer)
    {
        for (int n = 0; n < 20000; ++n)
        {
            writer.StartElement(L"e", L"");
            writer.WriteAttribute(strName + (n % 2 == 0 ? L"e" : L"o"), L"", std::to_wstring(n), ItemType_string);
            writer.EndElement();
        }
    };
    const auto check = [&](CXmlElement& child, int n)
    {
        return child.GetLocalName() == L"e" &&
               child.GetAttribute(strName + (n % 2 == 0 ? L"e" : L"o"), L"") == std::to_wstring(n);
    };
    WriteAndRead(20000, calls, check);
}

TEST(FIRepetition, EqualTextsAreReadBack)
{
    for (const int nTexts : {9000, 40000})
    {
        SCOPED_TRACE(nTexts);
        const std::wstring strText(1992, L't');
        const auto calls = [&](CFastInfosetWriter& writer)
        {
            for (int n = 0; n < nTexts; ++n)
            {
                writer.StartElement(L"e", L"");
                writer.WriteAttribute(L"a", L"", n % 2 == 0 ? strText : L"", ItemType_string);
                writer.WriteText(strText, ItemType_string);
                writer.EndElement();
            }
        };
        const auto check = [&](CXmlElement& child, int n)
        {
            return child.GetText() == strText && child.GetAttribute(L"a", L"") == (n % 2 == 0 ? strText : L"");
        };
        const std::size_t nOctets = WriteAndRead(nTexts, calls, check, ContextWithAddLength(4096));
        EXPECT_LT(nOctets, static_cast<std::size_t>(nTexts) * 1992 / 16);
    }
}

TEST(FIRepetition, TextsThatAreNoAsciiAreCountedInUnits)
{
    // Three octets of UTF-8 for each unit, and four for each pair.
    const std::wstring strText = std::wstring(1000, L'\x20AC') + L"\xD83D\xDE00";
    const auto calls = [&](CFastInfosetWriter& writer)
    {
        for (int n = 0; n < 40000; ++n)
        {
            writer.StartElement(L"e", L"");
            writer.WriteText(strText, ItemType_string);
            writer.EndElement();
        }
    };
    WriteAndRead(
        40000, calls, [&](CXmlElement& child, int) { return child.GetText() == strText; }, ContextWithAddLength(4096));
}

TEST(FIRepetition, TextsThatAreJoinedInOneElementAreReadBack)
{
    const std::wstring strText(1992, L't');
    const auto calls = [&](CFastInfosetWriter& writer)
    {
        for (int n = 0; n < 10000; ++n)
        {
            // The text behind the child is the child's second one to a reader.
            writer.StartElement(L"e", L"");
            writer.StartElement(L"f", L"");
            writer.WriteText(strText, ItemType_string);
            writer.EndElement();
            writer.WriteText(strText, ItemType_string);
            writer.EndElement();
        }
    };
    WriteAndRead(
        10000, calls, [&](CXmlElement& child, int) { return child.GetFirstElement()->GetText() == strText + strText; },
        ContextWithAddLength(4096));
}

TEST(FIRepetition, NumbersThatAreReadInALongerFormAreReadBack)
{
    CFastInfosetContext context = ContextWithAddLength(4096);
    context.SetEncoding(ItemType_r8, {2, 8});
    constexpr int nNumbers = 1000000;
    constexpr int nTexts = 10000;
    const std::wstring strText(4000, L't');
    const auto calls = [&](CFastInfosetWriter& writer)
    {
        for (int n = 0; n < nNumbers; ++n)
            writer.WriteText(L"1e15", ItemType_r8);
        for (int n = 0; n < nTexts; ++n)
        {
            writer.StartElement(L"e", L"");
            writer.WriteText(strText, ItemType_string);
            writer.EndElement();
        }
    };
    CXmlDocument document;
    Load(document, Write(calls, context));
    EXPECT_EQ(std::size_t{16} * nNumbers, document.GetDocumentElement()->GetText().size());
    EXPECT_TEXT(strText, document.GetDocumentElement()->GetFirstElement()->GetText());
}

// --- What is not in proportion --------------------------------------------------------------------------------------

TEST(FIRepetition, ValuesThatRepeatAreOneTextInTheTree)
{
    const std::wstring strText(2000, L't');
    const CBinaryData data = Write(
        [&](CFastInfosetWriter& writer)
        {
            for (int n = 0; n < 1000; ++n)
            {
                writer.StartElement(L"e", L"");
                writer.WriteAttribute(L"a", L"", strText, ItemType_string);
                writer.WriteText(strText, ItemType_string);
                writer.EndElement();
            }
        },
        ContextWithAddLength(4096));
    CXmlDocument document;
    Load(document, data);
    std::set<const std::wstring*> texts;
    for (CXmlElement* pChild = document.GetDocumentElement()->GetFirstElement(); pChild != nullptr;
         pChild = pChild->GetNextSiblingElement())
    {
        texts.insert(&pChild->GetText());
        texts.insert(&pChild->GetAttributes()[0]->GetValue());
    }
    // Where it stands, and where it is referred to; for both kinds of value.
    EXPECT_EQ(4u, texts.size());
}

TEST(FIRepetition, ATextThatIsSharedStaysAsItIsWhenMoreIsAddedToOneElement)
{
    // Two children with a text and one with a carriage return in it, then the same by reference with more behind it.
    const Octets body{60,  0,   'r', 60,  0,   'e', 146, 1,   'a', '\r', 'b', 'c', 240, 1,
                      160, 240, 1,   160, 160, 240, 1,   160, 144, 'd',  240, 1,   160, 255};
    CXmlDocument document;
    Load(document, DataOf(Joined({{0xE0, 0, 0, 1, 0}, body})));
    std::vector<std::wstring> texts;
    for (CXmlElement* pChild = document.GetDocumentElement()->GetFirstElement(); pChild != nullptr;
         pChild = pChild->GetNextSiblingElement())
        texts.push_back(pChild->GetText());
    EXPECT_EQ((std::vector<std::wstring>{L"abc", L"abc", L"abcabc", L"abcd", L"abc"}), texts);
}

TEST(FIRepetition, AFewKilobytesCannotStandForMuchText)
{
    // A hundred units, entered, and a million references to them: in one element, in one each, and as attributes.
    Octets text{146, 97};
    text.insert(text.end(), 100, 'x');
    Octets elements;
    Octets attributes;
    for (int n = 0; n < 500000; ++n)
    {
        elements.insert(elements.end(), {0, 160, 240});
        attributes.insert(attributes.end(), {0, 128});
    }
    Octets value{0x40 | 8, 91};
    value.insert(value.end(), 100, 'x');
    const Octets documents[] = {
        Joined({{60, 0, 'r'}, text, Octets(1000000, 160), {255}}),
        Joined({{60, 0, 'r'}, text, elements, {255}}),
        Joined({{124, 0, 'r', 120, 0, 'x'}, value, attributes, {255}}),
    };
    for (const Octets& body : documents)
    {
        CBinaryData data = DataOf(Joined({{0xE0, 0, 0, 1, 0}, body}));
        CQvZip::Compress(data, Compression_GZip);
        EXPECT_LT(data.GetLength(), 8192u);
        CXmlDocument document;
        ExpectThrows<CQvException>(s_szRefused, [&] { Load(document, data); });
    }
}
