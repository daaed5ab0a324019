#include "Configuration/ConfigurationFile.hpp"

#include "CommandLine/NearestWord.hpp"

#include <array>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string_view>

#include <toml++/toml.h>

namespace TarnwickClient {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// What can't be read, and where.
struct Mistake {
    std::size_t line;
    std::string text;
};

bool isGivenElsewhere(const CLI::Option& option) {
    const auto* value = option.get_envname().empty() ? nullptr : std::getenv(option.get_envname().c_str());
    return option.count() > 0 || (value != nullptr && *value != '\0');
}

/// Where the character begins that is the `column`th of the text, counted from 1.
std::size_t placeOf(toml::source_index column, std::string_view text) {
    std::size_t place = 0;
    for (; place < text.size(); ++place) {
        const bool isContinuation = (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U;
        if (!isContinuation && --column == 0) {
            break;
        }
    }
    return place;
}

/// The text at a place without line breaks.
std::string_view sourceText(std::string_view file, const toml::source_region& region) {
    for (auto line = region.begin.line; line > 1; --line) {
        file.remove_prefix(file.find('\n') + 1);
    }
    const auto begin = placeOf(region.begin.column, file);
    return file.substr(begin, placeOf(region.end.column, file) - begin);
}

std::string shortest(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

/// A value as it would stand on the command line. A number that is meant as a text stays as it is written.
std::string valueText(const toml::node& node, bool isText, std::string_view file) {
    if (const auto* text = node.as_string()) {
        return text->get();
    }
    const auto* integer = node.as_integer();
    if (integer != nullptr && !isText) {
        return std::to_string(integer->get());
    }
    const auto* number = node.as_floating_point();
    if (number != nullptr && !isText) {
        return shortest(number->get());
    }
    if (!node.is_value()) {
        throw Mistake{node.source().begin.line, "a list of lists or tables is no setting"};
    }
    return std::string{sourceText(file, node.source())};
}

std::vector<std::string> valueTexts(const toml::node& node, bool isText, std::string_view file) {
    std::vector<std::string> texts;
    if (const auto* list = node.as_array()) {
        for (const auto& each : *list) {
            texts.push_back(valueText(each, isText && each.is_string(), file));
        }
    } else {
        texts.push_back(valueText(node, isText, file));
    }
    return texts;
}

const CLI::Option* settingNamed(const CLI::App& app, const std::string& name) {
    const auto* option = app.get_option_no_throw((name.size() == 1 ? "-" : "--") + name);
    return option != nullptr && option->get_configurable() ? option : nullptr;
}

std::vector<std::string> settingNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const auto* option : app.get_options([](const CLI::Option* each) { return each->get_configurable(); })) {
        names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
    }
    return names;
}

}  // namespace

std::vector<CLI::ConfigItem> ConfigurationFile::from_config(std::istream& input) const {
    path_ = app_.get_config_ptr()->as<std::string>();
    std::string file{std::istreambuf_iterator<char>{input}, {}};
    if (file.starts_with(byteOrderMark)) {
        file.erase(0, byteOrderMark.size());
    }
    std::vector<CLI::ConfigItem> items;
    try {
        for (const auto& [key, node] : toml::parse(file)) {
            const std::string name{key.str()};
            const std::size_t line = key.source().begin.line;
            if (node.is_table() || node.is_array_of_tables()) {
                throw Mistake{line, "there are no sections here: [" + name + "]"};
            }
            const auto* option = settingNamed(app_, name);
            if (option == nullptr) {
                throw Mistake{line, "unknown setting " + name + CommandLine::suggestion(name, settingNames(app_))};
            }
            auto texts = valueTexts(node, option->get_type_name() == "TEXT", file);
            if (!texts.empty() && !isGivenElsewhere(*option)) {
                lines_.emplace(name, line);
                auto& item = items.emplace_back();
                item.name = name;
                item.inputs = std::move(texts);
            }
        }
    } catch (const toml::parse_error& error) {
        mistake_ = place(error.source().begin.line) + std::string{error.description()} +
                   " (this is TOML: texts stand in quotes, and each setting once)";
    } catch (const Mistake& mistake) {
        mistake_ = place(mistake.line) + mistake.text;
    }
    return mistake_.empty() ? items : std::vector<CLI::ConfigItem>{};
}

std::string ConfigurationFile::located(const std::string& message) const {
    const auto end = message.find(':');
    if (!message.starts_with("--") || end == std::string::npos) {
        return message;
    }
    const auto found = lines_.find(message.substr(2, end - 2));
    return found == lines_.end() ? message : place(found->second) + message.substr(2);
}

std::string ConfigurationFile::place(std::size_t line) const {
    return path_ + ":" + std::to_string(line) + ": ";
}

}  // namespace TarnwickClient
