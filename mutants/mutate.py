"""The mutants of a source text: every small change that a test should notice.

Here are the operators that change one token or one statement; those of mistakes.py put what is right in
itself in the wrong place.
"""

import mistakes
from source import CLOSING, OPENING, Source, end_of_statement, is_code_block, is_declaration

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
    digits = number.rstrip("uUlL")
    value = int(digits, 16 if digits[:2] in ("0x", "0X") else 8 if digits[0] == "0" else 10) + step
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
                bracket = i + 2 if source.word(i + 1) == "constexpr" else i + 1
                i = source.partner[bracket] + 1
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


OPERATORS = (relational, logical, arithmetic, constants, names, enumerators, table_cells, conditions, statements,
             returns, strings, case_labels, *mistakes.OPERATORS)


def mutants_of(file, text):
    return Source(file, text).mutants(OPERATORS)
