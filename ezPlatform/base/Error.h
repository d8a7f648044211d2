#pragma once

#include <string>
#include <utility>

/// What came of an operation on files: no error, or a code with a message for a person.
class ezError {
public:
    /// No error: code 0, no message.
    ezError() = default;
    /// What went wrong.
    /// @param aCode     the operation's own; 0 is no error, whatever the message
    /// @param aMessage  for a person; copied
    ezError(int aCode, std::string aMessage) : mCode(aCode), mMessage(std::move(aMessage)) {}

    /// True when the code is not 0.
    bool IsError() const { return mCode != 0; }
    /// 0 for no error, else one of the codes that the operation's own documentation lists.
    int GetCode() const { return mCode; }
    /// The message, valid until this object changes; empty for no error.
    const char* ToString() const { return mMessage.c_str(); }

private:
    int mCode = 0;
    std::string mMessage;
};
