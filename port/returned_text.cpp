#include "port/returned_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(_WIN32)
#include "port/internal/windows_calls.h"

#include <oleauto.h>
#else
#include <cstdlib>
#endif

namespace zol::port {
namespace {

// Whether a wide character takes two units. Some processors give wchar_t a sign, others none, and
// some systems no more than one unit.
bool is_pair(wchar_t c) {
  const auto value = static_cast<std::int32_t>(c);
  return value > 0xFFFF;
}

#if defined(_WIN32)

void* allocate(std::size_t bytes) {
  return bytes <= UINT_MAX ? SysAllocStringByteLen(nullptr, static_cast<UINT>(bytes)) : nullptr;
}

#else

constexpr std::size_t k_in_front = 8;
constexpr std::size_t k_terminator = sizeof(char16_t);

void* allocate(std::size_t bytes) {
  if (bytes > UINT32_MAX) return nullptr;
  char* block = static_cast<char*>(std::malloc(k_in_front + bytes + k_terminator));
  if (block == nullptr) return nullptr;
  const std::uint32_t count = static_cast<std::uint32_t>(bytes);
  std::memset(block, 0, k_in_front);
  std::memcpy(block + k_in_front - sizeof count, &count, sizeof count);
  std::memset(block + k_in_front + bytes, 0, k_terminator);
  return block + k_in_front;
}

#endif

}  // namespace

char16_t* give_wide(const std::wstring& text) {
  // Nearly every text has only units, and is copied in one straight loop.
  std::size_t units = text.size();
  for (const wchar_t c : text) units += is_pair(c);
  char16_t* const out = static_cast<char16_t*>(allocate(units * sizeof(char16_t)));
  if (out == nullptr) return nullptr;
  if (units == text.size()) {
    std::transform(text.begin(), text.end(), out,
                   [](wchar_t c) { return static_cast<char16_t>(c); });
    return out;
  }
  char16_t* to = out;
  for (const wchar_t c : text) {
    if (!is_pair(c)) {
      *to++ = static_cast<char16_t>(c);
    } else {
      const std::uint32_t rest = static_cast<std::uint32_t>(c) - 0x10000;
      *to++ = static_cast<char16_t>(0xD800 + (rest >> 10 & 0x3FF));
      *to++ = static_cast<char16_t>(0xDC00 + (rest & 0x3FF));
    }
  }
  return out;
}

char* give_narrow(const std::string& text) {
  char* const out = static_cast<char*>(allocate(text.size()));
  if (out != nullptr) std::memcpy(out, text.data(), text.size());
  return out;
}

#if defined(_WIN32)

unsigned given_bytes(const void* text) {
  return SysStringByteLen(static_cast<BSTR>(const_cast<void*>(text)));
}
void free_given(void* text) { SysFreeString(static_cast<BSTR>(text)); }

#else

unsigned given_bytes(const void* text) {
  std::uint32_t count = 0;
  if (text != nullptr)
    std::memcpy(&count, static_cast<const char*>(text) - sizeof count, sizeof count);
  return count;
}

void free_given(void* text) {
  if (text != nullptr) std::free(static_cast<char*>(text) - k_in_front);
}

#endif

}  // namespace zol::port
