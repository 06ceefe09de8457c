// Different objects of the same classes on eight threads at once, from the first use of their metadata on. What threads
// may share is shared: a context, a finished document, smart pointers to one object. The thread sanitizer is the judge;
// the results must be those of one thread besides.

#include "Gpx.h"
#include "Invoice.h"
#include "Order.h"
#include "Settings.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/Threads.h"

#include "quiver/QvXmlLib.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#if defined(__SANITIZE_THREAD__) && defined(__GLIBC__)
#include <aio.h>
#endif

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;

const std::size_t s_nSomeThreads = 8;
const int s_nRounds = 20;

/// Eight are enough here, and sixteen would take long under the sanitizer.
void OnThreads(const std::function<void(std::size_t)>& work)
{
    AtOnce(work, s_nSomeThreads);
}

std::string Sample(const char* lpcFile)
{
    return ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/") + lpcFile);
}

/// Reads a document, writes it as text, as bytes and as Fast Infoset, and reads and writes those.
template <class TRoot>
std::wstring ReadAndWrite(const std::string& strXml, const CXmlSerializationContext& context)
{
    const CSmartPtr<TRoot> spRoot = new TRoot;
    spRoot->FromXml(strXml.c_str(), context);
    const std::wstring strText = spRoot->ToXml(false, true, EOLType_LF, context);
    const CBinaryData data = spRoot->ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, context, Compression_GZip);
    const CSmartPtr<TRoot> spFromText = new TRoot;
    spFromText->FromXml(strText.c_str(), context);
    const CSmartPtr<TRoot> spFromBytes = new TRoot;
    spFromBytes->FromXmlStream(data, context);
    const CSmartPtr<TRoot> spFromInfoset = new TRoot;
    spFromInfoset->FromXmlStream(spRoot->ToFastInfosetStream(FInfoDecl_None, context, Compression_None), context);
    std::wstring strAll;
    for (const TRoot* pRead :
         {static_cast<TRoot*>(spFromText), static_cast<TRoot*>(spFromBytes), static_cast<TRoot*>(spFromInfoset)})
        strAll += pRead->ToXml(true, false, EOLType_LF, context);
    return strAll;
}

const wchar_t s_lpctOrderItem[] = L"<AA:item part=\"103-BX\"><AA:product>Rain gauge &lt;metric&gt;</AA:product>"
                                  L"<AA:quantity>12</AA:quantity><AA:price>4.5</AA:price></AA:item>";
const wchar_t s_lpctTrackHead[] = L"<AA:time>2026-05-17T06:58:12Z</AA:time><AA:keywords>hike, ridge</AA:keywords>"
                                  L"<AA:trk><AA:name>Ridge walk \x2014 H\u00F6henweg</AA:name>";
const wchar_t s_lpctBuyersName[] = L"<AA:name>M\u00FCller &amp; S\u00F6hne</AA:name>"
                                   L"<AA:contact>Frau Wei\u00DF</AA:contact>";
const wchar_t s_lpctNote[] = L"<AC:note xmlns:AC=\"urn:example:notes\">Do not touch the sync account.</AC:note>";

int CountOf(const std::wstring& strPart, const std::wstring& strText)
{
    int nCount = 0;
    for (std::size_t n = strText.find(strPart); n != std::wstring::npos; n = strText.find(strPart, n + 1))
        ++nCount;
    return nCount;
}

/// Eight threads do the same; the main thread does it last, so that nobody has used the classes before them.
/// @param lpctPart what each of the three documents has once.
template <class TRoot>
void ExpectThreadsToAgree(const std::string& strXml, const wchar_t* lpctPart)
{
    CXmlSerializationContext prepared;
    prepared.GetFIContext().GetVocabulary()->AddElement(L"", L"urn:example:order", L"item");
    prepared.GetFIContext().SetUseGeneratedVocabulary(true);
    // Nothing but const from here on. Its additional root attributes come into being at the first use.
    const CXmlSerializationContext& context = prepared;
    std::vector<std::wstring> results(s_nSomeThreads);
    OnThreads(
        [&](std::size_t nThread)
        {
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
                results[nThread] = ReadAndWrite<TRoot>(strXml, context);
        });
    const std::wstring strExpected = ReadAndWrite<TRoot>(strXml, context);
    EXPECT_EQ(3, CountOf(lpctPart, strExpected)) << Show(strExpected);
    for (const std::wstring& strResult : results)
        EXPECT_TEXT(strExpected, strResult);
}

TEST(Threads, MayBeTheFirstToUseTheClassesOfAnOrder)
{
    ExpectThreadsToAgree<order::CPurchaseOrder>(Sample("purchase_order/order.xml"), s_lpctOrderItem);
}

TEST(Threads, MayBeTheFirstToUseTheClassesOfATrack)
{
    ExpectThreadsToAgree<gpx::CGpx>(Sample("gpx_track/track.gpx"), s_lpctTrackHead);
}

TEST(Threads, MayBeTheFirstToUseTheClassesOfAnInvoice)
{
    ExpectThreadsToAgree<invoice::CInvoice>(Sample("invoice/invoice.xml"), s_lpctBuyersName);
}

TEST(Threads, MayBeTheFirstToUseTheClassesOfOpenContent)
{
    ExpectThreadsToAgree<settings::CSettings>(Sample("open_content/settings.xml"), s_lpctNote);
}

TEST(Threads, ShareAContextWithRootAttributesAliasesAndInstructions)
{
    CXmlSerializationContext prepared;
    prepared.SetDefaultNamespaceURI(L"urn:example:order");
    prepared.GetNamespaceAliases().Add(L"x", L"urn:x");
    prepared.GetProcessingInstructions().emplace_back(L"<?check thrice?>");
    prepared.GetAdditionalRootAttributes()->Add(L"origin", L"test", L"urn:x");
    const CXmlSerializationContext& context = prepared;
    std::vector<std::wstring> results(s_nSomeThreads);
    OnThreads(
        [&](std::size_t nThread)
        {
            const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
            spOrder->FromXml(Sample("purchase_order/order.xml").c_str(), context);
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
            {
                spOrder->SetNumber(static_cast<int>(nThread));
                EXPECT_EQ(1, context.GetAdditionalRootAttributes()->GetCount());
                const CXmlSerializationContext copy(context);
                results[nThread] = spOrder->ToXml(false, false, EOLType_LF, copy);
            }
        });
    for (std::size_t nThread = 0; nThread < s_nSomeThreads; ++nThread)
    {
        const std::wstring strStart =
            L"<?check thrice?>\n\n<purchaseOrder xmlns=\"urn:example:order\" xmlns:x=\"urn:x\" "
            L"x:origin=\"test\" number=\"" +
            std::to_wstring(nThread) + L"\"";
        EXPECT_TEXT(strStart, results[nThread].substr(0, strStart.size()));
    }
}

TEST(Threads, ReadObjectsOutOfOneFinishedDocument)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXml(Sample("invoice/invoice.xml").c_str());
    std::vector<std::wstring> results(s_nSomeThreads);
    OnThreads(
        [&](std::size_t nThread)
        {
            const CSmartPtr<invoice::CInvoice> spInvoice = new invoice::CInvoice;
            const CXmlElement* const pRoot = document.GetDocumentElement();
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
                spInvoice->FromXmlElement(pRoot, context);
            results[nThread] = spInvoice->ToXml(false, false, EOLType_LF, context);
        });
    EXPECT_EQ(1, CountOf(s_lpctBuyersName, results[0])) << Show(results[0]);
    for (const std::wstring& strResult : results)
        EXPECT_TEXT(results[0], strResult);
}

TEST(Threads, FailEachWithItsOwnMessage)
{
    const CXmlSerializationContext context;
    std::string strXml = Sample("purchase_order/order.xml");
    const std::size_t nQuantity = strXml.find("<quantity>2<") + 10;
    OnThreads(
        [&](std::size_t nThread)
        {
            const std::string strValue = std::to_string(1000 + nThread);
            const std::string strBroken = std::string(strXml).replace(nQuantity, 1, strValue);
            const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
            const std::wstring strChain = L"Failed to process the element [purchaseOrder]\n"
                                          L"Failed to process the element [item]\n"
                                          L"Invalid Value for quantity [" +
                                          std::wstring(strValue.begin(), strValue.end()) + L"]\nThe value is above 999";
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
                ExpectThrows<CQvValidationException>(strChain, [&] { spOrder->FromXml(strBroken.c_str(), context); });
        });
}

TEST(Threads, HoldOneObjectThroughSmartPointersOfTheirOwn)
{
    const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
    spOrder->GetItem()->AddNew()->SetQuantity(3);
    const CSmartPtr<order::CItem> spShared = spOrder->GetItem()->Item(0);
    OnThreads(
        [&](int)
        {
            std::vector<CSmartPtr<order::CItem>> pointers;
            for (int nRound = 0; nRound < 1000; ++nRound)
            {
                pointers.push_back(spShared);
                if (nRound % 3 == 1)
                    pointers.erase(pointers.begin());
                EXPECT_EQ(3, pointers.back()->GetQuantity());
            }
        });
    EXPECT_EQ(3, spShared->AddRef()); // the collection, this function, and the call itself
    spShared->Release();
}

TEST(Threads, CloneAndChangeOpenContentOfTheirOwn)
{
    const CSmartPtr<CElement> spSource = new CElement(L"source", L"urn:s");
    spSource->FromXml(L"<s:a xmlns:s='urn:s' b='1'><s:c>text</s:c><s:d/></s:a>");
    std::vector<CSmartPtr<CElement>> clones;
    for (std::size_t nThread = 0; nThread < s_nSomeThreads; ++nThread)
        clones.push_back(spSource->Clone());
    // The clones may share their texts inside; no thread may notice.
    OnThreads(
        [&](std::size_t nThread)
        {
            CElement& element = *clones[nThread];
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
            {
                const CSmartPtr<CElement> spCopy = element.Clone();
                spCopy->SetNamespace(std::to_wstring(nThread).c_str());
                element.GetChildElements()->Add(L"e", L"urn:s")->SetText(std::to_wstring(nRound).c_str());
                element.GetAttributes()->Add(L"f", L"g", L"urn:h");
            }
        });
    for (const CSmartPtr<CElement>& spClone : clones)
    {
        EXPECT_TEXT(L"urn:s", spClone->GetNamespace());
        EXPECT_EQ(2 + s_nRounds, spClone->GetChildElements()->GetCount());
        EXPECT_EQ(1 + s_nRounds, spClone->GetAttributes()->GetCount());
    }
}

TEST(Threads, ShareTheBlocksOfByteBuffersAndChangeTheirOwn)
{
    CBinaryData shared;
    const unsigned char bytes[] = {1, 2, 3, 4};
    shared.SetBuffer(bytes, sizeof(bytes));
    std::vector<CBinaryData> copies(s_nSomeThreads, shared);
    OnThreads(
        [&](std::size_t nThread)
        {
            CBinaryData& copy = copies[nThread];
            for (int nRound = 0; nRound < s_nRounds; ++nRound)
            {
                const CBinaryData another(copy);
                copy[0] = static_cast<unsigned char>(nThread);
                EXPECT_EQ(4, another[3]);
            }
        });
    EXPECT_EQ(1, shared.GetView()[0]);
    for (std::size_t nThread = 0; nThread < s_nSomeThreads; ++nThread)
        EXPECT_EQ(nThread, copies[nThread].GetView()[0]);
}

/// Each thread writes and reads a file of its own.
void ExpectFilesToComeBack()
{
    const CTempDir directory;
    const CXmlSerializationContext context;
    const std::string strXml = Sample("gpx_track/track.gpx");
    OnThreads(
        [&](std::size_t nThread)
        {
            const CSmartPtr<gpx::CGpx> spTrack = new gpx::CGpx;
            spTrack->FromXml(strXml.c_str(), context);
            spTrack->SetCreator(std::to_wstring(nThread));
            const std::wstring strFile = directory.NameOf(std::to_string(nThread) + ".gpx");
            for (int nRound = 0; nRound < 5; ++nRound)
            {
                spTrack->ToXmlFile(strFile.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
                const CSmartPtr<gpx::CGpx> spAgain = new gpx::CGpx;
                spAgain->FromXmlFile(strFile.c_str(), context);
                EXPECT_TEXT(std::to_wstring(nThread), spAgain->GetCreator());
            }
        });
}

TEST(Threads, WriteAndReadFilesOfTheirOwn)
{
    ExpectFilesToComeBack();
}

TEST(Threads, WriteAndReadOverlappedFilesOfTheirOwn)
{
#if defined(__SANITIZE_THREAD__) && defined(__GLIBC__)
    // The sanitizer does not know the C library's helper threads, and stops when one of them starts another.
    aioinit oneHelper{};
    oneHelper.aio_threads = 1;
    oneHelper.aio_num = static_cast<int>(s_nSomeThreads);
    aio_init(&oneHelper);
#endif
    AsyncToXmlFile(true);
    AsyncFromXmlFile(true);
    ExpectFilesToComeBack();
    AsyncToXmlFile(false);
    AsyncFromXmlFile(false);
}

} // namespace
} // namespace QvTest
