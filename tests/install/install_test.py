#!/usr/bin/env python3
"""Installs the build, and uses the copy as others would.

install_test.py --build DIR --compiler CXX [--bridge] [--beside] [unittest options]
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
CLIENT = pathlib.Path(__file__).resolve().parent / "client"
OPTIONS = None
# What the programs of the project client print.
PRINTED = {"client": "read back client\n", "colours": "#ffffff\n",
           "json": '{"ColorType":{"ColorName":"red"}}\n'}


def call(*arguments, **options):
    result = subprocess.run(list(map(str, arguments)), stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{arguments}\n{result.stdout}")
    return result.stdout


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        built = cls.directory / "built"
        call("cmake", "--install", OPTIONS.build, "--prefix", built)
        # Nothing in the copy may depend on the place that it was installed to.
        cls.prefix = cls.directory / "moved"
        built.rename(cls.prefix)

    def work_directory(self):
        number = len(list(self.directory.glob("work*")))
        path = self.directory / f"work{number}"
        path.mkdir()
        return path

    def run_client(self, program, **options):
        self.assertEqual(call(program, cwd=program.parent, **options), PRINTED[program.name])

    def files(self, pattern):
        return sorted(str(path.relative_to(self.prefix)) for path in self.prefix.glob(pattern)
                      if path.is_file())

    def test_what_is_there(self):
        for pattern in ("bin/zol", "lib*/**/libzol.so.2", "share/xml/zol/zol.xsd",
                        "share/zol/zol.schema.json",
                        "share/man/man1/zol.1", "share/man/man1/zol-validate.1",
                        "share/bash-completion/completions/zol", "share/mime/packages/zol.xml",
                        "share/xml/zol/catalog.xml",
                        "lib*/**/pkgconfig/zol.pc", "lib*/**/ZolConfigVersion.cmake",
                        "include/zol/model/Zol.h", "include/zol/lmx/lmxparse.h",
                        "include/zol/zip/archive.h", "include/zol/facade/files.h"):
            self.assertEqual(len(self.files(pattern)), 1, pattern)
        text = "".join(path.read_text() for path in self.prefix.glob("lib*/**/*.cmake"))
        for path in (SOURCE, OPTIONS.build.resolve(), self.directory):
            # As a path of its own, and not as the end of one: a checkout may be "/zol".
            self.assertNotRegex(text, rf"(?<![\w}}./-]){re.escape(str(path))}(?![\w.-])")

    def test_each_command_has_a_manual_page(self):
        commands = set(re.findall(r"^  (\w+)  ", call(self.prefix / "bin/zol", "--help"), re.M))
        self.assertIn("validate", commands)
        for command in commands:
            page = call("man", "-l", *self.prefix.glob(f"share/man/man1/zol-{command}.1"),
                        env=dict(os.environ, MANWIDTH="200"))
            self.assertRegex(page, rf"NAME\n +zol-{command} - \w.*\n\nSYNOPSIS\n +zol {command}")

    @unittest.skipUnless(shutil.which("xmllint"), "no xmllint")
    def test_the_catalog_leads_to_the_schema(self):
        (catalog,) = self.prefix.glob("share/xml/zol/catalog.xml")
        call("xmllint", "--noout", "--nonet", "--schema", "http://example.org/zol/v2",
             SOURCE / "examples/documents/spectra.zol",
             env=dict(os.environ, XML_CATALOG_FILES=str(catalog)))

    @unittest.skipUnless(shutil.which("update-mime-database") and shutil.which("gio"),
                         "no shared-mime-info")
    def test_the_type_of_documents(self):
        call("update-mime-database", self.prefix / "share/mime")
        work = self.work_directory()
        sample = SOURCE / "examples/documents/named-colours.zol"
        call(self.prefix / "bin/zol", "convert", sample, work / "packed.zolz")
        (work / "plain").write_bytes(sample.read_bytes())
        (work / "packed").write_bytes((work / "packed.zolz").read_bytes())
        paths = dict(os.environ, XDG_DATA_HOME=str(work / "none"),
                     XDG_DATA_DIRS=f"{self.prefix / 'share'}:/usr/share")
        for path, kind in ((sample, "xml"), (work / "packed.zolz", "zip"), (work / "plain", "xml"),
                           (work / "packed", "zip")):
            told = call("gio", "info", "-a", "standard::content-type", path, env=paths)
            self.assertIn(f"application/x-zol+{kind}\n", told, path)

    def test_command_runs(self):
        sample = SOURCE / "examples/documents/named-colours.zol"
        self.assertIn("valid", call(self.prefix / "bin/zol", "validate", sample))

    def build_client(self, *definitions, targets=()):
        """The programs of the project client, each run, and the directory that it was built in."""
        work = self.work_directory()
        call("cmake", "-S", CLIENT, "-B", work, "-G", "Ninja",
             f"-DCMAKE_CXX_COMPILER={OPTIONS.compiler}", *definitions)
        call("cmake", "--build", work, *(["--target", *targets] if targets else []))
        for program in filter(lambda name: (work / name).exists(), PRINTED):
            self.run_client(work / program)
        return work

    def assertStatic(self, program, is_static=True):
        needed = call("readelf", "-d", program)
        self.assertEqual("libzol" not in needed, is_static, needed)

    def test_find_package(self):
        for kind, components in (("shared", []), ("static", ["static"]), ("shared", ["colorimetry"]),
                                 ("static", ["static", "colorimetry", "interchange"])):
            if not OPTIONS.beside:
                components = [name for name in components if name == "static"]
            with self.subTest(kind, components=components):
                work = self.build_client(f"-DCMAKE_PREFIX_PATH={self.prefix}",
                                         f"-DCOMPONENTS={';'.join(components)}")
                programs = [name for name in PRINTED if (work / name).exists()]
                wanted = {"colours": {"colorimetry"}, "json": {"interchange"}, "client": {"client"}}
                named = {"client", *components} - {"static"}
                if len(named) > 1:
                    self.assertEqual(set().union(*map(wanted.get, programs)), named)
                for program in programs:
                    self.assertStatic(work / program, kind == "static")

    def test_find_package_says_what_is_missing(self):
        work = self.work_directory()
        (work / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.21)\nproject(p LANGUAGES CXX)\n"
            "find_package(Zol REQUIRED COMPONENTS ${COMPONENTS})\n")
        for components, told in (
                ("spectrograph", "has no spectrograph among its shared libraries"),
                ("static;spectrograph", "has no spectrograph among its static libraries"),
                ("static;shared", "not as both")):
            with self.subTest(components):
                result = subprocess.run(
                    ["cmake", "-S", work, "-B", work / "build", "-G", "Ninja",
                     f"-DCMAKE_CXX_COMPILER={OPTIONS.compiler}",
                     f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCOMPONENTS={components}"],
                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                self.assertEqual(result.returncode, 1)
                self.assertIn(told, " ".join(result.stdout.split()))

    def test_another_major_version_is_refused(self):
        work = self.work_directory()
        (work / "CMakeLists.txt").write_text("cmake_minimum_required(VERSION 3.21)\n"
                                             "project(p LANGUAGES NONE)\nfind_package(Zol 1 QUIET)\n"
                                             'message("found: ${Zol_FOUND}")\n')
        self.assertIn("found: 0", call("cmake", "-S", work, "-B", work / "build", "-G", "Ninja",
                                       f"-DCMAKE_PREFIX_PATH={self.prefix}"))

    def test_pkg_config(self):
        (library,) = self.prefix.glob("lib*/**/libzol.so.2")
        paths = dict(os.environ, PKG_CONFIG_PATH=str(library.parent / "pkgconfig"))
        here = dict(os.environ, LD_LIBRARY_PATH=str(library.parent))
        work = self.work_directory()
        for name, client in (("zol", "client"), ("zolcolor", "colours"), ("zolinterchange", "json")):
            if not self.files(f"lib*/**/pkgconfig/{name}.pc"):
                self.assertFalse(OPTIONS.beside)
                continue
            for kind in ("shared", "static"):
                with self.subTest(name, kind=kind):
                    flags = call("pkg-config", *(["--static"] if kind == "static" else []),
                                 "--cflags", "--libs", name, env=paths).split()
                    if kind == "static":  # both stand in one directory
                        flags = [re.sub("^-l(zol.*)", r"-l:lib\1.a", flag) for flag in flags]
                    program = work / client
                    call(OPTIONS.compiler, "-std=c++17", CLIENT / f"{client}.cpp", "-o", program,
                         *flags)
                    self.assertStatic(program, kind == "static")
                    self.run_client(program, env=here)
        version = call("pkg-config", "--modversion", "zol", env=paths)
        self.assertIn(version.strip(), call(self.prefix / "bin/zol", "--version"))

    def taken_in(self, *definitions, **options):
        """A project that builds the library itself, most quickly."""
        definitions = [*definitions, "-DCMAKE_CXX_FLAGS=-O0", "-DZOL_BUILD_BRIDGE=OFF"]
        if shutil.which("ccache"):
            definitions.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
        return self.build_client(*definitions, **options)

    def test_taken_in(self):
        os.environ.update(CCACHE_DIR=str(OPTIONS.build.resolve() / "clients-ccache"),
                          CCACHE_BASEDIR=str(self.directory), CCACHE_NOHASHDIR="1")
        with self.subTest("add_subdirectory"):
            work = self.taken_in(f"-DZOL_SOURCE={SOURCE}", targets=["client"])
            self.assertStatic(work / "client", False)
            # What the project installs holds nothing of ours.
            call("cmake", "--install", work, "--prefix", work / "copy")
            self.assertEqual([path.name for path in (work / "copy").rglob("*") if path.is_file()],
                             ["client"])
        with self.subTest("FetchContent, static, installed with the project"):
            work = self.taken_in(f"-DZOL_FETCHED={SOURCE}", "-DBUILD_SHARED_LIBS=OFF",
                                 "-DZOL_INSTALL=ON")
            self.assertStatic(work / "client")
            call("cmake", "--install", work, "--prefix", work / "copy")
            (work / "copy").rename(work / "moved")
            self.assertEqual([*(work / "moved").rglob("*.so")], [])
            clients = self.build_client(f"-DCMAKE_PREFIX_PATH={work / 'moved'}")
            self.assertStatic(clients / "client")
            (module,) = (work / "moved").rglob("zol.pc")
            flags = call("pkg-config", "--cflags", "--libs", "zol",
                         env=dict(os.environ, PKG_CONFIG_PATH=str(module.parent))).split()
            call(OPTIONS.compiler, "-std=c++17", CLIENT / "client.cpp", "-o", work / "client", *flags)
            self.run_client(work / "client")


class SymbolsTest(unittest.TestCase):
    # Mangled names: members and free functions of our namespaces and of the archive classes, with
    # their type information, tables and local statics.
    OURS = re.compile(r"_Z(T[ISV]|GV|Z)?N?K?(3lmx|6zol_v2|3zol4port|13ZipArchiveLib|\d+CZip)")

    def test_nothing_but_the_interface_is_exported(self):
        lines = call("nm", "-D", "--defined-only", OPTIONS.build / "libzol.so").splitlines()
        names = {line.split()[-1].split("@")[0] for line in lines}
        self.assertIn("_ZN6zol_v23ZolC1Ev", names)
        flat = {name for name in names if not self.OURS.match(name)}
        expected = set()
        if OPTIONS.bridge:
            exports = (OPTIONS.build / "generated/bridge/zol_exports.txt").read_text()
            expected = {line.split("@")[0] for line in exports.split()}
            helpers = (SOURCE / "bridge/zol_helpers.h").read_text()
            expected |= set(re.findall(r"ZOL_CALL (zol_\w+)\(", helpers))
        self.assertEqual(flat, expected)

    def test_no_inner_class_is_exported(self):
        names = call("nm", "-D", "--defined-only", OPTIONS.build / "libzol.so")
        tables = re.findall(r" (_ZT[ISV]N\S*8internal\S*)", names)
        # What the classes of the model are derived from.
        bases = ("6Object", "5Plain", "11Polymorphic")
        self.assertEqual([name for name in tables if not name[:-1].endswith(bases)], [])


    def test_libraries_beside_it_export_their_own_namespace_alone(self):
        for name, space, known in (
                ("zolcolor", "11colorimetry", "_ZN6zol_v211colorimetry8evaluateERKNS_3ZolE"),
                ("zolinterchange", "11interchange", "_ZN6zol_v211interchange7formatsEv")):
            library = OPTIONS.build / f"lib{name}.so"
            if not library.exists():
                continue
            names = {line.split()[-1] for line in
                     call("nm", "-D", "--defined-only", library).splitlines()}
            self.assertIn(known, names)
            self.assertEqual({name for name in names
                              if not re.match(rf"_Z(NK?|T[ISV]N)6zol_v2{space}", name)
                              or f"{space}8internal" in name}, set())


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--bridge", action="store_true")
    parser.add_argument("--beside", action="store_true", help="with the libraries beside the core")
    OPTIONS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
