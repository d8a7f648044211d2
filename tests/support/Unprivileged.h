#pragma once

#include <sys/types.h>

/// Takes the rights of root away from this process while it lives, so that permissions refuse; does nothing
/// in a process that has none. Throws where they cannot be taken away.
class Unprivileged {
public:
    Unprivileged();
    ~Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    uid_t mBefore;
};
