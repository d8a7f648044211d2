#include "ezPlaylists/detail/XmlScanner.h"

#include <utility>

bool XmlScanner::Next() {
    if (mPiece.mfEmptyElement) {
        mPiece.mKind = MarkupPiece::Kind::EndTag;
        mPiece.mfEmptyElement = false;
        return Leave();
    }
    if (mfOver || !mScanner.Next(mPiece)) {
        mfOver = true;
        return false;
    }
    switch (mPiece.mKind) {
    case MarkupPiece::Kind::StartTag:
        Enter();
        break;
    case MarkupPiece::Kind::EndTag:
        mPiece.mfEmptyElement = false; // "</a/>" is no element of its own
        return Leave();
    case MarkupPiece::Kind::Text:
        mLevel = mDepth;
        break;
    }
    return true;
}

void XmlScanner::Enter() {
    if (mDepth < kXml_NamedLevels) {
        mNames[mDepth] = mPiece.mName;
    }
    mLevel = ++mDepth;
}

/// False for an end tag that ends nothing, or another element than the one that is open.
bool XmlScanner::Leave() {
    mLevel = mDepth;
    const bool fOther = mDepth != 0 && mDepth <= kXml_NamedLevels && mNames[mDepth - 1] != mPiece.mName;
    if (mDepth == 0 || fOther) {
        mfOver = true;
        return false;
    }
    --mDepth;
    mfOver = mDepth == 0;
    return true;
}

std::string_view XmlScanner::LocalName() const {
    const std::string_view name = mPiece.mName;
    return name.substr(name.find(':') + 1); // without a prefix that is the start
}
