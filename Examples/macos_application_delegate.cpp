// What an application's delegate on macOS does with the library. It is plain C++, so that the Objective-C++ delegate
// holds one and forwards to it. Usage: example_macos_application_delegate HOST NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <dispatch/dispatch.h>

namespace {

using namespace Tarnwick_API;

/// Thread: the application's main thread, on which the library calls back too. Bundle, languages, the computer's name,
/// the keychain and the main queue are the system's; nothing is set up for them.
class ApplicationDelegate {
public:
    /// What the Objective-C++ side shows.
    struct View {
        std::function<void()> askToSignIn;
        std::function<void(std::string text)> show;
    };

    ApplicationDelegate(const std::string& host, View view)
        : view_{std::move(view)},
          api_{TarnwickApi::create({
              .consumerKey = "tarnwick-demo-key",
              .consumerSecret = "tarnwick-demo-secret",
              .partnersId = 7,
              // An application keeps its own between runs.
              .uuid = Platform::Uuid::random(),
              .keychainService = "example",
              .filterIds = {.generalCountriesAll = 12},
              .apiUrl = {.live = host},
          })} {}

    /// From applicationDidFinishLaunching: what it begins is answered once the event loop runs.
    void didFinishLaunching() {
        api_->restoreSession().start([this](const std::optional<User>& user, const auto& /*why not*/) {
            if (user) {
                view_.show("Hello, " + user->username + "!");
            } else {
                view_.askToSignIn();
            }
        });
    }

    /// From the sign-in window's button.
    void signIn(const std::string& name, const std::string& password) {
        api_->login(name, password).start([this](const std::optional<User>& user, const auto& error) {
            view_.show(user ? "Hello, " + user->username + "!" : std::string{Failure{error}.localizedDescription()});
        });
    }

    /// From the application's observer of network changes, and when its tunnel comes up or goes down.
    static void networkDidChange() { ApiVersion1::sessionManager()->networkChanged(); }

private:
    View view_;
    std::shared_ptr<TarnwickApi> api_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::cerr << "usage: example_macos_application_delegate HOST NAME PASSWORD\n";
        return EXIT_FAILURE;
    }
    std::unique_ptr<ApplicationDelegate> delegate;
    delegate = std::make_unique<ApplicationDelegate>(
        arguments[1], ApplicationDelegate::View{.askToSignIn = [&] { delegate->signIn(arguments[2], arguments[3]); },
                                                .show =
                                                    [](const std::string& text) {
                                                        std::cout << text << '\n';
                                                        std::exit(EXIT_SUCCESS);
                                                    }});
    delegate->didFinishLaunching();
    // Stands for NSApplicationMain, whose loop runs libdispatch's main queue as well.
    dispatch_main();
}
