// Pieces of HTML and SVG from text that nobody vouches for.
#pragma once

#include <string>
#include <string_view>

// Appends text as the content of an element or of an attribute in double quotes, good in HTML and
// in XML. Nothing in it is taken for markup. Control characters, those that turn the direction of
// writing among them, show as "⟨U+202E⟩"; tabs and ends of lines are blanks.
void append_escaped(std::string_view text, std::string* out);
std::string escaped(std::string_view text);

// Of a text that is longer than `limit` characters the beginning, and how long it is: "abc…
// (1,234 characters)".
std::string shortened(std::string_view text, std::size_t limit);

// What may stand in an id for a text: letters and digits of any script, hyphens for all else, at
// most 60 characters.
std::string slug_of(std::string_view text);
// The id as the fragment of an address, with "%C3%B6" for what is not ASCII.
std::string fragment_of(std::string_view id);

// Rounded to so many decimals; "-0" is "0". With `is_padded`, zeros stay at the end.
std::string decimal_text(double value, int decimals, bool is_padded = false);
// With six significant digits at most.
std::string short_number(double value);
// "10,000".
std::string grouped_number(std::size_t value);
