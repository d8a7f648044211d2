#include "ezFormats/ps/TitleSet.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/LanguageTags.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ps/PSLimits.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint64_t kSectorSize = 2048;
constexpr std::string_view kMagic = "DVDVIDEO-VTS";
constexpr std::size_t kDigit = 7; ///< of a file's name: which part of the title set it is

// Places in the table of the title set's information.
constexpr std::uint64_t kChainsSector = 0xCC;
constexpr std::uint64_t kSoundCount = 0x202;
constexpr std::uint64_t kSubtitleCount = 0x254;
constexpr std::uint64_t kSoundSize = 8;
constexpr std::uint64_t kSubtitleSize = 6;
constexpr std::uint32_t kSoundStreams = 8;
constexpr std::uint32_t kSubtitleStreams = 32;

// Places in the table of program chains, and in one of them.
constexpr std::uint64_t kEntriesStart = 8;
constexpr std::uint64_t kEntryOffset = 4;
constexpr std::uint64_t kCellCount = 3;
constexpr std::uint64_t kCellsOffset = 0xE8;
constexpr std::uint64_t kCellGap = 8; ///< between the sector of the first unit and that of the last's end

/// A reader that stands at a place.
ByteReader At(ByteSource& aBytes, std::uint64_t aPlace) {
    ByteReader reader(aBytes);
    reader.Skip(aPlace);
    return reader;
}

/// Two decimal digits; more than 99 for others.
std::uint32_t FromBCD(std::uint32_t aByte) {
    const std::uint32_t tens = aByte >> 4 & 15U;
    const std::uint32_t ones = aByte & 15U;
    return tens > 9 || ones > 9 ? 100 : 10 * tens + ones;
}

/// The languages of streams, each of so many bytes with two letters at a place of them.
std::string ReadLanguages(ByteReader aStreams, std::uint32_t aMost, std::uint64_t aSize) {
    constexpr std::uint64_t kLetters = 2;
    std::string languages;
    const std::uint32_t count = std::min(static_cast<std::uint32_t>(aStreams.ReadBig(2)), aMost);
    for (std::uint32_t i = 0; i < count && !aStreams.HasFailed(); ++i) {
        ByteReader stream = aStreams.Take(aSize);
        stream.Skip(kLetters);
        const ezCString letters = stream.ReadText(2);
        AddLanguages(languages, letters.View());
    }
    return languages;
}

/// The second and later angles of a scene lie between the sectors of the first, and play instead of it.
bool IsFurtherAngle(std::uint32_t aCategory) {
    const unsigned mode = aCategory >> 30; // 1: the first of a block, 2 and 3: those that follow
    const unsigned type = aCategory >> 28 & 3U;
    return type == 1 && mode >= 2;
}

} // namespace

std::uint64_t DVDTime_Microseconds(std::uint32_t aTime) {
    const std::uint32_t hours = FromBCD(aTime >> 24);
    const std::uint32_t minutes = FromBCD(aTime >> 16 & 0xFFU);
    const std::uint32_t seconds = FromBCD(aTime >> 8 & 0xFFU);
    const std::uint32_t frames = FromBCD(aTime & 0x3FU);
    const unsigned form = aTime >> 6 & 3U; // 1: 25 frames a second, 3: 30, each a thousandth longer
    const std::uint32_t rate = form == 1 ? 25 : 30;
    if (hours > 99 || minutes > 59 || seconds > 59 || frames >= rate || (form != 1 && form != 3)) {
        return 0;
    }
    const std::uint64_t count = ((std::uint64_t{hours} * 60 + minutes) * 60 + seconds) * rate + frames;
    return form == 1 ? count * 40'000 : count * 1'001'000 / 30;
}

// ---- names ----

bool TitleSetPart::Read(std::string_view aFileName) {
    constexpr std::string_view kForm = "vts_##_#.vob";
    if (aFileName.size() != kForm.size()) {
        return false;
    }
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const char letter = aFileName[i];
        const bool fDigit = letter >= '0' && letter <= '9';
        if (kForm[i] == '#' ? !fDigit : ezLower(letter) != kForm[i]) {
            return false;
        }
    }
    mName = std::string(aFileName);
    mPart = static_cast<unsigned>(mName[kDigit] - '0');
    return mPart != 0; // that of the menus
}

std::string TitleSetPart::GetPartName(unsigned aPart) const {
    std::string name = mName;
    name[kDigit] = static_cast<char>('0' + aPart);
    return name;
}

std::vector<std::string> TitleSetPart::GetInformationNames() const {
    constexpr std::string_view kCapital = "IFO";
    constexpr std::string_view kSmall = "ifo";
    const std::string start = GetPartName(0).substr(0, kDigit + 2);
    std::string alike = start;
    for (std::size_t i = 0; i < kSmall.size(); ++i) {
        const char letter = mName[start.size() + i];
        alike += ezLower(letter) == letter ? kSmall[i] : kCapital[i];
    }
    return {alike, start + std::string(kCapital), start + std::string(kSmall)};
}

// ---- the information ----

bool TitleSet::Read(ByteSource& aBytes) {
    ByteReader start(aBytes);
    if (start.ReadText(kMagic.size()).View() != kMagic) {
        return false;
    }
    mSoundLanguages = ReadLanguages(At(aBytes, kSoundCount), kSoundStreams, kSoundSize);
    mSubtitleLanguages = ReadLanguages(At(aBytes, kSubtitleCount), kSubtitleStreams, kSubtitleSize);
    const std::uint64_t table = At(aBytes, kChainsSector).ReadBig(4) * kSectorSize;
    ByteReader entries = At(aBytes, table);
    const auto count = static_cast<std::uint32_t>(entries.ReadBig(2));
    entries.Skip(kEntriesStart - 2);
    std::vector<std::uint32_t> offsets;
    for (std::uint32_t i = 0; i < std::min(count, kIFO_MaxChains) && !entries.HasFailed(); ++i) {
        entries.Skip(kEntryOffset);
        offsets.push_back(entries.ReadBig32());
    }
    for (const std::uint32_t offset : offsets) {
        ReadChain(aBytes, table + offset);
    }
    Settle();
    return !mCells.empty();
}

void TitleSet::ReadChain(ByteSource& aBytes, std::uint64_t aPlace) {
    ByteReader chain = At(aBytes, aPlace);
    chain.Skip(kCellCount);
    const std::uint32_t count = chain.ReadByte();
    const std::uint64_t offset = At(aBytes, aPlace + kCellsOffset).ReadBig(2);
    ByteReader cells = At(aBytes, aPlace + offset);
    for (std::uint32_t i = 0; i < count && mCells.size() < kIFO_MaxCells; ++i) {
        const std::uint32_t category = cells.ReadBig32();
        Cell cell;
        cell.mMicroseconds = DVDTime_Microseconds(cells.ReadBig32());
        cell.mFirst = cells.ReadBig32();
        cells.Skip(kCellGap);
        cell.mLast = cells.ReadBig32();
        if (cells.HasFailed()) {
            return;
        }
        if (!IsFurtherAngle(category) && cell.mFirst <= cell.mLast && cell.mMicroseconds != 0) {
            mCells.push_back(cell);
        }
    }
}

/// Titles share cells: each counts once, and so does each byte.
void TitleSet::Settle() {
    std::sort(mCells.begin(), mCells.end(), [](const Cell& aLeft, const Cell& aRight) {
        return aLeft.mFirst != aRight.mFirst ? aLeft.mFirst < aRight.mFirst : aLeft.mLast > aRight.mLast;
    });
    std::size_t kept = 0;
    for (const Cell& cell : mCells) {
        if (kept == 0 || cell.mFirst > mCells[kept - 1].mLast) {
            mCells[kept++] = cell;
        }
    }
    mCells.resize(kept);
}

std::uint64_t TitleSet::GetMicroseconds(std::uint64_t aStart, std::uint64_t anEnd) const {
    std::uint64_t sum = 0;
    for (const Cell& cell : mCells) {
        sum += MediaNumber_Scale(cell.mMicroseconds, cell.GetBytesIn(aStart, anEnd),
                                 cell.GetEnd() - cell.GetStart());
    }
    return sum;
}

std::uint64_t TitleSet::GetCovered(std::uint64_t aStart, std::uint64_t anEnd) const {
    std::uint64_t sum = 0;
    for (const Cell& cell : mCells) {
        sum += cell.GetBytesIn(aStart, anEnd);
    }
    return sum;
}

bool TitleSet::HasWholeCells(std::uint64_t aStart, std::uint64_t anEnd) const {
    return std::all_of(mCells.begin(), mCells.end(), [=](const Cell& aCell) {
        const std::uint64_t bytes = aCell.GetBytesIn(aStart, anEnd);
        return bytes == 0 || bytes == aCell.GetEnd() - aCell.GetStart();
    });
}

std::uint64_t TitleSet::Cell::GetStart() const {
    return mFirst * kSectorSize;
}

std::uint64_t TitleSet::Cell::GetEnd() const {
    return (std::uint64_t{mLast} + 1) * kSectorSize;
}

std::uint64_t TitleSet::Cell::GetBytesIn(std::uint64_t aStart, std::uint64_t anEnd) const {
    const std::uint64_t from = std::max(GetStart(), aStart);
    const std::uint64_t to = std::min(GetEnd(), anEnd);
    return from < to ? to - from : 0;
}
