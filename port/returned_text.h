// Texts that a client of another language takes over, in the layout of a BSTR: the count of the
// bytes in the four bytes before the text, two zero bytes behind it. On Windows they come from the
// COM allocator; elsewhere the block begins eight bytes before the text and comes from malloc, as
// the runtimes of that client expect it.
#pragma once

#include <string>

namespace zol::port {

// UTF-16; a unit above 0xFFFF leaves as its two surrogates. Null without memory, or for a text
// whose bytes 32 bits cannot count.
char16_t* give_wide(const std::wstring& text);
// Bytes as they are.
char* give_narrow(const std::string& text);

// 0 for null.
unsigned given_bytes(const void* text);
// Null is ignored.
void free_given(void* text);

}  // namespace zol::port
