#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/output/ShortUnits.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
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
/// The buffer holds UTF-16 code units only: a whole code point above 0xFFFF is stored as its surrogate pair. Blocks
/// that are full are kept in one or two bytes a unit, or as UTF-8, so that a large document takes no more memory than its bytes
/// will. An object is used by one thread at a time.
class CStringBuffer : public CInstanceMonitor
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
    std::size_t GetLength() const { return m_nPackedUnits + GetLastBlockDataIn(); }

    /// All the text, zero-terminated; an empty text for an empty buffer, never null. Joins the blocks if there are
    /// several. The pointer is valid until the next change.
    const wchar_t* GetData();

    /// All the text as a string of its own. Costs one copy, where `GetData` would join the blocks first.
    std::wstring GetString() const;

    /// A piece of the text, in the form that the buffer holds it in.
    struct SPiece
    {
        enum EForm
        {
            /// ASCII: the same as UTF-8, and one byte a unit.
            Form_Ascii,
            /// Well-formed UTF-8 that begins and ends between two characters.
            Form_Utf8,
            /// The units.
            Form_Units
        };
        EForm eForm;
        /// What the first two forms have.
        std::string_view svBytes;
        std::wstring_view svUnits;
    };

    /// The text piece by piece, in order, without joining anything: `visit(const SPiece&)`; the views are good during
    /// the call. A surrogate pair may lie across the border of two pieces of units.
    template <class TVisitor>
    void ForEachPiece(TVisitor&& visit) const
    {
        std::wstring strWide;
        for (const SPackedBlock& block : m_packed)
        {
            const std::string_view svBytes(reinterpret_cast<const char*>(block.pBytes.get()), block.nBytes);
            if (block.eForm == SPiece::Form_Units)
                visit(SPiece{block.eForm, {}, Unpack(block, strWide)});
            else
                visit(SPiece{block.eForm, svBytes, {}});
        }
        if (GetLastBlockDataIn() != 0)
            visit(SPiece{SPiece::Form_Units, {}, std::wstring_view(m_pLastBlock.get(), GetLastBlockDataIn())});
    }

    /// Keeps full blocks as UTF-8 from now on: for a text that will be asked for in that form.
    void PackAsUtf8() { m_bUtf8 = true; }

    // The text that the operations below are given may be the buffer's own, as `GetData` hands it out.

    /// Replaces the text.
    void Set(std::wstring_view svText);
    /// Replaces the text by a zero-terminated one; null is an empty text.
    void Set(const wchar_t* lpctText) { Set(ViewOf(lpctText)); }

    /// Appends all of `svText`, units of value 0 included.
    void Append(std::wstring_view svText);
    /// Appends a zero-terminated text; null is an empty text.
    void Append(const wchar_t* lpctText) { Append(ViewOf(lpctText)); }

    /// Appends one unit, or the two of a code point above 0xFFFF.
    void Append(wchar_t c);

    /// Appends text of which the caller knows that it holds nothing above 0xFFFF.
    void AppendUnits(std::wstring_view svUnits)
    {
        if (svUnits.size() <= static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            // A tag's parts are mostly a few units long, too short for a call to pay off.
            const wchar_t* pFrom = svUnits.data();
            if (svUnits.size() > 16)
            {
                std::wmemcpy(m_pNext, pFrom, svUnits.size());
                m_pNext += svUnits.size();
            }
            else
            {
                for (const wchar_t* const pFromEnd = pFrom + svUnits.size(); pFrom != pFromEnd;)
                    *m_pNext++ = *pFrom++;
            }
        }
        else
        {
            AppendOverBlocks(svUnits);
        }
    }

    /// The same for a text that is appended often.
    void AppendShort(const CShortUnits& units)
    {
        // Always a whole array, which takes a few instructions.
        if (units.IsShort() && CShortUnits::s_nRoom <= static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            std::memcpy(m_pNext, units.GetRoom(), sizeof(wchar_t) * CShortUnits::s_nRoom);
            m_pNext += units.GetLength();
        }
        else
        {
            AppendUnits(units.Get());
        }
    }

    /// Appends the units that a text begins with, as far as a function copies them; none that it does is above 0xFFFF.
    /// @param fnCopy what CopyPlainUnits is.
    /// @return how many they are.
    template <class TCopy>
    std::size_t AppendBy(std::wstring_view svUnits, TCopy fnCopy)
    {
        std::size_t nAppended = 0;
        for (;;)
        {
            const std::size_t nFits = std::min(svUnits.size(), static_cast<std::size_t>(m_pEnd - m_pNext));
            const std::size_t n = fnCopy(svUnits.data(), nFits, m_pNext);
            m_pNext += n;
            nAppended += n;
            svUnits.remove_prefix(n);
            if (n != nFits || svUnits.empty())
                return nAppended;
            AddBlock();
        }
    }

    /// Appends a unit several times.
    void AppendRun(wchar_t c, std::size_t nCount)
    {
        constexpr std::size_t nRoom = CShortUnits::s_nRoom;
        if (nCount <= nRoom && nRoom <= static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            std::fill_n(m_pNext, nRoom, c);
            m_pNext += nCount;
            return;
        }
        for (; nCount != 0; --nCount)
            AppendUnit(c);
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

    /// Empties the buffer and keeps the memory of a block for the next text.
    void Reset();

private:
    /// A block that is full.
    struct SPackedBlock
    {
        std::unique_ptr<unsigned char[]> pBytes;
        std::size_t nBytes;
        std::size_t nUnits;
        SPiece::EForm eForm;
    };

    static std::wstring_view ViewOf(const wchar_t* lpctText)
    {
        return lpctText != nullptr ? std::wstring_view(lpctText) : std::wstring_view();
    }
    /// Whether a text lies in the last block, where `GetData` puts all of them.
    bool IsOwn(std::wstring_view svText) const;
    std::size_t GetLastBlockDataIn() const { return static_cast<std::size_t>(m_pNext - m_pLastBlock.get()); }
    void AddBlock();
    void AppendOverBlocks(std::wstring_view svUnits);
    void JoinBlocks();
    bool PackLastBlock();
    bool PackAscii(SPackedBlock& block) const;
    bool PackUtf8(SPackedBlock& block) const;
    void PackUnits(SPackedBlock& block) const;
    static void Unpack(const SPackedBlock& block, wchar_t* pOut);
    static std::wstring_view Unpack(const SPackedBlock& block, std::wstring& strWide);

    const std::size_t m_nBlockSize;
    std::vector<SPackedBlock> m_packed;
    /// Units in all packed blocks.
    std::size_t m_nPackedUnits = 0;
    bool m_bUtf8 = false;
    /// The block that takes the next unit, null as long as the buffer has none. It has room for a terminator behind its
    /// end.
    std::unique_ptr<wchar_t[]> m_pLastBlock;
    /// Next free unit and end of the last block.
    wchar_t* m_pNext = nullptr;
    wchar_t* m_pEnd = nullptr;
};

} // namespace QvXmlLib9
