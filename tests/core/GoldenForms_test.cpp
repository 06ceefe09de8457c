// The same content in several forms, kept as files: each is read, and written as each other. Where the octets of a form
// are determined they have to be those of its file, so that no change of them goes unseen.
//
// With QUIVER_WRITE_GOLDEN in the environment the test writes the files anew, and fails, so that nobody leaves it on.

#include "quiver/core/XmlObjectBase.h"
#include "quiver/core/XmlSerializationContext.h"

#include "tests/support/EveryKind.h"
#include "tests/support/Files.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;

const std::size_t s_nPadding = 10;

const CEveryKindShape& Shape()
{
    static const CEveryKindShape s_shape;
    return s_shape;
}

CXmlSerializationContext Plain()
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(s_lpctEveryKindNamespace);
    return context;
}

CXmlSerializationContext Suggested()
{
    CXmlSerializationContext context = Plain();
    SuggestWhatFits(context.GetFIContext());
    return context;
}

CXmlSerializationContext WithVocabulary()
{
    CXmlSerializationContext context = Plain();
    AgreeOnVocabulary(context.GetFIContext(), Shape());
    return context;
}

template <XmlEncoding eEncoding, bool bFormat, EOLType eEol, CompressionType eCompression>
CBinaryData AsXml(const CFlexClass& object, const CXmlSerializationContext& context)
{
    return object.ToXmlStream(true, bFormat, eEncoding, eEol, context, eCompression);
}

template <FInfoDecl eDecl, CompressionType eCompression>
CBinaryData AsInfoset(const CFlexClass& object, const CXmlSerializationContext& context)
{
    return object.ToFastInfosetStream(eDecl, context, eCompression);
}

/// A form, and the file that holds the content in it.
struct SForm
{
    const char* lpcFile;
    CXmlSerializationContext (*pfnContext)();
    CBinaryData (*pfnWrite)(const CFlexClass& object, const CXmlSerializationContext& context);
    /// Not so for compressed documents, whose octets are up to the version of the compressor.
    bool bOctetsAreDetermined;
};

const SForm s_forms[] = {
    {"utf8.xml", Plain, AsXml<Encoding_UTF8, false, EOLType_LF, Compression_None>, true},
    {"utf8_formatted.xml", Plain, AsXml<Encoding_UTF8, true, EOLType_CRLF, Compression_None>, true},
    {"utf16.xml", Plain, AsXml<Encoding_UTF16, true, EOLType_LF, Compression_None>, true},
    {"utf16_undeclared.xml", Plain, AsXml<Encoding_UTF16_Undeclared, false, EOLType_LF, Compression_None>, true},
    {"utf8.xml.gz", Plain, AsXml<Encoding_UTF8, false, EOLType_LF, Compression_GZip>, false},
    {"utf8.xml.zz", Plain, AsXml<Encoding_UTF8, false, EOLType_LF, Compression_ZLib>, false},
    {"plain.finf", Plain, AsInfoset<FInfoDecl_None, Compression_None>, true},
    {"declared.finf", Plain, AsInfoset<FInfoDecl_V10_StandaloneYes, Compression_None>, true},
    {"suggested.finf", Suggested, AsInfoset<FInfoDecl_None, Compression_None>, true},
    {"vocabulary.finf", WithVocabulary, AsInfoset<FInfoDecl_None, Compression_None>, true},
    {"vocabulary.finf.gz", WithVocabulary, AsInfoset<FInfoDecl_None, Compression_GZip>, false},
};

std::string PathOf(const SForm& form)
{
    return std::string(QUIVER_SOURCE_DIR "/tests/golden/") + form.lpcFile;
}

/// Reads a document and checks all of it; says what went wrong, if anything did.
void ReadAndCheck(CFlexClass& object, const SForm& form, const CBinaryData& document)
{
    try
    {
        object.FromXmlStream(document, form.pfnContext());
    }
    catch (const CQvException& ex)
    {
        FAIL() << form.lpcFile << ": " << Show(ex.GetFullMessage());
    }
    CheckEveryKind(object, Shape(), s_nPadding);
}

std::size_t FirstDifference(const std::string& strLeft, const std::string& strRight)
{
    std::size_t n = 0;
    while (n < strLeft.size() && n < strRight.size() && strLeft[n] == strRight[n])
        ++n;
    return n;
}

void WriteFiles()
{
    CFlexClass object(Shape());
    FillEveryKind(object, s_nPadding);
    for (const SForm& form : s_forms)
        WriteFileBytes(PathOf(form), form.pfnWrite(object, form.pfnContext()).GetView());
}

TEST(Golden, EachFormIsReadAndWrittenAsEachOther)
{
    if (std::getenv("QUIVER_WRITE_GOLDEN") != nullptr)
    {
        WriteFiles();
        FAIL() << "the files were written anew; look at what changed, and run again without QUIVER_WRITE_GOLDEN";
    }
    for (const SForm& from : s_forms)
    {
        SCOPED_TRACE(std::string("read from ") + from.lpcFile);
        CFlexClass object(Shape());
        ASSERT_NO_FATAL_FAILURE(ReadAndCheck(object, from, BinaryOf(ReadFileBytes(PathOf(from)))));
        for (const SForm& to : s_forms)
        {
            SCOPED_TRACE(std::string("written as ") + to.lpcFile);
            const CBinaryData written = to.pfnWrite(object, to.pfnContext());
            CFlexClass again(Shape());
            ReadAndCheck(again, to, written);
            if (!to.bOctetsAreDetermined)
                continue;
            const std::string strExpected = ReadFileBytes(PathOf(to));
            const std::string strWritten(written.GetView());
            EXPECT_TRUE(strWritten == strExpected)
                << strWritten.size() << " octets, expected " << strExpected.size() << "; they differ from octet "
                << FirstDifference(strWritten, strExpected) << " on";
        }
    }
}

} // namespace
} // namespace QvTest
