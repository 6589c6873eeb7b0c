"""Runs the tests of a folder and writes the counts "passed failed skipped" to a file.

usage: run.py COUNTS-FILE TEST-FOLDER [PATTERN]
"""

import os
import pathlib
import shutil
import sys
import unittest


class CountingResult(unittest.TextTestResult):
    """Counts each test once, whatever number of its subtests and clean-ups failed."""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.unsuccessful = set()

    def addFailure(self, test, error):
        super().addFailure(test, error)
        self.unsuccessful.add(test.id())

    def addError(self, test, error):
        super().addError(test, error)
        self.unsuccessful.add(test.id())

    def addSubTest(self, test, subtest, error):
        super().addSubTest(test, subtest, error)
        if error is not None:
            self.unsuccessful.add(test.id())


def main(counts_file, folder, pattern="test_*.py"):
    here = pathlib.Path(__file__).resolve().parent
    shutil.rmtree(pathlib.Path(os.environ["TARNWICK_BUILD"]) / "e2e-failures", ignore_errors=True)
    sys.path[:0] = [str(here), folder]
    suite = unittest.defaultTestLoader.discover(folder, pattern=pattern, top_level_dir=folder)
    runner = unittest.TextTestRunner(verbosity=2, resultclass=CountingResult)
    result = runner.run(suite)
    failed = len(result.unsuccessful)
    skipped = len({test.id() for test, _ in result.skipped} - result.unsuccessful)
    passed = max(result.testsRun - failed - skipped, 0)
    pathlib.Path(counts_file).write_text(f"{passed} {failed} {skipped}\n")
    if result.testsRun == 0 and failed == 0:
        print(f"no tests found in {folder}", file=sys.stderr)
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
