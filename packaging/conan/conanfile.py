"""The core of ZelvoraSDK for Conan 2. Run from the top of the tree: conan create packaging/conan."""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class ZelvoraSDK(ConanFile):
    name = "zelvorasdk"
    version = "0.1.0"
    license = "Apache-2.0"
    description = "Voice navigation for phone applications, understood on the device"
    settings = "os", "compiler", "build_type", "arch"
    options = {"shared": [True, False]}
    default_options = {"shared": False}
    requires = "boost/[>=1.81]", "utf8proc/[>=2.8]"
    tool_requires = "pkgconf/[>=1.9]"
    generators = "CMakeDeps", "PkgConfigDeps"

    def export_sources(self):
        top = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "cmake/*", "ZelvoraSDK/*", "LICENSE", "NOTICE", "README.md",
                        "CHANGELOG.md", "docs/*", "examples/shop/*"):
            copy(self, pattern, top, self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        for part in ("HOST", "TOOL", "UI", "EXAMPLES"):
            toolchain.cache_variables[f"ZELVORA_BUILD_{part}"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.set_property("cmake_find_mode", "none")  # It brings its own.
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "ZelvoraSDK")]
