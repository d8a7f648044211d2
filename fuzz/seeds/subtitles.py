"""Seeds of the doors of subtitles next to a film."""

CUE = b"1\r\n00:00:28,050 --> 00:00:30,550\r\nHello\r\n\r\n"


def contents():
    yield "srt", CUE
    yield "srt-code-page", CUE + b"\xCF\xF0"
    yield "srt-utf-8-cut", CUE + b"\xE4\xB8"
    yield "srt-mark", b"\xEF\xBB\xBF" + CUE
    yield "srt-utf-16", b"\xFF\xFE" + CUE.decode().encode("utf-16-le")
    yield "srt-utf-16-big", b"\xFE\xFF" + CUE.decode().encode("utf-16-be")
    yield "srt-lenient", b"\n\nmade by\n\n 7\n0:0:1.5-->0:0:2.75"
    yield "srt-without-number", b"00:00:28,050 --> 00:00:30,550"
    yield "vtt", b"WEBVTT\t00:11.000 --> 00:13.000"
    yield "vtt-alone", b"WEBVTT"
    yield "ssa", b"; by\n[Script Info]\nScriptType: v4.00"
    yield "ass", b"[script info]\r\n\r\n[V4+ Styles]\r\n"
    yield "sub", b"{25}{50}Hello"
    yield "sub-default", b"{DEFAULT}{}{C:$0000FF}\n{25}{}Hello"
    yield "idx", b"# VobSub index file, v7\nid: en, index: 0\nid: --, index: 1\nid: fr, index: 2\n"
    yield "smi", b"<!-- x --><SAMI><HEAD><STYLE><!--\n.A { lang: en-US; }\n.B {LANG:ko-KR}\n--></STYLE>"
    yield "smi-without-styles", b"<sami >"
    yield "ttml", b"<?xml version='1.0'?><!DOCTYPE tt><tt:tt xml:lang = 'pt-br'>"
    yield "ttml-without-language", b"<tt xml:lang>"
    yield "sup", b"PG\0\0\0\1\0\0\0\0\x16\0\x13"
    yield "sup-of-no-type", b"PG\0\0\0\1\0\0\0\0\x18\0\x13"
    yield "none", b"Dear friend,\n1\n2\n3\n"
    yield "comment-without-end", b"<!--"


def names():
    yield "films", b"Film\nFILM\nFilm.2\nFilm-en\nFilm.en.srt\nFilm.2.en\nfilm.de"
    yield "words", (b"F\nF.en\nF.eng.forced\nF.pt_BR.sdh\nF.hi\nF.hi.en\nF.English.default\nF.Brazilian Portuguese\n"
                    b"F.2_English\nF.Spanish (Latin American)\nF.Director's Cut\nF.zh-Hans\nF.es-419\nF.en-cc")
    yield "separators", b"F\nF-en\nF_en\nF (en)\nF [English]\nF(sdh)\nF-2\nF en\nF-\nF."
    yield "bytes", b"F\xFF\\\nF\xFF\\.en\nF\xFF\\.\xCF\xF0"


def seeds():
    for name, content in contents():
        yield "subtitle_content", name, content
    for name, content in names():
        yield "subtitle_name", name, content
