#include "navigation/Transformations.h"
#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/SmallProject.h"

namespace {

using namespace small;
using Selection = SelectDataSeriesData;
using Type = TransformationData;

// Of models with 40 observations; X and Y axis, - where there is none, and the series: t and u scores, p loadings, n
// the counting row, i identifiers, q predicted scores of three.
class RestoredTransformation : public testing::Test {
protected:
    RestoredTransformation() {
        std::string table = "id,x1,x2,y\n";
        for (int row = 1; row <= 40; ++row)
            table += "r" + std::to_string(row) + ',' + std::to_string(row * row % 17) + ',' +
                     std::to_string(row * 7 % 13) + ',' + std::to_string(row % 11) + '\n';
        m_project->AddDataSet(Read(table));
        AddModel(*m_project, {ModelTypeE::PLS, {"y"}, {}, 2}, "id,x1,x2,y\na,1,2,3\nb,4,5,6\nc,7,1,2\n");
    }

    ProjectVectorData Data(char letter) const {
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        ProjectVectorData data;
        data.SetProjectVector(letter == 'n' ? handler.GetNumVector(Scores)
                                            : handler.FindVector(letter == 't'   ? "t"
                                                                 : letter == 'u' ? "u"
                                                                 : letter == 'p' ? "p"
                                                                 : letter == 'q' ? "tPS"
                                                                                 : "ObsID",
                                                                 letter == 'p' ? Loadings : Scores,
                                                                 ProjectVector::DataTypeModel, nullptr));
        data.SetModelInfoPtr(m_project->GetModelInfo(1));
        data.SetComponent(1);
        return data;
    }

    Selection Make(std::string const &letters) const {
        int const mode = (letters[0] != '-' ? 1 : 0) + (letters[1] != '-' ? 2 : 0);
        Selection selection(m_project, static_cast<Selection::Mode>(mode), Scores, -1, ProjectVector::ObsAndPred);
        selection.SetXAxis(Data(letters[0]));
        selection.SetYAxis(Data(letters[1]));
        for (char const letter : letters.substr(2))
            selection.AddSeries(Data(letter), false);
        return selection;
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project = Project::Create(m_folder / "t.dsp");
};

TEST_F(RestoredTransformation, StaysWhereItCanBeBuilt) {
    // Operands: the one to correlate with or to subtract, and the divisor.
    struct {
        char const *vectors;
        Type::TransformationType type;
        char const *operands;
        int size;
        bool stays;
    } const cases[] = {
        {"n-t", Type::AutoCorrelation, "", 0, true},
        {"n-n", Type::AutoCorrelation, "", 0, false},
        {"n-i", Type::R2X, "", 0, false},
        {"n-t", Type::R2X, "", 0, true},
        {"t-u", Type::Normalize, "", 0, true},
        {"n-tu", Type::AutoCorrelation, "", 0, true},
        {"n-t", Type::CrossCorrelation, "u", 0, true},
        {"n-t", Type::CrossCorrelation, "", 0, false},
        {"n-t", Type::CrossCorrelation, "p", 0, false},
        {"n-t", Type::CrossCorrelation, "n", 0, false},
        {"n-t", Type::SubtractVector, "u", 0, true},
        {"n-t", Type::SubtractVector, "p", 0, false},
        {"n-t", Type::SubtractAndDivideVector, "ut", 0, true},
        {"n-t", Type::SubtractAndDivideVector, "u", 0, false},
        {"n-t", Type::SubtractAndDivideVector, "pt", 0, false},
        {"n-t", Type::PowerSpectrum, "", 16, true},
        {"n-t", Type::PowerSpectrum, "", 64, true}, // halved
        {"n-t", Type::PowerSpectrum, "", 8, false},
        {"n-q", Type::PowerSpectrum, "", 16, false},
        {"n-t", Type::EWMA, "", 20, true},
        {"n-t", Type::EWMA, "", 21, false},
        {"n-q", Type::EWMA, "", 1, true},
        {"n-q", Type::EWMA, "", 2, false},
        {"n-t", Type::WaveletCoefficients, "", 0, true},
        {"n-t", Type::WaveletStructure, "", 0, false},
        {"n-t", Type::WaveletStructure, "", 3, true},
        {"n-t", Type::Histogram, "", 0, true},
        {"i-t", Type::Histogram, "", 0, true},
        {"n-tu", Type::Histogram, "", 0, false},
        {"t-u", Type::Dotplot, "", 0, false},
        {"--t", Type::Dotplot, "", 0, true},
    };
    for (auto const &row : cases) {
        SCOPED_TRACE(std::string(row.vectors) + ' ' + std::to_string(row.type) + row.operands);
        Selection selection = Make(row.vectors);
        TransformationData settings;
        settings.SetTransformationType(row.type);
        settings.SetSegmentSize(row.size);
        settings.SetSampleSize(row.size);
        settings.SetWCEnergySelection(BoolVector(row.size));
        if (row.operands[0])
            settings.SetCrossVector(Data(row.operands[0]));
        if (row.operands[0] && row.operands[1])
            settings.GetDivideVector() = Data(row.operands[1]);
        DataSeriesUtilities::ValidateTransformationType(&selection, settings);
        EXPECT_EQ(settings.GetTransformationType() == row.type, row.stays);
        if (!row.stays)
            continue;
        selection.SetTransformationData(settings);
        TablePtr const table(ProjectDataUtilities::ProjectDataBuilder(&selection).Build());
        ASSERT_NE(table, nullptr);
        EXPECT_GT(ProjectDataUtilities::ProjectDataBuilder(&selection).BuildColumnIDs().Size(), 0);
    }
}

TEST_F(RestoredTransformation, MayBecomeAHistogram) {
    Selection selection = Make("--");
    for (auto const &[vectors, expected] : std::initializer_list<std::pair<char const *, bool>>{{"--", true},
                                                                                                {"--t", true},
                                                                                                {"n-t", true},
                                                                                                {"i-t", false},
                                                                                                {"nnt", true},
                                                                                                {"ntt", false},
                                                                                                {"--tu", false}}) {
        selection = Make(vectors);
        EXPECT_EQ(DataSeriesUtilities::CanHistogramTransform(&selection), expected) << vectors;
    }
    TransformationData settings;
    settings.SetTransformationType(Type::Histogram);
    selection.SetTransformationData(settings);
    EXPECT_TRUE(DataSeriesUtilities::CanHistogramTransform(&selection));
}

} // namespace
