"""A browser without a window, driven by its own protocol over a pair of pipes.

    with Browser() as browser:
        page = browser.open("sheet.html", width=768, scheme="dark")
        page.evaluate("document.title")

It needs one of the programs below and nothing of Python but its own library."""
import base64
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import tempfile

PROGRAMS = ("chromium-headless-shell", "chromium", "chromium-browser", "google-chrome")
# No sandbox: it cannot be set up in most containers, and the pages are our own.
OPTIONS = ("--headless", "--no-sandbox", "--hide-scrollbars", "--disable-gpu", "--no-first-run",
           "--remote-debugging-pipe", "--force-color-profile=srgb")


class BrowserError(Exception):
    pass


class Browser:
    def __init__(self):
        program = next(filter(None, map(shutil.which, PROGRAMS)), None)
        if program is None:
            raise BrowserError("there is no browser: " + ", ".join(PROGRAMS))
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        command_out, self.commands = os.pipe()
        self.answers, answer_in = os.pipe()
        # The browser reads commands from descriptor 3 and writes answers to 4.
        self.process = subprocess.Popen(
            ["sh", "-c", f'exec 3<&{command_out} 4>&{answer_in} "$@"', "sh", program, *OPTIONS,
             "--user-data-dir=" + self.folder.name],
            pass_fds=(command_out, answer_in), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env={**os.environ, "HOME": self.folder.name})
        os.close(command_out)
        os.close(answer_in)
        self.buffer = b""
        self.numbers = itertools.count(1)
        self.events = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        os.close(self.commands)
        os.close(self.answers)
        self.folder.cleanup()

    def _read(self):
        while b"\0" not in self.buffer:
            part = os.read(self.answers, 1 << 20)
            if not part:
                raise BrowserError("the browser has ended")
            self.buffer += part
        message, _, self.buffer = self.buffer.partition(b"\0")
        return json.loads(message)

    def call(self, method, session=None, **parameters):
        number = next(self.numbers)
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.commands, data):]
        while True:
            answer = self._read()
            if answer.get("id") == number:
                if "error" in answer:
                    raise BrowserError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def wait(self, session, method):
        """The first event of this name since the last look; those before it stay in events."""
        while True:
            for event in self.events:
                if event.get("method") == method and event.get("sessionId") == session:
                    return event
            self.events.append(self._read())

    def open(self, path, width=1024, height=800, scheme="light", scale=1):
        """A page of its own, loaded."""
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        page = Page(self, session, target)
        for domain in ("Page", "Network", "Runtime", "Log"):
            page.call(domain + ".enable")
        page.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        page.resize(width, height, scale)
        self.events.clear()
        page.address = pathlib.Path(path).resolve().as_uri()
        page.call("Page.navigate", url=page.address)
        self.wait(session, "Page.loadEventFired")
        return page


class Page:
    def __init__(self, browser, session, target):
        self.browser = browser
        self.session = session
        self.target = target
        self.address = ""
        self.size = None

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def resize(self, width, height, scale=1):
        self.size = (width, height, scale)
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale,
                  mobile=False)

    def evaluate(self, expression):
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise BrowserError(str(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def whole(self):
        """Makes the window as high as the page, so that every place of it can be asked for."""
        width, _, scale = self.size
        self.resize(width, self.evaluate("document.documentElement.scrollHeight"), scale)

    def requests(self):
        """The addresses that the page asked for, but for its own and what it brings itself."""
        asked = [event["params"]["request"]["url"] for event in self.browser.events
                 if event.get("method") == "Network.requestWillBeSent" and event.get("sessionId") == self.session]
        return [url for url in asked if url != self.address and not url.startswith("data:")]

    def messages(self):
        """What the page or the browser wrote to the console."""
        said = []
        for event in self.browser.events:
            if event.get("sessionId") == self.session and event.get("method") in (
                    "Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded"):
                said.append(json.dumps(event["params"]))
        return said

    def press(self, key):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, code=key,
                      windowsVirtualKeyCode={"Tab": 9, "Enter": 13}[key])

    def picture(self):
        return base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"])

    def print(self):
        """The page on paper, as PDF."""
        return base64.b64decode(self.call("Page.printToPDF", preferCSSPageSize=True, printBackground=True)["data"])

    def tree(self):
        """What a screen reader is told: (role, name) of every node that is not passed over."""
        nodes = self.call("Accessibility.getFullAXTree")["nodes"]
        return [(node.get("role", {}).get("value", ""), node.get("name", {}).get("value", ""))
                for node in nodes if not node.get("ignored")]

    def close(self):
        self.browser.call("Target.closeTarget", targetId=self.target)
