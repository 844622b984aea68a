// The list of puzzles, as the core tells it, and the picture of a board.
'use strict';

globalThis.List = {
  tiles: [],

  make(change) {
    const dialog = this.dialog = View.dialog('PuzzleList', change.title);
    const [level, needs, unsolved, needsTitle, picture] = change.captions;
    const filters = View.make('div', '', dialog, { class: 'filters' });
    const add = (id, caption, tag, event, attributes = {}) => {
      const label = View.make('label', '', filters);
      const field = View.make(tag, id, label, attributes);
      View.caption(label, field, caption);
      field.onchange = () => Engine.send(`${event} ${tag === 'input' ? Number(field.checked) : field.selectedIndex}`);
    };
    add('LevelFilter', level, 'select', 'list-level');
    add('RuleFilter', needs, 'select', 'list-rule');
    add('UnsolvedFilter', unsolved, 'input', 'list-unsolved', { type: 'checkbox' });
    const middle = View.make('div', '', dialog, { class: 'middle' });
    const table = View.make('table', 'Puzzles', View.make('div', '', middle, { class: 'rows' }),
      { role: 'grid', tabindex: '0', 'aria-label': 'Puzzles' });
    const side = View.make('div', '', middle, { class: 'side' });
    View.make('canvas', 'Picture', side, { role: 'img', 'aria-label': picture, width: 240, height: 240 });
    View.caption(View.make('div', '', side), null, needsTitle);
    View.make('ul', 'Needs', side, { 'aria-label': needsTitle.replace('&', '') });
    View.make('div', 'Summary', dialog, { role: 'status' });
    View.addButtons(View.make('div', '', dialog, { class: 'buttons' }), change.buttons, 'list-press');
    const moves = { ArrowUp: -1, ArrowDown: 1, PageUp: -10, PageDown: 10, Home: -1e6, End: 1e6 };
    table.onkeydown = (event) => {
      if (moves[event.key]) Engine.send('list-move ' + moves[event.key]);
      else if (event.key === 'Enter') Engine.send('list-press Open');
      else return;
      event.preventDefault();
    };
    table.onclick = (event) => {
      const heading = event.target.closest('th'), row = event.target.closest('tr');
      if (heading) Engine.send('list-sort ' + heading.cellIndex);
      else if (row) Engine.send('list-select ' + row.dataset.row);
    };
    table.ondblclick = (event) => event.target.closest('td') && Engine.send('list-press Open');
    dialog.cancel = () => Engine.send('list-press Close');
  },

  draw(change) {
    if (!change.visible) {
      View.hide(this.dialog);
      this.dialog = null;
      return;
    }
    if (!this.dialog) this.make(change);
    const inside = (id) => this.dialog.querySelector('#' + id);
    View.setOptions(inside('LevelFilter'), change.levels, change.level);
    View.setOptions(inside('RuleFilter'), change.rules, change.rule);
    inside('UnsolvedFilter').checked = change.unsolved;
    inside('Summary').textContent = change.summary;
    inside('Needs').replaceChildren(...(change.needs || []).map((text) => {
      const item = document.createElement('li');
      item.textContent = text;
      return item;
    }));
    for (const button of change.buttons) inside(button.id).disabled = !button.enabled;
    this.selected = change.selected;
    this.paint(inside('Picture'), change.picture);
    // What each puzzle needs is found out piece by piece.
    if (change.searches) setTimeout(() => Engine.send('list-needs'));
    this.select(false);
  },

  drawRows(change) {
    const table = this.dialog.querySelector('table');
    table.replaceChildren();
    const head = View.make('tr', '', View.make('thead', '', table));
    change.headings.forEach((text, column) => {
      const sorted = column !== change.sorted ? 'none' : change.descending ? 'descending' : 'ascending';
      View.make('th', '', head, { scope: 'col', 'aria-sort': sorted }).textContent = text;
    });
    const body = View.make('tbody', '', table);
    for (const { row, texts, spoken } of change.rows) {
      const line = View.make('tr', 'Puzzle' + row, body, { 'data-row': row, 'aria-label': spoken });
      for (const text of texts) View.make('td', '', line).textContent = text;
    }
    this.select(true);
  },

  select(anew) {
    const table = this.dialog.querySelector('table');
    const before = table.querySelector('[aria-selected]'), row = table.querySelector('#Puzzle' + this.selected);
    if (before) before.removeAttribute('aria-selected');
    if (!row) return;
    row.setAttribute('aria-selected', 'true');
    table.setAttribute('aria-activedescendant', row.id);
    if (before !== row || anew) setTimeout(() => row.scrollIntoView({ block: anew ? 'center' : 'nearest' }));
  },

  show() {
    const answer = View.show(this.dialog);
    this.dialog.querySelector('table').focus();
    this.select(true);
    return answer;
  },

  tile(number) {
    this.tiles[number] = this.tiles[number] || (async () => {
      const probe = View.make('i', '', document.body, { 'data-tile': number });
      const image = new Image(64, 64);
      image.src = getComputedStyle(probe).backgroundImage.slice(5, -2).replace('%3Csvg%20', '%3Csvg%20width%3D%2264%22%20height%3D%2264%22%20');
      probe.remove();
      await image.decode();
      return image;
    })();
    return this.tiles[number];
  },

  /// Paints fields and clues, each a square.
  async paint(canvas, picture) {
    const pen = canvas.getContext('2d');
    this.painted = picture;
    const images = picture ? await Promise.all([...picture.tiles].map((number) => this.tile(number))) : [];
    if (this.painted !== picture) return; // Another was chosen meanwhile.
    pen.fillStyle = '#e0e0e0';
    pen.fillRect(0, 0, canvas.width, canvas.height);
    if (!picture) return;
    const { size, rows, columns } = picture;
    const side = Math.floor(canvas.width / (size + 1));
    pen.fillStyle = '#000';
    pen.font = `${Math.round(side * 2 / 3)}px system-ui, sans-serif`;
    [pen.textAlign, pen.textBaseline] = ['center', 'middle'];
    for (let line = 0; line < size; ++line) {
      pen.fillText(columns[line], (line + 1.5) * side, side / 2);
      pen.fillText(rows[line], side / 2, (line + 1.5) * side);
    }
    images.forEach((image, i) => pen.drawImage(image, (i % size + 1) * side, (Math.floor(i / size) + 1) * side, side, side));
  },

  /// A picture of a position as a file, 32 pixels a field.
  async file(picture) {
    const canvas = document.createElement('canvas');
    canvas.width = canvas.height = 32 * (picture.size + 1);
    await this.paint(canvas, picture);
    return new Promise((resolve) => canvas.toBlob(resolve, 'image/png'));
  },
};
