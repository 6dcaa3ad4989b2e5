#pragma once

#include "platform/identity/ProjectData.h"
#include "platform/identity/VarObs.h"
#include "platform/project/LocalCentering.h"
#include "platform/project/ModelInfo.h"
#include "platform/project/NCDataSet.h"
#include "platform/project/NCModel.h"
#include "platform/project/StatisticSource.h"

#include <boost/smart_ptr/enable_shared_from_this.hpp>

#include <memory>
#include <string>
#include <vector>

// How observations and variables are labelled in plots of the project.
struct NCProjectOptions {
    struct LabelSettings {
        int identifier = 1; // the alias
        int start = 1;      // first character shown
        int length = -1;    // characters shown, -1 all of them
        int title = 1;      // the alias in titles of windows

        bool operator==(LabelSettings const &) const = default;
    };

    LabelSettings observations;
    LabelSettings variables;

    bool operator==(NCProjectOptions const &) const = default;
};

// An open project, as the library asks it. A services layer derives from it; what it does not have stays with the
// answers given here, which mean "nothing". Models and data sets have numbers from 1. Used from one thread.
class DATASERIES_API NCProject : public boost::enable_shared_from_this<NCProject> {
public:
    NCProject() = default;
    NCProject(NCProject const &) = delete;
    NCProject &operator=(NCProject const &) = delete;
    virtual ~NCProject();

    // What answers the statistics of this project.
    virtual StatisticSource const &GetStatisticSource() const = 0;

    // Models, in the order of the project's list.
    virtual int GetNumberOfModels() const = 0;
    virtual int GetModelNumberAt(int index) const = 0;
    // The 1-based place of a model in that list; 0 when there is no such model.
    int GetModelIndex(int model) const;
    // Empty for a number that no model has.
    virtual boost::shared_ptr<ModelInfo const> GetModelInfo(int model) const = 0;
    virtual boost::shared_ptr<NCModel const> GetModel(int model) const = 0;
    bool IsModelFitted(int model) const;
    virtual int GetActiveModelNumber() const { return GetNumberOfModels() > 0 ? GetModelNumberAt(1) : -1; }

    // The project's lists of variables and observations, by number.
    virtual NCVariables const &GetVariables() const = 0;
    virtual NCObservations const &GetObservations() const = 0;
    virtual int GetPreferredObservationAlias() const { return 1; }
    virtual int GetPreferredVariableAlias() const { return 1; }
    virtual void RefreshObservations() {}
    // Without variables when nothing is locally centred.
    virtual LocalCenteringData GetLocalCentering() const { return {}; }

    // The data that a model is made of; empty for a number that no model has.
    virtual boost::shared_ptr<NCDataContainerBase const> GetWorkset(int) const { return {}; }

    // Data sets. Empty for a number that no data set has.
    virtual boost::shared_ptr<NCDataSet const> GetDataSet(int) const { return {}; }
    virtual boost::shared_ptr<NCDataSetInfo const> GetDataSetInfo(int) const { return {}; }
    // The number of the first data set after the given one; 0 when there is none.
    virtual int GetFirstDataSet(int) const { return 0; }

    // Prediction sets; -1 is the current one.
    virtual boost::shared_ptr<NCDataSet const> GetPredSet(int) const { return {}; }
    virtual boost::shared_ptr<NCDataSet const> GetModelPredSet(int) const { return {}; }
    // The rows projected on a model; with `required` set their absence is an NCError.
    virtual boost::shared_ptr<NCPredictions const> GetPredictions(int, bool) const { return {}; }

    virtual void GetProjectOptions(NCProjectOptions *options) const { *options = NCProjectOptions(); }
    virtual void SetProjectOptions(NCProjectOptions const *) {}

    // A section of the project's settings by name, made when it is not there. Changes are kept when the section goes.
    virtual std::unique_ptr<ConfigurationSection> GetSettingsSection(std::string const &name);

    // Between the two, models and data sets that have been read stay in memory. Calls nest.
    virtual void LockMemory() const {}
    virtual void UnlockMemory() const {}

    virtual bool IsBatchProject() const { return false; }
    virtual bool KeepsBatchMode() const { return false; }
};
