#include "engine/statistics/Handlers.h"

#include "engine/statistics/Reconstruction.h"

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
    std::optional<Reconstruction> const reconstruction = Reconstruction::Of(call, subject);
    if (!reconstruction)
        return Answered<TablePtr>(call, subject);
    Call const unscaled{call.operation, reconstruction->Arguments(), call.project, call.predictions};
    return reconstruction->Table(Answered<TablePtr>(unscaled, subject));
}

ColumnIDs Handlers::Columns(Call const &call, Subject const &subject) const {
    std::optional<Reconstruction> const reconstruction = Reconstruction::Of(call, subject);
    ColumnIDs columns = Answered<ColumnIDs>(call, subject);
    return reconstruction ? reconstruction->Columns(columns) : columns;
}

NCDataMatrix<float> Handlers::Matrix(Call const &call, Subject const &subject) const {
    return Answered<NCDataMatrix<float>>(call, subject);
}

} // namespace engine
