// What the command tells the shell.
#pragma once

enum class ExitStatus {
  ok = 0,
  fault = 1,    // a document breaks a rule of the format
  trouble = 2,  // wrong usage, or a file that can't be read or written
};

// The graver of two.
inline ExitStatus worse(ExitStatus a, ExitStatus b) { return a < b ? b : a; }
