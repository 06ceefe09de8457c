#include "quiver/values/PrimitiveRestrictions.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/values/RestrictionCheck.h"

namespace QvXmlLib9
{

namespace
{

/// A text that is not well-formed ends ahead of the fault.
std::string BytesOf(const std::wstring& strText)
{
    std::string strBytes;
    AppendUtf8(strBytes, strText);
    return strBytes;
}

} // namespace

CPrimitiveRestrictions::CPrimitiveRestrictions() = default;

CPrimitiveRestrictions::CPrimitiveRestrictions(const wchar_t* pattern, int minLength, int maxLength,
                                               const wchar_t* minInclusive, const wchar_t* maxInclusive,
                                               const wchar_t* minExclusive, const wchar_t* maxExclusive, int length)
    : m_strPattern(ToUtf16Units(pattern))
    , m_nMinLength(minLength)
    , m_nMaxLength(maxLength)
    , m_strMinInclusive(ToUtf16Units(minInclusive))
    , m_strMaxInclusive(ToUtf16Units(maxInclusive))
    , m_strMinExclusive(ToUtf16Units(minExclusive))
    , m_strMaxExclusive(ToUtf16Units(maxExclusive))
    , m_nLength(length)
    , m_bHasBounds(!m_strMinInclusive.empty() || !m_strMaxInclusive.empty() || !m_strMinExclusive.empty() ||
                   !m_strMaxExclusive.empty())
    , m_strPatternUtf8(BytesOf(m_strPattern))
{
}

CPrimitiveRestrictions::CPrimitiveRestrictions(const CPrimitiveRestrictions& source)
{
    *this = source;
}

CPrimitiveRestrictions& CPrimitiveRestrictions::operator=(const CPrimitiveRestrictions& source)
{
    m_strPattern = source.m_strPattern;
    m_nMinLength = source.m_nMinLength;
    m_nMaxLength = source.m_nMaxLength;
    m_strMinInclusive = source.m_strMinInclusive;
    m_strMaxInclusive = source.m_strMaxInclusive;
    m_strMinExclusive = source.m_strMinExclusive;
    m_strMaxExclusive = source.m_strMaxExclusive;
    m_nLength = source.m_nLength;
    m_bHasBounds = source.m_bHasBounds;
    m_strPatternUtf8 = source.m_strPatternUtf8;
    delete m_pParsedBounds.exchange(nullptr, std::memory_order_relaxed);
    return *this;
}

CPrimitiveRestrictions::~CPrimitiveRestrictions()
{
    delete m_pParsedBounds.load(std::memory_order_relaxed);
}

void CPrimitiveRestrictions::RememberParsedBounds(std::unique_ptr<const CParsedBounds> pBounds) const
{
    const CParsedBounds* pNone = nullptr;
    if (m_pParsedBounds.compare_exchange_strong(pNone, pBounds.get(), std::memory_order_acq_rel))
        static_cast<void>(pBounds.release());
}

} // namespace QvXmlLib9
