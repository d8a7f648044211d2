#pragma once

class Console;
class Host;
struct Arguments;

/// The protocolInfo list that a server with this configuration advertises.
int RunCapabilities(const Arguments& anArguments, Host& aHost, Console& aConsole);
