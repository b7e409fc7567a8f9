// Text on its way across the boundary.

#include <cstring>

#include "bridge/bridge.h"
#include "bridge/zol_helpers.h"
#include "port/returned_text.h"

namespace zol::bridge {

std::wstring wide(const char16_t* text) {
  if (text == nullptr) return std::wstring();
  const char16_t* end = text;
  while (*end != 0) ++end;
  return std::wstring(text, end);
}

char16_t* returned(const std::wstring& text) { return port::give_wide(text); }
char* returned(const std::string& text) { return port::give_narrow(text); }

const char* kept_for_ever(const char* text) {
  if (text == nullptr) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  return static_cast<const char*>(std::memcpy(new char[size], text, size));
}

}  // namespace zol::bridge

unsigned ZOL_CALL zol_text_bytes(const void* text) { return zol::port::given_bytes(text); }
void ZOL_CALL zol_text_free(void* text) { zol::port::free_given(text); }
