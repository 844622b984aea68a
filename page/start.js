// Starts the game: unpacks what the page carries, loads the core that this browser can run, and joins both.
'use strict';

globalThis.Page = {
  /// The files of a part of the page.
  async unpack(id) {
    const element = document.getElementById(id);
    const packed = Uint8Array.from(atob(element.textContent), (letter) => letter.charCodeAt(0));
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
    const bytes = new Uint8Array(await new Response(stream).arrayBuffer());
    const files = {};
    let at = 0;
    for (const [name, length] of JSON.parse(element.dataset.files)) {
      files[name] = bytes.subarray(at, at += length);
    }
    element.remove();
    return files;
  },

  async playSound(name) {
    try {
      this.audio = this.audio || new AudioContext();
      this.audio.resume(); // One that began before the first press stands still.
      this.sounds = this.sounds || this.unpack('sounds');
      const bytes = (await this.sounds)[name.replace('.wav', '.ogg')];
      const source = this.audio.createBufferSource();
      source.buffer = await this.audio.decodeAudioData(bytes.slice().buffer);
      source.connect(this.audio.destination);
      source.start();
    } catch (error) {
      // No sound, then: the game goes on without.
    }
  },

  beep() {
    // Browsers have none.
  },

  tell(message) {
    const acts = {
      draw: () => View.draw(message),
      say: () => View.say(message.text, message.shown),
      copy: () => View.copy(message),
      keys: () => message.keys.forEach((key) => { View.keys[key] = key; }),
      sound: () => this.playSound(message.name),
      beep: () => this.beep(),
      open: () => window.open(message.address, '_blank', 'noopener'),
      print: () => setTimeout(() => print()),
      leave: () => {
        Engine.left = true;
        View.leave(message.status);
      },
    };
    acts[message.tell]();
  },

  /// Lets what waits in the browser run: clicks, ticks, a frame.
  yield() {
    return new Promise((resolve) => {
      const channel = new MessageChannel();
      channel.port1.onmessage = () => resolve('');
      channel.port2.postMessage(0);
    });
  },

  ask(message) {
    switch (message.ask) {
      case 'box': return View.askBox(message);
      case 'input': return View.askInput(message);
      case 'players': return View.askPlayers();
      case 'list': return List.show();
      case 'yield': return this.yield();
      case 'sync': return Engine.hold(Files.sync());
      default: return Engine.hold(Files.lock(message.file, message.number));
    }
  },

  /// Which core runs here: one that browsers suspend by promises, or one that suspends itself.
  kind() {
    const exceptions = typeof WebAssembly === 'object' && WebAssembly.Tag !== undefined;
    const promises = exceptions && WebAssembly.Suspending !== undefined && WebAssembly.promising !== undefined;
    return promises ? 'promises' : 'asyncify';
  },

  async start() {
    if (typeof WebAssembly !== 'object' || !window.DecompressionStream || !window.HTMLDialogElement) {
      throw new Error('what the game needs is missing');
    }
    const kind = this.kind();
    const [core, packs] = await Promise.all([this.unpack(kind), this.unpack('packs')]);
    await Engine.load(core, kind, (message) => this.tell(message), (message) => this.ask(message));
    await Files.load(Engine.core.FS, packs);
    document.getElementById('Sentence').hidden = true;
    View.listen();
    await View.resize();
    await Engine.send(`start ${Number(Files.refused)} ${Files.damaged.join(', ')}`);
    Files.starting = false;
    if (!View.openBox()) View.focusOn('cmdOptions');
    await Files.sync();
  },
};

Page.started = Page.start();
Page.started.catch((error) => {
  const sentence = document.getElementById('Sentence');
  sentence.hidden = false;
  sentence.textContent = 'Bivouac runs in Chromium and Chrome, in Firefox, and in WebKit browsers such as Safari, each in a ' +
    'version of 2023 or later. This browser cannot run it: ' + error.message + '.';
});
