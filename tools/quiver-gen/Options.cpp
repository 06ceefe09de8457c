#include "tools/quiver-gen/Options.h"

#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/binding/Names.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace quiver_gen
{

namespace
{

/// Whether an option has a value.
enum class EValues
{
    None,
    One,
    Maybe, ///< a name may follow
    Many   ///< one, and names that follow it
};

using Apply = void (*)(SOptions&, const std::string& strValue);

struct SOption
{
    std::string_view svName;
    EValues eValues;
    std::string_view svValue; ///< what the help calls it
    std::string_view svHelp;
    Apply pfnApply;
};

struct CBadValue
{
};

// --- Values ---------------------------------------------------------------------------------------------------------

template <class T>
struct SChoice
{
    std::string_view svName;
    T value;
};

template <class T, std::size_t nCount>
T Choose(const SChoice<T> (&choices)[nCount], const std::string& strValue)
{
    for (const SChoice<T>& choice : choices)
    {
        if (choice.svName == strValue)
            return choice.value;
    }
    throw CBadValue{};
}

std::string RequireText(const std::string& strValue)
{
    return strValue.empty() ? throw CBadValue{} : strValue;
}

bool IsWordCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

/// Names of targets and of files without an ending.
bool IsWord(std::string_view svText)
{
    return !svText.empty() && svText.front() != '-' && std::all_of(svText.begin(), svText.end(), IsWordCharacter);
}

std::string RequireWord(const std::string& strValue)
{
    return IsWord(strValue) ? strValue : throw CBadValue{};
}

/// Whether a text is `a` or `a::b::c`.
bool IsQualifiedName(std::string_view svText)
{
    while (true)
    {
        const std::size_t nEnd = svText.find("::");
        const std::string strPart(svText.substr(0, nEnd));
        // What a name made from this one would avoid is a keyword or a macro.
        if (!binding::IsIdentifier(strPart) || binding::ToNamespacePart(strPart) == strPart + '_')
            return false;
        if (nEnd == std::string_view::npos)
            return true;
        svText.remove_prefix(nEnd + 2);
    }
}

/// `URI=name`; a URI may hold an equals sign itself.
std::pair<std::string, std::string> SplitAtLastSign(const std::string& strValue)
{
    const std::size_t nSign = strValue.rfind('=');
    if (nSign == std::string::npos || nSign + 1 == strValue.size())
        throw CBadValue{};
    return {strValue.substr(0, nSign), strValue.substr(nSign + 1)};
}

void AddNamespace(SOptions& options, const std::string& strValue)
{
    auto rule = SplitAtLastSign(strValue);
    if (!IsQualifiedName(rule.second))
        throw CBadValue{};
    options.binding.namespaces.push_back(std::move(rule));
}

void AddRename(SOptions& options, const std::string& strValue)
{
    binding::SRename rename;
    if (!binding::ParseRename(strValue, rename))
        throw CBadValue{};
    options.binding.renames.push_back(std::move(rename));
}

void AddMap(SOptions& options, const std::string& strValue)
{
    binding::SHeldAs heldAs;
    if (!binding::ParseHeldAs(strValue, heldAs))
        throw CBadValue{};
    options.binding.maps.push_back(std::move(heldAs));
}

/// Applies a file with a rule in each line. Empty lines and those that begin with # say nothing.
void ApplyRules(SOptions& options, const std::string& strPath, std::string_view svForm, Apply pfnApply)
{
    const std::string strText = ReadFile(RequireText(strPath));
    options.ruleFiles.push_back(strPath);
    std::size_t nLine = 0;
    for (std::size_t nStart = 0; nStart < strText.size();)
    {
        const std::size_t nEnd = std::min(strText.find('\n', nStart), strText.size());
        std::string strLine = strText.substr(nStart, nEnd - nStart);
        nStart = nEnd + 1;
        ++nLine;
        strLine.erase(strLine.find_last_not_of(" \t\r") + 1);
        strLine.erase(0, strLine.find_first_not_of(" \t"));
        if (strLine.empty() || strLine.front() == '#')
            continue;
        try
        {
            pfnApply(options, strLine);
        }
        catch (const CBadValue&)
        {
            throw CUsageError{
                strPath + ':' + std::to_string(nLine) + ":1: error: a rule has the form " + std::string(svForm), true};
        }
    }
}

void SetFactory(SOptions& options, const std::string& strValue)
{
    if (!IsQualifiedName(strValue))
        throw CBadValue{};
    const std::size_t nEnd = strValue.rfind("::");
    const bool bGlobal = nEnd == std::string::npos;
    options.write.strFactoryNamespace = bGlobal ? std::string() : strValue.substr(0, nEnd);
    options.write.strFactory = bGlobal ? strValue : strValue.substr(nEnd + 2);
}

void SetParts(SOptions& options, const std::string& strValue)
{
    constexpr std::size_t nMost = 1000;
    const char* const pEnd = strValue.data() + strValue.size();
    const auto [pStop, eError] = std::from_chars(strValue.data(), pEnd, options.write.nParts);
    if (eError != std::errc() || pStop != pEnd || options.write.nParts < 1 || options.write.nParts > nMost)
        throw CBadValue{};
}

// --- Table ----------------------------------------------------------------------------------------------------------

constexpr SChoice<cpp::ESplit> s_splits[] = {
    {"namespace", cpp::ESplit::Namespace}, {"type", cpp::ESplit::Type}, {"none", cpp::ESplit::None}};
constexpr SChoice<bool> s_integers[] = {{"big", false}, {"i8", true}};
constexpr SChoice<bool> s_texts[] = {{"wide", false}, {"utf8", true}};
constexpr SChoice<binding::SBindingOptions::EMixed> s_mixed[] = {{"joined", binding::SBindingOptions::EMixed::Joined},
                                                                 {"refuse", binding::SBindingOptions::EMixed::Refuse}};
constexpr SChoice<binding::SBindingOptions::EComments> s_comments[] = {
    {"all", binding::SBindingOptions::EComments::All},
    {"first", binding::SBindingOptions::EComments::First},
    {"none", binding::SBindingOptions::EComments::None}};

constexpr SOption s_options[] = {
    {"-o", EValues::One, "DIR", "the folder for the files; it is made if it is not there",
     [](SOptions& options, const std::string& str)
     {
         options.strFolder = RequireText(str);
     }},
    {"--namespace", EValues::One, "URI=ns::name",
     "the C++ namespace for a target namespace; =name is for the\n"
     "schemas that have none (default: the last speaking part of\n"
     "the URI). Repeatable",
     AddNamespace},
    {"--namespace-file", EValues::One, "FILE", "the same, a line for each",
     [](SOptions& options, const std::string& str)
     {
         ApplyRules(options, str, "URI=ns::name", AddNamespace);
     }},
    {"--factory", EValues::One, "ns::CName",
     "the class that makes the object for the root of a document;\n"
     "its files are named without the C (default: CFactory in the\n"
     "namespace of the first schema)",
     SetFactory},
    {"--split", EValues::One, "HOW",
     "a header for each target namespace (namespace, default), for\n"
     "each type (type), or one for everything (none)",
     [](SOptions& options, const std::string& str)
     {
         options.write.eSplit = Choose(s_splits, str);
     }},
    {"--stem", EValues::One, "NAME", "with --split none: name of the files (default: the schema's)",
     [](SOptions& options, const std::string& str)
     {
         options.write.strStem = RequireWord(str);
     }},
    {"--parts", EValues::One, "N",
     "with --split none: N sources NAME_1.cpp ... instead of one, so\n"
     "that a large schema compiles in parallel (default 1)",
     SetParts},
    {"--program", EValues::Maybe, "[NAME]",
     "also a main.cpp that reads a document, prints it as a tree and\n"
     "writes it back, and a CMakeLists.txt with the target NAME\n"
     "(default: the schema's name)",
     [](SOptions& options, const std::string& str)
     {
         options.write.bProgram = true;
         options.write.strProgram = str.empty() ? str : RequireWord(str);
     }},
    {"--cmake", EValues::One, "NAME", "also a CMakeLists.txt with a library target NAME",
     [](SOptions& options, const std::string& str)
     {
         options.write.strLibrary = RequireWord(str);
     }},
    {"--depfile", EValues::One, "FILE", "also the schemas that were read, as a rule for make or ninja",
     [](SOptions& options, const std::string& str)
     {
         options.strDependencies = RequireText(str);
     }},
    {"--dep-target", EValues::One, "NAME", "what that rule makes (default: the files). Repeatable",
     [](SOptions& options, const std::string& str)
     {
         options.dependencyTargets.push_back(RequireText(str));
     }},
    {"--list-files", EValues::None, "", "print the names of the files, and write none",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::ListFiles;
     }},
    {"--catalog", EValues::One, "FILE", "an OASIS XML catalog that says where documents are. Repeatable",
     [](SOptions& options, const std::string& str)
     {
         options.load.catalogs.push_back(RequireText(str));
     }},
    {"--location", EValues::One, "URI=FILE",
     "the file for a namespace or a schemaLocation; nothing is ever\n"
     "fetched from the network. Repeatable",
     [](SOptions& options, const std::string& str)
     {
         options.load.locations.push_back(SplitAtLastSign(str));
     }},
    {"--root", EValues::Many, "NAME...",
     "only what these global elements reach (default: all). NAME is\n"
     "local or {uri}local; the list ends at an option, at -- and at\n"
     "a name that ends in .xsd",
     [](SOptions& options, const std::string& str)
     {
         options.binding.roots.push_back(RequireText(str));
     }},
    {"--rename", EValues::One, "FILE", "rules {uri}Type = Name and {uri}Type/member = Name",
     [](SOptions& options, const std::string& str)
     {
         ApplyRules(options, str, "{uri}Type = Name or {uri}Type/member = Name", AddRename);
     }},
    {"--map", EValues::One, "FILE",
     "rules {uri}Type = decimal, string, i8 or r8: how the values of a\n"
     "simple type are held (default: by its primitive type)",
     [](SOptions& options, const std::string& str)
     {
         ApplyRules(options, str, "{uri}Type = decimal, string, i8 or r8", AddMap);
     }},
    {"--integer", EValues::One, "HOW",
     "xs:integer and its kin of any length (big, default), or in 64\n"
     "bits (i8), where longer ones are refused",
     [](SOptions& options, const std::string& str)
     {
         options.binding.bInteger64 = Choose(s_integers, str);
     }},
    {"--mixed", EValues::One, "HOW",
     "text between elements is joined, with a warning (joined,\n"
     "default), or an error (refuse)",
     [](SOptions& options, const std::string& str)
     {
         options.binding.eMixed = Choose(s_mixed, str);
     }},
    {"--text", EValues::One, "HOW",
     "text is std::wstring (wide, default) or UTF-8 in std::string\n"
     "(utf8)",
     [](SOptions& options, const std::string& str)
     {
         options.write.bUtf8 = Choose(s_texts, str);
     }},
    {"--comments", EValues::One, "HOW",
     "documentation becomes comments: all paragraphs (all, default),\n"
     "the first (first), or none (none)",
     [](SOptions& options, const std::string& str)
     {
         options.binding.eComments = Choose(s_comments, str);
     }},
    {"--lang", EValues::One, "LANG", "documentation of this language, such as en (default: of all)",
     [](SOptions& options, const std::string& str)
     {
         options.binding.strLang = RequireText(str);
     }},
    {"--werror", EValues::None, "", "warnings are errors: nothing is written",
     [](SOptions& options, const std::string&)
     {
         options.bWarningsAreErrors = true;
     }},
    {"--dump-components", EValues::None, "", "print what the schemas declare, and write nothing",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::DumpComponents;
     }},
    {"--dump-binding", EValues::None, "", "print the classes and their members, and write nothing",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::DumpBinding;
     }},
    {"--check", EValues::None, "",
     "read documents with the classes, without compiling them, and\n"
     "write nothing: quiver-gen --check SCHEMA... DOCUMENT... The\n"
     "first name, and those that end in .xsd, are of schemas; behind\n"
     "-- all names are of documents",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::Check;
     }},
    {"--version", EValues::None, "", "print the version",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::Version;
     }},
    {"--help", EValues::None, "", "print this",
     [](SOptions& options, const std::string&)
     {
         options.eCommand = ECommand::Help;
     }},
};

// --- Parsing --------------------------------------------------------------------------------------------------------

bool IsOption(std::string_view svArgument)
{
    return svArgument.size() > 1 && svArgument.front() == '-';
}

bool IsSchema(std::string_view svArgument)
{
    constexpr std::string_view svEnding = ".xsd";
    return svArgument.size() >= svEnding.size() && svArgument.substr(svArgument.size() - svEnding.size()) == svEnding;
}

const SOption& FindOption(const std::string& strName)
{
    for (const SOption& option : s_options)
    {
        if (option.svName == strName)
            return option;
    }
    throw CUsageError{"there is no option " + strName};
}

void ApplyValue(SOptions& options, const SOption& option, const std::string& strValue)
{
    try
    {
        option.pfnApply(options, strValue);
    }
    catch (const CBadValue&)
    {
        throw CUsageError{std::string(option.svName) + " does not take the value \"" + strValue + '"'};
    }
}

/// Applies the option at `nArgument`, and steps to its last value if those are arguments of their own.
void ParseOption(SOptions& options, const std::vector<std::string>& arguments, std::size_t& nArgument)
{
    const std::string& strArgument = arguments[nArgument];
    const std::size_t nSign = strArgument.find('=');
    const SOption& option = FindOption(strArgument.substr(0, nSign));
    if (nSign != std::string::npos)
    {
        if (option.eValues == EValues::None)
            throw CUsageError{std::string(option.svName) + " takes no value"};
        return ApplyValue(options, option, strArgument.substr(nSign + 1));
    }
    const std::size_t nNext = nArgument + 1;
    const bool bNext = nNext < arguments.size();
    if (option.eValues == EValues::None || (option.eValues == EValues::Maybe && !(bNext && IsWord(arguments[nNext]))))
        return ApplyValue(options, option, {});
    if (!bNext)
        throw CUsageError{std::string(option.svName) + " needs a value"};
    ApplyValue(options, option, arguments[++nArgument]);
    while (option.eValues == EValues::Many && nArgument + 1 < arguments.size() && !IsOption(arguments[nArgument + 1]) &&
           !IsSchema(arguments[nArgument + 1]))
        ApplyValue(options, option, arguments[++nArgument]);
}

/// A name that belongs to no option.
struct SName
{
    std::string strName;
    bool bBehindMark; ///< it stands behind --
};

/// Tells the names of documents from those of schemas.
void SortNames(SOptions& options, const std::vector<SName>& names)
{
    for (const SName& name : names)
    {
        const bool bSchema = options.eCommand != ECommand::Check || options.load.schemas.empty() ||
                             (IsSchema(name.strName) && !name.bBehindMark);
        (bSchema ? options.load.schemas : options.documents).push_back(name.strName);
    }
}

void CheckTogether(const SOptions& options)
{
    if (options.load.schemas.empty())
        throw CUsageError{"a schema is needed"};
    const bool bNone = options.write.eSplit == cpp::ESplit::None;
    if (!bNone && !options.write.strStem.empty())
        throw CUsageError{"--stem goes with --split none"};
    if (!bNone && options.write.nParts != 1)
        throw CUsageError{"--parts goes with --split none"};
    if (!options.dependencyTargets.empty() && options.strDependencies.empty())
        throw CUsageError{"--dep-target goes with --depfile"};
    if (options.write.bProgram && options.write.strProgram == options.write.strLibrary &&
        !options.write.strLibrary.empty())
        throw CUsageError{"--program and --cmake need different names"};
    const bool bFiles = options.eCommand == ECommand::Generate || options.eCommand == ECommand::ListFiles;
    if (bFiles && options.strFolder.empty())
        throw CUsageError{"-o DIR is needed"};
}

std::string GetFileName(const std::string& strPath)
{
    return strPath.substr(strPath.find_last_of("/\\") + 1);
}

} // namespace

SOptions ParseOptions(const std::vector<std::string>& arguments)
{
    SOptions options;
    for (const std::string& strArgument : arguments)
    {
        if (strArgument == "--")
            break;
        if (strArgument == "--help" || strArgument == "-h" || strArgument == "--version")
        {
            options.eCommand = strArgument == "--version" ? ECommand::Version : ECommand::Help;
            return options;
        }
    }
    std::vector<SName> names;
    bool bOptions = true;
    for (std::size_t nArgument = 0; nArgument < arguments.size(); ++nArgument)
    {
        const std::string& strArgument = arguments[nArgument];
        if (bOptions && strArgument == "--")
            bOptions = false;
        else if (bOptions && IsOption(strArgument))
            ParseOption(options, arguments, nArgument);
        else if (strArgument.empty())
            throw CUsageError{"the name of a schema is empty"};
        else
            names.push_back({strArgument, !bOptions});
    }
    SortNames(options, names);
    CheckTogether(options);
    for (const std::string& strSchema : options.load.schemas)
        options.write.schemas.push_back(GetFileName(strSchema));
    return options;
}

std::string GetHelp()
{
    std::string strHelp =
        "Writes C++ classes for XML Schema (XSD 1.0) documents: typed, checked on reading, setting and "
        "writing.\n"
        "\n"
        "  quiver-gen SCHEMA... -o DIR [options]\n"
        "  quiver-gen --check SCHEMA... [DOCUMENT...] [options]\n"
        "\n"
        "A first try, from a schema to a running program:\n"
        "\n"
        "  quiver-gen order.xsd -o generated --program order\n"
        "  cmake -S generated -B build && cmake --build build\n"
        "  build/order order.xml\n"
        "\n"
        "Included and imported schemas are found by their schemaLocation. Files that would not change "
        "are not written.\n"
        "\n"
        "Options:\n";
    constexpr std::size_t nColumn = 28;
    for (const SOption& option : s_options)
    {
        std::string strLine = "  " + std::string(option.svName) + ' ' + std::string(option.svValue);
        strLine.resize(std::max(nColumn, strLine.size() + 1), ' ');
        for (const char c : option.svHelp)
        {
            strLine += c;
            if (c == '\n')
                strLine.append(nColumn, ' ');
        }
        strHelp += strLine + '\n';
    }
    return strHelp + "\n"
                     "Messages have the form file:line:column: error: text. A warning marks each place where the "
                     "classes read\n"
                     "more freely than the schema. The exit status is 0, or 1 for a schema that is wrong "
                     "or a\n"
                     "document that is refused, or 2 for a command line that cannot be carried out, or 3 for a schema "
                     "that is\n"
                     "right and cannot become classes.\n";
}

} // namespace quiver_gen
