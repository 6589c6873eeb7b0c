"""Files that the tests write for a person to read."""

import os
import pathlib

from .cases import build_folder

REPORTS_VARIABLE = "TARNWICK_REPORTS"


def report_file(name):
    """The path of a report; its folder is there. Beside the build folder unless the environment says where."""
    folder = pathlib.Path(os.environ.get(REPORTS_VARIABLE) or build_folder().parent / "reports")
    folder.mkdir(parents=True, exist_ok=True)
    return folder / name
