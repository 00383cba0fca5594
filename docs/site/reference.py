#!/usr/bin/env python3
"""Usage: reference.py XML FOLDER ENTRIES
Makes the pages of the reference, one for each public header, from what doxygen read out of the
headers: Markdown files in FOLDER. Each page begins with the tour of its header; the class that the
header is named after comes first, the rest in the order of the header. The file ENTRIES becomes a
list of what has an anchor and no heading, for the search index.
"""

import html
import json
import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree as ElementTree

# What is not for callers to use, although a description of it stands in a header.
INTERNAL = {"is_content", "drops_builder"}

# How long a line of code may be, in columns.
LONGEST = 96


def text_of(element):
    return "" if element is None else "".join(element.itertext())


def tidy(code):
    """A declaration as the headers are formatted."""
    code = re.sub(r"\s+", " ", code).strip()
    code = code.replace("< ", "<").replace(" >", ">").replace(" >", ">")
    code = re.sub(r"(\w|>) ([&*]+)(?=[^\w&*]|$)", r"\1\2", code)
    code = re.sub(r"(\w|>) ([&*]+)(?=\w)", r"\1\2 ", code)
    return re.sub(r"(\w|>)=(?= |\w|{)", r"\1 =", code).replace(" ={", " = {")


class Reference:
    def __init__(self, folder):
        self.compounds = {}
        for path in sorted(folder.glob("*.xml")):
            for compound in ElementTree.parse(path).getroot().iter("compounddef"):
                self.compounds[compound.get("id")] = compound
        self.places = {}  # the id of a member: the page and the anchor
        self.entries = []  # what has an anchor and no heading

    def pages(self):
        """The headers and what each declares: (stem, compound of the file, items by line)."""
        files = [c for c in self.compounds.values() if c.get("kind") == "file"]
        for file in sorted(files, key=lambda f: text_of(f.find("compoundname"))):
            name = text_of(file.find("compoundname"))
            yield name.removesuffix(".hpp"), file, self.items("/" + name)

    def items(self, name):
        items = []
        for compound in self.compounds.values():
            location = compound.find("location")
            kind = compound.get("kind")
            if kind in ("class", "struct") and location.get("file").endswith(name):
                if compound.get("prot") == "public" and self.is_described(compound):
                    items.append((int(location.get("line")), compound))
            elif kind == "namespace" or (kind == "file" and compound.find("location").get("file").endswith(name)):
                for section in compound.iter("sectiondef"):
                    members = [m for m in section.iter("memberdef")
                               if m.find("location").get("file").endswith(name)
                               and text_of(m.find("name")) not in INTERNAL and self.is_described(m)]
                    if members and section.get("kind") == "user-defined":
                        items.append((self.line(members[0]), section, members))
                    else:
                        items += [(self.line(m), section, [m]) for m in members]
        return sorted({id(i[-1]) if len(i) == 2 else id(i[2][0]): i for i in items}.values(),
                      key=lambda item: item[0])

    @staticmethod
    def line(member):
        return int(member.find("location").get("line"))

    @staticmethod
    def is_described(element):
        return any(text_of(element.find(d)).strip()
                   for d in ("briefdescription", "detaileddescription"))

    # ---- Descriptions: HTML, so that no character of theirs is taken for Markdown ---------------

    def inline(self, element):
        parts = [html.escape(element.text or "", quote=False)]
        for child in element:
            inner = self.inline(child)
            if child.tag == "computeroutput":
                inner = f"<code>{inner}</code>"
            elif child.tag == "ref" and child.get("refid") in self.places:
                page, anchor = self.places[child.get("refid")]
                inner = f'<a href="{page}.html#{anchor}"><code>{inner}</code></a>'
            elif child.tag in ("emphasis", "bold"):
                inner = f"<em>{inner}</em>"
            elif child.tag == "ulink":
                inner = f'<a href="{html.escape(child.get("url"))}">{inner}</a>'
            parts += [inner, html.escape(child.tail or "", quote=False)]
        # No code within code, as of a reference within a piece of code.
        return re.sub(r"(<code>[^<]*)<a[^>]*><code>([^<]*)</code></a>", r"\1\2", "".join(parts))

    def blocks(self, element):
        """What lies in a description, block by block: strings of Markdown or HTML."""
        for paragraph in element.findall("para"):
            run = ElementTree.Element("run")
            run.text = paragraph.text
            for child in paragraph:
                if child.tag in ("verbatim", "itemizedlist", "parameterlist", "simplesect", "programlisting"):
                    yield from self.paragraph(run)
                    yield from self.block(child)
                    run = ElementTree.Element("run")
                    run.text = child.tail
                else:
                    run.append(child)
            yield from self.paragraph(run)

    def paragraph(self, run):
        content = self.inline(run).strip()
        if content:
            yield f"<p>{content}</p>"

    def block(self, element):
        if element.tag == "verbatim":
            yield "```cpp\n" + textwrap.dedent(element.text).strip("\n").rstrip() + "\n```"
        elif element.tag == "itemizedlist":
            items = "".join(f"<li>{self.flat(item)}</li>" for item in element.findall("listitem"))
            yield f"<ul>{items}</ul>"
        elif element.tag == "parameterlist":
            title = {"exception": "Throws", "param": "Parameters", "templateparam": "Template parameters"}[element.get("kind")]
            rows = "".join(
                f"<li><code>{html.escape(text_of(item.find('parameternamelist')).strip())}</code>: "
                f"{self.flat(item.find('parameterdescription'))}</li>"
                for item in element.findall("parameteritem"))
            yield f"<p><strong>{title}</strong></p>\n<ul>{rows}</ul>"
        elif element.tag == "simplesect":
            title = {"return": "Returns", "par": text_of(element.find("title")),
                     "note": "Note"}[element.get("kind")]
            yield f"<p><strong>{title}</strong> {self.flat(element)}</p>"

    def flat(self, element):
        return " ".join(self.inline(p).strip() for p in element.findall("para"))

    def description(self, element):
        for name in ("briefdescription", "description", "detaileddescription"):
            if element.find(name) is not None:
                yield from self.blocks(element.find(name))

    # ---- Declarations ----------------------------------------------------------------------

    @staticmethod
    def template(element):
        found = element.find("templateparamlist")
        if found is None:
            return ""
        parameters = []
        for parameter in found.findall("param"):
            words = [text_of(parameter.find(n)) for n in ("type", "declname")]
            default = text_of(parameter.find("defval"))
            parameters.append(" ".join(filter(None, words)) + (f" = {default}" if default else ""))
        line = tidy(f"template <{', '.join(parameters)}>")
        if len(line) > LONGEST:
            line = "template <" + ",\n          ".join(map(tidy, parameters)) + ">"
        return line + "\n"

    def declaration(self, member):
        kind = member.get("kind")
        if kind == "define":
            words = text_of(member.find("initializer")).replace("\\\n", " ").split()
            name = f"#define {text_of(member.find('name'))}"
            return " \\\n".join(textwrap.wrap(" ".join([name, *words]), LONGEST - 2, subsequent_indent="    ",
                                               break_long_words=False, break_on_hyphens=False))
        if kind == "enum":
            return self.enumeration(member)
        if kind == "typedef":
            return tidy(text_of(member.find("definition"))) + ";"
        start = self.template(member) + ("explicit " if member.get("explicit") == "yes" else "")
        head = tidy(text_of(member.find("definition")))
        if kind == "variable":
            return start + " ".join(filter(None, (head, tidy(text_of(member.find("initializer")))))) + ";"
        arguments = tidy(text_of(member.find("argsstring")))
        whole = start + head + arguments + ";"
        parameters = member.findall("param")
        if max(map(len, whole.splitlines())) <= (88 if len(parameters) > 1 else LONGEST) or not parameters:
            return whole
        if len(parameters) == 1:
            return f"{start}{head}(\n    {arguments[1:]};"
        # One parameter per line.
        end = arguments[arguments.rindex(")"):]
        lines = ",\n".join(
            "    " + tidy(" ".join(filter(None, (text_of(p.find("type")), text_of(p.find("declname"))))) +
                          (" = " + text_of(p.find("defval")) if p.find("defval") is not None else ""))
            for p in parameters)
        return f"{start}{head}(\n{lines}{end};"

    @staticmethod
    def enumeration(member):
        strong = "class " if member.get("strong") == "yes" else ""
        values = []
        for value in member.findall("enumvalue"):
            line = text_of(value.find("name")) + text_of(value.find("initializer")).replace("=", " =").replace("  ", " ")
            brief = text_of(value.find("briefdescription")).strip().removesuffix(".")
            values.append((line + ",", brief))
        width = max(len(line) for line, _ in values)
        lines = [f"    {line:{width}} // {brief}" if brief else f"    {line}" for line, brief in values]
        return f"enum {strong}{text_of(member.find('name'))} {{\n" + "\n".join(lines) + "\n};"

    # ---- Pages -----------------------------------------------------------------------------

    @staticmethod
    def is_remark(member, level):
        """Whether a description is a remark beside the declaration, as of most constructors. Functions
        outside of classes, and data members, have headings, which the table of contents lists."""
        if member.get("kind") in ("enum", "variable") or (member.get("kind") == "function" and level < 4):
            return False
        return (not text_of(member.find("detaileddescription")).strip()
                and len(text_of(member.find("briefdescription")).strip()) <= 60
                and member.find("templateparamlist") is None)

    def anchor(self, page, owner, name, member):
        words = f"{owner}-{name}" if owner else name
        anchor = re.sub(r"[^a-z0-9]+", "-", words.lower()).strip("-")
        taken = {place for place in self.places.values()}
        number = 2
        candidate = anchor
        while (page, candidate) in taken:
            candidate = f"{anchor}-{number}"
            number += 1
        self.places[member.get("id")] = (page, candidate)
        return candidate

    def public_sections(self, compound):
        for section in compound.findall("sectiondef"):
            members = [m for m in section.findall("memberdef")
                       if m.get("prot") == "public" and m.get("kind") != "friend" and self.is_described(m)]
            if members:
                yield section, members

    def note_places(self):
        for page, _, items in self.pages():
            for item in self.ordered(page, items):
                if len(item) == 2:
                    owner = text_of(item[1].find("compoundname")).removeprefix("foundation::json::")
                    self.anchor(page, "", owner, item[1])
                    for _, members in self.public_sections(item[1]):
                        for member in members:
                            self.note_place(page, owner, member)
                else:
                    for member in item[2]:
                        self.note_place(page, "", member)

    def note_place(self, page, owner, member):
        name = text_of(member.find("name"))
        self.anchor(page, owner, name, member)
        for value in member.findall("enumvalue"):
            self.anchor(page, f"{owner}-{name}" if owner else name, text_of(value.find("name")), value)

    def enter(self, title, element):
        """Adds to the search index what has no heading."""
        page, anchor = self.places[element.get("id")]
        self.entries.append({"location": f"reference/{page}.html#{anchor}",
                             "title": html.escape(title, quote=False),
                             "text": " ".join(text_of(element.find("briefdescription")).split())})

    @staticmethod
    def scope(member):
        """`Value::` for a member of that class, also of another one within; else nothing."""
        name = text_of(member.find("qualifiedname")).removeprefix("foundation::json::")
        return name[:len(name) - len(text_of(member.find("name")))]

    @staticmethod
    def signature(member):
        """A function with the types of its parameters, which tell overloads apart."""
        types = [tidy(text_of(p.find("type"))) for p in member.findall("param")]
        constant = " const" if member.get("const") == "yes" else ""
        return f"{text_of(member.find('name'))}({', '.join(types)}){constant}"

    @staticmethod
    def ordered(page, items):
        main = page.replace("_", "")
        return sorted(items, key=lambda item: not (
            len(item) == 2 and text_of(item[1].find("compoundname")).split("::")[-1].lower() == main))

    def members(self, members, level):
        """One block of code for consecutive remarks, a heading for everything else."""
        remarks = []
        functions = [text_of(m.find("name")) for m in members
                     if m.get("kind") == "function" and not self.is_remark(m, level)]
        for member in members + [None]:
            if member is not None and self.is_remark(member, level):
                remark = text_of(member.find("briefdescription")).strip()
                remarks.append((self.declaration(member), remark.removesuffix("."), member))
                self.enter(self.scope(member) + (self.signature(member) if member.get("kind") == "function"
                                                 else text_of(member.find("name"))), member)
                continue
            if remarks:
                width = max(len(line) for line, _, _ in remarks)
                width = width if width <= 60 else 0
                anchors = "".join(f'<a id="{self.places[m.get("id")][1]}"></a>' for _, _, m in remarks)
                yield f"<div>{anchors}</div>"
                lines = (f"{line:{width}} // {remark}" for line, remark, _ in remarks)
                lines = (beside if len(beside) <= LONGEST else f"// {remark}\n{line}"
                         for beside, (line, remark, _) in zip(lines, remarks))
                yield "```cpp\n" + "\n".join(lines) + "\n```"
                remarks = []
            if member is not None:
                name = text_of(member.find("name"))
                shown = self.signature(member) if functions.count(name) > 1 else name
                yield f"{'#' * level} `{shown}` {{ #{self.places[member.get('id')][1]} }}"
                values = member.findall("enumvalue")
                if values:
                    anchors = "".join(f'<a id="{self.places[v.get("id")][1]}"></a>' for v in values)
                    yield f"<div>{anchors}</div>"
                for value in values:
                    scope = f"{name}::" if member.get("strong") == "yes" else ""
                    self.enter(self.scope(member) + scope + text_of(value.find("name")), value)
                yield f"```cpp\n{self.declaration(member)}\n```"
                yield from self.description(member)

    def compound(self, compound):
        name = text_of(compound.find("compoundname")).removeprefix("foundation::json::")
        yield f"## `{name}` {{ #{self.places[compound.get('id')][1]} }}"
        base = "".join(f" : public {tidy(text_of(b))}" for b in compound.findall("basecompoundref"))
        yield f"```cpp\n{self.template(compound)}{compound.get('kind')} {name}{base};\n```"
        yield from self.description(compound)
        for section, members in self.public_sections(compound):
            if section.get("kind") == "user-defined":
                yield f"### {text_of(section.find('header'))}"
                yield from self.description(section)
            yield from self.members(members, 4)

    def traits(self, compounds):
        """What specialisations of one template say, as a table."""
        yield "| Type | `name` | `order` |\n|---|---|--:|\n" + "\n".join(
            "| `{}` | `{}` | {} |".format(
                tidy(re.search("<(.*)>", text_of(c.find("compoundname")), re.S)[1]),
                text_of(c.find(".//memberdef[name='name']/briefdescription")).strip(),
                text_of(c.find(".//memberdef[name='order']/initializer")).strip(" ="))
            for c in compounds)

    def page(self, stem, file, items):
        yield f"# {text_of(file.find('compoundname'))}"
        yield f"```cpp\n#include <foundation/json/{stem}.hpp>\n```"
        yield from self.description(file)
        specialisations = [i[1] for i in items if len(i) == 2 and "<" in text_of(i[1].find("compoundname"))]
        single = []  # members with no section of their own, one after the other
        for item in [*self.ordered(stem, items), None]:
            if item is not None and len(item) == 3 and item[1].get("kind") != "user-defined":
                single += item[2]
                continue
            yield from self.members(single, 2)
            single = []
            if item is None:
                break
            if len(item) == 2:
                if item[1] in specialisations:
                    continue
                yield from self.compound(item[1])
                if any(text_of(s.find("compoundname")).startswith(text_of(item[1].find("compoundname")) + "<")
                       for s in specialisations):
                    yield from self.traits(specialisations)
            else:
                yield f"## {text_of(item[1].find('header'))}"
                yield from self.description(item[1])
                yield from self.members(item[2], 3)


def main():
    if len(sys.argv) != 4:
        sys.exit("reference.py: expected: the folder of doxygen's XML, that of the pages, and a file")
    xml, target, entries = map(pathlib.Path, sys.argv[1:])
    reference = Reference(xml)
    reference.note_places()
    target.mkdir(parents=True, exist_ok=True)
    for stem, file, items in reference.pages():
        (target / f"{stem}.md").write_text("\n\n".join(reference.page(stem, file, items)) + "\n")
    entries.write_text(json.dumps(reference.entries), encoding="utf-8")


if __name__ == "__main__":
    main()
