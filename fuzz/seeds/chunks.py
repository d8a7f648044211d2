"""Seeds of files of chunks: WAV and its kin, AIFF, CAF; and AU. Those that begin with "not-" are refused."""
from covers import JPEG
from music import id3, text23

DELIVERED_AS_IT_IS = bytes(8)
UNKNOWN_SIZE = bytes([8]) + bytes(7)


def n(value, size=4):
    return value.to_bytes(size, "big")


def little(value, size=4):
    return value.to_bytes(size, "little")


def hole(place, size, shift):
    """Zeros put in at a place of the file."""
    return bytes(4) + little(place, 2) + bytes([size, shift])


TITLE = id3(text23(b"TIT2", b"\0Tagged"))
COVER = id3(text23(b"TIT2", b"\0Tagged"), text23(b"APIC", b"\0image/jpeg\0\3\0" + JPEG))
OPEN = 0xFFFFFFFF


# --- WAV


def chunk(name, content, size=None, number=little):
    return name + number(len(content) if size is None else size) + content + bytes(len(content) % 2)


def riff(chunks, kind=b"RIFF", form=b"WAVE", size=None, number=little):
    return kind + number(len(chunks) + 4 if size is None else size) + form + chunks


def fmt(tag=1, channels=1, rate=8000, mean=16000, block=2, bits=16, rest=b"", number=little):
    fields = ((tag, 2), (channels, 2), (rate, 4), (mean, 4), (block, 2), (bits, 2))
    return chunk(b"fmt ", b"".join(number(value, size) for value, size in fields) + rest, number=number)


def extension(valid, tag):
    return little(22, 2) + little(valid, 2) + little(3) + little(tag, 2) + bytes.fromhex("000000001000800000AA00389B71")


def info(*texts):
    return chunk(b"LIST", b"INFO" + b"".join(chunk(name, text) for name, text in texts))


def ds64(data, samples=0, table=little(0)):
    return chunk(b"ds64", bytes(8) + little(data, 8) + little(samples, 8) + table)


def bext(description=b"Described", date=b"2001-02-03", time=b"04:05:06"):
    return chunk(b"bext", description + bytes(256 - len(description)) + bytes(64) + date + time + bytes(264))


REST = bytes.fromhex("F3ACD3118CD100C04F8EDB8A")


def wave64(chunks, form=b"wave"):
    return b"riff" + bytes.fromhex("2E91CF11A5D628DB04C10000") + little(40 + len(chunks), 8) + form + REST + chunks


def chunk64(name, content, size=None):
    size = 24 + len(content) if size is None else size
    return name + REST + little(size, 8) + content + bytes(-len(content) % 8)


def summary(*texts):
    items = b"".join(name + little(2 * len(text)) + text.encode("utf-16-le") for name, text in texts)
    content = little(len(texts)) + items
    head = bytes.fromhex("BC945F925A52D21186DC00C04F8EDB8A")
    return head + little(24 + len(content), 8) + content + bytes(-len(content) % 8)


SUMMARY = summary((b"INAM", "Title"), (b"ICMT", "odd"), (b"IART", "Artist"))
SOUND = b"\x11" * 40
DATA = chunk(b"data", SOUND)
CD = fmt(1, 2, 44100, 176400, 4, 16)


def swapped(content):
    return b"".join(content[i + 1 : i + 2] + content[i : i + 1] for i in range(0, len(content), 2))


def dts(layout=9, rate=8, low=True):
    bits = f"{0x7FFE8001:032b}" + "1111100" + f"{7:07b}" + f"{900:014b}" + f"{layout:06b}" + f"{rate:04b}"
    bits += "11000" + "0" * 10 + ("10" if low else "00") + "0" * 25
    return bits


def words(bits, size):
    content = b""
    for at in range(0, len(bits), size):
        word = int(bits[at : at + size].ljust(size, "0"), 2)
        content += n(word | (0xC000 if size == 14 and word & 0x2000 else 0), 2)
    return content


def frames(size=16, **more):
    head = words(dts(**more), size)
    return 2 * (head + b"\x55" * (1024 - len(head)))


def burst(kind, payload=bytes.fromhex("0B7712345014409F")):
    return bytes.fromhex("F8724E1F") + n(kind, 2) + n(0x0D00, 2) + payload + b"\x33" * 20


def plain():
    yield "eight-bits", riff(fmt(1, 1, 8000, 8000, 1, 8) + DATA)
    yield "bits-of-a-block", riff(fmt(1, 2, 8000, 32000, 4, 0) + DATA)
    yield "without-bits", riff(chunk(b"fmt ", fmt()[8:22]) + DATA)
    yield "extensible-24-in-32", riff(fmt(0xFFFE, 1, 8000, 32000, 4, 32, extension(24, 1)) + DATA)
    yield "extensible-cut", riff(fmt(0xFFFE, 1, 8000, 32000, 4, 32, little(22, 2)) + DATA)
    yield "float", riff(fmt(3, 1, 8000, 32000, 4, 32) + DATA)
    yield "a-law", riff(fmt(6, 1, 8000, 8000, 1, 8) + DATA)
    yield "rifx", riff(fmt(number=n) + chunk(b"fact", n(3), number=n) + chunk(b"data", SOUND, number=n), b"RIFX", number=n)
    yield "wave64", wave64(chunk64(b"fmt ", fmt()[8:]) + chunk64(b"data", SOUND[:35]) + chunk64(b"junk", b"ab"))
    yield "wave64-of-open-size", wave64(chunk64(b"fmt ", fmt()[8:]) + chunk64(b"data", SOUND, 0))
    yield "wave64-with-texts", wave64(SUMMARY + chunk64(b"fmt ", fmt()[8:]) + chunk64(b"data", SOUND))
    yield "fmt-twice-and-data-twice", riff(fmt() + fmt(6) + DATA + DATA)
    yield "data-first", riff(DATA + fmt())
    yield "no-sound", riff(fmt())
    yield "odd-without-stuffing", riff(fmt() + b"data" + little(3) + b"abc" + info((b"INAM", b"Odd\0")))
    yield "odd-without-stuffing-and-a-lying-size", riff(fmt() + b"junk" + little(3) + b"abc" + chunk(b"data", SOUND, OPEN))


def sizes():
    yield "size-of-0", riff(fmt() + chunk(b"data", SOUND, 0))
    yield "size-of-0-and-chunks", riff(fmt() + chunk(b"data", b"", 0) + info((b"INAM", b"After")))
    yield "size-of-all-ones", riff(fmt() + chunk(b"data", SOUND, OPEN), size=OPEN)
    yield "size-beyond", riff(fmt() + chunk(b"data", SOUND, 9999))
    yield "rf64", riff(ds64(40, 20) + fmt() + chunk(b"data", SOUND, OPEN) + info((b"INAM", b"After")), b"RF64", size=OPEN)
    yield "bw64-and-a-table", riff(
        ds64(40, 0, little(1) + b"axml" + little(4, 8)) + chunk(b"axml", b"<x/>", OPEN) + fmt() + DATA, b"BW64")
    yield "rf64-of-another-table", riff(
        ds64(40, 0, little(9) + b"bxml" + little(4, 8)) + fmt() + chunk(b"data", SOUND, OPEN) + chunk(b"axml", b"<x/>", OPEN),
        b"RF64")
    yield "rf64-without-sizes", riff(fmt() + chunk(b"data", SOUND, OPEN), b"RF64")
    yield "rf64-of-open-samples", riff(ds64(40, (1 << 64) - 1) + fmt() + chunk(b"data", SOUND, OPEN), b"RF64")
    yield "rf64-of-the-same-low-bits", riff(ds64(40) + fmt() + DATA, b"RF64")


def coded():
    ima = fmt(0x11, 1, 8000, 4055, 16, 4, little(2, 2) + little(25, 2))
    yield "blocks", riff(ima + DATA)
    yield "blocks-and-a-count", riff(ima + chunk(b"fact", little(60)) + DATA)
    yield "blocks-and-a-count-of-others", riff(ima + chunk(b"fact", little(9999)) + DATA)
    yield "count-of-all-ones", riff(ima + chunk(b"fact", little(OPEN)) + DATA)
    yield "mean", riff(fmt(0xFF, 1, 8000, 100, 1, 0) + DATA)
    yield "mean-and-a-count", riff(fmt(0xFF, 1, 8000, 100, 1, 0) + chunk(b"fact", little(3000)) + DATA)
    yield "mean-and-a-count-of-others", riff(fmt(0xFF, 1, 8000, 100, 1, 0) + chunk(b"fact", little(9)) + DATA)
    yield "count-alone", riff(fmt(0x9999, 1, 8000, 0, 1, 0) + chunk(b"fact", little(3000)) + DATA)
    yield "constant", riff(fmt(0x2000, 2, 48000, 24000, 1, 0) + DATA)
    mpeg = chunk(b"data", n(0xFFE318C4) + SOUND)
    yield "mpeg-of-its-rate", riff(fmt(0x55, 1, 8000, 1000, 1, 0) + mpeg)
    yield "mpeg-of-its-rate-and-a-count", riff(fmt(0x50, 1, 8000, 1000, 1, 0) + chunk(b"fact", little(400)) + mpeg)
    yield "mpeg-of-another-rate", riff(fmt(0x55, 1, 8000, 2000, 1, 0) + mpeg)
    yield "mpeg-without-a-frame", riff(fmt(0x55, 1, 8000, 1000, 1, 0) + DATA)


def disguises():
    for size in (16, 14):
        yield f"dts-{size}", riff(CD + chunk(b"data", frames(size)))
        yield f"dts-{size}-swapped", riff(CD + chunk(b"data", swapped(frames(size))))
    yield "dts-without-low", riff(CD + chunk(b"data", frames(low=False)))
    yield "dts-once", riff(CD + chunk(b"data", frames()[:1024] + SOUND * 40))
    yield "dts-of-no-rate", riff(CD + chunk(b"data", frames(rate=4)))
    yield "dts-of-no-layout", riff(CD + chunk(b"data", frames(layout=60)))
    yield "dts-at-the-end", riff(CD + chunk(b"data", SOUND + words(dts(), 16)[:6]))
    for kind, name in ((1, "ac-3"), (11, "dts"), (21, "e-ac-3"), (2, "nobody")):
        yield f"burst-of-{name}", riff(CD + chunk(b"data", burst(kind)))
    yield "burst-of-ac-3-swapped", riff(CD + chunk(b"data", swapped(burst(1))))
    yield "burst-of-ac-3-without-a-frame", riff(CD + chunk(b"data", burst(1, bytes(8))))
    yield "sync-words-of-nothing", riff(CD + chunk(b"data", 6 * (words(dts(), 16)[:4] + b"\x11" * 20)))


def tagged():
    texts = info((b"INAM", b"Listed\0"), (b"IART", b"One\0"), (b"IART", b"Gr\xFC\xDF\0"), (b"ISFT", b"ours"))
    yield "texts-of-all-kinds", riff(fmt() + DATA + texts + bext() + chunk(b"id3 ", TITLE))
    yield "list-of-another-kind", riff(fmt() + chunk(b"LIST", b"adtlINAM" + little(4) + b"text") + DATA)
    yield "bext-cut", riff(fmt() + chunk(b"bext", b"Described") + DATA)
    yield "bext-of-no-date", riff(fmt() + bext(date=b"0000000000") + DATA)
    yield "after-a-tag", TITLE + riff(fmt() + DATA)
    yield "cover", riff(fmt() + DATA + chunk(b"ID3 ", COVER))
    yield "id3-that-is-none", riff(fmt() + DATA + chunk(b"id3 ", b"ours"))
    yield "chunks-by-hundreds", riff(fmt() + DATA + 300 * chunk(b"junk", b""))


def refused():
    yield "not-a-wav", b"caff" + SOUND
    yield "not-of-this-form", riff(fmt(), form=b"AVI ")
    yield "not-of-this-form-of-wave64", wave64(b"", b"ours")
    yield "not-of-this-guid", b"riff" + bytes(40)
    yield "not-with-a-format", riff(DATA)
    yield "not-with-a-whole-format", riff(chunk(b"fmt ", b"short") + DATA)
    yield "not-of-0-channels", riff(fmt(channels=0) + DATA)


def wavs():
    for part in (plain, sizes, coded, disguises, tagged, refused):
        for name, content in part():
            yield name, content + DELIVERED_AS_IT_IS
    yield "unknown-size", riff(fmt() + DATA + info((b"INAM", b"After"))) + UNKNOWN_SIZE
    yield "unknown-size-of-all-ones", riff(CD + chunk(b"data", frames(), OPEN)) + UNKNOWN_SIZE
    silence = riff(CD + chunk(b"data", b"", 100000 + 2048), size=OPEN)
    yield "silence-for-long", silence + bytes(100000 - 0x10000) + frames() + hole(len(silence), 1, 16)
    far = riff(fmt() + chunk(b"data", SOUND, 40 + (3 << 14)) + chunk(b"id3 ", COVER), size=OPEN)
    place = far.index(SOUND)
    yield "tag-far-away", far + hole(place, 3, 14)
    yield "tag-far-away-fails", far + bytes([2, 0, 0, 1]) + hole(place, 3, 14)[4:]
    lost = riff(fmt() + DATA + info((b"INAM", b"After")))
    yield "size-lost-its-upper-bits", lost + hole(lost.index(SOUND), 1, 32)
    late = riff(fmt() + DATA + bytes(40), size=80)
    yield "size-lost-more-than-that", late + hole(lost.index(SOUND), 3, 31)
    yield "byte-by-byte", riff(fmt() + DATA + info((b"INAM", b"After"))) + bytes([1]) + bytes(7)


# --- AIFF


def big(name, content, size=None):
    return chunk(name, content, size, n)


RATE = n(0x400B, 2) + n(0xFA00000000000000, 8)


def comm(channels=1, count=20, bits=16, rate=RATE, codec=b""):
    return big(b"COMM", n(channels, 2) + n(count) + n(bits, 2) + rate + codec)


def ssnd(size=40, stated=None, place=0):
    return big(b"SSND", n(place) + bytes(4) + b"\x11" * size, stated)


def form(chunks, kind=b"AIFF"):
    return b"FORM" + n(len(chunks) + 4) + kind + chunks


def aifc(codec, **more):
    return form(comm(codec=codec + b"\4name\0", **more) + ssnd(68), b"AIFC")


def aiffs():
    name = big(b"NAME", b"Named")
    files = [
        ("counted", form(comm() + ssnd())),
        ("counts-less", form(comm(count=9) + ssnd())),
        ("counts-more", form(comm(count=99) + ssnd())),
        ("counts-none", form(comm(count=0) + ssnd())),
        ("sound-first", form(ssnd() + comm())),
        ("sound-later-in-its-chunk", form(comm(count=0) + ssnd(40, None, 10))),
        ("sound-after-its-chunk", form(comm() + ssnd(40, None, 99))),
        ("size-of-0", form(comm(count=0) + big(b"SSND", b"", 0) + name)),
        ("size-of-all-ones", form(comm(count=0) + ssnd(40, OPEN))),
        ("size-beyond", form(comm() + ssnd(20, 9999))),
        ("no-sound", form(comm())),
        ("twice", form(comm() + comm(2) + ssnd() + ssnd())),
        ("texts", form(comm() + name + big(b"AUTH", b"One") + big(b"ANNO", b"x") + big(b"ID3 ", TITLE) + ssnd())),
        ("cover", form(comm() + ssnd() + big(b"id3 ", COVER))),
        ("tag-of-a-lying-size", form(comm() + ssnd() + big(b"ID3 ", TITLE, 0x9C080000))),
        ("odd-without-stuffing", form(comm() + b"NAME" + n(3) + b"Odd" + ssnd())),
        ("sowt", aifc(b"sowt")),
        ("fl32", aifc(b"fl32", bits=25)),
        ("packets", aifc(b"ima4", count=2)),
        ("samples-of-packets", aifc(b"ima4", count=100)),
        ("ulaw", aifc(b"ulaw")),
        ("a-codec-of-nobody", aifc(b"o\xFFr ", count=200)),
        ("a-codec-of-nobody-too-long", aifc(b"ours", count=OPEN)),
        ("rate-with-a-fraction", form(comm(rate=n(0x400D, 2) + n(0xADDD173AB9C7E49B, 8)) + ssnd())),
        ("not-an-aiff", riff(fmt())),
        ("not-of-this-kind", form(comm(), b"8SVX")),
        ("not-described", form(ssnd())),
        ("not-described-whole", form(big(b"COMM", b"short") + ssnd())),
        ("not-of-a-small-rate", form(comm(rate=bytes(10)) + ssnd())),
        ("not-of-a-large-rate", form(comm(rate=n(0x4020, 2) + n(1 << 63, 8)) + ssnd())),
        ("not-of-0-channels", form(comm(0) + ssnd())),
    ]
    for name, content in files:
        yield name, content + DELIVERED_AS_IT_IS
    yield "unknown-size", form(comm() + ssnd() + big(b"NAME", b"After")) + UNKNOWN_SIZE
    yield "unknown-size-of-all-ones", form(comm() + ssnd(40, OPEN)) + UNKNOWN_SIZE
    far = form(comm() + ssnd(40, 48 + (3 << 14)) + big(b"ID3 ", COVER))
    yield "tag-far-away", far + hole(60, 3, 14)
    yield "tag-far-away-fails", far + bytes([2, 0, 0, 1]) + hole(60, 3, 14)[4:]


# --- AU


def au(size, encoding=3, rest=SOUND, rate=8000, channels=1, start=24):
    return b".snd" + n(start) + n(size) + n(encoding) + n(rate) + n(channels) + rest


def aus():
    for name, content in (
        ("stated", au(40)),
        ("size-of-0", au(0)),
        ("size-of-all-ones", au(OPEN)),
        ("size-beyond", au(99)),
        ("annotation", au(OPEN, rest=b"title=Tide\nnothing\nx=y" + SOUND, start=46)),
        ("after-the-file", au(OPEN, start=999)),
        ("ulaw", au(40, 1)),
        ("an-encoding-of-nobody", au(40, 99)),
        ("not-an-au", b"dns." + SOUND),
        ("not-whole", au(40)[:20]),
        ("not-from-there", au(40, start=8)),
        ("not-of-0-hertz", au(40, rate=0)),
        ("not-of-0-channels", au(40, channels=0)),
        ("not-of-so-many-channels", au(40, channels=65536)),
    ):
        yield name, content + DELIVERED_AS_IT_IS
    yield "unknown-size", au(OPEN) + UNKNOWN_SIZE
    yield "fails", au(40) + bytes([2]) + bytes(7)


# --- CAF


def large(name, content, size=None):
    return name + n(len(content) if size is None else size, 8) + content


def desc(codec=b"lpcm", flags=0, size=2, samples=1, channels=1, bits=16, rate=0x40BF400000000000):
    return large(b"desc", n(rate, 8) + codec + n(flags) + n(size) + n(samples) + n(channels) + n(bits))


def caf(chunks, version=1):
    return b"caff" + n(version, 2) + bytes(2) + chunks


def pakt(samples):
    return large(b"pakt", n(2, 8) + n(samples, 8) + bytes(8))


def cafs():
    data = large(b"data", bytes(4) + SOUND)
    alac = desc(b"alac", 0, 0, 4096)
    config = n(4096) + bytes([0, 24]) + bytes(18)
    boxes = n(12) + b"frmaalac" + n(36) + b"alac" + bytes(4)
    texts = large(b"info", n(3) + b"title\0Title\0tempo\x009\0" + b"k" * 40 + b"\0v\0")
    for name, content in (
        ("plain", caf(desc() + data)),
        ("float", caf(desc(flags=1, size=4, bits=32) + data)),
        ("packets", caf(desc(b"ima4", 0, 34, 64) + data)),
        ("varying", caf(alac + pakt(8000) + data)),
        ("varying-uncounted", caf(alac + data)),
        ("varying-negative", caf(alac + data + pakt(1 << 63))),
        ("packets-of-too-much", caf(desc(b"ima4", 0, 1, 0xFFFFFFFF) + pakt(8000) + data)),
        ("varying-too-many", caf(alac + data + pakt(1 << 50))),
        ("bits-by-flags", caf(desc(b"alac", 3, 0, 4096) + data + pakt(8000))),
        ("bits-by-other-flags", caf(desc(b"alac", 9, 0, 4096) + data + pakt(8000))),
        ("bits-by-cookie", caf(alac + large(b"kuki", config) + pakt(8000) + data)),
        ("bits-by-boxes", caf(alac + large(b"kuki", boxes + config) + pakt(8000) + data)),
        ("cookie-of-another", caf(desc() + large(b"kuki", config) + data)),
        ("flac", caf(desc(b"flac", 0, 0, 4096, bits=24) + pakt(8000) + data)),
        ("size-of-0", caf(desc() + large(b"data", bytes(4) + SOUND, 0))),
        ("size-of-all-ones", caf(desc() + large(b"data", bytes(4) + SOUND, (1 << 64) - 1))),
        ("size-beyond", caf(desc() + large(b"data", bytes(4) + SOUND, 999))),
        ("no-sound", caf(desc())),
        ("twice", caf(desc() + desc(channels=2) + data + data + pakt(1) + pakt(2))),
        ("texts", caf(desc() + texts + data)),
        ("texts-cut", caf(desc() + large(b"info", n(9) + b"title\0Title") + data)),
        ("not-a-caf", riff(fmt())),
        ("not-of-this-version", caf(desc(), 2)),
        ("not-described", caf(data)),
        ("not-of-0-hertz", caf(desc(rate=0) + data)),
        ("not-of-so-many-hertz", caf(desc(rate=0x7FEFFFFFFFFFFFFF) + data)),
        ("not-of-0-channels", caf(desc(channels=0) + data)),
        ("not-of-so-many-channels", caf(desc(channels=65536) + data)),
    ):
        yield name, content + DELIVERED_AS_IT_IS
    yield "unknown-size", caf(desc() + data + texts) + UNKNOWN_SIZE
    yield "unknown-size-of-all-ones", caf(desc() + large(b"data", bytes(4) + SOUND, (1 << 64) - 1)) + UNKNOWN_SIZE
    yield "unknown-size-varying", caf(alac + data + pakt(8000) + texts) + UNKNOWN_SIZE
    far = caf(desc() + large(b"data", bytes(4) + SOUND, 44 + (3 << 14)) + texts)
    yield "texts-far-away", far + hole(60, 3, 14)
    yield "texts-far-away-fail", far + bytes([2, 0, 0, 1]) + hole(60, 3, 14)[4:]


# --- Covers


def wav_covers():
    yield "after-the-sound", riff(fmt() + DATA + chunk(b"id3 ", COVER))
    yield "second-tag", riff(fmt() + chunk(b"id3 ", TITLE) + DATA + chunk(b"ID3 ", COVER))
    yield "no-tag", riff(fmt() + DATA)
    yield "after-a-tag", TITLE + riff(fmt() + DATA + chunk(b"id3 ", COVER))
    yield "rf64", riff(ds64(40) + fmt() + chunk(b"data", SOUND, OPEN) + chunk(b"id3 ", COVER), b"RF64")
    yield "wave64", wave64(chunk64(b"fmt ", fmt()[8:]) + chunk64(b"data", SOUND) + chunk64(b"id3 ", COVER))
    yield "rifx", riff(chunk(b"data", SOUND, number=n) + chunk(b"id3 ", COVER, number=n), b"RIFX", number=n)
    yield "of-another-form", riff(chunk(b"id3 ", COVER), form=b"AVI ")
    yield "table-of-sizes", riff(
        ds64(40, 0, little(1) + b"axml" + little(4, 8)) + chunk(b"axml", b"<x/>", OPEN) + DATA + chunk(b"id3 ", COVER), b"BW64")
    yield "size-of-0", riff(chunk(b"data", b"", 0) + chunk(b"id3 ", COVER))
    yield "size-of-all-ones", riff(chunk(b"id3 ", COVER) + chunk(b"data", SOUND, OPEN))
    yield "tag-cut", riff(DATA + chunk(b"id3 ", COVER[:-4], len(COVER)))


def aiff_covers():
    yield "after-the-sound", form(comm() + ssnd() + big(b"ID3 ", COVER))
    yield "second-tag", form(comm() + big(b"ID3 ", TITLE) + ssnd() + big(b"id3 ", COVER))
    yield "no-tag", form(comm() + ssnd())
    yield "aiff-c", form(comm(codec=b"sowt") + ssnd() + big(b"ID3 ", COVER), b"AIFC")
    yield "of-another-kind", form(big(b"ID3 ", COVER), b"8SVX")
    yield "odd-without-stuffing", form(b"NAME" + n(3) + b"Odd" + big(b"ID3 ", COVER))
    yield "lying-size", form(comm() + ssnd() + big(b"ID3 ", COVER, OPEN))


def seeds():
    doors = (("format_riff", wavs), ("format_aiff", aiffs), ("format_au", aus), ("format_caf", cafs),
             ("cover_wav", wav_covers), ("cover_aiff", aiff_covers))
    for door, files in doors:
        for name, content in files():
            yield door, name, content
