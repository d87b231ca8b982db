"""Run in GDB: stops the program when its values are ready, and compares what is shown of each with the table below."""

import os
import pathlib
import re
import sys

import gdb

FOLDER = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER))
from natvis import Natvis  # noqa: E402

WIDE = "\u00c4\u20ac\U0001f600z\\ude00\\ud83d"

# The expression, what GDB shows of it, and what the .natvis file shows when that is something else (None: not asked).
VALUES = [
    ("point1", "(3)"),
    ("point2", "(1.5,-2)"),
    ("reference", "(1.5,-2)"),
    ("point3", "(nan(0x8000000000000),inf,-0)"),
    ("vector1", "(0.25)"),
    ("vector2", "(1,2)"),
    ("vector3", "(1,2,3)"),
    ("vector4", "(1,2,3,4)"),
    ("ipoint2", "(1,-2147483648)"),
    ("ipoint3", "(1,2,3)"),
    ("ivector2", "(-1,5)"),
    ("ivector3", "(7,8,9)"),
    ("*(Point<2>*)0", "error: Cannot access memory at address 0x0", None),
    ("extent1", "(0):(1)"),
    ("extent2", "(1,1):(3,2)"),
    ("extent3", "(0,0,0):(1,1,1)"),
    ("empty", "nothing"),
    ("full", "everything"),
    ("iempty", "nothing"),
    ("ifull", "everything"),
    ("Extent<1>::m_nothing", "nothing"),
    ("Extent<1>::m_everything", "everything"),
    ("Extent<2>::m_everything", "everything"),
    ("Extent<3>::m_nothing", "nothing"),
    ("*(Extent<1>*)&rows[0][1]", "degenerate (5):(1)"),
    ("*(Extent<3>*)rowsOfSpace", "degenerate (2,0,0):(1,1,1)"),
    ("crossed", "degenerate (0,5):(1,4)"),
    ("iextent2", "(1,2):(3,4)"),
    ("zero", "0 degrees (cosine 1, sine 0)"),
    ("right", "90 degrees (cosine 0, sine 1)"),
    ("thirty", "30 degrees (cosine 0.86602540378443871, sine 0.49999999999999994)"),
    ("steep", "-100.25 degrees (cosine -0.17794354547384167, sine -0.98404069764629087)"),
    ("wide", "135 degrees (cosine -0.70710678118654746, sine 0.70710678118654746)"),
    ("noAngle", "no direction (cosine -nan(0x8000000000000), sine -nan(0x8000000000000))"),
    ("*(Angle*)zeroes.bytes", "no direction (cosine 0, sine 0)", None),
    ("red", "rgb (1, 0.5, 0), alpha 0.25"),
    ("dull", "hls (120 degrees, 0.5, 0.25), alpha 1"),
    ("bright", "hsv (-90 degrees, 1, 0.5), alpha 1"),
    ("noHue", "hsv (no direction, 1, 1), alpha 1"),
    ("seen[0]", "rgb (1, 0, 0) = hls (0 degrees, 0.5, 1), alpha 1"),
    ("seen[1]", "rgb (1, 0, 0) = hsv (0 degrees, 1, 1), alpha 1"),
    ("seen[2]", "hls (0 degrees, 0.5, 1) = hsv (0 degrees, 1, 1), alpha 1"),
    ("seen[3]", "rgb (1, 1, 1) = hls (0 degrees, 1, 0) = hsv (0 degrees, 0, 1), alpha 1"),
    ("*(Colour*)noColour.bytes", "not a colour", None),
    ("*(Colour*)clearColour.bytes", "not a colour"),
    ("quark", '"abc"'),
    ("emptyText", '""'),
    ("nullQuark", "nullQuark"),
    ("quoted", r'"a\"b\\\n"', None),
    ("wideText", f'"{WIDE}"', None),
    ("cutQuark", r'"c\ud83d" <Cannot access memory at address ADDRESS>', None),
    ("noUnits", '"a" <0x1f600 is no code unit>', None),
    ("wildQuark", '"" <Cannot access memory at address 0x10>', None),
    ("longText", '"' + "x" * 200 + '"...', None),
    ("handle", "2 references to (anonymous namespace)::Circle at ADDRESS", "2 references to Shape"),
    ("single", "1 reference to (anonymous namespace)::Shape at ADDRESS", "1 reference to Shape"),
    ("noHandle", "null"),
    ("selfCounted", "(anonymous namespace)::SelfCounted at ADDRESS", "IHandlable"),
    ("wildHandle", "(anonymous namespace)::Shape at 0x10 <Cannot access memory at address 0x18>", "Shape"),
    ("danglingHandle", "-572662307 references to (anonymous namespace)::Shape at ADDRESS", "-572662307 references to Shape"),
    ("uuid", "0F0E0D0C-000B-0A09-0807-060504030201"),
    ("pod", "0F0E0D0C-000B-0A09-0807-060504030201"),
    ("nil", "00000000-0000-0000-0000-000000000000"),
    ("exclusive", "exclusive lock, held; its word: 0x10000000, exclusive"),
    ("shared", "shared lock, held; its word: 0x00000002, shared by 2"),
    ("steppedOut", "exclusive lock, not held; its word: 0x00000000, free"),
    ("sharedOut", "shared lock, not held; its word: 0x00000000, free"),
    ("*(SharedLock*)guardStorage", "shared lock, not held; its word: 0xdddddddd, freed memory", None),
    ("*(ExclusiveLock*)zeroes.bytes", "exclusive lock, not held; its word: <Cannot access memory at address 0x0>", None),
    ("documents[0].lock", "0x00000000, free", None),
    ("documents[1].lock", "0x10000000, exclusive", None),
    ("documents[2].lock", "0x00000002, shared by 2", None),
    ("$orn_lock(0x0fffffff)", '"0x0fffffff, shared by 268435455"', None),
    ("$orn_lock(-1)", '"0xffffffff, corrupt"', None),
]
STATES = [
    "0xdddddddd, freed memory",
    "0xfeeefeee, freed memory",
    "0xcdcdcdcd, memory of a heap, never written",
    "0xcccccccc, memory of a stack, never written",
    "0xfdfdfdfd, memory outside of a block",
    "0x10000003, corrupt",
    "0xffffffff, corrupt",
]
for i, state in enumerate(STATES):
    VALUES.append((f"documents[{i + 3}].lock", state, None))
    VALUES.append((f"guards[{i}]", f"shared lock, not held; its word: {state}"))

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


def plain(value):
    """What no view of the file shows: a text, what a handle points to."""
    target = value.type.target().strip_typedefs().unqualified()
    return str(value).partition(" L")[2] if target.name == "wchar_t" else target.name.rpartition("::")[2]


def check_gdb():
    stripped = os.environ["ORN_TABLE"] == "stripped"
    for expression, expected, *_ in VALUES:
        if stripped and ("m_" in expression or expression == "nullQuark"):
            continue  # what is the library's own, and not the program's
        if stripped:
            expected = expected.encode("ascii", "backslashreplace").decode()
        expect(expression, shown_by_gdb(expression), expected)

    # Nobody waits until the table of the waiting, which only the library's own debug information tells of, says so.
    word = gdb.parse_and_eval("documents[2].lock")
    slot = int(word.address) * 0x9E3779B97F4A7C14 % 2**64 >> 59
    if not stripped:
        gdb.execute(f"set var *(unsigned*)&ORN::Threading::parkingTable[{slot}].waiters_ = 3")
        expect("waiting", shown_by_gdb("documents[2].lock"), "0x00000002, shared by 2, 3 waiting in its slot")

    gdb.execute("disable pretty-printer .* orn;angle", to_string=True)
    expect("a view that is off", shown_by_gdb("zero"), "{static pi = 3.1415926535897931, cosine_ = 1, sine_ = 0}")


def check_natvis():
    views = Natvis(FOLDER.parent.parent / "debug" / "orn.natvis")
    for expression, in_gdb, *in_natvis in VALUES:
        expected = in_natvis[0] if in_natvis else in_gdb
        if expected is not None:
            expect("natvis " + expression, views.text(expression, plain=plain), expected)
    failures.extend(f"no value of the table shows {display}" for display in views.unused.values())


def check():
    gdb.execute("set confirm off")
    gdb.execute("break valuesAreReady")
    gdb.execute("run", to_string=True)
    gdb.execute("up", to_string=True)
    check_gdb()
    if os.environ["ORN_TABLE"] != "stripped":
        check_natvis()


try:
    check()
except BaseException as error:
    failures.append(f"{type(error).__name__}: {error}")
for failure in failures:
    print(failure)
print(f"{len(VALUES)} values, {len(failures)} failures")
gdb.execute(f"quit {1 if failures else 0}")
