"""Where a secret may be found: other processes, files, sockets."""

import base64
import pathlib
import threading
import urllib.parse


def forms(secret):
    """A secret as it is, percent-encoded, and as it stands in a longer base64 text wherever that begins."""
    found = {secret.encode(), urllib.parse.quote(secret, safe="").encode()}
    for skip in range(3):
        whole = len(secret) - skip
        found.add(base64.b64encode(secret.encode()[skip : skip + whole // 3 * 3]))
    found.add(base64.b64encode(f"linux:{secret}".encode()))
    return found


def _read(path):
    try:
        return pathlib.Path(path).read_bytes()
    except OSError:
        return b""


class ProcessWatch(threading.Thread):
    """Looks at all processes again and again: whose arguments, and whose environment, hold a secret."""

    def __init__(self, secret):
        super().__init__(daemon=True)
        self._forms = forms(secret)
        self._over = threading.Event()
        self.in_arguments = set()
        self.in_environment = set()
        self.looks = 0

    def run(self):
        while not self._over.wait(0.002):
            self.looks += 1
            for process in pathlib.Path("/proc").iterdir():
                if process.name.isdigit():
                    self._look(process)

    def _look(self, process):
        arguments = _read(process / "cmdline")
        if any(form in arguments for form in self._forms):
            self.in_arguments.add(arguments.replace(b"\0", b" "))
        environment = _read(process / "environ")
        if any(form in environment for form in self._forms):
            # Between fork and exec a new process still has its parent's arguments.
            self.in_environment.add(b" ".join(arguments.split(b"\0")[:4]).decode())

    def finish(self):
        self._over.set()
        self.join(10)


def files_with(secret, folder):
    """The files below a folder that hold a secret."""
    return [file for file in folder.rglob("*") if file.is_file() and any(form in _read(file) for form in forms(secret))]


def open_to_others(folder):
    """What other users could read below a folder: files that are open to them in folders that are, too."""
    if folder.stat().st_mode & 0o077 == 0:
        return []
    found = []
    for entry in folder.iterdir():
        if entry.is_symlink():
            continue
        if entry.is_dir():
            found += open_to_others(entry)
        elif entry.stat().st_mode & 0o077:
            found.append(entry)
    return found


def listening_sockets(pid):
    """The TCP addresses on which a process listens, as the kernel writes them."""
    inodes = set()
    for file in pathlib.Path(f"/proc/{pid}/fd").iterdir():
        try:
            target = file.readlink().name
        except OSError:
            continue
        if target.startswith("socket:"):
            inodes.add(target[len("socket:[") : -1])
    listening = "0A"
    rows = [line.split() for table in ("tcp", "tcp6") for line in _read(f"/proc/{pid}/net/{table}").decode().splitlines()]
    return [row[1] for row in rows if row[3] == listening and row[9] in inodes]
