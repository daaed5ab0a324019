#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TarnwickClient {

/// Rows of cells in aligned columns. Columns in which every cell is empty are left out.
class Table {
public:
    enum class Alignment { left, right };
    struct Column {
        std::string heading;
        Alignment alignment = Alignment::left;
    };

    /// Without headings (all empty) the table has no heading line.
    explicit Table(std::vector<Column> columns) : columns_{std::move(columns)} {}

    /// One cell per column, of any text.
    void addRow(std::vector<std::string> cells);

    [[nodiscard]] bool empty() const noexcept { return rows_.empty(); }

    /// One line per row. With a `width` the widest columns give way until the lines fit.
    [[nodiscard]] std::string render(std::optional<std::size_t> width) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace TarnwickClient
