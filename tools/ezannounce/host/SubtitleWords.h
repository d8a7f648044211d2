#pragma once

#include "ezHosting/Subtitles.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

/// A file of subtitles as its film names it: its path from the film's folder on.
std::string NameOf(const ezSubtitleFile& aFile, std::string_view aFilm);

/// "srt, en, forced, UTF-8".
std::string InWords(const ezSubtitleFile& aFile);

/// One of subtitle_files.
nlohmann::ordered_json InJson(const ezSubtitleFile& aFile);
