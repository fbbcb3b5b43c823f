"""Runs the clients of examples/clients against a new desk and checks their records in the desk's journal.

Usage: socket_clients_test.py ORDERDESK PYTHON_CLIENT CPP_CLIENT
"""
import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

ORDERDESK, PYTHON_CLIENT, CPP_CLIENT = sys.argv[1:4]
CLIENTS = {"python": [sys.executable, PYTHON_CLIENT], "c++": [CPP_CLIENT]}

DEADLINE = 60  # seconds for any one thing to happen
IDLE = 120  # seconds; the desk ends by itself if this test cannot end it
GREETING = "+OK Welcom to Lumo Order Server Version 0.0.3"
USER, PASSWORD = "trader", "a secret"

# The price is below the book of the demo's quotes, so the order waits and can be cancelled.
ORDER = "23,99,{price},600101,1000"

# Changes to the demo's order socket: the text in strategies.toml, and its replacement for the test.
SOCKET = {
    "channel = 5": "channel = 99",
    'path = "127.0.0.1:15150"': 'path = "127.0.0.1:{port}"',
    'user = "demo"': f'user = "{USER}"',
    'pass = "change-me"': f'pass = "{PASSWORD}"',
}


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Desk:
    """A desk on a copy of the demo folder, with a guarded order socket on channel 99."""

    def __init__(self, folder):
        self.folder = Path(folder) / "desk"
        self.port = free_port()
        subprocess.run([ORDERDESK, "new", str(self.folder)], check=True, stdout=subprocess.DEVNULL)
        assert "mdl_order_socket_guard = true" in (self.folder / "desk.toml").read_text(encoding="utf-8")
        strategies = self.folder / "strategies.toml"
        text = strategies.read_text(encoding="utf-8")
        for demo, own in SOCKET.items():
            assert demo in text, demo
            text = text.replace(demo, own.format(port=self.port))
        strategies.write_text(text, encoding="utf-8")
        self._output = open(Path(folder) / "output.txt", "w+", encoding="utf-8")
        self._process = subprocess.Popen([ORDERDESK, "run", str(self.folder), "--exit-when-idle", str(IDLE)],
                                         stdout=self._output, stderr=subprocess.STDOUT)

    def wait_for(self, what, condition):
        """Waits until the condition returns a true value and returns this value."""
        end = time.monotonic() + DEADLINE
        while time.monotonic() < end:
            found = condition()
            if found:
                return found
            try:
                self._process.wait(timeout=0.02)
            except subprocess.TimeoutExpired:
                continue
            raise AssertionError(f"the desk ended before {what}:\n{self.output()}")
        raise AssertionError(f"no {what} within {DEADLINE} s:\n{self.output()}")

    def is_listening(self):
        # Wait for the journal first. Repeated connects to a free port could, by chance, connect a socket to
        # itself.
        if not self.journal("door"):
            return False
        try:
            with socket.create_connection(("127.0.0.1", self.port), DEADLINE):
                return True
        except ConnectionRefusedError:
            return False

    def journal(self, kind):
        """The complete lines of this kind in the journal."""
        path = self.folder / "journal.jsonl"
        if not path.exists():
            return []
        whole = path.read_bytes().rpartition(b"\n")[0]
        return [record for record in map(json.loads, whole.splitlines()) if record["kind"] == kind]

    def end(self):
        self._process.send_signal(signal.SIGTERM)
        return self._process.wait(DEADLINE)

    def close(self):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()
        self._output.close()

    def output(self):
        self._output.seek(0)
        return self._output.read()


def run_client(client, *words, password=PASSWORD):
    environment = dict(os.environ, ORDER_SOCKET_PASS=password, PYTHONIOENCODING="utf-8")
    return subprocess.run([*CLIENTS[client], *words], env=environment, capture_output=True, encoding="utf-8",
                          timeout=DEADLINE)


class ClientsAgainstADesk(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="order-test-")
        self.addCleanup(folder.cleanup)
        self.desk = Desk(folder.name)
        self.addCleanup(self.desk.close)
        self.desk.wait_for("listener", self.desk.is_listening)

    def place(self, client, price, *options, **more):
        return run_client(client, "--user", USER, *options, "127.0.0.1", str(self.desk.port), ORDER.format(price=price),
                          **more)

    def commands(self):
        return self.desk.journal("command")

    def test_orders_and_cancels_reach_the_desk_once(self):
        prices = {"python": 10.5, "c++": 10.4}
        for count, client in enumerate(CLIENTS, 1):
            done = self.place(client, prices[client])
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout.splitlines(), [GREETING, "placeorder: +OK"])
            self.desk.wait_for("command", lambda: len(self.commands()) == count)
        tasks = [command["seq"] for command in self.commands()]
        for client, task in zip(CLIENTS, tasks):
            done = self.place(client, prices[client], "--cancel", str(task))
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout.splitlines(), [GREETING, "placeorder: +OK", "cancel: +OK"])
        self.desk.wait_for("cancels", lambda: len(self.desk.journal("cancel_task")) == 2)
        self.desk.wait_for("commands", lambda: len(self.commands()) == 4)
        self.assertEqual(self.desk.end(), 0, self.desk.output())
        self.check_journal(prices, tasks)

    def check_journal(self, prices, tasks):
        source = f"127.0.0.1:{self.desk.port}"
        doors = [(door["event"], door["source"]) for door in self.desk.journal("door")]
        self.assertEqual(doors, [("opened", source), ("closed", source)])
        intakes = [(line["source"], line["channel"], line["strategy_type"], line["orders"])
                   for line in self.desk.journal("intake")]
        self.assertEqual(intakes, [(source, 99, 1, 1)] * 4)
        placed = [(command["strategy_type"], command["codes"][0]["price"]) for command in self.commands()]
        self.assertEqual(sorted(placed), sorted((1, price) for price in prices.values() for _ in range(2)))
        self.assertEqual([cancel["task"] for cancel in self.desk.journal("cancel_task")], tasks)

    def test_refusals_have_exit_code_1(self):
        for client in CLIENTS:
            with self.subTest(client):
                wrong = self.place(client, 10.5, password="no secret")
                self.assertEqual(wrong.returncode, 1)
                self.assertEqual(wrong.stderr, "refused: pass: -ERR User or Pass is Not Right\n")
                stranger = run_client(client, "127.0.0.1", str(self.desk.port), ORDER.format(price=10.5))
                self.assertEqual(stranger.returncode, 1)
                self.assertEqual(stranger.stderr, "refused: placeorder: -ERR User Not Login\n")
                basket = run_client(client, "--user", USER, "127.0.0.1", str(self.desk.port), "25,99,没有的篮子")
                self.assertEqual(basket.returncode, 1)
                self.assertEqual(basket.stderr, "refused: placeorder: -ERR Bad Param 指定的篮子不存在\n")
        self.assertEqual(self.desk.end(), 0, self.desk.output())
        self.assertEqual(self.desk.journal("intake"), [])


class ClientsAlone(unittest.TestCase):
    def test_usage_and_connection_have_exit_code_2(self):
        silent = socket.socket()
        self.addCleanup(silent.close)
        silent.bind(("127.0.0.1", 0))  # taken, and nobody listens
        cases = {
            "nothing": [],
            "no port": ["127.0.0.1", "http", "23,9,1"],
            "port out of range": ["127.0.0.1", "70000", "23,9,1"],
            "no task": ["--cancel", "last", "127.0.0.1", "1", "23,9,1"],
            "unknown option": ["--sell", "127.0.0.1", "127.0.0.1", "1", "23,9,1"],
            "nobody listens": ["127.0.0.1", str(silent.getsockname()[1]), "23,9,1"],
        }
        for client in CLIENTS:
            for name, words in cases.items():
                with self.subTest(client=client, case=name):
                    done = run_client(client, *words)
                    self.assertEqual(done.returncode, 2)
                    self.assertNotEqual(done.stderr, "")

    def test_line_end_never_leaves_the_client(self):
        with socket.create_server(("127.0.0.1", 0)) as server:
            port = str(server.getsockname()[1])
            for client in CLIENTS:
                with self.subTest(client):
                    done = self.serve(server, client, port, "23,9,1\nquit")
                    self.assertEqual(done[0], 2)
                    self.assertNotIn(b"quit", done[1])

    def serve(self, server, client, port, order):
        """Sends only a greeting to a client. Returns its exit code and all that it sent."""
        server.settimeout(0.02)
        process = subprocess.Popen([*CLIENTS[client], "127.0.0.1", port, order], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        sent = b""
        end = time.monotonic() + DEADLINE
        while process.poll() is None and time.monotonic() < end:
            try:
                peer, _ = server.accept()
            except TimeoutError:
                continue
            with peer:
                peer.settimeout(DEADLINE)
                peer.sendall(GREETING.encode() + b"\r\n")
                while piece := peer.recv(4096):
                    sent += piece
        return process.wait(DEADLINE), sent

    def test_silent_listener_is_given_up(self):
        with socket.create_server(("127.0.0.1", 0)) as server:
            for client in CLIENTS:
                with self.subTest(client):
                    port = str(server.getsockname()[1])
                    done = run_client(client, "--timeout", "1", "127.0.0.1", port, "23,9,1")
                    self.assertEqual(done.returncode, 2)
                    self.assertIn("no answer within 1", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
