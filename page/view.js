// Draws what the core tells, element by element, and sends what the player does. Of the game itself it knows nothing.
'use strict';

globalThis.View = {
  drawing: false,
  byTab: false,
  timers: {},
  keys: {}, // What each key presses: a control, or what has the key's name.
  boxes: [], // Open dialogs, each with what answers it.

  find: (id) => document.getElementById(id),

  make(tag, id, parent, attributes = {}) {
    const element = document.createElement(tag);
    if (id) element.id = id;
    for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
    parent.append(element);
    return element;
  },

  // What an element is in the page.
  kinds: {
    button: ['button'],
    figure: ['div', { role: 'note' }],
    text: ['div', { role: 'note' }],
    link: ['button', { class: 'link' }],
    checkbox: ['input', { type: 'checkbox' }],
    shield: ['div', { role: 'group', 'aria-label': 'Shield' }],
    picture: ['button', { 'aria-label': 'CONTINUE' }],
    clue: ['div', { role: 'note' }],
    bar: ['div', { role: 'group', 'aria-label': 'Status bar', 'aria-description': 'What is known of the current puzzle' }],
    panel: ['div', { role: 'note' }],
    board: ['div', { role: 'grid', 'aria-label': 'Board', 'aria-description':
      'Arrow keys move from field to field, Space changes one, G, T and O make it grass, tent or open' }],
    cell: ['div', { role: 'gridcell', tabindex: '-1' }],
  },

  element(change) {
    const known = this.find(change.id);
    if (known) return known;
    const [tag, attributes] = this.kinds[change.kind];
    const parent = this.find(change.parent || 'Main');
    const element = this.make(tag, change.id, parent, attributes);
    element.classList.add(change.kind);
    if (change.kind === 'bar') this.make('div', 'Announcement', parent, { role: 'status', 'aria-live': 'polite' });
    return element;
  },

  /// One draw. What can be used comes first and what cannot any longer last: the focus goes in between.
  draw(message) {
    this.drawing = true;
    const main = this.find('Main');
    const whole = message.window;
    if (document.title !== whole.title) document.title = whole.title;
    main.setAttribute('aria-label', whole.title);
    if (whole.shown && main.hidden) this.shownAt = performance.now();
    main.hidden = !whole.shown;
    main.classList.toggle('narrow', whole.narrow !== undefined);
    main.style.paddingTop = whole.narrow ? whole.narrow + 'px' : '';
    if (whole.unit) document.documentElement.style.setProperty('--unit', whole.unit / 1000 + 'px');
    const last = message.elements.filter((change) => change.enabled === false || change.visible === false);
    const texts = message.elements.map((change) => this.apply(change)).filter((element) => element);
    if (!main.hidden) texts.forEach((element) => this.fit(element));
    this.drawFrame(whole);
    if (message.focus && !this.openBox()) this.focusOn(message.focus);
    for (const change of last) this.disable(change);
    for (const [number, name] of ['timer1', 'timer2', 'timer3'].entries()) this.setTimer(number + 1, whole[name]);
    this.drawing = false;
  },

  /// Returns the element if its text has to be fitted.
  apply(change) {
    const dialogs = { players: () => this.drawPlayers(change), list: () => List.draw(change), rows: () => List.drawRows(change) };
    if (dialogs[change.kind]) return dialogs[change.kind]();
    const element = this.element(change);
    if (change.kind === 'cell') {
      this.place(element, change.at);
      element.dataset.tile = change.tile;
      element.setAttribute('aria-label', change.label);
      return null;
    }
    if (change.kind === 'board') this.drawBoard(element, change);
    this.place(element, change.at);
    if (change.visible) element.hidden = false;
    if (change.enabled) element.disabled = false;
    if (change.checked !== undefined) element.checked = change.checked;
    if (change.ground) element.style.setProperty('--ground', change.ground);
    if (change.ink) element.style.color = change.ink;
    if (change.colour !== undefined) element.dataset.colour = change.colour;
    if (change.tip) element.title = change.tip;
    if (change.description) element.setAttribute('aria-description', change.description);
    if (change.keys) this.addKeys(element, change);
    if (change.waits !== undefined) this.makeWaiting(element, change);
    if (change.text === undefined) return null;
    if (change.kind === 'checkbox') element.setAttribute('aria-label', change.text);
    else if (element.textContent !== change.text) element.textContent = change.text;
    element.dataset.largest = change.largest;
    return element;
  },

  disable(change) {
    const element = this.find(change.id);
    if (!element || element.tagName === 'DIALOG') return;
    if (change.enabled === false) element.disabled = true;
    if (change.visible === false) element.hidden = true;
  },

  place(element, at) {
    const sides = ['left', 'top', 'width', 'height'];
    sides.forEach((side, i) => { element.style[side] = at ? at[i] + 'px' : ''; });
  },

  addKeys(element, change) {
    for (const key of change.keys.split(' ')) this.keys[key] = change.id;
    element.setAttribute('aria-keyshortcuts', change.keys.replaceAll('Ctrl', 'Control'));
  },

  /// A hint that waits for a click is a button in the shape of a text.
  makeWaiting(element, change) {
    element.setAttribute('role', change.waits ? 'button' : 'note');
    element.setAttribute('aria-label', change.label);
    if (change.waits) element.tabIndex = 0;
    else element.removeAttribute('tabindex');
  },

  drawBoard(board, change) {
    for (const cell of board.querySelectorAll('.cell')) {
      if (Number(cell.id.slice(4)) >= change.cells || change.size !== this.size) cell.remove();
    }
    if (change.size === this.size && board.childElementCount > 0) return;
    this.size = change.size;
    board.replaceChildren();
    board.setAttribute('aria-rowcount', change.size);
    for (let i = 0; i < change.cells; ++i) {
      const row = i % change.size === 0 ? this.make('div', '', board, { role: 'row' }) : board.lastChild;
      this.make('div', 'Grid' + i, row, this.kinds.cell[1]).className = 'cell';
    }
  },

  drawFrame(whole) {
    const before = document.querySelector('.cell[tabindex="0"]');
    const frame = this.find('Grid' + whole.frame);
    if (!frame) return;
    if (before && before !== frame) {
      before.tabIndex = -1;
      before.classList.remove('frame');
    }
    frame.tabIndex = 0;
    frame.classList.toggle('frame', whole.frameShown);
    if (before && before !== frame && document.activeElement === before) frame.focus();
  },

  focusOn(id) {
    const element = id === 'Grid' ? document.querySelector('.cell[tabindex="0"]') : this.find(id);
    if (!element) return;
    element.focus({ preventScroll: true });
    // Some browsers give the focus back to what had it before a box only after this.
    setTimeout(() => {
      if (document.activeElement === document.body) element.focus({ preventScroll: true });
    });
  },

  /// Shrinks a text until it lies wholly within its element.
  fit(element) {
    const fits = () => element.scrollWidth <= element.clientWidth && element.scrollHeight <= element.clientHeight;
    const largest = Number(element.dataset.largest);
    const shrink = (least) => {
      for (let size = largest; size >= least; --size) {
        element.style.fontSize = size + 'px';
        if (fits()) return true;
      }
      return false;
    };
    element.style.fontSize = largest + 'px';
    if (!element.style.width) return; // It takes the room that it needs.
    // A panel whose text would be too small on one line gets two.
    element.style.whiteSpace = element.classList.contains('panel') ? 'nowrap' : '';
    if (element.style.whiteSpace && shrink(Math.round(largest * 9 / 11))) return;
    element.style.whiteSpace = '';
    shrink(1);
  },

  setTimer(number, interval) {
    const timer = this.timers[number] || { interval: 0 };
    if (timer.interval === interval) return;
    clearInterval(timer.id);
    this.timers[number] = { interval, id: interval ? setInterval(() => Engine.send('timer ' + number), interval) : 0 };
  },

  openBox: () => document.querySelector('dialog[open]'),

  /// Shows a dialog; the promise gives what `close` is called with.
  show(dialog) {
    document.body.append(dialog);
    dialog.showModal();
    return new Promise((resolve) => {
      const close = (value) => {
        this.boxes = this.boxes.filter((box) => box.dialog !== dialog);
        this.drawing = true; // The focus comes back, which is no news to the core.
        dialog.close();
        this.drawing = false;
        if (dialog.id !== 'FormNamen') dialog.remove();
        resolve(value);
      };
      this.boxes.push({ dialog, close });
    });
  },

  boxOf(dialog) {
    return this.boxes.find((box) => box.dialog === dialog);
  },

  hide(dialog) {
    const box = this.boxOf(dialog);
    if (box) box.close('');
  },

  dialog(id, title, text) {
    const dialog = document.createElement('dialog');
    dialog.id = id;
    dialog.setAttribute('aria-label', title);
    this.make('h1', '', dialog).textContent = title;
    dialog.oncancel = (event) => {
      event.preventDefault();
      dialog.cancel();
    };
    if (text !== undefined) this.make('p', '', dialog).textContent = text.replace(/\r\n|\n\r|\r/g, '\n');
    return dialog;
  },

  /// A caption whose letter behind "&" presses what it is of.
  caption(label, field, text) {
    label.prepend(text.replace('&', '') + ' ');
    if (field) field.accessKey = text[text.indexOf('&') + 1].toLowerCase();
  },

  addButtons(row, buttons, event) {
    for (const button of buttons) {
      const made = this.make('button', button.id, row, { 'aria-description': button.description });
      made.textContent = button.text.replace('&', '');
      made.accessKey = button.text[button.text.indexOf('&') + 1].toLowerCase();
      made.onclick = () => Engine.send(`${event} ${button.id}`);
    }
  },

  setOptions(list, texts, selected) {
    if ([...list.options].map((option) => option.text).join('\n') !== texts.join('\n')) {
      list.replaceChildren(...texts.map((text) => new Option(text)));
    }
    list.selectedIndex = selected;
  },

  askBox(message) {
    const dialog = this.dialog('MessageBox', message.title, message.text);
    dialog.dataset.symbol = message.symbol;
    if (message.symbol) dialog.setAttribute('role', 'alertdialog');
    const row = this.make('div', '', dialog, { class: 'buttons' });
    const names = message.buttons.split(' ');
    const buttons = names.map((name) => {
      const button = this.make('button', name, row);
      button.textContent = name;
      button.onclick = () => this.boxOf(dialog).close(name);
      return button;
    });
    dialog.cancel = () => buttons[buttons.length - 1].click();
    const answer = this.show(dialog);
    buttons[Math.max(0, names.indexOf(message.enter))].focus();
    return answer;
  },

  askInput(message) {
    const dialog = this.dialog('InputBox', message.title);
    const form = this.make('form', '', dialog, { method: 'dialog' });
    this.make('label', 'Prompt', form, { for: 'Field' }).textContent = message.text;
    const field = this.make('input', 'Field', form, { 'aria-label': 'Answer', autocomplete: 'off' });
    field.value = message.value;
    const row = this.make('div', '', form, { class: 'buttons' });
    this.make('button', 'OK', row).textContent = 'OK';
    const cancel = this.make('button', 'Cancel', row, { type: 'button' });
    cancel.textContent = 'Cancel';
    cancel.onclick = () => this.boxOf(dialog).close('');
    form.onsubmit = (event) => {
      event.preventDefault();
      this.boxOf(dialog).close(field.value);
    };
    dialog.cancel = () => cancel.click();
    const answer = this.show(dialog);
    field.select();
    return answer;
  },

  /// The dialog of the players is open until a draw says that it is hidden.
  askPlayers() {
    return this.show(this.find('FormNamen') || this.players);
  },

  makePlayers(form) {
    const { formNames, textNames, listNames, fieldNames } = form;
    const dialog = this.players = this.dialog(formNames.id, formNames.label);
    const name = (element, names) => {
      element.setAttribute('aria-label', names.label);
      element.setAttribute('aria-description', names.description);
      return element;
    };
    name(dialog, formNames);
    name(this.make('p', textNames.id, dialog), textNames).textContent = textNames.label;
    const row = this.make('div', '', dialog, { class: 'players' });
    const column = this.make('div', '', row, { class: 'names' });
    const list = name(this.make('select', listNames.id, column, { size: '8' }), listNames);
    const field = name(this.make('input', fieldNames.id, column, { autocomplete: 'off' }), fieldNames);
    const buttons = this.make('div', '', row, { class: 'buttons' });
    this.addButtons(buttons, form.buttons, 'player-press');
    list.onchange = () => Engine.send('player-select ' + list.selectedIndex);
    list.ondblclick = () => Engine.send('player-double');
    list.onkeydown = (event) => {
      if (event.key === 'Enter') Engine.send('player-enter');
      else if (/^Arrow(Up|Down)$/.test(event.key) && list.selectedIndex < 0) Engine.send('player-arrow');
      else return;
      event.preventDefault();
    };
    field.oninput = (event) => {
      if (event.isComposing) return;
      const [text, cursor] = [field.value, field.selectionStart];
      Engine.send('player-type ' + text.slice(0, cursor) + '\n' + text.slice(cursor)).then(() => this.drawName());
    };
    field.onkeydown = (event) => {
      if (event.isComposing || (event.key !== 'Enter' && event.key !== 'Escape')) return;
      event.preventDefault();
      Engine.send(event.key === 'Enter' ? 'player-keep' : 'player-escape');
    };
    dialog.cancel = () => Engine.send('player-escape');
  },

  /// Returns nothing, as there is no text to fit.
  drawPlayers(form) {
    if (!form.visible) {
      this.hide(this.players);
      this.drawnFocus = '';
      return;
    }
    if (!this.players) this.makePlayers(form);
    const inside = (id) => this.players.querySelector('#' + id);
    const [list, field] = [inside('NaamLijst'), inside('NaamInvoerveld')];
    this.setOptions(list, form.items, form.selected);
    list.disabled = !form.list;
    field.disabled = !form.field;
    this.name = form.name;
    this.drawName();
    for (const button of form.buttons) inside(button.id).disabled = !button.enabled;
    if (this.drawnFocus === form.focus) return;
    this.drawnFocus = form.focus;
    setTimeout(() => inside(form.focus).focus());
  },

  /// What was typed may have been more than the field takes.
  drawName() {
    const field = this.find('NaamInvoerveld');
    if (!field || field.value === this.name) return;
    const behind = field.value.length - field.selectionStart;
    field.value = this.name;
    field.setSelectionRange(this.name.length - behind, this.name.length - behind);
  },

  /// Says a sentence; `shown`: to eyes too, over the board for a while.
  say(text, shown) {
    if (shown) {
      const note = this.find('Told') || this.make('div', 'Told', document.body, { 'aria-hidden': 'true' });
      note.textContent = text;
      clearTimeout(this.told);
      this.told = setTimeout(() => note.remove(), 3000);
    }
    const bar = this.find('Announcement');
    bar.textContent = '';
    setTimeout(() => { bar.textContent = text; }, 20);
  },

  /// The game has ended: what is open closes, and a sentence tells how to come back.
  leave(status) {
    for (const id of Object.keys(this.timers)) this.setTimer(id, 0);
    for (const box of [...this.boxes].reverse()) box.close('');
    const page = document.createElement('div');
    page.id = 'Ended';
    this.make('h1', '', page).textContent = status === 0 ? 'Bivouac has ended.' : 'Bivouac has ended with an error.';
    this.make('p', '', page).textContent =
      'Puzzles and times are kept in this browser. To play again, load this page again.';
    const add = (id, caption, work) => {
      const button = this.make('button', id, page);
      button.textContent = caption;
      button.onclick = async () => {
        await work();
        location.reload();
      };
    };
    add('Again', 'Play again', () => {});
    // Of damaged settings there is no file that a player could change.
    if (status !== 0 && !this.shownAt) add('Forget', 'Forget settings and players\u2019 names', () => Files.write([], ['/data/settings']));
    document.body.replaceChildren(page);
    this.find('Again').focus();
  },

  /// The name that the table of keys knows a press by.
  nameOf(event) {
    const key = event.key.length === 1 ? event.key.toUpperCase() : event.key.replace('Arrow', '');
    return (event.ctrlKey || event.metaKey ? 'Ctrl+' : '') + (event.altKey ? 'Alt+' : '') +
      (event.shiftKey ? 'Shift+' : '') + key;
  },

  /// Returns whether the key was used.
  takeKey(event, target) {
    const control = event.ctrlKey || event.metaKey;
    if (target.classList.contains('cell') && !event.altKey) {
      const [press, moves] = [/^( |Enter)$/, /^(Arrow\w+|PageUp|PageDown|Home|End)$/];
      const key = event.key.length === 1 ? event.key.toLowerCase() : event.key;
      const arrow = control && key.startsWith('Arrow');
      if (!arrow && (press.test(key) || moves.test(key) || (!control && /^[gto]$/.test(key)))) {
        Engine.send((event.repeat ? 'repeat ' : control ? 'control ' : 'key ') + key);
        return true;
      }
    }
    const isPress = event.key === 'Enter' || event.key === ' ';
    if (isPress && target.id === 'lblHint') return !event.repeat && this.send('press lblHint');
    if (isPress && target.id === 'optSound' && event.key === 'Enter') return target.click() || true;
    if (event.key === 'Escape') return this.send('escape');
    const name = this.nameOf(event);
    if (this.keys[name]) return event.repeat || this.send('key-press ' + this.keys[name]);
    if (name === 'D') return event.repeat || this.save();
    return false;
  },

  send(event) {
    Engine.send(event);
    return true;
  },

  /// What the core gave to a press that copies; its picture follows where the browser takes one.
  copy(copied) {
    this.copied = copied;
    if (!copied.picture || !window.ClipboardItem || !navigator.clipboard) return;
    const text = new Blob([copied.text], { type: 'text/plain' });
    const both = new ClipboardItem({ 'text/plain': text, 'image/png': List.file(copied.picture) });
    navigator.clipboard.write([both]).catch(() => {});
  },

  save() {
    const link = document.createElement('a');
    link.download = 'bivouac.tar';
    link.href = URL.createObjectURL(Files.archive());
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 1000);
    return true;
  },

  listen() {
    addEventListener('keydown', (event) => {
      Engine.keyUsedLast = true;
      this.byTab = event.key === 'Tab';
      if (this.openBox() || event.isComposing) return;
      if (this.takeKey(event, event.target)) event.preventDefault();
    });
    addEventListener('pointerdown', () => {
      Engine.keyUsedLast = false;
      this.byTab = false;
    }, true);
    // A press on what is no button takes the focus from nothing. A field takes the press itself, of any button.
    const isOpen = (cell) => cell && cell.classList.contains('cell') && cell.dataset.tile === '0';
    let dragged = null; // The last field of a drag from an open field over open fields, each of which it clicks once.
    addEventListener('mousedown', (event) => {
      if (this.openBox()) return;
      const target = event.target.closest('.button, .checkbox, .cell');
      if (target) target.focus({ preventScroll: true });
      event.preventDefault();
      dragged = isOpen(target) ? target : null;
      if (target && target.classList.contains('cell')) Engine.send('field ' + target.id.slice(4));
    });
    addEventListener('mouseup', () => { dragged = null; });
    addEventListener('mouseover', (event) => {
      if (event.buttons === 0) dragged = null;
      if (!dragged || event.target === dragged || !isOpen(event.target) || this.openBox()) return;
      dragged = event.target;
      Engine.send('field ' + dragged.id.slice(4));
    });
    const click = (event) => {
      if (this.openBox()) return;
      const target = event.target.closest('[id]');
      if (!target || !target.closest('#Main')) return;
      if (target.id === 'optSound') Engine.send('sound ' + Number(target.checked));
      else if (!target.classList.contains('cell')) Engine.send('press ' + target.id);
      else if (event.detail === 0) Engine.send('tool ' + target.id.slice(4));
    };
    addEventListener('click', click);
    addEventListener('auxclick', click);
    addEventListener('contextmenu', (event) => event.preventDefault());
    addEventListener('focusin', (event) => {
      if (this.drawing || this.openBox()) return;
      const id = event.target.classList.contains('cell') ? 'Grid' : event.target.id;
      Engine.send((this.byTab ? 'tab ' : 'focus ') + id);
    });
    addEventListener('copy', (event) => {
      this.copied = null;
      if (this.openBox() || !this.send('copy') || !this.copied) return;
      event.clipboardData.setData('text/plain', this.copied.text);
      event.preventDefault();
    });
    addEventListener('paste', (event) => {
      if (!this.openBox()) Engine.send('paste ' + event.clipboardData.getData('text/plain'));
    });
    // Some browsers offer both only where this is said.
    for (const name of ['beforecopy', 'beforepaste']) addEventListener(name, (event) => this.openBox() || event.preventDefault());
    document.addEventListener('visibilitychange', () => document.hidden && Engine.send('press cmdPause'));
    addEventListener('resize', () => this.resize());
    addEventListener('dragover', (event) => event.preventDefault());
    addEventListener('drop', (event) => {
      event.preventDefault();
      this.drop([...event.dataTransfer.files]);
    });
  },

  async drop(files) {
    const FS = Engine.core.FS;
    for (const file of files) {
      const bytes = new Uint8Array(await file.arrayBuffer());
      FS.chdir('/tmp'); // What is said of the file names it alone.
      FS.writeFile(file.name, bytes);
      await Engine.send('drop ' + file.name);
      FS.unlink(file.name);
    }
  },

  resize() {
    return Engine.send(`size ${document.documentElement.clientWidth} ${innerHeight}`);
  },
};
