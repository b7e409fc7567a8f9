#include "bridge/smoke.h"

#include <cstring>
#include <vector>

#include "lmx/binary.h"
#include "lmx/dates.h"

namespace smoke {
namespace {

constexpr char k_date[] = "2024-02-29T12:30:00Z";

std::vector<std::string>& messages() {
  static std::vector<std::string> all;
  return all;
}

void ZOL_CALL keep(const char* message, const char* parameter) {
  messages().push_back(parameter == nullptr ? message : "a parameter name");
}
void ZOL_CALL keep_wrong_kind(const char* message, const char*) {
  messages().push_back(std::string("wrong kind: ") + message);
}
void ZOL_CALL keep_exception(const char* message) {
  messages().push_back(std::string("no argument exception: ") + message);
}

template <class Unit>
std::basic_string<Unit> taken(Unit* given) {
  EXPECT_NE(given, nullptr);
  if (given == nullptr) return {};
  const unsigned bytes = zol_text_bytes(given);
  EXPECT_EQ(bytes % sizeof(Unit), 0u);
  const std::basic_string<Unit> result(given, bytes / sizeof(Unit));
  EXPECT_EQ(given[result.size()], Unit());
  zol_text_free(given);
  return result;
}

}  // namespace

Smoke::Smoke() {
  _SWIGRegisterExceptionCallbacks_ZolModule(keep_exception, keep_exception, keep_exception,
                                            keep_exception, keep_exception, keep_exception,
                                            keep_exception, keep_exception, keep_exception,
                                            keep_exception, keep_exception);
  _SWIGRegisterExceptionArgumentCallbacks_ZolModule(keep_wrong_kind, keep, keep_wrong_kind);
  _SWIGRegisterStringCallback_ZolModule(nullptr);
  messages().clear();
}

void Smoke::TearDown() { EXPECT_EQ(messages(), std::vector<std::string>()); }

void raised(const char* message) {
  EXPECT_EQ(messages(), std::vector<std::string>{message});
  messages().clear();
}

void is(int got, int want, const char* call) { EXPECT_EQ(got, want) << call; }
void is(unsigned got, unsigned want, const char* call) { EXPECT_EQ(got, want) << call; }
void is(double got, double want, const char* call) { EXPECT_EQ(got, want) << call; }
void is(const void* got, const void* want, const char* call) { EXPECT_EQ(got, want) << call; }
void is(const std::u16string& got, const std::u16string& want, const char* call) {
  EXPECT_EQ(got, want) << call;
}
void made(const void* handle, const char* call) { EXPECT_NE(handle, nullptr) << call; }

std::string text(char* given) { return taken(given); }
std::u16string text(char16_t* given) { return taken(given); }

void deleted(void* handle, Deleter deleter, const char* call) {
  made(handle, call);
  deleter(handle);
}

void is_one_of(void* handle, const char* identity, GetIdentity getid, Deleter deleter,
               const char* call) {
  made(handle, call);
  if (handle != nullptr) is(getid(handle), identity, call);
  deleter(handle);
}

void identity_can_be_set(const char*& id, const char*(ZOL_CALL* get)(),
                         void(ZOL_CALL* set)(const char*)) {
  const char* const original = id;
  EXPECT_EQ(get(), original);
  set("another");
  const char* const copy = get();
  EXPECT_STREQ(copy, "another");
  EXPECT_EQ(copy, id);
  set(nullptr);
  EXPECT_EQ(get(), nullptr);
  id = original;
  delete[] copy;  // the library keeps it for ever
}

void* code() {
  static lmx::elmx_error error;
  return &error;
}

void* date() {
  static lmx::c_datetime value(k_date);
  return &value;
}

void* binary() {
  static lmx::c_binary value(k_bytes, sizeof k_bytes);
  return &value;
}

void is_the_date(void* handle) {
  EXPECT_EQ(text(_CSharp_c_datetime_get_as_string(handle)), k_date);
}

void is_the_binary(void* handle) {
  is(_CSharp_c_binary_equal(handle, k_bytes, sizeof k_bytes), 1u, "get");
}

const void* ns_map() { return zol_v2::Zol::ns_map(); }

std::string empty_document(const char* element) {
  return std::string("<") + element + " xmlns:Zol=\"" + zol_v2::Zol::ns_map()->uri + "\"/>";
}

}  // namespace smoke
