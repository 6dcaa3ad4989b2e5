#pragma once

#include "catalogue/Delegates_internal.h"

// A question about the batches of a model, and how each kind of operation on aligned batches takes it.
struct BatchQuestion {
    ProjectVector const &vector;
    ProjectPtr const &project;
    char const *args;
    ProjectVector::Arguments arguments;
    int model = -1; // -1 when there is nothing to ask

    BatchQuestion(ProjectVector const &vector, ProjectPtr const &project, char const *args)
        : vector(vector), project(project), args(args) {
        if (vector.ReadArguments(args, arguments))
            model = Common().Model();
    }

    Question Common() const { return {vector, project, arguments.source.c_str(), arguments.component}; }
    // There is something to ask, of at most as many components as the model has of all kinds.
    bool IsWithinModel() const { return model != -1 && Common().ModelUpTo(&ModelInfo::SizeComponents) != -1; }

    // The range of components of a T2; 0 and 0 stand for all of them.
    int First() const { return vector.UseNumberID2() ? static_cast<int>(arguments.number) : 0; }
    int Last() const { return vector.UseNumberID2() ? static_cast<int>(arguments.number2) : 0; }
};

// operation(model, component, more...)
template <typename... More>
TablePtr Ask(BatchQuestion const &asked, TablePtr (GetProjectData::*operation)(int, int, More...) const,
             std::type_identity_t<More>... more) {
    return (GetProjectData(*asked.project).*operation)(asked.model, asked.arguments.component, more...);
}

// operation(model, component, normalised, weighted, more...)
template <typename... More>
TablePtr Ask(BatchQuestion const &asked,
             TablePtr (GetProjectData::*operation)(int, int, TriState::State, TriState::State, More...) const,
             std::type_identity_t<More>... more) {
    return (GetProjectData(*asked.project).*operation)(asked.model, asked.arguments.component, TriState::Undefined,
                                                       TriState::Undefined, more...);
}

// operation(model, first, last, more...)
template <typename... More>
TablePtr Ask(BatchQuestion const &asked, TablePtr (GetProjectData::*operation)(int, int, int, More...) const,
             std::type_identity_t<More>... more) {
    return (GetProjectData(*asked.project).*operation)(asked.model, asked.First(), asked.Last(), more...);
}

// operation(model, unscaled, backTransformed, term, more...)
template <typename... More>
TablePtr Ask(BatchQuestion const &asked,
             TablePtr (GetProjectData::*operation)(int, bool, bool, ColumnTerm const &, More...) const,
             std::type_identity_t<More>... more) {
    ColumnTerms const terms = TermsOf(asked.Common(), asked.model, asked.arguments.number);
    return terms.Size() == 0
               ? nullptr
               : (GetProjectData(*asked.project).*operation)(asked.model, asked.arguments.unscaled,
                                                             asked.arguments.backTransformed, terms[1], more...);
}

// operation(model, component, unscaled, backTransformed, term, more...)
template <typename... More>
TablePtr Ask(BatchQuestion const &asked,
             TablePtr (GetProjectData::*operation)(int, int, bool, bool, ColumnTerm const &, More...) const,
             std::type_identity_t<More>... more) {
    ColumnTerms const terms = TermsOf(asked.Common(), asked.model, asked.arguments.number);
    return terms.Size() == 0
               ? nullptr
               : (GetProjectData(*asked.project).*operation)(asked.model, asked.arguments.component,
                                                             asked.arguments.unscaled, asked.arguments.backTransformed,
                                                             terms[1], more...);
}
