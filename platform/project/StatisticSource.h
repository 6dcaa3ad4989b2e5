#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/containers/TriState.h"
#include "platform/export.h"
#include "platform/forward.h"
#include "platform/project/NCModel.h"
#include "platform/project/WeightTypeE.h"

#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

// Every operation by which a statistic is read.
enum class Operation : short {
#define TABLE(name, parameters, arguments) name,
#define COLUMNS(name, parameters, arguments) name,
#define TABLE_OVERLOAD(key, name, parameters, arguments) key,
#define MATRIX(name, parameters, arguments) name,
#include "platform/project/operations.def"
};

enum class OperationKind { Table, Columns, Matrix };

struct OperationInfo {
    Operation operation;
    OperationKind kind;
    char const *name; // shared by overloads
};

// All operations, in the order of their numbers.
DATASERIES_API std::span<OperationInfo const> AllOperations();

// An argument of a call. Lists, terms and all else that is not a number are borrowed from the caller, and may be null
// where the operation takes a pointer.
using Argument = std::variant<int, bool, double, TriState::State, WeightTypeE::WeightType,
                              PredictiveModel::CoefficientType, IntList const *, std::vector<bool> const *,
                              BatchPoints const *, WeightTypes const *, ColumnTerm const *, ColumnTerms const *,
                              ObservationInfos const *, boost::shared_ptr<OSCModel const> const *>;

// One question to a project. Lives as long as the call.
struct Call {
    Operation operation;
    std::span<Argument const> arguments;
    NCProject const &project;
    boost::shared_ptr<NCPredictions const> predictions;

    // "GetT(1, [1, 2], -1)"
    DATASERIES_API std::string Text() const;
};

// What answers the statistics of a project. "Nothing" is a null table, columns of size 0, an empty matrix.
class DATASERIES_API StatisticSource {
public:
    virtual ~StatisticSource() = default;

    virtual TablePtr Table(Call const &call) const = 0;
    virtual ColumnIDs Columns(Call const &call) const = 0;
    virtual NCDataMatrix<float> Matrix(Call const &) const { return {}; }
};
