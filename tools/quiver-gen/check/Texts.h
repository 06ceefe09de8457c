#pragma once

#include <set>
#include <string>

namespace quiver_gen::check
{

/// Texts of a binding as the library takes them, where compiled classes have literals: each stays where it is.
class CTexts
{
public:
    /// @param strText UTF-8.
    const wchar_t* Keep(const std::string& strText);

private:
    std::set<std::wstring> m_texts;
};

} // namespace quiver_gen::check
