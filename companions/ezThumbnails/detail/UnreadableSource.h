#pragma once

#include "ez/ThumbnailProvider.h"

/// Stands last among the candidates of an item where the system was in trouble while they were looked for: a
/// picture that may be there and gives no stream. The build is tried with it and fails, so that the next
/// request tries again; what nobody could build would be remembered for ever.
class UnreadableSource : public ezThumbnailSource {
public:
    UnreadableSource() { SetMimeType("image/jpeg"); }
    bool Exists() const override { return true; }
    ezStream* GetStream() const override { return nullptr; }
};
