#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <cstdlib>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {
namespace {

class Environment {
public:
    explicit Environment(const char* name) : name_{name} {
        if (const char* const value = std::getenv(name)) {
            former_ = value;
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { set(former_); }

    void set(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_, value->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

private:
    const char* name_;
    std::optional<std::string> former_;
};

TEST(DefaultKeychainFile, LiesInTheDataFolderUnderTheNameOfTheApplication) {
    const std::string program = "platform_keychain_tests";
    const std::string systemHome = ::getpwuid(::geteuid())->pw_dir;
    using Text = std::optional<std::string>;
    const struct {
        Text dataHome, home, identifier;
        std::string folder;
    } rows[] = {
        {"/data", "/home/u", "org.example.App", "/data/org.example.App"},
        {{}, "/home/u", "org.example.App", "/home/u/.local/share/org.example.App"},
        {"", "/home/u", "org.example.App", "/home/u/.local/share/org.example.App"},
        {"relative", "/home/u", "org.example.App", "/home/u/.local/share/org.example.App"},
        {{}, {}, "org.example.App", systemHome + "/.local/share/org.example.App"},
        {{}, "relative", "org.example.App", systemHome + "/.local/share/org.example.App"},
        {"/data", {}, {}, "/data/" + program},
        {"/data", {}, "", "/data/" + program},
        {"/data", {}, "..", "/data/" + program},
        {"/data", {}, "../other", "/data/" + program},
        {"/data", {}, std::string{"a\0b", 3}, "/data/" + program},
    };
    Environment dataHome{"XDG_DATA_HOME"};
    Environment home{"HOME"};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.dataHome.value_or("-") + " " + row.home.value_or("-") + " " + row.identifier.value_or("-"));
        dataHome.set(row.dataHome);
        home.set(row.home);
        Bundle::setMain(row.identifier ? Bundle{{{"CFBundleIdentifier", *row.identifier}}} : Bundle{});
        EXPECT_EQ(defaultKeychainFile(), row.folder + "/keychain.sqlite");
    }
    Bundle::setMain({});
}

}  // namespace
}  // namespace Tarnwick_API::Platform
