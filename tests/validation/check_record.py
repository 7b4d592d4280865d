"""Reads validation files by the description of their format alone and recomputes both checksums.

Usage: check_record.py <file> ...                 checks files
       check_record.py --program <velmora>        checks the record of a short run, and that the program agrees
Exit code 0 if all hold.
"""
import glob
import hashlib
import re
import subprocess
import sys
import tempfile

SALT_A = bytes.fromhex("4c1d7e92a5306bf8")
SALT_B = bytes.fromhex("9b36e0f174ad52c3")


def check(path):
    with open(path, "rb") as file:
        content = file.read()
    assert content.count(b"\n") == content.count(b"\r\n"), "line ends"
    end = content.rindex(b"\r\n----\r\n") + 6
    body, rest = content[:end], content[end:]
    match = re.fullmatch(rb"(?:\r\n){3}Checksum0: ([0-9a-f]{128})\r\nChecksum1: ([0-9a-f]{128})\r\n", rest)
    assert match, "checksum lines"
    seed = int(re.search(rb"seed              : (\d+)\r\n", body).group(1))
    millis = int(re.search(rb"epoch_millis_start: (\d+)\r\n", body).group(1))

    first = bytearray(hashlib.sha256(SALT_A + body).digest())
    for i, byte in enumerate(seed.to_bytes(8, "big") + millis.to_bytes(8, "big")):
        first[i] ^= byte
    second = hashlib.sha256(SALT_A + bytes(first) + body).digest()
    assert match.group(1).decode() == (bytes(first) + second).hex(), "Checksum0"
    assert match.group(2).decode() == hashlib.sha512(SALT_B + body).hexdigest(), "Checksum1"
    assert re.search(rb"\r\nValidation Version:    1\.3\r\n", body), "version"


def check_program(program):
    with tempfile.TemporaryDirectory() as folder:
        options = ["colors:0", "priority:0", "pause:-2"]
        run = [program] + options + ["custom", "pi", "-dec:1000", "-od:0"]
        subprocess.run(run, cwd=folder, check=True, stdout=subprocess.DEVNULL)
        (record,) = glob.glob(folder + "/*.txt")
        check(record)
        verdict = subprocess.run([program] + options + ["validate"], input=record.encode(), check=True,
                                 stdout=subprocess.PIPE).stdout
        assert b"Validation Passed!" in verdict, "verdict of the program"


try:
    if sys.argv[1:2] == ["--program"]:
        check_program(sys.argv[2])
    elif len(sys.argv) < 2:
        sys.exit(__doc__)
    else:
        for name in sys.argv[1:]:
            check(name)
except (AssertionError, AttributeError, ValueError, subprocess.CalledProcessError) as fault:
    sys.exit(f"{type(fault).__name__}: {fault}")
