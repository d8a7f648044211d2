#include "bench/PlaylistTexts.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <cstring>

namespace {

constexpr std::size_t kLargest = 100000;

std::string Number(std::size_t aNumber) {
    return std::to_string(kLargest + aNumber); // one length for all, so that no entry is cheaper
}

std::string DottedBase() {
    constexpr std::size_t kSize = 2000;
    std::string base = "http://h/";
    while (base.size() < kSize) {
        base += "a/../";
    }
    return base;
}

} // namespace

std::string PlaylistTexts_M3U(std::size_t aSize) {
    std::string text = "#EXTM3U\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "#EXTINF:215,Some Artist - Some Title " + Number(i) + "\nSome Artist/Some Album/" +
                Number(i) + " Some Title.mp3\n";
    }
    return text;
}

std::string PlaylistTexts_PLS(std::size_t aSize) {
    std::string text = "[playlist]\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "File" + Number(i) + "=Some Artist/Some Album/" + Number(i) + " Some Title.mp3\nTitle" +
                Number(i) + "=Some Artist - Some Title\nLength" + Number(i) + "=215\n";
    }
    return text;
}

std::string PlaylistTexts_ASX(std::size_t aSize) {
    std::string text = "<ASX VERSION=3.0>\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "<ENTRY><TITLE>Some Artist - Some Title</TITLE><REF HREF=\"Some Album/" + Number(i) +
                " Some Title.mp3\"></ENTRY>\n";
    }
    return text + "</ASX>\n";
}

std::string PlaylistTexts_WPL(std::size_t aSize) {
    std::string text = "<smil><body><seq>\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += R"(<media src="Some Artist\Some Album\)" + Number(i) + " Some Title.mp3\"/>\n";
    }
    return text + "</seq></body></smil>\n";
}

std::string PlaylistTexts_XSPF(std::size_t aSize) {
    std::string text = "<playlist><trackList>\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "<track><location>Some%20Album/" + Number(i) +
                "%20Some%20Title.mp3</location><title>Some Title</title></track>\n";
    }
    return text + "</trackList></playlist>\n";
}

std::string PlaylistTexts_CarriageReturns(std::size_t aSize) {
    std::string text;
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "a\r";
    }
    return text;
}

std::string PlaylistTexts_DottedXSPF(std::size_t aSize) {
    std::string text = "<playlist xml:base=\"" + DottedBase() + "\"><trackList>\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "<track><location>a</location></track>\n";
    }
    return text + "</trackList></playlist>\n";
}

std::string PlaylistTexts_DottedASX(std::size_t aSize) {
    std::string text = "<asx><base href=\"" + DottedBase() + "\"/>\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "<entry><ref href=\"a\"/></entry>\n";
    }
    return text + "</asx>\n";
}

ezStreamOwner PlaylistTexts_Stream(const std::string& aText) {
    void* block = ezMalloc(aText.size());
    std::memcpy(block, aText.data(), aText.size());
    auto* const stream = new ezMemoryStream(block, aText.size(), ezCString());
    // Else the entries would lie in the working folder, and their URLs be as long as its path.
    stream->SetURI("/media/lists/a playlist");
    return ezStreamOwner(stream);
}
