/// What drag-and-drop data objects and the shell tell about files. Windows only.
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

/// The number of the clipboard format of this name; 0 when the system refuses.
unsigned int clipboardFormat(wchar_t const* name) noexcept;

/// What a data object delivers in a format as global memory (content aspect, all items), given back at the end.
class DroppedMemory {
public:
    DroppedMemory(IDataObject& data, unsigned int format);
    ~DroppedMemory();
    DroppedMemory(DroppedMemory const&) = delete;
    DroppedMemory& operator=(DroppedMemory const&) = delete;

    bool delivered() const noexcept { return delivered_; }
    std::span<std::byte const> bytes() const noexcept {
        return bytes_;
    }  ///< empty also when the memory cannot be locked

private:
    STGMEDIUM medium_{};
    bool delivered_ = false;
    std::span<std::byte const> bytes_;
};

/// An object of the shell, in its folder.
class ShellItem {
public:
    /// By a list of item identifiers from the desktop on, which must outlive this.
    explicit ShellItem(void const* list) noexcept;

    bool found() const noexcept { return folder_ != nullptr; }

    /// For a found item. Empty texts stand for what there is not.
    std::wstring linkTarget(HWND owner) const;  ///< the file or folder that a shortcut leads to, if it is there
    bool isOfFileSystem() const noexcept;
    std::wstring parsingName() const;

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
