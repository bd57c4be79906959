"""Importing the package costs no more than importing numpy, comparing the fastest of several
runs."""

import os
import subprocess
import sys
import time


def measure(module):
    environment = {key: value for key, value in os.environ.items() if key != "PYTHONDONTWRITEBYTECODE"}
    times = []
    for _ in range(15):
        begin = time.perf_counter()
        subprocess.run([sys.executable, "-c", f"import {module}"], check=True, env=environment)
        times.append(time.perf_counter() - begin)
    return min(times)


base, ours, theirs = (measure(module) for module in ("sys", "mox", "numpy"))
print(f"mox {1000 * (ours - base):.1f} ms, numpy {1000 * (theirs - base):.1f} ms beyond Python itself")
sys.exit(ours > theirs)
