#pragma once

/// \file
/// Elementary streams that are pushed in packets; a host includes this header and gets all of it: the base of
/// a format's parser (ezElementaryStreamParser), what it is told of its stream (ezElementaryStreamInfo), and
/// the race of several formats on a stream whose format is not known (ezUndeterminedEltStreamParser).

#include "ez/ElementaryStreamInfo.h"
#include "ez/ElementaryStreamParserBase.h"
#include "ez/UndeterminedEltStreamParser.h"
