#pragma once

#include "tests/support/Schemas.h"
#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Dump.h"

#include <ostream>
#include <sstream>
#include <string>
#include <utility>

namespace QvTest
{

/// Schemas written to a folder, loaded from there and bound.
class CBoundSchemas
{
public:
    explicit CBoundSchemas(const CLoadedSchemas::CFiles& files,
                           const quiver_gen::binding::SBindingOptions& options = {},
                           quiver_gen::schema::SLoadOptions loadOptions = {})
        : m_schemas(files, std::move(loadOptions))
    {
        if (m_schemas.IsLoaded())
            m_bBound = BuildBinding(m_schemas.GetSet(), options, m_binding, m_diagnostics);
    }

    bool IsBound() const { return m_bBound; }
    const quiver_gen::binding::SBinding& Get() const { return m_binding; }

    /// The messages of loading and binding, as the program prints them.
    std::string GetMessages() const
    {
        std::ostringstream out;
        m_diagnostics.Print(out, m_schemas.GetSet().files);
        return m_schemas.GetMessages() + m_schemas.WithoutFolder(out.str());
    }

    /// The binding as the program prints it; nothing if there was an error.
    std::string GetDump() const
    {
        std::ostringstream out;
        if (m_bBound)
            Dump(m_binding, out);
        return out.str();
    }

private:
    CLoadedSchemas m_schemas;
    quiver_gen::schema::CDiagnostics m_diagnostics;
    quiver_gen::binding::SBinding m_binding;
    bool m_bBound = false;
};

/// A schema, and what becomes of it: the binding, and below it the messages.
struct SBindingCase
{
    const char* lpctName;
    std::string strComponents;
    std::string strExpected;
    std::string strAttributes = {};
};

inline void PrintTo(const SBindingCase& item, std::ostream* pOut)
{
    *pOut << item.lpctName;
}

inline std::string GetBindingCaseName(const testing::TestParamInfo<SBindingCase>& info)
{
    return info.param.lpctName;
}

/// A raw text begins on a line of its own.
inline std::string WithoutFirstLineEnd(const std::string& strText)
{
    return strText.empty() || strText.front() != '\n' ? strText : strText.substr(1);
}

/// The binding and the messages of one schema of these components.
inline std::string BindToText(const std::string& strComponents, const std::string& strAttributes = {},
                              const quiver_gen::binding::SBindingOptions& options = {})
{
    const CBoundSchemas bound({{"s.xsd", WrapSchema(WithoutFirstLineEnd(strComponents), strAttributes)}}, options);
    return bound.GetDump() + bound.GetMessages();
}

inline void ExpectBinding(const SBindingCase& item)
{
    EXPECT_EQ(BindToText(item.strComponents, item.strAttributes), WithoutFirstLineEnd(item.strExpected))
        << item.strComponents;
}

} // namespace QvTest
