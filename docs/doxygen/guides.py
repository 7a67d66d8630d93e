"""How a guide is written: its headings, its links, its blocks of code."""

import re

LINK = re.compile(r"(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^()\s]+)\)")
FENCE = re.compile(r"^( *)```.*?^ *```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"(`+)(.+?)\1", re.DOTALL)
HEADING = re.compile(r"^(#+) (.*)$")


def slug(heading):
    """The anchor that a heading gets where the guides are read as they are."""
    words = re.sub(r"[`*]", "", heading).strip().lower()
    return re.sub(r"[^\w -]", "", words).replace(" ", "-")


class Anchors:
    """The anchors of a guide's headings, one after the other: the second of a name ends in -1."""

    def __init__(self):
        self._seen = {}

    def next(self, heading):
        name = slug(heading)
        self._seen[name] = self._seen.get(name, -1) + 1
        return f"{name}-{self._seen[name]}" if self._seen[name] else name


def anchors_of(text):
    anchors = Anchors()
    return [anchors.next(match[2]) for line in FENCE.sub("", text).splitlines()
            if (match := HEADING.match(line))]


def links_of(text):
    """Where the links of a guide lead within the project: path#anchor, either may be empty."""
    for _, _, target in LINK.findall(CODE.sub("code", FENCE.sub("", text))):
        if not re.match(r"[a-z]+:", target):
            yield target


def guides_of(project):
    return sorted([*project.glob("*.md"), *(project / "docs").rglob("*.md")])
