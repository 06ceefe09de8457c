#pragma once

#include "quiver/fastinfoset/FIVocabulary.h"
#include "quiver/foundation/Export.h"
#include "quiver/values/ItemType.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// The Fast Infoset options of a conversion: how values are encoded, which strings are entered into the tables of a
/// document, and a vocabulary agreed in advance. Every `CXmlSerializationContext` holds one:
///
///     CXmlSerializationContext context;
///     context.GetFIContext().SetSuggestedValues();
///     CBinaryData document = order.ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
///
/// A context may be read by several conversions at a time as long as none changes it.
class QVXMLLIB_API CFastInfosetContext
{
public:
    /// How the values of one item type are encoded.
    struct EncodedCharacterString
    {
        /// 0 plain text, 1 restricted alphabet, 2 encoding algorithm.
        std::uint32_t m_dwType = 0;
        /// Which one, for types 1 and 2. Alphabets: 1 numeric "0123456789-+.e ", 2 date and time "0123456789-:TZ ".
        /// Algorithms: 1 hexadecimal, 2 base64, 3 short, 4 int, 5 long, 6 boolean, 7 float, 8 double, 9 uuid, 10 cdata
        /// (X.891, clauses 9 and 10).
        std::uint32_t m_dwIndex = 0;
    };

    /// Plain text for every item type, strings of up to 5 units entered into the tables, no agreed vocabulary.
    CFastInfosetContext();
    CFastInfosetContext(const CFastInfosetContext& source);
    CFastInfosetContext& operator=(const CFastInfosetContext& source);
    ~CFastInfosetContext();

    /// Byte form of plain text: 0, UTF-8.
    unsigned char GetDefaultStringEncoding() const { return m_byDefaultStringEncoding; }

    /// Encoding of the values of an item type, which must be an enumerator of `ItemType`.
    EncodedCharacterString GetEncoding(ItemType eType) const;
    void SetEncoding(ItemType eType, EncodedCharacterString encoding);

    /// Gives each item type the encoding that suits most of its values: binary ones their bytes, numbers the machine
    /// form that holds them, dates and decimals the restricted alphabets. Two gaps are left: a duration holds letters
    /// that its alphabet lacks, and an unsigned 64-bit value above the signed range does not fit; writing either fails.
    void SetSuggestedValues();

    /// Attribute values of fewer UTF-16 units than this are entered into the tables; 0 for none. Initially 6.
    unsigned long GetAttributeMaxAddLength() const { return m_dwAttributeMaxAddLength; }
    void SetAttributeMaxAddLength(unsigned long dwMaxAddLength);

    /// The same for the texts of elements.
    unsigned long GetElementMaxAddLength() const { return m_dwElementMaxAddLength; }
    void SetElementMaxAddLength(unsigned long dwMaxAddLength);

    /// Whether documents start from this context's vocabulary, which the other side must have too. Initially not.
    bool GetUseGeneratedVocabulary() const { return m_bUseGeneratedVocabulary; }
    void SetUseGeneratedVocabulary(bool bUse) { m_bUseGeneratedVocabulary = bUse; }

    /// Names the agreed vocabulary in the documents that use it. If empty, a built-in URI is written. Reading does not
    /// compare it.
    std::wstring GetExternalVocabularyURI() const { return m_strExternalVocabularyURI; }
    void SetExternalVocabularyURI(std::wstring_view svURI);

    /// The agreed vocabulary, to be filled before use. It belongs to the context.
    CFIVocabulary* GetVocabulary() { return &m_vocabulary; }
    const CFIVocabulary* GetVocabulary() const { return &m_vocabulary; }

private:
    static constexpr std::size_t s_nItemTypes = ItemType_XmlCollection + 1;

    unsigned char m_byDefaultStringEncoding = 0;
    std::array<EncodedCharacterString, s_nItemTypes> m_encodings;
    std::uint32_t m_dwAttributeMaxAddLength = 6;
    std::uint32_t m_dwElementMaxAddLength = 6;
    bool m_bUseGeneratedVocabulary = false;
    CFIVocabulary m_vocabulary;
    std::wstring m_strExternalVocabularyURI;
};

} // namespace QvXmlLib9
