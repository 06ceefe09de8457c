#pragma once

#include "tools/quiver-gen/binding/Names.h"

#include <string>

namespace quiver_gen::binding
{

/// Names of the members of a class, apart from those of its bases and of the runtime's own operations.
class CMemberNames
{
public:
    /// @param pBase names of the base class, null for none.
    explicit CMemberNames(const CMemberNames* pBase = nullptr)
        : m_pBase(pBase)
    {
    }

    /// Keeps a name for something that is neither an element nor an attribute, as `Value`.
    void Reserve(const std::string& strName) { m_reserved.Add(strName); }

    /// Name for a child; with `Element` behind it where the runtime or a base class has it, and a number where another
    /// child does.
    std::string AddElement(const std::string& strWanted);

    /// Name for a wildcard or a nested group; with a number where another member has it.
    std::string AddOther(const std::string& strWanted) { return AddNumbered(strWanted); }

    /// Name for an attribute; with `Attribute` behind it where something else has it.
    std::string AddAttribute(const std::string& strWanted);

private:
    const CMemberNames* m_pBase;
    CNameScope m_names;
    CNameScope m_reserved;

    /// Whether the runtime, a base, or something that is no element or attribute has the name.
    bool IsReserved(const std::string& strName) const;
    bool Contains(const std::string& strName) const;
    std::string AddNumbered(const std::string& strName);
};

} // namespace quiver_gen::binding
