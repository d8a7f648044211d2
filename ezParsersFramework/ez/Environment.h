#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/config/PropertyList.h"

#include <string_view>

/// @name Environment properties
/// What the parsers of the library and of its companions read of the property list that a host hands down,
/// beside kProperty_Parser_SpecsLevel.
/// @{

/// The folder whose configuration files the operator does not change.
inline constexpr const char* kProperty_ReadOnlyConfigPath = "ReadOnlyConfigPath";
/// The folder whose configuration files lie over those.
inline constexpr const char* kProperty_ReadWriteConfigPath = "ReadWriteConfigPath";
/// Not 0 while a DLNA conformance test tool (CTT) is at work: an ezCTTContext.
inline constexpr const char* kProperty_CTTContext = "CTTContext";
/// The code page of texts in files that are not UTF-8 and state no encoding, or UTF-8, or Latin-1 as those do
/// that do not know theirs (ID3, RIFF, Vorbis comments ...). A number (1251, 932) or a name
/// ("windows-1251", "KOI8-R", "ISO-8859-2", "Shift_JIS"). Windows-1252 is built in, and stands for no code
/// page and for one that the system's iconv does not know. Read by the parsers of ezFormats, whose
/// RegisterFormatParsers logs a warning for one that is not known.
inline constexpr const char* kProperty_TextCodePage = "TextCodePage";
/// @}

/// The values of kProperty_CTTContext. Any other than these reads as kProperty_CTTContext_NameHelps.
enum ezCTTContext : uint32 {
    kProperty_CTTContext_Off = 0,        ///< no conformance test
    kProperty_CTTContext_NameHelps = 1,  ///< the name of a test file decides where no parser answers
    kProperty_CTTContext_NameDecides = 2 ///< the name of a test file decides always
};

/// @name Names of configuration files
/// @{

/// The media types file, in either configuration folder (ExtensionMimeTypeMatcher).
inline constexpr const char* kezMediaTypesFileName = "mediaCTRLMediaTypes.ini";
/// Names the configuration folders, in the working directory, where the environment names none
/// (ezConfigConfig).
inline constexpr const char* kezConfigPathFileName = "ConfigPath.ini";
/// @}

/// The settings that a host hands down to its parsers: a property list that it owns.
///
///     ezEnvironment environment("/etc/server", "/var/lib/server");
///     ezMediaParserManager manager(environment.Get());
///
/// The manager and its parsers borrow the list, so the environment must outlive them. Parsers read it at each
/// request; the folders are read once, by ezMediaParserManager::AddStandardParsers. Not locked: several
/// managers, each in a thread of its own, may share one as long as nobody sets anything.
class EZPARSERS_API ezEnvironment {
public:
    /// Without a property: every setting has its default.
    ezEnvironment();
    /// With the configuration folders; "" leaves one out. Where both are left out they are those of
    /// kezConfigPathFileName; one that is still not known is the working directory.
    explicit ezEnvironment(std::string_view aReadOnlyFolder, std::string_view aReadWriteFolder = {});
    ~ezEnvironment();

    ezEnvironment(const ezEnvironment&) = delete;
    ezEnvironment& operator=(const ezEnvironment&) = delete;

    /// The list, for ezMediaParserManager and for parsers that a host makes by hand; borrowed, never null.
    ezPropertyList* Get() const { return mList.get(); }

    /// Sets kProperty_Parser_SpecsLevel; ..._Normal without it.
    void SetSpecsLevel(ezParserSpecsLevel aLevel);
    /// Sets kProperty_CTTContext, an ezCTTContext; ..._Off without it.
    void SetCTTContext(uint32 aContext);
    /// Sets kProperty_TextCodePage, a name or a number. No text here or in Set is made of a null pointer.
    void SetTextCodePage(std::string_view aCodePage);

    /// Sets any property: those above by their names, and what a host's own parsers read. Returns this
    /// environment, so that several can be set in a row. Texts are copied; a NUL ends them.
    /// @{
    ezEnvironment& Set(const char* aName, uint32 aValue);
    ezEnvironment& Set(const char* aName, std::string_view aValue);
    /// @}

private:
    ezOwned<ezPropertyList_Delete> mList;
};
