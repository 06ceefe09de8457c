#pragma once

#include "quiver/foundation/Assert.h"

/// Intrusive pointer: the object carries its own count, and the last pointer to let go destroys it.
///
/// `T` offers `long AddRef()` and `long Release()`, as every class derived from `QvXmlLib9::CXmlObjectBase` does. A new
/// object has a count of 0, so `CSmartPtr<COrder> spOrder = new COrder;` is its first and only reference. Two threads
/// may share the object, not the same pointer variable.
template <class T>
class CSmartPtr
{
public:
    /// Takes a reference unless `pObject` is null.
    CSmartPtr(T* pObject = nullptr)
        : p(pObject)
    {
        if (p != nullptr)
            p->AddRef();
    }

    /// Shares the object of `source`.
    CSmartPtr(const CSmartPtr& source)
        : CSmartPtr(source.p)
    {
    }

    /// Takes the reference of `source`, which becomes null.
    CSmartPtr(CSmartPtr&& source) noexcept
        : p(source.p)
    {
        source.p = nullptr;
    }

    ~CSmartPtr()
    {
        if (p != nullptr)
            p->Release();
    }

    /// Refers to `pObject` from now on. The new reference is taken before the old one is given up, so assigning the
    /// object that is already held never destroys it. The destructor of the old object still finds it here, so this
    /// pointer must not be a part of what that destructor frees.
    T* operator=(T* pObject)
    {
        if (pObject != nullptr)
            pObject->AddRef();
        Replace(pObject);
        return p;
    }

    CSmartPtr& operator=(const CSmartPtr& source)
    {
        *this = source.p;
        return *this;
    }

    CSmartPtr& operator=(CSmartPtr&& source) noexcept
    {
        if (this != &source)
        {
            T* const pObject = source.p;
            source.p = nullptr;
            Replace(pObject);
        }
        return *this;
    }

    /// The object, or null; no check is made.
    operator T*() const { return p; }

    T* operator->() const
    {
        QV_ASSERT_MSG(p != nullptr, "p!=NULL");
        return p;
    }

    T& operator*() const
    {
        QV_ASSERT_MSG(p != nullptr, "p!=NULL");
        return *p;
    }

private:
    /// Stores an object whose reference has been taken already.
    void Replace(T* pObject)
    {
        if (p != nullptr)
            p->Release();
        p = pObject;
    }

    T* p;
};
