#include "quiver/foundation/ShortText.h"

#include "tests/support/Expect.h"

using namespace QvXmlLib9;

namespace
{

const std::wstring s_texts[] = {L"", L"a", std::wstring(15, L'b'), std::wstring(16, L'c'), std::wstring(1000, L'd')};

void ExpectText(const std::wstring& strExpected, const CShortText& text)
{
    EXPECT_TEXT(strExpected, std::wstring(text.View()));
    EXPECT_TEXT(strExpected, std::wstring(text.c_str()));
}

} // namespace

TEST(ShortText, IsEmptyAtFirst)
{
    ExpectText(L"", CShortText());
}

TEST(ShortText, TakesOnAnyTextAfterAnyOther)
{
    for (const std::wstring& strFirst : s_texts)
    {
        for (const std::wstring& strSecond : s_texts)
        {
            CShortText text;
            text.Assign(strFirst);
            ExpectText(strFirst, text);
            text.Assign(strSecond);
            ExpectText(strSecond, text);
        }
    }
}

TEST(ShortText, CopiesAreIndependent)
{
    for (const std::wstring& strText : s_texts)
    {
        CShortText source;
        source.Assign(strText);
        CShortText copy(source);
        CShortText assigned;
        assigned.Assign(L"something longer than what fits in place");
        assigned = source;
        source.Assign(L"changed");
        ExpectText(strText, copy);
        ExpectText(strText, assigned);
    }
}

TEST(ShortText, MayBeAssignedToItselfAndToAPartOfItself)
{
    for (const wchar_t* lpctText : {L"short", L"a text that is too long to be held in place"})
    {
        CShortText text;
        text.Assign(lpctText);
        const CShortText& same = text;
        text = same;
        ExpectText(lpctText, text);
        text.Assign(text.View().substr(2));
        ExpectText(std::wstring(lpctText).substr(2), text);
    }
}
