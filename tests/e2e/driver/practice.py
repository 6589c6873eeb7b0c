"""The practice engine as a program's tools."""

import os
import pathlib
import subprocess


class PracticeTools:
    """docker, colima and brew of the build folder, with their state in a folder of the test's own."""

    def __init__(self, build, state, pace=0.2, faults=()):
        self.folder = pathlib.Path(build) / "practice" / "bin"
        self.state = pathlib.Path(state)
        self.environment = {
            "TARNWICK_TOOL_FOLDERS": str(self.folder),
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

    def clean(self):
        """Ends everything that the tools left running."""
        self.run("docker", "practice", "reset")
