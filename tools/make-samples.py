#!/usr/bin/env python3
"""Writes samples/: mail that shows what the reader does, and serves as manual tests.

The files are committed; run this again after changing it. Nothing in them is real mail.
"""

import base64
import pathlib
import quopri
import shutil
import struct
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent / "samples"


# Pictures, made here so that no file from elsewhere is needed.

def png(width, height, pixel):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def tiles(x, y):
    palette = ((38, 100, 190), (240, 170, 60), (70, 160, 110), (220, 90, 80))
    inside = (x % 40 > 3) and (y % 40 > 3)
    return palette[(x // 40 + y // 40 * 3) % 4] if inside else (250, 248, 242)


def gif(width, height, frames=1):
    """Two colours, uncompressed: a clear code before the dictionary grows keeps every code three bits wide."""
    def image(swap):
        codes, count = [4], 0
        for y in range(height):
            for x in range(width):
                if count == 2:
                    codes.append(4)
                    count = 0
                codes.append(((x // 8 + y // 8) % 2) ^ swap)
                count += 1
        codes.append(5)
        bits, filled, data = 0, 0, bytearray()
        for code in codes:
            bits |= code << filled
            filled += 3
            while filled >= 8:
                data.append(bits & 255)
                bits >>= 8
                filled -= 8
        if filled:
            data.append(bits & 255)
        blocks = b"".join(bytes([len(data[i:i + 255])]) + bytes(data[i:i + 255]) for i in range(0, len(data), 255))
        return b"," + struct.pack("<HHHHB", 0, 0, width, height, 0) + b"\x02" + blocks + b"\0"
    head = b"GIF89a" + struct.pack("<HHBBB", width, height, 0x81, 0, 0)
    return head + bytes((46, 90, 140, 235, 235, 225, 0, 0, 0, 0, 0, 0)) + b"".join(image(i % 2) for i in range(frames)) + b";"


class BitWriter:
    def __init__(self):
        self.bits, self.count, self.data = 0, 0, bytearray()

    def put(self, value, length):
        for place in range(length - 1, -1, -1):
            self.bits = self.bits << 1 | (value >> place & 1)
            self.count += 1
            if self.count == 8:
                self.data.append(self.bits)
                if self.bits == 0xFF:
                    self.data.append(0)
                self.bits, self.count = 0, 0

    def finish(self):
        while self.count:
            self.put(1, 1)
        return bytes(self.data)


def jpeg(blocks_wide, blocks_high):
    """A baseline greyscale JPEG of flat 8 by 8 blocks: only DC coefficients are coded."""
    lengths = (0, 1, 5, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0)
    symbols = tuple(range(12))
    codes, code, at = {}, 0, 0
    for size, number in enumerate(lengths, 1):
        for _ in range(number):
            codes[symbols[at]] = (code, size)
            code += 1
            at += 1
        code <<= 1
    out = b"\xff\xd8\xff\xe0" + struct.pack(">H5sBBBHHBB", 16, b"JFIF\0", 1, 1, 0, 1, 1, 0, 0)
    out += b"\xff\xdb" + struct.pack(">HB", 67, 0) + bytes([8] * 64)
    out += b"\xff\xc0" + struct.pack(">HBHHB", 11, 8, blocks_high * 8, blocks_wide * 8, 1) + bytes((1, 0x11, 0))
    out += b"\xff\xc4" + struct.pack(">HB", 19 + len(symbols), 0) + bytes(lengths) + bytes(symbols)
    out += b"\xff\xc4" + struct.pack(">HB", 20, 0x10) + bytes((1,) + (0,) * 15) + b"\0"
    out += b"\xff\xda" + struct.pack(">HB", 8, 1) + bytes((1, 0, 0, 63, 0))
    writer, last = BitWriter(), 0
    for y in range(blocks_high):
        for x in range(blocks_wide):
            value = (x * 255 // blocks_wide + y * 40) % 200 - 100
            difference, last = value - last, value
            size = abs(difference).bit_length()
            writer.put(*codes[size])
            if size:
                writer.put(difference if difference > 0 else difference + (1 << size) - 1, size)
            writer.put(0, 1)  # the only AC code: end of block
    return out + writer.finish() + b"\xff\xd9"


# Messages.

def word(text, charset):
    return "=?%s?B?%s?=" % (charset, base64.b64encode(text.encode(charset)).decode())


def b64(data):
    return base64.encodebytes(data)


def part(kind, body, **fields):
    lines = ["Content-Type: " + kind]
    for name, value in fields.items():
        lines.append(name.replace("_", "-") + ": " + value)
    return "\n".join(lines).encode() + b"\n\n" + body


def multipart(kind, boundary, *parts, extra=""):
    body = b"".join(b"--" + boundary.encode() + b"\n" + p + b"\n" for p in parts)
    return part('multipart/%s; boundary="%s"%s' % (kind, boundary, extra), body + b"--" + boundary.encode() + b"--\n")


def message(sender, subject, date, entity, to="Reader <reader@tessel.example>", extra=""):
    head = "From: %s\nTo: %s\nSubject: %s\n" % (sender, to, subject)
    if date:
        head += "Date: %s\n" % date
    head += "Message-ID: <%08x@tessel.example>\nMIME-Version: 1.0\n%s" % (zlib.crc32(subject.encode()), extra)
    return head.encode() + entity


def text(body, charset="utf-8", encoding="8bit"):
    data = body.encode(charset)
    if encoding == "quoted-printable":
        data = quopri.encodestring(data)
    elif encoding == "base64":
        data = b64(data)
    return part("text/plain; charset=" + charset, data, Content_Transfer_Encoding=encoding)


NEWSLETTER = """<html><head><title>The Harbour Letter</title>
<style type="text/css">
  body { background: #f4f1ea; color: #222222; font-family: Georgia, serif }
  .sheet { background-color: #ffffff; border: 1px solid #ddd8cc; padding: 24px }
  .kicker { color: #8a6d3b; font-size: 12px; letter-spacing: 1px }
  h1 { color: #1d3557; font-size: 28px; line-height: 1.2 }
  td.fact { background: #eef4fb; color: #1d3557; padding: 12px; text-align: center }
  .button { background: #2864be; color: #ffffff; padding: 10px 18px; border-radius: 6px }
  @media screen and (max-width: 600px) { .sheet { padding: 12px } h1 { font-size: 22px } }
  @media print { .sheet { display: none } }
  @import url(https://news.example/evil.css);
  a:hover { color: red }
</style></head>
<body bgcolor="#f4f1ea">
<table width="540" style="margin:0 auto" cellspacing="0" cellpadding="0" border="0"><tr><td class="sheet">
<p class="kicker">ISSUE 42 &middot; WINTER</p>
<h1>Letters from the harbour</h1>
<p>Dear reader,</p>
<p>The ferry is back in the water, the lighthouse has a <b>new lamp</b>, and the market moves
to the old <i>rope walk</i> until spring. What follows is all you need for the week.</p>
<table width="100%" cellspacing="8"><tr>
<td class="fact"><font size="5">4&deg;</font><br>sea</td>
<td class="fact"><font size="5">07:52</font><br>first ferry</td>
<td class="fact"><font size="5">18</font><br>stalls</td></tr></table>
<h2>What is on</h2>
<ul><li>Monday &ndash; boat building for beginners</li>
<li>Wednesday &ndash; choir, in the net loft</li>
<li>Saturday &ndash; market, <u>from eight</u></li></ul>
<blockquote style="border-left:3px solid #8a6d3b">&ldquo;One does not need the sea every day.
It is enough to know where it is.&rdquo;</blockquote>
<p><a class="button" href="https://harbour.example/issue/42?ref=mail&amp;x=1">Read the whole issue</a></p>
<img src="https://tracker.example/pixel.gif?id=reader" alt="(a picture that would have told the sender you read this)">
<p style="color:#999;font-size:11px">You get this letter because you asked for it.
<a href="mailto:leave@harbour.example?subject=Leave">Leave the list</a></p>
</td></tr></table></body></html>
"""

LINKS = """<p>Kept:</p><ul>
<li><a href="https://example.org/path?a=1&amp;b=2#part">https</a></li>
<li><a href="http://example.org/">http</a></li>
<li><a href="mailto:someone@example.org?subject=Hello">mailto</a></li>
<li><a href="tel:+49301234567">tel</a></li>
<li><a href="sms:+49301234567">sms</a></li></ul>
<p>Refused, and therefore no links:</p><ul>
<li><a href="javascript:alert(1)">javascript</a></li>
<li><a href="data:text/html,x">data</a></li>
<li><a href="file:///etc/passwd">file</a></li>
<li><a href="https://bank.example@evil.example/">user name in front of another host</a></li>
<li><a href="https:///nowhere">no host</a></li>
<li><a href="/relative">relative</a></li>
<li><a href="ftp://example.org/">ftp</a></li></ul>
<p onclick="alert(1)">A handler that never runs. <script>document.title = "never"</script></p>
<form action="https://evil.example/"><input name="password"><button>A form without a form</button></form>
<iframe src="https://evil.example/"></iframe><object data="x"></object><svg onload="alert(1)"><circle r="9"/></svg>
"""

LONG_LINES = """This message was written by a program that ends its lines with a blank and lets the reader join \
them, so its paragraphs are single long lines. They wrap at the width of the window, whatever that is, \
and nothing is cut off at the right.

> A quotation stands behind an angle bracket, and may itself be a long line that has to wrap somewhere \
near the edge of the pane without losing its mark.

    Four blanks in front stay where they are.

-- 
The signature
"""


def samples():
    picture, photo, mark = png(240, 120, tiles), jpeg(30, 15), gif(96, 32)
    inner = message("Ines <ines@tessel.example>", "The letter inside", "Sat, 6 Jan 2024 18:00:00 +0100",
                    text("I am a message inside a message.\n"))
    images = multipart(
        "related", "pictures",
        part("text/html; charset=utf-8",
             b'<h2>Pictures that came with the letter</h2><p><img src="cid:tiles@tessel" alt="Coloured tiles" '
             b'width="240"></p><p><img src="cid:photo@tessel" alt="Grey waves"></p><p><img src="cid:mark@tessel" '
             b'alt="A checkered mark"></p><p>This one moves, so it stays out: <img src="cid:moving@tessel" '
             b'alt="(an animated picture)"></p>\n'),
        part('image/png; name="tiles.png"', b64(picture), Content_Transfer_Encoding="base64",
             Content_ID="<tiles@tessel>", Content_Disposition="inline"),
        part('image/jpeg; name="photo.jpg"', b64(photo), Content_Transfer_Encoding="base64",
             Content_ID="<photo@tessel>", Content_Disposition="inline"),
        part('image/gif; name="mark.gif"', b64(mark), Content_Transfer_Encoding="base64",
             Content_ID="<mark@tessel>", Content_Disposition="inline"),
        part('image/gif; name="moving.gif"', b64(gif(32, 32, 3)), Content_Transfer_Encoding="base64",
             Content_ID="<moving@tessel>", Content_Disposition="inline"))
    nested = multipart(
        "mixed", "outer",
        multipart("alternative", "middle",
                  text("The plain words of the report.\n"),
                  multipart("related", "inner",
                            part("text/html; charset=utf-8",
                                 b"<h2>The report</h2><p>The <b>rich</b> words of the report, with a picture inside "
                                 b'three multiparts:</p><p><img src="cid:deep@tessel" alt="tiles"></p>\n'),
                            part("image/png", b64(picture), Content_Transfer_Encoding="base64",
                                 Content_ID="<deep@tessel>"))),
        part('application/pdf; name="report.pdf"', b64(b"%PDF-1.4\n% an empty report\n"),
             Content_Transfer_Encoding="base64", Content_Disposition='attachment; filename="report.pdf"'),
        text("A remark below the attachment.\n"))
    names = multipart(
        "mixed", "names",
        text("Five files whose names were written in five ways.\n"),
        part("application/octet-stream", b64(b"1"), Content_Transfer_Encoding="base64",
             Content_Disposition="attachment; filename*=utf-8''na%C3%AFve%20plan.txt"),
        part("application/octet-stream", b64(b"2"), Content_Transfer_Encoding="base64",
             Content_Disposition="attachment;\n filename*0*=utf-8''%E5%AD%A3%E5%BA%A6;\n filename*1*=%E6%8A%A5;\n"
                                 " filename*2=\"-2024.txt\""),
        part('application/octet-stream; name="%s"' % word("Übersicht.csv", "iso-8859-1"), b64(b"3"),
             Content_Transfer_Encoding="base64"),
        part("application/octet-stream", b64(b"4"), Content_Transfer_Encoding="base64",
             Content_Disposition='attachment; filename="../../etc/pass:wd"'),
        part("image/png", b"A", Content_Transfer_Encoding="base64",
             Content_Disposition="attachment"))
    calendar = multipart(
        "mixed", "calendar",
        text("The meeting is attached.\n"),
        part("text/calendar; charset=utf-8; method=REQUEST",
             b"BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nUID:1@tessel.example\nDTSTART:20240110T090000Z\n"
             b"SUMMARY:Tide tables\nEND:VEVENT\nEND:VCALENDAR\n"))
    attached = multipart(
        "mixed", "attached", text("The letter you asked for is attached as it came.\n"),
        part("message/rfc822", inner))
    rtl = part("text/html; charset=utf-8",
               '<div dir="rtl"><h2>مرحبا بكم</h2><p>هذه رسالة تُقرأ من اليمين إلى اليسار، وفيها رقم 2024 واسم '
               'Tessel.</p></div><p dir="rtl">שלום, זוהי פסקה בעברית.</p><p>And one from left to right.</p>\n'.encode())
    broken = (b"From: broken@tessel.example (unbalanced\nSubject: =?utf-8?B?!!!?= =?no-such-charset?Q?caf=E9?=\n"
              b"this line is no header\nX-Bad Header: dropped\nDate: Someday +0100\n"
              b'Content-Type: multipart/mixed; boundary="never-closed"\n\n'
              b"preamble\n--never-closed\nContent-Type: text/plain; charset=utf-8\n\n"
              b"The boundary never closes, a byte is wrong here: \xff\xfe, and =3D stays as it is.\n"
              b"--never-closed\nContent-Type: text/html\n\n<p>An open <b>paragraph <table><tr><td>and a table nobody "
              b"closed, then a tag that never ends: <a href=\"https://example.org")
    yield message("Maren Holt <maren@tessel.example>", "Welcome to Tessel Mail", "Mon, 1 Jan 2024 09:15:30 +0100",
                  text("Welcome.\n\nThis archive shows what the reader does: plain letters, newsletters, pictures, many "
                       "scripts,\nattached messages, and mail that is broken or wants no good.\n\nNothing in it is "
                       "loaded from a network, and nothing in it runs.\n"))
    yield message("Long Lines <lines@tessel.example>", "Paragraphs as long lines", "Tue, 2 Jan 2024 09:15 -0530",
                  part("text/plain; charset=utf-8; format=flowed", LONG_LINES.encode()))
    yield message("The Harbour Letter <news@harbour.example>", "Letters from the harbour, issue 42",
                  "Wed, 3 Jan 2024 07:00:00 +0000",
                  multipart("alternative", "letter", text("Letters from the harbour, as plain text.\n"),
                            part("text/html; charset=utf-8", quopri.encodestring(NEWSLETTER.encode()),
                                 Content_Transfer_Encoding="quoted-printable")))
    yield message("Pictures <pictures@tessel.example>", "Pictures inside the letter", "Thu, 4 Jan 2024 12:30:00 +0000",
                  images)
    yield message("Links <links@tessel.example>", "Links, kept and refused", "Fri, 5 Jan 2024 12:30:00 +0000",
                  part("text/html; charset=utf-8", LINKS.encode()))
    yield message("%s <zhang@tessel.example>" % word("张伟", "gb18030"), word("春节放假通知", "gb18030"),
                  "Sat, 6 Jan 2024 10:00:00 +0800",
                  text("各位同事：\n\n春节假期为二月九日至二月十七日，请提前安排工作。\n\n祝新春快乐！\n", "gb18030"))
    yield message("%s <lin@tessel.example>" % word("林小姐", "big5"), word("會議記錄", "big5"),
                  "Sun, 7 Jan 2024 10:00:00 +0800", text("您好，\n\n附上昨天會議的記錄，請查收。\n", "big5", "base64"))
    yield message("%s <tanaka@tessel.example>" % word("田中", "iso-2022-jp"), word("お知らせ", "iso-2022-jp"),
                  "Mon, 8 Jan 2024 10:00:00 +0900",
                  text("こんにちは。\n\n来週の予定をお知らせします。\n", "iso-2022-jp", "7bit"))
    yield message("%s <kim@tessel.example>" % word("김민수", "euc-kr"), word("회의 안내", "euc-kr"),
                  "Tue, 9 Jan 2024 10:00:00 +0900", text("안녕하세요.\n\n내일 오전에 회의가 있습니다.\n", "euc-kr"))
    yield message("%s <olga@tessel.example>" % word("Ольга", "koi8-r"), word("Расписание на январь", "koi8-r"),
                  "Wed, 10 Jan 2024 10:00:00 +0300", text("Добрый день!\n\nПосылаю расписание.\n", "koi8-r"))
    yield message("=?windows-1252?Q?Ren=E9e_Dupr=E9?= <renee@tessel.example>",
                  "=?windows-1252?Q?=84Gr=FC=DFe=93_=96_caf=E9_=80_5?=", "Thu, 11 Jan 2024 10:00:00 +0100",
                  text("Déjà vu: „quotes“ – dashes… and € 5.\n", "windows-1252", "quoted-printable"))
    yield message("Files <files@tessel.example>", "Attachments and their names", "Fri, 12 Jan 2024 10:00:00 +0000",
                  names)
    yield message("Report <report@tessel.example>", "Multiparts inside multiparts", "Sat, 13 Jan 2024 10:00:00 +0000",
                  nested)
    yield message("Forwarded <forward@tessel.example>", "A message in a message", "Sun, 14 Jan 2024 10:00:00 +0000",
                  attached)
    yield message("Calendar <calendar@tessel.example>", "Invitation: Tide tables", "Mon, 15 Jan 2024 10:00:00 +0000",
                  calendar)
    yield broken
    yield message("Undated <undated@tessel.example>", "A letter without a date", "", text("Nobody knows when.\n"))
    yield message("=?utf-8?B?%s?= <layla@tessel.example>" % base64.b64encode("ليلى".encode()).decode(),
                  "=?utf-8?B?%s?=" % base64.b64encode("من اليمين إلى اليسار".encode()).decode(),
                  "Tue, 16 Jan 2024 10:00:00 +0200", rtl)


def quoted(data):
    """An archive marks body lines that look like an envelope."""
    return b"\n".join(b">" + line if line.startswith(b"From ") else line for line in data.split(b"\n"))


def main():
    ROOT.mkdir(exist_ok=True)
    messages = list(samples())
    archive = b"".join(b"From sample@tessel.example Mon Jan  1 00:00:00 2024\n" + quoted(m) + b"\n\n" for m in messages)
    (ROOT / "Samples.mbox").write_bytes(archive)
    (ROOT / "Letter.eml").write_bytes(messages[0])
    (ROOT / "Newsletter.mime").write_bytes(messages[2])
    (ROOT / "Notice.emlx").write_bytes(str(len(messages[5])).encode() + b"\n" + messages[5] +
                                       b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"></plist>\n')
    maildir = ROOT / "Maildir"
    shutil.rmtree(maildir, ignore_errors=True)
    for folder, chosen in (("cur", (0, 3, 9)), ("new", (13, 16))):
        (maildir / folder).mkdir(parents=True)
        for number in chosen:
            suffix = ":2,S" if folder == "cur" else ""
            (maildir / folder / ("17040672%02d.%d.tessel%s" % (number, number, suffix))).write_bytes(messages[number])


if __name__ == "__main__":
    main()
