#!/usr/bin/env python3
"""Opens the page of `yfw topology --html` in a browser, and uses it as a person does.

  page_test.py YFW EXAMPLES [-k ...]
  YFW_SCREENSHOT=FILE page_test.py YFW EXAMPLES     also writes a picture of the page, PNG

Without a browser the tests are skipped, with CI set they fail.
"""
import base64
import json
import os
import pathlib
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

YFW = pathlib.Path(sys.argv[1]).resolve()
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()
LIMIT = 90
BROWSER = next(filter(None, map(shutil.which, ("chromium", "chromium-browser", "google-chrome"))), None)


class Browser:
    """A browser without a window, commanded through a pair of pipes (the DevTools protocol)."""

    def __init__(self, directory):
        commands, self.to = os.pipe()
        self.answers, answers = os.pipe()
        self.number = 0
        self.pending = b""
        self.events = []

        def connect():
            os.dup2(commands, 103)
            os.dup2(answers, 104)
            os.dup2(103, 3)
            os.dup2(104, 4)

        self.process = subprocess.Popen(
            [BROWSER, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--remote-debugging-pipe", f"--user-data-dir={directory}", "--window-size=1200,800", "about:blank"],
            preexec_fn=connect, close_fds=False, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(commands)
        os.close(answers)
        self.session = None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session is not None:
            message["sessionId"] = self.session
        os.write(self.to, json.dumps(message).encode() + b"\0")
        end = time.monotonic() + LIMIT
        while time.monotonic() < end:
            answer = self.receive()
            if answer is not None and answer.get("id") == self.number:
                if "error" in answer:
                    raise AssertionError(f"{method}: {answer['error']}")
                return answer["result"]
            if answer is not None:
                self.events.append(answer)
        raise AssertionError(f"{method}: no answer")

    def receive(self):
        if b"\0" not in self.pending and select.select([self.answers], [], [], 0.2)[0]:
            piece = os.read(self.answers, 1 << 20)
            if not piece:
                raise AssertionError("the browser has ended")
            self.pending += piece
        if b"\0" not in self.pending:
            return None
        message, self.pending = self.pending.split(b"\0", 1)
        return json.loads(message)

    def open(self, file):
        self.events.clear()
        self.call("Page.navigate", url=file.as_uri())
        end = time.monotonic() + LIMIT
        while self.run("document.readyState") != "complete" or self.run("location.href") != file.as_uri():
            if time.monotonic() > end:
                raise AssertionError("the page is not loaded")
            time.sleep(0.05)

    def run(self, script):
        result = self.call("Runtime.evaluate", expression=script, returnByValue=True)
        if "exceptionDetails" in result:
            raise AssertionError(result["exceptionDetails"])
        return result["result"].get("value")

    def mouse(self, kind, at, **more):
        self.call("Input.dispatchMouseEvent", type=kind, x=at[0], y=at[1], **more)

    def click(self, selector):
        at = self.run(f"(box => [box.x + box.width / 2, box.y + box.height / 2])"
                      f"(document.querySelector({json.dumps(selector)}).getBoundingClientRect())")
        self.mouse("mouseMoved", at)
        self.mouse("mousePressed", at, button="left", clickCount=1)
        self.mouse("mouseReleased", at, button="left", clickCount=1)

    def drag(self, begin, end):
        self.mouse("mouseMoved", begin)
        self.mouse("mousePressed", begin, button="left", clickCount=1)
        self.mouse("mouseMoved", end, button="left", buttons=1)
        self.mouse("mouseReleased", end, button="left", clickCount=1)

    def close(self):
        self.process.kill()
        self.process.wait()
        os.close(self.to)
        os.close(self.answers)


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        for program in (BROWSER, shutil.which("dot")):
            if program is None and os.environ.get("CI"):
                raise AssertionError("chromium and graphviz must be installed")
            if program is None:
                raise unittest.SkipTest("chromium or graphviz is not installed")
        cls.directory = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(cls.directory.cleanup)
        cls.browser = Browser(f"{cls.directory.name}/profile")
        cls.addClassCleanup(cls.browser.close)

    def page(self, *arguments):
        file = pathlib.Path(self.directory.name, f"{self.id()}.html")
        state = {**os.environ, "XDG_STATE_HOME": f"{self.directory.name}/state"}
        result = subprocess.run([YFW, "topology", "--html", file, *arguments], capture_output=True, text=True,
                                timeout=LIMIT, env=state)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.browser.open(file)

    def details(self):
        return self.browser.run("document.getElementById('details').innerText")

    def view(self):
        return [float(number) for number in self.browser.run("svg.getAttribute('viewBox')").split()]

    def assert_same_view(self, one, other):
        for a, b in zip(one, other):
            self.assertAlmostEqual(a, b, places=3)

    def test_shows_the_network(self):
        self.page()
        self.assertEqual(self.browser.run("document.title"),
                         "LLDP: 4 routers, 3 links, 1 shared segment, all connected")
        self.assertEqual(self.browser.run("svg.querySelectorAll('.router').length"), 4)
        self.assertIn("Click a link", self.details())
        if "YFW_SCREENSHOT" in os.environ:
            self.browser.click("[id='segment-0']")
            picture = self.browser.call("Page.captureScreenshot")["data"]
            pathlib.Path(os.environ["YFW_SCREENSHOT"]).write_bytes(base64.b64decode(picture))

    def test_shows_what_both_ends_of_a_link_have_heard(self):
        self.page()
        self.browser.click(".port.segment-0")
        text = self.details()
        for words in ("r1.example.net eth1\n", "r2.example.net eth1\n", "has heard r1.example.net eth1",
                      "Router r2 software 1.0", "5a:75:19:78:f3:ec", "7e:d0:85:52:40:8c"):
            self.assertIn(words, text)
        self.assertGreater(self.browser.run("svg.querySelectorAll('.chosen').length"), 2)

    def test_tells_an_end_that_was_not_read(self):
        self.page("--device", EXAMPLES / "r1")
        self.browser.click(".port.segment-0")
        self.assertIn("was not read", self.details())

    def test_is_zoomed_with_the_wheel_and_the_buttons(self):
        self.page()
        whole = self.view()
        self.browser.mouse("mouseWheel", [300, 300], deltaX=0, deltaY=-100)
        near = self.view()
        self.assertAlmostEqual(near[2], whole[2] * 0.8, delta=0.1)
        self.assertGreater(near[0], whole[0])
        self.browser.click("[data-zoom='1.25']")
        self.assertAlmostEqual(self.view()[2], whole[2], delta=0.1)
        self.browser.click("[data-zoom='0.8']")
        self.browser.click("[data-zoom='0']")
        self.assert_same_view(self.view(), whole)

    def test_is_moved_by_dragging_without_a_click(self):
        self.page()
        before = self.view()
        self.browser.drag([300, 300], [400, 340])
        after = self.view()
        self.assertLess(after[0], before[0])
        self.assertLess(after[1], before[1])
        self.assert_same_view([0, 0, *after[2:]], [0, 0, *before[2:]])
        self.assertIn("Click a link", self.details())

    def test_needs_no_other_file_and_has_no_errors(self):
        self.page()
        self.browser.click(".port.segment-0")
        asked = {event["params"]["request"]["url"] for event in self.browser.events
                 if event.get("method") == "Network.requestWillBeSent"}
        self.assertEqual(asked, {self.browser.run("location.href")})
        self.assertFalse([event for event in self.browser.events
                          if event.get("method") in ("Runtime.exceptionThrown", "Log.entryAdded")])

    def test_takes_no_script_from_neighbors(self):
        device = pathlib.Path(self.directory.name, "hostile")
        shutil.copytree(EXAMPLES / "r1", device)
        evil = "&lt;/script&gt;&lt;script&gt;document.title='taken'&lt;/script&gt;&lt;img src=x onerror=alert(1)&gt;"
        for file in device.glob("*.xml"):
            text = file.read_text(encoding="utf-8")
            file.write_text(text.replace("r2.example.net", evil), encoding="utf-8")
        self.page("--device", device)
        self.assertNotEqual(self.browser.run("document.title"), "taken")
        self.browser.click(".port.segment-0")
        self.assertIn("</script><script>", self.details())
        self.assertEqual(self.browser.run("document.images.length"), 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
