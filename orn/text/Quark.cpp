#include "orn/text/Quark.h"

#include "orn/foundation/DebuggingLevel.h"
#include "orn/os/Locale.h"
#include "orn/text/QuarkTableImp.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <ostream>
#include <string>

constinit Quark const nullQuark;

Quark Quark::create(wchar_t const* text) { return Quark{QuarkTable::quarkTable().intern(text)}; }

Quark Quark::create(std::wstring_view text) {
    // The table looks up terminated texts. A short one gets its terminator on the stack.
    wchar_t scratch[64];
    if (text.size() >= std::size(scratch)) return create(std::wstring{text}.c_str());
    *std::copy(text.begin(), text.end(), scratch) = 0;
    return create(scratch);
}

wchar_t const* Quark::value() const { return QuarkTable::quarkTable().value(text_); }

bool QuarkCollatesLess::operator()(Quark const& a, Quark const& b) const {
    wchar_t const* const first = a.value();
    wchar_t const* const second = b.value();
    if (first == nullptr || second == nullptr) return first == nullptr && second != nullptr;

    // The system tells a failed comparison only by errno.
    errno = 0;
    int const order = ORN::os::collate(first, second);
    if (errno == 0 && order != 0) return order < 0;
    if (errno == 0 && a == b) return false;
    // Only identical quarks may be equivalent, so all others go by their units here.
    return QuarkOrdinalLess{}(first, second);
}

std::wostream& operator<<(std::wostream& stream, Quark const& quark) {
    stream << L"Q:" << static_cast<void const*>(quark.text_);
    if (quark.text_ != nullptr && DebugStream::debuggingLevel() >= DebugStream::debugNormal)
        stream << L" \"" << quark.value() << L'"';
    return stream;
}
