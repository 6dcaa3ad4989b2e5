#pragma once

#include "platform/NCProject.h"
#include "platform/StatisticSource.h"

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

    // The last call; empty when there was none since the last look.
    std::string Take() const;

    TablePtr Table(Call const &call) const override;
    ColumnIDs Columns(Call const &call) const override;
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

// A project with as many models as a test adds, of any kind, without data behind them.
class RecordingProject final : public NCProject {
public:
    RecordingSource source;
    StatisticSource const *otherSource = nullptr; // answers in its place
    std::map<int, NCDataSetInfo> dataSets;
    mutable int memoryLocks = 0;

    // Adds model 1, 2, ...: components of each kind, terms numbered from 1 in X and on in Y.
    int AddModel(ModelTypeE::Model type, int predictive, int xSide = 0, int ySide = 0, int xTerms = 3, int yTerms = 0);

    // What is known of a model that was added, to be changed.
    ModelInfo &Info(int model);

    StatisticSource const &GetStatisticSource() const override { return otherSource ? *otherSource : source; }
    int GetNumberOfModels() const override { return static_cast<int>(m_models.size()); }
    int GetModelNumberAt(int index) const override { return index; }
    boost::shared_ptr<ModelInfo const> GetModelInfo(int model) const override;
    boost::shared_ptr<NCModel const> GetModel(int model) const override;
    boost::shared_ptr<NCDataSetInfo const> GetDataSetInfo(int dataSet) const override;
    void LockMemory() const override { ++memoryLocks; }
    void UnlockMemory() const override { --memoryLocks; }
    NCVariables const &GetVariables() const override { return variables; }
    NCObservations const &GetObservations() const override { return observations; }

    NCVariables variables;
    NCObservations observations;

private:
    struct Model;
    std::vector<boost::shared_ptr<Model>> m_models;
};

inline boost::shared_ptr<RecordingProject> MakeRecordingProject() {
    return boost::make_shared<RecordingProject>();
}
