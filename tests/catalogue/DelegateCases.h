#pragma once

#include "catalogue/ProjectVectorHandler.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <span>
#include <string>

namespace delegates {

inline constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;
inline constexpr auto Loadings = ProjectVector::VectorTypeObservationsLoadings;
inline constexpr auto PerComponent = ProjectVector::VectorTypeComponent;

// Models 1 to 4: PCA, PLS, OPLS, O2PLS with two components of each kind that they have.
inline boost::shared_ptr<RecordingProject> FourModels() {
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 2);
    project->AddModel(ModelTypeE::PLS, 2, 0, 0, 3, 2);
    project->AddModel(ModelTypeE::OPLS, 2, 2, 0, 3, 2);
    project->AddModel(ModelTypeE::O2PLS, 2, 2, 2, 3, 2);
    return project;
}

inline ProjectVector const *FindFor(RecordingProject const &project, char const *name,
                                    ProjectVector::VectorTypeEnum type, char const *args) {
    auto const info = project.GetModelInfo(ProjectVector::GetModelNumber({}, args));
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found = handler.Find(name, type, ProjectVector::DataTypeModel, info.get());
    return found == handler.end() ? nullptr : *found;
}

// The call that a vector makes for an argument text, empty when it gives nothing without a call.
inline std::string CallOf(char const *name, ProjectVector::VectorTypeEnum type, char const *args) {
    auto const project = FourModels();
    ProjectVector const *const vector = FindFor(*project, name, type, args);
    if (!vector)
        return "no vector";
    bool const delivered = vector->CreateVectorRaw(project, args) != nullptr;
    std::string const call = project->source.Take();
    EXPECT_EQ(delivered, !call.empty()) << name << " " << args;
    return call;
}

struct DelegateCase {
    char const *name;
    ProjectVector::VectorTypeEnum type;
    char const *args;
    char const *call;
    char const *columns;
};

// Each vector asks the operations of its row, and tells its name in its help.
inline void ExpectCalls(std::span<DelegateCase const> cases,
                        boost::shared_ptr<RecordingProject> const &project = FourModels()) {
    for (DelegateCase const &row : cases) {
        ProjectVector const *const vector = FindFor(*project, row.name, row.type, row.args);
        ASSERT_NE(vector, nullptr) << row.name;
        EXPECT_NE(vector->CreateVectorRaw(project, row.args), nullptr) << row.name << ' ' << row.args;
        EXPECT_EQ(project->source.Take(), row.call);
        EXPECT_EQ(vector->CreateColumnIDsRaw(project, row.args).Size(), project->source.columns) << row.name;
        EXPECT_EQ(project->source.Take(), row.columns);
        EXPECT_EQ(vector->GetHelpString().find(std::string(row.name) + ": "), 0u) << row.name;
    }
}

} // namespace delegates
