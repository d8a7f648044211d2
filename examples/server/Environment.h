#pragma once

#include "ezPlatform/config/PropertyList.h"

/// The settings that a host hands down to its parsers. It outlives the manager, whose parsers use it.
class Environment {
public:
    /// @param aConfigFolder  where the media types file lies
    explicit Environment(const char* aConfigFolder) : mList(ezPropertyList_New()) {
        ezPropertyList_Set_charPtr(mList, "ReadOnlyConfigPath", aConfigFolder);
    }
    ~Environment() { ezPropertyList_Delete(mList); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    ezPropertyList* Get() const { return mList; }

private:
    ezPropertyList* mList;
};
