"""Seeds of files of DSD. Those that begin with "not-" are refused."""
from chunks import COVER, DELIVERED_AS_IT_IS, TITLE, UNKNOWN_SIZE, little, n

SOUND = b"\x69" * 64


# --- DSF


def dsf(sound=SOUND, tag=b"", samples=256, size=None, place=None, layout=0, channels=2, rate=2822400, extra=b""):
    fields = little(1) + little(layout) + little(2) + little(channels) + little(rate) + little(1) + little(samples, 8)
    form = b"fmt " + little(52 + len(extra), 8) + fields + little(4096) + little(0) + extra
    data = b"data" + little(len(sound) + 12 if size is None else size, 8) + sound
    end = 28 + len(form) + len(data)
    place = place if place is not None else end if tag else 0
    return b"DSD " + little(28, 8) + little(end + len(tag), 8) + little(place, 8) + form + data + tag


def dsfs():
    yield "plain", dsf()
    yield "tagged", dsf(tag=COVER)
    yield "tag-between", dsf(tag=b"more" + TITLE, place=160)
    yield "tag-nowhere", dsf(tag=TITLE, place=1 << 40)
    yield "uncounted", dsf(samples=0, tag=TITLE)
    yield "count-too-large", dsf(samples=257)
    yield "data-of-open-size", dsf(size=(1 << 64) - 1, samples=0)
    yield "longer-format", dsf(extra=bytes(8))
    yield "no-data", dsf()[:80]
    yield "not-of-this-layout", dsf(layout=1)
    yield "not-of-channels", dsf(channels=0)
    yield "not-of-a-rate", dsf(rate=0)
    yield "not-whole", dsf()[:79]
    yield "not-one", b"DSDX" + dsf()[4:]


# --- DSDIFF


def chunk(name, content, size=None):
    return name + n(len(content) if size is None else size, 8) + content + bytes(len(content) % 2)


def form(*chunks, kind=b"DSD "):
    content = b"".join(chunks)
    return b"FRM8" + n(len(content) + 4, 8) + kind + content


def prop(compression=b"DSD ", rate=2822400, channels=2, kind=b"SND "):
    return chunk(b"PROP", kind + chunk(b"FS  ", n(rate)) + chunk(b"CHNL", n(channels, 2) + b"SLFTSRGT")
                 + chunk(b"CMPR", compression + b"\x0Enot compressed"))


def text(name, content, length=None):
    return chunk(name, n(len(content) if length is None else length) + content)


def dst(frames=1, rate=75):
    return chunk(b"DST ", chunk(b"FRTE", n(frames) + n(rate, 2)) + chunk(b"DSTF", b"\0" + SOUND))


TEXTS = chunk(b"DIIN", text(b"DIAR", b"Noter") + text(b"DITI", b"Gr\xFC\xDF") + chunk(b"EMID", b"some"))
PLAIN = chunk(b"DSD ", SOUND)


def dsdiffs():
    yield "plain", form(chunk(b"FVER", n(0x01050000)), prop(), PLAIN, TEXTS)
    yield "tagged", form(prop(), PLAIN, TEXTS, chunk(b"ID3 ", COVER))
    yield "compressed", form(prop(b"DST "), dst(), chunk(b"id3 ", TITLE))
    yield "compressed-uncounted", form(prop(b"DST "), chunk(b"DST ", chunk(b"DSTF", SOUND)))
    yield "compressed-for-ever", form(prop(b"DST "), dst(0xFFFFFFFF))
    yield "no-rate-of-frames", form(prop(b"DST "), dst(1, 0))
    yield "open", form(prop(), chunk(b"DSD ", SOUND, (1 << 64) - 1))
    yield "size-zero", form(prop(), chunk(b"DSD ", b"", 0), TEXTS)
    yield "too-large", form(prop(), chunk(b"DSD ", SOUND, 65))
    yield "properties-last", form(TEXTS, PLAIN, prop())
    yield "text-too-long", form(prop(), chunk(b"DIIN", text(b"DITI", b"lost", 0xFFFFFFFF)))
    yield "no-sound", form(prop(b"DST "))
    yield "not-described", form(PLAIN, prop(kind=b"TXT "))
    yield "not-of-this-kind", form(PLAIN, kind=b"8SVX")
    yield "not-one", b"FORM" + form(PLAIN)[4:]


def dsf_covers():
    yield "cover", dsf(tag=COVER)
    yield "nowhere", dsf(tag=COVER, place=(1 << 64) - 1)
    yield "in-the-head", dsf(tag=COVER, place=4)
    yield "another-head", b"DSD \x1D" + dsf(tag=COVER)[5:]


def dsdiff_covers():
    yield "cover", form(prop(), PLAIN, chunk(b"ID3 ", COVER))
    yield "second-tag", form(chunk(b"ID3 ", TITLE), chunk(b"id3 ", COVER))
    yield "another-kind", form(chunk(b"ID3 ", COVER), kind=b"8SVX")


def seeds():
    for door, files in (("format_dsf", dsfs), ("format_dsdiff", dsdiffs)):
        for name, content in files():
            yield door, name, content + DELIVERED_AS_IT_IS
    yield "format_dsf", "unknown-size", dsf(tag=TITLE) + UNKNOWN_SIZE
    yield "format_dsdiff", "unknown-size", form(prop(), chunk(b"DSD ", SOUND, (1 << 64) - 1), TEXTS) + UNKNOWN_SIZE
    for door, files in (("cover_dsf", dsf_covers), ("cover_dsdiff", dsdiff_covers)):
        for name, content in files():
            yield door, name, content
