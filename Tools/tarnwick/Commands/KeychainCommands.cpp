#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include "Commands/Command.hpp"
#include "Configuration/Settings.hpp"
#include "Failures/Failure.hpp"
#include "Keychain/KeptItem.hpp"
#include "Output/Table.hpp"
#include "Terminal/WaitingLine.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

using Tarnwick_API::Keychain;
using Tarnwick_API::Platform::KeychainStatus;

namespace {

const char* word(KeychainStatus status) {
    switch (status) {
        case KeychainStatus::success:
            return "ready";
        case KeychainStatus::interactionNotAllowed:
            return "locked";
        default:
            return "unavailable";
    }
}

const char* word(KeptItem::Kind kind) {
    switch (kind) {
        case KeptItem::Kind::none:
            return "none";
        case KeptItem::Kind::token:
            return "token";
        case KeptItem::Kind::placeholder:
            return "placeholder";
    }
    return "none";
}

std::string sentenceAbout(const KeptItem& item) {
    if (item.status != KeychainStatus::success) {
        return "unknown";
    }
    switch (item.kind) {
        case KeptItem::Kind::none:
            return "none";
        case KeptItem::Kind::token:
            return "an access token";
        case KeptItem::Kind::placeholder:
            return "signed out; nothing secret";
    }
    return "none";
}

ExitStatus exitStatus(const KeptItem& item) {
    if (item.status != KeychainStatus::success) {
        return ExitStatus::local;
    }
    return item.kind == KeptItem::Kind::token ? ExitStatus::ok : ExitStatus::notSignedIn;
}

Result showStatus(const Settings& settings) {
    const auto state = Keychain::store()->state();
    auto item = keptItem(settings.keychainService);
    if (state.status != KeychainStatus::success && !state.isReadOnly) {
        item = {.status = state.status};
    }
    const auto isKnown = item.status == KeychainStatus::success;
    const auto status = state.status == KeychainStatus::success ? item.status : state.status;
    const auto words = Keychain::store()->message(status).value_or("");
    const auto* const inOneWord = state.isReadOnly ? "read-only" : word(item.status);
    const auto yesOrNo = [](bool value) { return value ? "yes" : "no"; };

    Json json{{"keychain", state.name},
              {"location", state.location.empty() ? Json(nullptr) : Json(state.location)},
              {"status", inOneWord},
              {"statusCode", static_cast<std::int32_t>(status)},
              {"service", settings.keychainService}};
    Table table{{{""}, {""}}};
    table.addRow({"Keychain", state.name});
    if (!state.location.empty()) {
        table.addRow({"Location", state.location});
    }
    table.addRow({"Status", status == KeychainStatus::success ? inOneWord : inOneWord + (": " + words)});
    if (!state.damagedFile.empty()) {
        json["damagedFile"] = state.damagedFile;
        table.addRow({"Damaged, set aside", state.damagedFile});
    }
    table.addRow({"Item for " + settings.keychainService, sentenceAbout(item)});
    if (isKnown) {
        json["item"] = word(item.kind);
        json["hasReference"] = item.reference.has_value();
        json["requiresUserInteraction"] = item.requiresUserInteraction;
    }
    if (isKnown && item.kind != KeptItem::Kind::none) {
        table.addRow({"Has a reference", yesOrNo(item.reference.has_value())});
        table.addRow({"Requires user interaction", yesOrNo(item.requiresUserInteraction)});
    }
    return {std::move(json), [table](auto width) { return table.render(width); }, exitStatus(item)};
}

Result unlock(const Settings& settings) {
    const auto queue = std::make_shared<Tarnwick_API::Platform::BuiltInMainQueue>();
    Tarnwick_API::Platform::MainQueue::setMain(queue);
    const auto outcome = std::make_shared<std::optional<KeychainStatus>>();
    Keychain::unlock([outcome](KeychainStatus status) { *outcome = status; });
    WaitingLine line{"Waiting for the keychain's prompt", !settings.verbose};
    line.update(0, {});
    queue->runUntil([&] { return outcome->has_value(); });
    if (*outcome != KeychainStatus::success) {
        throw Failure::unlocking(**outcome);
    }
    return sentence({{"unlocked", true}}, "The keychain is unlocked.");
}

bool isPrintable(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char character) { return character > ' ' && character < '\x7F'; });
}

std::string hexadecimal(const std::string& bytes) {
    std::string text;
    for (const unsigned char byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        text += digits.data();
    }
    return text;
}

Result showReference(const Settings& settings) {
    const auto item = keptItem(settings.keychainService);
    if (item.status != KeychainStatus::success) {
        throw Failure::keychain(item.status);
    }
    if (!item.reference) {
        throw Failure{ExitStatus::notSignedIn, "noItem",
                      "The keychain has no item for " + settings.keychainService + "."};
    }
    const auto isText = isPrintable(*item.reference);
    const auto hex = hexadecimal(*item.reference);
    return sentence({{"reference", isText ? Json(*item.reference) : Json(nullptr)}, {"hex", hex}},
                    isText ? *item.reference : "hex:" + hex);
}

Result forget(const Settings& settings) {
    const auto status = Keychain::store()->remove({.service = settings.keychainService});
    if (status != KeychainStatus::success && status != KeychainStatus::itemNotFound) {
        throw Failure::keychain(status);
    }
    const auto isDone = status == KeychainStatus::success;
    return sentence({{"forgotten", isDone}}, isDone ? "Deleted the item for " + settings.keychainService + "."
                                                    : "There was no item for " + settings.keychainService + ".");
}

}  // namespace

void addKeychainCommands(CLI::App& app, std::vector<Command>& commands) {
    auto* group = app.add_subcommand("keychain", "Look after the keychain that keeps the access token");
    group->require_subcommand(1);
    const auto add = [&](const char* name, const char* description, Result (*run)(const Settings&),
                         std::initializer_list<const char*> examples, const char* json) {
        commands.push_back({.app = group->add_subcommand(name, description), .runLocally = run});
        addNotes(*commands.back().app, examples, json);
    };
    add("status",
        "Show which keychain is in use and what it has, no secret; exit status 4 without a token, 6 when locked or "
        "out of order",
        &showStatus, {"tarnwick keychain status", "tarnwick keychain status --json | jq --raw-output .location"},
        "{keychain, location, status, statusCode, service, item, hasReference, requiresUserInteraction}; the last "
        "three "
        "only when the keychain can be read, and damagedFile when one was set aside");
    add("unlock", "Ask to unlock the keychain, for as long as it takes", &unlock, {"tarnwick keychain unlock"},
        "{unlocked}");
    add("show-reference", "Print the item's persistent reference, as text or as hex:DIGITS", &showReference,
        {"tarnwick keychain show-reference"}, "{reference, hex}");
    add("forget", "Delete the item; does not sign out at the service", &forget, {"tarnwick keychain forget"},
        "{forgotten}");
}

}  // namespace TarnwickClient
