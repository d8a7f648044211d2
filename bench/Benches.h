#pragma once

/// Each adds the benchmarks of one source.
void AddIdentifyBenches();
void AddTableBenches();
void AddManagerBenches();
void AddMapperBenches();
void AddPushBenches();
void AddFormatsBenches();
/// Only where the companion is built, each of these.
/// @{
void AddPlaylistBenches();
void AddPoolBenches();
void AddThumbnailBenches();
/// @}
