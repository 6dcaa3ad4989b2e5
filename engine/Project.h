#pragma once

#include "engine/Classification.h"
#include "engine/LocalCentring.h"
#include "engine/Progress.h"
#include "engine/ProjectFile.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCProject.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace engine {

class ModelView;
struct BatchLevelRecipe;
struct CompressionRecipe;
struct DerivedTable;
struct HierarchyRecipe;
struct ImportedTable;
struct Recipe;

// Which variables of a model a table has, which it lacks, and which it has beside them. Variables are matched by name,
// in any order. A table with none of those of X can't be predicted.
struct VariableMatch {
    std::size_t found = 0;            // of X
    std::vector<std::string> missing; // of X: their cells are missing
    std::vector<std::string> surplus; // of neither X nor Y: not used
    // Of a model with local centring: texts of the identifier by which it groups that are none of its groups, empty for
    // an observation without. Their locally centred variables are missing.
    std::vector<std::string> unknownGroups;
    // Of a model with qualitative variables: those of the table's levels that the model does not know, such as
    // "colour(red)". Their observations have no value of the variable.
    std::vector<std::string> unknownLevels;
};

// What is to be known of a fit by whoever relies on it.
struct FitQuality {
    // A component whose iteration was stopped before it converged.
    struct Stopped {
        int component = 0; // from 1, in the order of extraction
        int rounds = 0;
        double change = 0;        // of its scores in the last round, relative
        bool ofCompanion = false; // of the PLS model that fills the missing cells of OPLS and O2PLS
    };

    std::vector<Stopped> stopped;
    // Observations with so few observed cells of X, or of so little weight, that a score would have run away.
    int scarceObservations = 0;
    // Of a model of the evolution of batches: observations whose maturity is missing.
    int withoutMaturity = 0;
    std::vector<std::string> constantTerms; // of X, then of Y
    ModelRequest::Q2 q2 = ModelRequest::FullRounds;
};

// A model of a tree.
struct TreeNode {
    int model = 0;
    int parent = 0; // the model above, 0 for that of all observations
    int depth = 0;
    bool isAbove = false; // of the two parts of the model above the one with the larger t_1
    int observations = 0;
    // Of a model that is cut: how many of its observations are below, the weight of the cut, and t_1 there.
    int below = 0;
    float weight = missingValue;
    float score = missingValue;
};

// A project of the embedded engine: an NCProject that lives in one file, with data sets, models and prediction sets.
// What is large is read when it is first asked for and kept; the lists of variables and observations run over all data
// sets, and items with the same primary identifier, and batch if any, are the same item.
//
// Messages of NCErrors name the item at fault. Every change is stored whole or not at all.
class DATASERIES_API Project final : public NCProject {
public:
    static boost::shared_ptr<Project> Create(std::filesystem::path const &path);
    // With a first data set. Whatever fails leaves nothing.
    static boost::shared_ptr<Project> Create(std::filesystem::path const &path, ImportedTable const &table,
                                             Progress const &progress = {});
    static boost::shared_ptr<Project> OpenToRead(std::filesystem::path const &path);
    static boost::shared_ptr<Project> OpenToWrite(std::filesystem::path const &path);
    ~Project() override;

    // Stores a table as a data set and answers its number.
    int AddDataSet(ImportedTable const &table, Progress const &progress = {});
    // Sets the centre values of later models; those without variables take all away. The models that are there keep
    // theirs. NCError when no observation belongs to any of the groups.
    void SetLocalCentring(LocalCentring const &centring);
    // The means of groups of observations as centre values.
    LocalCentring MeansOfGroups(GroupMeansRequest const &request) const;
    // Fits a model, cross-validates it, stores both and answers the number of the model.
    int AddModel(ModelRequest const &request, Progress const &progress = {});
    // One model of the evolution of batches for each phase of the data set, in the order of the phases; their numbers.
    // Either all are stored or none.
    std::vector<int> AddPhaseModels(ModelRequest request, Progress const &progress = {});
    // Fits a tree of models and answers their numbers, each before those below it. A model is cut unless it is deep
    // enough, has no component, is too small, or a part would have nothing but missing cells of a variable. Either all
    // are stored or none. NCError for a request that is not of a PLS model.
    std::vector<int> AddTree(TreeRequest const &request, Progress const &progress = {});
    // All models of the tree that a model is in, in that order. NCError for a model that is in none.
    std::vector<TreeNode> TreeOf(int model) const;
    // Makes a data set with one row for each batch of a model of the evolution of batches, and of those that were
    // fitted together with it for other phases, unless there is one; answers its number. Prediction sets, those that
    // come later too, get theirs: models of this data set predict them. NCError for any other model, and where there is
    // nothing to make it of.
    int AddBatchLevel(BatchLevelRequest const &request, Progress const &progress = {});
    // The same, and a model of that data set, whatever the request says of one; answers the number of the model.
    int AddBatchLevelModel(BatchLevelRequest const &level, ModelRequest request, Progress const &progress = {});
    // Makes a data set of results of models, unless there is one, and a model of it, whatever the request says of a
    // data set; answers the number of the model. New observations go through the models below. NCError for a model that
    // has no such result, and when no observation is in all of the models.
    int AddUpperModel(HierarchyRequest const &hierarchy, ModelRequest request, Progress const &progress = {});
    // Makes a data set of another one, row by row, unless there is one; answers its number. Prediction sets, those that
    // come later too, are put through the same recipe: models of this data set predict them.
    int AddCorrection(CorrectionRequest const &request, Progress const &progress = {});
    int AddCompression(CompressionRequest const &request, Progress const &progress = {});
    // Stores a table as a prediction set of the project, makes it the current one, and answers its number. The name has
    // to be new among the prediction sets, unless the set of that name is to be replaced; otherwise NCError.
    int AddPredictions(ImportedTable const &table, bool replace = false, Progress const &progress = {});
    // The number of the prediction set of that name; 0 when there is none.
    int FindPredictionSet(std::string const &name) const;
    // Makes another prediction set the current one, which all models predict. NCError when it is none.
    void UsePredictions(int number);

    // How the variables of a table, or of a data set, fit a model. Of a model of whole batches it is for a table how
    // they fit the model of observations that they fit best, of a model above others how they fit all of these; for a
    // prediction set it is how what the set gives for the model fits it. NCError when the model is not fitted.
    VariableMatch MatchVariables(int model, ImportedTable const &table) const;
    VariableMatch MatchVariables(int model, int dataSet) const;

    // How well a discriminant model tells classes apart: one whose responses are the levels of one qualitative
    // variable. NCError for any other, and for one that is not fitted or has no components.
    Classification ClassesOf(int model) const;

    // NCError for a model that is not fitted.
    FitQuality QualityOf(int model) const;

    std::vector<DataSetRecord> DataSets() const;

    // Plots that are kept with the project, in the order in which they were saved first. The text is their maker's own.
    std::vector<std::string> PlotNames() const;
    bool HasPlot(std::string const &name) const;
    // NCError when there is none of that name.
    std::string Plot(std::string const &name) const;
    // In the place of the one of that name, if any. NCError for a name that is empty or no UTF-8.
    void SavePlot(std::string const &name, std::string const &text);
    // NCError when there is none, or one that has the new name; names as above.
    void RenamePlot(std::string const &name, std::string const &newName);
    void DeletePlot(std::string const &name);

    StatisticSource const &GetStatisticSource() const override;
    int GetNumberOfModels() const override;
    int GetModelNumberAt(int index) const override;
    boost::shared_ptr<ModelInfo const> GetModelInfo(int model) const override;
    boost::shared_ptr<NCModel const> GetModel(int model) const override;
    boost::shared_ptr<NCDataContainerBase const> GetWorkset(int model) const override;
    NCVariables const &GetVariables() const override;
    NCObservations const &GetObservations() const override;
    LocalCenteringData GetLocalCentering() const override;
    boost::shared_ptr<NCDataSet const> GetDataSet(int number) const override;
    boost::shared_ptr<NCDataSetInfo const> GetDataSetInfo(int number) const override;
    int GetFirstDataSet(int after) const override;
    boost::shared_ptr<NCDataSet const> GetPredSet(int number) const override;
    // The current prediction set, as for every model.
    boost::shared_ptr<NCDataSet const> GetModelPredSet(int model) const override;
    // The current prediction set on a model; predicted when it is first asked for. NCError when there is no such model,
    // or the set has none of its X variables.
    boost::shared_ptr<NCPredictions const> GetPredictions(int model, bool required) const override;
    std::unique_ptr<ConfigurationSection> GetSettingsSection(std::string const &name) override;
    // The newest fitted model, -1 when there is none.
    int GetActiveModelNumber() const override;
    // Kept in the settings "ProjectOptions".
    void GetProjectOptions(NCProjectOptions *options) const override;
    void SetProjectOptions(NCProjectOptions const *options) override;
    int GetPreferredObservationAlias() const override;
    int GetPreferredVariableAlias() const override;
    bool IsBatchProject() const override;

private:
    class State;

    explicit Project(ProjectFile file);
    std::vector<ModelView const *> LowerModels(Recipe const &recipe) const;
    BatchLevelRecipe RecipeFor(BatchLevelRequest const &request) const;
    HierarchyRecipe RecipeFor(HierarchyRequest const &request) const;
    CompressionRecipe RecipeFor(CompressionRequest const &request) const;
    DerivedTable MadeOf(Recipe const &recipe) const;
    DerivedTable MadeOfRows(Recipe const &recipe, int dataSet) const;
    std::optional<DerivedTable> MadeOfPredictions(Recipe const &recipe, int predictions) const;
    int Derive(Recipe const &recipe, std::string const &name, Progress const &progress);
    int StoreDerived(DerivedTable const &table, Recipe const &recipe, std::string const &name, DataSetKind kind,
                     Progress const &progress);
    void DerivePredictions(int derived, int predictions);
    void DeriveFor(int added);
    bool BringsConditions(int added, int conditions) const;
    void DeletePredictions(int number);
    int Fitted(ModelRequest const &request, int phaseGroup, Progress const &progress);
    bool HasDates(int dataSet) const;

    std::unique_ptr<State> m_state;
};

} // namespace engine
