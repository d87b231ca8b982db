#include "drawing/Reading.h"

#include "orn/foundation/Error.h"
#include "orn/text/CSVReader.h"
#include "orn/text/Numbers.h"
#include "orn/text/TextReader.h"

#include <cmath>
#include <memory>

namespace drawing {

namespace {

enum Column { x1, y1, x2, y2, bulge, layer, colour, columnCount };

constexpr wchar_t const* names[columnCount] = {L"x1", L"y1", L"x2", L"y2", L"bulge", L"layer", L"colour"};
constexpr wchar_t const* allNames = L"x1,y1,x2,y2,bulge,layer,colour";
constexpr int requiredCount = 4;

using Row = std::vector<std::wstring>;

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
    std::size_t const most = 40;
    return text.size() <= most ? L"'" + text + L"'" : L"'" + text.substr(0, most) + L"...'";
}

double number(Row const& row, Column column, Place const& place) {
    std::wstring const& text = row[column];
    double value = 0;
    if (!isDouble(&value, text.data(), text.size()) || !std::isfinite(value)) {
        place.fail(column, quoted(text) + L" is not a number");
    }
    return value;
}

std::uint32_t rgbOf(Row const& row, Place const& place) {
    std::wstring const& text = row[colour];
    if (text.empty()) return 0;
    std::uint32_t rgb = 0;
    bool good = text.size() == 7 && text[0] == L'#';
    for (std::size_t i = 1; good && i < text.size(); ++i) {
        wchar_t const c = text[i];
        std::uint32_t const digit = c >= L'0' && c <= L'9'   ? static_cast<std::uint32_t>(c - L'0')
                                    : c >= L'a' && c <= L'f' ? static_cast<std::uint32_t>(c - L'a') + 10
                                    : c >= L'A' && c <= L'F' ? static_cast<std::uint32_t>(c - L'A') + 10
                                                             : 16;
        good = digit < 16;
        rgb = rgb << 4 | digit;
    }
    if (!good) place.fail(colour, quoted(text) + L" is not a colour like #C04000");
    return rgb;
}

void checkColumns(ORN::CSVReader const& rows, Place const& place) {
    std::vector<bool> missing;
    rows.missingColumns(missing);
    std::wstring text;
    int count = 0;
    for (std::size_t i = 0; i < requiredCount; ++i) {
        if (!missing[i]) continue;
        text += (count++ != 0 ? L", " : L"") + std::wstring{names[i]};
    }
    if (count == 1) place.fail(L"the column " + text + L" is missing");
    if (count != 0) place.fail(L"the columns " + text + L" are missing");
}

void addRow(Drawing& drawing, Row const& row, Place const& place) {
    static std::wstring const unnamed = L"0";

    double const ax = number(row, x1, place), ay = number(row, y1, place);
    double const bx = number(row, x2, place), by = number(row, y2, place);
    double const b = row[bulge].empty() ? 0.0 : number(row, bulge, place);
    std::uint32_t const rgb = rgbOf(row, place);

    ORN::Arc<2> const arc{Point<2>{ax, ay}, b, Point<2>{bx, by}};
    Measurements const sums = measure(arc);
    if (!std::isfinite(sums.length) || !std::isfinite(sums.area) || !sums.extent.lo().isFinite() ||
        !sums.extent.hi().isFinite()) {
        place.fail(L"the row is too large to be measured");
    }
    drawing.add(arc, rgb, row[layer].empty() ? unnamed : row[layer], sums);
}

bool isBlank(Row const& row) {
    for (std::wstring const& cell : row) {
        if (!cell.empty()) return false;
    }
    return true;
}

}

Drawing readDrawing(std::wstring const& file, std::function<void(std::uint64_t)> const& progress) {
    std::unique_ptr<ORN::TextReader> const lines{ORN::TextReader::create(file)};
    ORN::CSVReader rows{*lines, allNames};
    Place place{file};
    auto const next = [&](Row& row) {
        try {
            return rows.read(row);
        } catch (ORN::OrnError const& error) {
            std::wstring text = error.wWhat();
            if (rows.firstLine() < rows.lastLine()) {
                text += L" (The row begins in line " + std::to_wstring(rows.firstLine()) + L".)";
            }
            place.line(rows.lastLine());
            place.fail(text);
        }
    };

    Drawing drawing;
    Row row;
    bool more = next(row);
    place.line(1);
    checkColumns(rows, place);
    for (std::uint64_t count = 0; more; more = next(row)) {
        place.line(rows.firstLine());
        if (!isBlank(row)) addRow(drawing, row, place);
        if (++count % 4096 == 0 && progress) progress(count);
    }
    place.line(0);
    if (drawing.entities().empty()) place.fail(L"there is nothing to draw");
    return drawing;
}

}
