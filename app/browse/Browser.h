#pragma once

#include "app/browse/BrowsedPlot.h"
#include "app/browse/Key.h"
#include "app/browse/MarkHistory.h"
#include "app/browse/Stepping.h"
#include "app/browse/VectorList.h"

#include <filesystem>
#include <optional>
#include <span>

// A session with a project: the catalogue, a plot, what is marked. It is driven by keys, and knows nothing of a
// terminal. Whatever fails becomes the status and leaves everything as it was. The project is only read, but for a
// moment when a plot is saved.
class Browser {
public:
    enum class View { Plot, Table, Keys, SavedPlots };

    struct Command {
        Key key;
        char const *name, *purpose; // the purpose is empty where the key before tells it, too
        void (*run)(Browser &browser);
    };
    // What is asked in place of the status.
    struct Prompt {
        std::string question, text;
        void (Browser::*entered)(std::string const &text);
        void (Browser::*changed)(std::string const &text) = nullptr;
    };

    // Shows the default plot, if there is one. NCError for a project that can't be opened.
    explicit Browser(std::filesystem::path path);

    static std::span<Command const> Commands();

    void Press(Key key);
    void Highlight(int row);
    // 0 for no item.
    void PutCursor(int item);
    // What lies in there is marked by the next command that marks.
    void Frame(Area const &area) { m_area = area; }
    void End() { m_isRunning = false; }

    bool IsRunning() const { return m_isRunning; }
    View GetView() const { return m_view; }
    bool IsInList() const { return m_isInList; }
    VectorList const &List() const { return m_list; }
    // Null without one.
    BrowsedPlot const *Plot() const { return m_plots.empty() ? nullptr : m_plots.back().get(); }
    // One for each item of the plot.
    std::vector<bool> const &Marks() const { return m_marks; }
    // Keeps the marks in the project, where they were changed. NCError when it can't be written.
    void KeepMarks();
    int Cursor() const { return m_cursor; }
    int Labels() const { return m_labels; }
    // The rectangle that is drawn, or being drawn.
    std::optional<Area> GetArea() const;
    // The first series of the table that is in sight, from 1.
    int FirstColumn() const { return m_firstColumn; }
    std::vector<std::string> const &SavedPlots() const { return m_names; }
    int ChosenPlot() const { return m_chosen; }
    std::optional<Prompt> const &GetPrompt() const { return m_prompt; }
    std::string const &Status() const { return m_status; }
    bool IsProblem() const { return m_isProblem; }

private:
    using Selection = BrowsedPlot::Selection;

    void Do(Key key);
    void Type(Key key);
    void Enter();
    void Back();
    void MoveUp(int by);
    void Tell(std::string text) { m_status = std::move(text); }

    BrowsedPlot const &Shown() const; // NCError when there is none
    Selection Copy() const { return std::make_unique<SelectDataSeriesData>(Shown().GetSelection()); }
    void Show(Selection selection, PictureSettings const &settings = {});
    void Replace(Selection selection);
    void Refresh();

    ProjectVectorData Highlighted(SelectDataSeriesData const &selection) const;
    void NewPlot();
    void AddSeries();
    void UseAsAxis();
    void UseDefaultAxis();
    void TakeAxis();
    void DeleteSeries();
    void ShowEachSeries();
    void StepTo(SteppedPart part, bool forward);

    void ShowBatchOrAll();

    void MoveCursor(int by);
    void StartOrEndArea();
    void Mark(MarkedColumnIDsManager::MarkMode mode);
    void TellMarks(bool isDone);
    void ShowContribution();

    void AskForSearch();
    void SearchTo(std::string const &text) { m_list.Search(text); }
    void AskForName();
    void SaveAs(std::string const &name);
    void ReplaceIfAgreed(std::string const &answer);
    void Save(std::string const &name);
    void AskForPicture();
    void WritePictureTo(std::string const &file);
    void ListSavedPlots();
    void OpenSavedPlot();
    void CycleLabels();
    void ScrollTable(int by);

    std::filesystem::path m_path;
    boost::shared_ptr<engine::Project> m_project;
    VectorList m_list;
    MarkHistory m_history;
    std::vector<std::unique_ptr<BrowsedPlot>> m_plots; // the one that is shown last, those to go back to before
    std::vector<bool> m_marks;
    bool m_hasNewMarks = false;
    bool m_isRunning = true;
    bool m_isInList = true;
    View m_view = View::Plot;
    int m_cursor = 0;
    int m_anchor = 0; // the item where a rectangle began, 0 for none
    std::optional<Area> m_area;
    int m_labels = 1;
    int m_firstColumn = 1;
    std::vector<std::string> m_names;
    int m_chosen = 0;
    std::string m_name; // of the plot that is to be replaced
    std::optional<Prompt> m_prompt;
    std::string m_status;
    bool m_isProblem = false;
};
