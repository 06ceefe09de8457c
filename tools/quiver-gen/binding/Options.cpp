#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Names.h"

namespace quiver_gen::binding
{

namespace
{

std::string_view Trim(std::string_view strText)
{
    constexpr std::string_view strSpace = " \t\r\n";
    const std::size_t nFirst = strText.find_first_not_of(strSpace);
    if (nFirst == std::string_view::npos)
        return {};
    return strText.substr(nFirst, strText.find_last_not_of(strSpace) - nFirst + 1);
}

/// Takes `{uri}name` off the text, up to a separator.
bool TakeQName(std::string_view& strText, std::string_view strSeparators, schema::SQName& name)
{
    name.strNamespace.clear();
    if (!strText.empty() && strText.front() == '{')
    {
        const std::size_t nEnd = strText.find('}');
        if (nEnd == std::string_view::npos)
            return false;
        name.strNamespace = strText.substr(1, nEnd - 1);
        strText.remove_prefix(nEnd + 1);
    }
    const std::size_t nEnd = strText.find_first_of(strSeparators);
    if (nEnd == std::string_view::npos)
        return false;
    name.strLocal = Trim(strText.substr(0, nEnd));
    strText.remove_prefix(nEnd);
    return !name.IsEmpty();
}

} // namespace

bool ParseRename(std::string_view strRule, SRename& rename)
{
    std::string_view strRest = Trim(strRule);
    if (!TakeQName(strRest, "/=", rename.type))
        return false;
    // The last sign, as a value's text may hold one.
    const std::size_t nSign = strRest.rfind('=');
    if (nSign == std::string_view::npos)
        return false;
    const bool bInner = strRest.front() == '/';
    rename.strInner = bInner ? Trim(strRest.substr(1, nSign - 1)) : std::string_view();
    rename.strName = Trim(strRest.substr(nSign + 1));
    return (!bInner || !rename.strInner.empty()) && (bInner || nSign == 0) && IsIdentifier(rename.strName);
}

bool ParseHeldAs(std::string_view strRule, SHeldAs& heldAs)
{
    struct SWay
    {
        std::string_view strName;
        EValue eValue;
    };
    constexpr SWay s_ways[] = {
        {"decimal", EValue::Decimal}, {"string", EValue::String}, {"i8", EValue::I8}, {"r8", EValue::R8}};
    std::string_view strRest = Trim(strRule);
    if (!TakeQName(strRest, "=", heldAs.type))
        return false;
    const std::string_view strWay = Trim(strRest.substr(1));
    for (const SWay& way : s_ways)
    {
        if (way.strName != strWay)
            continue;
        heldAs.eValue = way.eValue;
        return true;
    }
    return false;
}

} // namespace quiver_gen::binding
