#pragma once

#include "ez/ThumbnailProvider.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include <string>
#include <vector>

/// The pictures beside a file that could stand for it, best first, as SidecarThumbnailProvider tries them:
/// one listing of the media's folder, or, unless null, what aListing has of it.
std::vector<std::string> SidecarsOf(const ThumbnailInfo& anInfo, SidecarListing* aListing = nullptr);

/// What the cache knows a file by, so that a thumbnail is made again when anything changes that it could be
/// made of:
///
/// - the full path of the media, its folder resolved, so that all ways to write it are one;
/// - the state of the media (which holds a cover within it) and of each picture beside it that could stand
///   for it, with its name, in the order in which they are tried: one that is added, removed, renamed or
///   changed gives another identity. All are in it, and not the first alone, since the next one is taken
///   where the first is damaged;
/// - the MIME type, which decides who is asked, whether the scaling is fast, and the version of this tool,
///   whose pictures may be others.
///
/// A state is an ezFileState: which file it is, its size and its times. It is taken before the thumbnail is
/// made: what changes while it is made has another identity at the next request, never the older picture.
/// What was changed so short a time before that a further change could have the same state has an identity of
/// this one request: its thumbnail is made again at the next one.
///
/// @param aSidecars what SidecarsOf gave for the media
ezCString ThumbnailIdentity(const ThumbnailInfo& anInfo, const std::vector<std::string>& aSidecars);
