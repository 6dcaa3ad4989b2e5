#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"

// The orthogonal signal correction of a data set: what it took off the X variables since it has nothing to do with Y.

namespace {

using namespace rows;

template <auto values, auto columns>
class OscVector : public ProjectVector {
public:
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const final {
        int const dataSet = GetDataSetNumber(project, source);
        IntList const components{component};
        return dataSet == -1 || component < GetFirstComponent()
                   ? nullptr
                   : (GetProjectData(*project).*values)(dataSet, &components);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const final {
        int const dataSet = GetDataSetNumber(project, source);
        if (dataSet == -1)
            return ColumnIDs(project);
        boost::shared_ptr<NCDataSet const> const set = project->GetDataSet(dataSet);
        return (GetProjectData(*project).*columns)(dataSet, set ? set->GetOSCModel() : nullptr);
    }

protected:
    OscVector(char const *name, VectorTypeEnum type, ScoreLoadingType kind) {
        Init(name, type, DataSet, NoModel, ComponentOSC, NumberNone, kind, Observed, Displayable);
    }
};

class ProjectOSCTVector final
    : public OscVector<&GetProjectData::GetOSCScores, &GetProjectData::GetOSCScoresColumnIDs> {
public:
    ProjectOSCTVector() : OscVector("OSC-t", Scores, Score) {}
    std::string GetHelpString() const override {
        return translate(
            "OSC-t: Scores t of the orthogonal signal correction that made the data set, one value for each\n"
            "observation that it was made of, one vector for each component. They vary much in X and are orthogonal "
            "to\n"
            "Y: an analyst looks here for what disturbs, such as drift, temperature or the operator. In units of "
            "scaled\n"
            "X.");
    }
} const oscT;

class ProjectOSCPVector final : public OscVector<&GetProjectData::GetOSCP, &GetProjectData::GetOSCPColumnIDs> {
public:
    ProjectOSCPVector() : OscVector("OSC-p", Loadings, Loading) {}
    std::string GetHelpString() const override {
        return translate(
            "OSC-p: Loadings p of the orthogonal signal correction that made the data set, one value for each X\n"
            "variable. t times p is what a component took off X: variables far from 0 were disturbed most. In units "
            "of\n"
            "scaled X for one unit of t.");
    }
} const oscP;

class ProjectOSCWVector final : public OscVector<&GetProjectData::GetOSCW, &GetProjectData::GetOSCWColumnIDs> {
public:
    ProjectOSCWVector() : OscVector("OSC-w", Loadings, Loading) {}
    std::string GetHelpString() const override {
        return translate(
            "OSC-w: Weights w of the orthogonal signal correction that made the data set, one value for each X\n"
            "variable: they give the score of what the components before have left of X. Of length 1.");
    }
} const oscW;

class ProjectOSCWStarVector final
    : public OscVector<&GetProjectData::GetOSCWStar, &GetProjectData::GetOSCWStarColumnIDs> {
public:
    ProjectOSCWStarVector() : OscVector("OSC-w*", Loadings, Loading) {}
    std::string GetHelpString() const override {
        return translate(
            "OSC-w*: Weights w* of the orthogonal signal correction that made the data set, one value for each X\n"
            "variable: they give the score of a complete observation from scaled X at once, whatever the component.");
    }
} const oscWStar;

} // namespace
