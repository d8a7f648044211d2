"""Seeds of ISO base media files: one thing each that the parser tells apart."""
import zlib

from bits import Bits

DELIVERED_AS_IT_IS = bytes(8)


def with_hole(file, hole, failing=None):
    """A file whose zeros, as many as that, are delivered as a hole: the seed is without them. A read may fail, counted from 0."""
    shift = 11
    assert hole % (1 << shift) == 0 and hole >> shift < 256
    place = file.index(bytes(hole))
    flags, failing = (0, 0) if failing is None else (2, failing)
    delivery = bytes([flags, 0, 0, failing]) + place.to_bytes(2, "little") + bytes([hole >> shift, shift])
    return file[:place] + file[place + hole :] + delivery


def n(value, size=4):
    return value.to_bytes(size, "big")


def box(kind, *contents):
    content = b"".join(contents)
    return n(8 + len(content)) + (kind if isinstance(kind, bytes) else kind.encode("latin-1")) + content


def full(kind, *contents, version=0, flags=0):
    return box(kind, n(version, 1), n(flags, 3), *contents)


FTYP = box("ftyp", b"isom", n(0x200), b"isomiso2")
MDAT = box("mdat", b"." * 60)


def times(kind, scale=1000, duration=1000, version=0):
    size = 8 if version == 1 else 4
    return full(kind, bytes(2 * size), n(scale), n(duration, size), bytes(4), version=version)


def matrix(*numbers):
    x_of_x, y_of_x, x_of_y, y_of_y = (n(number & 0xFFFFFFFF) for number in numbers)
    return x_of_x + y_of_x + bytes(4) + x_of_y + y_of_y + bytes(12) + n(1 << 30)


def head(number=1, flags=7, version=0, turn=None):
    size = 8 if version == 1 else 4
    rest = bytes(60) if turn is None else bytes(4 + size + 16) + turn + bytes(8)
    return full("tkhd", bytes(2 * size), n(number), rest, version=version, flags=flags)


def stts(*runs):
    return full("stts", n(len(runs)), *(n(count) + n(ticks) for count, ticks in runs))


def stsz(*sizes):
    return full("stsz", n(0), n(len(sizes)), *(n(size) for size in sizes))


def descriptor(tag, content):
    return n(tag, 1) + n(len(content), 1) + content


def esds(kind, config=None, maximum=0, average=0, flags=0, before=b""):
    extra = {0x80: b"\0\1", 0x40: b"\3url", 0x20: b"\0\2"}.get(flags, b"")
    decoder = n(kind, 1) + b"\x15" + bytes(3) + n(maximum) + n(average)
    if config is not None:
        decoder += descriptor(5, config)
    return full("esds", before + descriptor(3, n(1, 2) + n(flags, 1) + extra + descriptor(4, decoder)
                                            + descriptor(6, b"\2")))


AAC = b"\x12\x10"


def sound(kind, *boxes, version=0, channels=2, bits=16, rate=44100, more=b""):
    return box(kind, bytes(6), n(1, 2), n(version, 2), bytes(6), n(channels, 2), n(bits, 2), bytes(4),
               n(min(rate, 65535) << 16), more, *boxes)


def picture(kind, *boxes, width=320, height=240):
    return box(kind, bytes(6), n(1, 2), bytes(16), n(width, 2), n(height, 2), bytes(50), *boxes)


def description(entry, version=0):
    return full("stsd", n(1), entry, version=version)


def track(kind, tables, number=1, flags=7, edits=b"", scale=1000, duration=1000):
    handler = full("hdlr", bytes(4), kind.encode(), bytes(12))
    media = box("mdia", times("mdhd", scale, duration), handler, box("minf", box("stbl", *tables)))
    return box("trak", head(number, flags), edits, media)


def audio(entry=None, version=0, sizes=(100,) * 10, **more):
    entry = sound("mp4a", esds(0x40, AAC)) if entry is None else entry
    return track("soun", (description(entry, version), stts((len(sizes), 100)), stsz(*sizes)), **more)


def video(entry=None, sizes=(20,) * 25, ticks=40, **more):
    entry = picture("vp09") if entry is None else entry
    more = {"number": 2, **more}
    return track("vide", (description(entry), stts((len(sizes), ticks)), stsz(*sizes)), **more)


def movie(*tracks, brand=FTYP, rest=MDAT, duration=1000):
    return brand + box("moov", times("mvhd", 1000, duration), *tracks) + rest


# --- Sound


def config(kind, rate=4, channels=2):
    bits = Bits()
    if kind >= 32:
        bits.put(31, 5).put(kind - 32, 6)
    else:
        bits.put(kind, 5)
    bits.put(rate if rate < 13 else 15, 4)
    if rate >= 13:
        bits.put(rate, 24)
    return bits.put(channels, 4)


def general(bits, core=0, extension=0, more=0):
    """The set-up of general audio; more bits of extension."""
    return bits.put(0, 1).put(core, 1).put(0, 14 * core).put(extension, 1).put(0, more)


def program(mixes):
    """A configuration that is spelled out: two front elements, one after, one low, and one each of the others."""
    bits = general(config(2, channels=0))
    bits.put(0, 4).put(1, 2).put(4, 4).put(2, 4).put(0, 4).put(1, 4).put(1, 2).put(1, 3).put(1, 4)
    for size in (4, 4, 3):
        bits.put(mixes, 1).put(0, size * mixes)
    for pair in (0, 1, 1):
        bits.put(pair, 1).put(0, 4)
    bits.put(0, 4).put(0, 4).put(0, 5)
    bits.put(0, -len(bits.text) % 8)
    return bits.put(2, 8).put(0x6869, 16)


def configs():
    yield "explicit-rate", config(2, 44056)
    for kind in (1, 3, 4, 6, 17, 19, 20, 23):
        yield f"object-{kind}", general(config(kind), extension=1, more=8)
    for kind in (32, 36, 39, 42, 60):
        yield f"object-{kind}", config(kind).put(0, 16)
    yield "core-delay", general(config(2), core=1)
    yield "program-mixed-down", program(1)
    yield "program-plain", program(0)
    replicated = general(config(2, 7)).put(0x2B7, 11).put(5, 5)
    yield "he-aac-late", Bits()._with(replicated.text).put(1, 1).put(4, 4).put(0, 7)
    yield "he-aac-late-explicit-rate", Bits()._with(replicated.text).put(1, 1).put(15, 4).put(44056, 24).put(0, 7)
    yield "he-aac-late-not-used", Bits()._with(replicated.text).put(0, 1).put(0, 8)
    v2 = general(config(2, 7, 1)).put(0x2B7, 11).put(5, 5).put(1, 1).put(4, 4).put(0x548, 11)
    yield "he-aac-v2-late", Bits()._with(v2.text).put(1, 1)
    yield "he-aac-v2-late-not-used", Bits()._with(v2.text).put(0, 1)
    yield "he-aac-v2-explicit", general(config(29, 7, 1).put(4, 4).put(2, 5))
    yield "late-filler", general(config(2)).put(0x111, 11).put(0, 13)
    other = general(config(2)).put(0x2B7, 11).put(22, 5)
    yield "late-sliced-arithmetic", other.put(0, 13)


def quicktime_version_2(rate_bits, flags=0, channels=2, bits=24):
    return n(72) + n(rate_bits, 8) + n(channels) + n(0x7F000000) + n(bits) + n(flags) + bytes(8)


def stream_info(rate=96000, channels=2, bits=24, kind=0x80):
    head_of_block = n(kind, 1) + n(34, 3) + n(4096, 2) * 2 + bytes(6)
    return head_of_block + Bits().put(rate, 20).put(channels - 1, 3).put(bits - 1, 5).put(0, 36).bytes() + bytes(16)


def leb(number):
    result = b""
    while number >= 0x80:
        result += n(number & 0x7F | 0x80, 1)
        number >>= 7
    return result + n(number, 1)


def unit(kind, content, flags=0):
    return n(kind << 3 | flags, 1) + leb(len(content)) + content


def codec_unit(kind, setup):
    return unit(0, leb(200) + kind + leb(960) + n(0, 2) + setup)


def element(kind=0, layers=b"", parameters=()):
    return unit(1, leb(300) + n(kind << 5, 1) + leb(200) + leb(1) + leb(0) + leb(len(parameters)) + b"".join(parameters)
                + layers)


def iamf(*units, size=None):
    content = b"".join(units)
    return sound("iamf", box("iacb", b"\1", leb(len(content) if size is None else size), content), channels=0, rate=0)


PCM = codec_unit(b"ipcm", b"\1\x10" + n(16000))
STEREO = n(1 << 5, 1) + b"\x10\1\1"


def immersive():
    yield "iamf", iamf(unit(31, b"iamf\0\0"), PCM, element(layers=STEREO))
    decoder = descriptor(4, b"\x40\x15" + bytes(11) + descriptor(5, AAC))
    for kind, setup in ((b"Opus", bytes(11)), (b"fLaC", stream_info()), (b"mp4a", decoder), (b"zz 1", b"")):
        yield "iamf-of-" + kind.decode().strip().lower().replace(" ", "-"), iamf(codec_unit(kind, setup))
    yield "iamf-of-mp4a-cut", iamf(codec_unit(b"mp4a", decoder[:9]))
    yield "iamf-of-two-codecs", iamf(PCM, codec_unit(b"Opus", b""))
    layers = n(3 << 5, 1) + b"\0\1\0" + b"\x18\1\1\0\0\0" + b"\xF0\1\1"
    yield "iamf-layers", iamf(PCM, element(layers=layers))
    yield "iamf-sphere", iamf(PCM, element(1, leb(0) + b"\4"))
    yield "iamf-element-of-nobody", iamf(PCM, element(2))
    own = leb(7) + leb(16000)
    parameters = (leb(1) + own + b"\0" + leb(960) + leb(0) + leb(2) + leb(480) + leb(480) + b"\0\0",
                  leb(1) + own + b"\0" + leb(960) + leb(960) + b"\0\0", leb(2) + own + b"\x80", leb(9) + leb(3) + b"new")
    yield "iamf-parameters", iamf(PCM, element(layers=STEREO, parameters=parameters))
    yield "iamf-long-heads", iamf(unit(0, leb(2) + leb(3) + PCM[2:], 2), unit(0, leb(3) + b"new" + PCM[2:], 1))
    yield "iamf-cut", iamf(PCM, size=99)
    yield "iamf-number-of-all-bits", iamf(b"\0" + b"\xFF" * 9)
    yield "iamf-number-too-large", iamf(b"\0" + leb(1 << 32))
    yield "iamf-streams-beyond-it", iamf(PCM, unit(1, leb(1) + b"\0" + leb(1) + leb(9)))


def dmlp(form, peak=0x186A):
    return box("dmlp", n(form), n(peak, 2), bytes(4))


def dac3(mode, low=0, rate=0, size=10):
    return box("dac3", Bits().put(rate, 2).put(8, 5).put(0, 3).put(mode, 3).put(low, 1).put(size, 5).put(0, 5).bytes())


def sounds():
    for name, bits in configs():
        yield "aac-" + name, sound("mp4a", esds(0x40, bits.bytes()))
    yield "aac-of-mpeg-2", sound("mp4a", esds(0x67, AAC))
    yield "aac-rates-vary", sound("mp4a", esds(0x40, AAC, 0xFFFFFFFF, 0xFFFFFFFF))
    for flags, name in ((0x80, "that-depends"), (0x40, "with-a-url"), (0x20, "with-a-clock")):
        yield "stream-" + name, sound("mp4a", esds(0x40, AAC, flags=flags))
    yield "stream-after-another-descriptor", sound("mp4a", esds(0x40, AAC, before=descriptor(0x20, b"ab")))
    long_length = full("esds", b"\3\x80\x80\x80\x1B", n(1, 2), b"\0", b"\4\x80\x80\x80\x11", b"\x40\x15", bytes(11),
                       b"\5\x02", AAC, b"\6\1\2")
    yield "stream-with-long-lengths", sound("mp4a", long_length)
    yield "mp4a-without-stream", sound("mp4a")
    yield "dts-by-number", sound("mp4a", esds(0xA9))
    yield "object-of-nobody", sound("mp4a", esds(0xC0))
    yield "mp3-by-number", sound("ms\0\x55")
    yield from immersive()
    yield "flac", sound("fLaC", full("dfLa", stream_info()))
    yield "flac-of-rate-0", sound("fLaC", full("dfLa", stream_info(0)))
    yield "flac-of-another-block", sound("fLaC", full("dfLa", stream_info(kind=4)))
    yield "truehd", sound("mlpa", dmlp(0x0017804F))
    yield "truehd-of-six", sound("mlpa", dmlp(0x10178000))
    yield "truehd-of-no-speaker", sound("mlpa", dmlp(0x80000000))
    yield "truehd-rate-of-nobody", sound("mlpa", dmlp(0x30178000))
    yield "truehd-cut", sound("mlpa", box("dmlp", n(0x0017804F)))
    yield "amr-of-ten-frames", sound("samr", box("damr", b"ours\0\0\x80\0\x0A"))
    yield "amr-of-no-frames", sound("samr", box("damr", b"ours\0\0\x80\0\0"))
    for kind in ("ulaw", "alaw", "ima4", "MAC3", "MAC6"):
        yield "quicktime-" + kind.lower(), sound(kind)
    yield "amr", sound("samr")
    yield "amr-wide", sound("sawb")
    yield "opus", sound("Opus", box("dOps", b"\0\2" + bytes(9)))
    yield "raw-8-bits", sound("raw ", bits=8)
    yield "in24", sound("in24")
    yield "ipcm", sound("ipcm", full("pcmC", b"\1\x18"))
    yield "codec-of-nobody", sound("zz 1")
    yield "bit-rates", sound("fLaC", box("btrt", n(0), n(900000), n(800000)))
    yield "large-rate", (sound("fLaC", full("srat", n(96000)), rate=0), 1)
    yield "quicktime-1-wave", sound("mp4a", box("wave", box("frma", b"mp4a"), esds(0x40, AAC), box("\0\0\0\0")),
                                    version=1, more=bytes(16))
    for name, rate, flags in (("", 0x40E7700000000000, 0), ("-float", 0x40E7700000000000, 1),
                              ("-rate-of-nobody", 0x4330000000000000, 0)):
        yield "quicktime-2" + name, sound("lpcm", version=2, more=quicktime_version_2(rate, flags))
    yield "quicktime-2-many-channels", sound("lpcm", version=2, more=quicktime_version_2(0x40E7700000000000, 0, 70000))
    for mode in (0, 1, 3, 7):
        yield f"ac3-mode-{mode}", sound("ac-3", dac3(mode, mode & 1))
    eac3 = Bits().put(192, 13).put(0, 3).put(1, 2).put(16, 5).put(0, 5).put(7, 3).put(1, 1).put(0, 8).bytes()
    yield "eac3-surround", sound("ec-3", box("dec3", eac3))
    yield "encrypted-by-drms", sound("drms", box("sinf", box("frma", b"mp4a")), esds(0x40, AAC))
    yield "encrypted-by-nobody-knows", sound("enca")


# --- Pictures

UNIT = {"baseline": bytes([66, 0, 30]), "high": bytes([100, 0, 30]), "1b": bytes([66, 0x10, 11])}


def sequence_set(profile, fields=0, rates=None):
    bits = Bits().put(int.from_bytes(profile, "big"), 24).ue(0)
    if profile[0] == 100:
        bits.ue(1).ue(0).ue(0).put(0, 2)
    bits.ue(0).ue(0).ue(0).ue(1).put(0, 1).ue(19).ue(14).put(1 - fields, 1).put(0, fields).put(1, 1).put(0, 1)
    bits.put(rates is not None, 1)
    if rates is not None:
        rate, constant = rates
        bits.put(0, 5).put(1, 1).ue(0).put(0, 8).ue(rate).ue(1).put(constant, 1).put(0, 20).put(0, 1).put(0, 1)
        bits.put(0, 1).put(0, 1)
    return escaped(b"\x67" + bits.ended())


def escaped(unit):
    result, zeros = bytearray(), 0
    for byte in unit:
        if zeros == 2 and byte <= 3:
            result.append(3)
            zeros = 0
        result.append(byte)
        zeros = zeros + 1 if byte == 0 else 0
    return bytes(result)


def avcc(profile, *units):
    return box("avcC", b"\1", profile, b"\xFF", n(0xE0 | len(units), 1), *(n(len(unit), 2) + unit for unit in units),
               b"\0")


def avc(name, **more):
    return picture("avc1", avcc(UNIT[name], sequence_set(UNIT[name], **more)))


def visual(profile, *layer):
    code = b"\0\0\1"
    content = code + b"\xB0" + n(profile, 1) + code + b"\xB5\x09" + code + b"\0"
    for bits in layer:
        content += code + b"\x20" + bits.bytes()
    return content


def layer(aspect=1, control=0, buffer=0, identifier=1, version=1, shape=0, fixed=0, interlaced=0, height=240):
    bits = Bits().put(0, 9).put(identifier, 1)
    if identifier:
        bits.put(version, 4).put(1, 3)
    bits.put(aspect, 4).put(0x0101 if aspect == 15 else 0, 16 if aspect == 15 else 0).put(control, 1)
    if control:
        bits.put(2, 3).put(buffer, 1).put(0, 79 * buffer)
    bits.put(shape, 2).put(0, 4 if shape == 3 and identifier and version != 1 else 0)
    bits.put(1, 1).put(25, 16).put(1, 1).put(fixed, 1).put(1, 5 * fixed)
    if shape == 0:
        bits.put(1, 1).put(320, 13).put(1, 1).put(height, 13).put(1, 1).put(interlaced, 1)
    return bits.put(0, 16)


def pictures():
    yield "avc-high", avc("high")
    yield "avc-level-1b", avc("1b")
    yield "avc-interlaced", avc("baseline", fields=1)
    yield "avc-rate", avc("baseline", rates=(999, 0))
    yield "avc-constant-rate", avc("baseline", rates=(999, 1))
    yield "avc-fastest", avc("baseline", rates=(0x7FFFFFF, 1))
    yield "avc-sets-in-the-stream", picture("avc3", avcc(UNIT["high"]))
    yield "avc-profile-of-nobody", picture("avc1", avcc(bytes([99, 0, 30])))
    for sources, name in ((0, "unknown"), (1, "interlaced"), (2, "progressive"), (3, "mixed")):
        hvcc = b"\1\1" + bytes(4) + n(sources << 6, 1) + bytes(5) + n(93, 1) + bytes(10)
        yield "hevc-" + name, picture("hvc1", box("hvcC", hvcc))
    yield "h263", picture("s263", box("d263", b"ours\0\x0A\0"))
    for name, stream in (("plain", visual(3, layer())), ("profile-of-nobody", visual(0x99, layer())),
                         ("without-a-layer", visual(0xF5)),
                         ("extended-shape", visual(3, layer(aspect=15, control=1))),
                         ("buffer", visual(3, layer(control=1, buffer=1))),
                         ("first-version", visual(3, layer(identifier=0))),
                         ("fixed-rate-interlaced", visual(0xF5, layer(fixed=1, interlaced=1))),
                         ("of-no-height", visual(3, layer(height=0))),
                         ("grey", visual(0x42, layer(shape=3, version=2))),
                         ("grey-of-the-first-version", visual(0x42, layer(shape=3)))):
        yield "mpeg4-" + name, picture("mp4v", esds(0x20, stream))
    yield "mpeg2-by-number", picture("mp4v", esds(0x61, b""))
    yield "video-object-of-nobody", picture("mp4v", esds(0xC0, b""))
    yield "mp4v-without-stream", picture("mp4v")
    yield "video-codec-of-nobody", picture("zz 1")
    yield "video-bit-rates", picture("vp09", box("btrt", n(0), n(900000), n(800000)))
    yield "video-encrypted-by-drmi", picture("drmi", box("sinf", box("frma", b"avc1")))
    yield "video-encrypted-by-nobody-knows", picture("encv")


# --- Whole files


def edit_list(*edits, version=0):
    size = 8 if version else 4
    return box("edts", full("elst", n(len(edits)), *(n(duration, size) + n(start, size) + n(1 << 16)
                                                     for duration, start in edits), version=version))


def trex(number, ticks=0, size=0):
    return full("trex", n(number), n(1), n(ticks), n(size), n(0))


def fragment(number, flags, samples, tfhd_flags=0, tfhd=b"", time=None, version=0):
    """A run; samples hold what the flags say of each."""
    boxes = full("tfhd", n(number), tfhd, flags=tfhd_flags)
    if time is not None:
        boxes += full("tfdt", n(time, 8 if version else 4), version=version)
    first = (n(8) if flags & 1 else b"") + (n(0) if flags & 4 else b"")
    boxes += full("trun", n(len(samples)), first, *samples, flags=flags)
    return box("moof", full("mfhd", n(1)), box("traf", boxes)) + MDAT


def fragmented(*parts, tracks=None, mvex=None, brand=FTYP):
    tracks = (audio(sizes=(), duration=0),) if tracks is None else tracks
    mvex = trex(1) if mvex is None else mvex
    return brand + box("moov", times("mvhd", 1000, 0), *tracks, box("mvex", mvex)) + b"".join(parts)


def sidx(duration, size, scale=1000, version=0, count=1):
    wide = 8 if version else 4
    entries = b"".join(n(size) + n(duration) + n(0) for _ in range(count))
    return full("sidx", n(1), n(scale), bytes(wide), bytes(wide), n(0, 2), n(count, 2), entries, version=version)


def text(kind, *content):
    return box(kind.encode("latin-1"), *content)


def item(kind, value, form=1):
    return text(kind, box("data", n(form), n(0), value))


def tags(*items, version=True):
    meta = full("meta", full("hdlr", bytes(20)), box("ilst", *items))
    return box("udta", meta)


def asset(kind, value):
    return full(kind, n(0x15C7, 2), value)


def phrase(kind, value, language=0):
    return text(kind, n(len(value), 2), n(language, 2), value)


def constant(entry, count, size):
    return track("soun", (description(entry), stts((count, 1)), full("stsz", n(size), n(count))))


def compressed(movie_box, algorithm=b"zlib", size=None, data=None):
    size = len(movie_box) if size is None else size
    data = zlib.compress(movie_box, 9) if data is None else data
    return box("moov", box("cmov", box("dcom", algorithm), box("cmvd", n(size), data))) + MDAT


def turned(*numbers):
    film = video()
    return movie(box("trak", head(2, turn=matrix(*numbers)), film[8 + len(head(2)):]))


def odd_files():
    one = audio()
    unit_of_matrix = 1 << 16
    for name, a, b, c, d in (("none", 1, 0, 0, 1), ("mirrored", -1, 0, 0, 1), ("half", -1, 0, 0, -1), ("flipped", 1, 0, 0, -1),
                             ("transposed", 0, 1, 1, 0), ("clockwise", 0, 1, -1, 0), ("transversed", 0, -1, -1, 0),
                             ("anticlockwise", 0, -1, 1, 0), ("by-an-angle", 1, 1, -1, 1)):
        yield "turned-" + name, turned(*(number * unit_of_matrix for number in (a, b, c, d)))
    packets = sound("QDM2", version=1, more=n(4096) + n(185) + n(370) + n(2))
    yield "packets", movie(constant(packets, 44100, 1))
    varying = packets.replace(n(2, 2) + n(16, 2) + bytes(4), n(2, 2) + n(16, 2) + b"\xFF\xFE\0\0")
    yield "packets-that-vary", movie(constant(varying, 44100, 1))
    yield "packets-of-no-samples", movie(constant(sound("QDM2", version=1, more=bytes(16)), 44100, 1))
    yield "packets-of-the-codec", movie(constant(sound("ima4"), 44100, 1))
    yield "amr-frames", movie(constant(sound("samr"), 1, 32))
    yield "amr-frames-wide", movie(constant(sound("sawb"), 1, 59))
    yield "amr-frames-too-large", movie(constant(sound("samr"), 1, 33))
    film = movie(video(), one)
    plain = film[len(FTYP) : -len(MDAT)]
    yield "compressed", compressed(plain)
    yield "compressed-by-another", compressed(plain, b"rle ")
    yield "compressed-too-large", compressed(plain, size=1 << 21)
    yield "compressed-to-too-much", compressed(plain + box("free", bytes(1 << 20)), size=5)
    yield "compressed-damaged", compressed(plain, data=b"\x78\xDA damaged")
    yield "compressed-to-no-movie", compressed(box("trak"))
    yield "compressed-without-data", box("moov", box("cmov", box("dcom", b"zlib"))) + MDAT
    yield "compressed-in-compressed", compressed(compressed(plain))
    over = plain[:-20].replace(n(len(plain)) + b"moov", n(len(plain) + 30) + b"moov")
    yield "movie-lacks-its-end", FTYP + plain.replace(n(len(plain)) + b"moov", n(len(plain) + 16) + b"moov")
    yield "movie-lacks-its-end-and-more", FTYP + over
    large = film.replace(film[film.index(b"trak") - 4 : film.index(b"trak")], n(0xFFFFFF), 1)
    yield "track-larger-than-its-movie", large
    high = video(avc("high"))
    for name, brands in (("isom", b"3gp5isom"), ("mp42", b"3gp4mp42"), ("alone", b"3gp4"), ("half", b"3gp4is")):
        yield "brand-3gp-and-" + name, movie(high, brand=box("ftyp", b"3gp5", n(0), brands))
    yield "brand-3gp-of-amr", movie(video(avc("baseline")), audio(sound("samr")), brand=box("ftyp", b"3gp4", n(0), b"isom"))
    yield "brand-3gp-of-encrypted", movie(audio(sound("enca", box("sinf", box("frma", b"samr")))),
                                          brand=box("ftyp", b"3gp6", n(0), b"isom"))
    yield "brands-many", movie(high, brand=box("ftyp", b"3gp5", n(0), b"3gp4" * 40))
    data = box("data", n(1), n(0), b"One") + box("data", n(1), n(0), b"Two")
    yield "tags-of-several-values", movie(one, tags(text("\xa9ART", data), item("\xa9ART", b"Three"), text("\xa9gen", data),
                                                    text("\xa9nam", data)))
    yield "tags-of-many-values", movie(one, tags(text("\xa9ART", *(box("data", n(1), n(0), n(65 + i, 1)) for i in range(9)))))
    whole = fragment(1, 0x300, [n(100) + n(50)] * 5)
    yield "indices-of-thirds", fragmented(sidx(25, len(whole), scale=3), whole, sidx(25, len(whole), scale=3), whole,
                                          sidx(10, len(whole), scale=3), whole)
    yield "indices-of-three-scales", fragmented(*(sidx(25, len(whole), scale=scale) + whole for scale in (3, 7, 11)))
    yield "index-and-a-fragment", fragmented(sidx(25, len(whole), scale=3), whole, whole)


def files():
    yield from odd_files()
    one = audio()
    yield "brand-3g2", movie(video(), brand=box("ftyp", b"3g2a", n(0), b"3g2a"))
    yield "brand-kddi", movie(one, brand=box("ftyp", b"kddi", n(0), b"kddi"))
    yield "wide-first", movie(one, brand=box("wide"))
    yield "free-and-skip", movie(one, brand=FTYP + box("free", bytes(8)) + box("skip"))
    yield "duration-of-64-bits", movie(box("trak", head(version=1), one[8 + len(head()):]))
    yield "two-sounds", movie(audio(flags=0), audio(number=3), audio(number=4))
    yield "edits-to-the-end", movie(audio(edits=edit_list((200, 0xFFFFFFFF), (0, 100))))
    yield "edits-of-64-bits", movie(audio(edits=edit_list((500, 0), version=1)))
    yield "edits-of-nothing", movie(audio(edits=edit_list((500, 0xFFFFFFFF))))
    yield "edits-box-empty", movie(audio(edits=box("edts")))
    yield "slide-show", movie(one, video(picture("jpeg"), sizes=(20, 20), ticks=5000, duration=10000))
    yield "slide-show-of-broken-seconds", movie(one, video(picture("jpeg"), sizes=(20, 20), ticks=2501, duration=10000))
    yield "pictures-of-no-time", movie(one, video(picture("jpeg"), sizes=(20, 20), ticks=0))
    yield "pictures-without-times", movie(one, track("vide", (description(picture("png ")), stsz(20, 20)), 2))
    yield "video-of-sizes-without-times", movie(track("vide", (description(picture("vp09")), stsz(20, 20)), 2))
    yield "fast-motion-pictures", movie(video(picture("jpeg")))
    yield "track-without-tables", movie(one, box("trak", head(5), box("mdia", times("mdhd"), full(
        "hdlr", bytes(4), b"soun", bytes(12)))))
    yield "sound-of-unknown-duration", movie(audio(duration=0xFFFFFFFF), duration=0xFFFFFFFF)
    yield "nothing-known-of-the-sound", movie(audio(sizes=()), video())
    yield "nothing-known-of-the-video", movie(one, video(sizes=()))
    plain = fragment(1, 0x300, [n(100) + n(50)] * 5)
    yield "fragments-every-field", fragmented(fragment(1, 0xF05, [n(100) + n(50) + n(0) + n(0)] * 5))
    yield "fragments-ticks-alone", fragmented(fragment(1, 0x100, [n(100)] * 5), mvex=trex(1, 0, 50))
    yield "fragments-sizes-alone", fragmented(fragment(1, 0x200, [n(50)] * 5), mvex=trex(1, 100, 0))
    yield "fragments-defaults", fragmented(fragment(1, 0, [b""] * 5), mvex=trex(1, 100, 50))
    yield "fragments-own-defaults", fragmented(fragment(1, 0, [b""] * 5, 0x1B, n(0, 8) + n(1) + n(100) + n(50)))
    yield "fragments-at-times", fragmented(*(fragment(1, 0x300, [n(100) + n(50)] * 5, time=time, version=version)
                                             for time, version in ((1000, 0), (1500, 1))))
    yield "fragments-of-others", fragmented(plain, fragment(9, 0x300, [n(1) + n(1)], time=5))
    yield "fragments-after-samples", fragmented(plain, tracks=(audio(),))
    both = (audio(sizes=(), duration=0), video(sizes=(), duration=0))
    yield "fragments-of-a-film", fragmented(plain, fragment(2, 0x300, [n(100) + n(50)] * 5), tracks=both,
                                            mvex=trex(1) + trex(2) + trex(7))
    yield "fragments-told-64-bits", fragmented(plain, mvex=full("mehd", n(900, 8), version=1) + trex(1))
    yield "fragments-of-a-film-told", fragmented(plain, fragment(2, 0x300, [n(100) + n(50)] * 5), tracks=both,
                                                 mvex=full("mehd", n(90000)) + trex(1) + trex(2))
    bare = box("mdia", times("mdhd"), full("hdlr", bytes(4), b"soun", bytes(12)))
    yield "first-sound-without-tables", movie(box("trak", head(), bare), video())
    yield "fragments-many", fragmented(*[plain] * 140)
    yield "fragments-to-the-last-byte", fragmented(*[plain] * 47, plain[: -len(MDAT)])
    yield "fragments-many-of-a-film", fragmented(*[plain + fragment(2, 0x300, [n(100) + n(50)])] * 70, tracks=both,
                                                 mvex=trex(1) + trex(2))
    yield "index-64-bits", fragmented(sidx(500, len(plain), version=1), plain)
    yield "index-of-two", fragmented(sidx(500, len(plain), count=2), plain, plain)
    yield "fragments-then-free", fragmented(plain, box("free", bytes(4)))

    latin = "caf\xe9".encode("latin-1")
    yield "tags-utf-8", movie(one, tags(item("\xa9nam", "né €𝄞".encode()), item("aART", b"Band"), item("gnre", n(18, 2), 0)))
    yield "tags-utf-16", movie(one, tags(item("\xa9nam", "né𝄞 ".encode("utf-16-be"), 2), item("\xa9ART", b"A"),
                                         item("aART", b"Band"), item("\xa9gen", b"Rock"), item("gnre", n(18, 2), 0)))
    yield "tags-latin-1", movie(one, tags(item("\xa9nam", latin + b" bar"), item("\xa9alb", latin), item("gnre", n(0, 2), 0)))
    yield "tags-cut-in-a-character", movie(one, tags(item("\xa9nam", "né €".encode()[:-1]),
                                                     item("\xa9alb", "né né".encode()[:-1])))
    yield "tags-long", movie(one, tags(item("\xa9nam", "é".encode() * 700), item("\xa9alb", latin * 300),
                                       item("\xa9ART", "é".encode("utf-16-be") * 700, 2)))
    yield "tags-blanks-and-controls", movie(one, tags(item("\xa9nam", b" \ta\x01b\x7f\n \0rest"),
                                                      item("\xa9alb", "﻿ a".encode("utf-16-be"), 2)))
    yield "tags-quicktime-meta", movie(one, box("meta", full("hdlr", bytes(20)), box("ilst", item("\xa9nam", b"T"))))
    yield "tags-without-a-list", movie(one, box("udta", full("meta", full("hdlr", bytes(20)))))
    yield "tags-twice", movie(one, tags(item("\xa9nam", b"T"), item("\xa9nam", b"U"), item("gnre", n(1, 2), 0),
                                        item("gnre", n(2, 2), 0)))
    yield "assets", movie(one, box("udta", asset("titl", "né".encode("utf-16")), asset("perf", b"P\0"), asset("auth", b"A"),
                                   asset("albm", "né\0".encode("utf-16-be").join([b"\xFE\xFF", b"\1"])),
                                   asset("gnre", b"G"), asset("titl", b"second")))
    yield "phrases", movie(one, box("udta", phrase("\xa9nam", b"caf\x8e"), phrase("\xa9ART", "né".encode()),
                                    phrase("\xa9aut", latin, 0x15C7), phrase("\xa9alb", "né".encode("utf-16"), 0x15C7),
                                    phrase("\xa9gen", b"\xFE\xFF\0G", 0x15C7)))


def cut(file, kind, keep):
    """The box ends after so many bytes of its content; what is left becomes a free one."""
    start = file.index(kind) - 4
    size = int.from_bytes(file[start : start + 4], "big")
    kept = 8 + keep
    assert size - kept >= 8, (kind, size)
    content = file[start + 8 : start + kept]
    return file[:start] + n(kept) + kind + content + n(size - kept) + b"free" + file[start + kept + 8 :]


def damaged():
    """Each refused, or read without what is damaged, for another reason."""
    one = movie(audio())
    film = movie(video(avc("high")))
    for kind, keep in ((b"mvhd", 10), (b"mdhd", 10), (b"stts", 8), (b"stsz", 14), (b"stsd", 20), (b"esds", 4), (b"esds", 6),
                       (b"esds", 12), (b"mdia", 0), (b"minf", 0), (b"stbl", 0)):
        yield f"{kind.decode()}-cut-at-{keep}", cut(one, kind, keep)
    yield "avc-cut", cut(film, b"avcC", 2)
    yield "avc-set-cut", cut(film, b"avcC", 9)
    yield "picture-cut", cut(film, b"avc1", 30)
    for name, units in (("short", (b"\x67",)), ("of-another-kind", (b"\x68\xCE\x38\x80",)), ("long", (b"\x67" * 5000,))):
        yield "avc-set-" + name, movie(video(picture("avc1", avcc(UNIT["high"], *units))))
    for name in ("66", "77", "88"):
        yield "avc-level-11-of-" + name, movie(video(picture("avc1", avcc(bytes([int(name), 0, 11])))))
    yield "hevc-cut", movie(video(picture("hvc1", box("hvcC", b"\1\1"))))
    yield "h263-cut", movie(video(picture("s263", box("d263", b"ours"))))
    yield "descriptor-cut", movie(video(picture("mp4v", box("esds", bytes(4)))))
    yield "descriptor-of-nothing", movie(audio(sound("mp4a", box("esds", bytes(4), descriptor(9, b"")))))
    yield "descriptor-without-decoder", movie(audio(sound("mp4a", box("esds", bytes(4), descriptor(3, b"\0\1\0" + descriptor(6, b"\2"))))))
    yield "descriptor-without-config", movie(audio(sound("mp4a", esds(0x40))))
    yield "config-cut", movie(audio(sound("mp4a", esds(0x40, b"\x12"))))
    yield "config-of-no-rate", movie(audio(sound("mp4a", esds(0x40, b"\x16\x90\0\0"))))
    yield "config-of-rate-0", movie(audio(sound("mp4a", esds(0x40, config(2, 13).bytes()[:1] + b"\x80\0\0\0\x10"))))
    late = general(config(2, 7)).put(0x2B7, 11).put(5, 5)
    yield "config-late-rate-of-nobody", movie(audio(sound("mp4a", esds(0x40, Bits()._with(late.text).put(1, 1).put(14, 4).bytes()))))
    yield "config-late-rate-0", movie(audio(sound("mp4a", esds(0x40, Bits()._with(late.text).put(1, 1).put(15, 4).put(0, 24).put(0, 7).bytes()))))
    yield "ac3-cut", movie(audio(sound("ac-3", box("dac3", b"\x10"))))
    yield "ac3-rate-of-nobody", movie(audio(sound("ac-3", dac3(2, rate=3))))
    yield "eac3-cut", movie(audio(sound("ec-3", box("dec3", b"\6"))))
    yield "eac3-rate-of-nobody", movie(audio(sound("ec-3", box("dec3", b"\6\0\xC0\0"))))
    for name, alac in (("cut", bytes(10)), ("no-channels", bytes(28)), ("no-rate", bytes(13) + b"\2" + bytes(14))):
        yield "alac-" + name, movie(audio(sound("alac", box("alac", alac))))
    yield "large-rate-cut", movie(audio(sound("fLaC", box("srat", b"\0"))))
    yield "large-rate-0", movie(audio(sound("fLaC", box("srat", bytes(8)))))
    yield "large-rate-after-another", movie(audio(sound("ac-3", dac3(2), box("srat", n(0), n(96000)))))
    yield "bit-rates-cut", movie(audio(sound("fLaC", box("btrt", n(0)))))
    yield "bit-rates-twice", movie(audio(sound("fLaC", box("btrt", n(0), n(9), n(8)), box("btrt", n(0), n(7), n(6)))))
    yield "sinf-cut", movie(audio(sound("enca", box("sinf", box("frma", b"mp")))))
    yield "stream-of-another-codec", movie(audio(sound("fLaC", esds(0x40, AAC))))
    yield "stream-of-another-video-codec", movie(video(picture("vp09", esds(0x20, b""))))
    yield "float-rate-below-1", movie(audio(sound("lpcm", version=2, more=quicktime_version_2(0x3FE0000000000000))))
    for name, kind in (("blanks", b"    "), ("zeros", b"\0\0\0\0"), ("a blank after", b"zz  "), ("odd letters", b"z-_{"),
                       ("a colon", b"zz:1"), ("a zero after", b"zz\0\0")):
        yield "codec-named-by-" + name.replace(" ", "-"), movie(audio(sound(kind)))
    yield "sound-of-channels-by-itself", movie(audio(sound("mp4a", esds(0x40, general(config(29, 7, 2).put(4, 4).put(2, 5)).bytes()))))
    yield "object-34-late", movie(audio(sound("mp4a", esds(0x40, general(config(22)).put(0, 20).bytes()))))
    yield "sync-word-of-nobody-late", movie(audio(sound("mp4a", esds(0x40, Bits()._with(general(config(2, 7, 1)).put(
        0x2B7, 11).put(5, 5).put(1, 1).put(4, 4).put(0x123, 11).put(0, 9).text).bytes()))))
    yield "runs-too-many", movie(track("soun", (description(sound("samr")), full("stts", n(300)), stsz(1))))
    yield "sizes-of-7-bits", movie(track("soun", (description(sound("samr")), full("stz2", n(7), n(1), b"\0\0"))))
    yield "sizes-of-more-than-there-are", movie(track("soun", (description(sound("samr")), full("stsz", n(0), n(9), n(1)))))
    yield "edits-cut", movie(audio(edits=box("edts", full("elst", n(9), n(1), n(2)))))
    yield "edits-twice", movie(audio(edits=edit_list((500, 0), (500, 600))))
    yield "edits-of-nothing-at-all", movie(audio(edits=edit_list((0, 0xFFFFFFFF), (500, 0))))
    yield "movie-without-ticks", FTYP + box("moov", times("mvhd", 0, 0), audio(edits=edit_list((500, 0)))) + MDAT
    yield "movie-without-head", FTYP + box("moov", audio()) + MDAT
    yield "two-sounds-not-enabled", movie(audio(flags=0), audio(flags=0, number=3))
    yield "media-with-others", movie(box("trak", head(), box("mdia", times("mdhd"), box("elng", b"de\0\0"), full(
        "hdlr", bytes(4), b"soun", bytes(12)), box("minf", box("smhd", bytes(8))))))
    yield "defaults-cut", fragmented(fragment(1, 0x300, [n(100) + n(50)]), mvex=box("trex", n(0), n(1)) + box("free"))
    yield "run-cut", fragmented(box("moof", box("traf", full("tfhd", n(1)), full("trun", n(9), n(1), flags=0x100))) + MDAT)
    yield "run-without-offset", fragmented(box("moof", box("traf", full("tfhd", n(1)), full("trun", n(9), flags=5))) + MDAT)
    yield "run-head-cut", fragmented(box("moof", box("traf", full("tfhd", n(1), flags=0x1B), full("trun", n(9)))) + MDAT)
    yield "run-time-cut", fragmented(box("moof", box("traf", full("tfhd", n(1)), full("tfdt", b"\0"))) + MDAT)
    yield "index-cut", fragmented(full("sidx", n(1), n(1000), bytes(8), n(0, 2), n(9, 2), bytes(12)), fragment(1, 0x300, [n(1) + n(1)]))
    yield "index-of-nothing", fragmented(sidx(0, 5), fragment(1, 0x300, [n(1) + n(1)]))
    whole = fragment(1, 0x300, [n(100) + n(50)] * 5)
    yield "index-before-two-more", fragmented(sidx(500, len(whole)), whole, sidx(500, len(whole)), whole)
    yield "fragments-cut-in-a-head", fragmented(whole, b"\0\0")
    yield "fragments-cut-in-a-large-box", fragmented(whole, n(1) + b"moof" + bytes(4))
    yield "fragments-cut-in-a-box", fragmented(whole, n(99) + b"moof" + bytes(4))
    yield "fragments-then-a-damaged-size", fragmented(whole, n(1 << 24) + b"moof" + bytes(9000))
    yield "fragments-then-a-box-of-no-size", fragmented(whole, n(5) + b"moof" + bytes(4))
    yield "fragments-shorter-than-told", fragmented(whole, tracks=(audio(duration=60000),))
    huge = full("mvhd", bytes(16), n(1), n(1 << 62, 8), bytes(4), version=1)
    yield "duration-beyond-all", FTYP + box("moov", huge, audio()) + MDAT
    huge = full("mvhd", bytes(16), n(1 << 31), n((1 << 64) - 2, 8), bytes(4), version=1)
    yield "duration-of-many-ticks", FTYP + box("moov", huge, audio()) + MDAT
    plain = (FTYP + box("moov", times("mvhd", 1000, 0), track("soun", (description(sound("zz 1")),), duration=0)) + MDAT)
    yield "nothing-told", plain
    stated = picture("vp09", box("btrt", n(0), n(0xFFFFFFFE), n(0xFFFFFFFE)))
    yield "rates-beyond-a-number", movie(audio(sound("fLaC", box("btrt", n(0), n(9), n(0xFFFFFFF0)))), video(stated))
    yield "no-sizes-of-the-video", movie(audio(sound("fLaC", box("btrt", n(0), n(9), n(8)))), video(sizes=()))
    yield "no-sizes-of-a-silent-film", movie(video(sizes=()))
    yield "not-a-first-box", box("ours", b"x") + one
    yield "not-whole-in-the-first-box", b"\0\0\0\x18ftypiso"
    yield "not-with-a-movie", FTYP + MDAT
    yield "not-with-a-whole-movie", one[:60]
    yield "box-smaller-than-its-head", FTYP + n(5) + b"moov" + one


def seeds():
    for name, content in damaged():
        yield "format_iso", name, content + DELIVERED_AS_IT_IS
    for name, entry in sounds():
        entry, version = entry if isinstance(entry, tuple) else (entry, 0)
        yield "format_iso", "sound-" + name, movie(audio(entry, version)) + DELIVERED_AS_IT_IS
    for name, entry in pictures():
        yield "format_iso", "picture-" + name, movie(video(entry)) + DELIVERED_AS_IT_IS
    for name, content in files():
        yield "format_iso", name, content + DELIVERED_AS_IT_IS
    unknown = bytes([8]) + bytes(7)
    yield "format_iso", "silent-film-of-unknown-size", movie(video(sizes=())) + unknown
    whole = fragment(1, 0x300, [n(100) + n(50)] * 5)
    failing = fragmented(whole, box("free", bytes(9000)), whole) + bytes([2 | 8, 0, 0, 1]) + bytes(4)
    yield "format_iso", "of-unknown-size-failing-after-the-movie", failing
    song = movie(track("soun", (stts((10, 100)), stsz(*(100,) * 10), description(sound("mp4a", esds(0x40, AAC))))), rest=b"")
    rest = len(song) - song.rindex(AAC)
    yield "format_iso", "configuration-that-is-not-there", song[:-rest] + bytes([16, rest - 1]) + bytes(6)
    yield "format_iso", "more-boxes-than-are-read", fragmented(whole, 4100 * box("free")) + DELIVERED_AS_IT_IS
    # The last bytes of the last table are said to be there, and are not.
    times, sizes = stts(*((1, 40 + i) for i in range(25))), stsz(*range(20, 45))
    for name, tables in (("times", (sizes, times)), ("sizes", (times, sizes))):
        film = movie(track("vide", (description(picture("vp09")), *tables)), rest=b"")
        yield "format_iso", f"{name}-that-are-not-there", film[:-50] + bytes([16, 49]) + bytes(6)
    hole = 50 << 11
    told = fragmented(fragment(1, 0x300, [n(100) + n(50)] * 5) + box("free", bytes(hole)), MDAT)
    after = movie(audio(), brand=FTYP + box("mdat", bytes(hole)), rest=b"")
    yield "format_iso", "data-longer-than-a-tail", with_hole(after, hole)
    for read in range(3):
        yield "format_iso", f"fails-at-{read}", with_hole(after, hole, read)
        yield "format_iso", f"fragments-fail-at-{read}", with_hole(told, hole, read)
    hole = 200 << 11
    sizes = full("stsz", n(0), n(10 + hole // 4), n(100) * 10, bytes(hole))
    for name, kind, more in (("sound-of-a-film", "soun", (video(),)), ("video", "vide", ())):
        entry = sound("mp4a", esds(0x40, AAC)) if kind == "soun" else picture("vp09")
        long = track(kind, (description(entry), stts((10 + hole // 4, 100)), sizes), duration=10000000)
        yield "format_iso", "long-table-of-a-" + name, with_hole(movie(long, *more, rest=b""), hole)
    yield "format_iso", "byte-by-byte", movie(audio(), video()) + bytes([1]) + bytes(7)
    yield "format_iso", "trickling", movie(audio(), video()) + bytes([1, 2]) + bytes(6)
