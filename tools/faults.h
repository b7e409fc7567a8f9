// What is wrong with a document, and how it is said.
#pragma once

#include <string>
#include <vector>

#include "lmx/errors.h"

class JsonWriter;

struct Fault {
  int line = 0;  // 0: in no line of the text
  lmx::elmx_error code = lmx::elmx_ok;
  std::string message;
  std::string item;  // an element, an attribute, a class or the path of an object
};

// With the library's text of the code.
Fault make_fault(int line, lmx::elmx_error code, std::string item);

// "FILE:LINE: error CODE: MESSAGE ('ITEM')" on standard error, a line each.
void print_faults(const std::string& file, const std::vector<Fault>& faults);
void write_json(JsonWriter& json, const Fault& fault);
