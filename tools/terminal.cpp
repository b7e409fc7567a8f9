#include "tools/terminal.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

bool is_terminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void use_binary_streams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}
#else
#include <unistd.h>

bool is_terminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

void use_binary_streams() {}
#endif
