#pragma once

#include "ez/MediaParserTypes.h"

#include <string_view>

/// @name UPnP classes as records hold them under kezInfo_ClassName
/// Without their first part, "object." (ContentDirectory:1, 7.3). A media types file may name others
/// that are derived from these.
/// @{
inline constexpr const char* kezUPnPClass_Item = "item";                ///< what the others are derived from
inline constexpr const char* kezUPnPClass_AudioItem = "item.audioItem"; ///< sound
inline constexpr const char* kezUPnPClass_VideoItem = "item.videoItem"; ///< moving pictures
inline constexpr const char* kezUPnPClass_ImageItem = "item.imageItem"; ///< a still picture
inline constexpr const char* kezUPnPClass_MusicTrack = "item.audioItem.musicTrack"; ///< a song
inline constexpr const char* kezUPnPClass_AudioBook = "item.audioItem.audioBook";   ///< spoken
inline constexpr const char* kezUPnPClass_Photo = "item.imageItem.photo";           ///< taken by a camera
/// @}

/// One of kezUPnPClass_AudioItem, _VideoItem and _ImageItem, by what stands before the first "/" of a MIME
/// type (all of it, where there is no "/"); "" for other types.
/// @param afMatchCase  only "audio", "video" and "image" in lower case have a class
EZPARSERS_API const char* ezUPnPClass_OfMimeType(std::string_view aMimeType, bool afMatchCase);
