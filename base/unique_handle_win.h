#pragma once

#include <windows.h>
#include <objbase.h>
#include <shellapi.h>

#include <utility>

// One owner per handle: the owner frees it, exactly once.
namespace tl {

template <typename Traits>
class unique_any {
public:
    using pointer = typename Traits::type;

    unique_any() = default;
    explicit unique_any(pointer value) : value_(value) {}
    unique_any(const unique_any&) = delete;
    unique_any& operator=(const unique_any&) = delete;
    unique_any(unique_any&& other) noexcept : value_(other.release()) {}
    unique_any& operator=(unique_any&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    ~unique_any() { reset(); }

    pointer get() const { return value_; }
    explicit operator bool() const { return value_ != Traits::invalid(); }
    pointer release() { return std::exchange(value_, Traits::invalid()); }
    void reset(pointer value = Traits::invalid()) {
        const pointer old = std::exchange(value_, value);
        if (old != Traits::invalid()) {
            Traits::close(old);
        }
    }
    // For APIs that fill a handle through a pointer.
    pointer* put() {
        reset();
        return &value_;
    }

private:
    pointer value_ = Traits::invalid();
};

#define TL_HANDLE_TRAITS(name, T, invalidValue, closeCall) \
    struct name {                                          \
        using type = T;                                    \
        static type invalid() { return invalidValue; }     \
        static void close(type h) { closeCall; }           \
    }

namespace detail {
TL_HANDLE_TRAITS(FileTraits, HANDLE, INVALID_HANDLE_VALUE, ::CloseHandle(h));
TL_HANDLE_TRAITS(HandleTraits, HANDLE, nullptr, ::CloseHandle(h));
TL_HANDLE_TRAITS(FindTraits, HANDLE, INVALID_HANDLE_VALUE, ::FindClose(h));
TL_HANDLE_TRAITS(HkeyTraits, HKEY, nullptr, ::RegCloseKey(h));
TL_HANDLE_TRAITS(HiconTraits, HICON, nullptr, ::DestroyIcon(h));
TL_HANDLE_TRAITS(HmenuTraits, HMENU, nullptr, ::DestroyMenu(h));
TL_HANDLE_TRAITS(HdcTraits, HDC, nullptr, ::DeleteDC(h));
TL_HANDLE_TRAITS(HgdiobjTraits, HGDIOBJ, nullptr, ::DeleteObject(h));
TL_HANDLE_TRAITS(HbitmapTraits, HBITMAP, nullptr, ::DeleteObject(h));
TL_HANDLE_TRAITS(HfontTraits, HFONT, nullptr, ::DeleteObject(h));
TL_HANDLE_TRAITS(CoTaskMemTraits, void*, nullptr, ::CoTaskMemFree(h));
TL_HANDLE_TRAITS(HwndTraits, HWND, nullptr, ::DestroyWindow(h));
}  // namespace detail

#undef TL_HANDLE_TRAITS

using unique_hfile = unique_any<detail::FileTraits>;
using unique_handle = unique_any<detail::HandleTraits>;
using unique_hfind = unique_any<detail::FindTraits>;
using unique_hkey = unique_any<detail::HkeyTraits>;
using unique_hicon = unique_any<detail::HiconTraits>;
using unique_hmenu = unique_any<detail::HmenuTraits>;
using unique_hdc = unique_any<detail::HdcTraits>;
using unique_hgdiobj = unique_any<detail::HgdiobjTraits>;
using unique_hbitmap = unique_any<detail::HbitmapTraits>;
using unique_hfont = unique_any<detail::HfontTraits>;
using unique_cotaskmem = unique_any<detail::CoTaskMemTraits>;
using unique_hwnd = unique_any<detail::HwndTraits>;

// A screen or window DC obtained with GetDC, released with ReleaseDC.
class unique_window_dc {
public:
    explicit unique_window_dc(HWND hwnd) : hwnd_(hwnd), dc_(::GetDC(hwnd)) {}
    unique_window_dc(const unique_window_dc&) = delete;
    unique_window_dc& operator=(const unique_window_dc&) = delete;
    ~unique_window_dc() {
        if (dc_) {
            ::ReleaseDC(hwnd_, dc_);
        }
    }
    HDC get() const { return dc_; }

private:
    HWND hwnd_;
    HDC dc_;
};

// Selects an object into a DC for the scope and puts the previous one back.
class scoped_select_object {
public:
    scoped_select_object(HDC dc, HGDIOBJ obj) : dc_(dc), old_(::SelectObject(dc, obj)) {}
    scoped_select_object(const scoped_select_object&) = delete;
    scoped_select_object& operator=(const scoped_select_object&) = delete;
    ~scoped_select_object() {
        if (old_ && old_ != reinterpret_cast<HGDIOBJ>(static_cast<LONG_PTR>(-1))) {  // HGDI_ERROR
            ::SelectObject(dc_, old_);
        }
    }

private:
    HDC dc_;
    HGDIOBJ old_;
};

// A COM interface pointer that releases what it holds.
template <typename T>
class com_ptr {
public:
    com_ptr() = default;
    com_ptr(const com_ptr&) = delete;
    com_ptr& operator=(const com_ptr&) = delete;
    com_ptr(com_ptr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    ~com_ptr() { reset(); }

    T* get() const { return p_; }
    T* operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    T** put() {
        reset();
        return &p_;
    }
    void** put_void() { return reinterpret_cast<void**>(put()); }
    void reset() {
        if (p_) {
            std::exchange(p_, nullptr)->Release();
        }
    }

private:
    T* p_ = nullptr;
};

// CoInitializeEx for the scope of a thread's work.
class scoped_com_init {
public:
    scoped_com_init() : ok_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    scoped_com_init(const scoped_com_init&) = delete;
    scoped_com_init& operator=(const scoped_com_init&) = delete;
    ~scoped_com_init() {
        if (ok_) {
            ::CoUninitialize();
        }
    }

private:
    bool ok_;
};

}  // namespace tl
