#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/dlna/DLNAField.h"

#include <cstddef>

/// A protocolInfo: protocol, network, MIME type and the DLNA 4th field, an ezDLNAField (DLNA guidelines
/// 7.4.1.3). What that says of reading, writing and play speeds holds here.
///
/// In a list of protocolInfos a comma inside an entry is written "\,". Texts that a function returns as char*
/// are the caller's, freed with ezFree (ezCString::FromAllocatedString); null objects give null texts, false
/// and 0 and take nothing. Not locked.
struct ezDLNAProtocolInfo;

/// Parses "protocol:network:MIME type:4th field": it is split at the first three colons outside quotes, and
/// parts that are missing are "*". Null or empty text gives "http-get:*:*:*". aLength is in bytes, 0 for the
/// whole C string; a NUL ends the text before it. The last argument is reserved and 0. Never null; given back
/// with ezDLNAProtocolInfo_Delete.
EZPLATFORM_API ezDLNAProtocolInfo* ezDLNAProtocolInfo_New(const char* aText, std::size_t aLength,
                                                          int aReserved);
/// Of a MIME type and a 4th field, over HTTP from anywhere: "http-get:*:". Null or "" is the type "*". Never
/// null; given back with ezDLNAProtocolInfo_Delete.
EZPLATFORM_API ezDLNAProtocolInfo* ezDLNAProtocolInfo_NewOf(const char* aMimeType, ezDLNAField aField);
/// Frees the object and with it every text that it handed out. Null is ignored.
EZPLATFORM_API void ezDLNAProtocolInfo_Delete(ezDLNAProtocolInfo* anInfo);

/// The whole protocolInfo.
EZPLATFORM_API char* ezDLNAProtocolInfo_GetStr(const ezDLNAProtocolInfo* anInfo);
/// Its 4th field alone: what follows the third colon outside quotes; "*" when it is empty.
EZPLATFORM_API char* ezDLNAProtocolInfo_Get4thFieldStr(const ezDLNAProtocolInfo* anInfo);
/// The 4th field itself, borrowed as long as the object lives, to read or to change; null of a null object.
/// @{
EZPLATFORM_API const ezDLNAField* ezDLNAProtocolInfo_GetField(const ezDLNAProtocolInfo* anInfo);
EZPLATFORM_API ezDLNAField* ezDLNAProtocolInfo_GetField(ezDLNAProtocolInfo* anInfo);
/// @}
/// The MIME type, valid until the object changes.
EZPLATFORM_API const char* ezDLNAProtocolInfo_GetMimeType(const ezDLNAProtocolInfo* anInfo);
/// Null or "" sets "*".
EZPLATFORM_API void ezDLNAProtocolInfo_SetMimeType(ezDLNAProtocolInfo* anInfo, const char* aMimeType);
/// The profile name, valid until the object changes; "" when there is none.
EZPLATFORM_API const char* ezDLNAProtocolInfo_GetProfile(const ezDLNAProtocolInfo* anInfo);
/// Null or "" takes DLNA.ORG_PN away.
EZPLATFORM_API void ezDLNAProtocolInfo_SetProfile(ezDLNAProtocolInfo* anInfo, const char* aProfile);

/// Sets the play speeds from a comma list, in its order; what is not a speed is dropped. The last argument is
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
