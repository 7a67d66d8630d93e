"""A source text as the operators of mutants see it: tokens, brackets and statements.

A mutant replaces one range of the text. Its id is made from the file, the line as it stands, the
operator, the change and, where all of these occur more than once, the occurrence: it stays the same
when the line moves.
"""

import hashlib
import re
from collections import Counter
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    id: str
    file: str
    line: int
    operator: str
    start: int
    end: int
    replacement: str

    def apply(self, text):
        return text[: self.start] + self.replacement + text[self.end :]


@dataclass(frozen=True)
class Token:
    kind: str  # string, character, number, word or mark
    text: str
    start: int
    end: int
    spaced: bool  # white space on both sides, as the formatter sets binary operators


LEXER = re.compile(
    r"""
    (?P<skip>     \s+ | \\\n | //[^\n]* | /\*.*?\*/
                | ^\s*\#\s*(?!define)[^\n]*$         # directives; the body of a macro is code
                | ^\s*\#\s*define\s+\w+(?:\([^)]*\))? )
  | (?P<string>   "(?:[^"\\\n]|\\.)*" )
  | (?P<character>'(?:[^'\\\n]|\\.)*' )
  | (?P<number>   \b(?:0[xX][0-9a-fA-F]+|[0-9]+)[uUlL]*\b )
  | (?P<word>     [A-Za-z_]\w* )
  | (?P<mark>     <<=|>>=|\.\.\.|->|::|\+\+|--|&&|\|\||<=|>=|==|!=|\+=|-=|\*=|/=|<<|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

OPENING = {"(": ")", "[": "]", "{": "}"}
CLOSING = set(OPENING.values())

TYPE_WORDS = {"long", "int", "unsigned", "short", "bool", "char"}


def tokens_of(text):
    tokens = []
    for match in LEXER.finditer(text):
        kind = match.lastgroup
        if kind == "skip":
            continue
        start, end = match.span()
        spaced = text[start - 1 : start].isspace() and text[end : end + 1].isspace()
        tokens.append(Token(kind, match.group(), start, end, spaced))
    return tokens


class Source:
    """A source text with its tokens and the places of its brackets."""

    def __init__(self, file, text):
        self.file = file
        self.text = text
        self.tokens = tokens_of(text)
        self.partner = {}
        self.excluded = set()
        self._pair_brackets()
        self._exclude_what_never_runs()
        self.found = []

    def _pair_brackets(self):
        open_places = []
        for i, token in enumerate(self.tokens):
            if token.kind != "mark":
                continue
            if token.text in OPENING:
                open_places.append(i)
            elif token.text in CLOSING and open_places:
                other = open_places.pop()
                self.partner[i] = other
                self.partner[other] = i

    def _exclude_what_never_runs(self):
        """What is checked when compiling can only fail to compile, and `while (false)` ends a macro."""
        for i, token in enumerate(self.tokens):
            is_macro_end = token.text == "while" and self.word(i + 2) == "false"
            is_check = token.text in ("static_assert", "__attribute__")
            if (is_check or is_macro_end) and i + 1 in self.partner:
                self.excluded.update(range(i, self.partner[i + 1] + 1))

    def is_pure(self, i):
        """Whether a token is the 0 of a function without a body."""
        return (self.word(i) == "0" and self.word(i - 1) == "=" and self.word(i + 1) == ";"
                and self.word(i - 2) in (")", "const", "noexcept", "override"))

    def enumerations(self):
        """The places of what stands in the braces of enumerations."""
        places = set()
        for i, token in enumerate(self.tokens):
            if token.text == "enum":
                brace = i
                while self.word(brace) not in ("{", ";", ""):
                    brace += 1
                places.update(range(brace, self.partner.get(brace, brace)))
        return places

    def text_of(self, first, last):
        return self.text[self.tokens[first].start : self.tokens[last].end]

    def word(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def add(self, operator, first, last, replacement):
        start, end = self.tokens[first].start, self.tokens[last].end
        # Traces show line numbers: the lines below stay where they are.
        lost = self.text.count("\n", start, end) - replacement.count("\n")
        self.found.append((operator, start, end, replacement + "\n" * max(lost, 0)))

    def mutants(self, operators):
        for find in operators:
            find(self)
        counts = Counter()
        result = []
        for operator, start, end, replacement in sorted(self.found, key=lambda f: (f[1], f[2], f[0])):
            line = self.text.count("\n", 0, start)
            context = self.text.split("\n")[line].strip()
            column = start - (self.text.rfind("\n", 0, start) + 1)
            column -= len(self.text.split("\n")[line]) - len(self.text.split("\n")[line].lstrip())
            key = (self.file, operator, context, column, self.text[start:end], replacement)
            counts[key] += 1
            digest = hashlib.sha1(repr((key, counts[key])).encode()).hexdigest()[:10]
            result.append(Mutant(digest, self.file, line + 1, operator, start, end, replacement))
        return result


def end_of_statement(source, i):
    """Index of the semicolon that ends the statement that contains a token."""
    while i < len(source.tokens) and source.tokens[i].text != ";":
        i = source.partner[i] + 1 if source.tokens[i].text in OPENING and i in source.partner else i + 1
    return i


def is_code_block(source, brace):
    before = source.word(brace - 1)
    if before in ("else", "do", "]"):
        return True
    i = brace - 1
    while source.word(i) in ("const", "noexcept", "override"):
        i -= 1
    return source.word(i) == ")"


def is_declaration(source, i):
    """Whether a statement that starts with a name declares something: a type comes first."""
    if source.word(i) in TYPE_WORDS:
        return True
    if source.tokens[i].kind != "word":
        return False
    i += 1
    while source.word(i) == "::":
        i += 2
    if source.word(i) == "<":
        while source.word(i) not in (">", ";"):
            i += 1
        i += 1
    while source.word(i) in ("*", "&", "const"):
        i += 1
    return i < len(source.tokens) and source.tokens[i].kind == "word"
