// Runs the core. A handler of the core may wait for an answer: then other events run, each a call of its own, and it
// goes on only when all that began later have ended, as with event loops one inside another.
'use strict';

globalThis.Engine = {
  calls: [], // Handlers that have not ended, the latest last.
  running: null, // The one that is at work.
  holds: 0, // How many wait for files: events wait with them.
  waiting: [],
  keyUsedLast: false,

  /// Loads the core. `tell` and `ask` take its messages; `ask` returns the answer or a promise of it.
  async load(files, kind, tell, ask) {
    this.kind = kind;
    const make = new Function(new TextDecoder().decode(files['core.js']) + '\nreturn Core;')();
    let instance;
    const core = await make({
      instantiateWasm: (imports, done) => {
        const read = (address) => JSON.parse(core0.UTF8ToString(address));
        imports.env.PageTell = (address) => tell(read(address));
        imports.env.PageAsk = this.suspending((address) => ask(read(address)));
        WebAssembly.instantiate(files['core.wasm'], imports).then((made) => {
          instance = made.instance;
          done(instance, made.module);
        });
        return {};
      },
      preRun: [(module) => { core0 = module; }],
    });
    this.core = core;
    this.exports = instance.exports;
    this.event = kind === 'promises' ? WebAssembly.promising(this.exports.PageEvent) : this.exports.PageEvent;
  },

  /// An import that waits for what a function answers, and puts the text into the core's memory.
  suspending(answer) {
    const text = (value) => {
      const bytes = new TextEncoder().encode(String(value));
      const address = this.exports.malloc(bytes.length + 1);
      this.core.HEAPU8.set(bytes, address);
      this.core.HEAPU8[address + bytes.length] = 0;
      return address;
    };
    if (this.kind === 'promises') {
      return new WebAssembly.Suspending(async (address) => {
        const call = this.running;
        const value = await answer(address);
        await this.turn(call);
        return text(value);
      });
    }
    // Asyncify: the same call is left and, with the answer, entered once more.
    const kRewinding = 2;
    const kRoom = 1 << 17;
    return (address) => {
      const call = this.running;
      if (this.exports.asyncify_get_state() === kRewinding) {
        this.exports.asyncify_stop_rewind();
        return text(call.value);
      }
      if (!call.room) call.room = this.exports.malloc(kRoom);
      this.core.HEAP32.set([call.room + 8, call.room + kRoom], call.room >> 2);
      call.answer = answer(address);
      this.exports.asyncify_start_unwind(call.room);
      return 0;
    };
  },

  /// Returns when the call is the latest, and makes it the one at work.
  async turn(call) {
    while (this.calls[this.calls.length - 1] !== call) await new Promise((resolve) => { call.wake = resolve; });
    this.running = call;
  },

  /// Sends an event to the core; the promise is kept when its handler has ended. While a handler waits for files,
  /// events wait, but for ticks, of which the next will do.
  send(event) {
    if (this.left) return Promise.resolve();
    if (this.holds === 0) return this.run(event);
    if (event.startsWith('timer')) return Promise.resolve();
    return new Promise((resolve) => this.waiting.push(() => this.run(event).then(resolve)));
  },

  async run(event) {
    const call = {};
    this.calls.push(call);
    this.running = call;
    const bytes = new TextEncoder().encode(event);
    const address = this.exports.malloc(bytes.length + 1);
    this.core.HEAPU8.set(bytes, address);
    this.core.HEAPU8[address + bytes.length] = 0;
    try {
      if (this.kind === 'promises') {
        await this.event(address, this.keyUsedLast);
      } else {
        await this.rewound(call, () => this.event(address, this.keyUsedLast));
      }
    } finally {
      this.exports.free(address);
      if (call.room) this.exports.free(call.room);
      this.calls.splice(this.calls.indexOf(call), 1);
      const latest = this.calls[this.calls.length - 1];
      if (latest && latest.wake) latest.wake();
    }
  },

  async rewound(call, enter) {
    enter();
    while (this.exports.asyncify_get_state() !== 0) {
      this.exports.asyncify_stop_unwind();
      call.value = await call.answer;
      await this.turn(call);
      this.exports.asyncify_start_rewind(call.room);
      enter();
    }
  },

  /// Waits for files: events are held until then.
  async hold(work) {
    ++this.holds;
    try {
      return await work;
    } finally {
      if (--this.holds === 0) setTimeout(() => this.flush());
    }
  },

  flush() {
    while (this.holds === 0 && this.waiting.length > 0) this.waiting.shift()();
  },
};
let core0; // The module, from before it has run.
