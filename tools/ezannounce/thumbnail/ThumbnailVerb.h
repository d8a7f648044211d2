#pragma once

class Console;
class Host;
struct Arguments;

/// The thumbnail of one file, into another.
int RunThumbnail(const Arguments& anArguments, Host& aHost, Console& aConsole);
