#include <Tarnwick_API/Platform/Application/HostName.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <Platform/Application/MachineInfo.hpp>
#include <Platform/Application/SystemHostName.hpp>

#include <optional>
#include <string_view>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace std::string_view_literals;

TEST(HostName, IsReadFromTheMachineInformation) {
    struct Row {
        std::string_view text;
        std::optional<std::string_view> name;
    };
    const Row rows[] = {
        {"", std::nullopt},
        {"PRETTY_HOSTNAME", std::nullopt},
        {"# PRETTY_HOSTNAME=x\n#it's\n", std::nullopt},
        {"XPRETTY_HOSTNAME=x\nPRETTY_HOSTNAME_=y\npretty_hostname=z\n", std::nullopt},
        {"=PRETTY_HOSTNAME=x\n", std::nullopt},
        {"PRETTY_HOSTNAME=", ""},
        {"PRETTY_HOSTNAME=box", "box"},
        {"\n \tPRETTY_HOSTNAME= box \t\r\nICON_NAME=computer\n", "box"},
        {"PRETTY_HOSTNAME=a b=c#d\n", "a b=c#d"},
        {R"(PRETTY_HOSTNAME="Alice's \"Box\" \$5")", R"(Alice's "Box" $5)"},
        {R"(PRETTY_HOSTNAME="a\`b\\c\n")", R"(a`b\c\n)"},
        {R"(PRETTY_HOSTNAME='Bob "B" \$5')", R"(Bob "B" \$5)"},
        {R"(PRETTY_HOSTNAME=Al\ ice"'s "'B'ox)", "Al ice's Box"},
        {"PRETTY_HOSTNAME=\" padded \" \n", " padded "},
        {"PRETTY_HOSTNAME=\"over\\\ntwo\nlines\"\n", "overtwo\nlines"},
        {"PRETTY_HOSTNAME=bare\\\ntwo\n", "baretwo"},
        {"DEPLOYMENT=\"x\nPRETTY_HOSTNAME=inside\n\"\n", std::nullopt},
        {"PRETTY_HOSTNAME=first\nPRETTY_HOSTNAME=last\n", "last"},
        {"PRETTY_HOSTNAME=\"unclosed\nICON_NAME=x", "unclosed\nICON_NAME=x"},
        {"PRETTY_HOSTNAME='unclosed", "unclosed"},
        {"PRETTY_HOSTNAME=x\\", "x"},
        {"PRETTY_HOSTNAME=\"x\\", "x\\"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(prettyHostName(row.text), row.name) << row.text;
    }
}

TEST(HostName, PrefersTheDisplayNameAndTakesNoMeaninglessOne) {
    struct Row {
        std::string_view machineInfo;
        std::string_view networkName;
        std::optional<std::string_view> name;
    };
    const Row rows[] = {
        {"PRETTY_HOSTNAME=\"My Box\"", "box", "My Box"},
        {"PRETTY_HOSTNAME=localhost", "box", "localhost"},
        {"PRETTY_HOSTNAME=", "box", "box"},
        {"PRETTY_HOSTNAME=\xFF", "box", "box"},
        {"", "box.example", "box.example"},
        {"", "", std::nullopt},
        {"", "localhost", std::nullopt},
        {"", "localhost.localdomain", std::nullopt},
        {"", "(none)", std::nullopt},
        {"", "b\xC3", std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(displayHostName(prettyHostName(row.machineInfo), row.networkName), row.name)
            << row.machineInfo << ", " << row.networkName;
    }
}

TEST(HostName, IsWhatTheHostsLookupSays) {
    const ScopedProcessValues scope;
    HostName::setLookup([] { return "Test Mac"; });
    EXPECT_EQ(HostName::localized(), "Test Mac");
    HostName::setLookup([] { return std::nullopt; });
    EXPECT_EQ(HostName::localized(), std::nullopt);
    HostName::setLookup(nullptr);
    EXPECT_EQ(HostName::localized(), systemHostName());
    EXPECT_NE(HostName::localized(), "");
}

}  // namespace
}  // namespace Tarnwick_API::Platform
