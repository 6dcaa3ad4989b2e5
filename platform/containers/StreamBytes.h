#pragma once

#include "platform/export.h"

#include <cstddef>
#include <iosfwd>
#include <span>
#include <vector>

// Raw data to and from binary streams. Four-byte items are little-endian on the stream, whatever the machine. Each
// operation answers whether the stream is good afterwards, that is, whether all bytes were moved.

DATASERIES_API bool WriteBytes(std::ostream &stream, void const *bytes, std::size_t count);
DATASERIES_API bool ReadBytes(std::istream &stream, void *bytes, std::size_t count);

// `items` is an array of `count` four-byte numbers: std::int32_t, std::uint32_t or float.
DATASERIES_API bool WriteFourBytes(std::ostream &stream, void const *items, std::size_t count = 1);
DATASERIES_API bool ReadFourBytes(std::istream &stream, void *items, std::size_t count = 1);

// A list of four-byte numbers, preceded by its count. Reading throws VqStreamError when the stream ends before the list
// does, and never asks for much more memory than the stream has bytes.
template <typename Item>
DATASERIES_API bool WriteFourByteList(std::ostream &stream, std::span<Item const> items);
template <typename Item>
DATASERIES_API std::vector<Item> ReadFourByteList(std::istream &stream);
