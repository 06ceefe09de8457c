#pragma once

#include "quiver/generated/Alternatives.h"

#include <cstddef>

/// @file
/// The members of a generated class as data: with these records the library reads, writes and resets them, so that a
/// class says once what it holds and has no code of its own for that.

namespace QvXmlLib9
{

class CXmlCollectionBase;
struct QvVariant;
struct SMemberRecord;
struct SRepeatedElement;
struct SWildcard;

/// How a member is called and whom it tells of its changes, for one access.
struct SMemberCall
{
    const SMemberRecord& record;
    const wchar_t* lpctName; ///< for messages
    IEventSink* pOwner;      ///< the object with the choice that the member belongs to, or null
};

/// What is done with a member, whatever its type.
struct SMemberOperations
{
    /// With bRead the variant receives the property, otherwise the property takes the variant.
    void (*pfnAccess)(void* pMember, bool bRead, QvVariant& value, const SMemberCall& call);
    void (*pfnReset)(void* pMember);
    /// Null for a collection, which tells a choice itself when it fills and empties.
    bool (*pfnIsSet)(const void* pMember);
};

/// One member of a class.
struct SMemberRecord
{
    std::ptrdiff_t nOffset = 0; ///< from the CGeneratedObject
    const SMemberOperations* pOperations = nullptr;
    const wchar_t* lpctName = nullptr;          ///< null for the text of the element, which is called as that is
    const SRepeatedElement* pElement = nullptr; ///< of a repeated member
    const SWildcard* pWildcard = nullptr;
    SCreator creator;                                               ///< of an object that has to be there
    CXmlCollectionBase* (*pfnMake)(const SMemberRecord&) = nullptr; ///< of a repeated member
    bool bChoice = false;                                           ///< it excludes the other members of a choice

    /// @name What a class that restricts the holder of the member lets pass
    /// @{
    void (*pfnCheck)(const QvVariant& value, const wchar_t* lpctName) = nullptr;
    bool bCounts = false; ///< nMin and nMax are set
    int nMin = 0;
    int nMax = 0; ///< -1 for unbounded
    /// @}

    /// Whether its operations alone are to be asked.
    bool IsPlain() const { return lpctName != nullptr && !bChoice && pfnCheck == nullptr && !bCounts; }
};

} // namespace QvXmlLib9
