#include "FaultOrders.hpp"

#include <algorithm>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace Benchmarks {

namespace {

using Json = nlohmann::json;

/// Small, so that faults are spread over the load.
constexpr std::size_t batch = 10;

std::size_t append(const char* text, std::size_t /*one*/, std::size_t size, void* target) {
    static_cast<std::string*>(target)->append(text, size);
    return size;
}

}  // namespace

struct FaultOrders::Kind {
    Json order;
    std::size_t Met::*counter;
};

const std::vector<FaultOrders::Kind>& FaultOrders::kinds() {
    static const std::vector<Kind> kinds{
        {Json::object({{"cut", "before_answer"}}), &Met::lost},
        {Json::object({{"cut", "inside_header"}}), &Met::lost},
        {Json::object({{"cut", "after_body_bytes"}, {"cut_after_bytes", 5}}), &Met::lost},
        {Json::object({{"status", 503}, {"body", refusal}}), &Met::refused},
        {Json::object({{"path", "status"}, {"body", "{\"ip\":"}, {"content_type", "application/json"}}),
         &Met::undecodable},
        {Json::object({{"delay_ms", 200}}), &Met::late},
    };
    return kinds;
}

FaultOrders::FaultOrders(std::uint16_t controlPort, double share, std::uint64_t seed)
    : url_{"http://127.0.0.1:" + std::to_string(controlPort) + "/faults"}, share_{share}, lot_{seed} {
    curl_easy_setopt(handle_.get(), CURLOPT_URL, url_.c_str());
    curl_easy_setopt(handle_.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(handle_.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle_.get(), CURLOPT_WRITEFUNCTION, &append);
}

void FaultOrders::keepUpWith(std::size_t requests) {
    const auto due = static_cast<std::size_t>(static_cast<double>(requests) * share_);
    if (due < ordered_.size() + batch) {
        return;
    }
    auto orders = Json::array();
    while (ordered_.size() < due) {
        ordered_.push_back(std::uniform_int_distribution<std::size_t>{0, kinds().size() - 1}(lot_));
        orders.push_back(kinds()[ordered_.back()].order);
    }
    static_cast<void>(faults(orders.dump()));
}

FaultOrders::Met FaultOrders::met() const {
    // The service uses up the first fault that fits, so that what is left of those with the same path came last.
    std::size_t leftOfStatus = 0;
    std::size_t leftOfAll = 0;
    const auto answer = Json::parse(faults(""));
    for (const auto& fault : answer.at("pending")) {
        ++(fault.at("path") == "status" ? leftOfStatus : leftOfAll);
    }
    Met met;
    for (auto number = ordered_.rbegin(); number != ordered_.rend(); ++number) {
        const auto& kind = kinds()[*number];
        auto& left = kind.order.contains("path") ? leftOfStatus : leftOfAll;
        if (left > 0) {
            --left;
        } else {
            ++(met.*kind.counter);
        }
    }
    return met;
}

std::string FaultOrders::faults(const std::string& body) const {
    std::string answer;
    curl_easy_setopt(handle_.get(), CURLOPT_WRITEDATA, &answer);
    if (body.empty()) {
        curl_easy_setopt(handle_.get(), CURLOPT_HTTPGET, 1L);
    } else {
        curl_easy_setopt(handle_.get(), CURLOPT_POSTFIELDS, body.c_str());
    }
    if (curl_easy_perform(handle_.get()) != CURLE_OK) {
        throw std::runtime_error{"the service takes no faults"};
    }
    return answer;
}

}  // namespace Benchmarks
