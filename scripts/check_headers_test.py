#!/usr/bin/env python3
"""Shows small headers, one of them faulty, to check_headers.py."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).with_name("check_headers.py")


class CheckHeadersTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        # The build that headers are compiled for, and one that compiles Own.cpp.
        for build, source in (("win32", "Main.cpp"), ("clang", "Own.cpp")):
            command = f"c++ -std=c++20 -Winvalid-pch -include {self.root}/pch.h -I{self.root} -o {source}.o -c {source}"
            self.write(f"{build}/compile_commands.json",
                       json.dumps([{"directory": "/", "command": command, "file": str(self.root / source)}]))
        self.write("pch.h", "struct Missing {};\n")
        self.write("Main.cpp", "int main() {}\n")
        self.write("Own.cpp", '#include "Own.h"\n')

    def write(self, name, text):
        file = self.root / name
        file.parent.mkdir(exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return str(file)

    def run_check(self, *headers):
        run = subprocess.run([sys.executable, str(SCRIPT), str(self.root / "win32"), str(self.root / "clang"), "--",
                              *headers], capture_output=True, text=True, check=False)
        self.assertEqual(run.stderr, "")
        return run.returncode, run.stdout

    def test_passes_a_header_that_names_what_it_uses(self):
        self.write("Other.h", "#pragma once\nstruct Other {};\n")
        self.assertEqual(self.run_check(self.write("Good.h", '#pragma once\n#include "Other.h"\nOther other();\n')),
                         (0, ""))

    def test_tells_a_header_that_leans_on_what_stands_before_it(self):
        status, text = self.run_check(self.write("Bad.h", "#pragma once\nMissing missing();\n"))
        self.assertEqual(status, 1)
        self.assertIn("Bad.h:2", text)

    def test_takes_the_options_of_sources_that_are_compiled_as_one(self):
        self.write("below/Part.cpp", "")
        united = self.write("win32/unity_0_cxx.cxx", f'/* made */\n#include "{self.root}/below/Part.cpp"\n')
        commands = self.root / "win32/compile_commands.json"
        entries = json.loads(commands.read_text(encoding="utf-8"))
        entries.append({"directory": "/", "command": f"c++ -DBELOW=struct -c {united}", "file": united})
        commands.write_text(json.dumps(entries), encoding="utf-8")
        header = "#pragma once\nBELOW Here {};\n"
        self.assertEqual(self.run_check(self.write("below/Here.h", header)), (0, ""))
        self.assertEqual(self.run_check(self.write("Above.h", header))[0], 1)

    def test_leaves_out_what_a_source_of_another_build_includes_first(self):
        self.assertEqual(self.run_check(self.write("Own.h", "#pragma once\nMissing missing();\n")), (0, ""))


if __name__ == "__main__":
    unittest.main()
