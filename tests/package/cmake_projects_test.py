#!/usr/bin/env python3
"""What small CMake projects get of the project: its installed package with components, or its sources as a subfolder.

usage: cmake_projects_test.py CMAKE GENERATOR COMPILER -DCMAKE_CXX_FLAGS=FLAGS SOURCES PREFIX [unittest's own arguments]
"""
import os
import subprocess
import sys
import tempfile
import unittest

CMAKE, GENERATOR, COMPILER, FLAGS, SOURCES, PREFIX = sys.argv[1:7]


class Projects(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def configure(self, lines, *options):
        """The result of configuring a project of these lines; output has both streams."""
        with open(os.path.join(self.folder, "CMakeLists.txt"), "w", encoding="ascii") as stream:
            stream.write("cmake_minimum_required(VERSION 3.20)\nproject(parent LANGUAGES CXX)\n" + lines)
        command = [CMAKE, "-S", self.folder, "-B", os.path.join(self.folder, "b"), "-G", GENERATOR,
                   f"-DCMAKE_CXX_COMPILER={COMPILER}", FLAGS]
        return subprocess.run(command + list(options), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)

    def write_main(self, text):
        with open(os.path.join(self.folder, "main.cpp"), "w", encoding="ascii") as stream:
            stream.write(text)

    def build(self, target):
        return subprocess.run([CMAKE, "--build", os.path.join(self.folder, "b"), "--target", target],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)

    def has_file(self, name):
        return any(name in files for _, _, files in os.walk(os.path.join(self.folder, "b")))


class Components(Projects):
    package = f"-DCMAKE_PREFIX_PATH={PREFIX}"

    def test_without_components_all_are_there(self):
        found = self.configure("""find_package(kvorender REQUIRED)
foreach(name read model render scene)
  if(NOT TARGET kvorender::${name})
    message(FATAL_ERROR "no ${name}")
  endif()
endforeach()
""", self.package)
        self.assertEqual(found.returncode, 0, found.stdout)

    def test_one_that_there_is_not_is_named_with_those_there_are(self):
        found = self.configure("find_package(kvorender REQUIRED COMPONENTS scene window)\n", self.package)
        self.assertNotEqual(found.returncode, 0)
        self.assertIn("kvorender has no component 'window'; it has read, model, render and scene", " ".join(found.stdout.split()))

    def test_an_optional_one_that_there_is_not_is_no_error(self):
        found = self.configure("""find_package(kvorender REQUIRED COMPONENTS scene OPTIONAL_COMPONENTS window)
if(kvorender_window_FOUND OR NOT TARGET kvorender::scene)
  message(FATAL_ERROR "window ${kvorender_window_FOUND}")
endif()
""", self.package)
        self.assertEqual(found.returncode, 0, found.stdout)

    def test_without_drawing_no_opengl_is_looked_for(self):
        self.write_main('#include "modelwriter.h"\n#include <kvo/camera.h>\n'
                        "int main() { return ModelPart().stride > 100 || kvo::Camera().scale() < 0; }\n")
        found = self.configure("""set(CMAKE_DISABLE_FIND_PACKAGE_OpenGL ON)
find_package(kvorender REQUIRED COMPONENTS read model)
add_executable(reader main.cpp)
target_compile_features(reader PRIVATE cxx_std_17)
target_link_libraries(reader PRIVATE kvorender::read kvorender::model)
""", self.package)
        self.assertEqual(found.returncode, 0, found.stdout)
        built = self.build("reader")
        self.assertEqual(built.returncode, 0, built.stdout)

    def test_drawing_without_opengl_says_so(self):
        found = self.configure("set(CMAKE_DISABLE_FIND_PACKAGE_OpenGL ON)\nfind_package(kvorender REQUIRED COMPONENTS render)\n",
                               self.package)
        self.assertNotEqual(found.returncode, 0)
        self.assertIn("OpenGL", found.stdout)


class Subproject(Projects):
    without_programs = ["-DCMAKE_DISABLE_FIND_PACKAGE_" + name + "=ON"
                        for name in ("GTest", "CLI11", "benchmark", "PNG", "nlohmann_json", "EXPAT")]

    def test_libraries_alone_are_there_and_nothing_is_installed(self):
        self.write_main('#include "modelwriter.h"\nint main() { return ModelPart().stride > 100; }\n')
        found = self.configure(f"""add_subdirectory({SOURCES} kvorender)
add_executable(reader main.cpp)
target_link_libraries(reader PRIVATE kvorender::read)
if(NOT TARGET kvorender::scene OR TARGET kvo OR TARGET package_make_model)
  message(FATAL_ERROR "too much or too little")
endif()
""", "-DCMAKE_BUILD_TYPE=None", *self.without_programs)
        self.assertEqual(found.returncode, 0, found.stdout)
        self.assertFalse(self.has_file("kvorenderConfig.cmake"))
        built = self.build("reader")
        self.assertEqual(built.returncode, 0, built.stdout)
        installed = subprocess.run([CMAKE, "--install", os.path.join(self.folder, "b"), "--prefix",
                                    os.path.join(self.folder, "prefix")], capture_output=True, text=True, check=False)
        self.assertEqual(installed.returncode, 0, installed.stderr)
        self.assertFalse(os.path.exists(os.path.join(self.folder, "prefix", "include")))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[7:])
