"""Evaluates a .natvis file in GDB: the text that its views give a value, by the same expressions."""

import re
import xml.etree.ElementTree as ElementTree

import gdb
import gdb.types

NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
KNOWN = {  # the elements that occur, and their attributes
    "AutoVisualizer": set(),
    "Type": {"Name"},
    "AlternativeType": {"Name"},
    "Intrinsic": {"Name", "Expression"},
    "DisplayString": {"Condition", "IncludeView", "Optional"},
    "StringView": set(),
    "Expand": set(),
    "Item": {"Name", "Condition", "Optional"},
}
WORDS = {"sizeof", "int", "unsigned", "long", "this", "false", "true"}
TOKEN = re.compile(r"0x\w+|\d[\d.]*(?:e[+-]?\d+)?|(?:\.|->|::)\s*[A-Za-z_]\w*|\$T\d|[A-Za-z_]\w*(?:\(\))?|.", re.S)


def name_pattern(name):
    return re.compile(re.escape(name).replace(r"\*", ".*"))


class Type:
    def __init__(self, element):
        self.name = element.get("Name")
        alternatives = [child.get("Name") for child in element.findall(NAMESPACE + "AlternativeType")]
        self.patterns = {name: name_pattern(name) for name in [self.name, *alternatives]}
        self.intrinsics = {i.get("Name"): i.get("Expression") for i in element.findall(NAMESPACE + "Intrinsic")}
        self.displays = element.findall(NAMESPACE + "DisplayString")
        self.strings = element.findall(NAMESPACE + "StringView")
        self.items = element.findall(NAMESPACE + "Expand/" + NAMESPACE + "Item")


class Natvis:
    def __init__(self, path):
        root = ElementTree.parse(path).getroot()
        for element in root.iter():
            name = element.tag.removeprefix(NAMESPACE)
            assert name in KNOWN and set(element.attrib) <= KNOWN[name], f"{name} {element.attrib} is not known"
        self.types = [Type(element) for element in root]
        self.known = {}  # the intrinsics that have been evaluated, by object
        self.unused = {id(d): f"{t.name}: {d.text}" for t in self.types for d in t.displays}
        self.unused.update({(t.name, n): f"{t.name}: {n}" for t in self.types for n in t.patterns})

    def type_of(self, value_type):
        name = (gdb.types.get_basic_type(value_type).name or "").replace(", ", ",")
        for candidate in self.types:
            for pattern_name, pattern in candidate.patterns.items():
                if pattern.fullmatch(name):
                    self.unused.pop((candidate.name, pattern_name), None)
                    return candidate
        return None

    def evaluate(self, view, path, expression):
        """An expression in the scope of the object that `path` names."""

        def in_scope(token):
            name = token.removesuffix("()")
            if token[0] == "$":
                arguments = gdb.parse_and_eval(path).type.strip_typedefs()
                return str(arguments.template_argument(int(token[2:]) - 1))
            if not re.match(r"[A-Za-z_]", token) or token in WORDS - {"this"}:
                return token
            if token == "this":
                return f"(&({path}))"
            if name in view.intrinsics:
                if (path, name) not in self.known:
                    variable = f"$natvis_{len(self.known)}_{name}"
                    gdb.set_convenience_variable(variable[1:], self.evaluate(view, path, view.intrinsics[name]))
                    self.known[path, name] = variable
                return self.known[path, name]
            return f"({path}).{token}"

        return gdb.parse_and_eval("".join(in_scope(token) for token in TOKEN.findall(expression)))

    def holds(self, view, path, element):
        condition = element.get("Condition")
        return condition is None or bool(self.evaluate(view, path, condition))

    def text(self, path, only="", plain=None):
        """What the first fitting view shows; `plain` writes what has none."""
        view = self.type_of(gdb.parse_and_eval(path).type)
        if view is None:
            return plain(path)
        for display in view.displays:
            if display.get("IncludeView", "") not in ("", only):
                continue
            try:
                if not self.holds(view, path, display):
                    continue
                shown = re.sub(r"\{([^{}]*)\}", lambda e: self.hole(view, path, e[1], plain), display.text)
            except gdb.error:
                if display.get("Optional") == "true":
                    continue
                raise
            self.unused.pop(id(display), None)
            self.check_items(view, path)
            return shown
        raise AssertionError(f"no view for {path}")

    def check_items(self, view, path):
        for item in view.items:
            try:
                if self.holds(view, path, item):
                    self.evaluate(view, path, item.text).fetch_lazy()
            except gdb.error:
                if item.get("Optional") != "true":
                    raise
        for string in view.strings:
            self.evaluate(view, path, string.text.removesuffix(",su"))

    def hole(self, view, path, text, plain):
        expression, _, form = text.partition(",") if "(" not in text.partition(",")[0] else text.rpartition(",")
        if not expression:
            expression, form = form, ""
        value = self.evaluate(view, path, expression)
        kind = value.type.strip_typedefs()
        if form == "su":
            return plain(value)
        if form in ("Xb", "nvoXb"):
            return f"{int(value):0{2 * kind.sizeof}X}"
        if form == "x":
            return f"{int(value):#010x}"
        if form in ("g", "d") or kind.code in (gdb.TYPE_CODE_INT, gdb.TYPE_CODE_FLT):
            return value.format_string(raw=True)
        gdb.set_convenience_variable("natvis_hole", value)
        inner = re.fullmatch(r"view\((\w+)\)", form)
        if kind.code == gdb.TYPE_CODE_PTR:
            return plain(value)
        name = f"({path}).{expression}" if expression != "*this" else path
        return self.text(name, inner[1] if inner else "", plain)
