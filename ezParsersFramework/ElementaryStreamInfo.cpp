#include "ez/ElementaryStreamInfo.h"

ezElementaryStreamInfo::~ezElementaryStreamInfo() = default;
