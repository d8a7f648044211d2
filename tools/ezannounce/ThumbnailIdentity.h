#pragma once

#include "ez/ThumbnailProvider.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include <string>
#include <vector>

/// The pictures beside a media that could stand for it, best first, as SidecarThumbnailProvider tries them:
/// one listing of the media's folder, or, unless null, what aListing has of it.
std::vector<std::string> SidecarsOf(const ThumbnailInfo& anInfo, SidecarListing* aListing = nullptr);

/// What the cache knows a media by, so that a thumbnail is made anew when anything changes that it could be
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
/// A state is size, time of modification, and time of the last change of status, which no copying of times
/// (cp -p, tar) brings back, all to the nanosecond. They are taken before the thumbnail is made: what
/// changes while it is made has another identity at the next request, never the picture of before.
///
/// @param aSidecars what SidecarsOf gave for the media
ezCString ThumbnailIdentity(const ThumbnailInfo& anInfo, const std::vector<std::string>& aSidecars);
