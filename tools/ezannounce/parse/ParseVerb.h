#pragma once

class Console;
class Host;
struct Arguments;

/// What each file, URL or standard input is, and how it is announced.
int RunParse(const Arguments& anArguments, Host& aHost, Console& aConsole);
