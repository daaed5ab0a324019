#include "OperationMix.hpp"

#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include "Judged.hpp"
#include "Visitor.hpp"

#include <chrono>
#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

namespace {

/// One of so many operations is a visitor's.
constexpr std::size_t oneVisit = 8;

constexpr const char* country = "DE";

bool isThereSome(const auto& list) {
    return !list.empty();
}

bool isStatus(const Status& status) {
    return status.ip == "198.51.100.23" && status.statusUpdateInterval == 600;
}

bool areServersOf(const std::vector<Server>& servers) {
    for (const auto& server : servers) {
        if (server.location.countrycode != country) {
            return false;
        }
    }
    return !servers.empty();
}

}  // namespace

OperationMix::OperationMix(const ServiceAccess& service, std::shared_ptr<Platform::MainQueue> queue, std::uint64_t seed)
    : queue_{std::move(queue)}, lot_{seed}, reader_{service.makeFacade(ServiceAccess::reader)} {
    for (std::size_t number = 0; number < ServiceAccess::visitors; ++number) {
        const auto name = ServiceAccess::visitor(number);
        visitors_.push_back(std::make_shared<Visitor>(service.makeFacade(name), name));
    }
    idle_ = visitors_;
    addReading();
    addStopping();
}

OperationMix::~OperationMix() = default;

void OperationMix::addReading() {
    auto& api = *reader_;
    reading_ = {
        {"getStatus", [&api](Ended end) { api.getStatus(judged<Status>(std::move(end), isStatus)); }},
        {"getCurrentUser",
         [&api](Ended end) {
             api.getCurrentUser(
                 judged<User>(std::move(end), [](const User& user) { return user.username == ServiceAccess::reader; }));
         }},
        {"getCountries",
         [&api](Ended end) {
             api.getCountries(ServerProfile::general, 52.5, 13.4,
                              judged<std::vector<Country>>(std::move(end), isThereSome<std::vector<Country>>));
         }},
        {"getServers",
         [&api](Ended end) {
             api.getServers(country, std::nullopt, std::nullopt,
                            judged<std::vector<Server>>(std::move(end), areServersOf));
         }},
        {"getCandidateServers",
         [&api](Ended end) {
             api.getCandidateServers(country, ServerProfile::general, std::nullopt,
                                     judged<std::vector<Server>>(std::move(end), areServersOf));
         }},
        {"getServer",
         [this, &api](Ended end) {
             const auto id = std::uniform_int_distribution<std::int64_t>{1000, 1049}(lot_);
             api.getServer(id, judged<Server>(std::move(end), [id](const Server& server) { return server.id == id; }));
         }},
        {"getDefaultFavorites",
         [&api](Ended end) {
             api.getDefaultFavorites(
                 judged<std::vector<FavoriteEntry>>(std::move(end), isThereSome<std::vector<FavoriteEntry>>));
         }},
        {"getAuthToken",
         [&api](Ended end) { api.getAuthToken(judged<std::string>(std::move(end), isThereSome<std::string>)); }},
        {"getDevices",
         [&api](Ended end) {
             api.getDevices(judged<std::vector<Device>>(std::move(end), isThereSome<std::vector<Device>>));
         }},
        {"updateUser",
         [this, &api](Ended end) {
             const auto address = "reader-" + std::to_string(lot_() % 1000) + "@example.org";
             api.updateUser(UserField::email, address, [end = std::move(end)](std::optional<ApiError> error) {
                 end(error ? endingOf(error) : Ending::value);
             });
         }},
    };
}

void OperationMix::addStopping() {
    auto& api = *reader_;
    reading_.push_back({"getStatus, stopped", [this, &api](Ended end) {
                            const Platform::StopSource source;
                            api.getStatus().stoppedBy(source.token()).start(judged<Status>(std::move(end), isStatus));
                            const auto moment = std::uniform_int_distribution<std::int64_t>{0, 5000}(lot_);
                            queue_->after(std::chrono::microseconds{moment}, [source] { source.stop(); });
                        }});
    reading_.push_back({"getCountries, in time", [&api](Ended end) {
                            api.getCountries(ServerProfile::streaming)
                                .within(std::chrono::milliseconds{500})
                                .start(judged<std::vector<Country>>(std::move(end), isThereSome<std::vector<Country>>));
                        }});
}

void OperationMix::signIn(Ended onEnd) {
    reader_->login(
        ServiceAccess::reader, ServiceAccess::password, false,
        judged<User>(std::move(onEnd), [](const User& user) { return user.username == ServiceAccess::reader; }));
}

std::size_t OperationMix::begin(Ended onEnd) {
    if (!idle_.empty() && lot_() % oneVisit == 0) {
        const auto visitor = idle_.back();
        idle_.pop_back();
        return reading_.size() + visitor->goOn([this, visitor, onEnd = std::move(onEnd)](Ending ending) {
            idle_.insert(idle_.begin(), visitor);
            onEnd(ending);
        });
    }
    const auto kind = lot_() % reading_.size();
    reading_[kind].begin(std::move(onEnd));
    return kind;
}

std::vector<std::string> OperationMix::kinds() const {
    std::vector<std::string> names;
    for (const auto& kind : reading_) {
        names.push_back(kind.name);
    }
    for (const auto* const name : Visitor::steps) {
        names.emplace_back(name);
    }
    return names;
}

}  // namespace Benchmarks
