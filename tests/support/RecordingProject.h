#pragma once

#include "platform/NCProject.h"
#include "platform/StatisticSource.h"

#include <boost/make_shared.hpp>

#include <map>
#include <string>
#include <vector>

// Answers every statistic with a small canned table and keeps the calls as text.
class RecordingSource final : public StatisticSource {
public:
    mutable std::vector<std::string> calls;
    int columns = 3;

    // The last call; empty when there was none since the last look.
    std::string Take() const;

    TablePtr Table(Call const &call) const override;
    ColumnIDs Columns(Call const &call) const override;
};

// A project with as many models as a test adds, of any kind, without data behind them.
class RecordingProject final : public NCProject {
public:
    RecordingSource source;

    // Adds model 1, 2, ...: components of each kind, terms numbered from 1 in X and on in Y.
    int AddModel(ModelTypeE::Model type, int predictive, int xSide = 0, int ySide = 0, int xTerms = 3, int yTerms = 0);

    StatisticSource const &GetStatisticSource() const override { return source; }
    int GetNumberOfModels() const override { return static_cast<int>(m_models.size()); }
    int GetModelNumberAt(int index) const override { return index; }
    boost::shared_ptr<ModelInfo const> GetModelInfo(int model) const override;
    boost::shared_ptr<NCModel const> GetModel(int model) const override;
    NCVariables const &GetVariables() const override { return variables; }
    NCObservations const &GetObservations() const override { return observations; }

    NCVariables variables;
    NCObservations observations;

private:
    struct Model;
    std::vector<boost::shared_ptr<Model const>> m_models;
};

inline boost::shared_ptr<RecordingProject> MakeRecordingProject() {
    return boost::make_shared<RecordingProject>();
}
