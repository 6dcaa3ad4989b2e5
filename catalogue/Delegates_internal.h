#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/GetProjectData.h"
#include "platform/NCProject.h"

// How most vectors get their numbers: the source text becomes a model number, the component is checked, and one
// operation of GetProjectData is called. Bad source or component gives nothing, without an error.

struct Question {
    ProjectVector const &vector;
    ProjectPtr const &project;
    char const *source;
    int component;
    int round = 0;

    // The model number; -1 when the source names no model or the component is below the vector's first one.
    int Model() const {
        bool const below =
            vector.GetComponentType() != ProjectVector::ComponentNone && component < vector.GetFirstComponent();
        return below ? -1 : ProjectVector::GetModelNumber(project, source);
    }
};

// operation(model, [component], more...)
template <typename... More>
TablePtr Deliver(Question const &question, TablePtr (GetProjectData::*operation)(int, IntList const *, More...) const,
                 std::type_identity_t<More>... more) {
    int const model = question.Model();
    IntList const components{question.component};
    return model == -1 ? nullptr : (GetProjectData(*question.project).*operation)(model, &components, more...);
}

// operation(model, component, more...)
template <typename... More>
TablePtr Deliver(Question const &question, TablePtr (GetProjectData::*operation)(int, int, More...) const,
                 std::type_identity_t<More>... more) {
    int const model = question.Model();
    return model == -1 ? nullptr : (GetProjectData(*question.project).*operation)(model, question.component, more...);
}

// operation(model, round, [component], more...)
template <typename... More>
TablePtr Deliver(Question const &question,
                 TablePtr (GetProjectData::*operation)(int, int, IntList const *, More...) const,
                 std::type_identity_t<More>... more) {
    int const model = question.Model();
    IntList const components{question.component};
    return model == -1 ? nullptr
                       : (GetProjectData(*question.project).*operation)(model, question.round, &components, more...);
}

// The columns, which have no component to check: operation(model, more...). None for a source that names no model.
template <typename... More>
ColumnIDs Labels(ProjectPtr const &project, char const *source,
                 ColumnIDs (GetProjectData::*operation)(int, More...) const, std::type_identity_t<More>... more) {
    int const model = ProjectVector::GetModelNumber(project, source);
    return model == -1 ? ColumnIDs(project) : (GetProjectData(*project).*operation)(model, more...);
}
