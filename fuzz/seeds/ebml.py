"""Matroska files, element by element, and seeds of their covers."""
from chunks import DELIVERED_AS_IT_IS
from covers import JPEG

SEGMENT = 0x18538067
SEEK_HEAD = 0x114D9B74
INFO = 0x1549A966
TRACKS = 0x1654AE6B
CLUSTER = 0x1F43B675
CUES = 0x1C53BB6B
TAGS = 0x1254C367
ATTACHMENTS = 0x1941A469

PNG = b"\x89PNG\r\n\x1A\n1234"
OPEN = -1


def identifier(number):
    return number.to_bytes((number.bit_length() + 7) // 8, "big")


def size_of(number, count=0):
    """OPEN is a size that is not known."""
    if number == OPEN:
        return b"\x01" + b"\xFF" * 7
    while not count or number >= (1 << 7 * count) - 1:
        count += 1
    return (number | 1 << 7 * count).to_bytes(count, "big")


def element(number, *contents, size=None):
    content = b"".join(contents)
    return identifier(number) + size_of(len(content) if size is None else size) + content


def unsigned(number, value):
    return element(number, value.to_bytes((value.bit_length() + 7) // 8, "big"))


def head(kind=b"matroska"):
    return element(0x1A45DFA3, unsigned(0x4286, 1), unsigned(0x42F7, 1), unsigned(0x42F2, 4), unsigned(0x42F3, 8),
                   element(0x4282, kind), unsigned(0x4287, 4), unsigned(0x4285, 2))


def segment(*parts, size=None):
    return element(SEGMENT, *parts, size=size)


def seek(number, position):
    return element(0x4DBB, element(0x53AB, identifier(number)), element(0x53AC, position.to_bytes(8, "big")))


def seek_head(*entries):
    return element(SEEK_HEAD, *entries)


def simple_tag(name, text, *more):
    return element(0x67C8, element(0x45A3, name.encode()), element(0x4487, text.encode()), *more)


def tag(level, *tags, of=b""):
    return element(0x7373, element(0x63C0, unsigned(0x68CA, level) if level else b"", of), *tags)


def attached(name, kind, data, size=None):
    return element(0x61A7, element(0x466E, name), element(0x4660, kind), unsigned(0x46AE, 7),
                   element(0x465C, data, size=size))


COVER = attached(b"cover.jpg", b"image/jpeg", JPEG)
SMALL = attached(b"small_cover.png", b"image/png", PNG)
FONT = attached(b"font.ttf", b"font/ttf", b"letters")
FRAMES = element(CLUSTER, unsigned(0xE7, 0), b"\xA3\x85\x81\0\0\x80x")


def files(*attachments, size=None):
    return element(ATTACHMENTS, *attachments, size=size)


def cover_files():
    yield "before-the-clusters", head() + segment(element(INFO), files(FONT, SMALL, COVER), FRAMES)
    place = len(seek_head(seek(ATTACHMENTS, 0))) + len(FRAMES)
    yield "after-the-clusters", head(b"webm") + segment(seek_head(seek(ATTACHMENTS, place)), FRAMES, files(SMALL), size=OPEN)
    yield "in-a-second-list", head() + segment(seek_head(seek(SEEK_HEAD, place)), FRAMES,
                                               seek_head(seek(ATTACHMENTS, place + place - len(FRAMES))), files(COVER))
    yield "list-that-names-itself", head() + segment(seek_head(seek(SEEK_HEAD, 0)), FRAMES)
    yield "place-beyond", head() + segment(seek_head(seek(ATTACHMENTS, 1 << 40)), FRAMES)
    yield "place-of-another", head() + segment(seek_head(seek(ATTACHMENTS, place - len(FRAMES))), FRAMES)
    yield "of-no-bytes", head() + segment(files(attached(b"cover.jpg", b"image/jpeg", b""), SMALL))
    yield "no-picture", head() + segment(files(attached(b"cover.txt", b"text/plain", b"letters")))
    yield "size-beyond", head() + segment(files(attached(b"cover.jpg", b"image/jpeg", JPEG, (1 << 56) - 2)))
    yield "open-size", head() + segment(files(attached(b"cover.jpg", b"image/jpeg", JPEG, OPEN)))
    yield "cut", (head() + segment(files(COVER)))[:-3]
    yield "no-segment", head() + element(0xEC, b"room")
    yield "of-another-kind", head(b"other") + segment(files(COVER))


def track(number, kind, codec, *more):
    return element(0xAE, unsigned(0xD7, number), unsigned(0x83, kind), element(0x86, codec), *more)


def block(number, time, frames=b"frame", flags=0x80):
    return element(0xA3, size_of(number), bytes([time >> 8, time & 255, flags]), frames)


def cluster(time, *blocks, size=None):
    return element(CLUSTER, unsigned(0xE7, time), *blocks, size=size)


PICTURE = element(0xE0, unsigned(0xB0, 64), unsigned(0xBA, 48))
SOUND = element(0xE1, unsigned(0x9F, 2))
VIDEO = track(1, 1, b"V_VP8", PICTURE, unsigned(0x23E383, 40000000))
AUDIO = track(2, 2, b"A_MPEG/L2", SOUND)
TEXTS = track(3, 17, b"S_TEXT/UTF8", element(0x22B59D, b"de-CH"))
LAYER_2 = b"\xFF\xFD\x84\x04" + bytes(20)
BLOCKS = block(1, 0) + block(2, 0, LAYER_2) + block(1, 40)
HOURS = element(0x4489, b"\x4B\x89\x54\x40")  # 18 million ticks


def encoded(*parts):
    return element(0x6D80, element(0x6240, *parts))


def compressed(method, settings=b""):
    return encoded(element(0x5034, unsigned(0x4254, method), element(0x4255, settings)))


def cue(time, place):
    return element(0xBB, unsigned(0xB3, time), element(0xB7, unsigned(0xF7, 1), unsigned(0xF1, place)))


def film(*parts, tracks=VIDEO + AUDIO + TEXTS, info=b"", size=None):
    return head() + segment(element(INFO, info), element(TRACKS, tracks), *parts, size=size)


def format_files():
    front = len(element(INFO)) + len(element(TRACKS, VIDEO))
    first = cluster(0, BLOCKS)
    yield "no-length", film(first, cluster(1000, BLOCKS))
    yield "hours", film(first, cluster(60000, block(3, 0)), info=HOURS)
    yield "live", film(cluster(7000, BLOCKS, size=OPEN), cluster(8000, BLOCKS, size=OPEN), size=OPEN)
    yield "sound-alone", film(first, tracks=AUDIO)
    yield "cover-as-track", film(cluster(0, block(1, 0), block(2, 0)), tracks=track(1, 1, b"V_MJPEG", PICTURE) + AUDIO)
    yield "last-cue", head() + segment(seek_head(seek(CUES, 20 + front + len(first))), element(INFO), element(TRACKS, VIDEO),
                                       first, element(CUES, cue(0, 20 + front), cue(40, 20 + front)))
    yield "encrypted", film(first, tracks=track(1, 1, b"V_VP9", PICTURE, encoded(unsigned(0x5033, 1))))
    yield "stripped", film(cluster(0, block(2, 0, LAYER_2[2:])),
                           tracks=track(2, 2, b"A_MPEG/L2", SOUND, compressed(3, LAYER_2[:2])))
    yield "zlib", film(first, tracks=track(1, 1, b"V_MPEG2", PICTURE, compressed(0), element(0x63A2, b"no zlib")))
    yield "both-encodings", film(first, tracks=track(1, 1, b"V_VP9", compressed(0) + compressed(3, b"x")))
    for name, flags in (("xiph", 0x82), ("fixed", 0x84), ("ebml", 0x86)):
        yield "laced-" + name, film(cluster(0, block(2, 0, b"\1\x98" + LAYER_2 + LAYER_2, flags)), tracks=AUDIO)
    yield "group", film(cluster(0, element(0xA0, element(0xA1, b"\x81\0\5\0frame"), unsigned(0x9B, 77))))
    yield "colours", film(first, tracks=track(1, 1, b"V_VP9", element(0xE0, unsigned(0xB0, 64), unsigned(0xBA, 48), element(
        0x55B0, unsigned(0x55BA, 16), unsigned(0x55BC, 1000)), element(0x7670, element(0x7675, b"\x42\xB4\0\0")),
        unsigned(0x54B0, 16), unsigned(0x54BA, 9), unsigned(0x54B2, 3)), element(0x41E4, unsigned(0x41E7, 4))))
    for fourcc in (b"XVID", b"WVC1", b"ABCD"):
        yield "windows-" + fourcc.decode(), film(first, tracks=track(
            1, 1, b"V_MS/VFW/FOURCC", element(0x63A2, bytes(16) + fourcc + bytes(20))))
    yield "not-tracks", head() + segment(element(INFO), first)
    yield "not-a-segment", head()


def seeds():
    for name, content in format_files():
        yield "format_matroska", name, content + DELIVERED_AS_IT_IS
    for name, content in cover_files():
        yield "cover_matroska", name, content
