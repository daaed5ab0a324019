#include "Http/Exchange.hpp"

#include <algorithm>

namespace TarnwickService {
namespace {

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalWithoutCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

}  // namespace

std::string_view Request::path() const {
    return target.substr(0, target.find('?'));
}

std::optional<std::string_view> Request::query() const {
    const auto mark = target.find('?');
    if (mark == std::string_view::npos) {
        return std::nullopt;
    }
    return target.substr(mark + 1);
}

std::optional<std::string_view> Request::header(std::string_view name) const {
    const auto found =
        std::ranges::find_if(headers, [&](const Header& header) { return equalWithoutCase(header.name, name); });
    if (found == headers.end()) {
        return std::nullopt;
    }
    return found->value;
}

std::size_t Request::headerCount(std::string_view name) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(headers, [&](const Header& header) { return equalWithoutCase(header.name, name); }));
}

bool Answer::hasHeader(std::string_view name) const {
    return std::ranges::any_of(headers, [&](const auto& header) { return equalWithoutCase(header.first, name); });
}

void Answer::setHeader(const std::string& name, std::string value) {
    std::erase_if(headers, [&](const auto& header) { return equalWithoutCase(header.first, name); });
    headers.emplace_back(name, std::move(value));
}

Answer plainText(unsigned status, std::string text) {
    Answer answer;
    answer.status = status;
    answer.contentType = "text/plain; charset=utf-8";
    answer.body = std::move(text);
    return answer;
}

}  // namespace TarnwickService
