"""The help's pages as one Markdown page, for those who read without the program.

The pages use few elements, and this knows no others: it stops at one that it does not know, so that nothing is lost.
"""

import html.parser
import re
import textwrap

WIDTH = 120
HEADING_OF_DEPTH = {1: "##", 2: "###"}


class UnknownElement(Exception):
    pass


class Converter(html.parser.HTMLParser):
    """One page. `depth` is that of its entry in the table of contents; `name` that of its file without the ending."""

    INLINE = {"b": "**", "i": "*", "code": "`", "kbd": "`"}
    HEADINGS = ("h1", "h2", "h3")
    SILENT = ("html", "head", "meta", "link", "title", "body")

    def __init__(self, name, depth):
        super().__init__()
        self.name, self.depth = name, depth
        self.blocks = []  # what is finished
        self.text = None  # of the paragraph, cell or entry that is open
        self.lists, self.rows, self.spans, self.note, self.link = [], None, {}, False, None

    # --- pieces of text

    def handle_data(self, data):
        if self.text is not None:
            self.text += data if self.code or self.pre else re.sub(r"([*_|<`])", r"\\\1", data)

    code = pre = False

    def taken(self):
        """The text collected since the block began, and no longer collected."""
        text, self.text = self.text or "", None
        return text if self.pre else " ".join(text.replace("\xa0", " ").split())

    # --- elements

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag in self.INLINE:
            self.text += self.INLINE[tag]
            self.code = self.code or tag in ("code", "kbd")
        elif tag == "a" and "name" in values:
            self.text += f'<a name="{self.name}-{values["name"]}"></a>'
        elif tag == "a":
            page, _, place = values["href"].partition("#")
            self.link = "#" + (page or self.name).removesuffix(".htm") + ("-" + place if place else "")
            self.text += "["
        elif tag == "br":
            self.text += "<br>" if self.rows is not None else " "
        elif tag in ("p", "li", "pre", *self.HEADINGS):
            self.text = ""
            self.note = values.get("class") == "note"
            self.pre = tag == "pre"
        elif tag in ("ul", "ol"):
            self.lists.append([tag, 0])
        elif tag == "table":
            self.rows, self.spans = [], {}
        elif tag == "tr":
            self.rows.append([])
        elif tag in ("td", "th"):
            self.fill()
            if "rowspan" in values:
                self.spans[len(self.rows[-1])] = int(values["rowspan"])
            self.text = ""
        elif tag not in self.SILENT:
            raise UnknownElement(tag)

    def fill(self):
        """Cells of rows above that reach down into this one are blank here."""
        row = self.rows[-1]
        while self.spans.get(len(row), 0) > 1:
            self.spans[len(row)] -= 1
            row.append("")

    def handle_endtag(self, tag):
        if tag in self.INLINE:
            self.text += self.INLINE[tag]
            self.code = False
        elif tag == "a" and self.link:
            self.text += f"]({self.link})"
            self.link = None
        elif tag in self.HEADINGS:
            self.end_heading(tag)
        elif tag == "p":
            self.add(self.taken(), "> " if self.note else "", "> " if self.note else "")
        elif tag == "li":
            kind, count = self.lists[-1]
            self.lists[-1][1] = count + 1
            mark = "- " if kind == "ul" else f"{count + 1}. "
            self.add(self.taken(), mark, " " * len(mark), close=count > 0)
        elif tag in ("ul", "ol"):
            self.lists.pop()
        elif tag == "pre":
            self.blocks.append("\n".join("    " + line for line in self.taken().split("\n")))
            self.pre = False
        elif tag in ("td", "th"):
            self.rows[-1].append(self.taken())
        elif tag == "table":
            head, *body = self.rows
            lines = [head, ["---"] * len(head), *body]
            self.blocks.append("\n".join("| " + " | ".join(row) + " |" for row in lines))
            self.rows = None

    def end_heading(self, tag):
        marks = HEADING_OF_DEPTH[self.depth] + "#" * self.HEADINGS.index(tag)
        text = self.taken()
        anchor = re.match(r'<a name="[^"]*"></a>', text)
        if tag == "h1":
            self.blocks.append(f'<a name="{self.name}"></a>')
        if anchor:
            self.blocks.append(anchor.group(0))
            text = text[anchor.end():]
        self.blocks.append(f"{marks} {text}")

    def add(self, text, first, further, close=False):
        lines = textwrap.wrap(text, WIDTH, initial_indent=first, subsequent_indent=further, break_long_words=False,
                              break_on_hyphens=False)
        if close:
            self.blocks[-1] += "\n" + "\n".join(lines)
        else:
            self.blocks.append("\n".join(lines))


def convert(name, depth, text):
    converter = Converter(name, depth)
    converter.feed(text)
    return "\n\n".join(converter.blocks)


def entries_of(contents):
    """(depth, title, page) of each entry of the table of contents."""
    depth, found = 0, []
    for tag, name, page in re.findall(r'<(/?ul|param name="Name" value="([^"]*)">\s*<param name="Local" value="([^"]*)")',
                                      contents):
        if tag == "ul":
            depth += 1
        elif tag == "/ul":
            depth -= 1
        else:
            found.append((depth, name, page))
    return found


def manual(title, contents, read):
    """The whole page; `read` gives the text of a help page."""
    entries = entries_of(contents)
    lines = [f"{'  ' * (depth - 1)}- [{name}](#{page.removesuffix('.htm')})" for depth, name, page in entries]
    parts = [f"# {title}", "The pages of the program's help. They are in `resources/help/`; `tools/make-help/make_help.py` "
             "makes this page from\nthem.", "\n".join(lines)]
    parts += [convert(page.removesuffix(".htm"), depth, read(page)) for depth, _, page in entries]
    return "\n\n".join(parts) + "\n"
