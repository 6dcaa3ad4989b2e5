#pragma once

#include "engine/statistics/ModelView.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/NCProject.h"
#include "platform/project/StatisticSource.h"

#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace engine {

// What a handler may ask beside its arguments.
class Subject {
public:
    virtual ~Subject() = default;

    // Throws NCError for a number that no model has; null for a model that is not fitted.
    virtual ModelView const *Model(int number) const = 0;
    // A data set or prediction set. Throws NCError for a number that none has.
    virtual DataSet const &Data(int number) const = 0;
    // The rows that are predicted on a model; null when there are none.
    virtual PredictedRows const *Predictions(int model) const = 0;
};

// The parameters of each operation, and the arguments of a call as such parameters.
namespace signature {

template <Operation operation>
struct Of;
template <typename Function>
struct WithFlag;
template <typename Result, typename... Parameters>
struct WithFlag<Result(Parameters...)> {
    using Type = Result(Parameters..., bool);
};
#define OPERATION(key, result, parameters)                                                                             \
    template <>                                                                                                        \
    struct Of<Operation::key> {                                                                                        \
        using Type = result parameters;                                                                                \
    };
#define TABLE(name, parameters, arguments) OPERATION(name, TablePtr, parameters)
#define TABLE_OVERLOAD(key, name, parameters, arguments) OPERATION(key, TablePtr, parameters)
#define COLUMNS(name, parameters, arguments) OPERATION(name, ColumnIDs, parameters)
// Those of matrices are followed by whether values are wanted in the units of the data set.
#define MATRIX(name, parameters, arguments)                                                                            \
    template <>                                                                                                        \
    struct Of<Operation::name> {                                                                                       \
        using Type = WithFlag<NCDataMatrix<float> parameters>::Type;                                                   \
    };
#include "platform/project/operations.def"
#undef OPERATION

template <typename Parameter>
struct Unpacked {
    static Parameter From(Argument const &argument) { return std::get<Parameter>(argument); }
};
template <>
struct Unpacked<float> {
    static float From(Argument const &argument) { return static_cast<float>(std::get<double>(argument)); }
};
template <typename Value>
struct Unpacked<Value const &> {
    static Value const &From(Argument const &argument) { return *std::get<Value const *>(argument); }
};

} // namespace signature

// The operations that the engine answers. A handler is a function of the fitted model or of the data set, of the
// subject too where it takes one, and of the operation's arguments behind the first number; that it takes them is
// checked when it is compiled.
class Handlers {
public:
    Handlers();

    // Nothing for an operation without handler and for a model that is not fitted.
    TablePtr Table(Call const &call, Subject const &subject) const;
    ColumnIDs Columns(Call const &call, Subject const &subject) const;
    NCDataMatrix<float> Matrix(Call const &call, Subject const &subject) const;
    bool Has(Operation operation) const;

    // A statistic of a model; nothing when the model is not fitted.
    template <Operation operation, typename Function>
    void On(Function function) {
        Register<operation>(static_cast<typename signature::Of<operation>::Type *>(nullptr), std::move(function),
                            [](Subject const &subject, int number) { return subject.Model(number); });
    }
    // A statistic of a data set.
    template <Operation operation, typename Function>
    void OnDataSet(Function function) {
        Register<operation>(static_cast<typename signature::Of<operation>::Type *>(nullptr), std::move(function),
                            [](Subject const &subject, int number) { return &subject.Data(number); });
    }

    // One of the project by itself: a function of it and of nothing else.
    template <Operation operation, typename Function>
    void OnProject(Function function) {
        Put<operation>([function](Subject const &, Call const &call) { return function(call.project); });
    }

private:
    template <typename Result>
    using Handler = std::function<Result(Subject const &, Call const &)>;

    template <typename Result>
    static Result Nothing(Call const &call) {
        if constexpr (std::is_same_v<Result, ColumnIDs>)
            return ColumnIDs(call.project.shared_from_this());
        else
            return {};
    }

    // `find` gives what the first number of the operation stands for.
    template <Operation operation, typename Result, typename... Parameters, typename Function, typename Find>
    void Register(Result (*)(int, Parameters...), Function function, Find find) {
        using Item = decltype(*find(std::declval<Subject const &>(), 0));
        static_assert(std::is_invocable_r_v<Result, Function, Item, Parameters...> ||
                          std::is_invocable_r_v<Result, Function, Item, Subject const &, Parameters...>,
                      "the handler's parameters are not those of the operation");
        Handler<Result> handler = [function = std::move(function), find](Subject const &subject,
                                                                         Call const &call) -> Result {
            auto const *const item = find(subject, std::get<int>(call.arguments.front()));
            if (!item)
                return Nothing<Result>(call);
            return [&]<std::size_t... index>(std::index_sequence<index...>)->Result {
                if constexpr (std::is_invocable_v<Function, Item, Parameters...>)
                    return function(*item, signature::Unpacked<Parameters>::From(call.arguments[index + 1])...);
                else
                    return function(*item, subject,
                                    signature::Unpacked<Parameters>::From(call.arguments[index + 1])...);
            }
            (std::index_sequence_for<Parameters...>());
        };
        Put<operation>(std::move(handler));
    }

    template <Operation operation, typename Function>
    void Put(Function handler) {
        using Result = std::invoke_result_t<Function, Subject const &, Call const &>;
        std::get<std::vector<Handler<Result>>>(m_handlers)[static_cast<std::size_t>(operation)] = std::move(handler);
    }

    template <typename Result>
    Result Answered(Call const &call, Subject const &subject) const {
        auto const &handler =
            std::get<std::vector<Handler<Result>>>(m_handlers)[static_cast<std::size_t>(call.operation)];
        return handler ? handler(subject, call) : Nothing<Result>(call);
    }

    // Each by the number of the operation.
    std::tuple<std::vector<Handler<TablePtr>>, std::vector<Handler<ColumnIDs>>,
               std::vector<Handler<NCDataMatrix<float>>>>
        m_handlers;
};

// Each registers the handlers of one subject.
void AddScoreHandlers(Handlers &handlers);
void AddLoadingHandlers(Handlers &handlers);
void AddCrossValidatedLoadingHandlers(Handlers &handlers);
void AddValueHandlers(Handlers &handlers);
void AddDistanceHandlers(Handlers &handlers);
void AddPredictionErrorHandlers(Handlers &handlers);
void AddSummaryHandlers(Handlers &handlers);
void AddVariableSummaryHandlers(Handlers &handlers);
void AddImportanceHandlers(Handlers &handlers);
void AddCoefficientHandlers(Handlers &handlers);
void AddDataHandlers(Handlers &handlers);
void AddAlignedHandlers(Handlers &handlers);
void AddContributionHandlers(Handlers &handlers);
void AddLagHandlers(Handlers &handlers);

} // namespace engine
