#include "CommandLine/Help.hpp"

#include "CommandLine/Description.hpp"
#include "CommandLine/PlainText.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

constexpr std::size_t indentation = 2;
constexpr std::size_t gap = 2;

/// Lays out titles, and terms with their texts beside them, or below them where there is little room.
class Layout {
public:
    explicit Layout(std::size_t width) : width_{width} {}

    void addLineBreak() { text_ += "\n"; }

    void addTitle(const std::string& title) { text_ += "\n" + title + ":\n"; }

    void addLiteral(const std::string& line) { text_ += std::string(indentation, ' ') + line + "\n"; }

    void addParagraph(std::string_view words, std::size_t indent) {
        text_.append(indent, ' ');
        addWrapped(words, indent);
    }

    /// `termWidth`: how much room the terms of the same list take.
    void addDefinition(const std::string& term, std::string_view words, std::size_t termWidth = termColumn) {
        const auto column = width_ < narrow ? 2 * indentation : std::min(indentation + termWidth + gap, termColumn);
        text_ += std::string(indentation, ' ') + term;
        auto used = indentation + term.size();
        if (words.empty()) {
            text_ += "\n";
            return;
        }
        if (used + gap > column) {
            text_ += "\n";
            used = 0;
        }
        text_.append(column - used, ' ');
        addWrapped(words, column);
    }

    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    static constexpr std::size_t narrow = 64;
    static constexpr std::size_t termColumn = 28;

    /// Goes on in a line of `indent` columns.
    void addWrapped(std::string_view words, std::size_t indent) {
        auto used = indent;
        while (!words.empty()) {
            const auto end = std::min(words.find(' '), words.size());
            if (used > indent) {
                const auto fits = used + 1 + end <= width_;
                text_ += fits ? " " : "\n" + std::string(indent, ' ');
                used = fits ? used + 1 : indent;
            }
            text_ += words.substr(0, end);
            used += end;
            words.remove_prefix(std::min(end + 1, words.size()));
        }
        text_ += "\n";
    }

    std::string text_;
    std::size_t width_;
};

std::string helpTermOf(const OptionDescription& option) {
    auto term = CLI::detail::join(option.names, ", ");
    return option.placeholder.empty() || !option.names.front().starts_with('-') ? term
                                                                                : term + " " + option.placeholder;
}

void addOptions(Layout& layout, const std::vector<OptionDescription>& options) {
    std::vector<std::string> groups;
    for (const auto& option : options) {
        if (std::find(groups.begin(), groups.end(), option.group) == groups.end()) {
            groups.push_back(option.group);
        }
    }
    for (const auto& group : groups) {
        layout.addTitle(group);
        for (const auto& option : options) {
            if (option.group == group) {
                layout.addDefinition(helpTermOf(option), option.text);
            }
        }
    }
}

void addNotes(Layout& layout, const std::string& notes) {
    const auto blocks = blocksOf(notes);
    std::size_t termWidth = 0;
    for (const auto& block : blocks) {
        termWidth = std::max(termWidth, block.term.size());
    }
    for (const auto& block : blocks) {
        switch (block.kind) {
            case Block::Kind::title:
                layout.addTitle(block.text);
                break;
            case Block::Kind::paragraph:
                layout.addParagraph(block.text, indentation);
                break;
            case Block::Kind::literal:
                layout.addLiteral(block.text);
                break;
            case Block::Kind::definition:
                layout.addDefinition(block.term, block.text, termWidth);
                break;
        }
    }
}

}  // namespace

std::string helpText(const CLI::App& app, std::size_t width) {
    Layout layout{width};
    layout.addParagraph(app.get_description(), 0);
    layout.addLineBreak();
    layout.addParagraph("Usage: " + fullName(app) + " " + synopsis(app), 0);
    if (const auto commands = commandsOf(app); !commands.empty()) {
        layout.addTitle("Commands");
        for (const auto* command : commands) {
            layout.addDefinition(command->get_name(), command->get_description());
        }
    }
    if (const auto arguments = argumentsOf(app); !arguments.empty()) {
        layout.addTitle("Arguments");
        for (const auto& argument : arguments) {
            layout.addDefinition(helpTermOf(argument), argument.text);
        }
    }
    addOptions(layout, optionsOf(app));
    addNotes(layout, app.get_footer());
    if (const auto name = fullName(app); app.get_parent() != nullptr) {
        layout.addLineBreak();
        layout.addParagraph("Settings and exit statuses: " + name.substr(0, name.find(' ')) + " --help", 0);
    }
    return layout.take();
}

}  // namespace CommandLine
