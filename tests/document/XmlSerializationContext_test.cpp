#include "quiver/document/XmlSerializationContext.h"

#include "quiver/collections/Attribute.h"
#include "tests/support/Expect.h"

#include <thread>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

struct SOption
{
    const char* lpcName;
    bool (CXmlSerializationContext::*pfnGet)() const;
    void (CXmlSerializationContext::*pfnSet)(bool);
    bool bDefault;
};

using C = CXmlSerializationContext;
const SOption s_options[] = {
    {"IgnoreInvalidCollectionCounts", &C::GetIgnoreInvalidCollectionCounts, &C::SetIgnoreInvalidCollectionCounts,
     false},
    {"IgnoreMissingChoice", &C::GetIgnoreMissingChoice, &C::SetIgnoreMissingChoice, false},
    {"IgnoreMissingMandatoryElements", &C::GetIgnoreMissingMandatoryElements, &C::SetIgnoreMissingMandatoryElements,
     false},
    {"IgnoreUnknownElements", &C::GetIgnoreUnknownElements, &C::SetIgnoreUnknownElements, false},
    {"IgnoreUnknownAttributes", &C::GetIgnoreUnknownAttributes, &C::SetIgnoreUnknownAttributes, false},
    {"IgnoreNamespaces", &C::GetIgnoreNamespaces, &C::SetIgnoreNamespaces, false},
    {"NoOptionalAttributeDefaultOutput", &C::GetNoOptionalAttributeDefaultOutput,
     &C::SetNoOptionalAttributeDefaultOutput, false},
    {"WriteTypeAttribute", &C::GetWriteTypeAttribute, &C::SetWriteTypeAttribute, true},
    {"StripCDATA", &C::GetStripCDATA, &C::SetStripCDATA, true},
};

} // namespace

TEST(XmlSerializationContext, EachSwitchHasItsDefaultAndIsIndependentOfTheOthers)
{
    for (const SOption& option : s_options)
    {
        SCOPED_TRACE(option.lpcName);
        CXmlSerializationContext context;
        EXPECT_EQ((context.*option.pfnGet)(), option.bDefault);
        (context.*option.pfnSet)(!option.bDefault);
        for (const SOption& other : s_options)
        {
            SCOPED_TRACE(other.lpcName);
            EXPECT_EQ((context.*other.pfnGet)(), &other == &option ? !other.bDefault : other.bDefault);
        }
    }
}

TEST(XmlSerializationContext, TextOptionsAreEmptyByDefaultAndKeepWhatIsSet)
{
    CXmlSerializationContext context;
    EXPECT_TEXT(L"", context.GetDefaultNamespaceURI());
    EXPECT_TEXT(L"", context.GetInLineSchema());
    EXPECT_TRUE(context.GetProcessingInstructions().empty());
    EXPECT_EQ(context.GetNamespaceAliases().GetNamespaceCount(), 0);
    EXPECT_EQ(context.GetSchemaType(), SchemaType_Namespaced);

    context.SetDefaultNamespaceURI(L"urn:a");
    context.SetInLineSchema(L"<schema/>");
    context.GetProcessingInstructions().push_back(L"<?a?>");
    context.GetNamespaceAliases().Add(L"x", L"urn:x");
    EXPECT_TEXT(L"urn:a", context.GetDefaultNamespaceURI());
    EXPECT_TEXT(L"<schema/>", context.GetInLineSchema());
    const CXmlSerializationContext& constContext = context;
    EXPECT_EQ(constContext.GetProcessingInstructions().size(), 1u);
    EXPECT_TRUE(constContext.GetNamespaceAliases().DoesAliasExist(L"x"));
}

TEST(XmlSerializationContext, IgnoreUnknownElementsIsRefusedWhileMissingElementsAreIgnored)
{
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    ExpectThrows<CQvInvalidStateException>(
        L"The parser can only ignore additional elements, or ignore the fact that some required ones are missing, you "
        L"can not "
        L"ignore both\nSet IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to true",
        [&] { context.SetIgnoreUnknownElements(true); });
    EXPECT_FALSE(context.GetIgnoreUnknownElements());
    context.SetIgnoreUnknownElements(false);

    context.SetIgnoreMissingMandatoryElements(false);
    context.SetIgnoreUnknownElements(true);
    EXPECT_TRUE(context.GetIgnoreUnknownElements());
}

TEST(XmlSerializationContext, IgnoreMissingMandatoryElementsIsRefusedWhileUnknownElementsAreIgnored)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    ExpectThrows<CQvInvalidStateException>(
        L"The parser can only ignore additional elements, or ignore the fact that some required ones are missing, you "
        L"can not "
        L"ignore both\nSet IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to true",
        [&] { context.SetIgnoreMissingMandatoryElements(true); });
    EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
    context.SetIgnoreMissingMandatoryElements(false);
    EXPECT_TRUE(context.GetIgnoreUnknownElements());
}

TEST(XmlSerializationContext, ASchemaWithoutNamespacesIgnoresThemWhateverWasSet)
{
    CXmlSerializationContext context;
    context.SetIgnoreNamespaces(false);
    context.SetSchemaType(SchemaType_NoNamespaces);
    EXPECT_TRUE(context.GetIgnoreNamespaces());
    context.SetSchemaType(static_cast<SchemaType>(1));
    EXPECT_FALSE(context.GetIgnoreNamespaces());
}

TEST(XmlSerializationContext, TheDefaultContextIsOneObject)
{
    EXPECT_EQ(&CXmlSerializationContext::GetDefaultContext(), &CXmlSerializationContext::GetDefaultContext());
    EXPECT_TRUE(CXmlSerializationContext::GetDefaultContext().GetWriteTypeAttribute());
    EXPECT_TRUE(CXmlSerializationContext::GetDefaultContext().GetStripCDATA());
}

TEST(XmlSerializationContext, RootAttributesAreMadeOnceAndAcceptAnyNamespace)
{
    const CXmlSerializationContext context;
    const CSmartPtr<CAttributeCol> spFirst = context.GetAdditionalRootAttributes();
    spFirst->Add(L"version", L"1", L"urn:any");
    const CSmartPtr<CAttributeCol> spSecond = context.GetAdditionalRootAttributes();
    EXPECT_EQ(static_cast<CAttributeCol*>(spFirst), static_cast<CAttributeCol*>(spSecond));
    EXPECT_EQ(spSecond->GetCount(), 1);
    EXPECT_TEXT(L"", spFirst->GetNamespace());
}

TEST(XmlSerializationContext, ACopySharesRootAttributesThatExistAndGetsItsOwnOtherwise)
{
    CXmlSerializationContext source;
    const CXmlSerializationContext before(source);
    const CSmartPtr<CAttributeCol> spSource = source.GetAdditionalRootAttributes();
    const CXmlSerializationContext after(source);
    CXmlSerializationContext assigned;
    assigned.GetAdditionalRootAttributes();
    assigned = source;

    EXPECT_NE(static_cast<CAttributeCol*>(before.GetAdditionalRootAttributes()), static_cast<CAttributeCol*>(spSource));
    EXPECT_EQ(static_cast<CAttributeCol*>(after.GetAdditionalRootAttributes()), static_cast<CAttributeCol*>(spSource));
    EXPECT_EQ(static_cast<CAttributeCol*>(assigned.GetAdditionalRootAttributes()),
              static_cast<CAttributeCol*>(spSource));
}

TEST(XmlSerializationContext, ACopyTakesEveryOptionAndIsIndependentAfterwards)
{
    CXmlSerializationContext source;
    source.SetIgnoreInvalidCollectionCounts(true);
    source.SetIgnoreMissingChoice(true);
    source.SetIgnoreUnknownElements(true);
    source.SetIgnoreUnknownAttributes(true);
    source.SetIgnoreNamespaces(true);
    source.SetNoOptionalAttributeDefaultOutput(true);
    source.SetWriteTypeAttribute(false);
    source.SetStripCDATA(false);
    source.SetSchemaType(SchemaType_NoNamespaces);
    source.SetDefaultNamespaceURI(L"urn:a");
    source.SetInLineSchema(L"<s/>");
    source.GetProcessingInstructions().push_back(L"<?a?>");
    source.GetNamespaceAliases().Add(L"x", L"urn:x");
    source.GetFIContext().SetAttributeMaxAddLength(99);

    CXmlSerializationContext copy(source);
    source.GetProcessingInstructions().clear();
    source.GetNamespaceAliases().RemoveNamespace(L"urn:x");
    source.SetDefaultNamespaceURI(L"");

    EXPECT_TRUE(copy.GetIgnoreInvalidCollectionCounts());
    EXPECT_TRUE(copy.GetIgnoreMissingChoice());
    EXPECT_TRUE(copy.GetIgnoreUnknownElements());
    EXPECT_FALSE(copy.GetIgnoreMissingMandatoryElements());
    EXPECT_TRUE(copy.GetIgnoreUnknownAttributes());
    EXPECT_TRUE(copy.GetIgnoreNamespaces());
    EXPECT_TRUE(copy.GetNoOptionalAttributeDefaultOutput());
    EXPECT_FALSE(copy.GetWriteTypeAttribute());
    EXPECT_FALSE(copy.GetStripCDATA());
    EXPECT_EQ(copy.GetSchemaType(), SchemaType_NoNamespaces);
    EXPECT_TEXT(L"urn:a", copy.GetDefaultNamespaceURI());
    EXPECT_TEXT(L"<s/>", copy.GetInLineSchema());
    EXPECT_EQ(copy.GetProcessingInstructions().size(), 1u);
    EXPECT_TRUE(copy.GetNamespaceAliases().DoesNamespaceExist(L"urn:x"));
    EXPECT_EQ(copy.GetFIContext().GetAttributeMaxAddLength(), 99u);
}

TEST(XmlSerializationContext, ThreadsThatAskForRootAttributesAtOnceGetTheSameCollection)
{
    const CXmlSerializationContext context;
    std::vector<CAttributeCol*> found(8);
    std::vector<std::thread> threads;
    for (CAttributeCol*& pFound : found)
        threads.emplace_back([&] { pFound = context.GetAdditionalRootAttributes(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const CAttributeCol* pFound : found)
        EXPECT_EQ(pFound, found[0]);
}

TEST(XmlSerializationContext, EnumeratorsKeepTheirNumbers)
{
    EXPECT_EQ(Encoding_None, 0);
    EXPECT_EQ(Encoding_UTF8, 1);
    EXPECT_EQ(Encoding_UTF16, 2);
    EXPECT_EQ(Encoding_UTF16_Undeclared, 3);
    EXPECT_EQ(EOLType_CRLF, 0);
    EXPECT_EQ(EOLType_LF, 1);
    EXPECT_EQ(SchemaType_Namespaced, 0);
    EXPECT_EQ(SchemaType_NoNamespaces, 2);
    EXPECT_EQ(Compression_None, 0);
    EXPECT_EQ(Compression_GZip, 1);
    EXPECT_EQ(Compression_ZLib, 2);
    const FInfoDecl declarations[] = {FInfoDecl_None,
                                      FInfoDecl_Plain,
                                      FInfoDecl_StandaloneYes,
                                      FInfoDecl_StandaloneNo,
                                      FInfoDecl_V10,
                                      FInfoDecl_V10_StandaloneYes,
                                      FInfoDecl_V10_StandaloneNo,
                                      FInfoDecl_V11,
                                      FInfoDecl_V11_StandaloneYes,
                                      FInfoDecl_V11_StandaloneNo};
    int nNumber = 0;
    for (const FInfoDecl eDeclaration : declarations)
        EXPECT_EQ(eDeclaration, nNumber++);
}
