#include "engine/statistics/Handlers.h"

namespace engine {

Handlers::Handlers() : m_tables(AllOperations().size()), m_columns(AllOperations().size()) {
    AddScoreHandlers(*this);
    AddLoadingHandlers(*this);
    AddCrossValidatedLoadingHandlers(*this);
    AddValueHandlers(*this);
    AddDistanceHandlers(*this);
    AddPredictionErrorHandlers(*this);
    AddSummaryHandlers(*this);
    AddVariableSummaryHandlers(*this);
    AddImportanceHandlers(*this);
    AddCoefficientHandlers(*this);
    AddDataHandlers(*this);
}

bool Handlers::Has(Operation operation) const {
    auto const at = static_cast<std::size_t>(operation);
    return m_tables[at] || m_columns[at];
}

TablePtr Handlers::Table(Call const &call, Subject const &subject) const {
    auto const &handler = m_tables[static_cast<std::size_t>(call.operation)];
    return handler ? handler(subject, call) : nullptr;
}

ColumnIDs Handlers::Columns(Call const &call, Subject const &subject) const {
    auto const &handler = m_columns[static_cast<std::size_t>(call.operation)];
    return handler ? handler(subject, call) : Nothing<ColumnIDs>(call);
}

} // namespace engine
