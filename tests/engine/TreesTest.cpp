// Trees of PLS models.

#include "platform/text/Exception.h"
#include "tests/engine/SmallProject.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace {

using namespace small;
using engine::TreeNode;
using engine::TreeRequest;

constexpr int rows = 40;

// Two groups with responses of their own, one after the other; in row 7, if asked for, nothing is observed.
std::string Groups(bool hasGaps = false) {
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0, 1);
    std::ostringstream text;
    text << "id,site,x1,x2,x3,y\n";
    for (int i = 1; i <= rows; ++i) {
        bool const isFirst = i % 2 == 0;
        double const x1 = (isFirst ? 0 : 9) + noise(random), x2 = noise(random), x3 = noise(random);
        double const y = x1 + (isFirst ? x2 : -x2) + noise(random) / 5;
        text << 'o' << i << ",s" << i % 4;
        if (hasGaps && i == 7)
            text << ",,,";
        else if (hasGaps && !isFirst) // a variable of one group alone
            text << ',' << x1 << ',' << x2 << ',';
        else
            text << ',' << x1 << ',' << x2 << ',' << x3;
        text << ',' << y << '\n';
    }
    return text.str();
}

TreeRequest Request(int depth, int smallest = 0) {
    TreeRequest request;
    request.model.type = ModelTypeE::PLS;
    request.model.responses = {"y"};
    request.model.components = 2;
    request.model.crossValidationIdentifier = "site";
    request.depth = depth;
    request.properties.smallest = smallest;
    return request;
}

class Trees : public testing::Test {
protected:
    explicit Trees(std::string const &text = Groups()) : m_project(Project::Create(m_folder / "tree.dsp")) {
        m_project->AddDataSet(Read(text.c_str()));
    }

    TablePtr Table(std::string const &text) const {
        return ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, Scores);
    }
    std::vector<std::uint32_t> RowsOf(int model) const {
        std::vector<std::uint32_t> numbers;
        auto const workset = m_project->GetWorkset(model);
        for (ObservationInfo const &row : workset->GetObservations())
            numbers.push_back(row.GetUniqueID());
        return numbers;
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

// Read again, the models below a model share its observations: below the cut are those with the smaller t_1, and the
// cut is where its function is least.
TEST_F(Trees, CutWhereTheFunctionIsLeast) {
    EXPECT_EQ(m_project->AddTree(Request(2)), (std::vector{1, 2, 3, 4, 5, 6, 7}));
    m_project.reset();
    m_project = Project::OpenToRead(m_folder / "tree.dsp");
    std::vector<TreeNode> const nodes = m_project->TreeOf(6);
    ASSERT_EQ(nodes.size(), 7u);
    EXPECT_EQ(nodes[1].observations, rows / 2); // the groups
    int const parents[] = {0, 1, 2, 2, 1, 5, 5}, depths[] = {0, 1, 2, 2, 1, 2, 2};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        TreeNode const &node = nodes[i];
        EXPECT_EQ(node.model, static_cast<int>(i) + 1);
        EXPECT_EQ(node.parent, parents[i]);
        EXPECT_EQ(node.depth, depths[i]);
        EXPECT_EQ(static_cast<int>(RowsOf(node.model).size()), node.observations);
        auto const below = std::ranges::find(nodes, node.model, &TreeNode::parent);
        EXPECT_EQ(below == nodes.end(), node.below == 0);
        if (below == nodes.end())
            continue;
        auto const above = std::find_if(
            below + 1, nodes.end(), [&](TreeNode const &each) { return each.parent == node.model && each.isAbove; });
        EXPECT_FALSE(below->isAbove);
        EXPECT_EQ(below->observations, node.below);
        EXPECT_EQ(below->observations + above->observations, node.observations);
        std::string const source = " M" + std::to_string(node.model);
        TablePtr const weights = Table("PLSTreeCutFunction" + source + ",0,0,0");
        auto const values = weights->GetMatrix().Row(1);
        auto const isLess = [](float a, float b) { return !IsMissing(a) && (IsMissing(b) || a < b); };
        EXPECT_EQ(std::ranges::min(values, isLess), node.weight);
        // Five, or a quarter.
        EXPECT_EQ(std::ranges::count_if(values, [](float value) { return !IsMissing(value); }),
                  node.observations - 2 * std::min(5, node.observations / 4) + 1);
        TablePtr const scores = Table("t" + source + ",1,0,0");
        std::vector<std::uint32_t> smaller;
        for (int column = 1; column <= scores->Columns(); ++column)
            if (scores->GetMatrix()(1, column) < node.score)
                smaller.push_back(scores->GetColumnIDs().GetColumnID(column));
        EXPECT_EQ(smaller, RowsOf(below->model));
    }
}

// A model of a tree is the one that its observations alone give.
TEST_F(Trees, HaveOrdinaryModels) {
    m_project->AddTree(Request(1));
    ModelRequest alone = Request(1).model;
    for (std::uint32_t const row : RowsOf(3))
        alone.excluded.push_back(m_project->GetObservations().GetText(row, 1));
    int const model = m_project->AddModel(alone);
    for (char const *const vector : {"t M%,2,0,0", "YPred M%,2,1,0,1,1", "DModX M%,1,0,0"}) {
        auto const of = [&](int number) {
            return Table(std::string(vector).replace(std::string(vector).find('%'), 1, std::to_string(number)));
        };
        TablePtr const inTree = of(2);
        ASSERT_TRUE(inTree) << vector;
        EXPECT_EQ(inTree->GetMatrix(), of(model)->GetMatrix()) << vector;
    }
    GetProjectData const statistics(*m_project);
    EXPECT_EQ(statistics.GetQ2Cum(2)->GetMatrix(), statistics.GetQ2Cum(model)->GetMatrix());
    EXPECT_THROW(m_project->TreeOf(model), NCError);
}

TEST_F(Trees, EndAtDepthAndSmallestPart) {
    struct {
        int depth, smallest;
        std::size_t models;
    } const cases[] = {{0, 0, 1}, {1, 0, 3}, {5, 20, 3}, {5, 21, 1}, {9, 10, 7}};
    int last = 0;
    for (auto const &c : cases) {
        std::vector<int> const numbers = m_project->AddTree(Request(c.depth, c.smallest));
        EXPECT_EQ(numbers.size(), c.models) << c.depth << ' ' << c.smallest;
        EXPECT_EQ(numbers.front(), last + 1);
        last = numbers.back();
        EXPECT_EQ(m_project->TreeOf(last).size(), c.models);
    }
    for (TreeNode const &node : m_project->TreeOf(m_project->AddTree(Request(9)).front()))
        EXPECT_GE(node.observations, 2);
}

TEST_F(Trees, AreStoredWholeOrNotAtAll) {
    std::vector<double> fractions;
    engine::Progress const progress([&](double done) {
        fractions.push_back(done);
        return done < 0.5;
    });
    EXPECT_THROW(m_project->AddTree(Request(2), progress), engine::Cancelled);
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_GT(fractions.size(), 1u);
    EXPECT_EQ(m_project->GetNumberOfModels(), 0);
    TreeRequest other = Request(2);
    other.model.type = ModelTypeE::OPLS;
    EXPECT_THROW(m_project->AddTree(other), NCError);
    other.model.type = ModelTypeE::PLS;
    other.model.dataSet = 9;
    EXPECT_THROW(m_project->AddTree(other), NCError);
}

struct TreesWithGaps : Trees {
    TreesWithGaps() : Trees(Groups(true)) {}
};

// The observation without values of X has no score, and the part without x3 could have no model.
TEST_F(TreesWithGaps, AreNotCutWhereAVariableIsLost) {
    EXPECT_EQ(m_project->AddTree(Request(3)).size(), 1u);
    TreeRequest without = Request(1);
    without.model.excluded = {"x3"};
    std::vector<TreeNode> const nodes = m_project->TreeOf(m_project->AddTree(without).front());
    ASSERT_EQ(nodes.size(), 3u);
    EXPECT_EQ(nodes[1].observations + nodes[2].observations, rows - 1);
}

} // namespace
