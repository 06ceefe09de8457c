#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// @file
/// Tells where an operation stands in its class's table of virtual operations, so that tests can pin an order that
/// compiled callers rely on.
///
///     EXPECT_EQ(VirtualSlot(&CElementInfo::ElementToXml), SlotsOfDestructor);
///
/// A protected operation is reached through a class of the test that derives and names it in a using-declaration; the
/// slot is that of the class that declares it. The address of an overloaded operation is picked with a cast.

namespace QvTest
{

#if defined(_MSC_VER)
#error "Pointers to virtual members are not read on this platform yet"
#endif

/// A virtual destructor takes two places: one entry destroys, the other destroys and frees (Itanium C++ ABI, 2.5.3).
constexpr std::ptrdiff_t SlotsOfDestructor = 2;

/// No virtual operation.
constexpr std::ptrdiff_t NotVirtual = -1;

/// Position of a virtual operation in the table of the class that declares it, counted from 0; NotVirtual for an
/// ordinary one.
///
/// A pointer to member consists of two words (Itanium C++ ABI, 2.3). For a virtual operation they hold the byte offset
/// into the table and the adjustment of the object's address, and one of them has the mark that tells it from an
/// ordinary function's address.
template <class TPointerToMember>
std::ptrdiff_t VirtualSlot(TPointerToMember pfnMember)
{
    struct
    {
        std::ptrdiff_t nPointer;
        std::ptrdiff_t nAdjustment;
    } parts;
    static_assert(sizeof(parts) == sizeof(pfnMember));
    std::memcpy(&parts, &pfnMember, sizeof(parts));

#if defined(__arm__) || defined(__aarch64__)
    if ((parts.nAdjustment & 1) == 0)
        return NotVirtual;
    const std::ptrdiff_t nOffset = parts.nPointer;
#else
    if ((parts.nPointer & 1) == 0)
        return NotVirtual;
    const std::ptrdiff_t nOffset = parts.nPointer - 1;
#endif
    return nOffset / static_cast<std::ptrdiff_t>(sizeof(void*));
}

template <class TBase>
class CWithOneMoreSlot : public TBase
{
public:
    virtual void OneMore() {}
};

/// Count of places in the table of a class that has a virtual destructor, those of the destructor included.
template <class TBase>
std::ptrdiff_t CountOfSlots()
{
    return VirtualSlot(&CWithOneMoreSlot<TBase>::OneMore);
}

} // namespace QvTest
