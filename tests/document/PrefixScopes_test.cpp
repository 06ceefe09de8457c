#include "quiver/document/PrefixScopes.h"

#include "quiver/document/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;

namespace
{

CXmlElement* Step(CXmlElement* pElement, const std::wstring& strPath)
{
    for (const wchar_t c : strPath)
        pElement = c == L'/' ? pElement->GetFirstElement() : pElement->GetNextSiblingElement();
    return pElement;
}

} // namespace

TEST(PrefixScopes, TellWhatTheNearestDeclarationSays)
{
    CXmlDocument document;
    document.LoadXml(L"<r xmlns='d' xmlns:a='1'><x xmlns:a='2'><y/><z xmlns:a='1' xmlns=''><w/></z></x><v xmlns:b='3'/>"
                     L"<u/></r>");
    const struct
    {
        const wchar_t* lpctPath; ///< "/" to the first child, "-" to the next sibling
        const wchar_t* lpctPrefix;
        const wchar_t* lpctUri;
    } cases[] = {{L"", L"a", L"1"},
                 {L"/", L"a", L"2"},
                 {L"//", L"a", L"2"},
                 {L"//-", L"a", L"1"},
                 {L"//-/", L"a", L"1"},
                 {L"//-/", L"", L""},
                 {L"//", L"", L"d"},
                 {L"/--", L"a", L"1"},
                 {L"/--", L"", L"d"},
                 {L"/-", L"b", L"3"},
                 {L"//-/", L"xml", L"http://www.w3.org/XML/1998/namespace"}};
    for (const auto& c : cases)
    {
        const std::wstring* const pUri = Step(document.GetDocumentElement(), c.lpctPath)->FindPrefix(c.lpctPrefix);
        ASSERT_NE(pUri, nullptr);
        EXPECT_EQ(*pUri, c.lpctUri) << ::testing::PrintToString(c.lpctPath) << ::testing::PrintToString(c.lpctPrefix);
    }
    EXPECT_EQ(document.GetDocumentElement()->FindPrefix(L"c"), nullptr);
}

TEST(PrefixScopes, AreToldApartWhereADeclarationIsRepeated)
{
    const struct
    {
        const wchar_t* lpctDocument;
        const wchar_t* lpctPath;
        const wchar_t* lpctPrefix;
        const wchar_t* lpctUri;
    } cases[] = {{L"<r xmlns:a='1'><x xmlns:a='2'/><y xmlns:a='2'/></r>", L"/-", L"a", L"2"},
                 {L"<r><x xmlns:a='1'/><y xmlns:a='2'/><z xmlns:a='2'/></r>", L"/--", L"a", L"2"},
                 {L"<r><x xmlns:a='1'/><y xmlns:a='2'/><z xmlns:a='1'/></r>", L"/--", L"a", L"1"},
                 {L"<r><x xmlns:a='1'/><y xmlns:a='1'/><z xmlns:a='1'/></r>", L"/--", L"a", L"1"},
                 {L"<r xmlns:a='1'><x xmlns:a='2'><y xmlns:a='2'/></x><z xmlns:a='2'/></r>", L"/-", L"a", L"2"},
                 {L"<r xmlns:a='1'><x xmlns:a='2'><y xmlns:a='2'/></x><z/></r>", L"/-", L"a", L"1"},
                 {L"<r><x xmlns='1'/><y xmlns='1'/></r>", L"/-", L"", L"1"},
                 {L"<r><x xmlns='1'/><y/></r>", L"/-", L"", L""},
                 {L"<r xmlns='1'><x xmlns=''/><y xmlns=''/></r>", L"/-", L"", L""},
                 {L"<r xmlns='1'><x xmlns='1'/><y xmlns='1'/></r>", L"/-", L"", L"1"}};
    for (const auto& c : cases)
    {
        // A document type makes it one for expat.
        for (const std::wstring& strAhead : {std::wstring(), std::wstring(L"<!DOCTYPE r>")})
        {
            const std::wstring strDocument = strAhead + c.lpctDocument;
            SCOPED_TRACE(::testing::PrintToString(strDocument));
            CXmlDocument document;
            document.LoadXml(strDocument.c_str());
            const std::wstring* const pUri = Step(document.GetDocumentElement(), c.lpctPath)->FindPrefix(c.lpctPrefix);
            ASSERT_NE(pUri, nullptr);
            EXPECT_EQ(*pUri, c.lpctUri);
        }
    }
}

TEST(PrefixScopes, CountTheFirstDeclarationWhereElementsMayGo)
{
    CXmlDocument document([](CXmlElement* pElement) { return pElement->GetLocalName() == L"x"; });
    document.LoadXml(L"<r xmlns:a='1'><x xmlns:a='2'/><y xmlns:a='3'/></r>");
    EXPECT_EQ(*document.GetDocumentElement()->GetFirstElement()->FindPrefix(L"a"), L"1");
}
