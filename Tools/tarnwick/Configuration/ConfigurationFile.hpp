#pragma once

#include <istream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

/// Reads `name = value` lines for the options of an application. The parser takes an option from the file first and
/// then no more from the environment, so what the environment names is left out here.
class ConfigurationFile final : public CLI::ConfigBase {
public:
    /// `app` must outlive this.
    explicit ConfigurationFile(const CLI::App& app);

    [[nodiscard]] std::vector<CLI::ConfigItem> from_config(std::istream& input) const override;

private:
    const CLI::App& app_;
};

}  // namespace TarnwickClient
