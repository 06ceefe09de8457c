#pragma once

#include <array>
#include <string_view>

namespace QvXmlLib9
{

/// The XML declarations that a Fast Infoset document may begin with (X.891, 12.3), in UTF-8. `FInfoDecl` n stands for
/// the entry n - 1.
inline constexpr std::array<std::string_view, 9> g_fiDeclarations = {
    "<?xml encoding='finf'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
};

/// What identifies a Fast Infoset document, and version 1 of the form (X.891, 12.6 and 12.7).
inline constexpr std::string_view g_svFIIdentification("\xE0\x00\x00\x01", 4);

} // namespace QvXmlLib9
