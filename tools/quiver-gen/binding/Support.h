#pragma once

#include "tools/quiver-gen/binding/Warnings.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// What becomes of each construct of XML Schema 1.0: the page docs/schema_support.md as data. Where classes read more
/// freely than a construct says, the row names the warnings of Warnings.h that tell so.

namespace quiver_gen::binding
{

/// A row: constructs that are mapped in the same way.
struct SSupport
{
    /// Elements of the schema language, between blanks; of the second table types, of the third attributes of documents.
    std::string_view svConstructs;
    std::string_view svAttributes; ///< of each of these elements, between blanks; empty for the elements themselves
    std::string_view svMapping;    ///< what it becomes in C++
    std::string_view svWarnings;   ///< identifiers of the warnings that tell where it is looser, between blanks
    /// Between blanks: a stem of tests/tools/gen/constructs, or a test as `Suite.Name`.
    std::string_view svProofs;
};

/// Rows under one heading of the page.
struct SSupportSection
{
    std::string_view svTitle;
    std::string_view svConstruct; ///< heading of the first column
    const SSupport* pFirst;
    std::size_t nCount;

    const SSupport* begin() const { return pFirst; }
    const SSupport* end() const { return pFirst + nCount; }
};

const std::vector<SSupportSection>& GetSupport();

/// The page, in Markdown.
std::string PrintSupport();

} // namespace quiver_gen::binding
