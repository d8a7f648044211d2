#pragma once

class Console;
class Host;
struct Arguments;

/// The thumbnails of what lies in a folder, on one page.
int RunContactSheet(const Arguments& anArguments, Host& aHost, Console& aConsole);
