#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace quiver_gen::cpp
{

/// The names that a binding declares, by which a name of the library or of another namespace may be hidden.
class CNameTable
{
public:
    explicit CNameTable(const binding::SBinding& binding);

    /// Whether a C++ namespace, empty for the global one, holds a namespace, a class or another type of a name.
    bool Declares(const std::string& strNamespace, std::string_view svName) const;

    /// Name of a collection type for a class, empty if a type of the schema has that name.
    std::string GetCollectionName(const binding::SClass& item) const;

    /// The function that gives the simple types with names, as every namespace can say it; empty for none.
    const std::string& GetNamedTypes() const { return m_strNamedTypes; }
    void SetNamedTypes(std::string strFunction) { m_strNamedTypes = std::move(strFunction); }

private:
    std::string m_strNamedTypes;
    std::set<std::string, std::less<>> m_names;
};

/// Says names as they have to be said at a place of the code.
class CScope
{
public:
    /// @param strNamespace C++ namespace of the place, empty for the global one.
    /// @param bUsing whether the names of the library are said without its namespace, as sources do.
    CScope(const CNameTable& names, std::string strNamespace, bool bUsing);

    const std::string& GetNamespace() const { return m_strNamespace; }

    /// A name of namespace QvXmlLib9.
    std::string Library(std::string_view svName) const;

    /// A smart pointer to a type.
    std::string Pointer(std::string_view svType) const;

    std::string Name(const binding::SClass& type) const;

    /// The struct of a simple type.
    std::string Name(const binding::SSimpleType& type) const;

    /// What a value of a simple type is held as.
    std::string Value(const binding::SSimpleType& type) const;

    /// See CNameTable.
    const std::string& NamedTypes() const { return m_names.GetNamedTypes(); }

    /// The name of an entity of a C++ namespace.
    std::string Name(const std::string& strNamespace, std::string_view svName) const;

private:
    /// Whether a name that is declared in the global namespace, or that a using directive puts there, is found from
    /// here.
    bool IsHidden(std::string_view svName, const std::string& strMeant, bool bGlobalToo) const;

    const CNameTable& m_names;
    std::string m_strNamespace;
    bool m_bUsing;
};

/// Whether a value is passed by value, not by reference.
bool IsScalar(const binding::SSimpleType& type);

/// Whether a value is text, or a list of texts.
bool HoldsText(const binding::SSimpleType& type);

} // namespace quiver_gen::cpp
