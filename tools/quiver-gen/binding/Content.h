#pragma once

#include "tools/quiver-gen/binding/Warnings.h"
#include "tools/quiver-gen/schema/Components.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// @file
/// Content models in the simplest form that means the same: what is left are the groups that members are made of.

namespace quiver_gen::binding
{

/// A particle with what stands below it.
struct SNode
{
    enum class EKind
    {
        Element,
        Wildcard,
        Sequence,
        Choice,
        All
    };

    EKind eKind = EKind::Sequence;
    std::int64_t nMin = 1;
    std::int64_t nMax = 1; ///< schema::s_nUnbounded for unbounded
    const schema::SParticle* pParticle = nullptr;
    const schema::SElement* pElement = nullptr;            ///< of an element
    const schema::SGroupDefinition* pDefinition = nullptr; ///< the group that this is a reference to
    const schema::SElement* pHead = nullptr;               ///< a choice made of the substitutes for this element
    std::vector<SNode> children;

    bool IsGroup() const { return eKind != EKind::Element && eKind != EKind::Wildcard; }
    bool IsUnbounded() const { return nMax == schema::s_nUnbounded; }
    bool IsOnce() const { return nMin == 1 && nMax == 1; }
    bool IsRepeated() const { return IsUnbounded() || nMax > 1; }
    bool IsEmptyGroup() const { return IsGroup() && children.empty(); }
};

/// Whether a node may stand for nothing at all.
bool IsEmptiable(const SNode& node);

/// Whether two nodes let the same documents through and give the same members.
bool IsSame(const SNode& a, const SNode& b);

/// The same, whatever the nodes' own occurrences are.
bool IsSameContent(const SNode& a, const SNode& b);

/// Local names of the elements that a node may begin with, for messages: `b or c`.
std::string DescribeStart(const SNode& node);

/// What a reference to an element lets in, asked once for each.
class CSubstitutes
{
public:
    const std::vector<schema::SElement*>& Get(const schema::SElement& element);
    /// Whether something other than the element itself may stand there.
    bool IsHead(const schema::SElement& element);

private:
    std::unordered_map<const schema::SElement*, std::vector<schema::SElement*>> m_substitutes;
};

/// A content model that would take more memory than the schema is worth.
class CContentTooLarge : public std::runtime_error
{
public:
    CContentTooLarge()
        : std::runtime_error("content model too large")
    {
    }
};

/// Simplifies content models. Every step keeps what the model lets through.
class CSimplifier
{
public:
    CSimplifier(CSubstitutes& substitutes, CWarnings& warnings)
        : m_substitutes(substitutes)
        , m_warnings(warnings)
    {
    }

    /// Heads whose substitutes have no class in common: a reference to one becomes a choice of them.
    void ExpandHead(const schema::SElement& head) { m_expanded.insert(&head); }

    /// @param particle null for empty content.
    /// @return a group; an empty sequence if nothing may stand there.
    /// @throws CContentTooLarge if groups within groups multiply beyond measure.
    SNode Simplify(const schema::SParticle* pParticle);

    /// One sequence of several contents, as extensions add them.
    SNode Simplify(const std::vector<const schema::SParticle*>& particles);

private:
    CSubstitutes& m_substitutes;
    CWarnings& m_warnings;
    std::unordered_set<const schema::SElement*> m_expanded;
    std::unordered_set<const schema::SParticle*> m_warned;
    std::size_t m_nNodes = 0;

    SNode Make(const schema::SParticle& particle);
    SNode MakeElement(const schema::SParticle& particle);
    SNode MakeGroup(const schema::SParticle& particle);
    void CountNode();
    void WarnOnce(EWarning eWarning, const schema::SParticle& particle, const std::string& strName = {});
};

} // namespace quiver_gen::binding
