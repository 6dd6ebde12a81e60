#!/usr/bin/env python3
"""The program asks for passwords on a terminal: nothing is echoed, and the echo is back afterwards.

terminal_test.py PROGRAM FIXTURES
"""
import os
import pty
import re
import select
import signal
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PROGRAM, FIXTURES = sys.argv[1:3]
PATIENCE = 60  # seconds; only a hanging program waits so long


class Terminal:
    """The program on a terminal of its own, with no password in its environment."""

    def __init__(self, *arguments, standard_input=None):
        self.text = ""
        environment = {name: value for name, value in os.environ.items() if name != "PKIDER_PASSWORD"}
        environment["TERM"] = "xterm"
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            if standard_input is not None:
                os.dup2(os.open(standard_input, os.O_RDONLY), 0)
                os.dup2(os.open(os.devnull, os.O_WRONLY), 1)
            os.execve(PROGRAM, [PROGRAM, *arguments], environment)

    def wait_for(self, words):
        """Reads until the words have come; gives everything that was read since the last call."""
        end = time.monotonic() + PATIENCE
        while words not in self.text:
            if not self.read(end):
                raise AssertionError(f"waited for {words!r}, got {self.text!r}")
        before, self.text = self.text.split(words, 1)
        return before

    def read(self, end):
        ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
        if not ready:
            return False
        try:
            chunk = os.read(self.terminal, 65536)
        except OSError:  # the other side was closed
            return False
        self.text += chunk.decode()
        return bool(chunk)

    def type(self, text):
        # Only after the prompt: what is typed before it is thrown away.
        os.write(self.terminal, text.encode())

    def has_echo(self):
        return bool(termios.tcgetattr(self.terminal)[3] & termios.ECHO)

    def end(self):
        """Reads to the end; the exit status and the rest of the text."""
        end = time.monotonic() + PATIENCE
        while self.read(end):
            pass
        _, status = os.waitpid(self.child, 0)
        os.close(self.terminal)
        return os.waitstatus_to_exitcode(status), self.text


class Prompt(unittest.TestCase):
    p12 = os.path.join(FIXTURES, "three_certs.p12")

    def test_asks_without_echo(self):
        terminal = Terminal("p12", "verify", self.p12)
        terminal.wait_for(f"Password of {self.p12}: ")
        self.assertFalse(terminal.has_echo())
        terminal.type("secret\n")
        code, text = terminal.end()
        self.assertEqual(code, 0, text)
        self.assertIn("the MAC is right", text)
        self.assertNotIn("secret", text)

    def test_says_that_a_password_is_wrong_and_nothing_else(self):
        terminal = Terminal("p12", "list", self.p12)
        terminal.wait_for(": ")
        terminal.type("wrong\n")
        code, text = terminal.end()
        self.assertEqual(code, 3)
        plain = re.sub("\x1b\\[[0-9;]*m", "", text)
        self.assertEqual(plain, f"\r\npkider: {self.p12}: wrong password or MAC\r\n")

    def test_asks_once_for_several_files(self):
        terminal = Terminal("p12", "verify", self.p12, self.p12)
        terminal.wait_for("Password of ")
        terminal.wait_for(": ")
        terminal.type("secret\n")
        code, text = terminal.end()
        self.assertEqual(code, 0)
        self.assertEqual(text.count("the MAC is right"), 2)
        self.assertNotIn("Password", text)

    def test_asks_twice_for_a_new_password(self):
        for again, expected in (("secret", 0), ("Secret", 64)):
            with tempfile.TemporaryDirectory() as folder:
                target = os.path.join(folder, "out.p12")
                terminal = Terminal("p12", "create", "-o", target, "--cert", os.path.join(FIXTURES, "first_cert.der"),
                                    "--iterations", "1000")
                terminal.wait_for(f"New password of {target}: ")
                terminal.type("secret\n")
                terminal.wait_for(f"New password of {target} again: ")
                terminal.type(again + "\n")
                code, text = terminal.end()
                self.assertEqual(code, expected, text)
                self.assertEqual(os.listdir(folder), ["out.p12"] if expected == 0 else [])
                self.assertNotIn("ecret", text)

    def test_an_empty_password_can_be_typed(self):
        terminal = Terminal("p12", "verify", os.path.join(FIXTURES, "empty_password.p12"))
        terminal.wait_for(": ")
        terminal.type("\n")
        self.assertEqual(terminal.end()[0], 0)

    def test_end_of_input_is_no_password(self):
        terminal = Terminal("p12", "verify", self.p12)
        terminal.wait_for(": ")
        terminal.type("\x04")
        code, text = terminal.end()
        self.assertEqual(code, 64)
        self.assertIn("no password", text)

    def test_an_interrupt_ends_the_program_and_brings_the_echo_back(self):
        terminal = Terminal("p12", "verify", self.p12)
        terminal.wait_for(": ")
        self.assertFalse(terminal.has_echo())
        terminal.type("\x03")
        _, status = os.waitpid(terminal.child, 0)
        self.assertTrue(os.WIFSIGNALED(status))
        self.assertEqual(os.WTERMSIG(status), signal.SIGINT)
        self.assertTrue(terminal.has_echo())
        os.close(terminal.terminal)

    def test_asks_again_after_a_stop(self):
        terminal = Terminal("p12", "verify", self.p12)
        terminal.wait_for(": ")
        os.kill(terminal.child, signal.SIGTSTP)
        # Nobody could wake it up here (its process group is orphaned), so the system does not stop it: it goes on at once.
        terminal.wait_for(f"Password of {self.p12}: ")
        terminal.type("secret\n")
        self.assertEqual(terminal.end()[0], 0)

    def test_standard_input_and_output_may_be_files(self):
        """The password is asked for on the terminal, wherever the data comes from and goes to."""
        terminal = Terminal("p12", "verify", standard_input=self.p12)
        terminal.wait_for("Password of standard input: ")
        terminal.type("secret\n")
        self.assertEqual(terminal.end()[0], 0)


class Note(unittest.TestCase):
    def test_a_long_derivation_is_told_on_a_terminal_and_taken_away(self):
        with tempfile.TemporaryDirectory() as folder:
            password = os.path.join(folder, "password")
            with open(password, "w") as file:
                file.write("secret")
            command = ["p12", "create", "-o", os.path.join(folder, "out.p12"), "--plain-certs", "--cert",
                       os.path.join(FIXTURES, "first_cert.der"), "--password-file", password]
            terminal = Terminal(*command)
            code, text = terminal.end()
            self.assertEqual(code, 0)
            self.assertRegex(text, r"Deriving the key from the password: \d+ % of 600000 iterations")
            self.assertTrue(text.endswith("\r\x1b[K"), repr(text[-40:]))

            quiet = subprocess.run([PROGRAM, *command, "--force"], capture_output=True, text=True, check=True)
            self.assertEqual(quiet.stdout + quiet.stderr, "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
