// The script of the page, and of the service worker that keeps the page for the time without a
// network. The corrector is the WebAssembly module; this file carries keys up to it and text down,
// and decides nothing about words.
//
// Whatever is not understood is left to the browser, and the corrector is told that the word before
// the caret is not known.
'use strict';

// Filled in by packaging/web/build.
const FILES = {version: '@VERSION@', wasm: 'tessarok.wasm?@VERSION@', words: 'tessarok.words?@VERSION@',
  // Of this the host knows nothing: the words as they are kept.
  unzippedWords: 'tessarok.words?@VERSION@&unzipped'};
const WORDS_SIZE = Number('@WORDS_SIZE@');
const CACHE = 'tessarok-' + FILES.version;

// ── Without a network ────────────────────────────────────────────────────────────────────────────

/** Pages come from the network while there is one, so that a new version shows; the rest of a
    version never changes and comes from the cache. */
function serveOffline() {
  const isOfVersion = (url) => url.search === '?' + FILES.version;
  self.addEventListener('install', () => self.skipWaiting());
  self.addEventListener('activate', (event) => event.waitUntil(self.clients.claim()));
  self.addEventListener('fetch', (event) => {
    const url = new URL(event.request.url);
    if (event.request.method !== 'GET' || url.origin !== self.location.origin) return;
    event.respondWith((async () => {
      const cache = await caches.open(CACHE);
      const kept = await cache.match(event.request, {ignoreVary: true});
      if (kept && isOfVersion(url)) return kept;
      try {
        return await fetch(event.request);
      } catch (error) {
        const isPage = url.pathname.endsWith('/') || url.pathname.endsWith('/index.html');
        const page = kept ?? (isPage ? await cache.match('./') : null);
        if (page) return page;
        throw error;
      }
    })());
  });
}

/** Keeps this version and forgets the others. The module and the words were kept as they came. */
async function keepForOffline(cache) {
  await Promise.all(['./', 'tessarok.js?' + FILES.version].map((file) => cache.add(file)));
  for (const name of await caches.keys())
    if (name.startsWith('tessarok-') && name !== CACHE) await caches.delete(name);
  await navigator.serviceWorker.register('tessarok.js?' + FILES.version, {updateViaCache: 'all'});
}

// ── The module ───────────────────────────────────────────────────────────────────────────────────

const MODIFIERS = {capsLock: 0x10000, shift: 0x20000, control: 0x40000, option: 0x80000, command: 0x100000};
const BACKSPACE = 51;
const UNITS = 1024;

/** The corrector, with texts in place of addresses. */
class Corrector {
  constructor(exports) {
    this.exports = exports;
    this.codes = new Map();
    this.at = exports.exchange();
  }

  static async load(response) {
    let memory = null;
    const clock = (_, __, at) => {
      const now = BigInt(Math.round(performance.now() * 1e6));
      new DataView(memory.buffer).setBigUint64(at, now, true);
      return 0;
    };
    const random = (at, size) => {
      crypto.getRandomValues(new Uint8Array(memory.buffer, at, size));
      return 0;
    };
    const stop = () => { throw new Error('the module has ended'); };
    const imports = {
      env: {emscripten_notify_memory_growth: () => {}, getentropy: random},
      wasi_snapshot_preview1: {clock_time_get: clock, proc_exit: stop},
    };
    // As a stream the browser keeps what it has compiled; not every host knows the type.
    const isTyped = response.headers.get('content-type') === 'application/wasm';
    const {instance} = isTyped ? await WebAssembly.instantiateStreaming(response, imports) :
        await WebAssembly.instantiate(await response.arrayBuffer(), imports);
    memory = instance.exports.memory;
    instance.exports._initialize();
    return new Corrector(instance.exports);
  }

  giveBytes(bytes) {
    const at = this.exports.bytes(bytes.length);
    new Uint8Array(this.exports.memory.buffer, at, bytes.length).set(bytes);
  }
  giveText(text) { this.giveBytes(new TextEncoder().encode(text)); }

  launch(words) {
    this.exports.advanceTo(performance.now() / 1000);
    this.giveBytes(words);
    return this.exports.launch() === 1;
  }

  /** The number of a key by its `KeyboardEvent.code`; -1 for one that means nothing here. */
  codeOf(name) {
    let code = this.codes.get(name);
    if (code === undefined) {
      this.giveText(name);
      code = this.exports.keyNamed();
      this.codes.set(name, code);
    }
    return code;
  }

  keyDown(code, modifiers, repeat) {
    this.exports.advanceTo(performance.now() / 1000);
    this.exports.keyDown(code, modifiers, repeat ? 1 : 0);
    return this.edit();
  }
  keyUp(code, modifiers) { this.exports.keyUp(code, modifiers); }
  textTyped(text) {
    this.exports.advanceTo(performance.now() / 1000);
    const size = Math.min(text.length, UNITS);
    const units = new Uint16Array(this.exports.memory.buffer, this.at, UNITS);
    for (let i = 0; i < size; ++i) units[i] = text.charCodeAt(i);
    this.exports.textTyped(size);
    return this.edit();
  }
  /** What the last call wants of the field. The memory may have moved. */
  edit() {
    const numbers = new Uint32Array(this.exports.memory.buffer, this.at + 2 * UNITS, 4);
    const [erase, textUnits, keyTextUnits, passes] = numbers;
    const units = new Uint16Array(this.exports.memory.buffer, this.at, UNITS);
    return {
      erase,
      text: textUnits ? String.fromCharCode(...units.subarray(0, textUnits)) : '',
      keyText: keyTextUnits ? String.fromCharCode(...units.subarray(textUnits, textUnits + keyTextUnits)) : '',
      passes: passes === 1,
    };
  }

  click() { this.exports.click(); }
  focusMoved() { this.exports.focusMoved(); }
  tick() { this.exports.advanceTo(performance.now() / 1000); }
  get isRussian() { return this.exports.layout() === 1; }
  selectLayout(isRussian) { this.exports.selectLayout(isRussian ? 1 : 0); }
  get isPaused() { return this.exports.isPaused() === 1; }
  isPackOn(index) { return this.exports.isPackOn(index) === 1; }
  togglePack(index) { this.exports.togglePack(index); }

  /** Of the last word: what was typed, a verdict, what it became, the steps; null before one. */
  explain() {
    const size = this.exports.explain();
    if (size === 0) return null;
    const bytes = new Uint8Array(this.exports.memory.buffer, this.exports.bytesAddress(), size);
    const [typed, verdict, became, ...steps] = new TextDecoder().decode(bytes).split('\n');
    return {typed, verdict, became, steps};
  }
}

// ── The text fields ──────────────────────────────────────────────────────────────────────────────

/** What keys do to a field that have gone through the corrector. */
const TYPING = new Set(['insertText', 'insertLineBreak', 'insertParagraph', 'deleteContentBackward',
  'deleteContentForward']);
/** Changes that an undo may come back to. */
const MOST_REPLACED = 200;
const TEXT_INPUTS = new Set(['text', 'search']);
const MODIFIER_KEYS = new Set(['Shift', 'Control', 'Alt', 'Meta', 'AltGraph', 'CapsLock', 'Fn', 'NumLock', 'ScrollLock']);

/** Keys that type a letter in one of the two layouts, but for the one that pauses. */
const LETTER_KEYS = /^(Key[A-Z]|Bracket(Left|Right)|Semicolon|Quote|Comma|Period)$/;

/** The word that is begun before the corrector is there: a page is typed into as soon as it shows.
    The keys type as ever, and the corrector hears of them when it comes. */
class EarlyWord {
  constructor() {
    this.begin();
    this.listeners = new AbortController();
    const on = (type, handler) =>
      document.addEventListener(type, handler.bind(this), {capture: true, signal: this.listeners.signal});
    on('keydown', this.onKeyDown);
    on('input', this.onInput);
    for (const type of ['pointerdown', 'focusin', 'focusout']) on(type, this.begin);
  }

  begin() {
    this.presses = [];
    this.caret = 0;
    this.isKnown = true;
  }
  onKeyDown(event) {
    if (MODIFIER_KEYS.has(event.key)) return;
    const isLetter = LETTER_KEYS.test(event.code) && !event.isComposing && !Fields.isShortcut(event);
    this.press = isLetter ? event : null;
  }
  onInput(event) {
    const {press} = this;
    this.press = null;
    if (event.inputType === 'insertLineBreak' || event.data === ' ') return this.begin();
    this.isKnown = this.isKnown && event.data !== null && event.data === press?.key;
    this.presses.push(press);
    this.caret = event.target.selectionEnd;
  }

  /** Hears no more. The key presses of the word before the caret; absent when they are not known. */
  end() {
    this.listeners.abort();
    const field = Fields.fieldOf(document.activeElement);
    if (this.presses.length === 0) return [];
    if (!this.isKnown || !field || field.selectionStart !== this.caret) return null;
    const typed = this.presses.map((press) => press.key).join('');
    return field.value.slice(0, this.caret).endsWith(typed) ? this.presses : null;
  }
}

/** The keys of every text field of the document, on their way through the corrector. */
class Fields {
  /** `onFailure` is called once, when the corrector has failed; from then on the fields are ordinary. */
  constructor(corrector, onChange, onFailure) {
    this.corrector = corrector;
    this.onChange = onChange;
    this.hasFailed = false;
    /** Where the corrector believes the caret to be. */
    this.known = {field: null, caret: 0, length: 0};
    /** Changes that this script makes are no news. */
    this.isOurs = false;
    /** The key in hand has gone through the corrector; what the browser does with it is known. */
    this.isTold = false;
    this.composed = null;
    /** A composition that has ended and that the corrector has not been told of. */
    this.ended = null;
    /** What was erased, and where. */
    this.replaced = [];
    this.systemLayout = null;
    const on = (type, handler) => document.addEventListener(type, (event) => {
      const field = this.hasFailed ? null : Fields.fieldOf(event.target);
      if (!field) return;
      try {
        handler.call(this, event, field);
      } catch (error) {
        // The key goes on to the field.
        this.hasFailed = true;
        this.isOurs = false;
        onFailure(error);
      }
    }, true);
    on('keydown', this.onKeyDown);
    on('keyup', this.onKeyUp);
    on('beforeinput', this.onBeforeInput);
    on('input', this.onInput);
    on('compositionstart', this.onCompositionStart);
    on('compositionend', this.onCompositionEnd);
    on('pointerdown', () => { this.corrector.click(); });
    on('focusin', (_, field) => { this.corrector.focusMoved(); this.remember(field); });
    on('focusout', () => { this.corrector.focusMoved(); this.isTold = false; });
    window.addEventListener('blur', () => { if (!this.hasFailed) this.corrector.focusMoved(); });
  }

  static fieldOf(element) {
    if (element instanceof HTMLTextAreaElement) return element.readOnly ? null : element;
    if (!(element instanceof HTMLInputElement) || element.readOnly) return null;
    return TEXT_INPUTS.has(element.type) ? element : null;
  }

  remember(field) {
    this.known = {field, caret: field.selectionEnd, length: field.value.length};
  }
  /** A caret or a text that something else has changed ends the word. */
  checkCaret(field) {
    const {known} = this;
    const isKnown = known.field === field && known.caret === field.selectionEnd &&
        known.length === field.value.length;
    if (!isKnown || field.selectionStart !== field.selectionEnd) this.corrector.click();
  }

  /** The word that was begun before this was there; null for one that is not known. */
  takeUp(presses) {
    const field = Fields.fieldOf(document.activeElement);
    if (!field) return;
    this.remember(field);
    const isKnown = presses !== null && presses.every((press) => this.isTakenUp(press));
    if (!isKnown) this.corrector.textTyped('');
  }
  isTakenUp(press) {
    const code = this.corrector.codeOf(press.code);
    this.followSystemLayout(press);
    const edit = this.corrector.keyDown(code, Fields.modifiersOf(press), press.repeat);
    this.corrector.keyUp(code, 0);
    return edit.passes && edit.erase === 0 && edit.text === '' && edit.keyText === press.key;
  }

  static modifiersOf(event) {
    return (event.shiftKey ? MODIFIERS.shift : 0) | (event.ctrlKey ? MODIFIERS.control : 0) |
        (event.altKey ? MODIFIERS.option : 0) | (event.metaKey ? MODIFIERS.command : 0) |
        (event.getModifierState('CapsLock') ? MODIFIERS.capsLock : 0);
  }
  static isShortcut(event) { return event.ctrlKey || event.altKey || event.metaKey; }

  onKeyDown(event, field) {
    this.isTold = false;
    if (event.defaultPrevented || MODIFIER_KEYS.has(event.key)) return;
    this.tellComposition();
    // What an input method, a dead key or the third level of a layout makes of it comes as text.
    if (event.isComposing || event.keyCode === 229 || event.key === 'Dead' ||
        event.key === 'Process' || event.getModifierState('AltGraph')) return;
    const code = this.corrector.codeOf(event.code);
    if (code < 0) {
      if (event.key.length > 1 || Fields.isShortcut(event)) this.corrector.textTyped('');
      return;
    }
    this.followSystemLayout(event);
    this.checkCaret(field);
    this.isTold = true;
    // It takes the selection away; the corrector would count it for a letter.
    const isErased = code === BACKSPACE && field.selectionStart !== field.selectionEnd;
    if (isErased) return;
    const edit = this.corrector.keyDown(code, Fields.modifiersOf(event), event.repeat);
    this.replaceBeforeCaret(field, edit.erase, edit.text);
    const isOther = edit.keyText !== '' && edit.keyText !== event.key && !Fields.isShortcut(event);
    if (!edit.passes || isOther) event.preventDefault();
    if (edit.passes && isOther) this.insert(field, edit.keyText);
    this.onChange();
  }

  onKeyUp(event) {
    this.isTold = false;
    if (MODIFIER_KEYS.has(event.key)) return;
    const code = this.corrector.codeOf(event.code);
    if (code >= 0) this.corrector.keyUp(code, Fields.modifiersOf(event));
  }

  /** Whoever switches the system's layout means the page's too. */
  followSystemLayout(event) {
    if (Fields.isShortcut(event) || !event.code.startsWith('Key')) return;
    const layout = /^[а-яё]$/i.test(event.key) ? 'ru' : /^[a-z]$/i.test(event.key) ? 'en' : null;
    if (layout === null || layout === this.systemLayout) return;
    const isSwitch = this.systemLayout !== null || (layout === 'ru' && !this.isLayoutChosen);
    this.systemLayout = layout;
    if (isSwitch) this.selectLayout(layout === 'ru');
  }
  selectLayout(isRussian) {
    this.isLayoutChosen = true;
    if (this.corrector.isRussian !== isRussian) this.corrector.selectLayout(isRussian);
    this.onChange();
  }

  onBeforeInput(event, field) {
    if (this.isOurs || this.isTold || event.isComposing) return;
    this.tellComposition();
    if (event.inputType === 'insertText' && event.data) {
      this.onText(event, field, event.data);
    } else if (event.inputType === 'insertLineBreak' || event.inputType === 'insertParagraph') {
      this.onText(event, field, '\n');
    } else if (event.inputType === 'deleteContentBackward' && field.selectionStart === field.selectionEnd) {
      this.checkCaret(field);
      this.corrector.keyDown(BACKSPACE, 0, false);
      this.isTold = true;
    }
  }
  /** Text that comes without a key: from a phone, or from a key whose name says nothing. */
  onText(event, field, text) {
    this.checkCaret(field);
    this.isTold = true;
    const characters = [...text];
    if (characters.length > 1 || !event.cancelable) {
      this.pending = characters;
      return;
    }
    const edit = this.corrector.textTyped(text);
    if (!edit.passes) event.preventDefault();
    this.replaceBeforeCaret(field, edit.erase, edit.text);
    // Of what was prevented no event comes.
    this.isTold = edit.passes;
    this.onChange();
  }

  onInput(event, field) {
    if (this.isOurs || event.isComposing) return;
    // `onCompositionEnd` has it, which comes before this in some browsers and after it in others.
    if (event.inputType === 'insertCompositionText') return this.remember(field);
    if (event.inputType === 'historyUndo') this.dropOwnSelection(field);
    if (this.pending) {
      const characters = this.pending;
      this.pending = null;
      this.takeTyped(field, characters);
    } else if (!this.isTold || !TYPING.has(event.inputType)) {
      this.onOtherChange(field);
    }
    if (this.composed === null) this.isTold = false;
    this.remember(field);
    this.onChange();
  }
  /** Characters that are in the field already. */
  takeTyped(field, characters) {
    for (const [i, character] of characters.entries()) {
      const edit = this.corrector.textTyped(character);
      if (edit.passes) continue;
      if (i === characters.length - 1) {
        this.replaceBeforeCaret(field, edit.erase + character.length, edit.text);
      } else {
        this.corrector.textTyped('');
      }
    }
  }
  /** Pasted, dropped, cut, taken back, spelled by the browser. */
  onOtherChange(field) {
    const length = field.value.length - this.known.length;
    const isInserted = this.known.field === field && length > 1 && length <= UNITS;
    const caret = field.selectionEnd;
    this.corrector.textTyped(isInserted ? field.value.slice(caret - length, caret) : '');
  }

  onCompositionStart(event, field) {
    this.tellComposition();
    this.checkCaret(field);
    this.composed = event.data;
    // An input method that takes a word up again writes it anew.
    if (event.data) this.corrector.click();
  }
  onCompositionEnd(event, field) {
    this.composed = null;
    this.remember(field);
    const ended = {field, characters: [...(event.data ?? '')]};
    this.ended = ended;
    // The browser is not done with it yet.
    setTimeout(() => { if (this.ended === ended) this.tellComposition(); });
  }
  /** At the latest when the next key comes, and never behind it: it would stand in the wrong word. */
  tellComposition() {
    if (this.ended === null) return;
    const {field, characters} = this.ended;
    this.ended = null;
    if (this.known.field !== field || this.known.caret !== field.selectionEnd) return;
    this.takeTyped(field, characters);
    this.remember(field);
    this.onChange();
  }

  /** One step for the browser's undo. */
  replaceBeforeCaret(field, erase, text) {
    if (erase === 0 && text === '') return;
    const end = field.selectionEnd;
    const start = Math.max(0, field.selectionStart - erase);
    this.replaced.push({start, text: field.value.slice(start, end)});
    if (this.replaced.length > MOST_REPLACED) this.replaced.shift();
    field.setSelectionRange(start, end);
    this.insert(field, text);
  }
  /** An undo selects again what was selected for the change. What this script selected it takes for
      the person's text, which the next key must not type over. */
  dropOwnSelection(field) {
    const {selectionStart: start, selectionEnd: end} = field;
    const text = field.value.slice(start, end);
    if (this.replaced.some((each) => each.start === start && each.text === text))
      field.setSelectionRange(end, end);
  }
  /** Puts a text in the place of the selection so that the browser can take it back. */
  insert(field, text) {
    this.isOurs = true;
    // Deprecated, and the only way that leaves the undo history whole.
    const isDone = text === '' ? document.execCommand('delete') : document.execCommand('insertText', false, text);
    if (!isDone) field.setRangeText(text, field.selectionStart, field.selectionEnd, 'end');
    this.isOurs = false;
    this.remember(field);
  }

  /** Presses a key in place of the person. */
  press(field, name, shift) {
    this.checkCaret(field);
    const edit = this.corrector.keyDown(this.corrector.codeOf(name), shift ? MODIFIERS.shift : 0, false);
    this.corrector.keyUp(this.corrector.codeOf(name), 0);
    this.replaceBeforeCaret(field, edit.erase, edit.text);
    if (edit.passes) this.insert(field, name === 'Space' ? ' ' : name === 'Enter' ? '\n' : edit.keyText);
    this.onChange();
  }
  /** ⌥Space for those whose window has it for itself. */
  convertLastWord(field) {
    this.checkCaret(field);
    const edit = this.corrector.keyDown(this.corrector.codeOf('Space'), MODIFIERS.option, false);
    this.replaceBeforeCaret(field, edit.erase, edit.text);
    this.onChange();
  }
}

// ── The page ─────────────────────────────────────────────────────────────────────────────────────

/** The keys of a US keyboard by what they type there, plain and with Shift. */
const US_KEYS = (() => {
  const keys = new Map([[' ', ['Space', false]], ['\n', ['Enter', false]]]);
  const row = (names, plain, shifted) => names.forEach((name, i) => {
    keys.set(plain[i], [name, false]);
    keys.set(shifted[i], [name, true]);
  });
  const letters = (text) => [...text].map((letter) => 'Key' + letter.toUpperCase());
  row([...letters('qwertyuiop'), 'BracketLeft', 'BracketRight'], 'qwertyuiop[]', 'QWERTYUIOP{}');
  row([...letters('asdfghjkl'), 'Semicolon', 'Quote'], 'asdfghjkl;\'', 'ASDFGHJKL:"');
  row([...letters('zxcvbnm'), 'Comma', 'Period', 'Slash'], 'zxcvbnm,./', 'ZXCVBNM<>?');
  return keys;
})();

const TEXTS = {
  en: {
    title: 'Tessarok: type without looking at the layout',
    heading: 'Type without looking at the layout',
    lead: 'Type `ghbdtn` and a space, as if it were `привет`. Wrong words are put right as they end, in both directions.',
    field: 'A field to type in', placeholder: 'ghbdtn',
    layout: 'Layout', english: 'EN: English layout', russian: 'RU: Russian layout',
    convert: 'Convert the word', examples: 'Or watch', lastWord: 'The last word',
    none: 'Type a word and a space: here it says what was decided, and why.',
    converted: 'typed in the wrong layout, put right', guessed: 'in no dictionary; its letters speak for this, and the layout stays',
    unshifted: 'Shift was held too long', waits: 'stays for now: the next word tells its language', stays: 'stays as typed',
    keys: 'Keys', keyEnd: 'ends the word', keyConvert: 'convert the word by hand, or take a fix back',
    keyPause: 'pauses for five seconds, in the English layout', keyUndo: 'undo is the browser’s own',
    packs: 'Words that are never touched', packIt: 'IT and development', packChat: 'Internet slang', packGaming: 'Gamers’ words',
    phone: 'On a phone there are no keys, only text: words are put right when your keyboard hands it over letter by letter. Suggestions and glide typing replace whole words, and then nothing is changed here. Convert by hand works always.',
    private: 'Nothing you type leaves this page. It has forbidden itself every connection: its content-security-policy allows its own files while it loads, and after that nothing. What it learns is forgotten when you close it. After the first visit it works without a network.',
    notices: 'Sources and licences of the word lists', documentation: 'Documentation',
    dark: 'Dark', light: 'Light', paused: 'Pause',
    loading: 'Loading the words', failed: 'The corrector could not be loaded; the field is an ordinary one.',
    file: 'This page has to come from a web server, because browsers let no page read the files beside it. “make page” starts one and prints its address.',
    old: 'This browser is too old: it has to know WebAssembly with exceptions and vectors (browsers of 2023 and later).',
  },
  ru: {
    title: 'Tessarok: печатайте, не глядя на раскладку',
    heading: 'Печатайте, не глядя на раскладку',
    lead: 'Наберите `ghbdtn` и пробел, как будто это `привет`. Слова не в той раскладке исправляются, как только закончатся, в обе стороны.',
    field: 'Поле для набора', placeholder: 'ghbdtn',
    layout: 'Раскладка', english: 'EN: английская раскладка', russian: 'RU: русская раскладка',
    convert: 'Переключить слово', examples: 'Или посмотрите', lastWord: 'Последнее слово',
    none: 'Наберите слово и пробел: здесь будет сказано, что решено и почему.',
    converted: 'набрано не в той раскладке, исправлено', guessed: 'в словарях нет, но буквы говорят за это; раскладка остаётся',
    unshifted: 'Shift был отпущен поздно', waits: 'пока остаётся: язык покажет следующее слово', stays: 'остаётся как набрано',
    keys: 'Клавиши', keyEnd: 'заканчивает слово', keyConvert: 'переключить слово вручную или вернуть исправленное',
    keyPause: 'пауза на пять секунд, в английской раскладке', keyUndo: 'отмена — как всегда в браузере',
    packs: 'Слова, которые не трогаются', packIt: 'IT и разработка', packChat: 'Интернет-сленг', packGaming: 'Геймерские слова',
    phone: 'На телефоне клавиш нет, есть только текст: слова исправляются, если клавиатура отдаёт его по букве. Подсказки и непрерывный ввод заменяют слово целиком, и тогда здесь ничего не меняется. Переключение вручную работает всегда.',
    private: 'Ничего из набранного не покидает эту страницу. Она сама запретила себе все соединения: её content-security-policy позволяет при загрузке только собственные файлы, а потом ничего. Чему страница научилась, она забудет, когда вы её закроете. После первого посещения она работает и без сети.',
    notices: 'Источники и лицензии списков слов', documentation: 'Документация (по-английски)',
    dark: 'Тёмная', light: 'Светлая', paused: 'Пауза',
    loading: 'Загружаются слова', failed: 'Корректор не загрузился; поле работает как обычное.',
    file: 'Страница должна прийти с веб-сервера: браузеры не дают странице читать соседние файлы. «make page» запускает сервер и печатает адрес.',
    old: 'Браузер слишком старый: нужен WebAssembly с исключениями и векторами (браузеры с 2023 года).',
  },
};

/** What the program says of its steps, in Russian; quoted words stay. */
const STEPS_RU = [
  ['the same keys in the other layout give "…"', 'те же клавиши в другой раскладке дают «…»'],
  ['which is not all letters', 'в этом не только буквы'],
  ['the conversion is in no dictionary', 'такого слова нет в словаре'],
  ['the conversion is a dictionary word', 'это слово есть в словаре'],
  ['the conversion is a frequent short word', 'это частое короткое слово'],
  ['the conversion is a dictionary word, but a rare short one', 'это слово есть в словаре, но оно короткое и редкое'],
  ['no word of the typed language has these letters in a row', 'в языке набранного так буквы подряд не стоят'],
  ['the conversion does not look like a word either', 'результат тоже не похож на слово'],
  ['no ending of the conversion is a word', 'ни одно окончание результата не слово'],
  ['the conversion ends in a dictionary word', 'результат кончается словом из словаря'],
  ['Russian words came before, and the conversion looks like one and ends in one', 'перед ним русские слова, и результат похож на русское слово и кончается им'],
  ['the letters look wrong as typed and right when converted', 'набранные буквы на слово не похожи, а результат похож'],
  ['nothing confirms the conversion', 'ничто не подтверждает исправления'],
  ['"…" is a dictionary word as typed', '«…» и так есть в словаре'],
  ['two letters are converted only after Russian words, but for a few frequent ones', 'две буквы исправляются только после русских слов, кроме немногих частых'],
  ['two letters are converted only after English words', 'две буквы исправляются только после английских слов'],
  ['it holds a character that is no letter of either layout', 'в нём есть знак, который не буква ни одной раскладки'],
  ['one character says too little', 'один знак говорит слишком мало'],
  ['it mixes both alphabets', 'в нём оба алфавита'],
  ['it holds no letter', 'в нём нет букв'],
  ['"…" is on a list of words that are never corrected: …', '«…» в списке слов, которые не трогаются: …'],
  ['the keyboard layouts could not be read', 'раскладки не прочитаны'],
  ['a dictionary is missing', 'нет словаря'],
  ['once more without the punctuation at the end: "…"', 'ещё раз без знака препинания в конце: «…»'],
].map(([english, russian]) => {
  const pattern = english.replace(/[.*+?^${}()|[\]\\]/g, '\\$&').replaceAll('…', '(.*)');
  return {pattern: new RegExp('^' + pattern + '$'), russian};
});

function inRussian(step) {
  for (const {pattern, russian} of STEPS_RU) {
    const found = pattern.exec(step);
    if (!found) continue;
    let group = 0;
    return russian.replaceAll('…', () => found[++group]);
  }
  return step;
}

const PACKS = ['packIt', 'packChat', 'packGaming'];
/** Each with the layout that it starts in, as keys of a US keyboard. */
const EXAMPLES = [
  {label: 'ghbdtn → привет', keys: 'ghbdtn? rfr ltkf ', isRussian: false},
  {label: 'руддщ → hello', keys: 'hello world ', isRussian: true},
  {label: 'ПРивет → Привет', keys: 'GHbdtn? lhepmz ', isRussian: true},
];
const EXAMPLE_PACE = 70;
const TICK = 1000;

class Page {
  constructor() {
    this.root = document.documentElement;
    this.isRussianText = (navigator.languages ?? [navigator.language])
        .find((language) => /^(ru|en)\b/i.test(language))?.toLowerCase().startsWith('ru') ?? false;
    this.texts = TEXTS[this.isRussianText ? 'ru' : 'en'];
    this.root.lang = this.isRussianText ? 'ru' : 'en';
    this.setAppearance(Page.storedAppearance());
    this.earlyWord = new EarlyWord();
    // While the browser still reads the page.
    this.parts = location.protocol === 'file:' ? null : this.fetchParts();
    this.parts?.catch(() => { /* `load` meets it again */ });
    document.addEventListener('DOMContentLoaded', () => this.start());
  }

  static storedAppearance() {
    try { return localStorage.getItem('appearance'); } catch { return null; }
  }
  setAppearance(appearance) {
    if (appearance === 'dark' || appearance === 'light') this.root.dataset.appearance = appearance;
  }

  byId(id) { return document.getElementById(id); }

  async start() {
    this.field = this.byId('field');
    this.writeTexts();
    this.prepareAppearance();
    this.field.focus();
    performance.mark('tessarok-listening');
    if (location.protocol === 'file:') return this.fail('file');
    try {
      await this.load();
    } catch (error) {
      console.error(error);
      // What cannot be used is not to be found again at the next visit.
      globalThis.caches?.delete(CACHE).catch(() => {});
      this.earlyWord.end();
      this.fail(typeof WebAssembly === 'undefined' || error instanceof WebAssembly.CompileError ? 'old' : 'failed');
    }
  }

  writeTexts() {
    document.title = this.texts.title;
    for (const element of document.querySelectorAll('[data-text]'))
      element.replaceChildren(...Page.withWords(this.texts[element.dataset.text]));
    for (const element of document.querySelectorAll('[data-label]'))
      element.setAttribute('aria-label', this.texts[element.dataset.label]);
    this.field.placeholder = this.texts.placeholder;
    const isMac = /Mac|iPhone|iPad/.test(navigator.platform);
    for (const element of document.querySelectorAll('.convert-key'))
      element.textContent = isMac ? '⌥ Space' : 'Alt + Space';
    for (const element of document.querySelectorAll('.undo-key'))
      element.textContent = isMac ? '⌘ Z' : 'Ctrl + Z';
  }

  /** What stands between grave accents in a text is a word as it is typed. */
  static withWords(text) {
    return text.split('`').map((part, i) => {
      if (i % 2 === 0) return part;
      const word = document.createElement('code');
      word.textContent = part;
      return word;
    });
  }

  prepareAppearance() {
    const button = this.byId('appearance');
    const isDark = () => (this.root.dataset.appearance ??
        (matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light')) === 'dark';
    const show = () => { button.textContent = this.texts[isDark() ? 'light' : 'dark']; };
    button.addEventListener('click', () => {
      this.setAppearance(isDark() ? 'light' : 'dark');
      try { localStorage.setItem('appearance', this.root.dataset.appearance); } catch { /* not kept */ }
      show();
    });
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', show);
    show();
  }

  fail(text) {
    this.root.dataset.state = 'failed';
    for (const control of document.querySelectorAll('[data-needs-corrector]')) control.disabled = true;
    this.byId('progress').hidden = true;
    this.byId('status').textContent = this.texts[text];
  }

  /** The cache or null, the corrector and the words. */
  async fetchParts() {
    const cache = await Page.openCache();
    /** What is being written into the cache, while it is used already. */
    this.keeping = [];
    return Promise.all([
      cache, this.fetchKept(cache, FILES.wasm).then(Corrector.load), this.fetchWords(cache)]);
  }

  async load() {
    const [cache, corrector, words] = await this.parts;
    this.corrector = corrector;
    if (!this.corrector.launch(words)) throw new Error('the words cannot be used');
    this.fields = new Fields(this.corrector, () => this.show(), (error) => {
      console.error(error);
      this.fail('failed');
    });
    this.fields.takeUp(this.earlyWord.end());
    this.prepareControls();
    if (cache) await Promise.all(this.keeping).then(() => keepForOffline(cache)).catch((error) => console.warn(error));
    Page.closeDoors();
    performance.mark('tessarok-closed');
  }

  /** Absent where the browser keeps nothing, as in a private window of some. */
  static async openCache() {
    try { return await caches.open(CACHE); } catch { return null; }
  }
  async fetchKept(cache, file) {
    const kept = await cache?.match(file);
    if (kept) return kept;
    const response = await Page.fetched(file);
    if (cache) this.keeping.push(cache.put(file, response.clone()));
    return response;
  }
  static async fetched(file) {
    const response = await fetch(file);
    if (!response.ok) throw new Error(file + ': ' + response.status);
    return response;
  }
  async fetchWords(cache) {
    // Unzipped they are there sooner at the next visit.
    const kept = await cache?.match(FILES.unzippedWords);
    if (kept) return new Uint8Array(await kept.arrayBuffer());
    const response = await Page.fetched(FILES.words);
    const unzipped = this.counted(response.body).pipeThrough(new DecompressionStream('gzip'));
    const words = new Uint8Array(await new Response(unzipped).arrayBuffer());
    if (cache) this.keeping.push(cache.put(FILES.unzippedWords, new Response(words)));
    return words;
  }
  /** The same stream, and the bar shows how far it has come. */
  counted(stream) {
    let loaded = 0;
    const counter = new TransformStream({
      transform: (chunk, controller) => {
        loaded += chunk.length;
        this.showProgress(loaded);
        controller.enqueue(chunk);
      },
    });
    return stream.pipeThrough(counter);
  }

  showProgress(loaded) {
    const progress = this.byId('progress');
    if (!progress) return;
    progress.max = WORDS_SIZE;
    progress.value = loaded;
  }

  /** From now on not even the page's own files can be asked for. */
  static closeDoors() {
    const policy = document.createElement('meta');
    policy.httpEquiv = 'Content-Security-Policy';
    policy.content = "default-src 'none'; form-action 'none'";
    document.head.append(policy);
  }

  prepareControls() {
    for (const button of document.querySelectorAll('[data-layout]')) {
      this.keepFocus(button);
      button.addEventListener('click', () => {
        this.fields.selectLayout(button.dataset.layout === 'ru');
        this.field.focus();
      });
    }
    this.keepFocus(this.byId('convert'));
    this.byId('convert').addEventListener('click', () => {
      this.field.focus();
      this.fields.convertLastWord(this.field);
    });
    document.querySelectorAll('[data-example]').forEach((button, i) => {
      button.addEventListener('click', () => this.playExample(EXAMPLES[i]));
    });
    PACKS.forEach((name, i) => {
      const box = this.byId(name);
      box.checked = this.corrector.isPackOn(i);
      box.addEventListener('change', () => this.corrector.togglePack(i));
    });
    for (const control of document.querySelectorAll('[data-needs-corrector]')) control.disabled = false;
    document.addEventListener('keydown', (event) => {
      if (event.isTrusted) this.playing = null;
    }, true);
    setInterval(() => {
      if (document.hidden || this.fields.hasFailed) return;
      this.corrector.tick();
      this.show();
    }, TICK);
    this.root.dataset.state = 'ready';
    this.byId('progress').hidden = true;
    this.byId('status').textContent = '';
    this.show();
    performance.mark('tessarok-ready');
  }
  /** A click on it leaves the caret where it is. */
  keepFocus(button) {
    button.addEventListener('pointerdown', (event) => event.preventDefault());
    button.addEventListener('mousedown', (event) => event.preventDefault());
  }

  async playExample(example) {
    const {field, fields} = this;
    const playing = (this.playing = {});
    field.focus();
    field.setSelectionRange(field.value.length, field.value.length);
    fields.selectLayout(example.isRussian);
    const isStill = matchMedia('(prefers-reduced-motion: reduce)').matches;
    const keys = field.value === '' || field.value.endsWith('\n') ? example.keys : '\n' + example.keys;
    for (const key of keys) {
      if (this.playing !== playing) return;
      fields.press(field, ...US_KEYS.get(key));
      if (key === '\n') fields.selectLayout(example.isRussian);
      if (!isStill) await new Promise((done) => setTimeout(done, EXAMPLE_PACE));
    }
    if (this.playing === playing) this.playing = null;
  }

  /** Off the path of the key. */
  show() {
    if (this.isShowing) return;
    this.isShowing = true;
    setTimeout(() => {
      this.isShowing = false;
      if (this.fields.hasFailed) return;
      this.showLayout();
      this.showExplanation();
    });
  }
  showLayout() {
    const {isRussian, isPaused} = this.corrector;
    for (const button of document.querySelectorAll('[data-layout]'))
      button.setAttribute('aria-pressed', String((button.dataset.layout === 'ru') === isRussian));
    this.byId('paused').hidden = !isPaused;
  }
  showExplanation() {
    const explanation = this.corrector.explain();
    const key = JSON.stringify(explanation);
    if (!explanation || key === this.shownExplanation) return;
    this.shownExplanation = key;
    const {typed, verdict, became, steps} = explanation;
    this.byId('typed').textContent = typed;
    this.byId('became').textContent = became === typed ? '' : became;
    this.byId('arrow').hidden = became === typed;
    this.byId('verdict').textContent = this.texts[verdict];
    this.byId('steps').replaceChildren(...steps.map((step) => {
      const item = document.createElement('li');
      item.textContent = this.isRussianText ? inRussian(step) : step;
      return item;
    }));
    this.byId('explanation').hidden = false;
    this.byId('none').hidden = true;
  }
}

if (typeof document === 'undefined') {
  serveOffline();
} else {
  // For whoever looks at the page with the browser's tools.
  globalThis.tessarok = new Page();
}
