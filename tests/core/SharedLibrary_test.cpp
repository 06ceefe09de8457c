// A program that has the shared library, as users have it, and not the static one that other tests take: exceptions of every
// class are caught outside of the library that throws them, and a class of the program derives from one of the library.

#include "quiver/QvXmlLib.h"
#include "tests/support/Files.h"
#include "tests/support/FlexClass.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using QvTest::CFlexClass;
using QvTest::CShape;

namespace
{

void ThrowGeneral()
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXml("<a>");
}

void ThrowValidation()
{
    Ci4Col col(L"n", L"", 1, 1, L"", -1, -1, L"", L"", L"", L"", -1, CWhitespaceUtils::WhitespaceRule_Collapse,
               nullptr);
    col.ValidateCount(CXmlSerializationContext());
}

void ThrowInvalidValue()
{
    CConversions::i4FromString(L"x", CWhitespaceUtils::WhitespaceRule_None);
}

void ThrowInvalidNamespace()
{
    CElement element(L"a", L"##any");
}

void ThrowInvalidState()
{
    CDateTime(CDateTime::dt_gYear).GetMonth();
}

void ThrowInvalidParam()
{
    CstringCol col(L"s", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, CWhitespaceUtils::WhitespaceRule_None,
                   nullptr);
    col.Item(0);
}

void ThrowOverflow()
{
    CDecimal(L"1e30").ToLong();
}

/// Whether an action throws exactly this class, caught as it and as its bases.
template <class TException, class TBase>
void ExpectClass(void (*pfnThrow)())
{
    try
    {
        pfnThrow();
        ADD_FAILURE() << "nothing was thrown";
    }
    catch (const TException& ex)
    {
        EXPECT_TRUE(typeid(ex) == typeid(TException)) << typeid(ex).name();
        EXPECT_FALSE(ex.GetFullMessage().empty());
    }
    EXPECT_THROW(pfnThrow(), TBase);
    EXPECT_THROW(pfnThrow(), CQvException);
}

const CPrimitiveRestrictions s_noFacets(L"", -1, -1, L"", L"", L"", L"", -1);

/// A name, perhaps a number, and an attribute.
struct SArticle : CShape
{
    SArticle()
        : CShape(GroupType_Sequence, ElementType_Element, L"article")
    {
        Add(new CElementInfoSeqPrimMnd(L"name", L"", 1, ItemType_string, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Preserve, s_noFacets));
        Add(new CElementInfoSeqPrimOpt(L"count", L"", 2, ItemType_i4, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Collapse, s_noFacets));
        Add(new CAttributeInfoPrimitive(L"id", L"", 3, true, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, s_noFacets, L""));
    }
};

class SharedLibrary : public testing::Test
{
protected:
    SharedLibrary() { Register(9, 0); }

    CSmartPtr<CFlexClass> MakeArticle() const { return new CFlexClass(m_article, L"article"); }

    std::wstring Write(const CXmlObjectBase& object) const { return object.ToXml(false, false, EOLType_LF, m_context); }

    const SArticle m_article;
    const CXmlSerializationContext m_context;
    const wchar_t* const m_lpctXml = L"<article id=\"7\"><name>\x437\x430\x43A\x430\x437 \xD83D\xDE00</name>"
                                     L"<count>12</count></article>";
};

} // namespace

TEST_F(SharedLibrary, ThrowsEveryClassOfExceptionToItsUser)
{
    ExpectClass<CQvException, CQvException>(&ThrowGeneral);
    ExpectClass<CQvValidationException, CQvException>(&ThrowValidation);
    ExpectClass<CQvInvalidValueException, CQvValidationException>(&ThrowInvalidValue);
    ExpectClass<CQvInvalidNamespaceException, CQvValidationException>(&ThrowInvalidNamespace);
    ExpectClass<CQvInvalidStateException, CQvException>(&ThrowInvalidState);
    ExpectClass<CQvInvalidParamException, CQvException>(&ThrowInvalidParam);
    ExpectClass<CQvOverFlowException, CQvException>(&ThrowOverflow);
}

TEST_F(SharedLibrary, ReadsAndWritesAClassOfItsUser)
{
    const CSmartPtr<CFlexClass> spRead = MakeArticle();
    spRead->FromXml(m_lpctXml, m_context);
    EXPECT_EQ(m_lpctXml, Write(*spRead));

    const QvTest::CTempDir dir;
    const std::wstring strFile = dir.NameOf("article.xml");
    spRead->ToXmlFile(strFile.c_str(), true, true, Encoding_UTF16, EOLType_CRLF, m_context, Compression_None);
    const CSmartPtr<CFlexClass> spFromFile = MakeArticle();
    spFromFile->FromXmlFile(strFile.c_str(), m_context);
    EXPECT_EQ(m_lpctXml, Write(*spFromFile));

    const CSmartPtr<CFlexClass> spFromInfoset = MakeArticle();
    spFromInfoset->FromXmlStream(spRead->ToFastInfosetStream(FInfoDecl_None, m_context, Compression_None), m_context);
    EXPECT_EQ(m_lpctXml, Write(*spFromInfoset));
}

TEST_F(SharedLibrary, ThrowsThroughAClassOfItsUser)
{
    const CSmartPtr<CFlexClass> spArticle = MakeArticle();
    try
    {
        spArticle->FromXml(L"<article><name>x</name><count>many</count></article>", m_context);
        ADD_FAILURE() << "nothing was thrown";
    }
    catch (const CQvException& ex)
    {
        EXPECT_EQ(0u, ex.GetFullMessage().find(L"Failed to process the element [article]"));
    }
}

TEST_F(SharedLibrary, CastsToAClassOfItsUser)
{
    const CSmartPtr<CFlexClass> spArticle = MakeArticle();
    CXmlObjectBase* const pBase = spArticle;
    EXPECT_EQ(static_cast<CFlexClass*>(spArticle), dynamic_cast<CFlexClass*>(pBase));
    EXPECT_NE(nullptr, dynamic_cast<CXmlGeneratedClass*>(pBase));
    EXPECT_EQ(nullptr, dynamic_cast<CElement*>(pBase));
}
