#include "CommandLine/ManualPage.hpp"

#include "CommandLine/Description.hpp"
#include "CommandLine/PlainText.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

namespace {

/// So that the formatter takes none of it for a request and changes no character.
std::string escaped(std::string_view text) {
    std::string result;
    for (const auto character : text) {
        switch (character) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '"':
                result += "\\(dq";
                break;
            case '`':
                result += "\\(ga";
                break;
            case '^':
                result += "\\(ha";
                break;
            case '~':
                result += "\\(ti";
                break;
            default:
                result += character;
        }
    }
    return result.starts_with('.') ? "\\&" + result : result;
}

/// Text to be filled, in lines as a page's source should have them.
std::string filled(std::string_view text) {
    constexpr std::size_t widest = 78;
    std::string result;
    std::size_t used = 0;
    while (!text.empty()) {
        const auto end = std::min(text.find(' '), text.size());
        const auto word = escaped(text.substr(0, end));
        const auto fits = used + 1 + word.size() <= widest;
        result.append(result.empty() ? "" : fits ? " " : "\n").append(word);
        used = fits ? used + 1 + word.size() : word.size();
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

/// The day of the source, where a packager says so, so that a build can be repeated; otherwise today.
std::string date() {
    const auto* const epoch = std::getenv("SOURCE_DATE_EPOCH");
    const std::time_t time = epoch != nullptr ? std::strtoll(epoch, nullptr, 10) : std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts);
    return text.data();
}

/// Writes a page; how text is set depends on what stood before it.
class Page {
public:
    void add(const std::string& macro) {
        endExample();
        text_ += macro + "\n";
        // A heading begins a paragraph by itself.
        isBroken_ = true;
    }

    void addParagraph(const std::string& text) {
        endExample();
        if (!isBroken_) {
            text_ += ".PP\n";
        }
        text_ += filled(text) + "\n";
        isBroken_ = false;
    }

    void addDefinition(const std::string& term, const std::string& text) {
        endExample();
        // Without a text the next term would be taken for it.
        text_ += ".TP\n" + term + "\n" + (text.empty() ? "\\&" : filled(text)) + "\n";
        isBroken_ = false;
    }

    void addLiteral(const std::string& line) {
        if (!isExample_) {
            text_ += isBroken_ ? ".EX\n" : ".PP\n.EX\n";
            isExample_ = true;
        }
        text_ += escaped(line) + "\n";
    }

    [[nodiscard]] std::string take() {
        endExample();
        return std::move(text_);
    }

private:
    void endExample() {
        if (isExample_) {
            text_ += ".EE\n";
            isExample_ = false;
            isBroken_ = false;
        }
    }

    std::string text_;
    bool isBroken_ = true;
    bool isExample_ = false;
};

std::string manualTermOf(const OptionDescription& option) {
    std::string term;
    for (const auto& name : option.names) {
        term += (term.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
    }
    return option.placeholder.empty() || !option.names.front().starts_with('-')
               ? term
               : term + " \\fI" + escaped(option.placeholder) + "\\fR";
}

void addOption(Page& page, const OptionDescription& option) {
    auto text = option.text;
    if (!option.variable.empty() && text.find(option.variable) == std::string::npos) {
        text += (text.empty() ? "(" : " (") + option.variable + ")";
    }
    page.addDefinition(manualTermOf(option), text);
}

void addNotes(Page& page, const std::string& notes, bool haveSections) {
    for (const auto& block : blocksOf(notes)) {
        switch (block.kind) {
            case Block::Kind::title:
                if (haveSections) {
                    page.add(".SH " + escaped(upperCase(block.text)));
                } else {
                    page.addParagraph(block.text + ":");
                }
                break;
            case Block::Kind::paragraph:
                page.addParagraph(block.text);
                break;
            case Block::Kind::literal:
                page.addLiteral(block.text);
                break;
            case Block::Kind::definition:
                page.addDefinition("\\fB" + escaped(block.term) + "\\fR", block.text);
                break;
        }
    }
}

void addCommands(Page& page, const CLI::App& app) {
    for (const auto* command : commandsOf(app)) {
        if (!commandsOf(*command).empty()) {
            addCommands(page, *command);
            continue;
        }
        page.add(".SS \"" + escaped(fullName(*command) + " " + synopsis(*command)) + "\"");
        page.addParagraph(command->get_description() + ".");
        for (const auto& argument : argumentsOf(*command)) {
            addOption(page, argument);
        }
        for (const auto& option : optionsOf(*command)) {
            if (option.names.back() != "--help") {
                addOption(page, option);
            }
        }
        addNotes(page, command->get_footer(), false);
    }
}

void addOptions(Page& page, const CLI::App& program) {
    const auto options = optionsOf(program);
    std::string group;
    for (const auto& option : options) {
        if (option.group != group) {
            page.add(group.empty() ? ".SH OPTIONS" : ".SS \"" + escaped(option.group) + "\"");
            group = option.group;
        }
        addOption(page, option);
    }
}

}  // namespace

std::string manualPage(const CLI::App& program, const Manual& manual) {
    const auto name = escaped(program.get_name());
    auto purpose = program.get_description();
    purpose.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(purpose.front())));
    Page page;
    page.add(".TH " + upperCase(name) + " 1 " + date() + " \"" + name + " " + escaped(manual.version) +
             "\" \"User commands\"");
    page.add(".SH NAME");
    page.add(name + " \\- " + escaped(purpose));
    page.add(".SH SYNOPSIS");
    page.add("\\fB" + name + "\\fR " + escaped(synopsis(program)));
    page.add(".SH DESCRIPTION");
    addNotes(page, manual.description, true);
    if (!commandsOf(program).empty()) {
        page.add(".SH COMMANDS");
        addCommands(page, program);
    }
    addOptions(page, program);
    addNotes(page, program.get_footer(), true);
    addNotes(page, manual.notes, true);
    return page.take();
}

}  // namespace CommandLine
