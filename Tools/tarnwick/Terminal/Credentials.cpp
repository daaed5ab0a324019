#include "Terminal/Credentials.hpp"

#include "Failures/Failure.hpp"
#include "Terminal/Terminal.hpp"

#include <cstdlib>
#include <iostream>

namespace TarnwickClient {

namespace {

std::string firstLineOfStandardInput() {
    std::string line;
    std::getline(std::cin, line);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

std::string askForPassword(const PasswordSource& source) {
    if (!isTerminal(0)) {
        throw Failure::usage(std::string{"No password: set "} + source.variable +
                             ", use --password-stdin, or run the command on a terminal.");
    }
    auto password = promptOnTerminal(source.question, true);
    if (source.isNew && promptOnTerminal("Again: ", true) != password) {
        throw Failure::usage("The two passwords differ.");
    }
    return password;
}

}  // namespace

std::string readPassword(const PasswordSource& source) {
    std::string password;
    if (source.fromStandardInput) {
        password = firstLineOfStandardInput();
    } else if (const auto* value = std::getenv(source.variable); value != nullptr) {
        password = value;
    } else {
        password = askForPassword(source);
    }
    if (password.empty()) {
        throw Failure::usage("The password is empty.");
    }
    return password;
}

std::string readUsername(const std::string& given) {
    if (!given.empty()) {
        return given;
    }
    if (!isTerminal(0)) {
        throw Failure::usage("No user name: give it as an argument or set TARNWICK_USERNAME.");
    }
    auto username = promptOnTerminal("User name: ", false);
    if (username.empty()) {
        throw Failure::usage("The user name is empty.");
    }
    return username;
}

}  // namespace TarnwickClient
