/// A mutual-exclusion lock that the thread inside may enter again, and its scoped guard.
#pragma once

#include "orn/Export.h"
#include "orn/os/CriticalSection.h"

/// The lock. Only OrnSimpleLock enters and leaves it. One thread at a time is inside; it may enter again, and must
/// leave as often as it entered. When the section is destroyed, no thread may be inside or wait. It is not copied.
class ORN_API OrnCriticalSection {
public:
    explicit OrnCriticalSection(wchar_t const* label);  ///< label: a name for debugging; not copied, never read
    ~OrnCriticalSection();
    OrnCriticalSection(OrnCriticalSection const&) = delete;
    OrnCriticalSection& operator=(OrnCriticalSection const&) = delete;

private:
    friend class OrnSimpleLock;

    void Lock(wchar_t const* where);
    void Unlock();

    ORN::os::CriticalSection section_{};
    [[maybe_unused]] wchar_t const* label_;
};

/// Holds a section for a scope. `where` names the place for debugging and is not used. A guard belongs to one thread.
class ORN_API OrnSimpleLock {
public:
    [[nodiscard]] OrnSimpleLock(OrnCriticalSection& section, wchar_t const* where);  ///< enters the section
    ~OrnSimpleLock();                                                                ///< leaves it, if held
    OrnSimpleLock(OrnSimpleLock const&) = delete;
    OrnSimpleLock& operator=(OrnSimpleLock const&) = delete;

    void Lock(wchar_t const* where);  ///< enters, also when this guard holds the section already
    void Unlock();                    ///< leaves; only for a guard that holds the section

private:
    OrnCriticalSection* section_;
    bool held_ = false;
};
