// A process of its own for the tests to kill, and to let several write at once: the bus's library survives no fork.
// Arguments:
// - until-killed MICROSECONDS: changes the item of service "s" again and again, and tells each number written;
// - compete NUMBER ROUNDS: adds, changes and deletes what others compete for;
// - migrate FILE MICROSECONDS: migrates a file's items to the Secret Service, and is killed.

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include "NumberedItems.hpp"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

namespace Tarnwick_API::Platform {
namespace {

int writeUntilKilled(std::chrono::microseconds lifetime) {
    const auto store = makeSecretServiceKeychainStore(std::chrono::minutes{1});
    const auto found = store->copyMatching({"s", {}}, {.attributes = true});
    auto number = std::stoul(std::get<KeychainDictionary>(found.value).account.value_or("0"));
    if (!killAfter(lifetime)) {
        return EXIT_FAILURE;
    }
    while (store->update({"s", {}}, changesOf(number + 1)) == KeychainStatus::success) {
        std::cout << ++number << std::endl;
    }
    return EXIT_FAILURE;
}

int compete(unsigned long name, int rounds) {
    const auto store = makeSecretServiceKeychainStore(std::chrono::minutes{1});
    const auto isOneOf = [](KeychainStatus status, KeychainStatus other) {
        return status == KeychainStatus::success || status == other;
    };
    for (int round = 0; round < rounds; ++round) {
        const auto number = name + static_cast<unsigned long>(round);
        if (!isOneOf(store->add(itemOf("s", 0)), KeychainStatus::duplicateItem) ||
            !isOneOf(store->update({"s", {}}, changesOf(number)), KeychainStatus::itemNotFound) ||
            (round % 3 == 0 && !isOneOf(store->remove({"s", {}}), KeychainStatus::itemNotFound))) {
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.at(0) == "until-killed") {
        return writeUntilKilled(std::chrono::microseconds{std::stol(arguments.at(1))});
    }
    if (arguments.at(0) == "compete") {
        return compete(std::stoul(arguments.at(1)), std::stoi(arguments.at(2)));
    }
    const auto store = makeUserKeychainStore(arguments.at(1), std::chrono::minutes{1});
    return killAfter(std::chrono::microseconds{std::stol(arguments.at(2))}) &&
                   store->copyMatching({}, {}).status == KeychainStatus::success
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}

}  // namespace
}  // namespace Tarnwick_API::Platform

int main(int count, char** arguments) {
    return Tarnwick_API::Platform::run({arguments + 1, arguments + count});
}
