"""A screen in memory (Xvfb) with a window manager, and the desk's window on it: for scripts/screenshots and the test of the window.

Keys and clicks reach the program as those of a user do. The script cannot be told when the window has changed, so it polls,
with short waits in real time, until a limit.
"""
import json
import os
import select
import socket
import subprocess
import tempfile
import time
from pathlib import Path

DEADLINE = 60  # seconds for any one thing to happen
TITLE_HEIGHT = 22  # pixels of a title bar of the window manager


class Problem(Exception):
    pass


def wait_for(what, condition, between=lambda: time.sleep(0.05)):
    end = time.monotonic() + DEADLINE
    while not condition():
        if time.monotonic() > end:
            raise Problem(f"waited in vain for {what}")
        between()


def free_port():
    with socket.socket() as found:
        found.bind(("127.0.0.1", 0))
        return found.getsockname()[1]


class Screen:
    """An X server without a monitor. Use it in a with statement."""

    def __init__(self, width, height, scale=1.0):
        self.size, self.scale = f"{width}x{height}x24", scale
        self.processes, self.env = [], dict(os.environ)

    def __enter__(self):
        try:
            self.env |= {"DISPLAY": f":{self._start_server()}", "QT_QPA_PLATFORM": "xcb", "QT_SCALE_FACTOR": str(self.scale)}
            self._start(["openbox", "--sm-disable"])
            wait_for("the window manager", lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in self._out("xprop", "-root"))
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start_server(self):
        """Returns the number of the display, which the server chooses."""
        reader, writer = os.pipe()
        with os.fdopen(reader) as answer:
            self._start(["Xvfb", "-displayfd", str(writer), "-screen", "0", self.size, "-dpi", "96", "-nolisten", "tcp"], pass_fds=[writer])
            os.close(writer)
            if not select.select([reader], [], [], DEADLINE)[0]:
                raise Problem("Xvfb does not start")
            return answer.readline().strip()

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()

    def _start(self, command, **options):
        self.processes.append(subprocess.Popen(command, env=self.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options))

    def _out(self, *command):
        return subprocess.run(command, env=self.env, text=True, capture_output=True, timeout=DEADLINE).stdout

    def windows(self, name):
        """The numbers of the visible windows whose title matches the expression."""
        return self._out("xdotool", "search", "--onlyvisible", "--name", name).split()

    def window(self, name):
        """Waits for one."""
        wait_for(f"a window {name!r}; there are {self.titles()}", lambda: self.windows(name))
        return self.windows(name)[-1]

    def titles(self):
        return [title for title in self._out("xdotool", "search", "--onlyvisible", "--name", ".", "getwindowname", "%@").splitlines()]

    def size_of(self, window):
        lines = dict(line.split("=") for line in self._out("xdotool", "getwindowgeometry", "--shell", window).split())
        return int(lines["WIDTH"]), int(lines["HEIGHT"])

    def maximise(self, window):
        self._out("xdotool", "windowactivate", "--sync", window)
        width, height = map(int, self.size.split("x")[:2])
        self._out("xdotool", "windowmove", window, "0", str(TITLE_HEIGHT), "windowsize", "--sync", window, str(width), str(height - TITLE_HEIGHT))

    def key(self, *keys):
        self._out("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        self._out("xdotool", "type", text)

    def click(self, window, x, y, button=1, repeat=1):
        self._out("xdotool", "mousemove", "--window", window, str(x), str(y), "click", "--repeat", str(repeat), str(button))

    def picture(self, path):
        """Writes the whole screen as a small PNG file."""
        subprocess.run(["import", "-window", "root", "-strip", "+dither", "-colors", "255", f"png8:{path}"], env=self.env, check=True, timeout=DEADLINE)


class Window:
    """orderdesk-window on a new copy of the demo folder. Use it in a with statement."""

    def __init__(self, screen, programs, folder, language="en", confirms=True, extra=()):
        """`programs` is the folder with orderdesk and window/orderdesk-window."""
        self.screen, self.folder = screen, Path(folder) / "demo"
        programs, self.language = Path(programs), language
        subprocess.run([programs / "orderdesk", "new", self.folder] + ["--confirm"] * confirms, check=True, stdout=subprocess.DEVNULL)
        strategies = self.folder / "strategies.toml"
        strategies.write_text(strategies.read_text("utf-8").replace(":15150", f":{free_port()}"), "utf-8")
        self.log = open(Path(folder) / "log", "w+")
        env = dict(screen.env, HOME=str(folder), XDG_CONFIG_HOME=str(Path(folder) / "config"), LANG="C.UTF-8")
        command = ["env", "--ignore-signal=XFSZ"]  # a limit of the size of files gives an error then, like a full disk
        command += [programs / "window/orderdesk-window", "--language", language, *extra, self.folder]
        self.process = subprocess.Popen(command, env=env,
                                        stdout=self.log, stderr=self.log)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.log.close()

    def printed(self):
        return Path(self.log.name).read_text("utf-8")

    def journal(self, **values):
        """The records of the journal that have these values."""
        path = self.folder / "journal.jsonl"
        lines = path.read_text("utf-8").split("\n")[:-1] if path.exists() else []
        records = [json.loads(line) for line in lines]
        return [record for record in records if all(record.get(key) == value for key, value in values.items())]

    def wait_for_record(self, count=1, **values):
        wait_for(f"{count} records {values} in the journal", lambda: len(self.journal(**values)) >= count)

    def hand_over(self, name, text):
        """Gives the desk an order file, whole."""
        path = self.folder / "orders" / name
        path.with_suffix(".part").write_bytes(text if isinstance(text, bytes) else text.encode("gbk"))
        path.with_suffix(".part").rename(path)
        return path
