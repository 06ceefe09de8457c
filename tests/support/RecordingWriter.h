#pragma once

#include "quiver/output/XmlWriter.h"

#include <string>
#include <string_view>

namespace QvTest
{

/// A writer that writes down the calls it gets, each ended by a line feed:
/// `<{urn:a}item`, ` {urn:b}id=1:23` (the number is the kind of the value), `text:5`, `>`.
class CRecordingWriter : public QvXmlLib9::CXmlWriter
{
public:
    CRecordingWriter()
        : CXmlWriter(L"CRecordingWriter")
    {
    }
    ~CRecordingWriter() override = default;

    void WriteComment(std::wstring_view) override {}
    void WriteProcessingInstruction(std::wstring_view) override {}
    void WriteInlineSchema(std::wstring_view) override {}
    void StartElement(std::wstring_view svName, std::wstring_view svNamespace) override
    {
        Line(L"<" + Name(svName, svNamespace));
    }
    void WriteText(std::wstring_view svValue, QvXmlLib9::ItemType eType) override
    {
        Line(std::wstring(svValue) + L":" + std::to_wstring(eType));
    }
    void EndElement() override { Line(L">"); }
    void WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace, std::wstring_view svValue,
                        QvXmlLib9::ItemType eType) override
    {
        Line(L" " + Name(svName, svNamespace) + L"=" + std::wstring(svValue) + L":" + std::to_wstring(eType));
    }
    void WriteXsiType(std::wstring_view, std::wstring_view, QvXmlLib9::ItemType) override {}
    void WriteXsiNil() override {}

    std::wstring m_strCalls;

private:
    static std::wstring Name(std::wstring_view svName, std::wstring_view svNamespace)
    {
        return L"{" + std::wstring(svNamespace) + L"}" + std::wstring(svName);
    }
    void Line(const std::wstring& strLine) { m_strCalls += strLine + L"\n"; }
};

} // namespace QvTest
