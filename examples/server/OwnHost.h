#pragma once

#include "FlacParser.h"

#include "ez/MediaParserManager.h"
#include "ezHosting/Host.h"

/// What the steps before made by hand: the parsers of this server, its own before those of the companion.
inline ezHostOptions OwnOptions() {
    ezHostOptions options;
    options.mAddParsers = [](ezMediaParserManager& aManager) { aManager.Add(new FlacParser); };
    return options;
}
