"""The Python package against the tool: the same answers, errors with place and remedy, threads, memory."""

import json
import os
import pathlib
import re
import subprocess
import threading
import time

import pytest

import qor_power

PROJECT = pathlib.Path(__file__).resolve().parents[2]
RADIOS = sorted((PROJECT / "examples" / "radios").glob("*.json"))
TOOL = os.environ["QOR_POWER"]
# The loop that looks for leaks is short unless the long run asks for more.
LOOP = int(os.environ.get("QOR_PYTHON_RADIOS", "3000"))


def tool(*words, given=None):
    done = subprocess.run([TOOL, *map(str, words)], input=given, capture_output=True, text=True, check=False)
    return done.stdout


@pytest.fixture(name="radio")
def fixture_radio():
    return qor_power.Radio.load(RADIOS[0])


@pytest.mark.parametrize("path", RADIOS, ids=lambda path: path.stem)
def test_answers_are_those_of_the_tool(path):
    radio = qor_power.Radio.load(path)
    as_json = ("--format", "json")

    assert radio.table() == json.loads(tool("table", path, *as_json))
    assert radio.explain("16QAM") == json.loads(tool("explain", path, "16QAM", *as_json))
    assert radio.why_not("64QAM", 19.5) == json.loads(tool("why-not", path, "64QAM", "19.5", *as_json))
    assert radio.sweep("rsec=2,4L") == json.loads(tool("sweep", path, "--over", "rsec=2,4L", *as_json))
    assert radio.check() == json.loads(tool("check", path, *as_json))["files"][0] or radio.check() == json.loads(
        tool("check", path, *as_json))
    assert radio.diff(qor_power.Radio.load(RADIOS[0])) == json.loads(tool("diff", path, RADIOS[0], *as_json))
    assert radio.picture() == tool("plot", path, "-o", "-")


def test_inputs_are_those_of_the_tools_options(radio):
    changed = radio.with_(cutback_db=3.1, rsec="4H", min="4QAM", max="64QAM", frame_format=0)
    words = "--cutback 3.1 --rsec 4H --min 4QAM --max 64QAM --frame-format 0 --format json".split()

    assert changed.table() == json.loads(tool("table", RADIOS[0], *words))
    assert changed.table() != radio.table()
    assert changed.with_(cutback_db=0).table()["cutback"]["inForceCentiDb"] == 0
    assert changed.with_(cutback_db=0).table()["rsec"]["class"] == "4H"


def test_set_changes_the_radio_file(radio):
    assert radio.with_(set={"/frameFormat/market": "Ansi"}).table()["frameFormat"]["market"] == "Ansi"


def test_sweep_takes_lists_of_values(radio):
    assert radio.sweep(temporary_cutback=[1, 2.5]) == radio.sweep("temporary-cutback=1,2.5")


def test_a_bad_radio_file_is_told_with_place_and_remedy():
    with pytest.raises(qor_power.RadioFileError) as caught:
        qor_power.Radio('{"chanel": 1}')

    assert str(caught.value) == '/chanel: unknown key; did you mean "channel"?'
    assert (caught.value.place, caught.value.problem) == ("/chanel", "unknown key")
    assert caught.value.remedy == 'did you mean "channel"?'


def test_a_change_that_the_radio_file_cannot_take_is_told(radio):
    with pytest.raises(qor_power.RadioFileError) as caught:
        radio.with_(set={"/frameFormat/market": "Mars"})

    assert caught.value.place == "/frameFormat/market"


def test_a_question_that_cannot_be_asked_is_told(radio):
    with pytest.raises(qor_power.QuestionError) as caught:
        radio.explain("65QAM")
    assert caught.value.remedy == 'did you mean "64QAM"?'

    for wrong in ({"cutback_db": "three"}, {"cutback_db": 0.001}, {"rsec": "9"}):
        with pytest.raises(qor_power.QuestionError):
            radio.with_(**wrong)


def test_a_query_without_an_answer_shows_what_there_is(radio):
    with pytest.raises(qor_power.NoAnswerError) as caught:
        radio.with_(frame_format=99).table()

    assert caught.value.answer["failure"] in str(caught.value)


def test_a_radio_whose_service_does_not_start_is_told(radio):
    with pytest.raises(qor_power.ServiceError):
        radio.with_(set={"/systemPowerController": None}).table()


def test_a_fleet_has_the_answers_of_batch(tmp_path):
    radio = re.sub(r"/\*.*?\*/|//.*?$|\n", " ", RADIOS[1].read_text(), flags=re.DOTALL | re.MULTILINE).strip()
    lines = [f"n{number}\t{path}" for number, path in enumerate(RADIOS)]
    lines += [str(RADIOS[0]), f"inline\t{radio}", radio, "bad\tno-such-file.json", "", "{", "x\t{\"chanel\": 1}"]
    (tmp_path / "list").write_text("".join(line + "\n" for line in lines))
    expected = list(map(json.loads, tool("batch", "--quiet", tmp_path / "list").splitlines()))

    assert list(qor_power.read_fleet(lines)) == expected
    assert list(qor_power.read_fleet(tmp_path / "list")) == expected


def test_a_fleet_of_odd_lines_has_the_answers_of_batch(tmp_path):
    odd = b"\xef\xbb\xbfmark\tx.json\nn\xe4\tno\xe4.json\n-\none\rline\nno\0path\nend\tx.json\r\n"
    (tmp_path / "list").write_bytes(odd)
    printed = subprocess.run([TOOL, "batch", "--quiet", tmp_path / "list"], capture_output=True, check=False).stdout
    expected = list(map(json.loads, os.fsdecode(printed).splitlines()))

    answers = list(qor_power.read_fleet(tmp_path / "list"))

    assert answers == expected
    assert [answer["id"] for answer in answers] == ["mark", "n\ufffd", None, None, None, "end"]


def test_a_fleet_may_be_asked_under_inputs(radio):
    answers = qor_power.read_fleet([str(RADIOS[0])], like=radio.with_(cutback_db=7))

    assert next(answers)["cutback"]["inForceCentiDb"] == 700


def test_other_threads_run_while_a_question_is_answered(radio):
    passes = 0
    done = threading.Event()

    def count():
        nonlocal passes
        while not done.is_set():
            passes += 1
            time.sleep(0.0005)

    counter = threading.Thread(target=count, daemon=True)
    counter.start()
    begin = time.monotonic()
    radio.sweep("cutback=0..60:0.5", "rsec")
    took = time.monotonic() - begin
    answered_during = passes
    done.set()
    counter.join()
    # With the lock kept it would be none or one.
    assert answered_during > 10, f"{answered_during} passes in {took:.2f} s"


def test_several_threads_get_their_own_answers():
    expected = {path: qor_power.Radio.load(path).table() for path in RADIOS}
    wrong = []

    def ask(path):
        for _ in range(20):
            if qor_power.Radio.load(path).table() != expected[path]:
                wrong.append(path)

    threads = [threading.Thread(target=ask, args=(path,)) for path in RADIOS]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


def resident_kib():
    with open("/proc/self/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))


def test_radios_leak_nothing():
    texts = [path.read_text() for path in RADIOS]

    def use(count):
        for number in range(count):
            radio = qor_power.Radio(texts[number % len(texts)]).with_(cutback_db=number % 900 / 100)
            radio.table()
            try:
                radio.with_(set={"/channel": "x"})
            except qor_power.Error:
                pass

    use(LOOP // 10)
    before = resident_kib()
    use(LOOP)
    grown = resident_kib() - before
    assert grown < 1024, f"{grown} KiB more after {LOOP} radios"


def test_the_notebook_runs(tmp_path):
    nbformat = pytest.importorskip("nbformat")
    preprocessors = pytest.importorskip("nbconvert.preprocessors")
    notebook = nbformat.read(PROJECT / "examples" / "python" / "sweep.ipynb", as_version=4)
    os.environ["IPYTHONDIR"] = str(tmp_path)

    preprocessors.ExecutePreprocessor(timeout=120, kernel_name="python3").preprocess(
        notebook, {"metadata": {"path": PROJECT}})

    shown = [output["data"] for cell in notebook.cells if cell.cell_type == "code"
             for output in cell.outputs if "data" in output]
    assert any("image/png" in data for data in shown), "no sweep is drawn"
    assert any("image/svg+xml" in data for data in shown), "no picture of the radio"
    assert all(cell.get("outputs", []) == [] for cell in nbformat.read(
        PROJECT / "examples" / "python" / "sweep.ipynb", as_version=4).cells), "the notebook is kept with outputs"
