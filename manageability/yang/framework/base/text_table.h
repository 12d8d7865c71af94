// Tables of text for people.
#ifndef YFW_BASE_TEXT_TABLE_H
#define YFW_BASE_TEXT_TABLE_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace yfw {

enum class Align { left, right };

// Rows of cells, which must be printable; as wide as the columns that they take on a terminal. Two spaces
// precede each row and separate its cells; none follow the last one.
class TextTable {
public:
    // Adds what a terminal does not show, such as colours, to a cell.
    using Painter = std::function<std::string(size_t row, size_t column, const std::string &cell)>;

    explicit TextTable(std::vector<Align> columns) : aligns_(std::move(columns)) {}

    // As many cells as there are columns.
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

    // Shortens cells, those of the widest columns first, until no row takes more than `width`. Columns keep at
    // least a few characters, so a row may still be wider.
    void fit(size_t width);

    std::string text(const Painter &paint = nullptr) const;

private:
    std::vector<size_t> widths() const;
    std::string line(size_t row, const std::vector<size_t> &widths, const Painter &paint) const;

    std::vector<Align> aligns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace yfw

#endif
