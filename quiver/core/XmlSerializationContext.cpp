#include "quiver/core/XmlSerializationContext.h"

#include "quiver/foundation/Exceptions.h"

namespace QvXmlLib9
{

CXmlSerializationContext::CXmlSerializationContext() = default;
CXmlSerializationContext::CXmlSerializationContext(const CXmlSerializationContext& source) = default;
CXmlSerializationContext& CXmlSerializationContext::operator=(const CXmlSerializationContext& source) = default;
CXmlSerializationContext::~CXmlSerializationContext() = default;

namespace
{

// Made with the library, as generated code uses it from static initialisers; asking for it from another unit's
// initialiser makes it earlier.
CXmlSerializationContext& DefaultContext()
{
    static CXmlSerializationContext s_defaultContext;
    return s_defaultContext;
}

const CXmlSerializationContext& s_madeAtLoad = DefaultContext();

} // namespace

CXmlSerializationContext& CXmlSerializationContext::GetDefaultContext()
{
    static_cast<void>(s_madeAtLoad);
    return DefaultContext();
}

void CXmlSerializationContext::SetIgnoreMissingMandatoryElements(bool bIgnore)
{
    if (bIgnore && m_bIgnoreUnknownElements)
        throw CQvInvalidStateException(L"The parser can only ignore additional elements, or ignore the fact that some "
                                       L"required ones are missing, you can "
                                       L"not ignore both\nSet IgnoreUnknownElements to false before setting "
                                       L"IgnoreMissingMandatoryElements to true");
    m_bIgnoreMissingMandatoryElements = bIgnore;
}

void CXmlSerializationContext::SetIgnoreUnknownElements(bool bIgnore)
{
    if (bIgnore && m_bIgnoreMissingMandatoryElements)
        throw CQvInvalidStateException(L"The parser can only ignore additional elements, or ignore the fact that some "
                                       L"required ones are missing, you can "
                                       L"not ignore both\nSet IgnoreMissingMandatoryElements to false before setting "
                                       L"IgnoreUnknownElements to true");
    m_bIgnoreUnknownElements = bIgnore;
}

} // namespace QvXmlLib9
