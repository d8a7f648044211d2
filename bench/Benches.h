#pragma once

/// Each adds the benchmarks of one source.
void AddIdentifyBenches();
void AddTableBenches();
void AddManagerBenches();
void AddMapperBenches();
void AddPushBenches();
void AddFormatsBenches();
/// Only where the companion is built.
void AddPlaylistBenches();
/// The same.
void AddThumbnailBenches();
