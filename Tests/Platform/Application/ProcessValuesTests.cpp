#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using Start = ScopedProcessValues::Start;

TEST(ProcessValues, AreGivenBackByAScopeThatMayStartFromTheDefaults) {
    const ScopedProcessValues outer;
    const auto queue = std::make_shared<VirtualTimeMainQueue>();
    MainQueue::setMain(queue);
    Bundle::setMain(Bundle{{{"name", "outer"}}});
    Logging::setSink([](const auto& /*entry*/) {});
    const auto cache = UrlCache::shared();
    for (const auto start : {Start::current, Start::defaults}) {
        // What goes with the scope may ask for values.
        struct AsksWhenDropped {
            ~AsksWhenDropped() { EXPECT_EQ(Bundle::main()->text("name"), "outer"); }
        };
        {
            const ScopedProcessValues inner{start};
            const bool isKept = start == Start::current;
            EXPECT_EQ(MainQueue::main() == queue, isKept);
            EXPECT_EQ(Bundle::main()->text("name").has_value(), isKept);
            EXPECT_EQ(UrlCache::shared() == cache, isKept);
            EXPECT_EQ(DebugChannel::isOpen(), isKept);
            Logging::setSink({});
            Bundle::setMain({});
            MainQueue::setMain(std::make_shared<VirtualTimeMainQueue>());
            MainQueue::main()->soon([owned = std::make_shared<AsksWhenDropped>()] {});
        }
        EXPECT_EQ(MainQueue::main(), queue);
        EXPECT_EQ(Bundle::main()->text("name"), "outer");
        EXPECT_EQ(UrlCache::shared(), cache);
        EXPECT_TRUE(DebugChannel::isOpen());
    }
}

TEST(ProcessValues, MadeByTwoAtOnceAreTheFirstOnes) {
    const ScopedProcessValues scope;
    constexpr ProcessWide store{&ProcessValues::keychainStore};
    const auto first = makeMemoryKeychainStore();
    const auto made = store.getOr([&] {
        store.set(first);
        return makeMemoryKeychainStore();
    });
    EXPECT_EQ(made, first);
    EXPECT_EQ(store.get(), first);
}

TEST(ProcessValues, MayBeAskedForByWhatIsReplaced) {
    const ScopedProcessValues scope;
    bool hasAsked = false;
    const auto ask = [&](void*) { hasAsked = Bundle::main() != nullptr; };
    MainQueue::setMain(std::make_shared<VirtualTimeMainQueue>());
    MainQueue::main()->soon([asking = std::shared_ptr<void>{nullptr, ask}] {});
    MainQueue::setMain(nullptr);
    EXPECT_TRUE(hasAsked);
}

TEST(ProcessValues, MayBeReplacedWhileOthersAsk) {
    const ScopedProcessValues scope;
    std::vector<std::jthread> threads;
    for (const auto* text : {"one", "another"}) {
        threads.emplace_back([text = std::string{text}] {
            for (int count = 0; count < 500; ++count) {
                Bundle::setMain(Bundle{{{"name", text}}});
                Preferences::setLookup([text](std::string_view) { return text; });
                const auto name = Bundle::main()->text("name");
                EXPECT_TRUE(name == "one" || name == "another");
                EXPECT_FALSE(Preferences::text("any").value().empty());
            }
        });
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
