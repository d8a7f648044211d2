"""Seeds of the elementary streams. Each is the head that says how it is pushed, and a stream."""
from bits import Bits

# Played once, a loss at 40, in packets of 3, 188, 7 and 1 bytes.
HEAD = bytes([0, 40, 0, 4, 3, 188, 7, 1])


def filler(size):
    """Bytes that hold no header and do not repeat themselves."""
    return bytes((11 * i + 5) % 199 for i in range(size))


# --- What wraps a stream, and what only looks like one


def pack(mpeg2=True, stuffing=0):
    head = b"\0\0\1\xBA"
    if not mpeg2:
        return head + b"\x21\0\1\0\1\x80\0\1"
    return head + b"\x44\0\4\0\4\1\0\0\3" + bytes([0xF8 | stuffing]) + b"\xFF" * stuffing


def packet(content):
    return b"\0\0\1\xBD" + len(content).to_bytes(2, "big") + content


def wrapped(frames):
    """In programs of both kinds, and in transport packets; what is after the wrapping is found."""
    yield "in-a-program", pack(True, 2) + packet(frames) + b"\0\0" + pack() + packet(frames) + b"\0\0\1\xB9" + frames
    yield "in-an-mpeg1-program", pack(False) + packet(frames) + b"\0\0\1\xB9"
    yield "after-what-is-no-program", (pack()[:-1] + b"\x10" + b"\0\0\1\xBA\x24\0\0\0\0\0\0\0\0\0" + pack() + b"\7"
                                        + pack() + b"\0\1" + pack() + b"\0\0\1\xE0\0\0" + frames)
    packets = b"".join(b"\x47" + bytes(7) + (frames * 9)[180 * i : 180 * i + 180] for i in range(5))
    yield "in-a-transport", packets + frames + frames
    yield "after-a-transport", 4 * (b"\x47" + filler(187)) + 9 * frames


# --- AC-3

AC3_KILOBITS = [32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 448, 512, 576, 640]


def ac3_frame(rate=0, size=0, version=8, mode=2, low=0):
    bits = Bits().put(rate, 2).put(size, 6).put(version, 5).put(0, 3).put(mode, 3)
    for present in (mode % 2 == 1 and mode != 1, mode >= 4, mode == 2):
        bits.put(0, 2 if present else 0)
    head = b"\x0B\x77\0\0" + bits.put(low, 1).bytes()
    words = AC3_KILOBITS[size // 2] * 96000 // [48000, 44100, 32000][rate] + (rate == 1 and size % 2)
    return head + bytes(2 * words - len(head))


def ac3():
    yield "two-programmes", 2 * ac3_frame(mode=0)
    yield "mono", 2 * ac3_frame(mode=1)
    yield "three-fronts", 2 * ac3_frame(mode=3)
    yield "44-khz-of-both-sizes", ac3_frame(1, 1) + ac3_frame(1, 0) + ac3_frame(1, 1)
    yield "32-khz", 2 * ac3_frame(2)
    yield "half-rate", 2 * ac3_frame(version=9)
    yield "quarter-rate", 2 * ac3_frame(version=10)
    others = [b"\x0B\x77\0\0\xC0\x40\x40\0", b"\x0B\x77\0\0\0\x58\x40\0"]
    yield "after-what-is-no-header", b"".join(others) + 2 * ac3_frame()
    yield "changes-its-channels", ac3_frame() + 2 * ac3_frame(mode=7)
    yield from wrapped(2 * ac3_frame())


# --- E-AC-3


def eac3_frame(stream=0, substream=0, words=32, rate=0, blocks=3, mode=2, low=0, version=16):
    bits = Bits().put(stream, 2).put(substream, 3).put(words - 1, 11).put(rate, 2).put(blocks, 2).put(mode, 3)
    head = b"\x0B\x77" + bits.put(low, 1).put(version, 5).put(0, 3).bytes()
    return head + bytes(2 * words - len(head))


def eac3():
    yield "stereo", 2 * eac3_frame()
    yield "five-channels-and-low-frequencies", 2 * eac3_frame(mode=7, low=1)
    yield "one-block", 2 * eac3_frame(blocks=0)
    yield "half-rate", 2 * eac3_frame(rate=3, blocks=1)
    yield "44-khz-of-two-sizes", eac3_frame(rate=1) + eac3_frame(rate=1, words=40)
    yield "with-channels-added", eac3_frame() + eac3_frame(stream=1) + eac3_frame()
    yield "begins-with-channels-added", eac3_frame(stream=1) + eac3_frame()
    yield "of-two-programmes", eac3_frame() + eac3_frame(substream=1) + eac3_frame()
    others = eac3_frame(stream=3) + eac3_frame(version=17) + eac3_frame(rate=3, blocks=3)
    yield "after-what-is-no-header", others + 2 * eac3_frame()
    yield from wrapped(2 * eac3_frame())


# --- ADTS


def adts_frame(size, mpeg2=1, check_sum=0, profile=1, rate=4, channels=2):
    bits = Bits().put(0xFFF, 12).put(mpeg2, 1).put(0, 2).put(1 - check_sum, 1).put(profile, 2).put(rate, 4)
    bits.put(0, 1).put(channels, 3).put(0, 4).put(size, 13).put(0x7FF, 11).put(0, 2)
    head = bits.bytes()
    return head + filler(size - len(head))


def adts():
    yield "mpeg-2", adts_frame(40) + adts_frame(52)
    yield "mpeg-4-long-term-prediction", 2 * adts_frame(40, mpeg2=0, profile=3)
    yield "check-sums", 2 * adts_frame(40, check_sum=1)
    yield "channels-in-the-stream", 2 * adts_frame(40, channels=0)
    others = [b"\xFF\xF1\x74\x80\5\0\0", b"\xFF\xF9\xD0\x80\5\0\0"]
    yield "after-what-is-no-header", b"".join(others) + 2 * adts_frame(40)
    yield "mpeg-2-main", 2 * adts_frame(40, profile=0, rate=12, channels=7)


# --- MPEG audio


def mpeg_frame(size, version=3, layer=1, rate=9, frequency=0, padding=0, mode=0, body=None):
    bits = Bits().put(0x7FF, 11).put(version, 2).put(layer, 2).put(1, 1).put(rate, 4).put(frequency, 2).put(padding, 1)
    head = bits.put(0, 1).put(mode, 2).put(0, 4).bytes()
    body = filler(size) if body is None else body
    return head + (body + filler(size))[: size - 4]


def mpeg_audio():
    yield "layer-1", 2 * mpeg_frame(12 * 32000 // 44100 * 4, layer=3, rate=1)
    yield "layer-1-padded", 2 * mpeg_frame(12 * 32000 // 44100 * 4 + 4, layer=3, rate=1, padding=1)
    yield "layer-2", 2 * mpeg_frame(144 * 32000 // 44100, layer=2, rate=1)
    yield "mpeg-2", 2 * mpeg_frame(72 * 8000 // 22050, version=2, rate=1)
    yield "mpeg-2-mono", 2 * mpeg_frame(72 * 8000 // 22050, version=2, rate=1, mode=3)
    yield "mpeg-2-layer-2", 2 * mpeg_frame(144 * 8000 // 22050, version=2, layer=2, rate=1)
    yield "mpeg-2-5", 2 * mpeg_frame(72 * 8000 // 11025, version=0, rate=1)
    yield "mono", 2 * mpeg_frame(144 * 32000 // 44100, rate=1, mode=3)
    yield "constant-rate", 2 * mpeg_frame(144 * 32000 // 44100, rate=1)
    yield "rate-changes", mpeg_frame(144 * 32000 // 44100, rate=1) + mpeg_frame(144 * 40000 // 44100, rate=2)
    vbri = mpeg_frame(144 * 64000 // 44100, rate=5, body=bytes(32) + b"VBRI" + bytes(22))
    yield "vbri", vbri + mpeg_frame(144 * 64000 // 44100, rate=5)
    free = [mpeg_frame(800 + padding, rate=0, padding=padding, body=bytes([i]) + filler(800))
            for i, padding in enumerate((1, 0, 1, 0, 1))]
    yield "free-format-padded", b"".join(free)
    xing = mpeg_frame(144 * 64000 // 44100, rate=5, body=bytes(32) + b"Xing" + bytes(22))
    yield "xing", xing + mpeg_frame(144 * 64000 // 44100, rate=5)
    others = [b"\xFF\xEB\x90\0", b"\xFF\xFB\x9C\0", b"\xFF\xFB\x90\2", b"\xFF\xE5\x90\0"]
    yield "after-what-is-no-header", b"".join(others) + 2 * mpeg_frame(144 * 32000 // 44100, rate=1)
    once = 144 * 32000 // 44100
    yield "stereo-then-mono", mpeg_frame(once, rate=1) + 2 * mpeg_frame(once, rate=1, mode=3)
    yield "layer-2-changes-its-rate", (mpeg_frame(once, layer=2, rate=1) + mpeg_frame(144 * 48000 // 44100, layer=2, rate=2)
                                       + mpeg_frame(once, layer=2, rate=1))
    yield "states-a-rate-once", mpeg_frame(once, rate=1) + mpeg_frame(once, rate=0) + mpeg_frame(once, rate=1)
    yield "free-format-repeats-itself", 5 * mpeg_frame(800, rate=0)
    uneven = [mpeg_frame(size, rate=0, body=bytes([i])) for i, size in enumerate((700, 800, 700, 5000, 900))]
    yield "free-format-of-uneven-frames", b"".join(uneven)


# --- MPEG video


def start(code):
    return bytes([0, 0, 1, code])


def sequence(width=352, height=288, aspect=1, rate=0x1000, matrices=0):
    bits = Bits().put(width & 4095, 12).put(height & 4095, 12).put(aspect, 4).put(3, 4).put(rate, 18).put(1, 1)
    bits.put(20, 10).put(0, 1)
    for _ in range(2):
        bits.put(matrices, 1)
        for i in range(64 * matrices):
            bits.put(8 + i, 8)
    return start(0xB3) + bits.bytes()


def sequence_extension(profile=0x48, width=0, height=0, rate=0):
    bits = Bits().put(1, 4).put(profile, 8).put(1, 1).put(1, 2).put(width, 2).put(height, 2).put(rate, 12).put(1, 1)
    return start(0xB5) + bits.put(0, 16).bytes()


def group():
    return start(0xB8) + Bits().put(0, 1).put(0, 11).put(1, 1).put(0, 12).put(2, 2).bytes()


def picture(kind=1, delay=0x1000, code=1):
    bits = Bits().put(0, 10).put(kind, 3).put(delay, 16)
    for _ in range({2: 1, 3: 2}.get(kind, 0)):
        bits.put(code, 4)
    return start(0) + bits.put(0, 1).bytes()


def picture_extension(composite=0, ranges=0xFFFF):
    bits = Bits().put(8, 4).put(ranges, 16).put(0, 2).put(3, 2).put(0, 9).put(composite, 1).put(0, 20 * composite)
    return start(0xB5) + bits.bytes()


SLICE = start(1) + filler(8)
USER_DATA = start(0xB2) + b"ours"


def mpeg_video():
    yield "mpeg1-matrices", sequence(matrices=1) + group() + picture() + SLICE
    yield "mpeg1-without-group", sequence() + picture() + SLICE
    yield "mpeg1-variable-rate", sequence(rate=0x3FFFF) + picture(delay=0xFFFF) + SLICE
    yield "mpeg1-predicted", sequence() + picture(2) + SLICE
    yield "mpeg1-bidirectional", sequence() + picture(3) + SLICE
    yield "mpeg1-dc-only", sequence() + picture(4) + SLICE
    yield "mpeg1-user-data", sequence() + USER_DATA + group() + USER_DATA + picture() + USER_DATA + SLICE
    yield "two-sequences", sequence() + sequence(176, 144) + group() + picture() + SLICE
    tail = picture_extension() + SLICE
    mpeg2 = sequence() + sequence_extension()
    yield "mpeg2-predicted", mpeg2 + picture(2, code=7) + tail
    yield "mpeg2-bidirectional", mpeg2 + picture(3, code=7) + tail
    yield "mpeg2-composite", mpeg2 + picture() + picture_extension(1) + SLICE
    yield "mpeg2-ranges-used", mpeg2 + picture(3, code=7) + picture_extension(0, 0x1122) + SLICE
    yield "mpeg2-4-2-2-profile", sequence() + sequence_extension(0x85) + picture() + tail
    display = start(0xB5) + Bits().put(2, 4).put(0, 4).put(0, 32).bytes()
    scalable = start(0xB5) + Bits().put(5, 4).put(0, 36).bytes()
    later = [start(0xB5) + Bits().put(kind, 4).put(0, 36).bytes() for kind in (3, 4, 7, 9, 10)]
    yield "mpeg2-all-extensions", (mpeg2 + display + scalable + USER_DATA + group() + picture() + picture_extension()
                                   + b"".join(later) + USER_DATA + SLICE)
    yield "mpeg2-variable-delay", mpeg2 + picture(delay=0xFFFF) + tail
    yield "mpeg2-variable-rate", sequence(rate=0x3FFFF) + sequence_extension() + picture(delay=0xFFFF) + tail
    yield "mpeg2-rate-of-both-parts", sequence(rate=0x3FFFF) + sequence_extension(rate=1) + picture() + tail
    # A rate that 32 bits of bits a second cannot say.
    yield "mpeg2-fastest", sequence() + sequence_extension(rate=0xFFF) + picture() + tail
    yield "mpeg2-fastest-variable", sequence() + sequence_extension(rate=0xFFF) + picture(delay=0xFFFF) + tail
    yield "mpeg2-taller-than-its-codes", sequence(1920, 2816) + sequence_extension() + picture() + tail
    yield "mpeg2-large", sequence(0, 16) + sequence_extension(width=1, height=0) + picture() + tail
    after = sequence() + picture() + SLICE
    yield "after-what-is-no-profile", sequence() + sequence_extension(0x68) + sequence() + sequence_extension(0x41) + after
    yield "after-what-is-no-size", (sequence(352, 0) + sequence(aspect=0) + sequence(aspect=15) + sequence(rate=0)
                                     + sequence()[:7] + b"\x10" + bytes(4) + start(0xB3) + sequence()[4:7] + b"\x13\1\0\0\0"
                                     + after)
    yield "after-headers-out-of-order", (mpeg2 + picture() + USER_DATA + sequence() + group() + picture_extension()
                                          + sequence() + sequence_extension() + picture() + SLICE
                                          + mpeg2 + later[0] + sequence() + USER_DATA + display
                                          + sequence() + picture() + picture_extension()
                                          + mpeg2 + picture() + picture_extension(0, 0xAAAA) + sequence() + start(0xB5)
                                          + sequence()[:-1] + b"\7" + sequence() + sequence_extension() + display + b"\1"
                                          + mpeg2 + picture() + picture_extension() + display
                                          + sequence()[:-1] + bytes(300) + b"\5" + filler(9) + mpeg2 + picture() + picture_extension()
                                          + start(0xB5) + b"\x60" + after)
    yield "slice-below-the-picture", sequence() + picture() + start(0x40) + filler(8) + SLICE
    yield from wrapped(after)
    yield "zeros-before-codes", sequence() + bytes(5) + picture() + bytes(40) + SLICE


# --- H.264


def unit(kind, content):
    """With an escape wherever one is needed."""
    escaped, zeros = bytearray(), 0
    for byte in content:
        if zeros == 2 and byte <= 3:
            escaped.append(3)
            zeros = 0
        escaped.append(byte)
        zeros = zeros + 1 if byte == 0 else 0
    return bytes([0, 0, 0, 1, kind]) + bytes(escaped)


def scaling(bits, lists):
    """One list whose scale ends early, one that is all there, and one of the large; none for the others."""
    bits.put(1, 1).se(-8)
    bits.put(1, 1)
    for _ in range(16):
        bits.se(1)
    bits.put(0, 4)
    if lists > 6:
        bits.put(1, 1).se(-8).put(0, lists - 7)


def buffer_description(bits, rate, constant, count=1):
    bits.put(1, 1).ue(count - 1).put(2, 4).put(0, 4)
    for _ in range(count):
        bits.ue(rate).ue(100).put(constant, 1)
    bits.put(0, 20)


def usability(bits, everything, rates=(), shape=0, plain=0):
    bits.put(everything or shape, 1)
    if everything:
        bits.put(255, 8).put(0, 32)
    elif shape:
        bits.put(shape, 8)
    bits.put(everything, 1).put(0, everything)  # overscan
    bits.put(everything or plain, 1)
    if everything:
        bits.put(5 << 1, 4).put(1, 1).put(0x010101, 24)
    elif plain:
        bits.put(5 << 1, 4).put(0, 1)
    bits.put(everything, 1)
    if everything:
        bits.ue(0).ue(0)
    bits.put(everything, 1)
    if everything:
        bits.put(1, 32).put(50, 32).put(1, 1)
    for i in range(2):
        if i < len(rates) and rates[i] is not None:
            buffer_description(bits, *rates[i])
        else:
            bits.put(0, 1)
    bits.put(0, 1 if rates else 0).put(0, 1).put(everything, 1)
    if everything:
        bits.put(1, 1)
        for _ in range(6):
            bits.ue(1)


def sequence_set(profile=66, number=0, chroma=None, planes=0, lists=0, order=0, fields=0, crop=None, rates=None,
                 everything=0, side=11, high=9, shape=0, plain=0):
    bits = Bits().put(profile, 8).put(0, 8).put(30, 8).ue(number)
    if chroma is not None:
        bits.ue(chroma)
        if chroma == 3:
            bits.put(planes, 1)
        bits.ue(0).ue(0).put(0, 1).put(lists, 1)
        if lists:
            scaling(bits, 12 if chroma == 3 else 8)
    bits.ue(0).ue(order)
    if order == 0:
        bits.ue(0)
    elif order == 1:
        bits.put(0, 1).se(0).se(-1).ue(2).se(1).se(2)
    bits.ue(1).put(0, 1).ue(side - 1).ue(high - 1).put(1 - fields, 1)
    bits.put(0, fields).put(1, 1)
    bits.put(crop is not None, 1)
    for edge in crop or ():
        bits.ue(edge)
    bits.put(rates is not None, 1)
    if rates is not None:
        usability(bits, everything, rates, shape, plain)
    return unit(0x67, bits.ended())


def groups_of(bits, kind):
    """Three groups of slices."""
    bits.ue(2).ue(kind)
    if kind == 0:
        bits.ue(0).ue(1).ue(2)
    elif kind == 2:
        bits.ue(0).ue(1).ue(2).ue(3)
    elif kind in (3, 4, 5):
        bits.put(0, 1).ue(1)
    elif kind == 6:
        bits.ue(3).put(0, 8)


def picture_set(number=0, of=0, groups=None, large=None, lists=0, chroma=1):
    bits = Bits().ue(number).ue(of).put(0, 2)
    if groups is None:
        bits.ue(0)
    else:
        groups_of(bits, groups)
    bits.ue(0).ue(0).put(0, 1).put(0, 2).se(0).se(0).se(0).put(0, 3)
    if large is not None:
        bits.put(large, 1).put(lists, 1)
        if lists:
            scaling(bits, 6 + ((6 if chroma == 3 else 2) if large else 0))
        bits.se(0)
    return unit(0x68, bits.ended())


def slice_of(instant=1, number=0, planes=0, field=None, order=4, kind=7, frame=0, first=0, plane=0):
    bits = Bits().ue(first).ue(kind).ue(number).put(plane, 2 * planes).put(frame, 4)
    if field is not None:
        bits.put(field, 1).put(0, field)
    if instant:
        bits.ue(instant)
    bits.put(3, order)
    return unit(0x65 if instant else 0x41, bits.bytes() + filler(12))


def h264():
    yield "order-in-a-cycle", sequence_set(order=1) + picture_set() + slice_of(order=0)
    yield "order-of-decoding", sequence_set(order=2) + picture_set() + slice_of(order=0)
    yield "not-instant", sequence_set() + picture_set() + slice_of(0, kind=5)
    yield "switching-slice", sequence_set(88) + picture_set() + slice_of(kind=4)
    yield "reserved-slice-of-no-reference", (sequence_set() + picture_set() + bytes([0, 0, 1, 5]) + filler(9)
                                             + slice_of())
    yield "fields", sequence_set(77, fields=1, crop=(0, 4, 0, 2)) + picture_set() + slice_of(field=1)
    yield "frames-of-fields", sequence_set(77, fields=1) + picture_set() + slice_of(field=0)
    yield "cropped", sequence_set(crop=(1, 1, 0, 1)) + picture_set() + slice_of()
    for name, chroma in (("grey", 0), ("colour-4-2-2", 2), ("colour-4-4-4", 3)):
        yield name, sequence_set(244, chroma=chroma, crop=(0, 3, 1, 0)) + picture_set() + slice_of()
    yield "planes", sequence_set(244, chroma=3, planes=1, crop=(0, 3, 1, 0)) + picture_set() + slice_of(planes=1)
    yield "lists-4-2-0", (sequence_set(100, chroma=1, lists=1) + picture_set(large=1, lists=1)
                          + slice_of())
    yield "lists-4-4-4", (sequence_set(244, chroma=3, lists=1) + picture_set(large=1, lists=1, chroma=3)
                          + slice_of())
    yield "small-lists-alone", sequence_set(100, chroma=1) + picture_set(large=0, lists=1) + slice_of()
    yield "large-without-lists", sequence_set(100, chroma=1) + picture_set(large=1) + slice_of()
    for kind in range(7):
        yield f"slice-groups-{kind}", sequence_set() + picture_set(groups=kind) + slice_of()
    yield "usability-empty", sequence_set(rates=()) + picture_set() + slice_of()
    yield "usability-full", sequence_set(rates=((999, 0, 2), (888, 0)), everything=1) + picture_set() + slice_of()
    yield "constant-rate", sequence_set(rates=((999, 1),)) + picture_set() + slice_of()
    # Rates that 32 bits of bits a second cannot say.
    fast = 0xFFFFFFF
    yield "fastest-constant", sequence_set(rates=((fast, 1),)) + picture_set() + slice_of()
    yield "fastest-variable", sequence_set(rates=((fast, 0),)) + picture_set() + slice_of()
    yield "shape-from-a-table", sequence_set(rates=(), shape=1) + picture_set() + slice_of()
    yield "colours-by-default", sequence_set(rates=(), shape=1, plain=1) + picture_set() + slice_of()
    yield "buffer-of-slices", sequence_set(rates=(None, (888, 0))) + picture_set() + slice_of()
    after = sequence_set() + picture_set() + slice_of()
    yield "after-other-profiles", (sequence_set(99) + sequence_set()[:7] + b"\x63" + sequence_set()[8:]
                                    + sequence_set(crop=(99, 0, 0, 0)) + sequence_set(77, fields=1, side=1024, high=1024)
                                    + sequence_set(side=1024, high=1024) + unit(0x67, bytes(9)) + unit(0x68, b"")
                                    + unit(0x67, b"\x42\0\x1E\xFF\xFF\xFF") + after)
    yield "after-a-slice-of-no-picture", (sequence_set() + picture_set() + slice_of(kind=10) + slice_of(number=256)
                                           + slice_of(number=3) + slice_of(kind=5) + slice_of(frame=1) + slice_of(first=999)
                                           + unit(0x65, b"\x88") + slice_of(instant=70000) + slice_of())
    yield "after-planes-of-no-colour", (sequence_set(244, chroma=3, planes=1) + picture_set()
                                         + slice_of(planes=1, plane=3) + slice_of(planes=1, kind=10)
                                         + slice_of(planes=1))
    unescaped = bytes([0, 0, 0, 1, 0x67, 66, 0, 0, 2, 0xFF])
    yield "after-units-not-escaped", (unescaped + bytes([0, 0, 0, 1, 0x67, 66, 0, 0, 3, 9]) + bytes([0, 0, 0, 1, 0x67, 66])
                                       + bytes(4) + b"\5" + sequence_set() + picture_set()
                                       + bytes([0, 0, 0, 1, 0x65, 0x88, 0, 0, 2]) + bytes([0, 0, 0, 1, 0x65]) + bytes(40)
                                       + sequence_set()[:-1] + bytes([0xF1] * 700) + after)
    yield from wrapped(after)
    yield "several-sets", (sequence_set() + sequence_set(number=1, side=22) + sequence_set(side=22) + picture_set()
                           + picture_set(1, 1) + unit(6, b"\x05\x01x\x80") + slice_of(number=1))


def seeds():
    for door, streams in (("es_ac3", ac3()), ("es_eac3", eac3()), ("es_adts", adts()), ("es_mpeg_audio", mpeg_audio()),
                          ("es_mpeg_video", mpeg_video()), ("es_h264", h264())):
        for name, stream in streams:
            yield door, name, HEAD + stream
