#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>

/// The elements of an EBML file (RFC 8794), of which Matroska and WebM are made: an id of 1 to 4 bytes, a
/// size of 1 to 8, and so many bytes of content.

/// What names an element: its bytes as one number, the marker among them.
using EBMLId = std::uint32_t;

/// @name Elements of every document (RFC 8794, 11)
/// @{
inline constexpr EBMLId kEBML_Head = 0x1A45DFA3;
inline constexpr EBMLId kEBML_MaxIdLength = 0x42F2;
inline constexpr EBMLId kEBML_DocType = 0x4282;
inline constexpr EBMLId kEBML_Void = 0xEC;
inline constexpr EBMLId kEBML_CheckSum = 0xBF;
/// @}

/// A number of variable length (RFC 8794, 4).
struct EBMLVariable {
    std::uint64_t mValue = 0; ///< without the marker
    unsigned mBytes = 0;
    bool mfAllOnes = false; ///< of a size: it is not known
};

/// Reads one of 1 to 8 bytes. False, the reader failed, where none stands.
bool ReadEBMLVariable(ByteReader& aReader, EBMLVariable* aNumber);

/// Reads the id of an element; 0, the reader failed, where none of 1 to 4 bytes stands.
EBMLId ReadEBMLId(ByteReader& aReader);

/// An element of a document.
struct EBMLElement {
    explicit EBMLElement(const ByteReader& aContent) : mContent(aContent) {}

    EBMLId mId = 0;
    std::uint64_t mStart = 0;      ///< of its id, in the file
    std::uint64_t mStatedSize = 0; ///< of what it holds; that may be more than there is
    bool mfUnknownSize = false;
    bool mfCut = false; ///< it states to go on beyond the end of what it is in
    /// What it holds; of one that is cut, or of unknown size, up to the end of what it is in.
    ByteReader mContent;
};

/// The elements of one that holds elements, or of a file, one after the other. Void elements and check sums
/// are stepped over wherever they stand.
///
/// A walk tells of one level: who goes into an element makes a walk of its content, and so knows how deep
/// that is. Where the element was of unknown size, the walk around it goes on where that of its content
/// ended:
///
///     EBMLWalk inner(element.mContent, budget, IsOfCluster);
///     while (inner.Next(&child)) { ... }
///     outer.ContinueAfter(inner);
class EBMLWalk {
public:
    /// Whether an element may stand in the one that is walked.
    using Membership = bool (*)(EBMLId anId);

    /// @param aReader    stands at the first element
    /// @param aBudget    borrowed, counts down the elements of all walks, those that are stepped over too
    /// @param aIsMember  what is walked has no known size, and ends before an element that may not stand in
    ///                   it; null: all up to the end are its own
    EBMLWalk(const ByteReader& aReader, std::uint32_t& aBudget, Membership aIsMember = nullptr)
        : mReader(aReader), mBudget(&aBudget), mIsMember(aIsMember) {}

    /// The next element. False after the last one, where none stands, and when the budget is used up; after
    /// one that is cut or of unknown size, too, unless ContinueAfter was called.
    bool Next(EBMLElement* anElement);
    /// The first one of an id from here on.
    bool Find(EBMLId anId, EBMLElement* anElement);

    /// The element of unknown size, which was the last one, ends where a walk of its content did.
    void ContinueAfter(const EBMLWalk& aInner) { mReader = aInner.mReader; }

    /// Where the next element would begin.
    std::uint64_t GetPosition() const { return mReader.GetPosition(); }
    /// True when the walk ended at what is not an element, or could not be read.
    bool HasFailed() const { return mReader.HasFailed(); }

private:
    ByteReader mReader;
    std::uint32_t* mBudget;
    Membership mIsMember;
};

/// @name What a content is, which is not a master's
/// One of no bytes has the value that its kind of element has when it is left out.
/// @{

/// A number without a sign; aDefault too where there are more bytes than 8.
std::uint64_t ReadEBMLNumber(ByteReader aContent, std::uint64_t aDefault = 0);
/// The same of one with a sign.
std::int64_t ReadEBMLSigned(ByteReader aContent, std::int64_t aDefault = 0);
/// A floating point number, of 4 or 8 bytes; aDefault for other counts, and for what is no finite number.
double ReadEBMLFloat(ByteReader aContent, double aDefault = 0);
/// A text up to the first NUL, which writers pad with, as CleanText has it; of a longer one as far as
/// kEBML_MaxText bytes.
ezCString ReadEBMLText(ByteReader aContent);
/// The nanoseconds of a date since the start of 2001, UTC; nothing for what is not 8 bytes.
std::optional<std::int64_t> ReadEBMLDate(ByteReader aContent);
/// @}
