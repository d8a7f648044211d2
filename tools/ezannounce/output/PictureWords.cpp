#include "output/PictureWords.h"

std::string InWords(const PictureFacts& aFacts, std::size_t aByteCount) {
    return std::string(aFacts.mFormat) + ", " + std::to_string(aFacts.mWidth) + "x" +
           std::to_string(aFacts.mHeight) + ", " + std::to_string(aByteCount) + " bytes";
}
