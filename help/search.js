// The search of the help. `helpIndex` and `helpWords` are made when the help is built
// (search-index.js), so that no page has to be read: a browser lets a page from a folder read no other.
'use strict';

(() => {
  // Letters without their marks, so that "ubersetzen" finds "übersetzen".
  const plain = (text) =>
    text.normalize('NFD').replace(/[\u0300-\u036f]/g, '').toLowerCase().replace(/ß/g, 'ss');

  const words = (query) => plain(query).split(/[\s"'„“”»«,;]+/).filter((word) => word !== '');

  // 2 if a word of the text begins like this, 1 if it stands elsewhere, else 0.
  function holds(text, word) {
    const folded = plain(text);
    let best = 0;
    for (let at = folded.indexOf(word); at >= 0 && best < 2; at = folded.indexOf(word, at + 1)) {
      best = at === 0 || !/[\p{L}\p{N}]/u.test(folded[at - 1]) ? 2 : 1;
    }
    return best;
  }

  // How well a section fits: 0 if a word is missing; words of the headings count most.
  function weight(section, wanted) {
    let sum = 0;
    for (const word of wanted) {
      const fit = 6 * holds(section.heading, word) + 2 * holds(section.page, word) +
        holds(section.text, word);
      if (fit === 0) return 0;
      sum += fit;
    }
    return sum;
  }

  function find(query) {
    const wanted = words(query);
    if (wanted.length === 0) return [];
    return helpIndex
      .map((section, order) => ({ section, order, weight: weight(section, wanted) }))
      .filter((hit) => hit.weight > 0)
      .sort((a, b) => b.weight - a.weight || a.order - b.order)
      .map((hit) => hit.section);
  }

  // Where words begin and end in a text, as pairs. A letter and its plain form may differ in length.
  function places(text, wanted) {
    const from = [];
    let folded = '';
    for (let i = 0; i < text.length; ++i) {
      const piece = plain(text[i]);
      for (let k = 0; k < piece.length; ++k) from.push(i);
      folded += piece;
    }
    const found = [];
    for (const word of wanted) {
      for (let at = folded.indexOf(word); at >= 0; at = folded.indexOf(word, at + word.length)) {
        found.push([from[at], from[at + word.length - 1] + 1]);
      }
    }
    return found.sort((a, b) => a[0] - b[0]);
  }

  // Appends the text to an element, with the words marked. Only text is set, never HTML.
  function appendMarked(element, text, wanted) {
    let done = 0;
    for (const [begin, end] of places(text, wanted)) {
      if (begin < done) continue;
      element.append(text.slice(done, begin));
      const mark = document.createElement('mark');
      mark.textContent = text.slice(begin, end);
      element.append(mark);
      done = end;
    }
    element.append(text.slice(done));
  }

  // Some words around the first place.
  function excerpt(text, wanted) {
    const first = places(text, wanted)[0];
    const begin = first ? Math.max(0, text.lastIndexOf(' ', Math.max(0, first[0] - 60)) + 1) : 0;
    const end = text.indexOf(' ', begin + 180);
    return (begin > 0 ? '… ' : '') + text.slice(begin, end < 0 ? undefined : end) +
      (end < 0 ? '' : ' …');
  }

  function show(query) {
    const hits = find(query);
    const wanted = words(query);
    const count = hits.length;
    const sentence = wanted.length === 0 ? helpWords.empty
      : count === 0 ? helpWords.none : count === 1 ? helpWords.one : helpWords.many;
    document.getElementById('count').textContent =
      sentence.replace('#', String(count)).replace('%', () => query.trim());
    const list = document.getElementById('found');
    list.replaceChildren();
    for (const hit of hits) {
      const item = document.createElement('li');
      const link = document.createElement('a');
      link.href = hit.address;
      appendMarked(link, hit.heading, wanted);
      item.append(link);
      if (hit.heading !== hit.page) {
        const where = document.createElement('span');
        where.className = 'where';
        where.textContent = hit.page;
        item.append(where);
      }
      const text = document.createElement('div');
      appendMarked(text, excerpt(hit.text, wanted), wanted);
      item.append(text);
      list.append(item);
    }
  }

  const query = new URLSearchParams(location.search).get('q') || '';
  const field = document.getElementById('q');
  field.value = query;
  field.addEventListener('input', () => show(field.value));
  show(query);
})();
