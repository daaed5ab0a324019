#include "Fleet.hpp"
#include "Scenario.hpp"
#include "Traffic.hpp"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

namespace {

using namespace Benchmarks;

void addTime(CLI::App& program, const std::string& name, Seconds& time, const std::string& meaning) {
    program
        .add_option_function<double>(
            name, [&time](double seconds) { time = Seconds{seconds}; }, meaning + ", in seconds")
        ->default_str((std::ostringstream{} << time.count()).str())
        ->check(CLI::NonNegativeNumber);
}

void addRejection(CLI::App& program, const std::string& name, Rejection& rejection, const std::string& meaning) {
    static const std::map<std::string, Rejection> names{
        {"503", Rejection::answer503}, {"refused", Rejection::refused}, {"vanished", Rejection::vanished}};
    program.add_option(name, rejection, meaning)->transform(CLI::CheckedTransformer(names));
}

void run(const Scenario& scenario, const std::string& csv) {
    const auto queue = std::make_shared<Tarnwick_API::Platform::VirtualTimeMainQueue>();
    const auto traffic = std::make_shared<Traffic>(scenario);
    Fleet fleet{scenario, queue, traffic};
    fleet.run();
    traffic->writeSummary(std::cout, fleet.waiting());
    if (!csv.empty()) {
        std::ofstream stream{csv};
        traffic->writeCsv(stream);
        if (!stream.flush()) {
            throw std::runtime_error{csv + " can't be written"};
        }
    }
}

}  // namespace

int main(int count, char** words) try {
    Scenario scenario;
    std::string csv;
    CLI::App program{"Applications that lose their service and come back, on virtual time: prints what comes to it."};
    program.add_option("--clients", scenario.clients, "applications, each with a facade of its own")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    addTime(program, "--interval", scenario.interval, "between two questions of an application");
    addTime(program, "--before", scenario.before, "that pass before the outage");
    addTime(program, "--outage", scenario.outage, "that the service is gone");
    addTime(program, "--after", scenario.after, "that pass after it");
    addRejection(program, "--during", scenario.duringOutage, "what becomes of requests then (default: refused)");
    program.add_option("--capacity", scenario.capacity, "of the service afterwards, as a multiple of the normal load")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    addRejection(program, "--beyond", scenario.beyondCapacity, "what becomes of requests beyond it (default: refused)");
    program.add_option("--disturbed", scenario.disturbed, "share that asks when the outage begins")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 1.0));
    addTime(program, "--reaction", scenario.reaction, "within which it does so");
    addTime(program, "--again", scenario.again, "after which an application without an answer asks again; 0: never");
    program.add_option("--impatient", scenario.impatient, "share of users without an answer who ask again themselves")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 1.0));
    addTime(program, "--patience", scenario.patience, "after which they do so on average");
    program.add_option("--spread", scenario.spread, "share by which pauses before retries are spread")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 1.0));
    program.add_option("--seed", scenario.seed, "of all that is drawn by lot")->capture_default_str();
    program.add_option("--csv", csv, "file for the requests and answers a second, for each tenth of a second");
    CLI11_PARSE(program, count, words);
    run(scenario, csv);
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
}
