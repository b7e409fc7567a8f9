// The callbacks of the managed module. They are stored once, at its start, and have no lock.

#include <array>

#include "bridge/bridge.h"
#include "bridge/zol_exports.h"

namespace {

enum ArgumentKind { k_argument, k_argument_null, k_argument_out_of_range };

struct Callbacks {
  // No wrapper raises these or asks for a string: they are kept because a module registers them.
  std::array<ExceptionCallback, 11> exceptions{};
  StringCallback text = nullptr;

  std::array<ArgumentCallback, 3> arguments{};
};

Callbacks callbacks;

void raise(ArgumentKind kind, const char* message) { callbacks.arguments[kind](message, nullptr); }

}  // namespace

namespace zol::bridge {

bool is_null(const void* argument, const char* message) {
  if (argument != nullptr) return false;
  raise(k_argument_null, message);
  return true;
}

}  // namespace zol::bridge

void ZOL_CALL _SWIGRegisterExceptionCallbacks_ZolModule(
    ExceptionCallback application, ExceptionCallback arithmetic, ExceptionCallback divide_by_zero,
    ExceptionCallback index_out_of_range, ExceptionCallback invalid_cast,
    ExceptionCallback invalid_operation, ExceptionCallback io, ExceptionCallback null_reference,
    ExceptionCallback out_of_memory, ExceptionCallback overflow, ExceptionCallback system) {
  callbacks.exceptions = {application,
                          arithmetic,
                          divide_by_zero,
                          index_out_of_range,
                          invalid_cast,
                          invalid_operation,
                          io,
                          null_reference,
                          out_of_memory,
                          overflow,
                          system};
}

void ZOL_CALL _SWIGRegisterExceptionArgumentCallbacks_ZolModule(
    ArgumentCallback argument, ArgumentCallback argument_null,
    ArgumentCallback argument_out_of_range) {
  callbacks.arguments = {argument, argument_null, argument_out_of_range};
}

void ZOL_CALL _SWIGRegisterStringCallback_ZolModule(StringCallback text) { callbacks.text = text; }
