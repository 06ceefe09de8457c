#include "tools/quiver-gen/binding/Names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace quiver_gen::binding
{

namespace
{

/// Longer names help nobody, and texts of enumerations may be whole sentences.
constexpr std::size_t s_nMaxName = 80;

bool IsLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsAlnum(char c)
{
    return IsLower(c) || (c >= 'A' && c <= 'Z') || IsDigit(c);
}

char Raise(char c)
{
    return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

/// ASCII spelling of U+00C0 to U+017F.
constexpr std::string_view s_latin[] = {
    "A", "A", "A", "A", "Ae", "A", "Ae", "C", "E", "E", "E", "E", "I", "I", "I", "I", "D", "N", "O", "O", "O", "O",
    "Oe", "", "O", "U", "U", "U", "Ue", "Y", "Th", "ss", "a", "a", "a", "a", "ae", "a", "ae", "c", "e", "e", "e", "e",
    "i", "i", "i", "i", "d", "n", "o", "o", "o", "o", "oe", "", "o", "u", "u", "u", "ue", "y", "th", "y",
    // U+0100
    "A", "a", "A", "a", "A", "a", "C", "c", "C", "c", "C", "c", "C", "c", "D", "d", "D", "d", "E", "e", "E", "e", "E",
    "e", "E", "e", "E", "e", "G", "g", "G", "g", "G", "g", "G", "g", "H", "h", "H", "h", "I", "i", "I", "i", "I", "i",
    "I", "i", "I", "i", "Ij", "ij", "J", "j", "K", "k", "k", "L", "l", "L", "l", "L", "l", "L", "l", "L", "l", "N", "n",
    "N", "n", "N", "n", "n", "N", "n", "O", "o", "O", "o", "O", "o", "Oe", "oe", "R", "r", "R", "r", "R", "r", "S", "s",
    "S", "s", "S", "s", "S", "s", "T", "t", "T", "t", "T", "t", "U", "u", "U", "u", "U", "u", "U", "u", "U", "u", "U",
    "u", "W", "w", "Y", "y", "Y", "Z", "z", "Z", "z", "Z", "z", "s"};
static_assert(std::size(s_latin) == 0x180 - 0xC0);

/// Takes one code point off well-formed UTF-8; a stray byte stands for itself.
std::uint32_t TakeCodePoint(std::string_view& svText)
{
    const auto byteAt = [&](std::size_t n)
    {
        return static_cast<unsigned char>(svText[n]);
    };
    const unsigned nFirst = byteAt(0);
    const std::size_t nLength = nFirst < 0xC0 ? 1 : nFirst < 0xE0 ? 2 : nFirst < 0xF0 ? 3 : 4;
    std::uint32_t nCode = nFirst;
    if (nLength > 1 && svText.size() >= nLength)
    {
        nCode = nFirst & (0x7Fu >> nLength);
        for (std::size_t n = 1; n < nLength; ++n)
            nCode = nCode << 6 | (byteAt(n) & 0x3Fu);
    }
    svText.remove_prefix(std::min(nLength, svText.size()));
    return nCode;
}

/// The text in ASCII: Latin letters without their marks, others by their numbers.
std::string ToAscii(std::string_view svText)
{
    std::string strAscii;
    while (!svText.empty())
    {
        const std::uint32_t nCode = TakeCodePoint(svText);
        if (nCode < 0x80)
            strAscii += static_cast<char>(nCode);
        else if (nCode >= 0xC0 && nCode < 0x180)
            strAscii += s_latin[nCode - 0xC0];
        else if (nCode == 0xA0 || nCode == 0xB7 || (nCode >= 0x2000 && nCode < 0x2070))
            strAscii += ' ';
        else
        {
            std::array<char, 12> buffer{};
            std::snprintf(buffer.data(), buffer.size(), " U%04X", static_cast<unsigned>(nCode));
            strAscii += buffer.data();
        }
    }
    return strAscii;
}

struct SSymbol
{
    char cSymbol;
    std::string_view svName;
    bool bAlways; ///< spelled in every text, and not only where nothing else would be left
};

constexpr SSymbol s_symbols[] = {
    {'+', "Plus", true},         {'<', "Less", true},          {'>', "Greater", true},    {'=', "Equal", true},
    {'*', "Star", true},         {'%', "Percent", true},       {'&', "And", true},        {'|', "Or", true},
    {'!', "Not", true},          {'#', "Hash", true},          {'@', "At", true},         {'$', "Dollar", true},
    {'~', "Tilde", true},        {'^', "Caret", true},         {'-', "Minus", false},     {'.', "Dot", false},
    {'/', "Slash", false},       {'_', "Underscore", false},   {' ', "Space", false},     {':', "Colon", false},
    {',', "Comma", false},       {';', "Semicolon", false},    {'(', "ParenOpen", false}, {')', "ParenClose", false},
    {'[', "BracketOpen", false}, {']', "BracketClose", false}, {'{', "BraceOpen", false}, {'}', "BraceClose", false},
    {'?', "Question", false},    {'\'', "Apostrophe", false},  {'"', "Quote", false},     {'`', "Backtick", false},
    {'\\', "Backslash", false},  {'\t', "Tab", false},         {'\n', "LineFeed", false}, {'\r', "Return", false},
};

std::string_view SpellSymbol(char cSymbol, bool bAll)
{
    for (const SSymbol& symbol : s_symbols)
        if (symbol.cSymbol == cSymbol)
            return symbol.bAlways || bAll ? symbol.svName : std::string_view();
    return {};
}

/// Words run together, each with a capital first. Between two digits an underscore keeps numbers apart.
std::string JoinWords(std::string_view svText)
{
    std::string strName;
    bool bWordStarts = true;
    for (const char c : svText)
    {
        if (!IsAlnum(c))
        {
            bWordStarts = true;
            continue;
        }
        if (bWordStarts && !strName.empty() && IsDigit(c) && IsDigit(strName.back()))
            strName += '_';
        strName += bWordStarts ? Raise(c) : c;
        bWordStarts = false;
        if (strName.size() == s_nMaxName)
            break;
    }
    return strName;
}

/// Symbols of a value's text as words, so that `<` and `<=` get names and `C++` is not `C`.
std::string SpellSymbols(std::string_view svText)
{
    const bool bAll = std::none_of(svText.begin(), svText.end(), IsAlnum);
    std::string strSpelled;
    for (std::size_t n = 0; n < svText.size(); ++n)
    {
        const char c = svText[n];
        const bool bSign = c == '-' && n == 0 && svText.size() > 1 && IsDigit(svText[1]);
        const std::string_view svSymbol = SpellSymbol(c, bAll || bSign);
        if (svSymbol.empty())
            strSpelled += c;
        else
            ((strSpelled += ' ') += svSymbol) += ' ';
    }
    return strSpelled;
}

using CWords = std::unordered_set<std::string_view>;

const CWords& Keywords()
{
    static const CWords s_words = {
        "alignas",     "alignof",  "and",        "and_eq",    "asm",       "auto",         "bitand",
        "bitor",       "bool",     "break",      "case",      "catch",     "char",         "char8_t",
        "char16_t",    "char32_t", "class",      "co_await",  "co_return", "co_yield",     "compl",
        "concept",     "const",    "const_cast", "consteval", "constexpr", "constinit",    "continue",
        "decltype",    "default",  "delete",     "do",        "double",    "dynamic_cast", "else",
        "enum",        "explicit", "export",     "extern",    "false",     "float",        "for",
        "friend",      "goto",     "if",         "inline",    "int",       "long",         "mutable",
        "namespace",   "new",      "noexcept",   "not",       "not_eq",    "nullptr",      "operator",
        "or",          "or_eq",    "private",    "protected", "public",    "register",     "reinterpret_cast",
        "requires",    "return",   "short",      "signed",    "sizeof",    "static",       "static_assert",
        "static_cast", "struct",   "switch",     "template",  "this",      "thread_local", "throw",
        "true",        "try",      "typedef",    "typeid",    "typename",  "union",        "unsigned",
        "using",       "virtual",  "void",       "volatile",  "wchar_t",   "while",        "xor",
        "xor_eq"};
    return s_words;
}

/// Macros of the C and C++ libraries, of POSIX and of Windows, as far as a generated name can look like one.
const CWords& Macros()
{
    static const CWords s_words = {
        // of any case
        "assert", "errno", "far", "I", "interface", "linux", "major", "makedev", "max", "min", "minor", "near",
        "pascal", "small", "stderr", "stdin", "stdout", "unix", "cdecl", "huge", "environ", "signals", "slots", "emit",
        // of <stdio.h>, <stdlib.h>, <math.h>, <float.h>, <complex.h>
        "ALTERNATE", "BUFSIZ", "DOMAIN", "EOF", "FILENAME", "INFINITY", "NAN", "NULL", "OVERFLOW", "PLOSS", "SING",
        "TLOSS", "UNDERFLOW", "MAXFLOAT", "HUGE", "RAND", "PATHMAX",
        // of <windows.h>
        "ABSOLUTE", "BOOL", "BYTE", "CALLBACK", "CHAR", "CONST", "DELETE", "DIFFERENCE", "DOUBLE", "DWORD", "ERROR",
        "FALSE", "FAR", "FLOAT", "HANDLE", "IGNORE", "IN", "INFINITE", "INT", "INTERFACE", "LONG", "NEAR", "NOERROR",
        "NONE", "OPAQUE", "OPTIONAL", "OUT", "PASCAL", "RELATIVE", "SHORT", "STRICT", "TEXT", "THIS", "TRANSPARENT",
        "TRUE", "UINT", "ULONG", "VOID", "WINAPI", "WINDING", "WORD", "CM", "CP", "MB", "MM", "NO", "PT", "SB", "ST",
        // of <errno.h>
        "E2BIG", "EACCES", "EADDRINUSE", "EADDRNOTAVAIL", "EAFNOSUPPORT", "EAGAIN", "EALREADY", "EBADF", "EBADMSG",
        "EBUSY", "ECANCELED", "ECHILD", "ECONNABORTED", "ECONNREFUSED", "ECONNRESET", "EDEADLK", "EDESTADDRREQ", "EDOM",
        "EDQUOT", "EEXIST", "EFAULT", "EFBIG", "EHOSTUNREACH", "EIDRM", "EILSEQ", "EINPROGRESS", "EINTR", "EINVAL",
        "EIO", "EISCONN", "EISDIR", "ELOOP", "EMFILE", "EMLINK", "EMSGSIZE", "EMULTIHOP", "ENAMETOOLONG", "ENETDOWN",
        "ENETRESET", "ENETUNREACH", "ENFILE", "ENOBUFS", "ENODATA", "ENODEV", "ENOENT", "ENOEXEC", "ENOLCK", "ENOLINK",
        "ENOMEM", "ENOMSG", "ENOPROTOOPT", "ENOSPC", "ENOSR", "ENOSTR", "ENOSYS", "ENOTCONN", "ENOTDIR", "ENOTEMPTY",
        "ENOTRECOVERABLE", "ENOTSOCK", "ENOTSUP", "ENOTTY", "ENXIO", "EOPNOTSUPP", "EOVERFLOW", "EOWNERDEAD", "EPERM",
        "EPIPE", "EPROTO", "EPROTONOSUPPORT", "EPROTOTYPE", "ERANGE", "EROFS", "ESPIPE", "ESRCH", "ESTALE", "ETIME",
        "ETIMEDOUT", "ETXTBSY", "EWOULDBLOCK", "EXDEV",
        // of <signal.h>, <termios.h>, <fcntl.h>
        "SIGABRT", "SIGALRM", "SIGBUS", "SIGCHLD", "SIGCONT", "SIGFPE", "SIGHUP", "SIGILL", "SIGINT", "SIGKILL",
        "SIGPIPE", "SIGPOLL", "SIGPROF", "SIGQUIT", "SIGSEGV", "SIGSTOP", "SIGSYS", "SIGTERM", "SIGTRAP", "SIGTSTP",
        "SIGTTIN", "SIGTTOU", "SIGURG", "SIGUSR1", "SIGUSR2", "SIGVTALRM", "SIGXCPU", "SIGXFSZ", "B0", "B50", "B75",
        "B110", "B134", "B150", "B200", "B300", "B600", "B1200", "B1800", "B2400", "B4800", "B9600", "B19200", "B38400",
        "ECHO", "ECHOE", "ECHOK", "ECHONL", "HUPCL", "ICANON", "IEXTEN", "ISIG", "NOFLSH", "TOSTOP"};
    return s_words;
}

/// What the runtime's operations are called behind Get, Set and Has, what a generated class has besides its members,
/// and names of <windows.h> that are macros with Get or Set in front.
const CWords& MemberNames()
{
    static const CWords s_words = {
        // of the runtime
        "Base", "ClassAttributeInfo", "ClassElementInfo", "ClassElementInfoCount", "ClassInfo", "Count",
        "DefaultContext", "ElementName", "Namespace", "Nil", "Record", "Selected", "TargetNamespace",
        // of Windows
        "Object", "Message", "ClassName", "CurrentTime", "CommandLine", "FirstChild", "NextSibling", "UserName",
        "ComputerName", "Job", "Form", "Printer", "Prop", "StartupInfo", "TempPath", "FreeSpace", "DiskFreeSpace",
        "DateFormat", "TimeFormat", "NumberFormat", "CurrencyFormat", "VersionEx", "ProfileString", "ProfileInt",
        "LocaleInfo", "WindowText", "WindowLong", "EnvironmentVariable", "EnvironmentStrings", "FileAttributes",
        "FullPathName", "FileTitle", "FileSecurity", "CalendarInfo", "CharWidth", "GlyphOutline", "MenuString",
        "MenuItemInfo", "MonitorInfo", "KeyNameText", "KeyboardLayoutName", "OpenFileName", "SaveFileName",
        "SystemDirectory", "TabbedTextExtent", "TextFace", "TextMetrics", "TextExtentPoint", "VolumeInformation",
        "WindowsDirectory", "ExceptionCode", "ExceptionInformation", "DefaultPrinter", "DriveType", "EnhMetaFile",
        "MetaFile", "LogColorSpace", "ICMProfile", "OutlineTextMetrics", "AddrInfo", "NameInfo"};
    return s_words;
}

/// Stems of the runtime's classes and structs that generated code names without their namespace.
const CWords& Stems()
{
    static const CWords s_words = {"element",
                                   "elementcol",
                                   "attribute",
                                   "attributecol",
                                   "xmlobjectbase",
                                   "xmlgeneratedclass",
                                   "xmlelement",
                                   "xmlattribute",
                                   "smartptr",
                                   "objectcol",
                                   "valuecol",
                                   "polymorphiccol",
                                   "groupcol",
                                   "anycol",
                                   "anyelement",
                                   "anyattributes",
                                   "decimal",
                                   "biginteger",
                                   "datetime",
                                   "datetimespan",
                                   "binarydata",
                                   "generated",
                                   "generatedchoice",
                                   "required",
                                   "optional",
                                   "defaulted",
                                   "repeated",
                                   "requiredobject",
                                   "optionalobject",
                                   "nillable",
                                   "nillablestate",
                                   "simpletype",
                                   "classdescription",
                                   "wildcard",
                                   "alternative",
                                   "alternatives",
                                   "repeatedelement",
                                   "default",
                                   "fixed",
                                   "classfactorybase",
                                   "instancemonitor",
                                   "xmlwriter",
                                   "xmlcollection",
                                   "xmlcollectionbase",
                                   "qviterator",
                                   "registergenerator",
                                   "conversions",
                                   "xmlserializationcontext",
                                   "whitespaceutils",
                                   "primitiverestrictions",
                                   "attributeinfo",
                                   "elementinfo",
                                   "parentelementinfo"};
    return s_words;
}

std::string Avoid(std::string strName)
{
    return Keywords().count(strName) || Macros().count(strName) ? strName + '_' : strName;
}

} // namespace

std::string ToLower(std::string_view svText)
{
    std::string strLower(svText);
    for (char& c : strLower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return strLower;
}

std::string ToPascal(std::string_view svName)
{
    std::string strPascal = JoinWords(ToAscii(svName));
    // A name of nothing but underscores and other marks.
    return strPascal.empty() ? "X" : strPascal;
}

std::string ToEnumerator(std::string_view svText)
{
    if (svText.empty())
        return "Empty";
    std::string strName = JoinWords(SpellSymbols(ToAscii(svText)));
    if (strName.empty())
        strName = "X";
    if (IsDigit(strName.front()))
        strName.insert(0, 1, '_');
    return Avoid(strName);
}

std::string ToNamespacePart(std::string_view svText)
{
    std::string strPart;
    for (const char c : ToLower(ToAscii(svText)))
    {
        if (IsAlnum(c))
            strPart += c;
        else if (!strPart.empty() && strPart.back() != '_')
            strPart += '_';
    }
    while (!strPart.empty() && strPart.back() == '_')
        strPart.pop_back();
    if (strPart.empty())
        return "schema";
    if (IsDigit(strPart.front()))
        strPart.insert(0, "ns_");
    if (strPart == "std" || strPart == "qvxmllib9" || strPart == "qvxmllib9data")
        strPart += '_';
    return Avoid(strPart);
}

bool IsIdentifier(std::string_view svText)
{
    return !svText.empty() && !IsDigit(svText.front()) &&
           std::all_of(svText.begin(), svText.end(), [](char c) { return IsAlnum(c) || c == '_'; });
}

bool IsReservedMember(std::string_view svName)
{
    return MemberNames().count(svName) != 0;
}

bool IsReservedStem(std::string_view svStem)
{
    return Stems().count(ToLower(svStem)) != 0;
}

std::string CNameScope::AddUnique(const std::string& strName)
{
    if (Add(strName))
        return strName;
    // Where a name ends in a digit, the number would read as part of it.
    const std::string strStem = IsDigit(strName.back()) ? strName + '_' : strName;
    int& nNext = m_nextNumbers.emplace(Fold(strStem), 2).first->second;
    std::string strNumbered;
    do
        strNumbered = strStem + std::to_string(nNext++);
    while (!Add(strNumbered));
    return strNumbered;
}

std::string CNameScope::Fold(std::string_view svName) const
{
    return m_eCase == ECase::Blind ? ToLower(svName) : std::string(svName);
}

} // namespace quiver_gen::binding
