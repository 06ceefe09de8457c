// Open content that was read, written and read again is what it was, and is written as it was.

#include "fuzz/FuzzInput.h"

#include "quiver/collections/Element.h"
#include "quiver/core/XmlSerializationContext.h"

using namespace QvXmlLib9;

namespace
{

const struct SRegisterVersion
{
    SRegisterVersion() { Register(9, 0); }
} s_registerVersion;

CSmartPtr<CElement> Read(const std::wstring& strXml)
{
    const CSmartPtr<CElement> spElement = new CElement(L"any", L"", L"##any", L"");
    spElement->FromXml(strXml.c_str());
    return spElement;
}

/// Whether writing keeps the element and all below it. It does not escape namespaces, nor tabs and carriage returns in
/// attributes, and text that looks like a CDATA section is written as one. All of that is meant.
bool IsKept(const CElement& element)
{
    const auto IsPlain = [](const std::wstring& strNamespace)
    {
        return strNamespace.find_first_of(L"\"&<>\t\n\r") == std::wstring::npos;
    };
    bool bKept = IsPlain(element.GetNamespace()) && element.GetText().compare(0, 9, L"<![CDATA[") != 0;
    for (const CAttribute& attribute : *element.GetAttributes())
        bKept = bKept && IsPlain(attribute.GetNamespace()) &&
                attribute.GetValue().find_first_of(L"\t\r") == std::wstring::npos;
    for (const CElement& child : *element.GetChildElements())
        bKept = bKept && IsKept(child);
    return bKept;
}

std::wstring Write(const CElement& element)
{
    return element.ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    CSmartPtr<CElement> spRead;
    const std::wstring strSource = fuzz::Text(pData, nSize);
    if (!fuzz::Succeeds([&] { spRead = Read(strSource); }) || !IsKept(*spRead))
        return 0;
    const std::wstring strXml = Write(*spRead);
    fuzz::Require(Write(*spRead->Clone()) == strXml, "a clone is written like its source");
    CSmartPtr<CElement> spAgain;
    fuzz::Require(fuzz::Succeeds([&] { spAgain = Read(strXml); }), "what was written can be read");
    fuzz::Require(Write(*spAgain) == strXml, "what was written is read as it was");
    return 0;
}
