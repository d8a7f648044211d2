"""Starts of streams of video, and what sets their decoders up, as containers of films hand them to the readers of a codec."""
from bits import Bits
from chunks import DELIVERED_AS_IT_IS, hole
from elementary import HEAD, SLICE, USER_DATA, group, picture, picture_extension, sequence, sequence_extension, start


# --- MPEG video

def display(width, height, colours=0):
    bits = Bits().put(2, 4).put(1, 3).put(colours, 1).put(0x010101 * colours, 24 * colours)
    return start(0xB5) + bits.put(width, 14).put(1, 1).put(height, 14).bytes()


def fields():
    """The coding extension of a picture that is no progressive frame."""
    return start(0xB5) + Bits().put(8, 4).put(0xFFFF, 16).put(0, 2).put(1, 2).put(0, 10).bytes()


def interlaced(profile=0x48, multiplier=0):
    bits = Bits().put(1, 4).put(profile, 8).put(0, 1).put(2, 2).put(0, 16).put(1, 1).put(0, 9).put(multiplier, 2).put(0, 5)
    return start(0xB5) + bits.bytes()


def mpegvideo():
    frame = picture() + picture_extension() + SLICE
    yield "video-cd", sequence(aspect=8) + group() + picture() + SLICE
    yield "of-any-rate", sequence(rate=0x3FFFF) + USER_DATA + picture(delay=0xFFFF) + SLICE
    yield "header-alone", sequence(aspect=3)
    yield "television", sequence(720, 576, 3) + interlaced() + display(720, 576) + group() + picture() + fields() + SLICE + frame
    yield "middle-of-a-picture", sequence(720, 480, 2) + interlaced(0x85, 1) + display(540, 480, 1) + frame + frame
    yield "square-pixels", sequence(640, 480, 1) + sequence_extension(0x14) + picture(delay=0xFFFF) + SLICE
    yield "above-high-level", sequence(1920, 1088, 4) + sequence_extension(0x42) + frame
    yield "without-a-name", sequence(1920, 1088, 3) + sequence_extension(0x92) + frame
    yield "fastest", sequence(1920, 1088, 3) + sequence_extension(rate=0xFFF) + frame
    yield "begins-anywhere", bytes(9) + b"\5" + fields() + frame + sequence() + sequence_extension(0x08) + frame + sequence() + frame
    yield "damaged-display", sequence(720, 576, 3) + interlaced() + start(0xB5) + b"\x23\1" + display(0, 0) + frame
    yield "ends-in-a-code", sequence() + sequence_extension() + start(0)[:3]


# --- MPEG-4 video

def mpeg4_layer(aspect=1, control=0, identified=0, resolution=25, fixed=1, interlaced=0, size=(352, 288)):
    bits = Bits().put(0, 1).put(1, 8).put(identified, 1).put(2 << 3 | 1, 7 * identified).put(aspect, 4)
    bits.put(0x0C0B, 16 if aspect == 15 else 0).put(control, 1)
    if control:
        bits.put(1, 2).put(0, 1).put(1, 1).put(0xFFFFFFFF, 32).put(0xFFFFFFFF, 32).put(0x7FFF, 15)
    bits.put(0, 2).put(1, 1).put(resolution, 16).put(1, 1).put(fixed, 1).put(1, 5 * fixed)
    return start(0x20) + bits.put(1, 1).put(size[0], 13).put(1, 1).put(size[1], 13).put(1, 1).put(interlaced, 1).put(0, 16).bytes()


MPEG4_SEQUENCE = start(0xB0) + b"\xF5" + start(0xB5) + b"\x09"
MPEG4_PICTURE = start(0xB6) + bytes([0x10]) + 9 * b"\x35"


def mpeg4():
    yield "simple", start(0xB0) + b"\3" + start(0) + mpeg4_layer() + MPEG4_PICTURE
    yield "advanced-simple", MPEG4_SEQUENCE + start(0) + mpeg4_layer(15, 1, 1, interlaced=1) + USER_DATA + group() + MPEG4_PICTURE
    yield "of-any-time", start(5) + mpeg4_layer(fixed=0) + MPEG4_PICTURE
    yield "two-layers", start(0) + mpeg4_layer(size=(0, 288)) + start(0) + mpeg4_layer() + MPEG4_PICTURE
    yield "not-legal", start(0) + mpeg4_layer(0) + MPEG4_PICTURE + start(0) + b"a" + mpeg4_layer() + MPEG4_PICTURE
    yield "without-an-object", mpeg4_layer() + MPEG4_PICTURE
    yield "profile-alone", MPEG4_SEQUENCE + start(0xB0)


# --- Streams of VC-1 as they are pushed

VC1_FRAME = start(0x0D) + b"\0\x12" + 20 * b"\x35"


def vc1_streams():
    yield "progressive", vc1_sequence() + vc1_entry() + VC1_FRAME + VC1_FRAME
    yield "entry-of-a-size", vc1_sequence(buckets=2) + vc1_entry((640, 360), 2) + VC1_FRAME
    yield "user-data", vc1_sequence() + start(0x1F) + b"abc" + vc1_entry() + start(0x1E) + b"abc" + VC1_FRAME
    yield "entry-too-large", vc1_sequence() + vc1_entry((1282, 720)) + VC1_FRAME
    yield "of-another-profile", vc1_sequence(profile=1) + vc1_entry() + VC1_FRAME
    yield "cut", vc1_sequence()[:8] + vc1_entry() + VC1_FRAME
    yield "entry-point-alone", vc1_entry() + VC1_FRAME + vc1_sequence()


# --- Files without a container

def rcv(frames=100, rate=25, structure=0x4E, level=2, constant=0, size=(320, 240)):
    numbers = (frames | 0xC5 << 24, 4, structure, size[1], size[0], 12, level << 29 | constant << 28 | 0x1234, 32000, rate)
    return b"".join(number.to_bytes(4, "little") for number in numbers) + bytes(900)


def constant():
    """MPEG video of 500 kbit/s, pictures as long as they take to arrive."""
    frames = picture(delay=5000) + SLICE
    return sequence(rate=1250) + 4 * (frames + (2500 - len(frames)) * b"\x35")


def files():
    for name, content in videos():
        yield name, content + DELIVERED_AS_IT_IS
    yield "after-the-first-window", bytes(99) + constant() + hole(99, 5, 15)


def videos():
    yield "simple", mpeg4_layer() + start(0) + mpeg4_layer() + MPEG4_PICTURE
    yield "vc-1", vc1_sequence() + vc1_entry() + VC1_FRAME
    yield "constant", constant()
    yield "constant-that-is-not", constant()[:1000] + constant()
    yield "zeros", bytes(99) + constant()
    yield "head", rcv()
    yield "head-of-a-cut-file", rcv(frames=200)
    yield "head-of-a-constant-rate", rcv(frames=0, constant=1)
    yield "head-of-any-rate", rcv(rate=0xFFFFFFFF, level=7)
    yield "head-of-advanced", rcv(structure=0xC0)[:44] + vc1_sequence() + vc1_entry() + VC1_FRAME
    yield "head-without-a-size", rcv(size=(0, 240))


def pushed(streams):
    return [(name, HEAD + stream) for name, stream in streams]


# --- AV1

def unit(kind, content, extension=b""):
    head = Bits().put(0, 1).put(kind, 4).put(1 if extension else 0, 1).put(1, 1).put(0, 1).bytes()
    return head + extension + bytes([len(content) & 127 | 128, len(content) >> 7]) + content


def av1_sequence(profile=0, still=0, clock=None, points=(8,), tools=0, colours=None):
    bits = Bits().put(profile, 3).put(still, 1).put(still, 1)
    if still:
        bits.put(points[0], 5)
    else:
        bits.put(1 if clock else 0, 1)
        model = 0
        if clock:
            units, scale, equal, model = clock
            bits.put(units, 32).put(scale, 32).put(equal, 1)
            if equal:
                bits.ue(1)
            bits.put(model, 1).put(9 * model, 5 * model).put(0, 42 * model)
        bits.put(model, 1).put(len(points) - 1, 5)
        for level in points:
            bits.put(0, 12).put(level, 5).put(0, 1 if level > 7 else 0)
            if model:
                bits.put(1, 1).put(0, 21).put(1, 1).put(5, 4)
    bits.put(11, 4).put(10, 4).put(1919, 12).put(1079, 11)
    if not still:
        bits.put(tools, 1).put(0, 7 * tools)
    bits.put(0, 3)
    if not still and tools:
        bits.put(15, 4).put(1, 1).put(3, 2).put(0, 1).put(1, 1).put(0, 1).put(1, 1).put(6, 3)
    elif not still:
        bits.put(0, 7)
    bits.put(3, 3)
    bits.text += colours.text if colours else "000"
    return unit(1, bits.put(0, 4).bytes())


def described(transfer, deep=1, before=0, primaries=9, matrix=9):
    return Bits().put(deep, 1).put(0, before).put(1, 1).put(primaries, 8).put(transfer, 8).put(matrix, 8).put(0, 1)


DELIMITER = unit(2, b"")
LIGHT = unit(5, bytes([1, 3, 0, 1, 0]))
DYNAMIC = unit(5, bytes([4, 0xB5, 0, 0x3C, 0, 1, 4, 1]))


def av1():
    yield "plain", DELIMITER + av1_sequence() + unit(6, bytes(20))
    yield "of-a-clock", DELIMITER + av1_sequence(clock=(1001, 60000, 1, 1), points=(13, 8, 4), tools=1)
    yield "of-an-uneven-clock", av1_sequence(clock=(1, 90000, 0, 0))
    yield "still", av1_sequence(still=1, points=(24,))
    yield "hdr10", DELIMITER + av1_sequence(colours=described(16, before=1)) + LIGHT
    yield "hdr10-plus", DELIMITER + av1_sequence(colours=described(16, before=1)) + LIGHT + DYNAMIC
    yield "hlg", av1_sequence(colours=described(18, before=1)) + unit(5, bytes([2]) + bytes(24)) + unit(5, b"\x80")
    yield "rgb", av1_sequence(1, colours=described(13, 0, 0, 1, 0))
    yield "twelve-bits", av1_sequence(2, colours=Bits().put(3, 2).put(0, 3).put(2, 2))
    yield "twelve-bits-4-4-4", av1_sequence(2, colours=Bits().put(3, 2).put(0, 3).put(0, 1))
    yield "ten-bits-4-2-2", av1_sequence(2, colours=Bits().put(2, 2).put(0, 3))
    yield "grey", av1_sequence(colours=Bits().put(0, 1).put(1, 1).put(0, 1))
    yield "of-no-profile", av1_sequence(3)
    yield "with-an-extension", unit(2, b"", b"\xFF") + unit(1, b"\0") + av1_sequence()
    yield "size-without-end", b"\x12" + b"\xFF" * 9
    yield "unit-without-size", b"\x10" + av1_sequence()
    yield "configuration", bytes([0x81, 0x05, 0x0C, 0]) + av1_sequence()
    yield "configuration-alone", bytes([0x81, 0x4D, 0xE8, 0])
    yield "configuration-of-no-profile", bytes([0x81, 0x65, 0x0C, 0])


# --- VP8 and VP9

def vp9_frame(profile=0, space=2, depth=0, sampling=0, other=0, sync=0x498342):
    bits = Bits().put(2, 2).put(profile & 1, 1).put(profile >> 1, 1).put(0, 1 if profile == 3 else 0).put(other, 2).put(2, 2)
    bits.put(sync, 24).put(depth, 1 if profile >= 2 else 0).put(space, 3).put(0, 1 if space != 7 else 0)
    if profile & 1:
        bits.put(sampling, 2 if space != 7 else 0).put(0, 1)
    return bits.put(853, 16).put(479, 16).bytes()


def vpx():
    yield "vp8", bytes.fromhex("1002009d012a8002e001") + bytes(8)
    yield "vp8-no-key-frame", bytes.fromhex("1102009d012a8002e001")
    yield "vp8-no-size", bytes.fromhex("1002009d012a00000000")
    yield "vp9", vp9_frame()
    yield "vp9-ten-bits", vp9_frame(2)
    yield "vp9-twelve-bits", vp9_frame(3, depth=1, sampling=2)
    yield "vp9-4-4-0", vp9_frame(1, sampling=1)
    yield "vp9-4-4-4", vp9_frame(1)
    yield "vp9-rgb", vp9_frame(1, space=7)
    yield "vp9-rgb-of-no-profile", vp9_frame(0, space=7)
    yield "vp9-shown-again", vp9_frame(other=2)
    yield "vp9-no-key-frame", vp9_frame(other=1)
    yield "configuration", bytes([1, 0, 0, 0, 2, 51, 0xA2, 9, 16, 9, 0, 0])
    yield "configuration-hlg", bytes([1, 0, 0, 0, 3, 0, 0xC6, 9, 18, 9, 0, 0])
    yield "configuration-of-9-bits", bytes([1, 0, 0, 0, 0, 31, 0x92, 1, 1, 1, 0, 0])
    yield "features", bytes([1, 1, 2, 2, 1, 51, 3, 1, 10, 4, 1, 1, 9, 1, 1])
    yield "features-not-legal", bytes([1, 1, 4, 2, 1, 9, 3, 1, 9, 4, 1, 4, 1, 2, 0, 0])


# --- Theora

def theora(version=0x030201, blocks=(20, 15), size=(318, 238), corner=(2, 1), rate=(25, 1), pixel=(0, 0), nominal=0, shift=6, colours=0):
    bits = Bits().put(version, 24).put(blocks[0], 16).put(blocks[1], 16).put(size[0], 24).put(size[1], 24)
    bits.put(corner[0], 8).put(corner[1], 8).put(rate[0], 32).put(rate[1], 32).put(pixel[0], 24).put(pixel[1], 24)
    return b"\x80theora" + bits.put(0, 8).put(nominal, 24).put(63, 6).put(shift, 5).put(colours, 2).put(0, 3).bytes()


def theoras():
    rest = b"\x81theora" + b"\x82theora"
    yield "cropped", theora()
    yield "largest", theora(blocks=(0xFFFF, 0xFFFF), size=(0xFFFF0, 0xFFFF0), corner=(0, 0))
    yield "beyond-the-frame", theora(corner=(3, 1))
    yield "no-size", theora(size=(0, 238))
    yield "no-rate", theora(rate=(0, 1))
    yield "film", theora(rate=(24000, 1001), pixel=(12, 11), nominal=800000, colours=2)
    yield "counts-from-zero", theora(0x030200, nominal=0xFFFFFF, shift=31, colours=3)
    yield "of-another-version", theora(0x030300)
    yield "colours-of-none", theora(colours=1)
    yield "laced", b"\2\x2A\7" + theora() + rest
    yield "laced-by-a-long-size", b"\2\x2A\xFF\xFF\7" + theora() + rest
    yield "lacing-without-end", b"\2" + b"\xFF" * 60
    yield "after-sizes", b"\0\x2A" + theora() + b"\0\7" + rest


# --- H.263, that of Sorenson, and VP6

def h263_picture(kind=7, custom=6, clock=None, multipoint=0, pixel=1, shape=(0, 0), update=1):
    bits = Bits().put(0x20, 22).put(5, 8).put(2, 2).put(0, 3).put(kind, 3)
    if kind != 7:
        return bits.put(0, 5).put(8, 5).bytes()
    bits.put(update, 3).put(custom, 3).put(1 if clock else 0, 1).put(0, 10).put(8, 4).put(0, 6).put(1, 3)
    bits.put(multipoint, 1).put(0, 2 * multipoint)
    if custom == 6:
        bits.put(pixel, 4).put(159, 9).put(1, 1).put(90, 9)
        if pixel == 15:
            bits.put(shape[0], 8).put(shape[1], 8)
    if clock:
        bits.put(clock[0], 1).put(clock[1], 7)
    return bits.bytes()


def sorenson_picture(size, width=0, height=0):
    bits = Bits().put(1, 17).put(1, 5).put(0, 8).put(size, 3)
    if size < 2:
        bits.put(width, 8 * (size + 1)).put(height, 8 * (size + 1))
    return bits.put(0, 2).put(5, 6).bytes()


def h263():
    yield "qcif", h263_picture(2) + bytes(8)
    yield "of-no-format", h263_picture(6)
    yield "extended-cif", h263_picture(7, 3) + bytes(4)
    yield "extended-no-format", h263_picture(7, 7) + bytes(4)
    yield "goes-on", h263_picture(update=0)
    yield "custom", h263_picture(clock=(1, 60), multipoint=1) + bytes(4)
    yield "custom-pixel", h263_picture(clock=(0, 72), pixel=15, shape=(8, 9))
    yield "custom-pixel-reserved", h263_picture(pixel=9)
    yield "configuration", b"made\0\x0a\0"
    yield "configuration-rates", b"made\0\x2d\3\0\0\0\x10bitr\0\0\xfa\0\0\1\0\0"
    yield "configuration-no-level", b"made\0\xff\0"
    yield "sorenson", sorenson_picture(5)
    yield "sorenson-small", sorenson_picture(0, 200, 100)
    yield "sorenson-large", sorenson_picture(1, 640, 360)
    yield "sorenson-of-no-size", sorenson_picture(7)
    yield "vp6", bytes([0x78, 0x46, 10, 12, 10, 12])
    yield "vp6-interlaced", bytes([0x79, 0x47, 1, 2, 10, 12, 10, 12])


# --- Codecs whose frames stand each for itself: Motion JPEG, DV, ProRes

def jpeg_frame(*before, marker=0xC0, depth=8, size=(48, 64), samplings=(0x22, 0x11, 0x11), fill=b""):
    """The start of a picture with segments before its frame header."""
    components = b"".join(bytes([i + 1, sampling, min(i, 1)]) for i, sampling in enumerate(samplings))
    frame = bytes([depth]) + b"".join(side.to_bytes(2, "big") for side in size) + bytes([len(samplings)]) + components
    segments = (*before, (marker, frame))
    return b"\xFF\xD8" + b"".join(
        b"\xFF" + fill + bytes([kind]) + (len(content) + 2).to_bytes(2, "big") + content for kind, content in segments) + b"\xFF\xDA"


def dv_sequence(lines625=1, application=0, signal=0, display=2, pack=0x60, sound=(0, 0, 0, 0), sound_block=0):
    """The first DIF sequence of a frame, up to the last of its blocks of sound."""
    bytes_ = bytearray(b"\xFF" * 80 * 135)
    bytes_[0:8] = bytes([0x1F, 7, 0, 0xBF if lines625 else 0x3F] + 4 * [0x78 | application])
    bytes_[3 * 80 + 48 : 3 * 80 + 53] = bytes([pack, 0xFF, 0xFF, 0x20 * lines625 | signal, 0xFF])
    bytes_[5 * 80 + 73 : 5 * 80 + 78] = bytes([0x61, 0x3F, 0xC8 | display, 0xFC, 0xFF])
    two, mode, rate, bits = sound
    at = (6 + 16 * sound_block) * 80 + 3
    bytes_[at : at + 5] = bytes([0x50, 0xD7, two << 5 | mode, 0xC0, 0xC0 | rate << 3 | bits])
    return bytes(bytes_)


def prores_frame(chroma=2, fields=0, aspect=2, rate=3, framed=True, header=148, size=(64, 48)):
    content = header.to_bytes(2, "big") + b"\0\0made" + size[0].to_bytes(2, "big") + size[1].to_bytes(2, "big")
    content += bytes([chroma << 6 | fields << 2, aspect << 4 | rate, 2, 2, 6, 0])
    return (b"\0\0\1\0icpf" if framed else b"") + content


def intra():
    yield "jpeg", jpeg_frame()
    yield "jpeg-filled", jpeg_frame(fill=b"\xFF\xFF")
    yield "jpeg-grey", jpeg_frame(samplings=(0x11,))
    yield "jpeg-4-2-2", jpeg_frame(samplings=(0x21, 0x11, 0x11))
    yield "jpeg-unlike", jpeg_frame(samplings=(0x22, 0x11, 0x21))
    yield "jpeg-four-planes", jpeg_frame(samplings=(0x11, 0x11, 0x11, 0x11))
    yield "jpeg-12-bits", jpeg_frame((0xC4, b"\0" + 16 * b"\0"), (0xCC, b""), (0xC8, b""), marker=0xC1, depth=12)
    yield "jpeg-few-bits", jpeg_frame(marker=0xC3, depth=4)
    yield "jpeg-of-no-size", jpeg_frame(size=(0, 64))
    yield "jpeg-scan-first", jpeg_frame(marker=0xDA)
    for name, polarity in (("whole", 0), ("fields", 1)):
        yield f"jpeg-avi-{name}", jpeg_frame((0xE0, b"AVI1" + bytes([polarity]) + 11 * b"\0"))
        yield f"jpeg-mjpg-{name}", jpeg_frame((0xE1, b"\0\0\0\0mjpg\0\0\1\0\0\0\1\0\0\0" + bytes([polarity]) + b"\0" * 20))
    yield "jpeg-other-segments", jpeg_frame((0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0"), (0xE1, b"Exif\0\0"))
    yield "jpeg-short-segment", jpeg_frame((0xE0, b"AVI1"))
    for name, signal in (("25", 0), ("50", 4), ("100-lines-1080", 0x14), ("100-lines-720", 0x18), ("reserved", 9)):
        yield f"dv-{name}", dv_sequence(signal=signal)
        yield f"dv-{name}-60", dv_sequence(0, 1, signal, 0)
    yield "dv-wide-of-consumers", dv_sequence(display=7)
    yield "dv-professional", dv_sequence(application=1, display=7)
    yield "dv-no-source", dv_sequence(pack=0x62)
    for name, sound in (("two", (1, 0, 2, 1)), ("none", (0, 15, 0, 0)), ("20-bits", (0, 0, 1, 2)), ("rate-reserved", (0, 0, 3, 0)),
                        ("bits-reserved", (0, 0, 0, 3))):
        yield f"dv-sound-{name}", dv_sequence(sound=sound, sound_block=8)
    yield "dv-cut", dv_sequence()[:480]
    yield "prores", prores_frame()
    yield "prores-unframed", prores_frame(3, 1, 1, 11, False)
    yield "prores-reserved", prores_frame(2, 3, 4, 12)
    yield "prores-chroma-reserved", prores_frame(1)
    yield "prores-of-no-size", prores_frame(size=(0, 48))
    yield "prores-short-header", prores_frame(header=19)


# --- VC-1

def vc1_sequence(profile=3, level=2, chroma=1, size=(1280, 720), interlaced=0, segmented=0, display=None, pixel=None, rate=None,
                 colours=0, buckets=0):
    bits = Bits().put(profile, 2).put(level, 3).put(chroma, 2).put(0, 9).put(size[0] // 2 - 1, 12).put(size[1] // 2 - 1, 12)
    bits.put(0, 1).put(interlaced, 1).put(1, 3).put(segmented, 1).put(1 if display else 0, 1)
    if display:
        bits.put(display[0] - 1, 14).put(display[1] - 1, 14).put(0 if pixel is None else 1, 1)
        if pixel is not None:
            bits.put(*((pixel, 4) if isinstance(pixel, int) else (15 << 16 | pixel[0] << 8 | pixel[1], 20)))
        bits.put(1 if rate else 0, 1)
        if rate:
            bits.put(*((1 << 16 | rate, 17) if isinstance(rate, int) else (rate[0] << 4 | rate[1], 13)))
        bits.put(colours, 1).put(0x010101 * colours, 24 * colours)
    bits.put(1 if buckets else 0, 1)
    if buckets:
        bits.put(buckets, 5).put(0, 8)
        for _ in range(buckets):
            bits.put(0x12345678, 32)
    return start(0x0F) + bits.put(1, 1).bytes()


def vc1_entry(size=None, buckets=0):
    bits = Bits().put(0, 13).put(0, 8 * buckets).put(1 if size else 0, 1)
    if size:
        bits.put(size[0] // 2 - 1, 12).put(size[1] // 2 - 1, 12)
    return start(0x0E) + bits.put(1, 1).bytes()


def vc1():
    frame = start(0x0D) + b"\x12\x34"
    field = start(0x0D) + b"\xC2\x34"
    yield "plain", b"\x29" + vc1_sequence() + vc1_entry()
    yield "entry-of-a-size", vc1_sequence(buckets=2) + vc1_entry((640, 360), 2) + frame
    yield "entry-too-large", vc1_sequence() + vc1_entry((1282, 720))
    yield "pixels-of-the-table", vc1_sequence(display=(1280, 720), pixel=2, rate=(3, 2), colours=1)
    yield "pixels-reserved", vc1_sequence(display=(1280, 720), pixel=14, rate=(9, 1))
    yield "pixels-stated", vc1_sequence(display=(1280, 720), pixel=(63, 44), rate=399)
    yield "pixels-of-the-display", vc1_sequence(size=(1440, 1080), display=(1920, 1080), rate=(1, 3))
    yield "display-alike", vc1_sequence(size=(1920, 1088), display=(1920, 1080))
    yield "frames", vc1_sequence(interlaced=1) + vc1_entry() + frame + frame
    yield "fields", vc1_sequence(interlaced=1) + vc1_entry() + frame + field
    yield "segmented", vc1_sequence(interlaced=1, segmented=1) + frame + start(0x0D)
    yield "not-a-level", vc1_sequence(level=5)
    yield "not-a-chroma", vc1_sequence(chroma=2)
    yield "cut", vc1_sequence(display=(640, 480), buckets=31)[:30]
    yield "simple", b"\x0F\xF1\x80\x01"
    yield "main-of-a-level", b"\x44\xF1\x80\x01"
    yield "main-of-no-level", b"\x4E\x39\x0A\x01\x00"
    yield "complex", b"\x8F\xF1\x80\x01"
    yield "configuration", b"\xC4\x40\x04\x00\x00\x61\xA8" + vc1_sequence()
    yield "configuration-alone", b"\xC4\x40\x04\x00\x00\x61\xA8"
    yield "configuration-of-no-level", b"\xCA" + bytes(12)


# One a line: changes to several doors meet here.
DOORS = (
    ("codec_mpegvideo", mpegvideo),
    ("codec_av1", av1),
    ("codec_vc1", vc1),
    ("codec_vpx", vpx),
    ("codec_theora", theoras),
    ("codec_h263", h263),
    ("codec_intra", intra),
    ("codec_mpeg4", mpeg4),
    ("es_mpeg4", lambda: pushed(mpeg4())),
    ("es_vc1", lambda: pushed(vc1_streams())),
    ("format_videostream", files),
)


def seeds():
    for door, streams in DOORS:
        for name, stream in streams():
            yield door, name, stream
