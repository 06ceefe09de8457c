#include "tools/quiver-gen/schema/Diagnostics.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace quiver_gen::schema
{

void CDiagnostics::AddError(const SPosition& position, std::string strText)
{
    m_messages.push_back({EKind::Error, position, std::move(strText)});
    ++m_nErrors;
}

void CDiagnostics::AddWarning(const SPosition& position, std::string strText)
{
    m_messages.push_back({EKind::Warning, position, std::move(strText)});
}

std::vector<CDiagnostics::SMessage> CDiagnostics::GetSorted() const
{
    std::vector<SMessage> messages = m_messages;
    std::stable_sort(messages.begin(), messages.end(),
                     [](const SMessage& a, const SMessage& b) { return a.position < b.position; });
    return messages;
}

void CDiagnostics::Print(std::ostream& out, const std::vector<SFile>& files, std::size_t nMaxErrors) const
{
    std::size_t nPrinted = 0;
    for (const SMessage& message : GetSorted())
    {
        const bool bError = message.eKind == EKind::Error;
        if (bError && nPrinted++ >= nMaxErrors)
            continue;
        const SPosition& position = message.position;
        if (position.nFile >= 0)
            out << files[static_cast<std::size_t>(position.nFile)].strPath << ':' << position.nLine << ':'
                << position.nColumn << ": ";
        out << (bError ? "error: " : "warning: ") << message.strText << '\n';
    }
    if (nPrinted > nMaxErrors)
        out << "error: " << nPrinted - nMaxErrors << " more errors are not shown\n";
}

} // namespace quiver_gen::schema
