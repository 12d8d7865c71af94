#include "base/text_table.h"

#include <algorithm>
#include <numeric>

#include "base/text_width.h"

namespace yfw {
namespace {

constexpr size_t gap = 2;
constexpr size_t narrowest = 6;

} // namespace

std::vector<size_t> TextTable::widths() const {
    std::vector<size_t> widths(aligns_.size());
    for (const auto &row : rows_)
        for (size_t i = 0; i < row.size(); i++)
            widths[i] = std::max(widths[i], text_width(row[i]));
    return widths;
}

void TextTable::fit(size_t width) {
    std::vector<size_t> widths = this->widths();
    size_t total = std::accumulate(widths.begin(), widths.end(), gap * widths.size());
    while (total > width) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (widest == widths.end() || *widest <= narrowest)
            break;
        --*widest;
        --total;
    }
    for (auto &row : rows_)
        for (size_t i = 0; i < row.size(); i++)
            row[i] = fitted(row[i], widths[i]);
}

std::string TextTable::line(size_t row, const std::vector<size_t> &widths, const Painter &paint) const {
    const std::vector<std::string> &cells = rows_[row];
    std::string line;
    size_t blanks = 0; // not written yet
    for (size_t i = 0; i < cells.size(); i++) {
        const size_t padding = widths[i] - text_width(cells[i]);
        blanks += gap + (aligns_[i] == Align::right ? padding : 0);
        if (!cells[i].empty()) {
            line.append(blanks, ' ').append(paint ? paint(row, i, cells[i]) : cells[i]);
            blanks = 0;
        }
        blanks += aligns_[i] == Align::left ? padding : 0;
    }
    return line + '\n';
}

std::string TextTable::text(const Painter &paint) const {
    const std::vector<size_t> widths = this->widths();
    std::string text;
    for (size_t row = 0; row < rows_.size(); row++)
        text += line(row, widths, paint);
    return text;
}

} // namespace yfw
