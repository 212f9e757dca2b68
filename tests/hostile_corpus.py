#!/usr/bin/env python3
"""Gives malformed files to `ombe probe`, `check`, `export` and `fix`, a whole class of them at once.

Whatever is in a file, every command answers for each one with exit code 0 or 1, no signal and no
sanitizer report, and they agree: export writes what check calls playable and names the others, and
what fix writes is playable. When something is wrong the files stay where the message says.

usage: hostile_corpus.py OMBE PLUGIN SAMPLES
"""
import concurrent.futures, json, os, pathlib, random, shutil, subprocess, sys, tempfile

GOOD = b"{1}{25}Hello|you\n{30}{60}/World\n"
MARKS = {"utf-32-be": b"\0\0\xfe\xff", "utf-32-le": b"\xff\xfe\0\0", "utf-16-be": b"\xfe\xff",
         "utf-16-le": b"\xff\xfe", "utf-8": b"\xef\xbb\xbf", "utf-7": b"+/v8", "gb18030": b"\x84\x31\x95\x33"}
OTHER_MARKS = b"+/v9", b"+/v+", b"+/v/", b"\x0e\xfe\xff", b"\xfb\xee\x28"
PIECES = (*(bytes([byte]) for byte in b"x{}19|\\ \0\xff\r\n"), b"\xc5\xbc", b"{y:i}", b"\r\n", b" \n",
          b"{1}{2}\n", b"{1}{2}a\n", b"{2}{1}a\n", b"{1}{1}25/0\n", random.Random(1).randbytes(9999))
FRAMES = b"%b", GOOD + b"%b", b"%b" + GOOD, b"{1}{25}%b\n{30}{60}a\n", b"{%b}{2}a\n", b"{1}{1}%b\n"
NUMBERS = (*FRAMES[-2:], b"{1}{%b}a\n", *(b"{1}{1}" + form + b"\n{25}{50}a\n"
                                          for form in (b"%b", b".%b", b"%b/3", b"3/%b")))


def corpus(samples):
    """The contents of the files, by class."""
    yield "cut", [text[:length] for text in samples for length in range(0, len(text) + 1, 5)]
    yield "edited", [GOOD[:at] + byte + GOOD[at + skip:] for at in range(len(GOOD) + 1)
                     for byte in (b"\0", b"{", b"}", b"\n", b"\xff", b"") for skip in (0, 1)]
    yield "repeated", [frame % (piece * (size // len(piece) + 1)) for frame in FRAMES
                       for piece in PIECES for size in (1, 1023, 1024, 50_000)]
    yield "numbers", [form % (sign + digit * length) for form in NUMBERS for sign in (b"", b"-", b"+")
                      for digit in (b"0", b"1", b"9") for length in (0, 1, 10, 11, 19, 20, 99, 100, 101)]
    whole = "{1}{25}Ho \u00df|\n{30}{60}x\n"
    yield "signatures", [text[:length] + tail
                         for text in (*(mark + whole.encode(name) for name, mark in MARKS.items()),
                                      *(mark + GOOD for mark in OTHER_MARKS))
                         for length in range(1, len(text), 2) for tail in (b"", b"\0", b"\xff")]
    yield "surrogates", [mark + ("{1}{25}a" + units).encode(name, "surrogatepass") + tail
                         for name, mark in list(MARKS.items())[:5]
                         for units in ("\ud83d", "\ude00", "\ude00\ud83d", "\ud83d\ud83d")
                         for tail in (b"", b"\n", b"\xd8", b"\0")]
    names = "a b", "a%20b", "a#b?c", "a'b\"c", "\u017c\U0001f3ac", "a\nb", "a\x1b[31mb", "-", "a.txt"
    yield from ((name, (GOOD, GOOD + b"bad\n")) for name in names)


def expect(condition, *what):
    if not condition:
        raise AssertionError(" ".join(map(str, what))[:3000])


def run(ombe, plugin, command, *arguments):
    """Standard output and standard error, after the checks common to all runs."""
    done = subprocess.run([ombe, command, "--plugin", plugin, *arguments], stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=1000, check=False, env=dict(os.environ, **{
                              f"{tool}_OPTIONS": f"{os.environ.get(tool + '_OPTIONS', '')}:exitcode=99"
                              for tool in ("ASAN", "LSAN", "UBSAN", "TSAN")}))
    errors = done.stderr.decode("utf-8", "surrogateescape")
    expect(done.returncode in (0, 1) and "runtime error" not in errors,
           command, *arguments[:3], "...: exit code", done.returncode, errors)
    return done.stdout.decode("utf-8", "surrogateescape"), errors


def opens(program, files):
    """Whether check says that it opens, for each file."""
    report = json.loads(run(*program, "check", "--json", *files)[0])["files"]
    expect([file["file"] for file in report] == files, "check answers for other files than", files[0], "...")
    return [file["opens"] for file in report]


def try_class(program, folder, name, contents):
    """How many of the files open."""
    files = [str(folder / f"{name}-{number}.sub") for number in range(len(contents))]
    for path, content in zip(files, contents):
        pathlib.Path(path).write_bytes(content)
    # Control characters are shown as their pictures.
    shown = ["".join(chr(0x2400 + ord(c)) if c < " " else c for c in path) for path in files]
    for code_page in ("windows-1250", "UTF16-LE", "ISO-2022-JP"):
        lines = run(*program, "probe", "--code-page", code_page, *files)[0].splitlines()
        expect([line.removesuffix(": not recognised").removesuffix(": MicroDVD") for line in lines] == shown,
               "probe", name, "answers for other files")
    good = opens(program, files)
    (folder / name).mkdir()
    errors = run(*program, "export", "-f", "srt", "-o", str(folder / name), *files)[1]
    for path, text, playable in zip(files, shown, good):
        written = (folder / name / pathlib.Path(path).with_suffix(".srt").name).exists()
        expect(written == playable and (playable or text in errors), text, "opens", playable, "written", written)
    (folder / (name + " mended")).mkdir()
    run(*program, "fix", "-o", str(folder / (name + " mended")), *files)
    mended = sorted(map(str, (folder / (name + " mended")).iterdir()))
    expect(not mended or all(opens(program, mended)), name, "mended files do not open")
    return sum(good), len(mended)


def main(ombe, plugin, samples):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="ombe-hostile-"))
    classes = dict(corpus([path.read_bytes() for path in sorted(pathlib.Path(samples).glob("*.sub"))]))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        tried = [pool.submit(try_class, (ombe, plugin), folder, *item) for item in classes.items()]
    complaints = [str(job.exception()) for job in tried if job.exception()]
    print("\n".join(complaints) + f"\nthe files are in {folder}" if complaints else "no complaints")
    if not complaints:
        shutil.rmtree(folder)
        total, good = sum(map(len, classes.values())), sum(job.result()[0] for job in tried)
        print(f"{total} files, {good} open, {sum(job.result()[1] for job in tried)} mended")
        return 0 if 0 < good < total else 1  # files of both kinds, or nothing was tried
    return 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
