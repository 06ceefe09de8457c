#include "tools/quiver-fi/Program.h"

#include "tools/quiver-fi/Inspector.h"
#include "tools/quiver-fi/Options.h"
#include "tools/quiver-fi/TreeSinks.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/output/TextStream.h"

#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

void LoadTree(CXmlDocument& document, std::string strBytes)
{
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
}

void CompressIfAsked(CBinaryData& data, const SOptions& options)
{
    if (options.eCompression == Compression_None)
        return;
    try
    {
        CQvZip::Compress(data, options.eCompression);
    }
    catch (const CQvException&)
    {
        throw std::runtime_error("the result is too short to be compressed");
    }
}

void Write(const CBinaryData& data, const SOptions& options, const SStreams& streams)
{
    const std::string_view strBytes(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
    WriteOutput(options.strOutput, strBytes, streams);
}

void Encode(const SOptions& options, const SStreams& streams)
{
    CXmlSerializationContext context;
    CFastInfosetContext& fiContext = context.GetFIContext();
    fiContext.SetAttributeMaxAddLength(options.dwAttributeMaxAddLength);
    fiContext.SetElementMaxAddLength(options.dwElementMaxAddLength);
    if (options.bSuggestedValues)
        fiContext.SetSuggestedValues();

    CXmlDocument document(context);
    LoadTree(document, ReadInput(options.strInput, streams));
    CBinaryStream stream;
    CFastInfosetWriter writer(&fiContext, &stream);
    writer.Open();
    writer.WriteHeader(options.eDeclaration);
    CFastInfosetSink sink(writer, options.bSuggestedValues);
    WriteTree(document, sink, streams);
    writer.WriteTerminator();
    writer.Close();

    CBinaryData data = stream.GetData();
    CompressIfAsked(data, options);
    Write(data, options, streams);
}

void Decode(const SOptions& options, const SStreams& streams)
{
    std::string strBytes = ReadInput(options.strInput, streams);
    Decompress(strBytes);
    if (!IsFastInfoset(strBytes))
        throw std::runtime_error("this is no Fast Infoset document");

    const CXmlSerializationContext context;
    CXmlDocument document(context);
    LoadTree(document, std::move(strBytes));
    CTextStream stream(options.eEncoding);
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetFormatted(options.bFormat);
    writer.SetEOLType(options.eEOLType);
    if (options.bXmlDeclaration)
        writer.WriteXmlDeclaration();
    CXmlTextSink sink(writer);
    WriteTree(document, sink, streams);
    writer.Close();

    CBinaryStream file;
    const std::string_view strMark = GetByteOrderMark(options.eEncoding);
    if (!strMark.empty())
        file.Append(reinterpret_cast<const unsigned char*>(strMark.data()), static_cast<unsigned long>(strMark.size()));
    file.Append(stream.GetBinaryData());
    CBinaryData data = file.GetData();
    CompressIfAsked(data, options);
    Write(data, options, streams);
}

void InspectFile(const SOptions& options, const SStreams& streams)
{
    std::string strBytes = ReadInput(options.strInput, streams);
    if (Decompress(strBytes))
        streams.out << "The document is compressed; offsets count in what it holds.\n";
    Inspect(strBytes, options.bWholeValues, streams);
    if (!streams.out.flush())
        throw CFileError("cannot write the standard stream");
}

void Run(const SOptions& options, const SStreams& streams)
{
    switch (options.eCommand)
    {
    case ECommand::Help:
        streams.out << GetHelp() << std::flush;
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

int Fail(const SOptions& options, const std::string& strMessage, const SStreams& streams)
{
    const std::string strName = options.strInput == "-" ? "standard input" : options.strInput;
    streams.err << "quiver-fi: " << strName << ": " << strMessage << '\n';
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
        streams.err << "quiver-fi: " << error.strMessage << "; --help tells more\n";
        return 2;
    }
    catch (const CFileError& ex)
    {
        streams.err << "quiver-fi: " << ex.what() << '\n';
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
