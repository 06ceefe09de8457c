// The classes of docs/generated_code.md, taken from the page when the tests are configured.
#include "generated_code_snippets.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

const wchar_t s_lpctXml[] = L"<item xmlns=\"urn:example:order\" part=\"872-AA\"><product>Lawnmower</product>"
                            L"<quantity>3</quantity><note>later</note></item>";

template <class TItem>
std::wstring WrittenBack(const wchar_t* lpctXml)
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:order");
    TItem item;
    item.FromXml(lpctXml, context);
    return item.ToXml(false, false, EOLType_LF, context);
}

} // namespace

TEST(GeneratedCodePage, TheClassWrittenByHandReadsAndWrites)
{
    EXPECT_EQ(WrittenBack<CItem>(s_lpctXml), s_lpctXml);
}

TEST(GeneratedCodePage, TheGeneratedClassDoesTheSame)
{
    EXPECT_EQ(WrittenBack<generated::CItem>(s_lpctXml), s_lpctXml);
}

TEST(GeneratedCodePage, BothCheckFacetsInTheirSetters)
{
    CItem item;
    EXPECT_THROW(item.SetQuantity(1000), CQvException);
    EXPECT_EQ(item.GetQuantity(), 0);
    generated::CItem second;
    EXPECT_THROW(second.SetQuantity(1000), CQvException);
    EXPECT_EQ(second.GetQuantity(), 0);
}

TEST(GeneratedCodePage, OnlyTheGeneratedClassTakesAnEmptyNumberForNone)
{
    const wchar_t lpctXml[] = L"<item xmlns=\"urn:example:order\" part=\"1\"><product>x</product><quantity/></item>";
    EXPECT_THROW(WrittenBack<generated::CItem>(lpctXml), CQvException);
}
