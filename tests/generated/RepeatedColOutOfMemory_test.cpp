#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/RepeatedCol.h"

#include "tests/support/FailingAllocation.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

/// Durations keep the text that they are read with beside their value.
class CDurations : public CValueCol<xs::Duration>
{
public:
    CDurations()
        : CInstanceMonitor(L"CDurations")
        , CValueCol<xs::Duration>({L"n", L"", 0, -1})
    {
    }

    void Read(const std::wstring& strText)
    {
        QvVariant value;
        value.SetString(strText);
        AddText(value);
    }

    std::wstring TextOf(int nIndex) const
    {
        QvVariant value;
        StoreItem(static_cast<std::size_t>(nIndex), value);
        return value.StringRef();
    }

    std::vector<std::wstring> Texts() const
    {
        std::vector<std::wstring> texts;
        for (int nIndex = 0; nIndex < GetCount(); ++nIndex)
            texts.push_back(TextOf(nIndex));
        return texts;
    }
};

} // namespace

TEST(RepeatedColOutOfMemory, IsAsItWasWhereAValueCannotBeAdded)
{
    const CSmartPtr<CDurations> spCol = new CDurations;
    const std::wstring strLong = L"P00000000000000000000000000000000000000001M";
    std::vector<std::wstring> expected;
    long nFailures = 0;
    for (int nItem = 0; nItem < 9; ++nItem)
    {
        SCOPED_TRACE(nItem);
        // Every allocation fails once before the value is taken.
        for (long nAllocations = 0;; ++nAllocations)
        {
            bool bAdded = true;
            QvTest::g_nAllocationsLeft = nAllocations;
            try
            {
                spCol->Read(strLong);
            }
            catch (const std::bad_alloc&)
            {
                bAdded = false;
            }
            QvTest::g_nAllocationsLeft = -1;
            if (bAdded)
                break;
            ++nFailures;
            ASSERT_EQ(spCol->Texts(), expected) << "allocation " << nAllocations;
        }
        expected.push_back(strLong);
        ASSERT_EQ(spCol->Texts(), expected);
    }
    EXPECT_GT(nFailures, 9);

    // The texts still belong to their values.
    spCol->Read(L"P2M");
    spCol->Remove(0);
    EXPECT_EQ(spCol->TextOf(7), strLong);
    EXPECT_EQ(spCol->TextOf(8), L"P2M");
}
