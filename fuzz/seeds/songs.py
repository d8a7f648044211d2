"""Seeds of files of songs whose texts are Vorbis comments."""
from covers import block, comments, field, flac, page
from music import DELIVERED_AS_IT_IS, delivered, id3, n, text23
from video import theora as theora_header

TAGGED = text23(b"TIT2", b"\0Title"), text23(b"APIC", b"\0image/png\0\3d\0\x89PNG\r\n\x1A\nours")


def crc8(content):
    total = 0
    for byte in content:
        total ^= byte
        for _ in range(8):
            total = (total << 1 ^ (7 if total & 0x80 else 0)) & 0xFF
    return bytes([total])


def frame(number=0, codes=0xFFF8C918, after=b"", body=b"sound"):
    coded = bytes([number]) if number < 0x80 else bytes([0xC0 | number >> 6, 0x80 | number & 0x3F])
    head = n(codes) + coded + after
    return head + crc8(head) + body


def info(rate=44100, channels=2, bits=16, samples=0):
    return n(4096, 2) * 2 + bytes(6) + n(rate << 44 | channels - 1 << 41 | bits - 1 << 36 | samples, 8) + bytes(16)


def flacs():
    texts = (4, comments(b"TITLE=Title", b"performer=One", b"no comment", b"x=" + b"y" * 50, field(block()), b"ALBUM=lost", head=b""))
    yield "texts-and-cover", flac((0, info(samples=40960)), texts, (6, block())) + 3 * frame()
    yield "count-missing", flac((0, info()), (1, bytes(4))) + frame(1) + frame(200) + frame(201)
    yield "count-too-large", flac((0, info(samples=1 << 35))) + frame(1, 0xFFF97918, n(99, 2)) + frame(100, 0xFFF96C48, n(9, 1) + n(44, 1))
    yield "no-rate", flac((0, info(0, 1, 8))) + frame(0, 0xFFF8CE00, n(4410, 2)) + frame(1, 0xFFF8CD00, n(44100, 2))
    yield "second-info", flac((4, b""), (0, info(samples=9)), (0, info(8000))) + frame()
    yield "frames-of-nobody", flac((0, info())) + b"".join(frame(1, codes) for codes in (0xFFF80918, 0xFFF8CF18, 0xFFF8C9B8, 0xFFF8C916, 0xFFF8C919))
    yield "numbers-of-nobody", flac((0, info())) + b"\xFF\xF8\xC9\x18\x80\0" + b"\xFF\xF8\xC9\x18\xC2\0\0" + b"\xFF\xF8\xC9\x18\xFF\0"
    yield "after-a-tag", id3(*TAGGED) + flac((0, info())) + frame() + b"TAG" + b"late".ljust(125, b"\0")
    yield "old-cover", flac((0, info()), (4, comments(b"coverart=/9j/4AAA", b"coverart=ab", head=b"")))
    yield "not-with-a-first-block", flac((1, bytes(4)))
    yield "not-whole-in-a-block", flac((0, info()))[:-20]
    yield "block-of-nobody", flac((0, info()), (127, b""), (1, b""))
    yield "not-one", b"fLaX" + bytes(40)


def number(value, size=4):
    return n(value, size, "little")


def sheet(packets, granule=0, flags=0, serial=1):
    """A page of whole packets, at a position."""
    sizes = b"".join(b"\xFF" * (len(packet) // 255) + bytes([len(packet) % 255]) for packet in packets)
    head = b"OggS\0" + bytes([flags]) + number(granule, 8) + number(serial) + bytes(8)
    return head + bytes([len(sizes)]) + sizes + b"".join(packets)


def vorbis(rate=44100, channels=2, rates=(0, 128000, 0)):
    return b"\x01vorbis" + bytes(4) + bytes([channels]) + number(rate) + b"".join(map(number, rates)) + b"\xB8\1"


def opus(skip=312, version=1):
    return b"OpusHead" + bytes([version, 2]) + number(skip, 2) + number(44100) + bytes(3)


def speex(variable=0):
    return b"Speex   ".ljust(36, b"1") + b"".join(map(number, (16000, 1, 4, 1, 27800, 320, variable, 1))) + bytes(12)


def theora(rate=25):
    return theora_header(rate=(rate, 1))


def ogm(kind, tag=b"0055", unit=10000000, samples=44100, length=0):
    times = number(unit, 8) + number(samples, 8) + number(length)
    return b"\1" + kind.ljust(8, b"\0") + tag + number(56) + times + bytes(8) + number(2, 4) + number(48) + number(1, 4)


def vp8(version=1):
    return b"OVP80\1" + bytes([version, 0]) + n(320, 2) + n(240, 2) + n(12, 3) + n(11, 3) + n(25) + n(1)


def kate(language=b"de"):
    return b"\x80kate" + bytes(27) + language.ljust(16, b"\0") + bytes(16)


def skeleton(shown, base=0):
    times = b"".join(number(value, 8) for value in (shown, 1000, base, 1000))
    return b"fishead\0\4\0\0\0" + times + bytes(36)


HEADS = {
    "vorbis": (vorbis(), comments(b"TITLE=Title", field(block()))),
    "opus": (opus(), comments(b"TITLE=Title", head=b"OpusTags")),
    "flac": (b"\x7FFLAC\1\0\0\1fLaC\0\0\0\x22" + info(samples=44100), b"\4\0\0\x1B" + comments(b"TITLE=Title", head=b"")),
    "speex": (speex(), comments(b"TITLE=Title", head=b"")),
    "ogm-sound": (ogm(b"audio"), comments(b"TITLE=Title")),
    "ogm-video": (ogm(b"video", b"XVID", 400000, 1), comments()),
    "theora": (theora(), comments(b"TITLE=Title", head=b"\x81theora")),
    "vp8": (vp8(), comments(b"TITLE=Title", head=b"OVP80\2 ")),
    "vp8-of-another-version": (vp8(2), b""),
    "dirac": (b"BBCD", b""),
}


def stream(kind="vorbis", *sound, serial=1):
    head, texts = HEADS[kind]
    return sheet([head], flags=2, serial=serial) + sheet([texts, b"setup"], serial=serial) + b"".join(sound)


def films():
    """Parts of films: video is of the stream 2, sound of 1."""
    def film(video, *pages, more=b""):
        return sheet([video], flags=2, serial=2) + sheet([vorbis()], flags=2) + more + b"".join(pages)

    def at(picture, count=1, flags=0):
        return sheet([b"p" * 40] * count, picture << 6, flags, serial=2)

    sound = sheet([b"s"] * 9, 44100)
    layer = b"\0\0\1\xB0\xF5\0\0\1\x20\x00\x84\x40\x06\x70\xC2\xC1\x09\x06"
    texts = sheet([ogm(b"text")], flags=2, serial=3) + sheet([kate()], flags=2, serial=4) + sheet([b"CMML" + bytes(8)], flags=2, serial=5)
    language = comments(b"LANGUAGE=fr")
    xvid = ogm(b"video", b"XVID", 400000, 1, 1)
    yield "captured", film(theora(), at(750), sheet([b"s"] * 9, 30 * 44100), at(800, 50), sheet([b"s"], 31 * 44100))
    yield "shown-later", film(theora(), at(1), sound, at(100, 9), more=sheet([skeleton(2000, 1000)], flags=2, serial=6))
    yield "shown-never", film(theora(), at(1), sound, more=sheet([skeleton(9000)], flags=2, serial=6))
    yield "one-picture", film(theora(), at(1, flags=4), sound, sheet([b"s"], 88200))
    yield "two-pictures", film(theora(), at(1), at(2, flags=4), sound)
    yield "ogm", film(xvid, sheet([language, b"\0" + layer], serial=2), sheet([language], serial=3), sound, at(24, 25), more=texts)
    yield "ogm-frame-after-its-length", film(xvid, sheet([b"\x48\1" + layer], serial=2), at(24))
    yield "ogm-frame-that-is-none", film(xvid, sheet([b"", b"\xCA"], 0, 1, serial=2), at(24))
    mp2 = b"\xFF\xFD\x84\x04" + bytes(380)
    for tag in (b"0050", b"0001", b"7777"):
        yield "ogm-sound-" + tag.decode(), sheet([xvid], flags=2, serial=2) + sheet([ogm(b"audio", tag, length=1152)], flags=2) + sheet([b"\0" + mp2])
    yield "end-of-one-of-two", film(theora(), at(1), sound, *[sheet([b"s" * 40000], 88200)] * 4)


def oggs():
    yield from films()
    for kind in HEADS:
        yield kind, stream(kind, sheet([b"s"] * 3, 44100), sheet([b"s"], 88200))
    late = 48000 * 60
    yield "opus-late", stream("opus", sheet([b"", b"\x18.", b"\x79", b"\xE3\x86", b"x" * 300], late), sheet([b"s"], 2 * late))
    yield "opus-late-goes-on", stream("opus", sheet([b"rest", b"\xFC"], late, 1), sheet([b"s"], 2 * late))
    yield "vorbis-late", stream("vorbis", sheet([b"s"], (1 << 64) - 1), sheet([b"s"], late), sheet([b"s"], 2 * late))
    yield "chain", stream("vorbis", sheet([b"s"], 44100)) + stream("opus", sheet([b"s"], 48312, serial=2), serial=2)
    yield "end-of-nothing", stream("vorbis", sheet([b"s"], 44100), sheet([b"s"], 9, serial=9)) + b"OggS OOO"
    sounds = stream("vorbis", sheet([b"s"], 64 * 25, serial=2), sheet([b"s"], 44100))
    yield "film", sheet([theora()], flags=2, serial=2) + sounds
    picture = b"\x86" + n(len(block()), 3) + block()
    yield "flac-with-a-picture", stream("flac", sheet([picture]), sheet([b"s"], 44100))
    yield "negative-positions", stream("vorbis", *(sheet([b"s"], at) for at in (1 << 63, 44100, (1 << 64) - 2)))
    long = comments(b"a=" + b"b" * 600)
    yield "comments-across-pages", sheet([vorbis()], flags=2) + page(long[:510], sizes=[255, 255]) + page(long[510:], flags=1)
    yield "comments-without-their-first-page", sheet([vorbis()], flags=2) + page(b"x", flags=1)
    for name, head in (("vorbis", vorbis(0)), ("opus", opus(version=99)), ("speex", speex()[:50]), ("ogm", ogm(b"audio", unit=0)),
                       ("nobody", b"CELT    ")):
        yield "not-of-" + name, sheet([head], flags=2)
    yield "rate-that-varies", sheet([speex(1)], flags=2)
    yield "rate-that-is-constant", sheet([vorbis(rates=(128000,) * 3)], flags=2)
    yield "rate-of-no-pictures", sheet([theora(0)], flags=2) + sheet([b"s"], 9)
    yield "not-whole-in-its-first-page", sheet([vorbis()], flags=2)[:40]
    yield "not-whole-in-its-head", sheet([vorbis()], flags=2)[:20]
    links = [stream("vorbis", *[sheet([b"s" * 200] * 9, 44100 * i, serial=serial) for i in range(1, 40)], serial=serial)
             for serial in (1, 2)]
    yield "long-chain", b"".join(links)  # the border is looked for by halves


def seeds():
    for name, content in oggs():
        yield "format_ogg", name, content + DELIVERED_AS_IT_IS
    yield "format_ogg", "size-unknown", stream("vorbis", sheet([b"s"], 44100)) + delivered(8)
    for name, content in flacs():
        yield "format_flac", name, content + DELIVERED_AS_IT_IS
    yield "format_flac", "trickle", flac((0, info())) + 3 * frame() + delivered(1)
