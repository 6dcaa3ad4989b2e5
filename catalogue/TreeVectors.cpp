#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/project/PLSTrees.h"

#include <boost/format.hpp>

// Where a PLS tree cuts the observations of a model into two: the weight of the cut behind each observation, when these
// stand in rising order of t of the first component. The least weight is where the tree is cut.

namespace {

using namespace rows;

class CutFunctionVector : public ProjectVector {
public:
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const final {
        int const model = Question{*this, project, source, component}.Model();
        if (model == -1)
            return nullptr;
        ColumnIDs observations = GetProjectData(*project).GetTColumnIDs(model, AllBatches);
        auto const object = project->GetModel(model);
        PLSTrees const trees(*project, object ? object->GetTreeProperties() : PLSTreeProperties());
        NCDataMatrix<float> weights;
        trees.GetAllCutWeights(trees.GetValues(model), weights, PLSTrees::InOrder);
        if (weights.Columns() == 0 || weights.Columns() != observations.Size())
            return nullptr;
        NCDataMatrix<float> row;
        row.InsertRow(1, weights.Row(m_row));
        return std::make_unique<ProjectData>(RowIDs(str(boost::format(m_label) % model), project),
                                             std::move(observations), std::move(row));
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const final {
        return Labels(project, source, &GetProjectData::GetTColumnIDs, AllBatches);
    }

protected:
    CutFunctionVector(char const *name, PLSTrees::Row row, char const *label) : m_row(row), m_label(label) {
        Init(name, Scores, Model, ModelTypeE::PLS, NoComponent, NumberNone, Score, Observed, Displayable);
    }

private:
    PLSTrees::Row m_row;
    char const *m_label;
};

class ProjectPLSTreeCutFunction final : public CutFunctionVector {
public:
    ProjectPLSTreeCutFunction()
        : CutFunctionVector("PLSTreeCutFunction", PLSTrees::Cut, "M%1%.PLS-Tree cut function") {}
    std::string GetHelpString() const override {
        return translate(
            "PLSTreeCutFunction: The function by which a PLS tree cuts the observations of the model into two, is\n"
            "smallest where the two parts are most alike within themselves in t[1] and Y, and of like size.\n"
            "Plot it against t[1]: a deep valley shows two groups that each deserve a model of their own; a flat\n"
            "curve shows none. Each observation has the value of the cut behind it. Without unit.");
    }
} const cutFunction;

class ProjectPLSTreeNCutFunction final : public CutFunctionVector {
public:
    ProjectPLSTreeNCutFunction()
        : CutFunctionVector("PLSTreeNCutFunction", PLSTrees::NCut, "M%1%.PLS-Tree N-cut function") {}
    std::string GetHelpString() const override {
        return translate(
            "PLSTreeNCutFunction: The part of the PLS tree cut function that favours parts of like size, is\n"
            "0 for two halves and near 1 where a cut sets few observations apart. It keeps a tree from peeling off\n"
            "outliers one by one. Without unit.");
    }
} const nCutFunction;

class ProjectPLSTreeTCutFunction final : public CutFunctionVector {
public:
    ProjectPLSTreeTCutFunction()
        : CutFunctionVector("PLSTreeTCutFunction", PLSTrees::TCut, "M%1%.PLS-Tree T-cut function") {}
    std::string GetHelpString() const override {
        return translate(
            "PLSTreeTCutFunction: The part of the PLS tree cut function that looks for groups in X, is\n"
            "what the two parts have left of the variation of t[1]. 1: the cut divides nothing; near 0: the scores\n"
            "lie in two tight groups; 0.25 is what scores that are evenly spread have in their middle. Without unit.");
    }
} const tCutFunction;

class ProjectPLSTreeYCutFunction final : public CutFunctionVector {
public:
    ProjectPLSTreeYCutFunction()
        : CutFunctionVector("PLSTreeYCutFunction", PLSTrees::YCut, "M%1%.PLS-Tree Y-cut function") {}
    std::string GetHelpString() const override {
        return translate(
            "PLSTreeYCutFunction: The part of the PLS tree cut function that looks for groups in Y, is\n"
            "what the two parts have left of the variation of the responses, on average. 1: the cut divides\n"
            "nothing of Y; near 0: each part has its own level of Y. Without unit.");
    }
} const yCutFunction;

} // namespace
