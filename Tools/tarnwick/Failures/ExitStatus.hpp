#pragma once

namespace TarnwickClient {

/// What the program tells the shell; scripts rely on these numbers.
enum class ExitStatus : int {
    ok = 0,
    refused = 1,
    usage = 2,
    notReachable = 3,
    notSignedIn = 4,
    noAnswer = 5,
    local = 6,
};

inline constexpr const char* exitStatusHelp =
    "Exit status:\n"
    "  0    done\n"
    "  1    the service refused the request or reported an error\n"
    "  2    wrong use: a command, an option or a setting\n"
    "  3    the service can't be reached\n"
    "  4    not signed in, or the name or password was refused\n"
    "  5    the service gave no usable answer, or none in time\n"
    "  6    something on this computer failed: a file, the keychain, the output\n"
    "  130  interrupted (Ctrl-C)\n"
    "  141  whoever read the output has stopped reading\n";

}  // namespace TarnwickClient
