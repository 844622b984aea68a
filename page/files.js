// The files of the game: in the memory of the core while it runs, and in the browser's database, which all tabs share.
'use strict';

globalThis.Files = {
  known: new Map(), // By path: what the database holds, as far as is known here.
  held: new Map(), // By descriptor: what lets go of a lock.
  damaged: [],
  refused: false,
  starting: true, // Files of the start are synced once it is over.
  kAgain: 6, // Numbers of <cerrno>.
  kDevice: 29,
  kFull: 51,

  /// Fills the memory of the core. `own` are the files that the page carries.
  async load(FS, own) {
    this.FS = FS;
    for (const folder of ['/program', '/data', '/data/Bvc']) FS.mkdir(folder);
    for (const [name, bytes] of Object.entries(own)) FS.writeFile('/program/' + name, bytes);
    const close = FS.close;
    FS.close = (stream) => { // With a file goes its lock.
      this.free(stream.fd);
      close(stream);
    };
    // What another tab has written is read here as well.
    this.channel = new BroadcastChannel('bivouac');
    this.channel.onmessage = (event) => event.data.forEach((path) => this.refresh(path));
    try {
      this.database = await new Promise((resolve, reject) => {
        const request = indexedDB.open('bivouac', 1);
        request.onupgradeneeded = () => request.result.createObjectStore('files');
        request.onsuccess = () => resolve(request.result);
        request.onerror = request.onblocked = () => reject(request.error);
      });
      await this.loadAll();
    } catch (error) {
      this.refused = true;
    }
  },

  async loadAll() {
    const store = this.database.transaction('files').objectStore('files');
    const [paths, contents] = await Promise.all([this.result(store.getAllKeys()), this.result(store.getAll())]);
    paths.forEach((path, i) => {
      if (contents[i] instanceof Uint8Array && /^\/data\/(Bvc\/)?[^/]+$/.test(path)) {
        this.FS.writeFile(path, contents[i]);
        this.known.set(path, contents[i]);
      } else {
        this.damaged.push(String(path).replace(/.*\//, ''));
        this.known.set(path, new Uint8Array(0));
      }
    });
  },

  result(request) {
    return new Promise((resolve, reject) => {
      request.onsuccess = () => resolve(request.result);
      request.onerror = () => reject(request.error);
    });
  },

  same(a, b) {
    let i = a !== undefined && a.length === b.length ? a.length : -1;
    while (i > 0 && a[i - 1] === b[i - 1]) --i;
    return i === 0;
  },

  paths() {
    const isOurs = (name) => !name.startsWith('.') && name !== 'temphtm.HTM';
    const list = (folder) => this.FS.readdir(folder).filter(isOurs).map((name) => folder + '/' + name);
    return [...list('/data').filter((path) => path !== '/data/Bvc'), ...list('/data/Bvc')];
  },

  /// Brings every change to the database. Returns 0, or what went wrong.
  sync() {
    if (this.refused || this.starting) return 0;
    const paths = this.paths();
    const changed = paths.map((path) => [path, this.FS.readFile(path)])
      .filter(([path, bytes]) => !this.same(this.known.get(path), bytes));
    const removed = [...this.known.keys()].filter((path) => !paths.includes(path));
    return changed.length + removed.length === 0 ? 0 : this.write(changed, removed);
  },

  async write(written, removed) {
    try {
      const turn = this.database.transaction('files', 'readwrite', { durability: 'strict' });
      const done = new Promise((resolve, reject) => {
        turn.oncomplete = resolve;
        turn.onabort = () => reject(turn.error);
      });
      const store = turn.objectStore('files');
      for (const [path, bytes] of written) {
        if (this.known.has(path)) {
          store.put(bytes, path);
        } else { // What another tab has begun meanwhile stays.
          store.getKey(path).onsuccess = (event) => {
            if (event.target.result === undefined) store.put(bytes, path);
          };
        }
      }
      for (const path of removed) store.delete(path);
      await done;
    } catch (error) {
      return error && error.name === 'QuotaExceededError' ? this.kFull : this.kDevice;
    }
    for (const [path, bytes] of written) this.known.set(path, bytes);
    for (const path of removed) this.known.delete(path);
    this.channel.postMessage(written.map(([path]) => path));
    this.persist();
    return 0;
  },

  /// Asks once that the browser keeps the database when it needs room.
  persist() {
    const kAsked = '/data/asked';
    if (this.FS.analyzePath(kAsked).exists || !navigator.storage || !navigator.storage.persist) return;
    this.FS.writeFile(kAsked, new Uint8Array(0));
    navigator.storage.persist().catch(() => {});
  },

  /// Locks, waits for or frees a file, as flock does. With a lock comes what other tabs have changed.
  lock(descriptor, operation) {
    const [kShared, kDoNotWait, kFree] = [1, 4, 8];
    if (operation & kFree) return this.free(descriptor);
    if (this.refused || this.starting || !navigator.locks) return 0;
    const path = this.FS.getStream(descriptor).path;
    if (path.includes('/.')) return 0; // Of a file that has not got its name yet.
    const mode = operation & kShared ? 'shared' : 'exclusive';
    // Nothing stands still while a page waits, and a turn of another tab lasts until its database has it.
    const kPatience = 5000;
    return this.take(descriptor, path, operation & kDoNotWait ? { mode, signal: AbortSignal.timeout(kPatience) } : { mode });
  },

  async take(descriptor, path, how) {
    const got = await new Promise((resolve) => {
      navigator.locks.request('bivouac ' + path, how, () => new Promise((free) => {
        this.held.set(descriptor, free);
        resolve(true);
      })).catch((error) => resolve(error.name !== 'TimeoutError')); // Where there are no locks, nobody waits.
    });
    if (!got) return this.kAgain;
    await this.refresh(path);
    return 0;
  },

  free(descriptor) {
    const free = this.held.get(descriptor);
    this.held.delete(descriptor);
    if (free) Promise.resolve(this.sync()).then(free);
    return 0;
  },

  async refresh(path) {
    try {
      const bytes = await this.result(this.database.transaction('files').objectStore('files').get(path));
      if (!(bytes instanceof Uint8Array) || this.same(this.known.get(path), bytes)) return;
      this.known.set(path, bytes);
      this.FS.writeFile(path, bytes);
    } catch (error) {
      // What is known here has to do.
    }
  },

  /// All packs and times in one archive.
  archive() {
    const text = new TextEncoder();
    const blocks = [];
    for (const path of this.paths().filter((path) => path.endsWith('.bvq'))) {
      const bytes = this.FS.readFile(path);
      const head = new Uint8Array(512);
      const put = (at, value) => head.set(text.encode(value), at);
      put(0, path.replace('/data/', ''));
      put(100, '0000644\0' + '0000000\0' + '0000000\0');
      put(124, bytes.length.toString(8).padStart(11, '0') + '\0');
      put(136, Math.floor(Date.now() / 1000).toString(8).padStart(11, '0') + '\0');
      put(148, '        0'); // The sum is made with blanks in its place; an ordinary file.
      put(257, 'ustar\0' + '00');
      const sum = head.reduce((total, byte) => total + byte, 0);
      put(148, sum.toString(8).padStart(6, '0') + '\0 ');
      blocks.push(head, bytes, new Uint8Array((512 - (bytes.length % 512)) % 512));
    }
    return new Blob([...blocks, new Uint8Array(1024)], { type: 'application/x-tar' });
  },
};
