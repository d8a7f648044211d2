#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/APEItems.h"
#include "ezBytes/AudioTails.h"

Cover FindAPECover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    const AudioTails tails = FindAudioTails(bytes, 0);
    APEItems items(bytes, tails);
    CoverChoice choice;
    ezCString key;
    auto kind = APEItems::Kind::Text;
    ByteReader value(bytes);
    // Every item takes nine bytes at least, and the reader gives up after so many.
    while (!choice.IsFinal() && items.Next(&key, &kind, &value)) {
        std::uint32_t type = 0;
        if (kind == APEItems::Kind::Binary && IsAPEPicture(key.View(), &type) &&
            SkipToAPEPicture(value, kCover_MaxText)) {
            choice.Offer(type, CoverOfRest(value, ""));
        }
    }
    return choice.Get();
}
