"""Transmit powers of microwave radios, as the output power calculator answers them.

    >>> import qor_power
    >>> radio = qor_power.Radio.load("examples/radios/13ghz-etsi-outdoor1.json")
    >>> table = radio.with_(cutback_db=3, rsec="4H").table()
    >>> [row["maxPowerCentiDbm"] for row in table["rows"] if row["name"] == "64QAM"]
    [1550]

Every answer is a plain dictionary, the JSON of the tool qor-power of the same name: its pages say what stands in it.
The unit is in the key, "maxPowerCentiDbm" being whole hundredths of a dBm. Nothing is calculated here.

Questions may come from several threads. They are answered one after the other, without the interpreter's lock.
"""

from __future__ import annotations

import json
import os
from collections.abc import Iterable, Iterator, Mapping, Sequence
from decimal import Decimal
from typing import Any

from . import _qor_power
from ._qor_power import Form, Inputs, Outcome, Question, Topic

__all__ = ["Answer", "Error", "NoAnswerError", "QuestionError", "Radio", "RadioFileError", "ServiceError",
           "read_fleet"]
__version__ = _qor_power.version

Answer = dict[str, Any]
Number = int | float | str | Decimal


class Error(Exception):
    """A question without an answer. str() is one line with all of it."""

    def __init__(self, line: str, place: str | None = None, problem: str | None = None, remedy: str | None = None):
        super().__init__(line)
        self.place = place  #: where: line and column, or the JSON Pointer, of a radio file; None: not in one
        self.problem = problem or line.split("; ")[0]  #: what is wrong
        self.remedy = remedy or line.partition("; ")[2] or None  #: what would help, if that is known


class RadioFileError(Error):
    """A text that is no radio file, or not with the changes that were asked for."""


class QuestionError(Error):
    """Something that cannot be asked so: an unknown modulation, a cutback that is no number."""


class ServiceError(Error):
    """The calculator does not start on this radio."""


class NoAnswerError(Error):
    """The radio has no answer: its query failed. What there is to show stands in `answer`."""

    answer: Answer | None = None


def _number(value: Number) -> str:
    """As it was meant: 0.1 is 0.1 and not the nearest binary fraction."""
    return value if isinstance(value, str) else format(Decimal(str(value)), "f")


def _raise(outcome: Outcome, line: str, text: str = "") -> None:
    if outcome == Outcome.BAD_RADIO_FILE:
        raise RadioFileError(line)
    if outcome == Outcome.SERVICE_DID_NOT_START:
        raise ServiceError(line)
    if not text:
        raise QuestionError(line)
    error = NoAnswerError(line)
    error.answer = json.loads(text)
    raise error


class Radio:
    """A radio node, as its radio file describes it, with the inputs that questions are asked under."""

    def __init__(self, text: str | bytes, name: str = ""):
        """A radio file's text. Raises RadioFileError."""
        self._text = text
        self._name = name
        self._inputs = Inputs()
        self._expect_radio()

    @classmethod
    def load(cls, path: str | os.PathLike[str]) -> Radio:
        """Reads a radio file. Raises OSError and RadioFileError, with the place and mostly a remedy.

        >>> Radio("{\\"chanel\\": 1}")
        Traceback (most recent call last):
        qor_power.RadioFileError: /chanel: unknown key; did you mean "channel"?
        """
        with open(path, "rb") as file:
            return cls(file.read(), os.fspath(path))

    @property
    def name(self) -> str:
        """The path, or what the radio was named."""
        return self._name

    def with_(
        self,
        *,
        cutback_db: Number | None = None,
        temporary_cutback_db: Number | None = None,
        booster: str | None = None,
        rsec: str | None = None,
        min: str | None = None,  # pylint: disable=redefined-builtin
        max: str | None = None,  # pylint: disable=redefined-builtin
        frame_format: int | None = None,
        request: int | None = None,
        set: Mapping[str, Any] | None = None,  # pylint: disable=redefined-builtin
    ) -> Radio:
        """The same radio under other inputs, those of the tool's options; None leaves one as it is.

        `set` changes the radio file: JSON Pointers and values. Raises QuestionError and RadioFileError.
        """
        other = Radio.__new__(Radio)
        other._text, other._name, other._inputs = self._text, self._name, Inputs(self._inputs)
        given = {
            "cutback_db": None if cutback_db is None else _number(cutback_db),
            "temporary_cutback_db": None if temporary_cutback_db is None else _number(temporary_cutback_db),
            "booster": booster,
            "rsec": rsec,
            "min": min,
            "max": max,
            "frame_format": None if frame_format is None else str(frame_format),
            "request": None if request is None else str(request),
        }
        for key, value in given.items():
            if value is not None:
                setattr(other._inputs, key, value)
        if set:
            other._inputs.set = [*other._inputs.set,
                                 *(f"{pointer}={json.dumps(value)}" for pointer, value in set.items())]
        other._expect_radio()
        return other

    def table(self) -> Answer:
        """The powers of every modulation-and-code of the frame format, as `qor-power table`."""
        return self._ask(Topic.TABLE)

    def explain(self, *modulations: str) -> Answer:
        """How the powers come about, of some modulations or codes or of all, as `qor-power explain`."""
        return self._ask(Topic.EXPLANATION, modulations=list(modulations))

    def why_not(self, modulation: str, power_dbm: Number, changes: int = 1) -> Answer:
        """The smallest changes that would allow a power, one or two at once, as `qor-power why-not`.

        >>> radio = Radio.load("examples/radios/13ghz-etsi-outdoor1.json")
        >>> [(change["words"], change["to"]) for change in radio.why_not("64QAM", 18)["changes"]][0]
        ('permanent cutback', '0.50 dB')
        """
        return self._ask(Topic.WHY_NOT, modulations=[modulation], power=_number(power_dbm), changes=str(changes))

    def sweep(self, *over: str, **values: Iterable[Any]) -> Answer:
        """The powers over one or two inputs, as `qor-power sweep`: "cutback=0..6:2", or cutback=[0, 2, 4, 6].

        >>> radio = Radio.load("examples/radios/13ghz-etsi-outdoor1.json")
        >>> [point["inputs"] for point in radio.sweep(cutback=[0, 2.5])["points"]]
        [{'cutbackCentiDb': 0}, {'cutbackCentiDb': 250}]
        """
        lists = [f"{key.replace('_', '-')}={','.join(map(str, some))}" for key, some in values.items()]
        return self._ask(Topic.SWEEP, over=[*over, *lists])

    def diff(self, other: Radio) -> Answer:
        """What tells the powers of another radio from those of this one, under this one's inputs."""
        return self._ask(Topic.DIFF, other_radio=other._text, other_name=other._name)

    def check(self) -> Answer:
        """What is wrong in the radio file, or likely not meant, as `qor-power check`."""
        return self._ask(Topic.CHECK)

    def picture(self, over: str | None = None) -> str:
        """The powers as an SVG document, as `qor-power plot`; notebooks show it."""
        return self._reply(Topic.PICTURE, form=Form.SVG, over=[] if over is None else [over])

    def _repr_svg_(self) -> str:
        return self.picture()

    def __repr__(self) -> str:
        return f"Radio({self._name!r})"

    def _expect_radio(self) -> None:
        trouble = _qor_power.trouble_of(self._text, self._inputs)
        if trouble is None:
            return
        if trouble.outcome == Outcome.BAD_RADIO_FILE:
            raise RadioFileError(trouble.line, trouble.place, trouble.problem, trouble.remedy)
        _raise(trouble.outcome, trouble.line)

    def _reply(self, topic: Topic, **fields: Any) -> str:
        question = Question()
        question.topic, question.form = topic, Form.JSON
        question.radio_name, question.inputs = self._name, self._inputs
        for key, value in fields.items():
            setattr(question, key, value)
        reply = _qor_power.ask(question, self._text)
        if reply.outcome not in (Outcome.DONE, Outcome.ANSWER_IS_NO):
            _raise(reply.outcome, "; ".join(reply.messages), reply.text)
        return reply.text

    def _ask(self, topic: Topic, **fields: Any) -> Answer:
        answer: Answer = json.loads(self._reply(topic, **fields))
        return answer


def read_fleet(lines: str | os.PathLike[str] | Iterable[str], like: Radio | None = None) -> Iterator[Answer]:
    """The answers for a list of radios, one by one, as `qor-power batch` prints them.

    `lines` is the path of a list, or the lines themselves: paths of radio files or radio files on one line, with an
    id and a tab in front or without. A bad one has its "error" and "place". `like` gives the inputs, as with_() does.

    >>> [answer["error"] for answer in read_fleet(["n1\\tno-such-file.json"])]
    ['no-such-file.json: cannot be read: No such file or directory']
    """
    inputs = Inputs() if like is None else like._inputs  # pylint: disable=protected-access
    if isinstance(lines, (str, os.PathLike)):
        with open(lines, encoding="utf-8-sig", errors="surrogateescape", newline="\n") as file:
            yield from read_fleet(file, like)
        return
    for line in lines:
        yield _answer_line(line.removesuffix("\n").removesuffix("\r"), inputs)


def _answer_line(line: str, inputs: Inputs) -> Answer:
    radio_id, rest = "", line
    if "\t" in line and not line.startswith("{"):
        radio_id, _, rest = line.partition("\t")
    text: bytes = b""
    path = unreadable = ""
    if rest.startswith("{"):
        text = os.fsencode(rest)
    elif not rest:
        unreadable = "an empty line"
    elif "\0" in rest:
        path, unreadable = rest, "cannot be read: a path holds no NUL"
    else:
        path = rest
        named = "./-" if path == "-" else path
        try:
            with open(named, "rb") as file:
                text = file.read()
        except OSError as error:
            unreadable = f"{named}: cannot be read: {error.strerror}"
    # Ids and paths may be no UTF-8; what is printed of them is.
    answer: Answer = json.loads(
        _qor_power.batch_line(os.fsencode(radio_id), os.fsencode(path), text, os.fsencode(unreadable), inputs))
    return answer
