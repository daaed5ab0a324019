#include "Configuration/ValueChecks.hpp"

#include "Configuration/UserFolders.hpp"

#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace TarnwickClient {

namespace {

/// Whether `convert`, as std::strtoll does it, takes all of `text`.
template <typename Convert>
bool isWhole(const std::string& text, const Convert& convert) {
    char* end = nullptr;
    errno = 0;
    convert(text.c_str(), &end);
    return errno == 0 && !text.empty() && *end == '\0';
}

}  // namespace

CLI::Validator wholeNumber() {
    return CLI::Validator{[](const std::string& text) {
                              const auto convert = [](const char* start, char** end) {
                                  static_cast<void>(std::strtoll(start, end, 0));
                              };
                              return isWhole(text, convert) ? std::string{} : "\"" + text + "\" is no whole number";
                          },
                          ""};
}

CLI::Validator numberBetween(double least, double most) {
    return CLI::Validator{[least, most](const std::string& text) {
                              double number = 0;
                              const auto convert = [&](const char* start, char** end) {
                                  number = std::strtod(start, end);
                              };
                              if (isWhole(text, convert) && number >= least && number <= most) {
                                  return std::string{};
                              }
                              std::ostringstream message;
                              message << '"' << text << "\" is no number from " << least << " to " << most;
                              return message.str();
                          },
                          ""};
}

CLI::Validator userPath() {
    return CLI::Validator{[](std::string& path) {
                              path = withHomeFolder(path);
                              return std::string{};
                          },
                          ""};
}

}  // namespace TarnwickClient
