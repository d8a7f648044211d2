#pragma once

/// How many samples of luma there are to one of chroma, across and down, and how kezInfo_PictureColours names
/// it.
struct ChromaSampling {
    unsigned mAcross;
    unsigned mDown;
    const char* mName;
};

inline constexpr ChromaSampling kChromaSamplings[] = {{1, 1, "4:4:4"}, {1, 2, "4:4:0"}, {2, 1, "4:2:2"},
                                                      {2, 2, "4:2:0"}, {4, 1, "4:1:1"}, {4, 2, "4:1:0"}};
