#include "engine/statistics/Handlers.h"

#include "platform/NCProject.h"

namespace engine {

namespace {

// The model that a call is about, when something answers the call.
ModelView const *ModelOf(Call const &call, Subject const &subject, bool answered) {
    return answered ? subject.Model(std::get<int>(call.arguments.front())) : nullptr;
}

} // namespace

Handlers::Handlers() : m_tables(AllOperations().size()), m_columns(AllOperations().size()) {
    AddScoreHandlers(*this);
    AddLoadingHandlers(*this);
    AddCrossValidatedLoadingHandlers(*this);
}

bool Handlers::Has(Operation operation) const {
    auto const at = static_cast<std::size_t>(operation);
    return m_tables[at] || m_columns[at];
}

TablePtr Handlers::Table(Call const &call, Subject const &subject) const {
    auto const &handler = m_tables[static_cast<std::size_t>(call.operation)];
    ModelView const *const model = ModelOf(call, subject, static_cast<bool>(handler));
    return model ? handler(*model, subject, call) : nullptr;
}

ColumnIDs Handlers::Columns(Call const &call, Subject const &subject) const {
    auto const &handler = m_columns[static_cast<std::size_t>(call.operation)];
    ModelView const *const model = ModelOf(call, subject, static_cast<bool>(handler));
    return model ? handler(*model, subject, call) : ColumnIDs(call.project.shared_from_this());
}

} // namespace engine
