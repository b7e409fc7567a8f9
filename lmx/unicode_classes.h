// libxml2's expression functions and character classes under their own names in this namespace, for
// clients that use them beside the pattern facet. Meanings are libxml2's.
//
// This header alone needs libxml2's on the include path, to know which release it speaks for: the
// block and category predicates are gone from 2.14 on, and nothing replaces them here.
#pragma once

#include <libxml/xmlversion.h>

#include "lmx/internal/unicode_predicates.h"
#include "port/export.h"

struct _xmlChRangeGroup;
struct _xmlRegexp;

namespace lmx {

// The caller owns the result, null for a pattern that does not compile, and frees it with
// xmlRegFreeRegexp. Texts are UTF-8 with a terminating zero.
ZOL_API _xmlRegexp* xmlRegexpCompile(const unsigned char* pattern);
// 1 for a match of the whole text, 0 for none, negative for a failure of the engine.
ZOL_API int xmlRegexpExec(_xmlRegexp* compiled, const unsigned char* text);
ZOL_API int xmlRegexpIsDeterminist(_xmlRegexp* compiled);
ZOL_API void xmlRegFreeRegexp(_xmlRegexp* compiled);

// The character groups of XML 1.0, and their lookup: not 0 for a member.
ZOL_API extern const _xmlChRangeGroup& xmlIsBaseCharGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsCharGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsCombiningGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsDigitGroup;
ZOL_API extern const _xmlChRangeGroup& xmlIsExtenderGroup;
ZOL_API int xmlCharInRange(unsigned int code, const _xmlChRangeGroup* group);

#if LIBXML_VERSION < 21400
// By name, for instance "Arabic" and "Lu": 1 for a member, 0 for none, -1 for an unknown name.
ZOL_API int xmlUCSIsBlock(int code, const char* block_name);
ZOL_API int xmlUCSIsCat(int code, const char* category_name);

#define LMX_DECLARE_PREDICATE(name) ZOL_API int xmlUCSIs##name(int code);
LMX_UNICODE_CATEGORIES(LMX_DECLARE_PREDICATE)
LMX_UNICODE_BLOCKS(LMX_DECLARE_PREDICATE)
#undef LMX_DECLARE_PREDICATE
#endif

}  // namespace lmx
