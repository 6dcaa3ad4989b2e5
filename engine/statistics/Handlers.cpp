#include "engine/statistics/Handlers.h"

namespace engine {

Handlers::Handlers() {
    std::apply([](auto &...lists) { (lists.resize(AllOperations().size()), ...); }, m_handlers);
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
    AddAlignedHandlers(*this);
    AddContributionHandlers(*this);
    AddLagHandlers(*this);
}

bool Handlers::Has(Operation operation) const {
    auto const at = static_cast<std::size_t>(operation);
    return std::apply([at](auto const &...lists) { return (static_cast<bool>(lists[at]) || ...); }, m_handlers);
}

TablePtr Handlers::Table(Call const &call, Subject const &subject) const {
    return Answered<TablePtr>(call, subject);
}

ColumnIDs Handlers::Columns(Call const &call, Subject const &subject) const {
    return Answered<ColumnIDs>(call, subject);
}

NCDataMatrix<float> Handlers::Matrix(Call const &call, Subject const &subject) const {
    return Answered<NCDataMatrix<float>>(call, subject);
}

} // namespace engine
