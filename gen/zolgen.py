#!/usr/bin/env python3
"""Writes what follows from the schema tables.

    zolgen.py model --schema DIR --out DIR                 the C++ of the document model
    zolgen.py xsd --schema DIR --out DIR --namespace URI   the XML Schema of documents
    zolgen.py json-schema --schema DIR --out DIR           the JSON Schema of documents as JSON
    zolgen.py reference --schema DIR --out DIR             reference pages in Markdown
    zolgen.py bridge --schema DIR --api FILE --helpers FILE --out DIR
                                                           the flat exports and their names
    zolgen.py bridge-smoke --schema DIR --api FILE --out DIR   a test that calls them all
    zolgen.py bridge-calls --schema DIR --api FILE --out DIR   a table of them for the fuzzer
    zolgen.py managed --schema DIR --api FILE --out DIR    the C# classes over them
    zolgen.py dotnet --schema DIR --out DIR                the classes that .NET programs work with
    zolgen.py python --schema DIR --out DIR                the classes that Python programs work with
    zolgen.py model --schema DIR --list                    the files that would be written

A file is touched only if its text changes, so that a build compiles no more than it must.
"""

import argparse
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent))

import emit_bridge  # noqa: E402
import emit_calls  # noqa: E402
import emit_dotnet  # noqa: E402
import emit_json_schema  # noqa: E402
import emit_managed  # noqa: E402
import emit_model  # noqa: E402
import emit_python  # noqa: E402
import emit_reference  # noqa: E402
import emit_smoke  # noqa: E402
import emit_xsd  # noqa: E402
import exports  # noqa: E402
import resolve  # noqa: E402
import schema  # noqa: E402

EMITTERS = {
    "bridge": emit_bridge.emit,
    "bridge-calls": emit_calls.emit,
    "bridge-smoke": emit_smoke.emit,
    "dotnet": emit_dotnet.emit,
    "json-schema": emit_json_schema.emit,
    "managed": emit_managed.emit,
    "model": emit_model.emit,
    "python": emit_python.emit,
    "reference": emit_reference.emit,
    "xsd": emit_xsd.emit,
}


def write_if_changed(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    if path.exists() and path.read_text(encoding="utf-8") == text:
        return
    path.write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("output", choices=sorted(EMITTERS))
    parser.add_argument("--schema", required=True, help="directory of the *.rows files")
    parser.add_argument("--api", help="what the flat interface has beside the schema")
    parser.add_argument("--helpers", help="the header of what it has that was written by hand")
    parser.add_argument("--out", help="directory to write to")
    parser.add_argument("--namespace", help="URI of the format's namespace")
    parser.add_argument("--list", action="store_true", help="print the names of the files only")
    options = parser.parse_args()
    try:
        model = resolve.Model(schema.read_directory(options.schema), options.namespace)
        if options.api is None and options.output in (
                "bridge", "bridge-calls", "bridge-smoke", "managed"):
            parser.error("the flat interface needs --api")
        if options.api is not None:
            model.api = exports.read_api(options.api)
        if options.helpers is not None:
            model.helpers = exports.read_helpers(options.helpers)
        files = EMITTERS[options.output](model)
    except schema.SchemaError as error:
        sys.exit(f"zolgen: {error}")
    for name, text in files.items():
        if options.list:
            print(name)
        else:
            write_if_changed(pathlib.Path(options.out) / name, text)


if __name__ == "__main__":
    main()
