#pragma once

#include <string>

namespace TarnwickClient {

/// Where a password may come from besides the terminal. The command line is no place: other users can read it.
struct PasswordSource {
    /// The environment variable that may hold it.
    const char* variable = "TARNWICK_PASSWORD";
    /// The first line of standard input instead.
    bool fromStandardInput = false;
    /// What the terminal shows.
    std::string question = "Password: ";
    /// Ask twice, for passwords that are new.
    bool isNew = false;
};

/// Throws `Failure` when there is no password to be had or it is empty.
[[nodiscard]] std::string readPassword(const PasswordSource& source);

/// `given`, or what the user answers on the terminal.
[[nodiscard]] std::string readUsername(const std::string& given);

}  // namespace TarnwickClient
