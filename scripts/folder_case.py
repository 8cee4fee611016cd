"""What the tests of the checks over a tree share: a folder of their own, filled by each case."""
import contextlib
import io
import pathlib
import tempfile
import unittest


class FolderCase(unittest.TestCase):
    """A test with the folder self.root, which goes with it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def printed_by(self, check):
        """(what the function answers, what it prints)"""
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            return check(), printed.getvalue()
