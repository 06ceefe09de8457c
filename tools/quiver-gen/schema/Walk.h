#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quiver_gen::schema
{

/// Walks definitions that are made of others, without recursion: finds those that contain themselves and those that
/// nest too deep, and puts all in an order in which each follows what it is made of.
template <typename TComponent>
class CDependencyWalk
{
public:
    using CEdges = std::vector<TComponent*>;

    /// @param svKind what the components are called in messages: "the group".
    CDependencyWalk(std::string_view svKind, CDiagnostics& diagnostics)
        : m_strKind(svKind)
        , m_diagnostics(diagnostics)
    {
    }

    /// @param getEdges gives what a component is made of; called once for each component.
    template <typename TGetEdges>
    void Visit(TComponent& root, const TGetEdges& getEdges)
    {
        if (!Enter(root, getEdges))
            return;
        while (!m_open.empty())
        {
            SOpen& open = m_open.back();
            if (open.nNext < open.edges.size())
            {
                TComponent* pNext = open.edges[open.nNext++];
                if (!Enter(*pNext, getEdges))
                    CheckKnown(*open.pComponent, *pNext);
                continue;
            }
            Leave();
        }
    }

    std::vector<TComponent*> TakeOrder() { return std::move(m_order); }

private:
    struct SState
    {
        bool bOpen = true;
        std::size_t nDepth = 1; ///< as far as its parts are known
        std::size_t nPlace = 0; ///< among the open ones
    };

    struct SOpen
    {
        TComponent* pComponent;
        CEdges edges;
        std::size_t nNext = 0;
    };

    /// @return whether the component is new.
    template <typename TGetEdges>
    bool Enter(TComponent& component, const TGetEdges& getEdges)
    {
        const auto [it, bNew] = m_states.try_emplace(&component);
        if (!bNew)
            return false;
        it->second.nPlace = m_open.size();
        m_open.push_back({&component, getEdges(component), 0});
        return true;
    }

    void CheckKnown(TComponent& user, TComponent& part)
    {
        const SState& state = m_states[&part];
        if (!state.bOpen)
            m_states[&user].nDepth = std::max(m_states[&user].nDepth, state.nDepth + 1);
        else
        {
            m_bCircular = true;
            m_diagnostics.AddError(part.position,
                                   m_strKind + Quote(part) + " contains itself" + DescribeWay(state.nPlace));
        }
    }

    static std::string Quote(const TComponent& component)
    {
        return component.name.strLocal.empty() ? std::string() : " '" + component.name.strLocal + "'";
    }

    /// By way of what the open component at a place leads back to itself, if that is not itself at once.
    std::string DescribeWay(std::size_t nPlace) const
    {
        constexpr std::size_t nMost = 5;
        std::string strWay;
        std::size_t nNames = 0;
        auto it = m_open.begin() + static_cast<std::ptrdiff_t>(nPlace) + 1;
        for (; it != m_open.end() && nNames < nMost; ++it)
            if (!it->pComponent->name.strLocal.empty())
                strWay += (nNames++ == 0 ? " by way of '" : ", '") + it->pComponent->name.strLocal + "'";
        return it == m_open.end() ? strWay : strWay + " and others";
    }

    void Leave()
    {
        TComponent& component = *m_open.back().pComponent;
        m_open.pop_back();
        SState& state = m_states[&component];
        state.bOpen = false;
        m_order.push_back(&component);
        if (state.nDepth == s_nMaxDepth + 1 && !m_bCircular)
            m_diagnostics.AddError(component.position, m_strKind + Quote(component) +
                                                           " rests on a chain of more than " +
                                                           std::to_string(s_nMaxDepth) + " others");
        if (!m_open.empty())
        {
            SState& user = m_states[m_open.back().pComponent];
            user.nDepth = std::max(user.nDepth, state.nDepth + 1);
        }
    }

    std::string m_strKind;
    bool m_bCircular = false; ///< the length of a circle says nothing
    CDiagnostics& m_diagnostics;
    std::unordered_map<TComponent*, SState> m_states;
    std::vector<SOpen> m_open;
    std::vector<TComponent*> m_order;
};

} // namespace quiver_gen::schema
