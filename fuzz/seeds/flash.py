"""Flash video: tags, and the values of a script tag."""
import struct

from chunks import DELIVERED_AS_IT_IS, UNKNOWN_SIZE


def n(value, size):
    return value.to_bytes(size, "big")


def tag(kind, content, time=0, trailer=None):
    size = 11 + len(content) if trailer is None else trailer
    return n(kind, 1) + n(len(content), 3) + n(time & 0xFFFFFF, 3) + n(time >> 24, 1) + bytes(3) + content + n(size, 4)


def header(flags=5, size=9):
    return b"FLV\1" + n(flags, 1) + n(size, 4) + bytes(4)


def number(value):
    return b"\0" + struct.pack(">d", value)


def text(value):
    return b"\2" + n(len(value), 2) + value


def named(name, value):
    return n(len(name), 2) + name + value


def array(values):
    return b"\x08" + n(1, 4) + values + b"\0\0\x09"


def metadata(*values):
    return tag(18, text(b"onMetaData") + array(b"".join(named(name, value) for name, value in values)))


# Sorenson H.263 of 320x240, and layer III.
PICTURE = b"\x12\0\0\x84\2\x80" + bytes(9)
FRAME = b"\x2a\xff\xf3\x10\xc4" + bytes(22)


def frames(count=6, first=0, trailer=None):
    return b"".join(tag(9, PICTURE, first + 40 * i, trailer) + tag(8, FRAME, first + 40 * i, trailer) for i in range(count))


FILM = header() + metadata((b"duration", number(0.24))) + frames()


def values():
    yield "number", number(float("nan"))
    yield "boolean", b"\1\1"
    yield "nested", array(named(b"a", b"\x0a" + n(2, 4) + number(1) + b"\3\0\0\x09"))
    yield "null", b"\5"
    yield "reference", b"\7\0\1"
    yield "date", b"\x0b" + bytes(10)
    yield "long-text", b"\x0c" + n(3, 4) + b"abc"
    yield "xml", b"\x0f" + n(3, 4) + b"<a>"
    yield "of-a-type", b"\x10\0\1Tabc\0\0\x09"
    yield "other-format", b"\x11"
    yield "list-without-end", b"\x0a" + n(0xFFFFFFFF, 4) + number(1)
    yield "too-deep", (b"\x0a" + n(1, 4)) * 20 + number(1)


VIDEO = {
    "screen": b"\x13\x32\x80\x31\xe0", "vp6": b"\x14\x06\x78\x46\x0a\x0c\x0a\x0c", "vp6-alpha": b"\x15\x06\0\0\x09\x78\x46\x0a\x0c\x0a\x0c",
    "command": b"\x52\0", "avc": b"\x17\0\0\0\0\1\x42\0\x0a\xff\xe0\0", "hevc": b"\x1c\0\0\0\0\1", "not-known": b"\x1d\0",
    "four-characters": b"\x90av01\x81\5\x0c\0", "vp9": b"\x90vp09\0\x1f\x82\1\1\1\0\0", "vp9-box": b"\x90vp09\1\0\0\0\0\x1f\x82\1\1\1\0\0",
    "composition": b"\x91avc1\0\0\1\0\0\0\1\x65", "short": b"\x93vp08\x10\2\0\x9d\1\x2a\x80\2\xe0\1", "modified": b"\x97\xff\0\1\7\7\x01vp08\x10",
    "tracks": b"\x96\x11vp08\0\0\0\x0a\x10\2\0\x9d\1\x2a\x80\2\xe0\1"}
SOUND = {
    "samples": b"\x0fss", "nellymoser": b"\x5fs", "aac": b"\xaf\0\x13\x88", "aac-frame": b"\xaf\1s", "slow-layer-3": b"\xee\0",
    "opus": b"\x90OpusOpusHead\1\2", "flac": b"\x90fLaCfLaC\x80\0\0\x22" + bytes(10) + b"\x0a\xc4\x42\xf0" + bytes(20), "ac-3": b"\x91ac-3\x0b\x77",
    "several": b"\x95\x10mp4a\0\0\0\2\x13\x88"}


def files():
    yield "film", FILM
    yield "live", header() + metadata((b"duration", number(0)), (b"framerate", number(25))) + frames(first=3600000)
    yield "promises-nothing", header(0) + frames()
    yield "long-header", header(1, 13) + b"more" + frames()
    yield "texts", header() + metadata((b"title", text(b"A film")), (b"width", number(64)), (b"height", number(48))) + tag(9, b"\x22")
    yield "for-a-server", header() + tag(18, text(b"@setDataFrame") + text(b"onMetaData") + array(named(b"width", number(1)))) + frames()
    yield "other-script", header() + tag(18, text(b"onCuePoint") + array(b"")) + frames()
    yield "encrypted", header() + tag(0x29, PICTURE) + tag(0x28, FRAME)
    yield "wrong-sizes", header() + frames(trailer=0)
    yield "junk-at-the-end", FILM + 30 * b"j"
    yield "cut", FILM[:-40]
    whole = header() + metadata((b"duration", number(0.24)), (b"filesize", number(len(FILM) + 19))) + frames()
    yield "in-a-row", whole + whole
    yield "no-media", header() + metadata((b"duration", number(1)))
    yield "damaged-tag", header() + b"\x89" + frames()
    yield "late-sound", header() + tag(9, PICTURE + 30000 * b"v") + frames()
    yield "late-sound-not-promised", header(1) + tag(9, PICTURE + 30000 * b"v") + frames()
    yield "long-last-tag", FILM + tag(9, PICTURE + 70000 * b"v", 240)
    for name, value in values():
        yield "value-" + name, header() + metadata((b"a", value), (b"width", number(64)), (b"height", number(48))) + tag(9, b"\x22")
    for name, content in VIDEO.items():
        yield "video-" + name, header() + tag(9, content) + tag(9, content, 40)
    for name, content in SOUND.items():
        yield "sound-" + name, header() + tag(8, content) + tag(8, content, 26)


def seeds():
    for name, content in files():
        yield "format_flv", name, content + DELIVERED_AS_IT_IS
    yield "format_flv", "unknown-size", FILM + UNKNOWN_SIZE
