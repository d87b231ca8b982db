#include "drawing/Csv.h"

#include "drawing/CommandLine.h"

#include "orn/foundation/Error.h"
#include "orn/text/CSVReader.h"
#include "orn/text/TextReader.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace drawing {

namespace {

enum Column { x1, y1, x2, y2, bulge, layer, colour, columnCount };

// In the order of Column, with the required ones first.
constexpr wchar_t const* names[columnCount] = {L"x1", L"y1", L"x2", L"y2", L"bulge", L"layer", L"colour"};
constexpr std::size_t requiredCount = 4;

using Cells = std::vector<std::wstring>;

/// Where in the file something is wrong.
class Place {
public:
    explicit Place(std::wstring const& file) : file_{file} {}

    void line(std::uint64_t number) noexcept { line_ = number; }

    [[noreturn]] void fail(std::wstring const& what) const {
        std::wstring text = file_;
        if (line_ != 0) text += L':' + std::to_wstring(line_);
        throw ORN::OrnError{text + L": " + what};
    }
    [[noreturn]] void fail(Column column, std::wstring const& what) const {
        fail(names[column] + std::wstring{L": "} + what);
    }

private:
    std::wstring file_;
    std::uint64_t line_ = 0;
};

std::wstring quoted(std::wstring const& text) {
    // A message stays short, whatever a cell holds.
    std::size_t const most = 40;
    return text.size() <= most ? L"'" + text + L"'" : L"'" + text.substr(0, most) + L"...'";
}

/// A list of names for a remark, of which only the first ones are shown: a bad file must not fill the screen.
class Names {
public:
    void add(std::wstring const& name) {
        if (++count_ <= most) text_ += (count_ > 1 ? L", " : L"") + quoted(name);
    }
    void tell(std::function<void(std::wstring const&)> const& remark, std::wstring const& what) const {
        if (count_ == 0) return;
        remark(what + text_ + (count_ > most ? L" and " + std::to_wstring(count_ - most) + L" more" : L""));
    }

private:
    static constexpr std::size_t most = 20;

    std::wstring text_;
    std::size_t count_ = 0;
};

/// The cells of a row by the names of their columns.
class Row {
public:
    Row() { std::fill(std::begin(places_), std::end(places_), absent); }

    /// Takes the header. Of two columns with one name the first counts.
    void header(Place const& place, std::function<void(std::wstring const&)> const& remark) {
        Names ignored, doubled;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            auto const name = std::find(std::begin(names), std::end(names), cells[i]);
            // A column of another name goes to other_, which is never absent and so is never set.
            std::size_t& at = name == std::end(names) ? other_ : places_[name - std::begin(names)];
            if (name == std::end(names) && !cells[i].empty()) ignored.add(cells[i]);
            if (name != std::end(names) && at != absent) doubled.add(cells[i]);
            if (at == absent) at = i;
        }
        checkRequired(place);
        if (!remark) return;
        ignored.tell(remark, L"columns that are ignored: ");
        doubled.tell(remark, L"columns that stand there twice, of which the first counts: ");
    }

    std::wstring const& operator[](Column column) const {
        static std::wstring const none;
        // A row may be shorter than the header, and `absent` lies behind every row: both give an empty cell.
        return places_[column] < cells.size() ? cells[places_[column]] : none;
    }

    /// Whether the row has nothing in the columns that count.
    bool isBlank() const {
        for (std::size_t const at : places_) {
            if (at < cells.size() && !cells[at].empty()) return false;
        }
        return true;
    }

    Cells cells;

private:
    void checkRequired(Place const& place) const {
        std::wstring text;
        int count = 0;
        for (std::size_t i = 0; i < requiredCount; ++i) {
            if (places_[i] != absent) continue;
            text += (count++ != 0 ? L", " : L"") + std::wstring{names[i]};
        }
        if (count == 0) return;
        std::wstring const what =
            count == 1 ? L"the column " + text + L" is missing" : L"the columns " + text + L" are missing";
        place.fail(what + (cells.empty() ? std::wstring{} : L" in the header " + quoted(joined())));
    }

    std::wstring joined() const {
        std::wstring text = cells[0];
        for (std::size_t i = 1; i < cells.size(); ++i) text += L',' + cells[i];
        return text;
    }

    static constexpr std::size_t absent = static_cast<std::size_t>(-1);

    std::size_t places_[columnCount];
    std::size_t other_ = 0;
};

double number(Row const& row, Column column, Place const& place) {
    std::wstring const& text = row[column];
    double value = 0;
    if (!parseNumber(text, value)) {
        place.fail(column, quoted(text) + L" is not a number");
    }
    return value;
}

std::uint32_t rgbOf(Row const& row, std::uint32_t ink, Place const& place) {
    std::wstring const& text = row[colour];
    if (text.empty()) return ink;
    std::uint32_t rgb = 0;
    if (!parseColour(text, rgb)) place.fail(colour, quoted(text) + L" is not a colour like #C04000");
    return rgb;
}

void addRow(Drawing& drawing, Row const& row, std::uint32_t ink, Place const& place) {
    // As in DXF files, where layer 0 is always there.
    static std::wstring const unnamed = L"0";

    double const ax = number(row, x1, place), ay = number(row, y1, place);
    double const bx = number(row, x2, place), by = number(row, y2, place);
    double const b = row[bulge].empty() ? 0.0 : number(row, bulge, place);
    std::uint32_t const rgb = rgbOf(row, ink, place);

    ORN::Arc<2> const arc{Point<2>{ax, ay}, b, Point<2>{bx, by}};
    Measurements const sums = measure(arc);
    if (!isMeasurable(sums)) place.fail(L"the row is too large to be measured");
    drawing.add(arc, rgb, row[layer].empty() ? unnamed : row[layer], sums);
}

}

Drawing readCsv(Input& input, ReadingOptions const& options) {
    std::unique_ptr<ORN::TextReader> const lines{ORN::TextReader::createByMark(input, ORN::encMultibyte)};
    ORN::CSVReader rows{*lines};
    Place place{input.name()};
    Row row;
    auto const next = [&] {
        try {
            return rows.read(row.cells);
        } catch (ORN::OrnError const& error) {
            // The library's texts name the file, which stands in front already.
            std::wstring text = error.wWhat();
            std::wstring const named = L"The file \"" + input.name() + L"\"";
            if (text.starts_with(named)) text.replace(0, named.size(), L"The file");
            if (rows.firstLine() < rows.lastLine()) {
                text += L" (The row begins in line " + std::to_wstring(rows.firstLine()) + L".)";
            }
            place.line(rows.lastLine());
            place.fail(text);
        }
    };

    Drawing drawing;
    // An empty file has an empty header, which lacks its columns.
    next();
    place.line(1);
    row.header(place, options.remark);
    for (std::uint64_t count = 0; next();) {
        place.line(rows.firstLine());
        // Blank rows count as well: progress tells that the file goes on.
        if (!row.isBlank()) addRow(drawing, row, options.ink, place);
        if (++count % 4096 == 0 && options.progress) options.progress(count);
    }
    return drawing;
}

}
