#!/usr/bin/env python3
"""Usage: check_links.py FOLDER
Prints each link of the pages in FOLDER that leads to no page, or to no place in it, and each thing
that a page loads from the network. Fails if there is any.
"""

import html.parser
import pathlib
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.ids = set()
        self.links = []
        self.loads = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.ids.update(filter(None, (values.get("id"), values.get("name"))))
        target = values.get("href") or values.get("src")
        if target:
            is_loaded = "src" in values or (tag == "link" and values.get("rel") in ("stylesheet", "icon", "preload"))
            (self.loads if is_loaded else self.links).append(target)


def main():
    if len(sys.argv) != 2 or not pathlib.Path(sys.argv[1]).is_dir():
        sys.exit("check_links.py: expected: the folder of the pages")
    root = pathlib.Path(sys.argv[1]).resolve()
    # The page for a web server to send in place of a missing one has links for that server only.
    pages = {path: Page(path) for path in root.rglob("*.html") if path.name != "404.html"}
    problems = []
    for path, page in sorted(pages.items()):
        name = path.relative_to(root)
        problems += [f"{name} loads {target}" for target in page.loads if "//" in target]
        for target in page.links + page.loads:
            address = urllib.parse.urlsplit(target)
            if address.scheme or address.netloc:
                continue
            file = (path.parent / urllib.parse.unquote(address.path)).resolve() if address.path else path
            place = urllib.parse.unquote(address.fragment)
            if not file.is_file() or (place and file in pages and place not in pages[file].ids):
                problems.append(f"{name} has a link that leads nowhere: {target}")
    for problem in dict.fromkeys(problems):
        print(problem)
    return 1 if problems or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
