"""A browser without a window, over the WebDriver protocol (W3C) and nothing but the standard
library. It needs Chromium and chromedriver; available() tells whether they are there."""

import base64
import http.client
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

AXE = pathlib.Path(__file__).resolve().parents[2] / "build/axe-core/package/axe.min.js"
BROWSERS = ("chromium", "chromium-browser", "google-chrome")


def browser_path():
    return next(filter(None, map(shutil.which, BROWSERS)), None)


def available():
    return browser_path() is not None and shutil.which("chromedriver") is not None


class Browser:
    """Use it in a with statement: the processes end with it."""

    def __init__(self):
        self.directory = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        environment = dict(os.environ, HOME=self.directory.name, TZ="UTC", LC_ALL="C.UTF-8")
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, env=environment)
        port = None
        for line in self.driver.stdout:
            started = re.search(rb"started successfully on port (\d+)", line)
            if started:
                port = int(started[1])
                break
        if port is None:
            raise RuntimeError("chromedriver does not start")
        self.connection = http.client.HTTPConnection("127.0.0.1", port, timeout=120)
        options = {
            "binary": browser_path(),
            "args": ["--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu",
                     "--hide-scrollbars", "--force-color-profile=srgb",
                     "--font-render-hinting=none", "--disable-lcd-text", "--no-first-run",
                     "--disable-background-networking",
                     f"--user-data-dir={self.directory.name}/profile"],
        }
        answer = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": {
            "browserName": "chrome", "goog:chromeOptions": options,
            "goog:loggingPrefs": {"performance": "ALL", "browser": "ALL"}}}})
        self.session = "/session/" + answer["sessionId"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.ask("DELETE", self.session)
        finally:
            self.driver.terminate()
            self.driver.wait()
            self.driver.stdout.close()
            self.directory.cleanup()

    def ask(self, method, path, body=None):
        text = None if body is None and method != "POST" else json.dumps(body or {})
        self.connection.request(method, path, text, {"Content-Type": "application/json"})
        value = json.loads(self.connection.getresponse().read())["value"]
        if isinstance(value, dict) and "error" in value:
            raise RuntimeError(value["error"] + ": " + value["message"].split("\n")[0])
        return value

    def command(self, name, **parameters):
        """A command of the browser's own protocol."""
        return self.ask("POST", self.session + "/goog/cdp/execute",
                        {"cmd": name, "params": parameters})

    def open(self, url):
        self.ask("POST", self.session + "/url", {"url": str(url)})

    def look(self, width, height=900, dark=False, media="screen", scale=1):
        """How pages are shown from now on."""
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height,
                     deviceScaleFactor=scale, mobile=False)
        scheme = {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}
        self.command("Emulation.setEmulatedMedia", media=media, features=[scheme])

    def evaluate(self, script, *arguments):
        """The value of a function's body; a promise is waited for."""
        return self.ask("POST", self.session + "/execute/sync",
                        {"script": script, "args": list(arguments)})

    def violations(self):
        """What axe-core holds against the page that is shown."""
        self.evaluate(AXE.read_text())
        return self.evaluate("""
            return axe.run({resultTypes: ['violations']}).then(found => found.violations.map(
                rule => `${rule.id}: ${rule.nodes.length} as ${rule.nodes[0].html}`))""")

    def screenshot(self, clip=None):
        """PNG of what is in view, or of a part of the whole page: x, y, width, height."""
        if clip is None:
            answer = self.command("Page.captureScreenshot", format="png")
        else:
            area = dict(zip(("x", "y", "width", "height"), clip), scale=1)
            answer = self.command("Page.captureScreenshot", format="png", clip=area,
                                  captureBeyondViewport=True)
        return base64.b64decode(answer["data"])

    def pdf(self):
        return base64.b64decode(self.ask("POST", self.session + "/print", {"background": False}))

    def log(self, kind):
        """What was logged since the last time: "performance" or "browser"."""
        return self.ask("POST", self.session + "/se/log", {"type": kind})
