"""Seeds of files of frames without a container."""
from elementary import ac3_frame, eac3_frame
from music import DELIVERED_AS_IT_IS, delivered, id3, n, text23

TAG = id3(text23(b"TIT2", b"\0Title"))


def adts_frame(size=40, fixed=0xFFF1508, blocks=1):
    return n(fixed << 28 | size << 13 | 0x7FF << 2 | blocks - 1, 7) + b"1" * (size - 7)


def varying(count=60, least=20):
    return b"".join(adts_frame(least + i * 7 % 11) for i in range(count))


def adts():
    yield "one-size", 40 * adts_frame()
    yield "varying", varying()
    yield "check-sums-and-blocks", 9 * adts_frame(30, 0xFFF0508, 4)
    yield "mpeg-2-main-in-mono", 9 * adts_frame(30, 0xFFF9144)
    yield "after-a-tag", TAG + bytes(9) + varying(9) + b"TAG" + bytes(125)
    yield "after-junk", b"junk" + varying(9)
    yield "not-after-too-little", b"junk" + varying(7)
    yield "not-where-flac-is", b"fLaC and more" + varying(9)
    yield "three-frames", 3 * adts_frame()
    yield "not-three-frames", 3 * adts_frame() + b"more"


def dependent(words=20, chanmap=0x1A00):
    head = n(0x0B77 << 16 | 1 << 14 | words - 1, 4) + n(0x3C, 1) + n(16 << 27 | 1 << 20 | chanmap << 4, 4)
    return head + bytes(2 * words - len(head))


def swapped(content):
    return b"".join(content[i + 1 : i + 2] + content[i : i + 1] for i in range(0, len(content), 2))


def ac3():
    yield "stereo", 9 * ac3_frame()
    yield "swapped", 9 * swapped(ac3_frame(mode=7))
    yield "44-khz", 4 * (ac3_frame(1, 1) + ac3_frame(1, 0))
    yield "enhanced", 9 * eac3_frame()
    yield "seven-and-one", 9 * (eac3_frame(mode=7, low=1) + dependent())
    yield "seven-and-one-on-ac3", 9 * (ac3_frame(mode=7, low=1) + dependent())
    yield "two-programmes", 9 * (eac3_frame() + eac3_frame(substream=1) + dependent())
    yield "two-monos-with-a-map", 9 * (eac3_frame(mode=0) + dependent(chanmap=0))
    yield "after-a-tag", TAG + 5 * ac3_frame()
    yield "not-in-a-program", b"\0\0\1\xBA" + 9 * ac3_frame()


def speech(kind, size):
    return bytes([kind << 3 | 4]) + b"U" * (size - 1)


def amr():
    talk = 3 * speech(7, 32) + speech(8, 6) + 2 * speech(15, 1)
    yield "narrow", b"#!AMR\n" + 9 * speech(7, 32)
    yield "narrow-with-pauses", b"#!AMR\n" + 9 * talk
    yield "wide", b"#!AMR-WB\n" + 9 * speech(2, 33) + speech(14, 1) + speech(9, 6)
    yield "two-channels", b"#!AMR_MC1.0\n" + n(2, 4) + 8 * speech(0, 13)
    yield "wide-of-six-channels", b"#!AMR-WB_MC1.0\n" + n(6, 4) + 12 * speech(0, 18)
    yield "not-of-0-channels", b"#!AMR_MC1.0\n" + n(0, 4) + 8 * speech(0, 13)
    yield "not-of-reserved-types", b"#!AMR\n" + 9 * speech(9, 1)
    yield "not-with-half-a-description", b"#!AMR_MC1.0\n\0"
    yield "not-amr", b"#!AMP"
    yield "no-frames", b"#!AMR\n"


def bits(*fields):
    """(value, count of bits) each, filled up to whole bytes."""
    number = length = 0
    for value, count in fields:
        number, length = number << count | value, length + count
    return n(number << -length % 8, (length + 7) // 8)


def dts_core(size=120, layout=9, rate=13, extension=None):
    more = [(0, 4)] if extension is None else [(extension, 3), (1, 1)]
    head = bits((0x7FFE8001, 32), (0x7C, 7), (15, 7), (size - 1, 14), (layout, 6), (rate, 4), (24, 5), (0, 5), *more,
                (0, 1), (2, 2))
    return head + b"U" * (size - len(head))


def dts_extension(size=100, mask=0x200, mode=0, index=0, static=True, channels=8, mixing=0, remapped=0, sync=0):
    fields = [(0x64582025, 32), (0, 8), (index, 2), (0, 1), (59, 8), (size - 1, 16), (int(static), 1)]
    if static:
        fields += [(2, 2), (0, 3), (0, 1), (0, 3), (0, 3), (1, index + 1), (1, 8), (mixing and 1, 1)]
        fields += [(0, 2), (0, 2), (0, 2), (15, 4)] if mixing else []
    fields += [(size - 61, 16), (40, 9), (0, 3)]
    if static:
        fields += [(0, 3), (23, 5), (13, 4), (channels - 1, 8), (1, 1), (0, int(channels > 2)), (0, int(channels > 6))]
        fields += [(1, 1), (1, 2), (15, 8), (remapped, 3)]
        fields += remapped * [(3, 8)] + remapped * ([(3, 5)] + 3 * [(5, 4), (0, 10)])
    fields += [(0, 2)] + ([(mixing - 1, 1)] if mixing else []) + [(mode, 2), (mask, 12)]
    head = bits(*fields)
    return head + bytes(60 - len(head)) + n(sync, 4) + b"f" * (size - 64)


def words14(stream):
    number = int.from_bytes(stream, "big") << -8 * len(stream) % 14
    count = (8 * len(stream) + 13) // 14
    return b"".join(n(number >> 14 * i & 0x3FFF, 2) for i in reversed(range(count)))


def dts_chunk(name, content, size=None):
    return name + n(len(content) if size is None else size, 8) + content


def dts():
    yield "core", 9 * dts_core()
    yield "swapped", 9 * swapped(dts_core(extension=0))
    yield "words-of-14-bits", 9 * words14(dts_core(extension=2))
    yield "words-of-14-bits-swapped", 9 * swapped(words14(dts_core(layout=2)))
    yield "lossless", b"".join(dts_core() + dts_extension(100 + i) for i in range(9))
    yield "lossless-without-a-core", 9 * dts_extension(mode=1)
    yield "swapped-with-more", 9 * swapped(dts_core() + dts_extension(mask=0x20, channels=6))
    yield "two-substreams", 9 * (dts_extension(mode=2, channels=2) + dts_extension(index=1, static=False))
    yield "for-a-mixer", 9 * (dts_core() + dts_extension(mixing=1) + dts_extension(index=1))
    yield "told-a-mixer", 9 * (dts_core() + dts_extension(mixing=2, sync=0x655E315E))
    yield "told-a-mixer-in-vain", 9 * (dts_core() + dts_extension(mixing=2))
    yield "remapped", 9 * (dts_core() + dts_extension(remapped=2))
    yield "after-a-tag", TAG + 5 * dts_core()
    yield "after-a-cut", b"cut" + 5 * dts_core()
    yield "not-where-flac-is", b"fLaC" + 5 * dts_core()
    head = dts_chunk(b"DTSHDHDR", bytes(16))
    audio = dts_chunk(b"AUPR-HDR", n(8, 3) + n(48000, 3) + n(9, 4) + n(512, 2) + bytes(12))
    yield "head", head + audio + dts_chunk(b"STRMDATA", 9 * dts_core())
    yield "head-of-no-size", head + dts_chunk(b"STRMDATA", 9 * dts_core(), 2**64 - 1)
    yield "not-a-head-alone", head
    yield "not-a-head-without-frames", head + dts_chunk(b"STRMDATA", b"nothing")
    yield "not-with-many-chunks", head + 70 * dts_chunk(b"TIMECODE", b"")


def mlp_unit(size=60, sync=b"", substreams=2):
    unit = n(size // 2, 2) + n(0x4321, 2) + sync + (bytes([substreams << 4]) + bytes(11) if sync else b"")
    unit += b"".join(b"\x10\3" if i % 2 else b"\x90\1\x5A\0" for i in range(substreams))
    total = 0
    for byte in unit if not sync else b"":
        total ^= byte
    return bytes([unit[0] | (15 ^ (total >> 4 ^ total) & 15) << 4]) + unit[1:] + b"w" * (size - len(unit))


def mlp_sync(word=0xF8726FBA, form=0x0007800F):
    return n(word, 4) + n(form, 4) + n(0xB752, 2) + bytes(4) + n(0x8C7F, 2)


def mlp_units(count, sync, every=4):
    return b"".join(mlp_unit(60 + i % 7 * 6, b"" if i % every else sync) for i in range(count))


def mlp():
    yield "truehd", mlp_units(40, mlp_sync())
    yield "truehd-of-192-khz", mlp_units(40, mlp_sync(form=0x20008000))
    yield "mlp", mlp_units(40, mlp_sync(0xF8726FBB, 0x2F8F0001))
    yield "ac-3-between", 4 * (ac3_frame() + mlp_units(10, mlp_sync()))
    yield "after-a-tag", TAG + mlp_units(9, mlp_sync())
    yield "after-a-cut", b"cut" + mlp_units(9, mlp_sync())
    yield "damaged", mlp_units(9, mlp_sync()) + b"damage" + mlp_units(9, mlp_sync())
    yield "not-of-two-kinds", mlp_unit(60, mlp_sync()) + mlp_units(9, mlp_sync(form=0x80078000))
    yield "not-ac-3", 9 * ac3_frame()


# Long enough to be looked at in other places: zeros stand between what is there.
def holed(start, end):
    return start + end + delivered(0, len(start), 100, 11)


def seeds():
    for door, files in (("adts", adts()), ("ac3", ac3()), ("dts", dts()), ("mlp", mlp()), ("amr", amr())):
        for name, content in files:
            yield f"format_{door}", name, content + DELIVERED_AS_IT_IS
    yield "format_adts", "varying-around-a-hole", holed(varying(), varying())
    yield "format_adts", "silence-before-a-hole", holed(900 * adts_frame(17), varying())
    yield "format_adts", "one-size-around-a-hole", holed(60 * adts_frame(), 60 * adts_frame())
    yield "format_adts", "unknown-size", varying() + delivered(8)
    yield "format_ac3", "unknown-size", 9 * ac3_frame() + delivered(8)
    yield "format_ac3", "two-sizes-around-a-hole", holed(9 * eac3_frame(), 9 * eac3_frame(words=40))
    yield "format_amr", "pauses-around-a-hole", holed(b"#!AMR\n" + 9 * speech(7, 32), 20 * speech(8, 6))
    yield "format_dts", "unknown-size", 9 * dts_core() + delivered(8)
    yield "format_dts", "two-sizes-around-a-hole", holed(9 * dts_core(), 9 * dts_core() + 9 * dts_core(130))
    yield "format_mlp", "varying-around-a-hole", holed(mlp_units(40, mlp_sync()), mlp_units(40, mlp_sync()))
