#include "Control/FaultTarget.hpp"

#include "Api/Router.hpp"
#include "CommandLine/NearestWord.hpp"
#include "Control/ControlJson.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace TarnwickService {
namespace {

bool canBe(std::string_view text, Router::Rest rest) {
    if (rest == Router::Rest::number) {
        return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    }
    return rest == Router::Rest::text && text.find('/') == std::string_view::npos;
}

/// Whether a request to the operation can be one that the fault's path means.
bool isMeant(const Router::Operation& operation, std::string_view path) {
    const bool isBeginning = path.empty() || path.ends_with('*');
    if (path.ends_with('*')) {
        path.remove_suffix(1);
    }
    if (isBeginning && operation.path.starts_with(path)) {
        return true;
    }
    const auto rest = operation.restOf(path);
    return rest && (rest->empty() ? operation.rest == Router::Rest::none : canBe(*rest, operation.rest));
}

void add(std::vector<std::string>& words, std::string word) {
    if (std::ranges::find(words, word) == words.end()) {
        words.push_back(std::move(word));
    }
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

/// A path as people may write it, as the service's operations have it.
std::string belowBase(std::string_view path) {
    path = pathBelowBase(path.substr(0, path.find('?')));
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    return std::string(path);
}

}  // namespace

void requireTarget(const Fault& fault) {
    std::vector<std::string> paths;
    std::vector<std::string> methods;
    std::vector<std::string> methodsThere;
    for (const Router::Operation& operation : Router::operations()) {
        add(paths, operation.pattern());
        add(methods, std::string(operation.method));
        if (isMeant(operation, fault.path)) {
            add(methodsThere, std::string(operation.method));
        }
    }
    if (methodsThere.empty()) {
        const std::string nearest = CommandLine::suggestion(belowBase(fault.path), paths);
        refuseOrder("path: no request goes to \"" + fault.path + '"' +
                    (nearest.empty() ? "; there are " + joined(paths) : nearest));
    }
    if (!fault.method.empty() && std::ranges::find(methodsThere, fault.method) == methodsThere.end()) {
        refuseOrder("method: no request " + (fault.path.empty() ? std::string() : "to \"" + fault.path + "\" ") +
                    "is a \"" + fault.method + "\"; there " + (methodsThere.size() == 1 ? "is " : "are ") +
                    joined(methodsThere));
    }
}

}  // namespace TarnwickService
