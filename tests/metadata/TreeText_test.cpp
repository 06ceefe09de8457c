#include "quiver/metadata/TreeText.h"

#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/values/QvVariant.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string_view>

using namespace QvXmlLib9;
using QvXmlLib9Data::CTreeText;

TEST(TreeText, HandsOutTheUtf8OfTheTree)
{
    CXmlDocument document;
    document.LoadXml("<a b='gr\xC3\xBC"
                     "n' c=''>gr\xC3\xBC"
                     "n<d/></a>");
    const CXmlElement& element = *document.GetDocumentElement();
    QvVariant value;
    std::string_view svUtf8;
    CTreeText::Store(element, value);
    EXPECT_TRUE(value.GetUtf8(svUtf8));
    EXPECT_TEXT(L"gr\x00FCn", value.GetString());
    CTreeText::Store(*element.GetAttributes()[0], value);
    EXPECT_TRUE(value.GetUtf8(svUtf8));
    EXPECT_TEXT(L"gr\x00FCn", value.GetString());
    CTreeText::Store(*element.GetAttributes()[1], value);
    EXPECT_TEXT(L"", value.GetString());
    CTreeText::Store(*document.GetDocumentElement()->GetFirstElement(), value);
    EXPECT_TEXT(L"", value.GetString());
}

TEST(TreeText, HandsOutAStringWhereTheTreeHasOne)
{
    CXmlDocument document;
    document.LoadXml("<a b='1'>text</a>");
    const CXmlElement& element = *document.GetDocumentElement();
    EXPECT_TEXT(L"text", element.GetText());
    EXPECT_TEXT(L"1", element.GetAttributes()[0]->GetValue());
    QvVariant value;
    std::string_view svUtf8;
    CTreeText::Store(element, value);
    EXPECT_FALSE(value.GetUtf8(svUtf8));
    EXPECT_TEXT(L"text", value.GetString());
    CTreeText::Store(*element.GetAttributes()[0], value);
    EXPECT_TEXT(L"1", value.GetString());
}
