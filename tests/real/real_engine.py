"""The engine, the registry and the tools of the real level, as a test's surroundings."""

import os
import pathlib
import shutil
import subprocess

from driver.cases import ProgramCase
from driver.waiting import wait_until

STATE = pathlib.Path(os.environ["TARNWICK_REAL_STATE"])
SCRIPTS = pathlib.Path(os.environ["TARNWICK_REAL_SCRIPTS"])
REGISTRY = "127.0.0.1:5000"
IMAGE = f"{REGISTRY}/linuxserver/webtop:latest"
CONTAINER = "tarnwick"
VOLUME = "tarnwick-config-alpine-xfce"


def engine(*arguments):
    subprocess.run([str(SCRIPTS / "engine.sh"), *arguments], check=True, timeout=300)


def docker(*arguments, check=True):
    """Runs the docker client on the test's engine; what it wrote to standard output."""
    answer = subprocess.run(
        ["/usr/bin/docker", "-H", f"unix://{STATE}/docker.sock", *arguments],
        check=check, capture_output=True, text=True, timeout=120,
    )
    return answer.stdout.strip()


def engine_answers():
    return docker("info", "--format", "{{.ServerVersion}}", check=False) != ""


class RealCase(ProgramCase):
    """A cold engine and an empty one: nothing pulled, no container, no volume. The image waits in the registry."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if not (STATE / "registry").exists():
            engine("start")
            engine("start-registry")
            engine("publish", os.environ["TARNWICK_REAL_IMAGE"], "latest")

    def setUp(self):
        super().setUp()
        engine("start")
        docker("rm", "--force", CONTAINER, check=False)
        docker("volume", "rm", VOLUME, check=False)
        docker("image", "rm", "--force", IMAGE, check=False)
        docker("image", "prune", "--all", "--force")
        engine("stop")
        (STATE / "colima-calls").unlink(missing_ok=True)

    def start_on_engine(self, compose=True, **settings):
        """Starts the program with docker and colima as its tools, with or without the compose plug-in."""
        tools = self.folders.root / "real-tools"
        configuration = self.folders.root / "docker-config"
        plugins = configuration / "cli-plugins"
        plugins.mkdir(parents=True, exist_ok=True)
        tools.mkdir(exist_ok=True)
        for tool in (pathlib.Path("/usr/bin/docker"), SCRIPTS / "tools" / "colima"):
            if not (tools / tool.name).exists():
                (tools / tool.name).symlink_to(tool)
        if compose:
            plugin = pathlib.Path(os.environ["TARNWICK_REAL_COMPOSE"]) / "docker-compose"
            shutil.copy2(plugin, plugins / "docker-compose")
        if settings:
            self.folders.write_settings(**settings)
        self.start_program(
            {
                "TARNWICK_TOOL_FOLDERS": str(tools),
                "TARNWICK_IMAGE_REGISTRY": REGISTRY,
                "DOCKER_HOST": f"unix://{STATE}/docker.sock",
                "DOCKER_CONFIG": str(configuration),
            }
        )

    def colima_calls(self):
        try:
            return (STATE / "colima-calls").read_text().splitlines()
        except FileNotFoundError:
            return []

    def fetch(self, port, user=None):
        """Status and body of the desktop's page, as another program on this machine gets them."""
        scheme = "https" if port == 3001 else "http"
        command = ["curl", "-sk", "--noproxy", "*", "-m", "10", "-w", "\n%{http_code}", f"{scheme}://127.0.0.1:{port}/"]
        if user:
            # By a file descriptor, not by the argument list: a password belongs on no command line, not in tests either.
            command += ["-K", "-"]
        answer = subprocess.run(
            command, input=f'user = "{user}"\n' if user else "", capture_output=True, text=True, timeout=20
        )
        body, _, status = answer.stdout.rpartition("\n")
        return int(status), body

    def wait_for_container_end(self):
        wait_until(
            lambda: docker("inspect", "-f", "{{.State.Running}}", CONTAINER, check=False) != "true", 30,
            "the container to stop",
        )
