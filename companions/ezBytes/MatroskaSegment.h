#pragma once

#include "ezBytes/EBMLWalk.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// @name The parts of a Matroska file (RFC 9559, 5.1), of which WebM is a kind
/// @{
inline constexpr EBMLId kMatroska_Segment = 0x18538067;
inline constexpr EBMLId kMatroska_SeekHead = 0x114D9B74;
inline constexpr EBMLId kMatroska_Info = 0x1549A966;
inline constexpr EBMLId kMatroska_Tracks = 0x1654AE6B;
inline constexpr EBMLId kMatroska_Cluster = 0x1F43B675;
inline constexpr EBMLId kMatroska_Cues = 0x1C53BB6B;
inline constexpr EBMLId kMatroska_Attachments = 0x1941A469;
inline constexpr EBMLId kMatroska_Chapters = 0x1043A770;
inline constexpr EBMLId kMatroska_Tags = 0x1254C367;
/// @}

/// False for what ends a segment of unknown size: the next document, and the next segment.
bool MatroskaSegment_MayHold(EBMLId anId);
/// False for what ends a cluster of unknown size: any part of the segment, too.
bool MatroskaCluster_MayHold(EBMLId anId);

/// Steps over the head of a document (RFC 8794, 8.1), and tells which kind of document it is the head of;
/// false where none stands, and for kinds that are not Matroska or WebM.
bool ReadMatroskaHead(ByteReader& aReader, ezCString* aDocType);

/// The first segment of a file, and where those parts of it stand that tell of it: as far as they were met
/// before the first cluster, or a SeekHead names them. Clusters are never walked through to find them, so
/// that a file of any length costs the same.
class MatroskaSegment {
public:
    /// @param aBytes   the file; borrowed
    /// @param aBudget  borrowed, counts down the elements of all walks
    MatroskaSegment(ByteSource& aBytes, std::uint32_t& aBudget);

    /// Reads from the start of the file up to the first cluster. False where no document of Matroska stands,
    /// or no segment in it.
    bool Open();

    /// "matroska" or "webm", in lower case.
    const ezCString& GetDocType() const { return mDocType; }

    /// What the segment holds; where that was cut, as far as it is there.
    const ByteReader& GetContent() const { return mContent; }
    /// True where the writer left the size open, as one of a live stream does, and who was stopped.
    bool IsOfUnknownSize() const { return mfUnknownSize; }
    /// Bytes of the file as the segment states them, which may be more than there are; 0 where it does not.
    std::uint64_t GetStatedEnd() const { return mStatedEnd; }
    /// At the first cluster's id; where there is none, at the end of what was read of the segment.
    const ByteReader& GetClusters() const { return mClusters; }
    bool HasClusters() const { return mfClusters; }

    /// A part of an id: one of Info, Tracks, Cues, Attachments and Tags. Those before the first cluster come
    /// first, in the order of the file; then those that a SeekHead names, each of which may cost a read. Of
    /// streams without a size these are looked for within kMatroska_StreamReach only.
    /// @param anIndex  0 is the first
    /// @return false where there are no more
    bool Find(EBMLId anId, std::size_t anIndex, EBMLElement* anElement);

private:
    struct Part {
        EBMLId mId;
        std::uint64_t mStart; ///< of its id, in the file
        bool mfRead;          ///< a part of that id stands there; else the SeekHead says so
    };

    void ReadFront();
    void AddPart(EBMLId anId, std::uint64_t aStart, bool afRead);
    void TakeSeekHead(const EBMLElement& aSeekHead);
    bool ReadNextSeekHead();
    bool ReadPart(const Part& aPart, EBMLElement* anElement);

    ByteSource& mBytes;
    std::uint32_t& mBudget;
    ezCString mDocType;
    ByteReader mContent;
    ByteReader mClusters;
    std::uint64_t mStatedEnd = 0;
    bool mfUnknownSize = false;
    bool mfClusters = false;
    std::vector<Part> mParts;
    std::size_t mSeekHeadsRead = 0; ///< of those that other SeekHeads name
};
