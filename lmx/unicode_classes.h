// libxml2's expression functions and character classes under their own names in this namespace, for
// clients that use them beside the pattern facet. Meanings are libxml2's.
//
// The block and category predicates, xmlUCSIs..., are gone from libxml2 2.14 on, and nothing
// replaces them here: a program that calls them does not link with a library built on such a one.
#pragma once

#include "port/export.h"

// clang-format off

// The general categories of the Unicode Standard that the expressions of XML Schema can name. X is
// applied to each, and so to each block below.
#define LMX_UNICODE_CATEGORIES(X) \
  X(CatC) X(CatCc) X(CatCf) X(CatCo) X(CatCs) X(CatL) X(CatLl) X(CatLm) X(CatLo) X(CatLt) \
  X(CatLu) X(CatM) X(CatMc) X(CatMe) X(CatMn) X(CatN) X(CatNd) X(CatNl) X(CatNo) X(CatP) \
  X(CatPc) X(CatPd) X(CatPe) X(CatPf) X(CatPi) X(CatPo) X(CatPs) X(CatS) X(CatSc) X(CatSk) \
  X(CatSm) X(CatSo) X(CatZ) X(CatZl) X(CatZp) X(CatZs)

// The blocks of the Unicode Standard that they can name.
#define LMX_UNICODE_BLOCKS(X) \
  X(AegeanNumbers) X(AlphabeticPresentationForms) X(Arabic) X(ArabicPresentationFormsA) \
  X(ArabicPresentationFormsB) X(Armenian) X(Arrows) X(BasicLatin) X(Bengali) X(BlockElements) \
  X(Bopomofo) X(BopomofoExtended) X(BoxDrawing) X(BraillePatterns) X(Buhid) \
  X(ByzantineMusicalSymbols) X(CJKCompatibility) X(CJKCompatibilityForms) \
  X(CJKCompatibilityIdeographs) X(CJKCompatibilityIdeographsSupplement) X(CJKRadicalsSupplement) \
  X(CJKSymbolsandPunctuation) X(CJKUnifiedIdeographs) X(CJKUnifiedIdeographsExtensionA) \
  X(CJKUnifiedIdeographsExtensionB) X(Cherokee) X(CombiningDiacriticalMarks) \
  X(CombiningDiacriticalMarksforSymbols) X(CombiningHalfMarks) X(CombiningMarksforSymbols) \
  X(ControlPictures) X(CurrencySymbols) X(CypriotSyllabary) X(Cyrillic) X(CyrillicSupplement) \
  X(Deseret) X(Devanagari) X(Dingbats) X(EnclosedAlphanumerics) X(EnclosedCJKLettersandMonths) \
  X(Ethiopic) X(GeneralPunctuation) X(GeometricShapes) X(Georgian) X(Gothic) X(Greek) \
  X(GreekExtended) X(GreekandCoptic) X(Gujarati) X(Gurmukhi) X(HalfwidthandFullwidthForms) \
  X(HangulCompatibilityJamo) X(HangulJamo) X(HangulSyllables) X(Hanunoo) X(Hebrew) \
  X(HighPrivateUseSurrogates) X(HighSurrogates) X(Hiragana) X(IPAExtensions) \
  X(IdeographicDescriptionCharacters) X(Kanbun) X(KangxiRadicals) X(Kannada) X(Katakana) \
  X(KatakanaPhoneticExtensions) X(Khmer) X(KhmerSymbols) X(Lao) X(Latin1Supplement) \
  X(LatinExtendedA) X(LatinExtendedB) X(LatinExtendedAdditional) X(LetterlikeSymbols) X(Limbu) \
  X(LinearBIdeograms) X(LinearBSyllabary) X(LowSurrogates) X(Malayalam) \
  X(MathematicalAlphanumericSymbols) X(MathematicalOperators) \
  X(MiscellaneousMathematicalSymbolsA) X(MiscellaneousMathematicalSymbolsB) \
  X(MiscellaneousSymbols) X(MiscellaneousSymbolsandArrows) X(MiscellaneousTechnical) \
  X(Mongolian) X(MusicalSymbols) X(Myanmar) X(NumberForms) X(Ogham) X(OldItalic) \
  X(OpticalCharacterRecognition) X(Oriya) X(Osmanya) X(PhoneticExtensions) X(PrivateUse) \
  X(PrivateUseArea) X(Runic) X(Shavian) X(Sinhala) X(SmallFormVariants) \
  X(SpacingModifierLetters) X(Specials) X(SuperscriptsandSubscripts) X(SupplementalArrowsA) \
  X(SupplementalArrowsB) X(SupplementalMathematicalOperators) X(SupplementaryPrivateUseAreaA) \
  X(SupplementaryPrivateUseAreaB) X(Syriac) X(Tagalog) X(Tagbanwa) X(Tags) X(TaiLe) \
  X(TaiXuanJingSymbols) X(Tamil) X(Telugu) X(Thaana) X(Thai) X(Tibetan) X(Ugaritic) \
  X(UnifiedCanadianAboriginalSyllabics) X(VariationSelectors) X(VariationSelectorsSupplement) \
  X(YiRadicals) X(YiSyllables) X(YijingHexagramSymbols)
// clang-format on

struct _xmlChRangeGroup;
struct _xmlRegexp;

namespace lmx {

// The caller owns the result, null for a pattern that does not compile, and frees it with
// xmlRegFreeRegexp. Texts are UTF-8 with a terminating zero.
ZOL_API _xmlRegexp* xmlRegexpCompile(const unsigned char* pattern);
// 1 for a match of the whole text, 0 for none, negative for a failure of the engine.
ZOL_API int xmlRegexpExec(_xmlRegexp* compiled, const unsigned char* text);
// 1 if the expression is deterministic, 0 if not, negative for a failure.
ZOL_API int xmlRegexpIsDeterminist(_xmlRegexp* compiled);
// Null is ignored.
ZOL_API void xmlRegFreeRegexp(_xmlRegexp* compiled);

// The character groups of XML 1.0, and their lookup: not 0 for a member.
ZOL_API extern const _xmlChRangeGroup& xmlIsBaseCharGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsCharGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsCombiningGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsDigitGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsExtenderGroup;
// Not 0 if the character is in the group.
ZOL_API int xmlCharInRange(unsigned int code, const _xmlChRangeGroup* group);

// By name, for instance "Arabic" and "Lu": 1 for a member, 0 for none, -1 for an unknown name.
ZOL_API int xmlUCSIsBlock(int code, const char* block_name);
// See xmlUCSIsBlock.
ZOL_API int xmlUCSIsCat(int code, const char* category_name);

// Whether the character is in the category or block that the name ends with: 1 or 0. `code` is its
// number in the Unicode Standard.
#define LMX_DECLARE_PREDICATE(name) ZOL_API int xmlUCSIs##name(int code);
LMX_UNICODE_CATEGORIES(LMX_DECLARE_PREDICATE)
LMX_UNICODE_BLOCKS(LMX_DECLARE_PREDICATE)
#undef LMX_DECLARE_PREDICATE

}  // namespace lmx
