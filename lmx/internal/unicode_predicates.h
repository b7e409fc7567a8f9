// The names behind "xmlUCSIs" of libxml2's character predicates, for the header that declares their
// forwarders and the source that defines them. X is applied to each name.
#pragma once

// clang-format off
// The general categories of the Unicode Standard that the expressions of XML Schema can name.
#define LMX_UNICODE_CATEGORIES(X) \
  X(CatC) X(CatCc) X(CatCf) X(CatCo) X(CatCs) X(CatL) X(CatLl) X(CatLm) X(CatLo) X(CatLt) \
  X(CatLu) X(CatM) X(CatMc) X(CatMe) X(CatMn) X(CatN) X(CatNd) X(CatNl) X(CatNo) X(CatP) \
  X(CatPc) X(CatPd) X(CatPe) X(CatPf) X(CatPi) X(CatPo) X(CatPs) X(CatS) X(CatSc) X(CatSk) \
  X(CatSm) X(CatSo) X(CatZ) X(CatZl) X(CatZp) X(CatZs)

// The blocks that they can name.
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
