#pragma once

// A key that was pressed: the character that it types or, for one that types none, a code of the private use area.
using Key = char32_t;

namespace Keys {

constexpr Key Tab = U'\t', Enter = U'\n', Escape = 0x1B, Backspace = 0x7F;
constexpr Key Up = 0xE000, Down = 0xE001, Left = 0xE002, Right = 0xE003;
constexpr Key ShiftLeft = 0xE004, ShiftRight = 0xE005;
constexpr Key PageUp = 0xE006, PageDown = 0xE007, Home = 0xE008, End = 0xE009;
constexpr Key None = 0xE00A; // one that stands for nothing here

} // namespace Keys
