// edging: how much edging the beds of a garden need, and how large a sheet covers each. A bed's sides are straight, or
// arcs of a circle by their bulge.
#include <orn/orn.h>
#include <ornmsg/ornmsg.h>

#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

const std::wstring sides =
    L"bed,x1,y1,x2,y2,bulge,hue\n"
    L"\u00D6stliches Beet,0,0,3,0,,120\n"
    L"\u00D6stliches Beet,3,0,3,4,,120\n"
    L"\u00D6stliches Beet,3,4,0,0,,120\n"
    L"\"Pond, round\",-2,0,2,0,1,240\n"
    L"\"Pond, round\",2,0,-2,0,1,240\n";

struct Bed
{
    double length = 0;
    Extent<2> box;
    Colour paint;
};

double number(const std::wstring &text)
{
    double value = 0;
    if (!text.empty() && !isDouble(&value, text.data(), text.size()))
        throw ORN::OrnError(L"no number: " + text);
    return value;
}

void say(const std::wstring &text)
{
    std::cout << utf8(text) << "\n";
}

// The name of what an attempt throws.
template <class Attempt>
std::wstring caught(Attempt attempt)
{
    try {
        attempt();
    } catch (const ORN::OrnError &error) {
        return std::wstring(L"OrnError: ") + error.wWhat();
    } catch (const std::logic_error &error) {
        return std::wstring(L"logic_error: ") + getWCS(error.what());
    }
    return L"nothing";
}

}

int main()
{
    std::map<Quark, Bed, QuarkCollatesLess> beds;
    LONG bedsLock = 0;

    // The rows are announced by number as they are read, and added up on other threads.
    const auto rowRead = EVSubscriptionList<int>::create();
    int rowsSeen = 0;
    const EVCallableSubscription counting(*rowRead, [&](int row) { rowsSeen += row; });

    std::vector<std::thread> workers;
    ORN::CSVReader rows(sides, L"bed,x1,y1,x2,y2,bulge,hue");
    for (std::vector<std::wstring> row; rows.read(row);) {
        rowRead->notify(static_cast<int>(workers.size()) + 1);
        workers.emplace_back([row, &beds, &bedsLock] {
            const ORN::Arc<2> side(Point<2>(number(row[1]), number(row[2])), number(row[5]),
                                   Point<2>(number(row[3]), number(row[4])));
            const ExclusiveLock guard(bedsLock);
            Bed &bed = beds[Quark::create(row[0].c_str())];
            bed.length += side.length();
            bed.box |= side.extent();
            bed.paint = Colour::hsv(Angle::degrees(number(row[6])), 1, 0.8);
        });
    }
    for (std::thread &worker : workers)
        worker.join();

    const SharedLock guard(bedsLock);
    const auto turned = UniformTransform<2>::rotation(Angle::degrees(90));
    for (const auto &[name, bed] : beds) {
        const Extent<2> box = bed.box * turned;
        say(stringPrintf(L"%ls: %.4f m of edging, turned sheet %.0f x %.0f, paint %06x", name.value(), bed.length,
                         box.hi().x() - box.lo().x(), box.hi().y() - box.lo().y(),
                         static_cast<unsigned>(bed.paint.colorref())));
    }
    say(stringPrintf(L"rows announced: %d", rowsSeen));

    say(caught([] { number(L"three"); }));
    say(caught([] { ORN::UUID(L"no identifier"); }));
    say(caught([] { packTo(L"text", static_cast<wchar_t *>(nullptr), 0); }));
    say(caught([] { const std::unique_ptr<ORN::TextReader> none(ORN::TextReader::create(L"no/such/garden.csv")); })
            .substr(0, 9));
    say(ornMsg(0));
}
