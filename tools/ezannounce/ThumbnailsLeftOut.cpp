#include "arguments/Arguments.h"
#include "contact-sheet/ContactSheetVerb.h"
#include "output/Console.h"
#include "thumbnail/ThumbnailVerb.h"

namespace {

int SayLeftOut(const char* aVerb, Console& aConsole) {
    aConsole.Error(aVerb, "left out of this build, which was made without libjpeg-turbo or libpng");
    return kExitSomeFailed;
}

} // namespace

int RunThumbnail(const Arguments& /*anArguments*/, Host& /*aHost*/, Console& aConsole) {
    return SayLeftOut("thumbnail", aConsole);
}

int RunContactSheet(const Arguments& /*anArguments*/, Host& /*aHost*/, Console& aConsole) {
    return SayLeftOut("contact-sheet", aConsole);
}
