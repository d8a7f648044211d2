#pragma once

#include "ez/ElementaryStreamParser.h"

#include "ezFormats/Export.h"

#include <memory>

/// The base of the video formats whose units begin with 00 00 01 and a code: it finds the units, keeps of
/// each what the format asks for, within a bound, and gives up at its limit.
///
/// It never gives up by content. What lies in a transport or program stream is not taken for the stream
/// itself. No more bytes are requested than the earliest decision can need.
class EZFORMATS_API StartCodeEltStreamParser : public ezElementaryStreamParser {
public:
    ~StartCodeEltStreamParser() override;

    parsing_status_t StartParsing(bool afFromError) override;
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;

protected:
    /// What of a unit is kept after its code.
    enum Keep : int {
        kNothing,
        kBytes,       ///< as they are
        kBytesOfNAL,  ///< without emulation prevention bytes (ITU-T H.264, 7.4.1)
        kBytesAsGrown ///< the same, and the format is asked after every byte
    };

    /// The bytes that were kept, borrowed: they stay until the next byte is taken.
    struct Unit {
        /// Those after the code, as Keep has them; may be null when there are none.
        const unsigned char* mBytes;
        uint32 mSize; ///< bytes that were kept: no more than aMaxUnitSize
        uint8 mCode;  ///< the byte after 00 00 01
        bool mfWhole; ///< nothing but zeros is missing, and no byte sequence in it is forbidden
    };

    /// @param aMaxUnitSize  of a unit more bytes are not kept
    StartCodeEltStreamParser(const char* aName, uint32 aMaxUnitSize, ezElementaryStreamInfo* aEltStreamInfo,
                             ezMediaInfo* aMediaInfo);

    /// Forgets all that was found.
    virtual void Restart() = 0;

    /// A unit begins. True when its code alone decides.
    virtual bool BeginUnit(uint8 aCode, Keep& aKeep) = 0;

    /// A byte was added to a unit that is kept as it grows. True when it decides; with Keep::kNothing the
    /// unit is of no further interest.
    virtual bool GrowUnit(const Unit& aUnit, Keep& aKeep);

    /// A unit that was kept has ended. Zeros before the next start code may still stand after it.
    virtual void EndUnit(const Unit& aUnit) = 0;

    /// The least number of bytes from here to a decision, the prefix of the next start code included. aSize
    /// bytes of the unit of that code are there: 0xFFFFFFFF when it has ended or is not kept.
    virtual uint32 LeastBytes(uint8 aCode, uint32 aSize) const = 0;

    /// Fills the record from what decided.
    virtual void Fill(ezMediaInfo& anInfo) const = 0;

    /// For the log: what was found that was not good enough.
    virtual uint32 CountRefused() const = 0;

private:
    struct Search;

    bool TakeByte(unsigned char aByte);
    bool TakeCode(unsigned char aCode);
    bool TakeUnitByte(unsigned char aByte);
    Unit CurrentUnit() const;
    void EndCurrentUnit();
    uint32 LeastRequest() const;

    const uint32 mMaxUnitSize;
    std::unique_ptr<Search> mSearch;
};
