#include "tools/terminal.h"

#include <cstdlib>

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

// An older console would print the codes.
bool wants_colors(std::FILE*) { return false; }

bool is_terminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void use_binary_streams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

// There are no such signals here.
void clean_up_on_signals() {}
void leave_signals_to_others() {}
#else
#include <signal.h>
#include <unistd.h>

#include <string_view>

#include "facade/files.h"

namespace {

extern "C" void end_by_signal(int signal) {
  zol_v2::removeWorkingFiles();
  ::raise(signal);  // which has its default action again
}

}  // namespace

bool is_terminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

bool wants_colors(std::FILE* stream) {
  const char* const unwanted = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return is_terminal(stream) && (unwanted == nullptr || *unwanted == '\0') && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

void use_binary_streams() {}

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

void leave_signals_to_others() {
  sigset_t all;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
}
#endif
