// The schemas of the format, as the build generated them.
#pragma once

#include <string_view>

extern const std::string_view k_schema_text;
extern const std::string_view k_json_schema_text;
