"""Makes mail for scenarios: letters, archives of any length, and letters as odd as those in the wild."""

import base64
from email.utils import format_datetime
from datetime import datetime, timedelta, timezone

FIRST_DAY = datetime(2024, 1, 1, 9, 0, tzinfo=timezone.utc)
BLUE, GREEN = (0x12, 0x34, 0xE6), (0x08, 0xA0, 0x46)


def letter(subject="Tide tables", sender="Ada Linden <ada@mail.example>", body="The tide turns at noon.\n", day=0,
           type="text/plain; charset=utf-8", headers=()):
    head = [f"From: {sender}", "To: Reader <reader@mail.example>", f"Subject: {subject}",
            f"Date: {format_datetime(FIRST_DAY + timedelta(days=day))}", "MIME-Version: 1.0", f"Content-Type: {type}", *headers]
    return "\n".join(head).encode() + b"\n\n" + (body.encode() if isinstance(body, str) else body)


def html(body, **fields):
    return letter(body=f"<html><body>{body}</body></html>", type="text/html; charset=utf-8", **fields)


def link(address, colour=BLUE, **fields):
    """A letter whose only content is a link as large as the pane, to be found by its colour."""
    tone = "#%02x%02x%02x" % colour
    return html(f'<a href="{address}" style="display:block;background-color:{tone};color:{tone};padding:120px 0">link</a>',
                **fields)


def attached(name, content, type="application/octet-stream", **fields):
    return multipart([("text/plain", b"See the file.", ()),
                      (type, base64.encodebytes(content),
                       (f'Content-Disposition: attachment; filename="{name}"', "Content-Transfer-Encoding: base64"))],
                     **fields)


def carrying(message, **fields):
    return multipart([("text/plain", b"A letter in a letter.", ()), ("message/rfc822", message, ())], **fields)


def multipart(parts, **fields):
    body = b""
    for type, content, headers in parts:
        body += b"--edge\n" + "\n".join([f"Content-Type: {type}", *headers]).encode() + b"\n\n" + content + b"\n"
    return letter(body=body + b"--edge--\n", type='multipart/mixed; boundary="edge"', **fields)


def mbox(path, count, subject="Message", body="A line.\n"):
    """An archive of `count` letters, the oldest first."""
    with open(path, "wb") as file:
        for number in range(count):
            file.write(b"From ada@mail.example Mon Jan  1 09:00:00 2024\n"
                       + letter(f"{subject} {number}", body=body, day=number % 9000) + b"\n")
    return path


def maildir(path, count):
    for part in ("cur", "new", "tmp"):
        (path / part).mkdir(parents=True)
    for number in range(count):
        (path / "cur" / f"{1704067200 + number}.{number}.mail:2,S").write_bytes(letter(f"Kept {number}", day=number))
    return path


def odd():
    """Fifty letters as they come: names of files and bytes."""
    charsets = ["utf-8", "iso-8859-1", "iso-8859-15", "windows-1251", "koi8-r", "gb2312", "gb18030", "big5", "shift_jis",
                "euc-jp", "iso-2022-jp", "euc-kr", "ks_c_5601-1987", "windows-1256", "utf-16", "utf-7", "x-unknown", "us-ascii"]
    for charset in charsets:
        yield f"charset-{charset}.eml", letter(f"In {charset}", body=bytes(range(32, 256)) * 3, type=f"text/plain; charset={charset}")
    for encoding in ("base64", "quoted-printable", "8bit", "binary", "uuencode", "nonsense"):
        yield f"encoding-{encoding}.eml", letter(f"As {encoding}", body="=E4=B8=AD aGVsbG8= =ZZ\n" * 5,
                                                 headers=[f"Content-Transfer-Encoding: {encoding}"])
    nested = letter("Innermost")
    for depth in range(12):
        nested = carrying(nested, subject=f"Depth {depth}")
        if depth % 3 == 2:
            yield f"nested-{depth}.eml", nested
    for number, body in enumerate(["<table><tr><td>x" * 300, "<p>" + "&amp;" * 2000, "<script>alert(1)</script>after",
                                   '<img src="http://remote.example/x.png">', "<style>p{color:red", "<!-- never closed",
                                   "<div style='position:fixed;width:9999px'>wide</div>", "<a href='javascript:x'>x</a>",
                                   "", "\0\0<b>nul</b>"]):
        yield f"html-{number}.eml", html(body, subject=f"Markup {number}")
    yield "no-headers.eml", b"\n\nOnly a body, and nothing before it.\n"
    yield "no-body.eml", b"From: a@b.example\nSubject: Nothing follows\n"
    yield "long-subject.eml", letter("word " * 3000)
    yield "long-word.eml", letter("x" * 20000)
    yield "bidi.eml", letter("\u202egnp.exe\u202c and \u2067more", sender="\u202eliam <a@b.example>")
    yield "control.eml", letter("Bell \x07 and tab \t", body="a\x00b\x07c\x1b[31m\n")
    yield "no-boundary.eml", letter("No boundary", type="multipart/mixed", body="--x\n\ntext\n--x--\n")
    yield "open-boundary.eml", multipart([("text/plain", b"one", ())], subject="Open")[:-12]
    yield "many-parts.eml", multipart([("text/plain", b"part %d" % n, ()) for n in range(90)], subject="Many parts")
    yield "empty-file.eml", attached("empty.bin", b"", subject="An empty file")
    yield "strange-name.eml", attached("../../\u4e2d \t.pdf", b"%PDF", subject="A strange name")
    yield "winmail.eml", attached("winmail.dat", b"\x78\x9f\x3e\x22" + bytes(64), "application/ms-tnef", subject="Wrapped")
