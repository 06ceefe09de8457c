#pragma once

#include "quiver/foundation/Export.h"

#include <atomic>
#include <cstdint>
#include <string>

class CInstanceClass;

/// Counts the living instances of a class and all that were ever made, by class name.
///
/// The classes whose leaks matter derive from it and pass their name; a generated class passes its own to the virtual
/// base of `QvXmlLib9::CXmlObjectBase`. The counts can be asked for at any time:
///
///     std::wcerr << CInstanceMonitor::DumpState() << L'\n';
///
/// Objects may be made and destroyed on any thread. Each thread counts for itself, and the report adds up, so an object
/// costs no lock, and the same however many classes there are. A copy shares the record of its source and is not
/// counted, but its destruction is (docs/compatibility.md: Copies of counted objects).
class QVXMLLIB_API CInstanceMonitor
{
public:
    /// The record of one class.
    struct ClassType;

    /// Counts one instance.
    /// @param lpctClassName the name under which the instance is counted; case matters. The text is copied when the
    ///        name is seen for the first time. Null is an empty name.
    explicit CInstanceMonitor(const wchar_t* lpctClassName);

    /// Counts one instance of a class whose place is known: for classes that are made by the million.
    explicit CInstanceMonitor(CInstanceClass& instanceClass);

    /// Says that whoever makes the object counts it, together with others.
    struct SCountedTogether
    {
        ClassType* pct;
    };
    explicit CInstanceMonitor(SCountedTogether record) noexcept
        : m_pct(record.pct)
    {
    }

    CInstanceMonitor(const CInstanceMonitor&) = default;
    CInstanceMonitor& operator=(const CInstanceMonitor&) = default;

    /// Counts one instance less.
    virtual ~CInstanceMonitor();

    /// The report: a header line, and a line for each class in the order of first creation, "--> name = living/total"
    /// where instances are alive and the same with blanks in front where none is. The counts are exact as long as no
    /// other thread creates or destroys objects meanwhile.
    static std::wstring DumpState();

    /// Forgets all records. Meant for the end of the process; classes that are instantiated later start anew.
    static void Cleanup();

private:
    ClassType* m_pct;
};

/// A class's place in the instance count, looked up at the first instance. Of static storage, one for each class that
/// counts through it; any number of threads may count at once.
class QVXMLLIB_API CInstanceClass
{
public:
    /// @param lpctClassName the name, a literal.
    explicit constexpr CInstanceClass(const wchar_t* lpctClassName)
        : m_lpctClassName(lpctClassName)
    {
    }
    CInstanceClass(const CInstanceClass&) = delete;
    CInstanceClass& operator=(const CInstanceClass&) = delete;

    /// Counts one instance that has no monitor of its own.
    /// @return what CountDestruction takes when the instance ends.
    CInstanceMonitor::ClassType* CountCreation();
    static void CountDestruction(CInstanceMonitor::ClassType& ct) noexcept;

    /// @name Counting many objects at once
    /// @{
    CInstanceMonitor::ClassType* GetRecord();
    static void CountCreations(CInstanceMonitor::ClassType& ct, std::uint64_t nCount) noexcept;
    /// For objects whose destructors do not run.
    static void CountDestructions(CInstanceMonitor::ClassType& ct, std::uint64_t nCount) noexcept;
    /// Another number after each CInstanceMonitor::Cleanup, which makes all records new.
    static std::uint64_t GetGeneration();
    /// @}

private:
    const wchar_t* const m_lpctClassName;
    std::atomic<CInstanceMonitor::ClassType*> m_pct{nullptr};
    std::atomic<std::uint64_t> m_nGeneration{0};
};
