"""Seeds of files of songs whose texts are Vorbis comments."""
from covers import block, comments, field, flac, page
from music import DELIVERED_AS_IT_IS, delivered, id3, n, text23

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


def seeds():
    for name, content in flacs():
        yield "format_flac", name, content + DELIVERED_AS_IT_IS
    yield "format_flac", "trickle", flac((0, info())) + 3 * frame() + delivered(1)
