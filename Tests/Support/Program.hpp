#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// A program that runs beside the test, and dies with it or with this object. What it says of errors is dropped.
class Program {
public:
    /// Gives it `input` to read. One that can't be found ends with status 127.
    explicit Program(const std::vector<std::string>& command, const std::string& input = {});
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    [[nodiscard]] pid_t id() const { return id_; }
    /// One line of its output, waited for; what there is when it closes it.
    [[nodiscard]] std::string readLine() const;
    [[nodiscard]] std::string readAll() const;
    [[nodiscard]] bool hasEnded() const;
    /// The status that the system gives for its end.
    int wait();

private:
    pid_t id_ = -1;
    int output_ = -1;
};

/// Runs a program to its end and gives what it wrote. Throws when it fails.
std::string outputOf(const std::vector<std::string>& command, const std::string& input = {});
