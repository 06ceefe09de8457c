// Sixteen threads at once use for the first time what is made at the first use: the tables of generated classes, the
// parsed bounds of facets, the namespaces and attributes of a shared context. Objects that they make are different ones.
// The thread sanitizer is the judge; the results must be those of one thread besides.

#include "Invoice.h"
#include "InvoiceRoots.h"
#include "Settings.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/Threads.h"

#include "quiver/QvXmlLib.h"
#include "quiver/values/RestrictionCheck.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

using namespace QvTest;
using namespace QvXmlLib9;

namespace
{

/// The root that a document is for, as its own factory makes it.
std::wstring ReadByFactory(std::string strXml, const CXmlSerializationContext& context)
{
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strXml.data()), static_cast<unsigned long>(strXml.size()));
    const CSmartPtr<CXmlObjectBase> spRoot = invoice::CInvoiceRoots::CreateRoot(document.GetDocumentElement());
    spRoot->FromXmlElement(document.GetDocumentElement(), context);
    return spRoot->ToXml(false, false, EOLType_LF, context);
}

TEST(FirstUse, OfClassesThroughTheirFactoryByHalfAndByTheirFailuresByTheOthers)
{
    const std::string strGood = ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/invoice/invoice.xml"));
    const std::string strBroken = ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/invoice/broken.xml"));
    const CXmlSerializationContext context;
    std::vector<std::wstring> results(s_nThreads);
    const auto Work = [&](std::size_t nThread)
    {
        try
        {
            results[nThread] = ReadByFactory(nThread % 2 == 0 ? strGood : strBroken, context);
        }
        catch (const CQvException& exception)
        {
            results[nThread] = exception.GetFullMessage();
        }
    };
    AtOnce(Work);
    std::vector<std::wstring> expected;
    expected.swap(results);
    results.resize(s_nThreads);
    Work(0);
    Work(1);
    EXPECT_NE(std::wstring::npos, results[0].find(L" number=\"RG-0815\" ")) << Show(results[0]);
    EXPECT_EQ(0u, results[1].find(L"Failed to process the element [invoice]")) << Show(results[1]);
    for (std::size_t nThread = 0; nThread < s_nThreads; ++nThread)
        EXPECT_TEXT(results[nThread % 2], expected[nThread]);
}

TEST(FirstUse, OfAContextsAliasesAndRootAttributes)
{
    const std::string strXml = ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/open_content/settings.xml"));
    for (int nRound = 0; nRound < 10; ++nRound)
    {
        CXmlSerializationContext prepared;
        prepared.GetNamespaceAliases().Add(L"s", L"urn:example:settings");
        prepared.GetFIContext().SetSuggestedValues();
        const CXmlSerializationContext& context = prepared;
        std::vector<std::wstring> results(s_nThreads);
        AtOnce(
            [&](std::size_t nThread)
            {
                const CSmartPtr<settings::CSettings> spSettings = new settings::CSettings;
                spSettings->FromXml(strXml.c_str(), context);
                const CBinaryData data = spSettings->ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
                const CSmartPtr<settings::CSettings> spAgain = new settings::CSettings;
                spAgain->FromXmlStream(data, context);
                results[nThread] = spAgain->ToXml(false, false, EOLType_LF, context);
            });
        EXPECT_EQ(0u, results[0].find(L"<s:settings ")) << Show(results[0]);
        for (const std::wstring& strResult : results)
            EXPECT_TEXT(results[0], strResult);
    }
}

TEST(FirstUse, OfTheBoundsOfFacets)
{
    for (int nRound = 0; nRound < 20; ++nRound)
    {
        const CPrimitiveRestrictions numbers(L"", -1, -1, L"-3", L"7", L"", L"", -1);
        std::atomic<int> nRefused{0};
        AtOnce(
            [&](std::size_t nThread)
            {
                QvVariant value;
                value.SetI4(static_cast<long>(nThread));
                try
                {
                    CheckRestriction(L"n", value, ItemType_i4, numbers);
                }
                catch (const CQvException&)
                {
                    ++nRefused;
                }
            });
        EXPECT_EQ(8, nRefused); // 8 to 15
    }
}

} // namespace
