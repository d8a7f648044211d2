"""Matroska files, element by element, and seeds of their covers."""
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


def seeds():
    for name, content in cover_files():
        yield "cover_matroska", name, content
