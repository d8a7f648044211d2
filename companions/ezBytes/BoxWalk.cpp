#include "ezBytes/BoxWalk.h"

bool BoxWalk::Next(ezCString* aType, ByteReader* aContent) {
    if (mBudget == 0 || mReader.GetLeft() == 0) {
        return false;
    }
    --mBudget;
    std::uint64_t headSize = 8;
    std::uint64_t size = mReader.ReadBig32();
    *aType = mReader.ReadText(4);
    if (size == 1) {
        headSize = 16;
        size = mReader.ReadBig(8);
    } else if (size == 0) { // up to the end
        size = headSize + mReader.GetLeft();
    }
    mReader.Require(size >= headSize);
    *aContent = mReader.Take(mReader.HasFailed() ? 0 : size - headSize);
    return !mReader.HasFailed();
}

bool BoxWalk::Find(const char* aType, ByteReader* aContent) {
    ezCString type;
    while (Next(&type, aContent)) {
        if (type == aType) {
            return true;
        }
    }
    return false;
}

void SkipMetaVersion(ByteReader& aMeta) {
    // The type of the first box stands where the standard's "meta" has that box's size.
    ByteReader ahead = aMeta;
    ahead.Skip(4);
    if (ahead.ReadText(4) != "hdlr") {
        aMeta.Skip(4);
    }
}
