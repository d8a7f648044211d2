"""What ezannounce tells of media, fact by fact, and how it is held against what other probers tell."""

import collections
import fnmatch
import json
import os
import subprocess
import tempfile

NONE = "-"        # the media has no such fact
TOLERANCE = 0.06          # seconds: probers round, and differ in a frame of encoder delay
WHOLE_TOLERANCE = 1       # where a prober tells whole seconds alone
RATE_TOLERANCE = 0.001    # of a rate of pictures: three decimals, of counts of few

# Types that a DLNA profile asks for, and those of the same media without one.
PROFILE_TYPES = {"audio/vnd.dlna.adts": "audio/aac", "audio/vnd.dolby.dd-raw": "audio/ac3"}

TURNS = {3: "180", 6: "90", 8: "270"}  # orientations of Exif that mirror nothing, degrees clockwise


class Failure(Exception):
    """What ends the comparison."""


def run(*command):
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False)
    except OSError as error:
        raise Failure(f"{command[0]}: {error.strerror}") from error
    return done.stdout.decode("utf-8", "replace")


# What ezannounce tells of one media, fact by fact, as text.

def our_type(ours):
    """A transport stream without time stamps is video/mpeg by its profile alone."""
    if ours.get("container") == "TS":
        return "video/mp2t"
    stated = ours.get("mime_type", NONE)
    return PROFILE_TYPES.get(stated, stated)


def our_duration(ours):
    """In seconds, with a point where milliseconds are told."""
    if "duration_ms" in ours:
        return f"{ours['duration_ms'] / 1000:.3f}"
    return str(ours.get("duration", NONE))


def our_rate(kind):
    def rate(ours):
        """The estimate of a rate that varies or is known no better, after a "~"."""
        stated = ours.get(kind + "bit_rate", NONE)
        return f"~{ours.get(kind + 'estimated_bit_rate', NONE)}" if stated == "variable" else str(stated)
    return rate


def our_languages(key):
    return lambda ours: " ".join(ours.get(key, [])) or NONE


def our_colours(ours):
    return f"{ours['colours']} of {ours['bit_depth']}" if "colours" in ours else NONE


def our(key):
    return lambda ours: str(ours.get(key, NONE))


FACTS = {"type": our_type,
         "duration": our_duration,
         "bit rate": our_rate(""),
         "audio codec": our("audio_codec"),
         "audio tracks": our("audio_tracks"),
         "audio rate": our_rate("audio_"),
         "sampling": our("sampling_rate"),
         "channels": our("channels"),
         "bits": our("bits_per_sample"),
         "video codec": our("video_codec"),
         "profile": our("video_profile"),
         "level": our("video_level"),
         "video rate": our_rate("video_"),
         "width": our("picture_width"),
         "height": our("picture_height"),
         "turned": lambda ours: TURNS.get(ours.get("orientation"), our("orientation")(ours)),
         "pixel": our("pixel_aspect"),
         "shown": our("display_aspect"),
         "frame rate": lambda ours: f"{ours['frame_rate']:.3f}" if "frame_rate" in ours else NONE,
         "scan": our("process"),
         "colours": our_colours,
         "range": our("hdr"),
         "languages": our_languages("languages"),
         "subtitles": our("subtitle_tracks"),
         "subtitle languages": our_languages("subtitle_languages"),
         "title": our("title"),
         "artist": our("creator"),
         "album": our("album"),
         "genre": our("genre"),
         "cover": our("cover_type")}


def told(tool, config, *media):
    """What the tool tells of files and folders: (path, facts) of each media that it announces."""
    lines = run(tool, "--json", "--config", config, *media).splitlines()
    return [(ours["path"], ours) for ours in map(json.loads, lines)]


def own_types(tool):
    """The MIME types that the file parsers may state: all that is announced where no media types file is."""
    with tempfile.TemporaryDirectory() as empty:
        return {line.split(":")[2] for line in run(tool, "capabilities", "--config", empty).splitlines()}


# How two answers are held against each other.

def number(text):
    try:
        return float(text.lstrip("~"))
    except ValueError:
        return None


def tolerance(fact, theirs):
    if fact == "duration":
        return TOLERANCE if "." in theirs else WHOLE_TOLERANCE
    if fact == "frame rate":
        return RATE_TOLERANCE * number(theirs)
    return 1 if fact.endswith("rate") else 0  # one side rounds a rate and the other drops the remainder


def is_same(fact, ours, theirs):
    if ours == theirs:
        return True
    numbers = (number(ours), number(theirs))
    # A remainder in binary is no difference.
    return None not in numbers and abs(numbers[0] - numbers[1]) <= tolerance(fact, theirs) + 1e-9


# A fact of a sample that a prober tells, too.
Answer = collections.namedtuple("Answer", "sample fact prober ours theirs")


class Explanation:
    """A difference that is known and right. Sample and values may be patterns, as files of a shell are."""

    def __init__(self, sample, fact, prober, ours, theirs, reason):
        self.wanted = Answer(sample, fact, prober, ours, theirs)
        self.reason = reason
        self.used = False

    def explains(self, answer):
        return all(stated == pattern or fnmatch.fnmatchcase(stated, pattern)
                   for stated, pattern in zip(answer, self.wanted))

    def __str__(self):
        sample, fact, prober, ours, theirs = self.wanted
        return f"{sample}: {fact} is explained against {prober}, {ours} and {theirs}, but does not differ so"


def read_explained(text):
    """The rows of the tables of a Markdown text. A heading of the second level names the prober of those below it."""
    found = []
    keys = set()
    prober = NONE
    for place, line in enumerate(text.splitlines(), 1):
        if line.startswith("## "):
            prober = line[3:].strip()
        if not line.startswith("| `"):
            continue
        cells = [cell.strip().strip("`") for cell in line.strip().strip("|").split("|")]
        if len(cells) != 5 or not all(cells):
            raise Failure(f"line {place} of the explained differences has {len(cells)} cells, or an empty one")
        sample, fact, ours, theirs, reason = cells
        key = (sample, fact, prober, ours, theirs)
        if key in keys:
            raise Failure(f"line {place} of the explained differences explains {fact} of {sample} again")
        if fact not in FACTS:
            raise Failure(f"line {place} of the explained differences is of {fact}, which no fact is named")
        keys.add(key)
        found.append(Explanation(sample, fact, prober, ours, theirs, reason))
    return found


def compare(sample, ours, prober, theirs):
    """The answers of a sample: a fact that is not among theirs is one that the prober has no notion of."""
    return [Answer(sample, fact, prober, FACTS[fact](ours), theirs[fact]) for fact in FACTS if fact in theirs]


def judge(answers, explained):
    """(answer, its explanation or None) of each that differs; explanations that explain any are marked as used."""
    differing = []
    for answer in answers:
        if is_same(answer.fact, answer.ours, answer.theirs):
            continue
        why = next((one for one in explained if one.explains(answer)), None)
        if why is not None:
            why.used = True
        differing.append((answer, why))
    return differing
