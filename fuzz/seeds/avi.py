"""AVI and OpenDML: headers of streams, frames, and what tells the length. Those that begin with "not-" are refused."""
from chunks import DELIVERED_AS_IT_IS, OPEN, UNKNOWN_SIZE, chunk, extension, fmt, hole, info, little, n, riff
from elementary import USER_DATA, ac3_frame, adts_frame, mpeg_frame
from frames import dts_core
from video import MPEG4_PICTURE, mpeg4_layer


def listed(kind, content, size=None):
    return chunk(b"LIST", kind + content, size)


def bitmap(compression=b"XXXX", private=b"", width=64, height=48):
    return little(40) + little(width) + little(height) + little(1, 2) + little(24, 2) + compression + bytes(20) + private


def stream(kind=b"vids", form=bitmap(), flags=0, scale=1, rate=25, start=0, length=20, unit=0, rest=b"", size=None):
    numbers = (flags, 0, 0, scale, rate, start, length, 0, 0, unit, 0, 0)
    header = kind + b"none" + b"".join(little(number) for number in numbers)
    return listed(b"strl", chunk(b"strh", header) + chunk(b"strf", form) + rest, size)


def sound(*form, unit=1, **more):
    return stream(b"auds", fmt(*form, **more)[8:], scale=1, rate=8000, length=6400, unit=unit)


def super_index(*parts, count=None, kind=0):
    entries = b"".join(little(place, 8) + little(size) + little(units) for place, size, units in parts)
    return chunk(b"indx", little(4, 2) + bytes([0, kind]) + little(len(parts) if count is None else count) + b"00dc" + bytes(12) + entries)


def properties(width, height, fields):
    return chunk(b"vprp", bytes(20) + little(width << 16 | height) + bytes(8) + little(fields))


def frames(count=20, size=30, name=b"00dc"):
    return count * chunk(name, size * b"\x33")


def index(count=20, name=b"00dc", size=30):
    return chunk(b"idx1", count * (name + little(16) + little(4) + little(size)))


def header(streams, frame_count=0, rest=b"", size=None, microseconds=40000):
    main = little(microseconds) + bytes(12) + little(frame_count) + bytes(12) + little(64) + little(48) + bytes(16)
    return listed(b"hdrl", chunk(b"avih", main) + streams + rest, size)


def film(streams=stream(), movi=frames(), before=b"", after=b"", rest=b"", frame_count=0):
    return riff(header(streams, frame_count, rest) + before + listed(b"movi", movi) + after, form=b"AVI ")


def part(movi=frames()):
    return riff(listed(b"movi", movi), form=b"AVIX")


UNSTATED = stream(length=0)
MPEG4 = n(0x1B0) + b"\3" + n(0x100) + mpeg4_layer() + USER_DATA + MPEG4_PICTURE


def dv(source=b"\x50\xD7\0\xC0\xC0", block=0):
    sequence = bytearray(12000 * b"\xFF")
    sequence[:8] = b"\x1F\x07\0\xBF\x78\x78\x78\x78"
    sequence[288:293] = b"\x60\xFF\xFF\x20\xFF"
    sequence[473:478] = b"\x61\x3F\xCA\xFC\xFF"
    place = (6 + 16 * block) * 80 + 3
    sequence[place : place + 5] = source
    return bytes(sequence)


def pictures():
    yield "MPEG-4", stream(form=bitmap(b"XVID")), chunk(b"00dc", b"") + chunk(b"00dc", MPEG4)
    yield "MPEG-4-in-lists", stream(form=bitmap(b"DX50", height=0)), listed(b"rec ", chunk(b"00pc", b"colours") + chunk(b"00dc", MPEG4))
    yield "upside-down", stream(form=bitmap(b"\0\0\0\0", height=(1 << 32) - 48)), frames(name=b"00db")
    yield "unknown", stream(form=bitmap(b"a,\1 ")), frames()
    yield "set-up-before", stream(form=bitmap(b"WMV3", b"\x4E\x39\x0A\1")), frames()
    yield "Theora", stream(form=bitmap(b"theo", b"\x80theora")), frames()
    yield "short-format", stream(form=bitmap()[:18]), frames()
    yield "properties", stream(rest=properties(16, 9, 2)), frames()
    yield "properties-cut", stream(rest=properties(4, 3, 1)[:30]), frames()
    yield "without-a-rate", stream(scale=0, rate=0), frames()
    yield "DV-in-a-stream-of-pictures", stream(form=bitmap(b"dvsd")), chunk(b"00dc", dv())
    yield "DV", stream(b"iavs", bytes(32)), chunk(b"00__", dv())
    yield "DV-of-two-sounds", stream(b"iavs", bytes(32)), chunk(b"00__", dv(b"\x50\xD7\x20\xC0\xD1", 3))
    yield "DV-of-no-sound", stream(b"iavs", bytes(32)), chunk(b"00__", dv(b"\x50\xD7\x0F\xC0\xC0"))
    yield "DV-of-no-rate", stream(b"iavs", bytes(32)), chunk(b"00__", dv(b"\x50\xD7\0\xC0\xFF"))
    yield "DV-cut", stream(b"iavs", bytes(32)), chunk(b"00__", dv()[:480])


def sounds():
    mp3 = mpeg_frame(417)
    yield "samples", sound(1, 2, 8000, 32000, 4, 16), b"x"
    yield "extensible", sound(0xFFFE, 1, 8000, 32000, 4, 32, extension(24, 1)), b"x"
    yield "layer-III", sound(0x55, 2, 44100, 16000, 1, 0), mp3
    yield "layer-III-varying", sound(0x55, 2, 44100, 15000, 1152, 0, unit=0), mp3
    yield "layer-III-later", sound(0x55, 2, 44100, 16000, 1, 0), b"rest" + mp3
    yield "AC-3", sound(0x2000, 5, 48000, 4000, 1, 0), ac3_frame()
    yield "DTS", sound(0x2001, 2, 48000, 96000, 1, 0), dts_core()
    yield "AAC", sound(0xFF, 2, 22050, 4000, 1024, 0, b"\2\0\x12\x10", unit=0), b"x"
    yield "AAC-without-a-set-up", sound(0x706D, 1, 8000, 4000, 1024, 0, unit=0), adts_frame(40)
    yield "Vorbis", sound(0x566F, 2, 44100, 10000, 1024, 0, unit=0), b"x"
    yield "none-known", sound(0x4321), b"x"


def dates():
    for number, text in enumerate((b"2009/10/27 12:14:34\0", b"SAT MAY 05 14:03:59 2007\n\0", b"Wed Dec  2 02:03:55 1990\n\0",
                                   b"Wed Foo 02 02:03:55 1990\n\0", b"Wed Feb 30")):
        yield f"date-{number}", film(rest=chunk(b"IDIT", text))


def lengths():
    yield "longer-sound", film(stream() + sound(), frames(40, 300))
    yield "all-parts", film(rest=listed(b"odml", chunk(b"dmlh", little(40))), frame_count=20) + part()
    yield "all-indexes", film(stream(rest=super_index((0, 600, 20), (1 << 11, 600, 20)))) + part()
    yield "indexes-far-away", film(stream(rest=super_index(((1 << 64) - 1, OPEN, OPEN), count=OPEN)))
    yield "index-of-frames", film(stream(rest=super_index((0, 600, 20), kind=1)))
    yield "parts-that-nobody-counts", film(after=index()) + part()
    yield "too-long", film(stream(length=OPEN))
    yield "too-fast", film(stream(length=1, rate=OPEN), frames(3, 9000))
    yield "by-the-header-of-all", film(UNSTATED, frame_count=20)
    yield "index-counted", film(UNSTATED, after=index())
    yield "index-of-nothing", film(UNSTATED, after=chunk(b"idx1", bytes(320)))
    yield "counted", film(UNSTATED)
    yield "counted-in-lists", film(UNSTATED, listed(b"rec ", frames(9)) + chunk(b"ix00", b"x") + listed(b"rec ", frames(9)))
    yield "counted-to-the-end-of-the-parts", film(UNSTATED) + part()
    yield "nothing-to-count", film(UNSTATED, b"")
    yield "sound-alone", film(sound(), frames(10, 800, b"00wb"))
    yield "sound-alone-counted", film(stream(b"auds", fmt()[8:], rate=8000, length=0, unit=2), frames(10, 800, b"00wb"))


def files():
    yield "film", film(stream() + sound(), frames(10) + frames(10, 400, b"01wb"), after=index())
    for name, streams, movi in pictures():
        yield "video-" + name, film(streams, movi)
    for name, streams, frame in sounds():
        yield "sound-" + name, film(stream() + streams, chunk(b"00dc", b"picture") + chunk(b"01wb", frame))
    yield from dates()
    yield from lengths()
    texts = info((b"INAM", b"B\xE5t"), (b"ICRD", b"2005-06-07"), (b"IAS2", b"eng"), (b"IAS1", b"de"))
    yield "texts-before", film(before=chunk(b"JUNK", b"") + texts)
    yield "texts-in-the-header", film(rest=texts)
    yield "texts-after", film(after=index() + info((b"ILNG", b"fre")) + listed(b"MID ", chunk(b"INAM", b"none")))
    yield "disabled", film(stream(flags=1) + sound() + stream(form=bitmap(b"MJPG")))
    yield "subtitles", film(stream(form=bitmap(b"DXSB")) + stream(b"txts", b"") + stream(b"mids", b"") + stream())
    yield "not-of-media", film(stream(b"txts", b""))
    yield "not-with-streams", riff(listed(b"movi", frames()), form=b"AVI ")
    yield "not-at-all", riff(b"", form=b"AVI ")
    for size in (0, 1, OPEN):
        opened = header(stream(size=size), size=size) + listed(b"movi", frames(), size)
        yield f"sizes-of-{size}", riff(opened, form=b"AVI ", size=size)
        opened = header(UNSTATED) + listed(b"movi", frames() + frames(5, name=b"01wb"), size)
        yield f"being-written-{size}", riff(opened, form=b"AVI ", size=size)
    yield "cut", film(UNSTATED, after=index())[:-100]
    yield "of-too-many-streams", film(101 * sound())


def long_files():
    """Each with where most of it is a hole."""
    gap = 1 << 16
    start = riff(header(UNSTATED), form=b"AVI ") + b"LIST" + little(4 + 18 * 38 + gap) + b"movi" + frames(9)
    yield "counted-with-a-gap", start + frames(9), hole(len(start), 1, 16)
    start = film(UNSTATED, frames(1)) + b"idx1" + little(640 + (20 << 14)) + index()[8:]
    yield "index-by-places", start + index()[8:], hole(len(start), 20, 14)
    start = riff(header(UNSTATED), form=b"AVI ") + b"LIST" + little(4 + (8 << 20)) + b"movi" + frames(90)
    yield "by-places", start + frames(500), hole(len(start), 7, 20)


def seeds():
    for name, content in files():
        yield "format_avi", name, content + DELIVERED_AS_IT_IS
    yield "format_avi", "unknown-size", film() + UNKNOWN_SIZE
    for name, content, delivery in long_files():
        yield "format_avi", name, content + delivery
