/// Raw streams over memory that tell how they were used.
#pragma once

#include "orn/text/RawFile.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

/// Gives out bytes, at most so many a call. The call with the number `failing` throws a std::runtime_error and takes nothing.
class MemoryReader : public ORN::RawReader {
public:
    explicit MemoryReader(std::string bytes, std::size_t most = std::string::npos, int failing = -1)
        : bytes_{std::move(bytes)}, most_{most}, failing_{failing} {}

    std::wstring name() const override { return L"memory"; }
    std::int64_t read(void* buffer, std::uint64_t count) override {
        if (calls++ == failing_) throw std::runtime_error{"broken"};
        std::size_t const some = std::min<std::size_t>({count, most_, bytes_.size() - position_});
        std::memcpy(buffer, bytes_.data() + position_, some);
        position_ += some;
        return static_cast<std::int64_t>(some);
    }

    int calls = 0;

private:
    std::string bytes_;
    std::size_t most_, position_ = 0;
    int failing_;
};

/// Keeps what is written; a write that would go beyond the room throws a std::runtime_error and keeps nothing.
class MemoryWriter : public ORN::RawWriter {
public:
    explicit MemoryWriter(std::size_t room = std::string::npos) : room_{room} {}

    std::wstring name() const override { return L"memory"; }
    void write(void const* buffer, std::uint64_t count) override {
        sizes.push_back(count);
        if (count > room_ - bytes.size()) throw std::runtime_error{"full"};
        bytes.append(static_cast<char const*>(buffer), count);
    }
    void flush() override { ++flushes; }

    std::string bytes;
    std::vector<std::uint64_t> sizes;
    int flushes = 0;

private:
    std::size_t room_;
};
