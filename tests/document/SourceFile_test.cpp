#include "quiver/document/SourceFile.h"

#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

namespace Platform = QvXmlLib9::Platform;

using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvXmlLib9::CQvException;
using QvXmlLib9::CSourceFile;
using QvXmlLib9::CSourceHandle;

TEST(SourceFile, AFileIsOpenAsLongAsTheObject)
{
    const CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a"), "<a/>");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (const bool bOverlapped : {false, true})
    {
        {
            const CSourceFile file(dir.NameOf("a").c_str(), bOverlapped);
            EXPECT_NE(nullptr, file.Get());
            EXPECT_EQ(nOpenFiles + 1, QvTest::CountOpenFiles());
        }
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
}

TEST(SourceFile, ClosingTwiceIsClosingOnce)
{
    const CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a"), "<a/>");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    CSourceFile file(dir.NameOf("a").c_str(), false);
    file.Close();
    file.Close();
    EXPECT_EQ(nullptr, file.Get());
    EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
}

TEST(SourceFile, AHandleThatIsNoneIsNotClosed)
{
    const QvTest::CFileFault fault(Platform::FileOperation_Close, 0, 6);
    for (const Platform::Handle handle : {Platform::Handle(nullptr), Platform::Handle(Platform::InvalidHandle)})
        CSourceHandle(handle).Close();
    EXPECT_FALSE(fault.WasMet());
}

TEST(SourceFile, AFileThatCannotBeOpenedFailsWithNameAndError)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("missing");
    for (const bool bOverlapped : {false, true})
        ExpectThrows<CQvException>(L"Failed to open the file [" + strName + L"] Error [0x00000002]",
                                   [&] { CSourceFile(strName.c_str(), bOverlapped); });
}

} // namespace
