#include "tools/terminal.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>

#include "port/wide_text.h"

namespace {

// A console shows UTF-8 as long as this lives. It belongs to others as well, so that it gets back
// what it had.
class Utf8Console {
 public:
  Utf8Console() { SetConsoleOutputCP(CP_UTF8); }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;
  ~Utf8Console() { SetConsoleOutputCP(before_); }

 private:
  const UINT before_ = GetConsoleOutputCP();
};

}  // namespace

// An older console would print the codes.
bool wants_colors(std::FILE*) { return false; }

bool is_terminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

// There are no signals, and a working file goes with the process in any case.
void leave_signals_to_others() {}

// The bytes of standard input and output stay as they are. A console ends a line at a line feed,
// and reads are content with both ends.
int wmain(int count, wchar_t** arguments) {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  const Utf8Console console;
  std::vector<std::string> list;
  for (int i = 1; i < count; ++i) list.push_back(zol::port::to_utf8(arguments[i]));
  return run_command(std::move(list));
}
#else
#include <signal.h>
#include <unistd.h>

#include "facade/files.h"

namespace {

extern "C" void end_by_signal(int signal) {
  zol_v2::removeWorkingFiles();
  ::raise(signal);  // which has its default action again
}

// A signal that ends the process takes the working files of an unfinished save with it.
void clean_up_on_signals() {
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction before = {};
    struct sigaction action = {};
    action.sa_handler = end_by_signal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    // What the caller has the command ignore stays ignored, as under nohup.
    if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
      ::sigaction(signal, &action, nullptr);
    }
  }
}

}  // namespace

bool is_terminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

bool wants_colors(std::FILE* stream) {
  const std::string terminal = environment("TERM");
  return is_terminal(stream) && environment("NO_COLOR").empty() && !terminal.empty() &&
         terminal != "dumb";
}

void leave_signals_to_others() {
  sigset_t all;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

int main(int count, char** arguments) {
  clean_up_on_signals();
  return run_command({arguments + std::min(count, 1), arguments + count});
}
#endif
