#include "CommandLine/Completion.hpp"

#include "CommandLine/Description.hpp"
#include "CommandLine/Help.hpp"

#include <algorithm>
#include <string_view>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// What the words before the one to complete have led to.
class Position {
public:
    explicit Position(const CLI::App& program) : command_{&program} {}

    void advance(const std::string& word) {
        if (awaiting_) {
            awaiting_.reset();
        } else if (word == "--" && !onlyArguments_) {
            onlyArguments_ = true;
        } else if (word.starts_with('-') && !onlyArguments_) {
            const auto option = optionNamed(word.substr(0, word.find('=')));
            if (option && !option->placeholder.empty() && word.find('=') == std::string::npos) {
                awaiting_ = option;
            }
        } else {
            enter(word);
        }
    }

    /// The option whose value comes next, if any.
    [[nodiscard]] const std::optional<OptionDescription>& awaiting() const { return awaiting_; }
    [[nodiscard]] bool onlyArguments() const { return onlyArguments_; }
    [[nodiscard]] const CLI::App& command() const { return *command_; }

    /// The argument that comes next, if any.
    [[nodiscard]] std::optional<OptionDescription> argument() const {
        const auto arguments = argumentsOf(*command_);
        if (argumentCount_ < arguments.size()) {
            return arguments[argumentCount_];
        }
        return !arguments.empty() && arguments.back().isRepeatable ? std::optional{arguments.back()} : std::nullopt;
    }

    /// The command's own options before those of the commands that it is part of.
    [[nodiscard]] std::vector<OptionDescription> options() const {
        std::vector<OptionDescription> all;
        for (const auto* app = command_; app != nullptr; app = app->get_parent()) {
            for (auto& option : optionsOf(*app)) {
                const auto isSame = [&](const auto& other) { return other.names == option.names; };
                if (std::none_of(all.begin(), all.end(), isSame)) {
                    all.push_back(std::move(option));
                }
            }
        }
        return all;
    }

    [[nodiscard]] std::optional<OptionDescription> optionNamed(const std::string& name) const {
        for (auto& option : options()) {
            if (std::find(option.names.begin(), option.names.end(), name) != option.names.end()) {
                return std::move(option);
            }
        }
        return std::nullopt;
    }

private:
    void enter(const std::string& word) {
        if (const auto* command = commandNamed(*command_, word)) {
            command_ = command;
            argumentCount_ = 0;
        } else {
            ++argumentCount_;
        }
    }

    const CLI::App* command_;
    std::optional<OptionDescription> awaiting_;
    std::size_t argumentCount_ = 0;
    bool onlyArguments_ = false;
};

/// The candidates that begin with what has been typed.
class Candidates {
public:
    explicit Candidates(std::string typed) : typed_{std::move(typed)} {}

    void add(const std::string& word, const std::string& text) {
        if (word.starts_with(typed_)) {
            lines_ += word + "\t" + text + "\n";
        }
    }
    void ask(std::string_view shell) { lines_.append(":").append(shell).append("\n"); }

    [[nodiscard]] std::string take() { return std::move(lines_); }

private:
    std::string typed_;
    std::string lines_;
};

void addValues(Candidates& candidates, const OptionDescription& option, const std::string& prefix,
               const WordSources& sources) {
    for (const auto& word : option.words) {
        candidates.add(prefix + word, {});
    }
    const auto& placeholder = option.placeholder.empty() ? option.names.front() : option.placeholder;
    if (const auto source = sources.find(placeholder); source != sources.end()) {
        for (const auto& [word, text] : source->second()) {
            candidates.add(prefix + word, text);
        }
    }
    if (placeholder == "FILE") {
        candidates.ask("files");
    } else if (placeholder == "DIR") {
        candidates.ask("folders");
    }
}

void addOptionNames(Candidates& candidates, const Position& position) {
    for (const auto& option : position.options()) {
        for (const auto& name : option.names) {
            if (name.starts_with("--")) {
                candidates.add(name, option.text);
            }
        }
    }
}

}  // namespace

std::optional<std::vector<std::string>> wordsToComplete(int argumentCount, const char* const* arguments) {
    if (argumentCount < 2 || std::string_view{arguments[1]} != "--complete") {
        return std::nullopt;
    }
    return std::vector<std::string>{arguments + 2, arguments + argumentCount};
}

std::string completions(const CLI::App& app, const std::vector<std::string>& words, const WordSources& sources) {
    if (words.empty()) {
        return {};
    }
    if (words.size() > 1 && words.front() == helpCommand && commandNamed(app, helpCommand) != nullptr) {
        return completions(app, {words.begin() + 1, words.end()}, sources);
    }
    Position position{app};
    std::for_each(words.begin(), words.end() - 1, [&](const auto& word) { position.advance(word); });
    const auto& typed = words.back();
    Candidates candidates{typed};
    if (const auto& option = position.awaiting()) {
        addValues(candidates, *option, {}, sources);
        return candidates.take();
    }
    if (typed.starts_with('-') && !position.onlyArguments()) {
        const auto equals = typed.find('=');
        if (equals == std::string::npos) {
            addOptionNames(candidates, position);
        } else if (const auto option = position.optionNamed(typed.substr(0, equals))) {
            addValues(candidates, *option, typed.substr(0, equals + 1), sources);
        }
        return candidates.take();
    }
    for (const auto* command : commandsOf(position.command())) {
        candidates.add(command->get_name(), command->get_description());
    }
    if (const auto argument = position.argument()) {
        addValues(candidates, *argument, {}, sources);
    }
    return candidates.take();
}

}  // namespace CommandLine
