#pragma once

/// Seconds after which a test that does not end is given up: far more than it needs on a slow machine that
/// has much else to do.
inline constexpr unsigned kPatience = 300;

/// For what can only be shown in the time that passes: that something ends by a stated time, or does not. A
/// machine that has other things to do may let more pass than the test means to, so what does not come about
/// is tried at a tenth of the pace, and at a tenth of that.
///
/// @param aTry  the times of its scene are to be multiplied by what it is given. It must not be able to
///              succeed where the tested code is wrong, at any pace
template <typename Try>
bool SucceedsAtSomePace(const Try& aTry) {
    return aTry(1) || aTry(10) || aTry(100);
}
