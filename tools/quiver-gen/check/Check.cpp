#include "tools/quiver-gen/check/Check.h"

#include "tools/common/Progress.h"
#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/check/Model.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <ostream>
#include <system_error>

using namespace QvXmlLib9;

namespace quiver_gen::check
{

namespace
{

/// The lines behind the first are indented, so that a line that begins with a name is about another document.
std::string FormatChain(const CQvException& exception)
{
    std::string strMessages;
    AppendUtf8(strMessages, exception.GetFullMessage());
    std::string strText;
    for (const char c : strMessages)
        strText.append(c == '\n' ? "\n    " : std::string(1, c));
    return strText;
}

/// Length of a file, 0 where it cannot be told.
std::uint64_t MeasureFile(const std::string& strPath)
{
    std::error_code error;
    const std::uintmax_t nLength = std::filesystem::file_size(std::filesystem::u8path(strPath), error);
    return error ? 0 : nLength;
}

EFinding CheckDocument(const CModel& model, const std::string& strPath, quiver_tools::CProgress& progress,
                       std::ostream& err)
{
    try
    {
        model.Read(ReadFile(strPath));
        return EFinding::Right;
    }
    catch (const CFileError& error)
    {
        progress.Clear();
        err << "quiver-gen: " << error.what() << '\n';
        return EFinding::Unreadable;
    }
    catch (const CQvException& exception)
    {
        progress.Clear();
        err << strPath << ": error: " << FormatChain(exception) << '\n';
        return EFinding::Refused;
    }
}

} // namespace

EFinding CheckDocuments(const binding::SBinding& binding, const std::vector<std::string>& documents, std::ostream& err,
                        bool bErrIsTerminal)
{
    std::uint64_t nTotal = 0;
    for (const std::string& strDocument : documents)
        nTotal += bErrIsTerminal ? MeasureFile(strDocument) : 0;
    quiver_tools::CProgress progress(err, bErrIsTerminal, "quiver-gen: checking", nTotal);

    EFinding eFinding = EFinding::Right;
    const CModel model(binding);
    std::uint64_t nDone = 0;
    for (const std::string& strDocument : documents)
    {
        eFinding = std::max(eFinding, CheckDocument(model, strDocument, progress, err));
        nDone += bErrIsTerminal ? MeasureFile(strDocument) : 0;
        progress.Reach(nDone);
    }
    return eFinding;
}

} // namespace quiver_gen::check
