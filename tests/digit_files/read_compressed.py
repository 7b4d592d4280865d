"""Reads compressed digit files by the description of their format alone, against the text files of the same run.

Usage: read_compressed.py <velmora>   Exit code 0 if all is as expected.
"""
import subprocess
import sys
import tempfile

TOTAL, BLOCK = 100003, 30001


def read_file(path):
    """The entries of the header and the words."""
    with open(path, "rb") as file:
        header, _, payload = file.read().partition(b"\0")
    lines = header.decode("ascii").split("\r\n\r\n")
    assert lines[0] == "#Compressed Digit File" and lines[-2:] == ["EndHeader", ""], lines
    entries = dict(line.split(":\t") for line in lines[1:-2])
    assert list(entries) == ["FileVersion", "Base", "FirstDigits", "TotalDigits", "Blocksize", "BlockID"], entries
    assert entries["FileVersion"] == "1.1.0" and len(payload) % 8 == 0
    return entries, [int.from_bytes(payload[i:i + 8], "little") for i in range(0, len(payload), 8)]


def digits_of(entries, words):
    radix = int(entries["Base"])
    a_word, form = (19, "%019d") if radix == 10 else (16, "%016x")
    total, block, number = (int(entries[key]) for key in ("TotalDigits", "Blocksize", "BlockID"))
    count = total if block == 0 else min(block, total - number * block)
    assert len(words) == (count - 1) // a_word + 1, (len(words), count)
    text = "".join(form % word for word in words)
    assert set(text[count:]) <= {"0"}, "digits behind the end"
    return text[:count]


def check(program):
    run = [program, "colors:0", "priority:0", "pause:-2", "custom", "pi", f"-dec:{TOTAL}"]
    with tempfile.TemporaryDirectory() as folder:
        for option in ("-C:0", "-C:-1", f"-C:{BLOCK}"):
            subprocess.run([*run, option], cwd=folder, check=True, stdout=subprocess.DEVNULL)
        for kind in ("Dec", "Hex"):
            with open(f"{folder}/pi - {kind} - chudnovsky.txt", encoding="ascii") as file:
                head, _, expected = file.read().partition(".")
            files = (len(expected) - 1) // BLOCK + 1
            sets = [[f"pi - {kind} - chudnovsky.lmd"],
                    [f"pi - {kind} - chudnovsky - {number}.lmd" for number in range(files)]]
            for names in sets:
                read = [read_file(f"{folder}/{name}") for name in names]
                assert "".join(digits_of(*file) for file in read) == expected, names
                for number, (entries, _) in enumerate(read):
                    assert entries["FirstDigits"] == f"{head}.{expected[:50]}", entries
                    assert int(entries["TotalDigits"]) == len(expected) and int(entries["BlockID"]) == number, entries


if len(sys.argv) != 2:
    sys.exit(__doc__)
try:
    check(sys.argv[1])
except (AssertionError, ValueError, subprocess.SubprocessError) as fault:
    sys.exit(f"{type(fault).__name__}: {fault}")
