#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quiver_gen::cpp
{

/// The constants of a source for the XML namespaces that it names.
class CUris
{
public:
    /// @param strMain the one that most of the source is about.
    CUris(const binding::SBinding& binding, std::string strMain);

    /// An expression for an XML namespace, whose constant is defined from now on.
    std::string Use(const std::string& strUri);

    /// The same where the constant itself is needed, also for no namespace.
    std::string UseConstant(const std::string& strUri);

    /// Definitions of the constants that were used, in an unnamed namespace; empty if there are none.
    std::string Define() const;

    /// How many constants there are.
    std::size_t GetCount() const { return m_constants.size(); }

    /// Forgets the constants that came behind the first ones.
    void CutTo(std::size_t nCount);

private:
    std::string MakeName(const std::string& strUri);

    const binding::SBinding& m_binding;
    std::string m_strMain;
    std::vector<std::pair<std::string, std::string>> m_constants;  ///< namespace and name
    std::unordered_map<std::string, std::size_t> m_byUri;          ///< where a namespace's constant stands
    std::unordered_set<std::string> m_names;                       ///< of the constants
    std::unordered_map<std::string, std::size_t> m_numbers;        ///< the number that a name's next namesake tries
    std::unordered_map<std::string, std::string> m_filesOfSchemas; ///< by namespace, of those that have classes
};

} // namespace quiver_gen::cpp
