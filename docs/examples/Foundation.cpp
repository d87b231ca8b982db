#include "orn/orn.h"

#include <iostream>

// Shared by whoever holds a handle: it counts its references itself.
class Layer : public ORN::Handlable {
public:
    explicit Layer(std::wstring name) : name_{std::move(name)} {}
    ~Layer() override { std::wcout << name_ << L" is gone\n"; }

    std::wstring const& name() const noexcept { return name_; }

private:
    std::wstring name_;
};

int main() {
    ORN::Handle<Layer> current{new Layer{L"walls"}};
    {
        ORN::Handle<Layer> const drawn = current;
        current = ORN::Handle<Layer>{new Layer{L"doors"}};
        std::wcout << L"drawn: " << drawn->name() << L", current: " << current->name() << L'\n';
    }

    // An element stays where it is while others are appended.
    ORN::Collection<std::wstring, 4> names;
    std::wstring const& first = names.emplace_back(L"start");
    for (int i = 0; i < 100; ++i) names.push_back(std::to_wstring(i));
    std::wcout << first << (&first == &names.front() ? L" has not moved\n" : L" has moved\n");

    // Failures at run time carry a text to show; a broken promise of the program is a std::logic_error.
    try {
        throwIntCast();
    } catch (ORN::OrnError const& error) {
        std::wcout << error.wWhat() << L'\n';
    }
    try {
        Vector<3> axis;
        UniformTransform<3>::scale(2).rotation(axis);
    } catch (std::logic_error const& error) {
        std::wcout << L"missing: " << error.what() << L'\n';
    }
}
