#!/usr/bin/env python3
"""Makes the page: one file that holds the scripts, the style, the pictures, and, packed, all that the game needs.

assemble.py PROMISES_DIR ASYNCIFY_DIR OUTPUT
"""
import base64
import gzip
import json
import pathlib
import subprocess
import sys
import tempfile
import urllib.parse

promises, asyncify, output = map(pathlib.Path, sys.argv[1:])
page_folder = pathlib.Path(__file__).parent
assets = page_folder.parent / "assets"


def part(name, files):
    """Files behind one another, packed; the element's data tell where each ends."""
    contents = [(file.name, file.read_bytes()) for file in files]
    packed = gzip.compress(b"".join(content for _, content in contents), 9, mtime=0)
    lengths = json.dumps([[file, len(content)] for file, content in contents], separators=(",", ":"))
    return (f"<script type=\"text/plain\" id=\"{name}\" data-files='{lengths}'>"
            f"{base64.b64encode(packed).decode()}</script>")


def sounds():
    """The sounds, in a sixth of the room."""
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for sound in sorted((assets / "sounds").glob("*.wav")):
            files.append(pathlib.Path(folder, sound.stem + ".ogg"))
            subprocess.run(["sndfile-convert", "-vorbis", sound, files[-1]], check=True, stdout=subprocess.DEVNULL)
        return part("sounds", files)


def picture(path, style=None):
    """A picture as an address that holds it."""
    text = path.read_text().replace("<svg ", '<svg preserveAspectRatio="none" ', 1)
    if style:
        text = text.replace(">", f"><style>{style.read_text()}</style>", 1)
    return f'url("data:image/svg+xml,{urllib.parse.quote(" ".join(text.split()))}")'


tiles = assets / "tiles"
marked, ink = tiles / "marked.css", tiles / "ink.css"
names = ["open", "grass", "tent", "tree"]
look = [f'[data-tile="{i}"] {{ background-image: {picture(tiles / f"{names[i % 4]}.svg")}; }}' for i in (0, 1, 2, 3, 5, 6)]
look += [f'[data-tile="{i}"] {{ background-image: {picture(tiles / f"{names[i % 4]}.svg", marked)}; }}' for i in (4, 7)]
paper = [f'  [data-tile="{i}"] {{ background-image: {picture(tiles / f"{names[i % 4]}.svg", ink)}; }}' for i in (2, 3, 6, 7)]
paper += ['  [data-tile="0"], [data-tile="4"] { background-image: none; }',
          '  [data-tile="1"], [data-tile="5"] { background-image: radial-gradient(#000 8%, transparent 9%); }']

values = {
    "ICON": "data:image/png;base64," + base64.b64encode((assets / "icon/bivouac-32.png").read_bytes()).decode(),
    "TILES": "\n".join(look),
    "INK": "\n".join(paper),
    "CONTINUE": picture(tiles / "picture1.svg"),
    "PARTS": "\n".join([
        part("promises", [promises / "core.js", promises / "core.wasm"]),
        part("asyncify", [asyncify / "core.js", asyncify / "core.wasm"]),
        part("packs", sorted((assets / "packs").glob("*.bvq"))),
        sounds(),
    ]),
    "SCRIPT": "\n".join((page_folder / f"{name}.js").read_text() for name in ("engine", "files", "view", "list", "start")),
}
style = (page_folder / "page.css").read_text()
for name in ("TILES", "INK", "CONTINUE"):
    style = style.replace(f"@{name}@", values[name])
page = (page_folder / "page.html").read_text().replace("@STYLE@", style)
for name in ("ICON", "PARTS", "SCRIPT"):
    page = page.replace(f"@{name}@", values[name])
output.write_text(page)
