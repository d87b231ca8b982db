/// Reads memory figures from the files of a Linux kernel, and applies the limits of control groups, of both versions.
#pragma once

#include "orn/os/MemoryStatus.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace ORN::os {

/// Files is a function from the name of a file to its text, which is empty when there is no such file.
template <typename Files>
class KernelMemory {
public:
    /// Takes a limit that is missing, or that is no number (as "max"), for no limit.
    explicit KernelMemory(Files files) : files_{std::move(files)} {
        std::string const memory = files_("/proc/meminfo");
        std::optional<std::uint64_t> const total = kibibytes(memory, "MemTotal:");
        valid_ = total.has_value();
        physical_ = {total.value_or(0),
                     kibibytes(memory, "MemAvailable:").value_or(kibibytes(memory, "MemFree:").value_or(0))};
        swap_ = {kibibytes(memory, "SwapTotal:").value_or(0), kibibytes(memory, "SwapFree:").value_or(0)};
        applyControlGroups();
    }

    /// Fills the record. False when the kernel does not say how much memory the machine has. `addressSpace` is the number
    /// of bytes that addresses can reach.
    bool fill(MemoryStatus& status, std::uint64_t addressSpace) const {
        if (!valid_) return false;
        Figures page{sum(physical_.total, swap_.total), sum(physical_.available, swap_.available)};
        page.limit(both_);
        std::uint64_t const used = kibibytes(files_("/proc/self/status"), "VmSize:").value_or(0);
        std::uint64_t const available = std::min(physical_.available, physical_.total);
        double const total = static_cast<double>(physical_.total);
        status.memoryLoad =
            physical_.total > 0 ? static_cast<DWORD>(100 * ((total - static_cast<double>(available)) / total)) : 100;
        status.totalPhysical = physical_.total;
        status.availablePhysical = available;
        status.totalPageFile = page.total;
        status.availablePageFile = std::min(page.available, page.total);
        status.totalVirtual = addressSpace;
        status.availableVirtual = less(addressSpace, used);
        status.availableExtendedVirtual = 0;
        return true;
    }

private:
    static constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

    struct Figures {
        std::uint64_t total = unlimited, available = unlimited;

        void limit(Figures const& other) {
            total = std::min(total, other.total);
            available = std::min(available, other.available);
        }
    };

    static std::uint64_t sum(std::uint64_t a, std::uint64_t b) { return a < unlimited - b ? a + b : unlimited; }
    static std::uint64_t less(std::uint64_t a, std::uint64_t b) { return a > b ? a - b : 0; }

    /// Removes everything up to the first separator from the text, with the separator, and returns what was before it.
    static std::string_view cut(std::string_view& text, char separator) {
        std::string_view const head = text.substr(0, text.find(separator));
        text.remove_prefix(std::min(head.size() + 1, text.size()));
        return head;
    }

    /// A whole number, up to the next blank.
    static std::optional<std::uint64_t> number(std::string_view text) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
        text = text.substr(0, text.find_first_of(" \t\n"));
        std::uint64_t value = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || end != text.data() + text.size()) return {};
        return value;
    }

    /// The number in the line that starts with the label.
    static std::optional<std::uint64_t> labelled(std::string_view text, std::string_view label) {
        while (!text.empty()) {
            std::string_view const line = cut(text, '\n');
            if (line.starts_with(label)) return number(line.substr(label.size()));
        }
        return {};
    }

    static std::optional<std::uint64_t> kibibytes(std::string_view text, std::string_view label) {
        std::optional<std::uint64_t> const value = labelled(text, label);
        return value && *value <= unlimited / 1024 ? std::optional{*value * 1024} : std::nullopt;
    }

    static bool lists(std::string_view words, std::string_view word) {
        while (!words.empty()) {
            if (cut(words, ',') == word) return true;
        }
        return false;
    }

    /// Replaces the octal escapes that the table of mounts has for blanks and the like.
    static std::string unescaped(std::string_view text) {
        std::string result;
        while (!text.empty()) {
            unsigned int code = 0;
            bool const escaped = text.size() >= 4 && text[0] == '\\' &&
                                 std::from_chars(text.data() + 1, text.data() + 4, code, 8).ptr == text.data() + 4;
            result += escaped ? static_cast<char>(code) : text[0];
            text.remove_prefix(escaped ? 4 : 1);
        }
        return result;
    }

    /// Looks at every mount of control groups that can limit memory, and applies the limits of this process's groups there.
    void applyControlGroups() {
        std::string const places = files_("/proc/self/cgroup"), mounts = files_("/proc/self/mountinfo");
        for (std::string_view mountsLeft = mounts; !mountsLeft.empty();) {
            std::string_view line = cut(mountsLeft, '\n');
            std::size_t const dash = line.find(" - ");
            if (dash == std::string_view::npos) continue;
            std::string_view system = line.substr(dash + 3);
            std::string_view const type = cut(system, ' ');
            cut(system, ' ');  // the source
            bool const second = type == "cgroup2";
            if (!second && !(type == "cgroup" && lists(system, "memory"))) continue;
            for (int skipped = 0; skipped != 3; ++skipped) cut(line, ' ');
            std::string const root = unescaped(cut(line, ' ')), point = unescaped(cut(line, ' '));

            for (std::string_view placesLeft = places; !placesLeft.empty();) {
                std::string_view place = cut(placesLeft, '\n');
                cut(place, ':');  // the hierarchy's number
                std::string_view const controllers = cut(place, ':');
                if (second ? controllers.empty() : lists(controllers, "memory")) climb(point, root, place, second);
            }
        }
    }

    /// Applies the limits of a group and of the groups around it, up to the mount.
    void climb(std::string const& point, std::string_view root, std::string_view place, bool second) {
        if (root == "/") root = {};
        bool const below = place.starts_with(root) && (place.size() == root.size() || place[root.size()] == '/');
        std::string_view inside = below ? place.substr(root.size()) : std::string_view{};
        if (inside.find("/..") != std::string_view::npos) inside = {};  // a group outside of our name space
        for (;;) {
            if (!inside.ends_with('/')) apply(point + std::string{inside} + '/', second);
            if (inside.empty()) return;
            inside = inside.substr(0, inside.rfind('/'));
        }
    }

    void apply(std::string const& group, bool second) {
        std::string const statistics = files_(group + "memory.stat");
        // The kernel can free these copies of files at once, so they count as available.
        std::uint64_t const idle = labelled(statistics, second ? "inactive_file " : "total_inactive_file ").value_or(0);
        if (second) {
            physical_.limit(figures(group, "memory.max", "memory.current", idle));
            swap_.limit(figures(group, "memory.swap.max", "memory.swap.current", 0));
        } else {
            physical_.limit(figures(group, "memory.limit_in_bytes", "memory.usage_in_bytes", idle));
            both_.limit(figures(group, "memory.memsw.limit_in_bytes", "memory.memsw.usage_in_bytes", idle));
        }
    }

    Figures figures(std::string const& group, char const* limit, char const* usage, std::uint64_t idle) const {
        std::optional<std::uint64_t> const total = number(files_(group + limit));
        if (!total) return {};
        return {*total, less(*total, less(number(files_(group + usage)).value_or(0), idle))};
    }

    Files files_;
    bool valid_ = false;
    Figures physical_, swap_;
    Figures both_;  ///< the physical memory and the swap space together
};

}
