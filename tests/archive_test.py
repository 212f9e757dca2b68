#!/usr/bin/env python3
"""Takes a copy of the archive through check, fix and export: every text is kept, or named.

Usage: archive_test.py OMBE SAMPLES
"""
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
OMBE, SAMPLES = (os.path.abspath(path) for path in sys.argv[1:])
sys.path.insert(0, SAMPLES)
from make_archive import FILES  # noqa: E402

SKIPPED = {"others/CAPITALS.SUB"}
OTHERS = {name for name, (_, texts) in FILES.items() if texts is None}


def ombe(*words):
    """What it prints on either stream, and its exit code."""
    run = subprocess.run([OMBE, *words], capture_output=True, check=False)
    return run.stdout.decode(), run.stderr.decode(), run.returncode


def contents(folder):
    return {str(path.relative_to(folder)): path.read_bytes()
            for path in folder.rglob("*") if path.is_file()}


def expect(what, seen, expected):
    if seen != expected:
        sys.exit(f"{what}:\n{seen}\nshould be\n{expected}")


def main():
    bytes_of = {name: content for name, (content, _) in FILES.items()}
    expect("the archive as it is made", contents(Path(SAMPLES, "archive")), bytes_of)
    with tempfile.TemporaryDirectory() as name:
        os.chdir(name)
        for file, content in bytes_of.items():
            Path(file).parent.mkdir(parents=True, exist_ok=True)
            Path(file).write_bytes(content)
        out, errors, code = ombe("check", ".", "--json", "--code-page", "auto")
        checked = json.loads(out)
        expect("check", (code, len(checked["files"]) + checked["summary"]["otherTexts"]),
               (1, len(FILES) - len(SKIPPED)))
        expect("skipped", re.findall(r"(\S+): skipped", errors), [f"./{file}" for file in SKIPPED])
        opens = {file["file"][2:]: file["opens"] for file in checked["files"]}
        expect("good files", [file for file in FILES if not opens.get(file)
                              and not file.startswith(("faults/", "others/"))], [])

        out, _, code = ombe("fix", ".", "-o", "mended", "--thorough", "--json",
                            "--code-page", "auto")
        fixed = {file["file"][2:]: file for file in json.loads(out)["files"]}
        expect("fix", code, 1)
        expect("refused", {file for file in fixed if "error" in fixed[file]} | SKIPPED | {
               "others/read me.txt"}, OTHERS)
        expect("the sources", {file: Path(file).read_bytes() for file in FILES}, bytes_of)

        expect("check of what was mended", ombe("check", "mended", "--quiet")[2], 0)
        _, errors, code = ombe("export", "mended", "-o", "out", "-f", "jsonl")
        count = len(FILES) - len(OTHERS)
        expect("export", (code, errors), (0, f"ombe: {count} of {count} files written, 0 failed\n"))
        for file in set(FILES) - OTHERS:
            exported = Path("out", file).with_suffix(".jsonl").read_text("utf-8").splitlines()
            kept = [re.sub(r"<[^>]*>", "", json.loads(line)["text"]) for line in exported]
            named = [change["text"] for change in fixed[file]["changes"]
                     if change["fate"] == "dropped"]
            lost = [text for text in FILES[file][1]
                    if not any(text in part for part in kept + named)]
            expect(f"lost of {file}", lost, [])
    print(f"{len(FILES) - len(OTHERS)} files kept every text, {len(OTHERS)} others were named")


if __name__ == "__main__":
    main()
