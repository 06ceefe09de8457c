#include "quiver/generated/Wildcard.h"

#include "quiver/collections/Element.h"
#include "quiver/foundation/Exceptions.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;

namespace
{

constexpr const wchar_t* s_uris[] = {L"urn:a", L""};

} // namespace

TEST(Wildcard, LetsNamespacesThrough)
{
    const struct
    {
        SWildcard wildcard;
        bool bListed;
        bool bNone;
        bool bOther;
    } cases[] = {{{}, true, true, true},
                 {{SWildcard::Not, s_uris, 2}, false, false, true},
                 {{SWildcard::Not, s_uris, 1}, false, true, true},
                 {{SWildcard::List, s_uris, 2}, true, true, false},
                 {{SWildcard::List, s_uris, 1}, true, false, false},
                 {{SWildcard::List, nullptr, 0}, false, false, false}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(::testing::Message() << "kind " << c.wildcard.eKind << ", " << c.wildcard.nUris << " namespaces");
        EXPECT_EQ(c.wildcard.Allows(L"urn:a"), c.bListed);
        EXPECT_EQ(c.wildcard.Allows(L""), c.bNone);
        EXPECT_EQ(c.wildcard.Allows(L"urn:b"), c.bOther);
    }
}

TEST(Wildcard, LetsOneNameThrough)
{
    const SWildcard wildcard{SWildcard::List, s_uris, 1, 0, 1, L"x"};
    EXPECT_TRUE(wildcard.Allows(L"urn:a", L"x"));
    EXPECT_FALSE(wildcard.Allows(L"urn:a", L"y"));
    EXPECT_FALSE(wildcard.Allows(L"urn:b", L"x"));
}

TEST(Wildcard, RefusesToWriteWhatItWouldNotRead)
{
    const SWildcard wildcard{SWildcard::Not, s_uris, 1};
    const CSmartPtr<CElement> spRight = new CElement(L"x", L"urn:b");
    EXPECT_NO_THROW(wildcard.Throw_IfForbidden(*spRight));
    const CSmartPtr<CElement> spWrong = new CElement(L"x", L"urn:a");
    try
    {
        wildcard.Throw_IfForbidden(*spWrong);
        FAIL() << "an element of a forbidden namespace passed";
    }
    catch (const CQvValidationException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"The element [x] of the namespace [urn:a] may not stand here");
    }
}
