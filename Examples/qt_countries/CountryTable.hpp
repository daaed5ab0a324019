#pragma once

#include <memory>
#include <vector>

#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include <Tarnwick_API/Tarnwick_API.hpp>

/// The countries with their load, the least loaded first until the user sorts them otherwise.
class CountryTable final : public QTableView {
public:
    CountryTable();

    void showCountries(const std::vector<Tarnwick_API::Country>& countries);

private:
    std::unique_ptr<QStyledItemDelegate> loadBar_;
    QStandardItemModel model_;
};
