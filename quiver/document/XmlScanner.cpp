#include "quiver/document/XmlScanner.h"

#include "quiver/document/XmlByteRuns.h"
#include "quiver/document/XmlCharacters.h"
#include "quiver/document/XmlScannedNames.h"
#include "quiver/document/XmlTreeBuilder.h"
#include "quiver/foundation/InstanceCounts.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace QvXmlLib9
{

namespace
{

/// The parser's buffer takes whatever token a document of this length may have, in UTF-16 too. Beyond that it may
/// refuse one for its length, and the scanner keeps off.
constexpr std::size_t s_nLongestDocument = 0x10000000;

/// Attributes with prefixes are compared with each other, all with all.
constexpr std::size_t s_nMostPrefixedAttributes = 16;

constexpr std::string_view s_svByteOrderMark = "\xEF\xBB\xBF";

constexpr bool IsSpace(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool IsSameButForCase(std::string_view left, std::string_view lower)
{
    return left.size() == lower.size() && std::equal(left.begin(), left.end(), lower.begin(),
                                                     [](char c, char cLower)
                                                     {
                                                         const bool bUpper = c >= 'A' && c <= 'Z';
                                                         return (bUpper ? static_cast<char>(c | 0x20) : c) == cLower;
                                                     });
}

void AppendUtf8(std::string& strText, char32_t c)
{
    if (c < 0x80)
    {
        strText += static_cast<char>(c);
        return;
    }
    constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    const int nTrail = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    strText += static_cast<char>(leads[nTrail] | c >> (6 * nTrail));
    for (int n = nTrail - 1; n >= 0; --n)
        strText += static_cast<char>(0x80 | (c >> (6 * n) & 0x3F));
}

/// One run over one document. The members that scan something begin at `m_p`, end behind it, and tell whether they
/// have found what must be there.
template <class Runs>
class CScan
{
public:
    CScan(CXmlTreeBuilder& builder, const SExpatOptions& options, CXmlScanner::SMade& made)
        : m_builder(builder)
        , m_names(builder, options.bNamespaces)
        , m_bKeepCDATA(options.bKeepCDATA)
        , m_made(made)
    {
    }

    /// @param encoding the one that the document may declare, in small letters.
    bool Run(std::string_view document, std::string_view encoding)
    {
        // The last byte belongs to a mark, so nothing that looks for the end of a name or of space runs over the end.
        while (!document.empty() && IsSpace(document.back()))
            document.remove_suffix(1);
        if (document.empty() || document.back() != '>')
            return false;
        m_p = document.data();
        m_pEnd = m_p + document.size();
        // Room for most documents; short ones would feel every step of growing.
        m_open.reserve(16);
        m_buffers.reserve(16);
        m_attributes.reserve(8);
        return ScanDeclaration(encoding) && ScanMisc() && m_p != m_pEnd && ScanStartTag() && ScanContent() &&
               ScanMisc() && m_p == m_pEnd;
    }

private:
    struct SOpen
    {
        CXmlElement* pElement;
        const SScannedName* pName;
        /// How many bindings there were ahead of the element.
        std::size_t nBindings;
        /// The text as long as it is one piece of the document.
        std::string_view svText;
        /// Whether the text is in the buffer of this depth instead.
        bool bBuffered;
    };

    struct SAttribute
    {
        SScannedName* pName;
        /// Null for a declaration.
        const SXmlName* pTreeName;
        /// Null if the value begins at `nBegin` of the working space.
        const char* pValue;
        std::size_t nBegin;
        std::size_t nLength;
    };

    std::size_t GetLeft() const { return static_cast<std::size_t>(m_pEnd - m_p); }

    bool Skip(std::string_view text)
    {
        if (GetLeft() < text.size() || std::memcmp(m_p, text.data(), text.size()) != 0)
            return false;
        m_p += text.size();
        return true;
    }

    bool SkipSpace()
    {
        const char* const pBegin = m_p;
        while (IsSpace(*m_p))
            ++m_p;
        return m_p != pBegin;
    }

    bool SkipCharacter()
    {
        char32_t c = 0;
        const char* const pNext = ReadXmlCharacter(m_p, m_pEnd, c);
        if (pNext == nullptr)
            return false;
        m_p = pNext;
        return true;
    }

    /// Moves behind the first `mark`; all ahead of it must be characters.
    bool SkipUntil(std::string_view mark)
    {
        while (m_p != m_pEnd)
        {
            if (*m_p == mark.front() && Skip(mark))
                return true;
            if (!SkipCharacter())
                return false;
        }
        return false;
    }

    // --- Outside the root -------------------------------------------------------------------------------------------

    bool ScanDeclaration(std::string_view encoding)
    {
        constexpr std::string_view mark = "<?xml";
        if (GetLeft() <= mark.size() || std::string_view(m_p, mark.size()) != mark || !IsSpace(m_p[mark.size()]))
            return true;
        m_p += mark.size();
        SkipSpace();
        std::string_view value;
        if (!ScanSetting("version", value) || value != "1.0")
            return false;
        bool bSpace = SkipSpace();
        if (bSpace && *m_p == 'e')
        {
            if (!ScanSetting("encoding", value) || !IsSameButForCase(value, encoding))
                return false;
            bSpace = SkipSpace();
        }
        if (bSpace && *m_p == 's')
        {
            if (!ScanSetting("standalone", value) || (value != "yes" && value != "no"))
                return false;
            SkipSpace();
        }
        return Skip("?>");
    }

    bool ScanSetting(std::string_view name, std::string_view& value)
    {
        if (!Skip(name))
            return false;
        SkipSpace();
        if (!Skip("="))
            return false;
        SkipSpace();
        const char cQuote = *m_p;
        if (cQuote != '"' && cQuote != '\'')
            return false;
        const char* const pBegin = ++m_p;
        while (*m_p != cQuote && *m_p != '>')
            ++m_p;
        value = std::string_view(pBegin, static_cast<std::size_t>(m_p - pBegin));
        return *m_p++ == cQuote;
    }

    /// Space, comments and processing instructions, up to the root's begin or the end.
    bool ScanMisc()
    {
        while (m_p != m_pEnd)
        {
            SkipSpace();
            if (*m_p != '<' || GetLeft() < 4)
                return false;
            if (m_p[1] != '!' && m_p[1] != '?')
                return m_p[1] != '/';
            if (m_p[1] == '?' ? !ScanInstruction() : !ScanComment())
                return false;
        }
        return true;
    }

    bool ScanComment()
    {
        if (!Skip("<!--"))
            return false;
        return SkipUntil("--") && Skip(">");
    }

    bool ScanInstruction()
    {
        m_p += 2;
        const char* const pTarget = m_p;
        if (m_names.Read(m_p, m_pEnd) == nullptr)
            return false;
        const std::string_view target(pTarget, static_cast<std::size_t>(m_p - pTarget));
        if (target.find(':') != std::string_view::npos || IsSameButForCase(target, "xml"))
            return false;
        return Skip("?>") || (SkipSpace() && SkipUntil("?>"));
    }

    // --- Inside the root --------------------------------------------------------------------------------------------

    bool ScanContent()
    {
        while (!m_open.empty())
        {
            if (!ScanText() || GetLeft() < 4)
                return false;
            if (!ScanMarkup())
                return false;
        }
        return true;
    }

    bool ScanMarkup()
    {
        switch (m_p[1])
        {
        case '/':
            return ScanEndTag();
        case '!':
            return m_p[2] == '[' ? ScanCdata() : ScanComment();
        case '?':
            return ScanInstruction();
        default:
            return ScanStartTag();
        }
    }

    bool ScanStartTag()
    {
        ++m_p;
        SScannedName* const pName = m_names.Read(m_p, m_pEnd);
        if (pName == nullptr)
            return false;
        const std::size_t nBindings = m_names.GetBindingCount();
        m_attributes.clear();
        if (*m_p != '>' && !(ScanAttributes() && FindAttributeNames()))
            return false;
        const SXmlName* const pTreeName = m_names.GetElementName(*pName);
        if (pTreeName == nullptr)
            return false;
        CXmlElement* const pElement = m_builder.AddElement(*pTreeName);
        ++m_made.nElements;
        m_open.push_back({pElement, pName, nBindings, {}, false});
        AddAttributes(pElement);
        if (*m_p == '/')
        {
            ++m_p;
            Close();
        }
        ++m_p;
        return true;
    }

    /// Reads the attributes up to the end of the tag, and binds the prefixes that they declare.
    bool ScanAttributes()
    {
        ++m_nTag;
        m_strValues.clear();
        bool bDeclarations = false;
        while (SkipSpace() && *m_p != '/' && *m_p != '>')
        {
            SScannedName* const pName = m_names.Read(m_p, m_pEnd);
            if (pName == nullptr || pName->nTag == m_nTag)
                return false;
            pName->nTag = m_nTag;
            bDeclarations |= pName->pDeclared != nullptr;
            m_attributes.push_back({pName, nullptr, nullptr, 0, 0});
            if (!ScanEquals() || !ScanValue(m_attributes.back()))
                return false;
        }
        if (!(*m_p == '>' || (*m_p == '/' && m_p[1] == '>')))
            return false;
        return !bDeclarations || BindPrefixes();
    }

    bool ScanEquals()
    {
        SkipSpace();
        if (*m_p != '=')
            return false;
        ++m_p;
        SkipSpace();
        return true;
    }

    bool ScanValue(SAttribute& attribute)
    {
        const char cQuote = *m_p;
        if (cQuote != '"' && cQuote != '\'')
            return false;
        const char* pPiece = ++m_p;
        attribute.pValue = pPiece;
        attribute.nBegin = m_strValues.size();
        for (;;)
        {
            m_p = Runs::FindValueEnd(m_p, m_pEnd);
            if (m_p == m_pEnd)
                return false;
            if (*m_p == cQuote)
                break;
            if (*m_p == '"' || *m_p == '\'')
                ++m_p;
            else if (IsBeyondAscii(*m_p) ? !SkipCharacter() : !ReplaceInValue(attribute, pPiece))
                return false;
        }
        if (attribute.pValue != nullptr)
            attribute.nLength = static_cast<std::size_t>(m_p - pPiece);
        else
            attribute.nLength = m_strValues.append(pPiece, m_p).size() - attribute.nBegin;
        ++m_p;
        return true;
    }

    static bool IsBeyondAscii(char c) { return static_cast<signed char>(c) < 0; }

    /// Something in a value that stands for something else: the value moves to the working space.
    bool ReplaceInValue(SAttribute& attribute, const char*& pPiece)
    {
        m_strValues.append(pPiece, m_p);
        attribute.pValue = nullptr;
        if (*m_p == '&')
        {
            if (!ScanReference(m_strValues))
                return false;
        }
        else if (IsSpace(*m_p))
        {
            m_p += *m_p == '\r' && m_p[1] == '\n' ? 2 : 1;
            m_strValues += ' ';
        }
        else
        {
            return false;
        }
        pPiece = m_p;
        return true;
    }

    std::string_view GetValue(const SAttribute& attribute) const
    {
        if (attribute.pValue != nullptr)
            return {attribute.pValue, attribute.nLength};
        return std::string_view(m_strValues).substr(attribute.nBegin, attribute.nLength);
    }

    bool BindPrefixes()
    {
        for (const SAttribute& attribute : m_attributes)
        {
            if (attribute.pName->pDeclared != nullptr &&
                !m_names.Bind(*attribute.pName->pDeclared, GetValue(attribute)))
                return false;
        }
        return true;
    }

    bool FindAttributeNames()
    {
        m_prefixed.clear();
        for (SAttribute& attribute : m_attributes)
        {
            if (attribute.pName->pDeclared != nullptr)
                continue;
            attribute.pTreeName = m_names.GetAttributeName(*attribute.pName);
            const bool bPrefix = attribute.pName->svLocalName.size() != attribute.pName->svName.size();
            if (attribute.pTreeName == nullptr || (bPrefix && !IsFirstOfName(*attribute.pName)))
                return false;
        }
        return true;
    }

    /// Whether no attribute of the tag so far has the same name under another prefix.
    bool IsFirstOfName(const SScannedName& name)
    {
        const auto isSame = [&name](const SScannedName* pOther)
        {
            return pOther->attribute.pNamespace == name.attribute.pNamespace && pOther->svLocalName == name.svLocalName;
        };
        if (m_prefixed.size() == s_nMostPrefixedAttributes || std::any_of(m_prefixed.begin(), m_prefixed.end(), isSame))
            return false;
        m_prefixed.push_back(&name);
        return true;
    }

    void AddAttributes(CXmlElement* pElement)
    {
        for (const SAttribute& attribute : m_attributes)
        {
            if (attribute.pTreeName == nullptr)
                continue;
            m_builder.AddElementAttribute(pElement, *attribute.pTreeName, GetValue(attribute));
            ++m_made.nAttributes;
        }
    }

    bool ScanEndTag()
    {
        const SScannedName& name = *m_open.back().pName;
        m_p += 2;
        if (!name.IsAt(m_p, m_pEnd))
            return false;
        m_p += name.svName.size();
        if (m_p == m_pEnd)
            return false;
        if (*m_p != '>' && (!SkipSpace() || *m_p != '>'))
            return false;
        ++m_p;
        Close();
        return true;
    }

    void Close()
    {
        const SOpen& open = m_open.back();
        if (open.bBuffered)
        {
            std::string& strText = m_buffers[m_open.size() - 1];
            if (!strText.empty())
                m_builder.SetText(open.pElement, strText);
            strText.clear();
        }
        else if (!open.svText.empty())
        {
            m_builder.SetText(open.pElement, open.svText);
        }
        m_builder.CloseElement();
        m_names.Unbind(open.nBindings);
        m_open.pop_back();
    }

    // --- Text -------------------------------------------------------------------------------------------------------

    /// Text and references up to the next markup.
    bool ScanText()
    {
        const char* pPiece = m_p;
        for (;;)
        {
            m_p = Runs::FindTextEnd(m_p, m_pEnd);
            if (m_p == m_pEnd)
                return false;
            if (*m_p == '<')
                break;
            if (IsBeyondAscii(*m_p) ? SkipCharacter() : SkipBracket())
                continue;
            AddText(pPiece);
            if (*m_p == '&' ? !ScanReferenceInText() : !ScanCarriageReturn())
                return false;
            pPiece = m_p;
        }
        AddText(pPiece);
        return true;
    }

    /// The tree drops carriage returns, those by reference too.
    bool ScanReferenceInText()
    {
        std::string& strText = GetBuffer();
        if (!ScanReference(strText))
            return false;
        if (strText.back() == '\r')
            strText.pop_back();
        return true;
    }

    /// A bracket that ends no CDATA section.
    bool SkipBracket()
    {
        if (*m_p != ']' || (GetLeft() >= 3 && m_p[1] == ']' && m_p[2] == '>'))
            return false;
        ++m_p;
        return true;
    }

    /// A carriage return is a line feed on its own, and nothing ahead of one.
    bool ScanCarriageReturn()
    {
        if (*m_p != '\r')
            return false;
        ++m_p;
        if (*m_p != '\n')
            GetBuffer() += '\n';
        return true;
    }

    /// Adds what stands ahead of the present place to the text of the innermost element.
    void AddText(const char* pBegin)
    {
        if (pBegin == m_p)
            return;
        const std::string_view text(pBegin, static_cast<std::size_t>(m_p - pBegin));
        SOpen& open = m_open.back();
        if (!open.bBuffered && open.svText.empty())
            open.svText = text;
        else
            GetBuffer().append(text);
    }

    /// The text of the innermost element, gathered.
    std::string& GetBuffer()
    {
        const std::size_t nDepth = m_open.size() - 1;
        SOpen& open = m_open.back();
        if (open.bBuffered)
            return m_buffers[nDepth];
        if (m_buffers.size() <= nDepth)
            m_buffers.resize(nDepth + 1);
        open.bBuffered = true;
        return m_buffers[nDepth].assign(open.svText);
    }

    bool ScanCdata()
    {
        if (!Skip("<![CDATA["))
            return false;
        if (m_bKeepCDATA)
            GetBuffer() += "<![CDATA[";
        const char* pPiece = m_p;
        for (;;)
        {
            m_p = Runs::FindTextEnd(m_p, m_pEnd);
            if (m_p == m_pEnd)
                return false;
            if (*m_p == ']')
            {
                if (!SkipBracket())
                    break;
            }
            else if (*m_p == '\r')
            {
                AddText(pPiece);
                ScanCarriageReturn();
                pPiece = m_p;
            }
            else if (!SkipCharacter())
            {
                return false;
            }
        }
        AddText(pPiece);
        m_p += 3;
        if (m_bKeepCDATA)
            GetBuffer() += "]]>";
        return true;
    }

    /// A reference to a character, or to one of the entities that need no declaration.
    bool ScanReference(std::string& strText)
    {
        ++m_p;
        if (*m_p == '#')
            return ScanCharacterReference(strText);
        struct SEntity
        {
            std::string_view svName;
            char c;
        };
        static constexpr SEntity entities[] = {
            {"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
        for (const SEntity& entity : entities)
        {
            if (Skip(entity.svName))
            {
                strText += entity.c;
                return true;
            }
        }
        return false;
    }

    bool ScanCharacterReference(std::string& strText)
    {
        ++m_p;
        const bool bHex = *m_p == 'x';
        m_p += bHex;
        char32_t c = 0;
        const char* const pDigits = m_p;
        for (; *m_p != ';'; ++m_p)
        {
            const int nDigit = GetDigit(*m_p, bHex);
            c = c * (bHex ? 16 : 10) + static_cast<char32_t>(nDigit);
            if (nDigit < 0 || c > 0x10FFFF)
                return false;
        }
        if (m_p == pDigits)
            return false;
        ++m_p;
        m_strCharacter.clear();
        AppendUtf8(m_strCharacter, c);
        const char* const pCharacter = m_strCharacter.data();
        if (ReadXmlCharacter(pCharacter, pCharacter + m_strCharacter.size(), c) == nullptr)
            return false;
        strText += m_strCharacter;
        return true;
    }

    static int GetDigit(char c, bool bHex)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (bHex && (c | 0x20) >= 'a' && (c | 0x20) <= 'f')
            return (c | 0x20) - 'a' + 10;
        return -1;
    }

    CXmlTreeBuilder& m_builder;
    CXmlScannedNames m_names;
    const bool m_bKeepCDATA;
    CXmlScanner::SMade& m_made;
    const char* m_p = nullptr;
    const char* m_pEnd = nullptr;
    std::vector<SOpen> m_open;
    /// Text of elements that consists of several pieces, by depth.
    std::vector<std::string> m_buffers;
    std::vector<SAttribute> m_attributes;
    std::uint64_t m_nTag = 0;
    /// Names of the attributes with prefixes in the present tag.
    std::vector<const SScannedName*> m_prefixed;
    /// Working space.
    std::string m_strValues;
    std::string m_strCharacter;
};

} // namespace

CXmlScanner::CXmlScanner(CXmlTreeBuilder& builder, const SExpatOptions& options)
    : CInstanceMonitor(L"CExpatReader")
    , m_builder(builder)
    , m_options(options)
{
}

bool CXmlScanner::ScanBytes(std::string_view document)
{
    if (document.substr(0, s_svByteOrderMark.size()) == s_svByteOrderMark)
        document.remove_prefix(s_svByteOrderMark.size());
    return Scan(document, "utf-8");
}

bool CXmlScanner::ScanText(std::string_view document)
{
    return Scan(document, "utf-16");
}

bool CXmlScanner::Scan(std::string_view document, std::string_view encoding)
{
    if (document.size() > s_nLongestDocument)
        return false;
    if (m_bPlainCode)
        return CScan<SPlainRuns>(m_builder, m_options, m_made).Run(document, encoding);
    return CScan<SWideRuns>(m_builder, m_options, m_made).Run(document, encoding);
}

void CXmlScanner::SMade::Forget() const
{
    ForgetInstances(L"CExpatReader", 1);
    ForgetInstances(L"CXmlElement", nElements);
    ForgetInstances(L"CXmlAttribute", nAttributes);
}

} // namespace QvXmlLib9
