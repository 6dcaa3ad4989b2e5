#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectDataSeriesPointer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Selection = SelectDataSeriesData;

std::unique_ptr<Selection> New() {
    return std::make_unique<Selection>(nullptr, Selection::Normal, ProjectVector::VectorTypeNone, -1,
                                       ProjectVector::ObsAndPred);
}

// Counts what it hears, and its farewells.
class Listener final : public SelectDataSeriesListener {
public:
    explicit Listener(std::string *order = nullptr, char name = 'l') : m_order(order), m_name(name) {}

    int heard = 0;
    int farewells = 0;

    void OnChangedProjectData() override {
        ++heard;
        if (m_order)
            *m_order += m_name;
    }
    void Disconnect() override {
        ++farewells;
        SelectDataSeriesListener::Disconnect();
    }

private:
    std::string *m_order;
    char m_name;
};

} // namespace

TEST(Listener, HearsOfOneSubject) {
    auto const one = New(), other = New();
    Listener listener;
    one->AddListener(&listener);
    one->AddListener(&listener);
    one->UpdateProjectData();
    EXPECT_EQ(listener.heard, 1);
    other->AddListener(&listener); // leaves the first
    EXPECT_EQ(listener.farewells, 1);
    one->UpdateProjectData();
    other->UpdateProjectData();
    EXPECT_EQ(listener.heard, 2);
    one->RemoveListener(&listener); // is not there, and is told so all the same
    EXPECT_EQ(listener.farewells, 2);
    other->DisconnectListeners();
    EXPECT_EQ(listener.farewells, 3);
    other->UpdateProjectData();
    EXPECT_EQ(listener.heard, 2);
    {
        Listener shortLived;
        other->AddListener(&shortLived);
    }
    other->UpdateProjectData(); // the dead one is gone from the list
    Listener last;
    {
        auto const dying = New();
        dying->AddListener(&last);
        Listener const copy(last); // hears nothing; removes itself at its end
        dying->UpdateProjectData();
        EXPECT_EQ(std::pair(last.heard, copy.heard), std::pair(1, 0));
    }
    EXPECT_EQ(last.farewells, 1);
}

TEST(Listener, IsToldInOrderAndBeforeTheSignal) {
    auto const selection = New();
    std::string order;
    Listener first(&order, '1'), second(&order, '2');
    selection->AddListener(&first);
    selection->AddListener(&second);
    auto const connection = selection->ConnectProjectData([&order] { order += 's'; });
    auto const options = selection->ConnectOptions([&order] { order += 'o'; });
    selection->UpdateProjectData();
    EXPECT_EQ(order, "12s");
    selection->UpdateAddSeries(ProjectVectorData());
    selection->UpdateListeners(ProjectVector::VectorTypeLag);
    EXPECT_EQ(order, "12s");
    std::unique_ptr<Selection> const copy(selection->Copy());
    copy->UpdateProjectData();
    copy->SetLimits(true);
    EXPECT_EQ(order, "12s");
    *selection = *New(); // listeners and connections stay
    selection->UpdateProjectData();
    selection->SetLimits(true);
    EXPECT_EQ(order, "12s12so");
    connection.disconnect();
    selection->UpdateProjectData();
    EXPECT_EQ(order, "12s12so12");
}

// What a listener is told is good whatever it does to the selection.
TEST(Listener, MayAddAndChangeSeriesWhileItIsTold) {
    class Busy final : public SelectDataSeriesListener {
    public:
        explicit Busy(Selection &selection) : m_selection(selection) { m_selection.AddListener(this); }
        std::vector<int> told;

        void OnAddSeries(ProjectVectorData const &series) override {
            if (m_selection.NumberOfSeries() < 40) {
                ProjectVectorData next;
                next.selCV = m_selection.NumberOfSeries();
                m_selection.AddSeries(next, false);
                m_selection.InsertSeries(1, m_selection.GetSeries(1));
                m_selection.SetSeries(1, next);
            }
            told.push_back(series.selCV);
        }

    private:
        Selection &m_selection;
    };
    auto const selection = New();
    selection->SetMaximumNumberOfSeries(-5); // no limit
    Busy listener(*selection);
    ProjectVectorData first;
    first.selCV = 77;
    EXPECT_TRUE(selection->AddSeries(first, false));
    EXPECT_TRUE(selection->AddSeries(selection->GetSeries(1), false));
    EXPECT_EQ(std::count(listener.told.begin(), listener.told.end(), 77), 2); // and once more for its copy
    EXPECT_EQ(static_cast<int>(listener.told.size()), selection->NumberOfSeries());
    EXPECT_THROW(selection->GetSeries(0), NCInternalError);
    EXPECT_THROW(selection->InsertSeries(selection->NumberOfSeries() + 2, first), NCInternalError);
}

TEST(Pointer, TurnsNullWithItsSelection) {
    auto selection = New(), other = New();
    SelectDataSeriesPointer pointer(selection.get()), assigned, second(selection.get());
    EXPECT_EQ(assigned.Get(), nullptr);
    assigned = pointer;
    EXPECT_EQ(assigned.Get(), selection.get());
    EXPECT_EQ(assigned->GetMode(), Selection::Normal);
    second = other.get();
    assigned = assigned.Get(); // the same again
    SelectDataSeriesPointer *const copy = new SelectDataSeriesPointer(pointer);
    EXPECT_EQ(static_cast<Selection *>(*copy), selection.get());
    delete copy; // takes nobody else out of the list
    selection.reset();
    EXPECT_EQ(pointer.Get(), nullptr);
    EXPECT_EQ(assigned.Get(), nullptr);
    EXPECT_EQ(second.Get(), other.get());
    { SelectDataSeriesPointer const gone(other.get()); }
    pointer = other.get();
    second = nullptr;
    other.reset();
    EXPECT_EQ(pointer.Get(), nullptr);
}

TEST(Pointer, StaysWhereItWasCopied) {
    auto const selection = New();
    SelectDataSeriesPointer *const registered = new SelectDataSeriesPointer(selection.get());
    SelectDataSeriesPointer copy(*registered);
    selection->DisconnectListeners();
    EXPECT_EQ(registered->Get(), nullptr);
    EXPECT_EQ(copy.Get(), selection.get()); // not in the list
    delete registered;
}
