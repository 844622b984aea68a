#!/usr/bin/env python3
"""Plays the page in every browser that is installed, and prints where it stands.

play.py PAGE [BROWSER]
"""
import http.server
import pathlib
import shutil
import struct
import sys
import tempfile
import threading
import time

import browsers
from session import Session

PAGE = pathlib.Path(sys.argv[1]).resolve()
SOURCE = pathlib.Path(__file__).parents[2]
FAULTS = []


def expect(what, is_so, seen=""):
    if not is_so:
        FAULTS.append(what)
        print(f"  FAILED: {what} {seen}", flush=True)


def until(browser, condition, patience=20):
    """Waits until a condition in the page holds; returns whether it came to hold."""
    end = time.time() + patience
    while time.time() < end:
        if browser.run("return Boolean(" + condition + ")"):
            return True
        time.sleep(0.02)
    return False


def start(browser, address):
    browser.go(address)
    answer = browser.wait("await Page.started; return document.getElementById('Sentence').hidden;")
    if answer is not True:
        print(f"  {answer}")
    return answer is True


def shape(browser, width, height):
    """Makes the inside of the window that size."""
    for _ in range(4):
        inner = browser.run("return [innerWidth, innerHeight, outerWidth, outerHeight]")
        if inner[:2] == [width, height]:
            break
        browser.size(width + inner[2] - inner[0], height + inner[3] - inner[1])
        time.sleep(0.3)
    return browser.run("return [innerWidth, innerHeight]")


def say(browser, text):
    """Answers the open box."""
    browser.run("const box = document.querySelector('dialog[open]'), field = box.querySelector('#Field');"
                "if (field) { field.value = arguments[0]; box.querySelector('#OK').click(); }"
                "else box.querySelector('#' + arguments[0]).click();", text)


def press(browser, control):
    browser.run("document.getElementById(arguments[0]).click()", control)


def open_puzzle(browser, number):
    press(browser, "cmdOpen")
    expect("a box asks for the puzzle", until(browser, "document.querySelector('#Field')"))
    say(browser, str(number))
    expect(f"puzzle {number} opens", until(browser, f"panel3.textContent === 'Puzzle #: {number}' && !cmdPause.disabled"))


def title(browser):
    return "(document.querySelector('dialog[open]') || document.body).getAttribute('aria-label')"


def tents(size, number):
    """Cells of the tents of a puzzle that ships."""
    content = (SOURCE / f"assets/packs/BVPack{size:02}.bvq").read_bytes()[(number - 1) * 1376:number * 1376]
    directions, layout = struct.unpack("<324h", content[:648]), struct.unpack("<324h", content[648:1296])
    step = {1: -size, 2: 1, 3: size, 4: -1}
    return [cell + step[directions[cell]] for cell in range(size * size) if layout[cell] == 3]


def solve(browser, size, number):
    for cell in tents(size, number):
        for _ in range(2):
            press(browser, f"Grid{cell}")
    browser.run("for (const cell of document.querySelectorAll('[data-tile=\"0\"]')) cell.click();")


def choose_size(browser, size):
    press(browser, "cmdOptions")
    until(browser, "document.querySelector('#Field')")
    say(browser, str(size))
    expect(f"size {size} is chosen", until(browser, f"panel1.textContent === 'Size: {size}x{size}'"))


def add_player(browser, name):
    press(browser, "cmdPlayers")
    until(browser, "document.querySelector('#FormNamen[open]')")
    press(browser, "KnopNieuweSpeler")
    until(browser, "document.activeElement.id === 'NaamInvoerveld'")
    browser.act(browsers.typed(name) + browsers.strokes("Return"))
    expect("the name stands in the list", until(browser, f"NaamLijst.value === '{name}' && !KnopOK.disabled"))
    press(browser, "KnopOK")
    expect("the title says who plays", until(browser, f"document.title === 'Bivouac - {name} is playing'"))


def make_new(browser):
    """Presses New, and Exit while the puzzle is made: the question waits inside."""
    choose_size(browser, 18)
    browser.run("cmdGenerate.click(); cmdExit.click();")
    expect("the animation runs", until(browser, "View.timers[1]?.interval === 200"))
    expect("Exit is asked inside", until(browser, f"{title(browser)} === 'Quit Bivouac'"))
    time.sleep(0.3)
    say(browser, "No")
    expect("the puzzle is made", until(browser, f"{title(browser)} === 'Generate report'", 120))
    say(browser, "OK")
    expect("and opens", until(browser, "panel3.textContent === 'Puzzle #: 101' && !cmdPause.disabled"))


def made_in_two_tabs(browser, address):
    """Two tabs that make puzzles of one size at the same time: none is lost."""
    each = 6
    first = browser.tabs()[0]
    browser.tab()
    expect("a second tab starts", start(browser, address))
    tabs = [first, [tab for tab in browser.tabs() if tab != first][0]]
    for tab in tabs:
        browser.show(tab)
        browser.run("window.made = 0; window.maker = setInterval(() => {"
                    " const box = document.querySelector('dialog[open]');"
                    " if (box) { if (box.getAttribute('aria-label') !== 'Generate report') window.wrong = box.innerText;"
                    "   ++window.made; box.querySelector('button').click(); }"
                    " else if (!cmdSolution.disabled) cmdSolution.click();"
                    " else if (window.made < arguments[0] && !cmdGenerate.disabled) cmdGenerate.click(); }, 20)", each)
    for tab in tabs:
        browser.show(tab)
        expect("a tab makes its puzzles", until(browser, f"window.made >= {each}", 90))
        expect("nothing else is said", not browser.run("return window.wrong || ''"), browser.run("return window.wrong || ''"))
        browser.run("clearInterval(window.maker)")
    expect("the page starts again", start(browser, address))
    total = browser.run("return panel4.textContent")
    expect("no puzzle of either tab is lost", total == f"Total Puzzles: {100 + 2 * each}", total)


def judge(browser):
    """The session of the desktop's window, as far as a page knows its presses."""
    session = Session(browser, SOURCE / "tests/data/plays/window.txt", SOURCE)
    session.play(shape)
    print(f"  values of the window's session: {session.equal} of {session.all} equal, at "
          f"{', '.join(session.sizes)}; {session.steps} steps" + (f", to '{session.stopped}'" if session.stopped else ""))
    for name, count in sorted(session.named.items()):
        print(f"    not in a page: {name} ({count})")
    for line in session.wrong[:20]:
        print("    " + line)
    expect("the window's session shows the same", not session.wrong, f"({len(session.wrong)} values differ)")


def refused(kind, address):
    """A browser that refuses its database: the settings' box once, and play goes on."""
    browser = browsers.opened(kind)
    try:
        browser.go(address.replace(PAGE.name, "refused.html"))
        expect("a refused database is told", until(browser, f"{title(browser)} === 'Settings not saved'"))
        say(browser, "OK")
        open_puzzle(browser, 1)
    finally:
        browser.end()


def killed(kind, address):
    """A browser that is killed while the report of a new puzzle is open has the puzzle at its next start."""
    browser = browsers.opened(kind)
    start(browser, address)
    browser.run("cmdGenerate.click()")
    expect("a puzzle is made", until(browser, f"{title(browser)} === 'Generate report'", 120))
    browser.kill()
    again = kind(browser.profile)
    try:
        start(again, address)
        expect("a killed browser keeps the puzzle", again.run("return panel4.textContent") == "Total Puzzles: 101")
    finally:
        again.end()


def served():
    """A folder with the page, and what it would be in a browser that refuses its database."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="bivouac-web-"))
    page = PAGE.read_text()
    (folder / PAGE.name).write_text(page)
    refusal = "<script>Object.defineProperty(window, 'indexedDB', {get() { throw new Error('refused'); }});</script>"
    (folder / "refused.html").write_text(page.replace("<body>", "<body>" + refusal))
    return folder


def play(kind):
    print(kind.name, flush=True)
    folder = served()
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), lambda *a: Quiet(*a, directory=str(folder)))
    threading.Thread(target=server.serve_forever, daemon=True).start()
    address = f"http://localhost:{server.server_address[1]}/{PAGE.name}"
    begun = time.time()
    browser = browsers.opened(kind)
    try:
        expect("the page starts", start(browser, address))
        browser.go("about:blank")
        expect("and again", start(browser, address))
        print(f"  waits by {browser.run('return Engine.kind')}; visible after "
              f"{browser.run('return Math.round(View.shownAt)')} ms")
        expect("nothing was asked of the network",
               browser.run("return performance.getEntriesByType('resource').filter(e => !/^data:/.test(e.name)).length") == 0)
        judge(browser)

        expect("the page starts once more", start(browser, address))
        shape(browser, 900, 700)
        add_player(browser, "Ann")
        choose_size(browser, 6)
        open_puzzle(browser, 3)
        press(browser, "cmdHint")
        expect("a hint comes", until(browser, "lblHint.textContent.endsWith('Click HERE to continue...')"))
        expect("and has the focus", until(browser, "document.activeElement.id === 'lblHint'"))
        press(browser, "lblHint")
        until(browser, "lblHint.textContent === ''")
        solve(browser, 6, 3)
        expect("the puzzle is solved", until(browser, f"{title(browser)} !== null && document.querySelector('#OK')"))
        say(browser, "OK")
        expect("a best time is told", until(browser, f"{title(browser)} === 'New Best Time!!!'"))
        say(browser, "OK")
        until(browser, "/Ann/.test(panel5.textContent)")
        best = browser.run("return panel5.textContent")
        expect("the best time is Ann's", "Ann" in best, best)
        expect("the page starts after a reload", start(browser, address))
        expect("Ann still plays", browser.run("return document.title") == "Bivouac - Ann is playing")
        open_puzzle(browser, 3)
        expect("the best time stands", browser.run("return panel5.textContent") == best)
        press(browser, "cmdSolution")
        until(browser, "!cmdOptions.disabled")
        painted(browser)
        make_new(browser)
        press(browser, "cmdSolution")
        until(browser, "!cmdOptions.disabled")
        narrow(browser)
        choose_size(browser, 7)
        made_in_two_tabs(browser, address)
        damaged(browser, address)
        expect("it starts from the disk", start(browser, PAGE.as_uri()))
        press(browser, "cmdExit")
        until(browser, "document.querySelector('#Yes')")
        say(browser, "Yes")
        expect("Exit says how to come back", until(browser, "document.querySelector('#Ended #Again')"))
    finally:
        browser.end()
        shutil.rmtree(browser.profile, ignore_errors=True)
    refused(kind, address)
    if hasattr(kind, "kill"):
        killed(kind, address)
    server.shutdown()
    shutil.rmtree(folder)
    print(f"  {time.time() - begun:.0f} s", flush=True)


def painted(browser):
    """How long a click takes until a frame is painted, on the largest board."""
    choose_size(browser, 18)
    open_puzzle(browser, 1)
    took = browser.wait(
        "const cell = document.querySelector('[data-tile=\"0\"]'); const took = [];"
        "for (let i = 0; i < 30; ++i) { const begun = performance.now(); cell.click();"
        " while (cell.dataset.seen === cell.dataset.tile) await null; cell.offsetWidth; took.push(performance.now() - begun);"
        " await new Promise(r => requestAnimationFrame(() => setTimeout(r))); }"
        "took.sort((a, b) => a - b); return took[15];")
    print(f"  a click on 18x18 until all is laid out: {took:.1f} ms")
    press(browser, "cmdSolution")
    until(browser, "!cmdOptions.disabled")


def narrow(browser):
    """A portrait screen: the board takes the width, and the fields are large enough for a finger."""
    inner = shape(browser, 390, 800)
    expect("the page folds", until(browser, "document.querySelector('.narrow')"))
    open_puzzle(browser, 1)
    side = browser.run("return Grid0.getBoundingClientRect().width") * 390 / inner[0]
    expect("a field is at least 20 pixels wide", side >= 20, side)
    beside = browser.run("return [document.documentElement.scrollWidth, innerWidth]")
    expect("nothing lies beside the screen", beside[0] <= beside[1], beside)
    browser.picture(str(PAGE.parent / f"narrow-{browser.name}.png"))
    press(browser, "cmdSolution")
    until(browser, "!cmdOptions.disabled")
    shape(browser, 545, 602)


def damaged(browser, address):
    """What the database holds of one pack is no file: the pack to begin with is back, and all else stands."""
    browser.wait("await new Promise(done => { const turn = Files.database.transaction('files', 'readwrite');"
                 " turn.objectStore('files').put('nonsense', '/data/Bvc/BVPack07.bvq'); turn.oncomplete = done; });")
    browser.go(address)
    until(browser, "window.Page")
    expect("damage is told", until(browser, f"{title(browser)} === 'File Error'"))
    expect("and named", browser.run("return document.querySelector('dialog[open]').innerText.includes('BVPack07.bvq')"))
    say(browser, "OK")
    expect("the start goes on", browser.wait("await Page.started; return true") is True)
    expect("Ann's name stands", browser.run("return document.title") == "Bivouac - Ann is playing")


class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


if __name__ == "__main__":
    for kind in browsers.there():
        if len(sys.argv) < 3 or sys.argv[2].lower() in kind.name.lower():
            play(kind)
    for what in FAULTS:
        print("FAILED:", what)
    sys.exit(bool(FAULTS))
