#pragma once

#include "CountryTable.hpp"

#include <functional>
#include <memory>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <Tarnwick_API/Tarnwick_API.hpp>

/// Asks for name and password, and shows the countries once the service has accepted them. It must live until the event
/// loop has ended, as answers come to it.
class CountriesWindow final : public QWidget {
public:
    /// `onSignIn` is told whether a sign-in brought countries, after they are shown.
    CountriesWindow(std::shared_ptr<Tarnwick_API::TarnwickApi> api, std::function<void(bool)> onSignIn);

    /// Fills in the form as the user would, and signs in.
    void signInAs(const QString& name, const QString& password);

private:
    Tarnwick_API::DetachedCoroutine signIn();
    Tarnwick_API::DetachedCoroutine signOut();
    void showForm();
    /// With the controls out of use until the next message.
    void showProgress(const QString& text);
    void showMessage(const QString& text);
    void setControlsEnabled(bool enabled);
    void showError(const Tarnwick_API::Failure& failure);

    std::shared_ptr<Tarnwick_API::TarnwickApi> api_;
    std::function<void(bool)> onSignIn_;

    QVBoxLayout layout_{this};
    QHBoxLayout header_;
    QLabel heading_;
    QPushButton signOutButton_{"Sign out"};
    QWidget form_;
    QFormLayout fields_{&form_};
    QLineEdit name_;
    QLineEdit password_;
    QPushButton signInButton_{"Sign in"};
    QLabel message_;
    CountryTable table_;
};
