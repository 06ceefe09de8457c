#include "quiver/generated/Prefixes.h"

#include "quiver/QvXmlLib.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/generated/BuiltinTypes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace
{

/// An attribute and an element that are names.
class CLink : public CGenerated<CLink>
{
public:
    explicit CLink(const wchar_t* lpctElementName = L"link")
        : CInstanceMonitor(L"CLink")
        , CGenerated(lpctElementName)
    {
    }

    CRequired<xs::QName> m_To;
    COptional<xs::QName> m_Via;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"link", L"");
        description.Element(m_Via, L"via", L"");
        description.Attribute(m_To, L"to", L"");
    }
};

/// An element whose text is a name.
class CTarget : public CGenerated<CTarget>
{
public:
    explicit CTarget(const wchar_t* lpctElementName = L"target")
        : CInstanceMonitor(L"CTarget")
        , CGenerated(lpctElementName)
    {
    }

    CRequired<xs::QName> m_Name;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"target", L"");
        description.Text(m_Name);
    }
};

std::wstring Write(const CXmlObjectBase& object, const CXmlSerializationContext& context = {})
{
    return object.ToXml(false, false, EOLType_LF, context);
}

} // namespace

TEST(Prefixes, OfValuesKeepTheirMeaning)
{
    const struct
    {
        const wchar_t* lpctRead;
        const wchar_t* lpctWritten;
    } cases[] = {
        {L"<link xmlns:a='urn:a' to='a:x'/>", L"<link xmlns:a=\"urn:a\" to=\"a:x\"/>"},
        {L"<link to='x'/>", L"<link to=\"x\"/>"},
        {L"<link xmlns:a='urn:a' to='a:x'><via>a:y</via></link>",
         L"<link xmlns:a=\"urn:a\" to=\"a:x\"><via>a:y</via></link>"},
        {L"<link xmlns:a='urn:a' to='a:x'><via xmlns:a='urn:b'>a:y</via></link>",
         L"<link xmlns:a1=\"urn:a\" to=\"a1:x\"><via xmlns:a=\"urn:b\">a:y</via></link>"},
    };
    for (const auto& c : cases)
    {
        CLink link;
        link.FromXml(c.lpctRead, {});
        EXPECT_EQ(Write(link), c.lpctWritten);
    }
}

TEST(Prefixes, OfTheTextOfAnElementKeepTheirMeaning)
{
    CTarget target;
    target.FromXml(L"<target xmlns:a='urn:a'>a:x</target>", {});
    EXPECT_EQ(target.m_Name.Get(), L"a:x");
    EXPECT_EQ(target.GetNamespaceOfPrefix(L"a"), L"urn:a");
    EXPECT_EQ(Write(target), L"<target xmlns:a=\"urn:a\">a:x</target>");
    EXPECT_THROW(target.FromXml(L"<target>a:x</target>", {}), CQvException);
}

TEST(Prefixes, GiveWayToThoseOfTheContext)
{
    CLink link;
    link.FromXml(L"<link xmlns:a='urn:a' to='a:x'/>", {});
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add(L"b", L"urn:a");
    context.GetNamespaceAliases().Add(L"a", L"urn:b");
    EXPECT_EQ(Write(link, context), L"<link xmlns:b=\"urn:a\" xmlns:a=\"urn:b\" to=\"b:x\"/>");
}

TEST(Prefixes, CanBeGivenAMeaning)
{
    CLink link;
    link.m_To.Set(L"a:x", L"to");
    EXPECT_EQ(Write(link), L"<link to=\"a:x\"/>");
    EXPECT_EQ(link.GetNamespaceOfPrefix(L"a"), L"");
    link.DeclarePrefix(L"a", L"urn:a");
    EXPECT_EQ(link.GetNamespaceOfPrefix(L"a"), L"urn:a");
    EXPECT_EQ(Write(link), L"<link xmlns:a=\"urn:a\" to=\"a:x\"/>");
    link.DeclarePrefix(L"a", L"urn:b");
    EXPECT_EQ(Write(link), L"<link xmlns:a=\"urn:b\" to=\"a:x\"/>");
    link.FromXml(L"<link to='x'/>", {});
    EXPECT_EQ(link.GetNamespaceOfPrefix(L"a"), L"");
}

TEST(Prefixes, SurviveFastInfoset)
{
    CLink link;
    link.FromXml(L"<link xmlns:a='urn:a' to='a:x'><via xmlns:a='urn:b'>a:y</via></link>", {});
    const CXmlSerializationContext context;
    CLink copy;
    copy.FromXmlStream(link.ToFastInfosetStream(FInfoDecl_None, context, Compression_None), context);
    EXPECT_EQ(copy.GetNamespaceOfPrefix(L"a"), L"urn:b");
    EXPECT_EQ(copy.GetNamespaceOfPrefix(L"a1"), L"urn:a");
    EXPECT_EQ(Write(copy), Write(link));
}

TEST(Prefixes, HaveToBeDeclared)
{
    CLink link;
    const auto fnRefusal = [](CXmlObjectBase& object, const wchar_t* lpctDocument)
    {
        try
        {
            object.FromXml(lpctDocument, {});
        }
        catch (const CQvException& exception)
        {
            return exception.GetFullMessage();
        }
        return std::wstring(L"none");
    };
    CTarget target;
    EXPECT_EQ(fnRefusal(link, L"<link to='a:x'/>"), L"Invalid Value for to [a:x]\nThe prefix a is not declared");
    EXPECT_EQ(fnRefusal(link, L"<link to='x'><via>a:x</via></link>"),
              L"Failed to process the element [link]\nInvalid Value for via [a:x]\nThe prefix a is not declared");
    EXPECT_EQ(fnRefusal(target, L"<target>a:x</target>"),
              L"Invalid Value for target [a:x]\nThe prefix a is not declared");
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    EXPECT_NO_THROW(link.FromXml(L"<link to='a:x'/>", context));
}

namespace
{

struct SKind
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr const wchar_t* s_values[] = {L"{urn:a}x", L"{urn:b}y", L"{}z"};
        static constexpr CSimpleType s_type = CSimpleType(xs::QName::s_type).Values(s_values);
        return s_type;
    }
};

constexpr wchar_t s_lpctKind[] = L"{urn:b}y";

/// An element and attributes that are names of an enumeration.
class CThing : public CGenerated<CThing>
{
public:
    explicit CThing(const wchar_t* lpctElementName = L"thing")
        : CInstanceMonitor(L"CThing")
        , CGenerated(lpctElementName)
    {
    }

    COptional<SKind> m_Kind;
    COptional<SKind> m_Own;
    CDefaulted<SKind, SDefault<s_lpctKind>> m_Usual;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"thing", L"");
        description.Element(m_Own, L"own", L"");
        description.Attribute(m_Kind, L"kind", L"");
        description.Attribute(m_Usual, L"usual", L"");
    }
};

std::wstring WriteThing(const CThing& thing)
{
    return thing.ToXml(false, false, EOLType_LF, {});
}

} // namespace

TEST(Prefixes, AreNoPartOfTheNamesThatASchemaLists)
{
    const struct
    {
        const wchar_t* lpctDocument;
        bool bRight;
    } cases[] = {
        {L"<thing xmlns:p='urn:a' kind='p:x'/>", true},
        {L"<thing xmlns:p='urn:b' kind='p:x'/>", false},
        {L"<thing kind='z'/>", true},
        {L"<thing kind='{urn:a}x'/>", false},
        {L"<thing xmlns:p='urn:b'><own xmlns:p='urn:a'>p:x</own></thing>", true},
        {L"<thing xmlns:p='urn:a'><own xmlns:p='urn:b'>p:x</own></thing>", false},
        {L"<thing xmlns:p='urn:a' kind='p:x'><own xmlns:p='urn:b'>p:y</own></thing>", true},
    };
    for (const auto& c : cases)
    {
        CThing thing;
        if (c.bRight)
            EXPECT_NO_THROW(thing.FromXml(c.lpctDocument, {})) << c.lpctDocument;
        else
            EXPECT_THROW(thing.FromXml(c.lpctDocument, {}), CQvValidationException) << c.lpctDocument;
    }
}

TEST(Prefixes, OfAProgramAreAskedForWhenAListedNameIsWritten)
{
    CThing thing;
    thing.m_Kind.Set(L"p:x", L"kind");
    EXPECT_THROW(thing.m_Kind.Set(L"p:w", L"kind"), CQvInvalidValueException);
    thing.DeclarePrefix(L"p", L"urn:b");
    EXPECT_THROW(WriteThing(thing), CQvException);
    thing.DeclarePrefix(L"p", L"urn:a");
    EXPECT_EQ(WriteThing(thing), L"<thing xmlns:p=\"urn:a\" xmlns:ns=\"urn:b\" kind=\"p:x\" usual=\"ns:y\"/>");
}

TEST(Prefixes, AreDeclaredForNamesThatSayTheirNamespace)
{
    CThing thing;
    EXPECT_EQ(thing.m_Usual.Get(), L"{urn:b}y");
    EXPECT_EQ(WriteThing(thing), L"<thing xmlns:ns=\"urn:b\" usual=\"ns:y\"/>");
    thing.m_Own.Set(L"{urn:a}x", L"own");
    EXPECT_EQ(WriteThing(thing),
              L"<thing xmlns:ns=\"urn:b\" usual=\"ns:y\"><own xmlns:AA=\"urn:a\">AA:x</own></thing>");
    CLink link;
    link.m_To.Set(L"{urn:c}w", L"to");
    EXPECT_EQ(Write(link), L"<link xmlns:ns=\"urn:c\" to=\"ns:w\"/>");
    EXPECT_THROW(link.m_To.Set(L"{urn:c", L"to"), CQvInvalidValueException);

    thing.FromXml(L"<thing/>", {});
    EXPECT_EQ(WriteThing(thing), L"<thing xmlns:ns=\"urn:b\" usual=\"ns:y\"/>") << "no declaration is asked for";
}

namespace
{

/// A name or a text.
struct SNameOrText
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr PfnSimpleType s_members[] = {&SKind::Type, &xs::Int::Type, &xs::QName::Type,
                                                      &xs::String::Type};
        static constexpr CSimpleType s_type = CSimpleType::UnionOf(s_members);
        return s_type;
    }
};

/// A name or a number.
struct SNameOrNumber
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr PfnSimpleType s_members[] = {&xs::Int::Type, &xs::QName::Type};
        static constexpr CSimpleType s_type = CSimpleType::UnionOf(s_members);
        return s_type;
    }
};

class CMixture : public CGenerated<CMixture>
{
public:
    explicit CMixture(const wchar_t* lpctElementName = L"mixture")
        : CInstanceMonitor(L"CMixture")
        , CGenerated(lpctElementName)
    {
    }

    COptional<SNameOrText> m_Any;
    COptional<SNameOrNumber> m_Name;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"mixture", L"");
        description.Attribute(m_Any, L"any", L"");
        description.Attribute(m_Name, L"name", L"");
    }
};

} // namespace

TEST(Prefixes, LeaveTextsAloneThatLookLikeNamesOfASchema)
{
    for (const wchar_t* const lpctDocument :
         {L"<mixture any=\"{x}y\"/>", L"<mixture any=\"{urn:a}x\"/>", L"<mixture any=\"see {urn:a}x there\"/>",
          L"<mixture xmlns:p=\"urn:p\" any=\"p:x {urn:a}x\"/>", L"<mixture xmlns:p=\"urn:a\" any=\"p:x\"/>"})
    {
        CMixture mixture;
        mixture.FromXml(lpctDocument, {});
        EXPECT_EQ(Write(mixture), lpctDocument);
        CMixture again;
        again.FromXmlStream(mixture.ToFastInfosetStream(FInfoDecl_None, {}, Compression_None), {});
        EXPECT_EQ(again.m_Any.Get(), mixture.m_Any.Get());
    }
    // Where no document may hold it as it stands, it is the name that a program means.
    CMixture mixture;
    EXPECT_THROW(mixture.FromXml(L"<mixture name='{urn:a}x'/>", {}), CQvException);
    mixture.m_Name.Set(L"{urn:a}x", L"name");
    EXPECT_EQ(Write(mixture), L"<mixture xmlns:ns=\"urn:a\" name=\"ns:x\"/>");
}

namespace
{

/// Two elements that are names.
class CPair : public CGenerated<CPair>
{
public:
    explicit CPair(const wchar_t* lpctElementName = L"pair")
        : CInstanceMonitor(L"CPair")
        , CGenerated(lpctElementName)
    {
    }

    COptional<xs::QName> m_First;
    COptional<xs::QName> m_Second;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"pair", L"");
        description.Element(m_First, L"first", L"");
        description.Element(m_Second, L"second", L"");
    }
};

/// Restricts CLink: it has no element.
class CShortLink : public CGenerated<CShortLink, CLink>
{
public:
    explicit CShortLink(const wchar_t* lpctElementName = L"link")
        : CInstanceMonitor(L"CShortLink")
        , CGenerated(lpctElementName)
    {
    }

protected:
    void Describe(CClassDescription& description) const override
    {
        CLink::Describe(description);
        description.Restrict();
        description.Class(GroupType_Sequence, ElementType_Element, L"link", L"");
    }
};

/// An attribute that is one name and no other.
class CFixedThing : public CGenerated<CFixedThing>
{
public:
    explicit CFixedThing(const wchar_t* lpctElementName = L"thing")
        : CInstanceMonitor(L"CFixedThing")
        , CGenerated(lpctElementName)
    {
    }

    CDefaulted<xs::QName, SFixed<s_lpctKind>> m_Kind;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"thing", L"");
        description.Attribute(m_Kind, L"kind", L"");
    }
};

} // namespace

TEST(Prefixes, OfTwoElementsMayStandForDifferentNamespaces)
{
    CPair pair;
    pair.FromXml(L"<pair><first xmlns:a='urn:a'>a:x</first><second xmlns:a='urn:b'>a:y</second></pair>", {});
    EXPECT_EQ(pair.m_First.Get(), L"a:x");
    EXPECT_EQ(pair.m_Second.Get(), L"a1:y");
    EXPECT_EQ(pair.GetNamespaceOfPrefix(L"a"), L"urn:a");
    EXPECT_EQ(pair.GetNamespaceOfPrefix(L"a1"), L"urn:b");
    EXPECT_EQ(Write(pair),
              L"<pair><first xmlns:a=\"urn:a\">a:x</first><second xmlns:a1=\"urn:b\">a1:y</second></pair>");
}

TEST(Prefixes, OfMembersThatARestrictionDropsAreLeftAlone)
{
    CShortLink link;
    link.m_To.Set(L"a:x", L"to");
    link.DeclarePrefix(L"a", L"urn:a");
    EXPECT_EQ(Write(link), L"<link/>");
}

TEST(Prefixes, OfAFixedNameMayBeAnyThatStandsForItsNamespace)
{
    const struct
    {
        const wchar_t* lpctDocument;
        bool bRight;
    } cases[] = {
        {L"<thing/>", true},
        {L"<thing xmlns:p='urn:b' kind='p:y'/>", true},
        {L"<thing xmlns:p='urn:b' kind='p:x'/>", false},
        {L"<thing xmlns:p='urn:a' kind='p:y'/>", false},
        {L"<thing kind='y'/>", false},
    };
    for (const auto& c : cases)
    {
        CFixedThing thing;
        if (c.bRight)
            EXPECT_NO_THROW(thing.FromXml(c.lpctDocument, {})) << c.lpctDocument;
        else
            EXPECT_THROW(thing.FromXml(c.lpctDocument, {}), CQvException) << c.lpctDocument;
    }
}

TEST(Prefixes, AreLookedUpAtTheElementOfAName)
{
    const struct
    {
        const wchar_t* lpctDocument;
        const wchar_t* lpctName;
        const wchar_t* lpctListed;
        bool bSame;
    } cases[] = {
        {L"<r/>", L"x", L"{}x", true},
        {L"<r/>", L"x", L"{urn:a}x", false},
        {L"<r xmlns='urn:a'/>", L"x", L"{urn:a}x", true},
        {L"<r xmlns='urn:a'/>", L"x", L"{urn:b}x", false},
        {L"<r xmlns='urn:a'/>", L"x", L"{}x", false},
        {L"<r xmlns='urn:a'/>", L"y", L"{urn:a}x", false},
        {L"<r xmlns='urn:a' xmlns:p='urn:b'/>", L"p:x", L"{urn:b}x", true},
        {L"<r xmlns='urn:a' xmlns:p='urn:b'/>", L"p:x", L"{urn:a}x", false},
    };
    for (const auto& c : cases)
    {
        CXmlDocument document;
        document.LoadXml(c.lpctDocument);
        const CNameScope scope(*document.GetDocumentElement());
        EXPECT_EQ(CNameScope::IsSame(c.lpctName, c.lpctListed), c.bSame)
            << ::testing::PrintToString(std::wstring(c.lpctDocument) + L" " + c.lpctName + L" " + c.lpctListed);
    }
    EXPECT_TRUE(CNameScope::IsSame(L"q:x", L"{urn:a}x")) << "the local name decides where there is no document";
}

namespace
{

/// Several elements with a name each.
class CLinks : public CGenerated<CLinks>
{
public:
    explicit CLinks(const wchar_t* lpctElementName = L"links")
        : CInstanceMonitor(L"CLinks")
        , CGenerated(lpctElementName)
    {
    }

    static constexpr SRepeatedElement s_Link{L"link", L"", 0, -1};
    CSmartPtr<CObjectCol<CLink>> GetLink() const { return m_Link.Get(s_Link); }
    CRepeated<CObjectCol<CLink>> m_Link;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(GroupType_Sequence, ElementType_Element, L"links", L"");
        description.Element(m_Link, s_Link);
    }
};

} // namespace

TEST(Prefixes, OfSiblingsMayStandForDifferentNamespaces)
{
    const wchar_t* const uris[] = {L"urn:a", L"urn:b", L"urn:c"};
    for (int n = 0; n < 81; ++n)
    {
        CLinks links;
        std::wstring strXml = L"<links>";
        for (int nRest = n, i = 0; i < 4; ++i, nRest /= 3)
        {
            CLink& link = *links.GetLink()->AddNew();
            link.m_To.Set(L"p:q", L"to");
            link.DeclarePrefix(L"p", uris[nRest % 3]);
            strXml += std::wstring(L"<link xmlns:p=\"") + uris[nRest % 3] + L"\" to=\"p:q\"/>";
        }
        strXml += L"</links>";
        EXPECT_EQ(Write(links), strXml);
        for (const bool bFormat : {false, true})
        {
            for (const bool bBytes : {false, true})
            {
                CLinks again;
                if (bBytes)
                    again.FromXmlStream(
                        links.ToXmlStream(true, bFormat, Encoding_UTF8, EOLType_LF, {}, Compression_None), {});
                else
                    again.FromXml(links.ToXml(false, bFormat, EOLType_LF, {}).c_str(), {});
                EXPECT_EQ(Write(again), strXml);
            }
        }
    }
}

namespace
{

/// The namespaces of the names that the links hold.
std::vector<std::wstring> NamespacesOf(const CLinks& links)
{
    std::vector<std::wstring> uris;
    for (const CLink& link : *links.GetLink())
    {
        const std::wstring strName = link.m_To.Get();
        const std::size_t nColon = strName.find(L':');
        uris.push_back(
            link.GetNamespaceOfPrefix(nColon == std::wstring::npos ? L"" : strName.substr(0, nColon).c_str()));
    }
    return uris;
}

} // namespace

TEST(Prefixes, StandForTheNearestDeclarationInEveryForm)
{
    const struct
    {
        const wchar_t* lpctDeclaration;
        const wchar_t* lpctName;
        const wchar_t* lpctUri; ///< null for that of the root
    } places[] = {{L"", L"p:q", nullptr},
                  {L" xmlns:p='urn:a'", L"p:q", L"urn:a"},
                  {L" xmlns:p='urn:b'", L"p:q", L"urn:b"},
                  {L" xmlns:p='urn:a' xmlns:r='urn:b'", L"r:q", L"urn:b"},
                  {L" xmlns:r='urn:a'", L"r:q", L"urn:a"}};
    for (const wchar_t* const lpctRoot : {L"urn:a", L"urn:b"})
    {
        for (int n = 0; n < 125; ++n)
        {
            std::wstring strXml = std::wstring(L"<links xmlns:p='") + lpctRoot + L"'>";
            std::vector<std::wstring> expected;
            for (int nRest = n, i = 0; i < 3; ++i, nRest /= 5)
            {
                const auto& place = places[nRest % 5];
                strXml += std::wstring(L"<link") + place.lpctDeclaration + L" to='" + place.lpctName + L"'/>";
                expected.emplace_back(place.lpctUri != nullptr ? place.lpctUri : lpctRoot);
            }
            strXml += L"</links>";
            SCOPED_TRACE(::testing::PrintToString(strXml));
            CLinks links;
            links.FromXml(strXml.c_str(), {});
            ASSERT_EQ(NamespacesOf(links), expected);
            for (const CBinaryData& data :
                 {links.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, {}, Compression_None),
                  links.ToXmlStream(true, true, Encoding_UTF16, EOLType_LF, {}, Compression_None),
                  links.ToFastInfosetStream(FInfoDecl_None, {}, Compression_None)})
            {
                CLinks again;
                again.FromXmlStream(data, {});
                ASSERT_EQ(NamespacesOf(again), expected);
            }
        }
    }
}
