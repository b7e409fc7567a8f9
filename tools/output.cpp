#include "tools/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "tools/text.h"

namespace {

int g_output_error = 0;  // the first `errno` of standard output

}  // namespace

void print(std::string_view text) {
  if (g_output_error != 0) return;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) g_output_error = errno;
}

bool has_output_failed() { return g_output_error != 0; }

bool flush_output() {
  if (g_output_error == 0 && std::fflush(stdout) != 0) g_output_error = errno;
  return g_output_error == 0;
}

ExitStatus finish_output(ExitStatus status) {
  if (flush_output()) return status;
  if (g_output_error != EPIPE) complain("standard output", std::strerror(g_output_error));
  return ExitStatus::trouble;
}

void complain(std::string_view subject, std::string_view message) {
  // What was printed before comes before it also where both end in one file.
  std::fflush(stdout);
  std::fprintf(stderr, "zol: %s: %s\n", one_line(subject).c_str(), one_line(message).c_str());
}
