"""The program's options, as people, scripts and the desktop's menus use them."""

import json
import os
import pathlib
import signal
import subprocess
import time

from driver.accessibility import BUTTON
from driver.application import Application
from driver.cases import PracticeCase, build_folder
from driver.desktop import wait_for_desktop_screen
from driver.practice import RecordedTools
from driver.tray import TrayHost
from driver.waiting import wait_until

PROGRAM = build_folder() / "app" / "tarnwick"
DONE, FAILED, WRONG_USE, NOT_RUNNING = range(4)


class CommandLineCase(PracticeCase):
    def prepare(self, **options):
        self.recorded = RecordedTools(self.folders.root / "recorded", build_folder())
        self.prepare_practice(tool_folder=self.recorded.folder, pace=0.05, **options)

    def start(self, *arguments, window="Tarnwick"):
        self.start_program(self.tools.environment, arguments, window)

    def run_beside(self, *arguments, display=True):
        """Runs the program to its end, and expects that it says one thing at one place; (exit code, what it said)."""
        environment = {**os.environ, **self.folders.environment(), **self.tools.environment}
        if not display:
            for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"):
                environment.pop(name, None)
        answer = subprocess.run(
            [PROGRAM, *arguments], env=environment, capture_output=True, text=True, timeout=60, stdin=subprocess.DEVNULL
        )
        silent, speaking = answer.stdout, answer.stderr
        if answer.returncode in (DONE, NOT_RUNNING):
            silent, speaking = speaking, silent
        self.assertEqual(silent, "")
        return answer.returncode, speaking

    def starts_of_the_container(self):
        return sum(" up " in f" {call} " or call.startswith("run ") for call in self.recorded.calls("docker"))


class WithoutDisplay(CommandLineCase):
    def test_information_and_wrong_use(self):
        self.prepare()
        code, text = self.run_beside("--version", display=False)
        self.assertEqual(code, DONE)
        self.assertRegex(text, r"^tarnwick \d+\.\d+\.\d+\n$")
        code, text = self.run_beside("--help", display=False)
        self.assertIn("--background", text)
        code, text = self.run_beside("--launch", "--stop", display=False)
        self.assertEqual((code, text.count("\n")), (WRONG_USE, 1))
        code, text = self.run_beside(display=False)
        self.assertEqual((code, text), (FAILED, "There is no display to open a window on.\n"))

    def test_status_and_stop_of_a_desktop_that_no_program_watches(self):
        self.prepare()
        self.assertEqual(self.run_beside("--status", display=False), (NOT_RUNNING, "Stopped.\n"))
        self.assertEqual(self.run_beside("--stop", display=False), (DONE, "The desktop is not running.\n"))
        self.start("--launch")
        wait_for_desktop_screen(self.tree)
        self.application.terminate()

        code, text = self.run_beside("--status", display=False)
        address = f"https://127.0.0.1:{self.https_port}/"
        self.assertEqual((code, text), (DONE, f"The desktop is running (XFCE on Alpine, {address}).\n"))
        code, text = self.run_beside("--status", "--json", display=False)
        self.assertEqual(code, DONE)
        status = json.loads(text)
        self.assertEqual((status["phase"], status["url"]), ("running", address))
        self.assertEqual(self.run_beside("--stop", display=False), (DONE, "The desktop was stopped.\n"))
        self.assertFalse(self.tools.container_runs())
        self.assertEqual(self.run_beside("--status", display=False)[0], NOT_RUNNING)
        # Only the launch has started anything.
        self.assertEqual(self.starts_of_the_container(), 1)
        self.assertLessEqual(sum(call.startswith("start") for call in self.recorded.calls("colima")), 1)


class BesideTheRunningProgram(CommandLineCase):
    def test_launch_status_and_stop(self):
        self.prepare()
        self.start()
        self.assertEqual(self.run_beside("--status")[0], NOT_RUNNING)
        self.assertEqual(self.run_beside("--launch"), (DONE, ""))
        wait_for_desktop_screen(self.tree)
        self.assertEqual(self.run_beside("--status")[0], DONE)
        # Once more only shows what is there.
        self.tree.press("Home")
        self.tree.wait_gone(BUTTON, "Fullscreen")
        self.assertEqual(self.run_beside("--launch"), (DONE, ""))
        wait_for_desktop_screen(self.tree)
        self.assertEqual(self.starts_of_the_container(), 1)
        self.assertEqual(self.run_beside("--stop"), (DONE, "The desktop was stopped.\n"))
        self.assertFalse(self.tools.container_runs())
        self.tree.wait_gone(BUTTON, "Fullscreen")
        self.tree.wait_for(BUTTON, "Open desktop")

    def test_stop_cancels_a_start(self):
        self.prepare()
        self.tools.order("pull-hangs")
        self.start("--launch")
        wait_until(lambda: self.run_beside("--status")[1].startswith("Starting: "), 20, "the start")
        self.run_beside("--launch")
        self.assertTrue(self.run_beside("--status")[1].startswith("Starting: "))
        self.assertEqual(self.run_beside("--stop"), (DONE, "The start was cancelled.\n"))
        self.tree.wait_for(text="Cancelled.")

    def test_windows(self):
        self.prepare()
        self.start("--settings", window="Settings")
        self.tree.wait_for(BUTTON, "Reveal app folder")
        self.assertEqual(self.tree.windows("Tarnwick"), [])
        self.assertEqual(self.run_beside("--logs"), (DONE, ""))
        self.tree.wait_for(BUTTON, "Refresh")
        self.assertEqual(self.tree.windows("Tarnwick"), [])
        self.assertEqual(self.run_beside(), (DONE, ""))
        self.tree.wait_for(BUTTON, "Launch Linux")
        self.assertEqual(len(self.tree.windows("Settings")), 1)

    def test_a_launch_of_a_desktop_that_is_up_opens_it(self):
        self.prepare()
        self.start("--launch")
        wait_for_desktop_screen(self.tree)
        self.application.terminate()
        self.start("--launch")
        wait_for_desktop_screen(self.tree)
        self.assertEqual(self.starts_of_the_container(), 1)


class Background(CommandLineCase):
    def windows(self):
        return [title for title in ("Tarnwick", "Settings", "Logs") if self.tree.windows(title)]

    def test_with_a_tray_there_is_no_window(self):
        tray = TrayHost()
        self.addCleanup(tray.close)
        self.prepare()
        self.start("--background", window=None)
        wait_until(tray.items, 10, "the tray item")
        self.assertEqual(self.run_beside("--background"), (DONE, ""))
        # Longer than it waits for a tray.
        time.sleep(6)
        self.assertEqual(self.windows(), [])
        self.assertEqual(self.run_beside("--status"), (NOT_RUNNING, "Stopped.\n"))
        self.run_beside()
        self.tree.wait_for(BUTTON, "Launch Linux")

    def test_without_a_tray_the_window_opens_after_all(self):
        self.prepare()
        self.start("--background", window=None)
        self.tree.wait_for(BUTTON, "Launch Linux", seconds=20)
        self.assertEqual(self.windows(), ["Tarnwick"])


class OneInstance(CommandLineCase):
    def start_one(self, number):
        environment = {**self.folders.environment(), **self.tools.environment}
        started = Application(PROGRAM, self.folders.root / f"{number}.log", environment)
        self.addCleanup(started.terminate)
        return started

    def test_twenty_at_once_are_one(self):
        self.prepare()
        started = [self.start_one(number) for number in range(20)]

        def only_one():
            return [each for each in started if each.running] if sum(each.running for each in started) == 1 else None

        (survivor,) = wait_until(only_one, 30, "the end of all but one")
        survivor.tree.wait_for(BUTTON, "Launch Linux")
        self.assertEqual(len(survivor.tree.windows("Tarnwick")), 1)
        for each in started:
            if each is not survivor:
                self.assertEqual((each.wait_for_end(0), each.output()), (DONE, ""))

    def test_after_a_kill_the_next_start_works(self):
        self.prepare()
        # With the processes of the web view and a tool at work, which live on for a while or for good.
        self.start("--launch")
        wait_for_desktop_screen(self.tree)
        self.tools.order("docker-hangs")
        self.application.signal(signal.SIGKILL)
        self.application.wait_for_end()
        self.start()
        time.sleep(1)
        self.application.signal(signal.SIGKILL)
        self.application.wait_for_end()
        self.tools.order()
        began = time.monotonic()
        self.start()
        self.assertLess(time.monotonic() - began, 10)
        # It answers, and has found the desktop of the first one.
        self.assertEqual(self.run_beside("--status")[0], DONE)

    def test_one_that_hangs_is_reported(self):
        self.prepare()
        self.start()
        self.application.signal(signal.SIGSTOP)
        self.addCleanup(self.application.signal, signal.SIGCONT)
        code, text = self.run_beside("--status")
        self.assertEqual((code, text), (FAILED, "Tarnwick is running already, but does not answer.\n"))

    def test_the_socket_is_for_the_user_alone(self):
        self.prepare()
        self.start()
        lock = pathlib.Path(self.folders.data / "Tarnwick" / "instance.lock")
        socket = pathlib.Path(lock.read_text().strip())
        self.assertEqual(socket.stat().st_mode & 0o777, 0o600)
        self.application.terminate()
        self.assertFalse(socket.exists())
