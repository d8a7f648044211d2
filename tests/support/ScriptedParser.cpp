#include "support/ScriptedParser.h"

#include "ez/MediaParserStream.h"

#include "ezPlatform/containers/CustomHashTable.h"

#include <functional>
#include <utility>

ScriptedParser::ScriptedParser(ParserTrace& aTrace, std::string aName, const char* aType, bool afCoverArt,
                               ezPropertyList* anEnvironmentInfo)
    : ezMediaParser(aType, anEnvironmentInfo, afCoverArt), mTrace(aTrace), mName(std::move(aName)) {}

ScriptedParser::~ScriptedParser() {
    Note("delete");
}

ScriptedParser* ScriptedParser::Answering(const char* aMimeType) {
    return AnsweringWith([mimeType = std::string(aMimeType)](ezMediaParserStream&) {
        ezMediaInfo* info = new ezMediaInfo;
        info->Set(kezInfo_MimeType, mimeType.c_str(), true);
        return info;
    });
}

ScriptedParser* ScriptedParser::AnsweringWith(std::function<ezMediaInfo*(ezMediaParserStream&)> anAnswer) {
    mAnswer = std::move(anAnswer);
    return this;
}

ScriptedParser* ScriptedParser::Declaring(const char* aDLNAInfo) {
    mDLNAInfo = aDLNAInfo;
    return this;
}

ScriptedParser* ScriptedParser::Adjusting(const char* aDLNA) {
    mAdjustment = aDLNA;
    return this;
}

ScriptedParser* ScriptedParser::Calling(std::function<void()> aFunction) {
    mFunction = std::move(aFunction);
    return this;
}

void ScriptedParser::Note(const std::string& aWhat) {
    mTrace.push_back(aWhat + " " + mName);
}

void ScriptedParser::CallFunction() {
    const std::function<void()> function = mFunction; // it may put another in its place
    if (function) {
        function();
    }
}

ezMediaInfo* ScriptedParser::Parse(ezMediaParserStream& aStream) {
    Note("parse");
    mTrace.back() += " @" + std::to_string(aStream.Tell().ToUInt64());
    CallFunction();
    char bytes[3];
    std::size_t count = sizeof bytes;
    aStream.Read(&count, bytes);
    return mAnswer ? mAnswer(aStream) : nullptr;
}

bool ScriptedParser::AdjustDLNAInfo(ezMediaInfo* anInfo) {
    Note("adjust");
    CallFunction();
    if (mAdjustment.empty()) {
        return false;
    }
    if (anInfo != nullptr) {
        anInfo->Set(kezInfo_DLNA, mAdjustment.c_str(), true);
    }
    return true;
}

ezCString ScriptedParser::GetDLNAInfo() {
    Note("declare");
    CallFunction();
    return mDLNAInfo.c_str();
}

ezMediaInfo* OpenManager::ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) {
    mTypesAsked.emplace_back(aType.c_str());
    return ezMediaParserManager::ParseFromType(aType, aStream);
}

std::vector<std::string> OpenManager::KeysOf(ezCustomHashTable* aTable) {
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < ezCustomHashTable_GetTupleCount(aTable); ++i) {
        keys.emplace_back(ezCustomHashTable_GetKeyAtIndex(aTable, i).c_str());
    }
    return keys;
}

bool AreInOrder(const std::vector<const void*>& aPlaces) {
    for (std::size_t i = 1; i < aPlaces.size(); ++i) {
        if (!std::less<const void*>()(aPlaces[i - 1], aPlaces[i])) {
            return false;
        }
    }
    return true;
}
