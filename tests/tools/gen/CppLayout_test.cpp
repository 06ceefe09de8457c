#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/cpp/Dependencies.h"
#include "tools/quiver-gen/cpp/Layout.h"

#include <gtest/gtest.h>

using namespace quiver_gen::binding;
using namespace quiver_gen::cpp;
using quiver_gen::test::CBindingMaker;
using quiver_gen::test::MakeCircularBinding;
using quiver_gen::test::MakeSampleBinding;

namespace
{

/// Headers with what they include and hold, a line each.
std::string Describe(const CLayout& layout)
{
    std::string strText;
    for (const SHeader& header : layout.GetHeaders())
    {
        strText += header.strStem + ':';
        for (const std::size_t nHeader : header.includes)
            strText += " <" + layout.GetHeaders()[nHeader].strStem + '>';
        for (const SSection& section : header.sections)
        {
            for (const SSimpleType* const pType : section.simpleTypes)
                strText += ' ' + pType->strName;
            for (const SClass* const pClass : section.classes)
                strText += ' ' + pClass->strName;
        }
        strText += '\n';
    }
    return strText;
}

std::string Describe(const SBinding& binding, ESplit eSplit)
{
    CStems stems;
    return Describe(CLayout(binding, eSplit, "All", stems));
}

TEST(CppLayout, GivesEachNamespaceAHeaderBehindThoseThatItNeeds)
{
    SBinding binding;
    MakeSampleBinding(binding);
    EXPECT_EQ(
        Describe(binding, ESplit::Namespace),
        "Common: SCurrency SSku CParty CCompany CNobody CShortNamed\n"
        "Order: <Common> SSizes SCurrencies SNames SEither SQuantity CItem CPayment COrderPair CNote CRemark CNothing "
        "COrder CAttachment\n");
}

TEST(CppLayout, OrdersNamespacesByNeedNotByDeclaration)
{
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "a", "A");
    SClass& derived = make.Class("CDerived", "derived");
    make.Namespace("urn:b", "b", "B");
    derived.pBase = &make.Class("CBase", "base");
    EXPECT_EQ(Describe(binding, ESplit::Namespace), "B: CBase\nA: <B> CDerived\n");
    EXPECT_EQ(Describe(binding, ESplit::None), "All: CBase CDerived\n");
}

TEST(CppLayout, MakesLayersOfNamespacesThatNeedEachOther)
{
    SBinding binding;
    MakeCircularBinding(binding);
    EXPECT_EQ(Describe(binding, ESplit::Namespace), "Left_layer1: SColour CBase\n"
                                                    "Right: <Left_layer1> SColours CMiddle\n"
                                                    "Left_layer2: <Left_layer1> <Right> CTop\n"
                                                    "Left: <Left_layer1> <Left_layer2>\n");
    EXPECT_EQ(Describe(binding, ESplit::None), "All: SColour CBase SColours CMiddle CTop\n");
}

TEST(CppLayout, GivesEachTypeAHeaderAndEachNamespaceOneWithAll)
{
    SBinding binding;
    MakeCircularBinding(binding);
    EXPECT_EQ(Describe(binding, ESplit::Type), "Left_SColour: SColour\n"
                                               "Left_CBase: <Left_SColour> CBase\n"
                                               "Right_SColours: <Left_SColour> SColours\n"
                                               "Right_CMiddle: <Left_CBase> <Right_SColours> CMiddle\n"
                                               "Left_CTop: <Right_CMiddle> CTop\n"
                                               "Left: <Left_SColour> <Left_CBase> <Left_CTop>\n"
                                               "Right: <Right_SColours> <Right_CMiddle>\n");
}

TEST(CppLayout, KnowsWhichClassesAreComplete)
{
    SBinding binding;
    MakeCircularBinding(binding);
    CStems stems;
    const CLayout layout(binding, ESplit::Namespace, "All", stems);
    const SClass& base = *binding.namespaces[0].classes[0];
    const SClass& top = *binding.namespaces[0].classes[1];
    const SClass& middle = *binding.namespaces[1].classes[0];
    EXPECT_TRUE(layout.IsComplete(base, base));
    EXPECT_TRUE(layout.IsComplete(base, top));
    EXPECT_TRUE(layout.IsComplete(middle, top));
    EXPECT_FALSE(layout.IsComplete(top, middle));
    EXPECT_FALSE(layout.IsComplete(top, base));
}

TEST(CppLayout, NamesFilesApartWhereCaseDoesNotCount)
{
    CStems stems;
    EXPECT_EQ(stems.Claim("Order"), "Order");
    EXPECT_EQ(stems.Claim("ORDER"), "ORDER_2");
    EXPECT_EQ(stems.Claim("order"), "order_3");
    EXPECT_EQ(stems.Claim("Order_2"), "Order_2_2");
}

TEST(CppLayout, WalksChainsOfAnyLength)
{
    constexpr int nLength = 100000;
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "a", "A");
    SNamespace& right = make.Namespace("urn:b", "b", "B");
    std::vector<SClass*> chain;
    for (int n = 0; n < nLength; ++n)
    {
        SClass& type = make.Class("C" + std::to_string(n), "c");
        type.pBase = chain.empty() ? nullptr : chain.back();
        chain.push_back(&type);
    }
    // The last one belongs to the other namespace, and so does the first.
    for (SClass* const pClass : {chain.front(), chain.back()})
    {
        pClass->pNamespace = &binding.namespaces.front();
        binding.namespaces.front().classes.push_back(pClass);
    }
    right.classes.pop_back();
    right.classes.erase(right.classes.begin());
    const std::vector<SLayer> layers = FindLayers(binding);
    ASSERT_EQ(layers.size(), 3u);
    EXPECT_EQ(layers[0].classes, std::vector<const SClass*>{chain.front()});
    EXPECT_EQ(layers[1].classes.size(), static_cast<std::size_t>(nLength) - 2);
    EXPECT_EQ(layers[2].classes, std::vector<const SClass*>{chain.back()});
}

} // namespace
