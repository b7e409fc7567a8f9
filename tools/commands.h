// The sub-commands. Each adds its options to the application, and sets *status when it is run.
#pragma once

#include "tools/exit_status.h"

namespace CLI {
class App;
}

void add_validate(CLI::App& app, ExitStatus* status);
void add_info(CLI::App& app, ExitStatus* status);
void add_convert(CLI::App& app, ExitStatus* status);
void add_list(CLI::App& app, ExitStatus* status);
void add_get(CLI::App& app, ExitStatus* status);
void add_set(CLI::App& app, ExitStatus* status);
void add_diff(CLI::App& app, ExitStatus* status);
void add_merge(CLI::App& app, ExitStatus* status);
void add_explain(CLI::App& app, ExitStatus* status);
// Where there is RE2.
void add_grep(CLI::App& app, ExitStatus* status);
// Only where the library of colorimetry is built.
void add_report(CLI::App& app, ExitStatus* status);
void add_schema(CLI::App& app, ExitStatus* status);

// Where there is libpng, too.
void add_thumbnail(CLI::App& app, ExitStatus* status);

// Where the library of colorimetry is built.
void add_check(CLI::App& app, ExitStatus* status);
void add_compare(CLI::App& app, ExitStatus* status);
