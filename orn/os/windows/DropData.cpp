#include "orn/os/DropData.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <shlwapi.h>

namespace ORN::os {

static_assert(fileDropFormat == CF_HDROP);

unsigned int clipboardFormat(wchar_t const* name) noexcept { return ::RegisterClipboardFormatW(name); }

namespace {

/// Whether an installer manages the program that a shortcut leads to. The path of such a shortcut is that of an icon.
bool isInstallersOwn(IShellLinkW& link) {
    void* object = nullptr;
    if (FAILED(link.QueryInterface(IID_IShellLinkDataList, &object)) || object == nullptr) return false;
    auto* const data = static_cast<IShellLinkDataList*>(object);
    DWORD flags = 0;
    bool const told = SUCCEEDED(data->GetFlags(&flags));
    data->Release();
    // The flag marks the advertised shortcuts of Windows Installer.
    return told && (flags & SLDF_HAS_DARWINID) != 0;
}

}

DroppedMemory::DroppedMemory(IDataObject& data, unsigned int format) {
    FORMATETC wanted{static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    if (FAILED(data.GetData(&wanted, &medium_))) {
        medium_ = {};  // what a failed call has left there is not ours to free
        return;
    }
    delivered_ = medium_.tymed == TYMED_HGLOBAL && medium_.hGlobal != nullptr;
    if (!delivered_ || ORN_OS_REFUSED("GlobalLock")) return;
    // The system may have made the block larger than its content, so readers find the end by the content.
    if (void const* const memory = ::GlobalLock(medium_.hGlobal); memory != nullptr)
        bytes_ = {static_cast<std::byte const*>(memory), ::GlobalSize(medium_.hGlobal)};
}

DroppedMemory::~DroppedMemory() {
    if (bytes_.data() != nullptr) ::GlobalUnlock(medium_.hGlobal);
    // This does nothing for the empty medium that a failure has left.
    ::ReleaseStgMedium(&medium_);
}

ShellItem::ShellItem(void const* list) noexcept {
    if (ORN_OS_REFUSED("SHBindToParent")) return;
    IShellFolder* folder = nullptr;
    // The child's identifier lies inside the list, so it is not freed, and holds as long as the list.
    HRESULT const result = ::SHBindToParent(static_cast<PCIDLIST_ABSOLUTE>(list), IID_PPV_ARGS(&folder), &child_);
    if (SUCCEEDED(result)) folder_.reset(folder);
}

std::wstring ShellItem::linkTarget(HWND owner) const {
    if (ORN_OS_REFUSED("GetUIObjectOf")) return {};
    ITEMIDLIST const* child = child_;
    void* object = nullptr;
    HRESULT const result = folder_->GetUIObjectOf(owner, 1, &child, __uuidof(IShellLinkW), nullptr, &object);
    // An object that is no shortcut does not have the interface.
    if (FAILED(result) || object == nullptr) return {};
    Held<IShellLinkW> const link{static_cast<IShellLinkW*>(object)};
    if (isInstallersOwn(*link)) return {};

    std::wstring path(0x8000, L'\0');  // more than any path has
    // S_FALSE: the shortcut leads to something that has no path.
    if (link->GetPath(path.data(), static_cast<int>(path.size()), nullptr, 0) != S_OK) return {};
    // The path may be cut short, be a web address, or lead to a file that is gone.
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ? path.c_str() : std::wstring{};
}

bool ShellItem::isOfFileSystem() const noexcept {
    if (ORN_OS_REFUSED("GetAttributesOf")) return false;
    ITEMIDLIST const* child = child_;
    // The attributes go in as the question. The answer may also have bits that were not asked for.
    SFGAOF attributes = SFGAO_FILESYSTEM;
    return SUCCEEDED(folder_->GetAttributesOf(1, &child, &attributes)) && (attributes & SFGAO_FILESYSTEM) != 0;
}

std::wstring ShellItem::parsingName() const {
    if (ORN_OS_REFUSED("GetDisplayNameOf")) return {};
    STRRET stored{};
    if (FAILED(folder_->GetDisplayNameOf(child_, SHGDN_FORPARSING, &stored))) return {};
    wchar_t* text = nullptr;
    // This also frees what the folder has allocated for the record.
    if (FAILED(::StrRetToStrW(&stored, child_, &text))) return {};
    struct Free {
        void operator()(wchar_t* memory) const noexcept { ::CoTaskMemFree(memory); }
    };
    std::unique_ptr<wchar_t, Free> const held{text};
    return held != nullptr ? std::wstring{held.get()} : std::wstring{};
}

}
