#!/usr/bin/env python3
"""Asks `ombe validate` about plug-ins that keep the contract, and those that break it.

Usage: validate_test.py OMBE PAGE FOLDER [PLUGIN[=SAMPLE...]...]. PAGE is what the checks refer to; FOLDER
holds plug-ins with one fault each, named by it.
"""
import json
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

LEAST = 120

# What each fault is found by, and what is said of it.
FAULTS = {
    "GIVES_THE_WRONG_STATUS": ("lookup.unknown-identifier", "0x80100001 instead of 3"),
    "TOUCHES_OUTPUTS": ("stream.pause", "its output gave 0 instead of 77"),
    "LEAKS": ("memory.reading", "bytes each time"),
    "FREES_CHUNKS_TWICE": ("allocator.deletes-once", "gave 2 instead of 1"),
    "KEEPS_ITS_LOCK": ("threads.no-lock-kept", "no end within 2 s"),
    "HAS_ITS_SLOTS_IN_ANOTHER_ORDER": ("container.slots-in-order", "slot 10"),
    "CALLS_THE_HOST_WRONGLY": ("container.calls-rightly", "slot 5 of ContainerHost"),
    "THROWS": ("container.throws-nothing", "no such file"),
    "HANGS": ("container.opens", "no end within 2 s"),
    "CRASHES": ("container.opens", "the process "),
    "WRITES_OUTSIDE": ("memory.outputs", "wrote beside its output"),
    "DELETES_STREAMS": ("container.streams-are-the-hosts", "the process "),
}
failures = []


def expect(holds, text):
    if not holds:
        failures.append(text)


def validate(ombe, *arguments):
    run = subprocess.run([ombe, "validate", "--json", *arguments], stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, text=True)
    expect(run.stdout, f"{arguments}: {run.stderr}")
    return run.returncode, json.loads(run.stdout or "{}")


def ask_for_list(ombe, page):
    with open(page, encoding="utf-8") as file:
        headings = {re.sub(r"[^a-z -]", "", title.lower()).replace(" ", "-")
                    for title in re.findall(r"^#+ (.*)$", file.read(), re.M)}
    checks = validate(ombe, "--list")[1]["checks"]
    expect(len(checks) >= LEAST, f"{len(checks)} checks instead of {LEAST}")
    expect(len({check["name"] for check in checks}) == len(checks), "a name is there twice")
    for check in checks:
        target, _, anchor = check["contract"].partition("#")
        expect(page.endswith(target) and anchor in headings, f"{check}: no such heading")
    return checks


def ask_good(ombe, plugin, samples, checks, needs_all):
    with tempfile.TemporaryDirectory() as folder:
        junit = os.path.join(folder, "junit.xml")
        arguments = [argument for sample in samples for argument in ("--sample", sample)]
        code, document = validate(ombe, plugin, "--junit", junit, "--timeout", "600", *arguments)
        suite = xml.etree.ElementTree.parse(junit).getroot()
    validation = document["validation"]
    for check in validation["checks"]:
        expect(check["outcome"] in ("passed", "notOffered"), f"{plugin}: {check}")
    expect(code == 0, f"{plugin}: exit code {code}")
    expect(len(validation["checks"]) == checks, f"{plugin}: not all was asked")
    expect(not needs_all or validation["passed"] == checks, f"{plugin}: something is missing")
    expect(len(suite) == int(suite.get("tests")) == checks, f"{plugin}: {suite.attrib}")


def ask_broken(ombe, plugin, sample, name, came):
    limit = "2" if came.startswith("no end") else "600"
    code, document = validate(ombe, plugin, "--sample", sample, "--only", name, "--timeout", limit)
    check, = document["validation"]["checks"]
    expect(code == 1 and check["outcome"] == "failed" and came in check["came"],
           f"{plugin}: exit code {code}, {check}")


def main():
    ombe, page, folder, *plugins = sys.argv[1:]
    checks = ask_for_list(ombe, page)
    for plugin in plugins:
        plugin, *samples = plugin.split("=")
        ask_good(ombe, plugin, samples, len(checks), samples)
    with tempfile.NamedTemporaryFile(suffix=".three") as sample:
        sample.write(b"three")
        sample.flush()
        ask_good(ombe, f"{folder}/RIGHT.so", [sample.name], len(checks), False)
        for fault, (name, came) in FAULTS.items():
            ask_broken(ombe, f"{folder}/{fault}.so", sample.name, name, came)
    print("\n".join(failures) or f"{len(checks)} checks of {len(plugins)} plug-ins")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
