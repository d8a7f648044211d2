#pragma once

class Console;
class Host;
struct Arguments;

/// What the media types file says of extensions and MIME types.
int RunTypes(const Arguments& anArguments, Host& aHost, Console& aConsole);
