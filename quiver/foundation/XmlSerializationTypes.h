#pragma once

/// @file
/// The small enumerations that the conversion entry points take. Their numbers are a contract with generated code and
/// with callers.

namespace QvXmlLib9
{

/// Byte form of XML text.
enum XmlEncoding : int
{
    /// Text in memory only; it has no byte form, and the XML declaration names no encoding.
    Encoding_None = 0,
    /// UTF-8, named in the XML declaration; files carry no byte order mark.
    Encoding_UTF8 = 1,
    /// UTF-16 little-endian, named in the XML declaration; files begin with the mark FF FE.
    Encoding_UTF16 = 2,
    /// As Encoding_UTF16, but not named in the XML declaration.
    Encoding_UTF16_Undeclared = 3
};

/// Line ending of XML text.
enum EOLType : int
{
    EOLType_CRLF = 0,
    EOLType_LF = 1
};

/// Kind of the schema that the generated classes came from. Any value other than 2 acts as 0.
enum SchemaType : int
{
    /// Documents are parsed with namespace processing.
    SchemaType_Namespaced = 0,
    /// Documents are parsed without namespace processing, and names are compared by local name alone.
    SchemaType_NoNamespaces = 2
};

/// Compression of what a conversion produces.
enum CompressionType : int
{
    Compression_None = 0,
    /// gzip (RFC 1952), for streams and files.
    Compression_GZip = 1,
    /// zlib (RFC 1950), for streams only.
    Compression_ZLib = 2
};

/// The XML declaration that a Fast Infoset document begins with (X.891, 12.3).
enum FInfoDecl : int
{
    FInfoDecl_None = 0,
    FInfoDecl_Plain = 1,
    FInfoDecl_StandaloneYes = 2,
    FInfoDecl_StandaloneNo = 3,
    FInfoDecl_V10 = 4,
    FInfoDecl_V10_StandaloneYes = 5,
    FInfoDecl_V10_StandaloneNo = 6,
    FInfoDecl_V11 = 7,
    FInfoDecl_V11_StandaloneYes = 8,
    FInfoDecl_V11_StandaloneNo = 9
};

} // namespace QvXmlLib9
