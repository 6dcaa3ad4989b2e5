#include "navigation/SelectionList.h"

#include "navigation/DataSeriesUtilities.h"
#include "navigation/SelectedNumbers.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <unordered_set>

namespace DataSeriesUtilities {

namespace {

// What all of them answer; `otherwise` when they differ, or there are none.
template <typename Question, typename Answer>
Answer Shared(SelectionList const &selections, Question question, Answer otherwise) {
    if (selections.empty())
        return otherwise;
    Answer const first = question(*selections.front());
    bool const agree = std::ranges::all_of(
        selections, [&](SelectDataSeriesData const *selection) { return question(*selection) == first; });
    return agree ? first : otherwise;
}

} // namespace

boost::shared_ptr<NCProject> GetProject(SelectionList const &selections) {
    return Shared(
        selections, [](SelectDataSeriesData const &selection) { return selection.GetProject(); },
        boost::shared_ptr<NCProject>());
}

int GetSeriesModel(SelectionList const &selections) {
    return Shared(
        selections, [](SelectDataSeriesData const &selection) { return selection.GetSeriesModel(); }, -1);
}

std::uint32_t GetSelectedVariable(SelectionList const &selections) {
    std::uint32_t shared = SelectedNumbers::NoNumber;
    for (SelectDataSeriesData const *const selection : selections) {
        std::uint32_t const own = SelectedNumbers(selection).GetSelectedVariable();
        if (shared == SelectedNumbers::NoNumber)
            shared = own;
        else if (own != SelectedNumbers::NoNumber && own != shared)
            return SelectedNumbers::Disagreement;
    }
    return shared;
}

int GetSelectedComponent(SelectionList const &selections, ProjectVector::ComponentType type) {
    std::vector<int> components;
    for (SelectDataSeriesData const *const selection : selections)
        CountScoreLoadingComponents(selection, type, components);
    bool const differ = std::ranges::any_of(components, [&](int other) { return other != components.front(); });
    return components.empty() || differ ? -1 : components.front();
}

TransformationData const *GetTransformationData(SelectionList const &selections) {
    if (selections.empty())
        return nullptr;
    TransformationData const &first = selections.front()->GetTransformationData();
    bool const agree = std::ranges::all_of(selections, [&first](SelectDataSeriesData const *selection) {
        return selection->GetTransformationData() == first;
    });
    return agree ? &first : nullptr;
}

bool IsDefaultSelectedXVar(SelectionList const &selections) {
    bool any = false;
    for (SelectDataSeriesData const *const selection : selections)
        for (ProjectVectorData const *const data : selection->VectorsInUse()) {
            if (!data->GetProjectVector() || !data->GetProjectVector()->IsXVector())
                continue;
            if (data->GetNumberID() != ProjectVectorData::NotSet)
                return false;
            any = true;
        }
    return any;
}

std::vector<std::string> GetAllBatches(SelectionList const &selections) {
    std::vector<std::string> all;
    std::unordered_set<std::string> known;
    for (SelectDataSeriesData const *const selection : selections)
        for (BatchInfoVector const batches = GetBatchInfoVector(selection); BatchInfo const &batch : batches)
            if (known.insert(batch.name).second)
                all.push_back(batch.name);
    return all;
}

std::vector<std::string> GetSelectedBatches(SelectionList const &selections) {
    std::vector<std::string> all, names;
    std::unordered_set<std::string> known;
    for (SelectDataSeriesData const *const selection : selections) {
        selection->GetSelectedBatches(names);
        for (std::string const &name : names)
            if (known.insert(name).second)
                all.push_back(name);
    }
    return all;
}

bool SetAllSelectedBatches(SelectionList const &selections, std::vector<std::string> const &names) {
    bool done = true;
    for (SelectDataSeriesData *const selection : selections)
        done = selection->SelectBatches(names) != SelectDataSeriesData::SeriesHaveBatches && done;
    return done;
}

} // namespace DataSeriesUtilities
