#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// UTF-16 units that are appended many times. Up to sixteen of them stand in an array of that length, so that they can
/// be copied without a loop: see CStringBuffer::AppendShort.
class CShortUnits
{
public:
    static constexpr std::size_t s_nRoom = 16;

    CShortUnits() = default;
    explicit CShortUnits(std::wstring_view svUnits) { Assign(svUnits); }

    void Assign(std::wstring_view svUnits) { Assign({svUnits}); }

    /// Several texts, one behind the other. None of them may be this one's.
    void Assign(std::initializer_list<std::wstring_view> parts)
    {
        m_nLength = 0;
        for (const std::wstring_view svPart : parts)
            m_nLength += svPart.size();
        if (IsShort())
        {
            wchar_t* pOut = m_units.data();
            for (const std::wstring_view svPart : parts)
                pOut = std::copy(svPart.begin(), svPart.end(), pOut);
            return;
        }
        m_strLong.clear();
        m_strLong.reserve(m_nLength);
        for (const std::wstring_view svPart : parts)
            m_strLong += svPart;
    }

    bool IsShort() const { return m_nLength <= s_nRoom; }
    /// The array, of which the first GetLength() units are the text if it is short.
    const wchar_t* GetRoom() const { return m_units.data(); }
    std::size_t GetLength() const { return m_nLength; }

    std::wstring_view Get() const { return IsShort() ? std::wstring_view(m_units.data(), m_nLength) : m_strLong; }

private:
    std::array<wchar_t, s_nRoom> m_units{};
    std::size_t m_nLength = 0;
    std::wstring m_strLong;
};

} // namespace QvXmlLib9
