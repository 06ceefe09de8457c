#include "tools/quiver-fi/Program.h"

#include "tools/quiver-fi/Compression.h"
#include "tools/quiver-fi/InfosetSource.h"
#include "tools/quiver-fi/Inspector.h"
#include "tools/quiver-fi/Options.h"
#include "tools/quiver-fi/Text.h"
#include "tools/quiver-fi/TreeSinks.h"
#include "tools/quiver-fi/XmlSource.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

void Write(const std::string& strBytes, const SOptions& options, const SStreams& streams)
{
    const bool bCompress = options.eCompression != Compression_None;
    WriteOutput(options.strOutput, bCompress ? Compress(strBytes) : strBytes, streams);
}

void Encode(const SOptions& options, const SStreams& streams)
{
    CDocument document;
    std::string strBytes = ReadInput(options.strInput, streams);
    Decompress(strBytes);
    if (IsFastInfoset(strBytes))
        ReadInfoset(strBytes, document, streams);
    else
        ReadXml(strBytes, document, streams);

    CFastInfosetContext context;
    context.SetAttributeMaxAddLength(options.dwAttributeMaxAddLength);
    context.SetElementMaxAddLength(options.dwElementMaxAddLength);
    if (options.bSuggestedValues)
        context.SetSuggestedValues();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(options.eDeclaration);
    const CNamespacePlan plan(document, CNamespacePlan::EForm::FastInfoset);
    CFastInfosetSink sink(document, plan, writer, options.bSuggestedValues);
    WriteTree(document, plan, sink, streams);
    writer.WriteTerminator();
    writer.Close();
    const CBinaryData data = stream.GetData();
    Write(std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength()), options, streams);
}

/// The text in the form that is asked for.
std::string ToEncoding(std::string strText, XmlEncoding eEncoding)
{
    if (eEncoding == Encoding_UTF8)
        return strText;
    const std::wstring strUnits = Widen(strText);
    std::string strBytes(GetByteOrderMark(eEncoding));
    const std::size_t nMark = strBytes.size();
    strBytes.resize(nMark + 2 * strUnits.size());
    WriteUtf16LittleEndian(strUnits, reinterpret_cast<unsigned char*>(strBytes.data()) + nMark);
    return strBytes;
}

void Decode(const SOptions& options, const SStreams& streams)
{
    std::string strBytes = ReadInput(options.strInput, streams);
    Decompress(strBytes);
    CDocument document;
    ReadInfoset(strBytes, document, streams);

    const STextForm form{options.bFormat, options.eEOLType == EOLType_CRLF ? "\r\n" : "\n"};
    std::string strText;
    if (options.bXmlDeclaration)
    {
        strText += R"(<?xml version="1.0" encoding=")";
        strText.append(options.eEncoding == Encoding_UTF8 ? "UTF-8" : "UTF-16").append("\"?>").append(form.svEOL);
    }
    const CNamespacePlan plan(document, CNamespacePlan::EForm::XmlText);
    CXmlTextSink sink(document, plan, form, strText);
    WriteTree(document, plan, sink, streams);
    Write(ToEncoding(std::move(strText), options.eEncoding), options, streams);
}

void InspectFile(const SOptions& options, const SStreams& streams)
{
    std::string strBytes = ReadInput(options.strInput, streams);
    if (Decompress(strBytes))
        streams.out << "The document is compressed; offsets count in what it holds.\n";
    Inspect(strBytes, options.bWholeValues, streams);
    FinishOutput(streams);
}

void Run(const SOptions& options, const SStreams& streams)
{
    switch (options.eCommand)
    {
    case ECommand::Help:
        WriteOutput("-", GetHelp(), streams);
        break;
    case ECommand::Version:
        WriteOutput("-", GetVersion(), streams);
        break;
    case ECommand::Encode:
        Encode(options, streams);
        break;
    case ECommand::Decode:
        Decode(options, streams);
        break;
    case ECommand::Inspect:
        InspectFile(options, streams);
        break;
    }
}

std::string GetMessageInOneLine(const CQvException& ex)
{
    std::string strMessage;
    AppendUtf8(strMessage, ex.GetFullMessage());
    for (std::size_t n = strMessage.find('\n'); n != std::string::npos; n = strMessage.find('\n', n))
        strMessage.replace(n, 1, ": ");
    return strMessage;
}

void Tell(const std::string& strMessage, const SStreams& streams)
{
    streams.err << "quiver-fi: " << EscapeControls(strMessage) << '\n';
}

int Fail(const SOptions& options, const std::string& strMessage, const SStreams& streams)
{
    Tell((options.strInput == "-" ? "standard input" : options.strInput) + ": " + strMessage, streams);
    return 1;
}

} // namespace

int RunProgram(const std::vector<std::string>& arguments, const SStreams& streams)
{
    SOptions options;
    try
    {
        options = ParseOptions(arguments);
        Run(options, streams);
        return 0;
    }
    catch (const CUsageError& error)
    {
        Tell(error.strMessage + "; --help tells more", streams);
        return 2;
    }
    catch (const CFileError& ex)
    {
        Tell(ex.what(), streams);
        return 1;
    }
    catch (const CQvException& ex)
    {
        return Fail(options, GetMessageInOneLine(ex), streams);
    }
    catch (const std::bad_alloc&)
    {
        return Fail(options, "there is not enough memory for this", streams);
    }
    catch (const std::exception& ex)
    {
        return Fail(options, ex.what(), streams);
    }
}

} // namespace quiver_fi
