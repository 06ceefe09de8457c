#include "tools/quiver-gen/binding/Patterns.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Pattern.h"
#include "tools/quiver-gen/binding/UnicodeBlocks.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace quiver_gen::binding
{

namespace
{

/// PCRE's own limits are 250 and 65535.
constexpr int s_nMaxDepth = 120;
constexpr std::uint32_t s_nMaxRepetitions = 65535;

struct SUntranslatable
{
};

constexpr std::string_view s_categories[] = {"L",  "Lu", "Ll", "Lt", "Lm", "Lo", "M",  "Mn", "Mc", "Me", "N",  "Nd",
                                             "Nl", "No", "P",  "Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po", "Z",  "Zs",
                                             "Zl", "Zp", "S",  "Sm", "Sc", "Sk", "So", "C",  "Cc", "Cf", "Co", "Cn"};

/// A character as PCRE takes it anywhere, inside brackets and outside.
std::string Literal(std::uint32_t nCode)
{
    const bool bPlain = (nCode >= '0' && nCode <= '9') || (nCode >= 'A' && nCode <= 'Z') ||
                        (nCode >= 'a' && nCode <= 'z') || nCode == '_' || nCode == ' ' || nCode == ',' ||
                        nCode == ':' || nCode == ';' || nCode == '/' || nCode == '@' || nCode == '%' || nCode == '=' ||
                        nCode == '"' || nCode == '\'' || nCode == '!' || nCode == '<' || nCode == '>' || nCode == '&' ||
                        nCode == '~' || nCode == '`';
    if (bPlain)
        return std::string(1, static_cast<char>(nCode));
    // A backslash by its number, as two of them in a row mean something to the runtime's replacements.
    if (nCode > ' ' && nCode < 0x7F && nCode != '\\')
        return {'\\', static_cast<char>(nCode)};
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "\\x{%X}", static_cast<unsigned>(nCode));
    return buffer.data();
}

/// The part of the code points that PCRE refuses is left out: surrogates are no characters.
std::string RangesInBrackets(const CCodeRanges& ranges)
{
    constexpr SCodeRange surrogates{0xD800, 0xDFFF};
    std::string strRanges;
    const auto add = [&](std::uint32_t nFirst, std::uint32_t nLast)
    {
        if (nFirst > nLast)
            return;
        strRanges += Literal(nFirst);
        if (nLast > nFirst)
            (strRanges += '-') += Literal(nLast);
    };
    for (const SCodeRange& range : ranges)
    {
        if (range.nLast < surrogates.nFirst || range.nFirst > surrogates.nLast)
        {
            add(range.nFirst, range.nLast);
            continue;
        }
        if (range.nFirst < surrogates.nFirst)
            add(range.nFirst, surrogates.nFirst - 1);
        add(surrogates.nLast + 1, range.nLast);
    }
    return strRanges;
}

class CTranslator
{
public:
    explicit CTranslator(std::string_view svPattern)
        : m_svRest(svPattern)
    {
    }

    std::string Translate()
    {
        const std::string strResult = Branches();
        if (!m_svRest.empty())
            throw SUntranslatable();
        return strResult;
    }

private:
    std::string_view m_svRest;
    int m_nDepth = 0;

    bool IsNext(char c) const { return !m_svRest.empty() && m_svRest.front() == c; }

    bool Accept(char c)
    {
        if (!IsNext(c))
            return false;
        m_svRest.remove_prefix(1);
        return true;
    }

    void Expect(char c)
    {
        if (!Accept(c))
            throw SUntranslatable();
    }

    char TakeByte()
    {
        if (m_svRest.empty())
            throw SUntranslatable();
        const char c = m_svRest.front();
        m_svRest.remove_prefix(1);
        return c;
    }

    std::uint32_t TakeCodePoint()
    {
        const auto nFirst = static_cast<unsigned char>(TakeByte());
        const int nMore = nFirst < 0xC0 ? 0 : nFirst < 0xE0 ? 1 : nFirst < 0xF0 ? 2 : 3;
        std::uint32_t nCode = nMore == 0 ? nFirst : nFirst & (0x3Fu >> nMore);
        for (int n = 0; n < nMore; ++n)
            nCode = nCode << 6 | (static_cast<unsigned char>(TakeByte()) & 0x3Fu);
        return nCode;
    }

    std::string Branches()
    {
        if (++m_nDepth > s_nMaxDepth)
            throw SUntranslatable();
        std::string strResult = Branch();
        while (Accept('|'))
            (strResult += '|') += Branch();
        --m_nDepth;
        return strResult;
    }

    std::string Branch()
    {
        std::string strResult;
        while (!m_svRest.empty() && !IsNext('|') && !IsNext(')'))
        {
            strResult += Atom();
            strResult += Quantifier();
        }
        return strResult;
    }

    std::string Atom()
    {
        if (Accept('('))
        {
            std::string strGroup = "(?:" + Branches() + ")";
            Expect(')');
            return strGroup;
        }
        if (Accept('['))
            return Class();
        if (Accept('.'))
            return "[^\\n\\r]";
        if (Accept('\\'))
        {
            return Escaped(Escape());
        }
        if (IsNext('?') || IsNext('*') || IsNext('+') || IsNext(']'))
            throw SUntranslatable();
        const std::uint32_t nCode = TakeCodePoint();
        return nCode == '-' || nCode == '#' ? std::string(1, static_cast<char>(nCode)) : Literal(nCode);
    }

    std::string Quantifier()
    {
        for (const char c : {'?', '*', '+'})
            if (Accept(c))
                return std::string(1, c);
        const std::string_view svBefore = m_svRest;
        if (Accept('{'))
        {
            if (const std::string strQuantity = Quantity(); !strQuantity.empty())
                return "{" + strQuantity + "}";
            m_svRest = svBefore;
        }
        return {};
    }

    /// `2}`, `2,}` or `2,5}`; empty if it is nothing of these.
    std::string Quantity()
    {
        const std::string strMin = Digits();
        if (strMin.empty())
            return {};
        std::string strQuantity = strMin;
        if (Accept(','))
            (strQuantity += ',') += Digits();
        return Accept('}') ? strQuantity : std::string();
    }

    std::string Digits()
    {
        std::uint32_t nNumber = 0;
        bool bAny = false;
        while (!m_svRest.empty() && m_svRest.front() >= '0' && m_svRest.front() <= '9')
        {
            nNumber = nNumber * 10 + static_cast<std::uint32_t>(TakeByte() - '0');
            bAny = true;
            if (nNumber > s_nMaxRepetitions)
                throw SUntranslatable();
        }
        return bAny ? std::to_string(nNumber) : std::string();
    }

    /// What stands behind a backslash: a character, or a set as it is written inside brackets.
    struct SEscape
    {
        bool bSet = false;
        std::uint32_t nCode = 0;
        std::string strText;
    };

    /// A set of one class is written as that class.
    static std::string Escaped(const SEscape& escape)
    {
        const std::string_view svText = escape.strText;
        const bool bClass = svText.size() == 2 || (svText.front() == '\\' && svText.find('}') == svText.size() - 1);
        return escape.bSet && !bClass ? "[" + escape.strText + "]" : escape.strText;
    }

    static SEscape Single(std::uint32_t nCode) { return {false, nCode, Literal(nCode)}; }
    static SEscape Set(std::string strText) { return {true, 0, std::move(strText)}; }

    SEscape Escape()
    {
        const char c = TakeByte();
        switch (c)
        {
        case 'n':
            return Single('\n');
        case 'r':
            return Single('\r');
        case 't':
            return Single('\t');
        case 's':
        case 'S':
            return Set(std::string("\\") + c);
        case 'd':
            return Set("\\p{Nd}");
        case 'D':
            return Set("\\P{Nd}");
        case 'w':
            return Set("\\p{L}\\p{M}\\p{N}\\p{S}");
        case 'W':
            return Set("\\p{P}\\p{Z}\\p{C}");
        case 'i':
            return Set(RangesInBrackets(GetNameStartCharacters()));
        case 'I':
            return Set(RangesInBrackets(Complement(GetNameStartCharacters())));
        case 'c':
            return Set(RangesInBrackets(GetNameCharacters()));
        case 'C':
            return Set(RangesInBrackets(Complement(GetNameCharacters())));
        case 'p':
        case 'P':
            return Property(c == 'P');
        default:
            break;
        }
        constexpr std::string_view svSingles = "\\|.?*+(){}-[]^$";
        if (svSingles.find(c) == std::string_view::npos)
            throw SUntranslatable();
        return Single(static_cast<unsigned char>(c));
    }

    SEscape Property(bool bNot)
    {
        Expect('{');
        const std::size_t nEnd = m_svRest.find('}');
        if (nEnd == std::string_view::npos)
            throw SUntranslatable();
        const std::string_view svName = m_svRest.substr(0, nEnd);
        m_svRest.remove_prefix(nEnd + 1);
        if (svName.substr(0, 2) == "Is")
        {
            const std::optional<CCodeRanges> ranges = FindBlock(svName.substr(2));
            if (!ranges)
                throw SUntranslatable();
            return Set(RangesInBrackets(bNot ? Complement(*ranges) : *ranges));
        }
        if (std::find(std::begin(s_categories), std::end(s_categories), svName) == std::end(s_categories))
            throw SUntranslatable();
        return Set((bNot ? "\\P{" : "\\p{") + std::string(svName) + "}");
    }

    /// Behind the opening bracket. A class without another becomes a look at the next character in front of it.
    std::string Class()
    {
        if (++m_nDepth > s_nMaxDepth)
            throw SUntranslatable();
        const bool bNot = Accept('^');
        std::string strItems;
        std::string strWithout;
        for (bool bFirst = true; !IsNext(']'); bFirst = false)
        {
            if (!bFirst && m_svRest.substr(0, 2) == "-[")
            {
                m_svRest.remove_prefix(2);
                strWithout = Class();
                break;
            }
            strItems += ClassItem();
        }
        Expect(']');
        --m_nDepth;
        if (strItems.empty())
            throw SUntranslatable();
        std::string strClass = (bNot ? "[^" : "[") + strItems + "]";
        return strWithout.empty() ? strClass : "(?:(?!" + strWithout + ")" + strClass + ")";
    }

    std::string ClassItem()
    {
        const SEscape first = ClassCharacter();
        const bool bRange = IsNext('-') && m_svRest.size() > 1 && m_svRest[1] != ']' && m_svRest[1] != '[';
        if (first.bSet || !bRange)
            return first.strText;
        Expect('-');
        const SEscape last = ClassCharacter();
        if (last.bSet || last.nCode < first.nCode)
            throw SUntranslatable();
        return RangesInBrackets({{first.nCode, last.nCode}});
    }

    SEscape ClassCharacter()
    {
        if (Accept('\\'))
            return Escape();
        if (m_svRest.empty() || IsNext('['))
            throw SUntranslatable();
        return Single(TakeCodePoint());
    }
};

std::string AnyOf(const std::vector<std::string>& patterns)
{
    std::string strAny = "(?:";
    for (std::size_t n = 0; n < patterns.size(); ++n)
        strAny += (n == 0 ? "" : "|") + patterns[n];
    return strAny + ")\\z";
}

} // namespace

std::optional<std::string> TranslatePattern(std::string_view svPattern)
{
    try
    {
        return CTranslator(svPattern).Translate();
    }
    catch (const SUntranslatable&)
    {
        return std::nullopt;
    }
}

std::string CombinePatterns(const std::vector<std::vector<std::string>>& steps)
{
    std::string strCombined;
    for (std::size_t n = 0; n < steps.size(); ++n)
        strCombined += n + 1 < steps.size() ? "(?=" + AnyOf(steps[n]) + ")" : AnyOf(steps[n]);
    return strCombined;
}

bool IsUsable(const std::string& strCombined)
{
    try
    {
        QvXmlLib9::PatternMatch(strCombined, L"");
        return true;
    }
    catch (const QvXmlLib9::CQvException&)
    {
        return false;
    }
}

} // namespace quiver_gen::binding
