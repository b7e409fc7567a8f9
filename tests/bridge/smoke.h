// The verbs of the generated tests, which use the library as a client of the flat interface does.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
#include "lmx/errors.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"

namespace smoke {

// Registers callbacks that keep what is raised. A message that no test asked for is a fault.
class Smoke : public testing::Test {
 protected:
  Smoke();
  void TearDown() override;
};

// Exactly this message, with no parameter name, was raised since the last question.
void raised(const char* message);

// What a call gave against what it must give; `call` names it in the report.
void is(int got, int want, const char* call);
void is(unsigned got, unsigned want, const char* call);
void is(double got, double want, const char* call);
void is(const void* got, const void* want, const char* call);
void is(const std::u16string& got, const std::u16string& want, const char* call);
void made(const void* handle, const char* call);

// A text that the library gave, which is freed here. Its length and its end are looked at.
std::string text(char* given);
std::u16string text(char16_t* given);

using Deleter = void(ZOL_CALL*)(void*);
using GetIdentity = const char*(ZOL_CALL*)(void*);
void deleted(void* handle, Deleter deleter, const char* call);
void is_one_of(void* handle, const char* identity, GetIdentity getid, Deleter deleter,
               const char* call);
// Sets another identity and none, and leaves `id` as it was.
void identity_can_be_set(const char*& id, const char*(ZOL_CALL* get)(),
                         void(ZOL_CALL* set)(const char*));

// Arguments: a code to write to, a date and time, bytes.
void* code();
void* date();
void* binary();
void is_the_date(void* handle);
void is_the_binary(void* handle);
inline constexpr unsigned char k_bytes[] = {0x5A, 0x6F, 0x6C};
const void* ns_map();

// The wrapper writes what the class itself writes.
template <class T>
void marshals(void* self, int(ZOL_CALL* wrapper)(void*, void*)) {
  std::ostringstream through, directly;
  lmx::c_xml_writer writer(through, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  lmx::c_xml_writer other(directly, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  const int code = wrapper(self, &writer);
  is(code, static_cast<T*>(self)->marshal(other, T::k_element_name), T::k_element_name);
  EXPECT_EQ(through.str(), directly.str());
}

// The wrappers read as the class itself does.
std::string empty_document(const char* element);

template <class T>
void unmarshals(int(ZOL_CALL* wrapper)(void*, void*)) {
  const std::string document = empty_document(T::k_element_name);
  lmx::c_xml_reader_memory reader(document.data(), document.size());
  T through, directly;
  is(wrapper(&through, &reader), directly.unmarshal(document), T::k_element_name);
}

template <class T>
void unmarshals(int(ZOL_CALL* wrapper)(void*, void*, void*)) {
  const std::string document = empty_document(T::k_element_name);
  lmx::c_xml_reader_memory reader(document.data(), document.size());
  reader.set_ns_map(T::ns_map());
  lmx::c_xml_reader_local scope(reader);
  lmx::elmx_error error = lmx::elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  T through, directly;
  is(wrapper(&through, &reader, &reader.name), directly.unmarshal(document), T::k_element_name);
}

}  // namespace smoke
