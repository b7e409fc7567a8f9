// The values of a colour space by their axes, and back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "interchange/records.h"
#include "model/reflection.h"

namespace zol_v2::interchange::internal {

// "CIELab" of ColorSpaceCIELabType.
std::string space_name(reflection::Type space);
// The alternative of sg_ColorSpace with that name; none if there is none.
reflection::Row space_row(std::string_view name);
// The specification that a space has; none of a space without one.
reflection::Row specification_row(reflection::Type space);

// `losses`, which may be null, gets what no axis stands for.
std::vector<Coordinate> coordinates_of(reflection::ConstRef space, Losses* losses);

// A sentence if the axis is unknown or the text refused, else nothing. Numbers have `decimal`
// before their decimals.
std::string store_coordinate(reflection::Ref space, std::string_view axis, std::string_view text,
                             char decimal = '.');

}  // namespace zol_v2::interchange::internal
