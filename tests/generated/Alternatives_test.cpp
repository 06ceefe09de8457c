#include "quiver/generated/Alternatives.h"

#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

#include <typeinfo>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

constexpr wchar_t s_lpctOther[] = L"urn:other";

const SAlternatives& Roots()
{
    static constexpr SAlternative s_roots[] = {
        {true, s_lpctNamespace, L"price", &CreateObject<CPrice>},
        {true, s_lpctNamespace, L"address", &CreateObject<CAddress>, &CAddress::Alternatives},
        {true, s_lpctNamespace, L"sender", nullptr, &CAddress::Alternatives},
        {true, s_lpctOther, L"price", &CreateForeignRoot<CPrice, s_lpctOther>},
        {true, s_lpctNamespace, L"day", &CreateForeignRoot<CNillable<xs::Date>, s_lpctNamespace>}};
    static constexpr SAlternatives s_all{s_roots, 5};
    return s_all;
}

/// The object for a root, with its tree.
struct SRoot
{
    explicit SRoot(const std::wstring& strXml)
        : document(CXmlSerializationContext::GetDefaultContext())
    {
        document.LoadXml(strXml.c_str());
        spObject = CreateRoot(document.GetDocumentElement(), Roots());
    }
    CXmlDocument document;
    CSmartPtr<CXmlObjectBase> spObject;
};

template <class TClass>
bool Makes(const std::wstring& strXml)
{
    SRoot root(strXml);
    CXmlObjectBase* const pObject = root.spObject;
    return pObject != nullptr && dynamic_cast<TClass*>(pObject) != nullptr &&
           pObject->GetElementName() == root.document.GetDocumentElement()->GetLocalName();
}

/// One function for two classes.
CSmartPtr<CXmlObjectBase> CreateNumbered(int nClass, const wchar_t* lpctElementName)
{
    return nClass == 1 ? CreateObject<CForeignAddress>(0, lpctElementName) : CreateObject<CAddress>(0, lpctElementName);
}

} // namespace

TEST(Alternatives, FindRootsByNameNamespaceAndType)
{
    EXPECT_TRUE(Makes<CPrice>(Document(L"price", L"", L"")));
    EXPECT_TRUE(Makes<CPrice>(L"<o:price xmlns:o='urn:other'/>"));
    EXPECT_TRUE(Makes<CNillable<xs::Date>>(Document(L"day", L"", L"")));
    EXPECT_TRUE(Makes<CAddress>(Document(L"address", L"", L"")));
    EXPECT_FALSE(Makes<CForeignAddress>(Document(L"address", L"", L"")));
    EXPECT_TRUE(Makes<CForeignAddress>(Document(L"address", L"xsi:type='s:ForeignAddress'", L"")));
    EXPECT_TRUE(Makes<CForeignAddress>(Document(L"address", L"xsi:type=' s:ForeignAddress '", L"")));
    EXPECT_TRUE(Makes<CForeignAddress>(Document(L"sender", L"xsi:type='ForeignAddress'", L"")));
    for (const std::wstring& strXml : {Document(L"unknown", L"", L""), std::wstring(L"<price/>")})
        EXPECT_EQ(SRoot(strXml).spObject, nullptr) << ::testing::PrintToString(strXml);
    for (const std::wstring& strXml :
         {Document(L"sender", L"", L""), Document(L"address", L"xsi:type='s:Nowhere'", L""),
          Document(L"address", L"xsi:type='s: ForeignAddress'", L""), Document(L"address", L"xsi:type='s:'", L""),
          std::wstring(L"<p:sender xmlns:p='") + s_lpctNamespace +
              L"' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='ForeignAddress'/>"})
        EXPECT_THROW(SRoot{strXml}, CQvValidationException) << ::testing::PrintToString(strXml);
}

TEST(Alternatives, WriteTheTypeOfARootThatIsNotTheDeclaredOne)
{
    const SRoot root(Document(L"address", L"xsi:type='s:ForeignAddress'", L"<city>Rom</city><country>I</country>"));
    root.spObject->FromXml(
        Document(L"address", L"xsi:type='s:ForeignAddress'", L"<city>Rom</city><country>I</country>").c_str(),
        CXmlSerializationContext::GetDefaultContext());
    const std::wstring strXml = Write(*root.spObject);
    EXPECT_NE(strXml.find(L"ForeignAddress\""), std::wstring::npos) << ::testing::PrintToString(strXml);
    const SRoot plain(Document(L"address", L"xsi:type='s:Address'", L""));
    static_cast<CAddress&>(*plain.spObject).SetCity(L"Bonn");
    EXPECT_EQ(Write(*plain.spObject), L"<address xmlns=\"urn:sample\"><city>Bonn</city></address>");
}

TEST(Alternatives, WriteAForeignRootInItsOwnNamespace)
{
    const SRoot root(L"<o:price xmlns:o='urn:other'/>");
    static_cast<CPrice&>(*root.spObject).SetValue(2);
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(s_lpctOther);
    EXPECT_EQ(root.spObject->ToXml(false, false, EOLType_LF, context),
              L"<price xmlns=\"urn:other\" tag=\"dark blue\">2</price>");
}

TEST(Alternatives, FindElementsOfASubstitutionGroup)
{
    EXPECT_NE(FindElement(CShape::Alternatives(), L"circle", s_lpctNamespace), nullptr);
    EXPECT_EQ(FindElement(CShape::Alternatives(), L"circle", L"urn:twin"), nullptr);
    EXPECT_EQ(FindElement(CShape::Alternatives(), L"Circle", s_lpctNamespace), nullptr);

    CDrawing drawing;
    drawing.FromXml(Document(L"drawing", L"",
                             L"<title>t</title><circle area='3'/><middle>m</middle><o:square/>"
                             L"<o:square xsi:type='s:Circle'/><circle/>")
                        .c_str(),
                    CXmlSerializationContext::GetDefaultContext());
    EXPECT_NE(dynamic_cast<CCircle*>(static_cast<CShape*>(drawing.m_Frame.Get())), nullptr);
    const CSmartPtr<CPolymorphicCol<CShape>> spShapes = drawing.m_Shapes.Get(CDrawing::s_Shape);
    ASSERT_EQ(spShapes->GetCount(), 3);
    EXPECT_EQ(dynamic_cast<CCircle*>(static_cast<CShape*>(spShapes->Item(0))), nullptr);
    EXPECT_NE(dynamic_cast<CCircle*>(static_cast<CShape*>(spShapes->Item(1))), nullptr);

    const std::wstring strXml = Write(drawing);
    CDrawing second;
    second.FromXml(strXml.c_str(), CXmlSerializationContext::GetDefaultContext());
    EXPECT_EQ(Write(second), strXml);
    EXPECT_NE(strXml.find(L":square"), std::wstring::npos) << ::testing::PrintToString(strXml);
}

TEST(Alternatives, TellNamesOfTwoNamespacesApart)
{
    CDrawing drawing;
    drawing.FromXml(Document(L"drawing", L"", L"<title>t</title><o:circle/><middle>m</middle><circle/>").c_str(),
                    CXmlSerializationContext::GetDefaultContext());
    EXPECT_EQ(dynamic_cast<CCircle*>(static_cast<CShape*>(drawing.m_Frame.Get())), nullptr);
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add(L"o", L"urn:other");
    const std::wstring strXml = Write(drawing, context);
    EXPECT_NE(strXml.find(L"<o:circle/><middle>m</middle><circle/>"), std::wstring::npos)
        << ::testing::PrintToString(strXml);
}

TEST(Alternatives, RefuseWhatMayNotStandThere)
{
    const struct
    {
        std::wstring strContent;
        const wchar_t* lpctEnd;
    } cases[] = {{L"<title>t</title><shape/>", L"Failed to find a suitable substitution element for [shape]"},
                 {L"<title>t</title><square/>", L"Failed to find a suitable substitution element for [shape]"},
                 {L"<title>t</title>", L"Failed to find a suitable substitution element for [shape]"},
                 {L"<title>t</title><circle xsi:type='s:Nowhere'/>",
                  L"Failed to find a suitable substitution element for [circle]"},
                 {L"<title>t</title><circle/><middle>m</middle><t:circle/>",
                  L"The unexpected element [circle] remains un processed"}};
    for (const auto& c : cases)
    {
        const std::wstring strRefusal = Refusal<CDrawing>(Document(L"drawing", L"", c.strContent));
        EXPECT_TRUE(EndsWith(strRefusal, c.lpctEnd)) << ::testing::PrintToString(strRefusal);
    }
    CXmlSerializationContext context;
    context.SetIgnoreNamespaces(true);
    EXPECT_EQ(Refusal<CDrawing>(Document(L"drawing", L"", L"<title>t</title><square/><middle>m</middle><o:circle/>"),
                                context),
              L"done");
}

TEST(Alternatives, AreLookedThroughForThePlace)
{
    const SPlace address(L"address", s_lpctNamespace, CAddress::Alternatives(), &CreateObject<CAddress>);
    const CSmartPtr<CAddress> spPlain = new CAddress;
    const CSmartPtr<CForeignAddress> spForeign = new CForeignAddress;
    EXPECT_STREQ(address.Prepare(*spPlain), s_lpctNamespace);
    EXPECT_STREQ(address.Prepare(*spForeign), s_lpctNamespace);
    const SPlace shape(L"shape", s_lpctNamespace, CShape::Alternatives(), &CreateObject<CShape>);
    const CSmartPtr<CShape> spSquare = new CShape(L"square");
    EXPECT_STREQ(shape.Prepare(*spSquare), s_lpctOther);
}

TEST(Alternatives, TellClassesOfOneFunctionApartByNumber)
{
    const SCreator plain(&CreateNumbered, 0);
    const SCreator foreign(&CreateNumbered, 1);
    EXPECT_TRUE(plain == SCreator(&CreateNumbered));
    EXPECT_TRUE(plain != foreign);
    EXPECT_FALSE(SCreator(nullptr));
    const SAlternative types[] = {{false, s_lpctNamespace, L"Address", plain},
                                  {false, s_lpctNamespace, L"ForeignAddress", foreign}};
    const SAlternatives all{types, 2};
    const SAlternative roots[] = {{true, s_lpctNamespace, L"address", plain, nullptr, &all}};
    CXmlDocument document(CXmlSerializationContext::GetDefaultContext());
    const auto IsForeign = [&](const wchar_t* lpctAttributes)
    {
        document.LoadXml(Document(L"address", lpctAttributes, L"").c_str());
        const CSmartPtr<CXmlObjectBase> spObject = CreateRoot(document.GetDocumentElement(), {roots, 1});
        return dynamic_cast<CForeignAddress*>(&*spObject) != nullptr;
    };
    EXPECT_TRUE(IsForeign(L"xsi:type='s:ForeignAddress'"));
    EXPECT_FALSE(IsForeign(L"xsi:type='s:Address'"));
    EXPECT_FALSE(IsForeign(L""));
    EXPECT_TRUE(SPlace(L"address", s_lpctNamespace, all, foreign).declared == foreign);
    EXPECT_FALSE(SPlace(L"address", s_lpctNamespace, all, {&CreateNumbered, 2}).declared);
}

TEST(Alternatives, RefuseRootsThatTheSchemaDoesNotHave)
{
    CXmlDocument document(CXmlSerializationContext::GetDefaultContext());
    document.LoadXml(L"<o:day xmlns:o='urn:other'/>");
    EXPECT_FALSE(IsRoot(*document.GetDocumentElement(), Roots()));
    EXPECT_TRUE(CreateRoot(document.GetDocumentElement(), Roots()) == nullptr);
    try
    {
        CreateKnownRoot(document.GetDocumentElement(), Roots());
        ADD_FAILURE() << "a class for an element of another namespace";
    }
    catch (const CQvValidationException& exception)
    {
        EXPECT_EQ(exception.GetFullMessage(), L"There is no class for the element [day] of the namespace [urn:other]");
    }
    document.LoadXml((std::wstring(L"<o:day xmlns:o='") + s_lpctNamespace + L"'/>").c_str());
    EXPECT_TRUE(IsRoot(*document.GetDocumentElement(), Roots()));
    EXPECT_TRUE(CreateKnownRoot(document.GetDocumentElement(), Roots()) != nullptr);
}
