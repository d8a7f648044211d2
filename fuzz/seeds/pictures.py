"""Seeds of the files of pictures. Those that begin with "not-" are refused, each for another reason."""
import os
import zlib

from iso_media import with_hole

DELIVERED_AS_IT_IS = bytes(8)


def n(value, size):
    return value.to_bytes(size, "big")


# --- JPEG


def segment(marker, content, length=None):
    return b"\xFF" + n(marker, 1) + n(len(content) + 2 if length is None else length, 2) + content


THREE = ((1, 0x22), (2, 0x11), (3, 0x11))


def frame(parts=THREE, marker=0xC0, bits=8, width=64, count=None):
    content = n(bits, 1) + n(48, 2) + n(width, 2) + n(len(parts) if count is None else count, 1)
    return segment(marker, content + b"".join(n(number, 1) + n(factors, 1) + b"\0" for number, factors in parts))


def tiff(entries, mark=b"MM\0*", count=None):
    content = mark + n(8, 4) + n(len(entries) if count is None else count, 2)
    return content + b"".join(n(tag, 2) + n(kind, 2) + n(1, 4) + n(value, 2) + bytes(2) for tag, kind, value in entries)


def exif(*entries, **more):
    return segment(0xE1, b"Exif\0\0" + tiff(entries, **more))


def jpeg():
    yield "other-applications", segment(0xE0, b"JFXX\0ab") + segment(0xE1, b"http://ns/x") + segment(0xEE, b"Ours") + frame()
    yield "adobe-cut", segment(0xEE, b"Adobe\0") + frame()
    yield "fill-before-markers", b"\xFF\xFF" + segment(0xFE, b"hi")[1:] + b"\xFF\0\1\xFF\0" + frame()
    yield "red-green-blue-by-letters", frame(tuple((ord(letter), 0x11) for letter in "RGB"))
    yield "letters-r-and-x", frame(tuple((ord(letter), 0x11) for letter in "RXB"))
    yield "letters-rg-and-x", frame(tuple((ord(letter), 0x11) for letter in "RGX"))
    yield "two-components", frame(((1, 0x11), (2, 0x11)))
    yield "orientation-in-long-numbers", exif((0x112, 4, 6)) + frame()
    yield "orientation-below", exif((0x112, 3, 0)) + frame()
    yield "orientation-above", exif((0x112, 3, 9)) + frame()
    yield "no-orientation", exif((0x100, 3, 6)) + frame()
    yield "no-entries-at-all", exif(count=0) + frame()
    yield "entries-cut", exif((0x100, 3, 6), count=9) + frame()
    yield "more-entries-than-there-are-tags", segment(0xE1, b"Exif\0\0" + tiff(((0x100, 3, 6),) * 1030)) + frame()
    yield "block-of-no-order", exif((0x112, 3, 6), mark=b"XX\0*") + frame()
    yield "not-with-a-thousand-comments", segment(0xFE, b"") * 520 + frame()
    yield "not-with-so-much-between", bytes(4100) + frame()
    yield "not-whole-before-the-frame", b"\xFF\xFE\0\x90half"
    yield "not-whole-in-the-marker", b"\xFF\xFE\0\3x\xFF"
    yield "not-from-the-frame", b"\xFF\xDA\0\2" + frame()
    yield "not-of-this-standard", b"\xFF\xF7\0\2" + frame()
    yield "not-of-that-length", segment(0xFE, b"", 1) + frame()
    yield "not-without-a-count", segment(0xC0, n(8, 1) + n(48, 2) + n(64, 2))
    yield "not-in-17-bits", frame(bits=17)
    yield "not-in-9-bits", frame(bits=9)
    yield "not-without-width", frame(width=0)
    yield "not-without-components", frame(())
    yield "not-of-more-components-than-told", frame(count=2)
    yield "not-of-five-components", frame(((1, 0x11),) * 5)
    yield "not-sampled-five-times", frame(((1, 0x51), (2, 0x11), (3, 0x11)))
    yield "not-sampled-never", frame(((1, 0x10), (2, 0x11), (3, 0x11)))


# --- PNG

SIGNATURE = b"\x89PNG\r\n\x1A\n"


def chunk(kind, content, check=None):
    return n(len(content), 4) + kind + content + n(zlib.crc32(kind + content) if check is None else check, 4)


def header(width=8, depth=8, colours=2, kind=b"IHDR", **more):
    return chunk(kind, n(width, 4) + n(8, 4) + bytes([depth, colours, 0, 0, 0]), **more)


def png():
    data = chunk(b"IDAT", b"")
    yield "not-of-another-check-sum", header(check=1) + data
    yield "not-of-another-first-chunk", header(kind=b"IHDS") + data
    yield "not-of-a-longer-header", chunk(b"IHDR", bytes(14)) + data
    yield "not-of-width-0", header(width=0) + data
    yield "not-of-17-bits", header(depth=17) + data
    yield "not-of-3-bits", header(depth=3) + data
    yield "not-of-colours-in-1-bit", header(depth=1) + data
    yield "not-of-colours-of-nobody", header(colours=1) + data
    yield "not-whole-in-the-header", header()[:20]
    yield "not-whole-in-the-check-sum", header()[:-2]
    yield "not-whole-before-the-picture", header() + chunk(b"tEXt", b"ours")
    yield "not-with-300-chunks", header() + chunk(b"tEXt", b"") * 300 + data


# --- What thumbnails are made of

SMALL = bytes([2, 160, 0, 160, 0])  # a PNG within 160x160


def whole_png(*chunks, width=8, depth=8, colours=2, data=None):
    row = b"\0" + bytes(range(24))
    data = zlib.compress(row * 8) if data is None else data
    return SIGNATURE + header(width, depth, colours) + b"".join(chunks) + chunk(b"IDAT", data) + chunk(b"IEND", b"")


def request(width, height, flags=1, piece=None):
    how = bytes([flags]) if piece is None else bytes([flags | 16, piece])
    return how + width.to_bytes(2, "little") + height.to_bytes(2, "little")


def many_scans():
    """A progressive JPEG of one black block. Every coefficient has a scan of its own, and another for its last bit."""
    def scan(first, last, high, low):
        return segment(0xDA, bytes([1, 1, 0, first, last, high << 4 | low])) + b"\x7F"

    one_code = bytes([1] + 15 * [0] + [0])
    tables = segment(0xDB, bytes([0] + 64 * [1])) + segment(0xC4, b"\0" + one_code) + segment(0xC4, b"\x10" + one_code)
    size = n(8, 1) + n(8, 2) + n(8, 2) + n(1, 1) + bytes([1, 0x11, 0])
    scans = scan(0, 0, 0, 0) + b"".join(scan(i, i, 0 if step else 1, step) for step in (1, 0) for i in range(1, 64))
    return b"\xFF\xD8" + tables + segment(0xC2, size) + scans + b"\xFF\xD9"


def jpegs():
    """Made of the seed of a whole JPEG."""
    with open(os.path.join(os.path.dirname(__file__), "..", "corpus", "picture", "jpeg-baseline"), "rb") as seed:
        content = seed.read()
    content = content[content.index(b"\xFF\xD8") + 2 :]
    scan = content.index(b"\xFF\xDA") + 20
    within = request(160, 160)
    for name, before in (("application-of-no-length", b"\xFF\xE1\0\1"), ("application-of-three-bytes", segment(0xE1, b"Exi")),
                         ("two-orientations", exif((0x112, 3, 3)) + exif((0x112, 3, 6))),
                         ("application-of-others", segment(0xE1, b"http://ns/x"))):
        yield name, within + b"\xFF\xD8" + before + content
    yield "orientation-in-pieces", request(160, 160, piece=0) + b"\xFF\xD8" + exif((0x112, 3, 6)) + content
    yield "comment-in-pieces", request(160, 160, piece=2) + b"\xFF\xD8" + segment(0xFE, bytes(300)) + content
    yield "header-alone", within + b"\xFF\xD8"
    yield "no-tables", within + b"\xFF\xD8" + content[content.index(b"\xFF\xC0") :]
    yield "damaged-picture", within + b"\xFF\xD8" + content[:scan] + b"\x55\xAA" * 20 + content[scan + 40 :]
    yield "marker-in-the-picture", within + b"\xFF\xD8" + content[:scan] + b"\xFF\xD3" + content[scan + 2 :]
    # Longer than the block that is read at a time.
    yield "long-comment", within + b"\xFF\xD8" + segment(0xFE, bytes(20000)) + content
    yield "long-application", within + b"\xFF\xD8" + segment(0xE1, b"http://ns/x" + bytes(20000)) + content
    yield "more-scans-than-are-read", within + many_scans()
    yield "fast-within-1x1", request(1, 1, 1 | 4) + b"\xFF\xD8" + content
    yield "fast-of-1x160", request(1, 160, 1 | 4 | 32) + bytes(2) + b"\xFF\xD8" + content
    yield "of-1x160", request(1, 160, 1 | 32) + bytes(2) + b"\xFF\xD8" + content
    for width, height in ((1, 1), (1, 160), (160, 1), (7, 100), (100, 7)):
        yield f"within-{width}x{height}", request(width, height) + b"\xFF\xD8" + content


def pictures():
    """A request, and the picture."""
    for name, content in jpegs():
        yield "jpeg-" + name, content
    for orientation in range(1, 10):
        yield f"orientation-{orientation}", SMALL + whole_png(chunk(b"eXIf", tiff(((0x112, 3, orientation),))))
    yield "gamma-too-low", SMALL + whole_png(chunk(b"gAMA", n(1, 4)))
    yield "gamma-below-those-of-pictures", SMALL + whole_png(chunk(b"gAMA", n(9999, 4)))
    yield "long-text", SMALL + whole_png(chunk(b"tEXt", b"Ours\0" + b"x" * 20000))
    yield "gamma-too-high", SMALL + whole_png(chunk(b"gAMA", n(99999999, 4)))
    yield "gamma-of-a-screen", SMALL + whole_png(chunk(b"gAMA", n(45455, 4)))
    yield "nothing", SMALL
    yield "three-bytes", SMALL + b"\x89PN"
    yield "too-wide", SMALL + whole_png(width=70000)
    yield "width-0", SMALL + whole_png(width=0)
    yield "rows-missing", SMALL + whole_png(data=zlib.compress(bytes(50)))
    yield "data-of-nothing", SMALL + whole_png(data=b"")
    exact = bytes([34]) + b"{}" + bytes([1, 1])
    yield "wish-too-wide", exact.replace(b"{}", b"\xFC\xFF\1\0") + whole_png()
    yield "wish-too-high", exact.replace(b"{}", b"\1\0\xFC\xFF") + whole_png()
    yield "wish-of-the-widest", exact.replace(b"{}", b"\xFB\xFF\1\0") + whole_png()


def seeds():
    for name, content in pictures():
        yield "picture", name, content
    for name, content in jpeg():
        yield "format_jpeg", name, b"\xFF\xD8" + content + DELIVERED_AS_IT_IS
    # Said to have bytes that it has not.
    for name, content in (("length", segment(0xFE, b"")[:3]), ("components", frame()[:-4]), ("count", frame()[:9])):
        yield "format_jpeg", f"not-whole-in-the-{name}", b"\xFF\xD8" + content + bytes([16, 100, 0]) + bytes(5)
    yield "format_jpeg", "not-a-jpeg", b"ours" + DELIVERED_AS_IT_IS
    hole = 30 << 11
    for read in range(3):
        far = b"\xFF\xD8" + segment(0xFE, bytes(hole)) + frame()
        yield "format_jpeg", f"fails-at-{read}", with_hole(far, hole, read)
    for name, content in png():
        yield "format_png", name, SIGNATURE + content + DELIVERED_AS_IT_IS
    yield "format_png", "not-a-png", bytes(8) + header() + DELIVERED_AS_IT_IS
    for name, start in (("png", SIGNATURE), ("jpeg", b"\xFF\xD8\xFF\xE0"), ("iso-media", b"\0\0\0\x14ftypisom"),
                        ("old-quicktime", b"\0\0\0\x08wide"), ("long-box", b"\0\0\0\x01mdat"), ("no-box", b"\0\0\0\x07ftyp"),
                        ("no-jpeg", b"\xFF\xD8\xFF\xD0"), ("nothing", b"ours"),
                        ("tag-before-png", b"ID3\3\0\0\0\0\0\0" + SIGNATURE)):
        yield "format_magic", name, start + bytes(20) + DELIVERED_AS_IT_IS
    frames = 2 * (b"\xFF\xFB\x90\0" + bytes(413))
    for name, content in (("mpeg-audio", frames), ("after-a-tag", b"ID3\3\0\0\0\0\0\x14" + bytes(20) + frames),
                          ("one-frame", frames[:400]), ("another-frame-after-it", frames[:417] + b"\xFF\xFA\x90\0"),
                          ("another-rate-after-it", frames[:417] + b"\xFF\xFB\x94\0")):
        yield "format_magic", name, content + DELIVERED_AS_IT_IS
