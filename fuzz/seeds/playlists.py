"""Seeds of playlists."""


def m3u():
    yield "url-between-blanks", "  http://h/a b.mp3 \n\ta.mp3\n\vb.mp3\n\fc.mp3\n"
    yield "open-quote", '#EXTINF:1 a="b, c\na.mp3\n#EXTINF:1 a="b\nb.mp3\n'
    yield "attributes-and-directives", '#EXTINF:1 a="b",T\n#EXTGRP:x\n#EXTVLCOPT:y\na.mp3\n'
    yield "two-directives", "#EXTGRP:x\n#EXTVLCOPT:y\na.mp3\n"
    yield "utf-16-little", "a.mp3\n".encode("utf-16-le").join([b"\xFF\xFE", b""])
    yield "utf-16-big", "a.mp3\n".encode("utf-16-be").join([b"\xFE\xFF", b""])
    yield "carriage-returns", "a.mp3\rb.mp3\r\rc.mp3\r"
    yield "both-line-ends", "a.mp3\r\nb.mp3\r\n\r\nc.mp3\r\n"
    yield "signs-and-fractions", "#EXTINF:+5.25x,T\na.mp3\n#EXTINF:7:,U\nb.mp3\n#EXTINF:-,V\nc.mp3\n"
    yield "latin-1", "#EXTINF:1,Caf\xe9\na.mp3\n".encode("latin-1")
    yield "many-lines", "".join(f"#EXTINF:{i},T\nfolder/song {i}.mp3\r\n" for i in range(900))
    yield "many-bare-lines", "".join(f"folder/song {i}.mp3\n" for i in range(1200))
    yield "byte-order-mark", "\ufeff#EXTM3U\na.mp3\n"
    yield "block-that-ends-within-a-line-end", "#" + "x" * 4094 + "\r\na.mp3\r\n"
    yield "half-a-byte-order-mark", b"\xEF\xBB"
    yield from sixteen_bits("#EXTM3U\r\n#EXTINF:7,T𝄞\r\na€.mp3\r\n\r#EXTGRP:x\nb.mp3\rਊĊ.mp3")
    yield "utf-16-cut-within-a-unit", b"\xFF\xFE" + "a\r\nb".encode("utf-16-le") + b"c"
    yield "utf-16-halves", b"\xFE\xFF" + "#EXTINF:1,T\na\n".encode("utf-16-be") + b"\xD8\0\0\n\xDC\0\0\n\xD8\0"
    yield "utf-16-hls", b"\xFF\xFE" + "#EXTM3U\n#EXT-X-TARGETDURATION:9\na.ts\n".encode("utf-16-le")
    yield "utf-16-mark-alone", b"\xFF\xFE"
    yield "carriage-returns-alone", "a\r" * 2000
    yield "one-hole", b"a.mp3\n" + bytes(60000)


def sixteen_bits(text):
    yield "utf-16-little-lines", b"\xFF\xFE" + text.encode("utf-16-le")
    yield "utf-16-big-lines", b"\xFE\xFF" + text.encode("utf-16-be")


def pls():
    yield "indented-and-cut", "[playlist]\r\n  File1 = a.mp3\r\nTitle1=T\r\nLength1=x\r\nFile2\n=z\nFile=q\nFileX=q\nFile3=\nFile0=n\n"
    yield "out-of-order", "[playlist]\nFile3=c.mp3\nFile1=a.mp3\nTitle3=C\nFile2=b.mp3\nFile2=again.mp3\n"
    yield "titles-alone", "[playlist]\nTitle1=T\nLength1=5\n"
    yield "latin-1", "[playlist]\nFile1=a.mp3\nTitle1=Caf\xe9\n".encode("latin-1")
    yield "without-a-section", "File1=a.mp3\nTitle1=A\n"
    yield "section-again", "[playlist]\nFile1=a.mp3\n[Other]\nFile2=b.mp3\n[PLAYLIST]\nFile3=c.mp3\n[cut\nFile4=d.mp3"
    yield "windows-paths", "[playlist]\nFile1=\\\\host\\share\\a.mp3\nFile2=c:\\a.mp3\nFile3=c:/a.mp3\nFile4=a\\b?c\\d.mp3\nFile5=c:x\n"
    yield "backslashes", "[playlist]\nFile1=a\\\nFile2={a\\b\nFile3=http://h/a\\b\nFile4=c:x\\y\nFile5=c:\\\n"
    yield "block-that-ends-within-a-line-end", "[playlist]\r\n;" + "x" * 4082 + "\r\nFile1=a.mp3\r\n"
    yield "blank-lines", "[playlist]\n\n \nFile1=a.mp3\n"
    yield "comments", "; ours\n[playlist]\n;File1=a.mp3\n# File2=b.mp3\nFile3=c.mp3\n"
    yield from sixteen_bits("[playlist]\r\nFile1=a€.mp3\r\nTitle1=T𝄞\rFile2=b.mp3")
    yield "one-hole", b"[playlist]\nFile1=a.mp3\n" + bytes(60000)
    yield "number-too-large", "[playlist]\nFile99999999999=a.mp3\nFile4294967296=b.mp3\nFile4294967295=c.mp3\n"


def asx(content):
    return f"<asx>{content}</asx>"


def asx_documents():
    entry = '<entry><ref href="{}"/></entry>'.format
    yield "base-with-a-slash", asx('<base href="http://h/a/"/>' + entry("b.mp3"))
    yield "base-of-a-folder", asx('<base href="music"/>' + entry("b.mp3") + entry("/c.mp3") + entry("c:\\d.mp3")
                                  + entry("\\\\h\\e.mp3") + entry("http://h/f.mp3"))
    yield "base-of-a-windows-folder", asx('<base href="..\\music\\"/>' + entry("a\\b.mp3") + entry("c:/d.mp3"))
    yield "base-of-nothing", asx("<base/><base href=''/>" + entry("b.mp3") + "<entry><base/><ref href='c.mp3'/></entry>")
    yield "base-of-many-steps", asx('<base href="http://h/' + "a/../" * 390 + '"/>' + entry("b.mp3") * 100)
    yield "base-too-long", asx(f'<base href="{"x" * 9000}"/>' + entry("b.mp3"))
    yield "entries-of-nothing", asx("<entry/><entry></entry><entry><ref/><duration/></entry><entry><ref href=' '/></entry>")
    yield "entries-that-nobody-closed", asx("<entry><ref href='a.mp3'><entry><ref href='b.mp3'><entryref href='c.asx'/>"
                                            + "<entryref/><entryref href=' '/>") + "</entry>"
    yield "titles", asx("<title>of the list</title><entry><title/><title> </title><title>A\n B\t  C</title><title>D</title>"
                        + "<author>E</author><abstract>F</abstract><ref href='a.mp3'/></entry>")
    for number, clock in enumerate(("1:2:3", "90", "1:x", "1:2.x", "1:2:3:4", "99999999:99:99", ".5", "")):
        yield f"duration-{number}", asx(f"<entry><duration value='{clock}'/><ref href='a.mp3'/></entry>")
    yield "entities", asx("<entry><title>&amp;&lt;&gt;&quot;&apos;&#65;&#x42;&#X43;&#;&#x;&#99999999999;&#x110000;&nobody;"
                          + "&averylongentity;& &</title><ref href='a.mp3?b=1&c=2&amp;d'/></entry>")
    yield "sections-and-comments", asx("<!-- <entry> --><?ours?><!DOCTYPE x><entry><title>a<![CDATA[<b>&amp;]]></title>"
                                       + "<ref href='a.mp3'/></entry>") + "<!-- open"
    yield "section-open", asx("<entry><ref href='a.mp3'/></entry>") + "<![CDATA[ open"
    yield "names", asx("<x:y_z-1.2 a:b_c-d.e=1/><entry><Ref Href=a.mp3 é='1' 2=3 =4></entry>< b<3<{</entry>")
    yield "names-of-brackets", asx("<entry {a=1><ref h{=2 href='a.mp3'/></entry>")
    yield "values-without-quotes", asx("<entry><ref href=http://h/a/><ref href=http://h/a.mp3/></entry><entry><ref href=a/></entry>"
                                       + "<entry><ref href=http://h/></entry><entry><ref href=http://h></entry>"
                                       + "<entry><ref href='it''s'/></entry><entry><ref href = \"b.mp3\" ></entry>")
    for number, end in enumerate(("<entry><ref href='open", "<entry><ref href=open", "<entry><ref href", "<entry", "<", "</",
                                  "<entry><ref href='a.mp3'/", "<entry><ref href=")):
        yield f"cut-{number}", "<asx>" + entry("a.mp3") + end
    yield "forty-attributes", asx("<entry><ref " + " ".join(f"a{i}='1'" for i in range(40)) + " href='a.mp3'/></entry>" + entry("b"))
    yield "old-form-with-others", ("[Other]\nRef1=http://h/no.asf\n[Reference]\nRef1=http://h/a.asf\nRef=http://h/b.asf\n"
                                   + "Refx=http://h/b.asf\nAny1=http://h/c.asf\nRef2=\nno value\nRef3=http://h/d.asf")


def encoded():
    """Of every reader of documents: what the document is written in."""
    return (("utf-8-with-a-mark", lambda text: b"\xEF\xBB\xBF" + text.encode()),
            ("utf-16-big", lambda text: b"\xFE\xFF" + text.encode("utf-16-be")),
            ("utf-16-big-without-a-mark", lambda text: text.encode("utf-16-be")),
            ("utf-16-little-without-a-mark", lambda text: text.encode("utf-16-le")),
            ("utf-16-halves", lambda text: text.encode("utf-16-le").replace(b"T\0", b"\0\xD8\0\xD8\1\xE0\0\xDC", 1) + b"\0\xD8"),
            ("latin-1", lambda text: text.replace("𝄞", "\xe9").replace("€", "\xe9").encode("latin-1")),
            ("latin-1-declared", lambda text: b"<?xml version='1.0' encoding='ISO-8859-1'?>"
             + text.replace("𝄞", "\xe9").replace("€", "\xe9").encode("latin-1")),
            ("windows-1252-declared", lambda text: b"<?xml version='1.0' encoding='windows-1252'?>"
             + text.replace("𝄞", "\x80").replace("€", "\x80").encode("latin-1")),
            ("utf-8-declared", lambda text: b"<?xml version='1.0' encoding='utf-8'?>" + text.encode() + b"\xFF"),
            ("declared-without-a-name", lambda text: b"<?xml encoding=?>" + text.encode()))


def wpl():
    media = '<media src="{}"/>'.format
    yield "nested", "<smil><body><seq>" + media("a.mp3") + "<seq/><x><media/></x>" + media(" ") + media("b.mp3") + "</seq></body></smil>"
    yield "other-root", "<other><body>" + media("a.mp3") + "</body></other>"
    yield "without-a-body", "<smil><head/></smil>"
    yield "windows-paths", "<smil><body>" + "".join(map(media, ("c:\\a.mp3", "\\\\h\\b.mp3", "..\\c.mp3", "http://h/d\\e.mp3",
                                                                  "f\\g?h\\i"))) + "</body></smil>"
    yield "cut-in-a-tag", "<smil><body>" + media("a.mp3") + "<media src='b.mp3' c="
    yield "cut-in-a-name", "<smil><body>" + media("a.mp3") + "<media src='b.mp3'/><"
    yield "cut-in-a-bad-name", "<smil><body>" + media("a.mp3") + "<1"
    yield "sign-in-a-tag", "<smil><body>" + media("a.mp3") + "<media src='b.mp3'!/></body></smil>"
    yield "nothing-but-elements", "<smil><body>" + "<a/>" * 9000 + media("a.mp3") + "</body></smil>"
    yield "deep", "<smil><body>" + "<seq>" * 4000 + media("a.mp3")
    yield "two-bodies", "<smil><body>" + media("a.mp3") + "</body><body>" + media("b.mp3") + "</body></smil>"
    yield "other-end", "<smil><body>" + media("a.mp3") + "</head>" + media("b.mp3")
    yield "end-first", "</smil><smil><body>" + media("a.mp3")
    yield "cut-with-a-child", "<smil><body><media src='a.mp3'><x/><y a="


def xspf():
    track = "<track><location>{}</location></track>".format

    def listed(content, root="", tracks=""):
        return f"<playlist{root}><trackList{tracks}>{content}</trackList></playlist>"

    yield "base-of-a-url", listed(track("a.mp3") + track("/b.mp3") + track("http://x/c.mp3"), " xml:base='http://h/d/'")
    yield "base-of-a-folder", listed(track("a.mp3") + track("/b.mp3") + track("http://x/c.mp3") + track("c:\\d.mp3")
                                     + track(" ") + "<track/>", " xml:base='music/list?x'")
    yield "base-without-a-slash", listed(track("a.mp3"), " xml:base='music'", " xml:base='http://h/'")
    yield "base-too-long", listed(track("a.mp3"), " xml:base='" + "x" * 9000 + "'")
    long = "x" * 1500 + "/"
    yield "bases-too-long-together", (f"<playlist xml:base='{long}'><trackList xml:base='{long}'>" + track("a.mp3")
                                      + "</trackList></playlist>")
    yield "locations", listed("<track><title>T</title><location> </location><location>a<![CDATA[ b]]><!-- c --><x/></location>"
                              + "<duration>1x</duration></track><other/><!-- d -->"
                              + "<track><location>b</location><duration>99999999999999</duration></track>")
    yield "other-root", "<other><trackList>" + track("a.mp3") + "</trackList></other>"
    yield "windows-paths", listed("".join(map(track, ("c:\\a.mp3", "\\\\h\\b.mp3", "c:/d.mp3", "/e.mp3", "file:///f.mp3", "#g"))))
    yield "base-of-many-steps", listed(track("b.mp3") * 100 + track("../c.mp3"), " xml:base='http://h/" + "a/../" * 390 + "'")
    yield "bases-within", listed("<track xml:base='c/d/'><location xml:base='../e/'>f</location></track>", " xml:base='http://h/b/'")
    yield "nothing-but-elements", listed("<a>b</a>" * 6000 + track("a"))
    yield "deep", listed("<track>" * 5000)
    yield "two-lists", listed(track("a")).replace("</playlist>", "<trackList>" + track("b") + "</trackList></playlist>")
    yield "list-below", "<playlist><x><trackList>" + track("a") + "</trackList></x></playlist>"
    yield "fields-within", listed("<track><title>A<b>no</b>B</title><title>C</title><x><location>no</location></x><creator>D</creator>"
                                  + "<album>E</album><trackNum>1</trackNum><image>F</image><location>a</location></track>")
    yield "prefixes", "<x:playlist xmlns:x='y'><x:trackList><x:track><x:location>a</x:location></x:track></x:trackList></x:playlist>"
    yield "nul", listed(track("a") + "\0" + track("b"))
    yield "after-the-root", listed(track("a")) + listed(track("b"))
    yield "cut-after-a-track", "<playlist><trackList>" + track("a.mp3") + "<track><location>b</location></track"
    yield "cut-in-a-track", "<playlist><trackList>" + track("a.mp3") + "<track><location>b</location>"
    yield "cut-after-a-longer-name", "<playlist><trackList><track><location>b</location></tracks><x"
    yield "cut-after-a-closed-track", "<playlist><trackList><track><location>b</location></track >\n<"
    yield "cut-with-two-tracks", "<playlist><trackList><track><x></track><track><location>b</location></track><"


def in_bytes(content):
    return content.encode() if isinstance(content, str) else content


def seeds():
    for door, lists in (("m3u", m3u()), ("pls", pls()), ("asx", asx_documents()), ("wpl", wpl()), ("xspf", xspf())):
        for name, content in lists:
            yield f"playlist_{door}", name, in_bytes(content)
    documents = (("asx", "<asx><entry><title>T𝄞€</title><ref href='a.mp3'/></entry></asx>"),
                 ("wpl", "<smil><body><x>T𝄞€</x><media src='a.mp3'/></body></smil>"),
                 ("xspf", "<playlist><trackList><track><title>T𝄞€</title><location>a</location></track></trackList></playlist>"))
    for door, text in documents:
        for name, encode in encoded():
            yield f"playlist_{door}", name, encode(text)
