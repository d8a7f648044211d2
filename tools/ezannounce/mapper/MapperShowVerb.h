#pragma once

class Console;
class Host;
struct Arguments;

/// Which entry of the media mapper a file name finds.
int RunMapperShow(const Arguments& anArguments, Host& aHost, Console& aConsole);
