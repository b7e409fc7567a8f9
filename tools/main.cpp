// zol: checks, shows and converts colour-data documents.
#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "tools/commands.h"
#include "tools/output.h"
#include "tools/terminal.h"

namespace {

std::string usage_fault(const CLI::App* app, const CLI::Error& error) {
  const std::vector<std::string> unknown = app->remaining();
  const bool is_unknown_command = app->get_subcommands().empty() && !unknown.empty();
  return "zol: " + (is_unknown_command ? "There is no command " + unknown.front() : error.what()) +
         "\nTry 'zol --help'.\n";
}

ExitStatus run(std::vector<std::string> arguments) {
  CLI::App app("Checks, shows and converts colour-data documents, .zol and .zolz.", "zol");
  app.allow_windows_style_options(false);  // "/a.zol" is a path everywhere
  app.set_version_flag("--version", std::string("zol ") + ZOL_VERSION);
  app.require_subcommand(1);
  app.failure_message(usage_fault);
  app.footer(
      "'zol COMMAND --help' tells more. Exit status: 0 all is well, 1 a fault in a document, "
      "2 wrong usage, or a file that can't be read or written.");

  ExitStatus status = ExitStatus::ok;
  add_validate(app, &status);
  add_info(app, &status);
  add_convert(app, &status);
  add_list(app, &status);
  add_get(app, &status);
  add_set(app, &status);
  add_diff(app, &status);
  add_merge(app, &status);
#if defined(ZOL_WITH_GREP)
  add_grep(app, &status);
#endif
  add_explain(app, &status);
#if defined(ZOL_WITH_REPORT)
  add_report(app, &status);
#endif
#if defined(ZOL_WITH_THUMBNAIL)
  add_thumbnail(app, &status);
#endif
  add_schema(app, &status);
#if defined(ZOL_WITH_COLORIMETRY)
  add_check(app, &status);
  add_compare(app, &status);
#endif
  try {
    std::reverse(arguments.begin(), arguments.end());  // as the parser takes them off
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    status = app.exit(error) == 0 ? ExitStatus::ok : ExitStatus::trouble;
  }
  return status;
}

}  // namespace

int run_command(std::vector<std::string> arguments) {
  ExitStatus status = ExitStatus::trouble;
  try {
    status = run(std::move(arguments));
  } catch (const std::bad_alloc&) {
    complain("memory", "not enough of it");
  } catch (const std::exception& error) {
    complain("error", error.what());
  }
  return static_cast<int>(finish_output(status));
}
