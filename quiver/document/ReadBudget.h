#pragma once

#include <cstdint>

namespace QvXmlLib9
{

class CXmlElement;

/// What one read of a document may spend on groups, the classes that have no element of their own.
///
/// A group looks at the attributes of the enclosing element and at the children from the cursor on, and gives the
/// cursor back where it does not match; then the next alternative, or the same group one element further, looks at them
/// again. Groups within groups multiply that, and so do the levels of a document below an alternative that is given up.
/// Each look is a step here, and a read that takes far more of them than the document has nodes ends in an exception.
///
/// There is one for each entry to reading, on the stack of its thread. What is read without such an entry is not
/// counted.
class CReadBudget
{
public:
    /// Steps that every read may take.
    static constexpr std::uint64_t s_nStepsAtLeast = 16 * 1024 * 1024;

    /// Steps that it may take for each element and each attribute of its document.
    static constexpr std::uint64_t s_nStepsPerNode = 1024;

    /// What a group costs beside the looks that it takes: its object is made, reset and dropped.
    static constexpr std::uint64_t s_nStepsPerGroup = 16;

    /// Begins the read of an element and what is below it. One that is in progress on this thread, whose setter has
    /// begun this one, waits meanwhile.
    explicit CReadBudget(const CXmlElement& root);
    ~CReadBudget() { t_pCurrent = m_pOuter; }
    CReadBudget(const CReadBudget&) = delete;
    CReadBudget& operator=(const CReadBudget&) = delete;

    /// The read in progress on this thread, or null.
    static CReadBudget* GetCurrent() { return t_pCurrent; }

    /// @throws CQvException "The groups of the document take too many steps to be told apart"
    void Spend(std::uint64_t nSteps);

    /// The same for the read in progress, if there is one.
    static void SpendCurrent(std::uint64_t nSteps)
    {
        if (t_pCurrent != nullptr)
            t_pCurrent->Spend(nSteps);
    }

    /// Whether an element has the attribute `xsi:nil`, which concerns every group in it. The answer for the last
    /// element is remembered, since the groups of one element follow each other.
    bool HasNil(const CXmlElement& element);

    /// @name Groups that match nothing any more
    /// Says that the group which was read last failed at a child of `pParent`, and would fail at every later one. The
    /// note is good until somebody else reads at the cursor, who is to drop it.
    /// @{
    void NoteExhausted(const CXmlElement* pParent, const CXmlElement* pAt)
    {
        m_pExhaustedParent = pParent;
        m_pExhaustedAt = pAt;
    }
    void DropExhausted() { m_pExhaustedParent = nullptr; }
    bool IsExhausted(const CXmlElement* pParent, const CXmlElement* pAt) const
    {
        return m_pExhaustedParent == pParent && m_pExhaustedAt == pAt;
    }
    /// @}

private:
    static thread_local CReadBudget* t_pCurrent;

    std::uint64_t m_nStepsLeft;
    CReadBudget* const m_pOuter;
    const CXmlElement* m_pNilAsked = nullptr;
    bool m_bNil = false;
    const CXmlElement* m_pExhaustedParent = nullptr;
    const CXmlElement* m_pExhaustedAt = nullptr;
};

} // namespace QvXmlLib9
