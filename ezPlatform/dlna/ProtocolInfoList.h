#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/dlna/ProtocolInfo.h"

/// A list of protocolInfos that it owns. A null list is empty and takes nothing.
struct ezDLNAProtocolInfoList;

/// Parses a profile-info text: entries separated by "," (inside an entry it is written "\,"), each a MIME
/// type, ":" and a 4th field; empty entries are dropped. The last argument is reserved and 0. Never null;
/// given back with ezDLNAProtocolInfoList_Delete.
EZPLATFORM_API ezDLNAProtocolInfoList* ezDLNAProtocolInfoList_NewFromProfileInfo(const char* aText,
                                                                                 int aReserved);
/// Frees the list and the protocolInfos in it. Null is ignored.
EZPLATFORM_API void ezDLNAProtocolInfoList_Delete(ezDLNAProtocolInfoList* aList);
/// The number of entries; 0 of a null list.
EZPLATFORM_API std::size_t ezDLNAProtocolInfoList_GetCount(const ezDLNAProtocolInfoList* aList);
/// Borrowed from the list until it is removed; null past the end.
EZPLATFORM_API ezDLNAProtocolInfo*
ezDLNAProtocolInfoList_GetProtocolInfoAt(const ezDLNAProtocolInfoList* aList, std::size_t anIndex);
/// Takes an entry out and deletes it.
EZPLATFORM_API void ezDLNAProtocolInfoList_Remove(ezDLNAProtocolInfoList* aList, std::size_t anIndex);
/// The list as a profile-info text with the whole 4th field of each entry. Freed by the caller with ezFree.
EZPLATFORM_API char* ezDLNAProtocolInfoList_GetMimeTypePNStr(const ezDLNAProtocolInfoList* aList);
/// The same text under its other name.
EZPLATFORM_API char* ezDLNAProtocolInfoList_GetMimeTypeProfileStr(const ezDLNAProtocolInfoList* aList);
