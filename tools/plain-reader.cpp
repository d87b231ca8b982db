// What reading costs without the library: lines, split at commas, the first five cells to doubles. Nothing is checked.
#include <charconv>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

int main(int, char* argv[]) {
    std::ifstream file{argv[1], std::ios::binary};
    std::vector<double> numbers;
    std::vector<std::string> cells;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        cells.clear();
        std::size_t from = 0;
        for (std::size_t comma; (comma = line.find(',', from)) != std::string::npos; from = comma + 1) {
            cells.push_back(line.substr(from, comma - from));
        }
        cells.push_back(line.substr(from));
        for (std::size_t i = 0; i < 5 && i < cells.size(); ++i) {
            double value = 0;
            std::from_chars(cells[i].data(), cells[i].data() + cells[i].size(), value);
            numbers.push_back(value);
        }
    }
    double sum = 0;
    for (double const number : numbers) sum += number;
    std::printf("%zu numbers, sum %.17g\n", numbers.size(), sum);
}
