from enum import Enum

version: str

class Topic(Enum):
    TABLE: int
    EXPLANATION: int
    WHY_NOT: int
    SWEEP: int
    DIFF: int
    CHECK: int
    PICTURE: int

class Form(Enum):
    JSON: int
    SVG: int

class Outcome(Enum):
    DONE: int
    ANSWER_IS_NO: int
    BAD_RADIO_FILE: int
    SERVICE_DID_NOT_START: int
    OTHER_TROUBLE: int

class Inputs:
    def __init__(self, other: Inputs | None = ...) -> None: ...
    frame_format: str | None
    cutback_db: str | None
    temporary_cutback_db: str | None
    booster: str | None
    rsec: str | None
    min: str | None
    max: str | None
    request: str | None
    set: list[str]

class Question:
    topic: Topic
    form: Form
    radio_name: str
    inputs: Inputs
    modulations: list[str]
    power: str
    changes: str
    over: list[str]
    other_radio: bytes | str
    other_name: str
    title: str

class Reply:
    @property
    def outcome(self) -> Outcome: ...
    @property
    def text(self) -> str: ...
    @property
    def messages(self) -> list[str]: ...

class Trouble:
    @property
    def outcome(self) -> Outcome: ...
    @property
    def line(self) -> str: ...
    @property
    def place(self) -> str: ...
    @property
    def problem(self) -> str: ...
    @property
    def remedy(self) -> str: ...

def ask(question: Question, radio_file: bytes | str) -> Reply: ...
def trouble_of(radio_file: bytes | str, inputs: Inputs) -> Trouble | None: ...
def batch_line(id: bytes, path: bytes, radio_file: bytes, unreadable: bytes, inputs: Inputs) -> str: ...
