// One object with every kind of value at its extremes goes through every form of a document and comes back the same.

#include "quiver/core/XmlObjectBase.h"
#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"

#include "tests/support/EveryKind.h"
#include "tests/support/Files.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;

/// More than one piece of an overlapped file.
const std::size_t s_nPadding = 150000;

const CEveryKindShape& Shape()
{
    static const CEveryKindShape s_shape;
    return s_shape;
}

class EveryForm : public ::testing::Test
{
protected:
    EveryForm()
        : m_object(Shape())
    {
        FillEveryKind(m_object, s_nPadding);
    }

    /// Expects what `read` puts into a fresh object to be the object that was written.
    static void ExpectTheSame(const std::function<void(CFlexClass&)>& read)
    {
        CFlexClass again(Shape());
        try
        {
            read(again);
        }
        catch (const CQvException& ex)
        {
            FAIL() << Show(ex.GetFullMessage());
        }
        CheckEveryKind(again, Shape(), s_nPadding);
    }

    CFlexClass m_object;
    const CXmlSerializationContext m_context;
};

struct SLook
{
    bool bHeader;
    bool bFormat;
    EOLType eEol;
};

std::vector<SLook> Looks()
{
    std::vector<SLook> looks;
    for (const bool bHeader : {false, true})
        for (const bool bFormat : {false, true})
            for (const EOLType eEol : {EOLType_LF, EOLType_CRLF})
                looks.push_back({bHeader, bFormat, eEol});
    return looks;
}

const XmlEncoding s_encodings[] = {Encoding_UTF8, Encoding_UTF16, Encoding_UTF16_Undeclared};
const CompressionType s_compressions[] = {Compression_None, Compression_GZip, Compression_ZLib};

/// A context for Fast Infoset, and what it is for.
struct SInfosetOptions
{
    const char* lpcName;
    CXmlSerializationContext context;
};

std::vector<SInfosetOptions> InfosetOptions()
{
    std::vector<SInfosetOptions> all(6);
    all[0].lpcName = "defaults";
    all[1].lpcName = "suggested encodings";
    SuggestWhatFits(all[1].context.GetFIContext());
    all[2].lpcName = "nothing entered into the tables";
    all[2].context.GetFIContext().SetAttributeMaxAddLength(0);
    all[2].context.GetFIContext().SetElementMaxAddLength(0);
    all[3].lpcName = "everything entered into the tables";
    all[3].context.GetFIContext().SetAttributeMaxAddLength(1000000);
    all[3].context.GetFIContext().SetElementMaxAddLength(1000000);
    all[4].lpcName = "a vocabulary agreed on";
    AgreeOnVocabulary(all[4].context.GetFIContext(), Shape());
    all[5].lpcName = "a vocabulary agreed on, suggested encodings";
    all[5].context = all[4].context;
    SuggestWhatFits(all[5].context.GetFIContext());
    return all;
}

/// Overlapped input and output, for as long as it lives.
class COverlapped
{
public:
    COverlapped(bool bWrite, bool bRead)
    {
        AsyncToXmlFile(bWrite);
        AsyncFromXmlFile(bRead);
    }
    ~COverlapped()
    {
        AsyncToXmlFile(false);
        AsyncFromXmlFile(false);
    }
    COverlapped(const COverlapped&) = delete;
    COverlapped& operator=(const COverlapped&) = delete;
};

TEST_F(EveryForm, TheFixtureHasEveryKind)
{
    for (int nType = ItemType_hexBinary; nType <= ItemType_integer; ++nType)
    {
        int nExtremes = 0;
        for (const SExtreme& extreme : Extremes())
            nExtremes += extreme.value.GetTypeAsEnum() == nType ? 1 : 0;
        EXPECT_GE(nExtremes, nType == ItemType_char ? 0 : 2) << nType; // no record takes single characters
    }
    CheckEveryKind(m_object, Shape(), s_nPadding);
}

TEST_F(EveryForm, TextComesBack)
{
    for (const SLook& look : Looks())
    {
        SCOPED_TRACE(::testing::Message() << look.bHeader << look.bFormat << look.eEol);
        const std::wstring strXml = m_object.ToXml(look.bHeader, look.bFormat, look.eEol, m_context);
        ExpectTheSame([&](CFlexClass& again) { again.FromXml(strXml.c_str(), m_context); });
    }
}

TEST_F(EveryForm, OctetsOfEveryEncodingComeBack)
{
    for (const SLook& look : Looks())
        for (const XmlEncoding eEncoding : s_encodings)
            for (const CompressionType eCompression : s_compressions)
            {
                SCOPED_TRACE(::testing::Message() << look.bHeader << look.bFormat << look.eEol << ", encoding "
                                                  << eEncoding << ", compression " << eCompression);
                const CBinaryData data =
                    m_object.ToXmlStream(look.bHeader, look.bFormat, eEncoding, look.eEol, m_context, eCompression);
                ExpectTheSame([&](CFlexClass& again) { again.FromXmlStream(data, m_context); });
            }
}

TEST_F(EveryForm, FilesComeBackWholeAndOverlapped)
{
    const CTempDir dir;
    const std::wstring strFile = dir.NameOf("a.xml");
    for (const bool bWriteOverlapped : {false, true})
        for (const bool bReadOverlapped : {false, true})
            for (const bool bFormat : {false, true})
                for (const XmlEncoding eEncoding : s_encodings)
                {
                    SCOPED_TRACE(::testing::Message() << "overlapped " << bWriteOverlapped << bReadOverlapped
                                                      << ", formatted " << bFormat << ", encoding " << eEncoding);
                    const COverlapped overlapped(bWriteOverlapped, bReadOverlapped);
                    m_object.ToXmlFile(strFile.c_str(), true, bFormat, eEncoding, EOLType_CRLF, m_context,
                                       Compression_None);
                    ExpectTheSame([&](CFlexClass& again) { again.FromXmlFile(strFile.c_str(), m_context); });
                }
}

TEST_F(EveryForm, CompressedFilesComeBack)
{
    const CTempDir dir;
    const std::wstring strFile = dir.NameOf("a.xml.gz");
    m_object.ToXmlFile(strFile.c_str(), true, true, Encoding_UTF8, EOLType_LF, m_context, Compression_GZip);
    ExpectTheSame([&](CFlexClass& again) { again.FromXmlFile(strFile.c_str(), m_context); });
    for (const XmlEncoding eEncoding : {Encoding_UTF16, Encoding_UTF16_Undeclared})
    {
        SCOPED_TRACE(eEncoding);
        m_object.ToXmlFile(strFile.c_str(), true, true, eEncoding, EOLType_LF, m_context, Compression_GZip);
        // The mark of the encoding is ahead of the compressed octets.
        std::string strOctets = ReadFileBytes(dir.PathOf("a.xml.gz"));
        ASSERT_EQ("\xFF\xFE", strOctets.substr(0, 2));
        const CBinaryData data = BinaryOf(strOctets.substr(2));
        ExpectTheSame([&](CFlexClass& again) { again.FromXmlStream(data, m_context); });
    }
    const CBinaryData data = m_object.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, m_context, Compression_ZLib);
    WriteFileBytes(dir.PathOf("a.xml.zz"), data.GetView());
    ExpectTheSame([&](CFlexClass& again) { again.FromXmlFile(dir.NameOf("a.xml.zz").c_str(), m_context); });
}

TEST_F(EveryForm, FastInfosetComesBackUnderEachOption)
{
    for (const SInfosetOptions& options : InfosetOptions())
        for (const CompressionType eCompression : s_compressions)
        {
            SCOPED_TRACE(::testing::Message() << options.lpcName << ", compression " << eCompression);
            const CBinaryData data = m_object.ToFastInfosetStream(FInfoDecl_None, options.context, eCompression);
            ExpectTheSame([&](CFlexClass& again) { again.FromXmlStream(data, options.context); });
        }
}

TEST_F(EveryForm, FastInfosetComesBackUnderEachDeclaration)
{
    for (int nDecl = FInfoDecl_None; nDecl <= FInfoDecl_V11_StandaloneNo; ++nDecl)
    {
        SCOPED_TRACE(nDecl);
        const CBinaryData data =
            m_object.ToFastInfosetStream(static_cast<FInfoDecl>(nDecl), m_context, Compression_None);
        ExpectTheSame([&](CFlexClass& again) { again.FromXmlStream(data, m_context); });
    }
}

TEST_F(EveryForm, FastInfosetFilesComeBack)
{
    const CTempDir dir;
    const std::wstring strFile = dir.NameOf("a.finf");
    for (const SInfosetOptions& options : InfosetOptions())
        for (const CompressionType eCompression : {Compression_None, Compression_GZip})
        {
            SCOPED_TRACE(::testing::Message() << options.lpcName << ", compression " << eCompression);
            m_object.ToFastInfosetFile(strFile.c_str(), FInfoDecl_V10, options.context, eCompression);
            ExpectTheSame([&](CFlexClass& again) { again.FromXmlFile(strFile.c_str(), options.context); });
        }
}

} // namespace
} // namespace QvTest
