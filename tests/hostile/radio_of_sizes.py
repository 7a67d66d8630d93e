"""Radio files described by sizes and choices, for the search for the one that asks most of the tool.

The names and the longest lists are read from the schema of radio files, so that a file reaches the end of
what is allowed and none is refused for its size alone.
"""

import json
from pathlib import Path

PROJECT = Path(__file__).resolve().parent.parent.parent
SCHEMA = json.loads((PROJECT / "share" / "qor-radio-file.schema.json").read_text())["$defs"]

MODULATIONS = [text for text in SCHEMA["modulation"]["anyOf"][0]["enum"] if text != "UNDEFINED"]
CODES = [text for text in SCHEMA["modulationAndCode"]["anyOf"][0]["enum"] if text != "UNDEFINED"]
# Orders in which neighbours differ as much or as little as can be.
CHOSEN = {
    "two strong": ["16QAM_STRONG", "64QAM_STRONG"],
    "one": ["4QAM"],
    "all": CODES,
    "backwards": CODES[::-1],
    "numbers": list(range(200, 2000)),
}
PRODUCTS = {
    "none": None, "first outdoor": "QZT 846 003", "second outdoor": "QZT 846 57",
    "radio unit": "QZT35202/1", "newer radio unit": "QZT 860 18/HP", "longest": "QZT 860 13" + "x" * 5000,
    "escapes": "\u0001\u202e\u00e9\"" * 1500,
}
MAX_CODES = SCHEMA["modulationAndCodes"]["maxItems"]
MAX_ROWS = SCHEMA["pmaxTable"]["anyOf"][0]["maxItems"]
MAX_LIST = SCHEMA["profiles"]["maxItems"]

GENES = {
    "codes": range(0, MAX_CODES + 1),
    "chosen": list(CHOSEN),
    "rows": range(0, MAX_ROWS + 1),
    "rowOrder": ["rising", "last"],
    "tables": range(0, 5),
    "product": list(PRODUCTS),
    "selected": ["adaptive", "4QAM", "256QAM", "exchanged"],
    "booster": [True, False],
    "cutback": [True, False],
    "offsets": range(0, MAX_LIST + 1),
    "profiles": range(0, MAX_LIST + 1),
    "limits": [True, False],
    "records": range(0, MAX_LIST + 1),
    "recordCodes": range(0, MAX_CODES + 1),
    "variables": range(0, 1022),
    "elements": range(0, MAX_LIST + 1),
    "compensation": range(0, MAX_LIST + 1),
    "queries": range(0, 400),
    "mapEntries": range(0, MAX_LIST + 1),
    "patches": range(0, 400),
    "patchedCodes": range(0, MAX_CODES + 1),
    "indent": [None, 8],
}


def cycled(values, count):
    return [values[index % len(values)] for index in range(count)]


def is_allowed(genes):
    """Whether the file is about as large as a radio file may be; some beyond are, so that these are tried."""
    values = (genes["codes"] + 12 * genes["rows"] + 3 * genes["offsets"] + 3 * genes["profiles"] +
              genes["records"] * (8 + genes["recordCodes"]) + 3 * genes["elements"] + genes["variables"] +
              genes["compensation"] + genes["queries"] * (2 + 3 * genes["mapEntries"]) +
              genes["patches"] * (4 + genes["patchedCodes"]))
    return values < 155000


def radio_file(genes):
    """The text of the radio file of a description."""
    codes = cycled(CHOSEN[genes["chosen"]], genes["codes"])
    rows = [[name, 1000 + index] for index, name in enumerate(cycled(MODULATIONS, genes["rows"]))]
    if genes["rowOrder"] == "last":
        # The row that is wanted is the last one of the table.
        rows = [["HALF_BPSK", 1]] * max(0, len(rows) - len(MODULATIONS)) + rows[:len(MODULATIONS)]
    tables = dict.fromkeys(["pmaxDpd1Etsi", "pmaxDpd2Etsi", "pmaxDpd1Ansi", "pmaxDpd2Ansi"][:genes["tables"]],
                           rows)
    handler = {"minOutputPower": -1000, **tables}
    if PRODUCTS[genes["product"]] is not None:
        handler["productNumber"] = PRODUCTS[genes["product"]]
    profiles = [index % 30000 for index in range(genes["profiles"])]
    if genes["limits"]:
        handler["maxAcmLimitedByHw"] = True
        handler["performanceProfileIndex"] = max(0, len(profiles) - 1)
        handler["maxModulationLimitedByHw"] = {str(profile): "4096QAM" for profile in profiles}
    low, high = {"adaptive": ("4QAM_STRONG", "4096QAM"), "exchanged": ("4096QAM", "4QAM")}.get(
        genes["selected"], (genes["selected"], genes["selected"]))
    frame = {"modulation": "4QAM", "maxAvailableModulation": "4096QAM", "modulationAndCodes": codes,
             "channelSpacing": 28, "dpdVersion": 1, "market": "Etsi", "performanceProfiles": profiles}
    record = {"channelSpacing": 56, "dpdVersion": 2, "market": "Ansi", "performanceProfiles": [1],
              "modulationAndCodes": cycled(CHOSEN[genes["chosen"]], genes["recordCodes"])}
    variables = {f"{index:0100}": list(range(genes["elements"] if index < 3 else 0))
                 for index in range(genes["variables"])}
    compensation = [28 if index % 2 == 0 else 1 for index in range(genes["compensation"])]
    variables["channel.1.tx.rf.pmax.cs.comp.v2.array"] = compensation
    variables["channel.1.tx.rf.pmax.cs.comp.v2.arraysize"] = len(compensation)
    query = {"call": "getMinMaxOutputPowerVsModulationArray"}
    if genes["mapEntries"]:
        query["powerMap"] = [[index, index] for index in range(genes["mapEntries"])]
    requests = []
    if genes["booster"]:
        requests.append({"call": "setBoosterPresence", "presence": 2, "gain": 1600, "maxInputPower": 1500,
                         "maxModulation": "4096QAM"})
    if genes["cutback"]:
        requests.append({"call": "setPowerCutback", "cutback": 300})
    for index in range(max(genes["queries"], genes["patches"])):
        if index < genes["patches"]:
            requests.append({"call": "patch", "file": {"frameFormat": {"modulationAndCodes": cycled(
                CHOSEN[genes["chosen"]], genes["patchedCodes"])}}})
        if index < genes["queries"]:
            requests.append(query)
    return json.dumps({
        "channel": 1,
        "capabilityHandler": handler,
        "acmHandler": {"min": low, "max": high},
        "frameFormat": frame,
        "systemPowerController": {
            "referenceSec": "4L",
            "minOutputPowerOffsets": [[index, 100] for index in range(genes["offsets"])]},
        "hardwareConfigurationHandler": {
            "frameFormats": [{"id": index + 1, **record} for index in range(genes["records"])]},
        "variables": variables,
        "requests": requests,
    }, indent=genes["indent"])
