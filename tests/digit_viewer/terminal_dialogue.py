"""Drives the digit viewer at a terminal, as a user does.

Usage: terminal_dialogue.py <velmora>   Exit code 0 if all is as expected.
"""
import os
import pty
import select
import subprocess
import sys
import tempfile
import time

LIMIT = 60  # seconds


class Dialogue:
    """A program at a terminal of its own: expect() waits for text, say() types a line."""

    def __init__(self, command, folder):
        ours, theirs = pty.openpty()
        self.terminal = ours
        self.program = subprocess.Popen(command, cwd=folder, stdin=theirs, stdout=theirs, stderr=theirs)
        os.close(theirs)
        self.seen = ""
        self.read = 0
        self.deadline = time.monotonic() + LIMIT

    def expect(self, text):
        while (at := self.seen.find(text, self.read)) < 0:
            ready, _, _ = select.select([self.terminal], [], [], self.deadline - time.monotonic())
            assert ready, f"no {text!r} in {self.seen[-2000:]}"
            try:
                data = os.read(self.terminal, 4096)
            except OSError:
                data = b""
            assert data, f"ended before {text!r}: {self.seen[-2000:]}"
            self.seen += data.decode("utf-8", "replace").replace("\r\n", "\n")
        self.read = at + len(text)

    def say(self, line):
        os.write(self.terminal, line.encode() + b"\n")

    def answer(self, *pairs):
        for question, line in pairs:
            self.expect(question)
            self.say(line)

    def end(self):
        return self.program.wait(max(1, self.deadline - time.monotonic()))


def lines_of(text, *labels):
    return [line for line in text.split("\n") if line.startswith(labels)]


def check(program):
    options = ["colors:0", "priority:0", "pause:-2"]
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run([program, *options, "custom", "pi", "-dec:100000", "-C:30000"], cwd=folder,
                             check=True, stdout=subprocess.PIPE, text=True).stdout
        subprocess.run([program, *options, "custom", "pi", "-dec:100000"], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)
        for kind, label in (("Dec", "Decimal"), ("Hex", "Hexadecimal")):
            told = lines_of(run, f"{kind} Counts: ", f"{kind} Hash: ")
            assert len(told) == 2, told
            for name in (f"pi - {kind} - chudnovsky - 1.lmd", f"pi - {kind} - chudnovsky.txt"):
                viewer = Dialogue([program, *options, "digitviewer"], folder)
                viewer.answer(("extensions):", name), ("option: ", "1"), ("(0 for all): ", "0"))
                viewer.expect(" digits in ")
                viewer.answer(("option: ", "0"), ("Starting Digit: ", "50001"), ("Digits to View: ", "20"))
                viewer.expect(" :  50,020\n")
                viewer.answer(("option: ", "2"), ("destination file:", name + " out"), ("(0 for all): ", "0"))
                viewer.expect(f"File: {name} out.txt")
                viewer.answer(("option: ", "3"), ("(0 for all): ", "0"), ("name for the digits:", name + " again"),
                              ("for default):", " "), ("single file): ", "0"))
                viewer.expect("First File: ")
                viewer.answer(("option: ", "5"))
                assert viewer.end() == 0, viewer.seen
                shown = lines_of(viewer.seen, f"{kind} Counts: ", f"{kind} Hash: ")
                assert shown == told, (label, shown, told)
                with open(f"{folder}/{name} out.txt", "rb") as ours, open(f"{folder}/pi - {kind} - chudnovsky.txt", "rb") as its:
                    assert ours.read() == its.read(), name


if len(sys.argv) != 2:
    sys.exit(__doc__)
try:
    check(sys.argv[1])
except (AssertionError, subprocess.SubprocessError) as fault:
    sys.exit(f"{type(fault).__name__}: {fault}")
