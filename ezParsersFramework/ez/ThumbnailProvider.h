#pragma once

/// \file
/// The thumbnail service of a media server; a host includes this header and gets all of it. Its classes have
/// four roles:
///
/// - A source (ezThumbnailSource) is a place where picture data can be read: a file, or a part of one.
/// - A generator (ezThumbnailGenerator), supplied by the host, turns a source into a JPEG or PNG thumbnail.
/// - A provider (ezThumbnailProvider) decides for a media item which source to use, and has it built.
/// - The manager (ezThumbnailProviderManager) asks its providers, and keeps what they built in a file cache.
///
/// A request is a ThumbnailInfo. Sizes are in pixels. Nothing here is locked: one thread a manager, with its
/// providers and its generator. A null request, generator, file or cache is a plain failure: nothing is
/// possible, built or returned.

#include "ez/FilePartThumbnailSource.h"
#include "ez/FileThumbnailSource.h"
#include "ez/IndirectThumbnailProvider.h"
#include "ez/PictureThumbnailProvider.h"
#include "ez/ThumbnailFinalSize.h"
#include "ez/ThumbnailGenerator.h"
#include "ez/ThumbnailInfo.h"
#include "ez/ThumbnailProviderBase.h"
#include "ez/ThumbnailProviderManager.h"
#include "ez/ThumbnailSource.h"
