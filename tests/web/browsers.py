"""Browsers, each through its WebDriver, with the few calls that a test of the page needs."""
import inspect
import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import time

KEYS = {"Return": "\ue007", "Escape": "\ue00c", "Space": " ", "Tab": "\ue004", "Left": "\ue012", "Up": "\ue013",
        "Right": "\ue014", "Down": "\ue015", "Home": "\ue011", "End": "\ue010", "PageUp": "\ue00e",
        "PageDown": "\ue00f", "F1": "\ue031", "F2": "\ue032", "Ctrl": "\ue009", "Shift": "\ue008"}


def strokes(keys):
    """The actions of a press such as Ctrl+Z."""
    *held, last = keys.split("+")
    held = [KEYS[key] for key in held]
    key = KEYS.get(last, last.lower() if len(last) == 1 else last)
    return ([{"type": "keyDown", "value": name} for name in held] +
            [{"type": "keyDown", "value": key}, {"type": "keyUp", "value": key}] +
            [{"type": "keyUp", "value": name} for name in reversed(held)])


def typed(text):
    return [{"type": kind, "value": letter} for letter in text for kind in ("keyDown", "keyUp")]


def dragged(points):
    """The actions of a drag of the mouse from point to point."""
    moves = [{"type": "pointerMove", "x": round(x), "y": round(y), "duration": 0} for x, y in points]
    return [moves[0], {"type": "pointerDown", "button": 0}, *moves[1:], {"type": "pointerUp", "button": 0}]


class Selenium:
    """Chromium and WebKit: what python3-selenium knows."""

    def __init__(self, profile):
        self.profile = profile
        self.driver = self.begin()
        self.driver.set_script_timeout(120)

    def go(self, address):
        self.driver.get(address)

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def wait(self, script, *arguments):
        """Runs a script whose promise is awaited."""
        return self.driver.execute_async_script(
            "const done = arguments[arguments.length - 1]; (async () => {" + script + "})().then(done, e => done('FAILED ' + e));",
            *arguments)

    def act(self, actions, device="key"):
        self.driver.execute("actions", {"actions": [{"type": device, "id": device, "actions": actions}]})

    def size(self, width, height):
        self.driver.set_window_size(width, height)

    def click(self, name):
        self.driver.find_element("id", name).click()

    def picture(self, path):
        self.driver.save_screenshot(path)

    def tab(self):
        self.driver.switch_to.new_window("tab")

    def tabs(self):
        return self.driver.window_handles

    def show(self, tab):
        self.driver.switch_to.window(tab)

    def end(self):
        self.driver.quit()


class Chromium(Selenium):
    name = "Chromium"
    programs = ("chromium", "chromedriver")

    def begin(self):
        from selenium import webdriver
        from selenium.webdriver.chrome.options import Options
        from selenium.webdriver.chrome.service import Service
        options = Options()
        for option in ("--headless=new", "--no-sandbox", "--disable-gpu", "--user-data-dir=" + self.profile):
            options.add_argument(option)
        return webdriver.Chrome(options=options, service=Service(shutil.which("chromedriver")))

    def kill(self):
        for children in pathlib.Path(f"/proc/{self.driver.service.process.pid}/task").glob("*/children"):
            for process in children.read_text().split():
                os.kill(int(process), signal.SIGKILL)
        self.driver.service.stop()


class WebKit(Selenium):
    name = "WebKitGTK"
    programs = ("WebKitWebDriver",)

    def begin(self):
        from selenium import webdriver
        from selenium.webdriver.webkitgtk.options import Options
        from selenium.webdriver.webkitgtk.service import Service
        import glob
        os.environ["XDG_DATA_HOME"] = os.environ["XDG_CACHE_HOME"] = self.profile
        os.environ["WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"] = "1"
        options = Options()
        options.binary_location = glob.glob("/usr/lib/*/webkit2gtk-4*/MiniBrowser")[0]
        options.add_argument("--automation")
        # Older versions of the library look for the driver by themselves, newer ones want its path.
        newer = "service" in inspect.signature(webdriver.WebKitGTK.__init__).parameters
        named = {"service": Service(shutil.which("WebKitWebDriver"))} if newer else {}
        return webdriver.WebKitGTK(options=options, **named)


class Firefox:
    """Firefox speaks WebDriver's commands itself, over a socket: no driver's package is needed."""
    name = "Firefox"
    programs = ("firefox-esr",)

    def __init__(self, profile):
        self.profile = profile
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            port = free.getsockname()[1]
        with open(os.path.join(profile, "user.js"), "w") as settings:
            settings.write(f'user_pref("marionette.port", {port});\nuser_pref("browser.shell.checkDefaultBrowser", false);\n'
                           'user_pref("datareporting.policy.dataSubmissionEnabled", false);\n')
        self.process = subprocess.Popen(
            [shutil.which("firefox-esr"), "--headless", "--marionette", "--no-remote", "--profile", profile],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env={**os.environ, "MOZ_HEADLESS": "1"})
        for _ in range(300):
            try:
                self.socket = socket.create_connection(("127.0.0.1", port))
                break
            except OSError:
                time.sleep(0.1)
        self.count = 0
        self.stream = self.socket.makefile("rb")
        self.read()
        self.call("WebDriver:NewSession", {"capabilities": {"alwaysMatch": {"timeouts": {"script": 120000}}}})

    def read(self):
        length = b""
        while not length.endswith(b":"):
            length += self.stream.read(1)
        return json.loads(self.stream.read(int(length[:-1])))

    def call(self, name, parameters=None):
        self.count += 1
        message = json.dumps([0, self.count, name, parameters or {}]).encode()
        self.socket.sendall(str(len(message)).encode() + b":" + message)
        _, _, error, result = self.read()
        if error:
            raise RuntimeError(f"{name}: {error['message']}")
        return result["value"] if isinstance(result, dict) and "value" in result else result

    def go(self, address):
        self.call("WebDriver:Navigate", {"url": address})

    def run(self, script, *arguments):
        return self.call("WebDriver:ExecuteScript", {"script": script, "args": list(arguments), "sandbox": None})

    def wait(self, script, *arguments):
        return self.call("WebDriver:ExecuteAsyncScript", {
            "script": "const done = arguments[arguments.length - 1]; (async () => {" + script +
                      "})().then(done, e => done('FAILED ' + e));", "args": list(arguments), "sandbox": None})

    def act(self, actions, device="key"):
        self.call("WebDriver:PerformActions", {"actions": [{"type": device, "id": device, "actions": actions}]})

    def size(self, width, height):
        self.call("WebDriver:SetWindowRect", {"width": width, "height": height})

    def click(self, name):
        element = self.call("WebDriver:FindElement", {"using": "css selector", "value": "#" + name})
        self.call("WebDriver:ElementClick", {"id": list(element.values())[0]})

    def picture(self, path):
        import base64
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.call("WebDriver:TakeScreenshot", {"full": False})))

    def tab(self):
        handle = self.call("WebDriver:NewWindow", {"type": "tab"})["handle"]
        self.show(handle)

    def tabs(self):
        return self.call("WebDriver:GetWindowHandles")

    def show(self, tab):
        self.call("WebDriver:SwitchToWindow", {"handle": tab, "name": tab})

    def kill(self):
        self.process.kill()
        self.process.wait()

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(20)


def there():
    """The browsers that are installed."""
    return [kind for kind in (Chromium, Firefox, WebKit) if all(shutil.which(program) for program in kind.programs)]


def opened(kind):
    return kind(tempfile.mkdtemp(prefix="bivouac-web-"))
