#include "Service.hpp"

#include "Api/AccountApi.hpp"
#include "Api/CatalogueApi.hpp"
#include "Api/RequestCheck.hpp"
#include "Api/Router.hpp"
#include "Api/StatusApi.hpp"
#include "Certificates/ServerCertificate.hpp"
#include "Control/ControlApi.hpp"
#include "Control/FaultInjection.hpp"
#include "Http/HttpServer.hpp"
#include "Model/Caller.hpp"

#include <stdexcept>

namespace TarnwickService {

class Service::Implementation {
public:
    Implementation(Configuration configuration, Service& service)
        : configuration_(std::move(configuration)),
          service_(service),
          catalogue_(readPlaces(configuration_.zoneDirectory), configuration_.serverCount),
          caller_(makeCaller(configuration_.callerAddress, configuration_.callerZone, catalogue_.places())),
          traffic_(configuration_.recordRequests),
          authority_(CertificateAuthority::create()),
          certificate_(makeServerCertificate(authority_, configuration_)) {}

    ~Implementation() { stop(); }
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    void start() {
        if (listening_) {
            throw std::logic_error("the service runs already");
        }
        faults_.allowPauses();
        listening_ = std::make_unique<Listening>(*this);
        // Not before the assignment: requests to the control interface look at it.
        listening_->begin();
    }

    void stop() {
        faults_.cancelPauses();
        if (listening_) {
            listening_->end();
            listening_.reset();
        }
    }

private:
    friend class Service;

    // What exists only while the service listens: the host that requests must name follows from the port.
    struct Listening {
        explicit Listening(Implementation& implementation)
            : owner(implementation),
              server({.address = owner.configuration_.address,
                      .port = owner.configuration_.port,
                      .certificate = owner.certificate_,
                      .onConnection = [this] { return owner.meetConnection(); }}),
              apiHost(owner.configuration_.apiHost.empty() ? "localhost:" + std::to_string(server.port())
                                                           : owner.configuration_.apiHost),
              check(owner.configuration_, apiHost, owner.accounts_),
              accountApi(owner.accounts_, check, owner.caller_),
              catalogueApi(owner.catalogue_, check, owner.caller_, owner.configuration_),
              statusApi(check, owner.caller_, owner.configuration_),
              router(check, accountApi, catalogueApi, statusApi),
              controlApi(owner.service_) {
            if (owner.configuration_.controlPort) {
                // Bodies of faults come this way.
                constexpr std::size_t largestControlBody = std::size_t{64} << 20U;
                control = std::make_unique<HttpServer>(HttpServer::Settings{.address = "127.0.0.1",
                                                                            .port = *owner.configuration_.controlPort,
                                                                            .largestBody = largestControlBody});
            }
        }

        void begin() {
            if (control) {
                control->start([this](const Request& request) { return controlApi.answer(request); });
            }
            server.start([this](const Request& request) { return owner.serve(request, router); });
        }

        void end() {
            if (control) {
                control->stop();
            }
            server.stop();
        }

        Implementation& owner;
        HttpServer server;
        std::string apiHost;
        RequestCheck check;
        AccountApi accountApi;
        CatalogueApi catalogueApi;
        StatusApi statusApi;
        Router router;
        ControlApi controlApi;
        std::unique_ptr<HttpServer> control;
    };

    std::optional<Ending> meetConnection() {
        traffic_.countConnection();
        const std::optional<Fault> fault = faults_.takeForConnection();
        return fault ? std::optional(fault->ending) : std::nullopt;
    }

    Answer serve(const Request& request, const Router& router) {
        traffic_.countRequest(request);
        const auto ownAnswer = [&] {
            try {
                return router.answer(request);
            } catch (const Refusal& refusal) {
                return plainText(refusal.status(), refusal.what());
            }
        };
        const std::optional<Fault> fault = faults_.take(request.method, pathBelowBase(request.path()));
        Answer answer = fault ? injectFault(*fault, faults_, ownAnswer) : ownAnswer();
        traffic_.countAnswer(answer);
        return answer;
    }

    Configuration configuration_;
    Service& service_;
    Accounts accounts_;
    Catalogue catalogue_;
    Caller caller_;
    Faults faults_;
    Traffic traffic_;
    CertificateAuthority authority_;
    Certificate certificate_;
    std::unique_ptr<Listening> listening_;
};

Service::Service(Configuration configuration)
    : implementation_(std::make_unique<Implementation>(std::move(configuration), *this)) {
}

Service::~Service() = default;

void Service::start() {
    implementation_->start();
}

void Service::stop() {
    implementation_->stop();
}

const Configuration& Service::configuration() const {
    return implementation_->configuration_;
}

std::uint16_t Service::port() const {
    return implementation_->listening_ ? implementation_->listening_->server.port() : 0;
}

std::optional<std::uint16_t> Service::controlPort() const {
    const auto& listening = implementation_->listening_;
    return listening && listening->control ? std::optional(listening->control->port()) : std::nullopt;
}

std::string Service::apiHost() const {
    const auto& listening = implementation_->listening_;
    return listening ? listening->apiHost : configuration().apiHost;
}

const std::string& Service::caCertificatePem() const {
    return implementation_->authority_.certificatePem();
}

Accounts& Service::accounts() {
    return implementation_->accounts_;
}

const Catalogue& Service::catalogue() const {
    return implementation_->catalogue_;
}

Faults& Service::faults() {
    return implementation_->faults_;
}

Counters Service::counters() const {
    return implementation_->traffic_.counters();
}

std::vector<RecordedRequest> Service::recordedRequests() const {
    return implementation_->traffic_.recorded();
}

void Service::reset() {
    implementation_->accounts_.clear();
    implementation_->faults_.clear();
    implementation_->traffic_.reset();
}

}  // namespace TarnwickService
