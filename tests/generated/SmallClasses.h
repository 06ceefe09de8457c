#pragma once

// Small generated classes for single questions, with their members open to the tests.

#include "quiver/QvXmlLib.h"
#include "tests/generated/SampleClasses.h"

namespace sample
{

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

/// Default and fixed values of elements and attributes.
class CRules : public CGenerated<CRules>
{
public:
    explicit CRules(const wchar_t* lpctElementName = L"rules")
        : CInstanceMonitor(L"CRules")
        , CGenerated(lpctElementName)
    {
    }

    static constexpr wchar_t s_lpctSize[] = L"5";
    static constexpr wchar_t s_lpctUnit[] = L"kg";
    static constexpr wchar_t s_lpctLang[] = L"en";
    static constexpr wchar_t s_lpctVersion[] = L"1.0";

    CRequired<xs::Int, SDefault<s_lpctSize>> m_Size;
    COptional<xs::Token, SFixed<s_lpctUnit>> m_Unit;
    CDefaulted<xs::String, SDefault<s_lpctLang>> m_Lang;
    CDefaulted<xs::Decimal, SFixed<s_lpctVersion>> m_Version;

protected:
    friend class CGenerated<CRules>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"rules", s_lpctNamespace);
        description.Element(L"size", s_lpctNamespace, 0, xs::Int::Type());
        description.OptionalElement(L"unit", s_lpctNamespace, 1, xs::Token::Type());
        description.OptionalAttribute(L"lang", L"", 2, xs::String::Type(), s_lpctLang);
        description.OptionalAttribute(L"version", L"", 3, xs::Decimal::Type(), s_lpctVersion);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_Size.Access(bRead, value, L"size");
        case 1:
            return m_Unit.Access(bRead, value, L"unit");
        case 2:
            return m_Lang.Access(bRead, value, L"lang");
        case 3:
            return m_Version.Access(bRead, value, L"version");
        }
    }
    void Init() override
    {
        m_Size.Reset();
        m_Unit.Reset();
        m_Lang.Reset();
        m_Version.Reset();
    }
};

/// A choice with every kind of member, which may be nil.
class CAnswer : public CGeneratedChoice<CAnswer>, public CNillableState
{
public:
    explicit CAnswer(const wchar_t* lpctElementName = L"answer")
        : CInstanceMonitor(L"CAnswer")
        , CGeneratedChoice(lpctElementName)
    {
    }

    static constexpr SRepeatedElement s_Name{L"name", s_lpctNamespace, 0, -1};
    static constexpr SRepeatedElement s_Key{L"key", s_lpctNamespace, 0, -1};
    static constexpr const wchar_t* s_uris[] = {s_lpctNamespace, L"urn:twin"};
    static constexpr SWildcard s_Other{SWildcard::Not, s_uris, 2};

    void SetNumber(const std::optional<int>& value) { m_choice.Set(m_Number, value, L"number"); }
    void SetTwin(const std::optional<int>& value) { m_choice.Set(m_Twin, value, L"number"); }
    CSmartPtr<CValueCol<xs::NCName>> GetName() const { return m_choice.Get(m_Name, s_Name); }
    CSmartPtr<CGroupCol<COrderPair>> GetPair() const { return m_choice.Get(m_Pair, s_Key); }
    void SetAddress(CAddress* pValue) { m_choice.Set(m_Address, pValue, L"address"); }
    void SetOther(CElement* pValue) { m_choice.Set(m_Other, pValue, L"AnyElement"); }

    COptional<xs::Int> m_Number;
    COptional<xs::Int> m_Twin; ///< of the same name in another namespace
    CRepeated<CValueCol<xs::NCName>> m_Name;
    CRepeated<CGroupCol<COrderPair>> m_Pair;
    CPolymorphicObject<CAddress> m_Address;
    COptionalObject<CElement> m_Other;

protected:
    friend class CGenerated<CAnswer>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Choice, ElementType_Element, L"answer", s_lpctNamespace);
        description.RequireChoice();
        description.OptionalElement(L"number", s_lpctNamespace, 0, xs::Int::Type());
        description.OptionalElement(L"number", L"urn:twin", 1, xs::Int::Type());
        description.RepeatedElement(L"name", s_lpctNamespace, 2);
        description.RepeatedGroup(L"key", 3);
        description.OptionalPolymorphicObject<CAddress>(L"address", s_lpctNamespace, 4);
        description.OptionalWildcard(5, s_Other);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_choice.Access(m_Number, bRead, value, L"number");
        case 1:
            return m_choice.Access(m_Twin, bRead, value, L"number");
        case 2:
            return m_choice.Access(m_Name, bRead, value, s_Name);
        case 3:
            return m_choice.Access(m_Pair, bRead, value, s_Key);
        case 4:
            return m_choice.Access(m_Address, bRead, value, L"address");
        case 5:
            return m_choice.Access(m_Other, bRead, value, L"AnyElement");
        }
    }
    void Init() override
    {
        m_Number.Reset();
        m_Twin.Reset();
        m_Name.Reset();
        m_Pair.Reset();
        m_Address.Reset();
        m_Other.Reset();
        m_choice.Reset();
        ResetNil();
    }
};

/// A nested choice whose members repeat.
class CEnvelopeChoice : public CGeneratedChoice<CEnvelopeChoice>
{
public:
    explicit CEnvelopeChoice(const wchar_t* lpctElementName = L"price")
        : CInstanceMonitor(L"CEnvelopeChoice")
        , CGeneratedChoice(lpctElementName)
    {
    }

    static constexpr SRepeatedElement s_Price{L"price", s_lpctNamespace, 0, 2};
    static constexpr SRepeatedElement s_Count{L"count", s_lpctNamespace, 0, -1};

    CSmartPtr<CObjectCol<CPrice>> GetPrice() const { return m_choice.Get(m_Price, s_Price); }
    CSmartPtr<CValueCol<xs::Int>> GetCountCol() const { return m_choice.Get(m_Count, s_Count); }

    CRepeated<CObjectCol<CPrice>> m_Price;
    CRepeated<CValueCol<xs::Int>> m_Count;

protected:
    friend class CGenerated<CEnvelopeChoice>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Choice, ElementType_Pseudo, L"price", s_lpctNamespace);
        description.RepeatedObject(L"price", s_lpctNamespace, 0);
        description.RepeatedElement(L"count", s_lpctNamespace, 1);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        if (nPropertyIndex == 0)
            m_choice.Access(m_Price, bRead, value, s_Price);
        else
            m_choice.Access(m_Count, bRead, value, s_Count);
    }
    void Init() override
    {
        m_Price.Reset();
        m_Count.Reset();
        m_choice.Reset();
    }
};

/// Wildcards and a nested choice in the middle of a sequence.
class CEnvelope : public CGenerated<CEnvelope>
{
public:
    explicit CEnvelope(const wchar_t* lpctElementName = L"envelope")
        : CInstanceMonitor(L"CEnvelope")
        , CGenerated(lpctElementName)
    {
    }

    static constexpr const wchar_t* s_oneUris[] = {s_lpctNamespace};
    static constexpr const wchar_t* s_manyUris[] = {L"urn:many", L"urn:more"};
    static constexpr SWildcard s_One{SWildcard::Not, s_oneUris, 1, 1, 1};
    static constexpr SWildcard s_Many{SWildcard::List, s_manyUris, 2, 0, 2};

    CRequired<xs::Token> m_Head;
    COptionalObject<CElement> m_One;
    CRepeated<CAnyCol> m_Many;
    COptionalObject<CEnvelopeChoice> m_Choice;
    COptional<xs::Token> m_Tail;

protected:
    friend class CGenerated<CEnvelope>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"envelope", s_lpctNamespace);
        description.Element(L"head", s_lpctNamespace, 0, xs::Token::Type());
        description.Wildcard(1, s_One);
        description.RepeatedWildcard(2, s_Many);
        description.OptionalGroup<CEnvelopeChoice>(L"price", 3);
        description.OptionalElement(L"tail", s_lpctNamespace, 4, xs::Token::Type());
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_Head.Access(bRead, value, L"head");
        case 1:
            return m_One.Access(bRead, value, L"AnyElement");
        case 2:
            return m_Many.Access(bRead, value, s_Many);
        case 3:
            return m_Choice.Access(bRead, value, L"price");
        case 4:
            return m_Tail.Access(bRead, value, L"tail");
        }
    }
    void Init() override
    {
        m_Head.Reset();
        m_One.Reset();
        m_Many.Reset();
        m_Choice.Reset();
        m_Tail.Reset();
    }
};

/// An element that has to hold another of its kind.
class CEndless : public CGenerated<CEndless>
{
public:
    explicit CEndless(const wchar_t* lpctElementName = L"endless")
        : CInstanceMonitor(L"CEndless")
        , CGenerated(lpctElementName)
    {
    }

    CRequiredObject<CEndless> m_Inner;

protected:
    friend class CGenerated<CEndless>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"endless", s_lpctNamespace);
        description.Object<CEndless>(L"endless", s_lpctNamespace, 0);
    }
    void AccessProperty(int, bool bRead, QvVariant& value) override { m_Inner.Access(bRead, value, L"endless"); }
    void Init() override { m_Inner.Reset(); }
};

/// An all group with what its records can hold.
class CEverything : public CGenerated<CEverything>
{
public:
    explicit CEverything(const wchar_t* lpctElementName = L"everything")
        : CInstanceMonitor(L"CEverything")
        , CGenerated(lpctElementName)
    {
    }

    CRequired<xs::Int> m_Number;
    COptional<xs::Token> m_Note;
    CPolymorphicObject<CAddress> m_Address;
    CPolymorphicObject<CAddress> m_Second;
    CRequiredObject<CPrice> m_Price;
    COptionalObject<CNillable<xs::Date>> m_Day;

protected:
    friend class CGenerated<CEverything>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_All, ElementType_Element, L"everything", s_lpctNamespace);
        description.Element(L"number", s_lpctNamespace, 0, xs::Int::Type());
        description.OptionalElement(L"note", s_lpctNamespace, 1, xs::Token::Type());
        description.PolymorphicObject<CAddress>(L"address", s_lpctNamespace, 2);
        description.OptionalPolymorphicObject<CAddress>(L"second", s_lpctNamespace, 3);
        description.Object<CPrice>(L"price", s_lpctNamespace, 4);
        description.OptionalNillableElement<xs::Date>(L"day", s_lpctNamespace, 5);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_Number.Access(bRead, value, L"number");
        case 1:
            return m_Note.Access(bRead, value, L"note");
        case 2:
            return m_Address.Access(bRead, value, L"address");
        case 3:
            return m_Second.Access(bRead, value, L"second");
        case 4:
            return m_Price.Access(bRead, value, L"price");
        case 5:
            return m_Day.Access(bRead, value, L"day");
        }
    }
    void Init() override
    {
        m_Number.Reset();
        m_Note.Reset();
        m_Address.Reset();
        m_Second.Reset();
        m_Price.Reset();
        m_Day.Reset();
    }
};

/// A type that lets any attribute through, and mixed content.
class COpen : public CGenerated<COpen>
{
public:
    explicit COpen(const wchar_t* lpctElementName = L"open")
        : CInstanceMonitor(L"COpen")
        , CGenerated(lpctElementName)
    {
    }

    static constexpr const wchar_t* s_uris[] = {L"urn:a", L"urn:b"};
    static constexpr SWildcard s_Attributes{SWildcard::List, s_uris, 2};

    COptional<xs::Int> m_Id;
    CAnyAttributes m_Attributes;
    CRequired<xs::MixedText> m_Text;

protected:
    friend class CGenerated<COpen>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"open", s_lpctNamespace);
        description.OptionalElement(L"id", s_lpctNamespace, 0, xs::Int::Type());
        description.AnyAttribute(1, s_Attributes);
        description.Text(2);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_Id.Access(bRead, value, L"id");
        case 1:
            return m_Attributes.Access(bRead, value, s_Attributes);
        case 2:
            return m_Text.Access(bRead, value, L"open");
        }
    }
    void Init() override
    {
        m_Id.Reset();
        m_Attributes.Reset();
        m_Text.Reset();
    }
};

/// Its extension, with an attribute that the base would take for any.
class COpenDerived : public CGenerated<COpenDerived, COpen>
{
public:
    explicit COpenDerived(const wchar_t* lpctElementName = L"open")
        : CInstanceMonitor(L"COpenDerived")
        , CGenerated(lpctElementName)
    {
    }

    COptional<xs::Int> m_Extra;

protected:
    friend class CGenerated<COpenDerived, COpen>;
    static void Describe(CClassDescription& description)
    {
        COpen::Describe(description);
        description.Class(GroupType_Sequence, ElementType_Element, L"open", s_lpctNamespace);
        description.OptionalAttribute(L"extra", L"urn:a", 3, xs::Int::Type());
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        if (nPropertyIndex == 3)
            m_Extra.Access(bRead, value, L"extra");
        else
            COpen::AccessProperty(nPropertyIndex, bRead, value);
    }
    void Init() override
    {
        COpen::Init();
        m_Extra.Reset();
    }
};

/// The head of a substitution group; its own element is abstract.
class CShape : public CGenerated<CShape>
{
public:
    explicit CShape(const wchar_t* lpctElementName = L"shape")
        : CInstanceMonitor(L"CShape")
        , CGenerated(lpctElementName)
    {
    }
    static const SAlternatives& Alternatives();

    COptional<xs::Int> m_Area;

protected:
    friend class CGenerated<CShape>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"shape", s_lpctNamespace);
        description.TypeName(L"Shape", s_lpctNamespace);
        description.OptionalAttribute(L"area", L"", 0, xs::Int::Type());
    }
    void AccessProperty(int, bool bRead, QvVariant& value) override { m_Area.Access(bRead, value, L"area"); }
    void Init() override { m_Area.Reset(); }
};

class CCircle : public CGenerated<CCircle, CShape>
{
public:
    explicit CCircle(const wchar_t* lpctElementName = L"circle")
        : CInstanceMonitor(L"CCircle")
        , CGenerated(lpctElementName)
    {
    }

protected:
    friend class CGenerated<CCircle, CShape>;
    static void Describe(CClassDescription& description)
    {
        CShape::Describe(description);
        description.Class(GroupType_Sequence, ElementType_Element, L"circle", s_lpctNamespace);
        description.TypeName(L"Circle", s_lpctNamespace);
    }
};

inline const SAlternatives& CShape::Alternatives()
{
    static constexpr SAlternative s_alternatives[] = {
        {true, s_lpctNamespace, L"circle", &CreateObject<CCircle>},
        {true, L"urn:other", L"square", &CreateObject<CShape>, &CShape::Alternatives},
        {true, L"urn:other", L"circle", &CreateObject<CShape>},
        {false, s_lpctNamespace, L"Shape", &CreateObject<CShape>},
        {false, s_lpctNamespace, L"Circle", &CreateObject<CCircle>}};
    static constexpr SAlternatives s_all{s_alternatives, 5};
    return s_all;
}

/// A place for one shape and one for several.
class CDrawing : public CGenerated<CDrawing>
{
public:
    explicit CDrawing(const wchar_t* lpctElementName = L"drawing")
        : CInstanceMonitor(L"CDrawing")
        , CGenerated(lpctElementName)
    {
    }

    static constexpr SRepeatedElement s_Shape{L"shape", s_lpctNamespace, 0, -1};

    CRequired<xs::Token> m_Title;
    CPolymorphicObject<CShape> m_Frame;
    CRequired<xs::Token> m_Middle;
    CRepeated<CPolymorphicCol<CShape>> m_Shapes;

protected:
    friend class CGenerated<CDrawing>;
    static void Describe(CClassDescription& description)
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"drawing", s_lpctNamespace);
        description.Element(L"title", s_lpctNamespace, 0, xs::Token::Type());
        description.PolymorphicObject<CShape>(L"shape", s_lpctNamespace, 1);
        description.Element(L"middle", s_lpctNamespace, 2, xs::Token::Type());
        description.RepeatedObject(L"shape", s_lpctNamespace, 3);
    }
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        switch (nPropertyIndex)
        {
        case 0:
            return m_Title.Access(bRead, value, L"title");
        case 1:
            return m_Frame.Access(bRead, value, L"shape");
        case 2:
            return m_Middle.Access(bRead, value, L"middle");
        case 3:
            return m_Shapes.Access(bRead, value, s_Shape);
        }
    }
    void Init() override
    {
        m_Title.Reset();
        m_Frame.Reset();
        m_Middle.Reset();
        m_Shapes.Reset();
    }
};

/// The object as a document without a declaration.
inline std::wstring Write(const CXmlObjectBase& object,
                          const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext())
{
    CXmlSerializationContext own(context);
    own.SetDefaultNamespaceURI(s_lpctNamespace);
    return object.ToXml(false, false, EOLType_LF, own);
}

/// A document: the start tag's attributes, and what is between the tags.
inline std::wstring Document(const wchar_t* lpctName, const std::wstring& strAttributes, const std::wstring& strContent)
{
    return L"<" + std::wstring(lpctName) +
           L" xmlns=\"urn:sample\" xmlns:s=\"urn:sample\" xmlns:o=\"urn:other\" xmlns:a=\"urn:a\" xmlns:c=\"urn:c\" "
           L"xmlns:t=\"urn:twin\" xmlns:m=\"urn:many\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" " +
           strAttributes + L">" + strContent + L"</" + lpctName + L">";
}

/// All messages of a failed read or write, outermost first, or "done".
template <class TOperation>
std::wstring MessagesOf(TOperation Operation)
{
    try
    {
        Operation();
    }
    catch (const CQvException& ex)
    {
        return ex.GetFullMessage();
    }
    return L"done";
}

template <class TClass>
std::wstring Refusal(const std::wstring& strXml,
                     const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext())
{
    TClass object;
    return MessagesOf([&] { object.FromXml(strXml.c_str(), context); });
}

inline bool EndsWith(const std::wstring& strText, const std::wstring& strEnd)
{
    return strText.size() >= strEnd.size() &&
           strText.compare(strText.size() - strEnd.size(), strEnd.size(), strEnd) == 0;
}

} // namespace sample
