#include "quiver/document/XmlDocument.h"

#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

// Every allocation of this program comes past here, so that the n-th one can be made to fail.

namespace
{

/// Allocations that still succeed; negative where all do.
long s_nAllocationsLeft = -1;

void* AllocateOrFail(std::size_t nSize)
{
    if (s_nAllocationsLeft == 0)
        throw std::bad_alloc();
    if (s_nAllocationsLeft > 0)
        --s_nAllocationsLeft;
    void* const pMemory = std::malloc(nSize);
    if (pMemory == nullptr)
        throw std::bad_alloc();
    return pMemory;
}

} // namespace

void* operator new(std::size_t nSize)
{
    return AllocateOrFail(nSize);
}
void* operator new[](std::size_t nSize)
{
    return AllocateOrFail(nSize);
}
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    return s_nAllocationsLeft == 0 ? nullptr : std::malloc(nSize);
}
void operator delete(void* pMemory) noexcept
{
    std::free(pMemory);
}
void operator delete[](void* pMemory) noexcept
{
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}
void operator delete[](void* pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}

namespace
{

using QvTest::CountInstances;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;

/// Runs `load` with the first allocation failing, then with the second, and so on until it succeeds.
/// @return how many times it failed.
template <class Load>
int FailEachAllocation(Load load)
{
    const auto elements = CountInstances(L"CXmlElement");
    const auto attributes = CountInstances(L"CXmlAttribute");
    for (int nFailures = 0;; ++nFailures)
    {
        bool bFailed = false;
        {
            CXmlDocument document([](CXmlElement* pElement) { return pElement->GetLocalName() == L"dropped"; });
            s_nAllocationsLeft = nFailures;
            try
            {
                load(document);
            }
            catch (const std::bad_alloc&)
            {
                bFailed = true;
            }
            s_nAllocationsLeft = -1;
            const std::wstring strOutline = QvTest::Outline(document.GetDocumentElement());
            if (!bFailed)
            {
                EXPECT_TEXT(L"{urn:x}root @{urn:x}attribute='value' \"some longer text, and more\" ({urn:x}kept)",
                            strOutline);
            }
        }
        EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
        EXPECT_EQ(attributes.nLiving, CountInstances(L"CXmlAttribute").nLiving);
        if (!bFailed)
            return nFailures;
    }
}

constexpr const char* s_lpcXml = "<x:root xmlns:x='urn:x' x:attribute='value'>some longer text,<x:kept/>"
                                 "<dropped a='1'><b>text</b></dropped> and more</x:root>";

TEST(XmlDocumentOutOfMemory, LoadingAStringFailsCleanlyWhereverMemoryEnds)
{
    EXPECT_GT(FailEachAllocation([](CXmlDocument& document) { document.LoadXml(s_lpcXml); }), 10);
}

TEST(XmlDocumentOutOfMemory, LoadingAWideStringFailsCleanlyWhereverMemoryEnds)
{
    const std::wstring strXml(s_lpcXml, s_lpcXml + std::char_traits<char>::length(s_lpcXml));
    EXPECT_GT(FailEachAllocation([&strXml](CXmlDocument& document) { document.LoadXml(strXml.c_str()); }), 10);
}

TEST(XmlDocumentOutOfMemory, LoadingAFileFailsCleanlyWhereverMemoryEnds)
{
    const QvTest::CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a.xml"), s_lpcXml);
    const std::wstring strName = dir.NameOf("a.xml");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (const bool bAsync : {false, true})
    {
        QvXmlLib9::AsyncFromXmlFile(bAsync);
        EXPECT_GT(FailEachAllocation([&strName](CXmlDocument& document) { document.Load(strName.c_str()); }), 10);
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
    QvXmlLib9::AsyncFromXmlFile(false);
}

TEST(XmlDocumentOutOfMemory, AskingForTextFailsCleanly)
{
    CXmlDocument document;
    document.LoadXml("<a>some longer text</a>");
    s_nAllocationsLeft = 0;
    EXPECT_THROW(document.GetDocumentElement()->GetText(), std::bad_alloc);
    s_nAllocationsLeft = -1;
    EXPECT_TEXT(L"some longer text", document.GetDocumentElement()->GetText());
}

} // namespace
