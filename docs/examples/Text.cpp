#include "orn/orn.h"

#include <iostream>

int main() {
    // A wide string holds UTF-16 code units; a code point may take two.
    std::wstring const name = utf8(std::string{"gr\xC3\xBC\xC3\x9F \xF0\x9D\x84\x9E"});
    std::size_t letters = 0, points = 0;
    for (CodePointEnumerator e{name}; e; ++e, ++points) letters += isUalpha(*e);
    std::wcout << name.size() << L" units, " << points << L" code points, " << letters << L" letters\n";

    // Records by the names of their columns; quotes may hold commas and line ends.
    std::wstring const table = L"layer,y,x\r\nwalls,2,1.5\r\n\"doors, hung\",4,3\r\n";
    ORN::CSVReader rows{table, L"x,y,layer"};
    for (std::vector<std::wstring> row; rows.read(row);) {
        double x = 0;
        bool const number = isDouble(&x, row[0].data(), row[0].size());
        std::wcout << stringPrintf(L"line %d: x = %.2f (%d), layer %s\n", static_cast<int>(rows.firstLine()), x, number,
                                   row[2].c_str());
    }

    // Records that are written read back as they were, and so do numbers.
    std::wstring written;
    ORN::CSVWriter{written, {L';'}, L"\n"}.field(L"doors; hung").field(0.1).field(1e-9 / 3).endRecord();
    std::wcout << written;

    // Equal texts have one quark: comparing them is comparing two pointers.
    std::wcout << (Quark::create(L"walls") == Quark::create(table.substr(11, 5).c_str())) << L'\n';

    // Lines of a text in memory, without a line behind the last line end.
    std::wstring const letter = L"one\r\ntwo\n\nthree\n";
    using Lines = TextLineIterator<std::wstring::const_iterator>;
    auto const end = Lines::end(letter.begin(), letter.end());
    for (auto line = Lines::begin(letter.begin(), letter.end()); line != end; ++line)
        std::wcout << L'[' << *line << L']';
    std::wcout << L'\n';

    // File names are taken apart by one set of rules on every system.
    std::wstring base, extension;
    std::wcout << getDirectory(L"C:\\plans\\house.v2.dwg", base, extension) << L" | " << base << L" | " << extension
               << L" | kind " << analyzeFileType(L"house.DWG", L".dxf/.dwg") << L'\n';
}
