#include "quiver/metadata/PrimitiveRestrictions.h"

namespace QvXmlLib9
{

namespace
{

std::wstring TextOrEmpty(const wchar_t* lpctText)
{
    return lpctText != nullptr ? std::wstring(lpctText) : std::wstring();
}

} // namespace

CPrimitiveRestrictions::CPrimitiveRestrictions()
    : m_nMinLength(-1)
    , m_nMaxLength(-1)
    , m_nLength(-1)
{
}

CPrimitiveRestrictions::CPrimitiveRestrictions(const wchar_t* pattern, int minLength, int maxLength,
                                               const wchar_t* minInclusive, const wchar_t* maxInclusive,
                                               const wchar_t* minExclusive, const wchar_t* maxExclusive, int length)
    : m_strPattern(TextOrEmpty(pattern))
    , m_nMinLength(minLength)
    , m_nMaxLength(maxLength)
    , m_strMinInclusive(TextOrEmpty(minInclusive))
    , m_strMaxInclusive(TextOrEmpty(maxInclusive))
    , m_strMinExclusive(TextOrEmpty(minExclusive))
    , m_strMaxExclusive(TextOrEmpty(maxExclusive))
    , m_nLength(length)
{
}

CPrimitiveRestrictions::CPrimitiveRestrictions(const CPrimitiveRestrictions& source) = default;

CPrimitiveRestrictions& CPrimitiveRestrictions::operator=(const CPrimitiveRestrictions& source) = default;

CPrimitiveRestrictions::~CPrimitiveRestrictions() = default;

} // namespace QvXmlLib9
