"""Seeds of codecs whose streams are NAL units: of H.265 as an elementary stream, and of what H.264 and H.265 tell of their
pictures, as a stream and as containers have them."""
import elementary
from bits import Bits


# --- Units of H.265


def unit(kind, content, layer=0, sub_layer=1):
    """With an escape wherever one is needed."""
    return elementary.unit(kind << 1 | layer >> 5, bytes([(layer & 31) << 3 | sub_layer]) + content)


def profile(bits, number, sub_layers, source=2, level=93):
    bits.put(number, 8).put(0, 32).put(source, 2).put(0, 46).put(level, 8)
    for i in range(1, sub_layers):
        bits.put(3 if i % 2 else 0, 2)
    bits.put(0, 2 * (9 - sub_layers) if sub_layers > 1 else 0)
    for _ in range(1, sub_layers, 2):
        bits.put(0, 88).put(60, 8)


def ordering(bits, each, sub_layers):
    bits.put(each, 1)
    for _ in range(sub_layers if each else 1):
        bits.ue(4).ue(2).ue(0)


def video_set(number=0, sub_layers=1, reserved=0xFFFF, nested=1):
    bits = Bits().put(number, 4).put(3, 2).put(0, 6).put(sub_layers - 1, 3).put(nested, 1).put(reserved, 16)
    profile(bits, 1, sub_layers)
    ordering(bits, 1, sub_layers)
    return unit(32, bits.put(0, 6).ue(0).put(0, 2).ended())


def scaling_lists(bits):
    for i in range(20):
        own = i % 3 == 0
        bits.put(own, 1)
        if not own:
            bits.ue(0)
            continue
        if i >= 12:
            bits.se(3)
        for _ in range(16 if i < 6 else 64):
            bits.se(1)


def reference_sets(bits):
    """Of two before and one after, then two that are predicted, backwards and forwards."""
    bits.ue(3).ue(2).ue(1).ue(0).put(1, 1).ue(1).put(0, 1).ue(1).put(1, 1)
    bits.put(1, 1).put(0, 1).ue(0).put(1, 1).put(1, 1).put(1, 2).put(1, 1)
    bits.put(1, 1).put(1, 1).ue(4).put(0, 2).put(1, 1).put(0, 2).put(1, 1)


def buffers(bits, nal=1, slices=0, parts=0, delivery="", rate=999, constant=0):
    bits.put(nal, 1).put(slices, 1)
    if nal or slices:
        bits.put(parts, 1).put(0, 19 * parts).put(0, 8).put(0, 4 * parts).put(0, 15)
    if delivery == "fixed":
        bits.put(1, 1).ue(0).ue(0)
    elif delivery == "fixed within":
        bits.put(1, 2).ue(0).ue(0)
    elif delivery == "low delay":
        bits.put(0, 2).put(1, 1)
    else:
        bits.put(0, 2).put(0, 1).ue(0)
    for _ in range(nal + slices):
        bits.ue(rate).ue(99)
        if parts:
            bits.ue(9).ue(9)
        bits.put(constant, 1)


def signs(bits, aspect=None, transfer=None, matrix=9):
    bits.put(aspect is not None, 1)
    if aspect is not None:
        bits.put(aspect, 8)
        if aspect == 255:
            bits.put(64, 16).put(45, 16)
    bits.put(1, 1).put(0, 1).put(1, 1).put(10, 4).put(transfer is not None, 1)
    if transfer is not None:
        bits.put(9, 8).put(transfer, 8).put(matrix, 8)
    bits.put(1, 1).ue(0).ue(0)


def usability(bits, fields=0, structure=0, window=0, clock=None, hrd=None, bare=0, **more):
    if bare:  # nothing of all but a clock without its counts
        bits.put(0, 4).put(0, 4).put(1, 1).put(bare, 32).put(0, 32).put(0, 2).put(0, 1)
        return
    signs(bits, **more)
    bits.put(0, 1).put(fields, 1).put(structure, 1).put(window, 1)
    for _ in range(4 * window):
        bits.ue(2)
    bits.put(clock is not None, 1)
    if clock is not None:
        bits.put(clock[0], 32).put(clock[1], 32).put(1, 1).ue(0).put(hrd is not None, 1)
        if hrd is not None:
            buffers(bits, *hrd)
    bits.put(1, 1).put(0, 3).ue(0).ue(0).ue(0).ue(15).ue(15)


def tools(bits, lists=None, pcm=0, references=0, long_term=0):
    bits.put(lists is not None, 1)
    if lists is not None:
        bits.put(lists, 1)
        if lists:
            scaling_lists(bits)
    bits.put(3, 2).put(pcm, 1)
    if pcm:
        bits.put(0x77, 8).ue(0).ue(2).put(1, 1)
    if references == 1:
        reference_sets(bits)
    elif references:  # more pictures than a set may have
        bits.ue(2).ue(8).ue(8)
        for _ in range(16):
            bits.ue(0).put(1, 1)
        bits.put(1, 1).put(1, 1).ue(100).put(0x1FFFF, 17)
    else:
        bits.ue(0)
    bits.put(long_term != 0, 1)
    if long_term:
        bits.ue(long_term).put(0, 9 * long_term)
    bits.put(3, 2)


def sequence_set(number=0, of=0, kind=1, sub_layers=1, source=2, chroma=1, width=320, height=184, crop=(0, 0, 0, 2), depth=0,
                 nested=1, planes=0, sub_layer=1, blocks=(0, 3, 0, 3, 0, 0), each=1, told=None, extensions=0, layer=0, **more):
    bits = Bits().put(of, 4).put(sub_layers - 1, 3).put(nested, 1)
    profile(bits, kind, sub_layers, source)
    bits.ue(number).ue(chroma).put(planes, int(chroma == 3)).ue(width).ue(height).put(crop is not None, 1)
    for edge in crop or ():
        bits.ue(edge)
    bits.ue(depth).ue(depth).ue(4)
    ordering(bits, each, sub_layers)
    for size in blocks:
        bits.ue(size)
    tools(bits, **more)
    bits.put(told is not None, 1)
    if told is not None:
        usability(bits, **told)
    bits.put(extensions != 0, 1)
    if extensions:
        bits.put(extensions, 8).put(0, 9 if extensions & 0x80 else 0)
    return unit(33, bits.ended(), layer, sub_layer)


def picture_set(number=0, of=0, tiles=None, filters=1, lists=0, depth=1, more=0, sub_layer=1):
    bits = Bits().ue(number).ue(of).put(0, 7).ue(0).ue(0).se(0).put(0, 2).put(depth, 1)
    if depth:
        bits.ue(1)
    bits.se(0).se(0).put(0, 4).put(tiles is not None, 1).put(0, 1)
    if tiles is not None:
        bits.ue(1).ue(1).put(tiles, 1)
        if not tiles:
            bits.ue(1).ue(1)
        bits.put(0, 1)
    bits.put(0, 1).put(filters > 0, 1)
    if filters > 0:
        bits.put(0, 1).put(filters > 1, 1)
        if filters == 1:
            bits.se(0).se(0)
    bits.put(lists, 1)
    if lists:
        scaling_lists(bits)
    bits.put(0, 1).ue(0).put(0, 1).put(more, 1)
    return unit(34, bits.put(0x55 * more, 8 * more).ended(), 0, sub_layer)


def slice_of(kind=19, number=0, first=1, layer=0):
    bits = Bits().put(first, 1).put(0, int(kind >= 16)).ue(number)
    return unit(kind, bits.bytes() + elementary.filler(12), layer)


def stream(told=None, middle=b"", **more):
    return video_set() + sequence_set(told=told, **more) + picture_set() + middle + slice_of()


def h265():
    """What decides for a stream, and what does not."""
    yield "plain", stream()
    yield "told", stream({})
    yield "sub-layers", video_set(sub_layers=4) + sequence_set(sub_layers=4, each=0) + picture_set() + slice_of(1)
    yield "sub-layers-not-nested", (video_set(sub_layers=3, nested=0) + sequence_set(sub_layers=3, nested=0) + picture_set()
                                    + slice_of(1))
    for name, chroma in (("grey", 0), ("colour-4-2-2", 2), ("colour-4-4-4", 3)):
        yield name, stream(kind=4, chroma=chroma, depth=2, extensions=0x80)
    yield "other-extensions", stream(extensions=0x11)
    yield "not-cropped", stream(crop=None)
    yield "lists-by-default", stream(lists=0)
    yield "lists", video_set() + sequence_set(lists=1) + picture_set(lists=1, depth=0) + slice_of()
    yield "all-tools", stream({}, pcm=1, references=1, long_term=3)
    yield "window-and-clock", stream({"window": 1, "clock": (1, 25)})
    for name, hrd in (("none", (0, 0)), ("bytes", (1, 0)), ("slices", (0, 1)), ("both-of-parts", (1, 1, 1))):
        yield f"buffers-{name}", stream({"clock": (1, 25), "hrd": hrd})
    for delivery in ("fixed", "fixed within", "low delay"):
        yield f"buffers-{delivery.replace(' ', '-')}", stream({"clock": (1, 25), "hrd": (1, 0, 0, delivery)})
    fast = 0xFFFFFFF
    for constant in (0, 1):
        yield f"rate-constant-{constant}", stream({"clock": (1, 25), "hrd": (1, 0, 0, "", 999, constant)})
        yield f"fastest-constant-{constant}", stream({"clock": (1, 25), "hrd": (1, 0, 0, "", fast, constant)})
    yield "bare", stream({"bare": 1})
    yield "separate-planes", stream(kind=4, chroma=3, planes=1)
    yield "no-picture-before-the-first-shown", stream(crop=(0, 0, 0, 0), blocks=(1, 2, 0, 3, 0, 0), width=336, height=192)
    yield "picture-set-of-a-sub-layer", video_set() + sequence_set() + picture_set(sub_layer=2) + slice_of()
    yield "usability-cut", video_set() + sequence_set(told={"aspect": 1})[:-4] + b"\x80" + picture_set() + slice_of()
    yield "fields", stream({"fields": 1, "clock": (1, 50)})
    yield "tiles", video_set() + sequence_set() + picture_set(tiles=1, filters=0) + slice_of()
    yield "uneven-tiles", video_set() + sequence_set() + picture_set(tiles=0, filters=2, more=1) + slice_of(21)
    yield "several-sets", (video_set() + video_set(1) + sequence_set() + sequence_set(1, 1, width=640) + sequence_set()
                           + picture_set() + picture_set(1, 1) + slice_of(first=0) + slice_of(number=1))
    after = stream()
    yield "after-broken-sets", (video_set(reserved=0) + sequence_set() + video_set() + picture_set() + sequence_set(of=1)
                                + sequence_set(width=324) + sequence_set(height=188) + sequence_set(width=0)
                                + sequence_set(height=0) + sequence_set(width=16384, height=16384) + video_set(nested=0)
                                + video_set(sub_layers=8) + sequence_set(nested=0) + sequence_set(sub_layers=8)
                                + sequence_set(blocks=(0, 3, 1, 3, 0, 0)) + sequence_set(references=2)
                                + sequence_set(sub_layer=2) + unit(32, b"", 0, 0) + bytes([0, 0, 0, 1, 66]) + sequence_set(crop=(0, 0, 0, 200)) + sequence_set(number=16)
                                + sequence_set(chroma=4) + sequence_set(blocks=(3, 3, 0, 3, 0, 0)) + unit(33, bytes(9))
                                + sequence_set() + picture_set(of=3) + picture_set(64) + unit(34, b"") + after)
    yield "after-slices-of-no-picture", (video_set() + sequence_set() + picture_set() + slice_of(number=1)
                                         + slice_of(number=70) + slice_of(layer=1) + unit(19, b"", 0, 0)
                                         + bytes([0, 0, 0, 1, 38]) + slice_of(30) + slice_of(12)
                                         + bytes([0, 0, 0, 1, 2, 0, 0, 2]) + bytes([0, 0, 0, 1, 2, 1, 0, 0, 2, 9]) + slice_of(9))
    yield "slice-without-an-end", video_set() + sequence_set() + picture_set() + unit(1, bytes(20) + b"\x80") + slice_of()
    yield "further-layers", sequence_set(layer=1) + sequence_set(layer=40) + slice_of(layer=40) + after
    yield "forbidden-bit", video_set() + sequence_set() + picture_set() + b"\0\0\1\xC0" + slice_of() + after
    unescaped = bytes([0, 0, 0, 1, 64, 1, 0, 0, 2, 9])
    yield "after-units-not-escaped", unescaped + video_set()[:-1] + bytes([0xF1] * 700) + after
    yield from elementary.wrapped(after)


# --- What both tell of their pictures


def message(kind, content):
    return bytes([kind, len(content)]) + content


MASTERING = message(137, bytes(24))
LIGHT = message(144, bytes(4))
DYNAMIC = message(4, b"\xB5\0\x3C\0\1\4\1" + bytes(5))
MESSAGES = [("preferred-other", message(147, b"\x0E")), ("preferred-empty", message(147, b"")), ("mastering", MASTERING), ("light", LIGHT), ("dynamic", MASTERING + DYNAMIC), ("captions", message(4, b"\xB5\0\x31")),
            ("preferred", message(147, b"\x12")), ("long-type", b"\xFF\x05\1\0" + LIGHT), ("cut", b"\x89\x18\1"),
            ("endless", b"\xFF\xFF")]


def sized(units, size_bytes=4):
    """Each unit of a byte stream after its size."""
    rest = units.split(b"\0\0\0\1")[1:]
    return b"".join(len(one).to_bytes(size_bytes, "big") + one for one in rest)


def framed(config, sample=b""):
    return len(config).to_bytes(2, "big") + config + sample


def avc_config(sets, pictures, size_bytes=4):
    return (bytes([1, 77, 0, 30, 0xFC | size_bytes - 1, 0xE0 | sets.count(b"\0\0\0\1")]) + sized(sets, 2)
            + bytes([pictures.count(b"\0\0\0\1")]) + sized(pictures, 2))


def h264_sequence(transfer=None, aspect=None, fields=0, delays=0, structure=0, clock=(1, 50), profile_idc=100, chroma=1, matrix=1):
    bits = Bits().put(profile_idc, 8).put(0, 8).put(30, 8).ue(0).ue(chroma).put(0, int(chroma == 3)).ue(0).ue(0).put(0, 2)
    bits.ue(0).ue(2).ue(1).put(0, 1).ue(10).ue(8).put(1 - fields, 1).put(0, fields).put(1, 1).put(0, 1).put(1, 1)
    signs(bits, aspect, transfer, matrix)
    bits.put(1, 1).put(clock[0], 32).put(clock[1], 32).put(1, 1)
    bits.put(0, 1).put(int(delays > 0), 1)
    if delays:
        bits.ue(0).put(0, 8).ue(999).ue(99).put(delays - 1, 1).put(0, 5).put(4, 5).put(6, 5).put(0, 5).put(0, 1)
    return elementary.unit(0x67, bits.put(structure, 1).put(0, 1).ended())


def h264_told(messages=b"", field=None, **more):
    before = elementary.unit(6, messages + b"\x80") if messages else b""
    return h264_sequence(**more) + elementary.picture_set() + before + elementary.slice_of(order=0, field=field)


def timing(delay_bits, structure):
    return message(1, Bits().put(0, delay_bits).put(structure, 4).put(0, 4).bytes())


def codec_h264():
    for name, content in elementary.h264():
        if not name.endswith(("program", "transport")):
            yield name, bytes(2) + content
    for name, messages in MESSAGES:
        yield f"range-{name}", bytes(2) + h264_told(messages, transfer=16)
    yield "range-hlg", bytes(2) + h264_told(transfer=18)
    yield "rgb", bytes(2) + h264_told(profile_idc=244, chroma=3, transfer=1, matrix=0)
    for aspect in (0, 1, 16, 17, 255):
        yield f"aspect-{aspect}", bytes(2) + h264_told(aspect=aspect)
    yield "no-clock", bytes(2) + h264_told(clock=(0, 50))
    yield "clock-of-no-ticks", bytes(2) + h264_told(clock=(1, 0))
    yield "rgb-of-half-colour", bytes(2) + h264_told(transfer=1, matrix=0)
    yield "nothing", bytes(2) + elementary.filler(40)
    yield "zeros-before-and-after", bytes(2) + bytes(9) + h264_told().replace(b"\0\0\1", bytes(6) + b"\1") + b"\0\0\1\0\0\1"
    yield "view-sets", bytes(2) + elementary.unit(0x6F, bytes(9)) + h264_told()
    yield "ticks", bytes(2) + h264_told(clock=(1, 180000))
    yield "constant", bytes(2) + h264_told(delays=2)
    for structure in (0, 3, 5):
        yield f"structure-{structure}", bytes(2) + h264_told(timing(12, structure), field=0, fields=1, delays=1, structure=1)
    yield "no-structure", bytes(2) + h264_told(timing(0, 3), field=0, fields=1)
    yield "field", bytes(2) + h264_told(field=0, fields=1) + elementary.slice_of(order=0, field=1)
    yield "timing-before-sets", bytes(2) + elementary.unit(6, timing(0, 3) + b"\x80") + h264_told()
    yield "no-picture", bytes(2) + h264_sequence(fields=1)
    sets, pictures = h264_sequence(fields=1), elementary.picture_set()
    frame = elementary.slice_of(order=0, field=0)
    yield "config", framed(avc_config(sets, pictures))
    yield "config-of-level-11", framed(b"\1\x42\x40\x0B\xFF\xE0\0")
    yield "config-of-no-profile", framed(b"\1\x43\x40\x1E\xFF\xE0\0")
    yield "config-beyond-its-end", framed(b"\1\x4D\x40\x1E\xFF\xFF\xFF\xFF\x67")
    yield "config-of-many-slices", framed(avc_config(sets, pictures), sized(70 * elementary.unit(9, b"\xF0")))
    yield "config-of-level-1b", framed(b"\1\x42\x50\x0B\xFF\xE0\0")
    yield "config-of-no-version", framed(b"\2" + avc_config(sets, pictures)[1:])
    yield "config-without-sets", framed(avc_config(b"", b""), sized(sets + pictures + frame))
    for size_bytes in (1, 2, 4):
        yield f"config-and-sample-{size_bytes}", framed(avc_config(sets, pictures, size_bytes), sized(frame, size_bytes))
    yield "config-and-no-unit", framed(avc_config(sets, pictures), bytes(9))


def hevc_config(sets, size_bytes=4):
    header = bytes([1, 0x22, 0, 0, 0, 0, 0x90, 0, 0, 0, 0, 0, 120, 0xF0, 0, 0xFC, 0xFD, 0xFA, 0xFA, 0, 0, 0x0C | size_bytes - 1])
    return header + bytes([1, 0x20]) + sets.count(b"\0\0\0\1").to_bytes(2, "big") + sized(sets, 2)


def codec_h265():
    for name, content in h265():
        if not name.endswith(("program", "transport")):
            yield name, bytes(2) + content
    for name, messages in MESSAGES:
        yield f"range-{name}", bytes(2) + stream({"transfer": 16}, unit(39, messages + b"\x80"))
    for source in (0, 1, 3):
        for structure in (0, 3, 9, 15):
            picture = unit(39, message(1, bytes([structure << 4])) + b"\x80")
            yield f"source-{source}-structure-{structure}", bytes(2) + stream({"structure": 1}, picture, source=source)
    yield "no-structure", bytes(2) + stream({}, unit(39, message(1, b"\x30") + b"\x80"), source=0)
    yield "empty-timing", bytes(2) + stream({"structure": 1}, unit(39, message(1, b"") + b"\x80"), source=0)
    yield "timing-before-sets", bytes(2) + unit(39, message(1, b"\x30") + b"\x80") + stream()
    yield "no-picture", bytes(2) + sequence_set()
    yield "nothing", bytes(2) + elementary.filler(40)
    yield "aspect-of-the-table", bytes(2) + stream({"aspect": 2})
    yield "aspect-of-no-code", bytes(2) + stream({"aspect": 40})
    yield "aspect-unspecified", bytes(2) + stream({"aspect": 0})
    yield "ticks", bytes(2) + stream({"clock": (1, 90000)})
    yield "rgb-of-half-colour", bytes(2) + stream({"transfer": 1, "matrix": 0})
    yield "profile-of-no-name", bytes(2) + stream(kind=31)
    yield "rgb", bytes(2) + stream({"transfer": 1, "matrix": 0}, kind=4, chroma=3)
    yield "aspect-stated", bytes(2) + stream({"aspect": 255, "clock": (1001, 60000)})
    yield "unit-of-one-byte", bytes(2) + bytes([0, 0, 0, 1, 66]) + stream()
    sets = video_set() + sequence_set(told={"transfer": 16}) + picture_set()
    frame = unit(39, LIGHT + b"\x80") + slice_of()
    yield "config", framed(hevc_config(sets))
    yield "config-that-ends-early", framed(hevc_config(sets)[:15])
    yield "config-of-a-level", framed(hevc_config(sets)[:13])
    yield "config-cut-before-it", framed(hevc_config(sets)[:12])
    yield "config-of-no-version", framed(b"\2" + hevc_config(sets)[1:])
    yield "config-without-sets", framed(hevc_config(b""), sized(sets + frame))
    yield "config-of-many-units", framed(hevc_config(70 * unit(35, b"\x50")))
    for size_bytes in (1, 2, 4):
        yield f"config-and-sample-{size_bytes}", framed(hevc_config(sets, size_bytes), sized(frame, size_bytes))


def seeds():
    for name, content in h265():
        yield "es_h265", name, elementary.HEAD + content
    for door, streams in (("codec_h264", codec_h264()), ("codec_h265", codec_h265())):
        for name, content in streams:
            yield door, name, content
