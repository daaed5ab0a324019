#include "Configuration/ConfigurationFile.hpp"

#include <cstdlib>
#include <set>
#include <sstream>
#include <string_view>

namespace TarnwickClient {

namespace {

/// The line up to a '#' outside quotes. The library's own reader would cut a quoted secret at its '#'.
std::string_view withoutComment(std::string_view line) {
    char quote = '\0';
    for (std::size_t position = 0; position < line.size(); ++position) {
        const auto character = line[position];
        if (quote != '\0') {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '#') {
            return line.substr(0, position);
        }
    }
    return line;
}

bool isGivenByEnvironment(const CLI::Option* option) {
    if (option == nullptr || option->get_envname().empty()) {
        return false;
    }
    const auto* value = std::getenv(option->get_envname().c_str());
    return value != nullptr && *value != '\0';
}

}  // namespace

ConfigurationFile::ConfigurationFile(const CLI::App& app) : app_{app} {
    comment('\0');
}

std::vector<CLI::ConfigItem> ConfigurationFile::from_config(std::istream& input) const {
    std::stringstream uncommented;
    for (std::string line; std::getline(input, line);) {
        uncommented << withoutComment(line) << '\n';
    }
    auto items = CLI::ConfigBase::from_config(uncommented);
    std::set<std::string> names;
    for (const auto& item : items) {
        if (!item.parents.empty()) {
            throw CLI::ConfigError("sections are not known here: [" + item.parents.front() + "]");
        }
        if (!names.insert(item.name).second) {
            throw CLI::ConfigError("set twice in the configuration file: " + item.name);
        }
    }
    std::erase_if(items, [this](const CLI::ConfigItem& item) {
        return isGivenByEnvironment(app_.get_option_no_throw("--" + item.name));
    });
    return items;
}

}  // namespace TarnwickClient
