// Reads the settings of a program whose plug-ins keep data of their own in it, reports what the schema does not
// describe, changes some of it, writes it all, and reads it again to see that nothing was lost.
//
//     open_content IN.xml [OUT.xml]

#include "Factory.h"

#include "examples/common/Console.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace settings;
using example::Narrow;

namespace
{

const wchar_t s_lpctSettings[] = L"urn:example:settings";
const wchar_t s_lpctXsi[] = L"http://www.w3.org/2001/XMLSchema-instance";

/// Calls `visitor` with an element of unknown content and then with everything below it.
template <class TVisitor>
void Visit(const CElement& element, TVisitor&& visitor, int nDepth = 0)
{
    visitor(element, nDepth);
    for (const CElement& child : *element.GetChildElements())
        Visit(child, visitor, nDepth + 1);
}

/// The same for all open content of the document.
template <class TVisitor>
void VisitAll(const CSettings& document, TVisitor&& visitor)
{
    if (document.GetAny() != nullptr)
        Visit(*document.GetAny(), visitor);
    for (const CPlugin& plugin : *document.GetPlugin())
        Visit(*plugin.GetAny(), visitor);
    for (const CElement& element : *document.GetAny2())
        Visit(element, visitor);
}

/// To the library the value of an xsi:type in open content is text like any other, and a prefix in it would lose its
/// meaning: names are written with the prefixes of the context, whatever they had where they came from. So the prefixes
/// that such values use are declared with the document that is written.
void KeepPrefixesOfTypes(const CSettings& settingsRead, const CXmlDocument& document, CXmlSerializationContext& context)
{
    VisitAll(settingsRead,
             [&](const CElement& element, int)
             {
                 for (const CAttribute& attribute : *element.GetAttributes())
                 {
                     const std::wstring strValue = attribute.GetValue();
                     const std::size_t nColon = strValue.find(L':');
                     if (attribute.GetName() != L"type" || attribute.GetNamespace() != s_lpctXsi ||
                         nColon == std::wstring::npos)
                         continue;
                     const std::wstring strPrefix = strValue.substr(0, nColon);
                     const std::wstring strUri = document.LookupNamespaceFromAlias(strPrefix.c_str());
                     if (!strUri.empty())
                         context.GetNamespaceAliases().Add(strPrefix.c_str(), strUri.c_str());
                 }
             });
}

/// One line for an element, and what has to be told about its attributes.
std::string Describe(const CElement& element)
{
    std::string strLine = "{" + Narrow(element.GetNamespace()) + "}" + Narrow(element.GetName());
    for (const CAttribute& attribute : *element.GetAttributes())
    {
        const std::string strNamespace = Narrow(attribute.GetNamespace());
        strLine += strNamespace.empty() ? " " : " {" + strNamespace + "}";
        strLine += Narrow(attribute.GetName()) + "=" + Narrow(attribute.GetValue());
    }
    const std::string strText = Narrow(element.GetText());
    const bool bBlank = strText.find_first_not_of(" \n\t") == std::string::npos;
    return bBlank ? strLine : strLine + ": " + strText;
}

/// Everything that the schema does not describe, as text: what must survive.
std::string Unknown(const CSettings& document)
{
    std::string strReport;
    VisitAll(document, [&](const CElement& element, int nDepth)
             { strReport += std::string(2 * static_cast<std::size_t>(nDepth) + 2, ' ') + Describe(element) + "\n"; });
    return strReport;
}

void Report(const CSettings& document)
{
    std::map<std::wstring, int> elementsByNamespace;
    VisitAll(document, [&](const CElement& element, int) { ++elementsByNamespace[element.GetNamespace()]; });

    std::printf("%s, version %d, %d plug-ins, %d unknown attributes\n", Narrow(document.GetTitle()).c_str(),
                document.GetVersion(), document.GetPlugin()->GetCount(), document.GetAnyAttribute()->GetCount());
    for (const auto& [strNamespace, nCount] : elementsByNamespace)
        std::printf("  %d unknown elements of [%s]\n", nCount, Narrow(strNamespace).c_str());
    std::printf("%s", Unknown(document).c_str());
}

/// Changes known content, and unknown content beside it.
void Change(CSettings& document)
{
    document.SetVersion(document.GetVersion() + 1);
    document.GetAnyAttribute()->Add(L"checked", L"yes", L"urn:example:audit");

    const CSmartPtr<CPlugin> spPlugin = document.GetPlugin()->Item(0);
    spPlugin->SetPriority(20);
    const CSmartPtr<CElement> spFolder =
        spPlugin->GetAny()->GetChildElements()->Add(L"folder", spPlugin->GetAny()->GetNamespace().c_str());
    spFolder->GetAttributes()->Add(L"path", L"/scraps & \"notes\"", L"");

    const CSmartPtr<CElement> spNote = document.GetAny2()->Add(L"note", L"urn:example:notes");
    spNote->SetText(L"Checked: 2 < 3");
}

void Read(const std::wstring& strIn, CSettings& document, CXmlSerializationContext& context)
{
    CXmlDocument source(context);
    source.Load(strIn.c_str());
    document.FromXmlElement(source.GetDocumentElement(), context);
    KeepPrefixesOfTypes(document, source, context);
}

int Work(const std::wstring& strIn, const std::wstring& strOut)
{
    // A prefix, and no default namespace: unknown elements may have no namespace, and would be written into the default
    // one.
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add(L"s", s_lpctSettings);
    context.GetNamespaceAliases().Add(L"xsi", s_lpctXsi);

    const CSmartPtr<CSettings> spDocument = CFactory::Settings();
    Read(strIn, *spDocument, context);
    Report(*spDocument);
    Change(*spDocument);

    // Not formatted: in open content white space counts, so indenting it would change it.
    const std::wstring strXml = spDocument->ToXml(true, false, EOLType_LF, context);
    const CSmartPtr<CSettings> spAgain = CFactory::Settings();
    spAgain->FromXml(strXml.c_str(), context);
    if (Unknown(*spAgain) != Unknown(*spDocument) || spAgain->ToXml(true, false, EOLType_LF, context) != strXml)
    {
        std::fprintf(stderr, "the document changed on its way\n");
        return 1;
    }
    std::printf("written and read again: equal\n");
    Report(*spAgain);
    if (!strOut.empty())
        spDocument->ToXmlFile(strOut.c_str(), true, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::wstring> files = example::GetArguments(argc, argv);
    if (files.empty() || files.size() > 2)
    {
        std::fprintf(stderr, "usage: %s IN.xml [OUT.xml]\n", argv[0]);
        return 2;
    }
    return example::Run([&] { return Work(files[0], files.size() == 2 ? files[1] : L""); });
}
