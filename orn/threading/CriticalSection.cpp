#include "orn/threading/CriticalSection.h"

OrnCriticalSection::OrnCriticalSection(wchar_t const* label) : label_{label} { ORN::os::initialise(section_); }
OrnCriticalSection::~OrnCriticalSection() { ORN::os::destroy(section_); }

void OrnCriticalSection::Lock(wchar_t const*) { ORN::os::enter(section_); }
void OrnCriticalSection::Unlock() { ORN::os::leave(section_); }

OrnSimpleLock::OrnSimpleLock(OrnCriticalSection& section, wchar_t const* where) : section_{&section} {
    section_->Lock(where);
    held_ = true;
}

OrnSimpleLock::~OrnSimpleLock() {
    if (held_) Unlock();
}

void OrnSimpleLock::Lock(wchar_t const* where) {
    section_->Lock(where);
    held_ = true;
}

void OrnSimpleLock::Unlock() {
    held_ = false;
    section_->Unlock();
}
