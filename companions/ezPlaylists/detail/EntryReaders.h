#pragma once

#include "ez/PlaylistParser.h"

#include "ezPlaylists/detail/DocumentText.h"

#include <functional>

/// Takes the entries of a document in its order. mStreamPos, in the document, title, location, duration and
/// mSpecificTags are set. False when no more is wanted.
using EntrySink = std::function<bool(const PlaylistParserEntry& anEntry)>;

/// Each hands out the entries of a whole document, those of a broken one up to where it breaks: an entry that
/// is not whole counts as absent, as half a location is worse than no location. False when the rest was left
/// out, as its bases cost too much (LocationBaseBudget).
bool ReadAsxEntries(DocumentText& aDocument, const EntrySink& aSink);
bool ReadWplEntries(DocumentText& aDocument, const EntrySink& aSink);
bool ReadXspfEntries(DocumentText& aDocument, const EntrySink& aSink);
