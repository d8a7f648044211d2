#pragma once

#include "ezPlatform/base/Export.h"

/// For the first line of a program's main: makes sure that the descriptors 0 to 2 are open, so that no file
/// or socket that is opened later is taken for standard input, output or error, and receives what is written
/// there. A program that is started with one of them closed is given a descriptor of the null device in its
/// place, the wrong way round: who reads standard input, or writes to the others, still gets an error.
///
/// Before any other thread is started. False when the system refuses.
EZPLATFORM_API bool ezKeepStandardDescriptors();
