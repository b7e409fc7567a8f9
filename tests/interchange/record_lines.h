// The records of documents, to be compared.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/formats.h"
#include "interchange/records.h"

namespace zol_test {

// Everything that the records of a document say, a line each, which are equal exactly if the
// records are.
std::vector<std::string> record_lines(const zol_v2::Zol& document);

std::string written(const zol_v2::Zol& document, zol_v2::interchange::Format format,
                    const zol_v2::interchange::WriteOptions& options = {},
                    zol_v2::interchange::Report* report = nullptr);

// How often something of the kind was left out.
std::size_t count_of(const zol_v2::interchange::Report& report, std::string_view kind);

// Line, column and sentence of the first fault; "" if all is well.
std::string told(const zol_v2::interchange::Report& report);

}  // namespace zol_test
