#include "quiver/document/XmlScannedNames.h"

#include "quiver/document/XmlTreeBuilder.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <iterator>
#include <list>
#include <string>
#include <vector>

namespace
{

using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlNodeStore;
using QvXmlLib9::CXmlScannedNames;
using QvXmlLib9::CXmlTreeBuilder;
using QvXmlLib9::SScannedName;
using QvXmlLib9::SScannedPrefix;
using QvXmlLib9::SXmlName;

struct SNames
{
    explicit SNames(bool bNamespaces = true)
        : builder(store, pRoot, namespaces, nullptr)
        , names(builder, bNamespaces)
    {
    }

    /// Texts live in the list, as the bytes of a document do.
    SScannedName* Read(const std::string& strName)
    {
        texts.push_back(strName + ">");
        const char* p = texts.back().data();
        const char* const pEnd = p + texts.back().size();
        SScannedName* const pName = names.Read(p, pEnd);
        EXPECT_TRUE(pName == nullptr || (pName->svName == strName && p == pEnd - 1));
        return pName;
    }

    bool Bind(const std::string& strDeclaration, const std::string& strNamespace)
    {
        SScannedPrefix* const pPrefix = Read(strDeclaration)->pDeclared;
        return names.Bind(*pPrefix, strNamespace);
    }

    std::wstring ShowElement(const std::string& strName) { return Show(names.GetElementName(*Read(strName))); }
    std::wstring ShowAttribute(const std::string& strName) { return Show(names.GetAttributeName(*Read(strName))); }

    std::wstring Show(const SXmlName* pName)
    {
        return pName == nullptr ? L"(none)" : QvTest::ShowName(*pName->pstrNamespaceURI, pName->strLocalName);
    }

    CXmlNodeStore store{nullptr};
    CXmlElement* pRoot = nullptr;
    CXmlTreeBuilder::CNamespaces namespaces;
    CXmlTreeBuilder builder;
    CXmlScannedNames names;
    std::list<std::string> texts;
};

const char* const s_names[] = {
    "a",
    "_",
    "A-Z.0",
    "a:b",
    "exactly8",
    "morethan8",
    "sixteen_letters_",
    "more_than_sixteen_letters",
    "\xC3\xA4",
    "a\xC2\xB7",
    "\xE4\xB8\xAD:\xD7\x90",
};

const char* const s_noNames[] = {
    "",
    "-a",
    ".a",
    "0",
    ":",
    ":a",
    "a:",
    "a:b:c",
    "a:-b",
    "a:0",
    "\xC2\xB7",
    "a:\xC2\xB7",
    "\xC3\x97",
    "a\xC3\x97",
    "a\x80",
    "\xF0\x90\x90\x80",
    "a\xEF\xBF\xBE",
};

TEST(XmlScannedNames, ANameIsFoundAgainWhateverFollows)
{
    SNames names;
    for (const char* const lpcName : s_names)
    {
        SCOPED_TRACE(lpcName);
        const SScannedName* const pName = names.Read(lpcName);
        ASSERT_NE(nullptr, pName);
        const std::string strName = lpcName;
        for (std::size_t nBehind = 0; nBehind < 20; ++nBehind)
        {
            std::string strText = strName + std::string(nBehind, '>');
            EXPECT_TRUE(pName->IsAt(strText.data(), strText.data() + strText.size())) << nBehind;
            for (std::size_t n = 0; n < strName.size(); ++n)
            {
                strText[n] = static_cast<char>(strText[n] ^ 1);
                EXPECT_FALSE(pName->IsAt(strText.data(), strText.data() + strText.size())) << nBehind << ", " << n;
                strText[n] = strName[n];
            }
        }
        EXPECT_FALSE(pName->IsAt(strName.data(), strName.data() + strName.size() - 1));
    }
}

TEST(XmlScannedNames, ANameHasOneRecord)
{
    SNames names;
    std::vector<SScannedName*> records;
    for (int n = 0; n < 3; ++n)
    {
        for (const char* const lpcName : s_names)
        {
            SCOPED_TRACE(lpcName);
            SScannedName* const pName = names.Read(lpcName);
            ASSERT_NE(nullptr, pName);
            records.push_back(pName);
        }
    }
    const std::size_t nNames = std::size(s_names);
    for (std::size_t n = nNames; n < records.size(); ++n)
        EXPECT_EQ(records[n - nNames], records[n]);
}

TEST(XmlScannedNames, WhatIsNoNameHasNone)
{
    for (const char* const lpcName : s_noNames)
    {
        SCOPED_TRACE(lpcName);
        SNames names;
        EXPECT_EQ(nullptr, names.Read(lpcName));
        EXPECT_EQ(nullptr, names.Read(lpcName));
    }
}

TEST(XmlScannedNames, ALongerNameIsNotTakenForTheOneThatFollowedLastTime)
{
    for (const std::string strName : {"b", "exactly8", "morethan8", "more_than_sixteen_letters"})
    {
        SCOPED_TRACE(strName);
        SNames names;
        names.Read("a");
        SScannedName* const pName = names.Read(strName);
        names.Read("a");
        EXPECT_NE(pName, names.Read(strName + "s"));
        names.Read("a");
        EXPECT_EQ(pName, names.Read(strName));
        names.Read("a");
        std::string strOther = strName;
        strOther[strOther.size() / 2] = 'X';
        EXPECT_NE(pName, names.Read(strOther));
    }
}

TEST(XmlScannedNames, MoreNamesThanAreRememberedAreFoundAgain)
{
    SNames names;
    std::vector<SScannedName*> records;
    for (int n = 0; n < 2000; ++n)
        records.push_back(names.Read("name" + std::to_string(n)));
    for (int n = 1999; n >= 0; --n)
        EXPECT_EQ(records[static_cast<std::size_t>(n)], names.Read("name" + std::to_string(n)));
}

TEST(XmlScannedNames, PrefixesStandForWhatIsBound)
{
    SNames names;
    EXPECT_TEXT(L"a", names.ShowElement("a"));
    EXPECT_TEXT(L"(none)", names.ShowElement("x:a"));
    EXPECT_TEXT(L"(none)", names.ShowAttribute("x:a"));
    EXPECT_TEXT(L"{http://www.w3.org/XML/1998/namespace}a", names.ShowElement("xml:a"));
    ASSERT_TRUE(names.Bind("xmlns:x", "urn:1"));
    const std::size_t nOuter = names.names.GetBindingCount();
    ASSERT_TRUE(names.Bind("xmlns", "urn:2"));
    ASSERT_TRUE(names.Bind("xmlns:x", "urn:3"));
    EXPECT_TEXT(L"{urn:2}a", names.ShowElement("a"));
    EXPECT_TEXT(L"a", names.ShowAttribute("a"));
    EXPECT_TEXT(L"{urn:3}a", names.ShowElement("x:a"));
    EXPECT_TEXT(L"{urn:3}a", names.ShowAttribute("x:a"));
    ASSERT_TRUE(names.Bind("xmlns", ""));
    EXPECT_TEXT(L"a", names.ShowElement("a"));
    names.names.Unbind(nOuter);
    EXPECT_TEXT(L"a", names.ShowElement("a"));
    EXPECT_TEXT(L"{urn:1}a", names.ShowElement("x:a"));
    names.names.Unbind(0);
    EXPECT_TEXT(L"(none)", names.ShowElement("x:a"));
    // The builder keeps one list for the whole document.
    const CXmlTreeBuilder::CNamespaces expected{{L"", L""}, {L"x", L"urn:3"}};
    EXPECT_EQ(expected, names.namespaces);
}

TEST(XmlScannedNames, ADeclarationThatIsRepeatedIsListedAgainOnlyAfterAnother)
{
    SNames names;
    ASSERT_TRUE(names.Bind("xmlns:x", "urn:1"));
    ASSERT_TRUE(names.Bind("xmlns:x", "urn:2"));
    ASSERT_TRUE(names.Bind("xmlns:x", "urn:1"));
    EXPECT_TEXT(L"urn:1", names.namespaces[L"x"]);
}

struct SDeclaration
{
    const char* lpcName;
    std::string strNamespace;
};

const SDeclaration s_refused[] = {
    {"xmlns:x", ""},
    {"xmlns:xml", "http://www.w3.org/XML/1998/namespace"},
    {"xmlns:xml", "urn:x"},
    {"xmlns:xmlns", "urn:x"},
    {"xmlns:xmlns", "http://www.w3.org/2000/xmlns/"},
    {"xmlns:x", "http://www.w3.org/XML/1998/namespace"},
    {"xmlns", "http://www.w3.org/XML/1998/namespace"},
    {"xmlns:x", "http://www.w3.org/2000/xmlns/"},
    {"xmlns", "http://www.w3.org/2000/xmlns/"},
    {"xmlns:x", "urn:|"},
    {"xmlns", std::string(257, 'u')},
};

TEST(XmlScannedNames, OnlyPlainDeclarationsAreTaken)
{
    for (const SDeclaration& row : s_refused)
    {
        SCOPED_TRACE(row.strNamespace);
        SNames names;
        EXPECT_FALSE(names.Bind(row.lpcName, row.strNamespace));
    }
    SNames names;
    EXPECT_TRUE(names.Bind("xmlns", std::string(256, 'u')));
}

TEST(XmlScannedNames, WithoutNamespacesAColonIsALetter)
{
    SNames names(false);
    for (const char* const lpcName : {"a", ":", "a:b:c", ":a", "xmlns", "xmlns:x"})
    {
        SScannedName* const pName = names.Read(lpcName);
        ASSERT_NE(nullptr, pName);
        EXPECT_EQ(nullptr, pName->pDeclared);
        EXPECT_TEXT(std::wstring(lpcName, lpcName + std::char_traits<char>::length(lpcName)),
                    names.ShowAttribute(lpcName));
    }
    EXPECT_EQ(nullptr, names.Read("-"));
}

} // namespace
