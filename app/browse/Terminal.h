#pragma once

#include "app/browse/Key.h"
#include "app/browse/TextCanvas.h"

#include <optional>
#include <vector>

// What came from the keyboard or the mouse, or that the terminal has another size.
struct Input {
    enum Kind { Pressed, MousePressed, MouseReleased, Resized };
    Kind kind;
    Key key = Keys::None;
    int x = 0, y = 0; // of the mouse
};

// The terminal of the process, taken over while this lives and given back however it ends; a signal that ends the
// process gives it back, too. There is one at a time.
class Terminal {
public:
    // NCError for a terminal of an unknown kind.
    Terminal();
    ~Terminal();
    Terminal(Terminal const &) = delete;
    Terminal &operator=(Terminal const &) = delete;

    int Width() const;
    int Height() const;
    void Show(TextCanvas const &canvas);
    // Waits. Nothing when no more can come.
    std::optional<Input> Read();

private:
    std::vector<Input> m_waiting; // the next one last
};
