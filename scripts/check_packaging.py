#!/usr/bin/env python3
"""Checks the port for vcpkg and the recipe for Conan as far as that goes without either: that they can be read, have the version
of the project, and set options that it has."""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
PORT = ROOT / "packaging" / "vcpkg" / "quiver"
RECIPE = ROOT / "packaging" / "conan" / "conanfile.py"


def read(path):
    return path.read_text(encoding="utf-8")


def list_options():
    text = read(ROOT / "CMakeLists.txt") + read(ROOT / "cmake" / "QuiverPcre.cmake")
    return set(re.findall(r"\b(?:option\(|set\()(QUIVER_\w+)(?= \"|\s.*CACHE)", text))


def run_portfile():
    """Runs the port's script with the commands of vcpkg in the place of which each says that it was called."""
    commands = sorted(set(re.findall(r"^\s*(vcpkg_\w+)\(", read(PORT / "portfile.cmake"), re.MULTILINE)))
    with tempfile.TemporaryDirectory() as folder:
        script = pathlib.Path(folder) / "run.cmake"
        stubs = "".join(f"function({command})\n    message(STATUS \"{command} ${{ARGN}}\")\nendfunction()\n" for command in commands)
        script.write_text(f"cmake_minimum_required(VERSION 3.23)\n{stubs}set(CURRENT_PACKAGES_DIR \"{folder}/packages\")\n"
                          f"set(FEATURES core tools)\ninclude(\"{PORT}/portfile.cmake\")\n", encoding="utf-8")
        result = subprocess.run(["cmake", "-P", str(script)], capture_output=True, check=False, encoding="utf-8")
    return result.returncode, result.stdout + result.stderr


def main():
    complaints = []
    version = re.search(r"project\(Quiver VERSION ([0-9.]+)", read(ROOT / "CMakeLists.txt"))[1]

    manifest = json.loads(read(PORT / "vcpkg.json"))
    if manifest["version"] != version:
        complaints.append(f"vcpkg.json has the version {manifest['version']}, the project {version}")
    status, output = run_portfile()
    if status != 0 or f"SOURCE_PATH;{ROOT};" not in output:
        complaints.append(f"portfile.cmake does not run, or builds other sources:\n{output}")

    recipe = read(RECIPE)
    compile(recipe, str(RECIPE), "exec")
    for pattern in re.search(r"for pattern in \((.*?)\)", recipe)[1].replace('"', "").split(", "):
        if not (ROOT / pattern.removesuffix("/*")).exists():
            complaints.append(f"conanfile.py exports {pattern}, which is not there")

    options = list_options()
    for name, text in (("portfile.cmake", read(PORT / "portfile.cmake")), ("conanfile.py", recipe)):
        for option in sorted(set(re.findall(r"QUIVER_\w+", text)) - options):
            complaints.append(f"{name} sets {option}, which the project does not have")

    for complaint in complaints:
        print(f"check_packaging: {complaint}", file=sys.stderr)
    if not complaints:
        print(f"check_packaging: ok, version {version}, {len(options)} options known")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
