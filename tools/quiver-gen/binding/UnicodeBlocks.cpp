#include "tools/quiver-gen/binding/UnicodeBlocks.h"

namespace quiver_gen::binding
{

namespace
{

struct SBlock
{
    std::string_view svName;
    SCodeRange range;
};

/// The names that patterns may use, in the order of their characters. Names that later versions of Unicode gave up
/// stand beside the new ones.
constexpr SBlock s_blocks[] = {{"BasicLatin", {0x0000, 0x007F}},
                               {"Latin-1Supplement", {0x0080, 0x00FF}},
                               {"LatinExtended-A", {0x0100, 0x017F}},
                               {"LatinExtended-B", {0x0180, 0x024F}},
                               {"IPAExtensions", {0x0250, 0x02AF}},
                               {"SpacingModifierLetters", {0x02B0, 0x02FF}},
                               {"CombiningDiacriticalMarks", {0x0300, 0x036F}},
                               {"Greek", {0x0370, 0x03FF}},
                               {"GreekandCoptic", {0x0370, 0x03FF}},
                               {"Cyrillic", {0x0400, 0x04FF}},
                               {"CyrillicSupplement", {0x0500, 0x052F}},
                               {"Armenian", {0x0530, 0x058F}},
                               {"Hebrew", {0x0590, 0x05FF}},
                               {"Arabic", {0x0600, 0x06FF}},
                               {"Syriac", {0x0700, 0x074F}},
                               {"Thaana", {0x0780, 0x07BF}},
                               {"Devanagari", {0x0900, 0x097F}},
                               {"Bengali", {0x0980, 0x09FF}},
                               {"Gurmukhi", {0x0A00, 0x0A7F}},
                               {"Gujarati", {0x0A80, 0x0AFF}},
                               {"Oriya", {0x0B00, 0x0B7F}},
                               {"Tamil", {0x0B80, 0x0BFF}},
                               {"Telugu", {0x0C00, 0x0C7F}},
                               {"Kannada", {0x0C80, 0x0CFF}},
                               {"Malayalam", {0x0D00, 0x0D7F}},
                               {"Sinhala", {0x0D80, 0x0DFF}},
                               {"Thai", {0x0E00, 0x0E7F}},
                               {"Lao", {0x0E80, 0x0EFF}},
                               {"Tibetan", {0x0F00, 0x0FFF}},
                               {"Myanmar", {0x1000, 0x109F}},
                               {"Georgian", {0x10A0, 0x10FF}},
                               {"HangulJamo", {0x1100, 0x11FF}},
                               {"Ethiopic", {0x1200, 0x137F}},
                               {"Cherokee", {0x13A0, 0x13FF}},
                               {"UnifiedCanadianAboriginalSyllabics", {0x1400, 0x167F}},
                               {"Ogham", {0x1680, 0x169F}},
                               {"Runic", {0x16A0, 0x16FF}},
                               {"Tagalog", {0x1700, 0x171F}},
                               {"Hanunoo", {0x1720, 0x173F}},
                               {"Buhid", {0x1740, 0x175F}},
                               {"Tagbanwa", {0x1760, 0x177F}},
                               {"Khmer", {0x1780, 0x17FF}},
                               {"Mongolian", {0x1800, 0x18AF}},
                               {"LatinExtendedAdditional", {0x1E00, 0x1EFF}},
                               {"GreekExtended", {0x1F00, 0x1FFF}},
                               {"GeneralPunctuation", {0x2000, 0x206F}},
                               {"SuperscriptsandSubscripts", {0x2070, 0x209F}},
                               {"CurrencySymbols", {0x20A0, 0x20CF}},
                               {"CombiningMarksforSymbols", {0x20D0, 0x20FF}},
                               {"CombiningDiacriticalMarksforSymbols", {0x20D0, 0x20FF}},
                               {"LetterlikeSymbols", {0x2100, 0x214F}},
                               {"NumberForms", {0x2150, 0x218F}},
                               {"Arrows", {0x2190, 0x21FF}},
                               {"MathematicalOperators", {0x2200, 0x22FF}},
                               {"MiscellaneousTechnical", {0x2300, 0x23FF}},
                               {"ControlPictures", {0x2400, 0x243F}},
                               {"OpticalCharacterRecognition", {0x2440, 0x245F}},
                               {"EnclosedAlphanumerics", {0x2460, 0x24FF}},
                               {"BoxDrawing", {0x2500, 0x257F}},
                               {"BlockElements", {0x2580, 0x259F}},
                               {"GeometricShapes", {0x25A0, 0x25FF}},
                               {"MiscellaneousSymbols", {0x2600, 0x26FF}},
                               {"Dingbats", {0x2700, 0x27BF}},
                               {"MiscellaneousMathematicalSymbols-A", {0x27C0, 0x27EF}},
                               {"SupplementalArrows-A", {0x27F0, 0x27FF}},
                               {"BraillePatterns", {0x2800, 0x28FF}},
                               {"SupplementalArrows-B", {0x2900, 0x297F}},
                               {"MiscellaneousMathematicalSymbols-B", {0x2980, 0x29FF}},
                               {"SupplementalMathematicalOperators", {0x2A00, 0x2AFF}},
                               {"CJKRadicalsSupplement", {0x2E80, 0x2EFF}},
                               {"KangxiRadicals", {0x2F00, 0x2FDF}},
                               {"IdeographicDescriptionCharacters", {0x2FF0, 0x2FFF}},
                               {"CJKSymbolsandPunctuation", {0x3000, 0x303F}},
                               {"Hiragana", {0x3040, 0x309F}},
                               {"Katakana", {0x30A0, 0x30FF}},
                               {"Bopomofo", {0x3100, 0x312F}},
                               {"HangulCompatibilityJamo", {0x3130, 0x318F}},
                               {"Kanbun", {0x3190, 0x319F}},
                               {"BopomofoExtended", {0x31A0, 0x31BF}},
                               {"KatakanaPhoneticExtensions", {0x31F0, 0x31FF}},
                               {"EnclosedCJKLettersandMonths", {0x3200, 0x32FF}},
                               {"CJKCompatibility", {0x3300, 0x33FF}},
                               {"CJKUnifiedIdeographsExtensionA", {0x3400, 0x4DBF}},
                               {"CJKUnifiedIdeographs", {0x4E00, 0x9FFF}},
                               {"YiSyllables", {0xA000, 0xA48F}},
                               {"YiRadicals", {0xA490, 0xA4CF}},
                               {"HangulSyllables", {0xAC00, 0xD7AF}},
                               {"PrivateUse", {0xE000, 0xF8FF}},
                               {"PrivateUseArea", {0xE000, 0xF8FF}},
                               {"CJKCompatibilityIdeographs", {0xF900, 0xFAFF}},
                               {"AlphabeticPresentationForms", {0xFB00, 0xFB4F}},
                               {"ArabicPresentationForms-A", {0xFB50, 0xFDFF}},
                               {"VariationSelectors", {0xFE00, 0xFE0F}},
                               {"CombiningHalfMarks", {0xFE20, 0xFE2F}},
                               {"CJKCompatibilityForms", {0xFE30, 0xFE4F}},
                               {"SmallFormVariants", {0xFE50, 0xFE6F}},
                               {"ArabicPresentationForms-B", {0xFE70, 0xFEFE}},
                               {"HalfwidthandFullwidthForms", {0xFF00, 0xFFEF}},
                               {"OldItalic", {0x10300, 0x1032F}},
                               {"Gothic", {0x10330, 0x1034F}},
                               {"Deseret", {0x10400, 0x1044F}},
                               {"ByzantineMusicalSymbols", {0x1D000, 0x1D0FF}},
                               {"MusicalSymbols", {0x1D100, 0x1D1FF}},
                               {"MathematicalAlphanumericSymbols", {0x1D400, 0x1D7FF}},
                               {"CJKUnifiedIdeographsExtensionB", {0x20000, 0x2A6DF}},
                               {"CJKCompatibilityIdeographsSupplement", {0x2F800, 0x2FA1F}},
                               {"Tags", {0xE0000, 0xE007F}},
                               {"SupplementaryPrivateUseArea-A", {0xF0000, 0xFFFFF}},
                               {"SupplementaryPrivateUseArea-B", {0x100000, 0x10FFFF}}};

} // namespace

std::optional<CCodeRanges> FindBlock(std::string_view svName)
{
    for (const SBlock& block : s_blocks)
        if (block.svName == svName)
            return CCodeRanges{block.range};
    if (svName == "Specials")
        return CCodeRanges{{0xFEFF, 0xFEFF}, {0xFFF0, 0xFFFD}};
    return std::nullopt;
}

const CCodeRanges& GetNameStartCharacters()
{
    static const CCodeRanges s_ranges = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                         {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                         {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                         {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
    return s_ranges;
}

const CCodeRanges& GetNameCharacters()
{
    static const CCodeRanges s_ranges = {
        {'-', '.'},       {'0', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xB7, 0xB7},
        {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x37D},    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x203F, 0x2040},
        {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
    return s_ranges;
}

CCodeRanges Complement(const CCodeRanges& ranges)
{
    CCodeRanges others;
    std::uint32_t nNext = 0;
    for (const SCodeRange& range : ranges)
    {
        if (range.nFirst > nNext)
            others.push_back({nNext, range.nFirst - 1});
        nNext = range.nLast + 1;
    }
    if (nNext <= s_nLastCodePoint)
        others.push_back({nNext, s_nLastCodePoint});
    return others;
}

} // namespace quiver_gen::binding
