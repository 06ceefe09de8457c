#include "tests/support/SampleBinding.h"

using namespace quiver_gen::binding;

namespace quiver_gen::test
{

SNamespace& CBindingMaker::Namespace(const std::string& strUri, const std::string& strCpp, const std::string& strFile)
{
    m_pNamespace = &m_binding.namespaces.emplace_back();
    m_pNamespace->strUri = strUri;
    m_pNamespace->strCpp = strCpp;
    m_pNamespace->strFile = strFile;
    return *m_pNamespace;
}

SSimpleType& CBindingMaker::Builtin(const std::string& strName, EValue eValue)
{
    SSimpleType& type = m_binding.simpleTypes.emplace_back();
    type.strName = strName;
    type.strBuiltin = strName;
    type.eValue = eValue;
    type.bBuiltin = true;
    return type;
}

SSimpleType& CBindingMaker::Type(const std::string& strName, SSimpleType& base)
{
    SSimpleType& type = m_binding.simpleTypes.emplace_back();
    type.strName = strName;
    type.pNamespace = m_pNamespace;
    type.strUri = m_pNamespace->strUri;
    type.strBuiltin = base.strBuiltin;
    type.eValue = base.eValue;
    m_pNamespace->simpleTypes.push_back(&type);
    return type;
}

SSimpleType& CBindingMaker::List(const std::string& strName, SSimpleType& item)
{
    SSimpleType& type = Type(strName, item);
    type.strBuiltin.clear();
    type.eValue = EValue::List;
    type.pItem = &item;
    return type;
}

SClass& CBindingMaker::Class(const std::string& strName, const std::string& strElement)
{
    SClass& type = m_binding.classes.emplace_back();
    type.strName = strName;
    type.pNamespace = m_pNamespace;
    type.strUri = m_pNamespace->strUri;
    type.strSchemaName = strName.substr(1);
    type.strElement = strElement;
    m_pNamespace->classes.push_back(&type);
    return type;
}

SMember& CBindingMaker::Member(SClass& type, const std::string& strName, const std::string& strElement,
                               ECardinality eCardinality)
{
    SMember& member = type.members.emplace_back();
    member.strName = strName;
    member.strElement = strElement;
    member.strUri = type.pNamespace->strUri;
    member.eCardinality = eCardinality;
    member.nMin = eCardinality == ECardinality::Required ? 1 : 0;
    member.nMax = eCardinality == ECardinality::Repeated ? -1 : 1;
    return member;
}

SMember& CBindingMaker::Value(SClass& type, const std::string& strName, const std::string& strElement,
                              SSimpleType& valueType, ECardinality eCardinality)
{
    SMember& member = Member(type, strName, strElement, eCardinality);
    member.pType = &valueType;
    return member;
}

SMember& CBindingMaker::Object(SClass& type, const std::string& strName, const std::string& strElement,
                               SClass& objectType, ECardinality eCardinality)
{
    SMember& member = Member(type, strName, strElement, eCardinality);
    member.eMember = objectType.bPseudo ? EMember::Group : EMember::Object;
    member.pClass = &objectType;
    return member;
}

SAttribute& CBindingMaker::Attribute(SClass& type, const std::string& strName, const std::string& strAttribute,
                                     SSimpleType& valueType, bool bRequired)
{
    SAttribute& attribute = type.attributes.emplace_back();
    attribute.strName = strName;
    attribute.strAttribute = strAttribute;
    attribute.pType = &valueType;
    attribute.bRequired = bRequired;
    return attribute;
}

SRoot& CBindingMaker::Root(const std::string& strName, const std::string& strElement, SClass& type)
{
    SRoot& root = m_binding.roots.emplace_back();
    root.strName = strName;
    root.strElement = strElement;
    root.strUri = m_pNamespace->strUri;
    root.pNamespace = m_pNamespace;
    root.pClass = &type;
    return root;
}

namespace
{

/// Makes the classes of the sample.
class CSample
{
public:
    explicit CSample(SBinding& binding)
        : m_make(binding)
    {
    }

    void Make()
    {
        m_pInt = &m_make.Builtin("xs::Int", EValue::I4);
        m_pString = &m_make.Builtin("xs::String", EValue::String);
        m_pToken = &m_make.Builtin("xs::Token", EValue::String);
        m_pDate = &m_make.Builtin("xs::Date", EValue::DateTime);
        m_make.Namespace("urn:example:common", "acme::common", "Common");
        MakeCommonTypes();
        MakeParties();
        m_make.Namespace("urn:example:order", "order", "Order");
        MakeOrderTypes();
        MakeItem();
        MakeChoices();
        MakeNote();
        MakeOrder();
        MakeRoots();
    }

private:
    void MakeCommonTypes()
    {
        m_pCurrency = &m_make.Type("SCurrency", *m_pToken);
        m_pCurrency->eValue = EValue::Enumeration;
        m_pCurrency->strEnumName = "ECurrency";
        m_pCurrency->documentation = {"Money of a country."};
        m_pCurrency->enumerators = {{"EUR", "EUR", {"The euro."}}, {"US \"$\"", "Usd", {}}, {"\xC2\xA5", "Yen", {}}};
        m_pSku = &m_make.Type("SSku", *m_pToken);
        m_pSku->strPattern = "(?:\\d{3}-[A-Z]{2})\\z";
        m_pSku->nMaxLength = 6;
    }

    void MakeParties()
    {
        m_pParty = &m_make.Class("CParty", "party");
        m_pParty->bAbstract = true;
        m_make.Value(*m_pParty, "Name", "name", *m_pString).documentation = {"What it is called."};
        SClass& company = m_make.Class("CCompany", "party");
        company.pBase = m_pParty;
        m_make.Value(company, "Vat", "vat", *m_pToken, ECardinality::Optional);
        SClass& empty = m_make.Class("CNobody", "party");
        empty.pBase = m_pParty;
        SClass& narrow = m_make.Class("CShortNamed", "party");
        narrow.pBase = m_pParty;
        narrow.bRestriction = true;
        m_make.Value(narrow, "Name", "name", *m_pSku).bInherited = true;
        m_pParty->alternatives = {{false, "urn:example:common", "Company", &company},
                                  {false, "urn:example:common", "Nobody", &empty},
                                  {false, "urn:example:common", "ShortNamed", &narrow}};
    }

    void MakeOrderTypes()
    {
        m_pSizes = &m_make.List("SSizes", *m_pInt);
        m_pSizes->nMinLength = 1;
        m_pCurrencies = &m_make.List("SCurrencies", *m_pCurrency);
        m_pNames = &m_make.List("SNames", *m_pToken);
        m_pEither = &m_make.Type("SEither", *m_pToken);
        m_pEither->strBuiltin.clear();
        m_pEither->memberTypes = {m_pInt, m_pSku};
        m_pQuantity = &m_make.Type("SQuantity", *m_pInt);
        m_pQuantity->strMinInclusive = "1";
        m_pQuantity->strMaxExclusive = "100";
        m_pQuantity->enumerators = {{"5", "", {}}, {"10", "", {}}};
    }

    void MakeItem()
    {
        m_pItem = &m_make.Class("CItem", "item");
        m_pItem->documentation = {"What is ordered, and how much of it.", "More to say."};
        m_make.Value(*m_pItem, "Product", "product", *m_pString);
        m_make.Value(*m_pItem, "Quantity", "quantity", *m_pQuantity).value = {SValueRule::EKind::Default, "5"};
        m_make.Value(*m_pItem, "Note", "note", *m_pString, ECardinality::Repeated);
        SMember& shipped = m_make.Value(*m_pItem, "Shipped", "shipped", *m_pDate, ECardinality::Optional);
        shipped.eMember = EMember::NillableValue;
        SMember& until = m_make.Value(*m_pItem, "Until", "until", *m_pDate);
        until.eMember = EMember::NillableValue;
        until.value = {SValueRule::EKind::Default, "2030-01-01"};
        m_make.Object(*m_pItem, "Part", "part", *m_pItem, ECardinality::Repeated);
        m_make.Attribute(*m_pItem, "Sku", "sku", *m_pSku, true);
        m_make.Attribute(*m_pItem, "Currency", "currency", *m_pCurrency, false).value = {SValueRule::EKind::Default,
                                                                                         "EUR"};
        m_make.Attribute(*m_pItem, "Version", "version", *m_pToken, false).value = {SValueRule::EKind::Fixed, "1"};
        m_make.Attribute(*m_pItem, "Sizes", "sizes", *m_pSizes, false);
        m_make.Attribute(*m_pItem, "Names", "names", *m_pNames, false);
        m_make.Attribute(*m_pItem, "Aliases", "aliases", *m_pNames, true);
        m_make.Attribute(*m_pItem, "Currencies", "currencies", *m_pCurrencies, true);
    }

    void MakeChoices()
    {
        m_pPayment = &m_make.Class("CPayment", "payment");
        m_pPayment->eGroup = SClass::EGroup::Choice;
        m_pPayment->bEmptiable = false;
        m_pPayment->bNillable = true;
        m_make.Value(*m_pPayment, "Card", "card", *m_pEither, ECardinality::Optional);
        m_make.Value(*m_pPayment, "Coin", "coin", *m_pInt, ECardinality::Repeated);
        m_make.Object(*m_pPayment, "Payer", "payer", *m_pParty, ECardinality::Optional).bPolymorphic = true;
        m_pPair = &m_make.Class("COrderPair", "key");
        m_pPair->strSchemaName.clear();
        m_pPair->bPseudo = true;
        m_make.Value(*m_pPair, "Key", "key", *m_pToken);
        m_make.Value(*m_pPair, "Count", "count", *m_pInt);
    }

    void MakeNote()
    {
        m_pNote = &m_make.Class("CNote", "note");
        m_pNote->pText = m_pString;
        m_make.Attribute(*m_pNote, "Lang", "lang", *m_pToken, false).strUri = "urn:example:other";
        m_pRemark = &m_make.Class("CRemark", "remark");
        m_pRemark->bMixed = true;
        m_pRemark->bAnyAttribute = true;
        m_pRemark->bUnknownAttributesFail = false;
        SMember& any = m_pRemark->members.emplace_back();
        any.eMember = EMember::Wildcard;
        any.strName = "Any";
        any.eCardinality = ECardinality::Repeated;
        any.nMin = 0;
        any.nMax = -1;
        any.eNamespaces = SMember::ENamespaces::Not;
        any.uris = {"urn:example:order", ""};
        SMember& one = m_pRemark->members.emplace_back();
        one.eMember = EMember::Wildcard;
        one.strName = "Extension";
        one.strElement = "extension";
        one.eCardinality = ECardinality::Optional;
        m_make.Class("CNothing", "nothing");
    }

    void MakeOrder()
    {
        m_pOrder = &m_make.Class("COrder", "order");
        m_pOrder->eGroup = SClass::EGroup::All;
        m_make.Object(*m_pOrder, "Buyer", "buyer", *m_pParty).bPolymorphic = true;
        m_make.Object(*m_pOrder, "Seller", "seller", *m_pParty, ECardinality::Repeated).bPolymorphic = true;
        m_make.Object(*m_pOrder, "Payment", "payment", *m_pPayment);
        m_make.Object(*m_pOrder, "Note", "note", *m_pNote, ECardinality::Optional);
        m_make.Object(*m_pOrder, "Item", "item", *m_pItem, ECardinality::Repeated).nMax = 99;
        m_make.Object(*m_pOrder, "Pair", "key", *m_pPair);
        m_make.Object(*m_pOrder, "Pairs", "key", *m_pPair, ECardinality::Repeated);
        m_make.Object(*m_pOrder, "Remark", "remark", *m_pRemark, ECardinality::Optional);
        m_make.Object(*m_pOrder, "Attachment", "attachment", m_make.Class("CAttachment", "attachment"));
    }

    void MakeRoots()
    {
        m_make.Root("Order", "order", *m_pOrder).documentation = {"The whole document."};
        m_make.Root("Party", "party", *m_pParty);
        SRoot& quantity = m_make.Root("Quantity", "quantity", *m_pItem);
        quantity.pClass = nullptr;
        quantity.pType = m_pQuantity;
        m_make.Root("Note", "note", *m_pNote).strUri.clear();
    }

    CBindingMaker m_make;
    SSimpleType* m_pInt = nullptr;
    SSimpleType* m_pString = nullptr;
    SSimpleType* m_pToken = nullptr;
    SSimpleType* m_pDate = nullptr;
    SSimpleType* m_pCurrency = nullptr;
    SSimpleType* m_pSku = nullptr;
    SSimpleType* m_pSizes = nullptr;
    SSimpleType* m_pCurrencies = nullptr;
    SSimpleType* m_pNames = nullptr;
    SSimpleType* m_pEither = nullptr;
    SSimpleType* m_pQuantity = nullptr;
    SClass* m_pParty = nullptr;
    SClass* m_pItem = nullptr;
    SClass* m_pPayment = nullptr;
    SClass* m_pPair = nullptr;
    SClass* m_pNote = nullptr;
    SClass* m_pRemark = nullptr;
    SClass* m_pOrder = nullptr;
};

} // namespace

void MakeSampleBinding(SBinding& binding)
{
    CSample(binding).Make();
}

void MakeCircularBinding(SBinding& binding)
{
    CBindingMaker make(binding);
    SSimpleType& token = make.Builtin("xs::Token", EValue::String);
    make.Namespace("urn:example:left", "left", "Left");
    SSimpleType& colour = make.Type("SColour", token);
    colour.nMaxLength = 10;
    SClass& base = make.Class("CBase", "base");
    make.Value(base, "Colour", "colour", colour);

    make.Namespace("urn:example:right", "right", "Right");
    SSimpleType& colours = make.List("SColours", colour);
    SClass& middle = make.Class("CMiddle", "middle");
    middle.pBase = &base;
    make.Value(middle, "Colours", "colours", colours, ECardinality::Optional);

    make.Namespace("urn:example:left2", "left", "Left");
    SClass& top = make.Class("CTop", "top");
    top.pBase = &middle;
    make.Object(top, "Bottom", "bottom", base);

    // The last class belongs into the first namespace; it was made elsewhere only for the order of the calls.
    binding.namespaces.back().classes.clear();
    top.pNamespace = &binding.namespaces.front();
    top.strUri = "urn:example:left";
    top.pNamespace->classes.push_back(&top);
    binding.namespaces.pop_back();
    make.Namespace("urn:example:none", "none", "None");
    make.Root("Top", "top", top);
    binding.roots.back().strUri = "urn:example:left";
    binding.roots.back().pNamespace = &binding.namespaces.front();
}

} // namespace quiver_gen::test
