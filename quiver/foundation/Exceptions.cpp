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

template <class TException, class TBase>
CQvExceptionOf<TException, TBase>::CQvExceptionOf() = default;

template <class TException, class TBase>
CQvExceptionOf<TException, TBase>::CQvExceptionOf(std::wstring strMessage)
    : TBase(std::move(strMessage))
{
}

template <class TException, class TBase>
CQvExceptionOf<TException, TBase>::CQvExceptionOf(std::wstring strMessage, const CQvException& inner)
    : TBase(std::move(strMessage), inner)
{
}

template <class TException, class TBase>
CQvExceptionOf<TException, TBase>::CQvExceptionOf(const CQvException& source)
    : TBase(source)
{
}

template <class TException, class TBase>
CQvException* CQvExceptionOf<TException, TBase>::Clone() const
{
    return new TException(static_cast<const TException&>(*this));
}

template class CQvExceptionOf<CQvValidationException, CQvException>;
template class CQvExceptionOf<CQvInvalidValueException, CQvValidationException>;
template class CQvExceptionOf<CQvInvalidNamespaceException, CQvValidationException>;
template class CQvExceptionOf<CQvInvalidStateException, CQvException>;
template class CQvExceptionOf<CQvInvalidParamException, CQvException>;
template class CQvExceptionOf<CQvOverFlowException, CQvException>;

CQvValidationException::~CQvValidationException() = default;
CQvInvalidValueException::~CQvInvalidValueException() = default;
CQvInvalidNamespaceException::~CQvInvalidNamespaceException() = default;
CQvInvalidStateException::~CQvInvalidStateException() = default;
CQvInvalidParamException::~CQvInvalidParamException() = default;
CQvOverFlowException::~CQvOverFlowException() = default;

} // namespace QvXmlLib9
