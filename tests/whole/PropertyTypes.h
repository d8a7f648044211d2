#pragma once

#include <string>
#include <vector>

/// An entry of the media types table that every host of the property has.
struct TypesEntry {
    std::string mKey;
    std::vector<std::string> mExtensions;
    std::vector<std::string> mMimeTypes;
    std::string mClass;
    std::vector<std::string> mFurtherTypes;
    bool mfExcluded;
};

/// The table in the order in which it is asked. Extension "a2" and MIME type "audio/x-a" lead to several
/// entries, one of them excluded; type "aaa" is reached by two.
const std::vector<TypesEntry>& TypesTable();

/// The table as a file.
std::string TypesText();

/// Entries that list an extension, or a MIME type (without its parameters where the whole finds none).
std::vector<const TypesEntry*> EntriesOfExtension(const std::string& anExtension);
std::vector<const TypesEntry*> EntriesOfMimeType(const std::string& aMimeType);

/// What the table answers to the questions of a host; lists are separated by "\".
std::string MimeTypeOfExtension(const std::string& anExtension);
std::string ExtensionOfMimeType(const std::string& aMimeType);
std::string ExtensionsOfMimeType(const std::string& aMimeType);
std::string ExtensionsBesideExtension(const std::string& anExtension);

/// Whether an entry that is not excluded lists an extension in lower case.
bool IsKnownExtension(const std::string& anExtension);

std::string Lower(std::string aText);

/// A name at its last dot; without one the extension is empty.
struct NameParts {
    explicit NameParts(const std::string& aName);
    std::string mBase;
    std::string mExtension;
};
