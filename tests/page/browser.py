"""A headless Chromium, driven by its DevTools protocol with the standard library alone."""

import base64
import json
import os
import shutil
import socket
import struct
import subprocess
import tempfile
import time
import urllib.request


class Tab:
    """One tab. `width` and `height` are the page's, in pixels. `free`: the test may add scripts to it."""

    def __init__(self, tab_address, address, width, height, free):
        self.sequence = 0
        self.errors = []  # of the page's scripts
        self.socket = connect(tab_address)
        self.call("Runtime.enable")
        self.call("Page.enable")
        self.size(width, height)
        if free:
            self.call("Page.setBypassCSP", enabled=True)
        self.call("Page.navigate", url=address)
        self.wait(f"location.href === {json.dumps(address)} && document.readyState === 'complete'")

    def size(self, width, height, touch=False):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=touch)

    def call(self, method, **params):
        self.sequence += 1
        send_text(self.socket, json.dumps({"id": self.sequence, "method": method, "params": params}))
        while True:
            message = json.loads(receive_text(self.socket))
            if message.get("method") == "Runtime.exceptionThrown":
                details = message["params"]["exceptionDetails"]
                self.errors.append(details.get("exception", {}).get("description", details["text"]))
            if message.get("id") == self.sequence:
                if "error" in message:
                    raise RuntimeError(f"{method}: {message['error']['message']}")
                return message["result"]

    def value(self, expression):
        """The value of an expression in the page; promises are waited for."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True,
                           awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def wait(self, expression, seconds=20):
        """Waits until an expression holds."""
        until = time.monotonic() + seconds
        while not self.value(f"!!({expression})"):
            if time.monotonic() > until:
                raise AssertionError(f"not within {seconds} s: {expression}\nThe page says:\n"
                                     f"{self.value('document.body?.innerText')}")
            time.sleep(0.05)

    def place(self, query):
        """The middle of an element."""
        return self.value(f"(() => {{ const b = document.querySelector({json.dumps(query)})"
                          ".getBoundingClientRect();"
                          "return [b.x + b.width / 2, b.y + b.height / 2]; })()")

    def mouse(self, kind, query):
        x, y = self.place(query)
        self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def click(self, query):
        self.mouse("mousePressed", query)
        self.mouse("mouseReleased", query)

    def touch(self, query):
        x, y = self.place(query)
        self.call("Input.dispatchTouchEvent", type="touchStart", touchPoints=[{"x": x, "y": y}])
        self.call("Input.dispatchTouchEvent", type="touchEnd", touchPoints=[])

    def key(self, kind, key):
        self.call("Input.dispatchKeyEvent", type=kind, key=key, text=key if kind == "keyDown" else "")

    def screenshot(self, path):
        picture = self.call("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(picture))


class Browser(Tab):
    """A browser of its own, with one tab, and more if `tab` is called."""

    def __init__(self, address, width=1366, height=768, free=False):
        self.profile = tempfile.mkdtemp(prefix="lilyhop-browser-")
        self.process = subprocess.Popen(
            ["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
             "--remote-debugging-port=0", f"--user-data-dir={self.profile}", "about:blank"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        try:
            super().__init__(self.tab_address(), address, width, height, free)
        except BaseException:  # __exit__ will not be called
            self.process.kill()
            shutil.rmtree(self.profile, ignore_errors=True)
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def port(self):
        return int(open(os.path.join(self.profile, "DevToolsActivePort")).readline())

    def tab_address(self):
        until = time.monotonic() + 60
        while time.monotonic() < until:
            try:
                tabs = json.load(urllib.request.urlopen(f"http://127.0.0.1:{self.port()}/json", timeout=10))
                return next(tab["webSocketDebuggerUrl"] for tab in tabs if tab["type"] == "page")
            except (OSError, ValueError, StopIteration):
                time.sleep(0.1)
        raise RuntimeError("chromium doesn't start")

    def tab(self, address, width=1366, height=768):
        """Another tab of the same browser."""
        new = urllib.request.Request(f"http://127.0.0.1:{self.port()}/json/new", method="PUT")
        with urllib.request.urlopen(new, timeout=10) as reply:
            tab_address = json.load(reply)["webSocketDebuggerUrl"]
        return Tab(tab_address, address, width, height, False)

    def close(self):
        try:
            self.call("Browser.close")
        except (OSError, RuntimeError):
            self.process.terminate()
        self.process.wait(timeout=20)
        shutil.rmtree(self.profile, ignore_errors=True)


# --- WebSocket ----------------------------------------------------------------------------------

def connect(address):
    host, _, path = address.removeprefix("ws://").partition("/")
    name, port = host.split(":")
    connection = socket.create_connection((name, int(port)), timeout=60)
    key = base64.b64encode(os.urandom(16)).decode()
    connection.sendall((f"GET /{path} HTTP/1.1\r\nHost: {host}\r\nUpgrade: websocket\r\n"
                        f"Connection: Upgrade\r\nSec-WebSocket-Key: {key}\r\n"
                        "Sec-WebSocket-Version: 13\r\n\r\n").encode())
    head = b""
    while not head.endswith(b"\r\n\r\n"):
        head += connection.recv(1)
    if b" 101 " not in head.split(b"\r\n")[0]:
        raise RuntimeError(head.decode())
    return connection


def send_text(connection, text):
    data, mask = text.encode(), os.urandom(4)
    size = (struct.pack(">B", 0x80 | len(data)) if len(data) < 126 else
            struct.pack(">BH", 0x80 | 126, len(data)) if len(data) < 65536 else
            struct.pack(">BQ", 0x80 | 127, len(data)))
    masked = bytes(byte ^ mask[i % 4] for i, byte in enumerate(data))
    connection.sendall(b"\x81" + size + mask + masked)


def receive_exactly(connection, count):
    data = b""
    while len(data) < count:
        part = connection.recv(count - len(data))
        if not part:
            raise OSError("chromium has gone")
        data += part
    return data


def receive_text(connection):
    text = b""
    while True:
        first, size = receive_exactly(connection, 2)
        if size == 126:
            size, = struct.unpack(">H", receive_exactly(connection, 2))
        elif size == 127:
            size, = struct.unpack(">Q", receive_exactly(connection, 8))
        data = receive_exactly(connection, size)
        if first & 0x0F in (0, 1):
            text += data
            if first & 0x80:
                return text.decode()
