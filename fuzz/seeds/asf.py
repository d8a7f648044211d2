"""Seeds of ASF files, and of their covers. Those that begin with "not-" are refused."""
from chunks import DELIVERED_AS_IT_IS, UNKNOWN_SIZE, hole, little
from covers import JPEG

HEADER = "3026B2758E66CF11A6D900AA0062CE6C"
DATA = "3626B2758E66CF11A6D900AA0062CE6C"
FILE = "A1DCAB8C47A9CF118EE400C00C205365"
STREAM = "9107DCB7B7A9CF118EE600C00C205365"
EXTENSION = "B503BF5F2EA9CF118EE300C00C205365"
DESCRIPTION = "3326B2758E66CF11A6D900AA0062CE6C"
CONTENT = "40A4D0D207E3D21197F000A0C95EA850"
BIT_RATES = "CE75F87B8D46D1118D82006097C9A2B2"
EXTENDED_STREAM = "CBA5E61472C632438399A96952065B5A"
METADATA = "EACBF8C5AF5B77488467AA8C44FA4CCA"
LIBRARY = "941C23449894D149A1411D134E457054"
ENCRYPTION = "FBB3112223BDD211B4B700A0C955FC6E"
PADDING = "74D40618DFCA0945A4BA9AABCB96AAE8"
AUDIO = "409E69F84D5BCF11A8FD00805F5C442B"
VIDEO = "C0EF19BC4D5BCF11A8FD00805F5C442B"
BINARY = "E265FB3AEF47F240AC2C70A90D71D343"
COMMAND = "C0CFDA59E659D011A3AC00A0C90348F6"
LANGUAGES = "A946437CE0EFFC4BB229393EDE415C85"
EXCLUSION = "CF4986A0754770468A166E35357566CD"
BY_BIT_RATE = "012AE2D6DA35D111903400A0C90349BE"
BY_LANGUAGE = "002AE2D6DA35D111903400A0C90349BE"
BINARY_SOUND = "6175647300001000800000AA00389B71" + "00" * 28 + "819F580556C3CE11BF0100AA0055595A"
BINARY_VIDEO = "7669647300001000800000AA00389B71" + "00" * 48

PACKET = 100
OPEN = 0xFFFFFFFF


def thing(kind, content, size=None):
    return bytes.fromhex(kind) + little(len(content) + 24 if size is None else size, 8) + content


def header(*objects):
    return thing(HEADER, little(len(objects)) + b"\1\2" + b"".join(objects))


def properties(count=4, play=34000000, preroll=3000, flags=2, size=PACKET, largest=None, most=8000):
    return thing(FILE, bytes(32) + little(count, 8) + little(play, 8) + bytes(8) + little(preroll, 8) + little(flags) +
                 little(size) + little(size if largest is None else largest) + little(most))


def stream(number=1, media=AUDIO, content=b"", flags=0):
    return thing(STREAM, bytes.fromhex(media) + bytes(24) + little(len(content)) + little(0) + little(number | flags, 2) +
                 little(0) + content)


def wave(tag=0x161, channels=2, rate=44100, mean=1000, rest=b""):
    return (little(tag, 2) + little(channels, 2) + little(rate) + little(mean) + little(100, 2) + little(16, 2) +
            little(len(rest), 2) + rest)


def bitmap(codec, data=b"", size=(64, 48)):
    return little(40) + little(size[0]) + little(size[1]) + little(1, 2) + little(24, 2) + codec + bytes(20) + data


def film(codec, data=b"", number=2, flags=0):
    return stream(number, VIDEO, little(64) + little(48) + b"\2" + little(40 + len(data), 2) + bitmap(codec, data), flags)


def recorded(form, info, subtype="26806DE046DBCF11B4D100805F6CBBEA"):
    return stream(2, BINARY, bytes.fromhex("7669647300001000800000AA00389B71" + subtype) + bytes(12) + bytes.fromhex(form) +
                  little(len(info)) + info)


def info(more=b"", codec=bytes(4)):
    return bytes(40) + little(333667, 8) + more + bitmap(codec, size=(720, 480))


def exclusion(reason, *numbers):
    return thing(EXCLUSION, bytes.fromhex(reason) + little(len(numbers), 2) + b"".join(little(n, 2) for n in numbers))


def languages(*names):
    return thing(LANGUAGES, little(len(names), 2) + b"".join(little(len(units(n)), 1) + units(n) for n in names))


def extended(objects=b"", names=(), extensions=(), rate=8000, number=1, language=0, time=0):
    lists = b"".join(little(0, 2) + little(len(name), 2) + name for name in names)
    lists += b"".join(bytes(18) + little(len(more)) + more for more in extensions)
    return thing(EXTENDED_STREAM, bytes(16) + little(rate) + bytes(28) + little(number, 2) + little(language, 2) +
                 little(time, 8) + little(len(names), 2) + little(len(extensions), 2) + lists + objects)


def extension(*objects):
    content = b"".join(objects)
    return thing(EXTENSION, bytes(18) + little(len(content)) + content)


def units(text):
    return text.encode("utf-16-le") + bytes(2)


def attribute(name, value, kind=0):
    return name, units(value) if isinstance(value, str) else value, kind


def content(*attributes):
    return thing(CONTENT, little(len(attributes), 2) + b"".join(
        little(len(units(name)), 2) + units(name) + little(kind, 2) + little(len(value), 2) + value
        for name, value, kind in attributes))


def library(*attributes, kind=LIBRARY):
    return thing(kind, little(len(attributes), 2) + b"".join(
        bytes(4) + little(len(units(name)), 2) + little(kind, 2) + little(len(value)) + units(name) + value
        for name, value, kind in attributes))


def description(title, author):
    return thing(DESCRIPTION, little(len(title), 2) + little(len(author), 2) + bytes(6) + title + author)


def picture(kind=3, data=JPEG, mime="image/jpeg"):
    return attribute("WM/Picture", little(kind, 1) + little(len(data)) + units(mime) + units("") + data, 1)


def packet(time, number=1, head=b"\x82\0\0\x08\x5D\0"):
    return (head + little(0) + little(0, 2) + little(number | 0x80, 1) + b"\0" + little(0) + b"\x08" + little(50) +
            little(time)).ljust(PACKET, b"\x11")


def piece(offset, data, number=2):
    """A packet with a part of a media object."""
    return (b"\x01\x5D" + bytes(6) + b"\x81" + little(number | 0x80, 1) + b"\0" + little(offset) + b"\x08" + little(50) +
            little(3000) + little(len(data), 2) + data).ljust(PACKET, b"\0")


def packets(*all_of_them, size=None):
    return thing(DATA, bytes(16) + little(len(all_of_them), 8) + b"\1\1" + b"".join(all_of_them), size)


PLAIN = packets(*(packet(3000 + 100 * i) for i in range(4)))
SOUND = stream(content=wave())
LIVE = properties(play=0, flags=9)


def song(*objects, file=properties(), sound=SOUND, data=PLAIN):
    return header(file, sound, *objects) + data


def files():
    several = b"\x01\x5D" + bytes(6) + b"\x82" + (b"\x81\0" + little(0) + b"\x08" + little(50) + little(3900) + little(3, 2)
                                                 + b"abc") * 2
    in_one = b"\x01\x5D" + bytes(6) + b"\x81" + b"\x81\0" + little(3700) + b"\x01\x64" + little(6, 2) + b"\1a\1b\1c"
    four = b"\x7E\xFF" + little(PACKET) + bytes(14) + b"\x81" + bytes(8) + little(8) + little(50) + little(3900)
    for name, bytes_of_it in (
            ("usual", song(description(units("Title"), units("Artist")), content(attribute("WM/Genre", "Rock")))),
            ("texts-of-numbers", song(content(attribute("WM/TrackNumber", little(7), 3), attribute("WM/Track", "0"),
                                              attribute("WM/IsCompilation", little(1), 2),
                                              attribute("WM/Year", little(1999, 8), 4), attribute("date", "2001"),
                                              attribute("WM/PartOfSet", bytes(9), 5),
                                              attribute("WM/Language", bytes(16), 6)))),
            ("a-long-name", song(content(attribute("n" * 70, "x"), attribute("Title", "Title")))),
            ("texts-of-the-library", song(extension(library(attribute("Author", "B"), attribute("WM/Composer", "C"))),
                                          content(attribute("Author", "A")))),
            ("texts-cut", song(content(attribute("Title", "Title")).replace(little(1, 2), little(9, 2), 1))),
            ("description-of-no-ends", song(description("Title".encode("utf-16-le") + b"x", b"\0\0"))),
            ("description-beyond", song(thing(DESCRIPTION, little(90, 2) + bytes(8)))),
            ("varying", song(content(attribute("IsVBR", little(1), 2)), extension(extended()))),
            ("varying-by-metadata", song(extension(library(attribute("IsVBR", little(1, 2), 2), kind=METADATA)))),
            ("covers", song(content(picture(0), picture(1), picture(4), picture(4), picture(3)))),
            ("cover-of-the-library", song(extension(library(picture())))),
            ("cover-without-an-end", song(content(attribute("WM/Picture", b"\3" + little(4) + b"ab", 1)))),
            ("two-sounds", song(stream(2, content=wave(mean=2000)), thing(BIT_RATES, little(2, 2) + little(1, 2) +
                                                                          little(9000) + little(2, 2) + little(8000)))),
            ("the-same-twice", song(SOUND)),
            ("by-the-extension", song(extension(extended(SOUND, (b"name", b""), (b"more",))), sound=b"")),
            ("extension-of-lying-names", song(extension(extended(SOUND, (b"name",))), sound=b"").replace(
                little(1, 2) + bytes(2) + bytes(2) + little(4, 2), b"\xFF\xFF" + bytes(4) + little(4, 2), 1)),
            ("encrypted", song(thing(ENCRYPTION, b"key"))),
            ("encrypted-stream", song(sound=stream(content=wave(), flags=0x8000))),
            ("pro", song(sound=stream(content=wave(0x162, rest=little(24, 2) + bytes(16))))),
            ("lossless", song(sound=stream(content=wave(0x163)))),
            ("no-rate", song(sound=stream(content=wave(0, 0, 0, 0)))),
            ("video", song(stream(2, VIDEO, bytes(51)))),
            ("video-alone", song(sound=stream(2, VIDEO, bytes(51)))),
            ("television", song(stream(2, BINARY, bytes.fromhex(BINARY_VIDEO)),
                                sound=stream(1, BINARY, bytes.fromhex(BINARY_SOUND) + little(18) + wave()))),
            ("wmv-9", song(film(b"WMV3", b"\x4E\x39\x0A\1"), extension(extended(number=2, time=400000)))),
            ("vc-1", song(film(b"WVC1", b"\0\0\0\1\x0F\xD0\0\x9F\x80\0\x48\0"))),
            ("mpeg-4", song(film(b"MP4S"), data=packets(piece(0, b"\0\0\1\xB0"), piece(4, b"\3\0\0\1\xB5")))),
            ("mpeg-4-of-a-gap", song(film(b"MP4S"), data=packets(piece(7, b"end"), piece(0, b"\0\0\1"), piece(9, b"\xB0")))),
            ("mpeg-4-of-no-packets", song(film(b"MP4S"), data=b"")),
            ("mpeg-4-encrypted", song(film(b"MP4S", flags=0x8000))),
            ("mpeg-2-without-a-programme", song(recorded("E3806DE046DBCF11B4D100805F6CBBEA", info(bytes(24)) + bytes(20)))),
            ("mpeg-2", song(recorded("E3806DE046DBCF11B4D100805F6CBBEA",
                                     info(bytes(8) + little(4) + little(3) + bytes(8)) + bytes(4) + little(12) + bytes(12) +
                                     b"\0\0\1\xB3\x2D\x01\xE0\x24\x09\xC4\x23\x80"))),
            ("mpeg-2-plain", song(recorded("A0762AF70AEBD011ACE40000C0CC16BA", info(bytes(24))))),
            ("video-of-another-file", song(recorded("809F580556C3CE11BF0100AA0055595A", info(codec=b"WMV2"), "00" * 16))),
            ("sound-by-its-subtype", song(sound=stream(1, BINARY, bytes.fromhex(
                "6175647300001000800000AA00389B71" + "2C806DE046DBCF11B4D100805F6CBBEA" + "00" * 12 +
                "819F580556C3CE11BF0100AA0055595A") + little(18) + wave(0)))),
            ("languages", song(film(b"WMV2"), extension(languages("en", "fr", ""), extended(language=1)))),
            ("languages-that-end", song(film(b"WMV2"), extension(languages("en").replace(little(1, 2), little(9, 2), 1)))),
            ("rivals", song(film(b"WMV2"), film(b"WMV1", number=3), extension(exclusion(BY_BIT_RATE, 2, 3, 0)))),
            ("chosen", song(film(b"WMV2"), extension(exclusion(BY_LANGUAGE, 1, 4)))),
            ("pixels", song(film(b"WMV2"), content(attribute("AspectRatioX", little(4), 3), attribute("AspectRatioY", little(3), 3)))),
            ("pixels-too-large", song(film(b"WMV2"), content(attribute("AspectRatioX", little(1 << 40, 8), 4)))),
            ("film-of-rates", song(film(b"WMV2"), thing(BIT_RATES, little(2, 2) + little(1, 2) + little(3000) + little(2, 2) +
                                                        little(4000)))),
            ("film-of-rates-that-lie", song(film(b"WMV2"), thing(BIT_RATES, little(1, 2) + little(2, 2) + little(1 << 30)))),
            ("broadcast", song(file=LIVE)),
            ("broadcast-of-no-size", song(file=LIVE, data=packets(packet(3000), packet(3100), size=0))),
            ("broadcast-from-the-middle", song(file=LIVE, data=packets(packet(99000), packet(99100)))),
            ("broadcast-of-zeros", song(file=LIVE, data=packets(bytes(PACKET), bytes(PACKET)))),
            ("broadcast-of-several-payloads", song(file=LIVE, data=packets(packet(3000), several.ljust(PACKET, b"\0")))),
            ("broadcast-of-several-frames", song(file=LIVE, data=packets(packet(3000), in_one.ljust(PACKET, b"\0")))),
            ("broadcast-of-long-numbers", song(file=LIVE, data=packets(packet(3000), four.ljust(PACKET, b"\0")))),
            ("broadcast-of-commands", song(file=LIVE, data=packets(packet(3000, 3)))),
            ("broadcast-of-uneven-packets", song(file=properties(flags=1, largest=PACKET + 1))),
            ("broadcast-of-no-rates", song(file=properties(flags=1, largest=1, most=OPEN), sound=stream(content=wave(mean=0)))),
            ("broadcast-without-data", song(file=LIVE, data=thing(PADDING, b""))),
            ("preroll-of-all-ones", song(file=properties(preroll=(1 << 64) - 1))),
            ("longer-than-a-year", song(file=properties(play=1 << 60))),
            ("size-below-a-head", song(thing(PADDING, b"", 0))),
            ("size-beyond", song(sound=thing(STREAM, SOUND[24:], (1 << 64) - 1))),
            ("not-an-asf", b"RIFF" + bytes(40)),
            ("not-whole", song()[:30]),
            ("not-of-a-size", bytes.fromhex(HEADER) + little(23, 8) + bytes(40)),
            ("not-of-a-stream", song(sound=b"")),
            ("not-of-sound", song(sound=stream(3, COMMAND)))):
        yield name, bytes_of_it + DELIVERED_AS_IT_IS
    yield "unknown-size", song() + UNKNOWN_SIZE
    yield "picture-far-away", song(content(picture(0), picture())) + hole(330, 255, 12)
    yield "broadcast-far-away", song(file=LIVE) + hole(400, 255, 20)


def cover_files():
    yield "content", header(thing(PADDING, b"room"), content(attribute("Title", "Title"), picture()))
    yield "library", header(extension(library(picture(0), picture())))
    yield "both", header(extension(library(picture())), content(picture(0, b"\x89PNG\r\n\x1A\n1234")))
    yield "link", header(content(picture(3, b"http://", "-->")))
    yield "cut", header(content(picture()))[:-3]
    yield "no-header", thing(PADDING, b"")


def seeds():
    for door, made in (("format_asf", files), ("cover_asf", cover_files)):
        for name, content_of_it in made():
            yield door, name, content_of_it
