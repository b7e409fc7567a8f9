#!/usr/bin/env python3
"""Links a 32-bit Windows library from the declarations and the module definition, and compares what
it exports with the list of decorated names.

    windows_names_check.py CLANG LLD_LINK SOURCES GENERATED

The functions are empty, so that neither headers nor libraries of that platform are needed; their
names, arguments and decoration are the compiler's and the linker's work, not the generator's.
"""

import pathlib
import re
import struct
import subprocess
import sys
import tempfile

STUBS = """
#include "bridge/zol_exports.h"
#include "bridge/zol_helpers.h"
int _fltused;
"""
# Of the helpers that a client may ask for in either way.
SAMPLES = {"zol_text_free", "_zol_text_free@4", "zol_report_clear", "_zol_open_file@12"}


def stubs(exports, helpers):
    lines = [STUBS]
    for header, macro in ((exports, "ZOL_EXPORT"), (helpers, "ZOL_HELPER")):
        for result, rest in re.findall(rf"^{macro} ([^;]*?) (ZOL_CALL [^;]*?\));", header, re.M):
            lines.append(f"{result} {rest} {{{'' if result == 'void' else ' return 0; '}}}")
    return "\n".join(lines) + "\n"


def exported_names(image):
    """The names in the export directory of a PE file (PE format, section 6.3)."""
    pe = struct.unpack_from("<I", image, 0x3C)[0]
    section_count, optional_size = (struct.unpack_from("<H", image, pe + at)[0] for at in (6, 20))
    sections = [struct.unpack_from("<8x4I", image, pe + 24 + optional_size + 40 * number)
                for number in range(section_count)]

    def offset(address):
        for size, start, raw_size, raw in sections:
            if start <= address < start + max(size, raw_size):
                return address - start + raw
        raise ValueError("an address outside all sections")

    directory = offset(struct.unpack_from("<I", image, pe + 24 + 96)[0])
    count, _, names = struct.unpack_from("<3I", image, directory + 24)
    for place in struct.unpack_from(f"<{count}I", image, offset(names)):
        start = offset(place)
        yield image[start:image.index(b"\0", start)].decode("ascii")


def main():
    clang, lld_link, sources, generated = sys.argv[1:]
    generated = pathlib.Path(generated)
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / "uchar.h").write_text("typedef unsigned short char16_t;\n")
        (directory / "stubs.c").write_text(
            stubs((generated / "bridge/zol_exports.h").read_text(),
                  (pathlib.Path(sources) / "bridge/zol_helpers.h").read_text()))
        subprocess.run([clang, "--target=i686-pc-windows-msvc", "-ffreestanding", "-c",
                        "-DZOL_BUILDING",
                        f"-I{directory}", f"-I{sources}", f"-I{generated}", directory / "stubs.c",
                        "-o", directory / "stubs.obj"], check=True)
        subprocess.run([lld_link, "-dll", "-noentry", "-nodefaultlib", "-safeseh:no",
                        f"-def:{generated / 'bridge/zol.def'}", f"-out:{directory / 'zol.dll'}",
                        directory / "stubs.obj"], check=True)
        exported = set(exported_names((directory / "zol.dll").read_bytes()))
    helpers = {name for name in exported if re.match("_?zol_", name)}
    if not SAMPLES <= helpers or len(helpers) % 2 != 0:
        sys.exit(f"the helpers are {sorted(helpers)}")
    exported -= helpers
    listed = set((generated / "bridge/zol_exports.txt").read_text().split())
    for name in sorted(listed - exported):
        print(f"{name} is listed and not exported", file=sys.stderr)
    for name in sorted(exported - listed):
        print(f"{name} is exported and not listed", file=sys.stderr)
    sys.exit(0 if exported == listed else 1)


if __name__ == "__main__":
    main()
