"""What exiftool tells of media, fact by fact, in the words of ezannounce. What it leaves out is not known of it."""

import json

from facts import run

NAME = "exiftool"

# Its tags of a fact; the first that is there counts.
TAGS = {"width": ("SourceImageWidth", "ImageWidth"), "height": ("SourceImageHeight", "ImageHeight"),
        "frame rate": ("VideoFrameRate", "FrameRate"),
        "sampling": ("SampleRate", "AudioSampleRate"), "channels": ("AudioChannels", "NumChannels", "Channels"),
        "title": ("Title",), "artist": ("Artist", "Author"), "album": ("Album", "AlbumTitle"), "genre": ("Genre",),
        "cover": ("PictureMIMEType",)}
TURNS = {3: "180", 6: "90", 8: "270"}  # orientations of Exif that mirror nothing, degrees clockwise
# Durations of these are a size by a rate, or by the last position of whatever is in the file.
ESTIMATED = ("MP3", "MPEG", "VOB", "M2V", "OGG", "OGV", "OPUS", "WAV")
LAYERS = ("AudioLayer", "MPEGAudioVersion")  # beside these SampleRate is an index


def text(fact, value):
    if fact == "frame rate":
        return f"{float(value):.3f}"
    return str(value)


def duration(tags):
    """In seconds, without what a player of ASF loads first; 0 where it is not read of the file."""
    stated = tags.get("Duration")
    if not isinstance(stated, (int, float)) or tags.get("FileType") in ESTIMATED:
        return 0
    return stated - tags.get("Preroll", 0) / 1000


def facts_of(tags):
    """The facts of an answer."""
    found = {}
    for fact, names in TAGS.items():
        value = next((tags[name] for name in names if name in tags), None)
        if value not in (None, "", 0):
            found[fact] = text(fact, value)
    if any(layer in tags for layer in LAYERS):
        found.pop("sampling", None)
    seconds = duration(tags)
    if seconds > 0:
        found["duration"] = f"{seconds:.3f}"
    turned = tags.get("Rotation") or TURNS.get(tags.get("Orientation"))
    if turned:
        found["turned"] = str(turned)
    return found


def tell(paths):
    """The facts of each file, by its path: one call for all, as its start takes long."""
    answers = json.loads(run("exiftool", "-json", "-n", *paths) or "[]")
    return {path: facts_of(tags) for path, tags in zip(paths, answers)}
