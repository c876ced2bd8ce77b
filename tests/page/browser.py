"""A headless Chromium, driven by its DevTools protocol with the standard library alone."""

import base64
import collections
import json
import shutil
import socket
import subprocess
import tempfile
import time


class Pipe:
    """The browser's end of the protocol: JSON texts with a NUL behind each, for all of its tabs."""

    def __init__(self, connection):
        self.connection = connection
        self.connection.settimeout(60)
        self.sequence = 0
        self.pending = b""
        self.errors = collections.defaultdict(list)  # of each session's scripts

    def receive(self):
        while b"\0" not in self.pending:
            part = self.connection.recv(1 << 20)
            if not part:
                raise OSError("chromium has gone")
            self.pending += part
        text, _, self.pending = self.pending.partition(b"\0")
        return json.loads(text)

    def call(self, method, session=None, **params):
        self.sequence += 1
        order = {"id": self.sequence, "method": method, "params": params}
        if session:
            order["sessionId"] = session
        self.connection.sendall(json.dumps(order).encode() + b"\0")
        while True:
            message = self.receive()
            if message.get("method") == "Runtime.exceptionThrown":
                details = message["params"]["exceptionDetails"]
                self.errors[message["sessionId"]].append(
                    details.get("exception", {}).get("description", details["text"]))
            if message.get("id") == self.sequence:
                if "error" in message:
                    raise RuntimeError(f"{method}: {message['error']['message']}")
                return message["result"]


class Tab:
    """One tab. `width` and `height` are the page's, in pixels. `free`: the test may add scripts to it."""

    def __init__(self, pipe, address, width, height, free):
        self.pipe = pipe
        target = pipe.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = pipe.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        self.errors = pipe.errors[self.session]
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
        return self.pipe.call(method, self.session, **params)

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
        near, far = socket.socketpair()
        with far:  # it reads file 3 and writes file 4
            self.process = subprocess.Popen(
                ["bash", "-c", f'exec "$0" "$@" 3<&{far.fileno()} 4>&{far.fileno()}',
                 "chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
                 "--remote-debugging-pipe", f"--user-data-dir={self.profile}", "about:blank"],
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, pass_fds=[far.fileno()],
                start_new_session=True)
        try:
            super().__init__(Pipe(near), address, width, height, free)
        except BaseException:  # __exit__ will not be called
            self.process.kill()
            shutil.rmtree(self.profile, ignore_errors=True)
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def tab(self, address, width=1366, height=768):
        """Another tab of the same browser."""
        return Tab(self.pipe, address, width, height, False)

    def close(self):
        try:
            self.pipe.call("Browser.close")
        except (OSError, RuntimeError):
            self.process.terminate()
        self.process.wait(timeout=20)
        shutil.rmtree(self.profile, ignore_errors=True)
