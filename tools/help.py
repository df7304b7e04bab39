#!/usr/bin/env python3
"""Builds the help: Markdown in help/CODE to HTML that works without a network.

    help.py CODE VERSION FOLDER

Each page is made by pandoc with help/template.html. A link to a page or section that does not exist,
a missing picture and a page that is in no list are errors. The result depends on the files alone.
"""

import html
import html.parser
import json
import pathlib
import re
import shutil
import subprocess
import sys
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parent.parent
HELP = ROOT / "help"


def fail(text):
    sys.exit(f"help: {text}")


def page_names():
    """The pages in reading order."""
    lines = (HELP / "pages.txt").read_text(encoding="utf-8").splitlines()
    return [line.strip() for line in lines if line.strip() and not line.startswith("#")]


def title_of(source, text):
    match = re.match(r"# (.+)\n", text)
    if not match:
        fail(f"{source} does not begin with a title")
    return match.group(1).strip()


class Page(html.parser.HTMLParser):
    """What a page consists of: its sections with their texts, its links, pictures and anchors."""

    SKIPPED = {"header", "footer", "nav", "script", "style", "title"}

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.anchors, self.links, self.pictures = set(), [], []
        self.sections = []  # [id, heading, text]
        self.skipping = 0
        self.heading = None
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if "id" in values:
            if values["id"] in self.anchors:
                fail(f"the anchor {values['id']} occurs twice")
            self.anchors.add(values["id"])
        if tag == "a" and "href" in values:
            self.links.append(values["href"])
        if tag == "img":
            self.pictures.append(values["src"])
            if "alt" not in values:
                fail(f"the picture {values['src']} has no description")
        if tag in self.SKIPPED:
            self.skipping += 1
        if tag in ("h1", "h2", "h3") and not self.skipping:
            self.sections.append([values.get("id", ""), "", ""])
            self.heading = tag
        if tag in ("p", "td", "th", "li", "dt", "dd", "br", "pre"):
            self.handle_data(" ")

    def handle_endtag(self, tag):
        if tag in self.SKIPPED:
            self.skipping -= 1
        if tag == self.heading:
            self.heading = None

    def handle_data(self, data):
        if self.skipping or not self.sections:
            return
        self.sections[-1][1 if self.heading else 2] += data


def squeeze(text):
    return re.sub(r"\s+", " ", text).strip()


def run_pandoc(source, metadata, folder, name):
    data = folder / f".{name}.json"
    text = folder / f".{name}.md"
    data.write_text(json.dumps(metadata, ensure_ascii=False, sort_keys=True), encoding="utf-8")
    text.write_text(source, encoding="utf-8")
    result = subprocess.run(
        ["pandoc", "--from", "markdown-smart-tex_math_dollars", "--to", "html5", "--standalone",
         "--wrap", "none", "--no-highlight", "--template", str(HELP / "template.html"),
         "--lua-filter", str(HELP / "filter.lua"), "--metadata-file", str(data), str(text)],
        capture_output=True, encoding="utf-8", check=False)
    data.unlink()
    text.unlink()
    if result.returncode or result.stderr:
        fail(f"{name}: {result.stderr.strip()}")
    return result.stdout


def headings(source):
    """The headings of the second level."""
    return re.findall(r"^## (.+)$", source, re.MULTILINE)


def slug(heading):
    """The anchor that pandoc makes of a heading."""
    text = re.sub(r"[^\w\s.-]", "", heading.strip()).lower()
    return re.sub(r"\s+", "-", re.sub(r"^[^a-zà-ÿ]+", "", text))


def contents(names, titles, sources):
    lines = ["", '<div class="contents">', ""]
    for name in names[1:]:
        lines.append(f"- [{titles[name]}]({name}.md)")
        for heading in headings(sources[name]):
            lines.append(f"    - [{heading}]({name}.md#{slug(heading)})")
    return "\n".join(lines + ["", "</div>", ""])


def check_links(pages, folder):
    for name, page in pages.items():
        for link in page.links:
            if re.match(r"[a-z]+:", link):
                fail(f"{name} leads out of the help: {link}")
            path, _, anchor = urllib.parse.unquote(link).partition("#")
            target = path.removesuffix(".html") if path else name
            if target not in pages:
                fail(f"{name} leads to a page that does not exist: {link}")
            if anchor and anchor not in pages[target].anchors:
                fail(f"{name} leads to a section that does not exist: {link}")
        for picture in page.pictures:
            if not (folder / picture).is_file():
                fail(f"{name} shows a picture that does not exist: {picture}")
    shown = {picture for page in pages.values() for picture in page.pictures}
    for file in sorted((folder / "pictures").iterdir()):
        if f"pictures/{file.name}" not in shown:
            fail(f"no page shows {file.name}")


def search_index(names, titles, pages):
    sections = []
    for name in names:
        for anchor, heading, text in pages[name].sections:
            first = heading == pages[name].sections[0][1]
            sections.append({
                "address": f"{name}.html" + ("" if first or not anchor else f"#{anchor}"),
                "page": titles[name],
                "heading": squeeze(heading),
                "text": squeeze(text),
            })
    return sections


def build(code, version, folder):
    names = page_names()
    words = json.loads((HELP / code / "words.json").read_text(encoding="utf-8"))
    sources = {name: (HELP / code / f"{name}.md").read_text(encoding="utf-8") for name in names}
    on_disk = {file.stem for file in (HELP / code).glob("*.md")}
    if on_disk != set(names):
        fail(f"help/{code} and pages.txt differ: {sorted(on_disk ^ set(names))}")
    titles = {name: title_of(f"{code}/{name}.md", text) for name, text in sources.items()}
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "pictures").mkdir(parents=True)
    for file in ("help.css", "search.js"):
        shutil.copyfile(HELP / file, folder / file)
    shutil.copyfile(HELP / "marl.png", folder / "marl.png")
    for picture in sorted((HELP / code / "pictures").glob("*.png")):
        shutil.copyfile(picture, folder / "pictures" / picture.name)

    common = dict(words, lang=code, version=version)
    pages = {}
    for position, name in enumerate(names):
        source = sources[name]
        if position == 0:
            source += contents(names, titles, sources)
        metadata = dict(common, title=titles[name], first=position == 0, turning=True,
                        pages=[{"name": other, "title": titles[other], "current": other == name}
                               for other in names])
        for key, other in (("previous", position - 1), ("next", position + 1)):
            if 0 <= other < len(names):
                metadata[f"{key}-page"] = names[other]
                metadata[f"{key}-title"] = titles[names[other]]
        text = run_pandoc(source, metadata, folder, name)
        (folder / f"{name}.html").write_text(text, encoding="utf-8")
        pages[name] = Page(text)
    index = search_index(names[1:], titles, pages)
    source = (f"# {words['search']}\n\n"
              f'<p id="count" role="status"></p>\n<noscript><p>{html.escape(words["noscript"])}</p>'
              '</noscript>\n<ol id="found" class="found"></ol>\n')
    metadata = dict(common, title=words["search"], searching=True,
                    pages=[{"name": other, "title": titles[other]} for other in names])
    text = run_pandoc(source, metadata, folder, "search")
    (folder / "search.html").write_text(text, encoding="utf-8")
    pages["search"] = Page(text)
    said = {key: words[key] for key in ("none", "one", "many", "empty")}
    (folder / "search-index.js").write_text(
        "const helpWords = " + json.dumps(said, ensure_ascii=False, sort_keys=True) + ";\n"
        "const helpIndex = " + json.dumps(index, ensure_ascii=False, sort_keys=True, indent=0) + ";\n",
        encoding="utf-8")
    check_links(pages, folder)
    return len(names)


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    code, version, folder = sys.argv[1:]
    build(code, version, pathlib.Path(folder).resolve())


if __name__ == "__main__":
    main()
