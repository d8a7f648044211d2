#pragma once

#include <string>
#include <utility>

/// What came of an operation on files: no error, or a code with a message for a person.
class ezError {
public:
    /// No error: code 0, no message.
    ezError() = default;
    ezError(int aCode, std::string aMessage) : mCode(aCode), mMessage(std::move(aMessage)) {}

    bool IsError() const { return mCode != 0; }
    int GetCode() const { return mCode; }
    /// The message, lent until this object changes; empty for no error.
    const char* ToString() const { return mMessage.c_str(); }

private:
    int mCode = 0;
    std::string mMessage;
};
