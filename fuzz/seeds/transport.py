"""Seeds of transport streams: tables, stamps, and packets of each size."""
from music import DELIVERED_AS_IT_IS, delivered, n

MAP, VIDEO, SOUND, OTHER, EVENTS, TIME = 0x100, 0x101, 0x102, 0x103, 0x12, 0x14
SEQUENCE = bytes.fromhex("000001B316012013FFFFE080000001B5148200010000")
AC3 = bytes.fromhex("0B77000000083020") + bytes(120)


def sum_of(content):
    total = 0xFFFFFFFF
    for byte in content:
        total ^= byte << 24
        for _ in range(8):
            total = (total << 1 ^ (0x04C11DB7 if total >> 31 else 0)) & 0xFFFFFFFF
    return n(total)


def section(table, number, body):
    content = bytes([table]) + n(0xB000 | len(body) + 9, 2) + n(number, 2) + b"\xC1\0\0" + body
    return content + sum_of(content)


def association(programs=((1, MAP),)):
    return section(0, 1, b"".join(n(number, 2) + n(0xE000 | pid, 2) for number, pid in programs))


def descriptor(tag, content):
    return bytes([tag, len(content)]) + content


def program_map(streams, descriptors=b"", number=1):
    entries = (bytes([kind]) + n(0xE000 | pid, 2) + n(0xF000 | len(told), 2) + told for kind, pid, told in streams)
    return section(2, number, n(0xE000 | VIDEO, 2) + n(0xF000 | len(descriptors), 2) + descriptors + b"".join(entries))


def stamp(ticks):
    return bytes([0x21 | ticks >> 29 & 14]) + n(ticks >> 14 & 0xFFFE | 1, 2) + n(ticks << 1 & 0xFFFE | 1, 2)


def stream_packet(kind, ticks, payload, flags=0x80):
    return b"\0\0\1" + bytes([kind]) + n(0, 2) + bytes([flags, 0x80, 5]) + stamp(ticks) + payload


def packets(pid, unit, first=0x40, clock=None, scrambling=0):
    written = b""
    for count, place in enumerate(range(0, len(unit), 150)):
        part = unit[place:place + 150]
        field = b"\x10" + n(clock << 15, 6) if clock is not None and place == 0 else b"\0"
        field = field.ljust(183 - len(part), b"\xFF")
        head = n((first if place == 0 else 0) << 8 | pid, 2) + bytes([0x30 | scrambling | count & 15, len(field)])
        written += b"\x47" + head + field + part
    return written


def table(pid, content):
    return packets(pid, b"\0" + content)


def pictures(count=6, start=90000, step=3600, scrambling=0, flags=0x80):
    return b"".join(packets(VIDEO, stream_packet(0xE0, (start + i * step) % (1 << 33), SEQUENCE, flags), clock=i * step,
                            scrambling=scrambling)
                    + packets(SOUND, stream_packet(0xBD, (start + i * step) % (1 << 33), AC3, flags), scrambling=scrambling)
                    for i in range(count))


STREAMS = [(2, VIDEO, b""), (0x81, SOUND, descriptor(10, b"deu\0"))]
TABLES = table(0, association()) + table(MAP, program_map(STREAMS))
FILM = TABLES + pictures()


def event(name, day=58849, length=b"\1\x30\0"):
    told = descriptor(0x4D, b"eng" + bytes([len(name)]) + name + b"\0")
    return n(7, 2) + n(day, 2) + b"\x20\x15\0" + length + n(len(told), 2) + told


def spaced(before, after):
    return b"".join(before + FILM[i:i + 188] + after for i in range(0, len(FILM), 188))


def streams():
    yield "film", FILM
    yield "stamped", spaced(b"\0\0\1\2", b"")
    yield "stamps-of-zero", spaced(bytes(4), b"")
    yield "parity", spaced(b"", 16 * b"p")
    yield "junk-first", b"GGxG" * 30 + FILM
    yield "clip", TABLES + pictures(1)[:188]
    yield "without-tables", pictures(8)
    yield "clock-anew", TABLES + pictures(start=(1 << 33) - 9000)
    yield "clock-jumps", TABLES + pictures(4) + pictures(4, 1 << 32, 30000)
    yield "scrambled", TABLES + pictures(scrambling=0x80)
    yield "scrambled-packets-of-streams", TABLES + pictures(flags=0x90)
    yield "damaged-table", table(0, association()[:-1] + b"!") + FILM
    yield "section-longer-than-all", packets(0, b"\0\0\xBF\xFF" + 300 * b"x") + FILM
    yield "programs", table(0, association([(0, 16), (1, MAP), (2, 0), (3, 0x1FFF)])) + TABLES + pictures()
    events = section(0x4E, 1, n(1, 2) + n(0x233A, 2) + b"\1\x4E" + event(b"\x15A film") + event(b"\x10\0\2Next"))
    time = b"\x73" + n(0x7000 | 11, 2) + n(58849, 2) + b"\x20\x14\0" + n(0xF000, 2)
    yield "events", TABLES + table(EVENTS, events) + table(TIME, time + sum_of(time)) + pictures()
    told = [descriptor(0x6A, b"\0"), descriptor(0x7F, b"\x80\2"), descriptor(5, b"DTS2"), descriptor(0x59, b"deu\x10\0\1\0\1"),
            descriptor(0x56, b"fra\x10\x88"), descriptor(0xFD, b"\0\x08\x3D"), b"\x0A\xFF", b""]
    private = [(6, 0x200 + i, words) for i, words in enumerate(told)]
    yield "descriptors", table(0, association()) + table(MAP, program_map(STREAMS + private)) + pictures()
    discs = [(kind, 0x200 + kind, b"") for kind in (0x80, 0x82, 0x83, 0x86, 0x90, 0xC1, 0xDB, 0x20, 0x24)]
    yield "types-of-discs", table(0, association()) + table(MAP, program_map(STREAMS + discs, descriptor(5, b"HDMV"))) + pictures()


def seeds():
    for name, content in streams():
        yield "format_ts", name, content + DELIVERED_AS_IT_IS
    yield "format_ts", "unknown-size", FILM + delivered(8)
    yield "format_ts", "hole", FILM + delivered(0, len(TABLES), 100, 10)
