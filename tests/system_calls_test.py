#!/usr/bin/env python3
"""Lets every system call of ombe's commands fail, or be the last, one run at a time.

usage: tests/system_calls_test.py OMBE FAILING_CALLS SAMPLES

Whatever fails, a run ends by itself with a documented exit code, says of which file and why, leaves
inputs as they were, outputs old or new, and nothing else; what it calls done is whole.
"""
import collections
import concurrent.futures
import errno
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

OMBE, FAILING_CALLS, SAMPLES = sys.argv[1:]
HALF, END, ENDED = -1, -2, 99
INPUTS = {"film.sub": "plain.sub", "pages.sub": "windows-1250.sub", "broken.sub": "broken.sub"}
OLD = "what was there before"

# Words of the command, what it reads from, outputs.
COMMANDS = {
    "probe": ("probe film.sub", None, []),
    "info": ("info film.sub", None, []),
    "info as JSON": ("info --json film.sub", None, []),
    "check": ("check film.sub pages.sub", None, []),
    "check of one": ("check --json pages.sub", None, []),
    "export": ("export pages.sub --code-page windows-1250 -o film.srt", None, ["film.srt"]),
    "export to a pipe": ("export -f vtt film.sub", None, []),
    "export of a pipe": ("export - -o film.srt", "film.sub", ["film.srt"]),
    "export of many": ("export film.sub pages.sub -o out --jobs 2", None, ["out/film.srt", "out/pages.srt"]),
    "fix": ("fix broken.sub -o film.srt.sub", None, ["film.srt.sub"]),
    "fix in place": ("fix --in-place broken.sub", None, ["broken.sub", "broken.sub.orig"]),
    "fix as JSON": ("fix --json --dry-run broken.sub film.sub", None, []),
    "inspect": ("inspect", None, []),
}
# Error numbers that the call may have, and which of them are no failure at all.
CALLS = {
    "open": [errno.EMFILE, errno.EIO],
    "read": [errno.EIO, errno.EINTR, HALF],
    "lseek": [errno.EIO],
    "write": [errno.EIO, errno.ENOSPC, errno.EINTR, HALF],
    "fsync": [errno.EIO, errno.ENOSPC],
    "rename": [errno.EIO, errno.ENOSPC],
    "link": [errno.EIO, errno.ENOSPC],
    "close": [errno.EIO, errno.EINTR],
    "clone": [errno.EAGAIN],
}
HARMLESS = (HALF, errno.EINTR)
# What a run says that could not find out all of what it was asked.
ADMITTED = ["not told for a MicroDVD file", "unknown", '"size": null']

Run = collections.namedtuple("Run", "code out err files struck")


def run(command, fault=None):
    """Runs it in a folder of its own."""
    words, source, outputs = COMMANDS[command]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name, "films")
        (folder / "out").mkdir(parents=True)
        for file, sample in INPUTS.items():
            shutil.copyfile(pathlib.Path(SAMPLES, sample), folder / file)
        for file in set(outputs) - set(INPUTS):
            if not file.endswith(".orig"):
                (folder / file).write_text(OLD)
        mark = pathlib.Path(name, "struck")
        temporary = pathlib.Path(name, "temporary")
        temporary.mkdir()
        environment = dict(os.environ, TMPDIR=str(temporary))
        if fault:
            environment.update(LD_PRELOAD=FAILING_CALLS, OMBE_FAULT=fault, OMBE_FAULT_MARK=str(mark))
        with open(folder / source if source else os.devnull, "rb") as stdin:
            done = subprocess.run([OMBE, *words.split()], cwd=folder, env=environment, stdin=stdin,
                                  capture_output=True, timeout=60, check=False)
        files = {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}
        files.update({f"TMPDIR/{path.name}": b"" for path in temporary.iterdir()})
        return Run(done.returncode, done.stdout, done.stderr.decode(errors="replace"), files, mark.exists())


def objections(command, whole, got, error):
    """What is wrong with a run in which a call failed, beside one in which none did."""
    _, _, outputs = COMMANDS[command]
    if got.code not in ((ENDED,) if error == END else (0, 1, 2, 3)):
        yield f"exit code {got.code}"
    before = {name: pathlib.Path(SAMPLES, sample).read_bytes() for name, sample in INPUTS.items()}
    for name in {*before, *outputs, *got.files}:
        content, new = got.files.get(name), whole.files.get(name)
        old = before.get(name, None if name.endswith(".orig") else OLD.encode())
        if error == END and pathlib.Path(name).name.startswith(".ombe-"):
            continue
        if content not in (old, new) or name not in whole.files:
            yield f"{name} holds neither what it held nor what was to be written: {content}"
        elif error != END and got.code == whole.code and content != new:
            yield f"{name} was not written, and yet the exit code is {got.code}"
    if error == END:
        return
    said = got.err + got.out.decode(errors="replace")
    if got.code == whole.code and got.out != whole.out and not any(word in said for word in ADMITTED):
        yield "called done, and yet the output differs"
    names = [*INPUTS, *outputs, "standard ", "temporary file"]
    if got.code != whole.code and not (os.strerror(error) in said and any(name in said for name in names)):
        yield f"nothing says {os.strerror(error)}, and of what"
    if error in HARMLESS and got.code != whole.code:
        yield "it is not as if nothing had happened"


def sweep(command, call, error, lasts):
    """Lets the first, the second, ... call fail until there are no more. How many there were, and faults."""
    whole = run(command)
    faults = []
    for number in range(1, 1000):
        got = run(command, f"{call} {number} {error} {lasts}")
        if not got.struck:
            return number - 1, faults
        faults += [f"{command}: {call} {number} {error} {lasts}: {fault}\n  exit {got.code}: {got.err.strip()}"
                   for fault in objections(command, whole, got, error)]
    return number, [*faults, f"{command}: {call}: without end"]


def main():
    tasks = [(command, call, error, lasts) for command in COMMANDS for call, errors in CALLS.items()
             for error in [*errors, END] for lasts in ((0, 1) if error == errors[0] else (0,))]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda task: sweep(*task), tasks))
    points = collections.Counter()
    for (command, call, error, _), (count, _) in zip(tasks, results):
        if error == END:
            points[command, call] = count
    for command in COMMANDS:
        print(f"{command}:", ", ".join(f"{call} {points[command, call]}" for call in CALLS if points[command, call]))
    faults = [fault for _, found in results for fault in found]
    print(*faults, sep="\n")
    return bool(faults) or not all(any(points[command, call] for command in COMMANDS) for call in CALLS)


sys.exit(main())
