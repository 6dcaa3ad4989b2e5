#pragma once

#include "platform/project/NCProject.h"
#include "platform/project/StatisticSource.h"
#include "platform/storage/XercesXMLSection.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

// Answers every statistic with a small canned table and keeps the calls as text.
class RecordingSource final : public StatisticSource {
public:
    mutable std::vector<std::string> calls;
    int columns = 3;
    // Answers that are other than that, by the name of the operation.
    std::map<std::string, std::function<TablePtr(Call const &)>> tableOf;
    std::map<std::string, std::function<ColumnIDs(Call const &)>> columnsOf;
    std::map<std::string, NCDataMatrix<float>> matrixOf;

    // The last call; empty when there was none since the last look.
    std::string Take() const;

    TablePtr Table(Call const &call) const override;
    ColumnIDs Columns(Call const &call) const override;
    NCDataMatrix<float> Matrix(Call const &call) const override;
};

// Throws an NCError at the n-th call, counted from 1; hands all others to another source.
class FailingSource final : public StatisticSource {
public:
    FailingSource(StatisticSource const &source, int failingCall) : m_source(source), m_left(failingCall) {}

    TablePtr Table(Call const &call) const override;
    ColumnIDs Columns(Call const &call) const override;

private:
    void Count() const;

    StatisticSource const &m_source;
    mutable int m_left;
};

// What is known of a model that was added, to be changed.
struct RecordedModel {
    ModelInfo info;
    ColumnTerms x;
    ColumnTerms y;
    ObservationInfos rows;
    bool isNormalized = true;
    bool isWeighted = false;
    int coefficientKind = 0;
    // Of a batch model.
    std::vector<std::string> batches;
    int treatment = 0;
    NCDataVector<float> maturity; // of the rows
    NCDataMatrix<float> alignedScores, alignedDModX;
};

// A data set, a workset or a prediction set: which items it has, without values.
class RecordedData final : public NCDataSet {
public:
    int number = 0;
    ObservationInfos observations;
    std::vector<std::uint32_t> variables;
    std::vector<int> observationAliases;
    std::vector<int> variableAliases;

    explicit RecordedData(NCProject const &project) : m_project(&project) {}

    ProjectPtr GetProject() const override { return m_project->shared_from_this(); }
    ObservationInfos const &GetObservations() const override { return observations; }
    std::vector<std::uint32_t> const &GetVariables() const override { return variables; }
    AliasAccess GetObservationAliases() const override {
        return AliasAccess(observationAliases, m_project->GetObservations()).Of(observations);
    }
    AliasAccess GetVariableAliases() const override {
        return AliasAccess(variableAliases, m_project->GetVariables()).Of(variables);
    }
    int GetNumber() const override { return number; }
    std::string GetName() const override { return "DS" + std::to_string(number); }
    NCDataVector<float> GetVariable(std::uint32_t) const override { return {}; }
    NCDataVector<float> GetObservation(std::uint32_t) const override { return {}; }

private:
    NCProject const *m_project;
};

// A project with as many models and data as a test adds, of any kind, without numbers behind them.
class RecordingProject final : public NCProject {
public:
    RecordingSource source;
    StatisticSource const *otherSource = nullptr; // answers in its place
    std::map<int, NCDataSetInfo> dataSets;
    mutable int memoryLocks = 0;
    std::function<void(int)> onPredictions = [](int) {}; // told of each model that they are asked for
    int activeModel = -1;
    bool isBatchProject = false;
    int preferredObservationAlias = 1;
    NCProjectOptions options;
    NCVariables variables;
    NCObservations observations;

    // Adds model 1, 2, ...: components of each kind, terms numbered from 1 in X and on in Y.
    int AddModel(ModelTypeE::Model type, int predictive, int xSide = 0, int ySide = 0, int xTerms = 3, int yTerms = 0);
    // The same with the batches of that name.
    int AddBatchModel(int predictive, std::vector<std::string> batches);
    RecordedModel &Model(int model);
    ModelInfo &Info(int model) { return Model(model).info; }

    // Items by number; data set 0 is the prediction set. They have the first alias.
    RecordedData &AddData(int dataSet, std::vector<std::uint32_t> const &rows, std::vector<std::uint32_t> columns);
    // The data that a model is made of, and the rows projected on it.
    RecordedData &AddWorkset(int model, std::vector<std::uint32_t> const &rows, std::vector<std::uint32_t> columns);
    void AddPredictions(int model, std::vector<std::uint32_t> const &rows, NCDataVector<float> maturity = {});

    StatisticSource const &GetStatisticSource() const override { return otherSource ? *otherSource : source; }
    int GetNumberOfModels() const override { return static_cast<int>(m_models.size()); }
    int GetModelNumberAt(int index) const override { return index; }
    boost::shared_ptr<ModelInfo const> GetModelInfo(int model) const override;
    boost::shared_ptr<NCModel const> GetModel(int model) const override;
    int GetActiveModelNumber() const override { return activeModel; }
    bool IsBatchProject() const override { return isBatchProject; }
    boost::shared_ptr<NCDataContainerBase const> GetWorkset(int model) const override;
    boost::shared_ptr<NCDataSet const> GetDataSet(int dataSet) const override;
    boost::shared_ptr<NCDataSetInfo const> GetDataSetInfo(int dataSet) const override;
    int GetFirstDataSet(int after) const override;
    boost::shared_ptr<NCDataSet const> GetPredSet(int) const override { return GetDataSet(0); }
    boost::shared_ptr<NCDataSet const> GetModelPredSet(int) const override { return GetDataSet(0); }
    boost::shared_ptr<NCPredictions const> GetPredictions(int model, bool required) const override;
    void GetProjectOptions(NCProjectOptions *current) const override { *current = options; }
    void SetProjectOptions(NCProjectOptions const *changed) override { options = *changed; }
    std::unique_ptr<ConfigurationSection> GetSettingsSection(std::string const &name) override;
    void LockMemory() const override { ++memoryLocks; }
    void UnlockMemory() const override { --memoryLocks; }
    NCVariables const &GetVariables() const override { return variables; }
    NCObservations const &GetObservations() const override { return observations; }
    int GetPreferredObservationAlias() const override { return preferredObservationAlias; }

private:
    struct Entry {
        RecordedModel content;
        boost::shared_ptr<NCModel> object;
    };

    boost::shared_ptr<Entry> Find(int model) const;
    boost::shared_ptr<RecordedData> MakeData(std::vector<std::uint32_t> const &rows,
                                             std::vector<std::uint32_t> columns) const;

    std::vector<boost::shared_ptr<Entry>> m_models;
    std::map<int, boost::shared_ptr<RecordedData>> m_data;
    std::map<int, boost::shared_ptr<RecordedData>> m_worksets;
    std::map<int, boost::shared_ptr<NCPredictions const>> m_predictions;
    XercesXMLSection m_settings;
};

inline boost::shared_ptr<RecordingProject> MakeRecordingProject() {
    return boost::make_shared<RecordingProject>();
}
