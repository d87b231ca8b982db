/// The files of a drag-and-drop operation or of the clipboard. Windows only: elsewhere there is no such function.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <string>
#include <vector>

/// Appends the file-system paths of the objects that a data object carries: of its shell items where it delivers such
/// ("Shell IDList Array"), otherwise of its list of files (CF_HDROP). A shortcut stands for the file or folder that it leads
/// to, or for itself when there is none, or none but for an installer; items that are no files or folders of the file system are passed over. Data that is
/// malformed or cut short gives what is whole in it, data that is not delivered nothing. window, which may be null, owns
/// what the shell may show. To be called where the data object may be used, with COM initialised. Throws nothing but
/// std::bad_alloc, with the paths so far appended.
ORN_API void getDropFiles(IDataObject& data, HWND window, std::vector<std::wstring>& files);
