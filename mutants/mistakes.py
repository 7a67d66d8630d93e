"""Operators that put what is right in itself in the wrong place, as a tired reader of the code might.

What is exchanged or replaced has no type here: where the types differ, the mutant does not compile.
"""

import re

from source import CLOSING, OPENING, end_of_statement, is_code_block, is_declaration

# What tells a neighbour, a record or a place in the source from another of its kind.
WHICH = re.compile(r"(\w*[cC]hannel|rfid|frameFormatId|\w*Index|line)$")
# A call to a neighbour, to the broker or to the platform.
NEIGHBOUR = re.compile(r"m_\w+$")
PLATFORM = {"getInterface", "registerInterface", "unregisterInterface", "isFftypeCarrierAggregation",
            "CStorageManager_GetVariableContentAddressByName"}
MARKETS = ("Etsi", "Ansi", "Global", "Unknown")
NOT_EXCHANGED = {"return", "break", "continue", "case", "default", "using", "static_assert", "public",
                 "private", "protected", "friend", "enum", "struct", "class", "template", "goto", "throw"}
NO_CALLS = {"if", "while", "for", "switch", "return", "dbRow", "sizeof"}
SYMMETRIC = {"min", "max", "add", "isEqual", "isSameWord"}
COMPOUND = {"if", "for", "while", "switch", "do", "else", "try", "catch"}


def arguments_of(source, bracket):
    """The first and last token of each argument in a pair of parentheses."""
    found = []
    first = i = bracket + 1
    end = source.partner[bracket]
    while i <= end:
        if i == end or source.word(i) == ",":
            if first < i:
                found.append((first, i - 1))
            first = i + 1
        elif source.word(i) in OPENING and i in source.partner:
            i = source.partner[i]
        i += 1
    return found


def is_parameter(source, first, last):
    """Whether it is declared here: a type comes before its name."""
    return is_declaration(source, first) or source.word(first) == "const" or (
        first < last and source.tokens[last].kind == "word" and source.word(last - 1) in ("&", "*", ">"))


def calls(source):
    """The opening parentheses of calls, with their arguments."""
    for i, token in enumerate(source.tokens):
        is_call = token.text == "(" and i in source.partner and i not in source.excluded and i > 0 and (
            source.tokens[i - 1].kind == "word" or source.word(i - 1) == ">")
        if not is_call or source.word(i - 1) in NO_CALLS:
            continue
        arguments = arguments_of(source, i)
        if arguments and not any(is_parameter(source, *argument) for argument in arguments):
            yield i, arguments


def arguments_exchanged(source):
    """Neighbouring arguments; of a trace those whose values it shows, as their labels are texts between them."""
    for bracket, arguments in calls(source):
        if source.word(bracket - 1) in SYMMETRIC:
            continue
        if "trace" in source.word(bracket - 1).lower():
            arguments = [(first, last) for first, last in arguments if source.word(first) != "TraceLevel"]
        values = [side for side in arguments if source.tokens[side[0]].kind not in ("string", "character")]
        for left, right in zip(values, values[1:]):
            a, b = source.text_of(*left), source.text_of(*right)
            if a != b and not all(source.tokens[side[0]].kind == "number" for side in (left, right)):
                between = source.text[source.tokens[left[1]].end : source.tokens[right[0]].start]
                source.add("arguments exchanged", left[0], right[1], b + between + a)


def argument_replaced(source):
    for _, arguments in calls(source):
        for first, last in arguments:
            if first == last and source.tokens[first].kind == "word" and WHICH.match(source.word(first)):
                source.add("argument replaced", first, last, "1")


def record_of_trace(source):
    """The line and the function that a trace names, always the same."""
    for i, token in enumerate(source.tokens):
        if token.text == "__LINE__":
            source.add("record of trace", i, i, "1")
        if token.text in ("__func__", "functionName") and source.word(i - 1) in ("(", ","):
            source.add("record of trace", i, i, '"f"')


def simple_statements(source, brace):
    """The statements of a block as (first, last), in runs between which something else stands."""
    run = []
    i = brace + 1
    while i < source.partner[brace]:
        text = source.word(i)
        if text in COMPOUND or text in OPENING or text in NOT_EXCHANGED or i in source.excluded:
            yield run
            run = []
        if text in COMPOUND:
            i += 2 if source.word(i + 1) == "constexpr" else 1
            if source.word(i) == "(":
                i = source.partner[i] + 1
            continue
        if text in OPENING and i in source.partner:
            i = source.partner[i] + 1
            continue
        last = end_of_statement(source, i)
        if last >= source.partner[brace]:
            break
        # What hangs on a condition without braces is no neighbour of what follows.
        if text not in NOT_EXCHANGED and text != ";" and source.word(i - 1) in ("{", "}", ";"):
            run.append((i, last))
        i = last + 1
    yield run


def words_of(source, first, last):
    return {token.text for token in source.tokens[first : last + 1] if token.kind == "word"}


def can_be_seen(source, first, last):
    """Whether a statement calls a neighbour, traces, or starts something: what others see the order of."""
    words = words_of(source, first, last)
    return any(source.word(i) == "->" and source.word(i + 2) == "(" for i in range(first, last)) or any(
        "trace" in word.lower() for word in words) or words & {"initialize", "connect", "registerInterface"}


def assigned(source, first):
    """The variable or member that a statement gives a value."""
    while source.word(first + 1) == ".":
        first += 2
    return source.word(first) if source.word(first + 1) in ("=", "+=", "-=") else None


def statements_exchanged(source):
    for brace, token in enumerate(source.tokens):
        if token.text != "{" or brace not in source.partner or not is_code_block(source, brace):
            continue
        for run in simple_statements(source, brace):
            for left, right in zip(run, run[1:]):
                seen = can_be_seen(source, *left) and can_be_seen(source, *right)
                is_read = (assigned(source, left[0]) in words_of(source, *right)
                           or assigned(source, right[0]) in words_of(source, *left))
                if (seen or is_read) and source.text_of(*left) != source.text_of(*right):
                    between = source.text[source.tokens[left[1]].end : source.tokens[right[0]].start]
                    source.add("statements exchanged", left[0], right[1],
                               source.text_of(*right) + between + source.text_of(*left))


def start_of_call(source, i):
    """The first token of the expression that ends with the name of what is called."""
    while source.word(i - 1) in ("->", ".", "::"):
        i -= 2
        if source.word(i) in CLOSING and i in source.partner:
            i = source.partner[i] - 1
    return i


def neighbour_calls(source):
    """(first, last, whether it is one of a neighbour that a member points to) of each."""
    for i, token in enumerate(source.tokens):
        if token.kind != "word" or i in source.excluded:
            continue
        is_member = source.word(i - 1) == "->" and NEIGHBOUR.match(source.word(i - 2))
        if not is_member and token.text not in PLATFORM:
            continue
        bracket = i + 1
        if source.word(bracket) == "<":
            while source.word(bracket) != "(":
                bracket += 1
        is_call = source.word(bracket) == "(" and bracket in source.partner and not any(
            is_parameter(source, *argument) for argument in arguments_of(source, bracket))
        if is_call:
            yield start_of_call(source, i), source.partner[bracket], bool(is_member)


def calls_repeated(source):
    for first, last, is_member in neighbour_calls(source):
        call = source.text_of(first, last)
        source.add("call twice", first, last, f"(static_cast<void>({call}), {call})")
        kept = "static auto kept = %s;" % call
        if is_member:
            # The answer of this service, not that of any other.
            kept = (f"static const void* whose = nullptr; static decltype({call}) kept; "
                    f"if (whose != this) {{ whose = this; kept = {call}; }}")
        source.add("call remembered", first, last, f"[&] {{ {kept} return kept; }}()")


def assignments(source):
    """(first of the left side, first of the value, semicolon) of each statement that assigns."""
    declared = source.enumerations()
    for i, token in enumerate(source.tokens):
        if token.text != "=" or i in source.excluded or i in declared or source.is_pure(i + 1):
            continue
        first = i
        while first > 0 and source.word(first - 1) not in (";", "{", "}", ")", ":") and (
                source.word(first - 1) not in OPENING):
            first -= 1
        last = end_of_statement(source, i)
        if first > 0 and source.word(first - 1) not in ("(", "[") and i + 1 < last:
            yield first, i + 1, last


def is_constant(source, first, last):
    """A literal, an enumerator, or what stands for a function."""
    words = [token.text for token in source.tokens[first : last + 1]]
    return (len(words) == 1 and (source.tokens[first].kind != "word" or words[0] in (
        "nullptr", "true", "false", "default", "delete"))) or (len(words) == 3 and words[1] == "::")


def stored_values(source):
    """A value that is kept, cut to 16 bits or with its sign changed."""
    for first, value, last in assignments(source):
        words = source.tokens[value:last]
        if is_constant(source, value, last - 1):
            continue
        is_truth = any(t.text in ("==", "!=", "&&", "||", "!", "<=", ">=", "true", "false") for t in words)
        if is_truth or words[0].text in ("{", "&", "[") or "constexpr" in words_of(source, first, value):
            continue
        text = source.text_of(value, last - 1)
        source.add("stored value cut", value, last - 1, f"static_cast<short>({text})")
        source.add("stored value negated", value, last - 1, f"-({text})")


def pointers(source):
    """One that stays as it was when there is nothing to point to, or goes with a start that failed."""
    for first, value, last in assignments(source):
        is_set = not is_declaration(source, first) and source.word(first) not in ("const", "auto", "static")
        if is_set and not is_constant(source, value, last - 1) and source.word(value + 1) in ("(", "::", "->", "."):
            text = source.text_of(value, last - 1)
            source.add("pointer kept", first, last - 1,
                       f"if (auto* const found = {text}) {source.text_of(first, value - 1)} found")
    seen = []
    for i, token in enumerate(source.tokens):
        if token.text == "initialize" and source.word(i + 1) == "(" and source.word(i - 1) == "::":
            seen = []
        if re.match(r"m_\w+(Handler|Format|Controller)$", token.text) and token.text not in seen:
            seen.append(token.text)
        is_failed = token.text == "return" and [source.word(i + j) for j in (1, 2, 3, 4)] == [
            "ResultCode", "::", "Failure", ";"]
        if is_failed and function_of(source, i) == "initialize":
            # The last one was not found, so it is null.
            for name in seen[:-1]:
                source.add("pointer lost", i + 1, i + 3, f"({name} = nullptr, ResultCode::Failure)")


def function_of(source, i):
    """The name of the function in whose body a token stands."""
    name = ""
    for brace, token in enumerate(source.tokens[:i]):
        if token.text == "{" and source.partner.get(brace, -1) > i and source.word(brace - 1) == ")":
            before = source.partner[brace - 1] - 1
            if source.word(before) not in COMPOUND:
                name = source.word(before)
    return name


def wrong_codes(source):
    """The right outputs with another code."""
    for i, token in enumerate(source.tokens):
        if token.text != "return" or i in source.excluded:
            continue
        last = end_of_statement(source, i)
        if last > i + 1 and source.tokens[last - 1].text == ")" and source.word(i + 1) not in ("{", "["):
            value = source.text_of(i + 1, last - 1)
            source.add("wrong code", i + 1, last - 1, f"(static_cast<void>({value}), ResultCode::NotApplicable)")


def shared_state(source):
    """A member that all services of a process share."""
    for brace, token in enumerate(source.tokens):
        if token.text != "{" or not is_class_body(source, brace):
            continue
        i = brace + 1
        while i < source.partner[brace]:
            if source.word(i) in OPENING and i in source.partner:
                i = source.partner[i] + 1
                continue
            starts = source.word(i - 1) in ("{", "}", ";", ":")
            last = end_of_statement(source, i)
            if starts and source.tokens[i].kind == "word" and source.word(i) not in NOT_EXCHANGED | {"static"}:
                text = [t.text for t in source.tokens[i:last]]
                names = [t for t in text if t.startswith("m_")]
                if names and "(" not in text:
                    source.add("state shared", i, i, f"static inline {source.word(i)}")
            i = i + 1 if source.word(i) in ("public", "private", "protected", ":") else last + 1


def is_class_body(source, brace):
    i = brace - 1
    while i >= 0 and source.word(i) not in (";", "{", "}", ")"):
        if source.word(i) in ("class", "struct"):
            return brace in source.partner
        i -= 1
    return False


def other_rules(source):
    """A market told by another rule, and texts that are equal as far as the shorter one goes."""
    for i, token in enumerate(source.tokens):
        if token.text in ("==", "!=") and [source.word(i + j) for j in (1, 2)] == ["EFrameFormatMarket", "::"]:
            opposite = "!=" if token.text == "==" else "=="
            for market in MARKETS:
                if market != source.word(i + 3):
                    source.add("other rule", i, i + 3, f"{opposite} EFrameFormatMarket::{market}")
        if token.text == "!=" and [source.word(i - j) for j in (1, 2, 3, 4)] == [")", "(", "size", "."]:
            source.add("prefix compared", i, i, "<")
            source.add("prefix compared", i, i, ">")


OPERATORS = (arguments_exchanged, argument_replaced, record_of_trace, statements_exchanged, calls_repeated,
             stored_values, pointers, wrong_codes, shared_state, other_rules)
