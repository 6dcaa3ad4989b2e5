#include "tests/support/RecordingProject.h"

struct RecordingProject::Model final : public NCModel {
    ModelInfo info;
    ColumnTerms x;
    ColumnTerms y;

    int GetModelNumber() const override { return info.number; }
    ColumnTerms const &GetXColumnTerms() const override { return x; }
    ColumnTerms const &GetYColumnTerms() const override { return y; }
    ObservationInfos const &GetObservations() const override { return EmptyObservationInfoVector(); }
};

std::string RecordingSource::Take() const {
    std::string const last = calls.empty() ? std::string() : calls.back();
    calls.clear();
    return last;
}

TablePtr RecordingSource::Table(Call const &call) const {
    calls.push_back(call.Text());
    NCDataMatrix<float> matrix(1, columns, 0.5f);
    return std::make_unique<ProjectData>(RowIDs(calls.back(), call.project.shared_from_this()), Columns(call),
                                         std::move(matrix));
}

ColumnIDs RecordingSource::Columns(Call const &call) const {
    if (AllOperations()[static_cast<std::size_t>(call.operation)].kind == OperationKind::Columns)
        calls.push_back(call.Text());
    ColumnIDs::Numbers numbers;
    for (int i = 1; i <= columns; ++i)
        numbers.push_back(static_cast<std::uint32_t>(i));
    return ColumnIDs(ColumnIDs::Observations, numbers, call.project.shared_from_this(), 1);
}

int RecordingProject::AddModel(ModelTypeE::Model type, int predictive, int xSide, int ySide, int xTerms, int yTerms) {
    auto const model = boost::make_shared<Model>();
    model->info.number = GetNumberOfModels() + 1;
    model->info.type = type;
    model->info.predictiveComponents = predictive;
    model->info.xSideOrthogonalComponents = xSide;
    model->info.ySideOrthogonalComponents = ySide;
    model->info.fitted = true;
    for (int k = 1; k <= xTerms + yTerms; ++k)
        (k <= xTerms ? model->x : model->y).AppendTerm(ColumnTerm(static_cast<std::uint32_t>(k)));
    m_models.push_back(model);
    return model->info.number;
}

boost::shared_ptr<ModelInfo const> RecordingProject::GetModelInfo(int model) const {
    if (model < 1 || model > GetNumberOfModels())
        return {};
    auto const &known = m_models[static_cast<std::size_t>(model - 1)];
    return {known, &known->info};
}

boost::shared_ptr<NCModel const> RecordingProject::GetModel(int model) const {
    if (model < 1 || model > GetNumberOfModels())
        return {};
    return m_models[static_cast<std::size_t>(model - 1)];
}
