#include "orn/platform/DropFiles.h"

#include "orn/os/DropData.h"
#include "orn/platform/DropListsImp.h"

#include <utility>

namespace {

/// Registered at the first use, because a library must not call the system's window functions while it is being loaded.
unsigned int itemListFormat() {
    static unsigned int const format = ORN::os::clipboardFormat(L"Shell IDList Array");
    return format;
}

std::wstring pathOf(ORN::JoinedItemList const& list, HWND window) {
    ORN::os::ShellItem const item{list.data()};
    if (!item.found()) return {};
    // A shortcut that leads nowhere stands for its own file.
    if (std::wstring target = item.linkTarget(window); !target.empty()) return target;
    return item.isOfFileSystem() ? item.parsingName() : std::wstring{};
}

}

void getDropFiles(IDataObject& data, HWND window, std::vector<std::wstring>& files) {
    // Items say more than names, because shortcuts are among them. Where there are items, even none, nobody asks for
    // names.
    if (ORN::os::DroppedMemory const items{data, itemListFormat()}; items.delivered()) {
        ORN::forEachItemList(items.bytes(), [&](ORN::JoinedItemList const& list) {
            if (std::wstring path = pathOf(list, window); !path.empty()) files.push_back(std::move(path));
        });
        return;
    }
    ORN::os::DroppedMemory const names{data, ORN::os::fileDropFormat};
    ORN::appendDroppedNames(names.bytes(), files);
}
