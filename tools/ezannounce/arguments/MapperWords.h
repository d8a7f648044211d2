#pragma once

#include <string>
#include <vector>

struct Arguments;

/// Takes what is done with the media mapper, and on or off of its speeds, off the words after the verb
/// mapper. What is wrong with them; "" when nothing is.
std::string TakeMapperVerb(std::vector<std::string>& aWords, Arguments& anArguments);

/// What of the rest of the command line does not go with what is done with the media mapper; "" when all
/// does.
std::string CheckMapperVerb(const Arguments& anArguments);
