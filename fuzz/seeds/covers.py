"""Seeds of media that are looked through for a cover."""
import base64
import zlib

from iso_media import box, full
from music import id3, n, sync, text22, text23

JPEG = b"\xFF\xD8\xFF\xE0picture of ours"


def block(kind=3, mime=b"image/jpeg", description=b"d", data=JPEG, size=None):
    size = len(data) if size is None else size
    return n(kind) + n(len(mime)) + mime + n(len(description)) + description + bytes(16) + n(size) + data


def flac(*blocks):
    content = b"fLaC"
    for i, (kind, body) in enumerate(blocks):
        content += n(kind | (0x80 if i + 1 == len(blocks) else 0), 1) + n(len(body), 3) + body
    return content


def oggflac(*blocks):
    """Each block on a page of its own, after the first page."""
    pages = page(b"\x7FFLAC\1\0\0\1fLaC", 2)
    for i, (kind, body) in enumerate(blocks):
        pages += page(n(kind | (0x80 if i + 1 == len(blocks) else 0), 1) + n(len(body), 3) + body)
    return pages


def page(body, flags=0, serial=1, version=0, sizes=None):
    sizes = [min(255, len(body) - at) for at in range(0, len(body) + 1, 255)] if sizes is None else sizes
    return b"OggS" + bytes([version, flags]) + bytes(8) + n(serial, 4, "little") + bytes(8) + bytes([len(sizes), *sizes]) + body


def comments(*texts, head=b"\x03vorbis", count=None):
    content = head + n(4, 4, "little") + b"ours" + n(len(texts) if count is None else count, 4, "little")
    return content + b"".join(n(len(text), 4, "little") + text for text in texts)


def field(content):
    return b"metadata_block_picture=" + base64.b64encode(content)


HEAD = page(b"\x01vorbis" + bytes(23), 2)


def ogg():
    front = field(block())
    yield "two-pages", HEAD + page(comments(b"A=b", front)[:255], 0, sizes=[255]) + page(comments(b"A=b", front)[255:], 1)
    yield "other-streams", page(b"ours", 2, 9) + HEAD + page(b"x", 0, 9) + page(comments(front))
    yield "other-version", page(b"\x01vorbis", 2, 1, 1) + page(comments(front))
    yield "begins-twice", HEAD + HEAD + page(comments(front))
    yield "first-page-missing", HEAD + page(comments(front), 1)
    yield "second-page-missing", HEAD + page(comments(front)[:255], 0, sizes=[255]) + page(b"rest", 0)
    yield "cut-after-a-page", HEAD
    yield "begins-in-the-middle", page(b"middle") + HEAD + page(comments(front))
    yield "several-packets-on-a-page", HEAD + page(comments(front) + b"\5", 0, sizes=[255] * (len(comments(front)) // 255)
                                                   + [len(comments(front)) % 255, 1])
    yield "another-comment-of-that-length", HEAD + page(comments(b"METADATA_BLOCK_PICTUR?=" + b"x", b"A=" + b"x" * 40))
    yield "back-then-front-then-more", HEAD + page(comments(field(block(4)), front, field(block(5))))
    yield "icons-alone", HEAD + page(comments(field(block(1)), field(block(2))))
    old = b"coverart=" + base64.b64encode(JPEG)
    yield "older-form", HEAD + page(comments(old))
    yield "older-form-of-nothing", HEAD + page(comments(b"COVERART=", b"coverart=abcd", b"coverart=" + base64.b64encode(b"ours" * 9)))
    yield "speex", page(b"Speex   ", 2) + page(comments(old, head=b""))
    yield "flac", oggflac((4, comments(old, head=b"")))
    yield "flac-without-comments", oggflac((1, comments(old, head=b"")))
    yield "flac-in-a-block", oggflac((4, comments(head=b"")), (1, bytes(300)), (6, block(4)), (6, block()))
    yield "flac-block-cut", oggflac((4, comments(head=b"")), (6, block()))[:-9]
    yield "video-alone", page(b"\x80theora", 2, 9) + page(comments(front, head=b"\x81theora"), 0, 9)
    yield "sound-after-video", page(b"\x80theora", 2, 9) + HEAD + page(b"\x81theora", 0, 9) + page(comments(front))
    yield "no-data", HEAD + page(comments(field(block(data=b""))))
    yield "link", HEAD + page(comments(field(block(mime=b"-->"))))
    yield "more-data-than-text", HEAD + page(comments(field(block(size=9999))))
    yield "more-comments-than-there-are", HEAD + page(comments(b"A=b", count=9))
    long = comments(field(block(data=JPEG + bytes(5000))))
    pages = [long[at : at + 255 * 16] for at in range(0, len(long), 255 * 16)]
    yield "long", HEAD + b"".join(page(part, 1 if i else 0, sizes=[255] * 16 if i + 1 < len(pages) else None)
                                  for i, part in enumerate(pages))
    yield "mime-type-too-long", HEAD + page(comments(field(block(mime=b"x" * 5000))))
    yield "description-too-long", HEAD + page(comments(field(n(3) + n(1) + b"x" + n(0xFFFFFF))))


def flacs():
    yield "back-and-icons", flac((0, bytes(34)), (6, block(1)), (6, block(2)), (6, block(4)), (6, block(3)), (6, block(3)))
    yield "types-of-no-picture", flac((6, block(3, b"-->", data=b"http://h/x")), (6, block(3, b"text/plain", data=b"ours")),
                                      (6, block(3, b"image/-->", data=b"ours")),
                                      (6, block(3, b"", data=b"ours")), (6, block(3, b"jpg", data=b"ours")))
    yield "cut-in-a-block", flac((0, bytes(34)), (6, block()))[:-9]
    yield "mime-type-too-long", flac((6, block(mime=b"x" * 5000)))
    yield "description-beyond-the-block", flac((6, n(3) + n(1) + b"x" + n(900)), (1, bytes(1000)))
    yield "after-a-tag", id3(text23(b"TIT2", b"\0T")) + flac((6, block()))
    yield "after-tags", 2 * id3(text23(b"TIT2", b"\0T")) + flac((6, block()))
    yield "in-comments", flac((0, bytes(34)), (4, comments(b"A=b", field(block(4)), field(block()), head=b"")), (6, block()))


def id3s():
    def picture(kind=3, mime=b"image/png\0", encoding=0, description=b"d\0", data=JPEG):
        return text23(b"APIC", bytes([encoding]) + mime + bytes([kind]) + description + data)

    yield "descriptions", id3(picture(4, encoding=1, description=b"\xFF\xFEd\0\0\0"), picture(5, encoding=2, description=b"\0d\0\0"),
                              picture(3, encoding=3))
    yield "description-of-16-bits-too-long", id3(picture(encoding=2, description=b"\0d" * 3000 + b"\0\0"))
    yield "description-without-end", id3(picture(description=b"d" * 20, data=b"x"))
    yield "encoding-of-nobody", id3(picture(encoding=4), picture(4))
    yield "icons-alone", id3(picture(1), picture(2))
    yield "back-front-and-more", id3(picture(4), picture(5), picture(3), picture(3))
    yield "link", id3(picture(mime=b"-->\0", data=b"http://h/x"))
    yield "version-2-png", id3(text22(b"PIC", b"\0PNG\3d\0" + JPEG), version=2)
    yield "webp-and-gif", id3(picture(4, data=b"RIFF\0\0\0\0WEBPours"), picture(3, data=b"GIF89a"))
    yield "stuffed", id3(picture(data=b"\xFF\0\xD8\xFF\0\xFF\0\0ours\xFF"), flags=0x80)
    yield "stuffed-with-others", id3(text23(b"APIC", b"\0image/jpeg\0\3d\0\xFF\xD8\xFF\xE0ours\xFF\0\xFF", 2, 4), version=4)
    yield "by-short-names-before", id3(text23(b"TST ", b"\0x"), picture())
    yield "size-that-counts-the-stuffing", id3(b"APIC" + n(len(picture()) - 10 + 2) + bytes(2)
                                               + picture()[10:].replace(b"\xFF", b"\xFF\0"), picture(4), flags=0x80)
    packed = zlib.compress(b"\0image/jpeg\0\3d\0" + JPEG)
    yield "compressed", id3(text23(b"APIC", n(len(JPEG) + 15) + packed, 0x80))
    yield "compressed-before-a-plain-one", id3(text23(b"APIC", n(len(JPEG) + 15) + packed[:-5], 0x80), picture(4))
    yield "compressed-v24", id3(text23(b"APIC", sync(len(JPEG) + 15) + packed, 9, 4), version=4)
    stuffed = (n(len(JPEG) + 15) + packed).replace(b"\xFF", b"\xFF\0")
    yield "compressed-and-stuffed", id3(text23(b"APIC", stuffed, 0x80), flags=0x80)
    yield "compressed-without-a-size", id3(text23(b"APIC", packed, 8, 4), version=4)
    long = zlib.compress(b"\0image/jpeg\0\3d\0" + JPEG + bytes(20000))
    yield "compressed-and-damaged-after-the-head", id3(text23(b"APIC", n(len(JPEG) + 20015) + long[:-4], 0x80))
    yield "tag-cut", b"ID3\3\0\0" + sync(500) + picture()[:20]


def mp4s():
    def cover(*data, meta=b""):
        items = box("ilst", box("covr", *data))
        udta = box("udta", full("meta", full("hdlr", bytes(20)), meta, items))
        return box("ftyp", b"M4A \0\0\0\0") + box("moov", box("mvhd", bytes(100)), udta)

    yield "two-covers", cover(box("data", n(13), n(0), JPEG), box("data", n(14), n(0), b"\x89PNG\r\n\x1A\nours"))
    yield "bitmap", cover(box("data", n(27), n(0), b"BMours"))
    yield "kind-of-nobody", cover(box("data", n(99), n(0), b"ours"))
    yield "free-before-the-list", cover(box("data", n(13), n(0), JPEG), meta=box("free", bytes(8)))
    yield "no-data", cover()
    yield "empty-data", cover(box("data", n(13), n(0)))
    yield "no-list", box("ftyp", b"M4A \0\0\0\0") + box("moov", box("udta", full("meta", full("hdlr", bytes(20)))))
    yield "no-movie", box("ftyp", b"M4A \0\0\0\0") + box("mdat", b"ours")


def apes():
    def item(key, value, flags=2, size=None):
        return little(len(value) if size is None else size) + little(flags) + key + b"\0" + value

    def end(items, flags, version=2000, size=None):
        return (b"APETAGEX" + little(version) + little(len(items) + 32 if size is None else size) + little(1) + little(flags)
                + bytes(8))

    def tag(*items, version=2000, size=None):
        content = b"".join(items)
        if version < 2000:
            return b"sound" + content + end(content, 0, version, size)
        return b"sound" + end(content, 0xA0000000, version, size) + content + end(content, 0x80000000, version, size)

    front, back = item(b"Cover Art (Front)", b"f.jpg\0" + JPEG), item(b"cover art (back)", b"b.jpg\0" + JPEG)
    title = item(b"Title", b"ours", 0)
    old = b"TAG" + bytes(125)
    yield "title-back-front", tag(title, back, front)
    yield "version-1-and-id3v1", tag(front, version=1000) + old
    yield "lyrics-after-it", tag(front) + b"LYRICSBEGINwordsLYRICSEND" + old
    yield "lyrics-2-after-it", tag(front) + b"LYRICSBEGININD0000200000016LYRICS200" + b"TAG+" + bytes(223) + old
    yield "id3v2-after-it", tag(front) + b"ID3\4\0\x10\0\0\0\5oursx3DI\4\0\x10\0\0\0\5"
    yield "without-a-name", tag(item(b"Cover Art (Front)", JPEG))
    yield "of-no-picture", tag(item(b"Cover Art (Front)", b"f.jpg\0ours"), item(b"Cover Art (Front)", b""))
    yield "icons-alone", tag(item(b"Cover Art (Icon)", b"i\0" + JPEG), item(b"Cover Art (Other Icon)", b"i\0" + JPEG))
    yield "as-text-and-as-link", tag(item(b"Cover Art (Front)", JPEG, 0), item(b"Cover Art (Front)", JPEG, 4))
    yield "item-beyond-the-tag", tag(title, item(b"Cover Art (Front)", JPEG, size=0xFFFFFFFF))
    yield "key-too-long", tag(item(b"k" * 256, b"x"), front)
    yield "tag-beyond-the-file", tag(front, size=0xFFFFFF)
    yield "tag-of-no-size", tag(front, size=8)
    yield "lyrics-beyond-the-file", b"sound999999LYRICS200"
    yield "lyrics-without-a-start", b"soundLYRICSEND"


def little(value):
    return n(value, 4, "little")


def seeds():
    for door, covers in (("ape", apes()), ("ogg", ogg()), ("flac", flacs()), ("id3", id3s()), ("mp4", mp4s())):
        for name, content in covers:
            yield f"cover_{door}", name, content
