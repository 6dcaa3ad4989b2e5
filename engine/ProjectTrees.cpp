#include "engine/ProjectState_internal.h"

#include "engine/models/Fit.h"

#include <algorithm>
#include <tuple>

// Trees of PLS models.

namespace engine {

namespace {

// What a model is cut by: as PLSTrees::GetValues reads it of one that is stored.
NCDataMatrix<float> CutValues(FittedModel const &model, Workset const &workset) {
    if (model.components.Predictive() == 0)
        return {};
    auto const count = static_cast<std::size_t>(model.Rows());
    std::vector<float> row(count, missingValue);
    for (std::size_t i = 0; i < count; ++i)
        if (auto const at = static_cast<Index>(i); model.xObserved[at] > 0)
            row[i] = ToStored(model.scores.t(at, 0));
    NCDataMatrix<float> values;
    values.AppendRow(row);
    for (Index term = 0; term < workset.y.Size(); ++term) {
        for (std::size_t i = 0; i < count; ++i) {
            auto const at = static_cast<Index>(i);
            row[i] = workset.y.IsMissing(at, term) ? missingValue : ToStored(workset.y.Values()(at, term));
        }
        values.AppendRow(row);
    }
    return values;
}

// Whether the rows, from 0, have a value in each column.
bool HasEachColumn(Block const &block, std::vector<int> const &rows) {
    if (block.Complete())
        return true;
    Eigen::VectorXi missing = Eigen::VectorXi::Zero(block.Size());
    for (int const row : rows)
        for (std::uint32_t const column : block.MissingIn(row))
            ++missing[column];
    return block.Size() == 0 || missing.maxCoeff() < static_cast<int>(rows.size());
}

template <typename Value>
std::vector<Value> Picked(std::vector<Value> const &values, std::vector<int> const &rows) {
    std::vector<Value> picked;
    for (int const row : rows)
        picked.push_back(values[static_cast<std::size_t>(row)]);
    return picked;
}

// The model of some rows (from 0) of another, which is stored and has that place.
ModelDefinition PartOf(ModelDefinition const &whole, std::vector<int> const &rows, TreePlace const &place) {
    ModelDefinition part = whole;
    part.rows = Picked(whole.rows, rows);
    if (!whole.givenGroups.empty())
        part.givenGroups = Picked(whole.givenGroups, rows);
    part.tree = place;
    return part;
}

// Positions from 0 of the rows of both parts, in the order of the data set; nothing where there is no cut that leaves
// two models.
std::vector<std::vector<int>> PartsOf(FittedModel const &model, Workset const &workset, PLSTrees const &trees) {
    std::optional<PLSTrees::Place> const cut = trees.FindCut(CutValues(model, workset));
    if (!cut)
        return {};
    std::vector<std::vector<int>> parts = {{cut->order.begin(), cut->order.begin() + cut->below},
                                           {cut->order.begin() + cut->below, cut->order.end()}};
    for (std::vector<int> &part : parts) {
        std::ranges::sort(part);
        for (int &position : part)
            --position;
        if (!HasEachColumn(workset.x, part) || !HasEachColumn(workset.y, part))
            return {};
    }
    return parts;
}

int SmallestPart(PLSTreeProperties const &properties, std::size_t rows) {
    constexpr int least = 2; // without which there is no model
    int const smallest =
        properties.smallest > 0 ? properties.smallest : PLSTreeProperties::LeastPart(static_cast<int>(rows));
    return std::max(least, smallest);
}

} // namespace

std::vector<int> Project::AddTree(TreeRequest const &request, Progress const &progress) {
    if (request.model.type != ModelTypeE::PLS || request.model.evolution)
        throw NCError(ExceptionMessage::translate("A tree is of PLS models of observations, not of {1} models.") %
                          (request.model.evolution ? "batch" : ModelTypeE::GetModelTypeName(request.model.type)),
                      NCError::Error);
    int const dataSet = request.model.dataSet;
    m_state->Data(dataSet);
    ModelDefinition whole = DefinitionOf(request.model, m_state->File());
    whole.tree = TreePlace{.properties = request.properties};
    // Each level has all rows.
    double const all = static_cast<double>(whole.rows.size()) * (request.depth + 1);
    double done = 0;
    return m_state->Change([&] {
        std::vector<int> numbers;
        // The next is the last.
        std::vector<ModelDefinition> waiting = {whole};
        while (!waiting.empty()) {
            ModelDefinition definition = std::move(waiting.back());
            waiting.pop_back();
            TreePlace &place = *definition.tree;
            auto const rows = static_cast<double>(definition.rows.size());
            place.properties.smallest = SmallestPart(request.properties, definition.rows.size());
            Workset const workset = m_state->BuildWorkset(dataSet, definition);
            FittedModel const model = Fit(definition, workset, Progress([&](double fraction) {
                                              progress.Report((done + fraction * rows) / all);
                                              return true;
                                          }));
            numbers.push_back(m_state->StoreModel(dataSet, model));
            std::vector<std::vector<int>> parts;
            if (place.depth < request.depth)
                parts = PartsOf(model, workset, PLSTrees(*this, place.properties));
            done += parts.empty() ? rows * (request.depth + 1 - place.depth) : rows;
            for (std::size_t part = parts.size(); part-- > 0;)
                waiting.push_back(
                    PartOf(definition, parts[part], {numbers.front(), numbers.back(), place.depth + 1, part == 1, {}}));
        }
        return numbers;
    });
}

std::vector<TreeNode> Project::TreeOf(int model) const {
    auto const placeOf = [&](int number) {
        return ModelDefinition::Load(AsText(m_state->File().Definition(number))).tree;
    };
    std::optional<TreePlace> const asked = m_state->FittedView(model).Fit().definition.tree;
    if (!asked)
        throw NCError(ExceptionMessage::translate("Model {1} is in no tree; \"dataseries fit --type plstree\" makes "
                                                  "one.") %
                          model,
                      NCError::Error);
    std::vector<TreeNode> nodes;
    for (ModelRecord const &record : m_state->Models()) {
        std::optional<TreePlace> const place = placeOf(record.number);
        if (!place || place->root != asked->root)
            continue;
        nodes.push_back({record.number, place->parent, place->depth, place->isAbove,
                         static_cast<int>(m_state->FittedView(record.number).Fit().Rows())});
    }
    for (TreeNode &node : nodes) {
        if (std::ranges::count(nodes, node.model, &TreeNode::parent) == 0)
            continue;
        PLSTrees const trees(*this, m_state->FittedView(node.model).GetTreeProperties());
        std::optional<PLSTrees::Place> const cut = trees.FindCut(trees.GetValues(node.model));
        if (cut)
            std::tie(node.below, node.weight, node.score) = std::tuple(cut->below, cut->weight, cut->score);
    }
    return nodes;
}

} // namespace engine
