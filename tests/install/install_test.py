#!/usr/bin/env python3
"""Installs the build, and uses the copy as others would.

install_test.py --build DIR --compiler CXX [--bridge] [unittest options]
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
        path = self.directory / self.id().rsplit(".", 1)[1]
        path.mkdir()
        return path

    def run_client(self, program, **options):
        work = program.parent
        self.assertEqual(call(program, cwd=work, **options), "read back client\n")

    def files(self, pattern):
        return sorted(str(path.relative_to(self.prefix)) for path in self.prefix.glob(pattern)
                      if path.is_file())

    def test_what_is_there(self):
        for pattern in ("bin/zol", "lib*/**/libzol.so.2", "share/xml/zol/zol.xsd",
                        "share/zol/zol.schema.json",
                        "share/man/man1/zol.1", "share/bash-completion/completions/zol",
                        "lib*/**/pkgconfig/zol.pc", "lib*/**/ZolConfigVersion.cmake",
                        "include/zol/model/Zol.h", "include/zol/lmx/lmxparse.h",
                        "include/zol/zip/archive.h", "include/zol/facade/files.h"):
            self.assertEqual(len(self.files(pattern)), 1, pattern)
        text = "".join(path.read_text() for path in self.prefix.glob("lib*/**/*.cmake"))
        for path in (SOURCE, OPTIONS.build.resolve(), self.directory):
            # As a path of its own, and not as the end of one: a checkout may be "/zol".
            self.assertNotRegex(text, rf"(?<![\w}}./-]){re.escape(str(path))}(?![\w.-])")

    def test_command_runs(self):
        sample = SOURCE / "examples/documents/named-colours.zol"
        self.assertIn("valid", call(self.prefix / "bin/zol", "validate", sample))

    def test_find_package(self):
        work = self.work_directory()
        call("cmake", "-S", CLIENT, "-B", work, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}",
             f"-DCMAKE_CXX_COMPILER={OPTIONS.compiler}")
        call("cmake", "--build", work)
        self.run_client(work / "client")

    def test_another_major_version_is_refused(self):
        work = self.work_directory()
        (work / "CMakeLists.txt").write_text("cmake_minimum_required(VERSION 3.21)\n"
                                             "project(p LANGUAGES NONE)\nfind_package(Zol 1 QUIET)\n"
                                             'message("found: ${Zol_FOUND}")\n')
        self.assertIn("found: 0", call("cmake", "-S", work, "-B", work / "build", "-G", "Ninja",
                                       f"-DCMAKE_PREFIX_PATH={self.prefix}"))

    def test_pkg_config(self):
        work = self.work_directory()
        (library,) = self.prefix.glob("lib*/**/libzol.so.2")
        paths = dict(os.environ, PKG_CONFIG_PATH=str(library.parent / "pkgconfig"))
        flags = call("pkg-config", "--cflags", "--libs", "zol", env=paths).split()
        call(OPTIONS.compiler, "-std=c++17", CLIENT / "client.cpp", "-o", work / "client", *flags)
        self.run_client(work / "client", env=dict(os.environ, LD_LIBRARY_PATH=str(library.parent)))
        version = call("pkg-config", "--modversion", "zol", env=paths)
        self.assertIn(version.strip(), call(self.prefix / "bin/zol", "--version"))

    def expect_library(self, name, target, client, printed):
        """A program of somebody else with a library beside the core, in both ways to link it."""
        if not (OPTIONS.build / f"lib{name}.so").exists():
            self.skipTest(f"lib{name} was left out")
        work = self.work_directory()
        shutil.copy(CLIENT / client, work)
        (library,) = self.prefix.glob(f"lib*/**/lib{name}.so.2")
        paths = dict(os.environ, PKG_CONFIG_PATH=str(library.parent / "pkgconfig"))
        flags = call("pkg-config", "--cflags", "--libs", name, env=paths).split()
        call(OPTIONS.compiler, "-std=c++17", work / client, "-o", work / "by_pkg", *flags)
        here = dict(os.environ, LD_LIBRARY_PATH=str(library.parent))
        self.assertEqual(call(work / "by_pkg", env=here), printed)
        (work / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.21)\nproject(p LANGUAGES CXX)\n"
            f"find_package(Zol REQUIRED)\nadd_executable(by_cmake {client})\n"
            f"target_link_libraries(by_cmake PRIVATE {target})\n")
        call("cmake", "-S", work, "-B", work / "build", "-G", "Ninja",
             f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_CXX_COMPILER={OPTIONS.compiler}")
        call("cmake", "--build", work / "build")
        self.assertEqual(call(work / "build/by_cmake"), printed)

    def test_colorimetry_in_an_installed_copy(self):
        self.expect_library("zolcolor", "Zol::colorimetry", "colours.cpp", "#ffffff\n")

    def test_interchange_in_an_installed_copy(self):
        self.expect_library("zolinterchange", "Zol::interchange", "json.cpp",
                            '{"ColorType":{"ColorName":"red"}}\n')

    def test_add_subdirectory(self):
        work = self.work_directory()
        call("cmake", "-S", CLIENT, "-B", work, "-G", "Ninja", f"-DZOL_SOURCE={SOURCE}",
             "-DZOL_BUILD_BRIDGE=OFF", "-DCMAKE_CXX_FLAGS=-O0",
             f"-DCMAKE_CXX_COMPILER={OPTIONS.compiler}")
        call("cmake", "--build", work, "--target", "client")
        self.run_client(work / "client")
        # Its own installation holds nothing of ours.
        call("cmake", "--install", work, "--prefix", work / "copy")
        self.assertFalse((work / "copy").exists())


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


@unittest.skipUnless(shutil.which("dpkg-deb"), "not a Debian machine")
class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        call("cpack", "-G", "DEB", "-B", cls.directory, "--config",
             OPTIONS.build / "CPackConfig.cmake")
        (cls.package,) = cls.directory.glob("*.deb")

    def test_contents(self):
        contents = call("dpkg-deb", "-c", self.package)
        for path in ("./usr/bin/zol\n", "/libzol.so.2 ->", "./usr/include/zol/model/Zol.h\n",
                     "./usr/share/xml/zol/zol.xsd\n", "/pkgconfig/zol.pc\n"):
            self.assertIn(path, contents)
        modes = {line.split()[0] for line in contents.splitlines()}
        self.assertLessEqual(modes, {"drwxr-xr-x", "-rw-r--r--", "-rwxr-xr-x", "lrwxrwxrwx"})
        depends = call("dpkg-deb", "-f", self.package, "Depends")
        for library in ("libxml2", "zlib1g", "libbz2-1.0", "libstdc++6"):
            self.assertIn(library, depends)

    @unittest.skipUnless(os.geteuid() == 0, "only root installs packages")
    def test_installs_and_goes_without_a_trace(self):
        root = self.directory / "root"
        for path in ("updates", "info", "triggers"):
            (root / "var/lib/dpkg" / path).mkdir(parents=True)
        (root / "var/lib/dpkg/status").touch()
        dpkg = ["dpkg", f"--root={root}", "--force-depends", "--force-script-chrootless",
                f"--log={os.devnull}"]

        def installed():
            return {path for path in root.rglob("*") if root / "var" not in path.parents}
        before = installed()
        call(*dpkg, "-i", self.package)
        sample = SOURCE / "examples/documents/spectra.zol"
        self.assertIn("valid", call(root / "usr/bin/zol", "validate", sample))
        call(*dpkg, "-P", "zol")
        self.assertEqual(installed(), before)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--bridge", action="store_true")
    OPTIONS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
