#!/usr/bin/env python3
"""Writes samples/archive: files as they lie about in old collections, the same in every run.

Usage: make_archive.py [FOLDER]. `FILES` names every file with its bytes and with the dialogue that
it holds; of files that are something else it knows none.
"""
import sys
from pathlib import Path

DIALOGUE = {
    "en": ["Who left the gate open?", "The wind did, I suppose.",
           "Then ask the wind for the goat."],
    "pl": ["Kto zostawił otwartą furtkę?", "Chyba wiatr, któżby inny.",
           "To proś wiatr, żeby oddał kozę."],
    "ro": ["Cine a lăsat poarta deschisă?", "Vântul, cred că el a fost.",
           "Atunci cere-i vântului capra înapoi."],
    "fr": ["Qui a laissé la barrière ouverte ?", "Le vent, j'imagine, c'était lui.",
           "Alors demande la chèvre à l'été."],
    "ru": ["Кто оставил калитку открытой?", "Наверное, ветер.",
           "Тогда проси козу у ветра."],
    "el": ["Ποιος άφησε ανοιχτή την πόρτα;", "Ο άνεμος, νομίζω.",
           "Τότε ζήτα την κατσίκα από τον άνεμο."],
    "tr": ["Kapıyı kim açık bıraktı?", "Herhalde rüzgâr açtı, bilmiyorum.",
           "Öyleyse keçiyi rüzgârdan iste, şimdi."],
    "ar": ["من ترك البوابة مفتوحة؟", "أظن أنها الريح.",
           "إذن اطلب العنزة من الريح."],
    "lt": ["Kas paliko vartelius atvirus?", "Tikriausiai vėjas, aš nežinau.",
           "Tai prašyk vėjo, kad grąžintų ožką."],
    "ja": ["誰が門を開けたままにしたの?", "たぶん風だと思う。",
           "じゃあ、ヤギは風に返してもらって。"],
    "zh": ["是谁没有关上这个门?", "我想是风吧。",
           "那你去问风要我们的山羊。"],
}
EN = DIALOGUE["en"]
FILES = {}


def add(name, content, texts=EN, code_page="ascii"):
    """A file of these bytes, or of this text in a code page."""
    FILES[name] = (content if isinstance(content, bytes) else content.encode(code_page), texts)


def lines(texts=EN, form="{{{}}}{{{}}}{}", end="\n", head="", start=25):
    """A subtitle a line, of two seconds each, in a form that may be somebody's mistake."""
    return head + "".join(form.format(start + 60 * i, start + 60 * i + 50, text) + end
                          for i, text in enumerate(texts))


def add_good():
    add("good/plain.sub", lines())
    add("good/text.txt", lines())
    add("good/cr-lf.sub", lines(end="\r\n"))
    add("good/cr.sub", lines(end="\r"))
    add("good/no last end.sub", lines()[:-1])
    add("good/empty lines.sub", lines(end="\n\n"))
    add("good/header 25.sub", lines(head="{1}{1}25\n"))
    add("good/header 23.976.sub", lines(head="{1}{1}23.976\r\n", end="\r\n"))
    add("good/header fraction.sub", lines(head="{1}{1}24000/1001\n"))
    add("good/styles.sub", lines(["{y:i}" + EN[0], "{c:$0000FF}" + EN[1], "/" + EN[2]]))
    add("good/two lines.sub", lines([EN[0] + "|" + EN[1], EN[2]]))
    add("good/utf-8.sub", lines(sum(DIALOGUE.values(), [])), sum(DIALOGUE.values(), []), "utf-8")
    add("good/deep/down/in folders.sub", lines())


def add_code_pages():
    for language, code_page in (
            ("pl", "cp1250"), ("ro", "cp1250"), ("pl", "iso8859_2"), ("pl", "cp852"),
            ("fr", "cp1252"), ("ru", "cp1251"), ("ru", "koi8_r"), ("ru", "cp866"),
            ("el", "cp1253"), ("tr", "cp1254"), ("ar", "cp1256"), ("lt", "cp1257"),
            ("ja", "shift_jis"), ("zh", "gb18030")):
        texts = DIALOGUE[language]
        add(f"code pages/{language} {code_page}.sub", lines(texts, end="\r\n"), texts, code_page)


def add_signed():
    mixed = DIALOGUE["pl"] + DIALOGUE["ru"] + DIALOGUE["ja"]
    for name, signature in (("utf-8", b"\xef\xbb\xbf"), ("utf-16-le", b"\xff\xfe"),
                            ("utf-16-be", b"\xfe\xff"), ("utf-32-le", b"\xff\xfe\0\0"),
                            ("gb18030", b"\x84\x31\x95\x33")):
        add(f"signed/{name}.sub", signature + lines(mixed).encode(name), mixed)


def add_faults():
    def fault(name, content):
        add(f"faults/{name}.sub", content)

    fault("closing brace missing", lines(form="{{{}}}{{{} {}"))
    fault("braces missing", lines(form="{{{} {}}}{}"))
    fault("braces doubled", lines(form="{{{{{}}}}}{{{{{}}}}}{}"))
    fault("square brackets", lines(form="[{}][{}]{}"))
    fault("blanks inside", lines(form="{{ {} }}{{ {} }}{}"))
    fault("blanks around", lines(form=" {{{}}} {{{}}}{}"))
    fault("separators", lines(form="{{{}}},{{{}}}{}"))
    fault("no end", lines(form="{{{0}}}{{}}{2}"))
    fault("ends before start", "{75}{25}" + EN[0] + "\n" + lines(EN[1:], "{{{} {}}}{}", start=90))
    fault("split numbers", lines(form="{{{}}}\n{{{}}}{}"))
    fault("further lines", "{25}{75}" + EN[0] + "\n" + EN[1] + "\n{145}{195}" + EN[2] + "\n")
    fault("default style", "{DEFAULT}{}{y:i}\n" + lines())
    fault("text in front", "".join(EN[:1]) + "\n\n" + lines(EN[1:]))
    fault("control bytes", lines(["\x01" + EN[0], EN[1] + "\x1b", EN[2]], "{{{}}} {{{}}}{}"))
    fault("end of file", lines(form="{{{}}} {{{}}}{}", end="\r\n") + "\x1a")
    fault("padding", lines() + "\0" * 40)
    fault("three line ends", lines(form="{{{} {}}}{}", end="\r\r\n"))
    second = lines(EN[2:], start=145)
    fault("two files in one", (lines(EN[:2]) + "\ufeff" + second).encode())
    fault("wide without signature", lines().encode("utf-16-le"))


def add_others():
    def other(name, content):
        add(f"others/{name}", content, None)

    other("subrip.sub", "1\n00:00:01,000 --> 00:00:03,000\n" + EN[0] + "\n")
    other("webvtt.sub", "WEBVTT\n\n00:00:01.000 --> 00:00:03.000\n" + EN[0] + "\n")
    other("substation.sub", "[Script Info]\nTitle: The goat\n")
    other("vobsub.sub", b"\x00\x00\x01\xba\x44\x00\x04\x00\x04\x01" + bytes(range(200)))
    other("binary.sub", b"\x7fELF\x02\x01\x01" + bytes(64))
    other("empty.sub", b"")
    other("blank.sub", "\r\n\r\n\r\n")
    other("read me.txt", "Films about goats.\n")
    other("CAPITALS.SUB", lines())


for part in (add_good, add_code_pages, add_signed, add_faults, add_others):
    part()


def main(folder):
    for name, (content, _) in FILES.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(content)


if __name__ == "__main__":
    main(Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent / "archive")
