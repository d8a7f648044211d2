"""Seeds of MPEG audio files: tags, counts and lengths."""
import zlib

from elementary import filler, mpeg_frame
from iso_media import with_hole

DELIVERED_AS_IT_IS = bytes(8)
FREE = 500


def delivered(flags=0, place=0, hole=0, shift=0):
    return bytes([flags, 0, 0, 0]) + place.to_bytes(2, "little") + bytes([hole, shift])


def n(value, size=4, order="big"):
    return value.to_bytes(size, order)


def sync(value):
    return bytes(value >> shift & 127 for shift in (21, 14, 7, 0))


SOUND = 8 * mpeg_frame(144 * 32000 // 44100, rate=1)


def counting(name, body, sound=8, rate=1, more=1, size=None, **head):
    """A frame that counts, and frames."""
    one = 144 * (32000 if more == 1 else 320000) // 44100
    kilobits = {1: 32, 2: 40, 5: 64, 9: 128}[rate]
    first = mpeg_frame(144 * kilobits * 1000 // 44100, rate=rate, body=bytes(32) + name + body, **head)
    return first + sound * mpeg_frame(one, rate=more)


def xing(flags, frames=8, size=1000, name=b"Xing", encoder=b"LAME", delay=0, **more):
    body = n(flags) + (n(frames) if flags & 1 else b"") + (n(size) if flags & 2 else b"")
    body += bytes(100 if flags & 4 else 0) + bytes(4 if flags & 8 else 0) + encoder + bytes(17) + n(delay, 3)
    return counting(name, body, **{"rate": 9, **more})


# --- Tags


def text23(kind, content, flags=0, version=3):
    size = n(len(content)) if version == 3 else sync(len(content))
    return kind + size + n(flags, 2) + content


def text22(kind, content):
    return kind + n(len(content), 3) + content


def id3(*frames, version=3, flags=0, size=None, padding=0):
    content = b"".join(frames) + bytes(padding)
    return b"ID3" + bytes([version, 0, flags]) + sync(len(content) if size is None else size) + content


def ape_item(key, value, flags=0, size=None):
    return n(len(value) if size is None else size, 4, "little") + n(flags, 4, "little") + key + b"\0" + value


def ape(*items, version=2000, flags=0x80000000, size=None, leading=False):
    content = b"".join(items)
    size = len(content) + 32 if size is None else size
    common = b"APETAGEX" + n(version, 4, "little") + n(size, 4, "little") + n(len(items), 4, "little")
    head = common + n(flags | 0x20000000, 4, "little") + bytes(8)
    foot = common + n(flags, 4, "little") + bytes(8)
    return (head if leading or flags & 0x80000000 else b"") + content + foot


def id3v1(title=b"T", genre=17):
    return b"TAG" + title.ljust(30, b"\0") + b"A".ljust(30, b"\0") + b"L".ljust(30, b"\0") + bytes(34) + n(genre, 1)


def genres(*texts):
    return b"".join(id3(text23(b"TCON", b"\0" + text)) for text in texts)


CODE_PAGE = id3(text23(b"TIT2", b"\0\x93\xFA\x96\x7B"), text23(b"TALB", b"\0\x93\xFA\xFF\x93")) + SOUND


def tags():
    yield "genre-references", genres(b"(RX)(CR)(17)") + SOUND
    yield "genre-of-a-bracket", genres(b"((Ours") + SOUND
    yield "genre-open-bracket", genres(b"(17") + SOUND
    yield "genre-words-in-brackets", genres(b"(Ours)") + SOUND
    yield "genre-remix", genres(b"RX") + SOUND
    yield "genre-cover", genres(b"CR") + SOUND
    yield "genre-300", genres(b"300") + SOUND
    yield "genre-200", genres(b"200") + SOUND
    yield "text-twice-and-empty", id3(text23(b"TIT2", b""), text23(b"TIT2", b"\0One"), text23(b"TIT2", b"\0Two"),
                                      text23(b"TALB", b"Without"), text23(b"TPE1", b"\x1FOdd")) + SOUND
    yield "text-unsynchronised", id3(text23(b"TIT2", b"\1\xFF\0\xFEa\0"), flags=0x80) + SOUND
    stuffed = b"\1\xFF\0\xFE" + b"a\0" * 2200
    yield "text-unsynchronised-and-long", id3(text23(b"TIT2", stuffed), flags=0x80) + SOUND
    yield "text-utf-16-by-its-letters", id3(text23(b"TIT2", b"\1a\0b\0"), text23(b"TALB", b"\1\0a\0b"),
                                            text23(b"TPE1", b"\1\0")) + SOUND
    yield "text-utf-16-halves", id3(text23(b"TIT2", b"\2\xD8\0"), text23(b"TALB", b"\2\xD8\0\xE0\0\xFF\xFE\xFF\xFF"),
                                    text23(b"TPE1", b"\2\xDC\0a\0")) + SOUND
    yield "text-utf-8-cut", id3(text23(b"TIT2", b"\3a\xE2\x82"), text23(b"TALB", b"\3a\xF0\x9F\x98"),
                                text23(b"TPE1", b"\3\x80\x80\x80\x80"), text23(b"TCON", b"\3\x80\xF8"),
                                version=4) + SOUND
    yield "text-utf-8-wrong", id3(text23(b"TIT2", b"\3\xE0\x80\x80"), text23(b"TALB", b"\3\xED\xA0\x80"),
                                  text23(b"TPE1", b"\3\xF4\x90\x80\x80")) + SOUND
    yield "text-utf-8-short", id3(text23(b"TIT2", b"\3\x80"), text23(b"TALB", b"\3\xC3\xA9\xC3")) + SOUND
    yield "text-windows-letters", id3(text23(b"TIT2", b"\0\x80\x9F\xFF\x7E\x7F")) + SOUND
    yield "several-texts", id3(text23(b"TPE1", b"\3A\0\0B\0C\0D\0E\0F\0G\0H\0I\0J", version=4), version=4) + SOUND
    yield "five-hundred-frames", id3(text23(b"TXXX", b"") * 520 + text23(b"TIT2", b"\0T")) + SOUND
    sizes = text23(b"TIT2", b"\0" + b"T" * 139, version=4)
    yield "size-of-7-bits", id3(sizes, text23(b"TALB", b"\0A", version=4), version=4) + SOUND
    plain = b"TIT2" + n(140) + bytes(2) + b"\0" + b"t" * 139
    yield "size-of-8-bits-before-another", id3(plain, b"TALB" + n(2) + bytes(2) + b"\0A", version=4) + SOUND
    plain = b"TIT2" + n(257) + bytes(2) + b"\0" + b"t" * 256
    yield "size-of-8-bits-at-the-end", id3(plain, version=4) + SOUND
    yield "size-of-8-bits-before-padding", id3(plain, version=4, padding=20) + SOUND
    yield "size-of-8-bits-before-what-is-none", id3(plain, b"tit2" + bytes(9), version=4) + SOUND
    yield "size-of-8-bits-too-large", id3(b"TIT2" + n(300) + bytes(2) + b"\0" + b"T" * 210, version=4) + SOUND
    yield "size-of-8-bits-before-two-bytes", id3(plain, b"ab", version=4) + SOUND
    yield "text-utf-16-of-odd-letters", id3(text23(b"TIT2", b"\1\0a\0\0"), text23(b"TALB", b"\1abcd")) + SOUND
    yield "text-with-a-delete", id3(text23(b"TIT2", b"\0a\x7F")) + SOUND
    yield "text-plain-in-an-unsynchronised-tag", id3(text23(b"TIT2", b"\0" + b"a" * 5000), flags=0x80) + SOUND
    yield "text-of-odd-bytes-in-an-unsynchronised-tag", id3(text23(b"TIT2", b"\0a\xFFb\xFF"), flags=0x80) + SOUND
    yield "frames-cut-in-an-unsynchronised-tag", id3(b"TIT2" + n(90) + bytes(2) + b"\0a\xFF", flags=0x80) + SOUND
    yield "tag-of-nothing", id3() + SOUND
    yield "ape-larger-than-what-is-looked-at", SOUND + ape(ape_item(b"x", b"x" * 17000))
    yield "size-of-high-bits", id3(b"TIT2" + n(0x80) + bytes(2) + b"\0" + b"T" * 127, version=4) + SOUND
    yield "names-of-frames-odd", id3(b"TIT[" + n(1) + bytes(3)) + id3(b"TIT:" + n(1) + bytes(3)) + id3(b"TI") + SOUND
    title = text23(b"TALB", b"\0Album")
    yield "frames-by-short-names", id3(text23(b"TST ", b"\0x"), text23(b"TP1\0", b"\0Artist"), title) + SOUND
    yield "frames-by-no-names", id3(text23(b"TSA ", b""), title) + SOUND
    yield "frames-by-short-names-to-nowhere", id3(b"TSP " + n(99) + bytes(2) + b"\0x", title) + SOUND
    sizes_with_stuffing = b"TIT2" + n(7) + bytes(2) + b"\1\xFF\0\xFEa\0b"
    yield "size-that-counts-the-stuffing", id3(sizes_with_stuffing, title, flags=0x80) + SOUND
    yield "size-that-counts-the-stuffing-at-the-end", id3(sizes_with_stuffing, flags=0x80) + SOUND
    packed = zlib.compress(b"\0" + b"Packed " * 8)
    yield "compressed-v23", id3(text23(b"TIT2", n(57) + packed, 0x80), title) + SOUND
    yield "compressed-v23-size-lies", id3(text23(b"TIT2", n(5) + packed, 0x80), title) + SOUND
    yield "compressed-v24", id3(text23(b"TIT2", sync(57) + packed, 0x09, 4), version=4) + SOUND
    yield "compressed-v24-unsynchronised", id3(text23(b"TIT2", sync(57) + packed.replace(b"\xFF", b"\xFF\0"), 0x0B, 4),
                                               version=4) + SOUND
    yield "compressed-and-cut", id3(text23(b"TIT2", n(57) + packed[:-9], 0x80), title) + SOUND
    yield "compressed-bomb", id3(text23(b"TIT2", n(0x100000) + zlib.compress(bytes(0x100000), 9), 0x80), title) + SOUND
    yield "text-of-a-code-page", CODE_PAGE + id3v1(b"\xCF\xF0\xE8")
    yield "version-1", id3(text23(b"TIT2", b"\0T"), version=1) + SOUND
    yield "version-5", id3(text23(b"TIT2", b"\0T"), version=5) + SOUND
    yield "version-2-compressed", id3(text22(b"TT2", b"\0T"), version=2, flags=0x40) + SOUND
    yield "extended-header-of-nothing", id3(sync(5) + bytes(6), version=4, flags=0x40) + SOUND
    yield "data-length-too-long", id3(text23(b"TIT2", sync(99) + b"\0T", 1, 4), version=4) + SOUND
    yield "nine-leading-tags", 9 * id3(text23(b"TXXX", b"x")) + SOUND
    complete = id3(*(text23(kind, b"\0T") for kind in (b"TIT2", b"TPE1", b"TALB", b"TCON")))
    yield "complete-tag-before-another", complete + complete + SOUND
    yield "ape-after-as-before", ape(leading=True, flags=0)[:32] + SOUND
    yield "ape-before-of-more-than-the-file", ape(leading=True, flags=0, size=99999)[:32] + SOUND
    yield "ape-cut-before", b"APETAGEX\0"
    yield "ape-footer-before", ape(ape_item(b"Title", b"T"), flags=0)[-32:] + SOUND
    items = [ape_item(key, b"T") for key in (b"Title", b"Artist", b"Album", b"Genre", b"Year")]
    yield "ape-complete", SOUND + ape(*items)
    yield "ape-item-too-long", SOUND + ape(ape_item(b"Title", b"T", size=99))
    yield "ape-key-without-end", SOUND + ape(b"\1\0\0\0\0\0\0\0Title")
    yield "ape-of-600-items", SOUND + ape(*[ape_item(b"x", b"")] * 600)
    yield "ape-twice", SOUND + ape(items[0]) + ape(items[1])
    yield "ape-header-after", SOUND + ape(items[0])[:32]
    yield "ape-smaller-than-its-end", SOUND + ape(items[0], size=20)
    yield "ape-larger-than-the-file", SOUND + ape(items[0], size=99999)
    yield "lyrics-without-number", SOUND + b"LYRICSBEGINxx0000xxLYRICS200"
    yield "lyrics-larger-than-the-file", SOUND + b"LYRICSBEGIN999999LYRICS200"
    yield "lyrics-without-begin", SOUND + b"LYRICSend" + b"x" * 50 + b"LYRICSEND"
    lyrics = b"LYRICSBEGIN" + b"".join(name + b"%05d" % len(text) + text for name, text in (
        (b"IND", b"00"), (b"ETT", b"t" * 40), (b"EAR", b"Artist"), (b"EAL", b"\xCF\xF0"), (b"LYR", b"la " * 90)))
    yield "lyrics-of-long-forms", SOUND + lyrics + b"%06d" % len(lyrics) + b"LYRICS200" + id3v1(b"t" * 30)
    yield "lyrics-of-a-field-too-long", (SOUND + lyrics.replace(b"EAR00006", b"EAR99999") + b"%06d" % len(lyrics) + b"LYRICS200"
                                         + id3v1())
    yield "lyrics-of-no-digits", SOUND + lyrics.replace(b"00006", b"0x006") + b"%06d" % len(lyrics) + b"LYRICS200" + id3v1()
    yield "footer-larger-than-the-file", SOUND + b"3DI\4\0\0" + sync(99999)
    yield "footer-of-high-bits", SOUND + b"3DI\4\0\0\x80\0\0\0"
    yield "ten-tails", SOUND + 10 * ape(flags=0)
    yield "title-of-30-letters-enhanced", SOUND + b"TAG+" + b"u" * 60 + bytes(163) + id3v1(b"t" * 30)
    yield "genre-of-words-enhanced", SOUND + b"TAG+" + bytes(180) + b"\0Ours".ljust(43, b"\0") + id3v1()
    yield "id3v1-alone", id3v1()
    yield "zeros-to-the-end", id3(text23(b"TIT2", b"\0T")) + bytes(200)


# --- Counts and lengths


def lengths():
    one = 144 * 32000 // 44100
    yield "xing-bytes-alone", xing(2)
    yield "xing-frames-alone", xing(1)
    yield "xing-everything", xing(15, delay=0x240240)
    yield "xing-delay-longer-than-the-sound", xing(15, frames=1, delay=0xFFFFFF)
    yield "xing-encoder-of-nobody", xing(15, encoder=b"Ours", delay=0x240240)
    small = mpeg_frame(72 * 8000 // 24000, version=2, rate=1, frequency=1, mode=3, body=bytes(9) + b"Xing\0\0\0\3")
    yield "xing-in-a-frame-that-is-too-short", small + 8 * mpeg_frame(72 * 8000 // 24000, version=2, rate=1, frequency=1, mode=3)
    vbri = mpeg_frame(72 * 8000 // 24000 + 24, version=2, rate=2, frequency=1, mode=3, body=bytes(32) + b"VBRI" + bytes(10))
    yield "vbri-in-a-frame-that-is-too-short", vbri + 8 * mpeg_frame(72 * 8000 // 24000, version=2, rate=1, frequency=1, mode=3)
    whole = 144 * 128000 // 44100 + 8 * one
    yield "xing-exact", xing(3, 8, whole)
    yield "xing-of-a-cut-file", xing(3, 200, 200 * one)
    yield "xing-of-a-part", xing(3, 8, whole, sound=40)
    yield "info-of-a-part", xing(3, 8, 9 * one, name=b"Info", rate=1, sound=8)[: 9 * one] + 200 * mpeg_frame(one, rate=1)
    yield "info-with-a-tag-within", (xing(3, 8, 9 * one, name=b"Info", rate=1)[: 9 * one] + id3(text23(b"TIT2", b"\0T"))
                                     + 200 * mpeg_frame(one, rate=1))
    yield "info-before-much-else", xing(3, 8, 9 * one, name=b"Info", rate=1)[: 9 * one] + filler(17000)
    yield "info-of-padded-frames", 1 * mpeg_frame(one + 1, rate=1, padding=1, body=bytes(32) + b"Info" + n(1) + n(8)) + 8 * (
        mpeg_frame(one + 1, rate=1, padding=1))
    yield "xing-of-unknown-size", xing(3, 8, whole)
    checked = bytearray(xing(3, 8, whole))
    checked[1] &= 0xFE
    yield "xing-frame-with-a-check-sum", bytes(checked)
    other = bytearray(xing(3, 8, whole))
    other[2] = other[2] & 0xF3 | 4
    yield "xing-frame-of-another-rate", bytes(other)
    yield "xing-free-format", xing(3, 8, whole, rate=9)[: 144 * 128000 // 44100] + 8 * mpeg_frame(one, rate=0)
    yield "info-in-free-format", b"".join(mpeg_frame(FREE, rate=0, body=bytes(32) + b"Info" + n(1) + n(8) + bytes([i]))
                                          for i in range(50))
    yield "info-then-a-tag-to-the-end", (xing(3, 8, 9 * one, name=b"Info", rate=1)[: 9 * one]
                                         + id3(text23(b"TXXX", b"x" * 17000)))
    yield "info-of-more-bytes-than-that", xing(3, 8, 1000000, name=b"Info", rate=1)
    yield "info-of-a-part-without-bytes", xing(1, 8, name=b"Info", rate=1)[: 9 * one] + 200 * mpeg_frame(one, rate=1)
    yield "free-then-rated", mpeg_frame(FREE, rate=0) + SOUND
    lame = mpeg_frame(72 * 8000 // 22050, version=2, rate=1, mode=3, body=bytes(9) + b"Xing" + n(0) + b"LAME")
    yield "xing-cut-after-the-encoder", lame + 8 * mpeg_frame(72 * 8000 // 22050, version=2, rate=1, mode=3)
    yield "whole-seconds", 250 * mpeg_frame(96, layer=2, rate=1, frequency=1)
    yield "free-headers-of-no-frames", b"".join(mpeg_frame(4, rate=0) + filler(40 + 3 * i) for i in range(30)) + SOUND
    yield "one-frame-of-unknown-size", mpeg_frame(one, rate=1)
    yield "three-frames-and-others-of-unknown-size", 3 * mpeg_frame(one, rate=1) + filler(300)
    yield "transport-cut", b"\x47" + filler(187) + b"\x47" + filler(10)
    yield "padded", 8 * mpeg_frame(one + 1, rate=1, padding=1)
    yield "free-format-padded", b"".join(mpeg_frame(FREE + i % 2, rate=0, padding=i % 2, body=bytes([i])) for i in range(12))
    yield "free-format-long", b"".join(mpeg_frame(FREE, rate=0, body=bytes([i])) for i in range(40))
    yield "free-format-repeats-itself", b"ours" + 12 * mpeg_frame(FREE, rate=0)
    yield "free-format-after-others", b"ours" + b"".join(mpeg_frame(FREE, rate=0, body=bytes([i])) for i in range(12))
    yield "free-format-of-nothing", 20 * (mpeg_frame(4, rate=0) + filler(30)) + SOUND
    yield "layer-2-long", 180 * mpeg_frame(one, layer=2, rate=1)
    yield "rates-that-change", 20 * (mpeg_frame(one, rate=1) + mpeg_frame(144 * 128000 // 44100, rate=9))
    yield "two-rates-then-others", SOUND + mpeg_frame(one, version=3, rate=1, mode=3) + filler(99)
    yield "transport", (b"\x47" + filler(187)) * 5
    yield "timed-transport", (bytes([9, 9, 9, 9]) + b"\x47" + filler(187)) * 5
    yield "adts", b"\xFF\xF1\x50\x80" + filler(200)
    yield "too-short-for-a-name", b"oursx"
    yield "after-a-program", b"ours\0\0\1\xBA\x44\0\4\0\4\1\0\0\3\xF8\0\0\1\xBD\x0F\xFF" + SOUND


def seeds():
    for name, content in tags():
        yield "format_mpegaudio", name, content + DELIVERED_AS_IT_IS
    for name, content in lengths():
        yield "format_mpegaudio", name, content + delivered(8 if "unknown-size" in name else 0)
    hole = 10 << 11
    for read in range(4):
        long = id3(text23(b"TIT2", b"\0T"), padding=hole) + 20 * SOUND
        yield "format_mpegaudio", f"fails-at-{read}", with_hole(long, hole, read)
    yield "format_mpegaudio", "not-after-a-tag-of-all", b"ID3\3\0\0" + sync(5000) + filler(300) + DELIVERED_AS_IT_IS
    yield "format_mpegaudio", "byte-by-byte", SOUND + bytes([1]) + bytes(7)
    # Long enough to be looked at in other places: zeros stand between what is there.
    one = mpeg_frame(144 * 320000 // 44100, rate=14)
    slow = mpeg_frame(144 * 256000 // 44100, rate=13)
    hole = delivered(0, 20 * len(one), 100, 10)
    lone = b"\xFF\xF3\x40\0" + filler(50) + b"\xFF\xFB\x90\0" + filler(90)
    yield "format_mpegaudio", "long-and-slower-later", 20 * one + lone + 48 * slow + hole
    yield "format_mpegaudio", "long-and-faster-later", 20 * slow + 42 * one + delivered(0, 20 * len(slow), 100, 10)
    yield "format_mpegaudio", "not-found-before-a-failing-read", filler(9000) + bytes([2, 0, 0, 1]) + bytes(4)
    yield "format_mpegaudio", "unknown-size-and-a-failing-read", 20 * SOUND + bytes([2 | 8, 0, 0, 1]) + bytes(4)
    tag = id3(text23(b"TXXX", b"x" * 8200), text23(b"TIT2", b"\0" + b"a" * 9000), flags=0x80)
    for read in range(2, 5):
        yield "format_mpegaudio", f"long-text-unsynchronised-fails-at-{read}", tag + SOUND + bytes([2, 0, 0, read]) + bytes(4)
    tag = id3(text23(b"TXXX", b"x" * 8200), size=9000)
    yield "format_mpegaudio", "tag-to-where-nothing-is", tag + bytes([16]) + (5000).to_bytes(2, "little") + bytes(5)
    yield "format_mpegaudio", "whole-of-one-rate", 25 * SOUND + delivered(32)
    free = b"".join(mpeg_frame(FREE, rate=0, body=bytes(32) + b"Xing" + n(0) + bytes([i])) for i in range(50))
    yield "format_mpegaudio", "text-of-letters-of-two-bytes", CODE_PAGE + id3v1(b"\x93\xFA") + delivered(32)
    yield "format_mpegaudio", "whole-of-free-format", free + delivered(32)
    sized = id3(b"TIT2" + n(257) + bytes(2) + b"\0" + b"t" * 256, b"TALB" + n(2) + bytes(2) + b"\0A", version=4)
    yield "format_mpegaudio", "size-of-8-bits-before-where-nothing-is", sized[:-12] + bytes([16, 200]) + bytes(6)
    changing = 60 * (mpeg_frame(104, rate=1) + mpeg_frame(144 * 128000 // 44100, rate=9))
    yield "format_mpegaudio", "whole-of-changing-rates", changing + delivered(32)
    for read in range(1, 5):
        yield "format_mpegaudio", f"whole-fails-at-{read}", changing + bytes([32 | 2, 0, 0, read]) + bytes(4)
    for name, text, flags in (("text", b"\0" + b"a" * 300, 0), ("stuffing", b"\0" + b"a" * 60 + b"\xFF" + b"b" * 50, 0x80)):
        tag = id3(text23(b"TXXX", b"x" * 8100), text23(b"TIT2", text), flags=flags)
        yield "format_mpegaudio", f"{name}-in-a-failing-read", tag + SOUND + bytes([2, 0, 0, 1]) + bytes(4)
    tag = id3(text23(b"TXXX", b"x" * 8100), text23(b"TIT2", b"\0" + b"a" * 300), flags=0x80)
    yield "format_mpegaudio", "text-unsynchronised-in-a-failing-read", tag + SOUND + bytes([2, 0, 0, 1]) + bytes(4)
    for left in (2, 4, 7):
        tag = id3(text23(b"TIT2", b"\0T"), padding=8192 - left - 22)
        yield "format_mpegaudio", f"tag-ends-{left}-bytes-before-the-block", tag + 20 * SOUND + DELIVERED_AS_IT_IS
    yield "format_mpegaudio", "unknown-size-and-half-a-header", SOUND[:3] + delivered(8)
    yield "format_mpegaudio", "unknown-size-and-short", 3 * mpeg_frame(104, rate=1) + delivered(8)
