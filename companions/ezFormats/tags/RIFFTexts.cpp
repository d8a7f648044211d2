#include "ezFormats/tags/RIFFTexts.h"

#include "ezFormats/tags/MusicValues.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"

void TakeRIFFTexts(ChunkWalk anItems, ByteReader anItem, TextEncoding anEncoding, const CodePage& aCodePage,
                   MusicTexts& aTexts) {
    MusicValues values;
    for (BoxType name; anItems.Next(&name, &anItem);) {
        if (const TagField* const field = FindTagField(TagLetters::RIFF, name.GetCode())) {
            values.Add(*field, ReadCleanText(anItem, anEncoding, aCodePage));
        }
    }
    values.Store(aTexts);
}

void TakeInfoTexts(ByteReader aList, const ChunkLayout& aLayout, std::uint32_t& aBudget,
                   const CodePage& aCodePage, MusicTexts& aTexts) {
    if (BoxType::Read(aList) == "INFO") {
        TakeRIFFTexts({aList, aLayout, aBudget}, aList, TextEncoding::Unstated, aCodePage, aTexts);
    }
}
