#!/usr/bin/env python3
"""Tests of what ./tam package writes, over files made for them."""
import hashlib
import html
import json
import os
import pathlib
import posixpath
import re
import struct
import tempfile
import unittest
import zipfile
from unittest import mock

import jsonschema

import package
import package_programs
from package_installer import file_lists
from package_kit import command_file, is_for, listed_places
from package_pages import Pages, leads_outside
from package_sbom import sbom_bytes
from package_sdk import without_folder
from package_zip import sums_text, zip_bytes

MOMENT = 1_700_000_001


def binary(machine, numbers):
    """As much of a Windows program as has a processor and a version."""
    head = bytearray(0x100)
    head[:2] = b"MZ"
    struct.pack_into("<I", head, 0x3C, 0x80)
    struct.pack_into("<4sH", head, 0x80, b"PE\0\0", machine)
    major, minor, patch, build = numbers
    return bytes(head) + struct.pack("<IIII", 0xFEEF04BD, 0x10000, major << 16 | minor, patch << 16 | build)


class ArchiveTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_has_the_same_bytes_in_any_order(self):
        self.assertEqual(zip_bytes({"a": b"1", "b/c": b"2"}, MOMENT), zip_bytes({"b/c": b"2", "a": b"1"}, MOMENT))

    def test_holds_the_files_at_one_time(self):
        path = self.folder / "a.zip"
        path.write_bytes(zip_bytes({"b": b"two", "a/c": b"three"}, MOMENT))
        with zipfile.ZipFile(path) as archive:
            self.assertIsNone(archive.testzip())
            self.assertEqual([(entry.filename, entry.date_time) for entry in archive.infolist()],
                             [("a/c", (2023, 11, 14, 22, 13, 20)), ("b", (2023, 11, 14, 22, 13, 20))])
            self.assertEqual(archive.read("a/c"), b"three")

    def test_sums_are_those_of_sha256sum(self):
        self.assertEqual(
            sums_text({"b": b"", "a": b"abc"}),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad  a\n"
            "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855  b\n")


class BinaryTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name) / "valve.dll"

    def test_takes_the_right_one(self):
        self.path.write_bytes(binary(0x14C, (2, 5, 7, 0)))
        self.assertEqual(package_programs.read_binary(self.path, "win32", "2.5.7"), self.path.read_bytes())

    def test_refuses_another_kind_and_another_version(self):
        for machine, numbers, words in ((0x8664, (2, 5, 7, 0), "not for win32"), (0x14C, (2, 5, 6, 0), "2.5.6.0")):
            with self.subTest(words):
                self.path.write_bytes(binary(machine, numbers))
                with self.assertRaisesRegex(SystemExit, words):
                    package_programs.read_binary(self.path, "win32", "2.5.7")

    def test_refuses_what_was_not_built(self):
        with self.assertRaisesRegex(SystemExit, "is not there"):
            package_programs.read_binary(self.path, "win32", "2.5.7")


class PagesTest(unittest.TestCase):
    def page(self, text, name="docs/a.md"):
        others = {"docs/b.md": b"# One\n\n## Two\n", "docs/sub/README.md": b"# Sub\n", "samples/s.xml": b""}
        return Pages({**others, name: text.encode("utf-8")}).page(name).decode("utf-8")

    def test_stands_alone(self):
        page = self.page("# Valves & pumps\n\n| a | b |\n| --- | --- |\n| 1 | 2 |\n")
        self.assertIn("<title>Valves &amp; pumps</title>", page)
        self.assertIn('<meta charset="utf-8">', page)
        self.assertIn('<h1 id="valves--pumps">', page)
        self.assertIn("<td>2</td>", page)
        for reference in ("<script", "<link", "@import", "src="):
            self.assertNotIn(reference, page)

    def test_links_lead_to_pages_of_the_package(self):
        cases = {"b.md#two": "b.html#two", "sub": "sub/README.html", "../samples/s.xml": "../samples/s.xml",
                 "#own-one": "#own-one", "https://example.org/x.md": "https://example.org/x.md", "sub/": "sub/README.html"}
        for target, wanted in cases.items():
            with self.subTest(target):
                self.assertIn(f'<a href="{wanted}">w</a>', self.page(f"# Own one\n\n[w]({target})\n"))

    def test_a_link_to_what_is_not_there_is_text(self):
        page = self.page("See [`x.cpp`](../core/x.cpp).\n")
        self.assertIn("<p>See <code>x.cpp</code>.</p>", page)

    def test_a_link_to_a_heading_that_is_not_there_is_text(self):
        for target in ("b.md#three", "#three", "sub#three"):
            with self.subTest(target):
                self.assertIn("<p>w</p>", self.page(f"# One\n\n[w]({target})\n"))

    def test_the_links_of_the_packed_documents_lead_somewhere(self):
        files = package.documents(package.ROOT)
        pages = {name: content.decode("utf-8") for name, content in files.items() if name.endswith(".html")}
        self.assertGreater(len(pages), 20)
        links = [(name, html.unescape(target)) for name, page in pages.items()
                 for target in re.findall(r'<a href="([^"]*)"', page) if not leads_outside(html.unescape(target))]
        self.assertGreater(len(links), 100)
        for name, target in links:
            path, _, part = target.partition("#")
            inside = posixpath.normpath(posixpath.join(posixpath.dirname(name), path)) if path else name
            with self.subTest(name, target=target):
                self.assertTrue(inside in files or any(other.startswith(f"{inside}/") for other in files))
                if part and inside in pages:
                    self.assertIn(f'id="{part}"', pages[inside])

    def test_headings_of_one_text_have_names_of_their_own(self):
        page = self.page("# A\n\n## B\n\n## B\n")
        self.assertIn('<h2 id="b">', page)
        self.assertIn('<h2 id="b-1">', page)


class FileListsTest(unittest.TestCase):
    def lists(self, *names):
        """The lines of each macro."""
        text = file_lists(names, pathlib.Path("/stage"))
        macros = [macro.splitlines() for macro in text.split("!macro ")[1:]]
        return {macro[0]: [line.strip() for line in macro[1:-1]] for macro in macros}

    def test_each_file_goes_with_its_component(self):
        lists = self.lists("README.md", "win32/O_Tam_id.dll", "win32/tambench.exe", "win64/samples/device.xml",
                           "samples/device.xml", "win64/channels/a.xml")
        self.assertEqual(lists["InstallCommon"], ['SetOutPath "$INSTDIR"', 'File "/stage/README.md"'])
        self.assertEqual(lists["InstallWin32"], ['SetOutPath "$INSTDIR\\win32"', 'File "/stage/win32/O_Tam_id.dll"'])
        self.assertEqual(lists["InstallBench32"], ['SetOutPath "$INSTDIR\\win32"', 'File "/stage/win32/tambench.exe"'])
        self.assertEqual(lists["InstallBench64"],
                         ['SetOutPath "$INSTDIR\\win64\\samples"', 'File "/stage/win64/samples/device.xml"'])
        self.assertEqual(lists["InstallSamples"],
                         ['SetOutPath "$INSTDIR\\samples"', 'File "/stage/samples/device.xml"'])

    def test_removes_inner_folders_first_and_no_more_than_was_brought(self):
        self.assertEqual(self.lists("a/b/c.txt", "a/d.txt", "e.txt")["RemoveFiles"], [
            'Delete "$INSTDIR\\a\\b\\c.txt"', 'Delete "$INSTDIR\\a\\d.txt"', 'Delete "$INSTDIR\\e.txt"',
            'RMDir "$INSTDIR\\a\\b"', 'RMDir "$INSTDIR\\a"'])

    def test_refuses_a_name_that_the_installer_would_read_as_a_variable(self):
        with self.assertRaises(SystemExit):
            self.lists("$INSTDIR.txt")


    def test_every_binary_is_asked_whether_it_is_in_use(self):
        self.assertEqual(self.lists("README.md", "win32/O_Tam_id.dll", "win64/tambench.exe")["RefuseAnyInUse prefix"], [
            '!insertmacro InUse "${prefix}" "win32\\O_Tam_id.dll"',
            '!insertmacro InUse "${prefix}" "win64\\tambench.exe"'])


class SdkTest(unittest.TestCase):
    def test_a_header_does_not_tell_where_it_was_made(self):
        for folder in ("", "/home/mina/valves/idl/", "/tmp/another clone of it/idl/", "C:/Größe & co/idl/"):
            with self.subTest(folder):
                made = f"/*** Autogenerated by WIDL 7.0 from {folder}OrvHost.idl - Do not edit ***/\n\n#ifndef A\n"
                self.assertEqual(without_folder(made.encode("utf-8")).decode("utf-8"),
                                 "/*** Autogenerated by WIDL 7.0 from OrvHost.idl - Do not edit ***/\n\n#ifndef A\n")


class KitTest(unittest.TestCase):
    LIST = "# a line\ncore_tests     native,point,comma\nside_tests comma64\n\nsoak_tests     point               600\n" \
           "view_tests screen\n"

    def test_takes_the_kinds_that_the_list_names(self):
        places = listed_places(self.LIST)
        for name, kinds in (("core_tests", ["win32"]), ("side_tests", ["win64"]), ("view_tests", ["win32"]),
                            ("other_tests", ["win32"])):
            with self.subTest(name):
                self.assertEqual([kind for kind in ("win32", "win64") if is_for(kind, name, places)], kinds)

    def test_command_file_has_a_line_for_each_program_and_ends_of_windows(self):
        made = command_file("@echo off\nrem @PROGRAMS@\n:run\n", [("win32", "tests/core/core_tests.exe"),
                                                                 ("win64", "tests/view/model/view_tests.exe")])
        self.assertEqual(made, b"@echo off\r\ncall :run win32 core core_tests\r\n"
                               b"call :run win64 view\\model view_tests\r\n:run\r\n")

    def test_a_program_has_no_time_in_it(self):
        first, second = (bytearray(binary(0x14C, (1, 0, 0, 0))) for _ in range(2))
        struct.pack_into("<I", second, 0x88, 1_700_000_000)  # after the signature, the machine and the sections
        struct.pack_into("<I", second, 0x80 + 24 + 64, 77)
        self.assertNotEqual(first, second)
        self.assertEqual(package_programs.without_time(first), package_programs.without_time(second))


class BillTest(unittest.TestCase):
    def bill(self, files):
        return json.loads(sbom_bytes(files, "2.5.7", MOMENT, version_of=lambda package: f"{package} 1"))

    def test_names_each_file_with_its_sums(self):
        bill = self.bill({"win32/tambench.exe": b"abc"})
        self.assertEqual(bill["spdxVersion"], "SPDX-2.3")
        self.assertEqual(bill["creationInfo"]["created"], "2023-11-14T22:13:21Z")
        self.assertEqual(bill["files"][0]["checksums"][0],
                         {"algorithm": "SHA1", "checksumValue": "a9993e364706816aba3e25717850c26c9cd0d89d"})
        self.assertEqual(bill["packages"][0]["packageVerificationCode"]["packageVerificationCodeValue"],
                         hashlib.sha1(b"a9993e364706816aba3e25717850c26c9cd0d89d").hexdigest())

    def test_is_of_the_form_of_spdx(self):
        schema = json.loads((package.ROOT / "packaging/bill.schema.json").read_text(encoding="utf-8"))
        bill = self.bill({"win32/O_Tam_id.dll": b"a", "docs/x y.md": b"b", "docs/x-y.md": b"c"})
        jsonschema.Draft7Validator.check_schema(schema)
        jsonschema.Draft7Validator(schema).validate(bill)
        elements = [element["SPDXID"] for element in [bill] + bill["packages"] + bill["files"]]
        self.assertEqual(len(elements), len(set(elements)))
        for relation in bill["relationships"]:
            self.assertIn(relation["spdxElementId"], elements)
            self.assertIn(relation["relatedSpdxElement"], elements)
        for damage in (lambda: bill["files"][0].pop("fileName"), lambda: bill.update(extra=1)):
            damage()
            self.assertFalse(jsonschema.Draft7Validator(schema).is_valid(bill))

    def test_says_what_is_linked_into_which_binary(self):
        bill = self.bill({"win32/O_Tam_id.dll": b"a", "win32/tambench.exe": b"b", "README.md": b"c"})
        linked = {entry["SPDXID"]: entry["name"] for entry in bill["packages"]}
        names = {entry["SPDXID"]: entry["fileName"] for entry in bill["files"]}
        said = sorted((names[one["spdxElementId"]], linked[one["relatedSpdxElement"]]) for one in bill["relationships"]
                      if one["relationshipType"] == "STATIC_LINK")
        both = ["GCC run-time libraries", "mingw-w64 run-time libraries"]
        self.assertEqual(said, [("./win32/O_Tam_id.dll", name) for name in both] + [
            ("./win32/tambench.exe", name) for name in ["CLI11", *both[:1], *both[1:], "nlohmann-json"]])

    def test_is_named_after_what_it_lists(self):
        first, same, other = ({"a": b"1"}, {"a": b"1"}, {"a": b"2"})
        self.assertEqual(self.bill(first)["documentNamespace"], self.bill(same)["documentNamespace"])
        self.assertNotEqual(self.bill(first)["documentNamespace"], self.bill(other)["documentNamespace"])


class MomentTest(unittest.TestCase):
    def test_comes_from_the_environment_or_the_commit(self):
        with mock.patch.dict(os.environ, {"SOURCE_DATE_EPOCH": "12"}):
            self.assertEqual(package.moment_of(package.ROOT), 12)
        with mock.patch.dict(os.environ):
            os.environ.pop("SOURCE_DATE_EPOCH", None)
            self.assertGreater(package.moment_of(package.ROOT), 1_600_000_000)


if __name__ == "__main__":
    unittest.main()
