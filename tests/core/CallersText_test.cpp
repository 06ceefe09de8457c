// Text that callers hand over, at every door of the library: a code point above 0xFFFF, which a literal may hold in one
// element, is kept as its surrogate pair, so that it equals the same text of a document; null counts as empty.

#include "quiver/QvXmlLib.h"
#include "tests/support/Expect.h"
#include "tests/support/FlexClass.h"
#include "tests/support/MetadataFixture.h"

#include <functional>

using namespace QvTest;

namespace
{

constexpr const wchar_t* s_lpctGiven = L"x\U0001F600";
constexpr const wchar_t* s_lpctKept = L"x\xD83D\xDE00";

/// The protected doors of an object laid open.
class CDoors : public CRecordingChild
{
public:
    CDoors()
        : CInstanceMonitor(L"CDoors")
    {
    }

    using CXmlObjectBase::DoesElementNameMatch;
    using CXmlObjectBase::IsNamespaceValid;
    using CXmlObjectBase::SetElementName;
    using CXmlObjectBase::TestNamespace;
    using CXmlObjectBase::Throw_IfElementNameDiffers;
};

/// What a record of the family shows of its texts.
template <class TRecord>
struct CShownRecord : TRecord
{
    using TRecord::GetElementName;
    using TRecord::GetElementNamespace;
    using TRecord::TRecord;
};

struct CShownAttribute : CAttributeInfoEnum
{
    using CAttributeInfoEnum::CAttributeInfoEnum;
    using CAttributeInfoEnum::m_strDefault;
    using CAttributeInfoEnum::m_strName;
    using CAttributeInfoEnum::m_strNamespace;
};

CPrimitiveRestrictions Restrictions(const wchar_t* pattern, const wchar_t* minInclusive, const wchar_t* maxInclusive,
                                    const wchar_t* minExclusive, const wchar_t* maxExclusive)
{
    return CPrimitiveRestrictions(pattern, -1, -1, minInclusive, maxInclusive, minExclusive, maxExclusive, -1);
}

CShownAttribute Attribute(const wchar_t* lpctName, const wchar_t* lpctNamespace, const wchar_t* lpctDefault)
{
    return CShownAttribute(lpctName, lpctNamespace, Index, true, &FiveToString, &FiveFromString, lpctDefault);
}

struct SDoor
{
    const char* lpcName;
    /// Hands the text over and gives what the library has made of it.
    std::function<std::wstring(const wchar_t*)> pfnPass;
};

const SDoor s_doors[] = {
    {"SetElementName",
     [](const wchar_t* lpctText)
     {
         CDoors object;
         object.SetElementName(lpctText);
         return object.GetElementName();
     }},
    {"the default namespace of a context",
     [](const wchar_t* lpctText)
     {
         CXmlSerializationContext context;
         context.SetDefaultNamespaceURI(lpctText);
         return context.GetDefaultNamespaceURI();
     }},
    {"the in-line schema of a context",
     [](const wchar_t* lpctText)
     {
         CXmlSerializationContext context;
         context.SetInLineSchema(lpctText);
         return context.GetInLineSchema();
     }},
    {"an alias",
     [](const wchar_t* lpctText)
     {
         CNamespaceAliasMap map;
         map.Add(lpctText, L"urn:x");
         return map.DoesAliasExist(lpctText) ? map.GetAliasFromNamespace(L"urn:x") : L"(unknown)";
     }},
    {"the namespace of an alias",
     [](const wchar_t* lpctText)
     {
         CNamespaceAliasMap map;
         map.Add(L"a", lpctText);
         return map.DoesNamespaceExist(lpctText) ? map.GetNamespaceAt(0) : L"(unknown)";
     }},
    {"the name of a class record",
     [](const wchar_t* lpctText)
     {
         return CParentElementInfo(GroupType_All, ElementType_Element, lpctText, L"", -1, true, true).GetElementName();
     }},
    {"the namespace of a class record",
     [](const wchar_t* lpctText)
     {
         return CParentElementInfo(GroupType_All, ElementType_Element, L"", lpctText, -1, true, true)
             .GetElementNamespace();
     }},
    {"the name of an element record",
     [](const wchar_t* lpctText)
     {
         return CShownRecord<CElementInfoSeqPrimCol>(lpctText, L"", Index).GetElementName();
     }},
    {"the namespace of an element record",
     [](const wchar_t* lpctText)
     {
         return CShownRecord<CElementInfoChoicePrimCol>(L"", lpctText, Index).GetElementNamespace();
     }},
    {"the name of a primitive element record",
     [](const wchar_t* lpctText)
     {
         return CShownRecord<CElementInfoAllPrimOpt>(lpctText, L"", Index, ItemType_string, nullptr,
                                                     CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions())
             .GetElementName();
     }},
    {"the namespace of a primitive element record",
     [](const wchar_t* lpctText)
     {
         return CShownRecord<CElementInfoAllPrimOpt>(L"", lpctText, Index, ItemType_string, nullptr,
                                                     CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions())
             .GetElementNamespace();
     }},
    {"the name of an attribute record",
     [](const wchar_t* lpctText)
     {
         return Attribute(lpctText, L"", L"").m_strName;
     }},
    {"the namespace of an attribute record",
     [](const wchar_t* lpctText)
     {
         return Attribute(L"", lpctText, L"").m_strNamespace;
     }},
    {"the default of an attribute record",
     [](const wchar_t* lpctText)
     {
         return Attribute(L"", L"", lpctText).m_strDefault;
     }},
    {"a pattern",
     [](const wchar_t* lpctText)
     {
         return Restrictions(lpctText, L"", L"", L"", L"").GetPattern();
     }},
    {"minInclusive",
     [](const wchar_t* lpctText)
     {
         return Restrictions(L"", lpctText, L"", L"", L"").GetMinInclusive();
     }},
    {"maxInclusive",
     [](const wchar_t* lpctText)
     {
         return Restrictions(L"", L"", lpctText, L"", L"").GetMaxInclusive();
     }},
    {"minExclusive",
     [](const wchar_t* lpctText)
     {
         return Restrictions(L"", L"", L"", lpctText, L"").GetMinExclusive();
     }},
    {"maxExclusive",
     [](const wchar_t* lpctText)
     {
         return Restrictions(L"", L"", L"", L"", lpctText).GetMaxExclusive();
     }},
    {"the name of a collection's items",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CXmlCollection>(new CRecordingCol(lpctText, 0, -1))->GetElementName();
     }},
    {"the namespace of a collection's items",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<Ci4Col>(new Ci4Col(L"", lpctText, 0, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                             CWhitespaceUtils::WhitespaceRule_None, nullptr))
             ->GetNamespace();
     }},
    {"the namespace of attributes",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CAttributeCol>(new CAttributeCol(lpctText, L"##any", L""))->GetNamespace();
     }},
    {"the restriction of attributes",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CAttributeCol>(new CAttributeCol(L"", lpctText, L""))->GetNamespace();
     }},
    {"the name of an attribute",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(lpctText)->GetName();
     }},
    {"the value of an attribute",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(L"a", lpctText)->GetValue();
     }},
    {"the namespace of an attribute",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(L"a", L"", lpctText)->GetNamespace();
     }},
    {"a new name of an attribute",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CAttribute> spAttribute = CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(L"a");
         spAttribute->SetName(lpctText);
         return spAttribute->GetName();
     }},
    {"a new value of an attribute",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CAttribute> spAttribute = CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(L"a");
         spAttribute->SetValue(lpctText);
         return spAttribute->GetValue();
     }},
    {"a new namespace of an attribute",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CAttribute> spAttribute = CSmartPtr<CElement>(new CElement(L"e"))->GetAttributes()->Add(L"a");
         spAttribute->SetNamespace(lpctText);
         return spAttribute->GetNamespace();
     }},
    {"the target namespace of elements",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElementCol>(new CElementCol(L"", L"##any", lpctText, 0, -1))->GetNamespace();
     }},
    {"the namespace of elements",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElementCol>(
                    new CElementCol(lpctText, lpctText == nullptr ? L"##other" : L"##any", L"u", 0, -1))
             ->Add(L"e")
             ->GetNamespace()
             .erase(0, lpctText == nullptr ? 7 : 0);
     }},
    {"the namespace of a new element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElementCol>(new CElementCol(L"", L"##any", L"", 0, -1))->Add(L"e", lpctText)->GetNamespace();
     }},
    {"the namespace of an open element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e", lpctText, L"##any", L""))->GetNamespace();
     }},
    {"a new name of an open element",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CElement> spElement = new CElement(L"e");
         spElement->SetName(lpctText);
         return spElement->GetName();
     }},
    {"a new text of an open element",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CElement> spElement = new CElement(L"e");
         spElement->SetText(lpctText);
         return spElement->GetText();
     }},
    {"a new namespace of an open element",
     [](const wchar_t* lpctText)
     {
         const CSmartPtr<CElement> spElement = new CElement(L"e");
         spElement->SetNamespace(lpctText);
         return spElement->GetNamespace();
     }},
};

/// The doors that take no null.
const SDoor s_textDoors[] = {
    {"QvVariant::SetString",
     [](const wchar_t* lpctText)
     {
         QvVariant value;
         value.SetString(lpctText);
         return value.GetString();
     }},
    {"QvVariant::FromString",
     [](const wchar_t* lpctText)
     {
         QvVariant value;
         value.FromString(lpctText, ItemType_string, CWhitespaceUtils::WhitespaceRule_None);
         return value.GetString();
     }},
    {"CConversions::stringFromString, unchanged by its rule",
     [](const wchar_t* lpctText)
     {
         return CConversions::stringFromString(lpctText, CWhitespaceUtils::WhitespaceRule_None);
     }},
    {"CConversions::stringFromString, changed by its rule",
     [](const wchar_t* lpctText)
     {
         return CConversions::stringFromString(std::wstring(L"  ") + lpctText,
                                               CWhitespaceUtils::WhitespaceRule_Collapse);
     }},
    {"CConversions::stringToString",
     [](const wchar_t* lpctText)
     {
         return CConversions::stringToString(lpctText);
     }},
    {"a collection of strings",
     [](const wchar_t* lpctText)
     {
         CSmartPtr<CstringCol> spStrings = new CstringCol(L"", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                                          CWhitespaceUtils::WhitespaceRule_None, nullptr);
         spStrings->Add(lpctText);
         return spStrings->Item(0);
     }},
    {"the name of an open element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(lpctText))->GetName();
     }},
    {"the name of a new element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e", L"u"))->GetChildElements()->Add(lpctText)->GetName();
     }},
    {"the restriction of an open element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e", s_lpctKept, lpctText, L""))->GetNamespace();
     }},
    {"the target namespace of an open element",
     [](const wchar_t* lpctText)
     {
         return CSmartPtr<CElement>(new CElement(L"e", s_lpctKept, L"##targetNamespace", lpctText))->GetNamespace();
     }},
    {"the name of an external vocabulary",
     [](const wchar_t* lpctText)
     {
         CFastInfosetContext context;
         context.SetExternalVocabularyURI(lpctText);
         return context.GetExternalVocabularyURI();
     }},
};

/// An element whose name and namespace are the text; no parser makes one, since the name is none in XML 1.0.
struct CAstralElement : CXmlElement
{
    CAstralElement()
        : CXmlElement(nullptr)
    {
        SetElementName(s_lpctKept);
        SetNamespace(s_lpctKept);
    }
    ~CAstralElement() override = default;
};

} // namespace

TEST(CallersText, IsKeptInUnits)
{
    for (const SDoor& door : s_doors)
    {
        SCOPED_TRACE(door.lpcName);
        EXPECT_TEXT(s_lpctKept, door.pfnPass(s_lpctGiven));
    }
    for (const SDoor& door : s_textDoors)
    {
        SCOPED_TRACE(door.lpcName);
        EXPECT_TEXT(s_lpctKept, door.pfnPass(s_lpctGiven));
    }
}

TEST(CallersText, ThatIsNullIsEmpty)
{
    for (const SDoor& door : s_doors)
    {
        SCOPED_TRACE(door.lpcName);
        EXPECT_TEXT(L"", door.pfnPass(nullptr));
    }
}

TEST(CallersText, OfAClassMeetsTheSameTextOfADocument)
{
    CAstralElement element;
    const CXmlSerializationContext context;
    CDoors object;
    EXPECT_TRUE(object.DoesElementNameMatch(context, &element, s_lpctGiven, s_lpctGiven));
    EXPECT_FALSE(object.DoesElementNameMatch(context, &element, s_lpctGiven, nullptr));
    EXPECT_FALSE(object.DoesElementNameMatch(context, &element, nullptr, s_lpctGiven));

    const CSmartPtr<CDoors> spNamed = new CDoors;
    spNamed->SetElementName(s_lpctKept);
    EXPECT_NO_THROW(object.Throw_IfElementNameDiffers(spNamed, s_lpctGiven));
    EXPECT_THROW(object.Throw_IfElementNameDiffers(spNamed, nullptr), CQvInvalidParamException);

    EXPECT_TRUE(object.IsNamespaceValid(s_lpctKept, s_lpctGiven, L""));
    EXPECT_TRUE(object.IsNamespaceValid(s_lpctGiven, s_lpctKept, L""));
    EXPECT_TRUE(object.IsNamespaceValid(s_lpctKept, L"##targetNamespace", s_lpctGiven));
    EXPECT_FALSE(object.IsNamespaceValid(s_lpctKept, L"##other", s_lpctGiven));
    EXPECT_TRUE(object.IsNamespaceValid(nullptr, L"##local", nullptr));
    EXPECT_FALSE(object.IsNamespaceValid(L"u", nullptr, nullptr));
    // Each of the three is a text of its own.
    EXPECT_FALSE(object.IsNamespaceValid(s_lpctGiven, L"x\U0001F601", s_lpctGiven));
    EXPECT_TRUE(object.IsNamespaceValid(s_lpctGiven, L"##other", L"x\U0001F601"));
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [u]. The namespace must be one of [x\xD83D\xDE00] where the target namespace is []",
        [&] { object.TestNamespace(L"u", s_lpctGiven, nullptr); });
}

TEST(CallersText, OfMetadataMeetsTheSameTextOfADocument)
{
    CShape shape(GroupType_Sequence, ElementType_Element, L"root", L"", -1);
    shape.Add(new CElementInfoSeqPrimMnd(L"e", s_lpctGiven, 1, ItemType_string, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_None,
                                         CPrimitiveRestrictions(s_lpctGiven, 3, 3, L"", L"", L"", L"", 3)));
    shape.AddObject(new CElementInfoSeqUntpdOpt(L"AnyElement", L"", 2, s_lpctGiven, L""), 2);
    shape.Add(new CAttributeInfoPrimitive(L"a", s_lpctGiven, 3, true, ItemType_string, nullptr,
                                          CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions(),
                                          s_lpctGiven));
    const CSmartPtr<CFlexClass> spObject = new CFlexClass(shape, L"root");
    CXmlSerializationContext context;
    context.SetNoOptionalAttributeDefaultOutput(true);
    context.GetProcessingInstructions().push_back(std::wstring(L"<?") + s_lpctGiven + L"?>");
    const std::wstring strKept = s_lpctKept;
    const std::wstring strContent = L"<p:e>" + strKept + L"</p:e><p:any/></root>";
    const std::wstring strNamespace = L" xmlns:p=\"" + strKept + L"\"";
    spObject->FromXml((L"<root p:a=\"" + strKept + L"\"" + strNamespace + L">" + strContent).c_str(), context);
    EXPECT_TEXT(s_lpctKept, spObject->Text(1));
    EXPECT_TEXT(s_lpctKept, spObject->Text(3));
    // What the application sets is what was read.
    spObject->SetText(1, s_lpctGiven);
    spObject->SetText(3, s_lpctGiven);
    context.GetNamespaceAliases().Add(L"p", s_lpctGiven);
    EXPECT_TEXT(L"<?" + strKept + L"?>\n\n<root" + strNamespace + L">" + strContent,
                spObject->ToXml(false, false, EOLType_LF, context));
}

TEST(CallersText, OfAnEnumerationIsComparedWithItsDefaultInUnits)
{
    const PfnEnumToString pfnToString = [](int)
    {
        return s_lpctGiven;
    };
    CShape shape;
    shape.Add(new CAttributeInfoEnum(L"a", L"", 1, true, pfnToString, &FiveFromString, s_lpctGiven));
    const CSmartPtr<CFlexClass> spObject = new CFlexClass(shape);
    (*spObject)[1].SetI4(5);
    CXmlSerializationContext context;
    context.SetNoOptionalAttributeDefaultOutput(true);
    EXPECT_TEXT(L"<flex/>", spObject->ToXml(false, false, EOLType_LF, context));
}
