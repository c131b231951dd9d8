"""Nothing leaves: a message that reaches out in every known way is shown, pointed at, clicked and dragged, while a server
on this machine counts who comes; and the system refuses the network to every process of the program."""

import socket
import threading
import time

import mail
from desktop import Picture, descendants, expect, wait
from driver import main, scenario

# Everything in a message that a reader has been made to load, with the server's address in the place of {}.
WAYS = """
<base href="{}"><link rel=stylesheet href="{}1"><link rel=preload as=image href="{}2"><link rel=prefetch href="{}3">
<link rel=dns-prefetch href="{}"><link rel=preconnect href="{}"><link rel=icon href="{}4"><link rel=manifest href="{}5">
<link rel=modulepreload href="{}6"><meta http-equiv=refresh content="0;url={}7">
<meta http-equiv=Content-Security-Policy content="report-uri {}8; default-src 'none'">
<style>@import url({}9); @font-face {{ font-family: f; src: url({}10) }} body {{ background: url({}11); font-family: f;
cursor: url({}12), auto }} p::before {{ content: url({}13) }} li {{ list-style-image: url({}14) }}
p {{ border-image: url({}15) 1; mask: url({}16); filter: url({}17); shape-outside: url({}18); background: image-set("{}19" 1x) }}
a:hover {{ background-image: url({}20) }}</style>
<p style="background-image:url({}21)">text</p><ul><li>item</ul>
<img src="{}22"><img srcset="{}23 1x"><picture><source srcset="{}24"><img></picture><img lowsrc="{}25" dynsrc="{}26">
<img src="data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg'%3E%3Cimage href='{}27'/%3E%3C/svg%3E">
<body background="{}28"><table background="{}29"><tr><td background="{}30">cell</table>
<iframe src="{}31"></iframe><iframe srcdoc="&lt;img src={}32&gt;"></iframe><frameset><frame src="{}33"></frameset>
<object data="{}34"></object><embed src="{}35"><applet archive="{}36"></applet><portal src="{}37"></portal>
<video src="{}38" poster="{}39" autoplay></video><audio src="{}40" autoplay></audio><track src="{}41">
<svg><image href="{}42"/><use xlink:href="{}43#x"/><feImage href="{}44"/><script href="{}45"/><a xlink:href="{}46"><text y="20">svg</text></a>
</svg><math href="{}47"><mtext>math</mtext></math><input type=image src="{}48"><form action="{}49"><button autofocus>send</button></form>
<script src="{}50"></script><script>fetch("{}51"); new WebSocket("{}52".replace("http", "ws")); navigator.sendBeacon("{}53");
new Image().src = "{}54"; location = "{}55"</script><img src=x onerror="fetch('{}56')"><svg onload="fetch('{}57')"></svg>
<a ping="{}58" href="{}59" style="display:block;background-color:#1234e6;color:#1234e6;padding:60px 0">link</a>
<xml><x data="{}60"/></xml><bgsound src="{}61"><layer src="{}62"></layer><ilayer src="{}63"></ilayer><v:image src="{}64"/>
"""


class Server:
    """Counts who comes, to a port of this machine of its own."""

    def __init__(self):
        self.visits = 0
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.address = f"http://127.0.0.1:{self.socket.getsockname()[1]}/"
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            try:
                connection, _ = self.socket.accept()
            except OSError:
                return
            self.visits += 1
            connection.close()

    def close(self):
        self.socket.close()


@scenario(start=False, sandbox=True)
def nothing_leaves(app):
    server = Server()
    try:
        with socket.create_connection(server.socket.getsockname()):
            wait(lambda: server.visits == 1, "the server to count")
        (app.mail / "ways.eml").write_bytes(mail.html(WAYS.format(*[server.address] * WAYS.count("{}")),
                                                      subject="Ways out"))
        app.start(app.mail / "ways.eml")
        place = wait(lambda: Picture().middle_of(mail.BLUE), "the page")
        app.step("shown")
        app.xdotool("mousemove", *place)
        time.sleep(1)
        app.step("pointed at")
        app.click_at(*place)
        app.find("push button", app.text("copy_link"))
        app.keys("Escape")
        for word in (("mousemove", *place), ("mousedown", 1), ("mousemove_relative", "--", -40, 30),
                     ("mousemove_relative", "--", -360, 10), ("mouseup", 1)):
            app.xdotool(*word)
            time.sleep(0.2)
        time.sleep(1)
        app.keys("ctrl+shift+t")
        time.sleep(1)
        app.step("as plain text")
        expect(server.visits == 1, f"{server.visits - 1} connections reached the server")
    finally:
        server.close()


@scenario(start=False, sandbox=True)
def locked_by_the_system(app):
    (app.mail / "a.eml").write_bytes(mail.link("https://mail.example/"))
    app.start(app.mail / "a.eml")
    wait(lambda: Picture().middle_of(mail.BLUE), "the page")
    names = {}
    for pid, name in descendants(app.process.pid).items():
        with open(f"/proc/{pid}/status") as file:
            status = dict(line.split(":\t", 1) for line in file.read().splitlines() if ":\t" in line)
        names[name] = (status["Seccomp"], status["NoNewPrivs"])
    print("         ", names, flush=True)
    expect(any(name.startswith("WebKitWebProces") for name in names), "no process of the page")
    expect(any(name.startswith("WebKitNetworkPr") for name in names), "no network process")
    for name, status in names.items():
        expect(status == ("2", "1"), f"{name} is not kept off the network: {status}")
    app.ask_to("about")
    app.sees(app.text("no_network"))
    app.step("about", controls=False)  # which are the toolkit's
    app.keys("Escape")


main()
