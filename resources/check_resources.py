#!/usr/bin/env python3
"""Build check of the resources against the code that uses them.

Fails (exit status 1, one "file:line: problem" per line) when
  - a message key used in code or in a layout is missing from its catalogue;
  - a visible text of a layout (label, title, tool-tip, ...) is not a key;
  - a control looked up in code is missing from the layout of its dialog;
  - a catalogue key is used nowhere (neither literally in code, nor in a
    layout, nor by an entry of the allow-list of keys built at run time);
  - an allow-list entry has no comment or matches no key.

What counts as a use in code (C++ sources and headers, tests excluded):
  translate(L"key")                key of the "dialogs" catalogue
  translate_shared(L"key")         key of the "shareddlg" catalogue
  ->message(L"key"), has_message   key of any catalogue
  L"dlg.x.y", L"panel.…", L"pref.…", L"btn.…", L"inplace.…"
                                   a key, a layout object name, or a prefix
                                   of keys ("dlg.import.product_name.")
  find_control<T>(L"name"), XRCCTRL(w, "name", T), XRCID("name")
                                   a control of the dialog(s) named by
                                   set_dialog_name(L"...") or loaded by
                                   load_launch_layout(self, parent, L"...") in the same file
                                   or in a header of the same name
Any wide string literal equal to a key marks the key as used.
"""
import argparse
import os
import re
import sys
import xml.parsers.expat

TEXT_ELEMENTS = {"label", "title", "tooltip", "help", "longhelp", "hint", "item", "message"}
KEY_LIKE = re.compile(r"^(dlg|panel|pref|btn|inplace)\.[A-Za-z0-9_.\-]*[A-Za-z0-9_]$")
WIDE_LITERAL = re.compile(r'L"((?:[^"\\\n]|\\.)*)"')
# The key is the whole first argument (not a prefix joined to more text).
CALLS = [
    (re.compile(r'\btranslate\(\s*L"([^"]*)"\s*[,)]'), "dialogs"),
    (re.compile(r'\btranslate_shared\(\s*L"([^"]*)"\s*[,)]'), "shareddlg"),
    (re.compile(r'(?:->|\.)(?:message|has_message)\(\s*L"([^"]*)"\s*[,)]'), None),
]
CONTROL_LOOKUPS = [
    re.compile(r'\bfind_control\s*<[^>]*>\s*\(\s*L?"([^"]*)"'),
    re.compile(r'\bXRCCTRL\s*\([^,]*,\s*L?"([^"]*)"'),
    re.compile(r'\bXRCID\s*\(\s*L?"([^"]*)"'),
]
DIALOG_NAME = re.compile(r'\b(?:set_dialog_name|load_launch_layout)\s*\((?:\s*[A-Za-z_:>.-]+\s*,)*\s*L"([^"]*)"')


class Problems:
    def __init__(self):
        self.items = []

    def add(self, where, message):
        self.items.append(f"{where}: {message}")


def line_of(text, pos):
    return text.count("\n", 0, pos) + 1


def unescape_po(s):
    out = []
    i = 0
    while i < len(s):
        c = s[i]
        if c == "\\" and i + 1 < len(s):
            n = s[i + 1]
            out.append({"n": "\n", "t": "\t", "r": "\r", '"': '"', "\\": "\\"}.get(n, n))
            i += 2
        else:
            out.append(c)
            i += 1
    return "".join(out)


def read_po(path, problems):
    """Returns {key: (text, line)}."""
    entries = {}
    current = None  # [field, value, line]
    msgid = None
    msgid_line = 0

    def finish():
        nonlocal msgid
        if current and current[0] == "msgstr" and msgid is not None:
            if msgid != "":
                if msgid in entries:
                    problems.add(f"{path}:{msgid_line}", f"key '{msgid}' is defined twice")
                entries[msgid] = (current[1], msgid_line)
            msgid = None

    with open(path, encoding="utf-8") as f:
        for number, raw in enumerate(f, 1):
            line = raw.strip()
            if not line or line.startswith("#"):
                continue
            m = re.match(r'^(msgid|msgstr)\s+"(.*)"$', line)
            if m:
                if m.group(1) == "msgid":
                    finish()
                    current = ["msgid", unescape_po(m.group(2)), number]
                else:
                    if current is None or current[0] != "msgid":
                        problems.add(f"{path}:{number}", "msgstr without msgid")
                        continue
                    msgid, msgid_line = current[1], current[2]
                    current = ["msgstr", unescape_po(m.group(2)), number]
                continue
            m = re.match(r'^"(.*)"$', line)
            if m and current:
                current[1] += unescape_po(m.group(1))
                continue
            problems.add(f"{path}:{number}", f"cannot read this line: {line}")
    finish()
    for key, (_, number) in entries.items():
        if "__" in key or re.search(r"\s", key):
            problems.add(f"{path}:{number}",
                         f"key '{key}' has blanks or a double underscore (layouts map '__' to '_')")
    return entries


class Node:
    def __init__(self, tag, attrs, line):
        self.tag = tag
        self.attrs = attrs
        self.line = line
        self.children = []
        self.text = ""


def read_xml(path, problems):
    root_holder = []
    stack = []
    parser = xml.parsers.expat.ParserCreate()

    def start(tag, attrs):
        tag = tag.split("}")[-1]
        node = Node(tag, attrs, parser.CurrentLineNumber)
        if stack:
            stack[-1].children.append(node)
        else:
            root_holder.append(node)
        stack.append(node)

    def end(tag):
        stack.pop()

    def chars(data):
        if stack:
            stack[-1].text += data

    parser.StartElementHandler = start
    parser.EndElementHandler = end
    parser.CharacterDataHandler = chars
    try:
        with open(path, "rb") as f:
            parser.ParseFile(f)
    except xml.parsers.expat.ExpatError as e:
        problems.add(f"{path}:{e.lineno}", f"not well-formed XML: {e}")
        return None
    return root_holder[0] if root_holder else None


def walk(node):
    yield node
    for child in node.children:
        yield from walk(child)


def read_layouts(layouts, catalogs, problems, used):
    """Checks layout texts; returns {object name: set(control names)}."""
    objects = {}
    for path, set_name in layouts:
        root = read_xml(path, problems)
        if root is None:
            continue
        keys = catalogs.get(set_name)
        if keys is None:
            problems.add(path, f"unknown catalogue set '{set_name}'")
            keys = {}
        for top in root.children:
            if top.tag not in ("object", "object_ref"):
                continue
            name = top.attrs.get("name", "")
            if not name:
                problems.add(f"{path}:{top.line}", "top-level object without a name")
                continue
            controls = objects.setdefault(name, set())
            for node in walk(top):
                if node is not top and node.tag == "object" and "name" in node.attrs:
                    control = node.attrs["name"]
                    if control in controls:
                        problems.add(f"{path}:{node.line}",
                                     f"control '{control}' appears twice in '{name}'")
                    controls.add(control)
                if node.tag in TEXT_ELEMENTS:
                    text = node.text.strip()
                    if not text:
                        continue
                    if text in keys:
                        used.add((set_name, text))
                    else:
                        problems.add(f"{path}:{node.line}",
                                     f"<{node.tag}> '{text}' is not a key of the '{set_name}' "
                                     "catalogue (layouts hold keys, never visible text)")
    return objects


def read_allow_list(path, problems):
    entries = []
    with open(path, encoding="utf-8") as f:
        for number, raw in enumerate(f, 1):
            line = raw.rstrip("\n")
            if not line.strip() or line.lstrip().startswith("#"):
                continue
            pattern, _, comment = line.partition("#")
            pattern = pattern.strip()
            if not comment.strip():
                problems.add(f"{path}:{number}", f"entry '{pattern}' needs a comment saying who builds it")
            set_name, _, key_pattern = pattern.rpartition(":")
            entries.append((set_name or None, key_pattern, number))
    return entries


def allow_matches(entry, set_name, key):
    entry_set, pattern, _ = entry
    if entry_set and entry_set != set_name:
        return False
    if pattern.endswith("*"):
        return key.startswith(pattern[:-1])
    return key == pattern


def strip_comments(text):
    """C++ text with comments blanked out (line breaks kept, literals intact)."""
    out = []
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if c in "\"'":
            j = i + 1
            while j < n and text[j] != c and text[j] != "\n":
                j += 2 if text[j] == "\\" else 1
            out.append(text[i:j + 1])
            i = j + 1
        elif text.startswith("//", i):
            j = text.find("\n", i)
            j = n if j < 0 else j
            i = j
        elif text.startswith("/*", i):
            j = text.find("*/", i + 2)
            j = n if j < 0 else j + 2
            out.append("\n" * text.count("\n", i, j))
            i = j
        else:
            out.append(c)
            i += 1
    return "".join(out)


def source_files(roots):
    for root in roots:
        for dirpath, dirnames, filenames in os.walk(root):
            dirnames[:] = sorted(d for d in dirnames if not d.startswith("."))
            for name in sorted(filenames):
                if name.endswith((".cpp", ".h", ".hpp", ".cc")):
                    yield os.path.join(dirpath, name)


def check_sources(roots, catalogs, objects, problems, used):
    all_keys = {}
    for set_name, keys in catalogs.items():
        for key in keys:
            all_keys.setdefault(key, set()).add(set_name)
    key_prefixes = set()
    for key in all_keys:
        parts = key.split(".")
        for i in range(1, len(parts)):
            key_prefixes.add(".".join(parts[:i]))

    files = list(source_files(roots))
    texts = {}
    for path in files:
        with open(path, encoding="utf-8", errors="replace") as f:
            texts[path] = strip_comments(f.read())

    dialog_names_by_stem = {}
    for path, text in texts.items():
        stem = os.path.splitext(os.path.basename(path))[0]
        for m in DIALOG_NAME.finditer(text):
            dialog_names_by_stem.setdefault(stem, set()).add(m.group(1))

    for path, text in texts.items():
        for m in WIDE_LITERAL.finditer(text):
            literal = m.group(1)
            for set_name in all_keys.get(literal, ()):
                used.add((set_name, literal))
            if KEY_LIKE.match(literal) and literal not in all_keys and literal not in objects \
                    and literal not in key_prefixes:
                problems.add(f"{path}:{line_of(text, m.start())}",
                             f"'{literal}' looks like a message key but is in no catalogue "
                             "and names no layout")
        for pattern, set_name in CALLS:
            for m in pattern.finditer(text):
                key = m.group(1)
                where = f"{path}:{line_of(text, m.start())}"
                if set_name is None:
                    if key not in all_keys:
                        problems.add(where, f"key '{key}' is in no catalogue")
                elif key not in catalogs.get(set_name, {}):
                    problems.add(where, f"key '{key}' is not in the '{set_name}' catalogue")

        stem = os.path.splitext(os.path.basename(path))[0]
        dialogs = set(m.group(1) for m in DIALOG_NAME.finditer(text))
        dialogs |= dialog_names_by_stem.get(stem, set())
        for pattern in CONTROL_LOOKUPS:
            for m in pattern.finditer(text):
                control = m.group(1)
                if control.startswith("wxID_"):
                    continue
                where = f"{path}:{line_of(text, m.start())}"
                if not dialogs:
                    problems.add(where, f"control '{control}' is looked up, but the file sets no "
                                        "dialog name (set_dialog_name(L\"...\"))")
                    continue
                missing = [d for d in sorted(dialogs) if d not in objects]
                for d in missing:
                    problems.add(where, f"dialog '{d}' has no layout")
                if not any(control in objects.get(d, ()) for d in dialogs):
                    problems.add(where, f"control '{control}' is not in the layout of "
                                        + " or ".join(f"'{d}'" for d in sorted(dialogs)))


def main(argv):
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("--catalog", action="append", default=[], metavar="SET=FILE.po")
    ap.add_argument("--layout", action="append", default=[], metavar="FILE.xrc=SET")
    ap.add_argument("--sources", action="append", default=[], metavar="DIR")
    ap.add_argument("--allow", required=True, metavar="FILE")
    ap.add_argument("--stamp", metavar="FILE", help="written when the check passes")
    args = ap.parse_args(argv)

    problems = Problems()
    catalogs = {}
    po_lines = {}
    for item in args.catalog:
        set_name, _, path = item.partition("=")
        entries = read_po(path, problems)
        catalogs[set_name] = {k: v[0] for k, v in entries.items()}
        po_lines[set_name] = (path, {k: v[1] for k, v in entries.items()})

    used = set()
    layouts = [tuple(item.rsplit("=", 1)) for item in args.layout]
    objects = read_layouts(layouts, catalogs, problems, used)
    check_sources(args.sources, catalogs, objects, problems, used)

    allow = read_allow_list(args.allow, problems)
    for entry in allow:
        if not any(allow_matches(entry, s, k) for s, keys in catalogs.items() for k in keys):
            problems.add(f"{args.allow}:{entry[2]}", f"entry '{entry[1]}' matches no catalogue key")
    for set_name, keys in catalogs.items():
        path, lines = po_lines[set_name]
        for key in keys:
            if (set_name, key) in used:
                continue
            if any(allow_matches(e, set_name, key) for e in allow):
                continue
            problems.add(f"{path}:{lines[key]}",
                         f"key '{key}' is used nowhere (not in code, not in a layout, "
                         "not in the allow-list)")

    if problems.items:
        for p in problems.items:
            print(p, file=sys.stderr)
        print(f"resource check: {len(problems.items)} problem(s)", file=sys.stderr)
        return 1
    if args.stamp:
        with open(args.stamp, "w", encoding="utf-8") as f:
            f.write("ok\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
