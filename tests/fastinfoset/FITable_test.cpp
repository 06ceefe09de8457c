#include "quiver/fastinfoset/FITable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using QvXmlLib9::CFITable;

TEST(FITable, BeginsWithTheAgreedEntriesAndKeepsItsOwnBehindThem)
{
    const std::vector<std::wstring> agreed = {L"a", L"b"};
    CFITable<std::wstring> table;
    EXPECT_EQ(table.GetCount(), 0U);
    table.Add(L"alone");
    EXPECT_EQ(table[0], L"alone");

    table.Begin(agreed);
    EXPECT_EQ(table.GetCount(), 2U);
    table.Add(L"c");
    EXPECT_EQ(table.GetCount(), 3U);
    EXPECT_EQ(&table[1], &agreed[1]);
    EXPECT_EQ(table[2], L"c");
    EXPECT_EQ(agreed.size(), 2U);

    table.Begin(agreed);
    EXPECT_EQ(table.GetCount(), 2U);
    table.Clear();
    EXPECT_EQ(table.GetCount(), 0U);
}
