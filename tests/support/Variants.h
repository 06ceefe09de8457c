#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

/// @file
/// Documents that are like one and differ from it in a place.

namespace QvTest
{

/// Makes them of a document without comments, sections of character data and signs that need quoting.
class CVariants
{
public:
    explicit CVariants(const std::string& strDocument)
    {
        for (std::size_t n = 0; n < strDocument.size(); n += m_pieces.back().size())
        {
            const bool bTag = strDocument[n] == '<';
            const std::size_t nEnd = std::min(strDocument.find(bTag ? '>' : '<', n), strDocument.size());
            m_pieces.push_back(strDocument.substr(n, nEnd - n + (bTag ? 1 : 0)));
        }
    }

    std::vector<std::string> Make()
    {
        for (std::size_t n = 0; n < m_pieces.size(); ++n)
        {
            if (IsStart(n) || IsEmpty(n))
            {
                VaryElement(n);
                VaryAttributes(n);
            }
            else if (m_pieces[n][0] != '<')
            {
                for (const char* const lpcText : {"", " 7 ", "x y", "-1.50"})
                    Replace(n, n + 1, lpcText);
            }
        }
        return std::move(m_variants);
    }

private:
    bool IsEnd(std::size_t n) const { return m_pieces[n].compare(0, 2, "</") == 0; }
    bool IsEmpty(std::size_t n) const
    {
        return m_pieces[n][0] == '<' && m_pieces[n].compare(m_pieces[n].size() - 2, 2, "/>") == 0;
    }
    bool IsStart(std::size_t n) const
    {
        return m_pieces[n][0] == '<' && m_pieces[n][1] != '?' && !IsEnd(n) && !IsEmpty(n);
    }

    std::string Join(std::size_t nFrom, std::size_t nTo) const
    {
        std::string strText;
        for (; nFrom < nTo; ++nFrom)
            strText += m_pieces[nFrom];
        return strText;
    }

    /// The piece behind the element that begins with a piece.
    std::size_t FindEnd(std::size_t nPiece) const
    {
        int nOpen = 0;
        do
            nOpen += IsStart(nPiece) ? 1 : IsEnd(nPiece) ? -1 : 0;
        while (++nPiece < m_pieces.size() && nOpen > 0);
        return nPiece;
    }

    void Replace(std::size_t nFrom, std::size_t nTo, const std::string& strText)
    {
        m_variants.push_back(Join(0, nFrom) + strText + Join(nTo, m_pieces.size()));
    }

    /// Gone, twice, behind an element that nobody knows, behind its next sibling.
    void VaryElement(std::size_t nBegin)
    {
        const std::size_t nEnd = FindEnd(nBegin);
        const std::string strElement = Join(nBegin, nEnd);
        Replace(nBegin, nEnd, "");
        Replace(nBegin, nEnd, strElement + strElement);
        Replace(nBegin, nEnd, "<unknown/>" + strElement);
        if (nEnd < m_pieces.size() && (IsStart(nEnd) || IsEmpty(nEnd)))
            Replace(nBegin, FindEnd(nEnd), Join(nEnd, FindEnd(nEnd)) + strElement);
    }

    /// Another value for each, the namespaces included.
    void VaryAttributes(std::size_t nTag)
    {
        const std::string& strTag = m_pieces[nTag];
        for (std::size_t n = strTag.find("=\""); n != std::string::npos; n = strTag.find("=\"", n + 2))
        {
            std::string strOther = strTag;
            Replace(nTag, nTag + 1, strOther.replace(n + 2, strTag.find('"', n + 2) - n - 2, "7"));
        }
    }

    std::vector<std::string> m_pieces;
    std::vector<std::string> m_variants;
};

inline std::vector<std::string> VaryDocument(const std::string& strDocument)
{
    return CVariants(strDocument).Make();
}

} // namespace QvTest
