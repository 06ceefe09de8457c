#include "quiver/foundation/BinaryData.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <memory>
#include <utility>

namespace QvXmlLib9
{

namespace
{

using ByteArray = std::unique_ptr<unsigned char[]>;

constexpr std::uint64_t s_nMaxLength = 0xFFFFFFFF;

/// Capacity of a block that is to hold `nLength` bytes and to grow further. Appending byte by byte stays cheap through
/// the doubling; very large blocks grow by a quarter, so that they do not claim twice the memory they need.
std::uint32_t GetCapacityFor(std::uint64_t nLength)
{
    constexpr std::uint64_t nLeast = 8192;
    constexpr std::uint64_t nLarge = 256 * 1024 * 1024;
    const std::uint64_t nWanted = nLength <= nLarge ? nLength * 2 : nLength + nLength / 4;
    return static_cast<std::uint32_t>(std::clamp(nWanted, nLeast, s_nMaxLength));
}

void CopyBytes(unsigned char* pTo, const unsigned char* pFrom, std::size_t nLength)
{
    if (nLength != 0)
        std::memcpy(pTo, pFrom, nLength);
}

std::wstring_view ViewOf(const wchar_t* lpctText)
{
    return lpctText != nullptr ? std::wstring_view(lpctText) : std::wstring_view();
}

/// The text itself if it holds UTF-16 units only, or else a copy in `strUnits` that does.
std::wstring_view UnitsOf(std::wstring_view text, std::wstring& strUnits)
{
    if (!HasWholeCodePoints(text))
        return text;
    strUnits = ToUtf16Units(text);
    return strUnits;
}

constexpr char s_szHexDigits[] = "0123456789ABCDEF";
constexpr char s_szBase64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::int8_t s_nSkip = -1;
constexpr std::int8_t s_nBad = -2;

/// Value of each hexadecimal digit; s_nBad for every other character.
constexpr std::array<std::int8_t, 128> MakeHexValues()
{
    std::array<std::int8_t, 128> values{};
    for (std::int8_t& n : values)
        n = s_nBad;
    for (int i = 0; i < 16; ++i)
    {
        const auto nDigit = static_cast<std::size_t>(s_szHexDigits[i]);
        values[nDigit] = static_cast<std::int8_t>(i);
        if (i >= 10)
            values[nDigit - 'A' + 'a'] = static_cast<std::int8_t>(i);
    }
    return values;
}

/// Value of each Base64 character, s_nSkip for what may stand anywhere, s_nBad for the rest.
constexpr std::array<std::int8_t, 128> MakeBase64Values()
{
    std::array<std::int8_t, 128> values{};
    for (std::int8_t& n : values)
        n = s_nBad;
    for (int i = 0; i < 64; ++i)
        values[static_cast<std::size_t>(s_szBase64[i])] = static_cast<std::int8_t>(i);
    for (const char c : {'=', ' ', '\t', '\r', '\n'})
        values[static_cast<std::size_t>(c)] = s_nSkip;
    return values;
}

constexpr std::array<std::int8_t, 128> s_hexValues = MakeHexValues();
constexpr std::array<std::int8_t, 128> s_base64Values = MakeBase64Values();

int GetHexValue(wchar_t c)
{
    const auto nIndex = static_cast<std::size_t>(c);
    return nIndex < s_hexValues.size() ? s_hexValues[nIndex] : s_nBad;
}

[[noreturn]] void Throw_InvalidHexChar(wchar_t c)
{
    // A whole code point counts as its surrogate pair, of which the first unit is met first.
    const wchar_t cUnit = ToUtf16Units(std::wstring_view(&c, 1)).front();
    throw CQvException(FormatString(L"Invalid char in hex string [%c]", static_cast<int>(cUnit)));
}

/// Only the low 7 bits count, so other characters pass for ASCII ones (docs/compatibility.md: Letters of Base64).
int GetBase64Value(wchar_t c)
{
    return s_base64Values[static_cast<std::size_t>(c) & 0x7F];
}

/// Decodes Base64 text into `pOut`, which has room for a byte per unit.
/// @return the count of bytes, 0 for text with a bad character.
std::size_t DecodeBase64(std::wstring_view text, unsigned char* pOut)
{
    const wchar_t* p = text.data();
    const wchar_t* const pEnd = p + text.size();
    unsigned char* pAt = pOut;
    std::uint32_t nBits = 0;
    std::uint32_t nHeld = 0;
    while (p != pEnd)
    {
        if (nHeld == 0 && pEnd - p >= 4)
        {
            const int n0 = GetBase64Value(p[0]);
            const int n1 = GetBase64Value(p[1]);
            const int n2 = GetBase64Value(p[2]);
            const int n3 = GetBase64Value(p[3]);
            if ((n0 | n1 | n2 | n3) >= 0)
            {
                *pAt++ = static_cast<unsigned char>(n0 << 2 | n1 >> 4);
                *pAt++ = static_cast<unsigned char>(n1 << 4 | n2 >> 2);
                *pAt++ = static_cast<unsigned char>(n2 << 6 | n3);
                p += 4;
                continue;
            }
        }
        const int nValue = GetBase64Value(*p++);
        if (nValue == s_nSkip)
            continue;
        if (nValue == s_nBad)
            return 0;
        nBits = nBits << 6 | static_cast<std::uint32_t>(nValue);
        nHeld += 6;
        if (nHeld > 7)
        {
            nHeld -= 8;
            *pAt++ = static_cast<unsigned char>(nBits >> nHeld);
        }
    }
    return static_cast<std::size_t>(pAt - pOut);
}

} // namespace

void Throw_IfBinaryDataIsTooLong(std::uint64_t nLength)
{
    if (nLength > s_nMaxLength)
        throw CQvException(L"Binary data cannot hold more than 4294967295 bytes");
}

// --- CBinaryDataRep -------------------------------------------------------------------------------------------------

CBinaryDataRep::CBinaryDataRep(unsigned char* pData, std::uint32_t dwLen, bool bTakeOwnership)
    : m_lpData(pData)
    , m_dwLen(dwLen)
    , m_dwAllocated(dwLen)
    , m_refCount(1)
{
    if (bTakeOwnership)
        return;
    m_dwAllocated = GetCapacityFor(dwLen);
    m_lpData = new unsigned char[m_dwAllocated];
    CopyBytes(m_lpData, pData, dwLen);
}

CBinaryDataRep::~CBinaryDataRep()
{
    delete[] m_lpData;
}

unsigned char* CBinaryDataRep::GetData() const
{
    QV_ASSERT_MSG(m_lpData != nullptr, "m_lpData != NULL");
    return m_lpData;
}

std::uint32_t CBinaryDataRep::GetLength() const
{
    QV_ASSERT(m_dwLen > 0);
    return m_dwLen;
}

void CBinaryDataRep::Release()
{
    if (m_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

unsigned char* CBinaryDataRep::ReleaseData()
{
    const std::int32_t nLeft = m_refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    QV_ASSERT_MSG(nLeft == 0, "m_refCount == 0");
    if (nLeft > 0)
        throw CQvException(FormatString(L"Failed to release data. [RefCount=%d]", nLeft));
    unsigned char* const pData = m_lpData;
    m_lpData = nullptr;
    delete this;
    return pData;
}

void CBinaryDataRep::Append(const unsigned char* pData, std::uint32_t dwLen)
{
    Throw_IfShared();
    const ByteArray pOld = Reserve(dwLen);
    CopyBytes(m_lpData + m_dwLen, pData, dwLen);
    m_dwLen += dwLen;
}

unsigned char* CBinaryDataRep::Extend(std::uint32_t dwLen, std::unique_ptr<unsigned char[]>& pOld)
{
    Throw_IfShared();
    pOld = Reserve(dwLen);
    unsigned char* const pRoom = m_lpData + m_dwLen;
    m_dwLen += dwLen;
    return pRoom;
}

unsigned char& CBinaryDataRep::GetByteBehind()
{
    Reserve(1);
    m_lpData[m_dwLen] = 0;
    return m_lpData[m_dwLen];
}

void CBinaryDataRep::Throw_IfShared() const
{
    const std::int32_t nCount = m_refCount.load(std::memory_order_acquire);
    QV_ASSERT_MSG(nCount == 1, "m_refCount == 1");
    if (nCount >= 2)
        throw CQvException(FormatString(L"Failed to append. [RefCount=%d]", nCount));
}

/// Makes room for more bytes. The array that this replaces is handed back alive, since the bytes to append may lie in
/// it.
std::unique_ptr<unsigned char[]> CBinaryDataRep::Reserve(std::uint32_t dwMore)
{
    const std::uint64_t nLength = std::uint64_t{m_dwLen} + dwMore;
    Throw_IfBinaryDataIsTooLong(nLength);
    if (nLength <= m_dwAllocated)
        return nullptr;
    const std::uint32_t dwAllocated = GetCapacityFor(nLength);
    ByteArray pGrown(new unsigned char[dwAllocated]);
    CopyBytes(pGrown.get(), m_lpData, m_dwLen);
    ByteArray pOld(m_lpData);
    m_lpData = pGrown.release();
    m_dwAllocated = dwAllocated;
    return pOld;
}

// --- CBinaryData ----------------------------------------------------------------------------------------------------

CBinaryData::CBinaryData() = default;

CBinaryData::CBinaryData(const CBinaryData& source)
    : m_pRep(source.m_pRep)
{
    if (m_pRep != nullptr)
        m_pRep->AddRef();
}

CBinaryData::CBinaryData(CBinaryData&& source) noexcept
    : m_pRep(source.m_pRep)
{
    source.m_pRep = nullptr;
}

CBinaryData::CBinaryData(unsigned char* const pData, unsigned long ulLength, bool bTakeOwnership)
{
    ByteArray pOwned(bTakeOwnership ? pData : nullptr);
    Throw_IfBinaryDataIsTooLong(ulLength);
    m_pRep = new CBinaryDataRep(pData, static_cast<std::uint32_t>(ulLength), bTakeOwnership);
    static_cast<void>(pOwned.release());
}

CBinaryData::CBinaryData(const wchar_t* lpctText)
    : CBinaryData()
{
    AppendUnits(ViewOf(lpctText));
}

CBinaryData::~CBinaryData()
{
    Clear();
}

CBinaryData& CBinaryData::operator=(const CBinaryData& source)
{
    Clear();
    m_pRep = source.m_pRep;
    if (m_pRep != nullptr)
        m_pRep->AddRef();
    return *this;
}

CBinaryData& CBinaryData::operator=(CBinaryData&& source) noexcept
{
    CBinaryDataRep* const pRep = source.m_pRep;
    source.m_pRep = nullptr;
    Clear();
    m_pRep = pRep;
    return *this;
}

bool CBinaryData::operator==(const CBinaryData& other) const
{
    if (m_pRep == other.m_pRep)
        return true;
    if (m_pRep == nullptr || other.m_pRep == nullptr)
        return false;
    const std::uint32_t dwLen = m_pRep->GetLengthOrZero();
    if (dwLen != other.m_pRep->GetLengthOrZero())
        return false;
    return dwLen == 0 || std::memcmp(m_pRep->GetData(), other.m_pRep->GetData(), dwLen) == 0;
}

bool CBinaryData::operator!=(const CBinaryData& other) const
{
    return !(*this == other);
}

const unsigned char& CBinaryData::operator[](unsigned long ulIndex) const
{
    static const unsigned char s_byBehind = 0;
    Throw_IfOutOfRange(ulIndex);
    return ulIndex < m_pRep->GetLengthOrZero() ? m_pRep->GetData()[ulIndex] : s_byBehind;
}

unsigned char& CBinaryData::operator[](unsigned long ulIndex)
{
    Throw_IfOutOfRange(ulIndex);
    MakePrivate();
    return ulIndex < m_pRep->GetLengthOrZero() ? m_pRep->GetData()[ulIndex] : m_pRep->GetByteBehind();
}

/// docs/compatibility.md: Index behind the end
void CBinaryData::Throw_IfOutOfRange(unsigned long ulIndex) const
{
    if (m_pRep == nullptr || ulIndex > m_pRep->GetLengthOrZero())
        throw CQvException(FormatString(L"Index Out of range [%d]", static_cast<std::int32_t>(ulIndex)));
}

unsigned char* CBinaryData::GetData() const
{
    return m_pRep != nullptr ? m_pRep->GetData() : nullptr;
}

unsigned long CBinaryData::GetLength() const
{
    return m_pRep != nullptr ? m_pRep->GetLength() : 0;
}

std::string_view CBinaryData::GetView() const
{
    if (m_pRep == nullptr || m_pRep->GetLengthOrZero() == 0)
        return std::string_view();
    return std::string_view(reinterpret_cast<const char*>(m_pRep->GetData()), m_pRep->GetLengthOrZero());
}

unsigned char* CBinaryData::ReleaseData()
{
    if (m_pRep == nullptr)
        return nullptr;
    MakePrivate();
    CBinaryDataRep* const pRep = m_pRep;
    m_pRep = nullptr;
    return pRep->ReleaseData();
}

void CBinaryData::Append(const unsigned char* pData, unsigned long ulLength)
{
    if (m_pRep != nullptr && m_pRep->TryAppend(pData, ulLength))
        return;
    Throw_IfBinaryDataIsTooLong(ulLength);
    const CHeldRep held = MakePrivate();
    m_pRep->Append(pData, static_cast<std::uint32_t>(ulLength));
}

void CBinaryData::Append(wchar_t c)
{
    AppendUnits(std::wstring_view(&c, 1));
}

void CBinaryData::Append(const wchar_t* lpctText)
{
    AppendUnits(ViewOf(lpctText));
}

void CBinaryData::Append(const std::wstring& strText)
{
    AppendUnits(strText);
}

void CBinaryData::Append(const CBinaryData& other)
{
    if (other.m_pRep != nullptr)
        Append(other.m_pRep->GetData(), other.m_pRep->GetLengthOrZero());
    else
        Append(nullptr, 0);
}

void CBinaryData::SetBuffer(const unsigned char* pData, unsigned long ulLength)
{
    // The bytes may be the handle's own, so they are copied before the old block goes.
    CBinaryData fresh;
    fresh.Append(pData, ulLength);
    std::swap(m_pRep, fresh.m_pRep);
}

void CBinaryData::SetBuffer(const wchar_t* lpctText)
{
    CBinaryData fresh(lpctText);
    std::swap(m_pRep, fresh.m_pRep);
}

void CBinaryData::Clear()
{
    CBinaryDataRep* const pRep = m_pRep;
    m_pRep = nullptr;
    if (pRep != nullptr)
        pRep->Release();
}

/// Makes the block this handle's own, and an empty handle one with a block. The block that was shared until now is
/// handed back with its reference: what is to be appended may lie in it, and the other handles may go at any moment.
CBinaryData::CHeldRep CBinaryData::MakePrivate()
{
    if (m_pRep == nullptr)
    {
        m_pRep = new CBinaryDataRep(nullptr, 0, false);
        return nullptr;
    }
    if (!m_pRep->IsShared())
        return nullptr;
    CBinaryDataRep* const pShared = m_pRep;
    m_pRep = new CBinaryDataRep(pShared->GetData(), pShared->GetLengthOrZero(), false);
    return CHeldRep(pShared);
}

void CBinaryData::AppendUnits(std::wstring_view text)
{
    const std::uint64_t nBytes = std::uint64_t{GetUtf16Length(text)} * 2;
    Throw_IfBinaryDataIsTooLong(nBytes);
    const CHeldRep held = MakePrivate();
    ByteArray pOld;
    WriteUtf16LittleEndian(text, m_pRep->Extend(static_cast<std::uint32_t>(nBytes), pOld));
}

std::wstring CBinaryData::GetAsBase64() const
{
    if (m_pRep == nullptr)
        return std::wstring();
    return CBase64().Encode(m_pRep->GetData(), m_pRep->GetLengthOrZero());
}

void CBinaryData::SetAsBase64(const wchar_t* lpctText)
{
    // The handle is empty from here on, whatever happens, but the text may lie in its old bytes.
    const CBinaryData old(std::move(*this));
    QV_ASSERT_MSG(lpctText != nullptr, "szDecoding != NULL");
    std::wstring strUnits;
    const std::wstring_view units = UnitsOf(ViewOf(lpctText), strUnits);
    ByteArray pBytes(new unsigned char[units.size() + 1]);
    const auto nLength = static_cast<unsigned long>(DecodeBase64(units, pBytes.get()));
    *this = CBinaryData(pBytes.release(), nLength, true);
}

std::wstring CBinaryData::GetAsHexString() const
{
    if (m_pRep == nullptr)
        return std::wstring();
    return GetAsHexString(m_pRep->GetData(), m_pRep->GetLengthOrZero());
}

void CBinaryData::SetAsHexString(const wchar_t* lpctText)
{
    const CBinaryData old(std::move(*this));
    unsigned char* pBytes = nullptr;
    const unsigned long ulLength = ConvertToHexData(lpctText, &pBytes);
    *this = CBinaryData(pBytes, ulLength, true);
}

std::wstring CBinaryData::GetAsHexString(const unsigned char* pData, unsigned long ulLength)
{
    if (pData == nullptr)
        return std::wstring();
    std::wstring strHex(std::size_t{ulLength} * 2, 0);
    for (std::size_t i = 0; i < ulLength; ++i)
    {
        strHex[2 * i] = static_cast<wchar_t>(s_szHexDigits[pData[i] >> 4]);
        strHex[2 * i + 1] = static_cast<wchar_t>(s_szHexDigits[pData[i] & 0xF]);
    }
    return strHex;
}

unsigned long CBinaryData::ConvertToHexData(const wchar_t* lpctText, unsigned char** ppData)
{
    const std::wstring_view text = ViewOf(lpctText);
    ByteArray pBytes(new unsigned char[text.size() / 2 + 1]);
    std::size_t nLength = 0;
    for (std::size_t i = 0; i < text.size(); i += 2)
    {
        const wchar_t cLow = i + 1 < text.size() ? text[i + 1] : 0;
        const int nHigh = GetHexValue(text[i]);
        const int nLow = GetHexValue(cLow);
        if ((nHigh | nLow) < 0)
            Throw_InvalidHexChar(nHigh < 0 ? text[i] : cLow);
        pBytes[nLength++] = static_cast<unsigned char>(nHigh << 4 | nLow);
    }
    *ppData = pBytes.release();
    return static_cast<unsigned long>(nLength);
}

// --- CBase64 --------------------------------------------------------------------------------------------------------

CBase64::CBase64() = default;

CBase64::~CBase64() = default;

std::wstring CBase64::Encode(const unsigned char* lpEncoding, unsigned long nLength)
{
    QV_ASSERT_MSG(lpEncoding != nullptr, "lpEncoding != NULL");
    if (lpEncoding == nullptr)
        return std::wstring();
    std::wstring strText((std::size_t{nLength} + 2) / 3 * 4, L'=');
    wchar_t* pOut = strText.data();
    const auto fnPut = [&pOut](std::uint32_t nBits)
    {
        *pOut++ = static_cast<wchar_t>(s_szBase64[nBits & 0x3F]);
    };
    const unsigned char* p = lpEncoding;
    const unsigned char* const pEnd = p + nLength;
    for (; pEnd - p >= 3; p += 3)
    {
        const std::uint32_t nBits = std::uint32_t{p[0]} << 16 | std::uint32_t{p[1]} << 8 | p[2];
        fnPut(nBits >> 18);
        fnPut(nBits >> 12);
        fnPut(nBits >> 6);
        fnPut(nBits);
    }
    if (p != pEnd)
    {
        const bool bTwo = pEnd - p == 2;
        const std::uint32_t nBits = std::uint32_t{p[0]} << 16 | (bTwo ? std::uint32_t{p[1]} << 8 : 0);
        fnPut(nBits >> 18);
        fnPut(nBits >> 12);
        if (bTwo)
            fnPut(nBits >> 6);
    }
    return strText;
}

unsigned long CBase64::Decode(const wchar_t* szDecoding, unsigned char* lpOutput)
{
    QV_ASSERT_MSG(szDecoding != nullptr, "szDecoding != NULL");
    QV_ASSERT_MSG(lpOutput != nullptr, "lpOutput != NULL");
    if (szDecoding == nullptr || lpOutput == nullptr || *szDecoding == 0)
        return 0;
    std::wstring strUnits;
    const std::wstring_view units = UnitsOf(szDecoding, strUnits);
    std::memset(lpOutput, 0, units.size() + 1);
    return static_cast<unsigned long>(DecodeBase64(units, lpOutput));
}

} // namespace QvXmlLib9
