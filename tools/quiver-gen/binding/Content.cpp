#include "tools/quiver-gen/binding/Content.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace quiver_gen::binding
{

namespace
{

/// Of all content models together; the largest sets of real schemas stay below 100,000.
constexpr std::size_t s_nMaxNodes = 5'000'000;
constexpr std::size_t s_nMaxNamesInMessage = 5;

using EKind = SNode::EKind;

std::int64_t Multiply(std::int64_t nA, std::int64_t nB)
{
    if (nA == 0 || nB == 0)
        return 0;
    if (nA < 0 || nB < 0)
        return schema::s_nUnbounded;
    return nA > std::numeric_limits<std::int64_t>::max() / nB ? schema::s_nUnbounded : nA * nB;
}

/// Whether a particle between min and max times, all of it between outer min and outer max times, is one between the
/// products: no number between them is left out.
bool IsProductExact(const SNode& inner, const SNode& outer)
{
    if (outer.nMin == outer.nMax || inner.nMin <= 1)
    {
        // With at most one time at least, only the step from none at all could leave a gap, and that is none.
        return inner.nMin <= 1 || outer.nMin == outer.nMax;
    }
    if (outer.nMin == 0)
        return false;
    // The gap between n and n + 1 rounds is widest for the smallest n.
    return inner.IsUnbounded() || Multiply(outer.nMin, inner.nMax) + 1 >= Multiply(outer.nMin + 1, inner.nMin);
}

/// A group of one particle is that particle.
void CollapseSingle(SNode& node)
{
    if (node.children.size() != 1 || !IsProductExact(node.children.front(), node))
        return;
    SNode child = std::move(node.children.front());
    child.nMin = Multiply(child.nMin, node.nMin);
    child.nMax = Multiply(child.nMax, node.nMax);
    if (child.IsGroup() && !child.pDefinition && node.pDefinition)
        child.pDefinition = node.pDefinition;
    node = std::move(child);
}

void Splice(std::vector<SNode>& children, SNode&& group)
{
    children.insert(children.end(), std::make_move_iterator(group.children.begin()),
                    std::make_move_iterator(group.children.end()));
}

/// A sequence in a sequence is one sequence.
void AddToSequence(SNode& node, SNode&& child)
{
    if (child.eKind == EKind::Sequence && child.IsOnce())
        Splice(node.children, std::move(child));
    else
        node.children.push_back(std::move(child));
}

/// An alternative that may be absent makes the choice absent, and a choice in a choice is one choice.
void AddToChoice(SNode& node, SNode&& child)
{
    if (child.IsEmptyGroup())
    {
        node.nMin = 0;
        return;
    }
    if (child.nMin == 0)
    {
        node.nMin = 0;
        child.nMin = 1;
    }
    if (child.eKind == EKind::Choice && child.IsOnce())
        Splice(node.children, std::move(child));
    else
        node.children.push_back(std::move(child));
}

/// Alternatives of a choice without a limit need no repetition of their own.
void AbsorbRepetition(SNode& node)
{
    if (node.eKind != EKind::Choice || !node.IsUnbounded() || node.nMin > 1)
        return;
    std::vector<SNode> children = std::move(node.children);
    node.children.clear();
    for (SNode& child : children)
    {
        if (child.nMin <= 1)
            child.nMax = 1;
        if (child.eKind == EKind::Choice && child.IsOnce())
        {
            // Its alternatives are now those of a choice without a limit too.
            child.nMax = schema::s_nUnbounded;
            AbsorbRepetition(child);
            Splice(node.children, std::move(child));
        }
        else
            node.children.push_back(std::move(child));
    }
}

void Tidy(SNode& node)
{
    AbsorbRepetition(node);
    CollapseSingle(node);
    AbsorbRepetition(node);
    if (node.IsRepeated() && IsEmptiable(node))
        node.nMin = 0;
    // What may be empty need not be absent.
    const bool bMayBeEmpty = node.eKind == EKind::Sequence || node.eKind == EKind::All;
    if (bMayBeEmpty && node.nMin == 0 && node.nMax == 1 &&
        std::all_of(node.children.begin(), node.children.end(), IsEmptiable))
        node.nMin = 1;
}

SNode EmptySequence()
{
    return SNode();
}

void CollectStart(const SNode& node, std::vector<std::string>& names)
{
    if (names.size() > s_nMaxNamesInMessage)
        return;
    if (node.eKind == EKind::Element)
        names.push_back(node.pElement->name.strLocal);
    else if (node.eKind == EKind::Wildcard)
        names.emplace_back("any");
    for (const SNode& child : node.children)
    {
        CollectStart(child, names);
        if (node.eKind == EKind::Sequence && !IsEmptiable(child))
            break;
    }
}

bool IsSameElement(const schema::SElement& a, const schema::SElement& b)
{
    const auto valueOf = [](const schema::SElement& element)
    {
        return element.value ? std::make_pair(element.value->bFixed, element.value->strValue)
                             : std::make_pair(false, std::string());
    };
    return &a == &b ||
           (a.name == b.name && a.pType == b.pType && a.bNillable == b.bNillable && valueOf(a) == valueOf(b));
}

} // namespace

bool IsEmptiable(const SNode& node)
{
    if (node.nMin == 0)
        return true;
    if (!node.IsGroup())
        return false;
    if (node.eKind == EKind::Choice)
        return std::any_of(node.children.begin(), node.children.end(), IsEmptiable);
    return std::all_of(node.children.begin(), node.children.end(), IsEmptiable);
}

bool IsSame(const SNode& a, const SNode& b)
{
    return a.nMin == b.nMin && a.nMax == b.nMax && IsSameContent(a, b);
}

bool IsSameContent(const SNode& a, const SNode& b)
{
    if (a.eKind != b.eKind || a.children.size() != b.children.size())
        return false;
    if (a.eKind == EKind::Element && !IsSameElement(*a.pElement, *b.pElement))
        return false;
    if (a.eKind == EKind::Wildcard && a.pParticle->pWildcard != b.pParticle->pWildcard &&
        (a.pParticle->pWildcard->eNamespaces != b.pParticle->pWildcard->eNamespaces ||
         a.pParticle->pWildcard->namespaces != b.pParticle->pWildcard->namespaces ||
         a.pParticle->pWildcard->eProcess != b.pParticle->pWildcard->eProcess))
        return false;
    return std::equal(a.children.begin(), a.children.end(), b.children.begin(), IsSame);
}

std::string DescribeStart(const SNode& node)
{
    std::vector<std::string> names;
    CollectStart(node, names);
    std::string strText;
    for (std::size_t n = 0; n < names.size() && n < s_nMaxNamesInMessage; ++n)
        strText += (n == 0 ? "" : " or ") + names[n];
    return names.size() > s_nMaxNamesInMessage ? strText + " or others" : strText;
}

const std::vector<schema::SElement*>& CSubstitutes::Get(const schema::SElement& element)
{
    const auto [it, bNew] = m_substitutes.try_emplace(&element);
    if (bNew)
        it->second = schema::GetSubstitutes(element);
    return it->second;
}

bool CSubstitutes::IsHead(const schema::SElement& element)
{
    const std::vector<schema::SElement*>& substitutes = Get(element);
    return !substitutes.empty() && (substitutes.size() > 1 || substitutes.front() != &element);
}

SNode CSimplifier::Simplify(const schema::SParticle* pParticle)
{
    return Simplify(std::vector<const schema::SParticle*>{pParticle});
}

SNode CSimplifier::Simplify(const std::vector<const schema::SParticle*>& particles)
{
    SNode node = EmptySequence();
    for (const schema::SParticle* pParticle : particles)
    {
        if (!pParticle)
            continue;
        SNode child = Make(*pParticle);
        if (!node.pParticle)
            node.pParticle = pParticle;
        if (!child.IsEmptyGroup())
            AddToSequence(node, std::move(child));
    }
    Tidy(node);
    if (node.IsGroup())
        return node;
    SNode sequence = EmptySequence();
    sequence.pParticle = node.pParticle;
    sequence.children.push_back(std::move(node));
    return sequence;
}

SNode CSimplifier::Make(const schema::SParticle& particle)
{
    CountNode();
    if (particle.eTerm == schema::ETerm::Element)
        return MakeElement(particle);
    if (particle.pGroup)
        return MakeGroup(particle);
    SNode node;
    node.eKind = EKind::Wildcard;
    node.nMin = particle.nMin;
    node.nMax = particle.nMax;
    node.pParticle = &particle;
    return node;
}

SNode CSimplifier::MakeElement(const schema::SParticle& particle)
{
    SNode node;
    node.eKind = EKind::Element;
    node.nMin = particle.nMin;
    node.nMax = particle.nMax;
    node.pParticle = &particle;
    node.pElement = particle.pElement;
    if (m_expanded.count(particle.pElement) == 0)
        return node;
    SNode choice;
    choice.eKind = EKind::Choice;
    std::swap(choice.nMin, node.nMin);
    std::swap(choice.nMax, node.nMax);
    choice.pParticle = &particle;
    choice.pHead = particle.pElement;
    for (const schema::SElement* pSubstitute : m_substitutes.Get(*particle.pElement))
    {
        CountNode();
        node.pElement = pSubstitute;
        node.nMin = node.nMax = 1;
        choice.children.push_back(node);
    }
    Tidy(choice);
    return choice;
}

SNode CSimplifier::MakeGroup(const schema::SParticle& particle)
{
    SNode node;
    node.nMin = particle.nMin;
    node.nMax = particle.nMax;
    node.pParticle = &particle;
    node.pDefinition = particle.pDefinition;
    switch (particle.pGroup->eCompositor)
    {
    case schema::ECompositor::Sequence:
        node.eKind = EKind::Sequence;
        break;
    case schema::ECompositor::Choice:
        node.eKind = EKind::Choice;
        break;
    case schema::ECompositor::All:
        node.eKind = EKind::All;
        break;
    }
    for (const schema::SParticle* pParticle : particle.pGroup->particles)
    {
        const bool bImpossible = pParticle->eTerm == schema::ETerm::Element && pParticle->bReference &&
                                 m_substitutes.Get(*pParticle->pElement).empty();
        if (bImpossible)
        {
            if (node.eKind == EKind::Choice)
                continue;
            if (pParticle->nMin == 0)
                continue;
            WarnOnce(EWarning::AbstractElement, *pParticle, pParticle->pElement->name.strLocal);
        }
        SNode child = Make(*pParticle);
        if (node.eKind == EKind::Choice)
            AddToChoice(node, std::move(child));
        else if (!child.IsEmptyGroup())
            AddToSequence(node, std::move(child));
    }
    if (node.children.empty())
    {
        if (node.eKind == EKind::Choice && node.nMin > 0)
            WarnOnce(EWarning::EmptyChoice, particle);
        return EmptySequence();
    }
    Tidy(node);
    return node;
}

void CSimplifier::CountNode()
{
    if (++m_nNodes > s_nMaxNodes)
        throw CContentTooLarge();
}

void CSimplifier::WarnOnce(EWarning eWarning, const schema::SParticle& particle, const std::string& strName)
{
    if (m_warned.insert(&particle).second)
        m_warnings.Add(eWarning, particle.position, strName);
}

} // namespace quiver_gen::binding
