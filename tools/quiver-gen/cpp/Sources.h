#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/cpp/Fields.h"
#include "tools/quiver-gen/cpp/Layout.h"
#include "tools/quiver-gen/cpp/Scope.h"
#include "tools/quiver-gen/cpp/Writer.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// Lines in one source, about, so that a compiler takes seconds for it.
constexpr std::size_t s_nLinesOfSource = 4000;

/// The class that makes the objects of documents' root elements: where it is and what it is called.
struct SFactory
{
    std::string strNamespace;
    std::string strName;
    std::string strStem; ///< of its files

    /// The function that gives all simple types with names.
    std::string GetNamedTypes() const { return "GetTypesOf" + strName; }
    std::string GetQualifiedNamedTypes() const { return Qualify(GetNamedTypes()); }
    /// Its declaration, empty if a text does not name it.
    std::string DeclareNamedTypes(const std::string& strText) const;

    /// The constant with all global elements and attributes.
    std::string GetKnown() const { return "s_knownTo" + strName; }
    std::string GetQualifiedKnown() const { return Qualify(GetKnown()); }

private:
    std::string Qualify(const std::string& strMember) const
    {
        return "::" + (strNamespace.empty() ? std::string() : strNamespace + "::") + strMember;
    }
};

/// Everything that headers and sources are printed from.
struct SProject
{
    const binding::SBinding& binding;
    const SWriteOptions& options;
    const CLayout& layout;
    const CNameTable& names;
    const CUsage& usage;
    const SFactory& factory;
};

/// What a generated file begins with.
std::string PrintTitle(const SWriteOptions& options);

/// Include lines in the order of the house, without duplicates. Generated headers are named by their stems.
std::string PrintIncludes(std::vector<std::string> headers);

/// Text in a C++ namespace, which may be the global one.
/// @param strComment stands in front of it.
std::string PrintNamespace(const std::string& strNamespace, const std::string& strText,
                           const std::string& strComment = {});

/// The comment that begins a section of a source.
std::string PrintRule(const std::string& strTitle);

SFile PrintHeader(const SProject& project, const SHeader& header);

/// The sources of a group: one, or as many parts as its size asks for, or exactly so many as the options say.
std::vector<SFile> PrintSources(const SProject& project, const SSourceGroup& group, CStems& stems);

} // namespace quiver_gen::cpp
