#include "ezFormats/ps/PSLength.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ps/PSBytes.h"
#include "ezFormats/ps/PSLimits.h"
#include "ezFormats/ps/PSStart.h"
#include "ezFormats/ps/TitleSet.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr const char* kByStamps = "last frame";
constexpr const char* kByRates = "estimate: size and rates of places";
constexpr const char* kByCells = "header";
constexpr const char* kByShare = "estimate: share of the cells of a title";

std::uint64_t Microseconds(std::uint64_t aTicks) {
    return MediaNumber_Microseconds(aTicks, kStreamClock_Rate);
}

/// A part of the file, by its place.
PSClock ReadPart(PSBytes& aBytes, PSStart& aStart, std::uint64_t aPlace, std::size_t aSize) {
    PSClock clock;
    clock.SetFrames(aStart.GetFrames());
    if (aStart.GetWindow().Read(aBytes, aPlace, aSize)) {
        ReadPSWindow(aStart.GetWindow(), aStart.GetTracks(), clock);
    }
    return clock;
}

/// The last part that has time stamps.
PSClock ReadEnd(PSBytes& aBytes, PSStart& aStart, std::uint64_t aSize) {
    const std::size_t window = aBytes.GetWindowSize();
    std::uint64_t place = aSize;
    PSClock clock;
    for (std::uint32_t i = 0; i < kPS_MaxEndWindows && !clock.HasStamps() && place > aStart.GetEnd(); ++i) {
        const std::uint64_t end = place;
        place = std::max(place - std::min<std::uint64_t>(place, window), aStart.GetEnd());
        clock = ReadPart(aBytes, aStart, place, static_cast<std::size_t>(end - place));
    }
    return clock;
}

/// Ticks of a whole by the rate of parts: of so many bytes with so many ticks.
std::uint64_t ByRate(std::uint64_t aSize, std::uint64_t aTicks, std::uint64_t aBytes) {
    return MediaNumber_Scale(aSize, aTicks, aBytes);
}

/// Whether the clock runs on over so many places between the start and the end.
bool PlacesRunOn(PSBytes& aBytes, PSStart& aStart, const PSClock& anEnd, std::uint64_t aSize,
                 std::uint32_t aPlaces) {
    PSClock before = aStart.GetClock();
    for (std::uint32_t i = 1; i <= aPlaces; ++i) {
        const std::uint64_t place = MediaNumber_Scale(aSize, i, aPlaces + 1);
        PSClock clock = ReadPart(aBytes, aStart, place, kPS_MiddleWindow);
        if (clock.HasRestarts() || before.IsOfOtherObject(clock) ||
            !clock.GetLast().IsBetween(before.GetLast(), anEnd.GetLast())) {
            return false;
        }
        before = std::move(clock);
    }
    return true;
}

/// Whether the clock runs on from the start to the end, as far as they and places between them tell.
bool RunsOn(PSBytes& aBytes, PSStart& aStart, const PSClock& anEnd, std::uint64_t aTicks,
            std::uint64_t aSize) {
    const PSClock& start = aStart.GetClock();
    if (start.HasRestarts() || anEnd.HasRestarts() || anEnd.IsOfOtherObject(start)) {
        return false;
    }
    const std::uint64_t local = ByRate(aBytes.GetStreamSize(aSize), start.GetTicks() + anEnd.GetTicks(),
                                       start.GetBytes() + anEnd.GetBytes());
    if (local != 0 && (aTicks / kPS_MaxRateFactor > local || local / kPS_MaxRateFactor > aTicks)) {
        return false;
    }
    if (aSize < kPS_MiddleSize) {
        return true;
    }
    // Rates that tell of more than the stamps may be those of recordings one after the other.
    const bool fDoubt = local - local / kPS_DoubtShare > aTicks;
    return PlacesRunOn(aBytes, aStart, anEnd, aSize, fDoubt ? kPS_MiddleWindows : 1);
}

/// The ends and places between them tell rates; of these the mean, and an eighth more, as nothing may be
/// announced shorter than it is.
PSLength Estimate(PSBytes& aBytes, PSStart& aStart, const PSClock& anEnd, std::uint64_t aSize) {
    const std::uint64_t whole = aBytes.GetStreamSize(aSize);
    std::uint64_t ticks = 0;
    std::uint64_t bytes = 0;
    std::uint64_t least = UINT64_MAX;
    const auto add = [&](const PSClock& aClock) {
        const std::uint64_t found = aClock.GetTicks();
        if (found != 0) {
            ticks += found;
            bytes += aClock.GetBytes();
            least = std::min(least, ByRate(whole, found, aClock.GetBytes()));
        }
    };
    add(aStart.GetClock());
    add(anEnd);
    for (std::uint32_t i = 1; i <= kPS_MiddleWindows; ++i) {
        const std::uint64_t place = MediaNumber_Scale(aSize, i, kPS_MiddleWindows + 1);
        if (place >= aStart.GetEnd()) {
            add(ReadPart(aBytes, aStart, place, aBytes.GetWindowSize()));
        }
    }
    const std::uint64_t mean = ByRate(whole, ticks, bytes);
    const std::uint64_t most = ezSaturating_Add64(mean, mean / 8);
    return {Microseconds(most), kByRates, Microseconds(most - std::min(least, most))};
}

} // namespace

PSLength MeasurePS(PSBytes& aBytes, PSStart& aStart) {
    const std::optional<std::uint64_t> size = aBytes.GetFileSize();
    if (!size.has_value()) {
        return {};
    }
    if (*size <= aStart.GetEnd()) {
        const std::uint64_t ticks = aStart.GetClock().GetTicks();
        const bool fStill = !aStart.GetAudio().has_value() && ticks <= aStart.GetFrames().mPictureTicks;
        // A still picture stands as long as one likes.
        return {fStill ? 0 : Microseconds(ticks), kByStamps, 0};
    }
    const PSClock end = ReadEnd(aBytes, aStart, *size);
    const std::uint64_t ticks = aStart.GetClock().GetFirst().GetTicksTo(end.GetLast(), aStart.GetFrames());
    if (ticks != 0 && RunsOn(aBytes, aStart, end, ticks, *size)) {
        return {Microseconds(ticks), kByStamps, 0};
    }
    return Estimate(aBytes, aStart, end, *size);
}

PSTitle ReadPSTitle(PSBytes& aBytes) {
    MediaBytes& file = aBytes.GetFile();
    const std::optional<std::uint64_t> size = file.GetSize();
    TitleSetPart part;
    if (!size.has_value() || aBytes.IsOfDisc() || !part.Read(file.GetFileName())) {
        return {};
    }
    TitleSet set;
    bool fFound = false;
    for (const std::string& name : part.GetInformationNames()) {
        const std::unique_ptr<BesideMedia> beside = file.OpenBeside(name, kIFO_MaxReads, kIFO_MaxBytes);
        if (beside != nullptr) {
            fFound = set.Read(beside->mBytes);
            break;
        }
    }
    std::uint64_t start = 0;
    for (unsigned i = 1; fFound && i < part.mPart; ++i) {
        const std::unique_ptr<BesideMedia> before = file.OpenBeside(part.GetPartName(i), 0, 0);
        fFound = before != nullptr;
        start += fFound ? before->mBytes.GetSize().value_or(0) : 0;
    }
    const std::uint64_t end = start + *size;
    // The information of another disc, or of a file that was cut.
    const std::uint64_t covered = set.GetCovered(start, end);
    if (!fFound || covered == 0 || covered < *size - *size / kIFO_MinShare) {
        return {};
    }
    // What lies in no cell plays all the same where the file is played.
    const bool fWhole = set.HasWholeCells(start, end) && covered >= *size;
    return {{MediaNumber_Scale(set.GetMicroseconds(start, end), std::max(*size, covered), covered),
             fWhole ? kByCells : kByShare, 0},
            set.GetSoundLanguages(),
            set.GetSubtitleLanguages()};
}
