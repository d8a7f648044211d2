#include "ezFormats/tags/MusicValues.h"

void MusicValues::Add(const TagField& aField, const ezCString& aValue) {
    Values& values = (aField.mfSecond ? mSecond : mFirst)[static_cast<std::size_t>(aField.mField)];
    if (!aValue.IsEmpty() && (values.mCount == 0 || MusicField_HasSeveral(aField.mField))) {
        ++values.mCount;
        values.mNames.Add(aValue);
    }
}

void MusicValues::Store(MusicTexts& aTexts) const {
    StoreFields(mFirst, aTexts);
    StoreFields(mSecond, aTexts);
}

void MusicValues::StoreFields(const Fields& aFields, MusicTexts& aTexts) {
    for (std::size_t i = 0; i < aFields.size(); ++i) {
        const auto field = static_cast<MusicField>(i);
        if (aFields[i].mCount != 0 && !aTexts.Has(field)) {
            aTexts.Take(field, aFields[i].mNames);
        }
    }
}
