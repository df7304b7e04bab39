// Opens every page of the built help in a browser without a network, and checks it.
//
//     node check.mjs FOLDER CODE BROWSER PICTURES
//
// FOLDER is the built help of the language CODE. Pictures of some pages are left in PICTURES, to be
// looked at. The packages of package.json must be installed in the current folder.

import { createRequire } from 'node:module';
import fs from 'node:fs';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

const require = createRequire(path.join(process.cwd(), 'package.json'));
const puppeteer = (await import(pathToFileURL(require.resolve('puppeteer-core')))).default;
const axe = fs.readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');

const [folder, code, browserPath, pictures] = process.argv.slice(2);
const WIDTHS = [320, 480, 768, 1024, 1366, 1920];
const PICTURE_WIDTHS = [320, 1024, 1920];
const PICTURE_PAGES = ['index', 'panel', 'look', 'administrators', 'troubleshooting'];

// Words, and the page that the first of the results must be on.
const SEARCHES = {
  en: [['proxy', 'proxy'], ['gradient', 'look'], ['DDE', 'other-programs'], ['msiexec', 'administrators'],
       ['tray', null], ['Type mismatch', 'troubleshooting'], ['QTD', 'projects'],
       ['regular expressions', 'options'], ['ctrl+w', 'menus'], ['help file', 'troubleshooting'],
       ['double-click', 'notification-area'], ['first start', 'first-start']],
  de: [['Proxy', 'proxy'], ['farbverlauf', 'look'], ['DDE', 'other-programs'],
       ['msiexec', 'administrators'], ['ubersetzen', null], ['Type mismatch', 'troubleshooting'],
       ['reguläre', 'options'], ['strg+w', 'menus'], ['hilfedatei', 'troubleshooting'],
       ['doppelklick', 'notification-area'], ['ERSTE START', 'first-start'],
       ['grosse', null]],
};

let failures = 0;
let checks = 0;
function expect(holds, text) {
  ++checks;
  if (holds) return;
  ++failures;
  console.log(`FAILED ${code}: ${text}`);
}

const address = (name, rest = '') => pathToFileURL(path.join(folder, `${name}.html`)).href + rest;
const names = fs.readdirSync(folder).filter((file) => file.endsWith('.html'))
  .map((file) => file.slice(0, -5)).sort();

const browser = await puppeteer.launch({
  executablePath: browserPath,
  args: ['--no-sandbox', '--disable-gpu', '--force-color-profile=srgb', '--hide-scrollbars'],
});
const page = await browser.newPage();
let open = '';
page.on('console', (message) => {
  if (['error', 'warn', 'assert'].includes(message.type())) {
    expect(false, `${open}: the console says ${message.text()}`);
  }
});
page.on('pageerror', (error) => expect(false, `${open}: ${error.message}`));
page.on('requestfailed', (request) => expect(false, `${open}: ${request.url()} cannot be loaded`));
page.on('request', (request) =>
  expect(request.url().startsWith('file:'), `${open}: asks for ${request.url()}`));

async function go(name, rest = '') {
  open = name + rest;
  await page.goto(address(name, rest), { waitUntil: 'load' });
}

async function size(width, height = 900) {
  await page.setViewport({ width, height });
}

async function accessible(scheme) {
  await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
  await page.evaluate(axe);
  const result = await page.evaluate(() => axe.run(document, { preload: false }));
  expect(result.passes.length > 10, `${open}: the accessibility checker checked nothing`);
  for (const violation of result.violations) {
    const where = violation.nodes.map((node) => node.target.join(' ')).join(', ');
    const serious = ['serious', 'critical'].includes(violation.impact);
    expect(!serious, `${open}, ${scheme}: ${violation.help} (${violation.impact}): ${where}`);
    if (!serious) console.log(`note ${code}: ${open}: ${violation.help} (${violation.impact}): ${where}`);
  }
}

// Every page: pictures, links, widths, accessibility in light and dark.
const anchors = {};
const links = [];
for (const name of names) {
  await size(1024);
  await go(name);
  const found = await page.evaluate(() => ({
    title: document.title,
    lang: document.documentElement.lang,
    headings: document.querySelectorAll('h1').length,
    anchors: [...document.querySelectorAll('[id]')].map((element) => element.id),
    links: [...document.querySelectorAll('a[href]')].map((element) => element.href),
    broken: [...document.images].filter((image) => !image.complete || image.naturalWidth === 0)
      .map((image) => image.src),
  }));
  expect(found.title !== '' && found.lang === code, `${name}: title or language`);
  expect(found.headings === 1, `${name}: it has ${found.headings} main headings`);
  for (const picture of found.broken) expect(false, `${name}: the picture ${picture} is missing`);
  anchors[name] = new Set(found.anchors);
  for (const link of found.links) links.push([name, link]);
  for (const width of WIDTHS) {
    await size(width);
    const wide = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
    expect(wide <= 0, `${name}: ${wide} pixels too wide for ${width}`);
  }
  await size(1024);
  await accessible('light');
  await accessible('dark');
  await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: 'light' }]);
  await page.emulateMediaType('print');
  const printed = await page.evaluate(() => {
    const shown = (selector) => [...document.querySelectorAll(selector)]
      .some((element) => element.getClientRects().length > 0);
    return { text: shown('main h1'), rest: shown('header form, .pages, .turn') };
  });
  expect(printed.text && !printed.rest, `${name}: what is printed`);
  await page.emulateMediaType('screen');
}
for (const [name, link] of links) {
  const url = new URL(link);
  const target = path.basename(decodeURIComponent(url.pathname), '.html');
  const anchor = decodeURIComponent(url.hash.slice(1));
  expect(url.protocol === 'file:' && anchors[target] && (!anchor || anchors[target].has(anchor)),
         `${name}: the link ${link} leads nowhere`);
}
expect(links.length > 200, 'there are too few links');

// From the first page to the last by "next", and back.
await go('index');
let steps = 0;
for (const [selector, last] of [['.turn .on', 'troubleshooting'], ['.turn .back', 'index']]) {
  while (await page.$(selector)) {
    await Promise.all([page.waitForNavigation(), page.click(selector)]);
    if (++steps > 100) break;
  }
  expect(page.url() === address(last), `${selector} ends at ${page.url()}`);
}
expect(steps === 2 * (names.length - 2), `next and previous took ${steps} steps`);

// The search: from the field of another page, as a user does.
for (const [words, first] of SEARCHES[code]) {
  await go('panel');
  await page.type('#q', words);
  await Promise.all([page.waitForNavigation(), page.keyboard.press('Enter')]);
  const result = await page.evaluate(() => ({
    links: [...document.querySelectorAll('#found a')].map((link) => link.href),
    marks: document.querySelectorAll('#found mark').length,
    count: document.getElementById('count').textContent,
  }));
  expect(result.links.length > 0 && result.marks > 0, `"${words}" is not found: ${result.count}`);
  expect(!first || (result.links[0] || '').startsWith(address(first)),
         `"${words}" finds ${result.links[0]} first`);
  if (words === SEARCHES[code][0][0]) await accessible('light');
}
await go('search', '?q=xyzzyplugh');
expect(await page.$$eval('#found li', (items) => items.length) === 0, 'nonsense is found');
expect((await page.$eval('#count', (count) => count.textContent)).includes('xyzzyplugh'),
       'nothing is said about nonsense');
await go('search', `?q=${encodeURIComponent('<img src=x onerror=alert(1)> $& proxy')}`);
expect(await page.$$eval('#found img, #count img', (images) => images.length) === 0,
       'words become elements');
await go('search');
await page.type('#q', 'proxy');
expect(await page.$$eval('#found li', (items) => items.length) > 2, 'typing finds nothing');

// Pictures to look at.
fs.mkdirSync(pictures, { recursive: true });
for (const name of PICTURE_PAGES) {
  for (const width of PICTURE_WIDTHS) {
    await size(width, 1000);
    await go(name);
    await page.screenshot({ path: path.join(pictures, `${name}-${width}.png`) });
  }
}
await size(1024, 1000);
await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: 'dark' }]);
await go('look');
await page.screenshot({ path: path.join(pictures, 'look-dark.png') });
await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: 'light' }]);
await go('troubleshooting');
await page.pdf({ path: path.join(pictures, 'troubleshooting.pdf'), format: 'A4' });

await browser.close();
console.log(`${code}: ${names.length} pages, ${links.length} links, ${checks} checks, ` +
            `${failures} failed`);
process.exit(failures === 0 ? 0 : 1);
