// Writes a document of the benchmark to the standard output, for other programs to look at:
//   zol_make_document spectra|palettes|mixed BYTES
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/documents.h"

int main(int argument_count, char** arguments) {
  for (bench::Profile profile : bench::k_profiles) {
    if (argument_count != 3 || std::string_view(arguments[1]) != bench::name_of(profile)) continue;
    const std::string text =
        bench::make_document(profile, std::strtoull(arguments[2], nullptr, 10));
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
  }
  std::fputs("usage: zol_make_document spectra|palettes|mixed BYTES\n", stderr);
  return 2;
}
