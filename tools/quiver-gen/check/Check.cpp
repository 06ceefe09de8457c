#include "tools/quiver-gen/check/Check.h"

#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/check/Model.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <algorithm>
#include <ostream>

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

EFinding CheckDocument(const CModel& model, const std::string& strPath, std::ostream& err)
{
    try
    {
        model.Read(ReadFile(strPath));
        return EFinding::Right;
    }
    catch (const CFileError& error)
    {
        err << "quiver-gen: " << error.what() << '\n';
        return EFinding::Unreadable;
    }
    catch (const CQvException& exception)
    {
        err << strPath << ": error: " << FormatChain(exception) << '\n';
        return EFinding::Refused;
    }
}

} // namespace

EFinding CheckDocuments(const binding::SBinding& binding, const std::vector<std::string>& documents, std::ostream& err)
{
    EFinding eFinding = EFinding::Right;
    const CModel model(binding);
    for (const std::string& strDocument : documents)
        eFinding = std::max(eFinding, CheckDocument(model, strDocument, err));
    return eFinding;
}

} // namespace quiver_gen::check
