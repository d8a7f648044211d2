#pragma once

#include "ezHosting/HostOptions.h"

#include <memory>

class ezThumbnailProviderManager;

/// A cache and the providers of ezThumbnails before it.
class HostThumbnails {
public:
    virtual ~HostThumbnails();

    /// Null where this library was built without ezThumbnails.
    static std::unique_ptr<HostThumbnails> New(const ezHostOptions& anOptions);

    virtual ezThumbnailProviderManager& GetManager() = 0;
};
