#!/usr/bin/env python3
"""Usage: search_entries.py FOLDER ENTRIES
Gives each message that the page of errors lists an anchor of its own, and an entry in the search index:
whoever looks for the text of an exception finds its cause and its cure. Adds the entries in the file
ENTRIES: what has an anchor in the reference, but no heading.
"""

import html
import json
import pathlib
import re
import sys


def plain(cell):
    return " ".join(html.unescape(re.sub("<.*?>", "", cell)).split())


def main():
    if len(sys.argv) != 3 or not pathlib.Path(sys.argv[1], "errors.html").is_file():
        sys.exit("search_entries.py: expected: the folder of the pages, and a file of entries")
    folder = pathlib.Path(sys.argv[1])
    page = folder / "errors.html"
    entries = []

    def table(match):
        head = [plain(cell) for cell in re.findall(r"<th\b[^>]*>(.*?)</th>", match[0], re.S)]
        column = next((head.index(name) for name in ("Message", "Description") if name in head), None)
        return match[0] if column is None else re.sub(
            r"<tr>(.*?)</tr>", lambda row: line(row, column), match[0], flags=re.S)

    def line(match, column):
        cells = re.findall(r"<td\b[^>]*>(.*?)</td>", match[1], re.S)
        if not cells:
            return match[0]
        name = f"message-{len(entries) + 1}"
        # The theme shows titles as HTML.
        title = html.escape(plain(cells[column]), quote=False)
        entries.append({"location": f"errors.html#{name}", "title": title,
                        "text": " ".join(plain(c) for i, c in enumerate(cells) if i != column)})
        return f'<tr id="{name}">{match[1]}</tr>'

    page.write_text(re.sub(r"<table>.*?</table>", table, page.read_text(encoding="utf-8"), flags=re.S),
                    encoding="utf-8")
    path = folder / "search" / "search_index.json"
    index = json.loads(path.read_text(encoding="utf-8"))
    # Next to their page, since what belongs to a page follows it.
    for entry in [*entries, *json.loads(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8"))]:
        name = entry["location"].split("#")[0]
        last = max(i for i, other in enumerate(index["docs"]) if other["location"].split("#")[0] == name)
        index["docs"].insert(last + 1, entry)
    path.write_text(json.dumps(index, ensure_ascii=False), encoding="utf-8")


if __name__ == "__main__":
    main()
