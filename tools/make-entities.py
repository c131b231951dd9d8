#!/usr/bin/env python3
"""Writes MailCore/Rendering/HTMLEntities.inc: the named character references of the WHATWG HTML standard whose
names end in a semicolon, sorted by name, one {name, UTF-8 text} pair a line.

    tools/make-entities.py > MailCore/Rendering/HTMLEntities.inc

The table is the one in Python's own library (html.entities.html5).
"""

from html.entities import html5


def literal(text):
    """`text` as C++ string literals; an octal escape ends after three digits, whatever follows."""
    return '"' + "".join("\\%03o" % byte for byte in text.encode()) + '"'


def main():
    named = {name[:-1]: text for name, text in html5.items() if name.endswith(";")}
    assert len(named) == 2125, len(named)
    assert sum(len(text) == 2 for text in named.values()) == 93
    assert all(1 <= len(text) <= 2 for text in named.values())
    print("// Made by tools/make-entities.py from the WHATWG table of named character references.")
    for name in sorted(named):
        points = " ".join("U+%04X" % ord(character) for character in named[name])
        print('{"%s", %s}, // %s' % (name, literal(named[name]), points))


if __name__ == "__main__":
    main()
