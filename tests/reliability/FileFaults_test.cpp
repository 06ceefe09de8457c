// The n-th call of the system fails, for every n until none is left to fail: each operation on files ends in a message or in what it
// makes otherwise, and leaves nothing behind.

#include "quiver/QvXmlLib.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/reliability/FaultOperations.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <fstream>
#include <map>
#include <thread>
#include <vector>

using namespace faults;
using namespace QvXmlLib9;

namespace
{

namespace fs = std::filesystem;

struct SKind
{
    const char* lpcName;
    ECall eCall;
    int nError;
    bool bForever;
    /// The operation succeeds all the same.
    bool bHarmless;
    bool bLong;
};

const SKind s_kinds[] = {
    {"open", ECall::Open, s_nDenied, false, false, false},
    {"open, for want of handles, for good", ECall::Open, s_nTooManyOpen, true, false, true},
    {"read", ECall::Read, s_nBroken, false, false, false},
    {"read, for good", ECall::Read, s_nBroken, true, false, true},
    {"write", ECall::Write, s_nDiskFull, false, false, false},
    {"write, for good", ECall::Write, s_nDiskFull, true, false, true},
    {"write, beyond the quota", ECall::Write, s_nQuota, false, false, true},
    {"close", ECall::Close, s_nBroken, false, false, false},
    {"status", ECall::Status, s_nBroken, false, false, false},
    {"rename", ECall::Rename, s_nDenied, false, false, false},
    {"any", ECall::Any, s_nBroken, true, false, true},
    {"read, broken off", ECall::Read, s_nBrokenOff, false, s_bBrokenOffIsHarmless, false},
    {"write, broken off", ECall::Write, s_nBrokenOff, false, s_bBrokenOffIsHarmless, false},
    {"read, of one octet", ECall::Read, 0, false, s_bShortReadIsHarmless, false},
    {"read, by single octets", ECall::Read, 0, true, s_bShortReadIsHarmless, true},
    {"write, of one octet", ECall::Write, 0, false, s_bShortWriteIsHarmless, false},
    {"write, by single octets", ECall::Write, 0, true, s_bShortWriteIsHarmless, true},
};

/// The kinds that are wanted.
std::vector<SKind> GetKinds()
{
    std::vector<SKind> kinds;
    std::copy_if(std::begin(s_kinds), std::end(s_kinds), std::back_inserter(kinds),
                 [](const SKind& kind) { return !kind.bLong || IsLong(); });
    return kinds;
}

/// For the names of failed tests.
void PrintTo(const SKind& kind, std::ostream* pOut)
{
    *pOut << kind.lpcName;
}

std::map<std::wstring, long> CountLiving()
{
    std::map<std::wstring, long> living;
    for (const auto& [strClass, counts] : QvTest::CountAllInstances())
        if (counts.nLiving != 0)
            living[strClass] = counts.nLiving;
    return living;
}

/// The files below a folder.
std::map<std::string, std::string> ReadFiles(const fs::path& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& file : fs::recursive_directory_iterator(folder))
        if (file.is_regular_file())
            files[fs::relative(file.path(), folder).string()] = QvTest::ReadFileBytes(file.path());
    return files;
}

/// An operation in a folder that has what it needs.
class CRun
{
public:
    explicit CRun(const SOperation& operation)
        : m_operation(operation)
    {
        operation.fnPrepare(m_dir.PathOf(""));
        m_before = ReadFiles(m_dir.PathOf(""));
    }

    /// @param fault what is in force meanwhile.
    SResult Run(SFault& fault)
    {
        SResult result;
        try
        {
            const CInForce inForce(fault);
            result = m_operation.fnRun(m_dir.PathOf(""));
        }
        catch (const CQvException& exception)
        {
            result.bSucceeded = false;
            result.strMessage = QvTest::Show(exception.GetFullMessage());
        }
        ResetSwitches();
        AddOutput(m_operation, m_dir.PathOf(""), result);
        return result;
    }

    SResult RunWell()
    {
        SFault none;
        none.nAhead = -1;
        return Run(none);
    }

    /// What was replaced is whole, old or new, and nothing else has come.
    void ExpectWholeFiles(const std::map<std::string, std::string>& good)
    {
        for (const auto& [strName, strText] : ReadFiles(m_dir.PathOf("")))
        {
            const auto itGood = good.find(strName);
            const auto itOld = m_before.find(strName);
            EXPECT_TRUE((itGood != good.end() && strText == itGood->second) ||
                        (itOld != m_before.end() && strText == itOld->second))
                << strName << " is left in part";
        }
    }

    std::map<std::string, std::string> GetFiles() const { return ReadFiles(m_dir.PathOf("")); }

private:
    const SOperation& m_operation;
    QvTest::CTempDir m_dir;
    std::map<std::string, std::string> m_before;
};

void FailEach(const SOperation& operation, const SKind& kind, int& nFaults)
{
    CRun good(operation);
    const SResult wanted = good.RunWell();
    ASSERT_TRUE(wanted.bSucceeded) << wanted.strMessage;
    const auto goodFiles = good.GetFiles();
    for (int n = 0;; ++n)
    {
        SCOPED_TRACE("call " + std::to_string(n));
        CRun run(operation);
        const std::size_t nOpenFiles = QvTest::CountOpenFiles();
        const auto living = CountLiving();
        SFault fault;
        fault.eCall = kind.eCall;
        fault.nAhead = n;
        fault.nError = kind.nError;
        fault.bForever = kind.bForever;
        const SResult result = run.Run(fault);
        EXPECT_EQ(CountLiving(), living);
        EXPECT_EQ(QvTest::CountOpenFiles(), nOpenFiles);
        if (result.bSucceeded)
        {
            EXPECT_EQ(result.strResult, wanted.strResult) << "it succeeded with something else";
        }
        else
        {
            EXPECT_FALSE(kind.bHarmless) << result.strMessage;
            EXPECT_NE(result.strMessage, "");
            EXPECT_EQ(result.strMessage.find("basic_filebuf"), std::string::npos) << result.strMessage;
        }
        if (operation.bReplacesWhole)
            run.ExpectWholeFiles(goodFiles);
        const SResult again = run.RunWell();
        EXPECT_TRUE(again.bSucceeded) << again.strMessage;
        EXPECT_EQ(again.strResult, wanted.strResult) << "and then";
        if (!fault.bMet)
            return;
        ++nFaults;
        if (testing::Test::HasFailure())
            return;
    }
}

class FileFaults : public testing::TestWithParam<SKind>
{
};

TEST_P(FileFaults, EndInAMessageAndLeaveNothing)
{
    const SKind& kind = GetParam();
    int nFaults = 0;
    for (const SOperation& operation : GetOperations())
    {
        if (!operation.bUsesFiles || (operation.bLong && !IsLong()))
            continue;
        SCOPED_TRACE(operation.lpcName);
        FailEach(operation, kind, nFaults);
    }
    EXPECT_GT(nFaults, 0);
    std::printf("%d faults: %s\n", nFaults, kind.lpcName);
}

std::string NameOf(const testing::TestParamInfo<SKind>& info)
{
    std::string strName;
    for (const char c : std::string(info.param.lpcName))
        strName += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return strName;
}

INSTANTIATE_TEST_SUITE_P(Kinds, FileFaults, testing::ValuesIn(GetKinds()), NameOf);

// --- Files that change while they are read ------------------------------------------------------------------------------

/// What becomes of every operation that reads the file "in", when something is done to the file ahead of the n-th read.
void ChangeWhileReading(const std::function<void(const fs::path& file)>& fnChange, int& nSucceeded, int& nRefused)
{
    for (const SOperation& operation : GetOperations())
    {
        if (!operation.bUsesFiles || (operation.bLong && !IsLong()))
            continue;
        SCOPED_TRACE(operation.lpcName);
        for (int n = 0;; ++n)
        {
            const QvTest::CTempDir dir;
            operation.fnPrepare(dir.PathOf(""));
            if (!fs::exists(dir.PathOf("in")))
                break;
            const auto Run = [&]
            {
                SResult result;
                try
                {
                    result = operation.fnRun(dir.PathOf(""));
                }
                catch (const CQvException& exception)
                {
                    result = {false, {}, QvTest::Show(exception.GetFullMessage())};
                }
                ResetSwitches();
                return result;
            };
            SResult wanted = Run();
            AddOutput(operation, dir.PathOf(""), wanted);
            const std::size_t nOpenFiles = QvTest::CountOpenFiles();
            SFault fault;
            fault.eCall = ECall::Read;
            fault.nAhead = n;
            fault.fnAhead = [&]
            {
                fnChange(dir.PathOf("in"));
            };
            SResult result;
            {
                const CInForce inForce(fault);
                result = Run();
            }
            AddOutput(operation, dir.PathOf(""), result);
            EXPECT_EQ(QvTest::CountOpenFiles(), nOpenFiles);
            if (result.bSucceeded)
            {
                // As the file was, or as it is now.
                SResult now = Run();
                AddOutput(operation, dir.PathOf(""), now);
                EXPECT_TRUE(result.strResult == wanted.strResult ||
                            (now.bSucceeded && result.strResult == now.strResult))
                    << "read " << n << ": " << result.strResult;
            }
            else
            {
                EXPECT_NE(result.strMessage, "");
            }
            if (!fault.bMet)
                break;
            ++(result.bSucceeded ? nSucceeded : nRefused);
        }
    }
}

TEST(FilesThatChange, AFileThatShrinksIsRefusedOrWasReadBefore)
{
    int nSucceeded = 0;
    int nRefused = 0;
    // Windows lets nobody change some of the files that are being read.
    std::error_code error;
    ChangeWhileReading([&](const fs::path& file) { fs::resize_file(file, fs::file_size(file) / 2, error); }, nSucceeded,
                       nRefused);
    EXPECT_GT(nRefused, 0);
}

TEST(FilesThatChange, AFileThatGrowsIsReadAsItWasOrRefused)
{
    int nSucceeded = 0;
    int nRefused = 0;
    ChangeWhileReading([](const fs::path& file) { std::ofstream(file, std::ios::app) << "<more>"; }, nSucceeded,
                       nRefused);
    EXPECT_GT(nSucceeded + nRefused, 0);
}

// --- Disks that are full ------------------------------------------------------------------------------------------------

TEST(FullDisks, AFileThatDoesNotFitIsRefused)
{
    int nRefused = 0;
    for (const SOperation& operation : GetOperations())
    {
        if (!operation.bUsesFiles || (operation.bLong && !IsLong()))
            continue;
        SCOPED_TRACE(operation.lpcName);
        CRun good(operation);
        const SResult wanted = good.RunWell();
        for (const std::uint64_t nLimit : {0u, 1u, 100u, 1000u, 4096u})
        {
            CRun run(operation);
            const std::size_t nOpenFiles = QvTest::CountOpenFiles();
            SResult result;
            {
                const CFileLimit limit(nLimit);
                result = run.RunWell();
            }
            EXPECT_EQ(QvTest::CountOpenFiles(), nOpenFiles);
            if (result.bSucceeded)
            {
                EXPECT_EQ(result.strResult, wanted.strResult);
            }
            else
            {
                EXPECT_NE(result.strMessage, "");
                ++nRefused;
            }
            if (operation.bReplacesWhole)
                run.ExpectWholeFiles(good.GetFiles());
        }
    }
    EXPECT_GT(nRefused, 20);
}

TEST(FullDisks, ADeviceWithoutRoomIsRefused)
{
    const CFullDevice device;
    const std::wstring strName = device.GetName();
    const CSmartPtr<CElement> spElement = new CElement(L"a");
    spElement->SetText(std::wstring(100000, L'x').c_str());
    const CXmlSerializationContext context;
    const auto Write = [&]
    {
        spElement->ToXmlFile(strName.c_str(), true, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
    };
    for (const bool bOverlapped : {false, true})
    {
        AsyncToXmlFile(bOverlapped);
        EXPECT_THROW(Write(), CQvException);
    }
    ResetSwitches();
    EXPECT_THROW(spElement->ToFastInfosetFile(strName.c_str(), FInfoDecl_None, context, Compression_None),
                 CQvException);
}

// --- Interruptions ------------------------------------------------------------------------------------------------------

/// The whole of a document comes through a pipe although each wait for a piece of it is broken off.
TEST(Interruptions, LeaveAPipeToBeReadToItsEnd)
{
    CPipe pipe;
    std::string strText = "<r>";
    for (int n = 0; n < 20; ++n)
        strText += "<a n='" + std::to_string(n) + "'>text</a>";
    strText += "</r>";
    std::thread writer(
        [&]
        {
            pipe.Connect();
            for (std::size_t n = 0; n < strText.size(); n += 20)
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                EXPECT_TRUE(pipe.Write(std::string_view(strText).substr(n, 20)));
            }
            pipe.Close();
        });
    CXmlDocument document;
    {
        const CInterruptions interruptions;
        pipe.LoadInto(document);
    }
    ResetSwitches();
    writer.join();
    ASSERT_NE(document.GetDocumentElement(), nullptr);
    int nElements = 0;
    for (CXmlElement* p = document.GetDocumentElement()->GetFirstElement(); p != nullptr;
         p = p->GetNextSiblingElement())
        ++nElements;
    EXPECT_EQ(nElements, 20);
    EXPECT_GT(CInterruptions::GetCount(), 20);
}

/// Every operation does what it does without them.
TEST(Interruptions, DoNotChangeWhatComesOfAnOperation)
{
    for (const SOperation& operation : GetOperations())
    {
        if (!operation.bUsesFiles)
            continue;
        SCOPED_TRACE(operation.lpcName);
        CRun run(operation);
        const SResult wanted = run.RunWell();
        const CInterruptions interruptions;
        for (int n = 0; n < (IsLong() ? 50 : 3); ++n)
        {
            CRun again(operation);
            EXPECT_EQ(again.RunWell().strResult, wanted.strResult);
        }
    }
}

} // namespace
