#define NCURSES_WIDECHAR 1
#include "app/browse/Terminal.h"

#include "app/Failure.h"

#include <curses.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

namespace {

// One for each ink, in the order of Ink.
struct Look {
    short colour;
    attr_t attributes;
};
constexpr short defaultColour = -1;
constexpr wint_t redraw = 0x0C; // Ctrl-L, after others have written on the terminal
constexpr std::array<Look, static_cast<std::size_t>(Ink::Count)> looks = {{
    {defaultColour, A_NORMAL},
    {defaultColour, A_DIM},
    {defaultColour, A_BOLD},
    {defaultColour, A_REVERSE},
    {COLOR_RED, A_BOLD},
    {COLOR_YELLOW, A_REVERSE | A_BOLD},
    {COLOR_RED, A_NORMAL},
    {COLOR_BLUE, A_BOLD},
    {COLOR_GREEN, A_NORMAL},
    {COLOR_MAGENTA, A_NORMAL},
    {COLOR_CYAN, A_NORMAL},
    {COLOR_YELLOW, A_NORMAL},
    {defaultColour, A_NORMAL},
}};

// Without the locale of the user the pictures still need one of UTF-8.
void UseUtf8() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

Key KeyOf(wint_t code) {
    switch (code) {
    case KEY_UP:
        return Keys::Up;
    case KEY_DOWN:
        return Keys::Down;
    case KEY_LEFT:
        return Keys::Left;
    case KEY_RIGHT:
        return Keys::Right;
    case KEY_SLEFT:
        return Keys::ShiftLeft;
    case KEY_SRIGHT:
        return Keys::ShiftRight;
    case KEY_PPAGE:
        return Keys::PageUp;
    case KEY_NPAGE:
        return Keys::PageDown;
    case KEY_HOME:
        return Keys::Home;
    case KEY_END:
        return Keys::End;
    case KEY_ENTER:
        return Keys::Enter;
    case KEY_BACKSPACE:
    case KEY_DC:
        return Keys::Backspace;
    default:
        return Keys::None;
    }
}

// Escape alone, or a key that the terminal did not tell of: what comes with it is passed over.
Input EscapeInput() {
    nodelay(stdscr, TRUE);
    wint_t code = 0;
    bool const isAlone = get_wch(&code) == ERR;
    if (!isAlone && code == Keys::Escape)
        unget_wch(Keys::Escape);
    bool const isEscape = isAlone || code == Keys::Escape;
    bool isOver = code != L'[' && code != L'O';
    while (!isOver && get_wch(&code) == OK)
        isOver = code >= 0x40 && code <= 0x7E;
    nodelay(stdscr, FALSE);
    return {Input::Pressed, isEscape ? Keys::Escape : Keys::None};
}

// The wheel moves like the keys.
Input InputOf(MEVENT const &event) {
    if ((event.bstate & BUTTON4_PRESSED) != 0)
        return {Input::Pressed, Keys::Up};
    if ((event.bstate & BUTTON5_PRESSED) != 0)
        return {Input::Pressed, Keys::Down};
    if ((event.bstate & (BUTTON1_PRESSED | BUTTON1_RELEASED)) == 0)
        return {Input::Pressed};
    bool const isPress = (event.bstate & BUTTON1_PRESSED) != 0;
    return {isPress ? Input::MousePressed : Input::MouseReleased, Keys::None, event.x, event.y};
}

} // namespace

Terminal::Terminal() {
    UseUtf8();
    SCREEN *const screen = newterm(nullptr, stdout, stdin);
    if (!screen) {
        char const *const kind = std::getenv("TERM");
        throw Problem(ExceptionMessage::translate("The terminal is of an unknown kind, TERM=\"{1}\".") %
                      (kind ? kind : ""));
    }
    set_term(screen);
    cbreak();
    noecho();
    curs_set(0);
    keypad(stdscr, TRUE);
    set_escdelay(25);
    // Which not every description of a terminal has.
    define_key("\033[1;2C", KEY_SRIGHT);
    define_key("\033[1;2D", KEY_SLEFT);
    mousemask(BUTTON1_PRESSED | BUTTON1_RELEASED | BUTTON4_PRESSED | BUTTON5_PRESSED, nullptr);
    mouseinterval(0);
    if (has_colors()) {
        start_color();
        use_default_colors();
        for (std::size_t ink = 0; ink < looks.size(); ++ink)
            init_pair(static_cast<short>(ink + 1), looks[ink].colour, defaultColour);
    }
}

Terminal::~Terminal() {
    endwin();
}

int Terminal::Width() const {
    return getmaxx(stdscr);
}

int Terminal::Height() const {
    return getmaxy(stdscr);
}

void Terminal::Show(TextCanvas const &canvas) {
    erase();
    for (int y = 0; y < canvas.Height(); ++y)
        for (int x = 0; x < canvas.Width(); ++x) {
            TextCanvas::Cell const &cell = canvas.At(x, y);
            if (cell.glyph == 0 || (cell.glyph == U' ' && cell.ink == Ink::Plain))
                continue;
            wchar_t const text[] = {static_cast<wchar_t>(cell.glyph), 0};
            auto const ink = static_cast<std::size_t>(cell.ink);
            cchar_t character;
            setcchar(&character, text, looks[ink].attributes, has_colors() ? static_cast<short>(ink + 1) : short(0),
                     nullptr);
            mvadd_wch(y, x, &character);
        }
    refresh();
}

std::optional<Input> Terminal::Read() {
    for (;;) {
        if (!m_waiting.empty()) {
            Input const input = m_waiting.back();
            m_waiting.pop_back();
            return input;
        }
        wint_t code = 0;
        errno = 0;
        switch (get_wch(&code)) {
        case OK:
            if (code == Keys::Escape)
                return EscapeInput();
            if (code == redraw) {
                clearok(stdscr, TRUE);
                return Input{Input::Resized};
            }
            return Input{Input::Pressed, code == L'\r' ? Keys::Enter : code == 0x08 ? Keys::Backspace : Key(code)};
        case KEY_CODE_YES:
            if (code != KEY_MOUSE)
                return code == KEY_RESIZE ? Input{Input::Resized} : Input{Input::Pressed, KeyOf(code)};
            // One key may tell of several events, of which the newest comes first.
            for (MEVENT event; getmouse(&event) == OK;)
                m_waiting.push_back(InputOf(event));
            break;
        default:
            // Bytes that are no character are passed over.
            if (errno != EINTR && errno != EILSEQ)
                return {};
        }
    }
}
