/// A data object with memory of its own for each format. Windows only.
#pragma once

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <objidl.h>
#include <shlobj.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // COM objects have none

class DropObject final : public IDataObject {
public:
    std::map<unsigned int, std::vector<std::byte>> blocks;
    DWORD medium = TYMED_HGLOBAL;  ///< what the memory is said to be
    int delivered = 0, released = 0;

    ~DropObject() {
        for (HGLOBAL const memory : memory_) GlobalFree(memory);
    }

    /// Whether all that was delivered has been given back, unlocked.
    bool whole() const {
        for (HGLOBAL const memory : memory_)
            if ((GlobalFlags(memory) & GMEM_LOCKCOUNT) != 0) return false;
        return released == delivered;
    }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* wanted, STGMEDIUM* given) override {
        auto const found = blocks.find(wanted->cfFormat);
        if (found == blocks.end() || wanted->ptd != nullptr || wanted->dwAspect != DVASPECT_CONTENT ||
            wanted->lindex != -1 || wanted->tymed != TYMED_HGLOBAL)
            return DV_E_FORMATETC;
        HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, found->second.size());
        std::memcpy(GlobalLock(memory), found->second.data(), found->second.size());
        GlobalUnlock(memory);
        memory_.push_back(memory);
        given->tymed = medium;
        given->hGlobal = memory;
        given->pUnkForRelease = this;  // the memory stays here, where its locks can be counted
        ++delivered;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override {
        ++released;
        return 1;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }

private:
    std::vector<HGLOBAL> memory_;
};

#pragma GCC diagnostic pop

namespace drop {

/// A list of the shell's item identifiers, from the desktop on.
/// @{
using List = std::shared_ptr<ITEMIDLIST>;
inline List listOf(std::filesystem::path const& path) { return {ILCreateFromPathW(path.c_str()), CoTaskMemFree}; }
inline List listOf(int place) {
    ITEMIDLIST* list = nullptr;
    SHGetSpecialFolderLocation(nullptr, place, &list);
    return {list, CoTaskMemFree};
}
/// @}

inline void append(std::vector<std::byte>& block, void const* bytes, std::size_t count) {
    auto const* const first = static_cast<std::byte const*>(bytes);
    block.insert(block.end(), first, first + count);
}

/// The first list is the folder's.
inline std::vector<std::byte> itemListArray(std::vector<List> const& lists) {
    std::vector<std::byte> block, contents;
    auto const count = static_cast<UINT>(lists.size());
    UINT const items = count - 1;
    append(block, &items, 4);
    for (List const& list : lists) {
        UINT const offset = static_cast<UINT>(4 + 4 * count + contents.size());
        append(block, &offset, 4);
        append(contents, list.get(), ILGetSize(list.get()));
    }
    append(block, contents.data(), contents.size());
    return block;
}

/// The texts with the terminators that are in them.
inline std::vector<std::byte> fileNames(std::wstring const& names) {
    DROPFILES const header{sizeof(DROPFILES), {}, FALSE, TRUE};
    std::vector<std::byte> block;
    append(block, &header, sizeof header);
    append(block, names.data(), 2 * names.size());
    return block;
}

}
