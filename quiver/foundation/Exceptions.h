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

/// A document or an object breaks its schema: element order, missing mandatory item, occurrence limits.
class QVXMLLIB_API CQvValidationException : public CQvException
{
public:
    CQvValidationException();
    explicit CQvValidationException(std::wstring strMessage);
    CQvValidationException(std::wstring strMessage, const CQvException& inner);
    CQvValidationException(const CQvException& source);
    CQvValidationException(const CQvValidationException& source);
    CQvValidationException& operator=(const CQvValidationException& source);
    ~CQvValidationException() override;

protected:
    CQvException* Clone() const override;
};

/// A single value cannot be what its type says: conversions from text, dates, durations, decimals, integers.
class QVXMLLIB_API CQvInvalidValueException : public CQvValidationException
{
public:
    CQvInvalidValueException();
    explicit CQvInvalidValueException(std::wstring strMessage);
    CQvInvalidValueException(std::wstring strMessage, const CQvException& inner);
    CQvInvalidValueException(const CQvException& source);
    CQvInvalidValueException(const CQvInvalidValueException& source);
    CQvInvalidValueException& operator=(const CQvInvalidValueException& source);
    ~CQvInvalidValueException() override;

protected:
    CQvException* Clone() const override;
};

/// A namespace does not fit the element or attribute that it was given to.
class QVXMLLIB_API CQvInvalidNamespaceException : public CQvValidationException
{
public:
    CQvInvalidNamespaceException();
    explicit CQvInvalidNamespaceException(std::wstring strMessage);
    CQvInvalidNamespaceException(std::wstring strMessage, const CQvException& inner);
    CQvInvalidNamespaceException(const CQvException& source);
    CQvInvalidNamespaceException(const CQvInvalidNamespaceException& source);
    CQvInvalidNamespaceException& operator=(const CQvInvalidNamespaceException& source);
    ~CQvInvalidNamespaceException() override;

protected:
    CQvException* Clone() const override;
};

/// The present state of an object forbids the operation.
class QVXMLLIB_API CQvInvalidStateException : public CQvException
{
public:
    CQvInvalidStateException();
    explicit CQvInvalidStateException(std::wstring strMessage);
    CQvInvalidStateException(std::wstring strMessage, const CQvException& inner);
    CQvInvalidStateException(const CQvException& source);
    CQvInvalidStateException(const CQvInvalidStateException& source);
    CQvInvalidStateException& operator=(const CQvInvalidStateException& source);
    ~CQvInvalidStateException() override;

protected:
    CQvException* Clone() const override;
};

/// A bad argument: an index out of range, an item that is not there, a null where none is allowed.
class QVXMLLIB_API CQvInvalidParamException : public CQvException
{
public:
    CQvInvalidParamException();
    explicit CQvInvalidParamException(std::wstring strMessage);
    CQvInvalidParamException(std::wstring strMessage, const CQvException& inner);
    CQvInvalidParamException(const CQvException& source);
    CQvInvalidParamException(const CQvInvalidParamException& source);
    CQvInvalidParamException& operator=(const CQvInvalidParamException& source);
    ~CQvInvalidParamException() override;

protected:
    CQvException* Clone() const override;
};

/// A decimal does not fit the number type that it is converted to.
class QVXMLLIB_API CQvOverFlowException : public CQvException
{
public:
    CQvOverFlowException();
    explicit CQvOverFlowException(std::wstring strMessage);
    CQvOverFlowException(std::wstring strMessage, const CQvException& inner);
    CQvOverFlowException(const CQvException& source);
    CQvOverFlowException(const CQvOverFlowException& source);
    CQvOverFlowException& operator=(const CQvOverFlowException& source);
    ~CQvOverFlowException() override;

protected:
    CQvException* Clone() const override;
};

} // namespace QvXmlLib9
