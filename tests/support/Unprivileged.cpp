#include "support/Unprivileged.h"

#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace {

/// "nobody" everywhere.
constexpr uid_t kNobody = 65534;

} // namespace

Unprivileged::Unprivileged() : mBefore(geteuid()) {
    if (mBefore == 0 && seteuid(kNobody) != 0) {
        throw std::runtime_error("cannot drop root");
    }
}

Unprivileged::~Unprivileged() {
    // Going on without the rights that the other tests had would fail them somewhere else.
    if (mBefore == 0 && seteuid(mBefore) != 0) {
        std::abort();
    }
}
