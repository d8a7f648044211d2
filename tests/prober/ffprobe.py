"""What ffprobe tells of media, fact by fact, in the words of ezannounce."""

import fractions
import json

from facts import NONE, run

NAME = "ffprobe"
UNTOLD = None     # ffprobe has no notion of the fact

# What ffprobe calls a format where its name is not of the media alone, and pictures by its names of their codecs.
ISO_MEDIA = "mov,mp4,m4a,3gp,3g2,mj2"
MATROSKA = "matroska,webm"
PICTURE_TYPES = {"mjpeg": "image/jpeg", "png": "image/png", "gif": "image/gif", "bmp": "image/bmp",
                 "tiff": "image/tiff", "webp": "image/webp"}

# Formats that hold one sound and nothing else, and the type that goes with each.
SOUND_TYPES = {"wav": "audio/wav", "w64": "audio/x-w64", "aiff": "audio/x-aiff", "au": "audio/basic", "caf": "audio/x-caf",
               "flac": "audio/flac", "dsf": "audio/x-dsf", "iff": "audio/x-dff",
               "tta": "audio/x-tta", "mpc8": "audio/x-musepack",
               "wv": "audio/x-wavpack", "ape": "audio/x-ape", "aac": "audio/aac", "ac3": "audio/ac3",
               "eac3": "audio/eac3", "amr": "audio/amr", "dts": "audio/vnd.dts", "truehd": "audio/vnd.dolby.mlp", "mlp": "audio/vnd.dolby.mlp"}

# Formats of films and the type that goes with each; "mpegvideo" is a stream without a container.
FILM_TYPES = {"mpegts": "video/mp2t", "mpeg": "video/mpeg", "mpegvideo": "video/mpeg",
              "h264": "video/h264", "hevc": "video/h265", "m4v": "video/mp4v-es", "vc1": "video/x-vc1", "vc1test": "video/x-vc1",
              "flv": "video/x-flv", "avi": "video/x-msvideo"}

# Types that a DLNA profile asks for, and those of the same sound without one.
PROFILE_TYPES = {"audio/vnd.dlna.adts": "audio/aac", "audio/vnd.dolby.dd-raw": "audio/ac3"}

# Type by the first brand that fits: with video, and with audio alone.
BRAND_TYPES = [("qt  ", "video/quicktime", "video/quicktime"), ("3g2", "video/3gpp2", "audio/3gpp2"),
               ("3g", "video/3gpp", "audio/3gpp"), ("", "video/mp4", "audio/mp4")]

# The names that records have for ffprobe's.
CODECS = {"mp3": "MP3", "mp2": "MP2", "mp1": "MP1", "ac3": "AC3", "eac3": "EAC3", "alac": "ALAC", "opus": "Opus",
          "pcm_s16le": "LPCM", "pcm_s16be": "LPCM", "h264": "H264", "hevc": "H265", "mpeg4": "MPEG4", "h263": "H263",
          "mjpeg": "MJPEG", "flac": "FLAC", "dts": "DTS", "adpcm_ima_wav": "ADPCM-IMA", "adpcm_ms": "ADPCM-MS",
          "adpcm_ima_qt": "ima4", "pcm_u8": "LPCM", "pcm_s24le": "LPCM", "pcm_alaw": "alaw", "pcm_mulaw": "ulaw",
          "pcm_f32le": "PCM-float", "pcm_f32be": "PCM-float", "pcm_dvd": "LPCM", "pcm_bluray": "LPCM", "s302m": "S302M", "truehd": "TrueHD", "mlp": "MLP",
          "dsd_msbf": "DSD", "dsd_lsbf_planar": "DSD", "dst": "DST", "tta": "TTA", "musepack8": "MPC8", "wavpack": "WavPack", "ape": "APE", "amr_nb": "AMR",
          "wmav1": "WMA1", "wmav2": "WMA2", "wmapro": "WMA-Pro", "wmalossless": "WMA-lossless", "wmavoice": "WMA-voice",
          "vorbis": "Vorbis", "speex": "Speex", "theora": "Theora", "mpeg1video": "MPEG1", "mpeg2video": "MPEG2",
          "wmv1": "WMV1", "wmv2": "WMV2", "wmv3": "WMV3", "msmpeg4v3": "MSMPEG4v3", "msmpeg4v2": "MSMPEG4v2",
          "vp8": "VP8", "vp9": "VP9", "av1": "AV1", "vc1": "VC1", "dvd_subtitle": "VobSub",
          "dvvideo": "DV", "prores": "ProRes", "cinepak": "Cinepak", "rawvideo": "raw",
          "flv1": "Sorenson", "vp6f": "VP6", "vp6a": "VP6A", "flashsv": "ScreenVideo", "flashsv2": "ScreenVideo2",
          "nellymoser": "Nellymoser", "adpcm_swf": "ADPCM-SWF"}
AAC_PROFILES = {"LC": "AAC", "HE-AAC": "HE-AAC", "HE-AACv2": "HE-AACv2", "Main": "AAC-Main"}
VIDEO_PROFILES = {"Constrained Baseline": "ConstrainedBaseline", "Rext": "RangeExtensions", "Simple Profile": "Simple",
                  "Advanced Simple Profile": "AdvancedSimple", "Main 10": "Main10"}
LEVEL_UNITS = {"h264": 10, "hevc": 30, "mpeg4": 1, "vc1": 1}
LEVEL_NAMES = {"mpeg2video": {10: "1", 8: "2", 6: "3", 4: "4"}}  # Low, Main, High 1440, High
COLOURS = {"yuvj420p": "4:2:0 of 8", "yuvj422p": "4:2:2 of 8", "yuvj440p": "4:4:0 of 8", "yuvj444p": "4:4:4 of 8",
           "gray": "grey of 8", "gray16be": "grey of 16", "monob": "grey of 1", "ya8": "grey-alpha of 8",
           "rgb24": "RGB of 8", "rgba": "RGBA of 8", "pal8": "palette of 8"}

# Codecs whose samples have as many bits as whoever decodes them likes, and DSD, of which it counts bytes.
WITHOUT_BITS = ("adpcm_ima_wav", "adpcm_ms", "adpcm_ima_qt", "pcm_alaw", "pcm_mulaw", "truehd", "dsd_msbf",
                "dsd_lsbf_planar")

# Of films: how the names of the layouts of pixels begin, and what the colours are.
FILM_COLOURS = {"yuv420p": "4:2:0", "yuvj420p": "4:2:0", "yuv422p": "4:2:2", "yuvj422p": "4:2:2", "yuv444p": "4:4:4",
                "yuvj444p": "4:4:4", "gray": "grey", "bgr24": "RGB"}
TRANSFERS = {"smpte2084": "PQ", "arib-std-b67": "HLG"}
STATIC_METADATA = ("Mastering display metadata", "Content light level metadata")

# Languages of two letters, and ffprobe's of three, in both of their forms.
LANGUAGES = {"eng": "en", "ger": "de", "deu": "de", "fre": "fr", "fra": "fr", "spa": "es", "ita": "it", "jpn": "ja",
             "rus": "ru", "dut": "nl", "nld": "nl", "swe": "sv", "por": "pt", "pol": "pl", "kor": "ko", "chi": "zh",
             "zho": "zh", "fin": "fi", "dan": "da", "nor": "no"}


def probe(path):
    """What ffprobe tells of a file; no streams where it knows none."""
    found = json.loads(run("ffprobe", "-v", "error", "-of", "json", "-show_format", "-show_streams", path) or "{}")
    return {"format": found.get("format", {}), "streams": found.get("streams", [])}


# What ffprobe tells, fact by fact, as text.

def streams(theirs, kind):
    """The cover of a song is no video."""
    return [stream for stream in theirs["streams"]
            if stream.get("codec_type") == kind and not stream.get("disposition", {}).get("attached_pic")]


def first(theirs, kind):
    found = streams(theirs, kind)
    return found[0] if found else {}


def is_picture(theirs):
    """Codecs of pictures in anything but a film: ffprobe makes up 25 pictures a second, and so a duration."""
    return (first(theirs, "video").get("codec_name") in PICTURE_TYPES
            and theirs["format"].get("format_name") not in (ISO_MEDIA, MATROSKA, "avi", "mp3"))


def their_type(theirs):
    name = theirs["format"].get("format_name", NONE)
    if is_picture(theirs):
        return PICTURE_TYPES[first(theirs, "video")["codec_name"]]
    if name == "mp3":
        return "audio/mpeg"
    if name in SOUND_TYPES:
        return SOUND_TYPES[name]
    if name == "ogg":
        return "video/ogg" if streams(theirs, "video") else "audio/ogg"
    if name == "asf" and streams(theirs, "video"):
        return "video/x-ms-wmv" if first(theirs, "video").get("codec_name", "").startswith("wmv") else "video/x-ms-asf"
    if name == "asf":
        return "audio/x-ms-wma"
    if name == MATROSKA: # the one name of both
        kind = "webm" if theirs["format"].get("filename", "").endswith((".webm", ".weba")) else "x-matroska"
        return ("video/" if streams(theirs, "video") else "audio/") + kind
    if name in FILM_TYPES:
        return FILM_TYPES[name]
    if not name.startswith("mov,"):
        return name
    brand = theirs["format"].get("tags", {}).get("major_brand", "qt  ")
    video = bool(streams(theirs, "video"))
    return next(types[0 if video else 1] for start, *types in BRAND_TYPES if brand.startswith(start))


def their_duration(theirs):
    text = theirs["format"].get("duration")
    return NONE if text is None or is_picture(theirs) else f"{float(text):.3f}"


def their_rate(theirs):
    """Of a file of one sound it is that of the sound: ours leaves head and tags out."""
    rate = UNTOLD if is_picture(theirs) else theirs["format"].get("bit_rate", UNTOLD)
    return first(theirs, "audio").get("bit_rate", rate) if theirs["format"].get("format_name") in SOUND_TYPES else rate


def their_track_rate(kind):
    """Of many a container and codec only the decoder learns it, which ffprobe does not ask."""
    return lambda theirs: UNTOLD if is_picture(theirs) else first(theirs, kind).get("bit_rate", UNTOLD)


def their_audio_rate(theirs):
    """A record of plain samples has the sampling rate in its place."""
    return NONE if their_audio_codec(theirs) == "LPCM" else their_track_rate("audio")(theirs)


def their_audio_codec(theirs):
    stream = first(theirs, "audio")
    name = stream.get("codec_name", NONE)
    if name in ("aac", "aac_latm"):
        return AAC_PROFILES.get(stream.get("profile"), "aac " + stream.get("profile", ""))
    return CODECS.get(name, name)


def their_video_codec(theirs):
    name = first(theirs, "video").get("codec_name", NONE)
    return NONE if is_picture(theirs) else CODECS.get(name, name)


def tells_profile(stream):
    """Pictures, H.263 and the older codecs have none in ffprobe's eyes."""
    codec = stream.get("codec_name")
    return "profile" in stream and (codec in LEVEL_UNITS or codec in LEVEL_NAMES or codec in ("av1", "vp9"))


def their_profile(theirs):
    stream = first(theirs, "video")
    if not tells_profile(stream):
        return UNTOLD if stream else NONE
    name = stream["profile"]
    return name[len("Profile "):] if name.startswith("Profile ") else VIDEO_PROFILES.get(name, name)


def their_level(theirs):
    """AV1 has an index: four to a whole number."""
    stream = first(theirs, "video")
    if not tells_profile(stream) or stream.get("level", -1) < 0:
        return UNTOLD if stream else NONE
    codec, level = stream["codec_name"], stream["level"]
    if codec in LEVEL_NAMES:
        return LEVEL_NAMES[codec].get(level, str(level))
    if codec == "av1":
        return f"{2 + level // 4 + level % 4 / 10:g}"
    return f"{float(fractions.Fraction(level, LEVEL_UNITS.get(codec, 10))):g}"


def their_side(key):
    return lambda theirs: str(first(theirs, "video").get(key, NONE))


def their_frame_rate(theirs):
    text = first(theirs, "video").get("avg_frame_rate")
    return NONE if text in (None, "0/0") or is_picture(theirs) else f"{float(fractions.Fraction(text)):.3f}"


def their_turn(theirs):
    """ffprobe counts degrees anticlockwise, and tells nothing of a picture's Exif."""
    if is_picture(theirs):
        return UNTOLD
    turns = [data["rotation"] for data in first(theirs, "video").get("side_data_list", []) if "rotation" in data]
    return str(-turns[0] % 360) if turns and turns[0] % 360 != 0 else NONE


def their_process(theirs):
    """Of a PNG ffprobe does not tell it, and of films only for some codecs."""
    stream = first(theirs, "video")
    if not stream:
        return NONE
    if is_picture(theirs):
        return stream["profile"].lower() if stream["codec_name"] == "mjpeg" else UNTOLD
    order = stream.get("field_order", "unknown")
    if order == "unknown" or stream["codec_name"] not in LEVEL_UNITS:
        return UNTOLD
    return "progressive" if order == "progressive" else "interlaced"


def their_colours(theirs):
    """The samples of a film have the bits that its layout ends in; of eight it says nothing."""
    pixels = first(theirs, "video").get("pix_fmt", NONE)
    if is_picture(theirs):
        return COLOURS.get(pixels, pixels)
    start = next((name for name in sorted(FILM_COLOURS, key=len, reverse=True) if pixels.startswith(name)), None)
    if start is None:
        return pixels
    return f"{FILM_COLOURS[start]} of {pixels[len(start):].rstrip('lbe') or '8'}"


def their_ratio(key):
    """0:1, and none where the codec has none, is not known."""
    def ratio(theirs):
        stated = first(theirs, "video").get(key, NONE)
        if is_picture(theirs):
            return UNTOLD
        return NONE if stated.startswith("0:") or stated.endswith(":0") or stated == "N/A" else stated
    return ratio


def their_range(theirs):
    """Of high dynamic range alone."""
    stream = first(theirs, "video")
    kinds = [data.get("side_data_type", "") for data in stream.get("side_data_list", [])]
    if "DOVI configuration record" in kinds:
        return "DolbyVision"
    found = TRANSFERS.get(stream.get("color_transfer"), NONE)
    return "HDR10" if found == "PQ" and any(kind in STATIC_METADATA for kind in kinds) else found


def their_languages(kind):
    """Each once, in the order of the tracks. Those of a song are of its texts, which no stream tells."""
    def languages(theirs):
        if not streams(theirs, "video"):
            return UNTOLD
        stated = [stream.get("tags", {}).get("language", "und") for stream in streams(theirs, kind)]
        known = dict.fromkeys(LANGUAGES.get(name, name) for name in stated if name != "und")
        return " ".join(known) or NONE
    return languages


def their_text(*keys):
    """By the first of its names that is there. Those of Ogg belong to a stream."""
    def text(theirs):
        stated = theirs["format"].get("tags") or first(theirs, "audio").get("tags", {})
        texts = {name.lower(): value for name, value in stated.items()}
        return next((texts[key] for key in keys if key in texts), NONE)
    return text


def their_cover(theirs):
    """The first picture that is attached."""
    names = [stream.get("codec_name") for stream in theirs["streams"] if stream.get("disposition", {}).get("attached_pic")]
    return PICTURE_TYPES.get(names[0], names[0]) if names else NONE


def their_bits(theirs):
    """Of what loses nothing; 0 is not known."""
    stream = first(theirs, "audio")
    bits = int(stream.get("bits_per_raw_sample", 0)) or stream.get("bits_per_sample", 0)
    return str(bits) if bits and stream.get("codec_name") not in WITHOUT_BITS else UNTOLD


def their_sampling(theirs):
    """Of DSD ffprobe counts bytes, of eight samples each."""
    rate = first(theirs, "audio").get("sample_rate", NONE)
    return str(int(rate) * 8) if their_audio_codec(theirs) in ("DSD", "DST") else str(rate)


def their_audio(key):
    return lambda theirs: str(first(theirs, "audio").get(key, NONE))


FACTS = {"type": their_type, "duration": their_duration, "bit rate": their_rate, "audio codec": their_audio_codec,
         "audio tracks": lambda theirs: str(len(streams(theirs, "audio")) or NONE), "audio rate": their_audio_rate,
         "sampling": their_sampling, "channels": their_audio("channels"), "bits": their_bits,
         "video codec": their_video_codec, "profile": their_profile, "level": their_level,
         "video rate": their_track_rate("video"), "width": their_side("width"), "height": their_side("height"),
         "turned": their_turn, "pixel": their_ratio("sample_aspect_ratio"), "shown": their_ratio("display_aspect_ratio"),
         "frame rate": their_frame_rate, "scan": their_process, "colours": their_colours, "range": their_range,
         "languages": their_languages("audio"), "subtitles": lambda theirs: str(len(streams(theirs, "subtitle")) or NONE),
         "subtitle languages": their_languages("subtitle"), "title": their_text("title"), "artist": their_text("artist"),
         "album": their_text("album", "product"), "genre": their_text("genre"), "cover": their_cover}


def facts_of(theirs):
    """The facts that an answer of it has a notion of."""
    told = {fact: value(theirs) for fact, value in FACTS.items()}
    return {fact: value for fact, value in told.items() if value is not UNTOLD}


def tell(paths):
    """The facts of each file, by its path."""
    return {path: facts_of(probe(path)) for path in paths}
