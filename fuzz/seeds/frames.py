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


# Long enough to be looked at in other places: zeros stand between what is there.
def holed(start, end):
    return start + end + delivered(0, len(start), 100, 11)


def seeds():
    for door, files in (("adts", adts()), ("ac3", ac3()), ("amr", amr())):
        for name, content in files:
            yield f"format_{door}", name, content + DELIVERED_AS_IT_IS
    yield "format_adts", "varying-around-a-hole", holed(varying(), varying())
    yield "format_adts", "silence-before-a-hole", holed(900 * adts_frame(17), varying())
    yield "format_adts", "one-size-around-a-hole", holed(60 * adts_frame(), 60 * adts_frame())
    yield "format_adts", "unknown-size", varying() + delivered(8)
    yield "format_ac3", "unknown-size", 9 * ac3_frame() + delivered(8)
    yield "format_ac3", "two-sizes-around-a-hole", holed(9 * eac3_frame(), 9 * eac3_frame(words=40))
    yield "format_amr", "pauses-around-a-hole", holed(b"#!AMR\n" + 9 * speech(7, 32), 20 * speech(8, 6))
