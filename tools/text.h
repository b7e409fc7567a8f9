// Text on its way to people and programs: always valid UTF-8.
#pragma once

#include <string>
#include <string_view>

// The model's UTF-16 text in UTF-8. A surrogate without a partner becomes U+FFFD.
std::string utf8(const std::wstring& text);
// A path of the command line, as the library takes it.
std::wstring wide_path(const std::string& path);

// What is no UTF-8 becomes U+FFFD.
std::string valid_utf8(std::string_view text);
// Fit for one line on a terminal: control characters become blanks, too.
std::string one_line(std::string_view text);

// The shortest decimal number that reads back as the same value; "NaN", "INF" and "-INF".
std::string number_text(double value);
// "1 colour", "2 colours".
std::string counted(std::size_t count, std::string_view one, std::string_view many);
