#include "tools/faults.h"

#include <cstdio>
#include <utility>

#include "tools/json.h"
#include "tools/text.h"

Fault make_fault(int line, lmx::elmx_error code, std::string item) {
  return {line, code, lmx::get_error_description(code), std::move(item)};
}

void print_faults(const std::string& file, const std::vector<Fault>& faults) {
  std::fflush(stdout);
  const std::string name = one_line(file);
  for (const Fault& fault : faults) {
    std::fprintf(stderr, "%s:%d: error %d: %s ('%s')\n", name.c_str(), fault.line,
                 static_cast<int>(fault.code), one_line(fault.message).c_str(),
                 one_line(fault.item).c_str());
  }
}

void write_json(JsonWriter& json, const Fault& fault) {
  json.begin_object();
  json.member("line", fault.line);
  json.member("code", static_cast<int>(fault.code));
  json.member("message", fault.message);
  json.member("item", fault.item);
  json.end_object();
}
