"""Builds the book: the chapters in docs/ and what they lead to, as HTML pages beside the reference.

    python3 build.py FOLDER

FOLDER holds the reference in FOLDER/reference already (see reference.py). The home page is docs/index.md, without it
README.md; its links give the order of the chapters. Names of calls, records and codes in the text lead to the
reference. Every link must lead somewhere, every chapter must be reached: else the build fails and says what is wrong.
"""

import os
import re
import shutil
import string
import subprocess
import sys
import xml.etree.ElementTree as xml
from html import escape

from links import broken_links
from reference import ROOT, TAGS

HERE = os.path.dirname(os.path.abspath(__file__))
REFERENCE_OF = {"include/KineDll.h": "reference/index.html", "include/KineDll.hpp": "reference/cpp/files.html"}
LINK = re.compile(r"\]\(([^)\s#]+\.md)(?:#[^)\s]*)?\)")


def markdown_of(page):
    with open(os.path.join(ROOT, page), encoding="utf-8") as file:
        return file.read()


def target_of(page, link):
    """The path in the repository that a relative link of a page means."""
    return os.path.normpath(os.path.join(os.path.dirname(page), link)).replace(os.sep, "/")


def linked_pages(page):
    """The Markdown files a page links to, in their order, each once."""
    text = re.sub(r"```.*?```", "", markdown_of(page), flags=re.S)
    return list(dict.fromkeys(target_of(page, link) for link in LINK.findall(text)))


def reached_pages(home):
    """The home page and what its links lead to, in the order of reading."""
    pages, waiting = [], [home]
    while waiting:
        page = waiting.pop(0)
        if page in pages or not os.path.isfile(os.path.join(ROOT, page)):
            continue  # a link to nothing is reported with all others
        pages.append(page)
        waiting += linked_pages(page)
    return pages


def title_of(page):
    for line in markdown_of(page).splitlines():
        if line.startswith("# "):
            return re.sub(r"[`*]", "", line[2:]).strip()
    return page


def html_name(page, home):
    if page == home:
        return "index.html"
    name = page[5:] if page.startswith("docs/") else page
    return name[:-3].replace("/", "_").lower() + ".html"


def places_of_names(folder):
    """{name: place in the reference} of calls, macros, records and members (as Record.Member)."""
    places = {}
    for compound in xml.parse(os.path.join(folder, "reference", TAGS)).getroot():
        kind, name = compound.get("kind"), compound.findtext("name")
        if kind in ("struct", "union"):
            places[name] = "reference/" + compound.findtext("filename")
        for member in compound.iter("member"):
            place = f"reference/{member.findtext('anchorfile')}#{member.findtext('anchor')}"
            if kind in ("struct", "union"):
                places[f"{name}.{member.findtext('name')}"] = place
            elif kind == "group":
                places.setdefault(member.findtext("name"), place)
    return places


class Book:
    def __init__(self, folder):
        self.folder = folder
        self.home = "docs/index.md" if os.path.isfile(os.path.join(ROOT, "docs", "index.md")) else "README.md"
        self.pages = reached_pages(self.home)
        self.places = places_of_names(folder)

    def unreached(self):
        chapters = (f"docs/{name}" for name in sorted(os.listdir(os.path.join(ROOT, "docs"))) if name.endswith(".md"))
        return [page for page in chapters if page not in self.pages]

    def name_of(self, page):
        return html_name(page, self.home)

    def place_of_link(self, page, link):
        """Where a link of a page leads in the book; files of the repository are copied. None: nowhere."""
        if re.match(r"[a-z]+:", link) or link.startswith("#"):
            return link
        path, _, fragment = link.partition("#")
        target = target_of(page, path)
        source = os.path.join(ROOT, target)
        if target in self.pages:
            place = self.name_of(target)
        elif target in REFERENCE_OF:
            place = REFERENCE_OF[target]
        elif os.path.isfile(source):
            place = target[5:] if target.startswith("docs/") else "files/" + target
            os.makedirs(os.path.dirname(os.path.join(self.folder, place)) or ".", exist_ok=True)
            shutil.copyfile(source, os.path.join(self.folder, place))
        elif os.path.isdir(source):
            return None
        else:
            place = link  # leads nowhere, which the check of the links reports
        return f"{place}#{fragment}" if fragment else place

    def body_of(self, page):
        html = subprocess.run(["pandoc", "-f", "gfm", "-t", "html5", "--wrap=preserve", os.path.join(ROOT, page)],
                              check=True, stdout=subprocess.PIPE, text=True).stdout

        def replace_anchor(match):
            place = self.place_of_link(page, match.group(1))
            return f'<a href="{place}"{match.group(2)}>{match.group(3)}</a>' if place else match.group(3)

        def replace_source(match):
            return f'src="{self.place_of_link(page, match.group(1))}"'

        def replace_code(match):
            place = self.places.get(match.group(1))
            return f'<a href="{place}">{match.group(0)}</a>' if place else match.group(0)
        html = re.sub(r'src="([^"]*)"', replace_source, html)
        # Names in headings and in links stay as they are.
        parts = re.split(r"(<a href=.*?</a>|<h\d.*?</h\d>|<pre.*?</pre>)", html, flags=re.S)
        parts[::2] = [re.sub(r"<code>([\w.]+)(?:\(\))?</code>", replace_code, part) for part in parts[::2]]
        parts[1::2] = [re.sub(r'<a href="([^"]*)"([^>]*)>(.*?)</a>', replace_anchor, part, flags=re.S)
                       for part in parts[1::2]]
        return "".join(parts)

    def chapters(self, page):
        """The list of chapters beside the text of a page."""
        items = []
        for other in [self.home] + [p for p in linked_pages(self.home) if p in self.pages and p != self.home]:
            here = ' class="here"' if other == page else ""
            title = "Contents" if other == self.home else "README" if other == "README.md" else title_of(other)
            items.append(f'<li><a{here} href="{self.name_of(other)}">{escape(title)}</a></li>')
        return "<ul>\n" + "\n".join(items) + "\n</ul>"

    def clear(self):
        """Removes what an earlier build left: a link to it would not be found broken."""
        for entry in os.scandir(self.folder):
            if entry.name != "reference":
                shutil.rmtree(entry) if entry.is_dir() else os.remove(entry)

    def write(self):
        self.clear()
        with open(os.path.join(HERE, "page.html"), encoding="utf-8") as file:
            template = string.Template(file.read())
        for page in self.pages:
            title = title_of(page)
            html = template.substitute(title=escape(title if title.startswith("KineDll") else f"{title} - KineDll"),
                                       chapters=self.chapters(page), body=self.body_of(page))
            with open(os.path.join(self.folder, self.name_of(page)), "w", encoding="utf-8") as file:
                file.write(html)
        shutil.copyfile(os.path.join(HERE, "book.css"), os.path.join(self.folder, "book.css"))


def main(arguments):
    if len(arguments) != 1:
        sys.exit(__doc__)
    book = Book(os.path.abspath(arguments[0]))
    book.write()
    faults = [f"{page} is not reached from {book.home}" for page in book.unreached()]
    faults += broken_links(book.folder, [book.name_of(page) for page in book.pages])
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(book.pages)} pages and the reference: {os.path.relpath(book.folder)}/index.html")


if __name__ == "__main__":
    main(sys.argv[1:])
