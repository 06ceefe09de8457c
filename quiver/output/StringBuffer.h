#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <cstddef>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// Text that grows at its end, held as a list of blocks: an append never moves what is already there. The blocks are
/// joined once, when somebody asks for the text as one piece.
///
///     CStringBuffer buffer;
///     buffer.Append(L"a=");
///     buffer.Append(L'1');
///     buffer.GetData(); // L"a=1"
///
/// The buffer holds UTF-16 code units only: a whole code point above 0xFFFF is stored as its surrogate pair. An object
/// is used by one thread at a time.
class QVXMLLIB_API CStringBuffer : public CInstanceMonitor
{
public:
    /// An empty buffer with blocks of 4095 units.
    CStringBuffer();

    /// An empty buffer with blocks of `nBlockSize` - 1 units, at least 1.
    explicit CStringBuffer(unsigned long nBlockSize);

    CStringBuffer(const CStringBuffer&) = delete;
    CStringBuffer& operator=(const CStringBuffer&) = delete;
    ~CStringBuffer() override;

    /// Code units in the whole buffer.
    std::size_t GetLength() const { return m_nEarlierBlocks + GetLastBlockDataIn(); }

    /// All the text, zero-terminated; an empty text for an empty buffer, never null. Joins the blocks if there are
    /// several. The pointer is valid until the next change.
    const wchar_t* GetData();

    /// All the text as a string of its own. Costs one copy, where `GetData` would join the blocks first.
    std::wstring GetString() const;

    /// The text block by block, in order, without joining anything: `visit(std::wstring_view)`. A surrogate pair may
    /// lie across the border of two blocks.
    template <class TVisitor>
    void ForEachBlock(TVisitor&& visit) const
    {
        for (std::size_t n = 0; n < m_blocks.size(); ++n)
        {
            const bool bLast = n + 1 == m_blocks.size();
            visit(std::wstring_view(m_blocks[n].pUnits.get(), bLast ? GetLastBlockDataIn() : m_blocks[n].nSize));
        }
    }

    /// Replaces the text.
    void Set(std::wstring_view strText);

    /// Appends all of `strText`, units of value 0 included.
    void Append(std::wstring_view strText);

    /// Appends one unit, or the two of a code point above 0xFFFF.
    void Append(wchar_t c);

    /// Appends text of which the caller knows that it holds nothing above 0xFFFF.
    void AppendUnits(std::wstring_view strUnits)
    {
        if (strUnits.size() <= static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            // A tag's parts are mostly a few units long, too short for a call to pay off.
            const wchar_t* pFrom = strUnits.data();
            if (strUnits.size() > 16)
            {
                std::wmemcpy(m_pNext, pFrom, strUnits.size());
                m_pNext += strUnits.size();
            }
            else
            {
                for (const wchar_t* const pFromEnd = pFrom + strUnits.size(); pFrom != pFromEnd;)
                    *m_pNext++ = *pFrom++;
            }
        }
        else
        {
            AppendOverBlocks(strUnits);
        }
    }

    /// Appends one unit of which the caller knows that it is not above 0xFFFF.
    void AppendUnit(wchar_t c)
    {
        if (m_pNext == m_pEnd)
            AddBlock();
        *m_pNext++ = c;
    }

    /// Frees all blocks.
    void Clear();

    /// Empties the buffer and keeps its block for the next text if there is just one.
    void Reset();

private:
    struct SBlock
    {
        std::unique_ptr<wchar_t[]> pUnits;
        std::size_t nSize = 0;
    };

    std::size_t GetLastBlockDataIn() const { return static_cast<std::size_t>(m_pNext - m_pBegin); }
    void AddBlock();
    void JoinBlocks();
    void AppendOverBlocks(std::wstring_view strUnits);

    std::vector<SBlock> m_blocks;
    const std::size_t m_nBlockSize;
    /// First unit, next free unit and end of the last block; all null without a block. A block has room for a
    /// terminator behind its end.
    wchar_t* m_pBegin = nullptr;
    wchar_t* m_pNext = nullptr;
    wchar_t* m_pEnd = nullptr;
    /// Units in all blocks but the last.
    std::size_t m_nEarlierBlocks = 0;
};

} // namespace QvXmlLib9
