"""Seeds of the media stream: every operation, on media of sizes that matter, delivered in every way. And of the adapter."""

SIZES = {"nothing": 0, "a-hundred-bytes": 2, "the-buffer": 4, "more-than-the-buffer": 5, "two-buffers": 6}
DELIVERIES = {
    "whole": bytes([0]),
    "in-pieces": bytes([1, 9, 0]),
    "of-unknown-size": bytes([8]),
    "failing-at-once": bytes([2, 0]),
    "failing-later": bytes([2, 1]),
    "not-seekable": bytes([16]),
}
SMALL, BEHIND, LEFT, BUFFER, HUGE = 6, 0, 1, 2, 5  # the kinds of numbers


def operations():
    exactly, up_to, at, at_end, seek, move, copy, reopen, close = 0, 2, 4, 5, 6, 8, 9, 10, 11
    yield [exactly, SMALL, 0]
    yield [up_to, SMALL, 0]
    yield [exactly, SMALL, 20]
    yield [up_to, SMALL, 20]
    for exact in (0, 1):
        yield [at, SMALL, 10, SMALL, 20, exact]
        yield [at, BEHIND, 10, SMALL, 20, exact]
        yield [at, SMALL, 10, BUFFER, 2, exact]
        yield [at, LEFT, 10, SMALL, 60, exact]
        yield [at_end, SMALL, 10, exact]
        yield [at_end, SMALL, 0, exact]
        yield [at_end, BEHIND, 9, exact]
        yield [copy, SMALL, 1, exact]
        yield [copy, SMALL, 0, exact]
    yield [seek, SMALL, 5, 0]
    yield [move, SMALL, 5, 0]
    yield [move, HUGE, 1, 0]
    yield [exactly, BUFFER, 2]
    yield [up_to, BEHIND, 7]
    yield [seek, SMALL, 0, 0]
    yield [exactly, BEHIND, 7]
    yield [reopen]
    yield [exactly, SMALL, 3]
    yield [close]
    yield [up_to, SMALL, 3]


def adapters():
    """Of the stream that is read through the adapter: its size and nature, what it answers, and operations."""
    largest, trickling, lending, misbehaving = 7, 8, 1, 16
    arrived = (8191).to_bytes(2, "little")  # and one more: what is read first
    close = bytes([7, 0, 0, 0, 0, 0])
    beyond = bytes([0, 0]) + (5000).to_bytes(2, "little") + bytes([100, 0])
    error, one_byte, no_data = 5, 1, 1
    for name, nature in (("", 0), ("-lent", lending)):
        yield "closed-while-trickling" + name, bytes([largest, trickling | nature]) + arrived + close + beyond
        yield "error" + name, bytes([largest, misbehaving | nature, 1, error, one_byte, 0])
    yield "lent-nothing", bytes([largest, misbehaving | lending, 1, 0, one_byte, no_data])


def seeds():
    for name, content in adapters():
        yield "stream_adapter", name, content
    played = b"".join(map(bytes, operations()))
    for size, number in SIZES.items():
        for delivery, head in DELIVERIES.items():
            yield "media_parser_stream", f"{size}-{delivery}", bytes([number]) + head + played
        yield "media_parser_stream", f"{size}-file", bytes([number | 8, 0, 2]) + played
    yield "media_parser_stream", "not-read-first", bytes([6 | 16, 0]) + played
    yield "media_parser_stream", "not-read-first-and-short", bytes([2 | 16, 0, 2, SMALL, 200]) + played
    yield "media_parser_stream", "not-read-first-failing", bytes([6 | 16, 2, 0]) + played
    yield "media_parser_stream", "file-not-read-first", bytes([6 | 8 | 16, 0, 2]) + played
