#pragma once

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/check/Model.h"
#include "tools/quiver-gen/schema/Loader.h"

#include "quiver/QvXmlLib.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// @file
/// Classes of schemas that exist while a test runs, and what becomes of documents that are read.

namespace QvTest
{

class CClassesInMemory
{
public:
    /// @throws std::runtime_error for schemas that become no classes.
    explicit CClassesInMemory(std::vector<std::string> schemas)
    {
        quiver_gen::schema::SLoadOptions load;
        load.schemas = std::move(schemas);
        quiver_gen::schema::SSchemaSet set;
        quiver_gen::schema::CDiagnostics diagnostics;
        if (!quiver_gen::schema::LoadSchemas(load, set, diagnostics) ||
            !quiver_gen::binding::BuildBinding(set, {}, m_binding, diagnostics))
            throw std::runtime_error("there are no classes for " + load.schemas.front());
        m_pModel = std::make_unique<quiver_gen::check::CModel>(m_binding);
    }

    /// @param strBytes text or Fast Infoset.
    /// @throws CQvException if the classes refuse it.
    CSmartPtr<QvXmlLib9::CXmlObjectBase> Read(std::string strBytes) const
    {
        return m_pModel->Read(std::move(strBytes));
    }

private:
    quiver_gen::binding::SBinding m_binding;
    std::unique_ptr<quiver_gen::check::CModel> m_pModel;
};

inline std::string Bytes(const QvXmlLib9::CBinaryData& data)
{
    return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

inline std::string WriteText(QvXmlLib9::CXmlObjectBase& object)
{
    using namespace QvXmlLib9;
    const CXmlSerializationContext context;
    return Bytes(object.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, context, Compression_None));
}

inline std::string WriteInfoset(QvXmlLib9::CXmlObjectBase& object)
{
    using namespace QvXmlLib9;
    const CXmlSerializationContext context;
    return Bytes(object.ToFastInfosetStream(FInfoDecl_None, context, Compression_None));
}

/// The message chain.
inline std::string Chain(const QvXmlLib9::CQvException& exception)
{
    return Bytes(QvXmlLib9::EncodeUtf8(exception.GetFullMessage().c_str()));
}

/// What an object says when it is written, or why it is not read or not written.
template <class TRead>
std::string Outcome(TRead Read)
{
    try
    {
        const CSmartPtr<QvXmlLib9::CXmlObjectBase> spObject = Read();
        return WriteText(*spObject);
    }
    catch (const QvXmlLib9::CQvException& exception)
    {
        return "refused: " + Chain(exception);
    }
}

} // namespace QvTest
