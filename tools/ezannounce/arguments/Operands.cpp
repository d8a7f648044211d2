#include "arguments/Operands.h"

#include "ezPlatform/text/CString.h"

bool IsLive(const std::string& anOperand) {
    return anOperand == kStandardInput || ezStartsWithNoCase(anOperand, "http://") ||
           ezStartsWithNoCase(anOperand, "https://");
}
