#include "tools/quiver-gen/schema/Resolver.h"

#include "tools/quiver-gen/schema/Walk.h"

#include <algorithm>

namespace quiver_gen::schema
{

namespace
{

class CResolver
{
public:
    CResolver(SSchemaSet& set, SDraft& draft, SOrder& order, CDiagnostics& diagnostics)
        : m_set(set)
        , m_draft(draft)
        , m_order(order)
        , m_diagnostics(diagnostics)
    {
    }

    void Resolve()
    {
        // A document that is redefined comes after the one that redefines it, and may redefine others itself.
        for (auto it = m_draft.redefinitions.rbegin(); it != m_draft.redefinitions.rend(); ++it)
            Redefine(*it);
        for (SNamespace& space : m_set.namespaces)
        {
            DropRedefined(space.types);
            DropRedefined(space.groups);
            DropRedefined(space.attributeGroups);
        }
        ResolveAll();
        if (m_diagnostics.HasErrors())
            return;
        Connect();
        Order();
    }

private:
    // --- Redefinitions

    void Redefine(SRedefinition& redefinition)
    {
        SNamespace& space = m_set.GetNamespace(redefinition.name.strNamespace);
        switch (redefinition.eSymbol)
        {
        case ESymbol::Type:
            Replace(space.types, redefinition, redefinition.pType, redefinition.pFormerType, "the type");
            break;
        case ESymbol::Group:
            Replace(space.groups, redefinition, redefinition.pGroup, redefinition.pFormerGroup, "the group");
            break;
        case ESymbol::AttributeGroup:
            Replace(space.attributeGroups, redefinition, redefinition.pAttributeGroup,
                    redefinition.pFormerAttributeGroup, "the attribute group");
            break;
        case ESymbol::Element:
        case ESymbol::Attribute:
        case ESymbol::Notation:
        case ESymbol::Constraint:
            break;
        }
    }

    template <typename TComponent>
    void Replace(SNamespace::STable<TComponent>& table, const SRedefinition& redefinition, TComponent* pNew,
                 TComponent*& pFormer, const std::string& strKind)
    {
        if (!pNew)
            return;
        const std::string strWhat = strKind + " '" + redefinition.name.strLocal + "' cannot be redefined: ";
        TComponent*& pEntry = table.byName[redefinition.name.strLocal];
        if (!pEntry || pEntry->position.nFile == redefinition.position.nFile || pEntry == pNew)
        {
            const SDocument& target = m_draft.documents[redefinition.nTarget];
            m_diagnostics.AddError(redefinition.position,
                                   strWhat + "'" + m_set.files[static_cast<std::size_t>(target.nFile)].strPath +
                                       "' does not define it");
            // Whatever refers to it is answered, so that this stays the only message.
            pEntry = pFormer = pNew;
            return;
        }
        if (!GetReach(redefinition.nTarget).count(pEntry->position.nFile))
        {
            m_diagnostics.AddError(redefinition.position, strWhat + "another definition took its place at " +
                                                              m_set.Describe(pEntry->position));
            return;
        }
        pFormer = pEntry;
        pFormer->bRedefined = true;
        pNew->pRedefines = pFormer;
        pEntry = pNew;
        table.list.push_back(pNew);
    }

    /// The files that a document brings by including and redefining.
    const std::unordered_set<int>& GetReach(std::size_t nDocument)
    {
        const auto [it, bNew] = m_reaches.try_emplace(nDocument);
        if (!bNew)
            return it->second;
        std::vector<std::size_t> documents{nDocument};
        for (std::size_t n = 0; n < documents.size(); ++n)
        {
            const SDocument& document = m_draft.documents[documents[n]];
            if (it->second.insert(document.nFile).second)
                documents.insert(documents.end(), document.includes.begin(), document.includes.end());
        }
        return it->second;
    }

    template <typename TComponent>
    static void DropRedefined(SNamespace::STable<TComponent>& table)
    {
        auto& list = table.list;
        list.erase(std::remove_if(list.begin(), list.end(), [](const TComponent* p) { return p->bRedefined; }),
                   list.end());
        std::stable_sort(list.begin(), list.end(),
                         [](const TComponent* pA, const TComponent* pB) { return pA->position < pB->position; });
    }

    // --- References

    void ResolveAll()
    {
        for (const auto& reference : m_draft.types)
            ResolveType(reference);
        for (const auto& reference : m_draft.simpleTypes)
            ResolveSimpleType(reference);
        ResolveIn(m_draft.elements, &SNamespace::elements, "the element");
        ResolveIn(m_draft.attributes, &SNamespace::attributes, "the attribute");
        ResolveIn(m_draft.constraints, &SNamespace::constraints, "the identity constraint");
        ResolveIn(m_draft.groups, &SNamespace::groups, "the group", &SRedefinition::pFormerGroup);
        ResolveIn(m_draft.attributeGroups, &SNamespace::attributeGroups, "the attribute group",
                  &SRedefinition::pFormerAttributeGroup);
    }

    void ReportUndefined(const SReference& reference, std::string_view svKind)
    {
        m_diagnostics.AddError(reference.position,
                               std::string(svKind) + " '" + reference.name.ToString() + "' is not defined");
    }

    template <typename TComponent>
    void ResolveIn(const std::vector<SPointerReference<TComponent>>& references,
                   SNamespace::STable<TComponent> SNamespace::*ppTable, std::string_view svKind,
                   TComponent* SRedefinition::*ppFormer = nullptr)
    {
        for (const auto& reference : references)
        {
            if (ppFormer && reference.nRedefinition != s_nNoRedefinition)
            {
                *reference.ppTarget = m_draft.redefinitions[reference.nRedefinition].*ppFormer;
                continue;
            }
            const SNamespace* pSpace = m_set.FindNamespace(reference.name.strNamespace);
            *reference.ppTarget = pSpace ? (pSpace->*ppTable).Find(reference.name.strLocal) : nullptr;
            if (!*reference.ppTarget)
                ReportUndefined(reference, svKind);
        }
    }

    void ResolveType(const SPointerReference<SType>& reference)
    {
        if (reference.nRedefinition != s_nNoRedefinition)
        {
            *reference.ppTarget = m_draft.redefinitions[reference.nRedefinition].pFormerType;
            if (*reference.ppTarget && reference.bSimple && !(*reference.ppTarget)->bSimple)
                ReportComplex(reference);
            return;
        }
        *reference.ppTarget = m_set.FindType(reference.name);
        if (!*reference.ppTarget)
            ReportUndefined(reference, "the type");
        else if (reference.bSimple && !(*reference.ppTarget)->bSimple)
            ReportComplex(reference);
    }

    void ResolveSimpleType(const SPointerReference<SSimpleType>& reference)
    {
        SType* pType = m_set.FindType(reference.name);
        if (!pType)
            ReportUndefined(reference, "the type");
        else if (!pType->bSimple)
            ReportComplex(reference);
        else
            *reference.ppTarget = pType->AsSimple();
    }

    void ReportComplex(const SReference& reference)
    {
        m_diagnostics.AddError(reference.position,
                               "'" + reference.name.ToString() + "' is a complex type, where a simple one is needed");
    }

    // --- What follows from references

    void Connect()
    {
        for (auto& [pType, inner] : m_draft.unionMembers)
            pType->members.insert(pType->members.end(), inner.begin(), inner.end());
        for (SParticle& particle : m_set.particles)
            if (particle.pDefinition)
                particle.pGroup = particle.pDefinition->pGroup;
        for (SElement& element : m_set.elements)
            if (element.pHead)
                element.pHead->members.push_back(&element);
    }

    // --- Order

    static std::vector<SType*> GetTypeEdges(const SType& type)
    {
        std::vector<SType*> edges;
        if (type.pBase)
            edges.push_back(type.pBase);
        if (const SSimpleType* pSimple = type.AsSimple())
        {
            if (pSimple->pItem)
                edges.push_back(pSimple->pItem);
            edges.insert(edges.end(), pSimple->members.begin(), pSimple->members.end());
        }
        return edges;
    }

    /// The groups that a group refers to. The depth of the recursion is that of the document.
    static void CollectGroups(const SModelGroup& group, std::vector<SGroupDefinition*>& groups)
    {
        for (const SParticle* pParticle : group.particles)
        {
            if (pParticle->pDefinition)
                groups.push_back(pParticle->pDefinition);
            else if (pParticle->pGroup)
                CollectGroups(*pParticle->pGroup, groups);
        }
    }

    void Order()
    {
        CDependencyWalk<SType> types("the type", m_diagnostics);
        for (SSimpleType& type : m_set.simpleTypes)
            types.Visit(type, GetTypeEdges);
        for (SComplexType& type : m_set.complexTypes)
            types.Visit(type, GetTypeEdges);
        m_order.types = types.TakeOrder();

        CDependencyWalk<SGroupDefinition> groups("the group", m_diagnostics);
        for (SGroupDefinition& group : m_set.groups)
            groups.Visit(group,
                         [](const SGroupDefinition& user)
                         {
                             std::vector<SGroupDefinition*> edges;
                             CollectGroups(*user.pGroup, edges);
                             return edges;
                         });
        m_order.groups = groups.TakeOrder();

        OrderAttributeGroups();

        CDependencyWalk<SElement> elements("the substitution group of the element", m_diagnostics);
        for (SElement& element : m_set.elements)
            if (element.pHead)
                elements.Visit(element, [](const SElement& user)
                               { return user.pHead ? std::vector<SElement*>{user.pHead} : std::vector<SElement*>(); });
        m_order.elements = elements.TakeOrder();
    }

    void OrderAttributeGroups()
    {
        std::unordered_map<const SAttributeGroup*, const SAttributeGroupDraft*> drafts;
        for (const SAttributeGroupDraft& draft : m_draft.attributeGroupDrafts)
            drafts.emplace(draft.pGroup, &draft);
        CDependencyWalk<SAttributeGroup> walk("the attribute group", m_diagnostics);
        for (const SAttributeGroupDraft& draft : m_draft.attributeGroupDrafts)
            walk.Visit(*draft.pGroup,
                       [&](const SAttributeGroup& user)
                       {
                           std::vector<SAttributeGroup*> edges;
                           for (const SAttributeItem& item : drafts.at(&user)->attributes.items)
                               if (item.pGroup)
                                   edges.push_back(item.pGroup);
                           return edges;
                       });
        m_order.attributeGroups = walk.TakeOrder();
    }

    SSchemaSet& m_set;
    SDraft& m_draft;
    SOrder& m_order;
    CDiagnostics& m_diagnostics;
    std::unordered_map<std::size_t, std::unordered_set<int>> m_reaches;
};

} // namespace

void ResolveReferences(SSchemaSet& set, SDraft& draft, SOrder& order, CDiagnostics& diagnostics)
{
    CResolver(set, draft, order, diagnostics).Resolve();
}

} // namespace quiver_gen::schema
