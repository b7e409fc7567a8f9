#include "lmx/unicode_classes.h"

#include <libxml/chvalid.h>
#include <libxml/xmlregexp.h>
#if LIBXML_VERSION < 21400
#include <libxml/xmlunicode.h>
#endif

namespace lmx {

_xmlRegexp* xmlRegexpCompile(const unsigned char* pattern) { return ::xmlRegexpCompile(pattern); }

int xmlRegexpExec(_xmlRegexp* compiled, const unsigned char* text) {
  return ::xmlRegexpExec(compiled, text);
}

int xmlRegexpIsDeterminist(_xmlRegexp* compiled) { return ::xmlRegexpIsDeterminist(compiled); }

void xmlRegFreeRegexp(_xmlRegexp* compiled) { ::xmlRegFreeRegexp(compiled); }

const _xmlChRangeGroup& xmlIsBaseCharGroup = ::xmlIsBaseCharGroup;
const _xmlChRangeGroup& xmlIsCharGroup = ::xmlIsCharGroup;
const _xmlChRangeGroup& xmlIsCombiningGroup = ::xmlIsCombiningGroup;
const _xmlChRangeGroup& xmlIsDigitGroup = ::xmlIsDigitGroup;
const _xmlChRangeGroup& xmlIsExtenderGroup = ::xmlIsExtenderGroup;

int xmlCharInRange(unsigned int code, const _xmlChRangeGroup* group) {
  return ::xmlCharInRange(code, group);
}

#if LIBXML_VERSION < 21400
int xmlUCSIsBlock(int code, const char* block_name) { return ::xmlUCSIsBlock(code, block_name); }

int xmlUCSIsCat(int code, const char* category_name) { return ::xmlUCSIsCat(code, category_name); }

#define LMX_DEFINE_PREDICATE(name) \
  int xmlUCSIs##name(int code) { return ::xmlUCSIs##name(code); }
LMX_UNICODE_CATEGORIES(LMX_DEFINE_PREDICATE)
LMX_UNICODE_BLOCKS(LMX_DEFINE_PREDICATE)
#undef LMX_DEFINE_PREDICATE
#endif

}  // namespace lmx
