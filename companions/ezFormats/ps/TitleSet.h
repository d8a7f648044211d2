#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ByteSource;

/// The place of a video object file among those of its title set: "VTS_02_3.VOB" is the third of the second.
struct TitleSetPart {
    unsigned mPart = 0; ///< 1 to 9: those that hold the titles

    /// False for another name.
    bool Read(std::string_view aFileName);
    /// The names that the file of the title set's information may have: in the letters of this file's name,
    /// then in capital and in small letters.
    std::vector<std::string> GetInformationNames() const;
    /// The name of another part, in the letters of this file's name.
    std::string GetPartName(unsigned aPart) const;

private:
    std::string mName;
};

/// What the information of a title set of a DVD tells: how long its cells are and where they lie, and the
/// languages of its sound and of its subtitles. A title's length is that of its program chain, which is that
/// of its cells; titles may share cells, and a file may hold a part of them.
class TitleSet {
public:
    /// Reads VTS_xx_0.IFO. False for what is not one, and where no cell has a length.
    bool Read(ByteSource& aBytes);

    /// Microseconds of what lies in so many bytes of the title set's video objects, each byte once: of a cell
    /// that lies there in part its share. 0 where no cell does.
    std::uint64_t GetMicroseconds(std::uint64_t aStart, std::uint64_t anEnd) const;
    /// Bytes of those that lie in cells.
    std::uint64_t GetCovered(std::uint64_t aStart, std::uint64_t anEnd) const;
    /// Whether no cell lies there in part.
    bool HasWholeCells(std::uint64_t aStart, std::uint64_t anEnd) const;

    const std::string& GetSoundLanguages() const { return mSoundLanguages; }
    const std::string& GetSubtitleLanguages() const { return mSubtitleLanguages; }

private:
    struct Cell {
        std::uint32_t mFirst = 0; ///< sectors of 2048 bytes
        std::uint32_t mLast = 0;
        std::uint64_t mMicroseconds = 0;

        std::uint64_t GetStart() const; ///< bytes
        std::uint64_t GetEnd() const;
        std::uint64_t GetBytesIn(std::uint64_t aStart, std::uint64_t anEnd) const;
    };

    void ReadChain(ByteSource& aBytes, std::uint64_t aPlace);
    void Settle();

    std::vector<Cell> mCells;
    std::string mSoundLanguages;
    std::string mSubtitleLanguages;
};

/// Microseconds of a playing time: hours, minutes, seconds and frames in BCD, the rate of the frames in the
/// top two bits of these. 0 for what is not one.
std::uint64_t DVDTime_Microseconds(std::uint32_t aTime);
