#include "ezPlatform/config/Hook.h"

#include <map>
#include <string>

struct ezHook {
    ezHookCallback mCallback = nullptr;
    std::map<std::string, void*> mProperties;
};

ezHook* ezHook_New() {
    return new ezHook;
}

void ezHook_Delete(ezHook* aHook) {
    delete aHook;
}

void ezHook_SetCallback(ezHook* aHook, ezHookCallback aCallback) {
    if (aHook != nullptr) {
        aHook->mCallback = aCallback;
    }
}

void ezHook_SetVoidPtrProperty(ezHook* aHook, const char* aName, void* aValue) {
    if (aHook != nullptr && aName != nullptr) {
        aHook->mProperties[aName] = aValue;
    }
}

void* ezHook_GetVoidPtrProperty(const ezHook* aHook, const char* aName) {
    if (aHook == nullptr || aName == nullptr) {
        return nullptr;
    }
    const auto found = aHook->mProperties.find(aName);
    return found != aHook->mProperties.end() ? found->second : nullptr;
}

void ezHook_Call(ezHook* aHook, const char* aName, ...) {
    if (aHook == nullptr || aHook->mCallback == nullptr) {
        return;
    }
    va_list arguments;
    va_start(arguments, aName);
    aHook->mCallback(aHook, aName, arguments);
    va_end(arguments);
}
