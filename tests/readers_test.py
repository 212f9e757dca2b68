#!/usr/bin/python3
"""Has other programs read what is exported of the samples and of files made by chance: they find
the same subtitles, with the same times and texts. Skipped where there is none of those programs.

Usage: readers_test.py OMBE SAMPLES
"""

import html
import itertools
import json
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

try:
    import srt
    import webvtt
except ImportError:
    sys.exit(77)
if shutil.which("ffprobe") is None:
    sys.exit(77)

OMBE, SAMPLES = sys.argv[1], pathlib.Path(sys.argv[2])
FORMATS = ("srt", "vtt")
RATES = {"25": (25, 1), "23.976": (23976, 1000), "24000/1001": (24000, 1001), "59,94": (5994, 100)}
# Letters whose bytes are never those of a bar, and how Python and ICU call their code page.
PAGES = [("utf-8", "", "aéЖ😀한"), ("utf-16", "", "aéЖ😀한"), ("cp1250", "windows-1250", "ąęłńŚŽ"),
         ("cp1251", "windows-1251", "жизньЯ"), ("cp1253", "windows-1253", "αβγδΩ"),
         ("cp1255", "windows-1255", "אבגדה"), ("koi8-r", "KOI8-R", "жизньЯ"),
         ("shift_jis", "Shift_JIS", "あいう日本"), ("gb18030", "GB-18030", "中文字你好"),
         ("big5", "Big5", "中文字你好"), ("euc_kr", "EUC-KR", "한국어가나")]


def random_text(rng, letters):
    """A text as it is written in a file, and the lines that are seen of it."""
    words = ["".join(rng.choices(letters + "xyz", k=rng.randint(2, 9))) for _ in range(6)]
    words += ["R&B", "&amp;", "a<b", "c>d", "-->", "3", "\\N", "{x}", "<i>no</i>"]
    # A letter comes first, since a slash or a code there would be a style.
    lines = [letters[0] + " ".join(rng.choices(words, k=rng.randint(1, rng.choice((4, 4, 90)))))
             for _ in range(rng.randint(1, 4))]
    lines.insert(1, rng.choice(("", " ", "\t", lines[0])))
    style = rng.choice(("", "", "/", "{y:i}", "{Y:b}", "{y:ib}", "{c:$ff0000}", "{C:$3399fF}"))
    return rng.choices(((style + "|".join(lines), lines), ("|", [])), (9, 1))[0]


def write_random(rng, path, page, letters):
    """Subtitles in any order, which overlap, last for hours, or end when or before they start."""
    rate = rng.choice(list(RATES))
    content, cues = "{1}{1}%s\n" % rate, []
    for _ in range(rng.randint(1, 30)):
        first = rng.randrange(rng.choice((100, 200000, 2**31 - 10**6)))
        last = first + rng.choice((0, 1, 50, 50, 50, 10**6, -min(first, 5)))
        written, lines = random_text(rng, letters)
        content += "{%d}{%d}%s%s" % (first, last, written, rng.choice(("\n", "\r\n", "\n\n")))
        over, under = RATES[rate]
        start, end = (frame * under * 1000 // over % 2**32 for frame in (first, last))
        cues.append((start, end, "\n".join(lines)))
    path.write_bytes(content.encode(page))
    return sorted(cues, key=lambda cue: cue[0])


def shown(cues, form):
    """Cues as the readers of a format have them: tags aside, without blank lines."""
    keeps = (lambda start, end: end >= start) if form == "srt" else (lambda start, end: end > start)
    written = (lambda text: text.replace("-->", "-- >")) if form == "srt" else str
    return [(start, end, plain(written(text))) for start, end, text in cues if keeps(start, end)]


def plain(text):
    text = re.sub("</?(?:[ibu]|font[^>]*)>", "", text, flags=re.IGNORECASE)
    return "\n".join(filter(str.strip, text.split("\n")))


def milliseconds(seconds):
    return round(float(seconds) * 1000)


def read_srt(path):
    """By python3-srt."""
    cues = list(srt.parse(path.read_text(encoding="utf-8", errors="surrogateescape")))
    assert [cue.index for cue in cues] == list(range(1, len(cues) + 1)), path
    return [(milliseconds(cue.start.total_seconds()), milliseconds(cue.end.total_seconds()),
             plain(cue.content)) for cue in cues]


def read_vtt(path):
    """By python3-webvtt, which takes off tags but leaves escapes as they are."""
    return [(milliseconds(cue.start_in_seconds), milliseconds(cue.end_in_seconds),
             plain(html.unescape(cue.text))) for cue in webvtt.read(str(path)).captions]


def read_ffprobe(path):
    """By ffprobe, which shows texts as numbers in hexadecimal, 16 a line."""
    shown = subprocess.run(
        ["ffprobe", "-v", "error", "-show_packets", "-show_data", "-of", "json", path],
        stdout=subprocess.PIPE, check=True).stdout
    cues = []
    for packet in json.loads(shown)["packets"]:
        start = milliseconds(packet.get("pts_time", 0))
        dump = "".join(line[10:49] for line in packet.get("data", "").split("\n"))
        text = bytes.fromhex(dump).decode("utf-8", "surrogateescape")
        if path.suffix == ".vtt":
            text = html.unescape(re.sub("<[^>]*>", "", text))
        cues.append((start, start + milliseconds(packet.get("duration_time", 0)), plain(text)))
    return cues


def differing(name, found, expected):
    for number, (one, other) in enumerate(itertools.zip_longest(found, expected), 1):
        if one != other:
            return [f"{name}: cue {number} is read as {one}, not {other}"]
    return []


def compare(path, cues):
    """What the readers find that is not in the cues."""
    form = path.suffix[1:]
    own = read_srt if form == "srt" else read_vtt
    return differing(f"{own.__name__} {path.name}", own(path), shown(cues, form))


def compare_ffprobe(path, cues):
    """The same of ffprobe, which passes over empty subtitles in SubRip and has an order of its own."""
    found, expected = (sorted(cue for cue in side if cue[2])
                       for side in (read_ffprobe(path), shown(cues, path.suffix[1:])))
    return differing(f"ffprobe {path.name}", found, expected)


def export(sources, out, *options):
    for form in FORMATS + ("jsonl",):
        subprocess.run([OMBE, "export", "-f", form, *options, *sources, "-o", f"{out}/"], check=True,
                       stderr=subprocess.DEVNULL)


def exported(path):
    lines = path.with_suffix(".jsonl").read_text(encoding="utf-8").splitlines()
    cues = map(json.loads, lines)
    cues = [(cue["timestamp"], cue["timestamp"] + cue["duration"], cue["text"]) for cue in cues]
    # With a rate that is given, the line that states one is delivered as a subtitle.
    return cues[1:] if re.fullmatch("[0-9]+[./,]?[0-9]*", cues[0][2]) else cues


def main():
    rng = random.Random(13)
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        pairs = []  # an output, and what is to be in it
        samples = [path for path in SAMPLES.glob("*.sub") if path.stem != "broken"]
        for number, options in enumerate(([], ["--offset", "3600000", "--frame-rate", "25",
                                               "--color-order", "bgr"])):
            out = work / f"samples{number}"
            export(samples, out, "--code-page", "auto", *options)
            pairs += [(path, exported(path)) for form in FORMATS for path in out.glob("*." + form)]
        assert len(pairs) == 4 * len(samples), pairs
        all_samples = len(pairs)
        for page, name, letters in PAGES:
            (work / page).mkdir()
            made = {}
            for number in range(19):
                path = work / page / f"{page}-{number}.sub"
                made[path] = write_random(rng, path, page, letters)
            out = work / f"{page}-out"
            export(made, out, *(["--code-page", name] if name else []))
            pairs += [(out / (path.stem + "." + form), cues) for path, cues in made.items()
                      for form in FORMATS]
        faults = [fault for path, cues in pairs for fault in compare(path, cues)]
        with ThreadPoolExecutor() as pool:  # ffprobe, which is slow to start, reads some of them
            some = [pair for pair in pairs[:all_samples] + pairs[all_samples::9]
                    if shown(pair[1], pair[0].suffix[1:])]  # it takes no file without cues
            faults += [fault for found in pool.map(lambda pair: compare_ffprobe(*pair), some)
                       for fault in found]
        print(f"{len(pairs)} exports, {sum(len(cues) for _, cues in pairs)} cues read,"
              f" {len(some)} exports by ffprobe as well")
    print("\n".join(faults[:20]))
    return 1 if faults else 0


sys.exit(main())
