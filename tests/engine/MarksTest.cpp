#include "tests/engine/SmallProject.h"
#include "utilities/MarkedColumnIDsManager.h"

using Marks = small::SmallProject;

// Observations that are marked in one plot, kept as bytes, and read when the project is opened again.
TEST_F(Marks, StayWithTheirObservationsInTheProjectThatIsReadAgain) {
    struct Manager : MarkedColumnIDsManager {
        std::string Names(std::string const &text) const {
            TablePtr const table =
                ProjectDataUtilities::CreateProjectData(*GetProject()).GetProjectData(text, small::Scores);
            ColumnIDs::Positions plotted, marked;
            table->GetColumnIDs().InterSection(*GetMarkedIDs(0), plotted, marked);
            std::string names;
            for (int const column : plotted)
                names += table->GetColumnName(column, 1);
            return names;
        }
    } out, in;
    std::stringstream stream;
    ColumnIDs const scores = Table("t M2,1,0,0", small::Scores)->GetColumnIDs();
    std::list<int> const listed{6, 2, 3};
    out.UpdateSelected(s_project, &scores, &listed, MarkedColumnIDsManager::MarkReplace, {});
    stream << out;
    auto const again = engine::Project::OpenToRead(*s_folder / "small.dsp");
    NCSignals::FireActiveProjectChanged(again.get());
    ASSERT_TRUE(stream >> in);
    EXPECT_EQ(in.Names("XVar M1,0,2,0,0,0,") + " " + in.Names("t M3,2,0,0"), "bcf bcf");
    NCSignals::FireObservationsPurged(*s_project, {2});
    EXPECT_EQ(in.Names("t M1,1,0,0"), "bcf");
    NCSignals::FireObservationsPurged(*again, {3, 4});
    EXPECT_EQ(in.Names("t M1,1,0,0"), "bf");
    NCSignals::FireModelDestroying(*again, 2);
    EXPECT_FALSE(in.HasMarkedIDs());
}
