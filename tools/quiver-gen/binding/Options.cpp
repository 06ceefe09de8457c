#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Names.h"

namespace quiver_gen::binding
{

namespace
{

std::string_view Trim(std::string_view svText)
{
    constexpr std::string_view svSpace = " \t\r\n";
    const std::size_t nFirst = svText.find_first_not_of(svSpace);
    if (nFirst == std::string_view::npos)
        return {};
    return svText.substr(nFirst, svText.find_last_not_of(svSpace) - nFirst + 1);
}

/// Takes `{uri}name` off the text, up to a separator.
bool TakeQName(std::string_view& svText, std::string_view svSeparators, schema::SQName& name)
{
    name.strNamespace.clear();
    if (!svText.empty() && svText.front() == '{')
    {
        const std::size_t nEnd = svText.find('}');
        if (nEnd == std::string_view::npos)
            return false;
        name.strNamespace = svText.substr(1, nEnd - 1);
        svText.remove_prefix(nEnd + 1);
    }
    const std::size_t nEnd = svText.find_first_of(svSeparators);
    if (nEnd == std::string_view::npos)
        return false;
    name.strLocal = Trim(svText.substr(0, nEnd));
    svText.remove_prefix(nEnd);
    return !name.IsEmpty();
}

} // namespace

bool ParseRename(std::string_view svRule, SRename& rename)
{
    std::string_view svRest = Trim(svRule);
    if (!TakeQName(svRest, "/=", rename.type))
        return false;
    // The last sign, as a value's text may hold one.
    const std::size_t nSign = svRest.rfind('=');
    if (nSign == std::string_view::npos)
        return false;
    const bool bInner = svRest.front() == '/';
    rename.strInner = bInner ? Trim(svRest.substr(1, nSign - 1)) : std::string_view();
    rename.strName = Trim(svRest.substr(nSign + 1));
    return (!bInner || !rename.strInner.empty()) && (bInner || nSign == 0) && IsIdentifier(rename.strName);
}

bool ParseHeldAs(std::string_view svRule, SHeldAs& heldAs)
{
    struct SWay
    {
        std::string_view svName;
        EValue eValue;
    };
    constexpr SWay s_ways[] = {
        {"decimal", EValue::Decimal}, {"string", EValue::String}, {"i8", EValue::I8}, {"r8", EValue::R8}};
    std::string_view svRest = Trim(svRule);
    if (!TakeQName(svRest, "=", heldAs.type))
        return false;
    const std::string_view svWay = Trim(svRest.substr(1));
    for (const SWay& way : s_ways)
    {
        if (way.svName != svWay)
            continue;
        heldAs.eValue = way.eValue;
        return true;
    }
    return false;
}

} // namespace quiver_gen::binding
