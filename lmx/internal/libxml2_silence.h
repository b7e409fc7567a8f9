// Keeps libxml2 from speaking where nobody asked it to.
#pragma once

#include <libxml/xmlerror.h>
#include <libxml/xmlversion.h>
#if LIBXML_VERSION < 21200
#include <libxml/globals.h>
#endif

namespace lmx::internal {

// Keeps libxml2 silent on this thread for as long as it lives. Unless told otherwise it prints to
// the standard error, which belongs to the program around us.
class Libxml2Silence {
 public:
  Libxml2Silence() {
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
    xmlSetGenericErrorFunc(nullptr, ignore_report);
  }
  Libxml2Silence(const Libxml2Silence&) = delete;
  Libxml2Silence& operator=(const Libxml2Silence&) = delete;
  ~Libxml2Silence() {
    xmlSetStructuredErrorFunc(structured_context_, structured_);
    xmlSetGenericErrorFunc(generic_context_, generic_);
  }

 private:
  static void ignore_report(void*, const char*, ...) {}

  const xmlStructuredErrorFunc structured_ = xmlStructuredError;
  void* const structured_context_ = xmlStructuredErrorContext;
  const xmlGenericErrorFunc generic_ = xmlGenericError;
  void* const generic_context_ = xmlGenericErrorContext;
};

}  // namespace lmx::internal
