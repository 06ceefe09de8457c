#include "tools/quiver-fi/Options.h"

#include <charconv>
#include <string_view>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr unsigned s_nEncode = 1;
constexpr unsigned s_nDecode = 2;
constexpr unsigned s_nInspect = 4;

struct SCommand
{
    std::string_view svName;
    ECommand eCommand;
    unsigned nBit;
    std::size_t nFiles;
};

constexpr SCommand s_commands[] = {
    {"encode", ECommand::Encode, s_nEncode, 2},
    {"decode", ECommand::Decode, s_nDecode, 2},
    {"inspect", ECommand::Inspect, s_nInspect, 1},
};

/// The declarations by the names they have on the command line, in the order of FInfoDecl.
constexpr std::string_view s_declarations[] = {"none",    "plain",  "yes", "no",      "1.0",
                                               "1.0-yes", "1.0-no", "1.1", "1.1-yes", "1.1-no"};

/// One option: the commands it belongs to, and what it does with its value, which is empty for an option without one.
struct SOption
{
    std::string_view svName;
    unsigned nCommands;
    std::string_view svValue;
    std::string_view svHelp;
    bool (*pfnApply)(SOptions&, std::string_view svValue);
};

bool ParseNumber(std::string_view svText, std::uint32_t& dwNumber)
{
    const char* const pEnd = svText.data() + svText.size();
    const auto [pStop, eError] = std::from_chars(svText.data(), pEnd, dwNumber);
    return eError == std::errc() && pStop == pEnd;
}

bool ApplyDeclaration(SOptions& options, std::string_view svValue)
{
    int nDeclaration = 0;
    for (const std::string_view svName : s_declarations)
    {
        if (svValue == svName)
        {
            options.eDeclaration = static_cast<FInfoDecl>(nDeclaration);
            return true;
        }
        ++nDeclaration;
    }
    return false;
}

bool ApplyEncoding(SOptions& options, std::string_view svValue)
{
    options.eEncoding = svValue == "utf-16" ? Encoding_UTF16 : Encoding_UTF8;
    return svValue == "utf-16" || svValue == "utf-8";
}

bool ApplyEOL(SOptions& options, std::string_view svValue)
{
    options.eEOLType = svValue == "crlf" ? EOLType_CRLF : EOLType_LF;
    return svValue == "crlf" || svValue == "lf";
}

constexpr SOption s_options[] = {
    {"--declaration", s_nEncode, "KIND",
     "XML declaration in front of the document: none (default),\n"
     "plain, yes, no, 1.0, 1.0-yes, 1.0-no, 1.1, 1.1-yes, 1.1-no;\n"
     "yes and no tell whether the document is standalone",
     ApplyDeclaration},
    {"--attribute-max-length", s_nEncode, "N",
     "attribute values of fewer units than this are written once\n"
     "and by index afterwards (default 6, 0 for none)",
     [](SOptions& options, std::string_view str)
     {
         return ParseNumber(str, options.dwAttributeMaxAddLength);
     }},
    {"--element-max-length", s_nEncode, "N", "the same for the texts of elements",
     [](SOptions& options, std::string_view str)
     {
         return ParseNumber(str, options.dwElementMaxAddLength);
     }},
    {"--suggested-values", s_nEncode, "",
     "numbers, dates, truth values and hexadecimal digits in their\n"
     "binary form wherever that is shorter and gives the same text",
     [](SOptions& options, std::string_view)
     {
         return options.bSuggestedValues = true;
     }},
    {"--gzip", s_nEncode | s_nDecode, "", "compress the output with gzip",
     [](SOptions& options, std::string_view)
     {
         options.eCompression = Compression_GZip;
         return true;
     }},
    {"--encoding", s_nDecode, "NAME", "utf-8 (default) or utf-16, with a byte order mark", ApplyEncoding},
    {"--eol", s_nDecode, "NAME", "line ending: lf (default) or crlf", ApplyEOL},
    {"--no-format", s_nDecode, "", "no line breaks and no indentation between elements",
     [](SOptions& options, std::string_view)
     {
         return !(options.bFormat = false);
     }},
    {"--no-declaration", s_nDecode, "", "no XML declaration",
     [](SOptions& options, std::string_view)
     {
         return !(options.bXmlDeclaration = false);
     }},
    {"--full", s_nInspect, "", "long values are not cut short",
     [](SOptions& options, std::string_view)
     {
         return options.bWholeValues = true;
     }},
};

const SCommand& FindCommand(std::string_view svName)
{
    for (const SCommand& command : s_commands)
    {
        if (command.svName == svName)
            return command;
    }
    throw CUsageError{"unknown command " + std::string(svName)};
}

const SOption& FindOption(std::string_view svName, const SCommand& command)
{
    for (const SOption& option : s_options)
    {
        if (option.svName == svName && (option.nCommands & command.nBit) != 0)
            return option;
    }
    throw CUsageError{std::string(command.svName) + " has no option " + std::string(svName)};
}

/// Applies the option at `nArgument`, and steps over its value if that is an argument of its own.
void ParseOption(SOptions& options, const SCommand& command, const std::vector<std::string>& arguments,
                 std::size_t& nArgument)
{
    std::string_view svName = arguments[nArgument];
    const std::size_t nEquals = svName.find('=');
    const bool bInline = nEquals != std::string_view::npos;
    std::string_view svValue = bInline ? svName.substr(nEquals + 1) : std::string_view();
    svName = svName.substr(0, nEquals);
    const SOption& option = FindOption(svName, command);
    if (option.svValue.empty() && bInline)
        throw CUsageError{std::string(svName) + " takes no value"};
    if (!option.svValue.empty() && !bInline)
    {
        if (++nArgument == arguments.size())
            throw CUsageError{std::string(svName) + " needs a value"};
        svValue = arguments[nArgument];
    }
    if (!option.pfnApply(options, svValue))
        throw CUsageError{std::string(svName) + " does not take the value " + std::string(svValue)};
}

void AssignFiles(SOptions& options, const SCommand& command, const std::vector<std::string>& files)
{
    if (files.size() != command.nFiles)
    {
        throw CUsageError{std::string(command.svName) +
                          (command.nFiles == 1 ? " needs one file name" : " needs two file names")};
    }
    options.strInput = files.front();
    if (command.nFiles == 2)
        options.strOutput = files.back();
}

} // namespace

SOptions ParseOptions(const std::vector<std::string>& arguments)
{
    SOptions options;
    if (arguments.empty())
        throw CUsageError{"a command is needed: encode, decode or inspect"};
    for (const std::string& strArgument : arguments)
    {
        if (strArgument == "--version")
            options.eCommand = ECommand::Version;
        if (strArgument == "--help" || strArgument == "-h" || strArgument == "--version")
            return options;
        if (strArgument == "--")
            break;
    }
    const SCommand& command = FindCommand(arguments.front());
    options.eCommand = command.eCommand;
    std::vector<std::string> files;
    bool bOptions = true;
    for (std::size_t nArgument = 1; nArgument < arguments.size(); ++nArgument)
    {
        const std::string& strArgument = arguments[nArgument];
        if (bOptions && strArgument == "--")
            bOptions = false;
        else if (bOptions && strArgument.size() > 1 && strArgument.front() == '-')
            ParseOption(options, command, arguments, nArgument);
        else
            files.push_back(strArgument);
    }
    AssignFiles(options, command, files);
    return options;
}

std::string GetHelp()
{
    std::string strHelp =
        "Turns XML text into Fast Infoset documents (ITU-T X.891) and back, and lists what is in one.\n"
        "\n"
        "  quiver-fi encode [options] IN.xml OUT.fi\n"
        "  quiver-fi decode [options] IN.fi OUT.xml\n"
        "  quiver-fi inspect [options] IN.fi\n"
        "  quiver-fi --version\n"
        "\n"
        "\"-\" stands for standard input and output. Input may be compressed with gzip or zlib.\n"
        "The exit status is 0, or 1 for bad input, or 2 for a command line that cannot be carried out.\n"
        "\n"
        "What decoding gives differs from the text that was encoded in this:\n"
        "  - Comments, processing instructions, marked sections (CDATA), the XML declaration and encoding, and the\n"
        "    document type declaration are not kept. What the latter declares is put in its places.\n"
        "  - White space among the child elements of an element without other text is not kept, except under\n"
        "    xml:space=\"preserve\". decode adds its own unless --no-format is given, but none to elements with\n"
        "    text of their own or under xml:space=\"preserve\".\n"
        "  - Namespaces are declared on the root. A prefix that stands for several of them stays with one, a\n"
        "    namespace keeps one prefix, and names take another prefix where they must; xsi:type follows. In\n"
        "    other values, whatever looks like a prefix keeps its namespace, or the document is refused. Where the\n"
        "    default namespace changes inside the document, a name without a prefix in a value may lose it.\n"
        "  - Whether an empty element had an end tag, which characters were written as references, and the blanks\n"
        "    and quotes in tags are not kept. Tabs, carriage returns and line feeds in values are.\n"
        "Of a Fast Infoset document, what precedes the root and how values are encoded are not kept either.\n"
        "encode and decode refuse what they cannot keep otherwise, and tell it in one line.\n";
    constexpr std::size_t nColumn = 29;
    for (const SCommand& command : s_commands)
    {
        strHelp += "\nOptions of " + std::string(command.svName) + ":\n";
        for (const SOption& option : s_options)
        {
            if ((option.nCommands & command.nBit) == 0)
                continue;
            std::string strLine = "  " + std::string(option.svName) + " " + std::string(option.svValue);
            strLine.resize(nColumn, ' ');
            for (const char c : option.svHelp)
            {
                strLine += c;
                if (c == '\n')
                    strLine.append(nColumn, ' ');
            }
            strHelp += strLine + '\n';
        }
    }
    return strHelp;
}

std::string GetVersion()
{
    return "quiver-fi " QUIVER_VERSION "\n";
}

} // namespace quiver_fi
