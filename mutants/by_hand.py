"""Changes that were thought up by hand, from a file of them.

A line at the margin is a source file, with "by WORD" after it where the reader asks for one; an indented line
below it is a text that stands in that file once, " => ", and what it becomes.
"""

import hashlib
import sys

from source import Mutant


def read_by_hand(path, texts):
    """(mutant, word) of each change; the word is "" where none stands.

    @param texts sources by their names.
    """
    file = word = ""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.strip().startswith("#"):
            continue
        if not line[0].isspace():
            file, _, word = line.strip().partition(" by ")
            continue
        before, separator, after = line.strip().partition(" => ")
        if not separator or texts.get(file, "").count(before) != 1:
            sys.exit(f"{path}:{number}: this stands in {file} not once: {before}")
        start = texts[file].index(before)
        name = hashlib.sha1(f"{file} {line.strip()}".encode()).hexdigest()[:10]
        place = texts[file].count("\n", 0, start) + 1
        yield Mutant(name, file, place, "by hand", start, start + len(before), after), word
