#pragma once

#include "catalogue/ProjectVectorHandler.h"
#include "contribution/ContributionDataBuilder.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Observations 1 to 8 in batches A A A B B B C C. Model 1 PLS with 3 components and 2 responses, 2 PCA with 2, 3 OPLS
// with 1 and 2 orthogonal ones, 4 PLS without any, 5 of batches with 2. Models 1 and 5 have predictions.
struct Plant {
    using Builder = ContributionDataBuilder;
    using Group = Builder::Group;

    boost::shared_ptr<RecordingProject> project = MakeRecordingProject();

    Plant() {
        project->observations.AddAlias({"id", "", VarObs::Role::Plain, {"1", "2", "3", "4", "5", "6", "7", "8"}});
        project->observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "A", "B", "B", "B", "C", "C"}});
        project->variables.AddAlias({"name", "", VarObs::Role::Plain, {"v1", "v2", "v3", "v4", "v5", "v6"}});
        project->AddModel(ModelTypeE::PLS, 3, 0, 0, 3, 2);
        project->AddModel(ModelTypeE::PCA, 2);
        project->AddModel(ModelTypeE::OPLS, 1, 2, 0, 3, 1);
        project->AddModel(ModelTypeE::PLS, 0, 0, 0, 3, 1);
        project->AddBatchModel(2, {"A", "B"});
        for (int model = 1; model <= 5; ++model)
            project->AddWorkset(model, {3, 1, 2, 5, 4, 6}, {1, 2, 3});
        project->Model(5).maturity = {10, 20, 30, 10.5f, 20, 30};
        project->AddPredictions(1, {8, 7, 2});
        project->AddPredictions(5, {8, 7, 2}, {1, 2, 3});
    }

    // A series of a vector, which is there under that name on some axis.
    ProjectVectorData Series(char const *vector, int model, int component = -1) const {
        ProjectVectorData data;
        boost::shared_ptr<ModelInfo const> const info = project->GetModelInfo(model);
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(vector, ProjectVector::VectorTypeNone,
                                                                           ProjectVector::DataTypeNone, info.get()));
        data.SetModelInfoPtr(info);
        data.SetComponent(component);
        return data;
    }
    SelectDataSeriesData Selection(std::vector<ProjectVectorData> const &series,
                                   SelectDataSeriesData::Mode mode = SelectDataSeriesData::Normal) const {
        SelectDataSeriesData selection(project, mode, series.front().GetProjectVector()->GetType(), -1,
                                       ProjectVector::ObsAndPred);
        for (ProjectVectorData const &data : series)
            selection.AddSeries(data, false);
        return selection;
    }
};

// The one series of a selection, with a letter for each flag; "null" without a selection.
inline std::string TextOf(ContributionDataBuilder::SelectionPtr const &selection) {
    if (!selection)
        return "null";
    EXPECT_EQ(selection->NumberOfSeries(), 1);
    ProjectVectorData const &data = selection->GetSeries(1);
    return data.ToStdString(selection->GetDefaultSelection().get()) + (data.alignedMaturity1 ? " 1" : "") +
           (data.alignedMaturity2 ? " 2" : "");
}

template <typename Function>
std::string MessageOf(Function function) {
    try {
        function();
    } catch (std::exception const &error) {
        return error.what();
    }
    return "nothing";
}
