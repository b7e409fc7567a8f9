// The style sheets of reports, which travel inside the command.
#pragma once

#include <string_view>

extern const std::string_view k_picture_style;
extern const std::string_view k_report_style;
