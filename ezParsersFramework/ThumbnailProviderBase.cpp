#include "ez/ThumbnailProviderBase.h"

ezThumbnailProvider::~ezThumbnailProvider() = default;
