#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/NCProject.h"

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

    // The same, and -1 too above the last component, by that count, and for a model that the project does not have.
    int ModelUpTo(int (ModelInfo::*last)() const) const {
        int const model = Model();
        boost::shared_ptr<ModelInfo const> const info = model < 1 ? nullptr : project->GetModelInfo(model);
        bool const above =
            vector.GetComponentType() != ProjectVector::ComponentNone && info && component > ((*info).*last)();
        return info && !above ? model : -1;
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

// operation(model), and operation(model, flag)
inline TablePtr Deliver(Question const &question, TablePtr (GetProjectData::*operation)(int) const) {
    int const model = question.Model();
    return model == -1 ? nullptr : (GetProjectData(*question.project).*operation)(model);
}

inline TablePtr Deliver(Question const &question, TablePtr (GetProjectData::*operation)(int, TriState::State) const,
                        TriState::State flag) {
    int const model = question.Model();
    return model == -1 ? nullptr : (GetProjectData(*question.project).*operation)(model, flag);
}

// The terms that a number names, none when there is nothing to ask.
inline ColumnTerms TermsOf(Question const &question, int model, unsigned long number) {
    ProjectVector::Arguments arguments;
    arguments.number = number;
    return model == -1 ? ColumnTerms() : question.vector.NamedTerms(*question.project, model, arguments);
}

// operation(model, component, terms, more...)
template <typename... More>
TablePtr DeliverTerm(Question const &question, unsigned long number,
                     TablePtr (GetProjectData::*operation)(int, int, ColumnTerms const *, More...) const,
                     std::type_identity_t<More>... more) {
    int const model = question.Model();
    ColumnTerms const terms = TermsOf(question, model, number);
    return terms.Size() == 0
               ? nullptr
               : (GetProjectData(*question.project).*operation)(model, question.component, &terms, more...);
}

// operation(model, terms, more...)
template <typename... More>
TablePtr DeliverTerm(Question const &question, unsigned long number,
                     TablePtr (GetProjectData::*operation)(int, ColumnTerms const *, More...) const,
                     std::type_identity_t<More>... more) {
    int const model = question.Model();
    ColumnTerms const terms = TermsOf(question, model, number);
    return terms.Size() == 0 ? nullptr : (GetProjectData(*question.project).*operation)(model, &terms, more...);
}

// Values of variables or observations: what their text says, and the items that it names.
template <typename Items>
struct ValueQuestion {
    int model = -1;
    ProjectVector::Arguments arguments;
    Items items;

    // The model stays -1 when there is nothing to ask.
    ValueQuestion(ProjectVector const &vector, ProjectPtr const &project, char const *args) {
        if (!vector.ReadArguments(args, arguments))
            return;
        int const asked = Question{vector, project, arguments.source.c_str(), arguments.component}.Model();
        if (asked == -1)
            return;
        if constexpr (std::is_same_v<Items, ColumnTerms>) {
            items = vector.NamedTerms(*project, asked, arguments);
            model = items.Size() == 0 ? -1 : asked;
        } else {
            for (int const number : ProjectVector::NamedNumbers(arguments))
                items.emplace_back(static_cast<std::uint32_t>(number));
            model = asked;
        }
    }
};

// operation(model, component, unscaled, backTransformed, items, more...)
template <typename Flag, typename Items, typename... More>
TablePtr DeliverValues(ProjectVector const &vector, ProjectPtr const &project, char const *args,
                       TablePtr (GetProjectData::*operation)(int, int, Flag, Flag, Items const *, More...) const,
                       std::type_identity_t<More>... more) {
    ValueQuestion<Items> const asked(vector, project, args);
    auto const &arguments = asked.arguments;
    return asked.model == -1 ? nullptr
                             : (GetProjectData(*project).*
                                operation)(asked.model, arguments.component, static_cast<Flag>(arguments.unscaled),
                                           static_cast<Flag>(arguments.backTransformed), &asked.items, more...);
}

// operation(model, unscaled, backTransformed, items, more...)
template <typename Flag, typename Items, typename... More>
TablePtr DeliverValues(ProjectVector const &vector, ProjectPtr const &project, char const *args,
                       TablePtr (GetProjectData::*operation)(int, Flag, Flag, Items const *, More...) const,
                       std::type_identity_t<More>... more) {
    ValueQuestion<Items> const asked(vector, project, args);
    auto const &arguments = asked.arguments;
    return asked.model == -1 ? nullptr
                             : (GetProjectData(*project).*operation)(asked.model, static_cast<Flag>(arguments.unscaled),
                                                                     static_cast<Flag>(arguments.backTransformed),
                                                                     &asked.items, more...);
}

// The columns, which have no component to check: operation(model, more...). None for a source that names no model.
template <typename... More>
ColumnIDs Labels(ProjectPtr const &project, char const *source,
                 ColumnIDs (GetProjectData::*operation)(int, More...) const, std::type_identity_t<More>... more) {
    int const model = ProjectVector::GetModelNumber(project, source);
    return model == -1 ? ColumnIDs(project) : (GetProjectData(*project).*operation)(model, more...);
}
