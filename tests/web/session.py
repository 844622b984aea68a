"""The session at the desktop's window, tests/data/plays/window.txt, played at the page: what the window told of each object,
where it stood and what was painted, the page must show as well."""
import re

import browsers

# What a control of the desktop is called in a page, and its role to those who do not look.
TELL = r"""
const lines = {}, main = document.getElementById('Main');
const roles = {button: 43, figure: 41, text: 43, link: 43, checkbox: 44, clue: 41, panel: 41, cell: 34};
const desktop = id => id.replace(/^(Grid|RowCnt|ColCnt)(\d+)$/, '$1($2)').replace(/^panel(\d)$/, 'StatusBar1.Panels($1)');
const keys = {N: 'Ctrl+N', L: 'Ctrl+O', Q: 'Ctrl+Q'};
const focus = document.activeElement, inBoard = focus.classList.contains('cell');
for (const element of main.querySelectorAll('[id]')) {
  if (element.closest('[hidden]')) continue;
  const kind = [...element.classList].find(name => name in View.kinds);
  const at = element.getBoundingClientRect(), label = element.getAttribute('aria-label');
  const place = [at.x, at.y, at.width, at.height].map(side => Math.round(side));
  const where = `${place[0]},${place[1]} ${place[2]}x${place[3]}`;
  const description = element.getAttribute('aria-description') || '';
  const enabled = !element.disabled, focused = element === focus ? 'focused' : '';
  const shortcuts = (element.getAttribute('aria-keyshortcuts') || '').split(' ').filter(key => key)
    .map(key => keys[key] || key.replaceAll('Control', 'Ctrl')).join(', ');
  const tip = element.title.replace(/ \((N|L|Q)\)$/, (all, key) => ` (${keys[key]})`);
  let words = [label === null ? element.textContent : label, roles[kind]];
  if (kind === 'button' || kind === 'checkbox') {
    words.push(description, shortcuts, tip, kind === 'button' ? 'Press' : 'Toggle', enabled ? 'SetFocus' : '', 'focusable', focused,
      enabled ? '' : 'disabled', element.checked ? 'checked' : '');
  } else if (kind === 'link') {
    words.push(description, tip, 'Press', 'SetFocus', 'focusable', focused);
  } else if (kind === 'text') {
    const waits = element.tabIndex === 0;
    words.push(description, 'Press', waits ? 'SetFocus' : '', waits ? 'focusable' : '', focused);
  } else if (kind === 'cell') {
    words.push('Press', 'focusable', focused);
  } else if (kind === 'board') {
    words = [label, 20, description, 'SetFocus', 'focusable', inBoard ? 'focused' : ''];
  } else if (kind === 'bar') {
    words = [label, 23, description];
  } else if (kind === 'shield') {
    words = [label, 10, description];
  } else if (kind === 'picture') {
    words = [label, 43, 'Press', 'SetFocus', 'focusable', focused];
  } else if (element.id === 'Announcement') {
    continue;
  } else {
    words.push(description, tip);
  }
  lines[desktop(element.id)] = [...words.filter(word => word !== '' && word !== undefined), where].join(' | ');
}
lines.Main = [main.getAttribute('aria-label'), 9, `0,0 ${innerWidth}x${innerHeight}`].join(' | ');
lines.Announcement = [document.getElementById('Announcement').textContent, 134, '0,0 0x0'].filter(w => w !== '').join(' | ');
lines.focus = inBoard ? 'Grid' : focus.id;
for (const timer of [1, 2, 3]) lines['Timer' + timer] = String(window.halted[timer] || 'off');
if (!document.getElementById('Grid').hidden) {
  const size = Math.sqrt(document.querySelectorAll('.cell').length);
  document.querySelectorAll('.cell').forEach((cell, i) => {
    const row = 'painted ' + (Math.floor(i / size) + 1), sign = '.gtT4??W'[cell.dataset.tile];
    lines[row] = (lines[row] || '') + (cell === focus && cell.classList.contains('frame') ? `[${sign}]` : sign);
  });
}
return lines;
"""
BOX = """const box = document.querySelector('dialog[open]'); if (!box) return null;
const text = box.id === 'MessageBox' ? ' | ' + box.querySelector('p').textContent : '';
return box.getAttribute('aria-label') + text;"""
INSIDE = """const box = document.querySelector('dialog[open]'), inside = {};
for (const element of box.querySelectorAll('button, input, select')) {
  let text = element.textContent;
  if (element.tagName === 'INPUT') text = `[${element.value}]`;
  if (element.tagName === 'SELECT') text = [...element.options].map(o => (o.selected ? '*[' : '[') + o.text.trimEnd() + ']').join('');
  inside[element.id] = text + (element.disabled ? ' | disabled' : '') + (element === document.activeElement ? ' | focus' : '');
}
return inside;"""
SETTLE = """for (let i = 0; i < 400; ++i) {
  const open = document.querySelector('dialog[open]');
  if (Engine.holds === 0 && Engine.waiting.length === 0 && (open || Engine.calls.length === 0)) break;
  await new Promise(r => setTimeout(r, 5)); }
await new Promise(r => setTimeout(r, 45));"""

TIME = re.compile(r"\b\d\d:\d\d\b")
PAGE_KEYS = {"Ctrl+N": "n", "Ctrl+O": "l", "Ctrl+Q": "q"}
KNOWN = re.compile(r"^(\d+|[A-Z]|Return|Escape|Space|Enter|Tab|Left|Right|Up|Down|PageUp|PageDown|Home|End|F1|F2|held|focus|"
                   r"drag|minimise|tick|tool|solve|large|small|cmd\w+|optSound|lblHint|Label\d|Picture1|Ctrl\+(B|C|N|O|P|Q|R|S|V|Z|Y|"
                   r"Shift\+Z|Right|Home|End))$")


class Session:
    def __init__(self, browser, script, source):
        self.browser, self.source = browser, source
        self.equal = self.all = self.steps = 0
        self.said = []
        self.excused = {}  # By object: the texts that differed, and why.
        self.named, self.wrong, self.sizes, self.stopped = {}, [], [], ""
        self.blocks = []  # Each step with the lines that it told.
        block = ("", [])
        for line in script.read_text().split("\n"):
            if line.startswith("> "):
                self.blocks.append(block)
                block = (line[2:], [])
            elif line.startswith("  "):
                block[1].append(line)
        self.blocks.append(block)

    def play(self, shape):
        self.shape = shape
        self.width, self.height = 545, 602
        self.resize(1)
        self.browser.run("window.open = window.print = () => null; window.halted = {}; View.setTimer = (number, interval) => { window.halted[number] = interval; };"
                         "for (const [number, timer] of Object.entries(View.timers)) {"
                         " clearInterval(timer.id); window.halted[number] = timer.interval; }")
        self.choose_size()
        self.expected = {}
        for step, lines in self.blocks:
            words = step.split(" ")
            if step and not KNOWN.match(words[0]):
                self.stopped = step
                return
            self.step = step
            self.lines = list(lines)
            self.boxes = any(line.startswith("  box: ") for line in lines)
            if step:
                self.do(words)
                self.steps += 1
            self.settle()
            self.compare_window()

    def choose_size(self):
        """The session begins with size 6, chosen before the start."""
        self.browser.run("document.getElementById('cmdOptions').click()")
        self.settle()
        self.browser.run("const box = document.querySelector('dialog[open]'); box.querySelector('#Field').value = '6';"
                         "box.querySelector('#OK').click();")
        self.settle()
        self.browser.run("document.getElementById('Announcement').textContent = ''")

    def settle(self):
        self.browser.wait(SETTLE)

    def resize(self, factor):
        self.width, self.height = int(self.width * factor + 0.5), int(self.height * factor + 0.5)
        self.shape(self.browser, self.width, self.height)
        self.sizes.append(f"{self.width}x{self.height}")
        self.browser.wait("for (let i = 0; i < 3; ++i) await new Promise(requestAnimationFrame);")

    def keys(self, keys):
        keys = "Return" if keys == "Enter" else keys
        self.browser.act(browsers.strokes(PAGE_KEYS.get(keys, keys)))

    def do(self, words):
        browser, word = self.browser, words.pop(0)
        if word in ("PageUp", "PageDown"):
            pass  # The toolkit of the desktop knows no keys of these names.
        elif word == "held":
            key = words.pop(0)
            browser.run("document.activeElement.dispatchEvent(new KeyboardEvent('keydown',"
                        "{key: arguments[0], repeat: true, bubbles: true}))",
                        {"Space": " ", "Right": "ArrowRight"}.get(key, key.lower() if len(key) == 1 else key))
        elif word == "focus":
            browser.run("View.byTab = true; Engine.keyUsedLast = false;"
                        "(arguments[0] === 'Grid' ? document.querySelector('.cell[tabindex=\"0\"]') :"
                        " document.getElementById(arguments[0])).focus(); View.byTab = false;", words.pop(0))
        elif word == "Tab":  # To the browser's own controls it goes as well, to which of them differs.
            browser.run("const stops = [...document.querySelectorAll('#Main button, #Main input, #Main [tabindex=\"0\"]')]"
                        ".filter(stop => !stop.disabled && !stop.closest('[hidden]'));"
                        "View.byTab = true; stops[(stops.indexOf(document.activeElement) + 1) % stops.length].focus();"
                        "View.byTab = false;")
        elif word == "tick":
            browser.run("Engine.send('timer ' + arguments[0])", words.pop(0)[-1])
        elif word == "tool":
            browser.run("document.getElementById('Grid' + arguments[0]).click()", words.pop(0))
        elif word == "drag":
            ends = [browser.run("const at = document.getElementById('Grid' + arguments[0]).getBoundingClientRect();"
                                "return [at.x + at.width / 2, at.y + at.height / 2]", words.pop(0)) for _ in range(2)]
            browser.act(browsers.dragged([[a + (b - a) * i / 20 for a, b in zip(*ends)] for i in range(21)]), "pointer")
        elif word == "minimise":
            browser.run("Object.defineProperty(document, 'hidden', {value: true, configurable: true});"
                        "document.dispatchEvent(new Event('visibilitychange')); delete document.hidden;")
        elif word == "large":
            self.resize(1.5)
        elif word == "small":
            self.resize(1 / 1.5)
        elif word == "solve":
            self.solve()
        elif word.isdigit():
            self.click_field(word)
        elif re.match("[a-zA-Z]", word) and browser.run("return document.getElementById(arguments[0]) !== null", word):
            if browser.run("return !document.getElementById(arguments[0]).disabled", word):
                browser.click(word)
        else:
            self.keys(word)
        self.settle()
        self.answer(words)

    def click_field(self, cell):
        if self.browser.run("return !document.getElementById('Grid').hidden"):
            return self.browser.click(f"Grid{cell}")
        self.browser.run("document.getElementById('Grid' + arguments[0])"
                         ".dispatchEvent(new MouseEvent('mousedown', {bubbles: true}))", cell)

    def solve(self):
        import struct
        size, number = self.browser.run("return [Math.sqrt(document.querySelectorAll('.cell').length),"
                                        "Number(panel3.textContent.slice(10))]")
        content = (self.source / f"assets/packs/BVPack{int(size):02}.bvq").read_bytes()[(number - 1) * 1376:number * 1376]
        directions, layout = struct.unpack("<324h", content[:648]), struct.unpack("<324h", content[648:1296])
        step = {1: -size, 2: 1, 3: size, 4: -1}
        tents = {int(cell + step[directions[cell]]) for cell in range(int(size * size)) if layout[cell] == 3}
        for cell in range(int(size * size)):
            for _ in range(3):
                tile = int(self.browser.run("return document.getElementById('Grid' + arguments[0]).dataset.tile", cell))
                if tile == 3 or tile == (2 if cell in tents else 1) or self.browser.run(BOX):
                    break
                self.browser.run("document.getElementById('Grid' + arguments[0])"
                                 ".dispatchEvent(new MouseEvent('mousedown', {bubbles: true}))", cell)
                self.settle()

    def told(self, start):
        """The next line of the script that begins so, taken."""
        while self.lines:
            line = self.lines.pop(0)
            if line.startswith(start):
                return line[len(start):]
        return None

    def answer(self, words):
        """Answers the boxes that a step opened, and compares each with what the desktop's showed."""
        shown = None
        while True:
            box = self.browser.run(BOX)
            if box is None:
                return
            if box != shown:
                told = self.told("  box: ")
                if told is None:
                    self.wrong.append(f"{self.step}: a box came: {box}")
                elif not (told.startswith("Help") and box.startswith("Help")):
                    self.compare("box", re.sub(r" \| icon.*", "", told), TIME.sub("mm:ss", box.replace("\n", "\\n")))
                else:
                    self.name("the keys of browsers in the help box")
                shown = box
            self.compare_inside()
            if not words:
                self.browser.run("const box = document.querySelector('dialog[open]');"
                                 "box.dispatchEvent(new Event('cancel', {cancelable: true}));")
                self.settle()
                if self.browser.run(BOX) == box:
                    self.wrong.append(f"{self.step}: the box stays open: {box}")
                    return
                continue
            word = words.pop(0)
            if word.startswith("'"):
                self.browser.act(browsers.typed(word[1:].replace("~", " ")))
            elif word.startswith("@"):
                self.browser.run("document.querySelector('dialog[open] #' + arguments[0]).click()", word[1:])
            else:
                self.keys(word)
            self.settle()
            while self.lines and not self.lines[0].startswith("  then: "):
                self.take(self.lines.pop(0))
            if self.lines:
                self.lines.pop(0)

    def compare_inside(self):
        inside = self.browser.run(INSIDE)
        for line in self.lines:
            if not line.startswith("    in it "):
                if line.startswith("  then: "):
                    break
                continue
            name, text = line[10:].split(": ", 1)
            if name not in inside:
                continue  # A text.
            words = text.split(" | ")
            told = re.sub(r" default$| selected \[.*\]$", "", words[0]).replace("&", "").replace(" ", "")
            told += "".join(" | " + word for word in words[1:] if word in ("disabled", "focus"))
            self.compare("in it " + name, told, inside[name].replace(" ", "", inside[name].count(" ")) if False else
                         re.sub(r"^[^|]*", lambda m: m.group().replace(" ", ""), inside[name]).replace("| ", " | ").replace("  ", " "))

    def take(self, line):
        if re.match(r"  [\w() .]+: ?", line) and not line.startswith("    "):
            name, text = line[2:].split(":", 1)
            self.expected[name] = text[1:]

    def compare_window(self):
        spoken = any(line.startswith("  Announcement: ") for line in self.lines)
        for line in self.lines:
            self.take(line)
        if self.browser.run("return document.getElementById('Main') === null"):
            return  # The game has ended.
        shown = self.browser.run(TELL)
        for name, text in shown.items():
            shown[name] = TIME.sub("mm:ss", text)
        self.said.append(shown["Announcement"])
        for name, told in self.expected.items():
            if name == "Announcement" and not spoken:
                continue
            if name in ("box", "then", "settings", "cursor", "window", "clipboard"):
                continue
            if name in shown:
                self.compare(name, told, shown[name])

    def name(self, reason):
        self.named[reason] = self.named.get(reason, 0) + 1

    def compare(self, name, told, shown):
        self.all += 1
        if told == shown:
            self.equal += 1
            return
        # What differed after a box may stand so for a while.
        before = self.excused.get(name)
        texts = [text.split(" | ")[0] for text in (told, shown)]
        reason = self.reason(name, told, shown) or (before[1] if before and before[0] == texts else "")
        if reason:
            self.excused[name] = (texts, reason)
            self.name(reason)
        else:
            self.wrong.append(f"> {self.step}: {name}: [{told}] is shown as [{shown}]")

    def reason(self, name, told, shown):
        """What a page has not, by name."""
        without = lambda text, *words: " | ".join(w for w in text.split(" | ") if w not in words)
        if name == "Main" and told.startswith("Bivouac |"):
            return "a window that comes back has no name"
        if name == "optSound":
            told, shown = (" | ".join(text.split(" | ")[:-1]) for text in (told, shown))
            if told == shown:
                return "the toolkit's own place of a check box"
        words, own = told.split(" | "), without(shown, "focused").split(" | ")
        if name == "Announcement" and (self.boxes or told in self.said):
            return "what is said once the window is active after a box"
        if name == "Announcement" and self.step.startswith("drag"):
            return "the fields of a drag, which a page says one by one"
        if name.startswith("painted") and self.width != 545 and re.sub(r"[][]", "", shown) == re.sub(r"[][]", "", told):
            return "which pixels of a larger window are a frame's"
        if self.boxes and name.startswith("painted") and re.sub(r"[][]", "", shown) == told:
            return "the focus while the window is not active after a box"
        if self.boxes and own == words:
            return "the focus while the window is not active after a box"
        if self.boxes and name.startswith("Grid(") and (own[0].startswith(words[0]) or words[0].startswith(own[0])):
            return "the focus while the window is not active after a box"
        own = shown.split(" | ") if "focused" in words else own
        if "43" in words and len(own) > 3 and [own[0], own[1], *own[3:]] == words:
            return "a button that says less where its window came back"
        return ""
