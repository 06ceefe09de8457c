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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"rules", s_lpctNamespace);
        description.Element(m_Size, L"size", s_lpctNamespace);
        description.Element(m_Unit, L"unit", s_lpctNamespace);
        description.Attribute(m_Lang, L"lang", L"");
        description.Attribute(m_Version, L"version", L"");
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Choice, ElementType_Element, L"answer", s_lpctNamespace);
        description.RequireChoice();
        description.Element(m_Number, L"number", s_lpctNamespace);
        description.Element(m_Twin, L"number", L"urn:twin");
        description.Element(m_Name, s_Name);
        description.Group(m_Pair, s_Key);
        description.OptionalElement(m_Address, L"address", s_lpctNamespace);
        description.OptionalWildcard(m_Other, L"AnyElement", s_Other);
    }
    void Init() override
    {
        CGenerated::Init();
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Choice, ElementType_Pseudo, L"price", s_lpctNamespace);
        description.Element(m_Price, s_Price);
        description.Element(m_Count, s_Count);
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"envelope", s_lpctNamespace);
        description.Element(m_Head, L"head", s_lpctNamespace);
        description.Wildcard(m_One, L"AnyElement", s_One);
        description.Wildcard(m_Many, s_Many);
        description.Group(m_Choice, L"price");
        description.Element(m_Tail, L"tail", s_lpctNamespace);
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"endless", s_lpctNamespace);
        description.Element(m_Inner, L"endless", s_lpctNamespace);
    }
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_All, ElementType_Element, L"everything", s_lpctNamespace);
        description.Element(m_Number, L"number", s_lpctNamespace);
        description.Element(m_Note, L"note", s_lpctNamespace);
        description.Element(m_Address, L"address", s_lpctNamespace);
        description.OptionalElement(m_Second, L"second", s_lpctNamespace);
        description.Element(m_Price, L"price", s_lpctNamespace);
        description.Element(m_Day, L"day", s_lpctNamespace);
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"open", s_lpctNamespace);
        description.Element(m_Id, L"id", s_lpctNamespace);
        description.AnyAttribute(m_Attributes, s_Attributes);
        description.Text(m_Text);
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
    void Describe(CClassDescription& description) const override
    {
        COpen::Describe(description);
        description.Class(GroupType_Sequence, ElementType_Element, L"open", s_lpctNamespace);
        description.Attribute(m_Extra, L"extra", L"urn:a");
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"shape", s_lpctNamespace);
        description.TypeName(L"Shape", s_lpctNamespace);
        description.Attribute(m_Area, L"area", L"");
    }
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
    void Describe(CClassDescription& description) const override
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
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"drawing", s_lpctNamespace);
        description.Element(m_Title, L"title", s_lpctNamespace);
        description.Element(m_Frame, L"shape", s_lpctNamespace);
        description.Element(m_Middle, L"middle", s_lpctNamespace);
        description.Element(m_Shapes, s_Shape);
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
