#pragma once

#include "tools/quiver-gen/check/Fields.h"

#include "quiver/core/XmlObjectBase.h"
#include "quiver/values/QvVariant.h"

#include <memory>

namespace quiver_gen::check
{

/// What an object holds for a field: the counterpart of the members of quiver/generated/Member.h.
class CMember
{
public:
    CMember() = default;
    CMember(const CMember&) = delete;
    CMember& operator=(const CMember&) = delete;
    virtual ~CMember();

    virtual void Access(bool bRead, QvXmlLib9::QvVariant& variant, const wchar_t* lpctName) = 0;
    virtual bool IsSet() const = 0;

    /// The way to members that the library takes.
    static const QvXmlLib9::SMemberOperations s_operations;
};

/// @param pOwner who hears of a collection's changes, or null.
std::unique_ptr<CMember> MakeMember(const SDynamicField& field, QvXmlLib9::IEventSink* pOwner);

} // namespace quiver_gen::check
