"""Helpers shared by the tests."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import mox

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
PROGRAM = os.environ["MOX_PROGRAM"]


def run(*command, **settings):
    """Runs a program and returns the result with its output as text."""
    return subprocess.run([str(part) for part in command], capture_output=True, text=True, **settings)


def run_python(code, *arguments, **settings):
    return run(sys.executable, "-c", code, *arguments, **settings)


def make_preview(library):
    """Creates a preview, or skips the test if there is no device."""
    try:
        return mox.Preview(library)
    except mox.Error as error:
        raise unittest.SkipTest(str(error))


class TestInFolder(unittest.TestCase):
    """Runs each test in a temporary folder with copies of the examples."""

    @classmethod
    def setUpClass(cls):
        cls.library = mox.Library()

    def setUp(self):
        self.maxDiff = None
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        for file in EXAMPLES.glob("*.xml"):
            shutil.copy(file, ".")
        shutil.copytree(EXAMPLES / "textures", "textures")
