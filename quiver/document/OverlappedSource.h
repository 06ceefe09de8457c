#pragma once

#include "quiver/document/SourceFile.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace QvXmlLib9
{

/// A document's file as a sequence of chunks, of which the next is read while the present one is in use:
///
///     COverlappedSource source(lpctFileName);
///     for (; !source.IsLast(); source.Advance())
///     {
///         source.ReadAhead();
///         Use(source.GetChunk());
///     }
///     Use(source.GetChunk());
///
/// The last chunk is shorter than the others and may be empty. Two chunks are in memory at the most.
class COverlappedSource
{
public:
    /// Length of a chunk in bytes.
    static constexpr std::uint32_t s_dwChunkSize = 0x20000;

    /// Reads the first chunk.
    /// @throws CQvException "Failed to open the file [%s] Error [0x%08x]" and its like with the platform's error
    ///         number.
    explicit COverlappedSource(const wchar_t* lpctFileName);
    ~COverlappedSource() { Close(); }
    COverlappedSource(const COverlappedSource&) = delete;
    COverlappedSource& operator=(const COverlappedSource&) = delete;

    /// The present chunk. It holds until Advance.
    std::string_view GetChunk() const { return {reinterpret_cast<const char*>(m_pbyData.get()), m_dwDataLen}; }
    bool IsLast() const { return m_dwDataLen < s_dwChunkSize; }

    /// Begins to read the next chunk.
    /// @throws CQvException "Failed to read the contents of the file. Error [0x%08x]".
    void ReadAhead();

    /// Waits for the chunk that ReadAhead has begun to read, and makes it the present one.
    /// @throws CQvException "Failed to read the contents of the file. Error [0x%08x]".
    void Advance();

    /// Closes the file, which ends a read that is still under way.
    void Close();

private:
    bool ReadChunkFromFile(unsigned char* pBuffer);
    bool FinishChunk(bool bWait, std::uint32_t& dwRead);
    void TakeChunk(std::uint32_t dwRead);

    // Closing the file ends a read that is still under way, so the buffers go last.
    std::unique_ptr<unsigned char[]> m_pbyData;
    std::unique_ptr<unsigned char[]> m_pbySpare;
    std::uint32_t m_dwDataLen = 0;
    /// Whether the read that ReadAhead has begun was already found to be at the end of the file.
    bool m_bChunkEof = false;
    Platform::Overlapped m_overlapped;
    std::uint64_t m_nFileOffset = 0;
    CSourceFile m_file;
    CSourceHandle m_event;
};

} // namespace QvXmlLib9
