#include "tools/quiver-gen/binding/Documentation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace quiver_gen::binding
{

namespace
{

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// `en` asks for `en-GB` too.
bool IsLanguage(const std::string& strLang, const std::string& strWanted)
{
    return strLang.empty() || strWanted.empty() || strLang == strWanted ||
           (strLang.compare(0, strWanted.size(), strWanted) == 0 && strLang[strWanted.size()] == '-');
}

/// Adds the text line by line; an empty line ends a paragraph.
void AddParagraphs(std::string_view svText, SDocumentation& paragraphs)
{
    std::string strParagraph;
    const auto finish = [&]
    {
        if (!strParagraph.empty())
            paragraphs.push_back(std::exchange(strParagraph, {}));
    };
    int nLineEnds = 0;
    bool bSpace = false;
    for (const char c : svText)
    {
        if (IsSpace(c))
        {
            bSpace = true;
            nLineEnds += c == '\n' ? 1 : 0;
            continue;
        }
        if (nLineEnds > 1)
            finish();
        else if (bSpace && !strParagraph.empty())
            strParagraph += ' ';
        strParagraph += c;
        nLineEnds = 0;
        bSpace = false;
    }
    finish();
}

} // namespace

SDocumentation MakeDocumentation(const std::vector<schema::SDocumentation>& documentation,
                                 const SBindingOptions& options)
{
    SDocumentation paragraphs;
    if (options.eComments == SBindingOptions::EComments::None)
        return paragraphs;
    for (const schema::SDocumentation& part : documentation)
        if (IsLanguage(part.strLang, options.strLang))
            AddParagraphs(part.strText, paragraphs);
    if (options.eComments == SBindingOptions::EComments::First && paragraphs.size() > 1)
        paragraphs.resize(1);
    return paragraphs;
}

} // namespace quiver_gen::binding
