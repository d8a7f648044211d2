"""What mediainfo tells of media, fact by fact, in the words of ezannounce. What it leaves out is not known of it."""

import json

from facts import run

NAME = "mediainfo"

# Its names of codecs where they are not ours; after a blank the version or the profile that tells them apart.
CODECS = {"MPEG Audio Layer 1": "MP1", "MPEG Audio Layer 2": "MP2", "MPEG Audio Layer 3": "MP3", "AC-3": "AC3",
          "E-AC-3": "EAC3", "PCM": "LPCM", "PCM Float": "PCM-float", "AAC LC": "AAC", "AAC LC SBR": "HE-AAC",
          "AAC LC SBR PS": "HE-AACv2", "AAC Main": "AAC-Main", "WMA 1": "WMA1", "WMA 2": "WMA2", "WMA Pro": "WMA-Pro",
          "WMA Lossless": "WMA-lossless", "WMA Voice": "WMA-voice", "AMR Narrow band": "AMR", "AMR Wide band": "AMR-WB",
          "DTS XLL": "DTS-HD-MA", "DTS XBR": "DTS-HD-HRA", "DTS LBR": "DTS-HD-LBR", "Monkey's Audio": "APE",
          "MLP FBA": "TrueHD", "ADPCM IMA": "ADPCM-IMA", "ADPCM A-Law": "alaw", "ADPCM U-Law": "ulaw",
          "AVC": "H264", "HEVC": "H265", "MPEG Video 1": "MPEG1", "MPEG Video 2": "MPEG2", "MPEG-4 Visual": "MPEG4",
          "H.263": "H263", "JPEG": "MJPEG", "V_MJPEG": "MJPEG", "Sorenson Spark": "Sorenson", "VC-1": "VC1", "vp09": "VP9",
          "Musepack SV7": "MPC7", "Musepack SV8": "MPC8", "ADPCM 2": "ADPCM-MS", "ADPCM 11": "ADPCM-IMA",
          "ADPCM 8-bit mu-law": "ulaw"}
WITH_BITS = ("LPCM", "PCM-float", "FLAC", "ALAC", "WavPack", "TTA", "APE", "WMA-lossless", "DSD", "DST", "MLP", "TrueHD")
VIDEO_PROFILES = {"Constrained Baseline": "ConstrainedBaseline", "BaseLine": "0",
                  "Advanced Simple": "AdvancedSimple", "Main 10": "Main10", "Format Range": "RangeExtensions"}
LEVELS = {"Low": "1", "Main": "2", "High 1440": "3", "High": "4"}
TEXTS = {"title": ("Track", "Title"), "artist": ("Performer",), "album": ("Album",), "genre": ("Genre",)}


def number(track, key, scale=1):
    """As a whole number; None where it is none, or several by "/"."""
    try:
        return str(round(float(track[key]) * scale))
    except (KeyError, ValueError):
        return None


def sound_codec(track):
    kind = track.get("Format", "")
    more = track.get("Format_Profile") if kind in ("MPEG Audio", "WMA", "AMR") else track.get("Format_AdditionalFeatures")
    if kind == "WMA" and "Format_Version" in track:
        more = track["Format_Version"]
    elif kind == "PCM":
        more = "Float" if track.get("Format_Profile") == "Float" else None
    elif kind == "ADPCM":
        more = track.get("Format_Profile", track.get("CodecID"))
    name = f"{kind} {more}" if more else kind
    return CODECS.get(name, CODECS.get(kind, kind))


def video_codec(track):
    kind = track.get("Format", "")
    name = f"{kind} {track.get('Format_Version', '')}"
    if kind == "VC-1" and track.get("Format_Profile") in ("Simple", "Main"):
        return "WMV3"
    return CODECS.get(name, CODECS.get(kind, kind))


def profile(track):
    """Of the codecs whose profiles we tell, in our words."""
    stated = track.get("Format_Profile")
    return VIDEO_PROFILES.get(stated, stated) if video_codec(track) not in ("VP8", "ProRes") else None


def level(track):
    stated = track.get("Format_Level")
    return LEVELS.get(stated, stated) if video_codec(track) == "MPEG2" else stated


def turned(track):
    angle = number(track, "Rotation")
    return str(int(angle) % 360) if angle is not None and int(angle) % 360 != 0 else None


def sound(track, count):
    codec = sound_codec(track)
    bits = track.get("BitDepth") if codec in WITH_BITS else None # of others those that it is decoded to
    return {"audio codec": codec, "audio tracks": str(count), "sampling": number(track, "SamplingRate"),
            "channels": number(track, "Channels"), "bits": bits}


def video(track):
    scan = track.get("ScanType", "").lower()
    colours = f"{track['ChromaSubsampling']} of {track['BitDepth']}" \
        if "ChromaSubsampling" in track and "BitDepth" in track else None
    rate = track.get("FrameRate")
    return {"video codec": video_codec(track), "profile": profile(track), "level": level(track),
            "frame rate": f"{float(rate):.3f}" if rate else None, "scan": "interlaced" if scan == "mbaff" else scan,
            "colours": colours, "turned": turned(track)}


def facts_of(tracks):
    """The facts of the tracks of an answer."""
    kinds = {kind: [track for track in tracks if track["@type"] == kind] for kind in ("General", "Video", "Audio", "Image")}
    whole = (kinds["General"] or [{}])[0]
    found = {fact: next((whole[key] for key in keys if key in whole), None) for fact, keys in TEXTS.items()}
    found["cover"] = whole.get("Cover_Mime")
    picture = kinds["Video"] or ([] if kinds["Audio"] else kinds["Image"])
    if picture:
        found.update({side.lower(): number(picture[0], side) for side in ("Width", "Height")})
    if kinds["Video"]:
        found.update(video(kinds["Video"][0]))
    if kinds["Audio"]:
        found.update(sound(kinds["Audio"][0], len(kinds["Audio"])))
    if "Duration" in whole:
        found["duration"] = f"{float(whole['Duration']):.3f}"
    return {fact: value for fact, value in found.items() if value}


def tell(paths):
    """The facts of each file, by its path."""
    return {path: facts_of((json.loads(run("mediainfo", "--Output=JSON", path) or "{}").get("media") or {}).get("track", []))
            for path in paths}
