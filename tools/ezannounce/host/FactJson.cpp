#include "host/FactJson.h"

#include "host/Facts.h"

nlohmann::ordered_json ValueOf(const Fact& aFact) {
    if (aFact.mfFlag) {
        return aFact.mNumber != 0;
    }
    if (aFact.mDivisor != 1) {
        return static_cast<double>(aFact.mNumber) / aFact.mDivisor;
    }
    if (aFact.mfNumber) {
        return aFact.mNumber;
    }
    if (!aFact.mValues.empty()) {
        return aFact.mValues;
    }
    return aFact.mText;
}

const std::string& NameOf(const Fact& aFact) {
    return aFact.mName.empty() ? aFact.mKey : aFact.mName;
}
