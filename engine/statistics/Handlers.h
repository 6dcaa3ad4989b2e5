#pragma once

#include "engine/statistics/ModelView.h"
#include "platform/GetProjectData.h"
#include "platform/StatisticSource.h"

#include <functional>
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
    // The rows that are predicted on a model; null when there are none.
    virtual PredictedRows const *Predictions(int model) const = 0;
};

// The parameters of each operation, and the arguments of a call as such parameters.
namespace signature {

template <Operation operation>
struct Of;
#define OPERATION(key, result, parameters)                                                                             \
    template <>                                                                                                        \
    struct Of<Operation::key> {                                                                                        \
        using Type = result parameters;                                                                                \
    };
#define TABLE(name, parameters, arguments) OPERATION(name, TablePtr, parameters)
#define TABLE_OVERLOAD(key, name, parameters, arguments) OPERATION(key, TablePtr, parameters)
#define COLUMNS(name, parameters, arguments) OPERATION(name, ColumnIDs, parameters)
#include "platform/operations.def"
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

// The operations that the engine answers. A handler is a function of the fitted model, of the subject too where it
// takes one, and of the operation's arguments behind the model number; that it takes them is checked when it is
// compiled.
class Handlers {
public:
    Handlers();

    // Nothing for an operation without handler and for a model that is not fitted.
    TablePtr Table(Call const &call, Subject const &subject) const;
    ColumnIDs Columns(Call const &call, Subject const &subject) const;
    bool Has(Operation operation) const;

    template <Operation operation, typename Function>
    void On(Function function) {
        Register<operation>(static_cast<typename signature::Of<operation>::Type *>(nullptr), std::move(function));
    }

private:
    template <typename Result>
    using Handler = std::function<Result(ModelView const &, Subject const &, Call const &)>;

    template <Operation operation, typename Result, typename... Parameters, typename Function>
    void Register(Result (*)(int, Parameters...), Function function) {
        static_assert(std::is_invocable_r_v<Result, Function, ModelView const &, Parameters...> ||
                          std::is_invocable_r_v<Result, Function, ModelView const &, Subject const &, Parameters...>,
                      "the handler's parameters are not those of the operation");
        Handler<Result> handler = [function = std::move(function)](ModelView const &model, Subject const &subject,
                                                                   Call const &call) -> Result {
            return [&]<std::size_t... index>(std::index_sequence<index...>)->Result {
                if constexpr (std::is_invocable_v<Function, ModelView const &, Parameters...>)
                    return function(model, signature::Unpacked<Parameters>::From(call.arguments[index + 1])...);
                else
                    return function(model, subject,
                                    signature::Unpacked<Parameters>::From(call.arguments[index + 1])...);
            }
            (std::index_sequence_for<Parameters...>());
        };
        if constexpr (std::is_same_v<Result, TablePtr>)
            m_tables[static_cast<std::size_t>(operation)] = std::move(handler);
        else
            m_columns[static_cast<std::size_t>(operation)] = std::move(handler);
    }

    std::vector<Handler<TablePtr>> m_tables;
    std::vector<Handler<ColumnIDs>> m_columns;
};

// Each registers the handlers of one subject.
void AddScoreHandlers(Handlers &handlers);
void AddLoadingHandlers(Handlers &handlers);
void AddCrossValidatedLoadingHandlers(Handlers &handlers);

} // namespace engine
