#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/platform/Platform.h"
#include "quiver/output/TextStream.h"

#include <cstdint>
#include <string>

namespace QvXmlLib9
{

/// A text stream that goes to a file as it arises: each flush hands a piece of text to the system, in the stream's byte
/// form, and returns while it is still being written. At most one write is under way.
///
///     CFileTextStream stream(L"order.xml", Encoding_UTF8);
///     CXmlTextWriter writer(&stream);
///     writer.Open();
///     ...write a document...
///     writer.Close();
///
/// A stream that is destroyed without Close leaves a file that ends with the last flush.
class CFileTextStream : public CTextStream
{
public:
    /// @param strFileName the file to write.
    /// @param eEncoding byte form of the text. For the two UTF-16 encodings the file begins with the byte order mark
    ///        FF FE. Encoding_None has no byte form: flushing throws what GetBinaryData throws.
    CFileTextStream(std::wstring strFileName, XmlEncoding eEncoding);
    ~CFileTextStream() override;

    /// Creates the file, or empties the one that is there, and begins to write the mark.
    /// @throws CQvException "Failed to write data to the file [%s] error [0x%08X]" or "Failed to create event for file
    ///         overlap [%s] error [0x%08X]", with the name and the platform's error number.
    void Open() override;

    /// Flushes, waits for the last write and closes the file.
    /// @throws CQvException "Failed to write data to the file. Error [0x%08X]". The file is closed and keeps what had
    ///         been written.
    void Close() override;

    /// Waits for the previous write and begins to write what is buffered, if anything is.
    /// @throws CQvException as Close does.
    void Flush() override;

private:
    bool BeginWrite(std::string_view bytes);
    void WaitForWrite();
    bool CloseHandles();
    [[noreturn]] void Throw_WriteFailed();

    std::wstring m_strFileName;
    /// The bytes of the write under way.
    CBinaryData m_data;
    Platform::Overlapped m_overlapped;
    Platform::Handle m_hEvent = nullptr;
    /// Where the next write goes.
    std::uint64_t m_nFilePos = 0;
    Platform::Handle m_hFile = nullptr;
};

} // namespace QvXmlLib9
