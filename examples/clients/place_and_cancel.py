#!/usr/bin/env python3
"""Places one order over the order socket, cancels a task where asked to, and quits.

    place_and_cancel.py [--user NAME] [--cancel TASK] [--timeout SECONDS] HOST PORT ORDER

ORDER is what stands behind "placeorder", such as 23,9,10.5,600000,100. The password is taken from the environment
variable ORDER_SOCKET_PASS, since other users of the machine can see a command line. Without --user nobody logs in.

Exit codes: 0 done, 1 refused by the server, 2 usage or connection.
"""
import argparse
import os
import socket
import sys
import time

DONE, REFUSED, BROKEN = 0, 1, 2


class Refused(Exception):
    """The server answered -ERR."""


class Broken(Exception):
    """The connection cannot be made, broke, or gave no answer in time."""


class OrderSocket:
    """A connection to an order socket. Each call sends one line and waits for its one reply."""

    def __init__(self, host, port, timeout):
        """Connects and reads the greeting. `timeout`: seconds for connecting and for each reply."""
        self._received = b""
        self._timeout = timeout
        try:
            self._socket = socket.create_connection((host, port), timeout)
        except OSError as error:
            raise Broken(f"cannot connect to {host}:{port}: {error}") from error
        self.greeting = self._read_reply("connecting")

    def close(self):
        self._socket.close()

    def log_in(self, user, password):
        # Names and passwords go as UTF-8. A second `pass` would log out again, so this is for once only.
        self.ask("user", user)
        self.ask("pass", password)

    def place_order(self, fields):
        """Sends an order. What comes back tells that it was queued, not that it was accepted."""
        return self.ask("placeorder", fields)

    def cancel(self, task):
        return self.ask("cancel", str(task))

    def quit(self):
        return self.ask("quit", "")

    def ask(self, verb, argument):
        """Sends a line and gives its reply; raises Refused where that is -ERR."""
        # A lone line feed stops the listener for everybody, so no line end may come from outside.
        if any(mark in argument for mark in "\r\n\0"):
            raise ValueError(f"the argument of {verb} holds a line end or a zero byte")
        line = f"{verb} {argument}\r\n" if argument else f"{verb}\r\n"
        try:
            self._socket.sendall(line.encode("utf-8"))
        except OSError as error:
            raise Broken(f"{verb}: cannot send: {error}") from error
        return self._read_reply(verb)

    def _read_reply(self, verb):
        """One reply without its CR LF. It can come in pieces, and replies can come together."""
        deadline = time.monotonic() + self._timeout
        while b"\n" not in self._received:
            try:
                self._socket.settimeout(max(deadline - time.monotonic(), 0.001))
                piece = self._socket.recv(4096)
            except socket.timeout as error:
                raise Broken(f"{verb}: no answer within {self._timeout:g} s") from error
            except OSError as error:
                raise Broken(f"{verb}: {error}") from error
            if not piece:
                raise Broken(f"{verb}: the server closed the connection")
            self._received += piece
        reply, self._received = self._received.split(b"\n", 1)
        text = reply.rstrip(b"\r").decode("gbk", errors="replace")
        if not text.startswith("+OK"):
            raise Refused(f"{verb}: {text}")
        return text


def plain_text(text):
    if any(mark in text for mark in "\r\n\0"):
        raise argparse.ArgumentTypeError("must not hold a line end or a zero byte")
    return text


def number_between(least, most, kind):
    def read(text):
        value = kind(text)
        if not least <= value <= most:
            raise argparse.ArgumentTypeError(f"must lie between {least} and {most}")
        return value
    return read


def read_arguments():
    parser = argparse.ArgumentParser(description="Places one order over the order socket.")
    parser.add_argument("--user", type=plain_text, help="login name; the password is in ORDER_SOCKET_PASS")
    parser.add_argument("--cancel", type=int, metavar="TASK", help="task to cancel afterwards")
    parser.add_argument("--timeout", type=number_between(0.001, 3600, float), default=10, metavar="SECONDS")
    parser.add_argument("host", metavar="HOST")
    parser.add_argument("port", metavar="PORT", type=number_between(1, 65535, int))
    parser.add_argument("order", metavar="ORDER", type=plain_text, help="such as 23,9,10.5,600000,100")
    return parser.parse_args()  # ends the program with code 2 where they are wrong


def talk(arguments, password):
    connection = OrderSocket(arguments.host, arguments.port, arguments.timeout)
    try:
        print(connection.greeting)
        if arguments.user is not None:
            connection.log_in(arguments.user, password)
        try:
            print("placeorder:", connection.place_order(arguments.order))
        except Broken as error:
            # Sending it again could place it twice.
            raise Broken(f"{error}; the order may have been taken: look before you send it again") from error
        if arguments.cancel is not None:
            print("cancel:", connection.cancel(arguments.cancel))
        connection.quit()
    finally:
        connection.close()


def main():
    arguments = read_arguments()
    try:
        talk(arguments, os.environ.get("ORDER_SOCKET_PASS", ""))
    except Refused as error:
        print(f"refused: {error}", file=sys.stderr)
        return REFUSED
    except (Broken, ValueError) as error:
        print(f"failed: {error}", file=sys.stderr)
        return BROKEN
    return DONE


if __name__ == "__main__":
    sys.exit(main())
