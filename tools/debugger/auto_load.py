"""Loads what shows Quiver's values, when gdb loads the library."""

import pathlib

# share/gdb/auto-load/usr/LIBDIR/this file, and share/quiver beside gdb's directory.
for _folder in pathlib.Path(__file__).resolve().parents:
    _printers = _folder / "quiver" / "quiver_gdb.py"
    if _printers.is_file():
        exec(compile(_printers.read_text(encoding="utf-8"), str(_printers), "exec"))
        break
