#include "quiver/fastinfoset/FastInfosetContext.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <utility>

using namespace QvXmlLib9;

namespace
{

using Encoding = std::pair<unsigned, unsigned>;

Encoding EncodingOf(const CFastInfosetContext& context, int nType)
{
    const auto encoding = context.GetEncoding(static_cast<ItemType>(nType));
    return {encoding.m_dwType, encoding.m_dwType == 0 ? 0 : encoding.m_dwIndex};
}

} // namespace

TEST(FastInfosetContext, Defaults)
{
    CFastInfosetContext context;
    EXPECT_EQ(0, context.GetDefaultStringEncoding());
    EXPECT_EQ(6u, context.GetAttributeMaxAddLength());
    EXPECT_EQ(6u, context.GetElementMaxAddLength());
    EXPECT_FALSE(context.GetUseGeneratedVocabulary());
    EXPECT_TEXT(L"", context.GetExternalVocabularyURI());
    for (int nType = 0; nType < 29; ++nType)
        EXPECT_EQ(Encoding(0, 0), EncodingOf(context, nType)) << nType;
    const CFIVocabulary::CFIStringTable& prefixes = context.GetVocabulary()->GetPrefixNamesTable();
    EXPECT_EQ(1, std::distance(prefixes.begin(), prefixes.end()));
}

TEST(FastInfosetContext, SuggestedValues)
{
    const struct
    {
        ItemType eType;
        Encoding encoding;
    } rows[] = {
        {ItemType_Invalid, {0, 0}},
        {ItemType_hexBinary, {2, 1}},
        {ItemType_base64Binary, {2, 2}},
        {ItemType_i1, {2, 3}},
        {ItemType_i2, {2, 3}},
        {ItemType_i4, {2, 4}},
        {ItemType_i8, {2, 5}},
        {ItemType_ui1, {2, 3}},
        {ItemType_ui2, {2, 4}},
        {ItemType_ui4, {2, 5}},
        {ItemType_ui8, {2, 5}},
        {ItemType_r4, {2, 7}},
        {ItemType_r8, {2, 8}},
        {ItemType_duration, {1, 2}},
        {ItemType_yearMonth, {1, 2}},
        {ItemType_monthDay, {1, 2}},
        {ItemType_year, {1, 2}},
        {ItemType_month, {1, 2}},
        {ItemType_day, {1, 2}},
        {ItemType_date, {1, 2}},
        {ItemType_datetime, {1, 2}},
        {ItemType_time, {1, 2}},
        {ItemType_char, {0, 0}},
        {ItemType_string, {0, 0}},
        {ItemType_boolean, {2, 6}},
        {ItemType_decimal, {1, 1}},
        {ItemType_integer, {1, 1}},
        {ItemType_XmlObjectBase, {0, 0}},
        {ItemType_XmlCollection, {0, 0}},
    };
    ASSERT_EQ(29u, std::size(rows));
    CFastInfosetContext context;
    context.SetSuggestedValues();
    for (const auto& row : rows)
        EXPECT_EQ(row.encoding, EncodingOf(context, row.eType)) << row.eType;
}

TEST(FastInfosetContext, SuggestedValuesTouchNothingElse)
{
    CFastInfosetContext context;
    context.SetEncoding(ItemType_string, {2, 10});
    context.SetAttributeMaxAddLength(1);
    context.SetElementMaxAddLength(2);
    context.SetSuggestedValues();
    EXPECT_EQ(Encoding(2, 10), EncodingOf(context, ItemType_string));
    EXPECT_EQ(1u, context.GetAttributeMaxAddLength());
    EXPECT_EQ(2u, context.GetElementMaxAddLength());
}

TEST(FastInfosetContext, HoldsWhatIsSet)
{
    CFastInfosetContext context;
    context.SetEncoding(ItemType_i4, {1, 2});
    context.SetAttributeMaxAddLength(0xFFFFFFFF);
    context.SetElementMaxAddLength(0);
    context.SetUseGeneratedVocabulary(true);
    context.SetExternalVocabularyURI(L"urn:v");
    EXPECT_EQ(Encoding(1, 2), EncodingOf(context, ItemType_i4));
    EXPECT_EQ(Encoding(0, 0), EncodingOf(context, ItemType_i2));
    EXPECT_EQ(0xFFFFFFFFu, context.GetAttributeMaxAddLength());
    EXPECT_EQ(0u, context.GetElementMaxAddLength());
    EXPECT_TRUE(context.GetUseGeneratedVocabulary());
    EXPECT_TEXT(L"urn:v", context.GetExternalVocabularyURI());
}

TEST(FastInfosetContext, ACopyHasAVocabularyOfItsOwn)
{
    CFastInfosetContext context;
    context.GetVocabulary()->AddLocalName(L"a");
    context.SetElementMaxAddLength(9);
    CFastInfosetContext copy(context);
    CFastInfosetContext assigned;
    assigned = context;
    context.GetVocabulary()->AddLocalName(L"b");
    for (const CFastInfosetContext* pContext : {&copy, &assigned})
    {
        const CFIVocabulary::CFIStringTable& names = pContext->GetVocabulary()->GetLocalNamesTable();
        ASSERT_EQ(1, std::distance(names.begin(), names.end()));
        EXPECT_TEXT(L"a", *names.begin());
        EXPECT_EQ(9u, pContext->GetElementMaxAddLength());
    }
}

#if defined(QUIVER_DIAGNOSTICS)
TEST(FastInfosetContextDeathTest, ANumberThatIsNoItemTypeStopsAtAnAssertion)
{
    CFastInfosetContext context;
    EXPECT_DEATH(context.GetEncoding(static_cast<ItemType>(29)), "nIndex < s_nItemTypes");
    EXPECT_DEATH(context.SetEncoding(static_cast<ItemType>(-1), {}), "nIndex < s_nItemTypes");
}
#else
TEST(FastInfosetContext, ANumberThatIsNoItemTypeIsPlainTextAndCannotBeSet)
{
    CFastInfosetContext context;
    for (const int nType : {29, -1, 1000000})
    {
        context.SetEncoding(static_cast<ItemType>(nType), {2, 1});
        EXPECT_EQ(Encoding(0, 0), EncodingOf(context, nType));
    }
}
#endif
