/// What drag-and-drop data objects and the shell say about files. Windows only.
#pragma once

#include "orn/os/Types.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include <objidl.h>
#include <shlobj.h>

namespace ORN::os {

inline constexpr unsigned int fileDropFormat = 15;  ///< CF_HDROP

/// The number of the clipboard format with this name. 0 when the system refuses.
unsigned int clipboardFormat(wchar_t const* name) noexcept;

/// The global memory that a data object delivers for a format (content aspect, all items). The destructor gives it back.
class DroppedMemory {
public:
    DroppedMemory(IDataObject& data, unsigned int format);
    ~DroppedMemory();
    DroppedMemory(DroppedMemory const&) = delete;
    DroppedMemory& operator=(DroppedMemory const&) = delete;

    bool delivered() const noexcept { return delivered_; }

    /// Also empty when the memory cannot be locked.
    std::span<std::byte const> bytes() const noexcept { return bytes_; }

private:
    STGMEDIUM medium_{};
    bool delivered_ = false;
    std::span<std::byte const> bytes_;
};

/// An object of the shell, such as a file, a shortcut or a printer.
class ShellItem {
public:
    /// Finds the object by a list of item identifiers that starts at the desktop. The list must outlive this object.
    explicit ShellItem(void const* list) noexcept;

    bool found() const noexcept { return folder_ != nullptr; }

    /// What an object is, once it has been found. A text is empty when the object has none. linkTarget() is the file or
    /// folder that a shortcut leads to, if that exists.
    /// @{
    std::wstring linkTarget(HWND owner) const;
    bool isOfFileSystem() const noexcept;
    std::wstring parsingName() const;
    /// @}

private:
    struct Release {
        void operator()(IUnknown* object) const noexcept { object->Release(); }
    };
    template <typename T>
    using Held = std::unique_ptr<T, Release>;

    Held<IShellFolder> folder_;
    ITEMIDLIST const* child_ = nullptr;
};

}
