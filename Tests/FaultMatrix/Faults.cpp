#include "Faults.hpp"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "Control/FaultJson.hpp"

namespace Tarnwick_API::Testing {
namespace {

Effect effectFrom(const std::string& text) {
    std::istringstream words{text};
    std::string first;
    words >> first;
    if (first == "-" || first == "passes") {
        return {.kind = first == "-" ? Effect::Kind::absent : Effect::Kind::passes};
    }
    Effect effect{.kind = Effect::Kind::fails, .text = first};
    if (first == "redirect") {
        effect = {.kind = Effect::Kind::redirects, .requests = 2};
        words >> effect.status;
    } else if (first.find_first_not_of("0123456789") == std::string::npos) {
        effect = {.kind = Effect::Kind::answers, .status = static_cast<unsigned>(std::stoul(first))};
        std::getline(words >> std::ws, effect.text);
    }
    for (std::string more; words >> more;) {
        effect.isResent = effect.isResent || more == "resent";
        effect.isDone = effect.isDone || more == "done";
        effect.requests = more.find_first_not_of("0123456789") == std::string::npos ? std::stoul(more) : 1;
    }
    return effect;
}

/// Each status meets a fresh connection, and then the kept one, which it ends.
std::vector<FaultRow> statusRows(unsigned first) {
    std::vector<FaultRow> rows;
    for (unsigned status = first; status < first + 100; ++status) {
        const bool hasBody = status != 204 && status != 205 && status != 304;
        const Effect effect{.kind = Effect::Kind::answers, .text = hasBody ? "words" : "", .status = status};
        FaultRow row{.what = "each status from " + std::to_string(first),
                     .meets = "request",
                     .fault = {.status = status, .body = "words"},
                     .http1 = effect,
                     .http2 = effect};
        rows.push_back(row);
        row.fault.headers = {{"Connection", "close"}};
        rows.push_back(row);
    }
    return rows;
}

std::map<std::string, std::vector<FaultRow>> readRows() {
    std::map<std::string, std::vector<FaultRow>> rows;
    std::ifstream file{TARNWICK_FAULTS};
    for (std::string line; std::getline(file, line);) {
        std::vector<std::string> cells;
        for (std::size_t begin = 2, end = 0; line.starts_with("| ") && begin < line.size(); begin = end + 3) {
            end = std::min(line.find(" | ", begin), line.size() - 2);
            cells.push_back(line.substr(begin, end - begin));
        }
        if (cells.size() == 6 && cells[0] != "kind") {
            FaultRow row{cells[1], cells[2], {}, effectFrom(cells[4]), effectFrom(cells[5])};
            if (cells[3] != "-") {
                row.fault = TarnwickService::readFaults(cells[3]).front();
            }
            rows[cells[0]].push_back(row);
        }
    }
    for (const unsigned first : {200U, 300U, 400U, 500U}) {
        rows["statuses" + std::to_string(first)] = statusRows(first);
    }
    return rows;
}

}  // namespace

const std::map<std::string, std::vector<FaultRow>>& faultRows() {
    static const auto rows = readRows();
    return rows;
}

}  // namespace Tarnwick_API::Testing
