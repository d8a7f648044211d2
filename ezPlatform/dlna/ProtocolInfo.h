#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"

#include <cstddef>

/// A protocolInfo: protocol, network, MIME type and the DLNA 4th field taken apart (DLNA guidelines 7.4.1.3).
///
/// Read in any order and leniently, written in the mandatory order: DLNA.ORG_PN, OP, PS, CI, FLAGS, then
/// unknown parameters in the order met with their values unchanged. A parameter is found by its whole name,
/// to the letter; of one that stands twice the first counts. What is malformed (an OP that is not two bits, a
/// play speed that is not a number, a FLAGS of fewer than eight hexadecimal digits) is dropped. FLAGS is read
/// from its first eight digits and written as eight upper-case ones and 24 zeros. What was stated is written,
/// also where it is 0. An empty 4th field is "*".
///
/// A play speed is a non-zero integer or fraction ("-1/2"), kept as written; one equal to 1 is always
/// supported and never listed, and of two that are the same number the first stays. In a list of
/// protocolInfos a comma inside an entry is written "\,".
///
/// Texts that a function returns as char* are the caller's, freed with ezFree
/// (ezCString::FromAllocatedString); null objects give null texts, false and 0 and take nothing. Not locked.
struct ezDLNAProtocolInfo;

/// @name The flags of DLNA.ORG_FLAGS that the library knows, as its first eight digits have them
/// @{
inline constexpr uint32 kezDLNAFlag_HTTPStalling = 0x00200000;  ///< a client may pause by not reading on
inline constexpr uint32 kezDLNAFlag_DLNAVersion15 = 0x00100000; ///< of version 1.5 or later
inline constexpr uint32 kezDLNAFlag_LinkProtected = 0x00010000; ///< content goes out link-protected
/// @}

/// Parses "protocol:network:MIME type:4th field": it is split at the first three colons outside quotes, and
/// parts that are missing are "*". Null or empty text gives "http-get:*:*:*". aLength is in bytes, 0 for the
/// whole C string; a NUL ends the text before it. The last argument is reserved and 0. Never null; given back
/// with ezDLNAProtocolInfo_Delete.
EZPLATFORM_API ezDLNAProtocolInfo* ezDLNAProtocolInfo_New(const char* aText, std::size_t aLength,
                                                          int aReserved);
/// Frees the object and with it every text that it handed out. Null is ignored.
EZPLATFORM_API void ezDLNAProtocolInfo_Delete(ezDLNAProtocolInfo* anInfo);

/// The whole protocolInfo.
EZPLATFORM_API char* ezDLNAProtocolInfo_GetStr(const ezDLNAProtocolInfo* anInfo);
/// Its 4th field alone: what follows the third colon outside quotes; "*" when it is empty.
EZPLATFORM_API char* ezDLNAProtocolInfo_Get4thFieldStr(const ezDLNAProtocolInfo* anInfo);
/// The MIME type, valid until the object changes.
EZPLATFORM_API const char* ezDLNAProtocolInfo_GetMimeType(const ezDLNAProtocolInfo* anInfo);
/// Null or "" sets "*".
EZPLATFORM_API void ezDLNAProtocolInfo_SetMimeType(ezDLNAProtocolInfo* anInfo, const char* aMimeType);
/// The profile name, valid until the object changes; "" when there is none.
EZPLATFORM_API const char* ezDLNAProtocolInfo_GetProfile(const ezDLNAProtocolInfo* anInfo);
/// Null or "" takes DLNA.ORG_PN away.
EZPLATFORM_API void ezDLNAProtocolInfo_SetProfile(ezDLNAProtocolInfo* anInfo, const char* aProfile);

/// Sets the play speeds from a comma list, in its order; what is no speed is dropped. The last argument is
/// reserved and 0.
EZPLATFORM_API void ezDLNAProtocolInfo_SetPlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds,
                                                     int aReserved);
/// The play speeds as a comma list, "" when there are none. With afEscape 1 the commas are written "\,", as
/// inside an entry of a list; with 0 plain.
EZPLATFORM_API char* ezDLNAProtocolInfo_GetPlaySpeedStr(const ezDLNAProtocolInfo* anInfo, int afEscape);
/// Takes all play speeds away: DLNA.ORG_PS is not written any more.
EZPLATFORM_API void ezDLNAProtocolInfo_RemovePlaySpeedSupport(ezDLNAProtocolInfo* anInfo);

/// Any other 4th-field parameter; for the five known names these do what the functions of their own do.
/// @{
EZPLATFORM_API void ezDLNAProtocolInfo_Set4thFieldValue(ezDLNAProtocolInfo* anInfo, const char* aName,
                                                        const char* aValue);
EZPLATFORM_API void ezDLNAProtocolInfo_Remove4thFieldByName(ezDLNAProtocolInfo* anInfo, const char* aName);
/// @}

/// Sets the version bit of DLNA.ORG_FLAGS for version 1.5 and later. The last argument is reserved and 0.
EZPLATFORM_API void ezDLNAProtocolInfo_SetDLNAVersion(ezDLNAProtocolInfo* anInfo, int aMajor, int aMinor,
                                                      int aReserved);
/// The first 32 flags; 0 when DLNA.ORG_FLAGS is not stated.
EZPLATFORM_API uint32 ezDLNAProtocolInfo_GetFlags(const ezDLNAProtocolInfo* anInfo);

/// The http-stalling flag, and byte and time seek (second and first digit of DLNA.ORG_OP). Setting to false
/// what is not stated writes nothing.
/// @{
EZPLATFORM_API bool ezDLNAProtocolInfo_GetHTTPStalling(const ezDLNAProtocolInfo* anInfo);
EZPLATFORM_API void ezDLNAProtocolInfo_SetHTTPStalling(ezDLNAProtocolInfo* anInfo, bool afStalling);
EZPLATFORM_API bool ezDLNAProtocolInfo_GetByteBasedSeek(const ezDLNAProtocolInfo* anInfo);
EZPLATFORM_API void ezDLNAProtocolInfo_SetByteBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek);
EZPLATFORM_API bool ezDLNAProtocolInfo_GetTimeBasedSeek(const ezDLNAProtocolInfo* anInfo);
EZPLATFORM_API void ezDLNAProtocolInfo_SetTimeBasedSeek(ezDLNAProtocolInfo* anInfo, bool afSeek);
/// @}

/// Unites anOther into anInfo: what anInfo lacks is taken, seeks, flags and play speeds of both are kept.
EZPLATFORM_API void ezDLNAProtocolInfo_Merge(ezDLNAProtocolInfo* anInfo, const ezDLNAProtocolInfo* anOther);
/// Adds the play speeds of a comma list that are not there yet.
EZPLATFORM_API void ezDLNAProtocolInfo_MergePlaySpeeds(ezDLNAProtocolInfo* anInfo, const char* aSpeeds);
/// Takes play speeds and seeks from an operator's table where it states them, and http-stalling where its
/// flags state more than the version. Every other flag stays.
EZPLATFORM_API void ezDLNAProtocolInfo_MergeWithMediaMapper(ezDLNAProtocolInfo* anInfo,
                                                            const ezDLNAProtocolInfo* aTableInfo);

/// Makes it the link-protected form (DTCP-IP): MIME type `application/x-dtcp1;CONTENTFORMAT="<type>"`, with
/// DTCP1HOST and DTCP1PORT where a host is given, profile prefix "DTCP_", and the link-protection flag where
/// flags are stated. Called again it changes nothing. The last argument is reserved and 1.
EZPLATFORM_API void ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfo* anInfo, const char* aHost,
                                                 unsigned aPort, int aReserved);

/// The value of a parameter in the text of a 4th field; null when it is absent.
EZPLATFORM_API char* ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(const char* a4thField, const char* aName);
