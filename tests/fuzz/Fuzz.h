#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

// What libFuzzer calls with each input. A target ends the program when it finds a fault.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size);

inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

// The first byte of an input chooses what is done with the others.
struct FuzzInput {
    FuzzInput(std::uint8_t const *data, std::size_t size)
        : choice(size > 0 ? data[0] : 0), bytes(reinterpret_cast<char const *>(data) + (size > 0), size - (size > 0)) {}

    unsigned choice;
    std::string bytes;
};
