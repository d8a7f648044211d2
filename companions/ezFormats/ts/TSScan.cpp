#include "ezFormats/ts/TSScan.h"

#include "ezFormats/mpegsystem/PESHeader.h"
#include "ezFormats/ts/TSLimits.h"

#include <algorithm>

void TSClock::Add(std::uint64_t aClock, std::uint64_t aPosition, bool afDiscontinuity) {
    const std::uint64_t step = StreamClock_Distance(mLast, aClock);
    if (mFirst && !afDiscontinuity && aPosition > mLastPosition && step <= kTS_MaxClockStep) {
        mTicks += step;
        mBytes += aPosition - mLastPosition;
    }
    mFirst = mFirst ? mFirst : aClock;
    mLast = aClock;
    mLastPosition = aPosition;
}

void TSClock::AddRate(const TSClock& anOther) {
    mTicks += anOther.mTicks;
    mBytes += anOther.mBytes;
}

TSScan::TSScan() : mPlaces(kTSPacket_PIDCount, -1) {}

const TSSeen* TSScan::Find(std::uint16_t aPID) const {
    const std::int16_t place = mPlaces[aPID % kTSPacket_PIDCount];
    return place >= 0 ? &mSeen[static_cast<std::size_t>(place)].second : nullptr;
}

TSSeen* TSScan::SeenOf(std::uint16_t aPID) {
    std::int16_t& place = mPlaces[aPID];
    if (place < 0 && mSeen.size() < kTS_MaxStamped) {
        place = static_cast<std::int16_t>(mSeen.size());
        mSeen.emplace_back();
        mSeen.back().first = aPID;
    }
    return place >= 0 ? &mSeen[static_cast<std::size_t>(place)].second : nullptr;
}

void TSScan::Take(const TSPacket& aPacket) {
    ++mPackets;
    if (aPacket.mfStamp) {
        ++mStampsSeen;
        mfStampsZero = mfStampsZero && aPacket.mStamp == 0;
    }
    TSSeen* const seen = aPacket.mPID != kTSPacket_NullPID ? SeenOf(aPacket.mPID) : nullptr;
    if (seen == nullptr) {
        return;
    }
    if (aPacket.mClock) {
        seen->mClock.Add(*aPacket.mClock, aPacket.mPosition, aPacket.mfDiscontinuity);
    }
    if (aPacket.mPayloadSize == 0) {
        return;
    }
    ++seen->mPackets;
    seen->mPayloadBytes += aPacket.mPayloadSize;
    seen->mScrambled += aPacket.mfScrambled ? 1 : 0;
    PESHeader header;
    if (aPacket.mfStart && !aPacket.mfScrambled &&
        ReadPESHeader(aPacket.mPayload, aPacket.mPayloadSize, &header)) {
        seen->mStreamID = seen->mStreamID != 0 ? seen->mStreamID : header.mStreamID;
        if (header.mPTS) {
            seen->mStamps.Add(*header.mPTS);
            if (seen->mStamps.GetLatest() == *header.mPTS) {
                seen->mLastPayload = header.GetPayloadSize();
            }
        }
    }
}

std::vector<std::uint16_t> TSScan::GetStreamPIDs() const {
    std::vector<std::uint16_t> pids;
    for (const auto& seen : mSeen) {
        if (seen.second.mStreamID != 0) {
            pids.push_back(seen.first);
        }
    }
    return pids;
}

void TSTableReader::Break() {
    mReaders.clear();
}

bool TSTableReader::IsMap(std::uint16_t aPID) const {
    return std::any_of(mPrograms.begin(), mPrograms.end(),
                       [=](const TSProgram& aProgram) { return aProgram.mMapPID == aPID; });
}

/// Null for a PID that holds no table.
TSSectionReader* TSTableReader::ReaderOf(std::uint16_t aPID) {
    for (auto& reader : mReaders) {
        if (reader.first == aPID) {
            return &reader.second;
        }
    }
    if (aPID != 0 && aPID != kTSPID_Events && aPID != kTSPID_Time && !IsMap(aPID)) {
        return nullptr;
    }
    mReaders.emplace_back();
    mReaders.back().first = aPID;
    return &mReaders.back().second;
}

void TSTableReader::TakeSection(std::uint16_t aPID, const TSSection& aSection) {
    const std::uint8_t table = aSection.GetTable();
    if (aPID == 0 && table == kTSTable_Association && aSection.IsCurrent()) {
        ReadTSAssociation(aSection, mPrograms);
    } else if (aPID == kTSPID_Events && table == kTSTable_Event) {
        ReadTSEvents(aSection, mEvents);
    } else if (aPID == kTSPID_Time && table == kTSTable_TimeOffset && mTime == 0) {
        mTime = ReadTSTime(aSection);
    } else if (table == kTSTable_Map && aSection.IsCurrent()) {
        for (TSProgram& program : mPrograms) {
            const bool fIts = program.mMapPID == aPID && program.mNumber == aSection.GetID();
            if (fIts && !program.mfMapped) { // what plays first counts
                ReadTSMap(aSection, &program);
            }
        }
    }
}

void TSTableReader::Take(const TSPacket& aPacket) {
    if (aPacket.mPayloadSize == 0) {
        return;
    }
    TSSectionReader* const reader = ReaderOf(aPacket.mPID);
    if (reader == nullptr) {
        return;
    }
    reader->Take(aPacket);
    for (TSSection section; reader->Next(&section);) {
        TakeSection(aPacket.mPID, section);
    }
}
