#!/usr/bin/env python3
"""Runs every command of a page's console blocks and compares what it prints.

Usage: readme_test.py PAGE OMBE SAMPLES [ELEMENTS]. A line that begins with "$ " is a command; the
lines up to the next one are its output, on either stream. `scripts/run` stands for the built program
and `build/lib/gstreamer-1.0` for ELEMENTS; blocks that need GStreamer or ffmpeg are left out, and
counted, where these are missing.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

SHORT_FILM = """gst-launch-1.0 -q videotestsrc num-buffers=50 !
    video/x-raw,width=64,height=36,framerate=25/1 ! theoraenc ! oggmux ! filesink location=film.ogv"""


def commands(text, is_possible):
    """Each command and its output; None for a block that cannot be tried."""
    for block in re.findall(r"^```console\n(.*?)^```", text, re.M | re.S):
        if not is_possible(block):
            yield None
            continue
        setting = ""
        for part in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, _, output = part.partition("\n")
            if command.startswith("export "):
                setting += command + "\n"
            yield setting + command, output


def main():
    page, ombe, samples, *elements = (os.path.abspath(path) for path in sys.argv[1:])
    player = elements and shutil.which("gst-launch-1.0")
    tools = {"gst-": player, "film.ogv": player, "ffmpeg": shutil.which("ffmpeg")}
    stands_for = {"scripts/run": '"$OMBE"', "$PWD/build/lib/gstreamer-1.0": '"$ELEMENTS"',
                  "playbin ": "playbin video-sink=fakesink "}
    failed = count = left_out = 0
    with tempfile.TemporaryDirectory() as folder:
        environment = {**os.environ, "OMBE": ombe, "ELEMENTS": "".join(elements),
                       "GST_REGISTRY": os.path.join(folder, "registry")}
        os.symlink(samples, os.path.join(folder, "samples"))
        with open(page, encoding="utf-8") as file:
            text = file.read()
        if "film.ogv" in text and player:
            subprocess.run(SHORT_FILM.split(), cwd=folder, env=environment, check=True)
        for case in commands(text, lambda block: all(
                found for tool, found in tools.items() if tool in block)):
            if case is None:
                left_out += 1
                continue
            command, expected = case
            count += 1
            for shown, real in stands_for.items():
                command = command.replace(shown, real)
            run = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if run.stdout != expected:
                failed += 1
                print(f"$ {command}\nshould print\n{expected}but prints\n{run.stdout}")
    print(f"{count - failed} commands print what the page shows, {failed} do not; "
          f"blocks left out: {left_out}")
    return 1 if failed or count + left_out == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
