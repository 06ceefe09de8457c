#pragma once

#include "quiver/foundation/XmlSerializationTypes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quiver_fi
{

/// What the program is asked to do.
enum class ECommand
{
    Help,
    Version,
    Encode,
    Decode,
    Inspect
};

/// The command line. File names are as given; "-" stands for standard input or output.
struct SOptions
{
    ECommand eCommand = ECommand::Help;
    std::string strInput;
    std::string strOutput;

    // encode
    QvXmlLib9::FInfoDecl eDeclaration = QvXmlLib9::FInfoDecl_None;
    std::uint32_t dwAttributeMaxAddLength = 6;
    std::uint32_t dwElementMaxAddLength = 6;
    bool bSuggestedValues = false;

    // encode and decode
    QvXmlLib9::CompressionType eCompression = QvXmlLib9::Compression_None;

    // decode
    QvXmlLib9::XmlEncoding eEncoding = QvXmlLib9::Encoding_UTF8;
    QvXmlLib9::EOLType eEOLType = QvXmlLib9::EOLType_LF;
    bool bFormat = true;
    bool bXmlDeclaration = true;

    // inspect
    bool bWholeValues = false;
};

/// Reads a command line.
/// @param arguments without the program's name.
/// @throws CUsageError in one line that tells what is wrong.
SOptions ParseOptions(const std::vector<std::string>& arguments);

/// A command line that cannot be carried out.
struct CUsageError
{
    std::string strMessage;
};

/// What --help prints.
std::string GetHelp();

/// What --version prints.
std::string GetVersion();

} // namespace quiver_fi
