"""The practice engine as a program's tools."""

import json
import os
import pathlib
import subprocess


class PracticeTools:
    """docker, colima and brew of the build folder, with their state in a folder of the test's own. The program finds
    them in tool_folder when that is given."""

    def __init__(self, build, state, pace=0.2, faults=(), tool_folder=None):
        self.folder = pathlib.Path(build) / "practice" / "bin"
        self.state = pathlib.Path(state)
        self.environment = {
            "TARNWICK_TOOL_FOLDERS": str(tool_folder or self.folder),
            "TARNWICK_PRACTICE_STATE": str(self.state),
            "TARNWICK_PRACTICE_PACE": str(pace),
        }
        if faults:
            self.environment["TARNWICK_PRACTICE_FAULTS"] = ",".join(faults)

    def run(self, tool, *arguments):
        """Runs a tool as a person would in a terminal; the finished process with its output as text."""
        return subprocess.run(
            [str(self.folder / tool), *arguments],
            env={**os.environ, **self.environment},
            capture_output=True,
            text=True,
            timeout=60,
        )

    def container_runs(self):
        answer = self.run("docker", "inspect", "-f", "{{.State.Running}}|{{.Config.Image}}", "tarnwick")
        return answer.returncode == 0 and answer.stdout.startswith("true|")

    def order(self, *faults):
        """Orders these faults in place of all that were ordered before."""
        self.run("docker", "practice", "fault", "reset")
        for fault in faults:
            answer = self.run("docker", "practice", "fault", fault, "on")
            assert answer.returncode == 0, answer.stderr

    def remembered(self):
        """What the tools keep between two calls: the container, its request, the virtual machine's sizes."""
        return json.loads((self.state / "state.json").read_text())

    def clean(self):
        """Ends everything that the tools left running."""
        self.run("docker", "practice", "reset")


def brew_only(folder, build):
    """Makes folder a computer's tool folder with Homebrew and nothing else; returns it."""
    folder.mkdir()
    (folder / "brew").symlink_to(pathlib.Path(build) / "practice" / "tarnwick-practice")
    return folder


class RecordedTools:
    """A tool folder whose tools note how they are called before they do their work."""

    def __init__(self, folder, build):
        self.folder = folder
        folder.mkdir()
        for tool in ("docker", "colima", "brew"):
            script = folder / tool
            real = pathlib.Path(build) / "practice" / "bin" / tool
            script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >>"{folder}/{tool}.calls"\nexec "{real}" "$@"\n')
            script.chmod(0o755)

    def calls(self, tool):
        """The arguments of each call of a tool so far, as one text each."""
        try:
            return (self.folder / f"{tool}.calls").read_text().splitlines()
        except FileNotFoundError:
            return []
