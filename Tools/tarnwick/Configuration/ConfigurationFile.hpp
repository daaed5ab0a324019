#pragma once

#include <cstddef>
#include <istream>
#include <map>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

/// Reads the options of an application from a TOML file. The parser takes an option from the file first and then no
/// more from the environment, so what the environment names is left out here, as is what the command line names.
///
/// What is wrong with the file is kept until it is asked for: help, and the words about an unknown command, come first.
class ConfigurationFile final : public CLI::ConfigBase {
public:
    /// `app` must outlive this.
    explicit ConfigurationFile(const CLI::App& app) : app_{app} {}

    [[nodiscard]] std::vector<CLI::ConfigItem> from_config(std::istream& input) const override;

    /// What can't be read in the file, behind its name and line; empty when all can.
    [[nodiscard]] const std::string& mistake() const noexcept { return mistake_; }

    /// `message`, which tells of an option, with file and line instead of the dashes when the file has set the option.
    [[nodiscard]] std::string located(const std::string& message) const;

private:
    [[nodiscard]] std::string place(std::size_t line) const;

    const CLI::App& app_;
    // The parser's interface lets a file be read by a constant object only.
    mutable std::string path_;
    mutable std::map<std::string, std::size_t> lines_;
    mutable std::string mistake_;
};

}  // namespace TarnwickClient
