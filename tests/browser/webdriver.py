"""A browser that tests drive, by the WebDriver protocol."""

import atexit
import base64
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

PATIENCE = 60  # seconds; far more than anything takes, for machines that have much else to do
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # as the protocol calls a reference to an element


class Keys:
    TAB, ENTER, SHIFT, ESCAPE = "\ue004", "\ue007", "\ue008", "\ue00c"


class WebDriverError(Exception):
    pass


class Browser:
    """Chromium without a window, with a profile of its own. `close` ends what was begun here."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="unitflow-browser-")
        self.driver = None
        self.session = None
        atexit.register(self.close)
        try:
            self.base = f"http://127.0.0.1:{self._start_driver()}"
            self.session = self._call("POST", "/session", self._capabilities())["sessionId"]
        except BaseException:
            self.close()
            raise

    def _start_driver(self):
        """The port that the driver chose."""
        log = pathlib.Path(self.folder, "driver.log")
        with log.open("wb") as output:
            self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=output,
                                           stderr=subprocess.STDOUT, start_new_session=True)
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline and self.driver.poll() is None:
            started = re.search(r"started successfully on port (\d+)", log.read_text())
            if started:
                return int(started[1])
            time.sleep(0.05)
        raise WebDriverError("chromedriver did not start:\n" + log.read_text())

    def _capabilities(self):
        arguments = ["--headless", "--disable-gpu", "--disable-quic", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update",
                     "--disable-sync", "--disable-dev-shm-usage",
                     f"--user-data-dir={self.folder}/profile"]
        if os.getuid() == 0:
            arguments.append("--no-sandbox")  # Chromium does not run for root otherwise
        return {"capabilities": {"alwaysMatch": {
            "browserName": "chrome",
            "goog:chromeOptions": {"args": arguments},
            "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}}}

    def close(self):
        try:
            if self.session:
                self._call("DELETE", f"/session/{self.session}")
        except (WebDriverError, OSError):
            pass  # the browser is ended below
        finally:
            if self.driver:
                # The driver and the browser are a group of their own, which nobody else is in.
                try:
                    os.killpg(self.driver.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                self.driver.wait()
            self.driver = self.session = None
            shutil.rmtree(self.folder, ignore_errors=True)

    def _call(self, method, path, body=None):
        data = None if method != "POST" else json.dumps(body or {}).encode()
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"},
                                         method=method)
        try:
            with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(
                    request, timeout=PATIENCE) as response:
                return json.load(response)["value"]
        except urllib.error.HTTPError as error:
            raise WebDriverError(error.read().decode(errors="replace")) from error

    def _post(self, path, **body):
        return self._call("POST", f"/session/{self.session}{path}", body)

    def get(self, url):
        self._post("/url", url=url)

    def back(self):
        self._post("/back")

    def run(self, script, *arguments):
        """What `script`, the body of a function of `arguments`, returns."""
        return self._post("/execute/sync", script=script, args=list(arguments))

    def until(self, script, *arguments):
        """Waits until `script` returns something true, and gives that."""
        deadline = time.monotonic() + PATIENCE
        while True:
            value = self.run(script, *arguments)
            if value:
                return value
            if time.monotonic() > deadline:
                raise AssertionError(f"still not true: {script} {arguments}")
            time.sleep(0.02)

    def find(self, selector):
        return self._post("/element", using="css selector", value=selector)[ELEMENT]

    def click(self, selector):
        self._post(f"/element/{self.find(selector)}/click")

    def type(self, selector, text):
        self._post(f"/element/{self.find(selector)}/value", text=text)

    def press(self, *keys):
        """Presses the keys one after the other and then lets go of them all."""
        actions = [{"type": "keyDown", "value": key} for key in keys]
        actions += [{"type": "keyUp", "value": key} for key in reversed(keys)]
        self._post("/actions", actions=[{"type": "key", "id": "keys", "actions": actions}])

    def drag(self, start, end):
        move = {"type": "pointerMove", "duration": 0, "origin": "viewport"}
        middle = [(a + b) // 2 for a, b in zip(start, end)]
        actions = [{**move, "x": start[0], "y": start[1]}, {"type": "pointerDown", "button": 0},
                   {**move, "x": middle[0], "y": middle[1]}, {**move, "x": end[0], "y": end[1]},
                   {"type": "pointerUp", "button": 0}]
        self._post("/actions", actions=[{"type": "pointer", "id": "mouse", "actions": actions}])

    def scroll(self, at, down):
        self._post("/actions", actions=[{"type": "wheel", "id": "wheel", "actions": [
            {"type": "scroll", "x": at[0], "y": at[1], "deltaX": 0, "deltaY": down,
             "duration": 0, "origin": "viewport"}]}])

    def tools(self, command, **parameters):
        """A command of the browser's tools for developers."""
        return self._post("/goog/cdp/execute", cmd=command, params=parameters)

    def resize(self, width, height):
        self.tools("Emulation.setDeviceMetricsOverride", width=width, height=height,
                   deviceScaleFactor=1, mobile=False)

    def emulate(self, scheme="light", media=""):
        """Motion is always reduced: what glides would be somewhere else a moment later."""
        self.tools("Emulation.setEmulatedMedia", media=media, features=[
            {"name": "prefers-color-scheme", "value": scheme},
            {"name": "prefers-reduced-motion", "value": "reduce"}])

    def print(self):
        return base64.b64decode(self.tools("Page.printToPDF", preferCSSPageSize=True)["data"])

    def console(self):
        """What was said on the console since the last call."""
        return [entry["message"] for entry in self._post("/se/log", type="browser")]

    def requests(self):
        """The addresses that were asked for since the last call."""
        events = (json.loads(entry["message"])["message"]
                  for entry in self._post("/se/log", type="performance"))
        return [event["params"]["request"]["url"] for event in events
                if event["method"] == "Network.requestWillBeSent"]
