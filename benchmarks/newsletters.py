"""Writes two newsletters of 84 KB into a folder, as messages of one archive and as the pages they become, for
scripts/bench-window.sh. Arguments: the probe, the folder."""

import json
import subprocess
import sys

probe, folder = sys.argv[1:]


def newsletter(colour, letter):
    rows = []
    for at in range(180):
        shade = 200 + at % 50
        rows.append(
            f'<tr><td style="padding:8px 16px;background-color:rgb({shade},{shade},255);border-bottom:1px solid #ccd">'
            f'<p style="margin:0;font-family:Georgia,serif;font-size:15px;line-height:1.5;color:#223">'
            f'<b>{letter}{at}.</b> The tide turns at noon, and with it the boats, the gulls and the talk of the quay; '
            f'<a href="https://news.tessel.example/{letter}/{at}?from=letter" style="color:#06c">read on</a> '
            f'about what the harbour master said to the ferry.</p></td></tr>')
    return (f'<html><head><style>table{{border-collapse:collapse}} .top{{background-color:{colour}}}</style></head><body>'
            f'<table width="600" align="center"><tr><td class="top" style="background-color:{colour};height:120px">'
            f'&nbsp;</td></tr>{"".join(rows)}</table></body></html>')


pages = [newsletter("#12a94b", "a"), newsletter("#a9124b", "b")]
requests = "".join(json.dumps({"op": "render", "html": page}) + "\n" for page in pages)
rendered = [json.loads(line)["ok"] for line in
            subprocess.run([probe], input=requests, text=True, capture_output=True, check=True).stdout.splitlines()]
requests = "".join(json.dumps({"op": "page", "body": one["body"], "stylesheet": one["stylesheet"], "dark": False, "scale": 1,
                               "backgroundRGB": 0xFFFFFF}) + "\n" for one in rendered)
whole = [json.loads(line)["ok"] for line in
         subprocess.run([probe], input=requests, text=True, capture_output=True, check=True).stdout.splitlines()]
archive = ""
for at, (page, shown) in enumerate(zip(pages, whole)):
    archive += (f"From news@tessel.example Mon Jan  1 10:00:00 2024\nFrom: News <news@tessel.example>\nSubject: Letter {at}\n"
                f"Date: {20 - at} Jan 2024 10:00:00 +0000\nMIME-Version: 1.0\nContent-Type: text/html; charset=utf-8\n\n{page}\n\n")
    with open(f"{folder}/{at}.html", "w") as file:
        file.write(shown)
    for name in ("body", "stylesheet"):
        with open(f"{folder}/{at}.{'css' if name == 'stylesheet' else name}", "w") as file:
            file.write(rendered[at][name])
with open(f"{folder}/newsletters.mbox", "w") as file:
    file.write(archive)
