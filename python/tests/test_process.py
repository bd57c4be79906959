"""Tests the module alongside other libraries, allocators and locales in the process, and its
misuse."""

import glob
import os
import unittest

import support
from support import EXAMPLES, TestInFolder, run_python

USE = """
import sys
import mox
library = mox.Library()
material = library.open(sys.argv[1])
print(material.compile("essl", "spirv").files[".fragment.essl"].decode())
print(mox.format_bindings(material.bindings))
print(material["rim"].values["Default Power"], len(material.problems))
"""

LXML = """
from lxml import etree
tree = etree.fromstring('<a xmlns:b="c"><b:d e="1.5">f</b:d></a>')
print(etree.tostring(tree), tree.xpath('//@e'))
try:
    etree.fromstring('<a><b></a>')
except etree.XMLSyntaxError as error:
    print(error)
"""


class Company(unittest.TestCase):
    def use(self, code=USE, **environment):
        done = run_python(code, EXAMPLES / "rim_light.xml", env={**os.environ, **environment})
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def test_lxml_first_or_last(self):
        usual = self.use()
        theirs = self.use(LXML)
        self.assertEqual(self.use(LXML + USE + LXML), theirs + usual + theirs)
        self.assertEqual(self.use(USE + LXML + USE), usual + theirs + usual)

    def test_locales(self):
        switch = "import locale\nlocale.setlocale(locale.LC_ALL, '')\nassert '%n' and locale.localeconv()['decimal_point'] == ','\n"
        self.assertEqual(self.use(switch + USE, LC_ALL="de_DE.UTF-8"), self.use())

    def test_allocators(self):
        libraries = glob.glob("/usr/lib/*/libmimalloc.so*")
        self.assertTrue(libraries)
        self.assertEqual(self.use(LD_PRELOAD=libraries[0]), self.use())
        self.assertEqual(self.use(PYTHONMALLOC="malloc", MALLOC_PERTURB_="85"), self.use())


MISUSE = """
import faulthandler, random, sys
faulthandler.enable()
sys.path.insert(0, sys.argv[2])
import misuse
misuse.run(int(sys.argv[1]))
"""


class Misuse(TestInFolder):
    def test_random_calls_never_end_the_process(self):
        for seed in range(6):
            done = run_python(MISUSE, seed, os.path.dirname(support.__file__))
            self.assertEqual(done.returncode, 0, (seed, done.stderr[-3000:]))
            self.assertRegex(done.stdout, r"^\d+ calls, [1-9]\d* returned, [1-9]\d* raised")


if __name__ == "__main__":
    unittest.main()
