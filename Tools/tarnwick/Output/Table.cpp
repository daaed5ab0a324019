#include "Output/Table.hpp"

#include "Output/DisplayText.hpp"

#include <algorithm>
#include <numeric>

namespace TarnwickClient {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 4;

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
    if (width && !fitInto(*width, widths)) {
        return renderUpright(*width, widths);
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

bool Table::fitInto(std::size_t available, std::vector<std::size_t>& widths) const {
    const auto shown = std::count_if(widths.begin(), widths.end(), [](std::size_t width) { return width > 0; });
    auto total = std::accumulate(widths.begin(), widths.end(), gap * static_cast<std::size_t>(shown));
    for (; total > available + gap; --total) {
        std::size_t* widest = nullptr;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (columns_[column].alignment == Alignment::left && (widest == nullptr || widths[column] > *widest)) {
                widest = &widths[column];
            }
        }
        if (widest == nullptr || *widest <= narrowest) {
            return false;
        }
        --*widest;
    }
    return true;
}

std::string Table::renderUpright(std::size_t available, const std::vector<std::size_t>& widths) const {
    std::size_t headingWidth = 0;
    for (const auto& column : columns_) {
        headingWidth = std::max(headingWidth, displayWidth(column.heading));
    }
    const auto cellWidth = available > headingWidth + gap ? available - headingWidth - gap : 0;
    std::string text;
    for (const auto& row : rows_) {
        text += text.empty() ? "" : "\n";
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (widths[column] == 0 || row[column].empty()) {
                continue;
            }
            const auto& heading = columns_[column].heading;
            text.append(heading).append(headingWidth - displayWidth(heading) + gap, ' ');
            text.append(shortened(row[column], cellWidth)).append("\n");
        }
    }
    return text;
}

}  // namespace TarnwickClient
