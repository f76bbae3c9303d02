"""Chromium and Firefox, driven without a display. Both take the commands of WebDriver."""

import base64
import json
import pathlib
import shutil
import socket
import subprocess
import tempfile
import time
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"


def wait_for(condition, what):
    for _ in range(300):
        result = condition()
        if result:
            return result
        time.sleep(0.1)
    raise TimeoutError(what)


class Browser:
    """What both browsers do in the same way. Subclasses have command(name, arguments)."""

    def __init__(self, program):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.process = subprocess.Popen(program, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def open(self, url):
        self.command("Navigate", {"url": url})

    def script(self, text, *arguments):
        """The result of the body of a JavaScript function."""
        return self.command("ExecuteScript", {"script": text, "args": list(arguments)})["value"]

    def resize(self, width, height):
        self.command("SetWindowRect", {"width": width, "height": height})

    def find(self, selector):
        found = self.command("FindElement", {"using": "css selector", "value": selector})
        return found["value"][ELEMENT]

    def press(self, selector, keys):
        self.command("ElementSendKeys", {"id": self.find(selector), "text": keys})

    def screenshot(self, path, selector=None):
        arguments = {"id": self.find(selector)} if selector else {"full": False}
        path.write_bytes(base64.b64decode(self.command("TakeScreenshot", arguments)["value"]))

    def close(self):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


class Chromium(Browser):
    def __init__(self, *options):
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = free.getsockname()[1]
        super().__init__(["chromedriver", f"--port={port}"])
        self.url = f"http://127.0.0.1:{port}"
        wait_for(self.is_ready, "chromedriver")
        arguments = ["--headless=new", "--no-sandbox", "--hide-scrollbars", "--force-device-scale-factor=1",
                     f"--user-data-dir={self.folder}", *options]
        capabilities = {"browserName": "chrome", "goog:loggingPrefs": {"browser": "ALL"},
                        "goog:chromeOptions": {"binary": "/usr/bin/chromium", "args": arguments}}
        session = self.request("POST", "/session", {"capabilities": {"alwaysMatch": capabilities}})
        self.url += "/session/" + session["value"]["sessionId"]

    def is_ready(self):
        try:
            return self.request("GET", "/status")["value"]["ready"]
        except OSError:
            return False

    def request(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.url + path, data, {"Content-Type": "application/json"}, method=method)
        with urllib.request.urlopen(request, timeout=60) as answer:
            return json.load(answer)

    def command(self, name, arguments):
        element = arguments.get("id")
        if name == "TakeScreenshot":
            return self.request("GET", f"/element/{element}/screenshot" if element else "/screenshot")
        paths = {"Navigate": "/url", "ExecuteScript": "/execute/sync", "SetWindowRect": "/window/rect",
                 "FindElement": "/element", "ElementSendKeys": f"/element/{element}/value"}
        return self.request("POST", paths[name], arguments)

    def errors(self):
        """The messages on the console since the last call."""
        return [entry["message"] for entry in self.request("POST", "/se/log", {"type": "browser"})["value"]]

    def close(self):
        self.request("DELETE", "")
        super().close()

    @staticmethod
    def with_reduced_motion():
        return Chromium("--force-prefers-reduced-motion")


class Firefox(Browser):
    """Firefox has the commands of WebDriver on a socket, as lists [0, number, name, arguments] after their length."""

    def __init__(self, **preferences):
        profile = tempfile.mkdtemp()
        settings = {"marionette.port": 0, "app.update.enabled": False, "browser.aboutwelcome.enabled": False,
                    "datareporting.policy.dataSubmissionEnabled": False, "toolkit.telemetry.enabled": False,
                    **preferences}
        lines = [f"user_pref({json.dumps(name)}, {json.dumps(value)});\n" for name, value in settings.items()]
        pathlib.Path(profile, "user.js").write_text("".join(lines), encoding="utf-8")
        super().__init__(["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access", "--no-remote",
                          "--profile", profile])
        self.folder = pathlib.Path(profile)
        port_file = self.folder / "MarionetteActivePort"
        port = wait_for(lambda: port_file.exists() and port_file.read_text(encoding="ascii"), "Firefox")
        self.socket = socket.create_connection(("127.0.0.1", int(port)), timeout=60)
        self.count = 0
        self.receive()
        self.command("NewSession", {})

    def receive(self):
        text = b""
        while not text.endswith(b":"):
            text += self.socket.recv(1)
        length = int(text[:-1])
        message = b""
        while len(message) < length:
            message += self.socket.recv(length - len(message))
        return json.loads(message)

    def send(self, name, arguments):
        self.count += 1
        message = json.dumps([0, self.count, name, arguments]).encode()
        self.socket.sendall(str(len(message)).encode() + b":" + message)
        _, _, error, result = self.receive()
        if error:
            raise RuntimeError(error["message"])
        return result

    def command(self, name, arguments):
        return self.send("WebDriver:" + name, arguments)

    def errors(self):
        """The messages about pages on the console since the last call."""
        self.send("Marionette:SetContext", {"value": "chrome"})
        messages = self.script("""
            const messages = Services.console.getMessageArray().filter(m => m instanceof Ci.nsIScriptError);
            Services.console.reset();
            return messages.filter(m => /^(http|file|data)/.test(m.sourceName)).map(m => m.toString());""")
        self.send("Marionette:SetContext", {"value": "content"})
        return messages

    def close(self):
        self.socket.close()
        super().close()

    @staticmethod
    def with_reduced_motion():
        return Firefox(**{"ui.prefersReducedMotion": 1})
