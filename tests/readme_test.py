#!/usr/bin/env python3
"""Runs every command of a page's console blocks and compares what it prints.

Usage: readme_test.py PAGE OMBE SAMPLES. A line that begins with "$ " is a command; the lines up to
the next one are its output, on either stream. `scripts/run` stands for the built program.
"""
import os
import re
import subprocess
import sys
import tempfile


def commands(text):
    for block in re.findall(r"^```console\n(.*?)^```", text, re.M | re.S):
        for part in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, _, output = part.partition("\n")
            yield command, output


def main():
    page, ombe, samples = (os.path.abspath(path) for path in sys.argv[1:])
    failed = count = 0
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(samples, os.path.join(folder, "samples"))
        with open(page, encoding="utf-8") as file:
            cases = list(commands(file.read()))
        for command, expected in cases:
            count += 1
            run = subprocess.run(["bash", "-c", command.replace("scripts/run", '"$OMBE"')],
                                 cwd=folder, env={**os.environ, "OMBE": ombe}, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if run.stdout != expected:
                failed += 1
                print(f"$ {command}\nshould print\n{expected}but prints\n{run.stdout}")
    print(f"{count - failed} commands print what the page shows, {failed} do not")
    return 1 if failed or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
