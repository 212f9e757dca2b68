#!/usr/bin/env python3
"""Asks `ombe validate` about plug-ins that keep the contract.

Usage: validate_test.py OMBE PAGE [PLUGIN[=SAMPLE]...]. PAGE is what the checks refer to.
"""
import json
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

LEAST = 60
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


def ask_good(ombe, plugin, sample, checks):
    with tempfile.TemporaryDirectory() as folder:
        junit = os.path.join(folder, "junit.xml")
        arguments = [plugin, "--junit", junit] + (["--sample", sample] if sample else [])
        code, document = validate(ombe, *arguments)
        suite = xml.etree.ElementTree.parse(junit).getroot()
    validation = document["validation"]
    for check in validation["checks"]:
        expect(check["outcome"] in ("passed", "notOffered"), f"{plugin}: {check}")
    expect(code == 0, f"{plugin}: exit code {code}")
    expect(len(validation["checks"]) == len(checks), f"{plugin}: not all was asked")
    expect(not sample or validation["passed"] == len(checks), f"{plugin}: something is missing")
    expect(len(suite) == int(suite.get("tests")) == len(checks), f"{plugin}: {suite.attrib}")


def main():
    ombe, page, *plugins = sys.argv[1:]
    checks = ask_for_list(ombe, page)
    for plugin in plugins:
        ask_good(ombe, *(plugin.split("=") + [None])[:2], checks)
    print("\n".join(failures) or f"{len(checks)} checks of {len(plugins)} plug-ins")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
