#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"

/// A URI, or a relative reference to one, and its components (RFC 3986).
///
/// Read leniently, since playlists and people write them: any byte is taken, a drive letter ("C:\x") is not a
/// scheme, and neither is the first word of a name like "Artist: Song.mp3". How these, "%" without two
/// digits,
/// "%00" and "%2F" are read: docs/platform-layer.md.
///
/// Components are handed out decoded, and are valid until the object changes. Texts that a function returns
/// as char* are the caller's, freed with ezFree (ezOwnedText, ezCString::FromAllocatedString); a null object
/// gives null and 0 and takes nothing. Every operation is linear in the texts that it is given. Not locked.
struct ezURI;

/// A URI without any component. Never null; given back with ezURI_Delete.
EZPLATFORM_API ezURI* ezURI_New();
/// Parses a text whose components are escaped; null is the empty text. Never null; given back with
/// ezURI_Delete.
EZPLATFORM_API ezURI* ezURI_NewFromEscapedStr(const char* aText);
/// Frees the object and with it every component that it handed out. Null is ignored.
EZPLATFORM_API void ezURI_Delete(ezURI* aURI);

/// Sets the scheme. Null, and a text that is not a scheme of two characters or more, removes it.
EZPLATFORM_API void ezURI_SetScheme(ezURI* aURI, const char* aScheme);

/// Sets host and path to those of a local file (RFC 8089), whose name is escaped here and not before:
/// "/m/a b.mp3", "C:\m\a b.mp3" and "\\server\m\a b.mp3" are "///m/a%20b.mp3", "///C:/m/a%20b.mp3" and
/// "//server/m/a%20b.mp3" after "file:". A relative path begins at the working folder, as a file URL is
/// always absolute. "\" is a separator only where the path begins with it or with a drive; elsewhere it
/// belongs to a POSIX name and is escaped. "." and ".." are resolved by text: the system may find another
/// file through a folder that is a symbolic link. False, and nothing is changed, for null, for "" and where
/// the working folder cannot be told.
EZPLATFORM_API bool ezURI_SetFilePath(ezURI* aURI, const char* aPath);

/// The whole text, escaped. Bytes that no URI may hold (blanks, control bytes, bytes above 7E, quotes, angle
/// brackets, braces, the backslash, "^", "|" and the grave accent) are escaped; everything else is written as
/// it was read. Where the text would be read differently from what it is made of, "/." or "./" is put before
/// the path.
EZPLATFORM_API char* ezURI_GetStr(const ezURI* aURI);

/// As written, without ":"; null when absent. Schemes and hosts compare without case.
EZPLATFORM_API const char* ezURI_GetScheme(const ezURI* aURI);
/// What stands before the last "@" of the authority; null when absent.
EZPLATFORM_API const char* ezURI_GetUserInfo(const ezURI* aURI);
/// The host, an IPv6 address in its brackets; null without an authority ("//"), "" in "file:///x".
EZPLATFORM_API const char* ezURI_GetHostName(const ezURI* aURI);
/// 0 when the port is absent or is not a number from 1 to 65535.
EZPLATFORM_API uint32 ezURI_GetPort(const ezURI* aURI);
/// Null when it is empty.
EZPLATFORM_API const char* ezURI_GetPath(const ezURI* aURI);
/// Without "?"; null when absent, "" when nothing follows the "?".
EZPLATFORM_API const char* ezURI_GetQuery(const ezURI* aURI);
/// Without "#"; null when absent, "" when nothing follows the "#".
EZPLATFORM_API const char* ezURI_GetFragment(const ezURI* aURI);

/// What follows the last "/" of the path, decoded whole: "AC%2FDC" is "AC/DC" here. Null when the path
/// is empty, "" when it ends in "/".
EZPLATFORM_API char* ezURI_GetLastPathSegment(const ezURI* aURI);
/// Resolves a reference against a base (RFC 3986 section 5, strictly: a reference with a scheme, even the
/// base's, is absolute). "." and ".." segments are removed, also from an absolute reference; those that lead
/// above the root, or above a base that is itself relative, are dropped. An empty reference gives the base
/// without its fragment. Null is the empty text. Here one letter is a scheme ("g:h"), so that a path with a
/// drive is absolute, too. Bytes are escaped as by ezURI_GetStr.
EZPLATFORM_API char* ezURI_S_Combine(const char* aBase, const char* aReference);
