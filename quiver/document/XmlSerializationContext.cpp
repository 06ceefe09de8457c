#include "quiver/document/XmlSerializationContext.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

namespace QvXmlLib9
{

CXmlSerializationContext::CXmlSerializationContext() = default;

CXmlSerializationContext::CXmlSerializationContext(const CXmlSerializationContext& source)
{
    *this = source;
}

CXmlSerializationContext& CXmlSerializationContext::operator=(const CXmlSerializationContext& source)
{
    if (this == &source)
        return *this;
    m_strDefaultNamespaceURI = source.m_strDefaultNamespaceURI;
    m_bWriteTypeAttribute = source.m_bWriteTypeAttribute;
    m_namespaceAliases = source.m_namespaceAliases;
    m_processingInstructions = source.m_processingInstructions;
    m_strInLineSchema = source.m_strInLineSchema;
    m_bIgnoreInvalidCollectionCounts = source.m_bIgnoreInvalidCollectionCounts;
    m_bIgnoreMissingChoice = source.m_bIgnoreMissingChoice;
    m_bIgnoreMissingMandatoryElements = source.m_bIgnoreMissingMandatoryElements;
    m_bIgnoreUnknownElements = source.m_bIgnoreUnknownElements;
    m_bIgnoreUnknownAttributes = source.m_bIgnoreUnknownAttributes;
    m_bIgnoreNamespaces = source.m_bIgnoreNamespaces;
    m_eSchemaType = source.m_eSchemaType;
    m_bNoOptionalAttributeDefaultOutput = source.m_bNoOptionalAttributeDefaultOutput;
    m_fiContext = source.m_fiContext;
    m_bStripCDATA = source.m_bStripCDATA;
    SetAdditionalRootAttributes(source.m_pAdditionalRootAttributes.load());
    return *this;
}

CXmlSerializationContext::~CXmlSerializationContext()
{
    SetAdditionalRootAttributes(nullptr);
}

void CXmlSerializationContext::SetDefaultNamespaceURI(const wchar_t* lpctUri)
{
    m_strDefaultNamespaceURI = ToUtf16Units(lpctUri);
}

void CXmlSerializationContext::SetInLineSchema(const wchar_t* lpctSchema)
{
    m_strInLineSchema = ToUtf16Units(lpctSchema);
}

namespace
{

// Made with the library, as generated code uses it from static initialisers; asking for it from another unit's
// initialiser makes it earlier. Never destroyed: static objects may convert while they die.
CXmlSerializationContext& DefaultContext()
{
    static CXmlSerializationContext& s_defaultContext = *new CXmlSerializationContext;
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
