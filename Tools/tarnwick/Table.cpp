#include "Table.hpp"

#include <algorithm>
#include <numeric>

#include "DisplayText.hpp"

namespace TarnwickClient {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 4;

/// Takes columns away from the widest until all of them fit, none below `narrowest`.
void fitInto(std::vector<std::size_t>& widths, std::size_t available) {
    const auto gaps = gap * (static_cast<std::size_t>(std::count_if(widths.begin(), widths.end(),
                                                                    [](std::size_t width) { return width > 0; })));
    const auto total = [&] { return std::accumulate(widths.begin(), widths.end(), std::size_t{0}) + gaps; };
    while (total() > available + gap) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (widest == widths.end() || *widest <= narrowest) {
            return;
        }
        --*widest;
    }
}

}  // namespace

void Table::addRow(std::vector<std::string> cells) {
    cells.resize(columns_.size());
    std::transform(cells.begin(), cells.end(), cells.begin(), [](const std::string& cell) { return printable(cell); });
    rows_.push_back(std::move(cells));
}

std::string Table::render(std::optional<std::size_t> width) const {
    std::vector<std::size_t> widths(columns_.size(), 0);
    for (const auto& row : rows_) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], displayWidth(row[column]));
        }
    }
    bool hasHeadings = false;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (widths[column] > 0) {
            widths[column] = std::max(widths[column], displayWidth(columns_[column].heading));
            hasHeadings = hasHeadings || !columns_[column].heading.empty();
        }
    }
    if (width) {
        fitInto(widths, *width);
    }

    std::string text;
    const auto addLine = [&](const auto& cellOf) {
        std::string line;
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (widths[column] == 0) {
                continue;
            }
            const auto cell = shortened(cellOf(column), widths[column]);
            const std::string padding(widths[column] - displayWidth(cell), ' ');
            line += columns_[column].alignment == Alignment::left ? cell + padding : padding + cell;
            line.append(gap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    };
    if (hasHeadings) {
        addLine([&](std::size_t column) { return columns_[column].heading; });
    }
    for (const auto& row : rows_) {
        addLine([&](std::size_t column) { return row[column]; });
    }
    return text;
}

}  // namespace TarnwickClient
