// A program of somebody else, with the library of other formats.
#include <cstdio>
#include <string>

#include "interchange/json.h"
#include "model/Zol.h"

int main() {
  using namespace zol_v2::interchange;
  zol_v2::ColorType color;
  if (!read_json(R"({"ColorType": {"ColorName": "red"}})", &color)) return 1;
  std::string text;
  if (!write_json(color, &text, -1)) return 1;
  std::printf("%s", text.c_str());
}
