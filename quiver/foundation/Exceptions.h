#pragma once

#include "quiver/foundation/Export.h"

#include <memory>
#include <string>
#include <vector>

/// @file
/// The one failure mechanism of the library. Every operation that fails throws an exception of this family, by value;
/// catch it by reference:
///
///     try
///     {
///         order.FromXmlFile(L"order.xml", context);
///     }
///     catch (const QvXmlLib9::CQvException& ex)
///     {
///         std::wcerr << ex.GetFullMessage() << L'\n';
///     }
///
/// Code that adds context catches an exception and throws a new one that holds the first as its inner exception, so a
/// failure deep in a document arrives as a chain with one link for each element level. Standard exceptions
/// (`std::bad_alloc`, those of containers) pass through untouched.

namespace QvXmlLib9
{

/// Root of the family, and the class of general failures: files, streams, parsing, Fast Infoset decoding.
///
/// Deliberately not derived from `std::exception`: the text is wide. An exception object is used by one thread at a
/// time; distinct copies may travel to distinct threads.
class QVXMLLIB_API CQvException
{
public:
    /// An empty message and no inner exception.
    CQvException();

    /// @param strMessage the text of this failure.
    explicit CQvException(std::wstring strMessage);

    /// @param strMessage the text of this failure.
    /// @param inner the failure that caused this one; it is cloned, the caller's object stays the caller's.
    CQvException(std::wstring strMessage, const CQvException& inner);

    /// Copies the message, and clones the inner exception, so that the two objects live independently.
    CQvException(const CQvException& source);

    /// Takes the message, and a clone of the inner exception. The inner exception that was held before is no longer
    /// shown, but lives on until this object dies, so that a pointer to it that was obtained earlier stays good.
    CQvException& operator=(const CQvException& source);

    virtual ~CQvException();

    /// The message of this exception alone.
    std::wstring GetMessageW() const;

    /// The failure that caused this one, or null. It belongs to this exception and dies with it, not before.
    const CQvException* GetInnerException() const;

    /// The messages of the whole chain, outermost first, root cause last, one a line, without a trailing line break.
    std::wstring GetFullMessage() const;

protected:
    /// A new heap copy of the dynamic type; the caller owns it.
    virtual CQvException* Clone() const;

private:
    static std::shared_ptr<const CQvException> CloneInner(const CQvException& inner);

    std::wstring m_message;
    /// Never shared with another exception at the first level. What lies deeper is immutable, and is shared, so that
    /// wrapping a failure once a level costs the same at every level of a deep document.
    std::shared_ptr<const CQvException> m_pInnerException;
    /// What assignments replaced; a copy does not take it over.
    std::vector<std::shared_ptr<const CQvException>> m_replacedInners;
};

/// What the classes of the family have in common: the constructors, and a clone of their own type. None of them adds
/// anything else.
/// @tparam TException the class that derives from this one.
/// @tparam TBase the class above it in the family.
template <class TException, class TBase>
class QVXMLLIB_API CQvExceptionOf : public TBase
{
public:
    CQvExceptionOf();
    explicit CQvExceptionOf(std::wstring strMessage);
    CQvExceptionOf(std::wstring strMessage, const CQvException& inner);

    /// Takes over message and inner exception of any exception of the family.
    CQvExceptionOf(const CQvException& source);

protected:
    CQvException* Clone() const override;
};

/// A document or an object breaks its schema: element order, missing mandatory item, occurrence limits.
class QVXMLLIB_API CQvValidationException : public CQvExceptionOf<CQvValidationException, CQvException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvValidationException() override;
};

/// A single value cannot be what its type says: conversions from text, dates, durations, decimals, integers.
class QVXMLLIB_API CQvInvalidValueException : public CQvExceptionOf<CQvInvalidValueException, CQvValidationException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvInvalidValueException() override;
};

/// A namespace does not fit the element or attribute that it was given to.
class QVXMLLIB_API CQvInvalidNamespaceException
    : public CQvExceptionOf<CQvInvalidNamespaceException, CQvValidationException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvInvalidNamespaceException() override;
};

/// The present state of an object forbids the operation.
class QVXMLLIB_API CQvInvalidStateException : public CQvExceptionOf<CQvInvalidStateException, CQvException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvInvalidStateException() override;
};

/// A bad argument: an index out of range, an item that is not there, a null where none is allowed.
class QVXMLLIB_API CQvInvalidParamException : public CQvExceptionOf<CQvInvalidParamException, CQvException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvInvalidParamException() override;
};

/// A decimal does not fit the number type that it is converted to.
class QVXMLLIB_API CQvOverFlowException : public CQvExceptionOf<CQvOverFlowException, CQvException>
{
public:
    using CQvExceptionOf::CQvExceptionOf;
    ~CQvOverFlowException() override;
};

extern template class CQvExceptionOf<CQvValidationException, CQvException>;
extern template class CQvExceptionOf<CQvInvalidValueException, CQvValidationException>;
extern template class CQvExceptionOf<CQvInvalidNamespaceException, CQvValidationException>;
extern template class CQvExceptionOf<CQvInvalidStateException, CQvException>;
extern template class CQvExceptionOf<CQvInvalidParamException, CQvException>;
extern template class CQvExceptionOf<CQvOverFlowException, CQvException>;

} // namespace QvXmlLib9
