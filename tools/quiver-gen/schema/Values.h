#pragma once

#include "tools/quiver-gen/schema/Components.h"

#include <optional>
#include <string>
#include <string_view>

/// @file
/// Values of the primitive types, as far as schemas themselves hold them: bounds, enumerations, defaults.

namespace quiver_gen::schema
{

enum class EComparison
{
    Less,
    Equal,
    Greater,
    Unknown ///< neither; a date with a time zone and one without may lie too close
};

/// White space treated as a type asks for.
std::string ApplyWhiteSpace(std::string_view svText, EWhiteSpace eWhiteSpace);

/// Whether a text is written as an atomic built-in type needs it, white space already applied. Bounds of the integer
/// types are left to their facets.
/// @param pScope prefixes, for QNames.
bool IsLexical(EBuiltin eBuiltin, std::string_view svText, const SNamespaceScope* pScope);

/// Compares two values, both in their lexical form.
EComparison CompareValues(EBuiltin ePrimitive, std::string_view svA, std::string_view svB);

/// A text that two lexical forms share where they stand for the same value.
std::string GetValueKey(EBuiltin ePrimitive, std::string_view svText, const SNamespaceScope* pScope);

/// Length of an atomic value in the units of its type: characters, or octets of binary data.
std::uint64_t GetValueLength(EBuiltin ePrimitive, std::string_view svText);

/// Digits of a decimal number that count.
struct SDigits
{
    std::uint64_t nTotal = 0;
    std::uint64_t nFraction = 0;
};
SDigits CountDigits(std::string_view svDecimal);

} // namespace quiver_gen::schema
