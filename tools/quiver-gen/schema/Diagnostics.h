#pragma once

#include "tools/quiver-gen/schema/Components.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace quiver_gen::schema
{

/// Collects errors and warnings about schemas and hands them out in the order of files and positions.
class CDiagnostics
{
public:
    enum class EKind
    {
        Error,
        Warning
    };

    struct SMessage
    {
        EKind eKind = EKind::Error;
        SPosition position;
        std::string strText;
    };

    void AddError(const SPosition& position, std::string strText);
    void AddWarning(const SPosition& position, std::string strText);

    std::size_t GetErrorCount() const { return m_nErrors; }
    bool HasErrors() const { return m_nErrors > 0; }

    /// All messages by position, those of one position as they were added; those without a file come first.
    std::vector<SMessage> GetSorted() const;

    /// A line for each message: `file:line:column: error: text`. After nMaxErrors errors one line tells how many more
    /// there are.
    void Print(std::ostream& out, const std::vector<SFile>& files, std::size_t nMaxErrors = 100) const;

private:
    std::vector<SMessage> m_messages;
    std::size_t m_nErrors = 0;
};

} // namespace quiver_gen::schema
