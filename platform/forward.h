#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class AliasAccess;
class BatchInfoVector;
class ColumnIDs;
class ColumnTerm;
class ColumnTerms;
class ConfigurationSection;
class GetProjectData;
class ModelInfo;
class NCDataContainerBase;
class NCDataSet;
class NCDataSetInfo;
class NCModel;
class NCObservations;
class NCPredictions;
class NCProject;
class NCVariables;
class ObservationInfo;
class OSCModel;
class ProjectData;
class RowIDs;
class StatisticSource;
class VarObs;
class VarObsInfo;
class VariableInfo;

// A project asked about is shared and constant; a finished table belongs to whoever gets it, and is null when there is
// nothing to tell.
using ProjectPtr = boost::shared_ptr<NCProject const>;
using TablePtr = std::unique_ptr<ProjectData>;

using IntList = std::list<int>;

// Points of aligned batches: the name of a batch (empty: the average batch) and a maturity.
using BatchPoints = std::vector<std::pair<std::string, float>>;
