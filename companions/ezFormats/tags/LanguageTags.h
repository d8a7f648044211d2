#pragma once

#include "ezBytes/LanguageTags.h"
