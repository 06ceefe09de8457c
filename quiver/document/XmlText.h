#pragma once

#include "quiver/document/TreeMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// Character data of one node. It stays in the parser's UTF-8 until somebody asks for it as text of the library, and
/// is both from then on. Much of a document's text is never asked for, and this form takes a small part of the memory.
///
/// The bytes stand right behind the object, in the arena that it comes from.
class CXmlText
{
public:
    /// @param nCapacity bytes behind the object.
    explicit CXmlText(std::uint32_t nCapacity)
        : m_nCapacity(nCapacity)
    {
    }

    /// Text that never was UTF-8.
    explicit CXmlText(std::wstring strText);

    ~CXmlText();
    CXmlText(const CXmlText&) = delete;
    CXmlText& operator=(const CXmlText&) = delete;

    /// The data as text. The reference holds as long as the object; any number of threads may ask at the same time.
    const std::wstring& Get() const
    {
        const std::wstring* const pstrText = m_pstrText.load(std::memory_order_acquire);
        return pstrText != nullptr ? *pstrText : Convert();
    }

    /// The same for a caller who asks only once: `strBuffer` takes the text, unless it is there already, and nothing
    /// is kept. The result is one or the other.
    const std::wstring& Get(std::wstring& strBuffer) const;

    /// The data in UTF-8, which lives as long as the object.
    /// @return false if they are text of the library by now, or always were.
    bool GetUtf8(std::string_view& svUtf8) const
    {
        if (m_pstrText.load(std::memory_order_acquire) != nullptr)
            return false;
        svUtf8 = std::string_view(GetBytes(), m_nLength);
        return true;
    }

    /// Gives the text up on behalf of a node: a text that many nodes share lives on.
    void Release() noexcept
    {
        if (!IsShared())
            this->~CXmlText();
    }

    bool IsEmpty() const;

    /// Whether there is nothing but white space, told without a conversion.
    bool IsWhiteSpace() const;

    /// An empty text, for nodes without any; it lives as long as the process.
    static const std::wstring& GetEmpty();

private:
    friend class CXmlTextArena;

    /// In place of the capacity, for a text that nothing may be appended to.
    static constexpr std::uint32_t s_nShared = 0xFFFFFFFF;

    bool IsShared() const { return m_nCapacity == s_nShared; }
    std::wstring& Convert() const;
    char* GetBytes() const { return const_cast<char*>(reinterpret_cast<const char*>(this + 1)); }

    mutable std::atomic<std::wstring*> m_pstrText{nullptr};
    std::uint32_t m_nLength = 0;
    std::uint32_t m_nCapacity;
};

/// Memory for the texts of one tree. Nothing is freed piece by piece, but all that was added since a mark can be given
/// up at once.
///
/// A text can be made one that many nodes share. A node that appends to it gets a copy of its own.
class CXmlTextArena
{
public:
    struct SMark
    {
        std::size_t nBlocks;
        char* pNext;
    };

    /// @param memory outlives the texts.
    explicit CXmlTextArena(CTreeMemory& memory)
        : m_memory(memory)
    {
    }
    CXmlTextArena(const CXmlTextArena&) = delete;
    CXmlTextArena& operator=(const CXmlTextArena&) = delete;

    /// Appends to a text, which may be null at first. What the text was before must not be used any more.
    void Append(CXmlText*& pText, std::string_view utf8Text);
    void Append(CXmlText*& pText, std::wstring_view text);

    /// Makes a text of this arena one that nodes share. Whoever calls this destroys it in the end.
    static void Share(CXmlText& text) { text.m_nCapacity = CXmlText::s_nShared; }

    SMark GetMark() const { return {m_blocks.size(), m_pNext}; }

    /// Destroys the texts that were stored as strings, which have memory of their own. All of them must still be there.
    void DestroyStrings() noexcept;

    /// Gives up the memory of all that was added since the mark. No node may refer to such a text any more.
    void Rewind(const SMark& mark) noexcept;

private:
    struct SBlock
    {
        CTreeMemory::CBlock pData;
        std::size_t nSize;
    };

    static char* GetStart(const SBlock& block) { return reinterpret_cast<char*>(block.pData.get()); }

    CXmlText* NewText(std::size_t nCapacity);
    char* Allocate(std::size_t nSize);
    std::wstring& GetForAppending(CXmlText*& pText);
    void Grow(CXmlText*& pText, std::size_t nLength);
    CXmlText* Copy(const CXmlText& text);

    CTreeMemory& m_memory;
    std::vector<SBlock> m_blocks;
    /// Texts that were stored as strings.
    std::vector<CXmlText*> m_strings;
    char* m_pNext = nullptr;
    char* m_pEnd = nullptr;
};

} // namespace QvXmlLib9
