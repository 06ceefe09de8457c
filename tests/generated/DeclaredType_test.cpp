#include "quiver/generated/DeclaredType.h"

#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace QvXmlLib9;

TEST(DeclaredType, IsWhatTheAttributeSays)
{
    struct SCase
    {
        const wchar_t* lpctAttribute; ///< as it stands in the document
        bool bSaid;
        bool bPrefix;
        const wchar_t* lpctPrefix;
        const wchar_t* lpctName;
        std::optional<std::wstring> uri;
    };
    const SCase cases[] = {
        {L"", false, false, L"", L"", L"urn:default"},
        {L"i:type=''", false, false, L"", L"", L"urn:default"},
        {L"i:type=' '", false, false, L"", L"", L"urn:default"},
        {L"i:type='p:Circle'", true, true, L"p", L"Circle", L"urn:p"},
        {L"i:type='&#x9;p:Circle&#xA;'", true, true, L"p", L"Circle", L"urn:p"},
        {L"i:type='Circle'", true, false, L"", L"Circle", L"urn:default"},
        {L"i:type='Circle' xmlns=''", true, false, L"", L"Circle", L""},
        {L"i:type='Circle' xmlns='urn:here'", true, false, L"", L"Circle", L"urn:here"},
        {L"i:type='q:Circle'", true, true, L"q", L"Circle", std::nullopt},
        {L"i:type='p:'", true, true, L"p", L"", L"urn:p"},
        {L"i:type=':Circle'", true, true, L"", L"Circle", L"urn:default"},
        {L"i:type='p: Circle'", true, true, L"p", L" Circle", L"urn:p"},
        {L"i:type='p:q:Circle'", true, true, L"p", L"q:Circle", L"urn:p"},
        {L"type='p:Circle'", false, false, L"", L"", L"urn:default"},
    };
    for (const SCase& c : cases)
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(c.lpctAttribute)));
        const CXmlSerializationContext context;
        CXmlDocument document(context);
        document.LoadXml(
            (L"<a xmlns='urn:default' xmlns:p='urn:p' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'><b " +
             std::wstring(c.lpctAttribute) + L"/></a>")
                .c_str());
        const SDeclaredType type(*document.GetDocumentElement()->GetFirstElement());
        EXPECT_EQ(type.bSaid, c.bSaid);
        EXPECT_EQ(type.bPrefix, c.bPrefix);
        EXPECT_EQ(type.strPrefix, c.lpctPrefix);
        EXPECT_EQ(type.strName, c.lpctName);
        EXPECT_EQ(type.pUri != nullptr ? std::optional(*type.pUri) : std::nullopt, c.uri);
    }
}
