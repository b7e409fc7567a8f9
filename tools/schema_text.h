// The XML Schema of the format, as the build generated it.
#pragma once

#include <string_view>

extern const std::string_view k_schema_text;
