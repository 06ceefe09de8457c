#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/cpp/Classes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace quiver_gen::binding;
using namespace quiver_gen::cpp;
using quiver_gen::test::CBindingMaker;
using testing::HasSubstr;
using testing::Not;

namespace
{

/// A namespace `order`; classes are printed as if all others preceded them, but for those named as later ones.
class CppClasses : public testing::Test
{
protected:
    CppClasses()
    {
        m_make.Namespace("urn:order", "order", "Order");
        m_pInt = &m_make.Builtin("xs::Int", EValue::I4);
        m_pString = &m_make.Builtin("xs::String", EValue::String);
    }

    SPlace GetPlace(const CScope& scope, const CNameTable& names, const CUsage& usage) const
    {
        return {scope,
                names,
                usage,
                [this](const SClass& type) { return &type != m_pLater; },
                [](const SClass&) { return true; },
                m_bUtf8};
    }

    std::string Declare(const SClass& type) const
    {
        const CNameTable names(m_binding);
        const CUsage usage(m_binding);
        const CScope scope(names, "order", false);
        return DeclareClass(type, GetPlace(scope, names, usage));
    }

    std::string Define(const SClass& type) const
    {
        const CNameTable names(m_binding);
        const CUsage usage(m_binding);
        const CScope scope(names, "order", true);
        CUris uris(m_binding, "urn:order");
        const SPlace place = GetPlace(scope, names, usage);
        return DefineClass(type, place, place, "::order::s_knownToCFactory", uris);
    }

    SBinding m_binding;
    CBindingMaker m_make{m_binding};
    SSimpleType* m_pInt;
    SSimpleType* m_pString;
    const SClass* m_pLater = nullptr;
    bool m_bUtf8 = false;
};

TEST_F(CppClasses, PrintsAClassOfValues)
{
    SClass& item = m_make.Class("CItem", "item");
    item.documentation = {"What is ordered."};
    m_make.Value(item, "Product", "product", *m_pString).documentation = {"Its name."};
    m_make.Value(item, "Quantity", "quantity", *m_pInt);
    m_make.Value(item, "Note", "note", *m_pString, ECardinality::Optional);
    m_make.Attribute(item, "Part", "part", *m_pString, true);
    EXPECT_EQ(Declare(item), R"(/// What is ordered.
class CItem : public QvXmlLib9::CGenerated<CItem>
{
public:
    explicit CItem(const wchar_t* lpctElementName = L"item");

    /// Its name.
    const std::wstring& GetProduct() const { return m_Product.Get(); }
    void SetProduct(const std::wstring& value) { m_Product.Set(value, L"product"); }

    int GetQuantity() const { return m_Quantity.Get(); }
    void SetQuantity(int value) { m_Quantity.Set(value, L"quantity"); }

    const std::optional<std::wstring>& GetNote() const { return m_Note.Get(); }
    void SetNote(const std::optional<std::wstring>& value) { m_Note.Set(value, L"note"); }

    const std::wstring& GetPart() const { return m_Part.Get(); }
    void SetPart(const std::wstring& value) { m_Part.Set(value, L"part"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    QvXmlLib9::CRequired<QvXmlLib9::xs::String> m_Product;
    QvXmlLib9::CRequired<QvXmlLib9::xs::Int> m_Quantity;
    QvXmlLib9::COptional<QvXmlLib9::xs::String> m_Note;
    QvXmlLib9::CRequired<QvXmlLib9::xs::String> m_Part;
};
)");
    EXPECT_EQ(Define(item), R"(CItem::CItem(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CItem")
    , CGenerated(lpctElementName)
{
}

void CItem::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Sequence, ElementType_Element, L"item", s_lpctNamespace);
    description.Element(m_Product, L"product", s_lpctNamespace);
    description.Element(m_Quantity, L"quantity", s_lpctNamespace);
    description.Element(m_Note, L"note", s_lpctNamespace);
    description.Attribute(m_Part, L"part", L"");
}
)");
}

TEST_F(CppClasses, PrintsAClassOfNothing)
{
    SClass& nothing = m_make.Class("CNothing", "nothing");
    EXPECT_EQ(Declare(nothing), R"(class CNothing : public QvXmlLib9::CGenerated<CNothing>
{
public:
    explicit CNothing(const wchar_t* lpctElementName = L"nothing");

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;
};
)");
    nothing.bNillable = true;
    EXPECT_THAT(Declare(nothing), HasSubstr("CGenerated<CNothing>, public QvXmlLib9::CNillableState\n"));
    EXPECT_THAT(Declare(nothing), HasSubstr("    void Init() override;\n"));
    EXPECT_THAT(Define(nothing), HasSubstr("void CNothing::Init()\n{\n    CGenerated::Init();\n    ResetNil();\n}\n"));
    nothing.strElement.clear();
    EXPECT_THAT(Declare(nothing), HasSubstr("    explicit CNothing(const wchar_t* lpctElementName);\n"));
}

TEST_F(CppClasses, PrintsAChoice)
{
    SClass& choice = m_make.Class("CPayment", "payment");
    choice.eGroup = SClass::EGroup::Choice;
    choice.bEmptiable = false;
    SClass& card = m_make.Class("CCard", "card");
    m_make.Value(choice, "Cash", "cash", *m_pInt, ECardinality::Optional);
    m_make.Object(choice, "Card", "card", card, ECardinality::Optional);
    m_make.Value(choice, "Coin", "coin", *m_pInt, ECardinality::Repeated);
    m_make.Attribute(choice, "Paid", "paid", *m_pInt, true);
    const std::string strDeclared = Declare(choice);
    for (const char* const lpcPart : {
             "class CPayment : public QvXmlLib9::CGeneratedChoice<CPayment>\n",
             "void SetCash(const std::optional<int>& value) { m_choice.Set(m_Cash, value, L\"cash\"); }",
             "CSmartPtr<CCard> GetCard() const { return m_Card.Get(); }",
             "void SetCard(CCard* pValue) { m_choice.Set(m_Card, pValue, L\"card\"); }",
             "CSmartPtr<QvXmlLib9::CValueCol<QvXmlLib9::xs::Int>> GetCoin() const { return m_choice.Get(m_Coin, "
             "s_Coin); }",
             "void SetPaid(int value) { m_Paid.Set(value, L\"paid\"); }",
             "    QvXmlLib9::COptional<QvXmlLib9::xs::Int> m_Cash;\n",
             "    QvXmlLib9::COptionalObject<CCard> m_Card;\n",
         })
        EXPECT_THAT(strDeclared, HasSubstr(lpcPart));
    const std::string strDefined = Define(choice);
    for (const char* const lpcPart : {
             "    , CGeneratedChoice(lpctElementName)\n",
             "    description.Class(GroupType_Choice, ElementType_Element, L\"payment\", s_lpctNamespace);\n"
             "    description.RequireChoice();\n",
             "    description.Element(m_Cash, L\"cash\", s_lpctNamespace);\n",
             "    description.Element(m_Card, L\"card\", s_lpctNamespace);\n",
             "    description.Element(m_Coin, s_Coin);\n",
             "    description.Attribute(m_Paid, L\"paid\", L\"\");\n",
         })
        EXPECT_THAT(strDefined, HasSubstr(lpcPart));
    choice.bEmptiable = true;
    EXPECT_THAT(Define(choice), Not(HasSubstr("RequireChoice")));
}

TEST_F(CppClasses, LeavesTheStateOfARestrictedChoiceToItsBase)
{
    SClass& choice = m_make.Class("CPayment", "payment");
    choice.eGroup = SClass::EGroup::Choice;
    SClass& narrow = m_make.Class("CCashPayment", "payment");
    narrow.eGroup = SClass::EGroup::Choice;
    narrow.pBase = &choice;
    narrow.bRestriction = true;
    EXPECT_THAT(Declare(narrow),
                HasSubstr("class CCashPayment : public QvXmlLib9::CGenerated<CCashPayment, CPayment>\n"));
    EXPECT_THAT(Define(narrow), HasSubstr("    , CGenerated(lpctElementName)\n"));
    choice.eGroup = SClass::EGroup::Sequence;
    EXPECT_THAT(Declare(narrow),
                HasSubstr("class CCashPayment : public QvXmlLib9::CGeneratedChoice<CCashPayment, CPayment>\n"));
}

TEST_F(CppClasses, PutsAMemberBehindThoseOfTheBase)
{
    SClass& base = m_make.Class("CParty", "party");
    m_make.Value(base, "Name", "name", *m_pString);
    SClass& between = m_make.Class("CBetween", "party");
    between.pBase = &base;
    SClass& company = m_make.Class("CCompany", "party");
    company.pBase = &between;
    m_make.Value(company, "Vat", "vat", *m_pString);
    EXPECT_THAT(Declare(between), HasSubstr("class CBetween : public QvXmlLib9::CGenerated<CBetween, CParty>\n"));
    EXPECT_THAT(Declare(between), Not(HasSubstr("private")));
    const std::string strDefined = Define(company);
    for (const char* const lpcPart : {
             "    CBetween::Describe(description);\n"
             "    description.Class(GroupType_Sequence, ElementType_Element, L\"party\", s_lpctNamespace);\n"
             "    description.TypeName(L\"Company\", s_lpctNamespace);\n"
             "    description.Element(m_Vat, L\"vat\", s_lpctNamespace);\n",
         })
        EXPECT_THAT(strDefined, HasSubstr(lpcPart));
}

TEST_F(CppClasses, DescribesARestrictionAnewWithTheMembersOfTheBase)
{
    SClass& base = m_make.Class("CParty", "party");
    m_make.Value(base, "Name", "name", *m_pString, ECardinality::Optional);
    base.bAnyAttribute = true;
    SClass& narrow = m_make.Class("CNamed", "party");
    narrow.pBase = &base;
    narrow.bRestriction = true;
    m_make.Value(narrow, "Name", "name", *m_pString).bInherited = true;
    m_make.Attribute(narrow, "Id", "id", *m_pString, true);
    narrow.bAnyAttribute = true;
    narrow.eAnyAttribute = SMember::ENamespaces::Not;
    narrow.anyAttributeUris = {"urn:order", ""};
    const std::string strDeclared = Declare(narrow);
    EXPECT_THAT(strDeclared, Not(HasSubstr("GetName")));
    EXPECT_THAT(strDeclared, Not(HasSubstr("m_AnyAttribute")));
    // The restriction describes the members of the base, so it has to reach them.
    EXPECT_THAT(Declare(base), Not(HasSubstr("private:")));
    EXPECT_THAT(strDeclared, HasSubstr("    static const QvXmlLib9::SWildcard s_AnyAttribute;\n"));
    const std::string strDefined = Define(narrow);
    for (const char* const lpcPart : {
             "static constexpr const wchar_t* s_urisCNamedAnyAttribute[] = {s_lpctNamespace, L\"\"};\n"
             "const SWildcard CNamed::s_AnyAttribute{SWildcard::Not, s_urisCNamedAnyAttribute, 2, 0, -1};\n",
             "    CParty::Describe(description);\n    description.Restrict();\n    description.Class(",
             "    description.Element(L\"name\", s_lpctNamespace, description.Inherited(&m_Name), "
             "xs::String::Type());\n"
             "    description.RestrictValues<xs::String>(&m_Name);\n",
             "    description.Attribute(m_Id, L\"id\", L\"\");\n",
             "    description.AnyAttribute(description.Inherited(&m_AnyAttribute), s_AnyAttribute);\n",
         })
        EXPECT_THAT(strDefined, HasSubstr(lpcPart));
}

TEST_F(CppClasses, HoldsDefaultAndFixedValuesByRules)
{
    SClass& item = m_make.Class("CItem", "item");
    const SValueRule byDefault{SValueRule::EKind::Default, "5 \"five\""};
    const SValueRule fixed{SValueRule::EKind::Fixed, "7"};
    m_make.Value(item, "A", "a", *m_pInt).value = byDefault;
    m_make.Value(item, "B", "b", *m_pInt, ECardinality::Optional).value = fixed;
    m_make.Attribute(item, "C", "c", *m_pInt, true).value = fixed;
    m_make.Attribute(item, "D", "d", *m_pInt, false).value = byDefault;
    SMember& nillable = m_make.Value(item, "E", "e", *m_pInt);
    nillable.eMember = EMember::NillableValue;
    nillable.value = byDefault;
    const std::string strDeclared = Declare(item);
    for (const char* const lpcPart : {
             "{\n    static constexpr wchar_t s_lpctDefaultE[] = L\"5 \\\"five\\\"\";\n\npublic:\n",
             "    int GetD() const { return m_D.Get(); }\n"
             "    void SetD(const std::optional<int>& value) { m_D.Set(value, L\"d\"); }\n"
             "    bool HasD() const { return m_D.IsSet(); }\n",
             "private:\n"
             "    static constexpr wchar_t s_lpctDefaultA[] = L\"5 \\\"five\\\"\";\n"
             "    static constexpr wchar_t s_lpctFixedB[] = L\"7\";\n"
             "    static constexpr wchar_t s_lpctFixedC[] = L\"7\";\n"
             "    static constexpr wchar_t s_lpctDefaultD[] = L\"5 \\\"five\\\"\";\n"
             "\n"
             "    QvXmlLib9::CRequired<QvXmlLib9::xs::Int, QvXmlLib9::SDefault<s_lpctDefaultA>> m_A;\n"
             "    QvXmlLib9::COptional<QvXmlLib9::xs::Int, QvXmlLib9::SFixed<s_lpctFixedB>> m_B;\n",
             "    QvXmlLib9::CRequired<QvXmlLib9::xs::Int, QvXmlLib9::SFixedAttribute<s_lpctFixedC>> m_C;\n"
             "    QvXmlLib9::CDefaulted<QvXmlLib9::xs::Int, QvXmlLib9::SDefault<s_lpctDefaultD>> m_D;\n",
             "    QvXmlLib9::CRequiredObject<QvXmlLib9::CNillable<QvXmlLib9::xs::Int, "
             "QvXmlLib9::SDefault<s_lpctDefaultE>>> m_E;\n",
         })
        EXPECT_THAT(strDeclared, HasSubstr(lpcPart));
    EXPECT_THAT(Define(item), HasSubstr("    description.Attribute(m_D, L\"d\", L\"\");\n"));
    EXPECT_THAT(Define(item), HasSubstr("    description.Element(m_E, L\"e\", s_lpctNamespace);\n"));
}

TEST_F(CppClasses, BreaksTheTextOfALongDefault)
{
    SClass& item = m_make.Class("CItem", "item");
    m_make.Attribute(item, "A", "a", *m_pString, false).value = {SValueRule::EKind::Default, std::string(150, 'x')};
    EXPECT_THAT(Declare(item), HasSubstr("    static constexpr wchar_t s_lpctDefaultA[] =\n        L\"" +
                                         std::string(108, 'x') + "\"\n        L\"" + std::string(42, 'x') + "\";\n"));
}

/// One kind of object member, and the calls that stand for it.
struct SObjectCase
{
    EMember eMember;
    ECardinality eCardinality;
    bool bPolymorphic;
    const char* lpcStorage;
    const char* lpcGetter;
    const char* lpcDescription;
};

TEST_F(CppClasses, PrintsEachKindOfObject)
{
    constexpr auto eObject = EMember::Object;
    constexpr auto eGroup = EMember::Group;
    constexpr auto eNillable = EMember::NillableValue;
    constexpr auto eRequired = ECardinality::Required;
    constexpr auto eOptional = ECardinality::Optional;
    constexpr auto eRepeated = ECardinality::Repeated;
    constexpr SObjectCase s_cases[] = {
        {eObject, eRequired, false, "CRequiredObject<CPart>",
         "CSmartPtr<CPart> GetX() const { return m_X.Get(L\"x\"); }", "Element(m_X, L\"x\", s_lpctNamespace);"},
        {eObject, eOptional, false, "COptionalObject<CPart>", "CSmartPtr<CPart> GetX() const { return m_X.Get(); }",
         "Element(m_X, L\"x\", s_lpctNamespace);"},
        {eObject, eRepeated, false, "CRepeated<CPartCol>", "CSmartPtr<CPartCol> GetX() const { return m_X.Get(s_X); }",
         "Element(m_X, s_X);"},
        {eObject, eRequired, true, "CPolymorphicObject<CPart>", "CSmartPtr<CPart> GetX() const { return m_X.Get(); }",
         "Element(m_X, L\"x\", s_lpctNamespace);"},
        {eObject, eOptional, true, "CPolymorphicObject<CPart>", "CSmartPtr<CPart> GetX() const { return m_X.Get(); }",
         "OptionalElement(m_X, L\"x\", s_lpctNamespace);"},
        {eObject, eRepeated, true, "CRepeated<QvXmlLib9::CPolymorphicCol<CPart>>",
         "CSmartPtr<QvXmlLib9::CPolymorphicCol<CPart>> GetX() const { return m_X.Get(s_X); }", "Element(m_X, s_X);"},
        {eGroup, eRequired, false, "CRequiredObject<CPart>",
         "CSmartPtr<CPart> GetX() const { return m_X.Get(L\"x\"); }", "Group(m_X, L\"x\", true);"},
        {eGroup, eOptional, false, "COptionalObject<CPart>", "CSmartPtr<CPart> GetX() const { return m_X.Get(); }",
         "Group(m_X, L\"x\");"},
        {eGroup, eRepeated, false, "CRepeated<QvXmlLib9::CGroupCol<CPart>>",
         "CSmartPtr<QvXmlLib9::CGroupCol<CPart>> GetX() const { return m_X.Get(s_X); }", "Group(m_X, s_X);"},
        {eNillable, eRequired, false, "CRequiredObject<QvXmlLib9::CNillable<QvXmlLib9::xs::Int>>",
         "CSmartPtr<QvXmlLib9::CNillable<QvXmlLib9::xs::Int>> GetX() const { return m_X.Get(L\"x\"); }",
         "Element(m_X, L\"x\", s_lpctNamespace);"},
        {eNillable, eOptional, false, "COptionalObject<QvXmlLib9::CNillable<QvXmlLib9::xs::Int>>",
         "CSmartPtr<QvXmlLib9::CNillable<QvXmlLib9::xs::Int>> GetX() const { return m_X.Get(); }",
         "Element(m_X, L\"x\", s_lpctNamespace);"},
        {eNillable, eRepeated, false, "CRepeated<QvXmlLib9::CObjectCol<QvXmlLib9::CNillable<QvXmlLib9::xs::Int>>>",
         "GetX() const", "Element(m_X, s_X);"},
    };
    SClass& part = m_make.Class("CPart", "part");
    SClass& owner = m_make.Class("COwner", "owner");
    for (const SObjectCase& one : s_cases)
    {
        SCOPED_TRACE(one.lpcDescription);
        owner.members.clear();
        SMember& member = m_make.Object(owner, "X", "x", part, one.eCardinality);
        member.eMember = one.eMember;
        member.bPolymorphic = one.bPolymorphic;
        if (one.eMember == eNillable)
        {
            member.pClass = nullptr;
            member.pType = m_pInt;
        }
        EXPECT_THAT(Declare(owner), HasSubstr("    QvXmlLib9::" + std::string(one.lpcStorage) + " m_X;\n"));
        EXPECT_THAT(Declare(owner), HasSubstr(one.lpcGetter));
        EXPECT_THAT(Define(owner), HasSubstr("    description." + std::string(one.lpcDescription) + '\n'));
    }
}

TEST_F(CppClasses, LeavesToTheSourceWhatNeedsALaterClass)
{
    SClass& owner = m_make.Class("COwner", "owner");
    SClass& part = m_make.Class("CPart", "part");
    m_make.Object(owner, "Part", "part", part);
    m_make.Object(owner, "Parts", "parts", part, ECardinality::Repeated);
    m_pLater = &part;
    const std::string strDeclared = Declare(owner);
    EXPECT_THAT(strDeclared, HasSubstr("    CSmartPtr<CPart> GetPart() const;\n    void SetPart(CPart* pValue);\n"));
    EXPECT_THAT(strDeclared, HasSubstr("    CSmartPtr<CPartCol> GetParts() const;\n"));
    EXPECT_THAT(Define(owner), HasSubstr(R"(
CSmartPtr<CPart> COwner::GetPart() const
{
    return m_Part.Get(L"part");
}

void COwner::SetPart(CPart* pValue)
{
    m_Part.Set(pValue, L"part");
}

CSmartPtr<CPartCol> COwner::GetParts() const
{
    return m_Parts.Get(s_Parts);
}
)"));
}

TEST_F(CppClasses, PrintsWildcards)
{
    SClass& open = m_make.Class("COpen", "open");
    open.bUnknownAttributesFail = false;
    SMember& any = open.members.emplace_back();
    any.eMember = EMember::Wildcard;
    any.strName = "Any";
    EXPECT_THAT(Declare(open), HasSubstr("CSmartPtr<QvXmlLib9::CElement> GetAny() const { return m_Any.Get(); }"));
    EXPECT_THAT(Declare(open), HasSubstr("    QvXmlLib9::COptionalObject<QvXmlLib9::CElement> m_Any;\n"));
    EXPECT_THAT(Define(open), HasSubstr("const SWildcard COpen::s_Any{SWildcard::Any, nullptr, 0, 1, 1};\n"));
    EXPECT_THAT(Define(open), HasSubstr("    description.IgnoreUnknownAttributes();\n"
                                        "    description.Wildcard(m_Any, L\"Any\", s_Any);\n"));
    any.eCardinality = ECardinality::Optional;
    any.strElement = "extension";
    EXPECT_THAT(Define(open),
                HasSubstr("const SWildcard COpen::s_Any{SWildcard::Any, nullptr, 0, 0, 1, L\"extension\"};\n"));
    EXPECT_THAT(Define(open), HasSubstr("    description.OptionalWildcard(m_Any, L\"extension\", s_Any);\n"));
    any.strElement.clear();
    any.eCardinality = ECardinality::Repeated;
    any.nMin = 2;
    any.nMax = 3000000000;
    any.eNamespaces = SMember::ENamespaces::List;
    any.uris = {"urn:order"};
    EXPECT_THAT(Declare(open), HasSubstr("    QvXmlLib9::CRepeated<QvXmlLib9::CAnyCol> m_Any;\n"));
    EXPECT_THAT(Define(open), HasSubstr("static constexpr const wchar_t* s_urisCOpenAny[] = {s_lpctNamespace};\n"
                                        "const SWildcard COpen::s_Any{SWildcard::List, s_urisCOpenAny, 1, 2, "
                                        "2147483647};\n"));
    EXPECT_THAT(Define(open), HasSubstr("    description.Wildcard(m_Any, s_Any);\n"));
}

TEST_F(CppClasses, PrintsTextUnderTheNameOfTheElement)
{
    SClass& note = m_make.Class("CNote", "note");
    note.pText = m_pString;
    EXPECT_THAT(
        Declare(note),
        HasSubstr("    void SetValue(const std::wstring& value) { m_Value.Set(value, ElementName().c_str()); }\n"));
    EXPECT_THAT(Define(note), HasSubstr("    description.Text(m_Value);\n"));
    note.pText = nullptr;
    note.bMixed = true;
    EXPECT_THAT(Declare(note), HasSubstr("    QvXmlLib9::CRequired<QvXmlLib9::xs::MixedText> m_Text;\n"));
    EXPECT_THAT(Define(note), HasSubstr("    description.MixedText(m_Text);\n"));
}

TEST_F(CppClasses, ListsWhatMayStandInItsPlace)
{
    SClass& party = m_make.Class("CParty", "party");
    SClass& company = m_make.Class("CCompany", "company");
    company.pBase = &party;
    SClass& abstract = m_make.Class("CNobody", "nobody");
    abstract.bAbstract = true;
    abstract.alternatives = {{false, "urn:order", "Company", &company}};
    party.alternatives = {{false, "urn:order", "Party", &party},
                          {true, "urn:order", "company", &company},
                          {true, "", "nobody", &abstract}};
    EXPECT_THAT(Declare(party), HasSubstr("    static const QvXmlLib9::SAlternatives& Alternatives();\n"));
    EXPECT_THAT(Define(party), HasSubstr(R"(const SAlternatives& CParty::Alternatives()
{
    static constexpr SAlternative s_alternatives[] = {
        {false, s_lpctNamespace, L"Party", &CreateObject<CParty>},
        {true, s_lpctNamespace, L"company", &CreateObject<CCompany>},
        {true, L"", L"nobody", nullptr, &CNobody::Alternatives},
    };
    static constexpr SAlternatives s_all{s_alternatives, sizeof s_alternatives / sizeof *s_alternatives};
    return s_all;
}
)"));
}

TEST_F(CppClasses, GivesAndTakesUtf8WhereAsked)
{
    SSimpleType& texts = m_make.List("STexts", *m_pString);
    SClass& item = m_make.Class("CItem", "item");
    m_make.Value(item, "Name", "name", *m_pString);
    m_make.Value(item, "Note", "note", *m_pString, ECardinality::Optional);
    m_make.Value(item, "Texts", "texts", texts);
    m_make.Value(item, "Count", "count", *m_pInt);
    m_bUtf8 = true;
    const std::string strDeclared = Declare(item);
    for (const char* const lpcPart : {
             "    std::string GetName() const { return QvXmlLib9::ToUtf8(m_Name.Get()); }\n"
             "    void SetName(std::string_view value) { m_Name.Set(QvXmlLib9::FromUtf8(value), L\"name\"); }\n",
             "    std::optional<std::string> GetNote() const { return QvXmlLib9::ToUtf8(m_Note.Get()); }\n"
             "    void SetNote(const std::optional<std::string>& value) { m_Note.Set(QvXmlLib9::FromUtf8(value), "
             "L\"note\"); }\n",
             "    std::vector<std::string> GetTexts() const { return QvXmlLib9::ToUtf8(m_Texts.Get()); }\n",
             "    int GetCount() const { return m_Count.Get(); }\n",
         })
        EXPECT_THAT(strDeclared, HasSubstr(lpcPart));
}

TEST_F(CppClasses, BreaksFunctionsThatAreTooLongForALine)
{
    const std::string strLong(60, 'x');
    SClass& item = m_make.Class("CItem", "item");
    m_make.Value(item, 'X' + strLong, strLong, *m_pString);
    EXPECT_THAT(Declare(item), HasSubstr("    void SetX" + strLong + "(const std::wstring& value)\n    {\n        m_X" +
                                         strLong + ".Set(value, L\"" + strLong + "\");\n    }\n"));
}

} // namespace
