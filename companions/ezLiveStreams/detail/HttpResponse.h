#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Where in the media the bytes of a partial answer lie: "bytes 100-199/500".
struct ezContentRange {
    std::uint64_t mFirst = 0;
    std::uint64_t mLast = 0;             ///< at or after mFirst, and within the total
    std::optional<std::uint64_t> mTotal; ///< empty for "*"
};

/// The head of an answer, as its lines come in. An answer that is followed by another one (100, redirects) is
/// forgotten when the status line of that comes.
class ezHttpResponse {
public:
    /// Takes a line, with or without its end. True for the one that ends the head.
    bool AddLine(std::string_view aLine);

    int GetStatus() const { return mStatus; }
    /// True for one that is followed by another: it is not the answer. 101 is not one of those: after it
    /// another protocol is spoken.
    bool IsInterim() const;
    /// The value of a field by its lower-case name; of those that come twice the last. "" without it. Only
    /// the fields that the media can be told by are kept, so that an answer takes little however many it has.
    std::string Get(const char* aName) const;

    /// The size of the body, unless it is not stated or comes in chunks.
    std::optional<std::uint64_t> GetLength() const;
    /// Empty also for one that contradicts itself.
    std::optional<ezContentRange> GetRange() const;
    /// True when it states that it gives parts.
    bool AcceptsRanges() const;
    /// True when the body is not the media but an encoding of it.
    bool IsEncoded() const;
    /// The entity tag without the mark of a weak one, as the weak comparison has it. "" without one.
    std::string GetTag() const;
    /// The size of the media that a 416 states: "bytes */500".
    std::optional<std::uint64_t> GetSizeOfUnsatisfied() const;
    /// The type without parameters, "" where it is not one or tells nothing.
    std::string GetMimeType() const;

private:
    int mStatus = 0;
    bool mfHead = true; ///< within the head: what follows a body is not part of it
    std::map<std::string, std::string> mFields;
};
