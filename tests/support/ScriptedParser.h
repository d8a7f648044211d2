#pragma once

#include "ez/Environment.h"
#include "ez/MediaParser.h"
#include "ez/MediaParserManager.h"

#include "ezPlatform/media/MediaInfo.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

/// What was asked of all parsers of a test, in the order asked: "parse NAME @POSITION", "adjust NAME",
/// "declare NAME" and, when a parser is deleted, "delete NAME". Outlives them.
using ParserTrace = std::vector<std::string>;

/// A parser that does what it is told to and notes every call in a trace. It reads three bytes of the media
/// when it is asked to parse, so that a stream that is not put back shows; it declines, adjusts nothing and
/// declares nothing until told otherwise.
class ScriptedParser : public ezMediaParser {
public:
    ScriptedParser(ParserTrace& aTrace, std::string aName, const char* aType, bool afCoverArt = false,
                   ezPropertyList* anEnvironmentInfo = nullptr);
    ~ScriptedParser() override;

    /// Answers with a record of this MIME type.
    ScriptedParser* Answering(const char* aMimeType);
    /// Answers with what the function makes.
    ScriptedParser* AnsweringWith(std::function<ezMediaInfo*(ezMediaParserStream&)> anAnswer);
    ScriptedParser* Declaring(const char* aDLNAInfo);
    /// Adjusts every record: sets its 4th field.
    ScriptedParser* Adjusting(const char* aDLNA);
    /// Calls a function first, whenever it is asked to parse, to adjust or to declare.
    ScriptedParser* Calling(std::function<void()> aFunction);

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    ezCString GetDLNAInfo() override;

    using ezMediaParser::GetCTTContext;
    using ezMediaParser::mEnvironmentInfo;
    using ezMediaParser::mManager;

private:
    void Note(const std::string& aWhat);
    void CallFunction();

    ParserTrace& mTrace;
    std::string mName;
    std::string mDLNAInfo;
    std::string mAdjustment;
    std::function<ezMediaInfo*(ezMediaParserStream&)> mAnswer;
    std::function<void()> mFunction;
};

/// A manager that shows its inside and notes the types that it is asked to parse from, by whomever.
class OpenManager : public ezMediaParserManager {
public:
    explicit OpenManager(ezPropertyList* anEnvironmentInfo = nullptr)
        : ezMediaParserManager(anEnvironmentInfo) {}

    ezMediaInfo* ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) override;

    const std::vector<std::string>& TypesAsked() const { return mTypesAsked; }
    /// The keys of a table in its index order.
    static std::vector<std::string> KeysOf(ezCustomHashTable* aTable);

    using ezMediaParserManager::AddToMimeTypeList;
    using ezMediaParserManager::AppendDLNAInfo;
    using ezMediaParserManager::MediaMapperValidate;
    using ezMediaParserManager::ParserListFrom;
    using ezMediaParserManager::ParserListFromMimeType;
    using ezMediaParserManager::ParserListFromType;

    using ezMediaParserManager::mDLNAMediaMapperParser;
    using ezMediaParserManager::mDoneParsers;
    using ezMediaParserManager::mEnvironmentInfo;
    using ezMediaParserManager::mMimeTypesDotIniParser;
    using ezMediaParserManager::mParserListByMimeType;
    using ezMediaParserManager::mParserListByType;

private:
    std::vector<std::string> mTypesAsked;
};

/// The slot of a virtual operation in the table of its class, by the C++ ABI of our targets: its address is
/// the byte offset of the slot, plus 1 on some of them. A destructor takes two slots.
template <typename Class, typename Result, typename... Arguments>
std::size_t VirtualSlotOf(Result (Class::*anOperation)(Arguments...)) {
    std::uintptr_t words[2] = {};
    static_assert(sizeof anOperation == sizeof words, "an address in the table and an adjustment");
    std::memcpy(words, &anOperation, sizeof words);
    return (words[0] & ~std::uintptr_t{1}) / sizeof(void*);
}

/// True when each place lies after the one before it.
bool AreInOrder(const std::vector<const void*>& aPlaces);
