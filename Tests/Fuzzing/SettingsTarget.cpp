// The client's configuration file: it is read, or its mistake told; what is read is read again when it is written as
// plain texts.

#include "Configuration/ConfigurationFile.hpp"
#include "Configuration/Settings.hpp"

#include "FuzzTarget.hpp"

#include <sstream>

#include <nlohmann/json.hpp>

/// The settings as a file in which each is a list of texts; none for a file with a mistake.
std::optional<std::string> reread(const std::string& text) {
    CLI::App app;
    TarnwickClient::Settings settings;
    const auto file = TarnwickClient::addSettings(app, settings);
    std::istringstream stream{text};
    std::string plain;
    for (const auto& item : file->from_config(stream)) {
        require(app.get_option_no_throw("--" + item.name) != nullptr, "what is set is a setting");
        plain += item.name + " = " + nlohmann::json(item.inputs).dump() + "\n";
    }
    require(file->mistake().empty() || plain.empty(), "a file with a mistake sets nothing");
    return file->mistake().empty() ? std::optional{plain} : std::nullopt;
}

void fuzz(FuzzInput input) {
    const auto plain = reread(input.rest());
    // A DEL would need an escape that the writer doesn't know.
    require(!plain || plain->find('\x7F') != std::string::npos || reread(*plain) == plain,
            "what is read is read again");
}
