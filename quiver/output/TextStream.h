#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/XmlSerializationTypes.h"
#include "quiver/output/StringBuffer.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CBinaryData;

/// Where a `CXmlTextWriter` puts its text. This class keeps everything in memory; a derived class may carry the text
/// on, in pieces, whenever it is flushed.
///
///     CTextStream stream(Encoding_UTF8);
///     CXmlTextWriter writer(&stream);
///     ...write a document...
///     CBinaryData bytes = stream.GetBinaryData();
///
/// A stream is used by one thread at a time.
class CTextStream : public CInstanceMonitor
{
public:
    /// A stream without a byte form (`Encoding_None`).
    CTextStream();

    /// @param eEncoding byte form of the text; it is also what an XML declaration in the text will name.
    explicit CTextStream(XmlEncoding eEncoding);

    CTextStream(const CTextStream&) = delete;
    CTextStream& operator=(const CTextStream&) = delete;

    // The order of the virtual operations is part of the interface.

    ~CTextStream() override;

    /// Starts anew with an empty buffer.
    virtual void Open();

    /// Ends output. Nothing to do in memory.
    virtual void Close();

    /// Carries the buffered text on. In memory there is nowhere to carry it, so that it accumulates.
    virtual void Flush();

    /// Code units in the buffer.
    std::size_t GetLength() const { return m_buffer.GetLength(); }

    XmlEncoding GetEncoding() const { return m_eEncoding; }

    /// The buffered text, zero-terminated; never null. Valid until the next change.
    const wchar_t* GetText() { return m_buffer.GetData(); }

    /// The buffered text as a string of its own; cheaper than a copy of `GetText`.
    std::wstring GetString() const { return m_buffer.GetString(); }

    /// The buffered text in the byte form of the stream's encoding: UTF-8, or UTF-16 little-endian without a byte order
    /// mark. The text ends at its first zero unit, and UTF-8 also at an unpaired surrogate.
    ///
    /// @throws CQvException "Unknown Encoding, select UTF-8 (contact ... for support)" without a byte form.
    CBinaryData GetBinaryData() const;

    /// The appends of `CStringBuffer`.
    void Append(std::wstring_view svText) { m_buffer.Append(svText); }
    void Append(wchar_t c) { m_buffer.Append(c); }
    void AppendUnits(std::wstring_view svUnits) { m_buffer.AppendUnits(svUnits); }
    template <class TCopy>
    std::size_t AppendBy(std::wstring_view svUnits, TCopy fnCopy)
    {
        return m_buffer.AppendBy(svUnits, fnCopy);
    }
    void AppendShort(const CShortUnits& units) { m_buffer.AppendShort(units); }
    void AppendRun(wchar_t c, std::size_t nCount) { m_buffer.AppendRun(c, nCount); }
    void AppendUnit(wchar_t c) { m_buffer.AppendUnit(c); }

protected:
    /// For derived classes.
    /// @param lpctClassName the name under which instances are counted.
    CTextStream(const wchar_t* lpctClassName, XmlEncoding eEncoding);

    CStringBuffer m_buffer;

private:
    XmlEncoding m_eEncoding;
};

} // namespace QvXmlLib9
