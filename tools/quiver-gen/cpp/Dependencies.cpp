#include "tools/quiver-gen/cpp/Dependencies.h"

#include "tools/quiver-gen/cpp/Fields.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

/// A graph of numbers. Walks keep their own stack: what a schema nests may be deeper than the program's.
using Graph = std::vector<std::vector<std::size_t>>;

/// A walk over all nodes, children before their parents.
/// @param Leave called with each node once, when all its children have been left, but for circles.
template <class TLeave>
void WalkPostOrder(const Graph& graph, TLeave Leave)
{
    std::vector<bool> seen(graph.size(), false);
    std::vector<std::pair<std::size_t, std::size_t>> stack;
    for (std::size_t nRoot = 0; nRoot < graph.size(); ++nRoot)
    {
        if (!seen[nRoot])
            stack.emplace_back(nRoot, 0);
        seen[nRoot] = true;
        while (!stack.empty())
        {
            auto& [nNode, nNext] = stack.back();
            if (nNext == graph[nNode].size())
            {
                Leave(nNode);
                stack.pop_back();
                continue;
            }
            const std::size_t nChild = graph[nNode][nNext++];
            if (!seen[nChild])
            {
                seen[nChild] = true;
                stack.emplace_back(nChild, 0);
            }
        }
    }
}

/// Numbers the circles of a graph, and the nodes in none, so that each has a higher number than what it points to.
std::vector<std::size_t> FindCircles(const Graph& graph)
{
    // Kosaraju's algorithm: what a walk against the arrows reaches from the node that was left last is one circle.
    std::vector<std::size_t> order;
    WalkPostOrder(graph, [&](std::size_t nNode) { order.push_back(nNode); });
    Graph reverse(graph.size());
    for (std::size_t nNode = 0; nNode < graph.size(); ++nNode)
    {
        for (const std::size_t nChild : graph[nNode])
            reverse[nChild].push_back(nNode);
    }
    constexpr std::size_t nNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> circles(graph.size(), nNone);
    std::size_t nCircles = 0;
    for (auto it = order.rbegin(); it != order.rend(); ++it)
    {
        if (circles[*it] != nNone)
            continue;
        std::vector<std::size_t> pending = {*it};
        circles[*it] = nCircles;
        while (!pending.empty())
        {
            const std::size_t nNode = pending.back();
            pending.pop_back();
            for (const std::size_t nParent : reverse[nNode])
            {
                if (circles[nParent] == nNone)
                {
                    circles[nParent] = nCircles;
                    pending.push_back(nParent);
                }
            }
        }
        ++nCircles;
    }
    // They were found from the top.
    for (std::size_t& nCircle : circles)
        nCircle = nCircles - 1 - nCircle;
    return circles;
}

/// All declarations of a binding as the nodes of a graph.
class CDeclarations
{
public:
    explicit CDeclarations(const SBinding& binding)
    {
        for (const SNamespace& ns : binding.namespaces)
        {
            const std::size_t nNamespace = m_namespaces.size();
            m_namespaces.push_back(&ns);
            for (const SSimpleType* const pType : ns.simpleTypes)
                Add(pType, nNamespace);
            for (const SClass* const pClass : ns.classes)
                Add(pClass, nNamespace);
        }
        Connect();
    }

    std::vector<SLayer> FindLayers() const;

private:
    void Add(const void* pDeclaration, std::size_t nNamespace)
    {
        m_numbers.emplace(pDeclaration, m_owners.size());
        m_owners.push_back(nNamespace);
    }

    void Connect()
    {
        m_needed.resize(m_owners.size());
        std::size_t nNode = 0;
        for (const SNamespace* const pNamespace : m_namespaces)
        {
            const auto Visit = [&](const auto& needed)
            {
                AddEdge(nNode, &needed);
            };
            for (const SSimpleType* const pType : pNamespace->simpleTypes)
            {
                ForEachNeeded(*pType, Visit);
                ++nNode;
            }
            for (const SClass* const pClass : pNamespace->classes)
            {
                ForEachNeeded(*pClass, Visit, Visit);
                ++nNode;
            }
        }
    }

    void AddEdge(std::size_t nNode, const void* pNeeded)
    {
        const auto it = m_numbers.find(pNeeded);
        if (it != m_numbers.end())
            m_needed[nNode].push_back(it->second);
    }

    std::vector<std::size_t> FindCirclesOfNamespaces() const
    {
        Graph graph(m_namespaces.size());
        for (std::size_t nNode = 0; nNode < m_needed.size(); ++nNode)
        {
            for (const std::size_t nNeeded : m_needed[nNode])
                graph[m_owners[nNode]].push_back(m_owners[nNeeded]);
        }
        for (std::vector<std::size_t>& edges : graph)
        {
            std::sort(edges.begin(), edges.end());
            edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
        }
        return FindCircles(graph);
    }

    std::vector<const SNamespace*> m_namespaces;
    std::unordered_map<const void*, std::size_t> m_numbers;
    std::vector<std::size_t> m_owners; ///< by node: index of its namespace
    Graph m_needed;
};

std::vector<SLayer> CDeclarations::FindLayers() const
{
    const std::vector<std::size_t> circles = FindCirclesOfNamespaces();
    // A step to another namespace of the same circle is a step to a lower layer.
    std::vector<std::size_t> levels(m_needed.size(), 0);
    WalkPostOrder(m_needed,
                  [&](std::size_t nNode)
                  {
                      const std::size_t nOwner = m_owners[nNode];
                      for (const std::size_t nNeeded : m_needed[nNode])
                      {
                          const std::size_t nOther = m_owners[nNeeded];
                          if (circles[nOther] == circles[nOwner])
                              levels[nNode] = std::max(levels[nNode], levels[nNeeded] + (nOther == nOwner ? 0 : 1));
                      }
                  });

    std::map<std::tuple<std::size_t, std::size_t, std::size_t>, SLayer> layers;
    std::size_t nNode = 0;
    for (std::size_t nOwner = 0; nOwner < m_namespaces.size(); ++nOwner)
    {
        const SNamespace* const pNamespace = m_namespaces[nOwner];
        const auto GetLayer = [&]() -> SLayer&
        {
            SLayer& layer = layers[{circles[nOwner], levels[nNode], nOwner}];
            layer.pNamespace = pNamespace;
            layer.nLayer = levels[nNode++];
            return layer;
        };
        for (const SSimpleType* const pType : pNamespace->simpleTypes)
            GetLayer().simpleTypes.push_back(pType);
        for (const SClass* const pClass : pNamespace->classes)
            GetLayer().classes.push_back(pClass);
    }
    std::vector<SLayer> result;
    for (auto& [key, layer] : layers)
        result.push_back(std::move(layer));
    return result;
}

} // namespace

void ForEachNeeded(const SSimpleType& type, const std::function<void(const SSimpleType&)>& Visit)
{
    if (type.pItem != nullptr && !type.pItem->bBuiltin)
        Visit(*type.pItem);
}

void ForEachNeeded(const SClass& type, const std::function<void(const SSimpleType&)>& VisitType,
                   const std::function<void(const SClass&)>& VisitClass)
{
    if (type.pBase != nullptr)
        VisitClass(*type.pBase);
    for (const SField& field : GetFields(type))
    {
        if (field.pType != nullptr && !field.pType->bBuiltin && !field.bInherited)
            VisitType(*field.pType);
    }
}

void ForEachUsed(const SSimpleType& type, const std::function<void(const SSimpleType&)>& Visit)
{
    ForEachNeeded(type, Visit);
    for (const SSimpleType* const pMember : type.memberTypes)
    {
        if (!pMember->bBuiltin)
            Visit(*pMember);
    }
}

void ForEachUsed(const SClass& type, const std::function<void(const SSimpleType&)>& VisitType,
                 const std::function<void(const SClass&)>& VisitClass)
{
    if (type.pBase != nullptr)
        VisitClass(*type.pBase);
    for (const SField& field : GetFields(type))
    {
        if (field.pType != nullptr && !field.pType->bBuiltin)
            VisitType(*field.pType);
        if (field.pClass != nullptr)
            VisitClass(*field.pClass);
    }
    for (const SClass::SAlternative& alternative : type.alternatives)
        VisitClass(*alternative.pClass);
}

std::vector<SLayer> FindLayers(const SBinding& binding)
{
    return CDeclarations(binding).FindLayers();
}

} // namespace quiver_gen::cpp
