#include "orn/text/Identifier.h"

#include <ostream>
#include <string>

constinit std::atomic<LONG> Identifier::nextId{0};

Identifier::Identifier() noexcept : value_{++nextId} {}

std::wostream& operator<<(std::wostream& stream, Identifier const& identifier) {
    // As a text, which the base and the other flags of the stream do not change.
    return stream << L'<' + std::to_wstring(identifier.toPod().value) + L'>';
}
