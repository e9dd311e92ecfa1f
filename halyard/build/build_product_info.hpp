#pragma once

#include <chrono>
#include <string>

namespace halyard {

/// Shows path, date and size of the app that findBuiltApp() finds; nothing without one.
void printBuildProductInfo();

/// Date and time in the short styles of a locale ("de_DE") and a time zone ("Europe/Berlin"); empty: the user's.
std::string shortDateAndTime(std::chrono::system_clock::time_point time, const std::string& locale = {},
                             const std::string& timeZone = {});

}  // namespace halyard
