#include "Gpx.h"
#include "GpxRoots.h"
#include "Invoice.h"
#include "InvoiceRoots.h"
#include "Order.h"
#include "OrderRoots.h"
#include "Settings.h"
#include "SettingsRoots.h"
#include "tests/support/ClassesInMemory.h"
#include "tests/support/Files.h"
#include "tests/support/Variants.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace QvTest;
using namespace QvXmlLib9;

/// @file
/// The classes of the examples, compiled and in memory, say the same of the documents of the examples, and of such as
/// differ from them in a place.

namespace
{

using CObject = CSmartPtr<CXmlObjectBase>;

struct SExample
{
    const char* lpcFolder;
    const char* lpcSchema;
    const char* lpcSample;
    const char* lpcBroken;
    CObject (*pfnMake)(CXmlElement*);
};

const SExample s_examples[] = {
    {"purchase_order", "order.xsd", "order.xml", "broken.xml", &order::COrderRoots::CreateRoot},
    {"gpx_track", "gpx.xsd", "track.gpx", "broken.gpx", &gpx::CGpxRoots::CreateRoot},
    {"invoice", "invoice.xsd", "invoice.xml", "broken.xml", &invoice::CInvoiceRoots::CreateRoot},
    {"open_content", "settings.xsd", "settings.xml", "broken.xml", &settings::CSettingsRoots::CreateRoot},
};

/// For the names of failed tests.
void PrintTo(const SExample& example, std::ostream* pOut)
{
    *pOut << example.lpcFolder;
}

/// The object of a compiled class, null if no class is for the document.
CObject Read(const SExample& example, std::string strBytes)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
    CObject spObject = example.pfnMake(document.GetDocumentElement());
    if (spObject == nullptr)
        throw CQvException(L"There is no class");
    spObject->FromXmlElement(document.GetDocumentElement(), context);
    return spObject;
}

class CheckExamples : public testing::TestWithParam<SExample>
{
};

TEST_P(CheckExamples, AreReadAlikeByBothKindsOfClasses)
{
    const std::filesystem::path folder = std::filesystem::path(QUIVER_EXAMPLES) / GetParam().lpcFolder;
    const CClassesInMemory classes({(folder / GetParam().lpcSchema).string()});
    int nRead = 0;
    int nRefused = 0;
    for (const char* const lpcFile : {GetParam().lpcSample, GetParam().lpcBroken})
    {
        std::vector<std::string> documents = VaryDocument(ReadFileBytes(folder / lpcFile));
        documents.push_back(ReadFileBytes(folder / lpcFile));
        for (const std::string& strDocument : documents)
        {
            const std::string strCompiled = Outcome([&] { return Read(GetParam(), strDocument); });
            const std::string strInMemory = Outcome([&] { return classes.Read(strDocument); });
            EXPECT_EQ(strInMemory.substr(0, strCompiled.size()), strCompiled) << strDocument;
            ++(strCompiled.compare(0, 8, "refused:") == 0 ? nRefused : nRead);
        }
    }
    EXPECT_GT(nRead, 20);
    EXPECT_GT(nRefused, 20);
}

INSTANTIATE_TEST_SUITE_P(Examples, CheckExamples, testing::ValuesIn(s_examples),
                         [](const auto& example) { return example.param.lpcFolder; });

} // namespace
