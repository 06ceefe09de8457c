#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

/// @file
/// C++ names from the names and texts of schemas. All of them are ASCII, whatever the schema's language, since
/// compilers and file systems agree on nothing more.

namespace quiver_gen::binding
{

/// Lower-case form of an ASCII name; other bytes stay.
std::string ToLower(std::string_view svText);

/// An identifier's part in PascalCase from an XML name: `ship-to` gives `ShipTo`, `v1.0` gives `V1_0`. It may begin
/// with a digit, as it stands behind a prefix such as `C` or `Get`. Never empty.
std::string ToPascal(std::string_view svName);

/// An enumerator from a value's text: `first-class` gives `FirstClass`, `-1` gives `Minus1`, `1.0` gives `_1_0`, the
/// empty text gives `Empty`. Not a keyword and no macro of a common header.
std::string ToEnumerator(std::string_view svText);

/// A part of a C++ namespace: `camt.053` gives `camt_053`. Not a keyword and no macro of a common header.
std::string ToNamespacePart(std::string_view svText);

/// Whether a text can be a C++ name as it is: letters, digits and underscores, and no digit first.
bool IsIdentifier(std::string_view svText);

/// Whether `Get` and this name would be an operation of the runtime or a macro of a common header.
bool IsReservedMember(std::string_view svName);

/// Whether a class of this stem would hide a class of the runtime that generated code names: `Element` for `CElement`.
bool IsReservedStem(std::string_view svStem);

/// Names that are taken, and new ones that are not.
class CNameScope
{
public:
    enum class ECase
    {
        Distinct,
        Blind ///< names that differ only in case are the same, as some file systems see it
    };

    explicit CNameScope(ECase eCase = ECase::Distinct)
        : m_eCase(eCase)
    {
    }

    bool Contains(std::string_view svName) const { return m_names.count(Fold(svName)) != 0; }
    /// @return whether the name was free.
    bool Add(std::string_view svName) { return m_names.insert(Fold(svName)).second; }

    /// The name if it is free, or else with the lowest number from 2 that makes it so, now taken.
    std::string AddUnique(const std::string& strName);

private:
    ECase m_eCase;
    std::unordered_set<std::string> m_names;
    std::unordered_map<std::string, int> m_nextNumbers;

    std::string Fold(std::string_view svName) const;
};

} // namespace quiver_gen::binding
