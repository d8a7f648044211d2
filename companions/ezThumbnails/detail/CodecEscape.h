#pragma once

#include <csetjmp>

/// The way out of an error for the library of a codec, which knows no other one: a jump over its frames. What
/// is jumped over, the step under way and what the library calls back, holds nothing that has a destructor.
class CodecEscape {
public:
    /// Runs a step. False when Jump ended it.
    template <typename Step>
    bool Run(const Step& aStep) {
        if (setjmp(mPlace) != 0) {
            return false;
        }
        aStep();
        return true;
    }

    /// Ends the step that runs.
    [[noreturn]] void Jump() { std::longjmp(mPlace, 1); }

private:
    std::jmp_buf mPlace = {};
};
