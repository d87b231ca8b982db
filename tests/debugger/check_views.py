"""Run in GDB: stops the program when its values are ready, and compares what is shown of each with what Values.cpp says."""

import os
import pathlib
import re

import gdb

HERE = pathlib.Path(__file__).parent
SOURCE = (HERE / "Values.cpp").read_text(encoding="utf-8")
STRIPPED = os.environ.get("ORN_STRIPPED")  # the folder of a library without debug information, which brings no views

# What a comment cannot say, and what is the library's own: a library that was stripped does not tell it.
VALUES = {
    "wideText": '"\u00c4\u20ac\U0001f600z\\ude00\\ud83d"',
    "longText": '"' + "x" * 200 + '"...',
}
if not STRIPPED:
    VALUES |= {"nullQuark": "nullQuark", "Extent<1>::m_nothing": "nothing", "Extent<2>::m_everything": "everything"}
for code, expression, shown in re.findall(r"^ *(.*?) *// (?:(.*) )?shows (.*)$", SOURCE, re.M):
    VALUES[expression or re.search(r"(\w+)(\{| =|;)", code)[1]] = shown

failures = []


def expect(what, shown, expected):
    shown = re.sub("(?<!nan.)0x[0-9a-f]{9,}", "ADDRESS", shown)
    if shown != expected:
        failures.append(f"{what}\n    shown:    {shown}\n    expected: {expected}")


def shown_by_gdb(expression):
    try:
        return gdb.execute(f"output {expression}", to_string=True)
    except gdb.error as error:
        return f"error: {error}"


def check():
    gdb.execute("set confirm off")
    gdb.execute(f"set environment LD_LIBRARY_PATH {STRIPPED or os.environ['ORN_LIBRARIES']}")
    if STRIPPED:
        gdb.execute(f"source {HERE.parents[1] / 'debug/orn-gdb.py'}")
    gdb.execute("break valuesAreReady")
    gdb.execute("run", to_string=True)
    gdb.execute("up", to_string=True)
    for expression, expected in VALUES.items():
        if STRIPPED:
            expected = expected.encode("ascii", "backslashreplace").decode()
        expect(expression, shown_by_gdb(expression), expected)

    # The table of waiting threads belongs to the inside of the library, so only its own debug information shows it.
    word = gdb.parse_and_eval("documents[2].lock")
    slot = int(word.address) * 0x9E3779B97F4A7C14 % 2**64 >> 59
    if not STRIPPED:
        gdb.execute(f"set var *(unsigned*)&ORN::Threading::parkingTable[{slot}].waiters_ = 3")
        expect("waiting", shown_by_gdb("documents[2].lock"), "0x00000002, shared by 2, 3 waiting in its slot")

    gdb.execute("disable pretty-printer .* orn;angle", to_string=True)
    expect("a view that is off", shown_by_gdb("zero"), "{static pi = 3.1415926535897931, cosine_ = 1, sine_ = 0}")


try:
    check()
except BaseException as error:
    failures.append(f"{type(error).__name__}: {error}")
for failure in failures:
    print(failure)
print(f"{len(VALUES)} values, {len(failures)} failures")
gdb.execute("quit")
