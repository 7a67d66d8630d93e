"""The mutants of a source text: every small change that a test should notice.

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

RELATIONAL = {
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
}
LOGICAL = {"&&": "||", "||": "&&"}
ARITHMETIC = {"+": "-", "-": "+", "*": "+", "/": "*", "%": "/", "+=": "-=", "-=": "+=",
              "++": "--", "--": "++", "&": "|"}
NAMED_OPPOSITES = {"true": "false", "false": "true", "min": "max", "max": "min",
                   "continue": "break", "add": "subtract", "subtract": "add",
                   "empty": "size", "begin": "end", "INT16_MIN": "INT16_MAX"}

# The enumerators in their order; each becomes the next one.
ENUMERATIONS = {
    "ResultCode": "Success NotApplicable Information Failure NotProvided NoRadioUnitEntry "
                  "MapFailure NoEntry NoCalculator",
    "Modulation": "CW BPSK QAM4 QAM16 QAM32 QAM64 QAM128 QAM256 QAM512 QAM1024 QAM2048 QAM4096 "
                  "QAM8192 QAM16384 QAM65536 UNDEFINED",
    "EReferenceSEC": "Class2 Class4L Class4H Class5B Class6B Class5LB Class5HB Class6LB Class6HB "
                     "Class7B UNDEFINED",
    "EDpdVersion": "Dpd1 Dpd2 Dpd3",
    "EFrameFormatMarket": "Etsi Ansi Global Unknown",
    "HardwareFamily": "Outdoor1 Outdoor3 OlderRadioUnit NewerRadioUnit",
    "UseConfiguredFF": "Configured ById",
    "TraceLevel": "Error Warning InvalidInput Result Detail",
}
ENUMERATIONS = {name: words.split() for name, words in ENUMERATIONS.items()}
TABLE_NAMES = ["PmaxTableDpd1Ansi", "PmaxTableDpd2Ansi", "PmaxTableDpd1Etsi", "PmaxTableDpd2Etsi"]

# Where the numbers of enumerators stay: they are declarations, of which a test states each.
CONTRACT = "interfaces/"

NOT_A_STATEMENT = {"return", "if", "for", "while", "do", "switch", "case", "default", "else", "static",
                   "const", "constexpr", "auto", "using", "namespace", "static_assert", "struct",
                   "class", "enum", "template", "typedef", "public", "private", "protected"}
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

    def mutants(self):
        for find in (relational, logical, arithmetic, constants, names, enumerators, table_cells,
                     conditions, statements, returns, strings, case_labels):
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


def marks(source):
    for i, token in enumerate(source.tokens):
        if token.kind == "mark" and i not in source.excluded:
            yield i, token


def relational(source):
    for i, token in marks(source):
        if token.text in RELATIONAL and token.spaced:
            for other in RELATIONAL[token.text]:
                source.add("relational", i, i, other)


def logical(source):
    for i, token in marks(source):
        if token.text in LOGICAL and token.spaced:
            source.add("logical", i, i, LOGICAL[token.text])


def arithmetic(source):
    for i, token in marks(source):
        if token.text in ("++", "--") or (token.text in ARITHMETIC and token.spaced):
            source.add("arithmetic", i, i, ARITHMETIC[token.text])


def in_table_row(source, i):
    """Whether a token stands in the parentheses of dbRow()."""
    depth = 0
    for j in range(i, max(i - 60, -1), -1):
        text = source.tokens[j].text
        if text == ")":
            depth += 1
        elif text == "(":
            if depth == 0:
                return source.word(j - 1) == "dbRow" and source.word(j - 2) != ">"
            depth -= 1
    return False


def plus(number, step):
    suffix = number[len(number.rstrip("uUlL")) :]
    value = int(number.rstrip("uUlL"), 0) + step
    return str(value) + suffix


def constants(source):
    declared = source.enumerations() if source.file.startswith(CONTRACT) else ()
    for i, token in enumerate(source.tokens):
        if token.kind != "number" or i in source.excluded or in_table_row(source, i):
            continue
        if source.is_pure(i) or i in declared:
            continue
        source.add("constant", i, i, plus(token.text, 1))
        source.add("constant", i, i, plus(token.text, -1))


def names(source):
    for i, token in enumerate(source.tokens):
        if token.kind != "word" or i in source.excluded or token.text not in NAMED_OPPOSITES:
            continue
        if token.text in ("min", "max") and source.word(i - 2) != "std":
            continue
        if token.text in ("add", "subtract") and source.word(i - 2) != "Power":
            continue
        if token.text in ("empty", "begin") and source.word(i - 1) != ".":
            continue
        source.add("opposite", i, i, NAMED_OPPOSITES[token.text])


def neighbours_of(word, words):
    """The next one; for levels of traces both neighbours."""
    place = words.index(word)
    if words is ENUMERATIONS["TraceLevel"]:
        return [words[j] for j in (place - 1, place + 1) if 0 <= j < len(words)]
    return [words[(place + 1) % len(words)]]


def enumerators(source):
    for i, token in enumerate(source.tokens):
        if token.kind != "word" or i in source.excluded:
            continue
        if token.text in TABLE_NAMES and source.word(i + 1) != "=" and not after_case(source, i):
            source.add("enumerator", i, i, neighbours_of(token.text, TABLE_NAMES)[0])
        words = ENUMERATIONS.get(source.word(i - 2), []) if source.word(i - 1) == "::" else []
        if token.text in words and not after_case(source, i):
            operator = "trace level" if source.word(i - 2) == "TraceLevel" else "enumerator"
            for other in neighbours_of(token.text, words):
                source.add(operator, i, i, other)


def after_case(source, i):
    while i > 0 and (source.tokens[i].kind == "word" or source.tokens[i].text == "::"):
        if source.tokens[i].text == "case":
            return True
        i -= 1
    return False


def table_cells(source):
    """Cells of rows of whole decibels: one more or one less by turns, and swapped with the next."""
    for i, token in enumerate(source.tokens):
        if token.text != "dbRow" or i + 1 not in source.partner or source.word(i - 1) == ">":
            continue
        cells = []
        j = i + 2
        while j < source.partner[i + 1]:
            first = j
            if source.tokens[j].text == "-":
                j += 1
            if source.tokens[j].kind == "number" and source.word(first - 1) in (",", "("):
                cells.append((first, j))
            j += 1
        for k, (first, last) in enumerate(cells):
            value = int(source.text_of(first, last).replace(" ", ""))
            source.add("table cell", first, last, str(value + (1 if (i + k) % 2 else -1)))
        for left, right in zip(cells, cells[1:]):
            a, b = source.text_of(*left), source.text_of(*right)
            if a != b and source.word(left[0] - 1) != "(":
                between = source.text[source.tokens[left[1]].end : source.tokens[right[0]].start]
                source.add("table cells swapped", left[0], right[1], b + between + a)


def is_single_comparison(source, first, last):
    """Whether the relational operators alone already negate the condition."""
    depth = 0
    comparisons = 0
    for i in range(first, last + 1):
        text = source.tokens[i].text
        if i in source.partner and text in OPENING:
            depth += 1
        elif i in source.partner and text in CLOSING:
            depth -= 1
        elif depth == 0 and (text in LOGICAL or text == "?"):
            return False
        elif depth == 0 and text in RELATIONAL and source.tokens[i].spaced:
            comparisons += 1
    return comparisons == 1


def negate(source, first, last):
    if is_single_comparison(source, first, last):
        return
    text = source.text_of(first, last)
    simple = source.word(first) == "!" and not any(
        source.tokens[i].text in LOGICAL for i in range(first, last + 1))
    source.add("condition negated", first, last, text[1:] if simple else f"!({text})")


def conditions(source):
    for i, token in enumerate(source.tokens):
        if i in source.excluded:
            continue
        if token.text in ("if", "while") and source.word(i + 1) == "(":
            negate(source, i + 2, source.partner[i + 1] - 1)
        if token.text == "?":
            first = i - 1
            while first >= 0:
                text = source.tokens[first].text
                if text in CLOSING and first in source.partner:
                    first = source.partner[first] - 1
                elif text in OPENING or text in ("=", "return", ",", ";", ":", "<<"):
                    break
                else:
                    first -= 1
            negate(source, first + 1, i - 1)
        if token.text == "return":
            last = end_of_statement(source, i)
            if any(source.tokens[j].text in LOGICAL or source.tokens[j].text == "!"
                   for j in range(i, last)) and "?" not in [t.text for t in source.tokens[i:last]]:
                negate(source, i + 1, last - 1)


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


def statements(source):
    for brace, token in enumerate(source.tokens):
        if token.text != "{" or brace not in source.partner or not is_code_block(source, brace):
            continue
        i = brace + 1
        while i < source.partner[brace]:
            text = source.word(i)
            if text in OPENING and i in source.partner:
                i = source.partner[i] + 1
                continue
            starts = source.word(i - 1) in ("{", "}", ";", ":", ")")
            if starts and source.word(i - 1) == ")" and source.word(source.partner[i - 1] - 1) not in (
                    "if", "for", "while"):
                starts = False
            if not starts or text in ("}", ";") or i in source.excluded:
                i += 1
                continue
            last = end_of_statement(source, i)
            if last > source.partner[brace]:
                i += 1
                continue
            if text in ("if", "for", "while", "switch"):
                i = source.partner[i + 1] + 1
                continue
            if text in NOT_A_STATEMENT or is_declaration(source, i):
                if text in ("case", "default"):
                    while source.word(i) != ":" or source.word(i + 1) == ":":
                        i += 1
                    i += 1
                else:
                    i = last + 1
                continue
            if text == "continue" or text == "break" or source.tokens[i].kind != "number":
                source.add("statement dropped", i, last, ";")
            i = last + 1


def returns(source):
    """The value of its type that has everything at zero."""
    for i, token in enumerate(source.tokens):
        if token.text != "return" or i in source.excluded:
            continue
        last = end_of_statement(source, i)
        value = source.text_of(i + 1, last - 1) if last > i + 1 else ""
        if value in ("", "0", "true", "false", "nullptr", "{}", "ResultCode::Success") or value[0] == "{":
            continue
        if all(t.kind == "string" for t in source.tokens[i + 1 : last]):
            continue
        source.add("return value", i + 1, last - 1, "{}")


def strings(source):
    for i, token in enumerate(source.tokens):
        if token.kind != "string" or i in source.excluded or source.word(i - 1) == "extern":
            continue
        text = token.text
        if len(text) == 2 or "%" in text or "\\" in text or text[-2] in "~ ":
            changed = '"~' + text[1:]
        else:
            changed = text[:-2] + '~"'
        source.add("text", i, i, changed)


def case_labels(source):
    """A label taken away: its value falls to what comes behind the switch, or to the default."""
    for i, token in enumerate(source.tokens):
        if token.text != "case":
            continue
        last = i
        while source.word(last) != ":":
            last += 1
        source.add("case dropped", i, last, "")


def mutants_of(file, text):
    return Source(file, text).mutants()
