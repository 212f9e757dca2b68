#!/usr/bin/env python3
"""Gives malformed files of many classes to `ombe probe`, `info` and `export`.

Whatever is in a file, the program answers: exit code 0 or 1, no signal, no sanitizer report, and
a message that names the file when it is refused. The commands must also agree with each other.
The time limit is only there to end a run that hangs.

usage: hostile_corpus.py OMBE PLUGIN SAMPLES [--quick] [--keep FOLDER]
--quick takes a share of the classes with many files, and shorter ones of the large files.
"""
import argparse
import collections
import concurrent.futures
import itertools
import os
import pathlib
import random
import subprocess
import sys
import tempfile

HANG_SECONDS = 600
FILES_A_PROBE = 100
GOOD = b"{1}{25}Hello|you\n{30}{60}/World\n"
SIGNATURES = {
    "utf32be": (b"\0\0\xfe\xff", "utf-32-be"),
    "utf32le": (b"\xff\xfe\0\0", "utf-32-le"),
    "utf16be": (b"\xfe\xff", "utf-16-be"),
    "utf16le": (b"\xff\xfe", "utf-16-le"),
    "utf8": (b"\xef\xbb\xbf", "utf-8"),
    "utf7-8": (b"+/v8", "utf-7"),
    "utf7-9": (b"+/v9", "utf-7"),
    "utf7-plus": (b"+/v+", "utf-7"),
    "utf7-slash": (b"+/v/", "utf-7"),
    "scsu": (b"\x0e\xfe\xff", "latin-1"),
    "bocu": (b"\xfb\xee\x28", "latin-1"),
    "gb18030": (b"\x84\x31\x95\x33", "gb18030"),
}


def truncations(samples, share):
    for sample in sorted(samples.glob("*.sub")):
        whole = sample.read_bytes()
        for length in range(0, len(whole) + 1, share):
            yield f"{sample.stem}-{length}", whole[:length]


def braces(_samples, share):
    orders = sorted(set(itertools.permutations("{1}{2}")))[::share]
    for number, order in enumerate(orders):
        line = "".join(order).encode() + b"text\n"
        yield f"{number}-first", line + GOOD
        yield f"{number}-later", GOOD + line
    for number, count in itertools.product((1, 2, 1023, 1024, 100000), "{}"):
        yield f"{number}-{ord(count)}", count.encode() * number


def digits(_samples, share):
    for length in [*range(0, 41, share), 98, 99, 100, 101, 1000, 100000]:
        for start, digit in ((b"", b"0"), (b"", b"1"), (b"", b"9"), (b"-", b"9"), (b"+", b"9")):
            number = start + digit * length
            forms = (
                b"{%b}{2}a\n", b"{1}{%b}a\n", b"{1}{1}%b\n{25}{50}a\n", b"{1}{1}.%b\n{25}{50}a\n",
                b"{1}{1}%b/3\n{25}{50}a\n", b"{1}{1}3/%b\n{25}{50}a\n",
            )
            for at, form in enumerate(forms):
                yield f"{(start + digit).hex()}-{length}-{at}", form % number


def nuls(_samples, share):
    for at in range(0, len(GOOD) + 1, share):
        yield f"in-{at}", GOOD[:at] + b"\0" + GOOD[at:]
        yield f"over-{at}", GOOD[:at] + b"\0" + GOOD[at + 1:]
    for length in (1, 2, 3, 4, 1023, 1024, 1025, 65536):
        yield f"only-{length}", b"\0" * length
        yield f"behind-{length}", GOOD + b"\0" * length


def surrogates(_samples, _share):
    wide = {"high": [0xD83D], "low": [0xDE00], "swapped": [0xDE00, 0xD83D], "twice": [0xD83D] * 2}
    for (name, units), order, tail in itertools.product(wide.items(), ("big", "little"), ("", "x\n")):
        mark = b"\xfe\xff" if order == "big" else b"\xff\xfe"
        encoding = f"utf-16-{order[0]}e"
        lone = b"".join(unit.to_bytes(2, order) for unit in units)
        line = "{1}{25}a".encode(encoding) + lone + tail.encode(encoding)
        yield f"16-{name}-{order}-{len(tail)}", mark + line
        yield f"16-{name}-{order}-{len(tail)}-odd", mark + line + b"\xd8"
        yield f"16-{name}-{order}-{len(tail)}-first", mark + lone + line
        points = b"".join(unit.to_bytes(4, order) for unit in units)
        mark, encoding = SIGNATURES[f"utf32{order[0]}e"]
        yield f"32-{name}-{order}-{len(tail)}", mark + "{1}{25}".encode(encoding) + points
        text = "".join(map(chr, units)).encode("utf-8", "surrogatepass")
        for start in (b"", b"\xef\xbb\xbf"):
            yield f"8-{name}-{order}-{len(tail)}-{len(start)}", start + b"{1}{25}" + text + b"\n"


def signatures(_samples, _share):
    tails = {"none": b"", "nul": b"\0", "ascii": GOOD, "high": bytes(range(128, 256))}
    for name, (mark, encoding) in SIGNATURES.items():
        for length in range(1, len(mark) + 1):
            for tail_name, tail in tails.items():
                yield f"{name}-{length}-{tail_name}", mark[:length] + tail
        whole = mark + "{1}{25}Ho \u00df|\n{30}{60}x\n".encode(encoding)
        for length in range(len(mark), len(whole)):
            yield f"{name}-whole-{length}", whole[:length]
        yield f"{name}-twice", mark + whole


def binaries(_samples, _share):
    dice = random.Random(1)
    yield "all-bytes", bytes(range(256))
    yield "all-bytes-behind", b"{1}{25}" + bytes(range(1, 256))
    yield "program", pathlib.Path(sys.executable).resolve().read_bytes()[:100000]
    for start in (b"\x7fELF", b"\x89PNG\r\n\x1a\n", b"PK\3\4", b"\x1f\x8b\x08", b"RIFF", b"%PDF-1.7\n"):
        yield f"start-{start.hex()}", start + dice.randbytes(500)
    for length in (0, 1, 2, 3, 1023, 1024, 1025, 65536, 1000000):
        yield f"random-{length}", dice.randbytes(length)
        yield f"random-{length}-behind", GOOD + dice.randbytes(length)
        yield f"random-{length}-in-line", b"{1}{25}" + dice.randbytes(length).replace(b"\n", b"")


def long_lines(_samples, share):
    length = 10_000_000 // share
    for piece in (b"x", b"{", b"}", b"1", b"|", b" ", b"\xc5\xbc", b"\xff", b"\\", b"{y:i}"):
        line = piece * (length // len(piece))
        yield f"alone-{piece.hex()}", line
        yield f"text-{piece.hex()}", b"{1}{25}" + line + b"\n{30}{60}a\n"
        yield f"header-{piece.hex()}", b"{1}{1}" + line
        yield f"number-{piece.hex()}", b"{" + line + b"}{2}a"
    yield "utf16", b"\xff\xfe" + ("{1}{25}" + "\u017c" * (length // 2)).encode("utf-16-le")


def many_lines(_samples, share):
    count = 1_000_000 // share
    for name, line in {"lf": b"\n", "crlf": b"\r\n", "cr": b"\r", "blank": b" \n",
                       "bare": b"{1}{2}\n", "header": b"{1}{1}25/0\n", "same": b"{1}{2}a\n"}.items():
        yield f"{name}-only", line * count
        yield f"{name}-before", line * count + GOOD
        yield f"{name}-after", GOOD + line * count
    yield "backward", b"".join(b"{%d}{%d}a\n" % (i, i) for i in range(count, 0, -1))


def names(_samples, _share):
    for name in ("a b", "a%20b", "a#b?c", "a'b\"c", "\u017c\U0001f3ac", "a\nb", "a\x1b[31mb", "-", "a.txt"):
        yield name, GOOD
        yield name + " bad", GOOD + b"bad\n"


def shown(name):
    """A file's name in messages: control characters as their pictures."""
    return "".join(chr(0x2400 + ord(c)) if c < " " else c for c in name)


def write_corpus(folder, samples, quick):
    """Files by class; a share of 1 is everything."""
    classes = {truncations: 29, braces: 30, digits: 20, nuls: 11, surrogates: 1, signatures: 1,
               binaries: 1, long_lines: 20, many_lines: 20, names: 1}
    every = 9 if quick else 1  # of the files that come without a share
    for generate, quick_share in classes.items():
        place = folder / generate.__name__
        place.mkdir(parents=True)
        few = every if quick_share == 1 and generate is not names else 1
        for name, content in itertools.islice(generate(samples, quick_share if quick else 1), 0, None, few):
            path = place / (name + ".sub")
            path.write_bytes(content)
            yield str(path)


class Checker:
    def __init__(self, ombe, plugin):
        self.command = [ombe, "--plugin", plugin]
        self.complaints = []
        # Codes of their own, so that a report is not taken for a refusal.
        codes = {f"{tool}_OPTIONS": f"exitcode=99:{os.environ.get(tool + '_OPTIONS', '')}"
                 for tool in ("ASAN", "LSAN", "UBSAN", "TSAN")}
        self.environment = {**os.environ, **codes}

    def run(self, command, *arguments):
        """Exit code, standard output and standard error, after the checks common to all runs."""
        what = " ".join((command, *arguments))[:300]
        output = subprocess.DEVNULL if command == "export" else subprocess.PIPE
        try:
            done = subprocess.run([self.command[0], command, *self.command[1:], *arguments],
                                  stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE,
                                  env=self.environment, timeout=HANG_SECONDS, check=False)
        except subprocess.TimeoutExpired:
            self.complaints.append(f"{what}: hangs")
            return None, "", ""
        errors = done.stderr.decode("utf-8", "surrogateescape")
        if done.returncode not in (0, 1):
            self.complaints.append(f"{what}: exit code {done.returncode}\n{errors[:3000]}")
        if "Sanitizer" in errors or "runtime error" in errors:
            self.complaints.append(f"{what}: a sanitizer's report\n{errors[:3000]}")
        return done.returncode, (done.stdout or b"").decode("utf-8", "surrogateescape"), errors

    def probe(self, files, *options):
        """Which of the files are recognised."""
        code, output, _ = self.run("probe", *options, *files)
        answers = {True: ": MicroDVD\n", False: ": not recognised\n"}
        recognised = {file: shown(file) + answers[True] in output for file in files}
        if output != "".join(shown(file) + answers[recognised[file]] for file in files):
            self.complaints.append(f"probe {files[0]} ...: not one line a file")
        if code != (0 if all(recognised.values()) else 1):
            self.complaints.append(f"probe {files[0]} ...: exit code {code} for these answers")
        return recognised

    def open(self, file, recognised):
        """Whether the file opens; both commands have to say the same."""
        code, _, errors = self.run("info", file)
        form = ("srt", "jsonl")[len(file) % 2]
        export_code, _, export_errors = self.run("export", "-f", form, file)
        if code != export_code or (code == 0 and not recognised):
            self.complaints.append(f"{file}: recognised {recognised}, info {code}, export {export_code}")
        if code == 1 and not (shown(file) in errors and shown(file) in export_errors):
            self.complaints.append(f"{file}: refused without its name: {errors[:200]}{export_errors[:200]}")
        return code == 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("ombe")
    parser.add_argument("plugin")
    parser.add_argument("samples", type=pathlib.Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--keep", type=pathlib.Path, help="leave the files in this new folder")
    options = parser.parse_args()
    checker = Checker(options.ombe, options.plugin)
    with tempfile.TemporaryDirectory(prefix="ombe-hostile-") as temporary, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        files = list(write_corpus(options.keep or pathlib.Path(temporary, "files"), options.samples,
                                  options.quick))
        batches = [files[i:i + FILES_A_PROBE] for i in range(0, len(files), FILES_A_PROBE)]
        recognised = collections.ChainMap(*pool.map(checker.probe, batches))
        for code_page in ("windows-1250", "UTF16-LE", "ISO-2022-JP"):
            list(pool.map(lambda batch: checker.probe(batch, "--code-page", code_page), batches))
        opened = list(pool.map(lambda file: checker.open(file, recognised[file]), files))
    print(f"{len(files)} files, {sum(recognised.values())} recognised, {sum(opened)} opened, "
          f"{len(checker.complaints)} complaints")
    for complaint in checker.complaints[:10]:
        print(complaint)
    # Files of both kinds, or nothing was tried.
    return 0 if not checker.complaints and 0 < sum(opened) < len(files) else 1


if __name__ == "__main__":
    sys.exit(main())
