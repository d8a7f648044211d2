#include "ez/Environment.h"

#include <string>

ezEnvironment::ezEnvironment() : mList(ezPropertyList_New()) {}

ezEnvironment::ezEnvironment(std::string_view aReadOnlyFolder, std::string_view aReadWriteFolder)
    : ezEnvironment() {
    if (!aReadOnlyFolder.empty()) {
        Set(kProperty_ReadOnlyConfigPath, aReadOnlyFolder);
    }
    if (!aReadWriteFolder.empty()) {
        Set(kProperty_ReadWriteConfigPath, aReadWriteFolder);
    }
}

ezEnvironment::~ezEnvironment() = default;

void ezEnvironment::SetSpecsLevel(ezParserSpecsLevel aLevel) {
    Set(kProperty_Parser_SpecsLevel, static_cast<uint32>(aLevel));
}

void ezEnvironment::SetCTTContext(uint32 aContext) {
    Set(kProperty_CTTContext, aContext);
}

void ezEnvironment::SetTextCodePage(std::string_view aCodePage) {
    Set(kProperty_TextCodePage, aCodePage);
}

ezEnvironment& ezEnvironment::Set(const char* aName, uint32 aValue) {
    ezPropertyList_Set_uint32(mList.get(), aName, aValue);
    return *this;
}

ezEnvironment& ezEnvironment::Set(const char* aName, std::string_view aValue) {
    ezPropertyList_Set_charPtr(mList.get(), aName, std::string(aValue).c_str());
    return *this;
}
