#include "ez/ThumbnailGenerator.h"

ezThumbnailGenerator::~ezThumbnailGenerator() = default;
