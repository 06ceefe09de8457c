// The generator version is process-wide, so what depends on it has a program of its own.

#include "quiver/collections/Element.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/platform/Platform.h"
#include "tests/support/Expect.h"

#include <functional>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

struct SBox
{
    std::wstring strText;
    std::wstring strCaption;
};

std::vector<SBox> s_boxes;

void RecordBox(const wchar_t* lpctText, const wchar_t* lpctCaption)
{
    s_boxes.push_back({lpctText, lpctCaption});
}

/// Boxes are recorded instead of shown, and the version that the tests' main announced is put back.
class VersionGate : public ::testing::Test
{
protected:
    void SetUp() override
    {
        s_boxes.clear();
        Platform::SetMessageBoxSink(&RecordBox);
    }
    void TearDown() override
    {
        Register(9, 0);
        Platform::SetMessageBoxSink(nullptr);
    }
};

/// Acts ahead of `main`, where the tests announce their version: as generated code that never announces one.
struct SUnannounced
{
    SUnannounced()
    {
        const Platform::PfnMessageBox pfnOld = Platform::SetMessageBoxSink(&RecordBox);
        s_boxes.clear();
        const CElement first(L"a");
        const CElement second(L"b");
        try
        {
            first.ToXml(false, false, EOLType_LF, CXmlSerializationContext());
        }
        catch (const CQvException& ex)
        {
            m_strFailure = ex.GetMessageW();
        }
        m_boxes.swap(s_boxes);
        Platform::SetMessageBoxSink(pfnOld);
    }

    std::vector<SBox> m_boxes;
    std::wstring m_strFailure;
};

const SUnannounced s_unannounced;

struct SEntryPoint
{
    const char* lpcName;
    std::function<void(CElement&)> pfnCall;
};

const CXmlSerializationContext s_context;

const std::vector<SEntryPoint>& EntryPoints()
{
    static unsigned char s_bytes[] = "<a/>";
    static const std::vector<SEntryPoint> s_entryPoints = {
        {"ToXml",
         [](CElement& e)
         {
             e.ToXml(false, false, EOLType_LF, s_context);
         }},
        {"ToXmlStream",
         [](CElement& e)
         {
             e.ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_None);
         }},
        {"ToXmlFile",
         [](CElement& e)
         {
             e.ToXmlFile(L"/nonexistent/a", false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_None);
         }},
        {"ToXmlFile overlapped",
         [](CElement& e)
         {
             AsyncToXmlFile(true);
             try
             {
                 e.ToXmlFile(L"/nonexistent/a", false, false, Encoding_UTF8, EOLType_LF, s_context, Compression_None);
             }
             catch (...)
             {
                 AsyncToXmlFile(false);
                 throw;
             }
         }},
        {"ToFastInfosetStream",
         [](CElement& e)
         {
             e.ToFastInfosetStream(FInfoDecl_None, s_context, Compression_None);
         }},
        {"ToFastInfosetFile",
         [](CElement& e)
         {
             e.ToFastInfosetFile(L"/nonexistent/a", FInfoDecl_None, s_context, Compression_None);
         }},
        {"FromXmlFile",
         [](CElement& e)
         {
             static_cast<CXmlObjectBase&>(e).FromXmlFile(L"/nonexistent/a", s_context);
         }},
        {"FromXml wide",
         [](CElement& e)
         {
             static_cast<CXmlObjectBase&>(e).FromXml(L"", s_context);
         }},
        {"FromXml narrow",
         [](CElement& e)
         {
             static_cast<CXmlObjectBase&>(e).FromXml("", s_context);
         }},
        {"FromXmlStream bytes",
         [](CElement& e)
         {
             e.FromXmlStream(s_bytes, 0, s_context);
         }},
        {"FromXmlStream data",
         [](CElement& e)
         {
             e.FromXmlStream(CBinaryData(), s_context);
         }},
        {"FromXmlElement open content",
         [](CElement& e)
         {
             e.FromXmlElement(static_cast<const CElement*>(&e), s_context);
         }},
        {"FromXmlElement parsed element",
         [](CElement& e)
         {
             e.FromXmlElement(static_cast<const CXmlElement*>(nullptr), s_context);
         }},
    };
    return s_entryPoints;
}

} // namespace

TEST_F(VersionGate, CodeThatNeverAnnouncedItsVersionCountsAsVersionZero)
{
    const std::wstring strText =
        L"Please ensure your generated code is the same version as this library (Quiver Runtime: v9.0, Generator: "
        L"v0.0).";
    // The first object of the process shows one box and the conversion another; the second object shows none.
    ASSERT_EQ(s_unannounced.m_boxes.size(), 2u);
    for (const SBox& box : s_unannounced.m_boxes)
    {
        EXPECT_TEXT(strText, box.strText);
        EXPECT_TEXT(L"Version Mismatch Error", box.strCaption);
    }
    EXPECT_TEXT(L"Wrong Version (Quiver Runtime: v9.0, Generator: v0.0)", s_unannounced.m_strFailure);
}

TEST_F(VersionGate, NoLaterObjectReportsAWrongVersion)
{
    Register(0, 0);
    const CElement later(L"a");
    EXPECT_TRUE(s_boxes.empty());
}

TEST_F(VersionGate, EveryEntryPointReportsAWrongVersionAndThrowsAheadOfAllElse)
{
    CElement element(L"a");
    Register(8, 3);
    for (const SEntryPoint& entryPoint : EntryPoints())
    {
        SCOPED_TRACE(entryPoint.lpcName);
        s_boxes.clear();
        ExpectThrows<CQvException>(L"Wrong Version (Quiver Runtime: v9.0, Generator: v8.3)",
                                   [&] { entryPoint.pfnCall(element); });
        ASSERT_EQ(s_boxes.size(), 1u);
        EXPECT_TEXT(L"Please ensure your generated code is the same version as this library (Quiver Runtime: v9.0, "
                    L"Generator: v8.3).",
                    s_boxes[0].strText);
    }
}

TEST_F(VersionGate, BothNumbersMustBeTheLibrarysOwn)
{
    const CElement element(L"a");
    for (const auto& [nMajor, nMinor] : {std::pair<int, int>{9, 1}, {8, 0}, {0, 9}, {10, 0}})
    {
        SCOPED_TRACE(::testing::Message() << nMajor << "." << nMinor);
        Register(nMajor, nMinor);
        EXPECT_THROW(element.ToXml(false, false, EOLType_LF, s_context), CQvException);
    }
    Register(9, 0);
    EXPECT_TEXT(L"<a/>", element.ToXml(false, false, EOLType_LF, s_context));
}

TEST_F(VersionGate, ZLibFilesAreRefusedAheadOfTheVersion)
{
    const CElement element(L"a");
    Register(0, 0);
    const std::wstring strExpected = L"ZLIB Compression only available for To Stream methods.";
    ExpectThrows<CQvException>(strExpected,
                               [&] {
                                   element.ToXmlFile(L"/nonexistent/a", false, false, Encoding_UTF8, EOLType_LF,
                                                     s_context, Compression_ZLib);
                               });
    ExpectThrows<CQvException>(
        strExpected,
        [&] { element.ToFastInfosetFile(L"/nonexistent/a", FInfoDecl_None, s_context, Compression_ZLib); });
    EXPECT_TRUE(s_boxes.empty());
}
