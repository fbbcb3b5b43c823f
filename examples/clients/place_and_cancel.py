#!/usr/bin/env python3
"""Places one order over the order socket, cancels a task if --cancel is given, and quits.

    place_and_cancel.py [--user NAME] [--cancel TASK] [--timeout SECONDS] HOST PORT ORDER

ORDER is the argument of "placeorder", such as 23,9,10.5,600000,100. The password is read from the environment
variable ORDER_SOCKET_PASS, because other users of the machine can see the command line. Without --user the program
does not log in.

Exit codes: 0 success, 1 refused by the server, 2 wrong usage or connection failure.
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
    """Connecting failed, the connection broke, or no reply arrived in time."""


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
        # Both texts are sent as UTF-8. Call this only once, because a second `pass` would log out again.
        self.ask("user", user)
        self.ask("pass", password)

    def place_order(self, fields):
        """Sends an order. The reply means that the order was queued. It does not mean that it was accepted."""
        return self.ask("placeorder", fields)

    def cancel(self, task):
        return self.ask("cancel", str(task))

    def quit(self):
        return self.ask("quit", "")

    def ask(self, verb, argument):
        """Sends a line and returns its reply. Raises Refused if the reply is -ERR."""
        # A line feed without a carriage return stops the listener for all clients. So no line end is allowed here.
        if any(mark in argument for mark in "\r\n\0"):
            raise ValueError(f"the argument of {verb} holds a line end or a zero byte")
        line = f"{verb} {argument}\r\n" if argument else f"{verb}\r\n"
        try:
            self._socket.sendall(line.encode("utf-8"))
        except OSError as error:
            raise Broken(f"{verb}: cannot send: {error}") from error
        return self._read_reply(verb)

    def _read_reply(self, verb):
        """Reads one reply and returns it without CR LF. A reply can arrive in pieces, and several replies together."""
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
    return parser.parse_args()  # exits with code 2 if the arguments are wrong


def talk(arguments, password):
    connection = OrderSocket(arguments.host, arguments.port, arguments.timeout)
    try:
        print(connection.greeting)
        if arguments.user is not None:
            connection.log_in(arguments.user, password)
        try:
            print("placeorder:", connection.place_order(arguments.order))
        except Broken as error:
            # If the order is sent again, it could be placed twice.
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
