#include "tools/quiver-gen/binding/Warnings.h"

namespace quiver_gen::binding
{

void CWarnings::Add(EWarning eWarning, const schema::SPosition& position, std::string_view svName)
{
    std::string strText(s_warnings[static_cast<std::size_t>(eWarning)].svText);
    if (const std::size_t nAt = strText.find("%s"); nAt != std::string::npos)
        strText.replace(nAt, 2, svName);
    m_diagnostics.AddWarning(position, std::move(strText));
}

} // namespace quiver_gen::binding
