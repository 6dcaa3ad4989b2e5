#include "app/browse/Browser.h"

#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Marks.h"
#include "app/SeriesSpecification.h"
#include "contribution/ContributionDataBuilder.h"
#include "navigation/DataSeriesSwitcher.h"
#include "navigation/DefaultAxes.h"
#include "utilities/DefaultSelection.h"
#include "utilities/ProjectQueries.h"

#include <boost/locale/encoding_utf.hpp>

#include <algorithm>

namespace {

using namespace DataSeriesUtilities;
using Manager = MarkedColumnIDsManager;

constexpr std::size_t mostPlots = 20; // to go back to
constexpr int page = 10;

SelectDataSeriesData::Mode WithX(SelectDataSeriesData const &selection, bool hasX) {
    int const others = selection.GetMode() & ~SelectDataSeriesData::AxisX;
    return static_cast<SelectDataSeriesData::Mode>(others | (hasX ? SelectDataSeriesData::AxisX : 0));
}

// What is marked are rows of the data.
bool AreRows(ColumnIDs const &columns) {
    return columns.GetSource() == ColumnIDs::Observations || columns.GetSource() == ColumnIDs::Batches;
}

} // namespace

Browser::Browser(std::filesystem::path path)
    : m_path(std::move(path)), m_project(engine::Project::OpenToRead(m_path)), m_list(*m_project),
      m_history(m_project) {
    ReadMarks(m_project);
    try {
        ShownItems items;
        Show(std::make_unique<SelectDataSeriesData>(Select(m_project, {}, items)));
    } catch (NCError const &error) {
        Tell(error.what());
    }
}

std::span<Browser::Command const> Browser::Commands() {
    using Keys::Down, Keys::Left, Keys::Right, Keys::ShiftLeft, Keys::ShiftRight, Keys::Up;
    static constexpr Command commands[] = {
        {Keys::Tab, "Tab", "between list and plot", [](Browser &b) { b.m_isInList = !b.m_isInList; }},
        {Keys::Enter, "Enter", "a plot of the vector in the list", [](Browser &b) { b.Enter(); }},
        {U'+', "+", "adds the vector as a series", [](Browser &b) { b.AddSeries(); }},
        {U'x', "x", "makes the vector the X axis", [](Browser &b) { b.UseAsAxis(); }},
        {U'n', "n", "the X axis is time, or counts", [](Browser &b) { b.UseDefaultAxis(); }},
        {U'X', "X", "takes the X axis away", [](Browser &b) { b.TakeAxis(); }},
        {U'd', "d", "deletes the last series", [](Browser &b) { b.DeleteSeries(); }},
        {U'e', "e", "each series in a plot of its own", [](Browser &b) { b.ShowEachSeries(); }},
        {U'/', "/", "searches the list", [](Browser &b) { b.AskForSearch(); }},
        {U'[', "[ ]", "source of the list", [](Browser &b) { b.m_list.ChangeSource(-1); }},
        {U']', "", "", [](Browser &b) { b.m_list.ChangeSource(1); }},
        {Left, "Left Right", "series: component, variable ...",
         [](Browser &b) { b.StepTo(SteppedPart::Series, false); }},
        {Right, "", "", [](Browser &b) { b.StepTo(SteppedPart::Series, true); }},
        {ShiftLeft, "Shift+Left Right", "the same of the X axis",
         [](Browser &b) { b.StepTo(SteppedPart::Axis, false); }},
        {ShiftRight, "", "", [](Browser &b) { b.StepTo(SteppedPart::Axis, true); }},
        {Up, "Up Down", "model; row of list or table", [](Browser &b) { b.MoveUp(1); }},
        {Down, "", "", [](Browser &b) { b.MoveUp(-1); }},
        {Keys::PageUp, "PgUp PgDn", "ten rows, or ten items", [](Browser &b) { b.MoveUp(page); }},
        {Keys::PageDown, "", "", [](Browser &b) { b.MoveUp(-page); }},
        {U'<', "< >", "previous, next batch", [](Browser &b) { b.StepTo(SteppedPart::Batch, false); }},
        {U'>', "", "", [](Browser &b) { b.StepTo(SteppedPart::Batch, true); }},
        {U'b', "b", "batch of the cursor, or all", [](Browser &b) { b.ShowBatchOrAll(); }},
        {U',', ", .", "cursor to an item (or click)", [](Browser &b) { b.MoveCursor(-1); }},
        {U'.', "", "", [](Browser &b) { b.MoveCursor(1); }},
        {Keys::Home, "Home End", "cursor to the first, last item", [](Browser &b) { b.PutCursor(1); }},
        {Keys::End, "", "", [](Browser &b) { b.PutCursor(static_cast<int>(b.m_marks.size())); }},
        {U' ', "Space", "rectangle: begin, end (or drag)", [](Browser &b) { b.StartOrEndArea(); }},
        {U'm', "m", "marks, or no longer", [](Browser &b) { b.Mark(Manager::MarkToggle); }},
        {U'M', "M", "marks these, against the others", [](Browser &b) { b.Mark(Manager::MarkReplace); }},
        {U'i', "i", "leaves marked what is in both", [](Browser &b) { b.Mark(Manager::MarkIntersect); }},
        {U'u', "u r", "undoes, redoes marks", [](Browser &b) { b.TellMarks(b.m_history.Undo()); }},
        {U'r', "", "", [](Browser &b) { b.TellMarks(b.m_history.Redo()); }},
        {U'c', "c", "why what is marked stands out", [](Browser &b) { b.ShowContribution(); }},
        {U'l', "l", "other labels, or none", [](Browser &b) { b.CycleLabels(); }},
        {U't', "t", "table or plot", [](Browser &b) { b.m_view = b.m_view == View::Table ? View::Plot : View::Table; }},
        {U's', "s", "saves the plot in the project", [](Browser &b) { b.AskForName(); }},
        {U'o', "o", "opens a saved plot", [](Browser &b) { b.ListSavedPlots(); }},
        {U'p', "p", "writes a picture", [](Browser &b) { b.AskForPicture(); }},
        {U'?', "?", "these keys", [](Browser &b) { b.m_view = View::Keys; }},
        {U'q', "q Esc", "back, then out", [](Browser &b) { b.Back(); }},
        {Keys::Escape, "", "", [](Browser &b) { b.Back(); }},
        {U'Q', "Q", "out", [](Browser &b) { b.End(); }},
    };
    return commands;
}

// No error of what is asked for is a reason to end the session, those of a misused library not either.
void Browser::Press(Key key) {
    m_status.clear();
    m_isProblem = false;
    try {
        m_prompt ? Type(key) : Do(key);
    } catch (std::exception const &error) {
        Tell(error.what());
        m_isProblem = true;
    }
}

void Browser::Do(Key key) {
    auto const command = std::ranges::find(Commands(), key, &Command::key);
    if (m_view == View::SavedPlots && key != Keys::Up && key != Keys::Down && key != Keys::Enter)
        m_view = View::Plot;
    else if (m_view == View::Keys)
        m_view = View::Plot;
    else if (command != Commands().end())
        command->run(*this);
    else if (key >= U'!' && key <= U'~')
        Tell("? lists the keys.");
}

void Browser::Type(Key key) {
    if (key == Keys::Escape) {
        auto const changed = m_prompt->changed;
        m_prompt.reset();
        if (changed)
            (this->*changed)({});
        return;
    }
    if (key == Keys::Enter) {
        Prompt const prompt = *m_prompt;
        m_prompt.reset();
        return (this->*prompt.entered)(prompt.text);
    }
    std::u32string letters = boost::locale::conv::utf_to_utf<char32_t>(m_prompt->text);
    if (key == Keys::Backspace && !letters.empty())
        letters.pop_back();
    else if (key >= U' ' && key != Keys::Backspace && (key < Keys::Up || key > Keys::None))
        letters += key;
    m_prompt->text = boost::locale::conv::utf_to_utf<char>(letters);
    if (m_prompt->changed)
        (this->*m_prompt->changed)(m_prompt->text);
}

void Browser::Enter() {
    m_view == View::SavedPlots ? OpenSavedPlot() : NewPlot();
}

void Browser::Back() {
    if (m_area || m_anchor > 0) {
        m_area.reset();
        m_anchor = 0;
    } else if (m_view != View::Plot) {
        m_view = View::Plot;
    } else if (m_isInList && !m_list.SearchedText().empty()) {
        m_list.Search({});
    } else if (m_plots.size() > 1) {
        m_plots.pop_back();
        m_cursor = 0;
        Refresh();
    } else {
        End();
    }
}

void Browser::MoveUp(int by) {
    if (m_view == View::SavedPlots)
        m_chosen = std::clamp(m_chosen - by, 0, static_cast<int>(m_names.size()) - 1);
    else if (m_isInList)
        m_list.Move(-by);
    else if (m_view == View::Table || std::abs(by) > 1)
        MoveCursor(-by);
    else
        StepTo(SteppedPart::Model, by < 0);
}

void Browser::Highlight(int row) {
    m_isInList = true;
    m_list.HighlightRow(row);
}

BrowsedPlot const &Browser::Shown() const {
    if (!Plot())
        throw Problem(ExceptionMessage::translate("There is no plot: Enter makes one of the highlighted vector."));
    return *Plot();
}

void Browser::Show(Selection selection, PictureSettings const &settings) {
    m_plots.push_back(std::make_unique<BrowsedPlot>(m_project, std::move(selection), settings));
    if (m_plots.size() > mostPlots)
        m_plots.erase(m_plots.begin());
    m_view = View::Plot;
    m_firstColumn = 1;
    // The cursor stays on its item.
    bool const areOthers =
        m_plots.size() < 2 || Shown().Table().GetColumnIDs() != (*std::prev(m_plots.end(), 2))->Table().GetColumnIDs();
    if (areOthers)
        m_cursor = 0;
    Refresh();
}

// The picture stays as it was, but for a title that no longer fits.
void Browser::Replace(Selection selection) {
    PictureSettings settings = Shown().Settings();
    settings.style.title.clear();
    m_plots.back() = std::make_unique<BrowsedPlot>(m_project, std::move(selection), settings);
    Refresh();
    Tell(Shown().Title());
}

void Browser::Refresh() {
    m_area.reset();
    m_anchor = 0;
    ColumnIDs const &items = Shown().Table().GetColumnIDs();
    m_marks = MarkedAmong(items);
    m_marks.resize(static_cast<std::size_t>(items.Size()));
    m_cursor = std::clamp(m_cursor, 0, Shown().Points().Items());
    m_firstColumn = std::clamp(m_firstColumn, 1, Shown().Table().Rows());
    m_labels = std::min(m_labels, Shown().Points().NumberOfLabels());
}

ProjectVectorData Browser::Highlighted(SelectDataSeriesData const &selection) const {
    ProjectVector const *const vector = m_list.Vector();
    if (!vector)
        throw Problem(ExceptionMessage::translate("There is no vector in the list: / searches, [ and ] change its "
                                                  "source."));
    if (vector->GetType() != selection.GetVectorType())
        throw Problem(ExceptionMessage::translate("{1} has one value for each {2}, the plot one for each {3}.") %
                      vector->GetName() % ItemOf(vector->GetType()) % ItemOf(selection.GetVectorType()));
    return DefaultSpecification(*vector, *m_list.GetSource(), *selection.GetDefaultSelection());
}

void Browser::NewPlot() {
    ProjectVector const *const vector = m_list.Vector();
    auto selection = std::make_unique<SelectDataSeriesData>(
        m_project, SelectDataSeriesData::Normal, vector ? vector->GetType() : ProjectVector::VectorTypeVariablesScores,
        -1, ProjectVector::ObsAndPred);
    selection->AddSeries(Highlighted(*selection), false);
    Show(std::move(selection));
}

void Browser::AddSeries() {
    if (!Plot())
        return NewPlot();
    Selection selection = Copy();
    selection->AddSeries(Highlighted(*selection), false);
    Replace(std::move(selection));
}

void Browser::UseAsAxis() {
    Selection selection = Copy();
    ProjectVectorData const axis = Highlighted(*selection);
    selection->SetMode(WithX(*selection, true));
    selection->SetXAxis(axis);
    Replace(std::move(selection));
}

void Browser::UseDefaultAxis() {
    Selection selection = Copy();
    if (selection->NumberOfSeries() == 0)
        throw Problem(ExceptionMessage::translate("The plot has no series that the X axis could go with."));
    selection->SetMode(WithX(*selection, true));
    if (selection->GetVectorType() == ProjectVector::VectorTypeObservationsLoadings)
        SetDefaultLoadingNumAxis(selection.get(), selection->GetSeries(1));
    else
        SetDefaultScoreNumAxis(selection.get(), selection->GetSeries(1));
    Replace(std::move(selection));
}

void Browser::TakeAxis() {
    Selection selection = Copy();
    selection->SetMode(WithX(*selection, false));
    Replace(std::move(selection));
}

void Browser::DeleteSeries() {
    Selection selection = Copy();
    if (selection->VectorsInUse().size() < 2 || !selection->RemoveSeries(selection->NumberOfSeries()))
        throw Problem(ExceptionMessage::translate("The last series stays."));
    Replace(std::move(selection));
}

void Browser::ShowEachSeries() {
    std::vector<boost::shared_ptr<SelectDataSeriesData>> selections;
    DataSeriesUtilities::CreateMultipleDataSeries(Shown().GetSelection(), selections);
    if (selections.size() < 2)
        throw Problem(ExceptionMessage::translate("The plot has one series only."));
    // The first one comes last, so that it is the one that is shown.
    for (auto selection = selections.rbegin(); selection != selections.rend(); ++selection)
        Show(std::make_unique<SelectDataSeriesData>(**selection));
    Tell(std::to_string(selections.size()) + " plots: q leads from each to the next.");
}

// The list follows the model.
void Browser::StepTo(SteppedPart part, bool forward) {
    if (m_view == View::Table && part == SteppedPart::Series)
        return ScrollTable(forward ? 1 : -1);
    Selection selection = Copy();
    bool const isModel = part == SteppedPart::Model;
    if (!Step(*selection, part, forward))
        return Tell(isModel ? "There is no other model that way." : "There is nothing here to step over.");
    if (*selection == Shown().GetSelection())
        return Tell("There is nothing behind that.");
    Replace(std::move(selection));
    if (isModel)
        m_list.UseModel(Shown().GetSelection().GetCurrentModel());
}

void Browser::ShowBatchOrAll() {
    Selection selection = Copy();
    ColumnIDs const &columns = Shown().Table().GetColumnIDs();
    BoolVector items = selection->GetSelectObjects();
    if (selection->NumSelectObjects() < items.Size()) {
        for (int item = 1; item <= items.Size(); ++item)
            items(item) = true;
        selection->SetSelectObjects(items);
        return Replace(std::move(selection));
    }
    std::list<int> const cursor = {std::max(m_cursor, 1)};
    std::string const batch = ProjectUtilities::CreateBatchStrColumnIDs(columns, &cursor).GetName(1);
    if (batch.empty() || selection->SelectBatches({batch}) != SelectDataSeriesData::ItemsSelected)
        throw Problem(ExceptionMessage::translate("The items of the plot are not those of batches."));
    Replace(std::move(selection));
    Tell("Batch " + batch);
}

void Browser::PutCursor(int item) {
    m_cursor = std::clamp(item, 0, Shown().Points().Items());
    if (m_cursor > 0)
        Tell(Shown().Told(m_cursor, m_labels));
}

void Browser::MoveCursor(int by) {
    PutCursor(std::max(m_cursor + by, 1));
}

void Browser::StartOrEndArea() {
    if (Shown().Points().Items() == 0)
        return;
    if (m_cursor == 0)
        PutCursor(1);
    if (m_anchor == 0) {
        m_area.reset();
        m_anchor = m_cursor;
        Tell("The rectangle begins: , and . move its other corner.");
        return;
    }
    m_area = GetArea();
    m_anchor = 0;
    Tell(std::to_string(Shown().Points().Inside(*m_area).size()) + " in the rectangle");
}

std::optional<Area> Browser::GetArea() const {
    return m_anchor > 0 && Plot() ? std::optional(Plot()->Points().Between(m_anchor, m_cursor)) : m_area;
}

void Browser::Mark(MarkedColumnIDsManager::MarkMode mode) {
    PlotPoints const &points = Shown().Points();
    std::optional<Area> const area = GetArea();
    std::vector<int> items = area ? points.Inside(*area) : std::vector<int>();
    if (!area && m_cursor > 0)
        items.push_back(m_cursor);
    if (items.empty())
        throw Problem(ExceptionMessage::translate("There is nothing to mark: , and . put the cursor on an item, Space "
                                                  "begins a rectangle."));
    m_history.Mark(Shown().Table().GetColumnIDs(), items, mode);
    TellMarks(true);
}

void Browser::TellMarks(bool isDone) {
    if (!isDone)
        return Tell("There is nothing more.");
    m_hasNewMarks = true;
    Refresh();
    boost::shared_ptr<ColumnIDs const> const marked = m_history.Marked();
    Tell(std::to_string(marked ? marked->Size() : 0) + " marked, " + std::to_string(std::ranges::count(m_marks, true)) +
         " of them here");
}

// Of plots that start none, and where the model has them, the variables behind the scores.
void Browser::ShowContribution() {
    Selection const selection = Copy();
    boost::shared_ptr<ColumnIDs const> const marked = m_history.Marked(), before = m_history.MarkedBefore();
    if (!marked || marked->Size() == 0 || !AreRows(*marked))
        throw Problem(ExceptionMessage::translate("No observations are marked: m marks them."));
    int const model = selection->GetCurrentModel();
    if (model < 1)
        throw Problem(ExceptionMessage::translate("The plot is not of one model."));
    bool const isPredicted = selection->HasPredictedVectors();
    ContributionDataBuilder::Group from, to;
    ColumnIDs const *const reference = before && AreRows(*before) ? before.get() : nullptr;
    if (!ContributionDataBuilder::GetObservationVectors(selection.get(), isPredicted, model, marked.get(), reference,
                                                        from, to))
        throw Problem(ExceptionMessage::translate("Batches that are marked have no contribution to this plot."));
    ContributionDataBuilder::SelectionPtr contribution =
        ContributionDataBuilder::CreateContributionDataSeries(selection.get(), from, to, isPredicted);
    if (!contribution)
        contribution =
            ContributionDataBuilder(*m_project, isPredicted, true).CreateScoreContributionDataSeries(model, from, to);
    Show(std::make_unique<SelectDataSeriesData>(*contribution));
    Tell(reference ? "What is marked, held against what was marked before"
                   : "What is marked, held against the average");
}

void Browser::AskForSearch() {
    m_isInList = true;
    m_prompt = Prompt{"/", m_list.SearchedText(), &Browser::SearchTo, &Browser::SearchTo};
}

void Browser::AskForName() {
    Shown();
    m_prompt = Prompt{"Save the plot as: ", {}, &Browser::SaveAs};
}

void Browser::SaveAs(std::string const &name) {
    if (!m_project->HasPlot(name))
        return Save(name);
    m_name = name;
    m_prompt = Prompt{"There is a plot \"" + name + "\" already. Replace it (y/n)? ", {}, &Browser::ReplaceIfAgreed};
}

void Browser::ReplaceIfAgreed(std::string const &answer) {
    answer == "y" ? Save(m_name) : Tell("The plot is not saved.");
}

void Browser::KeepMarks() {
    if (m_hasNewMarks)
        WriteMarks(engine::Project::OpenToWrite(m_path));
}

void Browser::Save(std::string const &name) {
    BrowsedPlot const &plot = Shown();
    engine::Project::OpenToWrite(m_path)->SavePlot(name, PlotText(plot.GetSelection(), plot.Items(), plot.Settings()));
    Tell("The plot is saved as \"" + name + "\".");
}

void Browser::AskForPicture() {
    Shown();
    m_prompt = Prompt{"Write the picture into (.svg or .png): ", {}, &Browser::WritePictureTo};
}

void Browser::WritePictureTo(std::string const &file) {
    PictureSettings settings = Shown().Settings();
    settings.style.isPng = IsPng(file);
    WritePicture(Shown().Built().Script(settings), file, m_path);
    Tell(file + " is written.");
}

void Browser::ListSavedPlots() {
    m_names = m_project->PlotNames();
    if (m_names.empty())
        return Tell("The project has no saved plots: s saves one.");
    m_chosen = 0;
    m_view = View::SavedPlots;
}

void Browser::OpenSavedPlot() {
    m_view = View::Plot;
    std::string const &name = m_names[static_cast<std::size_t>(m_chosen)];
    SavedPlot saved = ReadPlot(m_project, m_project->Plot(name));
    Show(std::move(saved.selection), saved.settings);
    Tell(saved.losses.empty() ? "\"" + name + "\"" : saved.losses.front());
}

void Browser::CycleLabels() {
    m_labels = (m_labels + 1) % (Shown().Points().NumberOfLabels() + 1);
    Tell(m_labels == 0 ? "No labels" : "Labels: " + Shown().Table().GetColumnIDs().GetRowTitle(m_labels));
}

void Browser::ScrollTable(int by) {
    m_firstColumn = std::clamp(m_firstColumn + by, 1, Shown().Table().Rows());
}
