#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/check/Texts.h"

#include "quiver/generated/SimpleType.h"

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace quiver_gen::check
{

/// A simple type that the library checks values by, made while the program runs.
class CValueType
{
public:
    CValueType();
    CValueType(const CValueType&) = delete;
    CValueType& operator=(const CValueType&) = delete;

    const QvXmlLib9::CSimpleType& Get() const { return m_type; }

    /// Reads a text as a document has it, as ValueOf does for a compiled type: all that it could throw is thrown.
    /// @return the text, white space treated.
    std::wstring Read(std::wstring strText, const wchar_t* lpctName) const;

    /// A text that Read gave, as the value prints.
    std::wstring Print(const std::wstring& strText) const;

    /// Whether members print values as they were read, see s_bKeepsText.
    bool KeepsText() const;

private:
    friend class CSimpleTypes;

    std::wstring Convert(const std::wstring& strText, bool bPrint) const;

    QvXmlLib9::CSimpleType m_type;
    binding::EValue m_eValue = binding::EValue::String;
    const CValueType* m_pItem = nullptr; ///< of a list
    std::vector<const QvXmlLib9::CSimpleType*> m_members;
    std::vector<const wchar_t*> m_values;
};

/// The simple types of a binding.
class CSimpleTypes
{
public:
    CSimpleTypes(const binding::SBinding& binding, CTexts& texts);

    /// @param type of the binding, or a built-in one.
    const CValueType& Get(const binding::SSimpleType& type);

private:
    void Fill(CValueType& target, const binding::SSimpleType& type, CTexts& texts);

    std::deque<CValueType> m_types;
    std::unordered_map<const binding::SSimpleType*, CValueType*> m_byType;
};

} // namespace quiver_gen::check
