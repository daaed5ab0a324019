#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include "DeafPort.hpp"
#include "Faults.hpp"
#include "Http2Proxy.hpp"
#include "Operations.hpp"
#include "TemporaryFolder.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Tarnwick_API::Testing {
namespace {

using namespace std::chrono_literals;
constexpr auto patient = std::chrono::minutes{1};
#if defined(__has_feature)
constexpr bool isSlow = __has_feature(address_sanitizer);
#else
constexpr bool isSlow = false;
#endif
/// Leaves a busy machine the time for a handshake.
constexpr auto impatient = 300ms;
constexpr std::size_t mostAttempts = 6;

/// By line, what came, and of which operations.
std::map<std::string, std::map<std::string, std::set<std::string>>> table;

std::string hostOf(std::size_t index) {
    return "service-" + std::to_string(index) + ".test";
}

/// With a port of its own, as libcurl lets requests to one address and port wait for each other's first connection.
std::string authorityOf(std::size_t index) {
    constexpr std::size_t firstPort = 8000;
    return hostOf(index) + ":" + std::to_string(firstPort + index);
}

/// TCP connections by the port at their other end; what else is open under 0. `withData` leaves those out that have
/// nothing to read.
std::map<int, int> openDescriptors(bool withData = false) {
    std::map<int, int> open;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        const int descriptor = std::stoi(entry.path().filename());
        sockaddr_in address{};
        socklen_t size = sizeof address;
        pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
        const bool isConnected = getpeername(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
        if (isConnected && address.sin_family == AF_INET) {
            open[ntohs(address.sin_port)] += !withData || poll(&readable, 1, 0) > 0 ? 1 : 0;
        } else if (isConnected || errno != ENOTCONN) {
            // A connection that has ended is closed when libcurl next looks at it.
            ++open[0];
        }
    }
    return open;
}

struct Meeting {
    bool isKept = false;
    bool isEverytime = false;
};

/// What must come of an operation whose request meets a fault, the requests before and after it left out.
struct Expected {
    std::string outcome = "answer";
    std::vector<std::string> attempts{};
    std::size_t requests = 1;
};

Expected expectation(const Operation& operation, const Effect& effect, Meeting meeting) {
    Expected expected{.requests = effect.requests};
    if (effect.kind == Effect::Kind::answers) {
        expected.outcome = operation.outcomeOf(effect.status, effect.text);
    } else if (effect.kind == Effect::Kind::redirects) {
        // Credentials don't go along, and only GET is known there.
        const auto status = effect.status;
        const bool isGet = operation.method == "GET" || status == 303 || (status <= 302 && operation.method == "POST");
        expected.outcome = isGet ? operation.outcomeOf(420, "Consumer key missing or invalid")
                                 : operation.outcomeOf(405, "Method not allowed");
    } else if (effect.kind == Effect::Kind::fails) {
        const bool isResent = effect.isResent && meeting.isKept && operation.method == "GET";
        const auto failures = meeting.isEverytime ? mostAttempts : isResent ? 0 : 1;
        expected.attempts.assign(failures, effect.text);
        expected.requests = effect.requests * failures + (isResent ? 1 : 0) + (meeting.isEverytime ? 0 : 1);
        if (meeting.isEverytime) {
            expected.outcome = textOf(ResponseError::notReachable());
            return expected;
        }
        expected.outcome = effect.isDone && failures > 0 ? operation.again : "answer";
    }
    expected.attempts.emplace_back();
    return expected;
}

/// All operations at once, each by an application of its own and to a service of its own, so that their waits pass
/// together.
class FaultMatrix : public ::testing::TestWithParam<std::tuple<std::string, bool>> {
protected:
    FaultMatrix();

    void begin();
    void meet(const FaultRow& row, Meeting meeting);
    void end();
    void run(const FaultRow& row, Meeting meeting);
    void use(std::chrono::milliseconds idleTimeout, int port = 0);
    void addFaults(const FaultRow& row, std::size_t count);
    void prepare();
    void getStatuses();
    void runUntil(const std::function<bool()>& done);
    static void waitFor(const char* what, const std::function<bool()>& done);
    [[nodiscard]] int portOf(const Caller& caller) const { return proxy ? proxy->port() : caller.service->port(); }
    [[nodiscard]] const Effect& effectOf(const FaultRow& row) const { return proxy ? row.http2 : row.http1; }

    Platform::ScopedProcessValues scope;
    TemporaryFolder folder;
    std::shared_ptr<Platform::VirtualTimeMainQueue> queue;
    std::vector<Caller> callers{operations().size()};
    std::optional<Http2Proxy> proxy;
    int others = 0;
};

FaultMatrix::FaultMatrix() {
    const auto authority = TarnwickService::CertificateAuthority::create();
    std::ofstream{folder.path() / "roots.pem"} << authority.certificatePem();
    TarnwickService::CertificateRequest names;
    for (std::size_t index = 0; index < callers.size(); ++index) {
        names.dnsNames.push_back(hostOf(index));
    }
    const auto certificate = authority.issue(names);
    Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::string{"7100"}}}});
    Platform::Locale::setIdentifierLookup([] { return std::string{"de_DE"}; });
    Keychain::setStore(Platform::makeMemoryKeychainStore());
    std::vector<Http2Proxy::Backend> backends;
    for (std::size_t index = 0; index < callers.size(); ++index) {
        const auto host = hostOf(index);
        auto& caller = callers[index];
        caller.service = std::make_unique<TarnwickService::Service>(TarnwickService::Configuration{
            .apiHost = authorityOf(index), .certificate = certificate, .serverCount = 50});
        caller.service->start();
        backends.push_back({host, caller.service->port()});
        const auto& known = caller.service->configuration();
        const auto& ids = known.filterIds;
        caller.api = TarnwickApi::create(
            {.consumerKey = known.consumerKey,
             .consumerSecret = known.consumerSecret,
             .partnersId = known.partnersId,
             .uuid = Platform::Uuid::random(),
             .keychainService = host,
             .filterIds = {.generalCountriesAll = ids.generalCountriesAll,
                           .generalServersPerCountry = ids.generalServersPerCountry,
                           .streamingServersCandidatesPerCountry = ids.streamingServersCandidatesPerCountry,
                           .defaultFavorites = ids.defaultFavorites},
             .apiUrl = {.live = authorityOf(index)}});
        caller.observation = caller.api->observeAttempts([&caller](const RequestAttempt& attempt) {
            caller.attempts.emplace_back(attempt.failure ? name(attempt.failure->kind) : "");
        });
    }
    if (std::get<bool>(GetParam())) {
        const auto page = folder.path() / "page";
        std::ofstream{page} << "bad gateway";
        proxy.emplace(folder.path(), certificate, backends,
                      std::vector<std::string>{"--error-page=*=" + page.string()});
    }
    // What the process opens once is open from here on.
    prepare();
    use(patient);
    getStatuses();
}

void FaultMatrix::use(std::chrono::milliseconds idleTimeout, int port) {
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = folder.path() / "roots.pem";
    configuration.usesProxy = false;
    configuration.idleTimeout = idleTimeout;
    for (std::size_t index = 0; index < callers.size(); ++index) {
        const auto where = std::to_string(port == 0 ? portOf(callers[index]) : port);
        configuration.connectTo.push_back(authorityOf(index) + ":127.0.0.1:" + where);
    }
    ApiVersion1::setSessionManager(Platform::makeHttpSession(std::move(configuration)));
}

/// Each service has one account, and its application is signed in.
void FaultMatrix::prepare() {
    queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    Platform::MainQueue::setMain(queue);
    for (auto& caller : callers) {
        caller.service->reset();
        auto& accounts = caller.service->accounts();
        const auto account = accounts.create({.username = "ada", .password = "secret", .email = "ada@example.org"});
        const auto session = accounts.openSession(account.value().id, {});
        caller.token = OAuthToken{session.token, session.secret};
        std::dynamic_pointer_cast<ApiVersion1>(caller.api->api())->setOauthToken(caller.token);
        Keychain::setPassword(caller.api->keychainTokenSerivce(), session.token, session.secret);
    }
}

void FaultMatrix::addFaults(const FaultRow& row, std::size_t count) {
    for (std::size_t index = 0; index < callers.size(); ++index) {
        auto fault = row.fault;
        fault.path = row.meets == "request" ? operations()[index].path : fault.path;
        fault.count = count;
        callers[index].service->faults().add(fault);
    }
}

void FaultMatrix::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        ASSERT_TRUE(queue->runUntil([&] { return done() || queue->hasDelayedTasks(); })) << "nothing came";
        if (!done()) {
            queue->runAll();
        }
    }
}

void FaultMatrix::waitFor(const char* what, const std::function<bool()>& done) {
    const auto latest = std::chrono::steady_clock::now() + 30s;
    while (!done()) {
        ASSERT_LT(std::chrono::steady_clock::now(), latest) << "waited for " << what;
        std::this_thread::yield();
    }
}

/// A good answer for each, at the first attempt and by one request.
void FaultMatrix::getStatuses() {
    std::size_t all = 0;
    for (auto& caller : callers) {
        caller.attempts.clear();
        const auto requests = caller.service->counters().requests;
        caller.api->getStatus([&, requests](const auto& status, const auto& /*error*/) {
            EXPECT_TRUE(status) << caller.service->counters().lastRefusal;
            EXPECT_EQ(caller.service->counters().requests, requests + 1);
            EXPECT_EQ(caller.attempts.size(), 1U);
            ++all;
        });
    }
    runUntil([&] { return all == callers.size(); });
}

/// No connection is open, and nothing has happened.
void FaultMatrix::begin() {
    prepare();
    use(patient);
    ApiVersion1::sessionManager()->networkChanged();
    waitFor("the connections' end", [&] {
        const auto open = openDescriptors();
        return std::none_of(callers.begin(), callers.end(),
                            [&](const auto& each) { return open.contains(portOf(each)); });
    });
    others = openDescriptors()[0];
}

/// Begins all operations, and checks what each comes to.
void FaultMatrix::meet(const FaultRow& row, Meeting meeting) {
    const auto how = row.what + " | " + (proxy ? "HTTP/2" : "HTTP/1.1") + " | " + (meeting.isKept ? "kept" : "fresh") +
                     (meeting.isEverytime ? ", each time" : "");
    SCOPED_TRACE(how);
    struct Visit {
        const Operation& operation;
        Caller& caller;
        Expected expected;
        std::uint64_t requests;
    };
    std::vector<Visit> visits;
    for (std::size_t index = 0; index < callers.size(); ++index) {
        const auto& operation = operations()[index];
        auto& caller = callers[index];
        // What goes before would use the connection first.
        if (operation.before == 0 || (meeting.isKept && row.meets == "request")) {
            visits.push_back({operation, caller, expectation(operation, effectOf(row), meeting),
                              caller.service->counters().requests});
            caller.attempts.clear();
            caller.completions = 0;
            caller.outcome.clear();
            operation.begin(caller);
        }
    }
    if (row.isStall() && !meeting.isEverytime) {
        // The next attempt is neither cut short on a busy machine, nor meets what the first one was too late for.
        ASSERT_TRUE(queue->runUntil([&] {
            return std::all_of(visits.begin(), visits.end(), [](const Visit& visit) {
                return visit.caller.attempts.size() > visit.operation.before;
            });
        }));
        for (auto& caller : callers) {
            caller.service->faults().clear();
        }
        use(patient);
    }
    runUntil([&] {
        return std::all_of(visits.begin(), visits.end(), [](const Visit& visit) {
            return visit.caller.completions > 0 || (visit.expected.outcome.empty() && !visit.caller.attempts.empty());
        });
    });
    std::vector<std::chrono::nanoseconds> pauses;
    for (const auto& [operation, caller, expected, before] : visits) {
        SCOPED_TRACE(operation.name);
        const auto after = expected.outcome == "answer" ? operation.after : 0;
        const auto requests = caller.service->counters().requests - before - operation.before - after;
        auto attempts = expected.attempts;
        attempts.insert(attempts.begin(), operation.before, "");
        attempts.insert(attempts.end(), after, "");
        EXPECT_EQ(caller.completions, expected.outcome.empty() ? 0 : 1);
        EXPECT_EQ(caller.outcome, expected.outcome) << caller.service->counters().lastRefusal;
        EXPECT_TRUE(std::equal(attempts.begin(), attempts.end(), caller.attempts.begin(), caller.attempts.end(),
                               [](const auto& wanted, const auto& actual) {
                                   return wanted == actual || (!actual.empty() && wanted.find(actual) != wanted.npos);
                               }))
            << ::testing::PrintToString(caller.attempts) << " instead of " << ::testing::PrintToString(attempts);
        // A handshake may take longer than the idle time-out, and no request goes out then.
        EXPECT_TRUE(requests == expected.requests || (row.isStall() && requests < expected.requests))
            << requests << " requests instead of " << expected.requests;
        const auto failures = caller.attempts.size() - std::count(caller.attempts.begin(), caller.attempts.end(), "");
        const auto outcome = caller.outcome.empty() ? "never told" : caller.outcome;
        table[how][outcome + " | " + std::to_string(failures) + " | " + std::to_string(requests)].insert(
            operation.name);
        for (std::size_t retry = 0; retry + 1 < expected.attempts.size(); ++retry) {
            pauses.push_back(std::chrono::duration_cast<std::chrono::nanoseconds>(
                std::chrono::duration<double>{std::exp(0.1 * static_cast<double>(retry))}));
        }
    }
    auto asked = queue->pausesAskedFor();
    std::sort(asked.begin(), asked.end());
    std::sort(pauses.begin(), pauses.end());
    EXPECT_EQ(asked, pauses);
}

/// The next requests go well, and nothing is open that was not before, but for the connections of those.
void FaultMatrix::end() {
    for (auto& caller : callers) {
        caller.service->faults().clear();
        caller.completions = 0;
    }
    use(patient);
    getStatuses();
    std::map<int, int> expected;
    for (const auto& caller : callers) {
        EXPECT_EQ(caller.completions, 0) << "called once more";
        ++expected[portOf(caller)];
    }
    waitFor("as many descriptors as before", [&] {
        auto open = openDescriptors();
        const bool isSame = open[0] == others;
        std::erase_if(open, [&](const auto& each) { return !expected.contains(each.first); });
        return isSame && open == expected;
    });
}

void FaultMatrix::run(const FaultRow& row, Meeting meeting) {
    SCOPED_TRACE(row.what);
    begin();
    const auto& effect = effectOf(row);
    const bool fails = effect.kind == Effect::Kind::fails;
    // What is met once and fails, fails with all the requests of one attempt.
    const auto count = meeting.isEverytime ? 1'000'000 : fails ? std::max<std::size_t>(effect.requests, 1) : 1;
    std::optional<DeafPort> deaf;
    int port = 0;
    if (row.meets == "idle") {
        addFaults(row, count);
        getStatuses();
        if (!row.isStall()) {
            waitFor("something to read, or the end", [&] {
                const auto all = openDescriptors();
                const auto readable = openDescriptors(true);
                return std::all_of(callers.begin(), callers.end(), [&](const auto& each) {
                    const auto found = all.find(portOf(each));
                    return found == all.end() || readable.at(portOf(each)) == found->second;
                });
            });
        }
    } else if (row.meets == "no accept") {
        port = deaf.emplace().number;
    } else if (row.meets == "no listener") {
        port = 1;
    } else {
        if (meeting.isKept) {
            getStatuses();
        }
        addFaults(row, count);
    }
    use(row.isStall() ? impatient : patient, port);
    meet(row, meeting);
    deaf.reset();
    if (row.isStall()) {
        // One operation has left its silent connection unused.
        ApiVersion1::sessionManager()->networkChanged();
    }
    end();
}

TEST_P(FaultMatrix, Holds) {
    const auto& kind = std::get<std::string>(GetParam());
    const auto& rows = faultRows().at(kind);
    if (kind.starts_with("statuses")) {
        begin();
        if (isSlow) {
            std::cerr << "With sanitizers only each tenth status is met.\n";
        }
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if (isSlow && index / 2 % 10 != 0) {
                continue;
            }
            prepare();
            addFaults(rows[index], 1);
            meet(rows[index], {.isKept = index % 2 == 1});
        }
        end();
        return;
    }
    for (const auto& row : rows) {
        const auto& effect = effectOf(row);
        if (effect.kind == Effect::Kind::absent) {
            continue;
        }
        if (row.meets == "request") {
            run(row, {});
        }
        if (row.meets == "connection") {
            run(row, {});
        } else if (!row.meets.starts_with("no ")) {
            run(row, {.isKept = true});
        }
        if (effect.kind == Effect::Kind::fails && row.meets != "idle") {
            run(row, {.isKept = row.meets == "request", .isEverytime = true});
        }
    }
}

std::vector<std::string> kinds() {
    std::vector<std::string> names;
    for (const auto& [kind, rows] : faultRows()) {
        names.push_back(kind);
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(Of, FaultMatrix, ::testing::Combine(::testing::ValuesIn(kinds()), ::testing::Bool()),
                         [](const auto& info) {
                             return std::get<0>(info.param) + (std::get<1>(info.param) ? "_http2" : "_http1");
                         });

void printTable() {
    std::cout << "| fault | protocol | connection | the application gets | failed attempts | requests | operations |\n"
                 "|---|---|---|---|---|---|---|\n";
    for (const auto& [how, outcomes] : table) {
        for (const auto& [outcome, names] : outcomes) {
            std::cout << "| " << how << " | " << outcome << " | ";
            for (const auto& name : names) {
                std::cout << (name == *names.begin() ? "" : ", ") << name;
            }
            std::cout << " |\n";
        }
    }
}

}  // namespace
}  // namespace Tarnwick_API::Testing

/// With `--table` what came of all is printed at the end, in Markdown.
int main(int count, char** words) {
    ::testing::InitGoogleTest(&count, words);
    // Signing out writes a line.
    auto* const out = std::cout.rdbuf(nullptr);
    const int status = RUN_ALL_TESTS();
    std::cout.rdbuf(out);
    if (count > 1 && words[1] == std::string_view{"--table"}) {
        Tarnwick_API::Testing::printTable();
    }
    return status;
}
