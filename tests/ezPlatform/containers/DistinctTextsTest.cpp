#include "ezPlatform/containers/DistinctTexts.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

// On both sides of the number from which on the texts are no longer walked over, and at it: a text that was
// met is told from a new one however often it comes.
TEST(DistinctTexts, EachIsNewOnceWheneverItComesAgain) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < 40; ++i) {
        texts.push_back("DLNA.ORG_" + std::to_string(i));
    }
    for (std::size_t again = 0; again < 4; ++again) {
        ezDistinctTexts met;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_TRUE(met.Add(texts[i])) << i;
            for (std::size_t times = 0; times < again; ++times) {
                for (std::size_t known = 0; known <= i; ++known) {
                    ASSERT_FALSE(met.Add(texts[known])) << known << " of " << i << ", " << times;
                }
            }
        }
    }
}
