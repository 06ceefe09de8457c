#include "quiver/foundation/Exceptions.h"

#include <utility>

namespace QvXmlLib9
{

namespace
{

/// Set while a chain's link is cloned. Clone goes through the copy constructor of the dynamic type, which would
/// otherwise clone the next link in turn and so copy the whole chain at every level that wraps it.
thread_local bool t_bSharingInner = false;

class CSharingInner
{
public:
    CSharingInner() { t_bSharingInner = true; }
    ~CSharingInner() { t_bSharingInner = false; }
    CSharingInner(const CSharingInner&) = delete;
    CSharingInner& operator=(const CSharingInner&) = delete;
};

thread_local bool t_bDestroyingLink = false;
thread_local const CQvException* t_pNextLink = nullptr;

/// Destroys a link that nobody refers to any more. The link within it then comes here too; it is left to the loop of
/// the outer one, because a chain can have a link for each level of a very deep document.
struct SDestroyLink
{
    void operator()(const CQvException* pLink) const
    {
        if (t_bDestroyingLink && t_pNextLink == nullptr)
        {
            t_pNextLink = pLink;
            return;
        }
        // A class of an application's own may hold more exceptions than its inner one; each gets a loop.
        const bool bOuter = std::exchange(t_bDestroyingLink, true);
        const CQvException* const pOuterNext = std::exchange(t_pNextLink, nullptr);
        while (pLink != nullptr)
        {
            delete pLink;
            pLink = std::exchange(t_pNextLink, nullptr);
        }
        t_bDestroyingLink = bOuter;
        t_pNextLink = pOuterNext;
    }
};

} // namespace

CQvException::CQvException() = default;

CQvException::CQvException(std::wstring strMessage)
    : m_message(std::move(strMessage))
{
}

CQvException::CQvException(std::wstring strMessage, const CQvException& inner)
    : m_message(std::move(strMessage))
    , m_pInnerException(CloneInner(inner))
{
}

CQvException::CQvException(const CQvException& source)
    : m_message(source.m_message)
{
    if (t_bSharingInner)
        m_pInnerException = source.m_pInnerException;
    else if (source.m_pInnerException)
        m_pInnerException = CloneInner(*source.m_pInnerException);
}

CQvException& CQvException::operator=(const CQvException& source)
{
    if (this != &source)
    {
        std::shared_ptr<const CQvException> pInner =
            source.m_pInnerException ? CloneInner(*source.m_pInnerException) : nullptr;
        std::wstring strMessage = source.m_message;
        if (m_pInnerException)
            m_replacedInners.push_back(m_pInnerException);
        m_message = std::move(strMessage);
        m_pInnerException = std::move(pInner);
    }
    return *this;
}

CQvException::~CQvException() = default;

std::shared_ptr<const CQvException> CQvException::CloneInner(const CQvException& inner)
{
    CSharingInner sharing;
    return std::shared_ptr<const CQvException>(inner.Clone(), SDestroyLink());
}

std::wstring CQvException::GetMessageW() const
{
    return m_message;
}

const CQvException* CQvException::GetInnerException() const
{
    return m_pInnerException.get();
}

std::wstring CQvException::GetFullMessage() const
{
    std::wstring strFull = m_message;
    for (const CQvException* pInner = GetInnerException(); pInner != nullptr; pInner = pInner->GetInnerException())
    {
        strFull += L'\n';
        strFull += pInner->m_message;
    }
    return strFull;
}

CQvException* CQvException::Clone() const
{
    return new CQvException(*this);
}

CQvValidationException::CQvValidationException() = default;
CQvValidationException::CQvValidationException(std::wstring strMessage)
    : CQvException(std::move(strMessage))
{
}
CQvValidationException::CQvValidationException(std::wstring strMessage, const CQvException& inner)
    : CQvException(std::move(strMessage), inner)
{
}
CQvValidationException::CQvValidationException(const CQvException& source)
    : CQvException(source)
{
}
CQvValidationException::CQvValidationException(const CQvValidationException& source) = default;
CQvValidationException& CQvValidationException::operator=(const CQvValidationException& source) = default;
CQvValidationException::~CQvValidationException() = default;
CQvException* CQvValidationException::Clone() const
{
    return new CQvValidationException(*this);
}

CQvInvalidValueException::CQvInvalidValueException() = default;
CQvInvalidValueException::CQvInvalidValueException(std::wstring strMessage)
    : CQvValidationException(std::move(strMessage))
{
}
CQvInvalidValueException::CQvInvalidValueException(std::wstring strMessage, const CQvException& inner)
    : CQvValidationException(std::move(strMessage), inner)
{
}
CQvInvalidValueException::CQvInvalidValueException(const CQvException& source)
    : CQvValidationException(source)
{
}
CQvInvalidValueException::CQvInvalidValueException(const CQvInvalidValueException& source) = default;
CQvInvalidValueException& CQvInvalidValueException::operator=(const CQvInvalidValueException& source) = default;
CQvInvalidValueException::~CQvInvalidValueException() = default;
CQvException* CQvInvalidValueException::Clone() const
{
    return new CQvInvalidValueException(*this);
}

CQvInvalidNamespaceException::CQvInvalidNamespaceException() = default;
CQvInvalidNamespaceException::CQvInvalidNamespaceException(std::wstring strMessage)
    : CQvValidationException(std::move(strMessage))
{
}
CQvInvalidNamespaceException::CQvInvalidNamespaceException(std::wstring strMessage, const CQvException& inner)
    : CQvValidationException(std::move(strMessage), inner)
{
}
CQvInvalidNamespaceException::CQvInvalidNamespaceException(const CQvException& source)
    : CQvValidationException(source)
{
}
CQvInvalidNamespaceException::CQvInvalidNamespaceException(const CQvInvalidNamespaceException& source) = default;
CQvInvalidNamespaceException&
CQvInvalidNamespaceException::operator=(const CQvInvalidNamespaceException& source) = default;
CQvInvalidNamespaceException::~CQvInvalidNamespaceException() = default;
CQvException* CQvInvalidNamespaceException::Clone() const
{
    return new CQvInvalidNamespaceException(*this);
}

CQvInvalidStateException::CQvInvalidStateException() = default;
CQvInvalidStateException::CQvInvalidStateException(std::wstring strMessage)
    : CQvException(std::move(strMessage))
{
}
CQvInvalidStateException::CQvInvalidStateException(std::wstring strMessage, const CQvException& inner)
    : CQvException(std::move(strMessage), inner)
{
}
CQvInvalidStateException::CQvInvalidStateException(const CQvException& source)
    : CQvException(source)
{
}
CQvInvalidStateException::CQvInvalidStateException(const CQvInvalidStateException& source) = default;
CQvInvalidStateException& CQvInvalidStateException::operator=(const CQvInvalidStateException& source) = default;
CQvInvalidStateException::~CQvInvalidStateException() = default;
CQvException* CQvInvalidStateException::Clone() const
{
    return new CQvInvalidStateException(*this);
}

CQvInvalidParamException::CQvInvalidParamException() = default;
CQvInvalidParamException::CQvInvalidParamException(std::wstring strMessage)
    : CQvException(std::move(strMessage))
{
}
CQvInvalidParamException::CQvInvalidParamException(std::wstring strMessage, const CQvException& inner)
    : CQvException(std::move(strMessage), inner)
{
}
CQvInvalidParamException::CQvInvalidParamException(const CQvException& source)
    : CQvException(source)
{
}
CQvInvalidParamException::CQvInvalidParamException(const CQvInvalidParamException& source) = default;
CQvInvalidParamException& CQvInvalidParamException::operator=(const CQvInvalidParamException& source) = default;
CQvInvalidParamException::~CQvInvalidParamException() = default;
CQvException* CQvInvalidParamException::Clone() const
{
    return new CQvInvalidParamException(*this);
}

CQvOverFlowException::CQvOverFlowException() = default;
CQvOverFlowException::CQvOverFlowException(std::wstring strMessage)
    : CQvException(std::move(strMessage))
{
}
CQvOverFlowException::CQvOverFlowException(std::wstring strMessage, const CQvException& inner)
    : CQvException(std::move(strMessage), inner)
{
}
CQvOverFlowException::CQvOverFlowException(const CQvException& source)
    : CQvException(source)
{
}
CQvOverFlowException::CQvOverFlowException(const CQvOverFlowException& source) = default;
CQvOverFlowException& CQvOverFlowException::operator=(const CQvOverFlowException& source) = default;
CQvOverFlowException::~CQvOverFlowException() = default;
CQvException* CQvOverFlowException::Clone() const
{
    return new CQvOverFlowException(*this);
}

} // namespace QvXmlLib9
