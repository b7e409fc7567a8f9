// Conversion from and to the formats of other programs.
#pragma once

#include <string>
#include <vector>

#include "interchange/formats.h"
#include "tools/exit_status.h"

struct ExchangeOptions {
  std::vector<std::string> inputs;
  std::string output;
  const zol_v2::interchange::FormatInfo* from = nullptr;  // null: a document
  const zol_v2::interchange::FormatInfo* to = nullptr;    // null: a document
  bool is_recursive = false;
  std::string mapping_file;
  zol_v2::interchange::ReadOptions reading;
  zol_v2::interchange::WriteOptions writing;
};

// Tells what is lost and what is assumed. The output is there when all is well, and not before; a
// document that does not load, and what is no good input, give no output at all.
ExitStatus exchange(const ExchangeOptions& options);
