"""What the companion prints of hostile texts: nothing that a terminal obeys, in whatever way the text comes."""

import json
import os
import plistlib
import pty
import re
import tty
import unittest

from companion import CompanionTest, record

CONTROLS = [*range(0x01, 0x20), *range(0x7F, 0xA0)]
DIRECTIONS = [0x061C, 0x200E, 0x200F, *range(0x202A, 0x202F), *range(0x2066, 0x206A)]
UNSAFE = "".join(map(chr, CONTROLS + DIRECTIONS + [0x2028, 0x2029, 0xFEFF]))
HOSTILE = UNSAFE + "\x1b[31m\x1b]0;title\x07\x9b2J\u202e<&\"'\\家\x1b"
NOT_UTF8 = b"\xff\xc0\x9b\xe5\xae\xed\xa0\xbd"
FORBIDDEN = re.compile("[" + UNSAFE.replace("\t", "").replace("\n", "") + "\x00\ud800-\udfff]")

# In lists, this character stands for a lone surrogate, for which there is no way through Python's writer.
SURROGATE = "\ue123"


def binary_list(value):
    return plistlib.dumps(value, fmt=plistlib.FMT_BINARY).replace(SURROGATE.encode("utf-16-be"), b"\xd8\x3d")


def forbidden_in(output):
    """What stands in the bytes that a terminal may not be sent, or None."""
    try:
        found = FORBIDDEN.search(output.decode())
    except UnicodeDecodeError as error:
        return error
    return found and hex(ord(found[0]))


class Terminal(CompanionTest):
    def check(self, *arguments, **streams):
        done = self.run_companion(*arguments, **streams)
        with self.subTest(arguments=arguments):
            self.assertIn(done.returncode, (0, 1, 2))
            self.assertIsNone(forbidden_in(done.stdout), done.stdout)
            self.assertIsNone(forbidden_in(done.stderr), done.stderr)
            self.assertEqual(done.stderr.count(b"\n"), 0 if done.returncode == 0 else 1, done.stderr)
            self.assertNotIn(b"\t", done.stderr)
        return done

    def test_scanner_finds_what_is_forbidden(self):
        for character in UNSAFE.replace("\n", "").replace("\t", "") + "\0":
            self.assertIsNotNone(forbidden_in(f"a{character}b".encode()), hex(ord(character)))
        for length in range(1, len(NOT_UTF8)):
            self.assertIsNotNone(forbidden_in(NOT_UTF8[:length]))
        self.assertIsNone(forbidden_in("a\tb\n家🏠é".encode()))

    def test_words_of_the_command_line(self):
        for word in (HOSTILE.encode(), NOT_UTF8, b"a\nb\tc\rd"):
            for arguments in ([word], [b"--" + word], [b"--json=" + word], [b"--to", word, b"list"],
                              [b"list", word], [b"list", b"--" + word], [b"consume", word], [b"plist"],
                              [b"plist", word], [b"plist", word, word], [b"plist", word, b"--to", word],
                              [b"plist", word, b"--to=" + word], [b"publish", word], [b"publish", word, word],
                              [b"act"], [b"act", word, b"5", b"paid"], [b"act", b"p", word, b"paid"],
                              [b"act", b"p", b"5", word], [b"act", b"p", b"5", b"later", word],
                              [b"settings", word], [b"settings", b"get", word], [b"settings", b"get", word, b"--json"],
                              [b"settings", b"set", word, b"v"], [b"settings", b"set", b"account_pk", word],
                              [b"settings", b"set", b"notification_days_count", word],
                              [b"settings", b"set", b"edit_transaction_date", word]):
                done = self.check(*arguments)
                self.assertNotEqual(done.returncode, 0)

    def test_names_of_files_and_folders(self):
        for word in (HOSTILE.encode().replace(b"/", b""), NOT_UTF8):
            file = os.fsencode(self.containers) + b"/" + word
            for content in (b"<plist>", b"bplist00", b"[", b"[1]", b"{}", b"{ a = b; }"):
                with open(file, "wb") as stream:
                    stream.write(content)
                self.check("plist", file)
                self.check("publish", file)
            containers = file + b".d"
            folder = containers + b"/" + self.container.name.encode()
            os.makedirs(folder + b"/-")
            for name in (b"/notifications.xml", b"/-/actions.xml"):
                with open(folder + name, "wb") as stream:
                    stream.write(b"<plist>")
            for arguments in (["list"], ["act", "p", "5", "paid"], ["consume"], ["settings", "get", "a"],
                              ["list", "--containers", containers], ["publish", "-"]):
                self.check(*arguments, containers=containers, input=b"[{}]")

    def test_feed(self):
        texts = {key: HOSTILE + SURROGATE for key in ("name", "amount", "image", "planpk")}
        self.feed.write_bytes(binary_list([record("p", 5.0) | texts, record("p", 6.0)]))
        self.assertIn(b"2 of 2 shown", self.check("list").stdout)
        listed = json.loads(self.check("list", "--json").stdout)["transactions"][0]
        self.assertEqual({listed[key] for key in ("name", "amount", "image", "planpk")},
                         {HOSTILE + "\ud83d"})
        self.check("act", HOSTILE, "5", "delete")

    def test_log(self):
        odd = [HOSTILE + SURROGATE, {HOSTILE: HOSTILE.encode()}, [HOSTILE], {"type": 2, "pk": HOSTILE, "date": 5.0, "param": 1},
               {"type": 2, "pk": "p" + SURROGATE, "date": 5.0, "param": 1}]
        for arguments in (["consume"], ["consume", "--json"]):
            self.log.write_bytes(binary_list(odd))
            done = self.check(*arguments)
            self.assertEqual(done.stdout.count(b"\n"), len(odd))
        read = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(read, [HOSTILE + "\ud83d", {HOSTILE: {"data": HOSTILE.encode().hex()}}, [HOSTILE], odd[3],
                                odd[4] | {"pk": "p\ud83d"}])

    def test_settings(self):
        self.write_settings({HOSTILE: HOSTILE, "list": [HOSTILE, {HOSTILE: HOSTILE}]})
        shown = self.check("settings", "get", HOSTILE).stdout.decode()
        self.assertIn("\\u001b[31m\\u001b]0;title\\u0007\\u009b2J\\u202e<&\"'\\家\\u001b\n", shown)
        self.assertEqual(json.loads(self.check("settings", "get", HOSTILE, "--json").stdout), HOSTILE)
        self.assertEqual(json.loads(self.check("settings", "get", "list").stdout), [HOSTILE, {HOSTILE: HOSTILE}])
        self.assertEqual(self.check("settings", "set", "account_pk", "a").returncode, 1)

    def test_published_input(self):
        quoted = json.dumps(HOSTILE).encode()
        raw = b'"' + HOSTILE.encode() + b'"'
        whole = json.dumps(record("p", 5.0)).encode()[:-1]
        for text in (raw, b"[" + raw, HOSTILE.encode(), NOT_UTF8, b'["' + NOT_UTF8 + b'"]', quoted, b"[" + quoted + b"]",
                     b"{" + quoted + b":1," + quoted + b":2}", b'[{"date":' + quoted + b"}]",
                     b"[" + whole + b"," + quoted + b":null}]", b"[" + whole + b"," + quoted + b":1}]",
                     b"[" + whole + b',"a":{' + quoted + b":[" + quoted + b"]}}]", b"\x1b[31m", b"[\x9b]", b"tru\x1b"):
            self.assertEqual(self.check("publish", "-", input=text).returncode, 1)

    def test_property_list_in_a_pipe(self):
        for content in (binary_list({HOSTILE + SURROGATE: [HOSTILE, HOSTILE.encode(), SURROGATE]}), NOT_UTF8,
                        b"<plist><string>" + HOSTILE.encode() + b"</string", b"{" + HOSTILE.encode() + b"}",
                        b"<" + HOSTILE.encode() + b">", b"<plist><real>" + HOSTILE.encode() + b"</real></plist>"):
            self.check("plist", "-", input=content)
            done = self.run_companion("plist", "-", "--to", "xml", input=content)
            self.assertIsNone(forbidden_in(done.stderr))

    def test_property_list_on_a_terminal(self):
        source = binary_list({HOSTILE: [HOSTILE, {"a": HOSTILE.encode()}], "b": 5})
        ours, program_s = pty.openpty()
        tty.setraw(program_s)
        self.run_companion("plist", "-", "--to", "xml", input=source, stdout=program_s)
        os.close(program_s)
        shown = b""
        try:
            while piece := os.read(ours, 65536):
                shown += piece
        except OSError: # what a terminal says at its end
            pass
        os.close(ours)
        self.assertIsNone(forbidden_in(shown), shown)
        self.assertIn(b"&#x202e;", shown)
        exact = self.run_companion("plist", "-", "--to", "xml", input=source).stdout
        self.assertNotEqual(shown, exact)
        self.assertEqual(self.check("plist", "-", input=shown).stdout, self.check("plist", "-", input=source).stdout)


if __name__ == "__main__":
    unittest.main()
