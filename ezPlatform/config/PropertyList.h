#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"

/// Named settings that a host hands down. Names are exact. A null list has no property and takes none.
/// Not locked: set the properties before other threads read them.
struct ezPropertyList;

/// Given back with ezPropertyList_Delete.
EZPLATFORM_API ezPropertyList* ezPropertyList_New();
/// Frees the list and with it every text that it handed out. Null is ignored.
EZPLATFORM_API void ezPropertyList_Delete(ezPropertyList* aList);

/// Sets a number, in place of whatever the property was; as a text it reads in decimal. A null name sets
/// nothing.
EZPLATFORM_API void ezPropertyList_Set_uint32(ezPropertyList* aList, const char* aName, uint32 aValue);
/// Copies the text; a null text takes the property away.
EZPLATFORM_API void ezPropertyList_Set_charPtr(ezPropertyList* aList, const char* aName, const char* aValue);

/// The number; a text that is a whole decimal number reads as that; 0 when absent or anything else.
EZPLATFORM_API uint32 ezPropertyList_Get_uint32(const ezPropertyList* aList, const char* aName);
/// The text, valid until the property is set again; a number as decimal text; null when absent.
EZPLATFORM_API const char* ezPropertyList_Get_charPtr(const ezPropertyList* aList, const char* aName);
