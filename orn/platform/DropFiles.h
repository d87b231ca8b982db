/// The files of a drag-and-drop operation or of the clipboard. Windows only: elsewhere there is no such function.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <string>
#include <vector>

/// Appends the file-system paths of the objects that a data object carries: those of its shell items ("Shell IDList Array")
/// if it delivers them, otherwise those in its list of files (CF_HDROP).
///
/// - A shortcut stands for the file or folder that it leads to. It stands for itself when it leads to none, or when only an
///   installer knows where it leads.
/// - Items that are no files or folders of the file system are passed over.
/// - Data that is malformed or cut short gives the paths that are whole in it. Data that is not delivered gives none.
///
/// `window`, which may be null, owns any window that the shell shows. Call this where the data object may be used, with COM
/// initialised. It throws nothing but std::bad_alloc, and keeps the paths that it has appended until then.
ORN_API void getDropFiles(IDataObject& data, HWND window, std::vector<std::wstring>& files);
