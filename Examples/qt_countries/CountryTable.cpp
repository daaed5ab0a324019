#include "CountryTable.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>

#include <QHeaderView>
#include <QLocale>
#include <QPainter>

namespace {

using Tarnwick_API::Country;

enum Column { country, load, users, columnCount };

/// What the rows are sorted by, beside the text that is shown.
constexpr int sortRole = Qt::UserRole;

/// From 0 to 1; none where the service says nothing that can be shown.
std::optional<double> loadOf(const Country& country) {
    if (country.full) {
        return 1.0;
    }
    if (!country.currentUsers || !country.maxUsers || *country.maxUsers <= 0) {
        return std::nullopt;
    }
    return std::clamp(static_cast<double>(*country.currentUsers) / static_cast<double>(*country.maxUsers), 0.0, 1.0);
}

QColor colourOf(double load) {
    constexpr double busy = 0.6;
    constexpr double nearlyFull = 0.85;
    if (load >= nearlyFull) {
        return {0xd6, 0x45, 0x45};
    }
    return load >= busy ? QColor{0xe0, 0x9f, 0x2b} : QColor{0x3a, 0x9d, 0x6e};
}

/// A bar with the percentage beside it.
class LoadBar final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem background{option};
        initStyleOption(&background, index);
        const QString text = background.text;
        background.text.clear();
        option.widget->style()->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);

        constexpr int margin = 8;
        constexpr qreal height = 8;
        constexpr float grooveOpacity = 0.12F;
        QRectF area = option.rect.adjusted(margin, 0, -margin, 0);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(option.palette.color(option.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText
                                                                                           : QPalette::Text));
        painter->drawText(area, Qt::AlignRight | Qt::AlignVCenter, text);
        area.adjust(0, 0, -option.fontMetrics.horizontalAdvance("100 %") - margin, 0);
        QRectF bar{area.left(), area.center().y() - height / 2, area.width(), height};
        painter->setPen(Qt::NoPen);
        QColor groove = option.palette.color(QPalette::Text);
        groove.setAlphaF(grooveOpacity);
        painter->setBrush(groove);
        painter->drawRoundedRect(bar, height / 2, height / 2);
        const double load = index.data(sortRole).toDouble();
        if (load > 0) {
            bar.setWidth(std::max(height, bar.width() * load));
            painter->setBrush(colourOf(load));
            painter->drawRoundedRect(bar, height / 2, height / 2);
        }
        painter->restore();
    }
};

QStandardItem* makeItem(const QString& text, const QVariant& sortedBy, Qt::Alignment alignment) {
    auto* item = std::make_unique<QStandardItem>(text).release();
    item->setData(sortedBy, sortRole);
    item->setTextAlignment(alignment | Qt::AlignVCenter);
    item->setEditable(false);
    return item;
}

QList<QStandardItem*> makeRow(const Country& country) {
    const QLocale locale;
    const auto name = QString::fromStdString(country.localizedCountryName());
    const auto shown = name.isEmpty() ? QString::fromStdString(country.countryCode) : name;
    const auto load = loadOf(country);
    const auto percentage = load ? QString{"%1 %"}.arg(qRound(*load * 100)) : QString{"?"};
    const auto number = [&](std::optional<std::int64_t> value) {
        return value ? locale.toString(static_cast<qlonglong>(*value)) : QString{"?"};
    };
    return {makeItem(shown, shown, Qt::AlignLeft), makeItem(percentage, load.value_or(-1), Qt::AlignRight),
            makeItem(QString{"%1 of %2"}.arg(number(country.currentUsers), number(country.maxUsers)),
                     static_cast<qlonglong>(country.currentUsers.value_or(-1)), Qt::AlignRight)};
}

}  // namespace

CountryTable::CountryTable() : loadBar_{std::make_unique<LoadBar>()} {
    model_.setColumnCount(Column::columnCount);
    model_.setHorizontalHeaderLabels({"Country", "Load", "Users"});
    model_.horizontalHeaderItem(Column::country)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    model_.horizontalHeaderItem(Column::load)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    model_.horizontalHeaderItem(Column::users)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    sorted_.setSourceModel(&model_);
    sorted_.setSortRole(sortRole);
    sorted_.setSortLocaleAware(true);
    setModel(&sorted_);

    setItemDelegateForColumn(Column::load, loadBar_.get());
    setSortingEnabled(true);
    sortByColumn(Column::country, Qt::AscendingOrder);
    setStyleSheet("QTableView::item { border: 0; padding: 0 8px } QHeaderView::section { padding: 5px 8px }");
    setAlternatingRowColors(true);
    setShowGrid(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    verticalHeader()->hide();
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionResizeMode(Column::country, QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(Column::load, QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(Column::users, QHeaderView::ResizeToContents);
}

void CountryTable::showCountries(const std::vector<Country>& countries) {
    model_.removeRows(0, model_.rowCount());
    for (const Country& country : countries) {
        model_.appendRow(makeRow(country));
    }
}
