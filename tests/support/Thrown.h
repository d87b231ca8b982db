/// What an action throws, as one text: "logic_error: what it says", or "nothing".
#pragma once

#include "orn/foundation/Error.h"

#include <new>
#include <stdexcept>
#include <string>

template <typename Action>
std::wstring thrown(Action const& action) {
    auto const wide = [](std::string const& text) { return std::wstring{text.begin(), text.end()}; };
    try {
        action();
    } catch (WinError const& error) {
        return std::wstring{L"WinError: "} + error.wWhat();
    } catch (ORN::OrnError const& error) {
        return std::wstring{L"OrnError: "} + error.wWhat();
    } catch (ORN::NotImplemented const& error) {
        return std::wstring{L"NotImplemented: "} + error.wWhat();
    } catch (std::logic_error const& error) {
        return L"logic_error: " + wide(error.what());
    } catch (std::runtime_error const& error) {
        return L"runtime_error: " + wide(error.what());
    } catch (std::bad_alloc const&) {
        return L"bad_alloc";
    } catch (char const* text) {
        return L"text: " + wide(text);
    }
    return L"nothing";
}
