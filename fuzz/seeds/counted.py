"""Seeds of files whose header counts the samples: True Audio and Musepack. Those that begin with "not-" are refused."""
from chunks import COVER, DELIVERED_AS_IT_IS, UNKNOWN_SIZE, little, n
from covers import JPEG
from music import ape, ape_item, id3v1

SOUND = b"\x11" * 200
TAGS = ape(ape_item(b"Title", b"Song"), ape_item(b"Cover Art (Front)", b"c.jpg\0" + JPEG, 2))


def tta(samples=4410, channels=2, bits=16, rate=44100, magic=b"TTA1"):
    return magic + little(1, 2) + little(channels, 2) + little(bits, 2) + little(rate) + little(samples) + little(0) + SOUND


def ttas():
    yield "plain", tta()
    yield "between-tags", COVER + tta() + TAGS + id3v1()
    yield "no-count", tta(0)
    yield "count-of-all-ones", tta(0xFFFFFFFF)
    yield "count-too-large", tta(0xFFFFFFFE)
    yield "no-sound", tta()[:22]
    yield "not-of-channels", tta(channels=0)
    yield "not-of-bits", tta(bits=33)
    yield "not-of-a-rate", tta(rate=0)
    yield "not-whole", tta()[:21]
    yield "not-of-this-version", tta(magic=b"TTA2")


def sevens(value):
    content = bytes([value & 0x7F])
    while value := value >> 7:
        content = bytes([0x80 | value & 0x7F]) + content
    return content


def packet(key, content, size=None):
    return key + sevens(len(content) + 3 if size is None else size) + content


def header(samples=4410, silence=0, rate=0, channels=2, version=8):
    return packet(b"SH", bytes(4) + bytes([version]) + sevens(samples) + sevens(silence) + n(rate << 13 | channels - 1 << 4, 2))


GAIN = packet(b"RG", b"\1" + bytes(8))
AUDIO = b"AP" + sevens(len(SOUND) + 4) + SOUND


def eight(*packets):
    return b"MPCK" + b"".join(packets)


def seven(frames=4, codes=0, end=0x80000000 | 500 << 20, version=7):
    return b"MP+" + bytes([version]) + little(frames) + little(codes) + bytes(8) + little(end) + SOUND


def musepacks():
    yield "eight", eight(header(), GAIN, AUDIO)
    yield "eight-between-tags", COVER + eight(GAIN, header(), AUDIO) + TAGS
    yield "eight-with-silence", eight(packet(b"XY", bytes(9)), header(4410, 441, 1, 1), AUDIO)
    yield "eight-all-silence", eight(header(4410, 4410), AUDIO)
    yield "eight-uncounted", eight(header(0), AUDIO)
    yield "eight-for-ever", eight(header((1 << 63) - 1), AUDIO)
    yield "seven", seven() + TAGS
    yield "seven-of-form-1", seven(version=0x17, codes=0x00020000)
    yield "seven-with-gaps", seven(end=0) + id3v1()
    yield "seven-of-no-last", seven(end=0x80000000)
    yield "seven-uncounted", seven(0)
    yield "not-of-version-9", eight(header(version=9), AUDIO)
    yield "not-of-version-6", seven(version=6)
    yield "not-of-a-rate", eight(header(rate=4), AUDIO)
    yield "not-before-the-sound", eight(AUDIO, header())
    yield "not-before-the-end", eight(packet(b"SE", b""), header())
    yield "not-of-a-size", eight(packet(b"RG", b"", 2), header())
    yield "not-of-an-end", eight(b"RG" + b"\xFF" * 12, header())
    yield "not-beyond-the-end", eight(packet(b"RG", b"", 1 << 40), header())
    yield "not-whole", eight(header())[:16]
    yield "not-whole-in-seven", seven()[:23]
    yield "not-in-many", eight(packet(b"CT", b"") * 256, header())
    yield "not-one", b"MPCX" + header()


def seeds():
    for door, files, whole in (("format_tta", ttas, tta()), ("format_musepack", musepacks, eight(header(), AUDIO))):
        for name, content in files():
            yield door, name, content + DELIVERED_AS_IT_IS
        yield door, "unknown-size", whole + TAGS + UNKNOWN_SIZE
