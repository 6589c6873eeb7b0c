"""Pictures of the virtual display, and its keyboard."""

import subprocess


def screenshot(path):
    """Writes the whole display as a picture; the file's ending says the format."""
    subprocess.run(["import", "-window", "root", str(path)], check=True, timeout=30)


def colours(path, frame=None):
    """How many different colours a picture, or the part of it in frame (left, top, width, height), has."""
    crop = []
    if frame:
        left, top, width, height = frame
        crop = ["-crop", f"{width}x{height}+{left}+{top}", "+repage"]
    answer = subprocess.run(
        ["convert", str(path), *crop, "-format", "%k", "info:"], check=True, capture_output=True, text=True, timeout=60
    )
    return int(answer.stdout.strip())


def press_keys(*keys):
    """Presses keys as on a keyboard, such as "ctrl+q"; they go to the window that has the focus."""
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True, timeout=10)


def type_text(text):
    """Types a text; it goes to the window that has the focus."""
    subprocess.run(["xdotool", "type", "--clearmodifiers", "--delay", "2", text], check=True, timeout=20)


def click(element):
    """Clicks the middle of an element with the mouse's first button."""
    left, top, width, height = element.frame
    place = [str(left + width // 2), str(top + height // 2)]
    subprocess.run(["xdotool", "mousemove", "--sync", *place, "click", "1"], check=True, timeout=10)


def clipboard():
    """The text that a paste would give; empty when there is none."""
    answer = subprocess.run(
        ["xclip", "-o", "-selection", "clipboard", "-target", "UTF8_STRING"], capture_output=True, text=True, timeout=10
    )
    if answer.returncode != 0 and "not available" not in answer.stderr:
        raise AssertionError(answer.stderr)
    return answer.stdout
