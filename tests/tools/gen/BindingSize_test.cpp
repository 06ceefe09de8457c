#include "tests/support/Bindings.h"

#include <functional>

using namespace QvTest;
using namespace quiver_gen::binding;

namespace
{

std::string Repeat(int nTimes, const std::function<std::string(int)>& part)
{
    std::string strText;
    for (int n = 0; n < nTimes; ++n)
        strText += part(n);
    return strText;
}

std::string TypeOf(const std::string& strContent)
{
    return "<xs:complexType name='t'>" + strContent + "</xs:complexType>";
}

CLoadedSchemas::CFiles FileOf(const std::string& strComponents)
{
    return {{"s.xsd", WrapSchema(strComponents)}};
}

TEST(BindingSize, TakesManyElements)
{
    const CBoundSchemas bound(
        FileOf(TypeOf("<xs:sequence>" + Repeat(20'000, [](int) { return "<xs:element name='e' type='xs:int'/>"; }) +
                      "</xs:sequence>")));
    ASSERT_TRUE(bound.IsBound()) << bound.GetMessages();
    ASSERT_EQ(bound.Get().classes.front().members.size(), 20'000u);
    EXPECT_EQ(bound.Get().classes.front().members.back().strName, "E20000");
}

TEST(BindingSize, TakesManyTypesOfOneName)
{
    const auto part = [](int n)
    {
        return "<xs:element name='f" + std::to_string(n) +
               "'><xs:complexType><xs:sequence><xs:element name='e'><xs:complexType/></xs:element></xs:sequence>"
               "</xs:complexType></xs:element>";
    };
    const CBoundSchemas bound(FileOf(TypeOf("<xs:sequence>" + Repeat(20'000, part) + "</xs:sequence>")));
    ASSERT_TRUE(bound.IsBound()) << bound.GetMessages();
    EXPECT_EQ(bound.Get().classes.size(), 40'001u);
}

TEST(BindingSize, TakesDerivationsOfDerivations)
{
    constexpr int nSteps = 400;
    const auto step = [](int n)
    {
        return "<xs:complexType name='t" + std::to_string(n + 1) + "'><xs:complexContent><xs:extension base='t" +
               std::to_string(n) +
               "'><xs:sequence><xs:element name='a' type='t0'/></xs:sequence></xs:extension>"
               "</xs:complexContent></xs:complexType>";
    };
    const CBoundSchemas bound(FileOf("<xs:complexType name='t0'><xs:choice><xs:element name='a' type='t0'/>"
                                     "<xs:element name='b' type='t0'/></xs:choice></xs:complexType>" +
                                     Repeat(nSteps, step)));
    ASSERT_TRUE(bound.IsBound()) << bound.GetMessages();
    EXPECT_EQ(bound.Get().classes.size(), nSteps + 2u) << "and one for the choice";
    EXPECT_EQ(bound.Get().namespaces.front().classes.back()->members.front().strName, "AElement399");
}

TEST(BindingSize, TakesNestedGroups)
{
    constexpr int nDepth = 150;
    const CBoundSchemas bound(
        FileOf(TypeOf(Repeat(nDepth,
                             [](int)
                             {
                                 return "<xs:sequence><xs:element name='a' type='xs:int'/><xs:choice>"
                                        "<xs:element name='b' type='xs:int'/>";
                             }) +
                      Repeat(nDepth, [](int) { return "</xs:choice></xs:sequence>"; }))));
    ASSERT_TRUE(bound.IsBound()) << bound.GetMessages();
    EXPECT_EQ(bound.Get().classes.size(), 2u * nDepth - 1) << "the innermost choice is its element";
}

TEST(BindingSize, RefusesContentThatMultiplies)
{
    const auto substitute = [](int n)
    {
        return "<xs:element name='m" + std::to_string(n) + "' type='xs:int' substitutionGroup='h'/>";
    };
    const CBoundSchemas bound(FileOf(
        "<xs:element name='h' type='xs:int'/>" + Repeat(3'000, substitute) +
        TypeOf("<xs:sequence>" + Repeat(3'000, [](int) { return "<xs:element ref='h'/>"; }) + "</xs:sequence>")));
    EXPECT_FALSE(bound.IsBound());
    EXPECT_EQ(bound.GetMessages(),
              "error: the content models are too large: groups within groups multiply beyond measure\n");
}

} // namespace
