#pragma once

#include "quiver/foundation/Export.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// @file
/// The library's one byte buffer, the value of `hexBinary` and `base64Binary` properties and the result of the stream
/// entry points, and the Base64 codec for it.
///
///     QvXmlLib9::CBinaryData data;
///     data.SetAsHexString(L"0aFF");
///     data.Append(L'A');                                   // two bytes, 41 00
///     std::wstring strBase64 = data.GetAsBase64();         // "Cv9BAA=="

namespace QvXmlLib9
{

/// @throws CQvException "Binary data cannot hold more than 4294967295 bytes" for a length past that.
void Throw_IfBinaryDataIsTooLong(std::uint64_t nLength);

/// The shared block behind handles of CBinaryData. Internal: only CBinaryData makes and changes blocks.
class CBinaryDataRep
{
public:
    /// @param pData bytes; an array allocation if the block is to own it.
    /// @param dwLen how many of them.
    /// @param bTakeOwnership whether the block takes the array over, or copies the bytes.
    CBinaryDataRep(unsigned char* pData, std::uint32_t dwLen, bool bTakeOwnership);
    ~CBinaryDataRep();
    CBinaryDataRep(const CBinaryDataRep&) = delete;
    CBinaryDataRep& operator=(const CBinaryDataRep&) = delete;

    unsigned char* GetData() const;
    std::uint32_t GetLength() const;
    /// The length, without the assertion that there are bytes.
    std::uint32_t GetLengthOrZero() const { return m_dwLen; }

    void AddRef() { m_refCount.fetch_add(1, std::memory_order_relaxed); }
    /// Drops a reference, and destroys block and bytes with the last one.
    void Release();
    /// Drops the only reference and destroys the block, but not its bytes, which pass to the caller.
    unsigned char* ReleaseData();

    bool IsShared() const { return m_refCount.load(std::memory_order_acquire) >= 2; }
    /// Adds bytes behind those in use; they may lie inside this block.
    void Append(const unsigned char* pData, std::uint32_t dwLen);
    /// Room for `dwLen` more bytes behind those in use, which count as used from now on.
    /// @param pOld receives the array that had to make way, since what is to be written may lie in it.
    unsigned char* Extend(std::uint32_t dwLen, std::unique_ptr<unsigned char[]>& pOld);
    /// Adds a byte if that takes no more than a store.
    bool TryAppend(unsigned char by)
    {
        if (IsShared() || m_dwLen >= m_dwAllocated)
            return false;
        m_lpData[m_dwLen++] = by;
        return true;
    }
    /// Adds bytes if they fit into the array; they may lie inside it.
    bool TryAppend(const unsigned char* pData, unsigned long ulLength)
    {
        if (IsShared() || ulLength > m_dwAllocated - m_dwLen)
            return false;
        std::copy_n(pData, ulLength, m_lpData + m_dwLen);
        m_dwLen += static_cast<std::uint32_t>(ulLength);
        return true;
    }
    /// The byte behind those in use, which is made to lie inside the array.
    unsigned char& GetByteBehind();

private:
    void Throw_IfShared() const;
    std::unique_ptr<unsigned char[]> Reserve(std::uint32_t dwMore);

    unsigned char* m_lpData;
    std::uint32_t m_dwLen;
    std::uint32_t m_dwAllocated;
    std::atomic<std::int32_t> m_refCount;
};

/// A small handle on a shared block of bytes, passed by value at the cost of a counter. A handle that is about to
/// change its bytes makes them its own first, so handles are independent of each other.
///
/// A handle is either empty or holds a block; a block may have the length 0, which is not the same: it is unequal to an
/// empty handle, and asking for its length stops diagnostic builds.
///
/// Lengths have 32 bits. An operation that would pass 4294967295 bytes throws CQvException "Binary data cannot hold
/// more than 4294967295 bytes" and changes nothing.
///
/// One handle is used by one thread at a time; handles in different threads may share a block.
class QVXMLLIB_API CBinaryData
{
public:
    /// Empty.
    CBinaryData();
    /// Shares the block.
    CBinaryData(const CBinaryData& source);
    /// Takes the block over; `source` becomes empty.
    CBinaryData(CBinaryData&& source) noexcept;
    /// A new block.
    /// @param pData the bytes.
    /// @param ulLength how many of them.
    /// @param bTakeOwnership true: the block owns `pData`, which came from `new unsigned char[]` and is freed as such.
    ///        False: the bytes are copied.
    CBinaryData(unsigned char* const pData, unsigned long ulLength, bool bTakeOwnership);
    /// A new block of the UTF-16 units of a zero-terminated text, two bytes each in little-endian order, without
    /// terminator. An element above 0xFFFF counts as its surrogate pair.
    CBinaryData(const wchar_t* lpctText);
    virtual ~CBinaryData();

    /// Lets go of the own block, then shares the other. There is no test for assignment to itself: `a = a` leaves `a`
    /// empty (docs/compatibility.md: Assignment to itself).
    CBinaryData& operator=(const CBinaryData& source);
    CBinaryData& operator=(CBinaryData&& source) noexcept;

    /// Two empty handles are equal, an empty one and one with a block are not, otherwise the bytes decide.
    bool operator==(const CBinaryData& other) const;
    bool operator!=(const CBinaryData& other) const;

    /// One byte. The bound is one behind the end: an index equal to the length gives a byte of no meaning
    /// (docs/compatibility.md: Index behind the end).
    /// @throws CQvException "Index Out of range [%d]" for an index above the length, and for any on an empty handle.
    const unsigned char& operator[](unsigned long ulIndex) const;
    /// The same for writing; makes the block private first. The reference is good until the next change, and is not to
    /// be written through once the handle has been copied.
    unsigned char& operator[](unsigned long ulIndex);

    /// The bytes, or null for an empty handle; good until the next change of any kind. The block may be shared, so do
    /// not write through this.
    unsigned char* GetData() const;
    /// The count of bytes; 0 for an empty handle.
    unsigned long GetLength() const;
    /// Whether there are no bytes. Unlike GetLength this may be asked of a block of length 0 in every build.
    bool IsEmpty() const { return m_pRep == nullptr || m_pRep->GetLengthOrZero() == 0; }
    /// The bytes as a view, empty for none; good until the next change. Unlike the length, this may be asked of a block
    /// of length 0.
    std::string_view GetView() const;
    /// Hands the bytes to the caller, who frees them with `delete[]`; the handle becomes empty. If the block is shared,
    /// the caller gets a copy. Ask for the length first. Null for an empty handle.
    unsigned char* ReleaseData();

    // What the operations below append or set may be bytes of the handle itself.

    /// Adds bytes; on an empty handle this makes a new block, even of no bytes.
    void Append(const unsigned char* pData, unsigned long ulLength);
    /// Adds one byte.
    void Append(unsigned char by)
    {
        if (m_pRep == nullptr || !m_pRep->TryAppend(by))
            Append(&by, 1);
    }
    /// Adds the two bytes of a UTF-16 unit in little-endian order; an element above 0xFFFF adds its surrogate pair.
    void Append(wchar_t c);
    /// Adds the UTF-16 units of a zero-terminated text, without terminator.
    void Append(const wchar_t* lpctText);
    /// Adds all UTF-16 units of a text.
    void Append(const std::wstring& strText);
    /// Adds the other's bytes.
    void Append(const CBinaryData& other);

    /// A new block with a copy of the bytes.
    void SetBuffer(const unsigned char* pData, unsigned long ulLength);
    /// A new block of the UTF-16 units of a zero-terminated text, without terminator.
    void SetBuffer(const wchar_t* lpctText);
    /// Makes the handle empty.
    void Clear();

    /// The bytes as Base64 (RFC 4648, 4): one line, padded. Empty for no bytes.
    std::wstring GetAsBase64() const;
    /// Replaces the bytes by those that a Base64 text stands for. Blank, tab, line feed, carriage return and "=" are
    /// skipped anywhere, left-over bits are dropped. Any other character makes the result a block of length 0; there is
    /// no exception.
    void SetAsBase64(const wchar_t* lpctText);
    /// The bytes as upper-case hexadecimal digits. Empty for no bytes.
    std::wstring GetAsHexString() const;
    /// Replaces the bytes by those that pairs of hexadecimal digits stand for, in either case.
    /// @throws CQvException "Invalid char in hex string [%c]" at the first other character, blanks included; for an odd
    ///         count of digits that is the terminating zero. The handle is empty then.
    void SetAsHexString(const wchar_t* lpctText);

protected:
    /// Upper-case hexadecimal digits of bytes; empty for null.
    static std::wstring GetAsHexString(const unsigned char* pData, unsigned long ulLength);
    /// Bytes of a hexadecimal text, see SetAsHexString.
    /// @param ppData receives an array that the caller frees with `delete[]`; left alone on failure.
    /// @return the count of bytes.
    static unsigned long ConvertToHexData(const wchar_t* lpctText, unsigned char** ppData);

private:
    void Throw_IfOutOfRange(unsigned long ulIndex) const;
    struct SReleaseRep
    {
        void operator()(CBinaryDataRep* pRep) const { pRep->Release(); }
    };
    using CHeldRep = std::unique_ptr<CBinaryDataRep, SReleaseRep>;

    CHeldRep MakePrivate();
    void AppendUnits(std::wstring_view text);

    CBinaryDataRep* m_pRep = nullptr;
};

/// Base64 codec (RFC 4648, 4); a scratch object for one call.
class CBase64
{
public:
    CBase64();
    virtual ~CBase64();

    /// Base64 text of bytes: one line, padded.
    /// @param lpEncoding the bytes; null gives an empty text.
    /// @param nLength their count.
    std::wstring Encode(const unsigned char* lpEncoding, unsigned long nLength);

    /// Bytes of a Base64 text, as CBinaryData::SetAsBase64 reads it.
    /// @param szDecoding the zero-terminated text. Only the low 7 bits of a character count.
    /// @param lpOutput room for as many bytes as the text has UTF-16 units, and one more; all of it is cleared first.
    /// @return the count of bytes; 0 for a null argument, for an empty text and for a text with a bad character.
    unsigned long Decode(const wchar_t* szDecoding, unsigned char* lpOutput);
};

} // namespace QvXmlLib9
