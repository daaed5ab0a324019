// A Qt application: a window that signs in and shows the countries with their load.
// Usage: example_qt_countries HOST[:PORT] CA-FILE [NAME PASSWORD [SCREENSHOT.png]]. With a name it signs in by itself,
// with a file it saves a look at the screen there and ends.

#include "CountriesWindow.hpp"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include <Tarnwick_API/Platform/EventLoops/QtMainQueue.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

namespace {

using namespace Tarnwick_API;

/// Saves what the screen shows of the window, once that is what the window draws.
void saveScreenshot(QWidget& window, const QString& file) {
    constexpr std::chrono::milliseconds untilNextLook{20};
    const auto shown = window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    const auto drawn = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (shown != drawn) {
        QTimer::singleShot(untilNextLook, &window, [&window, file] { saveScreenshot(window, file); });
        return;
    }
    const bool saved = shown.save(file);
    std::cout << (saved ? "Saved the screenshot.\n" : "Could not save the screenshot.\n");
    QApplication::exit(saved ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const QApplication application{argumentCount, arguments};
    const QStringList words = QApplication::arguments();
    if (words.size() < 3 || words.size() == 4 || words.size() > 6) {
        std::cerr << "usage: example_qt_countries HOST[:PORT] CA-FILE [NAME PASSWORD [SCREENSHOT.png]]\n";
        return EXIT_FAILURE;
    }
    Platform::MainQueue::setMain(std::make_shared<Platform::QtMainQueue>());

    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = words[2].toStdString();
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    const auto api = TarnwickApi::create({
        .consumerKey = "tarnwick-demo-key",
        .consumerSecret = "tarnwick-demo-secret",
        .partnersId = 7,
        // An application keeps its own between runs.
        .uuid = Platform::Uuid::random(),
        .keychainService = "example",
        .filterIds = {.generalCountriesAll = 12},
        .apiUrl = {.live = words[1].toStdString()},
    });

    CountriesWindow window{api, [&](bool succeeded) {
                               if (words.size() == 6 && succeeded) {
                                   saveScreenshot(window, words[5]);
                               } else if (words.size() == 6) {
                                   QApplication::exit(EXIT_FAILURE);
                               }
                           }};
    window.show();
    if (words.size() > 4) {
        window.signInAs(words[3], words[4]);
    }
    return QApplication::exec();
}
