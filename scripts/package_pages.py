"""Documents as pages that a browser opens from a folder, beside the Markdown that they are made from."""

import html
import posixpath
import re
import subprocess

from check_docs import anchor

STYLE = """body{font:16px/1.5 "Segoe UI",sans-serif;max-width:52rem;margin:2rem auto;padding:0 1rem;color:#1c1c1c}
code,pre{font:14px/1.45 Consolas,monospace;background:#f3f3f3}pre{padding:.7rem;overflow:auto}code{padding:0 .2em}
pre code{padding:0}table{border-collapse:collapse;display:block;overflow:auto}
td,th{border:1px solid #ccc;padding:.25rem .6rem;vertical-align:top;text-align:left}img{max-width:100%}
h1,h2,h3{line-height:1.25}a{color:#0b57a4}
@media(prefers-color-scheme:dark){body{background:#1b1b1b;color:#ddd}code,pre{background:#2a2a2a}a{color:#7db4ee}
td,th{border-color:#555}}
"""
LINK = re.compile(r'<a href="([^"]*)">(.*?)</a>', re.DOTALL)
HEADING = re.compile(r"<h([1-6])[^>]*>(.*?)</h\1>", re.DOTALL)
TAG = re.compile(r"<[^>]*>")


def page_name(name):
    """The page of a document: docs/formats.md is shown by docs/formats.html."""
    return re.sub(r"\.md$", ".html", name)


def leads_outside(target):
    return re.match(r"[a-z]+:", target) is not None


class Pages:
    """Makes a page of each Markdown document among files, the names and bytes of one package."""

    def __init__(self, files):
        self.files = files
        self.folders = {posixpath.dirname(name) for name in files}
        self.bodies = {}

    def body(self, name):
        """The document as HTML, its headings with names, its links as they are written."""
        if name not in self.bodies:
            made = subprocess.run(["cmark-gfm", "--unsafe", "-e", "table", "-e", "strikethrough"], check=True,
                                  input=self.files[name], capture_output=True).stdout.decode("utf-8")
            taken = {}
            self.bodies[name] = HEADING.sub(lambda heading: self.heading(taken, *heading.groups()), made)
        return self.bodies[name]

    def page(self, name):
        """The page of the document name. It stands alone but for the pictures beside it: the style is in it, and no
        script. A link to another document leads to its page; one to a file or a heading that is not in the package
        is text."""
        made = self.body(name)
        body = LINK.sub(lambda link: self.link(name, *link.groups()), made)
        title = HEADING.search(made)
        title = TAG.sub("", title.group(2)) if title else html.escape(name)
        return (f'<!doctype html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n<title>{title}</title>\n'
                f"<style>\n{STYLE}</style>\n</head>\n<body>\n{body}</body>\n</html>\n").encode("utf-8")

    def link(self, name, target, text):
        if leads_outside(html.unescape(target)):
            return f'<a href="{target}">{text}</a>'
        path, mark, part = target.partition("#")
        inside = posixpath.normpath(posixpath.join(posixpath.dirname(name), path)) if path else name
        overview = posixpath.join(inside, "README.md")
        if inside not in self.files and overview in self.files:
            inside, path = overview, posixpath.join(path, "README.md")
        if inside in self.files:
            return f'<a href="{page_name(path)}{mark}{part}">{text}</a>' if self.has_part(inside, part) else text
        return f'<a href="{target}">{text}</a>' if inside in self.folders else text

    def has_part(self, name, part):
        """A file of one package can be another one than that of the sources, as each package has its own README."""
        return not part or not name.endswith(".md") or f' id="{part}"' in self.body(name)

    @staticmethod
    def heading(taken, level, text):
        own = anchor(html.unescape(TAG.sub("", text)))
        count = taken.get(own, 0)
        taken[own] = count + 1
        return f'<h{level} id="{own}{f"-{count}" if count else ""}">{text}</h{level}>'
