"""The base of the tests that run the whole program."""

import os
import pathlib
import unittest

from .application import Application, Folders, free_port_pair
from .display import screenshot
from .practice import PracticeTools


def build_folder():
    return pathlib.Path(os.environ["TARNWICK_BUILD"])


class ProgramCase(unittest.TestCase):
    """Private folders for each test; a failed one leaves a picture, the tree and the program's output behind."""

    def setUp(self):
        self.folders = Folders()
        self.addCleanup(self.folders.clean)
        self.application = None

    def start_program(self, environment, arguments=(), window="Tarnwick"):
        """Starts the program and waits for its window, unless none is given; the tree to work with is self.tree."""
        self.application = Application(
            build_folder() / "app" / "tarnwick",
            self.folders.root / "program.log",
            {**self.folders.environment(), **environment},
            arguments,
        )
        self.addCleanup(self.application.terminate)
        # Before the program is ended and its folders are gone: clean-ups run in reverse order.
        self.addCleanup(self._keep_evidence)
        self.tree = self.application.tree
        if window:
            self.tree.wait_for(name=window, seconds=20)

    def _keep_evidence(self):
        result = self._outcome.result
        if not any(case is self for case, _ in result.failures + result.errors):
            return
        folder = build_folder() / "e2e-failures" / self.id()
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "tree.txt").write_text(self.application.tree.dump())
        (folder / "program.log").write_text(self.application.output())
        screenshot(folder / "screen.png")


class PracticeCase(ProgramCase):
    """The program with the practice engine, on ports and a state folder of the test's own."""

    def prepare_practice(self, pace=0.2, faults=(), tool_folder=None, **settings):
        self.http_port, self.https_port = free_port_pair()
        self.folders.write_settings(httpPort=self.http_port, httpsPort=self.https_port, **settings)
        self.tools = PracticeTools(build_folder(), self.folders.tools_state, pace, faults, tool_folder)
        self.addCleanup(self.tools.clean)

    def start_with_practice(self, **options):
        self.prepare_practice(**options)
        self.start_program(self.tools.environment)
