#include "CountriesWindow.hpp"

#include <string>
#include <utility>

#include <QFont>

using namespace Tarnwick_API;

CountriesWindow::CountriesWindow(std::shared_ptr<TarnwickApi> api, std::function<void(bool)> onSignIn)
    : api_{std::move(api)}, onSignIn_{std::move(onSignIn)} {
    setWindowTitle("Countries");
    resize(640, 554);

    constexpr double headingScale = 1.8;
    QFont headingFont = heading_.font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * headingScale);
    headingFont.setBold(true);
    heading_.setFont(headingFont);
    header_.addWidget(&heading_, 1);
    header_.addWidget(&signOutButton_);

    password_.setEchoMode(QLineEdit::Password);
    signInButton_.setDefault(true);
    fields_.setContentsMargins(0, 0, 0, 0);
    fields_.addRow("Name", &name_);
    fields_.addRow("Password", &password_);
    fields_.addRow(&signInButton_);
    message_.setWordWrap(true);

    constexpr int margin = 20;
    constexpr int spacing = 12;
    layout_.setContentsMargins(margin, margin, margin, margin);
    layout_.setSpacing(spacing);
    layout_.addLayout(&header_);
    layout_.addWidget(&form_);
    layout_.addWidget(&message_);
    layout_.addWidget(&table_, 1);

    connect(&name_, &QLineEdit::returnPressed, &password_, [this] { password_.setFocus(); });
    connect(&password_, &QLineEdit::returnPressed, this, [this] { signIn(); });
    connect(&signInButton_, &QPushButton::clicked, this, [this] { signIn(); });
    connect(&signOutButton_, &QPushButton::clicked, this, [this] { signOut(); });
    showForm();
}

void CountriesWindow::signInAs(const QString& name, const QString& password) {
    name_.setText(name);
    password_.setText(password);
    signIn();
}

DetachedCoroutine CountriesWindow::signIn() {
    showProgress("Signing in \u2026");
    const auto user = co_await api_->login(name_.text().toStdString(), password_.text().toStdString());
    if (!user) {
        showForm();
        showError(user.failure());
        onSignIn_(false);
        co_return;
    }
    password_.clear();
    heading_.setText("Hello, " + QString::fromStdString(user->username));
    form_.hide();
    signOutButton_.show();

    showProgress("Asking for the countries \u2026");
    const auto countries = co_await api_->getCountries(ServerProfile::general);
    if (countries) {
        table_.showCountries(*countries);
        showMessage(QString{"%1 countries"}.arg(countries->size()));
    } else {
        showError(countries.failure());
    }
    onSignIn_(countries.hasValue());
}

DetachedCoroutine CountriesWindow::signOut() {
    showProgress("Signing out \u2026");
    const auto outcome = co_await api_->logout();
    table_.showCountries({});
    showForm();
    if (!outcome) {
        showError(outcome.failure());
    }
}

void CountriesWindow::showForm() {
    heading_.setText("Sign in");
    signOutButton_.hide();
    form_.show();
    showMessage("Sign in to see the countries and their load.");
    (name_.text().isEmpty() ? name_ : password_).setFocus();
}

void CountriesWindow::showProgress(const QString& text) {
    showMessage(text);
    setControlsEnabled(false);
}

void CountriesWindow::showMessage(const QString& text) {
    message_.setStyleSheet({});
    message_.setText(text);
    setControlsEnabled(true);
}

void CountriesWindow::setControlsEnabled(bool enabled) {
    form_.setEnabled(enabled);
    signOutButton_.setEnabled(enabled);
}

void CountriesWindow::showError(const Failure& failure) {
    const auto text = failure.localizedDescription();
    showMessage(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    message_.setStyleSheet("color: #b3261e; font-weight: bold");
}
