"""What the compiler and the linker have added to the built programs, so that memory errors are of no use to anybody.

KORVEL_FORTIFY_LEVEL is 0 in a build without optimisation, where the C library checks nothing. KORVEL_HAS_MARKS is 1 where
the processor has marks for the places that indirect calls may reach."""

import os
import re
import subprocess
import unittest

PROGRAMS = os.environ.get("KORVEL_PROGRAMS", "").split(":")


def said(*command):
    environment = dict(os.environ, LC_ALL="C")
    return subprocess.run(command, env=environment, stdout=subprocess.PIPE, text=True, check=True).stdout


def imports(program):
    """The functions that a program takes from shared libraries."""
    symbols = said("readelf", "--wide", "--dyn-syms", program)
    return set(re.findall(r"\bFUNC\s+GLOBAL\s+DEFAULT\s+UND\s+(\w+)", symbols))


class Hardening(unittest.TestCase):
    def for_each_program(self, check):
        self.assertEqual(len(PROGRAMS), 4, "the companion, the bridge, the panel and the demo's host")
        for program in PROGRAMS:
            with self.subTest(program=os.path.basename(program)):
                check(program)

    def test_programs_lie_at_random_addresses(self):
        def check(program):
            self.assertRegex(said("readelf", "--file-header", program), r"Type:\s+DYN")
            self.assertRegex(said("readelf", "--wide", "--dynamic", program), r"FLAGS_1\).*\bPIE\b")
        self.for_each_program(check)

    def test_table_of_addresses_is_read_only(self):
        def check(program):
            self.assertRegex(said("readelf", "--wide", "--program-headers", program), r"\bGNU_RELRO\b")
            self.assertRegex(said("readelf", "--wide", "--dynamic", program), r"FLAGS\).*\bBIND_NOW\b")
            self.assertRegex(said("readelf", "--wide", "--dynamic", program), r"FLAGS_1\).*\bNOW\b")
        self.for_each_program(check)

    def test_stack_is_not_executable(self):
        def check(program):
            self.assertRegex(said("readelf", "--wide", "--program-headers", program), r"GNU_STACK\s.*\sRW\s")
        self.for_each_program(check)

    def test_canaries_guard_the_stack(self):
        self.for_each_program(lambda program: self.assertIn("__stack_chk_fail", imports(program)))

    def test_calls_of_the_c_library_are_checked(self):
        def check(program):
            checked = [name for name in imports(program) if re.fullmatch(r"__\w+_chk", name)]
            self.assertEqual(bool(checked), os.environ["KORVEL_FORTIFY_LEVEL"] != "0", checked)
        self.for_each_program(check)

    def test_indirect_calls_end_at_marked_places(self):
        def check(program):
            code = said("objdump", "--disassemble=main", "--no-show-raw-insn", program)
            self.assertIn("<main>:", code)
            is_marked = re.search(r"<main>:\n\s*[0-9a-f]+:\s+endbr64\b", code) is not None
            self.assertEqual(is_marked, os.environ["KORVEL_HAS_MARKS"] == "1", code)
        self.for_each_program(check)


if __name__ == "__main__":
    unittest.main()
