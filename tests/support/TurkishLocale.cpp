#include "support/TurkishLocale.h"

#include "support/TemporaryFolder.h"

#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <stdexcept>

namespace {

constexpr const char* kName = "tr_TR.UTF-8";
/// A locale is read as it lies in its files, and these tests may be for another machine than localedef is.
constexpr const char* kByteOrder =
    __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? "--big-endian" : "--little-endian";

/// The folder that holds the generated locale, kept until the process ends.
const std::string& GeneratedFolder() {
    static const TemporaryFolder folder;
    static const bool generated = [] {
        const std::string command = "LOCPATH='" + folder.GetPath() + "' localedef " + kByteOrder +
                                    " -i tr_TR -f UTF-8 '" + folder.Path(kName) + "' >/dev/null 2>&1";
        return std::system(command.c_str()) == 0;
    }();
    if (!generated) {
        throw std::runtime_error("localedef cannot make the Turkish locale");
    }
    return folder.GetPath();
}

} // namespace

TurkishLocale::TurkishLocale() : mBefore(std::setlocale(LC_ALL, nullptr)) {
    setenv("LOCPATH", GeneratedFolder().c_str(), 1);
    const bool set = std::setlocale(LC_ALL, kName) != nullptr;
    unsetenv("LOCPATH");
    if (!set || std::towlower(L'I') != 0x131) {
        std::setlocale(LC_ALL, mBefore.c_str());
        throw std::runtime_error("the Turkish locale does not take");
    }
}

TurkishLocale::~TurkishLocale() {
    std::setlocale(LC_ALL, mBefore.c_str());
}
