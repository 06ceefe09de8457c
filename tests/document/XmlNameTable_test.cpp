#include "quiver/document/XmlNameTable.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

using QvXmlLib9::CXmlNameTable;
using QvXmlLib9::SXmlName;

struct SRow
{
    const char* lpcName;
    const wchar_t* lpctNamespaceURI;
    const wchar_t* lpctLocalName;
};

const SRow s_rows[] = {
    {"a", L"", L"a"},
    {"urn:x|a", L"urn:x", L"a"},
    {"urn:x|b|c", L"urn:x", L"b|c"},
    {"|a", L"", L"a"},
    {"a|", L"a", L""},
    {"", L"", L""},
    {"urn:\xC3\xA4|\xE2\x82\xAC", L"urn:\xE4", L"\x20AC"},
    {"urn:x|\xF0\x9F\x98\x80", L"urn:x", L"\xD83D\xDE00"},
    {"urn:x|aa", L"urn:x", L"aa"},
    {"urn:xa|a", L"urn:xa", L"a"},
    {"urn|x:a", L"urn", L"x:a"},
    {"urn:x", L"", L"urn:x"},
};

TEST(XmlNameTable, ANameIsSplitAtItsFirstSeparator)
{
    CXmlNameTable names(nullptr);
    // Forwards and backwards twice, so that every name follows upon several others.
    for (int nRound = 0; nRound < 4; ++nRound)
    {
        for (std::size_t i = 0; i < std::size(s_rows); ++i)
        {
            const SRow& row = s_rows[nRound % 2 == 0 ? i : std::size(s_rows) - 1 - i];
            SCOPED_TRACE(row.lpcName);
            const SXmlName& name = names.Find(row.lpcName);
            EXPECT_TEXT(row.lpctNamespaceURI, *name.pstrNamespaceURI);
            EXPECT_TEXT(row.lpctLocalName, name.strLocalName);
        }
    }
}

TEST(XmlNameTable, ANameIsNotTakenForTheOneThatFollowedBefore)
{
    // Names whose difference is that of one character, in both directions and at the ends.
    const char* const followers[] = {"b", "a", "c", "b", "bb", "b", "ba", "bb", "urn:x|b", "urn:x|a", "urn:y|b", "b"};
    for (const char* const lpcFirst : followers)
    {
        for (const char* const lpcSecond : followers)
        {
            CXmlNameTable names(nullptr);
            for (const char* const lpcFollower : {lpcFirst, lpcSecond})
            {
                names.Find("start");
                const SXmlName& name = names.Find(lpcFollower);
                const std::string strFollower = lpcFollower;
                const std::string strLocalName = strFollower.substr(strFollower.find('|') + 1);
                EXPECT_TEXT(std::wstring(strLocalName.begin(), strLocalName.end()), name.strLocalName);
            }
        }
    }
}

TEST(XmlNameTable, NamesAreMadeForThoseWhoKnowThem)
{
    CXmlNameTable names(nullptr);
    const std::wstring& strNamespaceURI = names.MakeNamespace("urn:\xC3\xA4");
    EXPECT_TEXT(L"urn:\xE4", strNamespaceURI);
    const SXmlName& name = names.Make(strNamespaceURI, "\xE2\x82\xAC|");
    const SXmlName& other = names.Make(strNamespaceURI, "\xE2\x82\xAC|");
    EXPECT_NE(&name, &other);
    for (const SXmlName* const pName : {&name, &other})
    {
        EXPECT_EQ(&strNamespaceURI, pName->pstrNamespaceURI);
        EXPECT_TEXT(L"\x20AC|", pName->strLocalName);
    }
}

TEST(XmlNameTable, EqualNamesShareTheirRecordAndTheirNamespace)
{
    CXmlNameTable names(nullptr);
    const SXmlName& name = names.Find("urn:x|a");
    const SXmlName& other = names.Find("urn:x|b");
    EXPECT_EQ(&name, &names.Find("urn:x|a"));
    EXPECT_EQ(&name, &names.Find("urn:x|a"));
    EXPECT_NE(&name, &other);
    EXPECT_EQ(name.pstrNamespaceURI, other.pstrNamespaceURI);
    EXPECT_EQ(&names.Find(L"urn:x", L"a"), &names.Find(L"urn:x", L"a"));
}

TEST(XmlNameTable, ANameIsFoundWhateverStandsAroundIt)
{
    const std::string strAll = "abcdefghijklmnopqrstuvwx";
    for (std::size_t nLength = 1; nLength <= strAll.size(); ++nLength)
    {
        SCOPED_TRACE(nLength);
        CXmlNameTable names(nullptr);
        std::set<const SXmlName*> records;
        for (const wchar_t cAround : {L'1', L'2', L'3'})
        {
            const std::wstring strName(strAll.begin(), strAll.begin() + static_cast<std::ptrdiff_t>(nLength));
            const std::wstring strText = cAround + strName + cAround;
            // Another name comes between, so that the name is looked for each time.
            names.Find(L"urn:x", L"other");
            records.insert(&names.Find(L"urn:x", std::wstring_view(strText).substr(1, nLength)));
        }
        EXPECT_EQ(1u, records.size());
        EXPECT_EQ(nLength, (*records.begin())->strLocalName.size());
    }
}

TEST(XmlNameTable, NamesGivenAsTextAreToldApart)
{
    CXmlNameTable names(nullptr);
    EXPECT_TEXT(L"a", names.Find(L"urn:x", L"a").strLocalName);
    EXPECT_TEXT(L"urn:y", *names.Find(L"urn:y", L"a").pstrNamespaceURI);
    EXPECT_TEXT(L"", *names.Find(L"", L"a").pstrNamespaceURI);
    EXPECT_TEXT(L"\xD83D\xDE00", names.Find(L"", L"\U0001F600").strLocalName);
    EXPECT_TEXT(L"\xD83D", names.Find(L"", L"\xD83D").strLocalName);
}

TEST(XmlNameTable, RecordsStayWhereTheyAre)
{
    CXmlNameTable names(nullptr);
    const SXmlName& first = names.Find("urn:x|first");
    std::set<const SXmlName*> records;
    for (int i = 0; i < 10000; ++i)
        records.insert(&names.Find(("urn:" + std::to_string(i % 7) + "|name" + std::to_string(i)).c_str()));
    EXPECT_EQ(10000u, records.size());
    EXPECT_EQ(&first, &names.Find("urn:x|first"));
    EXPECT_TEXT(L"first", first.strLocalName);
}

} // namespace
