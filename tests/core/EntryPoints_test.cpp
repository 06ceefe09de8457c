#include "quiver/collections/Attribute.h"
#include "quiver/collections/Element.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/Contexts.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/FlexClass.h"
#include "tests/support/Octets.h"
#include "tests/support/PlatformFiles.h"

#include <fstream>
#include <iterator>
#include <string>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using QvTest::CFlexClass;
using QvTest::CShape;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvTest::Octets;
using QvTest::OctetsOf;

namespace
{

const QvTest::SLastingContext s_lasting;
const CXmlSerializationContext& s_context = s_lasting.context;

/// A class with an attribute and a repeated text.
const CShape& SampleShape()
{
    static CShape s_shape;
    static const bool s_bReady = []
    {
        s_shape.Add(new CAttributeInfoPrimitive(L"id", L"", 1, true, ItemType_string, nullptr,
                                                CWhitespaceUtils::WhitespaceRule_Preserve, CPrimitiveRestrictions(),
                                                L""));
        s_shape.Add(new CElementInfoSeqPrimCol(L"item", L"", 2));
        return true;
    }();
    static_cast<void>(s_bReady);
    return s_shape;
}

CSmartPtr<CFlexClass> EmptySample()
{
    return CSmartPtr<CFlexClass>(new CFlexClass(SampleShape(), L"root",
                                                [](CFlexClass& self)
                                                {
                                                    self[2].SetXmlCollection(new CstringCol(
                                                        L"item", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                                        CWhitespaceUtils::WhitespaceRule_Preserve, nullptr));
                                                }));
}

CstringCol& Items(CFlexClass& object)
{
    return dynamic_cast<CstringCol&>(*object[2].GetXmlCollection());
}

/// An object with text beyond ASCII, and enough of it to be worth compressing.
CSmartPtr<CFlexClass> Sample()
{
    const CSmartPtr<CFlexClass> spRoot = EmptySample();
    spRoot->SetText(1, L"7");
    for (int n = 0; n < 20; ++n)
        Items(*spRoot).Add(L"caf\u00E9 \U0001F600");
    return spRoot;
}

std::wstring SampleText()
{
    std::wstring strText = L"<root id=\"7\">";
    for (int n = 0; n < 20; ++n)
        strText += L"<item>caf\u00E9 \xD83D\xDE00</item>";
    return strText + L"</root>";
}

std::string Bytes(const CBinaryData& data)
{
    return data.GetLength() == 0 ? std::string()
                                 : std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

std::string Utf8(const std::wstring& strText)
{
    return Bytes(EncodeUtf8(strText.c_str()));
}

std::string Utf16(const std::wstring& strText)
{
    return Bytes(CBinaryData(strText.c_str()));
}

std::string ReadFile(const std::wstring& strPath)
{
    std::ifstream file(Utf8(strPath), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::wstring Text(const CXmlObjectBase& object)
{
    return object.ToXml(false, false, EOLType_LF, s_context);
}

} // namespace

// --- Streams ------------------------------------------------------------------------------------

TEST(EntryPoints, StreamsHaveTheBytesOfTheirEncodingAndNoMark)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const auto stream = [&](bool bHeader, XmlEncoding eEncoding)
    {
        return Bytes(spSample->ToXmlStream(bHeader, false, eEncoding, EOLType_LF, s_context, Compression_None));
    };
    EXPECT_EQ(stream(false, Encoding_UTF8), Utf8(SampleText()));
    EXPECT_EQ(stream(true, Encoding_UTF8), Utf8(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + SampleText()));
    EXPECT_EQ(stream(false, Encoding_UTF16), Utf16(SampleText()));
    EXPECT_EQ(stream(true, Encoding_UTF16), Utf16(L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n" + SampleText()));
    EXPECT_EQ(stream(true, Encoding_UTF16_Undeclared), Utf16(L"<?xml version=\"1.0\"?>\n" + SampleText()));
}

TEST(EntryPoints, AStreamWithoutEncodingFailsAfterTheDocumentWasBuilt)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const std::wstring strExpected = L"Unknown Encoding, select UTF-8 (contact support@quiver-xml.example for support)";
    ExpectThrows<CQvException>(
        strExpected,
        [&] { spSample->ToXmlStream(false, false, Encoding_None, EOLType_LF, s_context, Compression_None); });
    EXPECT_TEXT(SampleText(), Text(*spSample));
}

TEST(EntryPoints, CompressedStreamsAreReadBackWithoutBeingAnnounced)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    struct
    {
        CompressionType eType;
        unsigned char byFirst;
    } const cases[] = {{Compression_GZip, 31}, {Compression_ZLib, 120}};
    for (const auto& row : cases)
    {
        SCOPED_TRACE(row.eType);
        const CBinaryData data = spSample->ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, s_context, row.eType);
        EXPECT_EQ(data[0], row.byFirst);
        const CSmartPtr<CFlexClass> spRead = EmptySample();
        spRead->FromXmlStream(data, s_context);
        EXPECT_TEXT(SampleText(), Text(*spRead));
    }
}

TEST(EntryPoints, ADocumentThatDoesNotShrinkCannotBeCompressed)
{
    const CElement element(L"a");
    ExpectThrows<CQvException>(
        L"Failed to compress data. [Error Code: -5]",
        [&] { element.ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_GZip); });
}

// --- Files --------------------------------------------------------------------------------------

TEST(EntryPoints, FilesAreTheSameByBothWaysOfWriting)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const CTempDir dir;
    for (const XmlEncoding eEncoding : {Encoding_UTF8, Encoding_UTF16, Encoding_UTF16_Undeclared})
    {
        for (const bool bAsync : {false, true})
        {
            SCOPED_TRACE(::testing::Message() << "encoding " << eEncoding << (bAsync ? " overlapped" : " plain"));
            const std::wstring strPath = dir.NameOf("out.xml");
            AsyncToXmlFile(bAsync);
            spSample->ToXmlFile(strPath.c_str(), false, false, eEncoding, EOLType_LF, s_context, Compression_None);
            AsyncToXmlFile(false);
            EXPECT_EQ(ReadFile(strPath),
                      eEncoding == Encoding_UTF8 ? Utf8(SampleText()) : "\xFF\xFE" + Utf16(SampleText()));

            const CSmartPtr<CFlexClass> spRead = EmptySample();
            spRead->FromXmlFile(strPath.c_str(), s_context);
            EXPECT_TEXT(SampleText(), Text(*spRead));
        }
    }
}

TEST(EntryPoints, ACompressedFileIsBuiltWholeWhateverTheSwitch)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out.gz");
    for (const bool bAsync : {false, true})
    {
        AsyncToXmlFile(bAsync);
        spSample->ToXmlFile(strPath.c_str(), false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_GZip);
        AsyncToXmlFile(false);
        EXPECT_EQ(ReadFile(strPath).substr(0, 2), "\x1F\x8B");
        const CSmartPtr<CFlexClass> spRead = EmptySample();
        spRead->FromXmlFile(strPath.c_str(), s_context);
        EXPECT_TEXT(SampleText(), Text(*spRead));
    }
}

TEST(EntryPoints, ACompressedUtf16FileHasTheMarkAheadOfTheStream)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out.gz");
    spSample->ToXmlFile(strPath.c_str(), false, false, Encoding_UTF16, EOLType_LF, s_context, Compression_GZip);
    EXPECT_EQ(ReadFile(strPath).substr(0, 4), "\xFF\xFE\x1F\x8B");
}

TEST(EntryPoints, AnUnwritablePathIsReportedWithItsErrorByBothWays)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    for (const bool bAsync : {false, true})
    {
        SCOPED_TRACE(bAsync);
        AsyncToXmlFile(bAsync);
        ExpectThrows<CQvException>(std::wstring(L"Failed to write data to the file [/nonexistent/out.xml] error [0x") +
                                       QvTest::s_lpctFolderMissing + L"]",
                                   [&]
                                   {
                                       spSample->ToXmlFile(L"/nonexistent/out.xml", false, false, Encoding_UTF8,
                                                           EOLType_LF, s_context, Compression_None);
                                   });
        AsyncToXmlFile(false);
    }
}

TEST(EntryPoints, WhatTheOverlappedWayWroteAheadOfAFailureStaysInTheFile)
{
    // A child that fails to be written, long after the first blocks went out.
    const CSmartPtr<CElement> spRoot = new CElement(L"root");
    for (int n = 0; n < 20000; ++n)
        spRoot->GetChildElements()->Add(L"item", L"");
    CXmlSerializationContext context;
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out.xml");

    class CFailing : public CElement
    {
    public:
        CFailing()
            : CInstanceMonitor(L"CFailing")
            , CElement(L"failing")
        {
        }

    protected:
        void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override
        {
            throw CQvException(L"in the middle");
        }
    };
    spRoot->GetChildElements()->Add(new CFailing);

    AsyncToXmlFile(true);
    ExpectThrows<CQvException>(
        L"in the middle", [&]
        { spRoot->ToXmlFile(strPath.c_str(), false, false, Encoding_UTF8, EOLType_LF, context, Compression_None); });
    AsyncToXmlFile(false);
    EXPECT_EQ(ReadFile(strPath).substr(0, 13), "<root><item/>");

    ExpectThrows<CQvException>(L"in the middle",
                               [&]
                               {
                                   spRoot->ToXmlFile(dir.NameOf("plain.xml").c_str(), false, false, Encoding_UTF8,
                                                     EOLType_LF, context, Compression_None);
                               });
    EXPECT_EQ(ReadFile(dir.NameOf("plain.xml")), "");
}

// --- Fast Infoset -------------------------------------------------------------------------------

TEST(EntryPoints, AFastInfosetStreamIsHeaderRootAndTerminator)
{
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    spObject->SetText(1, L"7");
    EXPECT_EQ((Octets{
                  224, 0,   0,   1,   0,                  // identification, no optional component
                  120, 240, 60,  3,   'r', 'o', 'o', 't', // an element with attributes, no namespace, its name
                  120, 1,   'i', 'd', 64,  '7', 240,      // the attribute, and the end of the list
                  255                                     // the end of the root and of the document
              }),
              OctetsOf(spObject->ToFastInfosetStream(FInfoDecl_None, s_context, Compression_None)));
}

TEST(EntryPoints, AFastInfosetStreamIsReadBackWithEveryDeclarationAndCompression)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    struct
    {
        CompressionType eType;
        std::string strFirst;
    } const cases[] = {{Compression_None, std::string("\xE0\x00\x00\x01", 4)},
                       {Compression_GZip, "\x1F\x8B"},
                       {Compression_ZLib, "x"}};
    for (const auto& row : cases)
    {
        for (int nDecl = FInfoDecl_None; nDecl <= FInfoDecl_V11_StandaloneNo; ++nDecl)
        {
            SCOPED_TRACE(::testing::Message() << "compression " << row.eType << " declaration " << nDecl);
            const CBinaryData data = spSample->ToFastInfosetStream(static_cast<FInfoDecl>(nDecl), s_context, row.eType);
            const bool bDeclared = nDecl != FInfoDecl_None && row.eType == Compression_None;
            const std::string strFirst = bDeclared ? "<?xml " : row.strFirst;
            EXPECT_EQ(strFirst, Bytes(data).substr(0, strFirst.size()));
            const CSmartPtr<CFlexClass> spRead = EmptySample();
            spRead->FromXmlStream(data, s_context);
            EXPECT_TEXT(SampleText(), Text(*spRead));
        }
    }
}

TEST(EntryPoints, AFastInfosetFileIsTheStreamWhateverTheSwitch)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out.fi");
    for (const CompressionType eType : {Compression_None, Compression_GZip})
    {
        const std::string strStream = Bytes(spSample->ToFastInfosetStream(FInfoDecl_V10, s_context, eType));
        for (const bool bAsync : {false, true})
        {
            AsyncToXmlFile(bAsync);
            spSample->ToFastInfosetFile(strPath.c_str(), FInfoDecl_V10, s_context, eType);
            AsyncToXmlFile(false);
            EXPECT_EQ(strStream, ReadFile(strPath));
        }
        const CSmartPtr<CFlexClass> spRead = EmptySample();
        spRead->FromXmlFile(strPath.c_str(), s_context);
        EXPECT_TEXT(SampleText(), Text(*spRead));
    }
}

TEST(EntryPoints, AFastInfosetFileIsNoXmlForTheOverlappedWayOfReading)
{
    const CSmartPtr<CFlexClass> spSample = Sample();
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out.fi");
    spSample->ToFastInfosetFile(strPath.c_str(), FInfoDecl_None, s_context, Compression_None);
    AsyncFromXmlFile(true);
    EXPECT_THROW(EmptySample()->FromXmlFile(strPath.c_str(), s_context), CQvException);
    AsyncFromXmlFile(false);
}

TEST(EntryPoints, TextOfAFastInfosetDocumentIsNoXml)
{
    const CBinaryData data = Sample()->ToFastInfosetStream(FInfoDecl_None, s_context, Compression_None);
    EXPECT_THROW(EmptySample()->FromXml(Bytes(data).c_str(), s_context), CQvException);
}

TEST(EntryPoints, AnAgreedVocabularyIsNeededByBothSides)
{
    CXmlSerializationContext context;
    CFastInfosetContext& fiContext = context.GetFIContext();
    fiContext.SetUseGeneratedVocabulary(true);
    for (const wchar_t* lpctName : {L"root", L"item"})
        fiContext.GetVocabulary()->AddElement(L"", L"", lpctName);

    const CBinaryData data = Sample()->ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
    EXPECT_EQ(std::string::npos, Bytes(data).find("item"));
    const CSmartPtr<CFlexClass> spRead = EmptySample();
    spRead->FromXmlStream(data, context);
    EXPECT_TEXT(SampleText(), Text(*spRead));
#if !defined(QUIVER_DIAGNOSTICS)
    ExpectThrows<CQvException>(L"Failed to parse FastInfoset. Invalid table index [1].",
                               [&] { EmptySample()->FromXmlStream(data, s_context); });
#endif
}

TEST(EntryPoints, FastInfosetHasTheNamespacesOfTheContextButNeitherInstructionsNorSchema)
{
    CXmlSerializationContext context;
    context.GetProcessingInstructions().push_back(L"instruction");
    context.SetInLineSchema(L"<schema/>");
    context.GetNamespaceAliases().Add(L"pre", L"urn:alias");
    const std::string strBytes = Bytes(Sample()->ToFastInfosetStream(FInfoDecl_None, context, Compression_None));
    EXPECT_NE(std::string::npos, strBytes.find("urn:alias"));
    EXPECT_EQ(std::string::npos, strBytes.find("instruction"));
    EXPECT_EQ(std::string::npos, strBytes.find("schema"));
}

// --- Reading ------------------------------------------------------------------------------------

TEST(EntryPoints, EmptyInputIsReportedByWhoeverSeesIt)
{
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    CFlexClass& object = *spObject;
    unsigned char byNone = 0;
    ExpectThrows<CQvException>(L"XML String is empty!", [&] { object.FromXml("", s_context); });
    ExpectThrows<CQvException>(L"no element found at line 1", [&] { object.FromXml(L"", s_context); });
    ExpectThrows<CQvException>(L"XML Stream is empty!", [&] { object.FromXmlStream(&byNone, 0, s_context); });
    ExpectThrows<CQvException>(L"XML Stream is empty!", [&] { object.FromXmlStream(CBinaryData(), s_context); });
}

TEST(EntryPoints, MalformedTextIsReportedWithItsLine)
{
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    CFlexClass& object = *spObject;
    ExpectThrows<CQvException>(L"mismatched tag at line 2", [&] { object.FromXml("<a>\n</b>", s_context); });
    ExpectThrows<CQvException>(L"mismatched tag at line 2", [&] { object.FromXml(L"<a>\n</b>", s_context); });
}

TEST(EntryPoints, AMissingFileIsReportedWithItsName)
{
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    ExpectThrows<CQvException>(L"Failed to open the file [/nonexistent.xml] Error [0x00000002]",
                               [&] { spObject->FromXmlFile(L"/nonexistent.xml", s_context); });
}

TEST(EntryPoints, EveryTextFormOfOneDocumentReadsTheSame)
{
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    CFlexClass& object = *spObject;
    const std::wstring strText = SampleText();
    object.FromXml(strText.c_str(), s_context);
    EXPECT_TEXT(strText, Text(object));
    object.FromXml(Utf8(strText).c_str(), s_context);
    EXPECT_TEXT(strText, Text(object));
    object.FromXmlStream(EncodeUtf8(strText.c_str()), s_context);
    EXPECT_TEXT(strText, Text(object));
}

TEST(EntryPoints, AParsedElementIsReadAndStaysTheCallers)
{
    CXmlDocument document(s_context);
    document.LoadXml("<r id='1'><item>a</item></r>");
    const CXmlElement* const pRoot = document.GetDocumentElement();

    const CSmartPtr<CFlexClass> spObject = EmptySample();
    spObject->FromXmlElement(pRoot, s_context);
    EXPECT_TEXT(L"<r id=\"1\"><item>a</item></r>", Text(*spObject));
    EXPECT_TEXT(L"r", document.GetDocumentElement()->GetLocalName());
}

TEST(EntryPoints, OpenContentIsReadThroughItsText)
{
    const CSmartPtr<CElement> spSource = new CElement(L"root");
    spSource->GetAttributes()->Add(L"id", L"7", L"");
    spSource->GetChildElements()->Add(L"item", L"")->SetText(L"a < b");
    const CSmartPtr<CFlexClass> spTarget = EmptySample();
    spTarget->FromXmlElement(static_cast<const CElement*>(spSource), s_context);
    EXPECT_TEXT(L"<root id=\"7\"><item>a &lt; b</item></root>", Text(*spTarget));
}

namespace
{

/// Notes which of the operations that others are built on go through the virtual slot.
class COverriding : public CElement
{
public:
    COverriding()
        : CInstanceMonitor(L"COverriding")
        , CElement(L"a")
    {
    }
    CBinaryData ToXmlStream(bool bIncludeDocHeader, bool bFormat, XmlEncoding eEncoding, EOLType eEOLType,
                            const CXmlSerializationContext& context, CompressionType eCompression) const override
    {
        m_strCalls += "ToXmlStream ";
        return CElement::ToXmlStream(bIncludeDocHeader, bFormat, eEncoding, eEOLType, context, eCompression);
    }
    CBinaryData ToFastInfosetStream(FInfoDecl, const CXmlSerializationContext&, CompressionType) const override
    {
        m_strCalls += "ToFastInfosetStream ";
        return EncodeUtf8(L"document");
    }
    void FromXmlStream(unsigned char* const pData, unsigned long ulLength,
                       const CXmlSerializationContext& context) override
    {
        m_strCalls += "FromXmlStream ";
        CElement::FromXmlStream(pData, ulLength, context);
    }
    using CElement::FromXmlStream;

    mutable std::string m_strCalls;
};

} // namespace

TEST(EntryPoints, XmlFilesAndDataAreTheClassesOwnAffairAndFastInfosetFilesThatOfTheOverride)
{
    const CTempDir dir;
    const std::wstring strPath = dir.NameOf("out");
    COverriding object;
    object.ToXmlFile(strPath.c_str(), false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_None);
    EXPECT_EQ(object.m_strCalls, "");
    EXPECT_EQ(ReadFile(strPath), "<a/>");
    object.FromXmlStream(EncodeUtf8(L"<r><b/></r>"), s_context);
    EXPECT_EQ(object.m_strCalls, "");
    EXPECT_TEXT(L"b", object.GetName());

    object.ToFastInfosetFile(strPath.c_str(), FInfoDecl_None, s_context, Compression_None);
    EXPECT_EQ(object.m_strCalls, "ToFastInfosetStream ");
    EXPECT_EQ(ReadFile(strPath), "document");
}

TEST(EntryPoints, InstancesOfOneConversionAreGoneAfterwardsAlsoWhenItFails)
{
    const auto alive = [](const std::wstring& strClass)
    {
        const std::wstring strState = CInstanceMonitor::DumpState();
        return strState.find(L"--> " + strClass + L" =") != std::wstring::npos;
    };
    const CSmartPtr<CFlexClass> spObject = EmptySample();
    CFlexClass& object = *spObject;
    object.FromXml("<a id='c'><item/></a>", s_context);
    EXPECT_THROW(object.FromXml("<a id='c'><item></a>", s_context), CQvException);
    EXPECT_THROW(object.FromXml("<a id='c'><junk/></a>", s_context), CQvException);
    Text(object);
    for (const wchar_t* lpctClass : {L"CXmlDocument", L"CXmlElement", L"CXmlAttribute", L"CExpatReader",
                                     L"CXmlTextWriter", L"CXmlWriterContext", L"CTextStream", L"CStringBuffer"})
        EXPECT_FALSE(alive(lpctClass)) << QvTest::Show(lpctClass);
    EXPECT_TRUE(alive(L"CFlexClass"));
}
