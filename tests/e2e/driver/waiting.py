"""Waiting for something to become true."""

import time


class TimedOut(AssertionError):
    """What was waited for did not happen; the message says what it was."""


def wait_until(condition, seconds, what, pause=0.1):
    """Calls condition() until its answer is true, and returns that answer."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() >= deadline:
            raise TimedOut(f"waited {seconds} s in vain for {what}")
        time.sleep(pause)
