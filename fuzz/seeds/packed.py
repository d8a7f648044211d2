"""Seeds of lossless sound in containers of its own: APE and WavPack. Those that begin with "not-" are refused."""
from covers import JPEG
from music import DELIVERED_AS_IT_IS, delivered, id3, n, text23

TITLE = id3(text23(b"TIT2", b"\0Tagged"))


def little(value, size=4):
    return n(value, size, "little")


def tag(*items):
    content = b"".join(little(len(value)) + little(flags) + key + b"\0" + value for key, value, flags in items)
    ends = [b"APETAGEX" + little(2000) + little(len(content) + 32) + little(len(items)) + little(flags) + bytes(8)
            for flags in (0xA0000000, 0x80000000)]
    return ends[0] + content + ends[1]


TAG = tag((b"Title", b"ours", 0), (b"Cover Art (Front)", b"f.jpg\0" + JPEG, 2))


# --- APE

def described(version=3990, word=b"MAC ", size=52, frames=2, bits=16, channels=2, rate=44100, frame=73728, last=100):
    rest = little(24) + little(4 * frames) + little(44) + bytes(28)
    head = word + little(version, 2) + bytes(2) + little(size) + rest[: max(size - 12, 0)]
    return (head + little(2000, 2) + bytes(2) + little(frame) + little(last) + little(frames) + little(bits, 2)
            + little(channels, 2) + little(rate))


def plain(version=3950, level=2000, flags=32, channels=2, rate=44100, frames=3, last=100):
    return (b"MAC " + little(version, 2) + little(level, 2) + little(flags, 2) + little(channels, 2) + little(rate) + little(44)
            + bytes(4) + little(frames) + little(last) + bytes(60))


def apes():
    sound = b"sound" * 90
    yield "described", described() + sound + TAG
    yield "floating-point", described(word=b"MACF", bits=32) + sound
    yield "after-a-tag", TITLE + described() + sound + TAG
    yield "of-the-older-form", plain() + sound
    for version, level, flags in ((3800, 1000, 1), (3800, 4000, 8), (3890, 2000, 4), (3900, 2000, 16), (3940, 3000, 20)):
        yield f"version-{version}-{level}-{flags}", plain(version, level, flags) + sound
    yield "newer-form-of-an-older-version", described(3920) + sound
    yield "descriptor-that-goes-on", described(size=60) + sound
    yield "no-frames", described(frames=0) + sound
    yield "length-that-cannot-be", described(frames=1, last=1) + sound * 20
    yield "not-of-this-version", plain(3790)
    yield "not-of-a-later-version", plain(4000)
    yield "not-with-channels", described(channels=0)
    yield "not-with-a-rate", plain(rate=0)
    yield "not-with-a-descriptor", described(size=9)
    yield "not-whole", described()[:60]
    yield "not-an-ape", b"MAD " + described()[4:]


# --- WavPack

def part(number, content):
    name = number | (0x40 if len(content) % 2 else 0)
    words = (len(content) + 1) // 2
    size = little(words, 1) if words < 256 else little(words, 3)
    return bytes([name | (0x80 if words > 255 else 0)]) + size + content + bytes(len(content) % 2)


def wave(*parts, total=22050, index=0, samples=22050, flags=0x04801821, version=0x410, size=None, high=bytes(2)):
    content = b"".join(parts)
    size = len(content) + 24 if size is None else size
    return (b"wvpk" + little(size) + little(version, 2) + high + little(total) + little(index) + little(samples) + little(flags)
            + bytes(4) + content)


UNKNOWN = 0xFFFFFFFF
SOUND = part(0x0A, b"s" * 40)
OWN_RATE = 0x07801821
DSD = 0x84801820


def wavpacks():
    yield "plain", wave(SOUND) + TAG
    yield "after-a-tag", TITLE + wave(SOUND)
    yield "head-of-a-wav-alone-first", wave(part(0x21, b"RIFF"), samples=0, flags=0) + wave(SOUND)
    yield "own-rate", wave(part(0x27, little(40000, 3)), SOUND, flags=OWN_RATE)
    yield "own-rate-of-four-bytes", wave(part(0x27, little(0x81000000)), SOUND, flags=OWN_RATE)
    yield "channels", wave(part(0x0D, b"\6\x3F"), SOUND, flags=0x04800821)
    yield "many-channels", wave(part(0x0D, b"\xFF\xFB\0\xFF\xFF\3"), SOUND, flags=0x04800821)
    yield "channels-by-blocks", wave(SOUND, flags=0x04800821) + wave(SOUND, flags=0x04801025)
    yield "channels-without-an-end", wave(SOUND, flags=0x04800821) + wave(SOUND, flags=0x04800021)
    yield "dsd", wave(part(0x0E, b"\2" + b"d" * 30), flags=DSD | 0x02000000)
    yield "dsd-cut", wave(part(0x0E, b"\2" + b"d" * 600), flags=DSD)[:50]
    yield "dsd-doubled-too-often", wave(part(0x0E, b"\x1F"), flags=DSD)
    yield "count-unknown", wave(SOUND, total=UNKNOWN) + wave(SOUND, total=UNKNOWN, index=22050) + wave(samples=0)
    yield "count-unknown-and-tag", wave(SOUND, total=UNKNOWN) + wave(SOUND, total=UNKNOWN, index=22050, samples=99) + TAG
    yield "count-that-cannot-be", wave(SOUND, total=0xFFFFFFFE, high=b"\1\xFF")
    yield "long-part", wave(part(0x21, b"R" * 900), SOUND)
    yield "zeros-in-every-sample", wave(SOUND, flags=0x04809821)
    yield "not-of-this-version", wave(SOUND, version=0x411)
    yield "not-of-an-even-size", wave(SOUND, size=65)
    yield "not-with-samples", wave(samples=0) * 40
    yield "not-with-a-rate", wave(SOUND, flags=OWN_RATE)
    yield "not-sound-but-corrections", wave(part(0x0B, b"c" * 30))
    yield "not-a-wavpack", b"wvpl" + bytes(40)


def seeds():
    for door, files in (("format_ape", apes), ("format_wavpack", wavpacks)):
        for name, content in files():
            yield door, name, content + DELIVERED_AS_IT_IS
        whole = next(iter(files()))[1]
        yield door, "size-unknown", whole + delivered(8)
        yield door, "trickle", whole + delivered(1)
