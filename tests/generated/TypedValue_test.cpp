#include "quiver/generated/TypedValue.h"

#include "quiver/QvXmlLib.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace
{

constexpr wchar_t s_lpctUri[] = L"urn:goods";

struct SSku
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).MaxLength(3);
        return s_type;
    }
};

const SNamedTypes& Types()
{
    static constexpr SNamedType s_rows[] = {{s_lpctUri, L"Sku", &SSku::Type}};
    static constexpr SNamedTypes s_types{s_rows, 1};
    return s_types;
}

using CValue = CTypedValue<&Types>;

std::wstring Write(const CXmlObjectBase& object, const CXmlSerializationContext& context = {})
{
    return object.ToXml(false, false, EOLType_LF, context);
}

std::wstring Refusal(const wchar_t* lpctDocument)
{
    try
    {
        CValue(L"v").FromXml(lpctDocument, {});
    }
    catch (const CQvException& exception)
    {
        return exception.GetFullMessage();
    }
    return L"none";
}

} // namespace

TEST(TypedValue, SaysItsTypeAndIsCheckedByIt)
{
    CValue value(L"v");
    value.SetValue(L" as it stands ");
    EXPECT_EQ(Write(value), L"<v> as it stands </v>");
    EXPECT_EQ(value.GetTypeName(), L"");

    value.SetValue(L" 3.50 ", L"decimal");
    EXPECT_EQ(value.GetValue(), L"3.50");
    EXPECT_EQ(value.GetTypeName(), L"decimal");
    EXPECT_EQ(value.GetTypeNamespace(), g_lpctXsdNamespace);
    const std::wstring strWritten = Write(value);
    EXPECT_NE(strWritten.find(L"xmlns:xs=\"http://www.w3.org/2001/XMLSchema\""), std::wstring::npos) << "declared";
    EXPECT_NE(strWritten.find(L":type=\"xs:decimal\">3.50</v>"), std::wstring::npos);

    EXPECT_THROW(value.SetValue(L"x"), CQvInvalidValueException);
    EXPECT_THROW(value.SetValue(L"long", L"Sku", s_lpctUri), CQvInvalidValueException);
    EXPECT_THROW(value.SetValue(L"1", L"Sku"), CQvInvalidParamException) << "of another namespace";
    EXPECT_EQ(Write(value), strWritten) << "what is refused changes nothing";

    value.SetValue(L"AB1", L"Sku", s_lpctUri);
    EXPECT_EQ(value.GetTypeName(), L"Sku");
    EXPECT_EQ(value.GetTypeNamespace(), s_lpctUri);
    value.ClearType();
    EXPECT_EQ(Write(value), L"<v>AB1</v>");
}

TEST(TypedValue, GivesWayToPrefixesOfTheContext)
{
    CValue value(L"v");
    value.SetValue(L"1", L"int");
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add(L"xs", L"urn:other");
    context.GetNamespaceAliases().Add(L"d", g_lpctXsdNamespace);
    EXPECT_NE(Write(value, context).find(L":type=\"d:int\">1</v>"), std::wstring::npos);
}

TEST(TypedValue, IsReadAnew)
{
    CValue value(L"v");
    value.SetValue(L"1", L"int");
    value.FromXml(L"<v>x</v>", {});
    EXPECT_EQ(value.GetTypeName(), L"") << "a second read says no type";
    EXPECT_EQ(Write(value), L"<v>x</v>");
}

TEST(TypedValue, HasTheTextThatItsTypeMakesOfIt)
{
    const std::wstring strStart = L"<v xmlns:i='http://www.w3.org/2001/XMLSchema-instance' "
                                  L"xmlns:s='http://www.w3.org/2001/XMLSchema' xmlns:g='urn:goods' ";
    const struct
    {
        const wchar_t* lpctTypeAndText;
        const wchar_t* lpctValue;
    } cases[] = {
        {L">\n a  b </v>", L"\n a  b "},
        {L"i:type='s:string'>\n a  b </v>", L"\n a  b "},
        {L"i:type='s:normalizedString'>\n a  b </v>", L"  a  b "},
        {L"i:type='s:token'>\n a  b </v>", L"a b"},
        {L"i:type='s:int'> 1 </v>", L"1"},
        {L"i:type='g:Sku'> A1 </v>", L"A1"},
        {L"i:type='s:QName'> g:x </v>", L"g:x"},
    };
    for (const auto& c : cases)
    {
        CValue value(L"v");
        value.FromXml((strStart + c.lpctTypeAndText).c_str(), {});
        EXPECT_EQ(value.GetValue(), c.lpctValue) << ::testing::PrintToString(std::wstring(c.lpctTypeAndText));
    }
}

TEST(TypedValue, SaysWhatIsWrong)
{
    const std::wstring strStart = L"<v xmlns:i='http://www.w3.org/2001/XMLSchema-instance' "
                                  L"xmlns:s='http://www.w3.org/2001/XMLSchema' xmlns:g='urn:goods' ";
    EXPECT_EQ(Refusal((strStart + L"i:type='s:int'>x</v>").c_str()),
              L"Failed to process the element [v]\nInvalid Value for v [x]\nThe value is no xs:int");
    EXPECT_EQ(Refusal((strStart + L"i:type='g:Box'>x</v>").c_str()),
              L"Failed to process the element [v]\nFailed to find a suitable substitution element for [v]");
    EXPECT_EQ(Refusal((strStart + L"i:type='g:Sku'>ABCD</v>").c_str()),
              L"Failed to process the element [v]\nInvalid Value for v [ABCD]\nThe value is longer than 3");
}

TEST(TypedValue, MayBeNil)
{
    CNillableTypedValue<&Types> value(L"v");
    value.SetNil(true);
    value.SetValue(L"1");
    EXPECT_FALSE(value.IsNil());
    value.SetNil(true);
    value.SetValue(L"1", L"int");
    EXPECT_FALSE(value.IsNil());
    value.SetNil(true);
    const std::wstring strWritten = Write(value);
    EXPECT_NE(strWritten.find(L":type=\"xs:int\""), std::wstring::npos) << "a nil element goes on to say its type";
    CNillableTypedValue<> other(L"v");
    other.FromXml(strWritten.c_str(), {});
    EXPECT_TRUE(other.IsNil());
    EXPECT_EQ(other.GetTypeName(), L"int");
}
