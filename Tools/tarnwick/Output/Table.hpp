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

    /// One line per row. With a `width` columns of text give way, the widest first, until the lines fit; numbers do
    /// not. Where that is not enough, each cell has a line of its own, behind its heading.
    [[nodiscard]] std::string render(std::optional<std::size_t> width) const;

private:
    /// False when the lines can't be made to fit.
    bool fitInto(std::size_t available, std::vector<std::size_t>& widths) const;
    [[nodiscard]] std::string renderUpright(std::size_t available, const std::vector<std::size_t>& widths) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace TarnwickClient
