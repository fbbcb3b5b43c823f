"""Uses the desk's window as a person does, with keys and the mouse, on a screen in memory: confirms batches, declines one, closes a
question by its frame, resumes the intake, halts, resumes, and ends the desk.

It polls the processes of the desk and of the screen, so it sleeps for short times.

Usage: on_screen_test.py SOURCE_FOLDER PROGRAMS
"""
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

ROOT, PROGRAMS = Path(sys.argv[1]), Path(sys.argv[2])
sys.path.insert(0, str(ROOT / "scripts"))
from window_screen import DEADLINE, Screen, Window, wait_for  # noqa: E402

QUESTION = "^文件单"
BUY = "23,0,8.02,600104,1000\n"
REST = "23,0,7.50,600104,1000\n"  # below the market: it waits


class OnScreen(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.screen = self.enterContext(Screen(1366, 768))
        self.window = self.enterContext(Window(self.screen, PROGRAMS, folder.name))
        self.screen.window("ACTIVE")
        self.window.wait_for_record(kind="strategy", action="start", count=16)

    def ask(self, text=BUY):
        """Hands over a batch and waits until its question can be answered."""
        self.window.hand_over("group.txt", text)
        return self.screen.window(QUESTION)

    def press_until(self, done, *keys):
        """The dialog ignores an answer that comes too early, so the key is pressed again until it has worked."""
        def press():
            self.screen.key(*keys)
            time.sleep(0.1)
        wait_for(f"{keys} to work", done, press)

    def confirmations(self, event):
        return len(self.window.journal(kind="confirmation", event=event))

    def end(self):
        self.assertEqual(self.window.process.wait(DEADLINE), 0, self.window.printed())
        self.assertEqual(len(self.window.journal(kind="stopped")), 1)

    def test_a_batch_is_confirmed_by_key_and_by_mouse(self):
        self.ask()
        self.press_until(lambda: self.confirmations("accepted") == 1, "Return")
        self.window.wait_for_record(kind="fill")
        question = self.ask()
        width, height = self.screen.size_of(question)

        def click():
            self.screen.click(question, width - 160, height - 30)
            time.sleep(0.1)
        wait_for("the click on 确定", lambda: self.confirmations("accepted") == 2, click)
        self.window.wait_for_record(kind="fill", count=2)
        self.stop_by_signal()

    def stop_by_signal(self):
        self.window.process.send_signal(signal.SIGTERM)
        self.end()

    def test_escape_declines(self):
        self.ask()
        self.press_until(lambda: self.confirmations("declined") == 1, "Escape")
        wait_for("the end of the question", lambda: not self.screen.windows(QUESTION))
        self.assertEqual(self.window.journal(kind="command"), [])
        self.stop_by_signal()

    def test_intake_waits_after_a_question_is_closed_by_its_frame(self):
        self.ask()
        self.press_until(lambda: self.confirmations("declined") == 1, "alt+F4")
        self.screen.window("PAUSED")
        waiting = self.window.hand_over("group.txt", BUY)
        # Each change waits for the intake, and needs longer than one of its intervals.
        self.screen.key("F2", "Down", "space")
        self.window.wait_for_record(kind="strategy", action="stop")
        self.screen.key("Return")
        self.window.wait_for_record(kind="strategy", action="start", count=17)
        self.assertTrue(waiting.exists())
        self.assertEqual(len(self.window.journal(kind="intake")), 1)
        self.stop_by_signal()
        self.assertTrue(waiting.exists())

    def test_stop_while_a_question_is_open(self):
        self.ask()
        self.stop_by_signal()
        self.assertEqual(self.confirmations("accepted"), 0)
        self.assertEqual(self.window.journal(kind="command"), [])

    def test_halt_and_resume(self):
        self.ask(REST)
        self.press_until(lambda: self.confirmations("accepted") == 1, "Return")
        self.window.wait_for_record(kind="order", count=2)  # the group has two accounts
        self.screen.key("ctrl+h")
        self.screen.window("^Halt")
        self.screen.key("Left", "Return")
        self.screen.window("HALTED")
        self.assertEqual([record["action"] for record in self.window.journal(kind="control")], ["halt", "cancel", "halted"])
        self.assertEqual(self.window.journal(kind="control", action="halted")[0]["cancelled"], 2)
        waiting = self.window.hand_over("group.txt", BUY)
        self.screen.key("ctrl+h")
        self.screen.window("^Resume")
        self.assertTrue(waiting.exists())
        self.screen.key("Left", "Return")
        self.screen.window(QUESTION)
        self.press_until(lambda: self.confirmations("accepted") == 2, "Return")
        self.window.wait_for_record(kind="fill")
        self.stop_by_signal()

    def test_closing_asks_and_ends_the_desk(self):
        self.screen.key("alt+F4")
        self.screen.window("^Close")
        self.screen.key("Left", "Return")
        self.end()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
