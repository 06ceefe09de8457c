#include "quiver/fastinfoset/FastInfosetContext.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"

namespace QvXmlLib9
{

namespace
{

constexpr std::uint32_t s_dwAlphabet = 1;
constexpr std::uint32_t s_dwAlgorithm = 2;

struct SSuggestion
{
    ItemType eType;
    CFastInfosetContext::EncodedCharacterString encoding;
};

const SSuggestion s_suggestions[] = {
    {ItemType_hexBinary, {s_dwAlgorithm, 1}},
    {ItemType_base64Binary, {s_dwAlgorithm, 2}},
    {ItemType_i1, {s_dwAlgorithm, 3}},
    {ItemType_i2, {s_dwAlgorithm, 3}},
    {ItemType_ui1, {s_dwAlgorithm, 3}},
    {ItemType_i4, {s_dwAlgorithm, 4}},
    {ItemType_ui2, {s_dwAlgorithm, 4}},
    {ItemType_i8, {s_dwAlgorithm, 5}},
    {ItemType_ui4, {s_dwAlgorithm, 5}},
    {ItemType_ui8, {s_dwAlgorithm, 5}},
    {ItemType_r4, {s_dwAlgorithm, 7}},
    {ItemType_r8, {s_dwAlgorithm, 8}},
    {ItemType_boolean, {s_dwAlgorithm, 6}},
    // It lacks the letters of a duration (docs/compatibility.md: Durations in an alphabet).
    {ItemType_duration, {s_dwAlphabet, 2}},
    {ItemType_yearMonth, {s_dwAlphabet, 2}},
    {ItemType_monthDay, {s_dwAlphabet, 2}},
    {ItemType_year, {s_dwAlphabet, 2}},
    {ItemType_month, {s_dwAlphabet, 2}},
    {ItemType_day, {s_dwAlphabet, 2}},
    {ItemType_date, {s_dwAlphabet, 2}},
    {ItemType_datetime, {s_dwAlphabet, 2}},
    {ItemType_time, {s_dwAlphabet, 2}},
    {ItemType_decimal, {s_dwAlphabet, 1}},
    {ItemType_integer, {s_dwAlphabet, 1}},
};

} // namespace

void CFastInfosetContext::SetExternalVocabularyURI(std::wstring_view svURI)
{
    m_strExternalVocabularyURI = ToUtf16Units(svURI);
}

CFastInfosetContext::CFastInfosetContext() = default;
CFastInfosetContext::CFastInfosetContext(const CFastInfosetContext& source) = default;
CFastInfosetContext& CFastInfosetContext::operator=(const CFastInfosetContext& source) = default;
CFastInfosetContext::~CFastInfosetContext() = default;

CFastInfosetContext::EncodedCharacterString CFastInfosetContext::GetEncoding(ItemType eType) const
{
    const auto nIndex = static_cast<std::size_t>(eType);
    QV_ASSERT(nIndex < s_nItemTypes);
    return nIndex < s_nItemTypes ? m_encodings[nIndex] : EncodedCharacterString();
}

void CFastInfosetContext::SetEncoding(ItemType eType, EncodedCharacterString encoding)
{
    const auto nIndex = static_cast<std::size_t>(eType);
    QV_ASSERT(nIndex < s_nItemTypes);
    if (nIndex < s_nItemTypes)
        m_encodings[nIndex] = encoding;
}

void CFastInfosetContext::SetSuggestedValues()
{
    for (const SSuggestion& suggestion : s_suggestions)
        SetEncoding(suggestion.eType, suggestion.encoding);
}

void CFastInfosetContext::SetAttributeMaxAddLength(unsigned long dwMaxAddLength)
{
    m_dwAttributeMaxAddLength = static_cast<std::uint32_t>(dwMaxAddLength);
}

void CFastInfosetContext::SetElementMaxAddLength(unsigned long dwMaxAddLength)
{
    m_dwElementMaxAddLength = static_cast<std::uint32_t>(dwMaxAddLength);
}

} // namespace QvXmlLib9
