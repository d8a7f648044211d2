#pragma once

#include "ez/MediaParser.h"

#include "ezPlatform/text/StringList.h"

class ExtensionMimeTypeMatcher;
struct ExtensionMimeTypeMatcherEntry;
struct ezPtrList;
class ParseReporter;
enum class ezEntryResult;

/// The parser for any media that works from the media types table (ExtensionMimeTypeMatcher): it finds the
/// entries that fit the stream, has its manager try the parsers that they name, and completes the winner's
/// record with the entry's MIME type, class and extension and with the bit rates that follow from the given
/// ones. Where no parser answers, the last entry of the extension alone makes a record.
///
/// A parser's answer that comes from an excluded entry is not a result; the record that an entry
/// makes alone may come from an excluded one. While the environment's kProperty_CTTContext is not 0 a
/// conformance test file is recognised by its name (DLNAFileParser) where no parser answers, and with
/// kProperty_CTTContext_NameDecides always.
///
/// Belongs to one manager, which it calls back; without one it asks no parser, and only the table and a test
/// file's name answer.
class EZPARSERS_API ezMimeTypesDotIniParser : public ezMediaParser {
public:
    /// Loads the table from two folders; an empty aConfigFileName means
    /// kezMediaTypesFileName.
    /// @param aParseOptions  a set of ezParseOption bits
    ezMimeTypesDotIniParser(const ezCString& aReadOnlyConfigPath, const ezCString& aReadWriteConfigPath,
                            const ezCString& aConfigFileName, int aParseOptions);
    /// Loads the table from the folders that the environment's kProperty_ReadOnlyConfigPath and
    /// kProperty_ReadWriteConfigPath name; where both are missing from those in kezConfigPathFileName; a
    /// folder that is still not known is ".".
    /// @param anEnvironmentInfo  borrowed, may be null
    ezMimeTypesDotIniParser(ezPropertyList* anEnvironmentInfo, int aParseOptions);
    ~ezMimeTypesDotIniParser() override;

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    /// Has the parsers that the entries of the record's MIME type name adjust it. A record without a matching
    /// MIME type is not adjusted, whatever its extension.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// What a server advertises during a conformance test; "" outside one.
    ezCString GetDLNAInfo() override;

    /// True when kParseOption_ParseFullFileIfVBR is among the options: parsers may then read a whole file.
    bool IsParseFullFileIfVBR() const { return (mParseOptions & kParseOption_ParseFullFileIfVBR) != 0; }

    /// The entry whose parsers are being tried on a stream; null for any other stream and outside a request,
    /// also while a parser has the manager identify another stream. A parser that leaves "cn" unset gets the
    /// entry's first class when the entry wins. Borrowed, for the time of the parser's Parse.
    const ExtensionMimeTypeMatcherEntry* GetEntryInTrial(const ezMediaParserStream& aStream) const {
        return mStreamInTrial == &aStream ? mEntryInTrial : nullptr;
    }

    /// The first class of the first entry that is not excluded, lists a MIME type (any case) and is of the
    /// class aClass or of one derived from it; "" when there is none.
    ezCString MimeTypeToClassName(const ezCString& aMimeType, const char* aClass);

    /// Questions to the table; see ExtensionMimeTypeMatcher.
    /// @{
    ezCString FileExtensionToMimeType(const ezCString& anExtension);
    ezCString MimeTypeToFileExtension(const ezCString& aMimeType);
    ezCSVStringList MimeTypeToFileExtensionList(const ezCString& aMimeType);
    ezCSVStringList ExtensionToExtensionList(const ezCString& anExtension);
    /// @}

protected:
    /// The first answer of the parsers of these types. Null for a null list.
    ezMediaInfo* ParseFromTypes(ezPtrList* aTypes, ezMediaParserStream& aStream);
    /// The completed answer of the first entry that leads to one. With afForceCreateMediaInfo the last entry
    /// alone makes a record where none does. Null for a null list.
    ezMediaInfo* ParseFromEntries(ezPtrList* anEntries, ezMediaParserStream& aStream,
                                  bool afForceCreateMediaInfo);
    /// Has the parsers of these types adjust a record, until one does. False when none does, for a null list
    /// and without a manager.
    bool AdjustDLNAInfoFromTypes(ezPtrList* aTypes, ezMediaInfo* anInfo);
    /// The same with the types of each entry.
    bool AdjustDLNAInfoFromEntries(ezPtrList* anEntries, ezMediaInfo* anInfo);

private:
    /// The answer of an entry's parsers, and meanwhile the note of what is tried on what.
    ezMediaInfo* TryEntry(const ExtensionMimeTypeMatcherEntry& anEntry, ezMediaParserStream& aStream);
    /// How an entry fares, and in anInfo the completed record of one that won or made a record, else null.
    /// @param aContext  that of the conformance test
    /// @param afAlone   where nothing answers, the entry alone makes a record if it can
    ezEntryResult ParseFromEntry(ExtensionMimeTypeMatcherEntry& anEntry, ezMediaParserStream& aStream,
                                 uint32 aContext, bool afAlone, ezMediaInfo*& anInfo);
    /// Completes the record of an entry that won.
    /// @param afRatesCleared  no bit rate counts, as the name of a conformance test file decides
    void Complete(ezMediaInfo& anInfo, const ExtensionMimeTypeMatcherEntry& anEntry, bool afRatesCleared);
    /// Consults the file name of a conformance test: true when it told something, which is then in anInfo
    /// (made where it is null).
    bool ConsultTestFileName(ezMediaParserStream& aStream, ezMediaInfo*& anInfo);
    void FillNames(ezMediaInfo& anInfo, const ExtensionMimeTypeMatcherEntry& anEntry);
    /// That of the manager; null where nobody observes.
    ParseReporter* Reporter() const;

    ExtensionMimeTypeMatcher* mExtensionMimeTypeMatcher; ///< owned
    int mParseOptions;
    const ExtensionMimeTypeMatcherEntry* mEntryInTrial = nullptr; ///< borrowed, while its parsers are tried
    const ezMediaParserStream* mStreamInTrial = nullptr;          ///< on which they are tried
};
