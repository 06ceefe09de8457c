#include "tools/quiver-gen/cpp/Program.h"

#include <string_view>

namespace quiver_gen::cpp
{

namespace
{

constexpr std::string_view s_svProgram = R"(// Reads a document, prints it as a tree and writes it back.
//
//     %PROGRAM% IN.xml [OUT.xml]

#include "%FACTORY_HEADER%.h"

#include "quiver/QvXmlLib.h"

#include <cstdio>
#include <string>
#include <string_view>

using namespace QvXmlLib9;

namespace
{

/// Prints an element with its attributes and what is in it, indented by its depth.
void PrintTree(CXmlElement* pElement, int nDepth)
{
    std::printf("%*s%s", 2 * nDepth, "", ToUtf8(pElement->GetLocalName()).c_str());
    for (const CXmlAttribute* const pAttribute : pElement->GetAttributes())
    {
        const std::string strValue = ToUtf8(pAttribute->GetValue());
        std::printf(" %s=\"%s\"", ToUtf8(pAttribute->GetLocalName()).c_str(), strValue.c_str());
    }
    CXmlElement* const pFirst = pElement->GetFirstElement();
    std::printf(pFirst == nullptr ? ": %s\n" : "\n", ToUtf8(pElement->GetText()).c_str());
    for (CXmlElement* pChild = pFirst; pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        PrintTree(pChild, nDepth + 1);
}

int Work(const std::wstring& strIn, const std::wstring& strOut)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.Load(strIn.c_str());
    const CSmartPtr<CXmlObjectBase> spObject = %FACTORY%::CreateRoot(document.GetDocumentElement());
    spObject->FromXmlElement(document.GetDocumentElement(), context);

    // The tree shows what the object holds, not what the file said.
    CXmlDocument written(context);
    written.LoadXml(spObject->ToXml(true, true, EOLType_LF, context).c_str());
    PrintTree(written.GetDocumentElement(), 0);
    if (!strOut.empty())
        spObject->ToXmlFile(strOut.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    return 0;
}

#if defined(_WIN32)
// Those of main have lost the characters that the code page does not have.
using Argument = wchar_t;

std::wstring GetText(const Argument* pArgument)
{
    return pArgument;
}
#else
using Argument = char;

std::wstring GetText(const Argument* pArgument)
{
    return FromUtf8(std::string_view(pArgument));
}
#endif

int Run(int nArguments, Argument** ppArguments)
{
    if (nArguments < 2 || nArguments > 3)
    {
        std::fprintf(stderr, "usage: %PROGRAM% IN.xml [OUT.xml]\n");
        return 2;
    }
    try
    {
        return Work(GetText(ppArguments[1]), nArguments == 3 ? GetText(ppArguments[2]) : std::wstring());
    }
    catch (const CQvException& ex)
    {
        std::fprintf(stderr, "%s\n", ToUtf8(ex.GetFullMessage()).c_str());
        return 1;
    }
}

} // namespace

#if defined(_WIN32)
int wmain(int nArguments, wchar_t** ppArguments)
#else
int main(int nArguments, char** ppArguments)
#endif
{
    return Run(nArguments, ppArguments);
}
)";

void Replace(std::string& strText, std::string_view svPlace, const std::string& strNew)
{
    for (std::size_t n = strText.find(svPlace); n != std::string::npos; n = strText.find(svPlace, n + strNew.size()))
        strText.replace(n, svPlace.size(), strNew);
}

std::string GetProgramName(const SWriteOptions& options)
{
    return options.strProgram.empty() ? MakeStem(options.schemas.front()) : options.strProgram;
}

std::string ListSources(const std::vector<std::string>& sources)
{
    std::string strText;
    for (const std::string& strSource : sources)
        strText += "\n    " + strSource;
    return strText + ")\n";
}

} // namespace

SFile PrintProgram(const SWriteOptions& options, const SFactory& factory)
{
    std::string strText(s_svProgram);
    Replace(strText, "%PROGRAM%", GetProgramName(options));
    Replace(strText, "%FACTORY_HEADER%", factory.strStem);
    Replace(strText, "%FACTORY%", (factory.strNamespace.empty() ? "" : factory.strNamespace + "::") + factory.strName);
    return {"main.cpp", PrintTitle(options) + '\n' + strText};
}

SFile PrintBuild(const SWriteOptions& options, const std::vector<std::string>& sources)
{
    std::string strTitle = PrintTitle(options);
    Replace(strTitle, "// ", "# ");
    const std::string strProgram = GetProgramName(options);
    const std::string& strLibrary = options.strLibrary;
    std::string strText = strTitle + "\ncmake_minimum_required(VERSION 3.16)\nproject(" +
                          (options.bProgram ? strProgram : strLibrary) +
                          " LANGUAGES CXX)\n\nif(NOT TARGET Quiver::QvXmlLib9)\n    find_package(Quiver REQUIRED)\n"
                          "endif()\n";
    if (!strLibrary.empty())
    {
        strText += "\nadd_library(" + strLibrary + " STATIC" + ListSources(sources) + "target_include_directories(" +
                   strLibrary + " PUBLIC \"${CMAKE_CURRENT_SOURCE_DIR}\")\ntarget_link_libraries(" + strLibrary +
                   " PUBLIC Quiver::QvXmlLib9)\n";
    }
    if (options.bProgram)
    {
        std::vector<std::string> own = {"main.cpp"};
        if (strLibrary.empty())
            own.insert(own.end(), sources.begin(), sources.end());
        strText += "\nadd_executable(" + strProgram + ListSources(own) + "target_link_libraries(" + strProgram +
                   " PRIVATE " + (strLibrary.empty() ? "Quiver::QvXmlLib9" : strLibrary) +
                   ")\nif(MINGW)\n    # What starts the program calls wmain.\n    target_link_options(" + strProgram +
                   " PRIVATE -municode)\nendif()\n";
    }
    return {"CMakeLists.txt", strText};
}

} // namespace quiver_gen::cpp
