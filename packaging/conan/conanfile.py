"""Recipe for Conan 2, which builds the sources that it is a part of: conan create packaging/conan --build=missing"""

import os
import re

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load


class QuiverConan(ConanFile):
    name = "quiver"
    description = "XML data binding for C++: classes from XML schemas, XML text and Fast Infoset documents"
    license = "MIT"
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": True, "fPIC": True}
    requires = "expat/[>=2.4 <3]", "pcre2/[>=10.40 <11]", "zlib/[>=1.2.11 <2]"

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, "..", "..")

    def set_version(self):
        lines = load(self, os.path.join(self._root, "CMakeLists.txt"))
        self.version = re.search(r"project\(Quiver VERSION ([0-9.]+)", lines)[1]

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "LICENSE", "cmake/*", "quiver/*", "tools/*"):
            copy(self, pattern, src=self._root, dst=self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["QUIVER_PCRE"] = "2"
        toolchain.cache_variables["QUIVER_BUILD_TOOLS"] = True
        for part in ("QUIVER_BUILD_TESTS", "QUIVER_BUILD_EXAMPLES", "QUIVER_BUILD_BENCH", "QUIVER_WARNINGS_AS_ERRORS"):
            toolchain.cache_variables[part] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))

    def package_info(self):
        # The files that CMake installs also have the function quiver_generate, so they serve rather than made ones.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "Quiver")]
        self.cpp_info.libs = ["QvXmlLib9" if self.options.shared else "QvXmlLib9_static"]
        if not self.options.shared:
            self.cpp_info.defines = ["QVXMLLIB_STATIC"]
