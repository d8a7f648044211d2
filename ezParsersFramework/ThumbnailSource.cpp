#include "ez/ThumbnailSource.h"

ezThumbnailSource::~ezThumbnailSource() = default;
