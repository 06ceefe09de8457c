#include "tools/quiver-gen/binding/MemberNames.h"

namespace quiver_gen::binding
{

std::string CMemberNames::AddElement(const std::string& strWanted)
{
    return AddNumbered(IsReserved(strWanted) ? strWanted + "Element" : strWanted);
}

std::string CMemberNames::AddAttribute(const std::string& strWanted)
{
    return AddNumbered(IsReserved(strWanted) || Contains(strWanted) ? strWanted + "Attribute" : strWanted);
}

bool CMemberNames::IsReserved(const std::string& strName) const
{
    return IsReservedMember(strName) || m_reserved.Contains(strName) || (m_pBase && m_pBase->Contains(strName));
}

bool CMemberNames::Contains(const std::string& strName) const
{
    for (const CMemberNames* pNames = this; pNames; pNames = pNames->m_pBase)
        if (pNames->m_names.Contains(strName) || pNames->m_reserved.Contains(strName))
            return true;
    return false;
}

std::string CMemberNames::AddNumbered(const std::string& strName)
{
    if (!Contains(strName))
        return m_names.AddUnique(strName);
    // The base has it; numbers begin as they would in one class.
    m_names.Add(strName);
    std::string strNumbered;
    do
        strNumbered = m_names.AddUnique(strName);
    while (m_pBase && m_pBase->Contains(strNumbered));
    return strNumbered;
}

} // namespace quiver_gen::binding
