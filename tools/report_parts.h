// Elements that several parts of a report are made of. Everything comes out escaped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/report_content.h"

// What one sees: the colour, hatched where there is none, with a mark where it is out of sRGB.
// `label` is for those who do not see it; empty if the text beside it says it.
std::string swatch_element(const ReportColor* color, std::string_view label);
// "12", as a link to the colour.
std::string color_link(const ReportColor& color);
// A list of names and values; nothing if there are none.
std::string fact_list(const std::vector<Fact>& facts);
