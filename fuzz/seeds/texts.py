"""Seeds of the doors that texts come through."""


def uris():
    """Base and reference."""
    yield "steps-up", "http://h/a/b/c", "../../../../x/./y/../z/."
    yield "steps-up-at-the-end", "http://h/a/b/c", "/x/y/.."
    yield "step-at-the-end", "http://h/a/b/c", "/x/."
    yield "steps-of-a-relative-base", "a", "../x"
    yield "step-of-nothing", "a", "./x/"
    yield "only-a-step", "a", "."
    yield "only-a-step-up", "a", ".."
    yield "host-alone", "http://h", "x"
    yield "root-of-the-host", "http://h/a/b", "/x?y"
    yield "slashes-without-a-host", "a:b", "/.//x"
    yield "query-alone", "http://h/a?b#c", "?y#z"
    yield "fragment-alone", "http://h/a?b#c", "#z"
    yield "scheme-of-odd-letters", "a+b-c.d1:x", "1a:x"
    yield "scheme-with-a-blank", "http: x", "ab_c:x y"
    yield "scheme-of-a-bracket", "a[b:x", "{:x"
    yield "cut-escapes", "a%4", "%"
    yield "escapes-of-no-digit", "%4g%g4%@4%4@", "%61%2F%C3%A9"
    yield "ports", "http://h:70000/", "http://h:x1/"
    yield "ports-below-digits", "http://h:!/", "http://h:/"
    yield "backslashes", "\\a\\b", "\\\\\\a"
    yield "share-alone", "\\\\", "\\\\h"
    yield "drive-with-a-slash", "c:/a/b", "c:x"
    yield "drive-alone", "c:", "cd"
    yield "arguments", "http://h/?=b&&a=c+d&a=e", "?b"
    yield "argument-without-a-value", "?a", "?a="
    yield "colon-in-a-segment", "a/b", "./c:d"
    yield "path-of-a-scheme", "ab:c:d", "x//y"


def protocol_infos():
    """A protocolInfo, another, a name and a value."""
    yield "speeds", "h:*:v/m:DLNA.ORG_PS=1/x,2/0,-,/,1", "h:*:v/m:DLNA.ORG_PS=", "DLNA.ORG_PS", "1/2,,3/"
    yield "operations-of-letters", "h:*:v/m:DLNA.ORG_OP=2x", "h:*:v/m:DLNA.ORG_OP=1x", "DLNA.ORG_OP", "x1"
    yield "conversion-of-letters", "h:*:v/m:DLNA.ORG_CI=2", "h:*:v/m:DLNA.ORG_CI=12", "DLNA.ORG_CI", "!"
    yield "flags-of-letters", "h:*:v/m:DLNA.ORG_FLAGS=0150g000", "h:*:v/m:DLNA.ORG_FLAGS=01500000", "DLNA.ORG_FLAGS", "1"
    yield "open-quotes", 'h:*:v/m;a="b:c;"d"e:X="f;g', 'h:*:v/m:X="', "X", '"'
    yield "open-quote-after-a-quoted-one", 'h:*:v/m;a="b\\"c:X=1', 'h:*:"\\":v/m:X=1', "X", "1"
    yield "without-names", "h:*:v/m:=a;;b;X=;X=1", "h:*:v/m:X", "", "a"
    yield "merged-operations", "h:*:v/m:DLNA.ORG_OP=00", "h:*:v/m:DLNA.ORG_OP=01", "DLNA.ORG_OP", "10"
    yield "merged-time-seek", "h:*:v/m:DLNA.ORG_OP=01", "h:*:v/m:DLNA.ORG_OP=10", "DLNA.ORG_OP", "11"


def mapper_lines():
    def line(bits="00000001", speeds="2\\,4", flags="70000000", mime_type="video/mpeg", profile="MPEG_PS_PAL"):
        return f"film.mpg,{mime_type},{profile},0:00:01,{speeds},{bits},9800000,,,352,288,,DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS={flags}"

    yield "no-type", line(mime_type="")
    yield "no-profile", line(profile="")
    yield "no-mandatory-bits", line("00000000")
    yield "seven-bits", line("0000000")
    yield "one-speed", line(speeds="1")
    yield "speed-of-two", line(speeds="2")
    yield "speeds-of-a-picture", line(mime_type="image/jpeg")
    yield "speeds-not-supported", line(flags="F0000000")
    yield "speeds-of-the-media-alone", line(flags="40000000")
    yield "speeds-of-the-profile-alone", line(flags="20000000")


def media_types():
    yield "comments-and-blanks", "\n# ours\n; ours\n[MimeTypes]\n\n# ours\nmp3=mp3@audio/mpeg@item.audioItem\n"
    yield "before-any-section", "mp3=mp3@audio/mpeg@item.audioItem\n[MimeTypes]\nno value\n[MimeTypes\nmp4=mp4@video/mp4@item.videoItem\n"
    yield "many-extensions", "[MimeTypes]\nmp3=" + ",".join(f"e{i}" for i in range(80)) + "@audio/mpeg@item.audioItem\n"
    yield "many-entries-of-a-type", "[MimeTypes]\n" + "".join(f"t{i}=e{i},f{i % 7}@audio/mpeg@item.audioItem\n" for i in range(80))
    yield "extensions-many-times", "[MimeTypes]\n" + "".join(f"t{i}=e{i % 20}@audio/mpeg@item.audioItem\n" for i in range(40))
    yield "entries-that-say-little", "[MimeTypes]\na=a\nc=c@z/w@item\nb=b@x/y\n".ljust(40, "\n")
    yield "types-of-nothing", "[MimeTypes]\na=a@@item.audioItem\nb=b@x/y\nc=@x/y@item\n"


def file_names():
    yield "shorter-than-its-case", "B-JPEG.jpg"
    yield "case-of-nobody", "O-MP2TS_X.mpg"
    yield "rule-of-nobody", "B-ours.txt"


def mapper_files():
    yield "carriage-returns", "a.mp3,audio/mpeg,MP3\rb,c,d\r\nc.mp3,audio/mpeg,MP3X\r"
    yield "carriage-returns-twice", "a.mp3,audio/mpeg,MP3\r\r\nb.mp3,audio/mpeg,MP3\r\r"
    yield "mark-alone", "\ufeff"
    yield "numbered-names", ("film (1).mpg,video/mpeg,MPEG_PS_PAL\nfilm (x).mpg,video/mpeg,MPEG_PS_PAL\n"
                             + "film 1).mpg,video/mpeg,MPEG_PS_PAL\nfilm.mpg,video/mpeg,MPEG_PS_PAL\n(1),video/mpeg,MPEG_PS_PAL")
    yield "speeds-of-one-profile", ("a.mpg,video/mpeg,MPEG_PS_PAL,,1,00000000\n"
                                    + "b.mpg,video/mpeg,MPEG_PS_PAL,0:00:01,-2\\,1/2\\,1\\,4,00000001,9800000,,,352,288,,"
                                    + "DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=70000000")
    yield "names-of-nothing", ".mp3,audio/mpeg,MP3\n(2).mp3,audio/mpeg,MP3X"
    yield "speeds-in-the-second-entry", ("a.jpg,image/jpeg,OURS\n"
                                         + "b.mpg,video/mpeg,OURS,0:00:01,2\\,4,00000001,9800000,,,352,288,,"
                                         + "DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=70000000")
    yield "profile-of-a-parameter", "a.mpg,video/mpeg,;X,0:00:01,2\\,4,00000001,,,,,,,BRELVO.COM_GOLDENDMS=60000000"
    yield "profile-that-ends-in-a-backslash", "a.mpg,video/mpeg,X\\\nb.mpg,video/mpeg,Y"
    yield "type-of-another-profile", "a.mpg,a:DLNA.ORG_PN=Z;/b,X,,,,,,,,,,BRELVO.COM_GOLDENDMS=60000000"
    yield "longer-than-a-block", "# ours\n" * 3000 + "a.mpg,video/mpeg,MPEG_PS_PAL\n"
    yield "no-profiles", "a.mpg,video/mpeg,,,2\\,4,00000001,,,,,,,BRELVO.COM_GOLDENDMS=70000000\nb.mpg,video/mpeg,,"


def checked_mapper_files():
    yield "speeds-of-nobody", "a.mpg,video/mpeg,MPEG_PS_PAL,,x\\,2\\,2\\,0"
    yield "bits-of-another-count", "a.mpg,video/mpeg,MPEG_PS_PAL,,,0000000\nb.mpg,video/mpeg,MPEG_PS_PAL,,,0000000x"
    word = "{}.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,,BRELVO.COM_GOLDENDMS={}".format
    yield "flag-words-of-nobody", word("a", "012345678") + "\n" + word("b", "0000000g")
    yield "the-same-line", 2 * "a.mpg,video/mpeg,MPEG_PS_PAL\n"
    yield "samples-and-others", ("a.pcm,audio/L16,A\na.pcm,audio/L16,B\na.mp3,audio/mpeg,C\na.mp3,audio/mpeg,D\n"
                                 + "a.pcm,audio/L16,E")


def tool_texts():
    yield "declaration-without-end", "<?xml version='1.0'"
    yield "comment-without-end", "<!-- <smil>"
    yield "character-of-nobody", "a\u0378b"


def mime_types():
    """A MIME type, a name and a value."""
    yield "backslash-at-the-end", 'a/b;x="y\\\nx\n1'
    yield "value-of-nothing", "a/b;x=;y=1\nx\n"
    yield "half-a-type", "/b;x=1\nx\n1"
    yield "other-half-of-a-type", "a/ ;x=1\nx\n1"


def profile_rules():
    yield "exact-sizes", "JPEG_RES_640_480 image/jpeg\nJPEG_RES_640 image/jpeg\nJPEG_RES_x_1 image/jpeg\nJPEG_RES_1_ image/jpeg"
    yield "exact-sizes-of-nobody", "JPEG_RES_1_12345678901 image/jpeg\nJPEG_RES_01_1 image/jpeg\nJPEG_RES_!_1 image/jpeg"
    yield "one-word", "MP3 audio/mpeg audio-codec=AAA"
    yield "fraction-of-one", "MP3 audio/mpeg sampling-rate=1.0001k"
    yield "types-twice", "MP3 audio/mpeg,audio/mpeg\nMP3 audio/mpeg;q=1"
    yield "not-conditions", "MP3 audio/mpeg channels\nMP3 audio/mpeg " + "x" * 50 + "=1"
    yield "short-names", "MP3 audio/mpeg ca=MP3 sf=32k,44.1k ac=1-2 ar=32k-320k"
    yield "not-numbers", "\n".join(f"MP3 audio/mpeg sampling-rate={text}" for text in (
        "k", "1x", "1.2.3", "1x1", "1:1", ".0001", "99999999999M", "9999999999999999M", "5k-4k", "-", "1-", "-x", "0", "0-0"))
    yield "ranges-beside-ranges", ("MP3 audio/mpeg sampling-rate=1-5,10-20\nMP3 audio/mpeg sampling-rate=2-3,12-14\n"
                                   + "MP3 audio/mpeg sampling-rate=6\nMP3 audio/mpeg sampling-rate=30\n"
                                   + "MP3 audio/mpeg sampling-rate=4-12\nMP3 audio/mpeg sampling-rate=0.5k-60k")
    yield "words-beside-words", ("MP3 audio/mpeg audio-codec=MP3,MP2\nMP3 audio/mpeg audio-codec=MP3\n"
                                 + "MP3 audio/mpeg audio-codec=MP1,MP3\nMP3 audio/mpeg channels=1")
    yield "words-of-others", "MP3 audio/mpeg audio-codec=AAA video-codec=x\nMP3 audio/mpeg audio-codec=zzz channels=3 colours=q"
    yield "bit-rates", ("MP3 audio/mpeg audio-codec=MP3 bit-rate=1-5 audio-bit-rate=900M\nMP3 audio/mpeg audio-bit-rate=500k-\n"
                        + "AAC_ISO audio/mp4 channels=9")
    yield "twice-in-the-list", "MP3 audio/mpeg channels=1\nMP3 audio/mpeg channels=2"


def seeds():
    for name, base, reference in uris():
        yield "uri", name, (base + "\n" + reference).encode()
    for name, *lines in protocol_infos():
        yield "protocol_info", name, "\n".join(lines).encode()
    for door, texts in (("mapper_line", mapper_lines()), ("profile_rules", profile_rules()),
                        ("media_types_ini", media_types()), ("mapper_file", mapper_files()),
                        ("file_name", file_names()), ("tool_mapper_check", checked_mapper_files()),
                        ("tool_text", tool_texts()), ("mime_type", mime_types())):
        for name, content in texts:
            yield door, name, content.encode()
