#include "tools/quiver-gen/cpp/SimpleTypes.h"

#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>
#include <string_view>
#include <vector>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

/// `L"a"` with what stands before and behind it, the literal broken where it is too long for a line.
/// @param nIndent of the line that begins with strHead.
std::string ArrangeLiteral(std::size_t nIndent, std::string_view svHead, std::string_view svText,
                           std::string_view svTail)
{
    const std::size_t nFirst = nIndent + svHead.size();
    const std::vector<std::string> pieces = WideLiterals(svText, s_nColumns - nFirst - svTail.size());
    std::string strLines(svHead);
    for (std::size_t n = 0; n < pieces.size(); ++n)
    {
        if (n > 0)
            strLines.append("\n").append(nFirst, ' ');
        strLines += pieces[n];
    }
    return strLines.append(svTail);
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

/// Whether the documentation of all values fits behind them.
bool FitsBehind(const std::vector<std::string>& values, const std::vector<std::string>& comments, std::size_t& nColumn)
{
    std::size_t nLongest = 0;
    nColumn = 0;
    for (std::size_t n = 0; n < values.size(); ++n)
    {
        if (comments[n].empty())
            continue;
        nColumn = std::max(nColumn, 4 + values[n].size());
        nLongest = std::max(nLongest, CountColumns(comments[n]));
    }
    return nColumn + 1 + std::string_view("///< ").size() + nLongest <= s_nColumns;
}

std::string DeclareEnumeration(const SSimpleType& type)
{
    std::vector<std::string> values;
    std::vector<std::string> comments;
    bool bOneParagraph = true;
    for (const SEnumerator& value : type.enumerators)
    {
        const bool bLast = &value == &type.enumerators.back();
        values.push_back(value.strName + (bLast ? "" : ","));
        comments.push_back(value.documentation.empty() ? std::string() : CommentText(value.documentation.front()));
        bOneParagraph = bOneParagraph && value.documentation.size() < 2;
    }
    std::size_t nColumn = 0;
    const bool bBehind = FitsBehind(values, comments, nColumn) && bOneParagraph;

    std::string strText = "enum class " + type.strEnumName + " : int\n{\n";
    for (std::size_t n = 0; n < values.size(); ++n)
    {
        if (!bBehind)
            strText += CommentLines(type.enumerators[n].documentation, 4, "///");
        std::string strLine = "    " + values[n];
        if (bBehind && !comments[n].empty())
        {
            strLine.resize(nColumn, ' ');
            strLine += " ///< " + comments[n];
        }
        strText += strLine + '\n';
    }
    return strText + "};\n\n";
}

std::string DefineValues(const SSimpleType& type)
{
    std::vector<std::string> literals;
    for (const SEnumerator& value : type.enumerators)
        literals.push_back(WideLiteral(value.strText));
    constexpr std::string_view svHead = "static constexpr const wchar_t* s_values[] = {";
    std::string strText = Arrange(4, svHead, literals, "};");
    if (strText.find('\n') == std::string::npos)
        return strText + '\n';
    return std::string(4, ' ').append(svHead) + '\n' + Arrange(8, "", literals, "") + "};\n";
}

// --- Facets ---------------------------------------------------------------------------------------------------------

void AddNumber(std::vector<std::string>& calls, const char* lpcName, std::int64_t n)
{
    if (n >= 0)
        calls.push_back("." + std::string(lpcName) + '(' + std::to_string(n) + ')');
}

/// @param nIndent where the call stands if it gets a line of its own.
void AddText(std::vector<std::string>& calls, const char* lpcName, const std::string& strText, std::size_t nIndent)
{
    if (!strText.empty())
        calls.push_back(ArrangeLiteral(nIndent, "." + std::string(lpcName) + '(', strText, ")"));
}

const char* GetWhiteSpaceRule(SSimpleType::EWhiteSpace eWhiteSpace)
{
    switch (eWhiteSpace)
    {
    case SSimpleType::EWhiteSpace::Inherited:
        break;
    case SSimpleType::EWhiteSpace::Preserve:
        return "None";
    case SSimpleType::EWhiteSpace::Replace:
        return "Replace";
    case SSimpleType::EWhiteSpace::Collapse:
        return "Collapse";
    }
    return nullptr;
}

std::vector<std::string> GetFacetCalls(const SSimpleType& type, const CScope& scope, std::size_t nIndent)
{
    std::vector<std::string> calls;
    if (!type.enumerators.empty())
        calls.push_back(".Values(s_values)");
    AddText(calls, "Pattern", type.strPattern, nIndent);
    AddNumber(calls, "Length", type.nLength);
    AddNumber(calls, "MinLength", type.nMinLength);
    AddNumber(calls, "MaxLength", type.nMaxLength);
    AddText(calls, "MinInclusive", type.strMinInclusive, nIndent);
    AddText(calls, "MinExclusive", type.strMinExclusive, nIndent);
    AddText(calls, "MaxInclusive", type.strMaxInclusive, nIndent);
    AddText(calls, "MaxExclusive", type.strMaxExclusive, nIndent);
    AddNumber(calls, "TotalDigits", type.nTotalDigits);
    AddNumber(calls, "FractionDigits", type.nFractionDigits);
    if (const char* const lpcRule = GetWhiteSpaceRule(type.eWhiteSpace))
        calls.push_back(".WhiteSpace(" + scope.Library("CWhitespaceUtils") + "::WhitespaceRule_" + lpcRule + ')');
    return calls;
}

/// `static constexpr CSimpleType s_type = ...;`
std::string DefineConstant(const SSimpleType& type, const CScope& scope, const std::string& strStart)
{
    const std::string strHead = "    static constexpr " + scope.Library("CSimpleType") + " s_type =";
    const std::vector<std::string> calls = GetFacetCalls(type, scope, strHead.size() + 5);
    std::string strChain = strStart;
    for (const std::string& strCall : calls)
        strChain += strCall;
    const bool bOneLine = strChain.find('\n') == std::string::npos;
    if (bOneLine && strHead.size() + 2 + CountColumns(strChain) <= s_nColumns)
        return strHead + ' ' + strChain + ";\n";
    if (bOneLine && 9 + CountColumns(strChain) <= s_nColumns)
        return strHead + "\n        " + strChain + ";\n";
    std::string strText = strHead + ' ' + strStart;
    for (const std::string& strCall : calls)
        strText += '\n' + std::string(strHead.size() + 5, ' ') + strCall;
    return strText + ";\n";
}

} // namespace

std::string DeclareSimpleType(const SSimpleType& type, const CScope& scope)
{
    std::string strText = CommentLines(type.documentation, 0, "///");
    if (type.eValue == EValue::Enumeration)
        strText += DeclareEnumeration(type);
    strText += "struct " + type.strName + "\n{\n    using Value = " + scope.Value(type) + ";\n";
    if (type.pItem != nullptr)
        strText += "    using Item = " + scope.Name(*type.pItem) + ";\n";
    return strText + "    static const " + scope.Library("CSimpleType") + "& Type();\n};\n";
}

std::string DefineSimpleType(const SSimpleType& type, const CScope& scope)
{
    const std::string strSimpleType = scope.Library("CSimpleType");
    std::string strText = "const " + strSimpleType + "& " + type.strName + "::Type()\n{\n";
    std::string strStart;
    if (!type.memberTypes.empty())
    {
        std::vector<std::string> members;
        for (const SSimpleType* const pMember : type.memberTypes)
            members.push_back('&' + scope.Name(*pMember) + "::Type");
        strText += Arrange(4, "static constexpr " + scope.Library("PfnSimpleType") + " s_members[] = {", members, "};");
        strText += '\n';
        strStart = strSimpleType + "::UnionOf(s_members)";
    }
    else if (type.pItem != nullptr)
        strStart = strSimpleType + "::ListOf(&" + scope.Name(*type.pItem) + "::Type)";
    else
        strStart = strSimpleType + '(' + scope.Library(type.strBuiltin) + "::s_type)";
    if (!type.enumerators.empty())
        strText += DefineValues(type);
    return strText + DefineConstant(type, scope, strStart) + "    return s_type;\n}\n";
}

} // namespace quiver_gen::cpp
