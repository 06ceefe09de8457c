#include "quiver/document/ReadBudget.h"

#include "quiver/document/AttributesOf.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/foundation/Exceptions.h"

#include <algorithm>

namespace QvXmlLib9
{

thread_local CReadBudget* CReadBudget::t_pCurrent = nullptr;

CReadBudget::CReadBudget(const CXmlElement& root)
    : m_nStepsLeft(s_nStepsAtLeast + s_nStepsPerNode * root.Store().GetNodeCount())
    , m_pOuter(t_pCurrent)
{
    t_pCurrent = this;
}

void CReadBudget::Spend(std::uint64_t nSteps)
{
    if (nSteps > m_nStepsLeft)
        throw CQvException(L"The groups of the document take too many steps to be told apart");
    m_nStepsLeft -= nSteps;
}

bool CReadBudget::HasNil(const CXmlElement& element)
{
    if (m_pNilAsked != &element)
    {
        const CAttributesOf attributes(element);
        Spend(static_cast<std::uint64_t>(std::distance(attributes.begin(), attributes.end())));
        m_bNil = std::any_of(attributes.begin(), attributes.end(),
                             [](const CXmlAttribute* pAttribute) { return pAttribute->IsNilAttribute(); });
        m_pNilAsked = &element;
    }
    return m_bNil;
}

} // namespace QvXmlLib9
