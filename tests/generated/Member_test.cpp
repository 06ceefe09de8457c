#include "quiver/generated/Member.h"

#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

/// Reads a text into a member as a record does.
template <class TMember>
void Read(TMember& member, const wchar_t* lpctText)
{
    QvVariant value;
    value.SetString(lpctText);
    member.Access(false, value, L"x");
}

template <class TMember>
std::wstring Written(TMember& member)
{
    QvVariant value;
    member.Access(true, value, L"x");
    return value.IsValid() ? value.ToString(nullptr) : L"unset";
}

} // namespace

TEST(Member, KeepsARequiredValueValid)
{
    CRequired<SQuantity> member;
    EXPECT_FALSE(member.IsSet());
    EXPECT_EQ(member.Get(), 0);
    EXPECT_EQ(Written(member), L"unset");
    member.Set(5, L"x");
    EXPECT_EQ(MessagesOf([&] { member.Set(100, L"x"); }), L"Invalid Value for x [100]\nThe value is not below 100");
    EXPECT_EQ(MessagesOf([&] { Read(member, L"0"); }), L"Invalid Value for x [0]\nThe value is below 1");
    EXPECT_EQ(member.Get(), 5);
    Read(member, L" 7 ");
    EXPECT_EQ(Written(member), L"7");
    member.Reset();
    EXPECT_FALSE(member.IsSet());
}

TEST(Member, HasTheTextOfAnElement)
{
    CRequired<xs::Double> member;
    QvVariant value;
    EXPECT_EQ(MessagesOf([&] { member.AccessText(true, value, L"x"); }), L"The required value [x] has not been set");
    value.SetString(L"1e2");
    member.AccessText(false, value, L"x");
    member.AccessText(true, value, L"x");
    EXPECT_EQ(value.GetString(), L"100");
}

TEST(Member, MayLackAnOptionalValue)
{
    COptional<xs::Token> member;
    EXPECT_EQ(member.Get(), std::nullopt);
    EXPECT_EQ(Written(member), L"unset");
    member.Set(L" a  b ", L"x");
    EXPECT_EQ(member.Get(), L"a b");
    Read(member, L" c ");
    EXPECT_EQ(Written(member), L"c");
    member.Set(std::nullopt, L"x");
    EXPECT_FALSE(member.IsSet());
    Read(member, L"");
    EXPECT_EQ(member.Get(), L"");
    QvVariant none;
    member.Access(false, none, L"x");
    EXPECT_FALSE(member.IsSet());

    COptional<xs::NCName> name;
    name.Set(L"a", L"x");
    EXPECT_THROW(name.Check(L"a:b", L"x"), CQvInvalidValueException);
    EXPECT_THROW(name.Set(L"a:b", L"x"), CQvInvalidValueException);
    EXPECT_NO_THROW(name.Check(std::nullopt, L"x"));
    EXPECT_EQ(name.Get(), L"a");
}

TEST(Member, GivesAnEmptyElementItsDefault)
{
    CRules rules;
    Read(rules.m_Size, L"");
    EXPECT_EQ(rules.m_Size.Get(), 5);
    EXPECT_EQ(MessagesOf([&] { Read(rules.m_Size, L" "); }), L"Invalid Value for x []\nThe value is no xs:int");
    Read(rules.m_Size, L"6");
    EXPECT_EQ(rules.m_Size.Get(), 6);
}

TEST(Member, HoldsAFixedValueAndNoOther)
{
    CRules rules;
    Read(rules.m_Unit, L"");
    EXPECT_EQ(rules.m_Unit.Get(), L"kg");
    Read(rules.m_Unit, L" kg ");
    EXPECT_EQ(MessagesOf([&] { Read(rules.m_Unit, L"g"); }), L"Invalid Value for x [g]\nThe value is fixed to kg");
    EXPECT_EQ(MessagesOf([&] { rules.m_Unit.Set(L"g", L"x"); }), L"Invalid Value for x [g]\nThe value is fixed to kg");
    EXPECT_EQ(rules.m_Unit.Get(), L"kg");
}

TEST(Member, FallsBackToTheDefaultOfAnAttribute)
{
    CRules rules;
    EXPECT_FALSE(rules.m_Lang.IsSet());
    EXPECT_EQ(rules.m_Lang.Get(), L"en");
    EXPECT_EQ(Written(rules.m_Lang), L"en");
    rules.m_Lang.Set(L"de", L"x");
    EXPECT_EQ(Written(rules.m_Lang), L"de");
    rules.m_Lang.Set(std::nullopt, L"x");
    EXPECT_EQ(rules.m_Lang.Get(), L"en");
    Read(rules.m_Lang, L"");
    EXPECT_EQ(rules.m_Lang.Get(), L"") << "an attribute that is there and empty has no default";
    Read(rules.m_Version, L"1.00");
    EXPECT_EQ(rules.m_Version.Get(), CDecimal(L"1"));
    EXPECT_EQ(MessagesOf([&] { Read(rules.m_Version, L"1.1"); }),
              L"Invalid Value for x [1.1]\nThe value is fixed to 1.0");
}

TEST(Member, MakesARequiredObjectWhenItIsAskedFor)
{
    CRequiredObject<CPrice> member;
    EXPECT_FALSE(member.IsSet());
    const CSmartPtr<CPrice> spFirst = member.Get(L"price");
    EXPECT_EQ(spFirst->GetElementName(), L"price");
    EXPECT_EQ(member.Get(L"price"), spFirst);
    EXPECT_EQ(MessagesOf([&] { member.Set(nullptr, L"price"); }),
              L"The Property [price] is mandatory, it may node be NULL");
    const CSmartPtr<CPrice> spOther = new CPrice(L"cost");
    EXPECT_EQ(MessagesOf([&] { member.Set(spOther, L"price"); }),
              L"This property requires an element with the name price the element being set has the element name cost");
    EXPECT_EQ(member.Get(L"price"), spFirst);
}

TEST(Member, HandsARequiredObjectOverAsAValue)
{
    CRequiredObject<CPrice> member;
    QvVariant value;
    member.Access(true, value, L"price");
    EXPECT_EQ(value.XmlObjectPtr(), member.Get(L"price"));
    const CSmartPtr<CPrice> spOther = new CPrice;
    value.SetXmlObject(spOther);
    member.Access(false, value, L"price");
    EXPECT_EQ(member.Get(L"price"), spOther);
}

TEST(Member, MayLackAnOptionalObject)
{
    COptionalObject<CPrice> member;
    EXPECT_EQ(member.Get(), nullptr);
    const CSmartPtr<CPrice> spPrice = new CPrice;
    member.Set(spPrice, L"price");
    EXPECT_EQ(member.Get(), spPrice);
    EXPECT_THROW(member.Set(spPrice, L"cost"), CQvInvalidParamException);
    EXPECT_EQ(member.Get(), spPrice);
    member.Set(nullptr, L"price");
    EXPECT_FALSE(member.IsSet());
}

TEST(Member, TakesAnElementOfAnyNameForAWildcard)
{
    COptionalObject<CElement> member;
    const CSmartPtr<CElement> spElement = new CElement(L"x", L"urn:other");
    member.Set(spElement, L"AnyElement");
    EXPECT_EQ(member.Get(), spElement);
    member.Set(nullptr, L"AnyElement");
    EXPECT_FALSE(member.IsSet());
}

TEST(Member, TakesWhatTheSubstitutionGroupAllows)
{
    CPolymorphicObject<CShape> member;
    const CSmartPtr<CShape> spCircle = new CCircle;
    member.Set(spCircle, L"shape");
    EXPECT_EQ(member.Get(), spCircle);
    const CSmartPtr<CShape> spTriangle = new CShape(L"triangle");
    EXPECT_THROW(member.Set(spTriangle, L"shape"), CQvInvalidParamException);
    EXPECT_EQ(member.Get(), spCircle);
    member.Set(nullptr, L"shape");
    EXPECT_FALSE(member.IsSet());
}

TEST(Member, LetsACollectionGo)
{
    static constexpr SRepeatedElement s_element{L"n", L"", 0, -1};
    CSmartPtr<CValueCol<xs::Int>> spKept;
    {
        const CRepeated<CValueCol<xs::Int>> member;
        spKept = member.Get(s_element);
        EXPECT_EQ(member.Get(s_element), spKept);
    }
    spKept->Add(1);
    EXPECT_EQ(spKept->GetCount(), 1);
}

constexpr wchar_t s_lpctSeven[] = L"7";

TEST(Member, ChecksWhatARestrictionNarrows)
{
    const auto check = [](auto fnCheck, const QvVariant& value)
    {
        return MessagesOf([&] { fnCheck(value, L"x"); });
    };
    QvVariant value;
    EXPECT_EQ(check(&CheckRestricted<xs::Byte>, value), L"done") << "nothing is there";
    value.SetString(L" 127 ");
    EXPECT_EQ(check(&CheckRestricted<xs::Byte>, value), L"done");
    value.SetI4(127);
    EXPECT_EQ(check(&CheckRestricted<xs::Byte>, value), L"done");
    value.SetI4(128);
    EXPECT_NE(check(&CheckRestricted<xs::Byte>, value), L"done");
    value.SetString(L"128");
    EXPECT_NE(check(&CheckRestricted<xs::Byte>, value), L"done");
    EXPECT_NE(check(&CheckRestricted<xs::Int, SFixed<s_lpctSeven>>, value), L"done");
    value.SetString(L"+7");
    EXPECT_EQ(check(&CheckRestricted<xs::Int, SFixed<s_lpctSeven>>, value), L"done");
    value.SetString(L"");
    EXPECT_EQ(check(&CheckRestricted<xs::Int, SFixed<s_lpctSeven>>, value), L"done") << "an empty element has it";
}
