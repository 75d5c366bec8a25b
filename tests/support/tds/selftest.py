#!/usr/bin/python3
"""Runs the server's own tests: tests/support/tds/selftest.py [unittest's arguments]"""
import sys

sys.dont_write_bytecode = True

import unittest

from selftest_language import *
from selftest_protocol import *

if __name__ == "__main__":
    unittest.main()
