"""Finds links between HTML pages that lead nowhere: to no file, or to no such place in a page."""

import os
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit


class _Page(HTMLParser):
    def __init__(self):
        super().__init__()
        self.places, self.links = set(), []

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == "id" or (name == "name" and tag == "a"):
                self.places.add(value)
            elif name in ("href", "src") and value is not None:
                self.links.append(value)


def read_page(path):
    page = _Page()
    with open(path, encoding="utf-8") as file:
        page.feed(file.read())
    return page


def broken_links(folder, names):
    """What is wrong with the links of the named pages, as lines; links to other hosts are not followed."""
    pages, faults = {}, []

    def page_at(path):
        if path not in pages:
            pages[path] = read_page(path)
        return pages[path]
    for name in names:
        path = os.path.normpath(os.path.join(folder, name))
        for link in page_at(path).links:
            parts = urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            target = os.path.normpath(os.path.join(os.path.dirname(path), unquote(parts.path))) if parts.path else path
            if not os.path.isfile(target):
                faults.append(f"{name}: {link} leads to no file")
            elif parts.fragment and target.endswith(".html") and unquote(parts.fragment) not in page_at(target).places:
                faults.append(f"{name}: {link} leads to no such place in the page")
    return faults
