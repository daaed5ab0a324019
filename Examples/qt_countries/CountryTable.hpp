#pragma once

#include <memory>
#include <vector>

#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include <Tarnwick_API/Tarnwick_API.hpp>

/// The countries with their load, by name until the user sorts them otherwise.
class CountryTable final : public QTableView {
public:
    CountryTable();

    void showCountries(const std::vector<Tarnwick_API::Country>& countries);

private:
    std::unique_ptr<QStyledItemDelegate> loadBar_;
    QStandardItemModel model_;
    QSortFilterProxyModel sorted_;
};
