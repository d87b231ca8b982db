"""How GDB shows the values of orn: points, vectors, extents, angles, colours, quarks, handles, UUIDs and lock words.

GDB loads this file with the library where it is installed for that; anywhere else: source orn-gdb.py. It needs the debug
information of the code that is looked at. That describes every type but those with virtual functions, which only the
library's own debug information has: colours and the counts of handles are shown with it, or in code compiled by gcc with
-femit-class-debug-always, by clang with -fstandalone-debug. How many threads wait for a lock is told only with it.
`print/r` shows a value without these views, and `disable pretty-printer .* orn` ends them.

A lock word has no type of its own: every `LONG volatile` is shown as one, with its number. `print $orn_lock(number)` says
in words what any number means as a lock word.
"""

import math
import re
import sys

import gdb
import gdb.printing
import gdb.types

LONGEST_TEXT = 65536  # code units, where GDB itself is told no limit


def number(value):
    return value.format_string(raw=True)


def listed(values):
    return "(" + ",".join(number(value) for value in values) + ")"


def elements(array):
    first, last = array.type.range()
    return [array[i] for i in range(first, last + 1)]


def members(value, names):
    return [value[name] for name in names]


def leaf(value):
    """The number inside a std::atomic, whichever standard library's."""
    value_type = value.type.strip_typedefs()
    while value_type.code == gdb.TYPE_CODE_STRUCT:
        value = value[next(field for field in value_type.fields() if hasattr(field, "bitpos"))]
        value_type = value.type.strip_typedefs()
    return int(value)


def coordinates(value):
    names = [field.name for field in gdb.types.get_basic_type(value.type).fields()]
    if "c_" in names:
        return listed(elements(value["c_"]))
    return listed(members(value, [name for name in ("x_", "y_", "z_") if name in names]))


def extent(value):
    low, high = elements(value["box_"]["lo"]), elements(value["box_"]["hi"])
    if low[0].type.strip_typedefs().code == gdb.TYPE_CODE_FLT:
        lows, highs = [float(v) for v in low], [float(v) for v in high]
        least, most = -sys.float_info.max, sys.float_info.max
    else:
        lows, highs = [int(v) for v in low], [int(v) for v in high]
        least, most = -(2**31), 2**31 - 1

    def spans(a, b):
        return all(v == a for v in lows) and all(v == b for v in highs)

    if spans(most, least):
        return "nothing"
    if spans(least, most):
        return "everything"
    degenerate = any(a > b for a, b in zip(lows, highs))
    return ("degenerate " if degenerate else "") + listed(low) + ":" + listed(high)


def degrees(value):
    cosine, sine = (float(v) for v in members(value, ("cosine_", "sine_")))
    direction = math.degrees(math.atan2(sine, cosine))
    if cosine == sine == 0 or math.isnan(direction):
        return "no direction"
    return f"{direction:.12g} degrees"


def angle(value):
    return f"{degrees(value)} (cosine {number(value['cosine_'])}, sine {number(value['sine_'])})"


def colour(value):
    """Every model that the colour holds; the one it was made in and those that were asked for since."""
    models = []
    for name, parts in (
        ("rgb", ("red", "green", "blue")),
        ("hls", ("hue", "lightness", "saturation")),
        ("hsv", ("hue", "saturation", "value")),
    ):
        model = value[name + "_"]
        valid = int(model["valid"].cast(gdb.lookup_type("unsigned char")))
        if valid > 1:
            return "not a colour"
        if valid:
            shown = [degrees(part) if name == "hue" else number(part) for name, part in zip(parts, members(model, parts))]
            models.append(f"{name} ({', '.join(shown)})")
    if not models:
        return "not a colour"
    return " = ".join(models) + f", alpha {number(value['alpha_'])}"


def fitting(text):
    """The text in the characters that GDB can print here."""
    charset = gdb.host_charset() if hasattr(gdb, "host_charset") else "ascii"
    try:
        return text.encode(charset, "backslashreplace").decode(charset)
    except LookupError:
        return text.encode("ascii", "backslashreplace").decode("ascii")


def escaped(character):
    if character in '"\\':
        return "\\" + character
    return character if character.isprintable() else character.encode("unicode_escape", "surrogatepass").decode()


def wide_text(pointer):
    """The UTF-16 code units up to the terminator, in quotes; half of a surrogate pair is shown by its number."""
    limit = gdb.parameter("print elements") or LONGEST_TEXT
    mask = (1 << 8 * pointer.type.target().sizeof) - 1
    units, after = [], ""
    try:
        while (unit := int((pointer + len(units)).dereference()) & mask) != 0:
            if unit > 0xFFFF:
                after = f" <{unit:#x} is no code unit>"
                break
            if len(units) == limit:
                after = "..."
                break
            units.append(unit)
    except gdb.error as error:
        after = f" <{error}>"
    text = b"".join(unit.to_bytes(2, "little") for unit in units).decode("utf-16-le", "surrogatepass")
    return '"' + fitting("".join(map(escaped, text))) + '"' + after


def quark(value):
    return "nullQuark" if int(value["text_"]) == 0 else wide_text(value["text_"])


def handle(value):
    pointer = value["pointer_"]
    address = int(pointer)
    if address == 0:
        return "null"
    try:
        count = leaf(pointer.dereference()["count_"])
        held = f"{count} reference{'' if count == 1 else 's'} to "
    except gdb.MemoryError as error:
        return f"{pointer.type.target()} at {address:#x} <{error}>"
    except gdb.error:  # counted by a class of the application's own
        held = ""
    try:
        pointer = pointer.cast(pointer.dynamic_type)
    except gdb.error:
        pass
    return f"{held}{pointer.type.target()} at {int(pointer):#x}"


def uuid(value):
    if "value_" in [field.name for field in gdb.types.get_basic_type(value.type).fields()]:
        value = value["value_"]
    first, second, third = (int(v) for v in members(value, ("Data1", "Data2", "Data3")))
    rest = "".join(f"{int(v):02X}" for v in elements(value["Data4"]))
    return f"{first:08X}-{second:04X}-{third:04X}-{rest[:4]}-{rest[4:]}"


# What debug heaps and stacks write into memory that is not, or no longer, in use.
UNUSED_MEMORY = {
    0xDDDDDDDD: "freed memory",
    0xFEEEFEEE: "freed memory",
    0xCDCDCDCD: "memory of a heap, never written",
    0xCCCCCCCC: "memory of a stack, never written",
    0xFDFDFDFD: "memory outside of a block",
}
EXCLUSIVE = 0x10000000


def lock_state(bits):
    if bits == 0:
        state = "free"
    elif bits == EXCLUSIVE:
        state = "exclusive"
    elif bits < EXCLUSIVE:
        state = f"shared by {bits}"
    else:
        state = UNUSED_MEMORY.get(bits, "corrupt")
    return f"{bits:#010x}, {state}"


def waiting(address):
    """How many threads wait in the slot of the lock word at this address, which other words may share."""
    slot = (address * 0x9E3779B97F4A7C14 & 0xFFFFFFFFFFFFFFFF) >> 59
    try:
        waiters = leaf(gdb.parse_and_eval(f"ORN::Threading::parkingTable[{slot}].waiters_"))
    except (gdb.error, TypeError, IndexError):  # nothing is known of the library's inside
        return ""
    return f", {waiters} waiting in its slot" if waiters else ""


def lock_word(value):
    return lock_state(int(value) & 0xFFFFFFFF) + (waiting(int(value.address)) if value.address is not None else "")


def guard(value):
    mode = {EXCLUSIVE: "exclusive", 1: "shared"}.get(int(value.type.strip_typedefs().template_argument(0)), "unusual")
    held = f"{mode} lock, {'held' if value['held_'] else 'not held'}"
    try:
        return f"{held}; its word: {lock_word(value['word_'].dereference())}"
    except gdb.error as error:
        return f"{held}; its word: <{error}>"


VIEWS = [
    ("point", r"I?Point<\d>", coordinates),
    ("vector", r"I?Vector<\d>", coordinates),
    ("extent", r"I?Extent<\d>", extent),
    ("angle", r"Angle", angle),
    ("colour", r"Colour", colour),
    ("quark", r"Quark", quark),
    ("handle", r"ORN::Handle<.*>", handle),
    ("uuid", r"ORN::UUID(::PODTYPE)?", uuid),
    ("lock guard", r"ReadWriteLock<.*>", guard),
    ("lock word", r"volatile LONG", lock_word),
]


class View:
    def __init__(self, text, value):
        self.text, self.value = text, value

    def to_string(self):
        try:
            return self.text(self.value)
        except (gdb.error, TypeError, ValueError, OverflowError) as error:
            return f"<{error}>"


class Views(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("orn", [gdb.printing.SubPrettyPrinter(name) for name, _, _ in VIEWS])
        self.views = [
            (printer, re.compile(pattern), text) for printer, (_, pattern, text) in zip(self.subprinters, VIEWS)
        ]

    def __call__(self, value):
        if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
        if value.type.strip_typedefs().code in (gdb.TYPE_CODE_STRUCT, gdb.TYPE_CODE_UNION):
            value_type = gdb.types.get_basic_type(value.type)
            name = value_type.name if value_type.fields() else None  # no fields: only declared in what GDB can see
        else:
            name = str(value.type)
        for printer, pattern, text in self.views:
            if printer.enabled and pattern.fullmatch(name or ""):
                return View(text, value)
        return None


class LockWords(gdb.Function):
    """$orn_lock(NUMBER): what the number means as a lock word."""

    def __init__(self):
        super().__init__("orn_lock")

    def invoke(self, word):
        return lock_state(int(word) & 0xFFFFFFFF)


gdb.printing.register_pretty_printer(gdb.current_objfile(), Views(), replace=True)
LockWords()
